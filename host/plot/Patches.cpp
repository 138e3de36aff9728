#include "plot/Patches.h"

#include <algorithm>
#include <cmath>

#include "elements/Vector.h"
#include "mesh/ElementTopology.h"

namespace quilon {

namespace {

/// Linear and quadratic functions of a triangle and a square with corners at the ends of [0, 1].
/// Formulas: O. C. Zienkiewicz, R. L. Taylor, The Finite Element Method, vol. 1, 5th ed., 2000, ch. 8.
PatchGrid::Weights TriangleWeights(bool isCurved, double r, double s)
{
  const double t = 1.0 - r - s;
  if (!isCurved) return {t, r, s};
  return {t * (2 * t - 1), r * (2 * r - 1), s * (2 * s - 1), 4 * t * r, 4 * r * s, 4 * s * t};
}

PatchGrid::Weights SquareWeights(bool isCurved, double r, double s)
{
  const PatchGrid::Weights flat = {(1 - r) * (1 - s), r * (1 - s), r * s, (1 - r) * s};
  if (!isCurved) return flat;
  const double       x = 2 * r - 1;
  const double       y = 2 * s - 1;
  PatchGrid::Weights weights{};
  const double       signs[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
  for (std::size_t i = 0; i < 4; ++i) weights[i] = flat[i] * (signs[i][0] * x + signs[i][1] * y - 1);
  weights[4] = 0.5 * (1 - x * x) * (1 - y);
  weights[5] = 0.5 * (1 + x) * (1 - y * y);
  weights[6] = 0.5 * (1 - x * x) * (1 + y);
  weights[7] = 0.5 * (1 - x) * (1 - y * y);
  return weights;
}

/// @return of length 1; zeros of a face without an area
std::array<double, 3> NormalOf(const Mesh& mesh, const Patch& patch)
{
  const auto& points = mesh.Points();
  const auto  at     = [&](std::size_t corner) { return points[patch.nodes[corner]]; };
  // Of a face of four corners that of its diagonals.
  const auto a         = Minus(at(patch.corners == 3 ? 1 : 2), at(0));
  const auto b         = Minus(at(patch.corners == 3 ? 2 : 3), at(patch.corners == 3 ? 0 : 1));
  const auto [x, y, z] = Cross(a, b);
  const double length  = std::sqrt(x * x + y * y + z * z);
  return length > 0.0 ? std::array<double, 3>{x / length, y / length, z / length} : std::array<double, 3>{};
}

/// A side of a patch with its corners in order, to find those that are the same.
struct Side
{
  std::uint64_t corners;  // the lesser position, then the greater
  std::uint32_t patch;
  std::uint8_t  side;

  bool operator<(const Side& other) const noexcept
  {
    return corners != other.corners ? corners < other.corners : patch < other.patch;
  }
};

}  // namespace

Patch MakePatch(const Mesh& mesh, std::size_t element, std::size_t face)
{
  const Mesh::Element&   owner    = mesh.Elements()[element];
  const ElementTopology& topology = *FindTopology(owner.frdType);
  const ElementFace&     side     = topology.faces[face];
  const auto             nodes    = mesh.NodesOf(owner);
  Patch                  patch{element, side.numCorners, side.isCurved, topology.dimension == 3, {}};
  for (std::size_t i = 0; i < side.numCorners; ++i) {
    patch.nodes[i] = nodes[side.corners[i]];
    if (side.isCurved) patch.nodes[side.numCorners + i] = nodes[side.middles[i]];
  }
  return patch;
}

std::vector<Patch> CollectPatches(const Mesh& mesh, const Surface& surface)
{
  std::vector<Patch>       patches;
  const Surface::Triangle* last = nullptr;
  for (const Surface::Triangle& triangle : surface.triangles) {
    if (last == nullptr || last->element != triangle.element || last->face != triangle.face)
      patches.push_back(
          MakePatch(mesh, triangle.element, triangle.face == 0 ? 0 : static_cast<std::size_t>(triangle.face - 1)));
    last = &triangle;
  }
  return patches;
}

PatchGrid::PatchGrid(std::size_t corners, bool isCurved, std::size_t steps)
{
  const auto n     = static_cast<double>(steps);
  const auto index = [](std::size_t value) { return static_cast<std::uint16_t>(value); };
  if (corners == 3) {
    // Row j has the points (i, j) with i + j <= steps.
    const auto at = [&](std::size_t i, std::size_t j) { return index(j * (steps + 1) - j * (j - 1) / 2 + i); };
    for (std::size_t j = 0; j <= steps; ++j)
      for (std::size_t i = 0; i + j <= steps; ++i)
        points.push_back(TriangleWeights(isCurved, static_cast<double>(i) / n, static_cast<double>(j) / n));
    for (std::size_t j = 0; j < steps; ++j)
      for (std::size_t i = 0; i + j < steps; ++i) {
        triangles.push_back({at(i, j), at(i + 1, j), at(i, j + 1)});
        if (i + j + 1 < steps) triangles.push_back({at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)});
      }
    for (std::size_t i = 0; i <= steps; ++i) {
      sides[0].push_back(at(i, 0));
      sides[1].push_back(at(steps - i, i));
      sides[2].push_back(at(0, steps - i));
    }
    return;
  }
  const auto at = [&](std::size_t i, std::size_t j) { return index(j * (steps + 1) + i); };
  for (std::size_t j = 0; j <= steps; ++j)
    for (std::size_t i = 0; i <= steps; ++i)
      points.push_back(SquareWeights(isCurved, static_cast<double>(i) / n, static_cast<double>(j) / n));
  for (std::size_t j = 0; j < steps; ++j)
    for (std::size_t i = 0; i < steps; ++i) {
      triangles.push_back({at(i, j), at(i + 1, j), at(i + 1, j + 1)});
      triangles.push_back({at(i, j), at(i + 1, j + 1), at(i, j + 1)});
    }
  for (std::size_t i = 0; i <= steps; ++i) {
    sides[0].push_back(at(i, 0));
    sides[1].push_back(at(steps, i));
    sides[2].push_back(at(steps - i, steps));
    sides[3].push_back(at(0, steps - i));
  }
}

PatchGrids::PatchGrids(std::size_t steps)
    : grids_{PatchGrid(3, false, steps), PatchGrid(3, true, std::max<std::size_t>(steps, 2)),
             PatchGrid(4, false, steps), PatchGrid(4, true, std::max<std::size_t>(steps, 2))}
{}

std::vector<PatchEdge> CollectEdges(const Mesh& mesh, const std::vector<Patch>& patches)
{
  constexpr double  kSmooth = 0.866;  // cosine of 30 degrees: what bends less is one surface to the eye
  std::vector<Side> sides;
  std::vector<std::array<double, 3>> normals;
  sides.reserve(4 * patches.size());
  normals.reserve(patches.size());
  for (std::size_t i = 0; i < patches.size(); ++i) {
    const Patch& patch = patches[i];
    normals.push_back(NormalOf(mesh, patch));
    for (std::size_t side = 0; side < patch.corners; ++side) {
      const auto [least, greatest] = std::minmax(patch.nodes[side], patch.nodes[(side + 1) % patch.corners]);
      sides.push_back({static_cast<std::uint64_t>(least) << 32U | greatest, static_cast<std::uint32_t>(i),
                       static_cast<std::uint8_t>(side)});
    }
  }
  std::sort(sides.begin(), sides.end());

  std::vector<PatchEdge> edges;
  for (auto side = sides.begin(); side != sides.end();) {
    const auto   next   = std::find_if(side, sides.end(), [&](const Side& it) { return it.corners != side->corners; });
    const auto   count  = next - side;
    const Patch& first  = patches[side->patch];
    const auto   second = count > 1 ? (side + 1)->patch : side->patch;
    const Patch& other  = patches[second];
    const auto&  a      = normals[side->patch];
    const auto&  b      = normals[second];
    const double cosine = a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
    // Neighbouring shells may be turned against each other.
    const double bend     = first.isSolid && other.isSolid ? cosine : std::abs(cosine);
    const bool   isBorder = mesh.Elements()[first.element].material != mesh.Elements()[other.element].material;
    edges.push_back(
        {side->patch, side->side, count != 2 || bend < kSmooth || isBorder, first.isSolid && other.isSolid, second});
    side = next;
  }
  return edges;
}

}  // namespace quilon
