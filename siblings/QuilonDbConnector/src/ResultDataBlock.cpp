#include "ResultDataBlock.h"

#include <algorithm>
#include <bit>
#include <string>
#include <typeinfo>
#include <utility>

#include "DbFailure.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|ResultDataBlock";

// A hint is a claim: what it may reserve in advance is bounded, the rest comes with the records.
constexpr std::size_t kMaxExpectedBytes = std::size_t{256} << 20;

// Rows of a byte each that fill a chunk.
constexpr unsigned kMaxChunkShift = 24;

// A record longer than this has fewer rows with it in a chunk.
constexpr std::size_t kListChunkBytes = std::size_t{4} << 20;

std::string Count(std::size_t count, const char* what)
{
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

// Counts the bytes of a chunk when a change of its room is over, however it ended.
class CountedChange
{
public:
  CountedChange(ChunkCache* cache, RowChunk& chunk) noexcept : cache_(cache), chunk_(chunk) {}
  CountedChange(const CountedChange&)            = delete;
  CountedChange& operator=(const CountedChange&) = delete;
  ~CountedChange()
  {
    if (cache_ != nullptr) cache_->Count(chunk_);
  }

private:
  ChunkCache* cache_;
  RowChunk&   chunk_;
};

class HeldChunk final : public FED_HeldChunk
{
public:
  HeldChunk(const ResultDataBlock& block, std::size_t chunk) : pinned_(block, chunk) {}

private:
  PinnedChunk pinned_;
};

void Merge(FED_FieldStatistics& statistics, const ColumnStatistics& part)
{
  statistics.nans += part.nans;
  if (part.values == 0) return;
  statistics.least    = statistics.hasRange ? std::min(statistics.least, part.least) : part.least;
  statistics.greatest = statistics.hasRange ? std::max(statistics.greatest, part.greatest) : part.greatest;
  statistics.hasRange = true;
}

}  // namespace

ResultDataBlock::ResultDataBlock(const FED_DataDescriptor& descriptor, const FED_RecordFormat& format)
    : FED_ColumnDataBlock(descriptor), layout_(format)
{}

ResultDataBlock::ResultDataBlock(const FED_DataDescriptor& descriptor, const FED_RecordFormat& format, BlockUid uid,
                                 ChunkCache& cache)
    : FED_ColumnDataBlock(descriptor), uid_(uid), cache_(&cache), layout_(format)
{}

ResultDataBlock::ResultDataBlock(const StoredBlock& stored, ChunkCache& cache)
    : FED_ColumnDataBlock(stored.descriptor),
      uid_(stored.uid),
      cache_(&cache),
      layout_(stored.format),
      rowCount_(stored.rowCount),
      keysAreLoaded_(stored.rowCount == 0),
      storedMaxKey_(stored.maxKey)
{
  if (layout_.format.IsEmpty()) {
    if (rowCount_ != 0) Fail("the store has rows of it and no record format");
    return;
  }
  if (stored.chunkShift > kMaxChunkShift)
    Fail("a chunk has 2^" + std::to_string(stored.chunkShift) + " rows, expected at most 2^" +
         std::to_string(kMaxChunkShift));
  layout_.chunkShift = stored.chunkShift;
}

ResultDataBlock::~ResultDataBlock()
{
  DropChunks();
  if (cache_ != nullptr) cache_->ForgetKeys(*this);
}

bool ResultDataBlock::ReleaseKeys() const noexcept
{
  if (std::any_of(chunks_.begin(), chunks_.end(), [](const auto& chunk) { return chunk->IsDirty(); })) return false;
  storedMaxKey_  = rows_.GetMaxKey();
  keysAreLoaded_ = false;
  rows_          = KeyTable();
  keys_          = RowKeys();
  return true;
}

StoredBlock ResultDataBlock::Describe() const
{
  return {uid_,
          GetDescriptor(),
          layout_.format,
          static_cast<std::uint32_t>(rowCount_),
          static_cast<std::uint32_t>(GetMaxIndex()),
          layout_.chunkShift};
}

void ResultDataBlock::SetRecordFormat(const FED_RecordFormat& format)
{
  RecordLayout layout(format);
  DropChunks();
  Reserve(layout);
  layout_ = std::move(layout);
}

void ResultDataBlock::Expect(std::size_t records)
{
  if (records == 0) return;
  rows_.Expect(records);
  expected_ = records;
  Reserve(layout_);
}

bool ResultDataBlock::HasRecord(std::size_t index) const { return FindRow(index) != KeyTable::kNone; }

void ResultDataBlock::SetRecord(std::size_t index, const FED_DataRecord& record)
{
  if (const auto* own = dynamic_cast<const ResultRecord*>(&record)) {
    StoreRecord(index, *own);
    return;
  }
  ResultRecord copy(*this, {});
  CopyRecord(record, copy);
  StoreRecord(index, copy);
}

void ResultDataBlock::GetRecord(std::size_t index, FED_ConstDataRecord& record) const
{
  const std::size_t row = GetRow(index);
  // The class is final: the type tells as much as a cast that searches, at a fraction of its cost.
  auto* own = typeid(record) == typeid(ResultRecord) ? static_cast<ResultRecord*>(&record) : nullptr;
  if (own == nullptr) {
    auto* writable = dynamic_cast<FED_DataRecord*>(&record);
    if (writable == nullptr) Fail("the read-only scratch record was not made by a block of this database");
    ResultRecord copy(*this, layout_.format);
    GetRecord(index, copy);
    CopyRecord(copy, *writable);
    return;
  }
  if (own->HasFormat()) RequireFit(*own);
  const RowChunk& chunk = Reach(row);
  if (!own->HasFormat()) own->SetFormat(layout_.format);
  chunk.ReadRow(RowInColumns(row, chunk), *own);
}

std::size_t ResultDataBlock::GetSize() const { return GetMaxIndex(); }

std::size_t ResultDataBlock::GetMaxIndex() const { return keysAreLoaded_ ? rows_.GetMaxKey() : storedMaxKey_; }

void ResultDataBlock::SetScalarAt(std::size_t index, double value)
{
  if (layout_.doubleCount == 1) {
    SetValuesAt(index, &value);
    return;
  }
  RequireWritable();
  if (!layout_.format.IsEmpty()) Fail("a scalar was given, the record format is \"" + layout_.format.ToString() + '"');
  RequireIndex(index);
  RecordLayout layout(FED_RecordFormat::Parse("D"));
  DropChunks();
  Reserve(layout);
  RowChunk& chunk = PrepareNewRow(layout, index);
  *chunk.single   = value;
  layout_         = std::move(layout);
  CommitRow(index, 0, chunk);
}

double ResultDataBlock::GetScalarAt(std::size_t index) const
{
  const std::size_t row = GetRow(index);
  if (layout_.doubleCount != 1)
    Fail("a scalar was asked for, the record format is \"" + layout_.format.ToString() + '"');
  const RowChunk& chunk = Reach(row);
  return chunk.single[RowInColumns(row, chunk)];
}

void ResultDataBlock::SetValuesAt(std::size_t index, const double* values)
{
  RequireWritable();
  if (layout_.doubleCount == 0) RequireDoubleFormat();
  const std::uint32_t present = FindRow(index);
  const bool          isNew   = present == KeyTable::kNone;
  const auto          row     = isNew ? static_cast<std::uint32_t>(rowCount_) : present;
  RowChunk&           chunk   = isNew ? PrepareNewRow(layout_, index) : Reach(row);
  const std::size_t   at      = RowInColumns(row, chunk);
  if (layout_.singleWidth != 0)
    CopyDoubles(values, layout_.singleWidth, chunk.single + at * layout_.singleWidth);
  else
    chunk.WriteDoubles(at, values);
  CommitRow(index, row, chunk);
}

void ResultDataBlock::GetValuesAt(std::size_t index, double* out) const
{
  const std::size_t row = GetRow(index);
  if (layout_.doubleCount == 0) RequireDoubleFormat();
  const RowChunk&   chunk = Reach(row);
  const std::size_t at    = RowInColumns(row, chunk);
  if (layout_.singleWidth != 0)
    CopyDoubles(chunk.single + at * layout_.singleWidth, layout_.singleWidth, out);
  else
    chunk.ReadDoubles(at, out);
}

FED_DataRecord* ResultDataBlock::CreateDataRecord() { return KeepScratch(); }

FED_ConstDataRecord* ResultDataBlock::CreateConstDataRecord() const { return KeepScratch(); }

void ResultDataBlock::DeleteDataRecord(FED_ConstDataRecord* record) const
{
  if (record == nullptr) return;
  // The latest record is the likeliest.
  for (std::size_t i = scratch_.size(); i-- > 0;) {
    if (scratch_[i].get() != record) continue;
    scratch_.erase(scratch_.begin() + static_cast<std::ptrdiff_t>(i));
    return;
  }
  Fail("the scratch record to free was not made by this block");
}

std::size_t ResultDataBlock::FindNextIndex(std::size_t first, std::size_t last) const
{
  if (first > KeyTable::kMaxKey) return npos;
  if (!keysAreLoaded_) LoadKeys();
  const auto          most = static_cast<std::uint32_t>(std::min<std::size_t>(last, KeyTable::kMaxKey));
  const std::uint32_t next = rows_.FindNext(static_cast<std::uint32_t>(first), most);
  return next == KeyTable::kNone ? npos : next;
}

std::vector<std::size_t> ResultDataBlock::GetIndices() const
{
  if (!keysAreLoaded_) LoadKeys();
  const std::vector<std::uint32_t> keys = rows_.GetKeys();
  return std::vector<std::size_t>(keys.begin(), keys.end());
}

std::size_t ResultDataBlock::GetRow(std::size_t index) const
{
  const std::uint32_t row = FindRow(index);
  if (row == KeyTable::kNone) Fail("no record at index " + std::to_string(index));
  return row;
}

std::size_t ResultDataBlock::GetRowsPerChunk() const noexcept { return layout_.GetRowsPerChunk(); }

std::size_t ResultDataBlock::GetChunkCount() const noexcept
{
  return (rowCount_ + GetRowsPerChunk() - 1) >> layout_.chunkShift;
}

QuilonContainer::Span<const double> ResultDataBlock::GetDoubleChunk(std::size_t field, std::size_t chunk) const
{
  return GetChunk<double>(field, chunk);
}

QuilonContainer::Span<const int> ResultDataBlock::GetIntegerChunk(std::size_t field, std::size_t chunk) const
{
  return GetChunk<int>(field, chunk);
}

QuilonContainer::Span<const float> ResultDataBlock::GetFloatChunk(std::size_t field, std::size_t chunk) const
{
  return GetChunk<float>(field, chunk);
}

std::unique_ptr<FED_HeldChunk> ResultDataBlock::HoldChunk(std::size_t chunk) const
{
  RequireChunk(chunk);
  return std::make_unique<HeldChunk>(*this, chunk);
}

FED_FieldStatistics ResultDataBlock::GetFieldStatistics(std::size_t field) const
{
  RequireField(field);
  const std::vector<StoredColumn> columns  = GetStoredColumns(layout_.format);
  const auto                      isValues = [field](const StoredColumn& column) {
    return column.field == field && (column.element != StoredColumn::UInt32 || column.isElements);
  };
  const auto          at       = std::find_if(columns.begin(), columns.end(), isValues);
  const auto          position = static_cast<std::size_t>(at - columns.begin());
  FED_FieldStatistics statistics;
  std::uint64_t       bytes = 0;
  for (std::size_t number = 0; number < GetChunkCount(); ++number) {
    if (cache_ != nullptr && (chunks_.empty() || !chunks_[number]->IsDirty())) {
      const StoredRows::Extents extents = GetStoredRows().GetExtents(number, RowsOf(number));
      if (!extents.overlap) {
        for (const StoredExtent& extent : extents.list) {
          Merge(statistics, cache_->GetStore().GetStatistics(extent, position));
          bytes += cache_->GetStore().GetBytes(extent, position);
        }
        continue;
      }
    }
    const RowChunk& chunk = ReachChunk(number);
    Merge(statistics, ComputeStatistics(chunk, *at, 0, RowsOf(number)));
    bytes += GetStoredBytes(chunk, *at, 0, RowsOf(number));
  }
  statistics.elements = bytes / GetElementBytes(at->element);
  return statistics;
}

void ResultDataBlock::AppendRows(const ResultDataBlock& source, const std::vector<std::size_t>& indices)
{
  RequireWritable();
  if (indices.empty()) return;
  for (const std::size_t index : indices) RequireIndex(index);
  // The first record decides how many rows a chunk has.
  ResultRecord first(source, source.GetRecordFormat());
  source.ReachChunk(0).ReadRow(0, first);
  StoreRecord(indices.front(), first);
  while (rowCount_ < indices.size()) {
    const std::size_t from = rowCount_ & (source.GetRowsPerChunk() - 1);
    const std::size_t at   = RowInChunk(rowCount_);
    const std::size_t count =
        std::min({indices.size() - rowCount_, source.GetRowsPerChunk() - from, GetRowsPerChunk() - at});
    const PinnedChunk pinned(source, rowCount_ >> source.layout_.chunkShift);
    AppendRows(pinned.GetColumns(), from, indices.data() + rowCount_, count);
  }
}

// Adds rows of other columns that fit in the last chunk.
void ResultDataBlock::AppendRows(const std::vector<RowColumn>& columns, std::size_t from, const std::size_t* indices,
                                 std::size_t count)
{
  const std::size_t number = rowCount_ >> layout_.chunkShift;
  RowChunk&         chunk  = MakeRoomForRows(layout_, number, RowInChunk(rowCount_), count);
  if (cache_ != nullptr && layout_.hasLists) {
    std::size_t bytes = 0;
    for (const RowColumn& column : columns)
      bytes += std::visit([&](const auto& typed) { return typed.CountElementBytes(from, count); }, column);
    cache_->MakeRoom(bytes);
  }
  {
    const CountedChange change(cache_, chunk);
    const std::size_t   row = RowInColumns(rowCount_, chunk);
    for (std::size_t i = 0; i < columns.size(); ++i)
      std::visit(
          [&](auto& typed) {
            typed.CopyRows(*std::get_if<std::decay_t<decltype(typed)>>(&columns[i]), from, row, row, count);
          },
          chunk.columns[i]);
  }
  for (std::size_t i = 0; i < count; ++i) {
    const auto row = static_cast<std::uint32_t>(rowCount_);
    if (rows_.Find(static_cast<std::uint32_t>(indices[i])) != KeyTable::kNone)
      Fail("index " + std::to_string(indices[i]) + " is given twice");
    rows_.Prepare(static_cast<std::uint32_t>(indices[i]), row);
    if (cache_ != nullptr) keys_.Prepare(static_cast<std::uint32_t>(indices[i]));
    CommitRow(indices[i], row, chunk);
  }
}

void ResultDataBlock::ReadChunkKeys(std::size_t chunk, std::vector<std::uint32_t>& keys) const
{
  if (keysAreLoaded_)
    GetChunkKeys(chunk, keys);
  else
    GetStoredRows().ReadChunkKeys(chunk, RowsOf(chunk), keys);
}

void ResultDataBlock::GetChunkKeys(std::size_t chunk, std::vector<std::uint32_t>& keys) const
{
  const RowKeys&    ofRows = GetKeysOfRows();
  const std::size_t first  = chunk << layout_.chunkShift;
  keys.resize(RowsOf(chunk));
  for (std::size_t i = 0; i < keys.size(); ++i) keys[i] = ofRows.Get(first + i);
}

// In memory nobody else needs the keys of rows.
const RowKeys& ResultDataBlock::GetKeysOfRows() const
{
  if (!keysAreLoaded_) LoadKeys();
  if (keys_.GetCount() != rowCount_) keys_ = rows_.GetRowKeys();
  return keys_;
}

void ResultDataBlock::Fail(const std::string& text) const { ThrowBlockFailure(GetDescriptor(), text, kTag); }

void ResultDataBlock::FailOfIndex(std::size_t index) const
{
  Fail("index is " + std::to_string(index) + ", expected 0 to 2147483647");
}

void ResultDataBlock::FailOfReader() const { Fail("the database is open for reading only"); }

std::uint32_t ResultDataBlock::FindStoredRow(std::uint32_t key) const
{
  LoadKeys();
  return rows_.Find(key);
}

void ResultDataBlock::RequireField(std::size_t field) const
{
  const std::size_t count = layout_.format.GetTypes().size();
  if (field < 1 || field > count)
    Fail("record field is " + std::to_string(field) + ", expected 1 to " + std::to_string(count));
}

void ResultDataBlock::RequireChunk(std::size_t chunk) const
{
  if (chunk >= GetChunkCount())
    Fail("chunk is " + std::to_string(chunk) + ", the block has " + std::to_string(GetChunkCount()));
}

void ResultDataBlock::RequireFit(const ResultRecord& record) const
{
  const std::vector<int>& types  = layout_.format.GetTypes();
  const auto&             fields = record.GetFields();
  if (fields.size() != types.size())
    Fail("the record has " + Count(fields.size(), "field") + ", the record format \"" + layout_.format.ToString() +
         "\" has " + std::to_string(types.size()));
  for (std::size_t i = 0; i < types.size(); ++i) {
    if (fields[i].type == types[i]) continue;
    const FED_FieldType::Class given    = FED_FieldType::GetClass(fields[i].type);
    const FED_FieldType::Class expected = FED_FieldType::GetClass(types[i]);
    if (given != expected)
      Fail("record field " + std::to_string(i + 1) + " is of type " + FED_FieldType::GetName(given) + ", expected " +
           FED_FieldType::GetName(expected));
  }
}

void ResultDataBlock::RequireListLengths(const ResultRecord& record) const
{
  const auto& fields = record.GetFields();
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (const std::size_t length = GetListLength(fields[i].value); length > kMaxListLength)
      Fail("record field " + std::to_string(i + 1) + " has " + std::to_string(length) +
           " elements, expected at most 2147483647");
}

void ResultDataBlock::RequireDoubleFormat() const
{
  if (layout_.format.IsEmpty()) Fail("values were given before the record format is known");
  Fail("the record format is \"" + layout_.format.ToString() + "\", expected one of doubles (D, d, V, T)");
}

std::size_t ResultDataBlock::RowsOf(std::size_t chunk) const noexcept
{
  return std::min(GetRowsPerChunk(), rowCount_ - (chunk << layout_.chunkShift));
}

// Brings a row to memory whose chunk was not reached last, or is there without it.
void ResultDataBlock::Bring(RowChunk& chunk, std::size_t row) const
{
  if (chunk.IsResident() && row >= chunk.firstRow) {
    cache_->Touch(chunk);
    return;
  }
  // Walks in the order of rows, forth or back, come to a chunk at its first row or its last. Where they come elsewhere
  // to one that left the memory, every other record may lie in such a chunk, and reading all of them would read the
  // block once for each.
  const bool isEdge = row == 0 || row + 1 == RowsOf(chunk.number);
  if (chunk.wasThere && !isEdge) cache_->Widen(RowsOf(chunk.number) * layout_.rowBytes);
  Load(chunk);
  chunk.wasThere = true;
  if (!cache_->IsLast(chunk)) cache_->Keep(chunk);
}

RowChunk& ResultDataBlock::ReachChunk(std::size_t chunk) const
{
  AttachChunks();
  return Reach(chunk << layout_.chunkShift);
}

// The rows that are expected, as far as the hint may reserve them: on disk those of the first chunk.
void ResultDataBlock::Reserve(const RecordLayout& layout)
{
  if (layout.format.IsEmpty() || expected_ == 0) return;
  std::size_t rows = std::min(expected_, kMaxExpectedBytes / layout.rowBytes);
  if (cache_ != nullptr) rows = rowCount_ == 0 ? std::min(rows, layout.GetRowsPerChunk()) : 0;
  for (std::size_t first = 0; first < rows; first += layout.GetRowsPerChunk())
    EnsureRows(MakeChunk(first >> layout.chunkShift), std::min(rows - first, layout.GetRowsPerChunk()), layout, true);
}

RowChunk& ResultDataBlock::MakeChunk(std::size_t number)
{
  if (number == chunks_.size())
    chunks_.push_back(std::make_unique<RowChunk>(*this, static_cast<std::uint32_t>(number)));
  return *chunks_[number];
}

void ResultDataBlock::DropChunks() noexcept
{
  if (cache_ != nullptr)
    for (const auto& chunk : chunks_) cache_->Forget(*chunk);
  chunks_.clear();
}

// Makes room for rows of a chunk that is in memory or takes its first rows there.
void ResultDataBlock::EnsureRows(RowChunk& chunk, std::size_t end, const RecordLayout& layout, bool isWhole) const
{
  const auto getGrowth = [&] { return (chunk.CapacityFor(end, layout, isWhole) - chunk.capacity) * layout.rowBytes; };
  if (getGrowth() == 0) return;
  const CountedChange change(cache_, chunk);
  if (cache_ != nullptr) {
    if (!cache_->HasRoom(getGrowth()) && chunk.IsResident())
      chunk.DropStoredRows(rowCount_ - (std::size_t{chunk.number} << layout.chunkShift), layout);
    cache_->Count(chunk);
    cache_->MakeRoom(getGrowth());
  }
  chunk.EnsureRows(end, layout, isWhole);
}

RowChunk& ResultDataBlock::MakeRoomForRows(const RecordLayout& layout, std::size_t number, std::size_t at,
                                           std::size_t count)
{
  RowChunk& chunk = MakeChunk(number);
  // Blocks that are written in turn grow their chunks little by little: whole ones would fill the memory with room that
  // is not used before it is wanted elsewhere.
  bool isWhole = true;
  if (cache_ != nullptr) {
    isWhole = number == 0 || cache_->IsLast(*chunks_[number - 1]);
    // Rows that left the memory stay where they are.
    if (!chunk.IsResident()) chunk.firstRow = static_cast<std::uint32_t>(at);
    // Kept first, so that room for it is not made in its own place.
    if (!cache_->IsLast(chunk)) at > 0 ? cache_->Touch(chunk) : cache_->Keep(chunk);
  }
  EnsureRows(chunk, at + count, layout, isWhole);
  return chunk;
}

// Makes the room that the lists of a record need.
void ResultDataBlock::PrepareLists(RowChunk& chunk, std::size_t row, std::size_t rowCount,
                                   const ResultRecord& record) const
{
  if (cache_ == nullptr) {
    chunk.PrepareRow(row, rowCount, record);
    return;
  }
  const std::size_t growth = chunk.GetGrowth(row, rowCount, record);
  if (growth == 0) return;
  cache_->MakeRoom(growth);
  const CountedChange change(cache_, chunk);
  chunk.PrepareRow(row, rowCount, record);
}

void ResultDataBlock::StoreRecord(std::size_t index, const ResultRecord& record)
{
  RequireWritable();
  RequireIndex(index);
  const auto& fields = record.GetFields();
  if (layout_.format.IsEmpty()) {
    if (fields.empty()) Fail("the record has no fields and the block no record format");
  } else {
    RequireFit(record);
  }
  RequireListLengths(record);
  if (rowCount_ == 0) {
    StoreFirstRecord(index, record);
    return;
  }
  const std::uint32_t present = FindRow(index);
  const bool          isNew   = present == KeyTable::kNone;
  const auto          row     = isNew ? static_cast<std::uint32_t>(rowCount_) : present;
  RowChunk&           chunk   = isNew ? PrepareNewRow(layout_, index) : Reach(row);
  PrepareLists(chunk, RowInColumns(row, chunk), RowsInColumns(chunk), record);
  WriteRow(index, row, chunk, record);
}

// The first record decides how many rows a chunk has, and gives a block without a format its format.
void ResultDataBlock::StoreFirstRecord(std::size_t index, const ResultRecord& record)
{
  RecordLayout layout = layout_.format.IsEmpty() ? RecordLayout(FED_RecordFormat::FromRecord(record)) : layout_;
  if (layout.hasLists) {
    std::size_t bytes = layout.rowBytes;
    for (const ResultRecord::Field& field : record.GetFields()) bytes += GetListBytes(field.value);
    const auto shift  = std::bit_width(std::max<std::size_t>(kListChunkBytes / bytes, 1)) - 1;
    layout.chunkShift = std::min(layout.chunkShift, static_cast<unsigned>(shift));
  }
  if (layout.chunkShift != layout_.chunkShift || layout_.format.IsEmpty()) {
    DropChunks();
    Reserve(layout);
  }
  RowChunk& chunk = PrepareNewRow(layout, index);
  PrepareLists(chunk, 0, 0, record);
  layout_ = std::move(layout);
  WriteRow(index, 0, chunk, record);
}

// Puts a row in prepared places.
void ResultDataBlock::WriteRow(std::size_t index, std::uint32_t row, RowChunk& chunk,
                               const ResultRecord& record) noexcept
{
  chunk.WriteRow(RowInColumns(row, chunk), RowsInColumns(chunk), record);
  CommitRow(index, row, chunk);
}

void ResultDataBlock::AttachChunks() const
{
  if (chunks_.size() >= GetChunkCount()) return;
  std::vector<std::unique_ptr<RowChunk>> chunks;
  for (std::size_t number = 0; number < GetChunkCount(); ++number) {
    GetStoredRows().GetExtents(number, RowsOf(number));
    chunks.push_back(std::make_unique<RowChunk>(*this, static_cast<std::uint32_t>(number)));
    chunks.back()->storedRows = static_cast<std::uint32_t>(RowsOf(number));
  }
  chunks_ = std::move(chunks);
}

void ResultDataBlock::LoadKeys() const
{
  AttachChunks();
  RowKeys  keys = GetStoredRows().ReadKeys(rowCount_);
  KeyTable rows;
  if (keys.IsRun()) {
    rows.InsertRun(keys.Get(0), static_cast<std::uint32_t>(rowCount_));
  } else {
    rows.Expect(expected_);
    for (std::uint32_t row = 0; row < rowCount_; ++row) {
      const std::uint32_t key = keys.Get(row);
      if (rows.Find(key) != KeyTable::kNone) Fail("the store has index " + std::to_string(key) + " twice");
      rows.Prepare(key, row);
      rows.Insert(key, row);
    }
  }
  if (rows.GetMaxKey() != storedMaxKey_)
    Fail("the greatest index of the store's rows is " + std::to_string(rows.GetMaxKey()) + ", expected " +
         std::to_string(storedMaxKey_));
  cache_->CountKeys(*this, rows.CountBytes() + keys.CountBytes());
  rows_          = std::move(rows);
  keys_          = std::move(keys);
  keysAreLoaded_ = true;
}

// Brings all rows of a chunk to memory. When it throws, those that were not there stay in the store.
void ResultDataBlock::Load(RowChunk& chunk) const
{
  const StoredRows  stored = GetStoredRows();
  const std::size_t rows   = RowsOf(chunk.number);
  // Rows that are there already may not go meanwhile.
  if (chunk.IsResident() && !cache_->IsLast(chunk)) cache_->Keep(chunk);
  // May write to the store, so that it is asked again for the extents.
  cache_->MakeRoom(stored.CountBytes(chunk.number, chunk.storedRows) + chunk.bytes);
  chunk.CompleteFrom(stored.Load(chunk.number, chunk.storedRows), rows, layout_);
  cache_->Count(chunk);
}

ResultRecord* ResultDataBlock::KeepScratch() const
{
  scratch_.push_back(std::make_unique<ResultRecord>(*this, layout_.format));
  return scratch_.back().get();
}

template <typename T>
QuilonContainer::Span<const T> ResultDataBlock::GetChunk(std::size_t field, std::size_t chunk) const
{
  RequireField(field);
  RequireChunk(chunk);
  const auto* column = std::get_if<ValueColumn<T>>(&ReachChunk(chunk).columns[field - 1]);
  if (column == nullptr)
    Fail("record field " + std::to_string(field) + " is of type " +
         FED_FieldType::GetName(FED_FieldType::GetClass(layout_.format.GetTypes()[field - 1])));
  return {column->GetRow(0), RowsOf(chunk) * column->GetWidth()};
}
