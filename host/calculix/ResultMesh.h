#pragma once

/// @file
/// The mesh of a result file, as far as reading its results needs it.

#include <array>
#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

#include "IdRadixMap.h"

class FED_Database;

namespace quilon::calculix {

struct ExtrapolationRule;
struct FrdElement;

/// Nodes and elements of one .frd. Kept while the job is read; coordinates only until they are saved.
class ResultMesh
{
public:
  struct Node
  {
    int                      numElements = 0;        ///< places in elements' node lists that name this node
    const ExtrapolationRule* rule        = nullptr;  ///< the first that contributed to the node
    bool                     isMixed     = false;    ///< another rule has contributed too
  };

  struct Element
  {
    int         type     = 0;  ///< type code of the .frd
    int         material = 0;
    std::size_t first    = 0;  ///< of its nodes in the pool
    std::size_t count    = 0;
    /// Number of the latest result in which the element was averaged: stress, strain.
    std::array<std::size_t, 2> averagedIn = {};
  };

  /// @param path for messages
  explicit ResultMesh(std::filesystem::path path);

  /// @param coordinates shape [ids.size(), 3]
  void AddNodes(std::span<const int> ids, std::span<const double> coordinates);

  /// @param elements their nodes are nodes of the mesh: ReadFrd() refuses others
  /// @throws FED_Failure for an element that is listed twice
  void AddElements(std::span<const FrdElement> elements);

  /// Writes coordinates (516), node lists (595) and types (596) and forgets the coordinates. The descriptors have the
  /// iteration and the ONF id alone.
  /// @throws FED_Failure when an element that the database knows has other nodes there
  void Save(FED_Database& database, int iteration);

  bool IsEmpty() const noexcept { return nodes_.Entries().empty(); }

  /// @return null when the mesh has no such node
  Node* FindNode(int id) noexcept;
  /// @return null when the mesh has no such element
  Element* FindElement(int id) noexcept;
  /// @return in the deck's order
  std::span<const int> NodesOf(const Element& element) const noexcept;

private:
  void SaveCoordinates(FED_Database& database, int iteration);
  void SaveElements(FED_Database& database, int iteration);

  std::filesystem::path path_;
  IdRadixMap<Node>      nodes_;
  IdRadixMap<Element>   elements_;
  std::vector<int>      elementNodes_;
  std::vector<double>   coordinates_;  // shape [nodes, 3] until saved
};

}  // namespace quilon::calculix
