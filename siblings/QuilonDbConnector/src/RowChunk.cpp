#include "RowChunk.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <type_traits>
#include <utility>

#include "Statistics.h"

namespace {

// Rows of a chunk whose format has lists, unless its first record is a long one.
constexpr unsigned kListChunkShift = 12;

std::size_t GetFieldBytes(FED_FieldType::Class fieldClass) noexcept
{
  switch (fieldClass) {
    case FED_FieldType::Integer:
      return sizeof(int);
    case FED_FieldType::Float:
      return sizeof(float);
    case FED_FieldType::String:
    case FED_FieldType::IntList:
    case FED_FieldType::DoubleList:
      return sizeof(ListSlot<char>);
    default:
      return sizeof(double) * FED_FieldType::GetDoubleCount(fieldClass);
  }
}

template <typename T>
std::uint64_t GetBytesOf(const ValueColumn<T>& column, bool, std::size_t, std::size_t rowCount)
{
  return std::uint64_t{rowCount} * column.GetWidth() * sizeof(T);
}

template <typename T>
std::uint64_t GetBytesOf(const ListColumn<T>& column, bool ofElements, std::size_t firstRow, std::size_t rowCount)
{
  return ofElements ? std::uint64_t{column.GetLength(firstRow, rowCount)} * sizeof(T)
                    : std::uint64_t{rowCount} * sizeof(std::uint32_t);
}

template <typename T>
void VisitBytesOf(const ValueColumn<T>& column, bool, std::size_t firstRow, std::size_t rowCount,
                  const ExtentRows::TakeBytes& take)
{
  take(column.GetRow(firstRow), rowCount * column.GetWidth() * sizeof(T));
}

template <typename T>
void VisitBytesOf(const ListColumn<T>& column, bool ofElements, std::size_t firstRow, std::size_t rowCount,
                  const ExtentRows::TakeBytes& take)
{
  if (ofElements) {
    column.VisitElements(firstRow, rowCount,
                         [&take](const T* elements, std::size_t count) { take(elements, count * sizeof(T)); });
    return;
  }
  std::array<std::uint32_t, 1024> lengths;
  for (std::size_t done = 0; done < rowCount;) {
    const std::size_t count = std::min(lengths.size(), rowCount - done);
    for (std::size_t i = 0; i < count; ++i)
      lengths[i] = static_cast<std::uint32_t>(column.GetLength(firstRow + done + i));
    take(lengths.data(), count * sizeof(std::uint32_t));
    done += count;
  }
}

template <typename T>
constexpr StoredColumn::Element kElement = std::is_same_v<T, int>     ? StoredColumn::Int32
                                           : std::is_same_v<T, float> ? StoredColumn::Float32
                                                                      : StoredColumn::Float64;

template <typename T>
void AddStatistics(const ValueColumn<T>& column, bool, std::size_t firstRow, std::size_t rowCount,
                   ColumnStatistics& statistics)
{
  AddStatistics(kElement<T>, column.GetRow(firstRow), rowCount * column.GetWidth() * sizeof(T), statistics);
}

template <typename T>
void AddStatistics(const ListColumn<T>& column, bool ofElements, std::size_t firstRow, std::size_t rowCount,
                   ColumnStatistics& statistics)
{
  if constexpr (!std::is_same_v<T, char>) {
    if (!ofElements) return;
    column.VisitElements(firstRow, rowCount, [&](const T* elements, std::size_t count) {
      AddStatistics(kElement<T>, elements, count * sizeof(T), statistics);
    });
  }
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

// Calls visit(column, elements) for each field of a record and its column.
template <typename Columns, typename Visit>
void VisitFields(Columns& columns, const ResultRecord& record, Visit visit)
{
  const std::vector<ResultRecord::Field>& fields = record.GetFields();
  for (std::size_t i = 0; i < fields.size(); ++i)
    std::visit([&](auto& column) { visit(column, GetElements(fields[i].value)); }, columns[i]);
}

}  // namespace

RecordLayout::RecordLayout(const FED_RecordFormat& recordFormat)
    : format(recordFormat), doubleCount(recordFormat.GetDoubleCount())
{
  for (const int type : format.GetTypes()) {
    const FED_FieldType::Class fieldClass = FED_FieldType::GetClass(type);
    rowBytes += GetFieldBytes(fieldClass);
    hasLists = hasLists || fieldClass == FED_FieldType::String || fieldClass == FED_FieldType::IntList ||
               fieldClass == FED_FieldType::DoubleList;
  }
  const std::size_t most = std::max<std::size_t>(kMaxChunkBytes / std::max<std::size_t>(rowBytes, 1), 1);
  chunkShift             = static_cast<unsigned>(std::bit_width(most) - 1);
  if (hasLists) chunkShift = std::min(chunkShift, kListChunkShift);
  if (format.GetTypes().size() == 1) singleWidth = doubleCount;
}

std::vector<RowColumn> RowChunk::MakeColumns(const RecordLayout& layout)
{
  std::vector<RowColumn> columns;
  columns.reserve(layout.format.GetTypes().size());
  for (const int type : layout.format.GetTypes()) {
    const FED_FieldType::Class fieldClass = FED_FieldType::GetClass(type);
    switch (fieldClass) {
      case FED_FieldType::Integer:
        columns.emplace_back(ValueColumn<int>(1));
        break;
      case FED_FieldType::Float:
        columns.emplace_back(ValueColumn<float>(1));
        break;
      case FED_FieldType::String:
        columns.emplace_back(ListColumn<char>());
        break;
      case FED_FieldType::IntList:
        columns.emplace_back(ListColumn<int>());
        break;
      case FED_FieldType::DoubleList:
        columns.emplace_back(ListColumn<double>());
        break;
      default:
        columns.emplace_back(ValueColumn<double>(FED_FieldType::GetDoubleCount(fieldClass)));
        break;
    }
  }
  return columns;
}

std::size_t RowChunk::CapacityFor(std::size_t end, const RecordLayout& layout, bool isWhole) const noexcept
{
  const std::size_t rows = end - firstRow;
  if (rows <= capacity) return capacity;
  const std::size_t most = layout.GetRowsPerChunk() - firstRow;
  if (isWhole && number > 0 && capacity == 0) return most;
  return std::min(std::max({rows, 2 * capacity, std::size_t{4}}), most);
}

void RowChunk::EnsureRows(std::size_t end, const RecordLayout& layout, bool isWhole)
{
  if (columns.empty()) columns = MakeColumns(layout);
  const std::size_t wanted = CapacityFor(end, layout, isWhole);
  for (RowColumn& column : columns) std::visit([wanted](auto& typed) { typed.EnsureRows(wanted); }, column);
  capacity = wanted;
  if (layout.singleWidth != 0) single = std::get_if<ValueColumn<double>>(&columns.front())->GetRow(0);
}

void RowChunk::DropStoredRows(std::size_t end, const RecordLayout& layout)
{
  const std::size_t first = IsDirty() ? dirtyFirst : end;
  // Copied rows are to pay with at least as many that go.
  if (wasLoaded || first == firstRow || first - firstRow < end - first) return;
  if (first == end) {
    Unload();
  } else {
    std::vector<RowColumn> kept = MakeColumns(layout);
    CopyTo(kept, first, 0, 0, end - first);
    SetColumns(std::move(kept), end - first, layout);
  }
  firstRow = static_cast<std::uint32_t>(first);
}

void RowChunk::CompleteFrom(std::vector<RowColumn> loaded, std::size_t end, const RecordLayout& layout)
{
  if (IsDirty()) CopyTo(loaded, firstRow, firstRow, storedRows, end - firstRow);
  SetColumns(std::move(loaded), end, layout);
  firstRow  = 0;
  wasLoaded = true;
}

// Copies rows from `first` on to the rows of other columns from `row` on, which hold `rowCount` records before.
void RowChunk::CopyTo(std::vector<RowColumn>& others, std::size_t first, std::size_t row, std::size_t rowCount,
                      std::size_t count) const
{
  for (std::size_t i = 0; i < others.size(); ++i)
    std::visit(
        [&](auto& typed) {
          typed.EnsureRows(row + count);
          typed.CopyRows(*std::get_if<std::decay_t<decltype(typed)>>(&columns[i]), first - firstRow, row, rowCount,
                         count);
        },
        others[i]);
}

void RowChunk::SetColumns(std::vector<RowColumn> complete, std::size_t rows, const RecordLayout& layout) noexcept
{
  columns  = std::move(complete);
  capacity = rows;
  if (layout.singleWidth != 0) single = std::get_if<ValueColumn<double>>(&columns.front())->GetRow(0);
}

void RowChunk::Unload() noexcept
{
  std::vector<RowColumn>().swap(columns);
  capacity  = 0;
  firstRow  = 0;
  single    = nullptr;
  wasLoaded = false;
}

std::size_t RowChunk::GetGrowth(std::size_t row, std::size_t rowCount, const ResultRecord& record) const noexcept
{
  std::size_t growth = 0;
  VisitFields(columns, record, [&](const auto& column, const Elements& elements) {
    growth += column.GetGrowth(row, rowCount, elements.length);
  });
  return growth;
}

void RowChunk::PrepareRow(std::size_t row, std::size_t rowCount, const ResultRecord& record)
{
  VisitFields(columns, record,
              [&](auto& column, const Elements& elements) { column.Prepare(row, rowCount, elements.length); });
}

void RowChunk::WriteRow(std::size_t row, std::size_t rowCount, const ResultRecord& record) noexcept
{
  VisitFields(columns, record, [&](auto& column, const Elements& elements) {
    using Element = typename std::decay_t<decltype(column)>::Element;
    column.SetRow(row, rowCount, static_cast<const Element*>(elements.data), elements.length);
  });
}

void RowChunk::ReadRow(std::size_t row, ResultRecord& record) const
{
  std::vector<ResultRecord::Field>& fields = record.GetFields();
  for (std::size_t i = 0; i < fields.size(); ++i)
    std::visit([&](const auto& column) { ReadField(column, row, fields[i].value); }, columns[i]);
}

void RowChunk::WriteDoubles(std::size_t row, const double* values) noexcept
{
  for (RowColumn& column : columns) {
    auto& doubles = *std::get_if<ValueColumn<double>>(&column);
    CopyDoubles(values, doubles.GetWidth(), doubles.GetRow(row));
    values += doubles.GetWidth();
  }
}

void RowChunk::ReadDoubles(std::size_t row, double* out) const noexcept
{
  for (const RowColumn& column : columns) {
    const auto& doubles = *std::get_if<ValueColumn<double>>(&column);
    CopyDoubles(doubles.GetRow(row), doubles.GetWidth(), out);
    out += doubles.GetWidth();
  }
}

std::size_t RowChunk::CountBytes() const noexcept
{
  std::size_t sum = 0;
  for (const RowColumn& column : columns) sum += std::visit([](const auto& typed) { return typed.GetBytes(); }, column);
  return sum;
}

std::uint64_t GetStoredBytes(const RowChunk& chunk, const StoredColumn& column, std::size_t firstRow,
                             std::size_t rowCount)
{
  return std::visit(
      [&](const auto& typed) { return GetBytesOf(typed, column.isElements, firstRow - chunk.firstRow, rowCount); },
      chunk.columns[column.field - 1]);
}

void VisitStored(const RowChunk& chunk, const StoredColumn& column, std::size_t firstRow, std::size_t rowCount,
                 const ExtentRows::TakeBytes& take)
{
  std::visit(
      [&](const auto& typed) { VisitBytesOf(typed, column.isElements, firstRow - chunk.firstRow, rowCount, take); },
      chunk.columns[column.field - 1]);
}

ColumnStatistics ComputeStatistics(const RowChunk& chunk, const StoredColumn& column, std::size_t firstRow,
                                   std::size_t rowCount)
{
  ColumnStatistics statistics;
  std::visit(
      [&](const auto& typed) {
        AddStatistics(typed, column.isElements, firstRow - chunk.firstRow, rowCount, statistics);
      },
      chunk.columns[column.field - 1]);
  return statistics;
}

std::size_t GetListLength(const ResultRecord::Value& value) noexcept
{
  const bool isList = std::holds_alternative<std::string>(value) || std::holds_alternative<FED_IntArray>(value) ||
                      std::holds_alternative<FED_DoubleArray>(value);
  return isList ? GetElements(value).length : 0;
}

std::size_t GetListBytes(const ResultRecord::Value& value) noexcept
{
  const std::size_t length = GetListLength(value);
  if (std::holds_alternative<FED_IntArray>(value)) return length * sizeof(int);
  if (std::holds_alternative<FED_DoubleArray>(value)) return length * sizeof(double);
  return length;
}
