#include "ChunkCache.h"

#include <algorithm>
#include <utility>

ChunkCache::ChunkCache(const ChunkStore& store, std::size_t limit, std::size_t most, std::function<void()> spill)
    : store_(&store),
      takesChanges_(store.IsWritable()),
      limit_(limit),
      most_(std::max(limit, most)),
      spill_(std::move(spill))
{}

void ChunkCache::MakeRoom(std::size_t bytes)
{
  const std::size_t goal = bytes < limit_ ? limit_ - bytes : 0;
  if (bytes_ <= goal) return;
  Evict(goal);
  if (bytes_ <= goal || !SpillPays()) return;
  spill_();
  // All is stored now, and half of it goes: where blocks are written in turn every chunk has changed rows again a
  // moment later, and what is then spilled next is as much as was made room for now.
  Evict(std::min(goal, limit_ / 2));
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

std::vector<const RowChunk*> ChunkCache::GetDirty() const
{
  std::vector<const RowChunk*> chunks;
  for (const RowChunk* chunk = dirty_; chunk != nullptr; chunk = chunk->nextDirty) chunks.push_back(chunk);
  return chunks;
}

void ChunkCache::MarkClean() noexcept
{
  while (dirty_ != nullptr) {
    RowChunk& chunk = *dirty_;
    UnlinkDirty(chunk);
    chunk.storedRows = std::max(chunk.storedRows, chunk.dirtyEnd);
    chunk.dirtyFirst = chunk.dirtyEnd = 0;
  }
}

void ChunkCache::CountKeys(const KeyOwner& block, std::size_t bytes)
{
  if (bytes == 0) return;
  keys_.emplace_back(&block, bytes);
  keyBytes_ += bytes;
  if (keyBytes_ <= limit_) return;
  // Those of blocks with changes stay. All that go at once, so that each costs the look at few others.
  std::size_t kept = 0;
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    const bool goes = keyBytes_ > limit_ / 2 && i + kKeptKeys < keys_.size() && keys_[i].first->ReleaseKeys();
    if (goes)
      keyBytes_ -= keys_[i].second;
    else
      keys_[kept++] = keys_[i];
  }
  keys_.resize(kept);
}

void ChunkCache::ForgetKeys(const KeyOwner& block) noexcept
{
  const auto found = std::find_if(keys_.begin(), keys_.end(), [&](const auto& keys) { return keys.first == &block; });
  if (found == keys_.end()) return;
  keyBytes_ -= found->second;
  keys_.erase(found);
}

bool ChunkCache::IsKept(const RowChunk& chunk) const noexcept
{
  return chunk.pins > 0 || std::find(last_.begin(), last_.end(), &chunk) != last_.end();
}

// Chunks that stay may fill the memory alone; then rows of others wait until they are worth writing.
bool ChunkCache::SpillPays() const noexcept
{
  std::size_t kept = 0, others = 0;
  for (std::size_t i = 0; i < last_.size(); ++i)
    if (last_[i] != nullptr && std::find(last_.begin(), last_.begin() + static_cast<std::ptrdiff_t>(i), last_[i]) ==
                                   last_.begin() + static_cast<std::ptrdiff_t>(i))
      kept += last_[i]->bytes;
  for (const RowChunk* chunk = dirty_; chunk != nullptr; chunk = chunk->nextDirty)
    if (!IsKept(*chunk)) others += chunk->bytes;
  return others > 0 && others >= kept / kKeptChunks;
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
