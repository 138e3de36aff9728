#pragma once

/// @file
/// Changed rows on their way to the store.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ChunkStore.h"

class ChunkCache;
class ResultDataBlock;
struct RowChunk;

/// Rows of a chunk that the store does not have as they are now.
class DirtyRows final : public ExtentRows
{
public:
  explicit DirtyRows(const RowChunk& chunk);

  const ResultDataBlock& GetOwner() const noexcept;

  BlockUid                          GetBlock() const noexcept override;
  std::uint32_t                     GetChunk() const noexcept override;
  std::uint32_t                     GetFirstRow() const noexcept override;
  std::uint32_t                     GetRowCount() const noexcept override;
  bool                              KeysAreRun() const noexcept override { return keysAreRun_; }
  const std::vector<std::uint32_t>& GetKeys() const noexcept override { return keys_; }
  std::uint64_t                     GetBytes(std::size_t column) const override;
  void                              Visit(std::size_t column, const TakeBytes& take) const override;

private:
  const RowChunk*            chunk_;
  std::vector<StoredColumn>  columns_;
  std::vector<std::uint32_t> keys_;
  bool                       keysAreRun_ = false;
};

/// @return the rows of a cache that its store does not have, by ascending block and chunk; valid until a block is next
///         read or written
std::vector<DirtyRows> CollectDirty(const ChunkCache& cache);
