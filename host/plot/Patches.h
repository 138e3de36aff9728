#pragma once

/// @file
/// The faces of a surface with their curves, and grids to draw them by.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "mesh/Mesh.h"
#include "mesh/Surface.h"

namespace quilon {

/// A face of a solid, or a shell.
struct Patch
{
  std::size_t                element  = 0;  ///< position in Mesh::Elements()
  std::size_t                corners  = 3;  ///< 3 or 4
  bool                       isCurved = false;
  bool                       isSolid  = false;  ///< the nodes are counter-clockwise, looked at from outside
  std::array<std::size_t, 8> nodes    = {};     ///< positions in Mesh::NodeIds(): corners, then middles of a curved one

  std::size_t NumNodes() const noexcept { return isCurved ? 2 * corners : corners; }
};

/// @return the patch of an element's side
/// @param face position in the faces of its topology
Patch MakePatch(const Mesh& mesh, std::size_t element, std::size_t face);

/// @return a patch for each side that has triangles, in their order
std::vector<Patch> CollectPatches(const Mesh& mesh, const Surface& surface);

/// A patch cut into triangles by a grid in its own coordinates. Neighbours that are cut as finely have the same points
/// on the side that they share.
struct PatchGrid
{
  using Weights = std::array<double, 8>;

  /// @param steps along a side; a curved patch has its middles among the points when it is even
  PatchGrid(std::size_t corners, bool isCurved, std::size_t steps);

  std::vector<Weights>                      points;     ///< what each node counts; shape [points, 8]
  std::vector<std::array<std::uint16_t, 3>> triangles;  ///< positions in points, turning as the corners do
  std::array<std::vector<std::uint16_t>, 4> sides;      ///< points from a corner to the next one, both included
};

/// The grids of the four sorts of patches.
class PatchGrids
{
public:
  /// @param steps even, or 1, which gives curved patches 2
  explicit PatchGrids(std::size_t steps);

  const PatchGrid& Of(std::size_t corners, bool isCurved) const noexcept
  {
    return grids_[(corners - 3) * 2 + isCurved];
  }
  const PatchGrid& Of(const Patch& patch) const noexcept { return Of(patch.corners, patch.isCurved); }

private:
  std::array<PatchGrid, 4> grids_;
};

/// A line that faces share.
struct PatchEdge
{
  std::uint32_t patch     = 0;  ///< the first that has it
  std::uint8_t  side      = 0;
  bool          isFeature = false;  ///< sharp, at the end of a surface, or between materials
  bool          isOfSolid = false;
  std::uint32_t other     = 0;  ///< the second patch, or the first again
};

/// @return each edge once
std::vector<PatchEdge> CollectEdges(const Mesh& mesh, const std::vector<Patch>& patches);

}  // namespace quilon
