#pragma once

/// @file
/// Whatever holds results, opened as a database.

#include <filesystem>
#include <memory>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;
class FED_ResultDatabase;
class QuilonOnfTxtDatabase;

namespace quilon {

class Console;
class Selection;
class WatchedFiles;

/// A database behind a path: a working database on disk (`NAME.fed`), as its last commit left it, a folder of ONF text
/// or a solver's result file (`.frd`, `.dat`), which is imported into memory. Reading it stops for an interrupt.
class OpenedDatabase
{
public:
  enum Derivation
  {
    DeriveAll,     ///< result files are read as `quilon import` reads them without options
    DeriveNothing  ///< result files are read, and nothing is derived from them
  };

  /// @throws FED_Failure for a path that is no database, naming what is accepted
  OpenedDatabase(const std::filesystem::path& path, Console& console, Derivation derivation = DeriveAll);
  OpenedDatabase(const OpenedDatabase&)            = delete;
  OpenedDatabase& operator=(const OpenedDatabase&) = delete;
  ~OpenedDatabase();

  /// To read. What a folder holds is loaded as it is asked for.
  FED_Database& Get() noexcept { return *database_; }

  /// A working copy in memory with the selected blocks and the names of user kinds; it may be changed freely.
  std::unique_ptr<FED_ResultDatabase> Copy(const std::vector<FED_DataDescriptor>& descriptors) const;

  /// Copies the selected blocks, with the names of user kinds, one after the other.
  void CopyTo(FED_Database& target, const std::vector<FED_DataDescriptor>& descriptors) const;

  /// @return the descriptors of the selected blocks
  /// @throws FED_Failure when there are none, naming path and selection text
  std::vector<FED_DataDescriptor> RequireBlocks(const Selection& selection, const std::string& text) const;

private:
  std::filesystem::path         path_;
  std::unique_ptr<WatchedFiles> files_;  // of a working database
  std::unique_ptr<FED_Database> database_;
};

/// @return whether the path is a folder that holds a working database
bool IsWorkingDatabase(const std::filesystem::path& path);

/// @return whether a working database is meant by this name: it ends in .fed
bool IsWorkingDatabaseName(const std::filesystem::path& path);

/// @return whether the path is a folder that holds a working database, or has at least the name of one: what it lacks
///         is told when it is opened
bool IsWorkingDatabaseFolder(const std::filesystem::path& path);

/// @return whether the path is a folder that holds an ONF text database
bool IsOnfFolder(const std::filesystem::path& path);

/// Opens an ONF text database to read it.
std::unique_ptr<QuilonOnfTxtDatabase> OpenOnf(const std::filesystem::path& path);

}  // namespace quilon
