#pragma once

/// @file
/// Whether two databases have results of one mesh.

#include <set>

class FED_Database;

namespace quilon {

/// Nodes (516) and elements (595) of one iteration in two databases, by their ids. Where nodes lie plays no part: a
/// change of shape keeps its mesh.
struct MeshComparison
{
  bool          hasFirst  = false;  ///< a mesh at all
  bool          hasSecond = false;
  std::set<int> nodesOfFirst;  ///< that the second has not
  std::set<int> nodesOfSecond;
  std::set<int> elementsOfFirst;  ///< that the second has not
  std::set<int> elementsOfSecond;
  std::set<int> elementsOfOtherNodes;  ///< that both have, with other nodes or another order of them

  bool IsFirstWithin() const { return nodesOfFirst.empty() && elementsOfFirst.empty() && elementsOfOtherNodes.empty(); }
  bool IsSecondWithin() const
  {
    return nodesOfSecond.empty() && elementsOfSecond.empty() && elementsOfOtherNodes.empty();
  }
  bool IsSame() const { return IsFirstWithin() && IsSecondWithin(); }
};

MeshComparison CompareMeshes(const FED_Database& first, const FED_Database& second, int iteration);

}  // namespace quilon
