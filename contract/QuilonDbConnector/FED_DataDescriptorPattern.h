#pragma once

/// @file
/// A selection of data blocks.

#include "quilon_language.h"

#include <string>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

/// Per result index a match mode and a value. Matches by raw values, whatever a descriptor's mask says.
class QUILON_DB_CONNECTOR_API FED_DataDescriptorPattern
{
public:
  struct Criterion
  {
    int mode  = -1;  ///< 0 admits only the value, -1 admits anything; other modes are a failure when matched
    int value = 0;
  };

  /// Matches everything.
  FED_DataDescriptorPattern();

  /// Admits only descriptors whose raw value at `index` is `value`.
  /// @throws FED_Failure unless 0 <= index < 14
  void SetEqual(FED_DataDescriptor::ResultIndex index, int value);

  bool Matches(const FED_DataDescriptor& descriptor) const;

  /// @return the selection for people
  std::string ToString() const;

  Criterion criteria[FED_DataDescriptor::kNumIndices];
};
