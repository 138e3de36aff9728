#pragma once

/// @file
/// A block as columns.

#include <cstddef>
#include <memory>
#include <vector>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_RecordFormat.h"

#include "ChunkCache.h"
#include "KeyTable.h"
#include "ResultRecord.h"
#include "RowChunk.h"
#include "StoredRows.h"

/// A block of the result database. Its format is compiled once into columns; an index finds its row through a KeyTable,
/// a row its values through a chunk. On disk, keys and chunks come from the store when they are first asked for, and
/// chunks may leave the memory again in every call that asks for more of it.
///
/// Every change is made in two steps: room for all of it, which may throw and shows nothing; then the change itself,
/// which does not throw. So a failed call leaves the block as it was.
class ResultDataBlock final : public FED_ColumnDataBlock, public KeyOwner
{
public:
  /// In memory.
  ResultDataBlock(const FED_DataDescriptor& descriptor, const FED_RecordFormat& format);
  /// A new block of a database on disk.
  /// @param cache borrowed
  ResultDataBlock(const FED_DataDescriptor& descriptor, const FED_RecordFormat& format, BlockUid uid,
                  ChunkCache& cache);
  /// A block that the cache's store has. Reads nothing yet: keys and rows come when they are first asked for.
  ResultDataBlock(const StoredBlock& stored, ChunkCache& cache);

  ResultDataBlock(const ResultDataBlock&)            = delete;
  ResultDataBlock& operator=(const ResultDataBlock&) = delete;
  ~ResultDataBlock() override;

  BlockUid GetUid() const noexcept { return uid_; }
  /// @return the block as it is now, for the store's index
  StoredBlock Describe() const;
  /// Keys of all rows of a block on disk; of one that was written.
  const RowKeys& GetRowKeys() const noexcept { return keys_; }

  bool ReleaseKeys() const noexcept override;

  /// Gives a block without a format its format.
  void SetRecordFormat(const FED_RecordFormat& format);

  /// Makes room in advance: a hint, bounded in what it may cost.
  void Expect(std::size_t records);

  bool                 HasRecord(std::size_t index) const override;
  void                 SetRecord(std::size_t index, const FED_DataRecord& record) override;
  void                 GetRecord(std::size_t index, FED_ConstDataRecord& record) const override;
  std::size_t          GetSize() const override;
  std::size_t          GetMaxIndex() const override;
  void                 SetScalarAt(std::size_t index, double value) override;
  double               GetScalarAt(std::size_t index) const override;
  void                 SetValuesAt(std::size_t index, const double* values) override;
  void                 GetValuesAt(std::size_t index, double* out) const override;
  FED_DataRecord*      CreateDataRecord() override;
  FED_ConstDataRecord* CreateConstDataRecord() const override;
  void                 DeleteDataRecord(FED_ConstDataRecord* record) const override;
  std::size_t          FindNextIndex(std::size_t first, std::size_t last) const override;

  const FED_RecordFormat&             GetRecordFormat() const noexcept override { return layout_.format; }
  std::size_t                         GetRecordCount() const noexcept override { return rowCount_; }
  std::vector<std::size_t>            GetIndices() const override;
  std::size_t                         GetRow(std::size_t index) const override;
  std::size_t                         GetRowsPerChunk() const noexcept override;
  std::size_t                         GetChunkCount() const noexcept override;
  QuilonContainer::Span<const double> GetDoubleChunk(std::size_t field, std::size_t chunk) const override;
  QuilonContainer::Span<const int>    GetIntegerChunk(std::size_t field, std::size_t chunk) const override;
  QuilonContainer::Span<const float>  GetFloatChunk(std::size_t field, std::size_t chunk) const override;
  std::unique_ptr<FED_HeldChunk>      HoldChunk(std::size_t chunk) const override;
  FED_FieldStatistics                 GetFieldStatistics(std::size_t field) const override;

  /// Adds the records of another block of the same format, in the order of its rows, to an empty one.
  /// @param indices of the records here, each another
  void AppendRows(const ResultDataBlock& source, const std::vector<std::size_t>& indices);

  /// @return whether the rows' indices ascend
  bool RowsAscend() const { return GetKeysOfRows().Ascend(); }
  /// The same as GetChunkKeys(); where keys are in the store, those of other chunks stay there.
  void ReadChunkKeys(std::size_t chunk, std::vector<std::uint32_t>& keys) const;
  /// @param keys receives the index of each row of a chunk
  void GetChunkKeys(std::size_t chunk, std::vector<std::uint32_t>& keys) const;

private:
  friend class PinnedChunk;

  // The parts of the typed fast paths that every call takes are here, to be inlined.

  std::uint32_t FindRow(std::size_t index) const
  {
    if (index > KeyTable::kMaxKey) return KeyTable::kNone;
    const auto          key = static_cast<std::uint32_t>(index);
    const std::uint32_t row = rows_.Find(key);
    return row != KeyTable::kNone || keysAreLoaded_ ? row : FindStoredRow(key);
  }

  /// @return the chunk of a row, with the row in memory
  RowChunk& Reach(std::size_t row) const
  {
    RowChunk& chunk = *chunks_[row >> layout_.chunkShift];
    if (cache_ != nullptr && (!cache_->IsLast(chunk) || RowInChunk(row) < chunk.firstRow))
      Bring(chunk, RowInChunk(row));
    return chunk;
  }

  /// Makes room behind all rows for an index that has none.
  RowChunk& PrepareNewRow(const RecordLayout& layout, std::size_t index)
  {
    RequireIndex(index);
    const std::size_t number = rowCount_ >> layout.chunkShift;
    const std::size_t at     = rowCount_ & (layout.GetRowsPerChunk() - 1);
    RowChunk*         chunk  = number < chunks_.size() ? chunks_[number].get() : nullptr;
    if (chunk == nullptr || !chunk->HasRoom(at) || (cache_ != nullptr && !cache_->IsLast(*chunk)))
      chunk = &MakeRoomForRows(layout, number, at, 1);
    rows_.Prepare(static_cast<std::uint32_t>(index), static_cast<std::uint32_t>(rowCount_));
    if (cache_ != nullptr) keys_.Prepare(static_cast<std::uint32_t>(index));
    return *chunk;
  }

  /// The row of a prepared or a present index was written.
  void CommitRow(std::size_t index, std::uint32_t row, RowChunk& chunk) noexcept
  {
    if (row == rowCount_) {
      rows_.Insert(static_cast<std::uint32_t>(index), row);
      if (cache_ != nullptr) keys_.Push(static_cast<std::uint32_t>(index));
      ++rowCount_;
    }
    if (cache_ != nullptr) cache_->MarkDirty(chunk, static_cast<std::uint32_t>(RowInChunk(row)));
  }

  void RequireIndex(std::size_t index) const
  {
    if (index > KeyTable::kMaxKey) FailOfIndex(index);
  }

  void RequireWritable() const
  {
    if (cache_ != nullptr && !cache_->TakesChanges()) FailOfReader();
  }

  [[noreturn]] void FailOfIndex(std::size_t index) const;
  [[noreturn]] void FailOfReader() const;
  std::uint32_t     FindStoredRow(std::uint32_t key) const;
  void              Bring(RowChunk& chunk, std::size_t row) const;
  RowChunk&         MakeRoomForRows(const RecordLayout& layout, std::size_t number, std::size_t at, std::size_t count);

  [[noreturn]] void Fail(const std::string& text) const;
  void              RequireFit(const ResultRecord& record) const;
  void              RequireListLengths(const ResultRecord& record) const;
  void              RequireDoubleFormat() const;
  void              RequireField(std::size_t field) const;
  void              RequireChunk(std::size_t chunk) const;

  std::size_t RowsOf(std::size_t chunk) const noexcept;
  RowChunk&   ReachChunk(std::size_t chunk) const;
  std::size_t RowInChunk(std::size_t row) const noexcept { return row & (layout_.GetRowsPerChunk() - 1); }
  /// @return where a row of the block, in memory, stands in its chunk's columns
  std::size_t RowInColumns(std::size_t row, const RowChunk& chunk) const noexcept
  {
    return RowInChunk(row) - chunk.firstRow;
  }
  /// @return rows of a chunk's columns that hold a record
  std::size_t RowsInColumns(const RowChunk& chunk) const noexcept { return RowsOf(chunk.number) - chunk.firstRow; }

  void      AppendRows(const std::vector<RowColumn>& columns, std::size_t from, const std::size_t* indices,
                       std::size_t count);
  void      Reserve(const RecordLayout& layout);
  RowChunk& MakeChunk(std::size_t number);
  void      DropChunks() noexcept;
  void      EnsureRows(RowChunk& chunk, std::size_t end, const RecordLayout& layout, bool isWhole) const;
  void      PrepareLists(RowChunk& chunk, std::size_t row, std::size_t rowCount, const ResultRecord& record) const;
  void      StoreRecord(std::size_t index, const ResultRecord& record);
  void      StoreFirstRecord(std::size_t index, const ResultRecord& record);
  void      WriteRow(std::size_t index, std::uint32_t row, RowChunk& chunk, const ResultRecord& record) noexcept;

  StoredRows     GetStoredRows() const noexcept { return {cache_->GetStore(), uid_, GetDescriptor(), layout_}; }
  void           AttachChunks() const;
  void           LoadKeys() const;
  const RowKeys& GetKeysOfRows() const;
  void           Load(RowChunk& chunk) const;

  ResultRecord* KeepScratch() const;
  template <typename T>
  QuilonContainer::Span<const T> GetChunk(std::size_t field, std::size_t chunk) const;

  BlockUid     uid_   = 0;
  ChunkCache*  cache_ = nullptr;  // null in memory
  RecordLayout layout_;
  std::size_t  rowCount_ = 0;
  std::size_t  expected_ = 0;
  // What is in the store comes here when it is first asked for, also by a const call.
  mutable bool                                   keysAreLoaded_ = true;
  mutable std::uint32_t                          storedMaxKey_  = 0;  // while keys are in the store
  mutable KeyTable                               rows_;
  mutable RowKeys                                keys_;    // on disk, for the store; in memory when they were asked for
  mutable std::vector<std::unique_ptr<RowChunk>> chunks_;  // empty while none was asked for
  /// Scratch records that were not freed yet.
  mutable std::vector<std::unique_ptr<ResultRecord>> scratch_;
};

/// A chunk that stays in memory, whatever else is read and written, while this holds it. Its block is not written
/// meanwhile.
class PinnedChunk
{
public:
  PinnedChunk(const ResultDataBlock& block, std::size_t chunk) : chunk_(block.ReachChunk(chunk)) { ++chunk_.pins; }
  PinnedChunk(const PinnedChunk&)            = delete;
  PinnedChunk& operator=(const PinnedChunk&) = delete;
  ~PinnedChunk() { --chunk_.pins; }

  const std::vector<RowColumn>& GetColumns() const noexcept { return chunk_.columns; }

private:
  RowChunk& chunk_;
};
