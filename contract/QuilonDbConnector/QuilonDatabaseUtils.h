#pragma once

/// @file
/// Operations on whole databases.

#include "quilon_language.h"

#include <cstddef>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptorPattern.h"

class FED_Database;

namespace QuilonDatabaseUtils {

/// What becomes of source blocks without records.
enum EmptyBlockAction : int
{
  CopyEmptyBlocks = 0,
  SkipEmptyBlocks = 1
};

/// Copies every matching block, its record format and the names of the user kinds that it refers to: its own ONF id
/// and, for a scalar history (ONF id 500), the quantity in result index 10. Ids are translated: a record stays with its
/// id, whatever index the target's map gives it. A target block of an equal descriptor is replaced.
/// @return the number of blocks copied
/// @throws FED_Failure for an index of a mapped kind that no id has; blocks copied before stay
QUILON_DB_CONNECTOR_API std::size_t copy_datablocks(const FED_Database& source, FED_Database& target,
                                                    const FED_DataDescriptorPattern& pattern, EmptyBlockAction action);

}  // namespace QuilonDatabaseUtils
