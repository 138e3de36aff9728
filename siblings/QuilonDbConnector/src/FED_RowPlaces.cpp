#include "bundled/FED_RowPlaces.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "bundled/FED_FileLayer.h"

#include "DbFailure.h"
#include "RowChunk.h"
#include "SegmentStore.h"
#include "StoredRows.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_FindRows";

std::vector<FED_RowPlace> FindPlaces(const SegmentStore& store, const StoredBlock& block)
{
  RecordLayout layout(block.format);
  if (layout.singleWidth == 0)
    ThrowBlockFailure(
        block.descriptor,
        "its records are '" + block.format.ToString() + "', expected a scalar, a vector or a tensor of doubles", kTag);
  layout.chunkShift = std::min(block.chunkShift, 24U);
  const StoredRows          rows(store, block.uid, block.descriptor, layout);
  const RowKeys             keys     = rows.ReadKeys(block.rowCount);
  const std::size_t         perChunk = layout.GetRowsPerChunk();
  std::vector<FED_RowPlace> places;
  std::vector<std::size_t>  owner;
  for (std::size_t first = 0; first < block.rowCount; first += perChunk) {
    const std::size_t         count   = std::min<std::size_t>(perChunk, block.rowCount - first);
    const StoredRows::Extents extents = rows.GetExtents(first / perChunk, count);
    // Rows that were written anew belong to the extent that comes later.
    owner.assign(count, 0);
    for (std::size_t e = 0; e < extents.list.size(); ++e) {
      const StoredExtent& extent = extents.list[e];
      std::fill_n(owner.begin() + static_cast<std::ptrdiff_t>(extent.firstRow - first), extent.rowCount, e);
    }
    for (std::size_t row = 0; row < count;) {
      const std::size_t   mine   = owner[row];
      const StoredExtent& extent = extents.list[mine];
      const auto          place  = store.GetPlace(extent, 0);
      FED_RowPlace        found;
      found.file     = place.file;
      found.rowBytes = static_cast<std::uint32_t>(layout.rowBytes);
      found.offset   = place.offset + (first + row - extent.firstRow) * layout.rowBytes;
      for (; row < count && owner[row] == mine; ++row) found.indices.push_back(keys.Get(first + row));
      places.push_back(std::move(found));
    }
  }
  return places;
}

}  // namespace

std::vector<std::vector<FED_RowPlace>> FED_FindRows(const std::filesystem::path&           folder,
                                                    const std::vector<FED_DataDescriptor>& blocks, FED_FileLayer* files)
{
  FED_FileLayer      ownFiles;
  const SegmentStore store(folder, SegmentStore::ReadOnly, files != nullptr ? *files : ownFiles);
  std::map<FED_DataDescriptor, const StoredBlock*> known;
  for (const StoredBlock* block : store.GetBlocks()) known[block->descriptor] = block;
  std::vector<std::vector<FED_RowPlace>> places;
  for (const FED_DataDescriptor& block : blocks) {
    const auto found = known.find(block);
    if (found == known.end()) ThrowBlockFailure(block, "the database has no such block", kTag);
    places.push_back(FindPlaces(store, *found->second));
  }
  return places;
}
