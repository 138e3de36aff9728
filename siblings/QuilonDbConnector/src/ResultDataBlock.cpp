#include "ResultDataBlock.h"

#include <algorithm>
#include <bit>
#include <string>
#include <utility>

#include "DbFailure.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|ResultDataBlock";

// A hint is a claim: what it may reserve in advance is bounded, the rest comes with the records.
constexpr std::size_t kMaxExpectedBytes = std::size_t{256} << 20;

constexpr std::size_t kMaxListLength = 0x7fffffff;

std::size_t GetRowBytes(const FED_RecordFormat& format) noexcept
{
  std::size_t bytes = 0;
  for (const int type : format.GetTypes()) {
    const FED_FieldType::Class fieldClass = FED_FieldType::GetClass(type);
    switch (fieldClass) {
      case FED_FieldType::Integer:
        bytes += sizeof(int);
        break;
      case FED_FieldType::Float:
        bytes += sizeof(float);
        break;
      case FED_FieldType::Double:
      case FED_FieldType::Vector:
      case FED_FieldType::Tensor:
        bytes += sizeof(double) * FED_FieldType::GetDoubleCount(fieldClass);
        break;
      default:
        bytes += sizeof(ListSlot);
        break;
    }
  }
  return bytes;
}

// What a column takes from a field: where its elements are, and how many. Lists alone use the length.
struct Elements
{
  const void* data;
  std::size_t length;
};

Elements GetElements(const ResultRecord::Value& value) noexcept
{
  if (const auto* integer = std::get_if<int>(&value)) return {integer, 1};
  if (const auto* real = std::get_if<float>(&value)) return {real, 1};
  if (const auto* doubles = std::get_if<ResultRecord::Doubles>(&value)) return {doubles->data(), doubles->size()};
  if (const auto* text = std::get_if<std::string>(&value)) return {text->data(), text->size()};
  if (const auto* integers = std::get_if<FED_IntArray>(&value)) return {integers->GetData(), integers->GetSize()};
  const auto* list = std::get_if<FED_DoubleArray>(&value);
  return {list->GetData(), list->GetSize()};
}

template <typename T>
void PrepareField(ValueColumn<T>&, std::size_t, std::size_t, const Elements&)
{}

template <typename T>
void PrepareField(ListColumn<T>& column, std::size_t row, std::size_t rowCount, const Elements& elements)
{
  column.Prepare(row, rowCount, elements.length);
}

template <typename T>
void WriteField(ValueColumn<T>& column, std::size_t row, std::size_t, const Elements& elements) noexcept
{
  std::copy_n(static_cast<const T*>(elements.data), column.GetWidth(), column.GetRow(row));
}

template <typename T>
void WriteField(ListColumn<T>& column, std::size_t row, std::size_t rowCount, const Elements& elements) noexcept
{
  column.SetRow(row, rowCount, static_cast<const T*>(elements.data), elements.length);
}

void ReadField(const ValueColumn<int>& column, std::size_t row, ResultRecord::Value& value)
{
  std::get<int>(value) = *column.GetRow(row);
}

void ReadField(const ValueColumn<float>& column, std::size_t row, ResultRecord::Value& value)
{
  std::get<float>(value) = *column.GetRow(row);
}

void ReadField(const ValueColumn<double>& column, std::size_t row, ResultRecord::Value& value)
{
  std::copy_n(column.GetRow(row), column.GetWidth(), std::get<ResultRecord::Doubles>(value).begin());
}

void ReadField(const ListColumn<char>& column, std::size_t row, ResultRecord::Value& value)
{
  std::get<std::string>(value).assign(column.GetRow(row), column.GetLength(row));
}

void ReadField(const ListColumn<int>& column, std::size_t row, ResultRecord::Value& value)
{
  auto& list = std::get<FED_IntArray>(value);
  list.Resize(column.GetLength(row));
  std::copy_n(column.GetRow(row), list.GetSize(), list.GetData());
}

void ReadField(const ListColumn<double>& column, std::size_t row, ResultRecord::Value& value)
{
  auto& list = std::get<FED_DoubleArray>(value);
  list.Resize(column.GetLength(row));
  std::copy_n(column.GetRow(row), list.GetSize(), list.GetData());
}

// Widths are 1, 3 and 6: copied in place, where a general copy would be a call for each record.
template <std::size_t width>
void CopyWidth(const double* from, double* to) noexcept
{
  for (std::size_t i = 0; i < width; ++i) to[i] = from[i];
}

void CopyDoubles(const double* from, std::size_t width, double* to) noexcept
{
  switch (width) {
    case 1:
      CopyWidth<1>(from, to);
      break;
    case 3:
      CopyWidth<3>(from, to);
      break;
    default:
      CopyWidth<6>(from, to);
      break;
  }
}

std::string Count(std::size_t count, const char* what)
{
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

}  // namespace

ResultDataBlock::Columns::Columns(const FED_RecordFormat& recordFormat)
    : format(recordFormat), doubleCount(recordFormat.GetDoubleCount())
{
  const std::size_t rowBytes = std::max<std::size_t>(GetRowBytes(format), 1);
  chunkShift = static_cast<unsigned>(std::bit_width(std::max<std::size_t>(kMaxChunkBytes / rowBytes, 1)) - 1);
  columns.reserve(format.GetTypes().size());
  for (const int type : format.GetTypes()) {
    const FED_FieldType::Class fieldClass = FED_FieldType::GetClass(type);
    switch (fieldClass) {
      case FED_FieldType::Integer:
        columns.emplace_back(ValueColumn<int>(1, chunkShift));
        break;
      case FED_FieldType::Float:
        columns.emplace_back(ValueColumn<float>(1, chunkShift));
        break;
      case FED_FieldType::String:
        columns.emplace_back(ListColumn<char>(chunkShift));
        break;
      case FED_FieldType::IntList:
        columns.emplace_back(ListColumn<int>(chunkShift));
        break;
      case FED_FieldType::DoubleList:
        columns.emplace_back(ListColumn<double>(chunkShift));
        break;
      default:
        columns.emplace_back(ValueColumn<double>(FED_FieldType::GetDoubleCount(fieldClass), chunkShift));
        break;
    }
  }
  if (columns.size() == 1) single = std::get_if<ValueColumn<double>>(&columns.front());
}

ResultDataBlock::ResultDataBlock(const FED_DataDescriptor& descriptor, const FED_RecordFormat& format)
    : FED_ColumnDataBlock(descriptor), columns_(format)
{}

void ResultDataBlock::SetRecordFormat(const FED_RecordFormat& format)
{
  Columns columns(format);
  Reserve(columns);
  columns_ = std::move(columns);
}

void ResultDataBlock::Expect(std::size_t records)
{
  if (records == 0) return;
  rows_.Expect(records);
  expected_ = records;
  Reserve(columns_);
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
  auto*             own = dynamic_cast<ResultRecord*>(&record);
  if (own == nullptr) {
    auto* writable = dynamic_cast<FED_DataRecord*>(&record);
    if (writable == nullptr) Fail("the read-only scratch record was not made by a block of this database");
    ResultRecord copy(*this, columns_.format);
    GetRecord(index, copy);
    CopyRecord(copy, *writable);
    return;
  }
  if (own->HasFormat())
    RequireFit(*own);
  else
    own->SetFormat(columns_.format);
  std::vector<ResultRecord::Field>& fields = own->GetFields();
  for (std::size_t i = 0; i < fields.size(); ++i)
    std::visit([&](const auto& column) { ReadField(column, row, fields[i].value); }, columns_.columns[i]);
}

std::size_t ResultDataBlock::GetSize() const { return rows_.GetMaxKey(); }

std::size_t ResultDataBlock::GetMaxIndex() const { return rows_.GetMaxKey(); }

void ResultDataBlock::SetScalarAt(std::size_t index, double value)
{
  if (columns_.doubleCount == 1) {
    SetValuesAt(index, &value);
    return;
  }
  if (!columns_.format.IsEmpty())
    Fail("a scalar was given, the record format is \"" + columns_.format.ToString() + '"');
  RequireIndex(index);
  Columns columns(FED_RecordFormat::Parse("D"));
  Reserve(columns);
  const std::uint32_t row      = PrepareNewRow(columns, index);
  *columns.single->GetRow(row) = value;
  columns_                     = std::move(columns);
  CommitRow(index, row);
}

double ResultDataBlock::GetScalarAt(std::size_t index) const
{
  const std::size_t row = GetRow(index);
  if (columns_.doubleCount != 1)
    Fail("a scalar was asked for, the record format is \"" + columns_.format.ToString() + '"');
  return *columns_.single->GetRow(row);
}

void ResultDataBlock::SetValuesAt(std::size_t index, const double* values)
{
  if (columns_.doubleCount == 0) RequireDoubleFormat();
  std::uint32_t row = FindRow(index);
  if (row == KeyTable::kNone) row = PrepareNewRow(columns_, index);
  if (columns_.single != nullptr) {
    CopyDoubles(values, columns_.single->GetWidth(), columns_.single->GetRow(row));
  } else {
    for (Column& column : columns_.columns) {
      auto& doubles = *std::get_if<ValueColumn<double>>(&column);
      CopyDoubles(values, doubles.GetWidth(), doubles.GetRow(row));
      values += doubles.GetWidth();
    }
  }
  CommitRow(index, row);
}

void ResultDataBlock::GetValuesAt(std::size_t index, double* out) const
{
  const std::size_t row = GetRow(index);
  if (columns_.single != nullptr) {
    CopyDoubles(columns_.single->GetRow(row), columns_.single->GetWidth(), out);
    return;
  }
  if (columns_.doubleCount == 0) RequireDoubleFormat();
  for (const Column& column : columns_.columns) {
    const auto& doubles = *std::get_if<ValueColumn<double>>(&column);
    CopyDoubles(doubles.GetRow(row), doubles.GetWidth(), out);
    out += doubles.GetWidth();
  }
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

std::vector<std::size_t> ResultDataBlock::GetIndices() const
{
  const std::vector<std::uint32_t> keys = rows_.GetKeys();
  return std::vector<std::size_t>(keys.begin(), keys.end());
}

std::size_t ResultDataBlock::GetRow(std::size_t index) const
{
  const std::uint32_t row = FindRow(index);
  if (row == KeyTable::kNone) Fail("no record at index " + std::to_string(index));
  return row;
}

std::size_t ResultDataBlock::GetRowsPerChunk() const noexcept { return std::size_t{1} << columns_.chunkShift; }

std::size_t ResultDataBlock::GetChunkCount() const noexcept
{
  return (GetRecordCount() + GetRowsPerChunk() - 1) >> columns_.chunkShift;
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

void ResultDataBlock::Fail(const std::string& text) const { ThrowBlockFailure(GetDescriptor(), text, kTag); }

std::uint32_t ResultDataBlock::FindRow(std::size_t index) const noexcept
{
  return index <= KeyTable::kMaxKey ? rows_.Find(static_cast<std::uint32_t>(index)) : KeyTable::kNone;
}

// The rows that are expected, as far as the hint may reserve them.
void ResultDataBlock::Reserve(Columns& columns) const
{
  if (columns.columns.empty()) return;
  const std::size_t rows = std::min(expected_, kMaxExpectedBytes / GetRowBytes(columns.format));
  EnsureRows(columns, rows);
}

void ResultDataBlock::EnsureRows(Columns& columns, std::size_t rows)
{
  for (Column& column : columns.columns) std::visit([rows](auto& typed) { typed.EnsureRows(rows); }, column);
}

void ResultDataBlock::RequireIndex(std::size_t index) const
{
  if (index > KeyTable::kMaxKey) Fail("index is " + std::to_string(index) + ", expected 0 to 2147483647");
}

// Room behind all rows for an index that has none.
std::uint32_t ResultDataBlock::PrepareNewRow(Columns& columns, std::size_t index)
{
  RequireIndex(index);
  const auto row = static_cast<std::uint32_t>(rows_.GetCount());
  if (columns.single != nullptr)
    columns.single->EnsureRows(std::size_t{row} + 1);
  else
    EnsureRows(columns, std::size_t{row} + 1);
  rows_.Prepare(static_cast<std::uint32_t>(index), row);
  return row;
}

void ResultDataBlock::CommitRow(std::size_t index, std::uint32_t row) noexcept
{
  if (row == rows_.GetCount()) rows_.Insert(static_cast<std::uint32_t>(index), row);
}

void ResultDataBlock::RequireFit(const ResultRecord& record) const
{
  const std::vector<int>& types  = columns_.format.GetTypes();
  const auto&             fields = record.GetFields();
  if (fields.size() != types.size())
    Fail("the record has " + Count(fields.size(), "field") + ", the record format \"" + columns_.format.ToString() +
         "\" has " + std::to_string(types.size()));
  for (std::size_t i = 0; i < types.size(); ++i) {
    const FED_FieldType::Class given    = FED_FieldType::GetClass(fields[i].type);
    const FED_FieldType::Class expected = FED_FieldType::GetClass(types[i]);
    if (given != expected)
      Fail("record field " + std::to_string(i + 1) + " is of type " + FED_FieldType::GetName(given) + ", expected " +
           FED_FieldType::GetName(expected));
  }
}

void ResultDataBlock::RequireDoubleFormat() const
{
  if (columns_.format.IsEmpty()) Fail("values were given before the record format is known");
  Fail("the record format is \"" + columns_.format.ToString() + "\", expected one of doubles (D, d, V, T)");
}

void ResultDataBlock::StoreRecord(std::size_t index, const ResultRecord& record)
{
  RequireIndex(index);
  const auto& fields  = record.GetFields();
  const bool  isFirst = columns_.format.IsEmpty();
  Columns     adopted;
  if (isFirst) {
    if (fields.empty()) Fail("the record has no fields and the block no record format");
    adopted = Columns(FED_RecordFormat::FromRecord(record));
    Reserve(adopted);
  } else {
    RequireFit(record);
  }
  Columns&            columns  = isFirst ? adopted : columns_;
  const std::size_t   rowCount = rows_.GetCount();
  const std::uint32_t present  = FindRow(index);
  const std::uint32_t row      = present != KeyTable::kNone ? present : PrepareNewRow(columns, index);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Elements elements = GetElements(fields[i].value);
    if (elements.length > kMaxListLength)
      Fail("record field " + std::to_string(i + 1) + " has " + std::to_string(elements.length) +
           " elements, expected at most 2147483647");
    std::visit([&](auto& column) { PrepareField(column, row, rowCount, elements); }, columns.columns[i]);
  }
  // Nothing throws from here on.
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Elements elements = GetElements(fields[i].value);
    std::visit([&](auto& column) { WriteField(column, row, rowCount, elements); }, columns.columns[i]);
  }
  if (isFirst) columns_ = std::move(adopted);
  CommitRow(index, row);
}

ResultRecord* ResultDataBlock::KeepScratch() const
{
  scratch_.push_back(std::make_unique<ResultRecord>(*this, columns_.format));
  return scratch_.back().get();
}

template <typename T>
QuilonContainer::Span<const T> ResultDataBlock::GetChunk(std::size_t field, std::size_t chunk) const
{
  if (field < 1 || field > columns_.columns.size())
    Fail("record field is " + std::to_string(field) + ", expected 1 to " + std::to_string(columns_.columns.size()));
  if (chunk >= GetChunkCount())
    Fail("chunk is " + std::to_string(chunk) + ", the block has " + std::to_string(GetChunkCount()));
  const auto* column = std::get_if<ValueColumn<T>>(&columns_.columns[field - 1]);
  if (column == nullptr)
    Fail("record field " + std::to_string(field) + " is of type " +
         FED_FieldType::GetName(FED_FieldType::GetClass(columns_.format.GetTypes()[field - 1])));
  const std::size_t first = chunk << columns_.chunkShift;
  const std::size_t rows  = std::min(GetRowsPerChunk(), GetRecordCount() - first);
  return {column->GetRow(first), rows * column->GetWidth()};
}
