#pragma once

/// @file
/// The part of a segment that makes it an HDF5 file: the names, shapes and places of its data.

#include <cstddef>
#include <cstdint>
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
  std::uint64_t         offset  = 0;  ///< receives where the data lie in the file: a multiple of 8

  std::uint64_t GetBytes() const noexcept { return rows * width * (type == Bytes ? 1 : GetElementBytes(element)); }
};

/// The HDF5 structure of a file that has room for all data but holds none yet, as bytes that stand in one piece behind
/// a user block. It is of the oldest and plainest form of the format, which every version of HDF5 reads: superblock 0,
/// groups as symbol tables, contiguous data sets. It has no times, so that equal data make equal files.
///
/// We make it by ourselves, because HDF5 takes the process with it when memory runs out.
class SegmentSkeleton
{
public:
  /// @param userBlock bytes before it: 512 or a greater power of two
  /// @param tail      bytes of the file behind the last data set
  /// @param data      of different paths, none of which is a group of another; receive their places, one behind the
  ///                  other
  SegmentSkeleton(std::size_t userBlock, std::size_t tail, std::vector<SkeletonData>& data);

  /// @return what stands behind the user block
  const std::vector<std::uint8_t>& GetBytes() const noexcept { return bytes_; }

  /// @return bytes of the file
  std::uint64_t GetFileBytes() const noexcept { return fileBytes_; }

private:
  std::vector<std::uint8_t> bytes_;
  std::uint64_t             fileBytes_ = 0;
};
