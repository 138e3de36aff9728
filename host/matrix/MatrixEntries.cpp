#include "matrix/MatrixEntries.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <tuple>
#include <utility>

#include "text/Failure.h"

namespace quilon::matrix {

namespace {

void RequireCounts(int numRows, std::size_t numEntries, const std::string& name)
{
  if (numEntries > static_cast<std::size_t>(INT_MAX))
    Fail(name + ": " + std::to_string(numEntries) + " values, expected at most " + std::to_string(INT_MAX));
  if (numRows > static_cast<std::int64_t>(numEntries) + kMaxEmptyRows)
    Fail(name + ": " + std::to_string(numRows) + " rows for " + std::to_string(numEntries) +
         " values, expected at most " + std::to_string(kMaxEmptyRows) + " more rows than values");
}

bool SameBits(double a, double b) { return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b); }

void CheckDuplicates(const std::vector<Entry>& sorted, const std::string& name)
{
  const auto twin = std::adjacent_find(sorted.begin(), sorted.end(), [](const Entry& a, const Entry& b) {
    return a.row == b.row && a.column == b.column;
  });
  if (twin == sorted.end()) return;
  const Entry& second = *std::next(twin);
  Fail(name + ":" + std::to_string(second.line) + ": row " + std::to_string(second.row + 1) + ", column " +
       std::to_string(second.column + 1) + " is given again, expected each entry once (first in line " +
       std::to_string(twin->line) + ")");
}

// Sorts by rows first, which keeps the order in each of them. Files list row by row, as they are wanted, or column by
// column: then every row is in order already.
void Sort(std::vector<Entry>& entries, int numRows)
{
  if (std::is_sorted(entries.begin(), entries.end())) return;
  std::vector<std::size_t> place(static_cast<std::size_t>(numRows) + 1);  // where the next entry of a row goes
  for (const Entry& entry : entries) ++place[static_cast<std::size_t>(entry.row) + 1];
  std::partial_sum(place.begin(), place.end(), place.begin());
  std::vector<Entry> sorted(entries.size());
  for (const Entry& entry : entries) sorted[place[static_cast<std::size_t>(entry.row)]++] = entry;
  auto first = sorted.begin();
  for (int row = 0; row < numRows; ++row) {
    const auto end = sorted.begin() + static_cast<std::ptrdiff_t>(place[static_cast<std::size_t>(row)]);
    if (!std::is_sorted(first, end)) std::sort(first, end);
    first = end;
  }
  entries = std::move(sorted);
}

}  // namespace

bool Entry::operator<(const Entry& other) const noexcept
{
  return std::tie(row, column, line) < std::tie(other.row, other.column, other.line);
}

FED_YaleMatrix Assemble(Entries&& given, const std::string& name)
{
  std::vector<Entry> entries = std::move(given.entries);
  RequireCounts(given.numRows, entries.size(), name);
  Sort(entries, given.numRows);
  CheckDuplicates(entries, name);

  FED_DoubleArray values;
  FED_IntArray    rowPointers;
  FED_IntArray    columns;
  values.Resize(entries.size());
  columns.Resize(entries.size());
  rowPointers.Resize(static_cast<std::size_t>(given.numRows) + 1);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    values.GetData()[i]  = entries[i].value;
    columns.GetData()[i] = entries[i].column;
    ++rowPointers.GetData()[entries[i].row + 1];
  }
  for (int row = 0; row < given.numRows; ++row) rowPointers.GetData()[row + 1] += rowPointers.GetData()[row];

  FED_YaleMatrix matrix;
  matrix.SetInternalData(static_cast<std::size_t>(given.numRows), static_cast<std::size_t>(given.numColumns),
                         std::move(values), std::move(rowPointers), std::move(columns));
  return matrix;
}

EntryCollector::EntryCollector(int numRows, int numColumns, std::size_t most)
    : list_{numRows, numColumns, {}}, most_(most)
{
  values_.Resize(most);
  columns_.Resize(most);
  value_  = values_.GetData();
  column_ = columns_.GetData();
}

void EntryCollector::AddToList(const Entry& entry)
{
  if (most_ > 0) {
    list_.entries.reserve(most_);
    auto rows  = rows_.begin();
    auto lines = lines_.begin();
    for (std::size_t i = 0; i < size_; ++i) {
      if (std::next(rows) != rows_.end() && std::next(rows)->first == i) ++rows;
      if (std::next(lines) != lines_.end() && std::next(lines)->first == i) ++lines;
      const auto line = lines->line + static_cast<std::int64_t>(i - lines->first);
      list_.entries.push_back({rows->row, column_[i], value_[i], line});
    }
    values_.Resize(0);
    columns_.Resize(0);
    most_ = size_ = 0;
  }
  list_.entries.push_back(entry);
}

FED_YaleMatrix EntryCollector::Take(const std::string& name)
{
  if (most_ == 0) return Assemble(std::move(list_), name);
  RequireCounts(list_.numRows, size_, name);
  values_.Resize(size_);
  columns_.Resize(size_);
  FED_IntArray rowPointers;
  rowPointers.Resize(static_cast<std::size_t>(list_.numRows) + 1);
  int* const pointer = rowPointers.GetData();
  int        row     = 0;
  for (const RowStart& start : rows_)
    while (row <= start.row) pointer[row++] = static_cast<int>(start.first);
  while (row <= list_.numRows) pointer[row++] = static_cast<int>(size_);

  FED_YaleMatrix matrix;
  matrix.SetInternalData(static_cast<std::size_t>(list_.numRows), static_cast<std::size_t>(list_.numColumns),
                         std::move(values_), std::move(rowPointers), std::move(columns_));
  return matrix;
}

RowView::RowView(const FED_YaleMatrix& matrix, const std::string& name)
    : rowPointers_(matrix.GetRowPointers().GetData()),
      columns_(matrix.GetColumnIndices().GetData()),
      values_(matrix.GetValues().GetData())
{
  const std::size_t numRows     = matrix.GetNumRows();
  const std::size_t numColumns  = matrix.GetNumColumns();
  const std::size_t numValues   = matrix.GetValues().GetSize();
  const std::size_t numPointers = matrix.GetRowPointers().GetSize();
  const std::size_t numIndices  = matrix.GetColumnIndices().GetSize();
  constexpr auto    kMost       = static_cast<std::size_t>(INT_MAX);
  if (numRows > kMost || numColumns > kMost)
    Fail(name + ": " + std::to_string(numRows) + " rows and " + std::to_string(numColumns) +
         " columns, expected at most " + std::to_string(kMost));
  if (numPointers != numRows + 1)
    Fail(name + ": " + std::to_string(numPointers) + " row pointers, expected " + std::to_string(numRows + 1));
  if (numIndices != numValues)
    Fail(name + ": " + std::to_string(numIndices) + " column indices for " + std::to_string(numValues) +
         " values, expected one each");
  numRows_    = static_cast<std::int64_t>(numRows);
  numColumns_ = static_cast<std::int64_t>(numColumns);
  numValues_  = static_cast<std::int64_t>(numValues);

  base_ = rowPointers_[0];
  if (base_ != 0 && base_ != 1)
    Fail(name + ": the first row pointer is " + std::to_string(base_) + ", expected 0 or 1");
  for (std::int64_t row = 0; row < numRows_; ++row)
    if (rowPointers_[row + 1] < rowPointers_[row])
      Fail(name + ": row pointer " + std::to_string(row + 2) + " is " + std::to_string(rowPointers_[row + 1]) +
           ", expected " + std::to_string(rowPointers_[row]) + " or more");
  if (Begin(numRows_) != numValues_)
    Fail(name + ": the last row pointer is " + std::to_string(rowPointers_[numRows_]) + ", expected " +
         std::to_string(numValues_ + base_));
  for (std::int64_t i = 0; i < numValues_; ++i)
    if (Column(i) < 0 || Column(i) >= numColumns_)
      Fail(name + ": column index " + std::to_string(i + 1) + " is " + std::to_string(columns_[i]) + ", expected " +
           std::to_string(base_) + " to " + std::to_string(numColumns_ - 1 + base_));
}

std::vector<Entry> RowView::List() const
{
  std::vector<Entry> entries;
  entries.reserve(static_cast<std::size_t>(numValues_));
  for (std::int64_t row = 0; row < numRows_; ++row)
    for (std::int64_t i = Begin(row); i < Begin(row + 1); ++i)
      entries.push_back({static_cast<int>(row), static_cast<int>(Column(i)), Value(i), 0});
  return entries;
}

void RequireDistinct(const RowView& rows, const std::string& name)
{
  std::vector<std::int64_t> columns;
  for (std::int64_t row = 0; row < rows.NumRows(); ++row) {
    columns.clear();
    for (std::int64_t i = rows.Begin(row); i < rows.Begin(row + 1); ++i) columns.push_back(rows.Column(i));
    std::sort(columns.begin(), columns.end());
    const auto twin = std::adjacent_find(columns.begin(), columns.end());
    if (twin != columns.end())
      Fail(name + ": row " + std::to_string(row + 1) + ", column " + std::to_string(*twin + 1) +
           " stands twice, expected each entry once");
  }
}

Symmetry FindSymmetry(std::vector<Entry> entries, bool isSquare)
{
  if (!isSquare) return Symmetry::General;
  std::vector<Entry> transposed = entries;
  for (Entry& entry : transposed) std::swap(entry.row, entry.column);
  std::sort(entries.begin(), entries.end());
  std::sort(transposed.begin(), transposed.end());

  bool isSymmetric = true;
  bool isSkew      = !entries.empty();
  for (std::size_t i = 0; i < entries.size() && (isSymmetric || isSkew); ++i) {
    const Entry& entry = entries[i];
    const Entry& other = transposed[i];
    if (entry.row != other.row || entry.column != other.column) return Symmetry::General;
    isSymmetric = isSymmetric && SameBits(entry.value, other.value);
    isSkew      = isSkew && entry.row != entry.column && SameBits(entry.value, -other.value);
  }
  return isSymmetric ? Symmetry::Symmetric : isSkew ? Symmetry::SkewSymmetric : Symmetry::General;
}

}  // namespace quilon::matrix
