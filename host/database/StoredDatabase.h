#pragma once

/// @file
/// A database on disk, opened to read.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

class FED_Database;

namespace quilon {

class WatchedFiles;

/// A working database (`NAME.fed`), as its last commit left it, or a folder of ONF text. Reading it stops for an
/// interrupt.
class StoredDatabase
{
public:
  /// @param share what part of the allowed memory a working database gets: 1 of so many
  /// @return the database at the path; null where neither form of one stands
  /// @throws FED_Failure when the system does not tell what stands there, and for a database that cannot be opened
  static std::unique_ptr<StoredDatabase> OpenIfThere(const std::filesystem::path& path, std::size_t share = 1);

  StoredDatabase(const StoredDatabase&)            = delete;
  StoredDatabase& operator=(const StoredDatabase&) = delete;
  ~StoredDatabase();

  /// To read. What a folder holds is loaded as it is asked for.
  FED_Database& Get() noexcept { return *database_; }

  /// @return what tells one state of a working database from another; empty for a folder of text
  std::string GetState() const;

  /// Opens the same state of the same database once more, for another thread.
  /// @param path  that this one was opened by
  /// @param share as of OpenIfThere()
  /// @return null for a folder of text, whose record indices depend on what was read first, and where this state
  ///         of the database is no longer there to be opened
  std::unique_ptr<StoredDatabase> OpenAgain(const std::filesystem::path& path, std::size_t share) const;

private:
  StoredDatabase() = default;

  std::unique_ptr<WatchedFiles> files_;  // of a working database
  std::unique_ptr<FED_Database> database_;
};

}  // namespace quilon
