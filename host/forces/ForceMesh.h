#pragma once

/// @file
/// The mesh that nodal forces are integrated over.

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "IdRadixMap.h"

class FED_Database;

namespace quilon::calculix {
struct DeckModel;
}

namespace quilon {

/// Nodes and elements as a deck or a database has them.
struct ForceMesh
{
  struct Element
  {
    const char* deckType = nullptr;  ///< name of the type; null in the mesh of a database
    int         frdType  = 0;        ///< type code of the .frd
    std::size_t first    = 0;        ///< of its nodes in elementNodes
    std::size_t count    = 0;
  };

  IdRadixMap<std::array<double, 3>> nodes;  ///< undeformed positions
  IdRadixMap<Element>               elements;
  std::vector<int>                  elementNodes;
  /// Nodes that a deck ties to others, and how: a place in waysOfTies. Forces act on them that no element of theirs
  /// has.
  IdRadixMap<std::size_t>  ties;
  std::vector<std::string> waysOfTies;            ///< "contact", "ties", "equations", ...
  bool                     areTiesKnown = false;  ///< whether a deck told of all ties, then or now
  /// Whether no coordinate has more than the six digits of a .frd: what stood behind them in the deck is lost.
  bool isRounded = false;

  std::span<const int> NodesOf(const Element& element) const noexcept
  {
    return std::span(elementNodes).subspan(element.first, element.count);
  }

  /// Nodes that are tied in another way already stay so.
  void Tie(const std::string& how, std::span<const int> ids);
  /// @return null for a node that is not tied
  const std::string* HowTied(int node) const noexcept;
};

/// @param deck outlives the mesh: names of element types that it defines are its own
ForceMesh MakeForceMesh(const calculix::DeckModel& deck);

/// Reads coordinates (516), node lists (595) and types (596) of an iteration, and tied nodes (608) where it has some.
/// @param name of the database, for messages
/// @throws FED_Failure when one of the three blocks is missing
ForceMesh ReadForceMesh(const FED_Database& database, int iteration, const std::string& name);

/// @return half a unit in the sixth digit: how far a coordinate may be off that a .frd printed
double RoundingOf(double coordinate) noexcept;

}  // namespace quilon
