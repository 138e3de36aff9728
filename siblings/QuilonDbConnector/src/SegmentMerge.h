#pragma once

/// @file
/// Merging of segments.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "SegmentWriter.h"
#include "StoredState.h"

/// What the choice of a merge looks at.
struct SegmentSize
{
  std::uint64_t fileBytes;
  std::uint64_t deadBytes;
  bool          isLinked = false;  ///< its values are another database's as well
};

/// Neighbouring segments, in order.
struct MergeWindow
{
  std::size_t first;
  std::size_t count;
};

/// Chooses which segments to merge, so that few are open and each byte is written anew seldom.
///
/// Segments have levels by size. Neighbours of a level and below are merged when there are as many as the level allows
/// (8 for small segments, 32 for large ones), unless one of them is larger than all others together: the bytes at least
/// double, so each is moved a number of times that grows with the logarithm of what is stored. A segment whose bytes
/// are mostly dead is written anew alone. More than 192 segments never stay.
///
/// What is merged has at most 2 GiB, so that a large database can be compacted in pieces. Where more than 192 segments
/// have no eight neighbours that are so small together, half of them are merged whatever they have.
///
/// Linked segments of more than 4 MiB stay as they are, so that values which databases share are not written anew,
/// until there are too many segments.
std::optional<MergeWindow> ChooseMerge(const std::vector<SegmentSize>& segments);

/// @param isFirst no segment comes before the window
/// @return the bytes of the segment that MergeSegments() would make
/// @throws FED_Failure where lengths of lists that it has to look at are damaged
std::uint64_t CountMergedBytes(const std::vector<Segment*>& window, bool isFirst, const StoredState& state);

/// Writes what is alive of neighbouring segments as one.
/// @param window  in order
/// @param isFirst no segment comes before the window
/// @param number  of the new segment
/// @return null when nothing is alive
/// @throws FED_Failure that names file and chunk where what is read is damaged, or the file that cannot be written
std::unique_ptr<Segment> MergeSegments(FED_FileLayer& files, const std::filesystem::path& folder,
                                       const std::vector<Segment*>& window, bool isFirst, std::uint64_t number,
                                       const StoredState& state);
