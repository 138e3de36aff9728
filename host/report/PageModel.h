#pragma once

/// @file
/// The model as a page draws it: its outside, part by part.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "mesh/Mesh.h"

namespace quilon {

class GridSource;

/// Elements that are shown or hidden together: those of one material that are in the same element sets.
struct PagePart
{
  /// Where its rows begin and how many they are.
  struct Rows
  {
    std::size_t first = 0;
    std::size_t count = 0;
  };

  int                        material = 0;  ///< number, 0 none
  std::vector<std::uint32_t> sets;          ///< element sets, positions in the list of sets
  Rows                       triangles;
  Rows                       edges;
  Rows                       beams;
};

/// The outside of every part, borders to other parts included: hiding a part leaves no hole. Triangles, edges and beams
/// stand part by part.
struct PageModel
{
  std::vector<std::uint32_t> points;    ///< of the grid, ascending: those that are drawn
  std::vector<std::uint32_t> elements;  ///< positions in the mesh, ascending: those that are drawn

  // Positions in points and elements above.
  std::vector<std::uint32_t> triangles;         ///< shape [triangles, 3]
  std::vector<std::uint32_t> triangleElements;  ///< shape [triangles]
  std::vector<std::uint32_t> edges;             ///< shape [edges, 2]: sides of faces, for mesh lines
  std::vector<std::uint32_t> beams;             ///< shape [beams, 2]
  std::vector<std::uint32_t> beamElements;      ///< shape [beams]

  std::vector<PagePart> parts;  ///< by material, then sets
};

/// @return the nodes' ids of all points of a grid
std::vector<int> ReadPointIds(GridSource& grid);

/// @param sets of the mesh. Those that hold every element tell nothing apart. Where they cut the mesh into more parts
///             than anybody looks at, parts are materials alone.
PageModel MakePageModel(const Mesh& mesh, const std::vector<NamedSet>& sets, GridSource& grid);

}  // namespace quilon
