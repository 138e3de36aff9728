#pragma once

/// @file
/// Whole blocks at the speed of their columns: many records at once, of any database.

#include "quilon_language.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "bundled/FED_RecordFormat.h"
#include "quilon_contract_export.h"
#include "QuilonUtilities/QuilonContainer.h"

class FED_ColumnDataBlock;
class FED_DataBlock;
class FED_IdMapsPool;

/// Records of a block that lie side by side, column by column. All that it hands out is borrowed and valid while the
/// call that was given the span lasts, and at the longest until the block is next written; whatever else is read
/// meanwhile, of this database or another, changes nothing.
///
/// Records count from 0 to before GetCount(), fields from 1.
///
/// Errors: FED_Failure for a field that the format does not have, and for one of another type.
class QUILON_DB_CONNECTOR_API FED_BlockSpan
{
public:
  FED_BlockSpan(const FED_BlockSpan&)            = delete;
  FED_BlockSpan& operator=(const FED_BlockSpan&) = delete;
  virtual ~FED_BlockSpan();

  std::size_t             GetCount() const noexcept { return indices_.size(); }
  const FED_RecordFormat& GetFormat() const noexcept { return *format_; }

  /// @return the index of each record in its block
  QuilonContainer::Span<const std::uint32_t> GetIndices() const noexcept { return {indices_.data(), indices_.size()}; }
  /// @return the id of each record; without any when the walk was given no id maps
  QuilonContainer::Span<const int> GetIds() const noexcept { return {ids_.data(), ids_.size()}; }

  /// Of a field of doubles (D, d, V, T), shape [records, 1, 3 or 6].
  virtual QuilonContainer::Span<const double> GetDoubles(std::size_t field) const = 0;
  /// Of an integer field (I, i), shape [records].
  virtual QuilonContainer::Span<const int> GetIntegers(std::size_t field) const = 0;
  /// Of a float field, shape [records].
  virtual QuilonContainer::Span<const float> GetFloats(std::size_t field) const = 0;
  /// The list of one record (Db).
  virtual QuilonContainer::Span<const double> GetDoubleList(std::size_t field, std::size_t record) const = 0;
  /// The list of one record (Lb, lb).
  virtual QuilonContainer::Span<const int> GetIntegerList(std::size_t field, std::size_t record) const = 0;
  /// The text of one record (S).
  virtual std::string_view GetText(std::size_t field, std::size_t record) const = 0;

protected:
  FED_BlockSpan() = default;

  const FED_RecordFormat*    format_ = nullptr;
  std::vector<std::uint32_t> indices_;
  std::vector<int>           ids_;
};

/// Calls take(span) for all records of a block, each of them once. Nothing is allocated for a record, and the checksum
/// of what comes from disk is verified once.
///
/// Blocks of FED_ResultDatabase give one span a chunk, in the order in which their indices first got a record: mostly,
/// but not always, that of the indices (see FED_SpansAscend()). One chunk is in memory at a time. Blocks of other
/// databases are read record by record, ascending, and gathered into spans of up to 1024 records.
/// @param take may read any database, and write other blocks. What it throws passes through.
/// @throws FED_Failure when the block cannot be read
QUILON_DB_CONNECTOR_API void FED_ForEachSpan(const FED_DataBlock&                             block,
                                             const std::function<void(const FED_BlockSpan&)>& take);

/// The same, with the id of each record by the map of the entity kind of the block's ONF id. For kinds 15 and above the
/// index is the id.
/// @throws FED_Failure for an index that no id has
QUILON_DB_CONNECTOR_API void FED_ForEachSpan(const FED_DataBlock& block, const FED_IdMapsPool& pool,
                                             const std::function<void(const FED_BlockSpan&)>& take);

/// Calls take(span) once, for the records of one chunk: the span that FED_ForEachSpan() gives of it. Who needs the same
/// chunk of many blocks goes by chunks, and has what it keeps of these records near at hand.
/// @param chunk 0 <= chunk < block.GetChunkCount()
/// @throws FED_Failure for another chunk, and as FED_ForEachSpan()
QUILON_DB_CONNECTOR_API void FED_VisitChunk(const FED_ColumnDataBlock& block, const FED_IdMapsPool& pool,
                                            std::size_t chunk, const std::function<void(const FED_BlockSpan&)>& take);

/// The same without ids, which takes less time. Who walks many blocks knows the ids of indices that were the same
/// before.
QUILON_DB_CONNECTOR_API void FED_VisitChunk(const FED_ColumnDataBlock& block, std::size_t chunk,
                                            const std::function<void(const FED_BlockSpan&)>& take);

/// @return whether FED_ForEachSpan() gives the records of a block by ascending index
QUILON_DB_CONNECTOR_API bool FED_SpansAscend(const FED_DataBlock& block);
