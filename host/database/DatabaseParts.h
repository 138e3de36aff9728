#pragma once

/// @file
/// A working database that several write at a time.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <bundled/FED_DatabasePart.h>

class FED_ResultDatabase;

/// Beside the type, as Parcel.h asks for it.
template <typename Parcel>
void Travel(Parcel& parcel, FED_PartBase& base)
{
  parcel(base.ids, base.userKindNames);
}

namespace quilon {

class FreshDatabase;
class WatchedFiles;

/// Parts of a new database: with the segments of what comes before and behind, fewer than the 32 of which one is made.
inline constexpr std::size_t kMostDatabaseParts = 24;

/// @return bytes of work that are worth a part: what comes of them stays in memory
std::uint64_t LeastPartBytes();

/// Divides what several write, by its sizes and the allowed memory alone.
/// @param bytes of each piece that stays whole, in the order in which they are written
/// @param most  parts: each is a segment, and too many are merged when the database is published
/// @return where each part ends, ascending, the last one at bytes.size(); one for work that is not worth several
std::vector<std::size_t> DivideIntoParts(const std::vector<std::uint64_t>& bytes, std::size_t most);

/// What the writer of a part has to know; it travels to other processes.
struct PartTicket
{
  std::string      folder = {};  ///< of the database
  FED_DatabasePart part   = {};

  template <typename Parcel>
  friend void Travel(Parcel& parcel, PartTicket& ticket)
  {
    parcel(ticket.folder, ticket.part.firstSegment, ticket.part.firstBlock);
  }
};

/// The parts of a working database that is open to write, on the side of the one who has it open: he gives them out and
/// takes them back in their order, and writes nothing between.
class DatabaseParts
{
public:
  /// @param database, fresh borrowed; `fresh` is the view that shows what is taken, null where nobody looks through one
  DatabaseParts(std::filesystem::path folder, FED_ResultDatabase& database, FreshDatabase* fresh)
      : folder_(std::move(folder)), database_(database), fresh_(fresh)
  {}

  /// @return what records of parts go by that are given out now
  FED_PartBase GetBase() const;

  /// @throws FED_Failure where the database cannot be written
  std::vector<PartTicket> GiveOut(std::size_t count);

  /// Takes a part that is written; it replaces what is there under the keys of its blocks.
  /// @param segment of WrittenPart::Finish()
  /// @throws FED_Failure that names the file for one that is not the part's
  void Take(const PartTicket& ticket, std::uint64_t segment);

private:
  std::filesystem::path folder_;
  FED_ResultDatabase&   database_;
  FreshDatabase*        fresh_;
};

/// A part on the side of the one who writes it, in this process or another. What is not finished goes with the object.
class WrittenPart
{
public:
  /// @throws FED_Failure that names a file
  WrittenPart(const PartTicket& ticket, const FED_PartBase& base);
  WrittenPart(const WrittenPart&)            = delete;
  WrittenPart& operator=(const WrittenPart&) = delete;
  ~WrittenPart();

  FED_ResultDatabase& Get() noexcept { return *database_; }

  /// Writes what is left; nothing can be written behind it.
  /// @return number of the part's segment, for DatabaseParts::Take()
  /// @throws FED_Failure that names a file, and for ids and names that the base has not
  std::uint64_t Finish();

private:
  std::unique_ptr<WatchedFiles>       files_;
  std::unique_ptr<FED_ResultDatabase> database_;
};

}  // namespace quilon
