#pragma once

/// @file
/// Segments that may be damaged: what of them can be made out, and which bytes are not those written.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bundled/StoreFile.h"
#include "Manifest.h"
#include "Segment.h"
#include "SegmentIndex.h"

/// A segment as far as it can be made out.
struct FoundSegment
{
  std::unique_ptr<Segment>     segment;   ///< null when neither copy of its index is whole
  std::optional<SegmentHeader> header;    ///< none when neither copy of it is whole
  std::vector<std::string>     findings;  ///< which parts are damaged; "FILE: ..."
};

/// Finds a segment's index by the manifest, by its header or by the header's copy at the end, whichever is whole, and
/// takes the copy of the index where the index itself is damaged. Bytes that are missing at the end leave all before
/// them as it is.
/// @param entry null when no manifest tells
/// @throws FED_Failure that names the file when it cannot be read
FoundSegment FindSegment(StoreFile file, const SegmentEntry* entry);

/// Tells whether somebody else reads and checks an extent, and ids.
using IsCheckedElsewhere = std::function<bool(std::size_t extent)>;

/// Checks every byte of a segment that belongs to no value: HDF5's structure, both copies of header and index, data
/// that no row needs any more, and what lies between all of these.
/// @param isChecked extents that are passed over; null: none is, and ids are not either
/// @return which parts are damaged; "FILE: ..."
/// @throws FED_Failure that names the file when it cannot be read
std::vector<std::string> FindDamage(const Segment& segment, const SegmentHeader& header,
                                    const IsCheckedElsewhere& isChecked);

/// @return the segment's header if the file is a whole segment to its last byte, and a commit by itself
/// @throws FED_Failure that names the file when it cannot be read
std::optional<SegmentHeader> FindWholeCommit(StoreFile file);

/// A segment of more bytes is no commit by itself: whoever finds it without its line in the manifest reads all of it.
inline constexpr std::uint64_t kMaxCommitBytes = std::uint64_t{1} << 20;
