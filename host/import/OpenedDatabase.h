#pragma once

/// @file
/// Whatever holds results, opened as a database.

#include <filesystem>
#include <memory>
#include <vector>

#include "database/Readers.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;
class FED_ResultDatabase;

namespace quilon {

class Listener;
class ScratchDatabase;
class Selection;
class StoredDatabase;

/// A deck to read a solver's result file with. A database has what it was imported with.
struct CompanionDeck
{
  std::filesystem::path path;                  ///< empty: none
  bool                  allowOutside = false;  ///< whether it may include files outside its folder
};

/// A database behind a path: a working database on disk (`NAME.fed`), as its last commit left it, a folder of ONF text
/// or a solver's result file (`.frd`, `.dat`), which is imported into memory and, where it is larger than 64 MiB or
/// what MemoryLimit says, into a scratch database. Reading it stops for an interrupt.
class OpenedDatabase
{
public:
  enum Derivation
  {
    DeriveAll,     ///< result files are read as `quilon import` reads them without options
    DeriveNothing  ///< result files are read, and nothing is derived from them
  };

  /// @throws FED_Failure for a path that is no database, naming what is accepted
  OpenedDatabase(const std::filesystem::path& path, Listener& listener, Derivation derivation = DeriveAll,
                 const CompanionDeck& deck = {});
  OpenedDatabase(const OpenedDatabase&)            = delete;
  OpenedDatabase& operator=(const OpenedDatabase&) = delete;
  ~OpenedDatabase();

  /// To read. What a folder holds is loaded as it is asked for.
  FED_Database& Get() noexcept { return *database_; }

  /// @return who reads it when a crew does: of a working database each thread gets the same state, and what comes from
  ///         text is read by this thread alone. Valid as long as this object and the crew.
  Readers GetReaders(Crew& crew) const;

  /// A working copy in memory with the selected blocks and the names of user kinds; it may be changed freely.
  std::unique_ptr<FED_ResultDatabase> Copy(const std::vector<FED_DataDescriptor>& descriptors) const;

  /// Copies the selected blocks, with the names of user kinds, one after the other.
  void CopyTo(FED_Database& target, const std::vector<FED_DataDescriptor>& descriptors) const;

  /// @return the descriptors of the selected blocks
  /// @throws FED_Failure when there are none, naming path and selection text
  std::vector<FED_DataDescriptor> RequireBlocks(const Selection& selection, const std::string& text) const;

private:
  std::filesystem::path               path_;
  std::unique_ptr<StoredDatabase>     stored_;    // of a database on disk
  std::unique_ptr<FED_ResultDatabase> imported_;  // of a result file
  std::unique_ptr<ScratchDatabase>    scratch_;   // of a large one
  FED_Database*                       database_ = nullptr;
};

}  // namespace quilon
