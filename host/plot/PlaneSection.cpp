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

/// A wedge in its own coordinates, `steps` cells along each edge.
void AddWedges(std::size_t steps, std::vector<Tetrahedron>& cells)
{
  const double n = static_cast<double>(steps);
  const double d = 1.0 / n;
  for (std::size_t k = 0; k < steps; ++k) {
    const double low  = 2.0 * static_cast<double>(k) / n - 1.0;
    const double high = 2.0 * static_cast<double>(k + 1) / n - 1.0;
    for (std::size_t j = 0; j < steps; ++j)
      for (std::size_t i = 0; i + j < steps; ++i) {
        const double r = static_cast<double>(i) / n;
        const double s = static_cast<double>(j) / n;
        AddWedge({{{r, s}, {r + d, s}, {r, s + d}}}, low, high, cells);
        if (i + j + 1 < steps) AddWedge({{{r + d, s}, {r + d, s + d}, {r, s + d}}}, low, high, cells);
      }
  }
}

/// A brick in its own coordinates.
void AddBoxes(std::size_t steps, std::vector<Tetrahedron>& cells)
{
  const auto n  = static_cast<double>(steps);
  const auto at = [n](std::size_t i) { return 2.0 * static_cast<double>(i) / n - 1.0; };
  for (std::size_t k = 0; k < steps; ++k)
    for (std::size_t j = 0; j < steps; ++j)
      for (std::size_t i = 0; i < steps; ++i) AddBox({at(i), at(j), at(k)}, {at(i + 1), at(j + 1), at(k + 1)}, cells);
}

std::vector<Tetrahedron> CellsOf(ElementShape shape, std::size_t steps)
{
  constexpr Tetrahedron    kWhole = {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  std::vector<Tetrahedron> cells;
  switch (shape) {
    case ElementShape::Tet4:
      AddTetrahedra(kWhole, 0, cells);
      break;
    case ElementShape::Tet10:
      AddTetrahedra(kWhole, static_cast<std::size_t>(std::ceil(std::log2(static_cast<double>(steps)))), cells);
      break;
    case ElementShape::Wedge6:
    case ElementShape::Wedge15:
      AddWedges(steps, cells);
      break;
    case ElementShape::Brick8:
    case ElementShape::Brick20:
      AddBoxes(steps, cells);
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

void PlaneSection::CutCells(const Cells& cells, std::span<const double> sides, SolidCut& section)
{
  double scale = 0.0;
  for (const double side : sides) scale = std::max(scale, std::abs(side));
  std::vector<double> pointSides;
  pointSides.reserve(cells.points.size());
  for (const SectionPoint& point : cells.points) {
    // What cancels between nodes on the plane is on the plane, too.
    const double side = SideOf(point, sides);
    pointSides.push_back(std::abs(side) <= 1e-12 * scale ? 0.0 : side);
  }
  const auto meet = [&](std::size_t a, std::size_t b) {
    return Between(cells.points[a], pointSides[a], cells.points[b], pointSides[b]);
  };
  for (std::array<std::size_t, 4> cell : cells.tetrahedra) {
    // Corners that are kept first.
    const auto middle =
        std::stable_partition(cell.begin(), cell.end(), [&](std::size_t corner) { return pointSides[corner] < 0.0; });
    const auto numKept = middle - cell.begin();
    if (numKept == 1) {
      section.triangles.push_back({meet(cell[0], cell[1]), meet(cell[0], cell[2]), meet(cell[0], cell[3])});
    } else if (numKept == 3) {
      section.triangles.push_back({meet(cell[0], cell[3]), meet(cell[1], cell[3]), meet(cell[2], cell[3])});
    } else if (numKept == 2) {
      const SectionPoint p = meet(cell[0], cell[2]);
      const SectionPoint r = meet(cell[1], cell[3]);
      section.triangles.push_back({p, meet(cell[0], cell[3]), r});
      section.triangles.push_back({p, r, meet(cell[1], cell[2])});
    }
  }
}

void PlaneSection::CutFace(const ElementFace& face, std::span<const double> sides, SolidCut& section) const
{
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
    faceSides.push_back(SideOf(point, sides));
  }
  for (const auto& triangle : grid.triangles) {
    std::array<SectionPoint, 2> ends{};
    std::size_t                 count = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      std::size_t a = triangle[i];
      std::size_t b = triangle[(i + 1) % 3];
      if (faceSides[b] < 0.0) std::swap(a, b);
      // From the side that is kept to the other one: none or two of the three.
      if (faceSides[a] < 0.0 && faceSides[b] >= 0.0)
        ends[count++] = Between(points[a], faceSides[a], points[b], faceSides[b]);
    }
    if (count == 2) section.edges.push_back(ends);
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

  CutCells(cells_[static_cast<std::size_t>(*shape)], ownSides, section);
  for (const ElementFace& face : FindTopology(element.frdType)->faces) CutFace(face, ownSides, section);
  return section;
}

}  // namespace quilon
