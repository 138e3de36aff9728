#pragma once

/// @file
/// Groups of elements that nodal averages stop at.

#include <vector>

#include "IdRadixMap.h"
#include "import/ImportOptions.h"
#include "import/ResultMesh.h"

namespace quilon {

class ImportedDeck;

/// Which groups an element belongs to: one by its material or its section, any number by sets.
class ElementGroups
{
public:
  /// No groups.
  ElementGroups() = default;
  /// @param deck borrowed for good; null without a deck
  /// @throws FED_Failure for sections or sets without a deck and for a set that the deck has not
  ElementGroups(const AverageBy& by, const ImportedDeck* deck);

  /// @return numbers greater than 0: material, section or set numbers as they are in the database
  std::vector<int> GroupsOf(int id, const ResultMesh::Element& element) const;

private:
  AverageBy::Border            border_ = AverageBy::Nothing;
  const ImportedDeck*          deck_   = nullptr;
  IdRadixMap<std::vector<int>> sets_;
};

}  // namespace quilon
