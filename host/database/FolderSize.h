#pragma once

/// @file
/// What a folder takes on the disk.

#include <cstdint>
#include <filesystem>

namespace quilon {

/// @return bytes of all files in the folder itself; 0 when there is none
inline std::uint64_t FolderSize(const std::filesystem::path& folder)
{
  std::uint64_t   bytes = 0;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    const std::uintmax_t size = entry.file_size(error);
    if (!error) bytes += size;
  }
  return bytes;
}

}  // namespace quilon
