#include "ChunkCache.h"

#include <algorithm>
#include <utility>

#include "ResultDataBlock.h"

DirtyRows::DirtyRows(const RowChunk& chunk) : chunk_(&chunk), columns_(GetStoredColumns(chunk.owner->GetRecordFormat()))
{
  const RowKeys&    keys  = GetOwner().GetRowKeys();
  const std::size_t first = GetFirstRow();
  const std::size_t count = DirtyRows::GetRowCount();
  keysAreRun_             = true;
  for (std::size_t i = 1; i < count && keysAreRun_; ++i) keysAreRun_ = keys.Get(first + i) == keys.Get(first) + i;
  keys_.resize(keysAreRun_ ? 1 : count);
  for (std::size_t i = 0; i < keys_.size(); ++i) keys_[i] = keys.Get(first + i);
}

const ResultDataBlock& DirtyRows::GetOwner() const noexcept { return *chunk_->owner; }

BlockUid DirtyRows::GetBlock() const noexcept { return GetOwner().GetUid(); }

std::uint32_t DirtyRows::GetChunk() const noexcept { return chunk_->number; }

std::uint32_t DirtyRows::GetFirstRow() const noexcept
{
  return static_cast<std::uint32_t>(chunk_->number * GetOwner().GetRowsPerChunk()) + chunk_->dirtyFirst;
}

std::uint32_t DirtyRows::GetRowCount() const noexcept { return chunk_->dirtyEnd - chunk_->dirtyFirst; }

std::uint64_t DirtyRows::GetBytes(std::size_t column) const
{
  return GetStoredBytes(*chunk_, columns_[column], chunk_->dirtyFirst, GetRowCount());
}

void DirtyRows::Visit(std::size_t column, const TakeBytes& take) const
{
  VisitStored(*chunk_, columns_[column], chunk_->dirtyFirst, GetRowCount(), take);
}

ColumnStatistics DirtyRows::GetStatistics(std::size_t column) const
{
  return ComputeStatistics(*chunk_, columns_[column], chunk_->dirtyFirst, GetRowCount());
}

ChunkCache::ChunkCache(const ChunkStore& store, std::size_t limit, std::function<void()> spill)
    : store_(&store), takesChanges_(store.IsWritable()), limit_(limit), spill_(std::move(spill))
{}

void ChunkCache::MakeRoom(std::size_t bytes)
{
  const std::size_t goal = bytes < limit_ ? limit_ - bytes : 0;
  if (bytes_ <= goal) return;
  Evict(goal);
  if (bytes_ <= goal || !HasRowsToSpill()) return;
  spill_();
  Evict(goal);
}

void ChunkCache::Keep(RowChunk& chunk) noexcept
{
  std::copy_backward(last_.begin(), last_.end() - 1, last_.end());
  last_[0] = &chunk;
}

void ChunkCache::Count(RowChunk& chunk) noexcept
{
  const std::size_t bytes = chunk.CountBytes();
  bytes_ += bytes;
  bytes_ -= chunk.bytes;
  chunk.bytes = bytes;
  if (chunk.next != nullptr) return;
  if (hand_ == nullptr) {
    hand_      = &chunk;
    chunk.next = chunk.previous = &chunk;
  } else {
    // Behind the hand: the last that it comes to.
    chunk.next           = hand_;
    chunk.previous       = hand_->previous;
    hand_->previous      = &chunk;
    chunk.previous->next = &chunk;
  }
  ++count_;
}

void ChunkCache::Forget(RowChunk& chunk) noexcept
{
  std::replace(last_.begin(), last_.end(), &chunk, static_cast<RowChunk*>(nullptr));
  if (chunk.IsDirty()) UnlinkDirty(chunk);
  if (chunk.next != nullptr) Leave(chunk);
}

std::vector<DirtyRows> ChunkCache::CollectDirty() const
{
  std::vector<DirtyRows> rows;
  for (const RowChunk* chunk = dirty_; chunk != nullptr; chunk = chunk->nextDirty) rows.emplace_back(*chunk);
  std::sort(rows.begin(), rows.end(), [](const DirtyRows& a, const DirtyRows& b) {
    return std::pair(a.GetBlock(), a.GetChunk()) < std::pair(b.GetBlock(), b.GetChunk());
  });
  return rows;
}

void ChunkCache::MarkClean() noexcept
{
  while (dirty_ != nullptr) {
    RowChunk& chunk = *dirty_;
    UnlinkDirty(chunk);
    chunk.dirtyFirst = chunk.dirtyEnd = 0;
  }
}

bool ChunkCache::IsKept(const RowChunk& chunk) const noexcept
{
  return std::find(last_.begin(), last_.end(), &chunk) != last_.end();
}

bool ChunkCache::HasRowsToSpill() const noexcept
{
  for (const RowChunk* chunk = dirty_; chunk != nullptr; chunk = chunk->nextDirty)
    if (!IsKept(*chunk)) return true;
  return false;
}

void ChunkCache::Evict(std::size_t goal) noexcept
{
  // Two rounds: the first may only take second chances away.
  for (std::size_t steps = 2 * count_; steps > 0 && bytes_ > goal && hand_ != nullptr; --steps) {
    RowChunk& chunk = *hand_;
    hand_           = chunk.next;
    if (chunk.IsDirty() || IsKept(chunk)) continue;
    if (chunk.wasTouched) {
      chunk.wasTouched = false;
      continue;
    }
    Leave(chunk);
    chunk.Unload();
  }
}

void ChunkCache::LinkDirty(RowChunk& chunk) noexcept
{
  chunk.previousDirty = nullptr;
  chunk.nextDirty     = dirty_;
  if (dirty_ != nullptr) dirty_->previousDirty = &chunk;
  dirty_ = &chunk;
}

void ChunkCache::UnlinkDirty(RowChunk& chunk) noexcept
{
  if (chunk.nextDirty != nullptr) chunk.nextDirty->previousDirty = chunk.previousDirty;
  if (chunk.previousDirty != nullptr)
    chunk.previousDirty->nextDirty = chunk.nextDirty;
  else
    dirty_ = chunk.nextDirty;
  chunk.nextDirty = chunk.previousDirty = nullptr;
}

void ChunkCache::Leave(RowChunk& chunk) noexcept
{
  if (hand_ == &chunk) hand_ = chunk.next;
  if (hand_ == &chunk) hand_ = nullptr;
  chunk.next->previous = chunk.previous;
  chunk.previous->next = chunk.next;
  chunk.next = chunk.previous = nullptr;
  --count_;
  bytes_ -= chunk.bytes;
  chunk.bytes      = 0;
  chunk.wasTouched = false;
}
