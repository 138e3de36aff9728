#pragma once

/// @file
/// The part of a segment that HDF5 makes: the names, shapes and places of its data.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "ChunkStore.h"

/// A data set of one or two dimensions.
struct SkeletonData
{
  enum Type : int
  {
    Bytes,
    Values  ///< of the element
  };

  std::string           path;  ///< "/stress/lc1_sub3/values"; groups are made as needed
  Type                  type    = Values;
  StoredColumn::Element element = StoredColumn::Float64;
  std::uint64_t         rows    = 0;  ///< at least 1
  std::uint32_t         width   = 1;
  std::uint64_t         offset  = 0;  ///< receives where the data lie in the file
};

/// Makes an HDF5 file that has room for all data but holds none yet.
/// @param headerBytes bytes before HDF5's own: 512 or a greater power of two
/// @throws FED_Failure that names the file when HDF5 fails; a part of the file may be left
void MakeSegmentSkeleton(const std::filesystem::path& path, std::size_t headerBytes, std::vector<SkeletonData>& data);
