#pragma once

/// @file
/// A database as Python holds it.

#include <atomic>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <bundled/FED_ColumnDataBlock.h>

#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "Work.h"

class FED_Database;
class FED_DataBlock;

namespace quilon {
class KindTable;
class OpenedDatabase;
class Publication;
class StepTimes;
}  // namespace quilon

namespace quilon::python {

/// Ids of a block's records and where the records are. Blocks over the same nodes or elements share one.
struct IdTable
{
  std::vector<int>           ids;   ///< ascending
  std::vector<std::uint32_t> rows;  ///< shape [ids]: the row of each; empty: they are in the order of rows
};

/// What is read of a database. Arrays that look into it keep it alive, whatever becomes of the store.
class Reading
{
public:
  Reading(const std::filesystem::path& path, Listener& listener, const std::filesystem::path& deck);
  ~Reading();

  FED_Database&    Get() noexcept;
  const StepTimes& GetTimes();
  const KindTable& GetKinds();

  /// @return the ids of a block of this database or another one: an earlier answer where that was the same
  std::shared_ptr<const IdTable> FindIds(IdTable ids);

  /// A chunk that no array looks at any more. It is let go by the next call that has the database to itself: this one
  /// may come from any thread.
  void LetGo(std::unique_ptr<FED_HeldChunk> chunk);
  /// Lets chunks go. Called by whoever has the database to itself.
  void Tidy();

private:
  std::unique_ptr<OpenedDatabase>             opened_;
  std::unique_ptr<KindTable>                  kinds_;
  std::unique_ptr<StepTimes>                  times_;
  std::vector<std::weak_ptr<const IdTable>>   ids_;  // latest last
  std::mutex                                  releasedMutex_;
  std::vector<std::unique_ptr<FED_HeldChunk>> released_;
};

/// A database that is open to read or to write. Calls take turns: of several threads one at a time is at work.
class Store
{
public:
  enum Mode
  {
    Read,
    Write
  };

  Store(const std::filesystem::path& path, Mode mode, Listener& listener, const std::filesystem::path& deck);
  ~Store();

  const std::filesystem::path& GetPath() const noexcept { return path_; }
  std::string                  GetName() const { return path_.string(); }
  bool                         IsWritable() const noexcept { return mode_ == Write; }
  bool                         IsClosed() const noexcept { return isClosed_; }

  /// Runs function() with the store to itself. The interpreter's lock must not be held.
  /// @throws FED_Failure for a closed store, and within a call of the same thread
  template <typename Function>
  auto Use(const Function& function)
  {
    const Turn turn(*this);
    return function();
  }

  void Close();
  /// @return blocks that were published
  std::size_t Commit();

  // Within Use().

  /// What is stored. @throws FED_Failure for a database that is still to be made
  Reading&                 RequireReading();
  std::shared_ptr<Reading> GetReading() const noexcept { return reading_; }

  /// Where blocks are written. @throws FED_Failure for a store that is open to read
  FED_Database& Target();

  /// Blocks of what is stored and what has been written since.
  std::vector<FED_DataDescriptor> List();
  /// @return the kinds of both
  const KindTable& GetKinds();

  /// A block and its database.
  struct Place
  {
    const FED_DataBlock& block;
    FED_Database&        database;
    bool                 isStored;  ///< it does not change any more
  };
  Place Find(const FED_DataDescriptor& descriptor);

  /// An empty block to be written, in place of one that is there.
  FED_DataBlock& Replace(const FED_DataDescriptor& descriptor, std::size_t records);
  /// Takes back a block whose writing failed.
  void Drop(const FED_DataDescriptor& descriptor);

private:
  /// The right to use the store.
  class Turn
  {
  public:
    explicit Turn(Store& store);
    ~Turn();

  private:
    Store& store_;
  };

  void RequireOpen() const;
  void OpenReading(Listener& listener, const std::filesystem::path& deck);

  std::filesystem::path        path_;
  Mode                         mode_;
  std::atomic<bool>            isClosed_ = false;
  std::mutex                   mutex_;
  std::atomic<std::thread::id> user_;
  std::unique_ptr<Publication> publication_;  // between the first change and its commit
  std::unique_ptr<KindTable>   kinds_;        // of what is written, null when it is to be read anew
  std::shared_ptr<Reading>     reading_;      // null while nothing is stored
};

}  // namespace quilon::python
