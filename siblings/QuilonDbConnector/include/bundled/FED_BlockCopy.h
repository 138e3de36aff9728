#pragma once

/// @file
/// Copies of single blocks.

#include "quilon_language.h"

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

/// Copies a block, with or without records, as QuilonDatabaseUtils::copy_datablocks() copies those of a pattern.
/// @throws FED_Failure when the source has no such block, and for an index of a mapped kind that no id has
QUILON_DB_CONNECTOR_API void FED_CopyBlock(const FED_Database& source, FED_Database& target,
                                           const FED_DataDescriptor& descriptor);
