#include "StoredState.h"

#include <algorithm>

namespace {

struct RowInterval
{
  std::uint32_t begin;
  std::uint32_t end;
};

// Appends what of an extent's rows is not covered, and covers it.
void TakeUncovered(const ExtentList& extents, std::size_t position, std::vector<RowInterval>& covered,
                   std::vector<VisibleRows>& visible)
{
  const IndexExtent&       extent = extents[position].Get();
  std::uint32_t            begin  = extent.firstRow;
  const std::uint32_t      end    = extent.firstRow + extent.rowCount;
  std::vector<RowInterval> merged;
  RowInterval              own = {begin, end};
  for (const RowInterval& interval : covered) {
    if (interval.end < own.begin || interval.begin > own.end) {
      merged.push_back(interval);
      continue;
    }
    if (begin < interval.begin) visible.push_back({position, begin, std::min(end, interval.begin)});
    begin = std::max(begin, interval.end);
    own   = {std::min(own.begin, interval.begin), std::max(own.end, interval.end)};
  }
  if (begin < end) visible.push_back({position, begin, end});
  merged.push_back(own);
  std::sort(merged.begin(), merged.end(), [](const auto& a, const auto& b) { return a.begin < b.begin; });
  covered = std::move(merged);
}

// @return what is there, with the replacement in the place of what belongs to segments of the window: behind what comes
// before the window, in front of what comes after it
template <typename Part>
std::vector<Part> ReplaceWindow(const std::vector<Part>& parts, const std::vector<Segment*>& window,
                                const std::vector<Part>& replacement)
{
  std::vector<Part> replaced;
  bool              isDone = false;
  for (const Part& part : parts) {
    if (std::find(window.begin(), window.end(), part.segment) == window.end()) {
      replaced.push_back(part);
    } else if (!isDone) {
      replaced.insert(replaced.end(), replacement.begin(), replacement.end());
      isDone = true;
    }
  }
  return replaced;
}

std::string DescribeChunk(const StoredState::Block& block, const IndexExtent& extent)
{
  return "chunk " + std::to_string(extent.chunk) + " (rows " + std::to_string(extent.firstRow) + " to " +
         std::to_string(extent.firstRow + (extent.rowCount - 1)) + ") of block " + block.stored.descriptor.ToString();
}

}  // namespace

std::vector<VisibleRows> FindVisibleRows(const ExtentList& extents)
{
  if (extents.size() == 1) {  // as most chunks have it
    const IndexExtent& rows = extents.front().Get();
    return {{0, rows.firstRow, rows.firstRow + rows.rowCount}};
  }
  std::vector<VisibleRows> visible;
  std::vector<RowInterval> covered;
  for (std::size_t i = extents.size(); i-- > 0;) TakeUncovered(extents, i, covered, visible);
  std::sort(visible.begin(), visible.end(), [](const auto& a, const auto& b) { return a.begin < b.begin; });
  return visible;
}

StoredState::StoredState()
    : complain_([](const Segment& segment, const std::string& text) {
        ThrowFileFailure(segment.GetPath(), "its index is damaged: " + text);
      })
{}

void StoredState::ExpectDeleted(const Segment& segment)
{
  deleted_.insert(segment.GetIndex().deleted.begin(), segment.GetIndex().deleted.end());
}

void StoredState::Add(Segment& segment)
{
  const SegmentIndex& index = segment.GetIndex();
  ExpectDeleted(segment);
  for (const BlockUid uid : index.deleted) Delete(uid);
  for (const StoredBlock& block : index.blocks) Declare(block, segment);
  for (std::size_t i = 0; i < index.ids.size(); ++i) {
    const std::size_t kind = index.ids[i].kind;
    if (index.ids[i].firstIndex != GetIdCount(kind) + 1)
      complain_(segment, "ids of entity kind " + std::to_string(kind) + " start at index " +
                             std::to_string(index.ids[i].firstIndex) + ", expected " +
                             std::to_string(GetIdCount(kind) + 1));
    ids_[kind].push_back({&segment, i});
  }
  if (index.hasNames) names_ = std::map<int, std::string>(index.names.begin(), index.names.end());
  for (std::size_t i = 0; i < index.extents.size(); ++i) AddExtent({&segment, i});
}

void StoredState::RequireAllRows() const
{
  for (const auto& [uid, block] : blocks_) {
    std::uint32_t next = 0;
    for (const auto& [chunk, extents] : block.chunks)
      for (const VisibleRows& rows : FindVisibleRows(extents)) {
        if (rows.begin != next)
          complain_(*extents[rows.extent].segment,
                    "row " + std::to_string(next) + " of block " + block.stored.descriptor.ToString() + " is missing");
        next = rows.end;
      }
  }
}

StoredState::Replacement StoredState::PrepareReplacement(const std::vector<Segment*>& window, Segment* merged)
{
  Replacement replacement;
  PrepareLists(window, merged, replacement);
  PrepareIds(window, merged, replacement);
  return replacement;
}

// The lists of all chunks that the window or the merged segment has rows of.
void StoredState::PrepareLists(const std::vector<Segment*>& window, Segment* merged, Replacement& replacement)
{
  std::map<std::pair<BlockUid, std::uint32_t>, ExtentList> changed;  // what the merged segment has of a chunk
  for (const Segment* segment : window)
    for (const IndexExtent& extent : segment->GetIndex().extents) changed[{extent.block, extent.chunk}];
  if (merged != nullptr)
    for (std::size_t i = 0; i < merged->GetIndex().extents.size(); ++i) {
      const IndexExtent& extent = merged->GetIndex().extents[i];
      changed[{extent.block, extent.chunk}].push_back({merged, i});
    }
  for (const auto& [key, extents] : changed) {
    const auto found = blocks_.find(key.first);
    if (found == blocks_.end()) continue;
    ExtentList& old = found->second.chunks[key.second];
    replacement.lists.emplace_back(&old, ReplaceWindow(old, window, extents));
  }
}

void StoredState::PrepareIds(const std::vector<Segment*>& window, Segment* merged, Replacement& replacement) const
{
  for (std::size_t kind = 0; kind < kNumKinds; ++kind) {
    std::vector<IdPiece> pieces;
    for (std::size_t i = 0; merged != nullptr && i < merged->GetIndex().ids.size(); ++i)
      if (merged->GetIndex().ids[i].kind == kind) pieces.push_back({merged, i});
    replacement.ids[kind] = ReplaceWindow(ids_[kind], window, pieces);
  }
}

void StoredState::Apply(Replacement& replacement) noexcept
{
  for (auto& [list, extents] : replacement.lists) list->swap(extents);
  ids_.swap(replacement.ids);
}

const StoredState::Block* StoredState::FindBlock(BlockUid uid) const noexcept
{
  const auto found = blocks_.find(uid);
  return found == blocks_.end() ? nullptr : &found->second;
}

std::size_t StoredState::GetIdCount(std::size_t kind) const noexcept
{
  if (ids_[kind].empty()) return 0;
  const IndexIds& last = ids_[kind].back().Get();
  return last.firstIndex - 1 + static_cast<std::size_t>(last.ids.bytes / 4);
}

void StoredState::Declare(const StoredBlock& block, const Segment& segment)
{
  if (deleted_.count(block.uid) > 0) return;
  const auto [found, isNew] = blocks_.try_emplace(block.uid);
  Block& own                = found->second;
  // A block is declared again when it takes its format, before it has rows.
  if (!isNew && (own.stored.rowCount > 0 || !(own.stored.descriptor == block.descriptor))) {
    complain_(segment, "block " + block.descriptor.ToString() + " is there twice");
    return;
  }
  own.stored  = block;
  own.columns = GetStoredColumns(block.format);
}

void StoredState::Delete(BlockUid uid) noexcept
{
  const auto found = blocks_.find(uid);
  if (found == blocks_.end()) return;
  for (const auto& [chunk, extents] : found->second.chunks)
    for (const ExtentRef& extent : extents) extent.segment->MarkDead(extent.position);
  blocks_.erase(found);
}

void StoredState::AddExtent(const ExtentRef& extent)
{
  const IndexExtent& rows  = extent.Get();
  const auto         found = blocks_.find(rows.block);
  if (found == blocks_.end()) {
    if (deleted_.count(rows.block) == 0) complain_(*extent.segment, "rows belong to no block");
    extent.segment->MarkDead(extent.position);
    return;
  }
  Block& block = found->second;
  if (!Fits(block, extent)) return;
  block.stored.rowCount = std::max(block.stored.rowCount, rows.firstRow + rows.rowCount);
  block.stored.maxKey   = std::max(block.stored.maxKey, rows.maxKey);
  ExtentList& list      = block.chunks[rows.chunk];
  list.push_back(extent);
  if (list.size() == 1) return;
  std::vector<bool> isVisible(list.size());
  for (const VisibleRows& visible : FindVisibleRows(list)) isVisible[visible.extent] = true;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (isVisible[i])
      list[kept++] = list[i];
    else
      list[i].segment->MarkDead(list[i].position);
  }
  list.resize(kept, extent);
}

bool StoredState::Fits(const Block& block, const ExtentRef& extent) const
{
  const IndexExtent&  rows     = extent.Get();
  const std::uint64_t first    = std::uint64_t{rows.chunk} << block.stored.chunkShift;
  const auto          complain = [&](const std::string& text) {
    complain_(*extent.segment, DescribeChunk(block, rows) + text);
    return false;
  };
  if (rows.firstRow < first ||
      std::uint64_t{rows.firstRow} + rows.rowCount > first + (std::uint64_t{1} << block.stored.chunkShift))
    return complain(" has rows of another chunk");
  if (rows.columnCount != block.columns.size())
    return complain(" has " + std::to_string(rows.columnCount) + " columns, expected " +
                    std::to_string(block.columns.size()));
  for (std::size_t i = 0; i < block.columns.size(); ++i) {
    const StoredColumn& column       = block.columns[i];
    const std::uint64_t elementBytes = GetElementBytes(column.element);
    const std::uint64_t bytes        = extent.segment->GetIndex().columns[rows.firstColumn + i].bytes.bytes;
    const bool          fits =
        column.isElements ? bytes % elementBytes == 0 : bytes == elementBytes * column.width * rows.rowCount;
    if (!fits) return complain(", field " + std::to_string(column.field) + ", has " + std::to_string(bytes) + " bytes");
  }
  return true;
}

std::string DescribeColumn(const StoredState::Block& block, const IndexExtent& extent, std::size_t column)
{
  return DescribeChunk(block, extent) + ", field " + std::to_string(block.columns[column].field);
}

std::string DescribeKeys(const StoredState::Block& block, const IndexExtent& extent)
{
  return DescribeChunk(block, extent) + ", record indices";
}
