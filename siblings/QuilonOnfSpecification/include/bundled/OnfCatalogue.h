#pragma once

/// @file
/// The catalogue of ONF ids as a table to walk and to search by name.

#include "quilon_language.h"

#include <optional>
#include <string>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_OnfId.h"
#include "QuilonOnfSpecification/FED_OnfMetaData.h"

namespace OnfCatalogue {

/// What is known of one ONF id.
struct Entry
{
  FED_OnfId       onf;
  FED_OnfMetaData metaData;
  std::string     quantity;  ///< what the numbers measure; "none" for counts and codes
};

/// A hundred of user kinds: their kind and format are told by the range, their names are the stem, a dash and the id.
struct UserRange
{
  int         first;
  int         last;  ///< included
  int         entityKind;
  std::string stem;
  std::string recordFormat;
  std::string description;
};

/// The fixed ids, ascending. Lives as long as the program.
QUILON_ONF_SPECIFICATION_API const std::vector<Entry>& Entries();

/// The ranges of user kinds, ascending and without gaps from 1000 to 1999. Lives as long as the program.
QUILON_ONF_SPECIFICATION_API const std::vector<UserRange>& UserRanges();

/// What the numbers of an ONF id measure; empty for user kinds and for ids that the catalogue does not know.
QUILON_ONF_SPECIFICATION_API std::string QuantityOf(FED_OnfId onf);

/// Finds the id of a name as FED_OnfInfoPool spells it: a fixed id's, a user kind's default name or "onf-<id>".
/// @return nothing when no id has exactly this name
QUILON_ONF_SPECIFICATION_API std::optional<FED_OnfId> FindIdByName(const std::string& name);

/// The names of the fixed ids by ascending id, for suggestions.
QUILON_ONF_SPECIFICATION_API std::vector<std::string> Names();

/// The catalogue as the Markdown page that the project keeps in docs/onf-catalogue.md.
QUILON_ONF_SPECIFICATION_API std::string MarkdownPage();

}  // namespace OnfCatalogue
