#pragma once

/// @file
/// What a folder takes on the disk.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <bundled/FED_FileLayer.h>
#include <bundled/StoreFile.h>

#include "database/DatabaseFolder.h"

namespace quilon {

/// @return bytes of all files in the folder itself; 0 when there is none
/// @throws FED_Failure that names what the system does not tell of
inline std::uint64_t FolderSize(const std::filesystem::path& folder)
{
  if (StatusOf(folder).kind != FED_FileStatus::Folder) return 0;
  FED_FileLayer            files;
  std::vector<std::string> names;
  RequireSuccess(files.List(folder, names), folder, "list");
  std::uint64_t bytes = 0;
  for (const std::string& name : names) {
    const FED_FileStatus status = StatusOf(folder / name);
    if (status.kind == FED_FileStatus::File) bytes += status.size;
  }
  return bytes;
}

}  // namespace quilon
