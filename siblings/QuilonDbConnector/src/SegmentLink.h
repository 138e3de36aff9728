#pragma once

/// @file
/// Segments of other databases as segments of this one.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "ChunkStore.h"
#include "Segment.h"

/// Record indices here by those of another database; empty: they are the same.
using KeyTranslation = std::vector<std::uint32_t>;

/// A block that takes rows of another database as its own.
struct LinkedBlock
{
  BlockUid              there = 0;
  BlockUid              here  = 0;
  const KeyTranslation* keys  = nullptr;  ///< borrowed
};

/// Rows of an open segment of another database.
struct LinkedRows
{
  std::size_t        extent;  ///< in the segment's index
  const LinkedBlock* block;
};

/// What became of the file.
struct LinkedSegment
{
  std::unique_ptr<Segment> segment;
  bool                     isCopied = false;  ///< the file system gave it no second name
};

/// Makes a segment that shows rows of one of another database: its file gets a second name, or is copied where that
/// cannot be, and a file with an index for this database is written beside it. Values are not read. Flushes what it
/// writes, but not the folder.
/// @param entry  number, first and last
/// @param blocks that no segment before it declares, with their uids here
/// @param rows   by ascending extent
/// @throws FED_Failure that names a file; nothing of the segment is left unless removing it fails as well
LinkedSegment LinkSegment(FED_FileLayer& files, const std::filesystem::path& folder, SegmentEntry entry,
                          const Segment& source, std::vector<StoredBlock> blocks, const std::vector<LinkedRows>& rows);

/// @return whether a linked segment's own file begins with the header that it was given
bool HasLinkHeader(const StoreFile& own, const SegmentEntry& entry);

/// @return what the own file of a linked segment says of it
/// @throws FED_Failure that names the file where it does not tell
SegmentEntry ReadLinkHeader(const StoreFile& own);
