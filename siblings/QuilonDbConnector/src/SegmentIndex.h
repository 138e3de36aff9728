#pragma once

/// @file
/// What a segment says of itself: its header and its index.

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ChunkStore.h"
#include "Manifest.h"

/// Bytes before HDF5's own: the header, then zeros.
inline constexpr std::size_t kSegmentHeaderBytes = 512;

/// The header without the zeros, which stands again at the end of the file.
inline constexpr std::size_t kSegmentTailBytes = 144;

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
  std::uint32_t                            version = kDatabaseFormatVersion;
  std::vector<StoredBlock>                 blocks;  ///< new, or with a format now; without rowCount and maxKey
  std::vector<BlockUid>                    deleted;
  std::vector<IndexIds>                    ids;
  bool                                     hasNames = false;
  std::vector<std::pair<int, std::string>> names;  ///< of user kinds, all of them, ascending
  std::vector<IndexExtent>                 extents;
  std::vector<IndexColumn>                 columns;
};

/// What a segment says of itself as a whole; a segment can be read without a manifest.
struct SegmentHeader
{
  std::uint32_t version = kDatabaseFormatVersion;
  SegmentEntry  entry;  ///< as in the manifest

  // From format version 2 on.
  std::uint64_t             copyOffset = 0;  ///< of the second copy of the index
  StoredBytes               structure;       ///< HDF5's, behind the header
  std::optional<CommitMark> commit;          ///< of a segment that is a commit by itself
};

/// @return the index as bytes; their number depends on the numbers of entries and on texts alone
std::vector<std::uint8_t> EncodeIndex(const SegmentIndex& index);

/// Checks every count and every place before it is used, and that no two places overlap.
/// @param fileBytes size of the segment
/// @param path for messages
/// @throws FED_Failure that names the file
SegmentIndex DecodeIndex(const std::uint8_t* bytes, std::size_t count, std::uint64_t fileBytes,
                         const std::filesystem::path& path);

using SegmentHeaderBytes = std::array<std::uint8_t, kSegmentHeaderBytes>;

/// @return the header in the layout of the current format version
SegmentHeaderBytes EncodeHeader(const SegmentHeader& header);

/// @throws FED_Failure that names the file for bytes that are no whole header of a format version that is known
SegmentHeader DecodeHeader(const SegmentHeaderBytes& bytes, const std::filesystem::path& path);

/// Calls visit(place) for each place of data that an index names, those without bytes too.
template <typename Visit>
void VisitPlaces(const SegmentIndex& index, const Visit& visit)
{
  for (const IndexIds& ids : index.ids) visit(ids.ids);
  for (const IndexExtent& extent : index.extents) visit(extent.keys);
  for (const IndexColumn& column : index.columns) visit(column.bytes);
}
