#pragma once

/// @file
/// Whole columns of a block.

#include "quilon_language.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "bundled/FED_RecordFormat.h"
#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonUtilities/QuilonContainer.h"

/// What is known of the numbers in a record field of all rows, list elements included.
struct FED_FieldStatistics
{
  std::uint64_t elements = 0;  ///< numbers, those that are none included; of strings the characters
  std::uint64_t nans     = 0;
  bool          hasRange = false;  ///< whether there is a number that is no NaN; characters are no numbers
  double        least    = 0.0;
  double        greatest = 0.0;
};

/// A chunk that stays in memory while this lives, whatever else is read. It goes before its database does, and counts
/// among the calls of the one thread that uses the database.
class QUILON_DB_CONNECTOR_API FED_HeldChunk
{
public:
  FED_HeldChunk(const FED_HeldChunk&)            = delete;
  FED_HeldChunk& operator=(const FED_HeldChunk&) = delete;
  virtual ~FED_HeldChunk();

protected:
  FED_HeldChunk() = default;
};

/// What the blocks of FED_ResultDatabase offer beyond the contract: their format, and their values by column, for walks
/// that need no indices (least and greatest value, checksums). Reach it with a dynamic_cast from FED_DataBlock.
///
/// Rows stand in the order in which indices first got a record. A chunk's rows are final with the first record. Chunk c
/// of a column holds the rows from c * GetRowsPerChunk() on. Spans are valid until the block is next written, and in a
/// database on disk until another chunk of any of its blocks is read or written: that one may take the place in memory,
/// unless HoldChunk() keeps it.
class QUILON_DB_CONNECTOR_API FED_ColumnDataBlock : public FED_DataBlock
{
public:
  ~FED_ColumnDataBlock() override;

  /// @return without fields while the block has no format
  virtual const FED_RecordFormat& GetRecordFormat() const noexcept = 0;
  virtual std::size_t             GetRecordCount() const noexcept  = 0;
  /// @return all indices that hold a record, ascending
  virtual std::vector<std::size_t> GetIndices() const = 0;
  /// @return the row of an index
  /// @throws FED_Failure when no record is there
  virtual std::size_t GetRow(std::size_t index) const = 0;

  virtual std::size_t GetRowsPerChunk() const noexcept = 0;
  virtual std::size_t GetChunkCount() const noexcept   = 0;

  /// Values of a field of doubles (D, d, V, T), shape [rows, 1, 3 or 6].
  /// @param field counts from 1
  /// @param chunk 0 <= chunk < GetChunkCount()
  /// @throws FED_Failure for another field, type or chunk
  virtual QuilonContainer::Span<const double> GetDoubleChunk(std::size_t field, std::size_t chunk) const = 0;
  /// Values of an integer field, shape [rows].
  virtual QuilonContainer::Span<const int> GetIntegerChunk(std::size_t field, std::size_t chunk) const = 0;
  /// Values of a float field, shape [rows].
  virtual QuilonContainer::Span<const float> GetFloatChunk(std::size_t field, std::size_t chunk) const = 0;

  /// Keeps a chunk where it is: spans of it, which are asked for afterwards, stay valid until the block is next
  /// written.
  /// @throws FED_Failure for another chunk, and when it cannot be read
  virtual std::unique_ptr<FED_HeldChunk> HoldChunk(std::size_t chunk) const = 0;

  /// In a database on disk it costs a look at the indices where nothing was written since the last commit.
  /// @param field counts from 1
  virtual FED_FieldStatistics GetFieldStatistics(std::size_t field) const = 0;

protected:
  using FED_DataBlock::FED_DataBlock;
};
