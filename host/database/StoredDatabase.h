#pragma once

/// @file
/// A database on disk, opened to read.

#include <filesystem>
#include <memory>

class FED_Database;

namespace quilon {

class WatchedFiles;

/// A working database (`NAME.fed`), as its last commit left it, or a folder of ONF text. Reading it stops for an
/// interrupt.
class StoredDatabase
{
public:
  /// @return the database at the path; null where neither form of one stands
  /// @throws FED_Failure when the system does not tell what stands there, and for a database that cannot be opened
  static std::unique_ptr<StoredDatabase> OpenIfThere(const std::filesystem::path& path);

  StoredDatabase(const StoredDatabase&)            = delete;
  StoredDatabase& operator=(const StoredDatabase&) = delete;
  ~StoredDatabase();

  /// To read. What a folder holds is loaded as it is asked for.
  FED_Database& Get() noexcept { return *database_; }

private:
  StoredDatabase() = default;

  std::unique_ptr<WatchedFiles> files_;  // of a working database
  std::unique_ptr<FED_Database> database_;
};

}  // namespace quilon
