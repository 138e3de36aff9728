#pragma once

/// @file
/// How much data a database, a block or a record holds.

#include "quilon_language.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "quilon_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_ConstDataRecord;
class FED_DataBlock;
class FED_Database;

/// Sizes are bytes of record payload, counted alike on every platform; they are not the memory or the file space that a
/// database takes. What a field counts goes by its type code:
///
///     1, 3, 10  integer, float    4
///     2, 11     double            8
///     4         string            its length + 4
///     5         vector            24
///     6         tensor            48
///     7, 8      integer list      4 * its length + 4
///     9         double list       8 * its length + 4
///     other                       0
///
/// Nothing is counted beside the fields: no id, no index, nothing per record, block or database.
///
/// What the database throws passes through.
namespace QuilonDataBlockSize {

/// @return the bytes of all fields; 0 for a record without fields
QUILON_EXPORT std::size_t DataRecordSizeOf(const FED_ConstDataRecord& record);

/// Probes every index from 0 to the largest: the time goes with the largest index, not with the number of records.
QUILON_EXPORT std::size_t DataBlockSizeOf(const FED_DataBlock& block);

QUILON_EXPORT std::size_t DataBaseSizeOf(const FED_Database& db);

/// @return a pair for every block, smallest first, blocks of one size by descriptor: the largest blocks stand at the
/// end
QUILON_EXPORT std::vector<std::pair<std::size_t, FED_DataDescriptor>> DataBlocksSortedSizeOf(const FED_Database& db);

}  // namespace QuilonDataBlockSize
