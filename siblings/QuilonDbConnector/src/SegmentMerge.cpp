#include "SegmentMerge.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <numeric>
#include <unordered_set>

namespace {

constexpr std::uint64_t kLevelBytes[]   = {std::uint64_t{1} << 16, std::uint64_t{1} << 19, std::uint64_t{1} << 22,
                                           std::uint64_t{1} << 25, std::uint64_t{1} << 30, std::uint64_t{1} << 35,
                                           std::uint64_t{1} << 40};
constexpr std::size_t   kNumLevels      = std::size(kLevelBytes) + 1;
constexpr std::size_t   kNumSmallLevels = 3;
constexpr std::size_t   kSmallWidth     = 8;
constexpr std::size_t   kLargeWidth     = 32;
constexpr std::size_t   kMaxSegments    = 192;
constexpr std::uint64_t kLeastDeadBytes = std::uint64_t{1} << 16;
constexpr std::uint64_t kKeptLinkBytes  = std::uint64_t{1} << 22;
constexpr std::uint64_t kMostBytes      = std::uint64_t{1} << 31;  // of a merged segment

std::size_t GetLevel(std::uint64_t bytes) noexcept
{
  return static_cast<std::size_t>(std::upper_bound(std::begin(kLevelBytes), std::end(kLevelBytes), bytes) -
                                  std::begin(kLevelBytes));
}

bool IsKept(const SegmentSize& segment) noexcept { return segment.isLinked && segment.fileBytes > kKeptLinkBytes; }

bool IsWorthIt(const std::vector<SegmentSize>& segments, const MergeWindow& window, std::size_t level)
{
  if (window.count < (level < kNumSmallLevels ? kSmallWidth : kLargeWidth)) return false;
  std::uint64_t total   = 0;
  std::uint64_t largest = 0;
  for (std::size_t i = window.first; i < window.first + window.count; ++i) {
    total += segments[i].fileBytes;
    largest = std::max(largest, segments[i].fileBytes);
  }
  return level == 0 || largest <= total - largest;
}

std::optional<MergeWindow> ChooseLevel(const std::vector<SegmentSize>& segments, std::size_t level)
{
  MergeWindow   window{0, 0};
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i <= segments.size(); ++i) {
    const bool isPart = i < segments.size() && !IsKept(segments[i]) && GetLevel(segments[i].fileBytes) <= level;
    const bool isFull = isPart && segments[i].fileBytes > kMostBytes - std::min(bytes, kMostBytes);
    if (!isPart || isFull) {
      if (IsWorthIt(segments, window, level)) return window;
      window = {i, 0};
      bytes  = 0;
    }
    if (isPart) {
      ++window.count;
      bytes += segments[i].fileBytes;
    } else {
      window.first = i + 1;
    }
  }
  return std::nullopt;
}

std::optional<MergeWindow> ChooseDead(const std::vector<SegmentSize>& segments)
{
  for (std::size_t i = 0; i < segments.size(); ++i)
    if (!IsKept(segments[i]) && segments[i].deadBytes >= kLeastDeadBytes &&
        segments[i].deadBytes > segments[i].fileBytes / 2)
      return MergeWindow{i, 1};
  return std::nullopt;
}

// The most neighbours that are small enough together.
MergeWindow ChooseMost(const std::vector<SegmentSize>& segments)
{
  MergeWindow   most{0, 0};
  std::size_t   first = 0;
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i < segments.size(); ++i) {
    bytes += segments[i].fileBytes;
    for (; bytes > kMostBytes; ++first) bytes -= segments[first].fileBytes;
    if (i + 1 - first > most.count) most = {first, i + 1 - first};
  }
  return most;
}

// Of all windows of half the segments that with the fewest bytes.
MergeWindow ChooseCheapest(const std::vector<SegmentSize>& segments)
{
  const std::size_t count    = segments.size() / 2;
  const auto        getBytes = [&](std::size_t first) {
    return std::accumulate(segments.begin() + static_cast<std::ptrdiff_t>(first),
                                  segments.begin() + static_cast<std::ptrdiff_t>(first + count), std::uint64_t{0},
                                  [](std::uint64_t sum, const SegmentSize& size) { return sum + size.fileBytes; });
  };
  std::size_t cheapest = 0;
  for (std::size_t first = 1; first + count <= segments.size(); ++first)
    if (getBytes(first) < getBytes(cheapest)) cheapest = first;
  return {cheapest, count};
}

// Keys that were read last; those of one extent at a time are in memory.
using KeyBuffer = std::vector<std::uint32_t>;

// A run of rows of a chunk, put together from what is visible of extents of the window.
class MergedRows final : public ExtentRows
{
public:
  MergedRows(const StoredState::Block& block, std::uint32_t chunk, KeyBuffer& keys)
      : block_(&block), chunk_(chunk), keyBuffer_(&keys)
  {}

  bool IsFollowedBy(std::uint32_t row) const noexcept { return pieces_.back().end == row; }

  void Append(const ExtentRef& extent, std::uint32_t begin, std::uint32_t end)
  {
    const IndexExtent& rows = extent.Get();
    Piece              piece{extent, begin, end, {}};
    for (std::size_t column = 0; column < block_->columns.size(); ++column)
      piece.ranges.push_back(FindRange(piece, column));
    const std::uint32_t firstKey = rows.firstKey + (begin - rows.firstRow);
    if (pieces_.empty()) {
      firstKey_   = firstKey;
      keysAreRun_ = rows.keysAreRun;
    }
    keysAreRun_ = keysAreRun_ && rows.keysAreRun && firstKey == firstKey_ + GetRowCount();
    pieces_.push_back(std::move(piece));
  }

  BlockUid      GetBlock() const noexcept override { return block_->stored.uid; }
  std::uint32_t GetChunk() const noexcept override { return chunk_; }
  std::uint32_t GetFirstRow() const noexcept override { return pieces_.front().begin; }
  std::uint32_t GetRowCount() const noexcept override
  {
    return pieces_.empty() ? 0 : pieces_.back().end - pieces_.front().begin;
  }
  bool KeysAreRun() const noexcept override { return keysAreRun_; }

  const std::vector<std::uint32_t>& GetKeys() const override
  {
    keyBuffer_->clear();
    if (keysAreRun_)
      keyBuffer_->push_back(firstKey_);
    else
      for (const Piece& piece : pieces_) AppendKeys(piece);
    return *keyBuffer_;
  }

  std::uint64_t GetBytes(std::size_t column) const override
  {
    std::uint64_t bytes = 0;
    for (const Piece& piece : pieces_) bytes += piece.ranges[column].end - piece.ranges[column].begin;
    return bytes;
  }

  void Visit(std::size_t column, const TakeBytes& take) const override
  {
    for (const Piece& piece : pieces_) {
      const IndexColumn& from = GetColumn(piece, column);
      piece.extent.segment->Visit(from.bytes, piece.ranges[column].begin, piece.ranges[column].end, take,
                                  [&] { return DescribeColumn(*block_, piece.extent.Get(), column); });
    }
  }

private:
  struct Range
  {
    std::uint64_t begin;
    std::uint64_t end;
  };

  struct Piece
  {
    ExtentRef          extent;
    std::uint32_t      begin;  // rows of the block
    std::uint32_t      end;
    std::vector<Range> ranges;  // bytes of each column
  };

  const IndexColumn& GetColumn(const Piece& piece, std::size_t column) const
  {
    return piece.extent.segment->GetIndex().columns[piece.extent.Get().firstColumn + column];
  }

  // Where the rows of a piece lie in a column of its extent.
  Range FindRange(const Piece& piece, std::size_t column) const
  {
    const IndexExtent&  rows   = piece.extent.Get();
    const StoredColumn& stored = block_->columns[column];
    const std::uint64_t skip   = piece.begin - rows.firstRow;
    const std::uint64_t count  = piece.end - piece.begin;
    if (count == rows.rowCount) return {0, GetColumn(piece, column).bytes.bytes};
    const std::uint64_t elementBytes = GetElementBytes(stored.element);
    if (!stored.isElements) return {skip * elementBytes * stored.width, (skip + count) * elementBytes * stored.width};
    std::vector<std::uint32_t> lengths(rows.rowCount);
    piece.extent.segment->Read(GetColumn(piece, column - 1).bytes, lengths.data(),
                               [&] { return DescribeColumn(*block_, rows, column - 1); });
    const auto begin = lengths.begin() + static_cast<std::ptrdiff_t>(skip);
    const auto from  = std::accumulate(lengths.begin(), begin, std::uint64_t{0});
    const auto to    = std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(count), from);
    if (to * elementBytes > GetColumn(piece, column).bytes.bytes)
      ThrowFileFailure(piece.extent.segment->GetPath(),
                       DescribeColumn(*block_, rows, column) + " is damaged: its lists are longer than their elements");
    return {from * elementBytes, to * elementBytes};
  }

  void AppendKeys(const Piece& piece) const
  {
    const IndexExtent& rows  = piece.extent.Get();
    const std::size_t  start = keyBuffer_->size();
    keyBuffer_->resize(start + rows.rowCount);
    const auto begin = keyBuffer_->begin() + static_cast<std::ptrdiff_t>(start);
    if (rows.keysAreRun)
      std::iota(begin, keyBuffer_->end(), rows.firstKey);
    else
      piece.extent.segment->Read(rows.keys, &*begin, [&] { return DescribeKeys(*block_, rows); });
    std::copy(begin + (piece.begin - rows.firstRow), begin + (piece.end - rows.firstRow), begin);
    keyBuffer_->resize(start + (piece.end - piece.begin));
  }

  const StoredState::Block* block_;
  std::uint32_t             chunk_;
  KeyBuffer*                keyBuffer_;
  std::vector<Piece>        pieces_;
  bool                      keysAreRun_ = false;
  std::uint32_t             firstKey_   = 0;
};

// What is alive of the window's segments.
class Merge
{
public:
  Merge(const std::vector<Segment*>& window, bool isFirst, const StoredState& state) : window_(window), state_(state)
  {
    AddBlocks(isFirst);
    AddIds();
    AddNames();
    AddRows();
  }

  const SegmentContents& GetContents() const noexcept { return contents_; }

private:
  void AddBlocks(bool isFirst)
  {
    std::map<BlockUid, const StoredBlock*> declared;
    for (const Segment* segment : window_)
      for (const StoredBlock& block : segment->GetIndex().blocks) declared[block.uid] = &block;
    for (const auto& [uid, block] : declared)
      if (state_.FindBlock(uid) != nullptr) contents_.blocks.push_back(*block);
    // Segments before the window may know a deleted block, even one that the window declares: it may have been declared
    // again when it took its format. Test: DeletedBlockStaysDeletedWhenItsLaterSegmentsMerge.
    if (isFirst) return;
    for (const Segment* segment : window_)
      contents_.deleted.insert(contents_.deleted.end(), segment->GetIndex().deleted.begin(),
                               segment->GetIndex().deleted.end());
  }

  void AddIds()
  {
    for (std::size_t kind = 0; kind < StoredState::kNumKinds; ++kind) {
      std::size_t firstIndex = 0;
      for (const StoredState::IdPiece& piece : state_.GetIds(kind)) {
        if (std::find(window_.begin(), window_.end(), piece.segment) == window_.end()) continue;
        const IndexIds&   ids   = piece.Get();
        std::vector<int>& all   = ids_[kind];
        const std::size_t start = all.size();
        if (all.empty()) firstIndex = ids.firstIndex;
        all.resize(start + static_cast<std::size_t>(ids.ids.bytes / 4));
        piece.segment->Read(ids.ids, all.data() + start,
                            [&] { return "the id map of entity kind " + std::to_string(kind); });
      }
      if (firstIndex != 0)
        contents_.ids.push_back({static_cast<int>(kind), firstIndex, {ids_[kind].data(), ids_[kind].size()}});
    }
  }

  void AddNames()
  {
    for (const Segment* segment : window_) {
      if (!segment->GetIndex().hasNames) continue;
      contents_.hasNames = true;
      contents_.names    = segment->GetIndex().names;
    }
  }

  void AddRows()
  {
    std::map<std::pair<BlockUid, std::uint32_t>, bool> chunks;
    for (const Segment* segment : window_)
      for (const IndexExtent& extent : segment->GetIndex().extents) chunks[{extent.block, extent.chunk}];
    for (const auto& [key, unused] : chunks)
      if (const StoredState::Block* block = state_.FindBlock(key.first)) AddChunk(*block, key.second);
    contents_.rows.reserve(rows_.size());
    for (const MergedRows& rows : rows_) contents_.rows.push_back(&rows);
  }

  void AddChunk(const StoredState::Block& block, std::uint32_t chunk)
  {
    const ExtentList& extents = block.chunks.at(chunk);
    bool              isOpen  = false;
    for (const VisibleRows& visible : FindVisibleRows(extents)) {
      const ExtentRef& extent = extents[visible.extent];
      if (std::find(window_.begin(), window_.end(), extent.segment) == window_.end()) {
        isOpen = false;
        continue;
      }
      if (!isOpen || !rows_.back().IsFollowedBy(visible.begin)) rows_.emplace_back(block, chunk, keys_);
      rows_.back().Append(extent, visible.begin, visible.end);
      isOpen = true;
    }
  }

  const std::vector<Segment*>&                         window_;
  const StoredState&                                   state_;
  KeyBuffer                                            keys_;
  std::array<std::vector<int>, StoredState::kNumKinds> ids_;
  std::vector<MergedRows>                              rows_;
  SegmentContents                                      contents_;
};

}  // namespace

std::optional<MergeWindow> ChooseMerge(const std::vector<SegmentSize>& segments)
{
  // Large ones first: what is merged once need not be merged again within them.
  for (std::size_t level = kNumLevels; level-- > 0;)
    if (const auto window = ChooseLevel(segments, level)) return window;
  if (segments.size() <= kMaxSegments) return ChooseDead(segments);
  const MergeWindow most = ChooseMost(segments);
  return most.count >= kSmallWidth ? most : ChooseCheapest(segments);
}

std::uint64_t CountMergedBytes(const std::vector<Segment*>& window, bool isFirst, const StoredState& state)
{
  const Merge merge(window, isFirst, state);
  if (merge.GetContents().IsEmpty()) return 0;
  return CountSegmentBytes(merge.GetContents(),
                           [&](BlockUid uid) -> const StoredBlock& { return state.FindBlock(uid)->stored; });
}

std::unique_ptr<Segment> MergeSegments(FED_FileLayer& files, const std::filesystem::path& folder,
                                       const std::vector<Segment*>& window, bool isFirst, std::uint64_t number,
                                       const StoredState& state)
{
  const Merge merge(window, isFirst, state);
  if (merge.GetContents().IsEmpty()) return nullptr;
  SegmentEntry entry;
  entry.number = number;
  entry.first  = window.front()->GetEntry().first;
  entry.last   = window.back()->GetEntry().last;
  return WriteSegment(files, folder, entry, merge.GetContents(),
                      [&](BlockUid uid) -> const StoredBlock& { return state.FindBlock(uid)->stored; });
}
