#pragma once

/// @file
/// The blocks of a database as a set.

#include "quilon_language.h"

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_DataBlock;
class FED_Database;

/// Looks blocks up in a database, which it borrows.
class QUILON_DB_CONNECTOR_API FED_DataBlockSet
{
public:
  explicit FED_DataBlockSet(FED_Database& database) noexcept;

  /// @return the block of the descriptor, null when there is none; owned by the database
  FED_DataBlock* GetDataBlockInstance(const FED_DataDescriptor& descriptor) const;

private:
  FED_Database* database_;
};
