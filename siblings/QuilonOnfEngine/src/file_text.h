#pragma once

/// @file
/// The bytes of files, and how to tell one state of a file from another.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "bundled/FED_FileLayer.h"
#include "bundled/StoreFile.h"

/// The bytes of a file.
struct FileText
{
  std::unique_ptr<char[]> bytes;
  std::size_t             size = 0;
};

/// Tells one state of a file from another: a file that was replaced or edited has another stamp.
struct FileStamp
{
  std::uint64_t size    = 0;
  std::uint64_t number  = 0;  ///< which file of the disk
  std::int64_t  changed = 0;  ///< when, in nanoseconds

  bool operator==(const FileStamp&) const = default;
};

FileStamp GetStamp(const FED_FileStatus& status);

/// What stands at a path. @throws FED_Failure that names it when the system does not tell
FED_FileStatus GetFileStatus(FED_FileLayer& files, const std::filesystem::path& path);

/// @return nothing when the path names nothing
/// @throws FED_Failure that names the file when it cannot be opened or is no plain file (a pipe would never end)
std::optional<StoreFile> FindFile(FED_FileLayer& files, const std::filesystem::path& path);

/// All bytes of an open file.
FileText ReadAllOf(const StoreFile& file);

/// @throws FED_Failure that names the file when it is not there, cannot be read or is no plain file
FileText ReadFileText(FED_FileLayer& files, const std::filesystem::path& path);
