#pragma once

/// @file
/// Metadata of all ONF ids.

#include "quilon_language.h"

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_OnfId.h"
#include "QuilonOnfSpecification/FED_OnfMetaData.h"

class QUILON_ONF_SPECIFICATION_API FED_OnfInfoPool
{
public:
  /// Never fails: an id that no table knows is of kind 14, named "onf-<id>", without a record format.
  /// @return metadata that lives as long as the program
  static const FED_OnfMetaData& GetOnfInfo(FED_OnfId onf);
};
