#pragma once

/// @file
/// What a deck calls the types of its elements.

#include <cstdint>
#include <string>
#include <vector>

#include "mesh/IdPositions.h"

class FED_Database;

namespace quilon {

/// The names of element types that say more than their shape: "C3D8R" where TypeNameOf() is "C3D8". Databases that were
/// made without the deck have none.
class DeckTypes
{
public:
  DeckTypes() = default;
  /// Reads those of an iteration (609).
  DeckTypes(const FED_Database& database, int iteration);

  /// @return the name of an element's type, null where the database has none. Valid as long as this.
  const std::string* Find(int element) const noexcept;

  /// @return the name of an element's type in its deck; where that is not known TypeNameOf() its code
  std::string NameOf(int element, int frdType) const;

private:
  IdPositions                elements_;
  std::vector<std::uint32_t> numbers_;  // positions in names_, in the order of the elements
  std::vector<std::string>   names_;
};

}  // namespace quilon
