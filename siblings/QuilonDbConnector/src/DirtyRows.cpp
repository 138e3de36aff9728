#include "DirtyRows.h"

#include <algorithm>
#include <utility>

#include "ChunkCache.h"
#include "ResultDataBlock.h"
#include "RowChunk.h"

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

std::vector<DirtyRows> CollectDirty(const ChunkCache& cache)
{
  std::vector<DirtyRows> rows;
  for (const RowChunk* chunk : cache.GetDirty()) rows.emplace_back(*chunk);
  std::sort(rows.begin(), rows.end(), [](const DirtyRows& a, const DirtyRows& b) {
    return std::pair(a.GetBlock(), a.GetChunk()) < std::pair(b.GetBlock(), b.GetChunk());
  });
  return rows;
}
