#pragma once

/// @file
/// The mesh of a database, for all that looks at it as a whole.

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "mesh/ElementTopology.h"
#include "mesh/IdPositions.h"

class FED_Database;

namespace quilon {

/// Nodes and elements of one iteration of a database.
///
/// Positions count from 0 in the order of ascending ids. A loaded mesh does not change; several may read it.
class Mesh
{
public:
  using Point = std::array<double, 3>;

  struct Element
  {
    int id = 0;
    /// Type code of the .frd: FindTopology() has its shape, whose number of nodes the element has. 0 for an element
    /// without a shape: springs, masses and the like, and elements that name a node without coordinates.
    int         frdType  = 0;
    int         material = 0;  ///< number, 0 none
    std::size_t first    = 0;  ///< of its nodes, see NodesOf()
    std::size_t count    = 0;
  };

  Mesh() = default;

  /// @param nodeIds      in any order, each once
  /// @param points       shape [nodeIds.size()]
  /// @param elements     in any order, each once; first and count are of elementNodes
  /// @param elementNodes ids. Those of no node are left out of their element.
  Mesh(const std::vector<int>& nodeIds, const std::vector<Point>& points, std::vector<Element> elements,
       const std::vector<int>& elementNodes);

  std::size_t NumNodes() const noexcept { return points_.size(); }
  std::size_t NumElements() const noexcept { return elements_.size(); }

  /// Ascending.
  const std::vector<int>& NodeIds() const noexcept { return nodes_.GetIds(); }
  /// Undeformed, in the order of NodeIds().
  const std::vector<Point>& Points() const noexcept { return points_; }
  /// @return position in NodeIds()
  std::optional<std::size_t> FindNode(int id) const noexcept { return nodes_.Find(id); }

  /// By ascending id.
  const std::vector<Element>& Elements() const noexcept { return elements_; }
  /// @return positions in NodeIds(), in the order of decks
  std::span<const std::size_t> NodesOf(const Element& element) const noexcept
  {
    return std::span(elementNodes_).subspan(element.first, element.count);
  }
  /// @return position in Elements()
  std::optional<std::size_t> FindElement(int id) const noexcept { return elementIds_.Find(id); }

private:
  IdPositions              nodes_;
  std::vector<Point>       points_;
  IdPositions              elementIds_;
  std::vector<Element>     elements_;
  std::vector<std::size_t> elementNodes_;
};

/// A set of a deck.
struct NamedSet
{
  std::string      name;
  bool             ofElements = false;
  std::vector<int> ids;  ///< in the deck's order, as often as it names them
};

/// Reads coordinates (516), node lists (595) and types (596) of an iteration. Without node lists or types the mesh has
/// nodes alone.
/// @param name of the database, for messages
/// @throws FED_Failure when there are no coordinates
Mesh ReadMesh(const FED_Database& database, int iteration, const std::string& name);

/// @return the sets of nodes (600), then those of elements (601), as the database numbers them
std::vector<NamedSet> ReadSets(const FED_Database& database, int iteration);

}  // namespace quilon
