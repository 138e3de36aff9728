#pragma once

/// @file
/// Names instead of the numbers that a model keeps: element types, materials, orientations.

#include <map>
#include <string>
#include <vector>

#include "database/RecordRows.h"
#include "mesh/DeckTypes.h"

class FED_Database;

namespace quilon {

class Region;

/// The names of a database's materials, orientations and element types.
class ModelNames
{
public:
  /// @param database borrowed
  explicit ModelNames(const FED_Database& database);

  /// @return the name of a material, its number where it has none, "none" for 0
  std::string MaterialOf(int number) const;

  /// @return what decks call the types of an iteration's elements, read once
  const DeckTypes& TypesOf(int iteration) const;

  /// Replaces numbers of a row, see RecordRows, by what they stand for: type and material of elements (596), material
  /// and orientation of sections (603). Other rows stay.
  void Replace(const FED_DataDescriptor& block, std::vector<Cell>& row) const;

private:
  const FED_Database&              database_;
  std::map<int, std::string>       materials_;
  std::map<int, std::string>       orientations_;
  mutable std::map<int, DeckTypes> types_;  // by iteration
};

/// Names the groups that nodal averages are over (OnfIndex::Group). A database keeps their numbers alone: a group is a
/// material, or else a set or a section (ReadSectionNames()), where that holds for the nodes of every group.
/// @return names by number; nothing where the groups are none of these
std::map<int, std::string> NameGroups(const FED_Database& database, Region& region);

}  // namespace quilon
