#pragma once

/// @file
/// Materials and sets by name, and the groups of nodal averages that are meant by them.

#include <string>
#include <string_view>
#include <vector>

class FED_Database;

namespace quilon {

/// A record of materials (602) or sets (600, 601).
struct NamedRecord
{
  int         number = 0;  ///< of a material its id, of a set its number
  std::string name;
};

/// @param onf OnfKind::Material, NodeSet or ElementSet
/// @return the records of all iterations by iteration, then number; what is the same in several iterations once
std::vector<NamedRecord> ReadNames(const FED_Database& database, int onf);

/// @return the numbers of the groups (OnfIndex::Group) that the database has nodal averages of, ascending
std::vector<int> ReadGroups(const FED_Database& database);

/// See KindTable::ResolveGroup().
int ResolveGroupName(const FED_Database& database, std::string_view name);

}  // namespace quilon
