#pragma once

/// @file
/// What one sees of a mesh from outside.

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "mesh/Mesh.h"

namespace quilon {

/// The faces of solids that belong to one element alone, shells, and beams as lines. Nodes are positions in
/// Mesh::NodeIds(), elements positions in Mesh::Elements().
struct Surface
{
  /// Counter-clockwise, looked at from outside; of a shell as its nodes come.
  struct Triangle
  {
    std::array<std::size_t, 3> nodes;
    std::size_t                element = 0;
    int                        face    = 0;  ///< as decks number the faces of a solid, from 1; 0 of a shell
  };
  struct Line
  {
    std::array<std::size_t, 2> nodes;
    std::size_t                element = 0;
  };

  /// By element, then face. A face with middle nodes is as many triangles as follow its curve: 4 of a triangle, 6 of a
  /// quadrangle. A face of four corners is cut along its shorter diagonal.
  std::vector<Triangle> triangles;
  /// Beams, trusses, and all that has two nodes and no shape, as springs; a curved one is two lines.
  std::vector<Line> beams;
  /// The sides of the faces, each once, for mesh lines; a curved one is two lines. By element.
  std::vector<Line> edges;
  /// Nodes of triangles and beams, ascending.
  std::vector<std::size_t> nodes;
};

/// @param isShown elements that are there, shape [mesh.NumElements()]; without any, all are. A face between one that is
///                and one that is not is outside.
Surface ExtractSurface(const Mesh& mesh, const std::vector<bool>& isShown = {});

}  // namespace quilon
