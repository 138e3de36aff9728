#pragma once

/// @file
/// What is known of one ONF id.

#include "quilon_language.h"

#include <string>

#include "quilon_contract_export.h"

/// Entity kind, name and record format of an ONF id. A plain value.
///
/// Entity kinds: 0 node, 1 element, 2 element set, 3 node set, 4 material, 14 ids of kinds that the catalogue does not
/// know; 15 history position, 16 matrix index. Blocks of kinds 0 to 14 are addressed by entity id through an id view,
/// blocks of kinds 15 and above by plain block index.
class QUILON_ONF_SPECIFICATION_API FED_OnfMetaData
{
public:
  /// @param recordFormat empty when blocks of this id take their format from their first record
  FED_OnfMetaData(int entityKind, std::string name, std::string recordFormat, std::string description);

  int                GetEntityKind() const noexcept;
  const std::string& GetName() const noexcept;
  const std::string& GetRecordFormat() const noexcept;
  const std::string& GetDescription() const noexcept;

private:
  int         entityKind_;
  std::string name_;
  std::string recordFormat_;
  std::string description_;
};
