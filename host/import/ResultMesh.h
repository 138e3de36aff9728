#pragma once

/// @file
/// The mesh of a result file, as far as reading its results needs it.

#include <array>
#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

#include "IdRadixMap.h"
#include "results/ResultReader.h"

class FED_Database;

namespace quilon {

class ImportedDeck;
struct InputElement;

/// Nodes and elements of one result file, of a deck, or of both. Kept while the job is read; coordinates only until
/// they are saved.
class ResultMesh
{
public:
  struct Node
  {
    int              numElements = 0;  ///< places in node lists of elements with stresses that name this node
    std::string_view type;             ///< of the first element that contributed to the node
    bool             isMixed = false;  ///< elements of another type have contributed too
  };

  struct Element
  {
    int         type     = 0;        ///< type code, see MeshElement
    int         material = 0;        ///< material number, 0 none
    const char* deckType = nullptr;  ///< name of the type; null for an element that no deck has
    std::size_t first    = 0;        ///< of its nodes in the pool
    std::size_t count    = 0;
    /// Number of the latest result in which the element was averaged: stress, strain.
    std::array<std::size_t, 2> averagedIn = {};
  };

  /// @param path for messages
  explicit ResultMesh(std::filesystem::path path);

  /// @param coordinates shape [ids.size(), 3]
  void AddNodes(std::span<const int> ids, std::span<const double> coordinates);

  /// @param elements their nodes are nodes of the mesh: readers refuse others
  /// @throws FED_Failure for an element that is listed twice
  void AddElements(std::span<const MeshElement> elements);

  /// A node that a deck has elsewhere than the results.
  struct MovedNode
  {
    int    id       = 0;
    double distance = 0.0;
  };

  /// Completes the mesh of results with what a deck says: all digits of the coordinates, element types and materials,
  /// and the nodes and elements that they leave out. Elements that the solver has expanded keep their nodes.
  /// Without results the mesh is the deck's.
  /// @param deck names of its element types are borrowed: it outlives the mesh
  /// @return nodes that the deck has elsewhere by more than the digits of the results allow; they stay where the
  /// results
  ///         have them. Nodes of a pre-tension section may be others: the solver splits them
  /// @throws FED_Failure for a solid that the results have with another type or other nodes, and without them for one
  ///         with a node that the deck has not
  std::vector<MovedNode> AddDeck(const ImportedDeck& deck);

  /// Writes coordinates (516), node lists (595), types (596) and their names in a deck (609) and forgets the
  /// coordinates. The descriptors have the iteration and the ONF id alone.
  /// @throws FED_Failure when an element that the database knows has other nodes there
  void Save(FED_Database& database, int iteration);

  /// @return the longest side of the box around all nodes, until the coordinates are saved
  double Size() const;

  bool IsEmpty() const noexcept { return nodes_.Entries().empty(); }

  /// @return null when the mesh has no such node
  Node* FindNode(int id) noexcept;
  bool  HasNode(int id) const noexcept { return nodes_.Find(id) != IdRadixMap<Node>::npos; }
  /// @return in the order in which they came
  std::vector<int> ListNodes() const;
  /// @return null when the mesh has no such element
  Element* FindElement(int id) noexcept;
  /// @return in the deck's order
  std::span<const int> NodesOf(const Element& element) const noexcept;

private:
  std::vector<MovedNode> AddDeckNodes(const ImportedDeck& deck);
  void                   AddDeckElement(const ImportedDeck& deck, int id, const InputElement& element, bool isCounted);
  void                   SaveCoordinates(FED_Database& database, int iteration);
  void                   SaveElements(FED_Database& database, int iteration);
  void                   SaveDeckTypes(FED_Database& database, int iteration);

  std::filesystem::path path_;
  IdRadixMap<Node>      nodes_;
  IdRadixMap<Element>   elements_;
  std::vector<int>      elementNodes_;
  std::vector<double>   coordinates_;  // shape [nodes, 3] until saved
};

}  // namespace quilon
