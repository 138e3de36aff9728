#pragma once

/// @file
/// What a segment says of itself: its header and its index.

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "ChunkStore.h"
#include "Manifest.h"

/// Bytes before HDF5's own: the header, then zeros.
inline constexpr std::size_t kSegmentHeaderBytes = 512;

/// Bytes of a file and their checksum.
struct StoredBytes
{
  std::uint64_t offset   = 0;
  std::uint64_t bytes    = 0;
  std::uint64_t checksum = 0;
};

struct IndexColumn
{
  StoredBytes      bytes;
  ColumnStatistics statistics;
};

struct IndexExtent
{
  BlockUid      block      = 0;
  std::uint32_t chunk      = 0;
  std::uint32_t firstRow   = 0;  ///< in the block
  std::uint32_t rowCount   = 0;
  bool          keysAreRun = false;
  std::uint32_t firstKey   = 0;  ///< of a run
  std::uint32_t maxKey     = 0;
  StoredBytes   keys;  ///< UInt32, where they are no run
  std::uint32_t columnCount = 0;
  std::size_t   firstColumn = 0;  ///< in SegmentIndex::columns
};

/// Ids of a kind that were added.
struct IndexIds
{
  std::uint32_t kind       = 0;
  std::uint32_t firstIndex = 1;
  StoredBytes   ids;  ///< Int32
};

struct SegmentIndex
{
  std::vector<StoredBlock>                 blocks;  ///< new, or with a format now; without rowCount and maxKey
  std::vector<BlockUid>                    deleted;
  std::vector<IndexIds>                    ids;
  bool                                     hasNames = false;
  std::vector<std::pair<int, std::string>> names;  ///< of user kinds, all of them, ascending
  std::vector<IndexExtent>                 extents;
  std::vector<IndexColumn>                 columns;
};

/// @return the index as bytes; their number depends on the numbers of entries and on texts alone
std::vector<std::uint8_t> EncodeIndex(const SegmentIndex& index);

/// Checks every count and every place before it is used.
/// @param fileBytes size of the segment
/// @param path for messages
/// @throws FED_Failure that names the file
SegmentIndex DecodeIndex(const std::uint8_t* bytes, std::size_t count, std::uint64_t fileBytes,
                         const std::filesystem::path& path);

/// The header repeats the manifest's entry: a segment can be read without a manifest.
std::array<std::uint8_t, kSegmentHeaderBytes> EncodeHeader(const SegmentEntry& segment);

/// @throws FED_Failure that names the file for bytes that are no whole header of this format version
SegmentEntry DecodeHeader(const std::array<std::uint8_t, kSegmentHeaderBytes>& bytes,
                          const std::filesystem::path&                         path);
