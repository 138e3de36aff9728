#pragma once

/// @file
/// Materials and sets by name, and the groups of nodal averages that are meant by them.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class FED_Database;

namespace quilon {

/// A record of materials (602), sets (600, 601) or orientations (604).
struct NamedRecord
{
  int         number = 0;  ///< of a material its id, of a set or an orientation its number
  std::string name;
};

/// @param onf       OnfKind::Material, NodeSet, ElementSet or Orientation
/// @param iteration nothing: all
/// @return the records by iteration, then number; what is the same in several iterations once
std::vector<NamedRecord> ReadNames(const FED_Database& database, int onf, std::optional<int> iteration = {});

/// Names the sections that elements have (603): each by the first element set that has its elements and no others, else
/// "section-2".
/// @return by number; of several iterations the first one names a number
std::vector<NamedRecord> ReadSectionNames(const FED_Database& database);

/// @return the numbers of the groups (OnfIndex::Group) that the database has nodal averages of, ascending
std::vector<int> ReadGroups(const FED_Database& database);

/// @return what groups may be: kinds of materials, element sets and sections; the one that the import says, else all
std::vector<int> ReadKindsOfGroups(const FED_Database& database);

/// See KindTable::ResolveGroup().
int ResolveGroupName(const FED_Database& database, std::string_view name);

}  // namespace quilon
