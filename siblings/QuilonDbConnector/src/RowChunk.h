#pragma once

/// @file
/// A block's rows, a chunk at a time.

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

#include "bundled/FED_RecordFormat.h"

#include "ChunkStore.h"
#include "ColumnStore.h"
#include "ResultRecord.h"

class ResultDataBlock;

/// What a record format comes to in columns.
struct RecordLayout
{
  RecordLayout() = default;
  explicit RecordLayout(const FED_RecordFormat& recordFormat);

  std::size_t GetRowsPerChunk() const noexcept { return std::size_t{1} << chunkShift; }

  FED_RecordFormat format;
  std::size_t      rowBytes    = 0;  ///< of a row, the elements of its lists not counted
  unsigned         chunkShift  = 0;
  std::size_t      doubleCount = 0;  ///< as FED_RecordFormat::GetDoubleCount()
  std::size_t      singleWidth = 0;  ///< doubles of a format of one field of doubles, 0 for all others
  bool             hasLists    = false;
};

using RowColumn = std::variant<ValueColumn<int>, ValueColumn<float>, ValueColumn<double>, ListColumn<char>,
                               ListColumn<int>, ListColumn<double>>;

/// A run of rows of a block: what is loaded, unloaded and written together, the elements of lists included. Rows count
/// from the first of the chunk.
///
/// A chunk whose rows left the memory takes new rows without the old ones: its columns then begin at a later row, and
/// only who asks for an earlier one has to load them. Whoever reaches into columns counts from `firstRow`.
struct RowChunk
{
  RowChunk() noexcept : owner(nullptr), number(0) {}  ///< of no block
  RowChunk(const ResultDataBlock& block, std::uint32_t chunk) noexcept : owner(&block), number(chunk) {}

  bool IsResident() const noexcept { return !columns.empty(); }
  bool IsDirty() const noexcept { return dirtyFirst != dirtyEnd; }

  /// Makes columns without rows.
  static std::vector<RowColumn> MakeColumns(const RecordLayout& layout);

  /// @param end row behind the last that room is made for
  /// @param isWhole whether a chunk behind the first is made as large as it can become; otherwise it doubles, as the
  ///                first does, so that small blocks stay small
  /// @return rows of the columns afterwards
  std::size_t CapacityFor(std::size_t end, const RecordLayout& layout, bool isWhole) const noexcept;

  /// Makes room for the rows from firstRow to before `end`. When it throws, all rows are as before.
  void EnsureRows(std::size_t end, const RecordLayout& layout, bool isWhole);

  /// Whether there is room for a row, in memory.
  bool HasRoom(std::size_t row) const noexcept { return row - firstRow < capacity; }

  /// Gives the room of rows back that are in the store as they are, where that pays and nobody asked for them since.
  /// @param end row behind the last
  void DropStoredRows(std::size_t end, const RecordLayout& layout);

  /// Takes the stored rows that were loaded meanwhile. When it throws, all rows are as before.
  /// @param loaded columns of the rows from 0 to before storedRows
  /// @param end    row behind the last
  void CompleteFrom(std::vector<RowColumn> loaded, std::size_t end, const RecordLayout& layout);

  void Unload() noexcept;

  // Records, field by field. A record has the fields of the columns; rows count from firstRow.

  /// @return bytes that PrepareRow() with the same arguments would allocate, not counting what it gives back
  std::size_t GetGrowth(std::size_t row, std::size_t rowCount, const ResultRecord& record) const noexcept;
  /// Makes the room that the lists of WriteRow() need. When it throws, all rows are as before.
  /// @param rowCount rows that hold a record; a new row is not among them
  void PrepareRow(std::size_t row, std::size_t rowCount, const ResultRecord& record);
  void WriteRow(std::size_t row, std::size_t rowCount, const ResultRecord& record) noexcept;
  void ReadRow(std::size_t row, ResultRecord& record) const;

  /// Of a format of doubles alone.
  void WriteDoubles(std::size_t row, const double* values) noexcept;
  void ReadDoubles(std::size_t row, double* out) const noexcept;

  std::size_t CountBytes() const noexcept;

  /// Values of a format of one field of doubles, null for all others and while the rows are not in memory.
  double*                single = nullptr;
  std::vector<RowColumn> columns;  ///< one per record field; empty while the rows are in the store alone
  std::size_t            capacity   = 0;
  std::uint32_t          firstRow   = 0;  ///< of the columns: rows before it are in the store as they are
  std::uint32_t          storedRows = 0;  ///< from the first on, that the store has as they are or were
  std::uint32_t          dirtyFirst = 0;  ///< rows from here
  std::uint32_t          dirtyEnd   = 0;  ///< to before here are not in the store as they are
  const ResultDataBlock* owner;
  std::uint32_t          number;

  bool wasLoaded = false;  ///< earlier rows were asked for since they were in the store alone
  bool wasThere  = false;  ///< in memory, once, with rows of the store

  // For the cache.
  std::size_t pins          = 0;      ///< holders of a PinnedChunk
  std::size_t bytes         = 0;      ///< counted for this chunk
  bool        wasTouched    = false;  ///< since the hand of the clock last passed
  RowChunk*   next          = nullptr;
  RowChunk*   previous      = nullptr;
  RowChunk*   nextDirty     = nullptr;
  RowChunk*   previousDirty = nullptr;

private:
  void SetColumns(std::vector<RowColumn> complete, std::size_t rows, const RecordLayout& layout) noexcept;
  void CopyTo(std::vector<RowColumn>& others, std::size_t first, std::size_t row, std::size_t rowCount,
              std::size_t count) const;
};

/// @param column   as in GetStoredColumns()
/// @param firstRow of the chunk, in memory
std::uint64_t GetStoredBytes(const RowChunk& chunk, const StoredColumn& column, std::size_t firstRow,
                             std::size_t rowCount);
void          VisitStored(const RowChunk& chunk, const StoredColumn& column, std::size_t firstRow, std::size_t rowCount,
                          const ExtentRows::TakeBytes& take);
ColumnStatistics ComputeStatistics(const RowChunk& chunk, const StoredColumn& column, std::size_t firstRow,
                                   std::size_t rowCount);

/// @return elements of a list or characters of a string, 0 for all other values
std::size_t GetListLength(const ResultRecord::Value& value) noexcept;
/// @return bytes of them
std::size_t GetListBytes(const ResultRecord::Value& value) noexcept;
