#include "plot/PlaneSection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

#include "elements/ElementShape.h"
#include "mesh/ElementTopology.h"

namespace quilon {

namespace {

using Local = std::array<double, 3>;

/// The corners of a tetrahedron in local coordinates.
using Tetrahedron = std::array<Local, 4>;

/// Six tetrahedra along the long diagonal of a box.
void AddBox(const Local& low, const Local& high, std::vector<Tetrahedron>& cells)
{
  constexpr std::size_t kOrders[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
  for (const auto& order : kOrders) {
    Tetrahedron cell;
    cell[0] = low;
    for (std::size_t i = 0; i < 3; ++i) {
      cell[i + 1]           = cell[i];
      cell[i + 1][order[i]] = high[order[i]];
    }
    cells.push_back(cell);
  }
}

/// Three tetrahedra of a triangle times an interval.
void AddWedge(const std::array<std::array<double, 2>, 3>& corners, double low, double high,
              std::vector<Tetrahedron>& cells)
{
  const auto at = [&](std::size_t i, double t) { return Local{corners[i][0], corners[i][1], t}; };
  cells.push_back({at(0, low), at(1, low), at(2, low), at(2, high)});
  cells.push_back({at(0, low), at(1, low), at(1, high), at(2, high)});
  cells.push_back({at(0, low), at(0, high), at(1, high), at(2, high)});
}

/// Eight tetrahedra between the corners and the middles of the edges, again and again.
void AddTetrahedra(const Tetrahedron& whole, std::size_t halvings, std::vector<Tetrahedron>& cells)
{
  if (halvings == 0) {
    cells.push_back(whole);
    return;
  }
  const auto middle = [&](std::size_t i, std::size_t j) {
    return Local{0.5 * (whole[i][0] + whole[j][0]), 0.5 * (whole[i][1] + whole[j][1]),
                 0.5 * (whole[i][2] + whole[j][2])};
  };
  const Local ab = middle(0, 1), ac = middle(0, 2), ad = middle(0, 3);
  const Local bc = middle(1, 2), bd = middle(1, 3), cd = middle(2, 3);
  // The octahedron that the corners leave is cut along ab-cd.
  for (const Tetrahedron& part :
       {Tetrahedron{whole[0], ab, ac, ad}, Tetrahedron{ab, whole[1], bc, bd}, Tetrahedron{ac, bc, whole[2], cd},
        Tetrahedron{ad, bd, cd, whole[3]}, Tetrahedron{ab, cd, ac, ad}, Tetrahedron{ab, cd, ad, bd},
        Tetrahedron{ab, cd, bd, bc}, Tetrahedron{ab, cd, bc, ac}})
    AddTetrahedra(part, halvings - 1, cells);
}

std::vector<Tetrahedron> CellsOf(ElementShape shape, std::size_t steps)
{
  std::vector<Tetrahedron> cells;
  const auto               n = static_cast<double>(steps);
  switch (shape) {
    case ElementShape::Tet4:
    case ElementShape::Tet10:
      AddTetrahedra({{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
                    shape == ElementShape::Tet4 ? 0 : static_cast<std::size_t>(std::ceil(std::log2(n))), cells);
      break;
    case ElementShape::Wedge6:
    case ElementShape::Wedge15:
      for (std::size_t k = 0; k < steps; ++k)
        for (std::size_t j = 0; j < steps; ++j)
          for (std::size_t i = 0; i + j < steps; ++i) {
            const double low  = 2.0 * static_cast<double>(k) / n - 1.0;
            const double high = 2.0 * static_cast<double>(k + 1) / n - 1.0;
            const double r    = static_cast<double>(i) / n;
            const double s    = static_cast<double>(j) / n;
            const double d    = 1.0 / n;
            AddWedge({{{r, s}, {r + d, s}, {r, s + d}}}, low, high, cells);
            if (i + j + 1 < steps) AddWedge({{{r + d, s}, {r + d, s + d}, {r, s + d}}}, low, high, cells);
          }
      break;
    case ElementShape::Brick8:
    case ElementShape::Brick20:
      for (std::size_t k = 0; k < steps; ++k)
        for (std::size_t j = 0; j < steps; ++j)
          for (std::size_t i = 0; i < steps; ++i) {
            const Local low{2.0 * static_cast<double>(i) / n - 1.0, 2.0 * static_cast<double>(j) / n - 1.0,
                            2.0 * static_cast<double>(k) / n - 1.0};
            AddBox(low, {low[0] + 2.0 / n, low[1] + 2.0 / n, low[2] + 2.0 / n}, cells);
          }
      break;
  }
  return cells;
}

double SideOf(const SectionPoint& point, std::span<const double> sides)
{
  double side = 0.0;
  for (std::size_t i = 0; i < sides.size(); ++i) side += point[i] * sides[i];
  return side;
}

/// @return the point between two where the side is 0
/// @param a, b sides of the two, of which one is below 0 and the other is not
SectionPoint Between(const SectionPoint& from, double a, const SectionPoint& to, double b)
{
  const double share = a / (a - b);
  SectionPoint point;
  for (std::size_t i = 0; i < point.size(); ++i) point[i] = from[i] + (to[i] - from[i]) * share;
  return point;
}

}  // namespace

std::vector<double> SidesOf(const Mesh& mesh, const SectionPlane& plane)
{
  const auto [nx, ny, nz]    = plane.normal;
  const double        length = std::sqrt(nx * nx + ny * ny + nz * nz);
  std::vector<double> sides;
  sides.reserve(mesh.NumNodes());
  double least    = std::numeric_limits<double>::infinity();
  double greatest = -least;
  for (const Mesh::Point& point : mesh.Points()) {
    const double side =
        ((point[0] - plane.point[0]) * nx + (point[1] - plane.point[1]) * ny + (point[2] - plane.point[2]) * nz) /
        length;
    least    = std::min(least, side);
    greatest = std::max(greatest, side);
    sides.push_back(side);
  }
  for (double& side : sides)
    if (std::abs(side) <= 1e-9 * (greatest - least)) side = 0.0;
  return sides;
}

PlaneSection::PlaneSection(std::size_t steps) : grids_(steps)
{
  for (std::size_t shape = 0; shape < cells_.size(); ++shape) {
    const auto                   kind  = static_cast<ElementShape>(shape);
    Cells&                       cells = cells_[shape];
    std::map<Local, std::size_t> known;
    std::array<double, 20>       values{};
    std::array<double, 60>       derivatives{};
    for (const Tetrahedron& tetrahedron : CellsOf(kind, steps)) {
      std::array<std::size_t, 4> corners{};
      for (std::size_t i = 0; i < 4; ++i) {
        const auto [place, isNew] = known.try_emplace(tetrahedron[i], cells.points.size());
        corners[i]                = place->second;
        if (!isNew) continue;
        const std::size_t count = NumNodes(kind);
        EvaluateShape(kind, tetrahedron[i], std::span(values).first(count), std::span(derivatives).first(3 * count));
        SectionPoint point{};
        std::copy_n(values.begin(), count, point.begin());
        cells.points.push_back(point);
      }
      cells.tetrahedra.push_back(corners);
    }
  }
}

SolidCut PlaneSection::Cut(const Mesh& mesh, const Mesh::Element& element, std::span<const double> sides) const
{
  SolidCut                          section;
  const std::optional<ElementShape> shape = FindShape(element.frdType);
  if (!shape) return section;
  const auto             nodes = mesh.NodesOf(element);
  std::array<double, 20> own{};
  bool                   hasKept  = false;
  bool                   hasTaken = false;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    own[i]   = sides[nodes[i]];
    hasKept  = hasKept || own[i] < 0.0;
    hasTaken = hasTaken || own[i] >= 0.0;
  }
  if (!hasKept || !hasTaken) return section;
  const std::span<const double> ownSides = std::span(own).first(nodes.size());

  const Cells&        cells = cells_[static_cast<std::size_t>(*shape)];
  std::vector<double> pointSides;
  pointSides.reserve(cells.points.size());
  for (const SectionPoint& point : cells.points) {
    // What cancels between nodes on the plane is on the plane, too.
    const double side  = SideOf(point, ownSides);
    double       scale = 0.0;
    for (const double one : ownSides) scale = std::max(scale, std::abs(one));
    pointSides.push_back(std::abs(side) <= 1e-12 * scale ? 0.0 : side);
  }
  for (const auto& cell : cells.tetrahedra) {
    std::array<std::size_t, 4> kept{};
    std::array<std::size_t, 4> taken{};
    std::size_t                numKept  = 0;
    std::size_t                numTaken = 0;
    for (const std::size_t corner : cell) {
      if (pointSides[corner] < 0.0)
        kept[numKept++] = corner;
      else
        taken[numTaken++] = corner;
    }
    if (numKept == 0 || numTaken == 0) continue;
    const auto meet = [&](std::size_t a, std::size_t b) {
      return Between(cells.points[a], pointSides[a], cells.points[b], pointSides[b]);
    };
    if (numKept == 2) {
      const SectionPoint p = meet(kept[0], taken[0]), q = meet(kept[0], taken[1]);
      const SectionPoint r = meet(kept[1], taken[1]), s = meet(kept[1], taken[0]);
      section.triangles.push_back({p, q, r});
      section.triangles.push_back({p, r, s});
    } else if (numKept == 1) {
      section.triangles.push_back({meet(kept[0], taken[0]), meet(kept[0], taken[1]), meet(kept[0], taken[2])});
    } else {
      section.triangles.push_back({meet(kept[0], taken[0]), meet(kept[1], taken[0]), meet(kept[2], taken[0])});
    }
  }

  const ElementTopology& topology = *FindTopology(element.frdType);
  for (const ElementFace& face : topology.faces) {
    const PatchGrid&          grid = grids_.Of(face.numCorners, face.isCurved);
    std::vector<SectionPoint> points;
    std::vector<double>       faceSides;
    for (const PatchGrid::Weights& weights : grid.points) {
      SectionPoint point{};
      for (std::size_t i = 0; i < face.numCorners; ++i) {
        point[face.corners[i]] = weights[i];
        if (face.isCurved) point[face.middles[i]] = weights[face.numCorners + i];
      }
      points.push_back(point);
      faceSides.push_back(SideOf(point, ownSides));
    }
    for (const auto& triangle : grid.triangles) {
      std::array<SectionPoint, 2> ends{};
      std::size_t                 count = 0;
      for (std::size_t i = 0; i < 3 && count < 2; ++i) {
        const std::size_t a = triangle[i];
        const std::size_t b = triangle[(i + 1) % 3];
        if ((faceSides[a] < 0.0) != (faceSides[b] < 0.0))
          ends[count++] = faceSides[a] < 0.0 ? Between(points[a], faceSides[a], points[b], faceSides[b])
                                             : Between(points[b], faceSides[b], points[a], faceSides[a]);
      }
      if (count == 2) section.edges.push_back(ends);
    }
  }
  return section;
}

}  // namespace quilon
