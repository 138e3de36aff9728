#include "RowChunk.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <type_traits>
#include <utility>

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

// Least and greatest in four lanes, whose comparisons do not wait for each other. A NaN wins no comparison.
template <typename T>
void AddValues(const T* values, std::size_t count, ColumnStatistics& statistics)
{
  constexpr std::size_t kLanes = 4;
  constexpr bool        isReal = std::is_floating_point_v<T>;
  constexpr T           kHigh  = isReal ? std::numeric_limits<T>::infinity() : std::numeric_limits<T>::max();
  constexpr T           kLow   = isReal ? -std::numeric_limits<T>::infinity() : std::numeric_limits<T>::lowest();
  std::array<T, kLanes> least, greatest;
  std::array<std::size_t, kLanes> nans{};
  least.fill(kHigh);
  greatest.fill(kLow);
  const auto add = [&](std::size_t lane, T value) {
    least[lane]    = value < least[lane] ? value : least[lane];
    greatest[lane] = value > greatest[lane] ? value : greatest[lane];
    if constexpr (isReal) nans[lane] += value != value ? 1u : 0u;
  };
  std::size_t i = 0;
  for (; i + kLanes <= count; i += kLanes)
    for (std::size_t lane = 0; lane < kLanes; ++lane) add(lane, values[i + lane]);
  for (; i < count; ++i) add(0, values[i]);
  const std::size_t notNumbers = nans[0] + nans[1] + nans[2] + nans[3];
  statistics.nans += notNumbers;
  statistics.values += count - notNumbers;
  if (count == notNumbers) return;
  // A zero of either sign counts as the positive one, so that the order of rows shows nowhere.
  const auto lowest   = static_cast<double>(*std::min_element(least.begin(), least.end()));
  const auto highest  = static_cast<double>(*std::max_element(greatest.begin(), greatest.end()));
  statistics.least    = std::min(statistics.least, lowest) + 0.0;
  statistics.greatest = std::max(statistics.greatest, highest) + 0.0;
}

template <typename T>
void AddStatistics(const ValueColumn<T>& column, bool, std::size_t firstRow, std::size_t rowCount,
                   ColumnStatistics& statistics)
{
  AddValues(column.GetRow(firstRow), rowCount * column.GetWidth(), statistics);
}

template <typename T>
void AddStatistics(const ListColumn<T>& column, bool ofElements, std::size_t firstRow, std::size_t rowCount,
                   ColumnStatistics& statistics)
{
  if constexpr (!std::is_same_v<T, char>) {
    if (!ofElements) return;
    column.VisitElements(firstRow, rowCount,
                         [&](const T* elements, std::size_t count) { AddValues(elements, count, statistics); });
  }
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

std::size_t RowChunk::CapacityFor(std::size_t rows, const RecordLayout& layout) const noexcept
{
  if (rows <= capacity) return capacity;
  const std::size_t whole = layout.GetRowsPerChunk();
  if (number > 0 && capacity == 0) return whole;
  return std::min(std::max({rows, 2 * capacity, std::size_t{4}}), whole);
}

void RowChunk::EnsureRows(std::size_t rows, const RecordLayout& layout)
{
  if (columns.empty()) columns = MakeColumns(layout);
  const std::size_t wanted = CapacityFor(rows, layout);
  for (RowColumn& column : columns) std::visit([wanted](auto& typed) { typed.EnsureRows(wanted); }, column);
  capacity = wanted;
  if (layout.singleWidth != 0) single = std::get_if<ValueColumn<double>>(&columns.front())->GetRow(0);
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
  capacity = 0;
  single   = nullptr;
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
  return std::visit([&](const auto& typed) { return GetBytesOf(typed, column.isElements, firstRow, rowCount); },
                    chunk.columns[column.field - 1]);
}

void VisitStored(const RowChunk& chunk, const StoredColumn& column, std::size_t firstRow, std::size_t rowCount,
                 const ExtentRows::TakeBytes& take)
{
  std::visit([&](const auto& typed) { VisitBytesOf(typed, column.isElements, firstRow, rowCount, take); },
             chunk.columns[column.field - 1]);
}

ColumnStatistics ComputeStatistics(const RowChunk& chunk, const StoredColumn& column, std::size_t firstRow,
                                   std::size_t rowCount)
{
  ColumnStatistics statistics;
  std::visit([&](const auto& typed) { AddStatistics(typed, column.isElements, firstRow, rowCount, statistics); },
             chunk.columns[column.field - 1]);
  return statistics;
}
