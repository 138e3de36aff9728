#include "StoredRows.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <variant>

#include "DbFailure.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|StoredRows";

std::string CountRows(std::size_t rows) { return std::to_string(rows) + (rows == 1 ? " row" : " rows"); }

}  // namespace

StoredRows::Extents StoredRows::GetExtents(std::size_t chunk, std::size_t rows) const
{
  const std::size_t first   = GetFirstRow(chunk);
  const std::size_t end     = first + rows;
  Extents           extents = {store_.GetExtents(uid_, static_cast<std::uint32_t>(chunk))};
  const auto        fail    = [&](const std::string& text) {
    Fail("chunk " + std::to_string(chunk) + " of the store " + text + ", expected rows " + std::to_string(first) +
                   " to " + std::to_string(end - 1));
  };
  std::vector<std::pair<std::size_t, std::size_t>> ranges;
  for (const StoredExtent& extent : extents.list) {
    const std::size_t extentEnd = std::size_t{extent.firstRow} + extent.rowCount;
    if (extent.rowCount == 0 || extent.firstRow < first || extentEnd > end)
      fail("has " + CountRows(extent.rowCount) + " from row " + std::to_string(extent.firstRow) + " on");
    ranges.emplace_back(extent.firstRow, extentEnd);
    CheckBytes(extent);
  }
  std::sort(ranges.begin(), ranges.end());
  std::size_t reaching = first;
  for (const auto& [rangeFirst, rangeEnd] : ranges) {
    if (rangeFirst > reaching) fail("does not have row " + std::to_string(reaching));
    extents.overlap = extents.overlap || rangeFirst < reaching;
    reaching        = std::max(reaching, rangeEnd);
  }
  if (reaching < end) fail("does not have row " + std::to_string(reaching));
  return extents;
}

RowKeys StoredRows::ReadKeys(std::size_t rowCount) const
{
  RowKeys                    keys;
  std::vector<std::uint32_t> ofChunk;
  for (std::size_t chunk = 0; GetFirstRow(chunk) < rowCount; ++chunk) {
    const std::size_t rows    = std::min(layout_.GetRowsPerChunk(), rowCount - GetFirstRow(chunk));
    const Extents     extents = GetExtents(chunk, rows);
    for (const StoredExtent& extent : extents.list)
      if (extent.keysAreRun) CheckRun(extent);
    if (extents.list.size() == 1 && extents.list[0].keysAreRun) {
      keys.PushRun(extents.list[0].firstKey, extents.list[0].rowCount);
      continue;
    }
    ReadExtents(extents, chunk, rows, ofChunk);
    for (const std::uint32_t key : ofChunk) {
      keys.Prepare(key);
      keys.Push(key);
    }
  }
  return keys;
}

void StoredRows::ReadChunkKeys(std::size_t chunk, std::size_t rows, std::vector<std::uint32_t>& keys) const
{
  const Extents extents = GetExtents(chunk, rows);
  for (const StoredExtent& extent : extents.list)
    if (extent.keysAreRun) CheckRun(extent);
  ReadExtents(extents, chunk, rows, keys);
}

void StoredRows::ReadExtents(const Extents& extents, std::size_t chunk, std::size_t rows,
                             std::vector<std::uint32_t>& keys) const
{
  if (extents.list.size() == 1) {  // it has all rows
    ReadExtentKeys(extents.list.front(), keys);
    const auto found =
        std::find_if(keys.begin(), keys.end(), [](std::uint32_t key) { return key > KeyTable::kMaxKey; });
    if (found != keys.end()) FailOfKey(*found);
    return;
  }
  std::vector<std::uint32_t> ofExtent;
  keys.assign(rows, KeyTable::kNone);
  for (const StoredExtent& extent : extents.list) {
    ReadExtentKeys(extent, ofExtent);
    PlaceKeys(extent, GetFirstRow(chunk), ofExtent, keys);
  }
}

std::uint64_t StoredRows::CountBytes(std::size_t chunk, std::size_t rows) const
{
  const std::vector<StoredColumn> columns = GetStoredColumns(layout_.format);
  std::uint64_t                   bytes   = rows * layout_.rowBytes;
  for (const StoredExtent& extent : GetExtents(chunk, rows).list)
    for (std::size_t i = 0; i < columns.size(); ++i)
      if (columns[i].isElements) bytes += store_.GetBytes(extent, i);
  return bytes;
}

std::vector<RowColumn> StoredRows::Load(std::size_t chunk, std::size_t rows) const
{
  std::vector<RowColumn> columns = RowChunk::MakeColumns(layout_);
  for (RowColumn& column : columns) std::visit([rows](auto& typed) { typed.MakeEmptyRows(rows); }, column);
  for (const StoredExtent& extent : GetExtents(chunk, rows).list)
    LoadExtent(extent, extent.firstRow - GetFirstRow(chunk), columns);
  for (RowColumn& column : columns) std::visit([rows](auto& typed) { typed.Clean(rows); }, column);
  return columns;
}

void StoredRows::Fail(const std::string& text) const { ThrowBlockFailure(descriptor_, text, kTag); }

void StoredRows::FailOfKey(std::uint32_t key) const
{
  Fail("the store has index " + std::to_string(key) + ", expected 0 to 2147483647");
}

void StoredRows::CheckBytes(const StoredExtent& extent) const
{
  const std::vector<StoredColumn> columns = GetStoredColumns(layout_.format);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].isElements) continue;
    const std::uint64_t bytes = store_.GetBytes(extent, i);
    const std::uint64_t expected =
        std::uint64_t{extent.rowCount} * columns[i].width * GetElementBytes(columns[i].element);
    if (bytes != expected)
      Fail("the store has " + std::to_string(bytes) + " bytes of record field " + std::to_string(columns[i].field) +
           " for " + CountRows(extent.rowCount) + ", expected " + std::to_string(expected));
  }
}

void StoredRows::CheckRun(const StoredExtent& extent) const
{
  if (std::uint64_t{extent.firstKey} + extent.rowCount > std::uint64_t{KeyTable::kMaxKey} + 1)
    Fail("the store has indices from " + std::to_string(extent.firstKey) + " on for " + CountRows(extent.rowCount) +
         ", expected 0 to 2147483647");
}

void StoredRows::ReadExtentKeys(const StoredExtent& extent, std::vector<std::uint32_t>& keys) const
{
  keys.resize(extent.rowCount);
  if (extent.keysAreRun)
    std::iota(keys.begin(), keys.end(), extent.firstKey);
  else
    store_.ReadKeys(extent, keys.data());
}

// A row keeps its key for ever, so extents that share rows agree on them.
void StoredRows::PlaceKeys(const StoredExtent& extent, std::size_t firstRow, const std::vector<std::uint32_t>& ofExtent,
                           std::vector<std::uint32_t>& ofChunk) const
{
  for (std::size_t i = 0; i < ofExtent.size(); ++i) {
    std::uint32_t& key = ofChunk[extent.firstRow - firstRow + i];
    if (ofExtent[i] > KeyTable::kMaxKey) FailOfKey(ofExtent[i]);
    if (key != KeyTable::kNone && key != ofExtent[i])
      Fail("the store has the indices " + std::to_string(key) + " and " + std::to_string(ofExtent[i]) + " for row " +
           std::to_string(extent.firstRow + i));
    key = ofExtent[i];
  }
}

// Reads the rows of an extent to where they belong.
void StoredRows::LoadExtent(const StoredExtent& extent, std::size_t row, std::vector<RowColumn>& columns) const
{
  std::size_t position = 0;
  for (RowColumn& column : columns)
    position += std::visit([&](auto& typed) { return LoadColumn(extent, position, row, typed); }, column);
}

// Reads the stored column at a position, or the two of lists, into rows from `row` on.
// @return how many stored columns it was
template <typename T>
std::size_t StoredRows::LoadColumn(const StoredExtent& extent, std::size_t position, std::size_t row,
                                   ValueColumn<T>& column) const
{
  store_.Read(extent, position, column.GetRow(row));
  return 1;
}

template <typename T>
std::size_t StoredRows::LoadColumn(const StoredExtent& extent, std::size_t position, std::size_t row,
                                   ListColumn<T>& column) const
{
  std::vector<std::uint32_t> lengths(extent.rowCount);
  store_.Read(extent, position, lengths.data());
  std::uint64_t total   = 0;
  std::uint32_t longest = 0;
  for (const std::uint32_t length : lengths) {
    total += length;
    longest = std::max(longest, length);
  }
  const std::uint64_t bytes = store_.GetBytes(extent, position + 1);
  if (longest > kMaxListLength || total * sizeof(T) != bytes)
    Fail("the store has " + std::to_string(bytes) + " bytes for lists of " + std::to_string(total) +
         " elements in all, the longest of " + std::to_string(longest) + ", expected " +
         std::to_string(total * sizeof(T)));
  T* const elements = column.Load(row, lengths, static_cast<std::size_t>(total));
  if (total > 0) store_.Read(extent, position + 1, elements);
  return 2;
}
