#pragma once

/// @file
/// What a plane makes of solids: the faces along which it cuts them.

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "mesh/Mesh.h"
#include "plot/Patches.h"

namespace quilon {

struct ElementFace;

/// A plane through the undeformed model. What lies on the side that its normal points to is taken away.
struct SectionPlane
{
  std::array<double, 3> point  = {};
  std::array<double, 3> normal = {0, 0, 1};  ///< of any length but 0
};

/// A point between the nodes of an element: node i counts weights[i].
using SectionPoint = std::array<double, 20>;

/// The cut of one element.
struct SolidCut
{
  std::vector<std::array<SectionPoint, 3>> triangles;  ///< turning either way
  std::vector<std::array<SectionPoint, 2>> edges;      ///< where the plane meets the element's sides
};

/// Distances of the nodes from a plane, in units of the normal's length: below 0 is kept. A node on the plane, within
/// 1e-9 of the model's extent along the normal, is at 0, and counts as taken away: elements that end at the plane have
/// their face there as the cut.
/// @return shape [mesh.NumNodes()]
std::vector<double> SidesOf(const Mesh& mesh, const SectionPlane& plane);

/// Cuts solids by cells of their own coordinates, in which everything is linear.
class PlaneSection
{
public:
  /// @param steps cells along an edge of a brick or a wedge, and of a quadratic tetrahedron: 2 or more follow curves
  explicit PlaneSection(std::size_t steps = 2);

  /// @param sides of all nodes, see SidesOf()
  /// @return nothing for an element that is no solid or lies on one side
  SolidCut Cut(const Mesh& mesh, const Mesh::Element& element, std::span<const double> sides) const;

private:
  /// The cells of a shape: tetrahedra between points.
  struct Cells
  {
    std::vector<SectionPoint>               points;
    std::vector<std::array<std::size_t, 4>> tetrahedra;
  };

  static void CutCells(const Cells& cells, std::span<const double> sides, SolidCut& section);
  void        CutFace(const ElementFace& face, std::span<const double> sides, SolidCut& section) const;

  std::array<Cells, 6> cells_;  // by ElementShape
  PatchGrids           grids_;
};

}  // namespace quilon
