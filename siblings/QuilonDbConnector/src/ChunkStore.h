#pragma once

/// @file
/// Where the rows of blocks lie when they are not in memory: the seam between columns and disk.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "bundled/FED_RecordFormat.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

/// Names a block for the life of its database; never used twice, also not for a block that replaces a deleted one.
using BlockUid = std::uint64_t;

/// A block as a store knows it: all but its keys and rows.
struct StoredBlock
{
  BlockUid           uid = 0;
  FED_DataDescriptor descriptor;
  FED_RecordFormat   format;  ///< empty while the block has none
  std::uint32_t      rowCount   = 0;
  std::uint32_t      maxKey     = 0;
  unsigned           chunkShift = 0;  ///< a chunk has 2^chunkShift rows; final as soon as there is a row
};

/// How one column of rows is stored. A field of fixed size is one column. A list field or a string is two: the lengths
/// (UInt32, width 1), then the elements of all rows' lists, one list behind the other.
struct StoredColumn
{
  enum Element : std::uint8_t
  {
    Int32   = 1,
    UInt32  = 2,
    Float32 = 3,
    Float64 = 4,
    Char    = 5
  };

  Element       element;
  std::uint32_t width;       ///< elements per row: 1, 3 or 6; 1 for list elements
  std::uint32_t field;       ///< of the record, from 1
  bool          isElements;  ///< of lists: the number of elements is the sum of the lengths in the column before
};

/// @return the columns of a format, in the order in which they are stored
std::vector<StoredColumn> GetStoredColumns(const FED_RecordFormat& format);

/// @return bytes of an element
std::size_t GetElementBytes(StoredColumn::Element element) noexcept;

/// What is known of a column without reading it. Integers count as their values; lengths and characters have none.
struct ColumnStatistics
{
  std::uint64_t values   = 0;  ///< numbers that are not NaN
  std::uint64_t nans     = 0;
  double        least    = std::numeric_limits<double>::infinity();
  double        greatest = -std::numeric_limits<double>::infinity();
};

/// Rows of one chunk that were written together. A later extent of the chunk replaces the rows of an earlier one.
struct StoredExtent
{
  std::uint32_t firstRow   = 0;  ///< in the block
  std::uint32_t rowCount   = 0;
  std::uint64_t handle     = 0;      ///< the store's own; valid until the store next writes
  bool          keysAreRun = false;  ///< keys are firstKey, firstKey + 1, ... and lie nowhere else
  std::uint32_t firstKey   = 0;      ///< of a run
  std::uint32_t maxKey     = 0;
};

/// Rows that a block hands over to be written: a run of rows of one resident chunk. Valid until the block is next
/// written.
class ExtentRows
{
public:
  virtual ~ExtentRows() = default;

  virtual BlockUid      GetBlock() const noexcept    = 0;
  virtual std::uint32_t GetChunk() const noexcept    = 0;
  virtual std::uint32_t GetFirstRow() const noexcept = 0;
  virtual std::uint32_t GetRowCount() const noexcept = 0;

  /// Keys (block indices) of the rows: a run, or one number a row.
  virtual bool                              KeysAreRun() const noexcept = 0;
  virtual const std::vector<std::uint32_t>& GetKeys() const             = 0;  ///< of a run the first key alone

  using TakeBytes = std::function<void(const void* bytes, std::size_t count)>;

  /// @param column position in GetStoredColumns()
  virtual std::uint64_t GetBytes(std::size_t column) const = 0;
  virtual void          Visit(std::size_t      column,
                              const TakeBytes& take) const = 0;  ///< bytes in order, whole elements at a time
};

/// Reads what was written. Reading verifies checksums.
class ChunkStore
{
public:
  virtual ~ChunkStore() = default;

  /// @return whether it takes what is written: a reader's does not
  virtual bool IsWritable() const noexcept { return true; }

  /// @return extents of a chunk, those written last behind; empty when nothing of the chunk is stored
  virtual std::vector<StoredExtent> GetExtents(BlockUid block, std::uint32_t chunk) const = 0;

  /// @return bytes of a column of an extent
  virtual std::uint64_t GetBytes(const StoredExtent& extent, std::size_t column) const = 0;

  /// @param out receives GetBytes() bytes
  /// @throws FED_Failure that names file and chunk for bytes that are not those written
  virtual void Read(const StoredExtent& extent, std::size_t column, void* out) const = 0;

  /// @param keys receives one key a row; only where they are no run
  virtual void ReadKeys(const StoredExtent& extent, std::uint32_t* keys) const = 0;

  virtual ColumnStatistics GetStatistics(const StoredExtent& extent, std::size_t column) const = 0;

  /// Ids of a kind in the order of their indices.
  virtual std::size_t GetIdCount(int kind) const                 = 0;
  virtual void        ReadIds(int kind, std::int32_t* ids) const = 0;
};
