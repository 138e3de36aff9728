#pragma once

/// @file
/// Result kinds for data that the catalogue does not name.

#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include <bundled/OnfKinds.h>

class FED_Database;

namespace quilon {

using OnfKind::UserHundred;
using enum OnfKind::UserHundred;

/// @return the hundred of node values with this many components
UserHundred NodeHundred(std::size_t numComponents);
/// @return the hundred of element values with this many components
UserHundred ElementHundred(std::size_t numComponents);

/// Allots user kinds by name: one name in one hundred is one kind, also for what an earlier import left in the
/// database, where the names are kept.
class UserKindPool
{
public:
  /// @param database borrowed
  explicit UserKindPool(FED_Database& database);

  /// @return the ONF id of the name, which is allotted and kept in the database when it is new; 0 when all hundred ids
  ///         are taken
  int Find(UserHundred hundred, const std::string& name);

private:
  bool IsTaken(int onf) const;

  FED_Database&                              database_;
  std::map<std::pair<int, std::string>, int> kinds_;
};

}  // namespace quilon
