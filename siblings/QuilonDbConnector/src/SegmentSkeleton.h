#pragma once

/// @file
/// The part of a segment that HDF5 makes: the names, shapes and places of its data.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
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

class FileImage;

/// An HDF5 file that has room for all data but holds none yet, as HDF5 laid it out in memory. HDF5 itself reaches no
/// disk: a full one would leave it with a file that it can neither write nor close.
class SegmentSkeleton
{
public:
  /// @param path        for messages
  /// @param headerBytes bytes before HDF5's own: 512 or a greater power of two
  /// @param data        receive their places
  /// @throws FED_Failure that names the file when HDF5 fails
  SegmentSkeleton(const std::filesystem::path& path, std::size_t headerBytes, std::vector<SkeletonData>& data);

  /// @return bytes of the file
  std::uint64_t GetSize() const noexcept;

  using TakeBytes = std::function<void(std::uint64_t offset, const void* bytes, std::size_t count)>;

  /// Hands out what HDF5 has written, by ascending offsets. All other bytes of the file are zeros.
  void Visit(const TakeBytes& take) const;

private:
  std::shared_ptr<const FileImage> image_;
};
