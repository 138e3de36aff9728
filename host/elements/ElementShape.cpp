#include "elements/ElementShape.h"

#include <cassert>

namespace quilon {

namespace {

using Point = std::array<double, 3>;

constexpr std::array<Point, 6> kWedgeCorners = {{{0, 0, -1}, {1, 0, -1}, {0, 1, -1}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}}};
constexpr std::array<Point, 4> kTetCorners   = {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

/// Corner coordinates of tetrahedra and of the triangle of wedges: the last one is 1 less all others.
template <std::size_t kCorners>
struct Barycentric
{
  explicit Barycentric(const Point& local)
  {
    value[0]    = 1.0;
    gradient[0] = {};
    for (std::size_t corner = 1; corner < kCorners; ++corner) {
      const double coordinate = local[corner - 1];
      value[corner]           = coordinate;
      value[0] -= coordinate;
      gradient[corner]             = {};
      gradient[corner][corner - 1] = 1.0;
      gradient[0][corner - 1]      = -1.0;
    }
  }

  std::array<double, kCorners> value;
  std::array<Point, kCorners>  gradient;
};

Point MiddleOf(const Point& a, const Point& b)
{
  return {0.5 * (a[0] + b[0]), 0.5 * (a[1] + b[1]), 0.5 * (a[2] + b[2])};
}

void EvaluateTet4(const Point& local, double* values, double* derivatives)
{
  const Barycentric<4> l(local);
  for (std::size_t n = 0; n < 4; ++n) {
    values[n] = l.value[n];
    for (std::size_t k = 0; k < 3; ++k) derivatives[3 * n + k] = l.gradient[n][k];
  }
}

void EvaluateTet10(const Point& local, double* values, double* derivatives)
{
  const Barycentric<4> l(local);
  for (std::size_t n = 0; n < 4; ++n) {
    values[n] = l.value[n] * (2.0 * l.value[n] - 1.0);
    for (std::size_t k = 0; k < 3; ++k) derivatives[3 * n + k] = (4.0 * l.value[n] - 1.0) * l.gradient[n][k];
  }
  std::size_t n = 4;
  for (const auto& [a, b] : kTetEdges) {
    values[n] = 4.0 * l.value[a] * l.value[b];
    for (std::size_t k = 0; k < 3; ++k)
      derivatives[3 * n + k] = 4.0 * (l.gradient[a][k] * l.value[b] + l.value[a] * l.gradient[b][k]);
    ++n;
  }
}

void EvaluateWedge6(const Point& local, double* values, double* derivatives)
{
  const Barycentric<3> l(local);
  for (std::size_t n = 0; n < 6; ++n) {
    const std::size_t corner = n % 3;
    const double      sign   = n < 3 ? -1.0 : 1.0;
    const double      height = 0.5 * (1.0 + sign * local[2]);
    values[n]                = l.value[corner] * height;
    for (std::size_t k = 0; k < 2; ++k) derivatives[3 * n + k] = l.gradient[corner][k] * height;
    derivatives[3 * n + 2] = 0.5 * sign * l.value[corner];
  }
}

void EvaluateWedge15(const Point& local, double* values, double* derivatives)
{
  const Barycentric<3> l(local);
  const double         z = local[2];
  for (std::size_t n = 0; n < 6; ++n) {
    const std::size_t corner = n % 3;
    const double      sign   = n < 3 ? -1.0 : 1.0;
    const double      a      = l.value[corner];
    values[n]                = 0.5 * a * (1.0 + sign * z) * (2.0 * a - 2.0 + sign * z);
    for (std::size_t k = 0; k < 2; ++k)
      derivatives[3 * n + k] = 0.5 * (1.0 + sign * z) * (4.0 * a - 2.0 + sign * z) * l.gradient[corner][k];
    derivatives[3 * n + 2] = 0.5 * sign * a * (2.0 * a - 1.0 + 2.0 * sign * z);
  }
  for (std::size_t n = 6; n < 12; ++n) {  // edges of the two triangles
    const double      sign = n < 9 ? -1.0 : 1.0;
    const std::size_t a    = kWedgeEdges[n - 6].first % 3;
    const std::size_t b    = kWedgeEdges[n - 6].second % 3;
    values[n]              = 2.0 * l.value[a] * l.value[b] * (1.0 + sign * z);
    for (std::size_t k = 0; k < 2; ++k) {
      derivatives[3 * n + k] = 2.0 * (l.gradient[a][k] * l.value[b] + l.value[a] * l.gradient[b][k]) * (1.0 + sign * z);
    }
    derivatives[3 * n + 2] = 2.0 * sign * l.value[a] * l.value[b];
  }
  for (std::size_t n = 12; n < 15; ++n) {  // edges along the third axis
    const std::size_t corner = n - 12;
    values[n]                = l.value[corner] * (1.0 - z * z);
    for (std::size_t k = 0; k < 2; ++k) derivatives[3 * n + k] = l.gradient[corner][k] * (1.0 - z * z);
    derivatives[3 * n + 2] = -2.0 * z * l.value[corner];
  }
}

void EvaluateBrick8(const Point& local, double* values, double* derivatives)
{
  for (std::size_t n = 0; n < 8; ++n) {
    const Point& c = kBrickCorners[n];
    const Point  f = {1.0 + c[0] * local[0], 1.0 + c[1] * local[1], 1.0 + c[2] * local[2]};
    values[n]      = 0.125 * f[0] * f[1] * f[2];

    derivatives[3 * n]     = 0.125 * c[0] * f[1] * f[2];
    derivatives[3 * n + 1] = 0.125 * c[1] * f[0] * f[2];
    derivatives[3 * n + 2] = 0.125 * c[2] * f[0] * f[1];
  }
}

void EvaluateBrick20(const Point& local, double* values, double* derivatives)
{
  for (std::size_t n = 0; n < 8; ++n) {
    const Point& c   = kBrickCorners[n];
    const Point  p   = {c[0] * local[0], c[1] * local[1], c[2] * local[2]};
    const Point  f   = {1.0 + p[0], 1.0 + p[1], 1.0 + p[2]};
    const double sum = p[0] + p[1] + p[2];
    values[n]        = 0.125 * f[0] * f[1] * f[2] * (sum - 2.0);

    derivatives[3 * n]     = 0.125 * c[0] * f[1] * f[2] * (sum + p[0] - 1.0);
    derivatives[3 * n + 1] = 0.125 * c[1] * f[0] * f[2] * (sum + p[1] - 1.0);
    derivatives[3 * n + 2] = 0.125 * c[2] * f[0] * f[1] * (sum + p[2] - 1.0);
  }
  for (std::size_t n = 8; n < 20; ++n) {
    const auto& [a, b] = kBrickEdges[n - 8];
    const Point middle = MiddleOf(kBrickCorners[a], kBrickCorners[b]);
    Point       f;  // quadratic along the edge, linear across it
    Point       slope;
    for (std::size_t k = 0; k < 3; ++k) {
      const bool isAlong = middle[k] == 0.0;
      f[k]               = isAlong ? 1.0 - local[k] * local[k] : 1.0 + middle[k] * local[k];
      slope[k]           = isAlong ? -2.0 * local[k] : middle[k];
    }
    values[n] = 0.25 * f[0] * f[1] * f[2];

    derivatives[3 * n]     = 0.25 * slope[0] * f[1] * f[2];
    derivatives[3 * n + 1] = 0.25 * f[0] * slope[1] * f[2];
    derivatives[3 * n + 2] = 0.25 * f[0] * f[1] * slope[2];
  }
}

template <std::size_t kCorners, std::size_t kEdges>
Point PositionOf(const std::array<Point, kCorners>& corners, const std::array<ElementEdge, kEdges>& edges,
                 std::size_t node)
{
  if (node < kCorners) return corners[node];
  const auto& [a, b] = edges[node - kCorners];
  return MiddleOf(corners[a], corners[b]);
}

}  // namespace

std::size_t NumNodes(ElementShape shape) noexcept
{
  switch (shape) {
    case ElementShape::Tet4:
      return 4;
    case ElementShape::Tet10:
      return 10;
    case ElementShape::Wedge6:
      return 6;
    case ElementShape::Wedge15:
      return 15;
    case ElementShape::Brick8:
      return 8;
    case ElementShape::Brick20:
      return 20;
  }
  return 0;
}

std::optional<ElementShape> FindShape(int frdType) noexcept
{
  static constexpr std::array<ElementShape, 6> kShapes = {ElementShape::Brick8,  ElementShape::Wedge6,
                                                          ElementShape::Tet4,    ElementShape::Brick20,
                                                          ElementShape::Wedge15, ElementShape::Tet10};
  if (frdType < 1 || frdType > static_cast<int>(kShapes.size())) return std::nullopt;
  return kShapes[static_cast<std::size_t>(frdType) - 1];
}

std::span<const ElementEdge> EdgesOf(ElementShape shape) noexcept
{
  switch (shape) {
    case ElementShape::Tet4:
    case ElementShape::Tet10:
      return kTetEdges;
    case ElementShape::Wedge6:
    case ElementShape::Wedge15:
      return kWedgeEdges;
    case ElementShape::Brick8:
    case ElementShape::Brick20:
      return kBrickEdges;
  }
  return {};
}

void EvaluateShape(ElementShape shape, const std::array<double, 3>& local, std::span<double> values,
                   std::span<double> derivatives)
{
  assert(values.size() == NumNodes(shape) && derivatives.size() == 3 * NumNodes(shape));
  switch (shape) {
    case ElementShape::Tet4:
      return EvaluateTet4(local, values.data(), derivatives.data());
    case ElementShape::Tet10:
      return EvaluateTet10(local, values.data(), derivatives.data());
    case ElementShape::Wedge6:
      return EvaluateWedge6(local, values.data(), derivatives.data());
    case ElementShape::Wedge15:
      return EvaluateWedge15(local, values.data(), derivatives.data());
    case ElementShape::Brick8:
      return EvaluateBrick8(local, values.data(), derivatives.data());
    case ElementShape::Brick20:
      return EvaluateBrick20(local, values.data(), derivatives.data());
  }
}

std::array<double, 3> LocalPosition(ElementShape shape, std::size_t node) noexcept
{
  assert(node < NumNodes(shape));
  switch (shape) {
    case ElementShape::Tet4:
    case ElementShape::Tet10:
      return PositionOf(kTetCorners, kTetEdges, node);
    case ElementShape::Wedge6:
    case ElementShape::Wedge15:
      return PositionOf(kWedgeCorners, kWedgeEdges, node);
    case ElementShape::Brick8:
    case ElementShape::Brick20:
      return PositionOf(kBrickCorners, kBrickEdges, node);
  }
  return {};
}

bool IsOnFace(ElementShape shape, std::size_t node, int face) noexcept
{
  // Each face is where one linear form of the local coordinates has its value; all of them are exact at nodes.
  struct Plane
  {
    std::array<double, 3> normal;
    double                value;
  };
  static constexpr std::array<Plane, 6> kBrick = {
      {{{0, 0, 1}, -1}, {{0, 0, 1}, 1}, {{0, 1, 0}, -1}, {{1, 0, 0}, 1}, {{0, 1, 0}, 1}, {{1, 0, 0}, -1}}};
  static constexpr std::array<Plane, 5> kWedge = {
      {{{0, 0, 1}, -1}, {{0, 0, 1}, 1}, {{0, 1, 0}, 0}, {{1, 1, 0}, 1}, {{1, 0, 0}, 0}}};
  static constexpr std::array<Plane, 4> kTet = {{{{0, 0, 1}, 0}, {{0, 1, 0}, 0}, {{1, 1, 1}, 1}, {{1, 0, 0}, 0}}};

  std::span<const Plane> planes = kBrick;
  if (shape == ElementShape::Wedge6 || shape == ElementShape::Wedge15) planes = kWedge;
  if (shape == ElementShape::Tet4 || shape == ElementShape::Tet10) planes = kTet;
  if (face < 1 || face > static_cast<int>(planes.size())) return false;
  const Plane&                plane = planes[static_cast<std::size_t>(face) - 1];
  const std::array<double, 3> at    = LocalPosition(shape, node);
  return plane.normal[0] * at[0] + plane.normal[1] * at[1] + plane.normal[2] * at[2] == plane.value;
}

}  // namespace quilon
