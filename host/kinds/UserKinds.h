#pragma once

/// @file
/// The names of user kinds.

#include <functional>

#include "QuilonDbConnector/FED_OnfId.h"

class FED_Database;

namespace quilon {

/// Visits every ONF id of a user kind, ascending.
void ForEachUserKind(const std::function<void(FED_OnfId)>& visit);

/// Gives the target every name that the source has.
void CopyUserKindNames(const FED_Database& source, FED_Database& target);

}  // namespace quilon
