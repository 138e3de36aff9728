#pragma once

/// @file
/// The rows of a database on disk that are in memory.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "ChunkStore.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class ResultDataBlock;
class RowChunk;

/// A block as a store knows it: all but its keys and rows.
struct StoredBlock
{
  BlockUid           uid = 0;
  FED_DataDescriptor descriptor;
  FED_RecordFormat   format;  ///< empty while the block has none
  std::uint32_t      rowCount   = 0;
  std::uint32_t      maxKey     = 0;
  unsigned           chunkShift = 0;  ///< a chunk has 2^chunkShift rows; final as soon as there is a row
};

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
  ColumnStatistics                  GetStatistics(std::size_t column) const override;

private:
  const RowChunk*            chunk_;
  std::vector<std::uint32_t> keys_;
  bool                       keysAreRun_ = false;
};

/// Keeps the bytes of chunks in memory near a limit: one cache for all blocks of a database on disk. Outlives them.
///
/// Chunks go in the order of the clock: one that was touched since the hand last passed gets a second chance. Rows that
/// the store does not have stay until they are spilled. The chunks touched last stay whatever the limit is, so that a
/// few blocks can be walked side by side.
class ChunkCache
{
public:
  static constexpr std::size_t kKeptChunks = 4;

  /// @param store borrowed
  /// @param limit bytes
  /// @param spill called when rows that the store does not have fill the memory: writes what CollectDirty() gives to
  /// the
  ///              store and calls MarkClean(). What it throws leaves through the operation that needed the memory.
  ChunkCache(const ChunkStore& store, std::size_t limit, std::function<void()> spill);
  ChunkCache(const ChunkCache&)            = delete;
  ChunkCache& operator=(const ChunkCache&) = delete;

  const ChunkStore& GetStore() const noexcept { return *store_; }
  std::size_t       GetLimit() const noexcept { return limit_; }
  std::size_t       GetBytes() const noexcept { return bytes_; }  ///< of all chunks in memory

  /// Costs what changed, not what is there.
  /// @return by ascending block and chunk; valid until a block is next read or written
  std::vector<DirtyRows> CollectDirty() const;

  /// The store has all rows as they are now. Until then everything stays dirty.
  void MarkClean() noexcept;

private:
  const ChunkStore*     store_;
  std::size_t           limit_;
  std::function<void()> spill_;
  std::size_t           bytes_ = 0;
};
