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
  Rows                       solids;
};

/// The outside of every part, borders to other parts included: hiding a part leaves no hole. Triangles, edges, beams
/// and solids stand part by part.
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

  /// What sections of solids need beside the above: all their points and elements that are not drawn, likewise.
  std::vector<std::uint32_t> insidePoints;
  std::vector<std::uint32_t> insideElements;
  std::vector<std::uint32_t> solids;  ///< positions in the mesh

  std::vector<PagePart> parts;  ///< by material, then sets
  /// Whether the sets would make more parts than a page can have: parts are materials then.
  bool leavesOutSets = false;
};

/// The solids of a page as it draws sections of them.
struct PageSolids
{
  std::vector<std::uint32_t> types;     ///< type codes of the .frd, 1 to 6
  std::vector<std::uint32_t> elements;  ///< positions in elements, then insideElements
  std::vector<std::uint32_t> points;    ///< positions in points, then insidePoints; in the order of decks
};

/// @return the nodes' ids of all points of a grid
std::vector<int> ReadPointIds(GridSource& grid);

/// @param sets of the mesh. Those that hold every element tell nothing apart. Where they cut the mesh into more than
/// 1000
///             parts, parts are materials alone.
PageModel MakePageModel(const Mesh& mesh, const std::vector<NamedSet>& sets, GridSource& grid);

/// @param model of the same mesh and grid
PageSolids ListPageSolids(const Mesh& mesh, GridSource& grid, const PageModel& model);

/// Nodes of a set as a page marks them.
struct PageNodeSet
{
  std::uint32_t  number   = 0;  ///< position in the list of sets
  std::size_t    numNodes = 0;  ///< of the mesh
  PagePart::Rows points;        ///< in PageNodeSets::points
};

struct PageNodeSets
{
  std::vector<PageNodeSet>   sets;    ///< those with a node of the mesh, in the order of the list
  std::vector<std::uint32_t> points;  ///< positions in PageModel::points, ascending within a set: those that are drawn
};

/// @param model of the same mesh and grid
PageNodeSets ListPageNodeSets(const Mesh& mesh, const std::vector<NamedSet>& sets, GridSource& grid,
                              const PageModel& model);

}  // namespace quilon
