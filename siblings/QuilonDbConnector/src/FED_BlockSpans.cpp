#include "bundled/FED_BlockSpans.h"

#include <algorithm>
#include <string>
#include <variant>

#include <bundled/OnfKinds.h>

#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"

#include "DbFailure.h"
#include "ResultDataBlock.h"
#include "ScratchGuard.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_BlockSpans";

// Records of other databases that are gathered.
constexpr std::size_t kGathered = 1024;

// Records in the columns of a chunk.
class ChunkSpan final : public FED_BlockSpan
{
public:
  ChunkSpan(const FED_DataBlock& block, const FED_IdMapsPool* pool) : block_(block), pool_(pool)
  {
    kind_ = OnfKind::EntityOf(block.GetDescriptor());
  }

  std::vector<std::uint32_t>& GetIndexBuffer() noexcept { return indices_; }

  /// Shows the records of the indices that are in the buffer.
  /// @param columns borrowed; rows from 0 on
  void Show(const FED_RecordFormat& format, const std::vector<RowColumn>& columns)
  {
    format_  = &format;
    columns_ = &columns;
    if (pool_ == nullptr) return;
    ids_.resize(indices_.size());
    for (std::size_t i = 0; i < ids_.size(); ++i)
      ids_[i] = kind_ >= OnfKind::HistoryEntity ? static_cast<int>(indices_[i]) : pool_->GetId(kind_, indices_[i]);
  }

  QuilonContainer::Span<const double> GetDoubles(std::size_t field) const override { return GetValues<double>(field); }
  QuilonContainer::Span<const int>    GetIntegers(std::size_t field) const override { return GetValues<int>(field); }
  QuilonContainer::Span<const float>  GetFloats(std::size_t field) const override { return GetValues<float>(field); }

  QuilonContainer::Span<const double> GetDoubleList(std::size_t field, std::size_t record) const override
  {
    const auto& column = Get<ListColumn<double>>(field);
    return {column.GetRow(record), column.GetLength(record)};
  }

  QuilonContainer::Span<const int> GetIntegerList(std::size_t field, std::size_t record) const override
  {
    const auto& column = Get<ListColumn<int>>(field);
    return {column.GetRow(record), column.GetLength(record)};
  }

  std::string_view GetText(std::size_t field, std::size_t record) const override
  {
    const auto& column = Get<ListColumn<char>>(field);
    return {column.GetRow(record), column.GetLength(record)};
  }

private:
  template <typename T>
  QuilonContainer::Span<const T> GetValues(std::size_t field) const
  {
    const auto& column = Get<ValueColumn<T>>(field);
    return {column.GetRow(0), GetCount() * column.GetWidth()};
  }

  template <typename Column>
  const Column& Get(std::size_t field) const
  {
    const std::size_t count = columns_->size();
    if (field < 1 || field > count)
      ThrowBlockFailure(block_.GetDescriptor(),
                        "record field is " + std::to_string(field) + ", expected 1 to " + std::to_string(count), kTag);
    if (const auto* column = std::get_if<Column>(&(*columns_)[field - 1])) return *column;
    const FED_FieldType::Class type = FED_FieldType::GetClass(format_->GetTypes()[field - 1]);
    ThrowBlockFailure(block_.GetDescriptor(),
                      "record field " + std::to_string(field) + " is of type " + FED_FieldType::GetName(type), kTag);
  }

  const FED_DataBlock&          block_;
  const FED_IdMapsPool*         pool_;
  int                           kind_    = 0;
  const std::vector<RowColumn>* columns_ = nullptr;
};

// Shows the records of a chunk whose indices are in the span's buffer.
void TakeChunk(const ResultDataBlock& block, const PinnedChunk& pinned, ChunkSpan& span,
               const std::function<void(const FED_BlockSpan&)>& take)
{
  span.Show(block.GetRecordFormat(), pinned.GetColumns());
  take(span);
}

void WalkChunks(const ResultDataBlock& block, ChunkSpan& span, const std::function<void(const FED_BlockSpan&)>& take)
{
  for (std::size_t chunk = 0; chunk < block.GetChunkCount(); ++chunk) {
    const PinnedChunk pinned(block, chunk);
    block.GetChunkKeys(chunk, span.GetIndexBuffer());
    TakeChunk(block, pinned, span, take);
  }
}

// A block of another database has no columns: its records are put in some.
void WalkRecords(const FED_DataBlock& block, ChunkSpan& span, const std::function<void(const FED_BlockSpan&)>& take)
{
  const ScratchGuard<FED_ConstDataRecord> scratch(block, block.CreateConstDataRecord());
  std::vector<std::uint32_t>&             indices = span.GetIndexBuffer();
  const FED_DataBlock::IndexIterator      end     = block.End();
  for (FED_DataBlock::IndexIterator index = block.Begin(); index != end;) {
    block.GetRecord(*index, *scratch);
    const RecordLayout layout(FED_RecordFormat::FromRecord(*scratch));
    ResultRecord       record(block, layout.format);
    RowChunk           gathered;
    gathered.EnsureRows(std::min(kGathered, layout.GetRowsPerChunk()), layout, false);
    indices.clear();
    while (true) {
      const std::size_t row = indices.size();
      CopyRecord(*scratch, record);
      gathered.PrepareRow(row, row, record);
      gathered.WriteRow(row, row, record);
      indices.push_back(static_cast<std::uint32_t>(*index));
      if (++index == end || indices.size() == gathered.capacity) break;
      block.GetRecord(*index, *scratch);
    }
    span.Show(layout.format, gathered.columns);
    take(span);
  }
}

void Walk(const FED_DataBlock& block, const FED_IdMapsPool* pool, const std::function<void(const FED_BlockSpan&)>& take)
{
  ChunkSpan span(block, pool);
  if (const auto* own = dynamic_cast<const ResultDataBlock*>(&block))
    WalkChunks(*own, span, take);
  else
    WalkRecords(block, span, take);
}

// @param pool null: no ids
void VisitChunk(const FED_ColumnDataBlock& block, const FED_IdMapsPool* pool, std::size_t chunk,
                const std::function<void(const FED_BlockSpan&)>& take)
{
  const auto* own = dynamic_cast<const ResultDataBlock*>(&block);
  if (own == nullptr) ThrowBlockFailure(block.GetDescriptor(), "expected a block of FED_ResultDatabase", kTag);
  if (chunk >= block.GetChunkCount())
    ThrowBlockFailure(block.GetDescriptor(),
                      "chunk is " + std::to_string(chunk) + ", the block has " + std::to_string(block.GetChunkCount()),
                      kTag);
  ChunkSpan         span(block, pool);
  const PinnedChunk pinned(*own, chunk);
  own->ReadChunkKeys(chunk, span.GetIndexBuffer());
  TakeChunk(*own, pinned, span, take);
}

}  // namespace

FED_BlockSpan::~FED_BlockSpan() = default;

void FED_ForEachSpan(const FED_DataBlock& block, const std::function<void(const FED_BlockSpan&)>& take)
{
  Walk(block, nullptr, take);
}

void FED_ForEachSpan(const FED_DataBlock& block, const FED_IdMapsPool& pool,
                     const std::function<void(const FED_BlockSpan&)>& take)
{
  Walk(block, &pool, take);
}

void FED_VisitChunk(const FED_ColumnDataBlock& block, const FED_IdMapsPool& pool, std::size_t chunk,
                    const std::function<void(const FED_BlockSpan&)>& take)
{
  VisitChunk(block, &pool, chunk, take);
}

void FED_VisitChunk(const FED_ColumnDataBlock& block, std::size_t chunk,
                    const std::function<void(const FED_BlockSpan&)>& take)
{
  VisitChunk(block, nullptr, chunk, take);
}

bool FED_SpansAscend(const FED_DataBlock& block)
{
  const auto* own = dynamic_cast<const ResultDataBlock*>(&block);
  return own == nullptr || own->RowsAscend();
}
