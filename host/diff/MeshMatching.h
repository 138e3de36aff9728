#pragma once

/// @file
/// Meshes that are the same under other numbers.

#include <cstddef>
#include <string>

#include "diff/RecordMatching.h"

class FED_Database;

namespace quilon::diff {

/// What a mesh match left over.
struct MeshMatchReport
{
  std::size_t nodes    = 0;  ///< pairs of nodes
  std::size_t elements = 0;  ///< pairs of elements
  /// Nodes of the first mesh with several candidates within the tolerance: the nearest was taken, of equally near ones
  /// the one with the lowest id.
  std::size_t ambiguousNodes = 0;
};

/// Finds for each node of the first database the node of the second at the same place, and for each element the one
/// between the same nodes.
///
/// Places come from the blocks of coordinates (ONF id 516), elements from those of element nodes (595), in both cases
/// the first block by descriptor. Nodes pair one to one, near ones before far ones. Elements with the same nodes in
/// another order pair, too; without element nodes in both databases elements keep their ids.
/// @param tolerance largest distance of two nodes that are one, in the unit of the coordinates
/// @param names     of the databases, for messages
/// @throws FED_Failure for a database without coordinates, and for a tolerance so large that the nodes of the first
///         have more than a hundred candidates on average
MeshMatch MatchMeshes(const FED_Database& first, const FED_Database& second, double tolerance,
                      const std::string& firstName, const std::string& secondName, MeshMatchReport& report);

}  // namespace quilon::diff
