#pragma once

/// @file
/// A database for the time of a command.

#include <filesystem>
#include <memory>

#include "database/WatchedFiles.h"

class FED_ResultDatabase;

namespace quilon {

/// A working database in a folder of its own in the temporary folder, which nobody else may enter. Memory holds as much
/// of it as of any other; all of it goes with the object. A program that is killed leaves the folder behind.
class ScratchDatabase
{
public:
  /// @throws FED_Failure that names the folder when it cannot be made
  ScratchDatabase();
  ScratchDatabase(const ScratchDatabase&)            = delete;
  ScratchDatabase& operator=(const ScratchDatabase&) = delete;
  ~ScratchDatabase();

  FED_ResultDatabase& Get() noexcept { return *database_; }

private:
  /// Removed behind the database.
  struct Folder
  {
    Folder();
    Folder(const Folder&)            = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder();
    std::filesystem::path path;
  };

  Folder                              folder_;
  WatchedFiles                        files_;
  std::unique_ptr<FED_ResultDatabase> database_;
};

}  // namespace quilon
