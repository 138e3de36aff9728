#pragma once

/// @file
/// A block as columns.

#include <cstddef>
#include <memory>
#include <variant>
#include <vector>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_RecordFormat.h"

#include "ChunkCache.h"
#include "ColumnStore.h"
#include "KeyTable.h"
#include "ResultRecord.h"

/// A block of the result database. Its format is compiled once into columns; an index finds its row through a KeyTable.
///
/// Every change is made in two steps: room for all of it, which may throw and shows nothing; then the change itself,
/// which does not throw. So a failed call leaves the block as it was.
class ResultDataBlock final : public FED_ColumnDataBlock
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

  BlockUid GetUid() const noexcept { return uid_; }
  /// @return the block as it is now, for the store's index
  StoredBlock Describe() const;

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

  const FED_RecordFormat&             GetRecordFormat() const noexcept override { return columns_.format; }
  std::size_t                         GetRecordCount() const noexcept override { return rows_.GetCount(); }
  std::vector<std::size_t>            GetIndices() const override;
  std::size_t                         GetRow(std::size_t index) const override;
  std::size_t                         GetRowsPerChunk() const noexcept override;
  std::size_t                         GetChunkCount() const noexcept override;
  QuilonContainer::Span<const double> GetDoubleChunk(std::size_t field, std::size_t chunk) const override;
  QuilonContainer::Span<const int>    GetIntegerChunk(std::size_t field, std::size_t chunk) const override;
  QuilonContainer::Span<const float>  GetFloatChunk(std::size_t field, std::size_t chunk) const override;

private:
  using Column = std::variant<ValueColumn<int>, ValueColumn<float>, ValueColumn<double>, ListColumn<char>,
                              ListColumn<int>, ListColumn<double>>;

  /// The compiled format.
  struct Columns
  {
    Columns() = default;
    explicit Columns(const FED_RecordFormat& recordFormat);

    FED_RecordFormat    format;
    std::vector<Column> columns;
    unsigned            chunkShift  = 0;
    std::size_t         doubleCount = 0;  ///< as FED_RecordFormat::GetDoubleCount()
    /// The column of a format of one field of doubles, null for all others: the way of the typed fast paths.
    ValueColumn<double>* single = nullptr;
  };

  [[noreturn]] void Fail(const std::string& text) const;
  std::uint32_t     FindRow(std::size_t index) const noexcept;
  void              Reserve(Columns& columns) const;
  static void       EnsureRows(Columns& columns, std::size_t rows);
  void              RequireIndex(std::size_t index) const;
  std::uint32_t     PrepareNewRow(Columns& columns, std::size_t index);
  void              CommitRow(std::size_t index, std::uint32_t row) noexcept;
  void              RequireFit(const ResultRecord& record) const;
  void              RequireDoubleFormat() const;
  void              StoreRecord(std::size_t index, const ResultRecord& record);
  ResultRecord*     KeepScratch() const;
  template <typename T>
  QuilonContainer::Span<const T> GetChunk(std::size_t field, std::size_t chunk) const;

  BlockUid    uid_ = 0;
  Columns     columns_;
  KeyTable    rows_;
  std::size_t expected_ = 0;
  /// Scratch records that were not freed yet.
  mutable std::vector<std::unique_ptr<ResultRecord>> scratch_;
};
