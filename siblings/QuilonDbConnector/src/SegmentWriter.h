#pragma once

/// @file
/// Writing of segments.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "QuilonUtilities/QuilonContainer.h"

#include "ChunkStore.h"
#include "Segment.h"

/// Ids of a kind that come behind those stored.
struct IdGrowth
{
  int                              kind;
  std::size_t                      firstIndex;
  QuilonContainer::Span<const int> ids;
};

/// What a segment says that no segment before it does. Everything is borrowed.
struct SegmentContents
{
  std::vector<StoredBlock>                 blocks;  ///< new, or with a format now
  std::vector<BlockUid>                    deleted;
  std::vector<IdGrowth>                    ids;
  bool                                     hasNames = false;
  std::vector<std::pair<int, std::string>> names;  ///< of user kinds, all of them, ascending
  std::vector<const ExtentRows*>           rows;   ///< rows of one block are neighbours

  bool IsEmpty() const noexcept
  {
    return blocks.empty() && deleted.empty() && ids.empty() && !hasNames && rows.empty();
  }
};

/// What the writer asks about the block of rows that it is given.
using DescribeBlock = std::function<const StoredBlock&(BlockUid)>;

/// Decides whether a segment of so many bytes is to be a commit by itself.
using ChooseMark = std::function<std::optional<CommitMark>(std::uint64_t fileBytes)>;

/// @return the bytes of the file that WriteSegment() would write
std::uint64_t CountSegmentBytes(const SegmentContents& contents, const DescribeBlock& describe);

/// Writes a segment and flushes it.
///
/// The keys of rows are taken at once.
/// @param entry    number, first and last
/// @param describe answers for every block of the rows
/// @param choose   null: it is none
/// @throws FED_Failure that names the file; nothing of it is left unless removing it fails as well
std::unique_ptr<Segment> WriteSegment(FED_FileLayer& files, const std::filesystem::path& folder, SegmentEntry entry,
                                      const SegmentContents& contents, const DescribeBlock& describe,
                                      const ChooseMark& choose = nullptr);

/// @return "stress/lc1_sub3": where tools show a block; not unique among keys that differ under clear mask bits only
std::string GetBlockPath(const FED_DataDescriptor& descriptor);
