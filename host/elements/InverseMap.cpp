#include "elements/InverseMap.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

#include "elements/Vector.h"

namespace quilon {

namespace {

using Matrix = std::array<Vector, 3>;  // by row

constexpr std::size_t kMostNodes = 20;

/// Of the element's size: what is left of a distance where the iteration has arrived.
constexpr double kArrived = 1e-10;

/// Near an edge that has collapsed to a node an iteration only halves its distance.
constexpr int kMostSteps = 60;

bool IsQuadratic(ElementShape shape)
{
  return shape == ElementShape::Tet10 || shape == ElementShape::Wedge15 || shape == ElementShape::Brick20;
}

/// The greatest sum of the functions of all middle nodes, which are nowhere negative: 4 (ab + bc + ...) of a
/// tetrahedron where all corners weigh 1/4; in the middle of a triangle 4/3, and 1 of the edges along the axis; 3 -
/// |local|^2.
double MostOfMiddles(ElementShape shape)
{
  switch (shape) {
    case ElementShape::Tet10:
      return 1.5;
    case ElementShape::Wedge15:
      return 7.0 / 3.0;
    case ElementShape::Brick20:
      return 3.0;
    default:
      return 0.0;
  }
}

/// An element, its first node in the origin: differences keep the digits that places far from the origin have not.
class Map
{
public:
  Map(ElementShape shape, std::span<const double> coordinates) : shape_(shape), numNodes_(NumNodes(shape))
  {
    assert(coordinates.size() == 3 * numNodes_);
    for (std::size_t n = 0; n < numNodes_; ++n) {
      for (std::size_t k = 0; k < 3; ++k) {
        nodes_[n][k] = coordinates[3 * n + k] - coordinates[k];
        size_        = std::max(size_, std::abs(nodes_[n][k]));
      }
    }
  }

  double      GetSize() const noexcept { return size_; }
  std::size_t GetNumNodes() const noexcept { return numNodes_; }

  /// @param jacobian receives d place_i / d local_j
  Vector Evaluate(const Vector& local, Matrix& jacobian)
  {
    EvaluateShape(shape_, local, std::span(values_).first(numNodes_), std::span(derivatives_).first(3 * numNodes_));
    Vector place = {};
    jacobian     = {};
    for (std::size_t n = 0; n < numNodes_; ++n) {
      for (std::size_t i = 0; i < 3; ++i) {
        place[i] += values_[n] * nodes_[n][i];
        for (std::size_t j = 0; j < 3; ++j) jacobian[i][j] += nodes_[n][i] * derivatives_[3 * n + j];
      }
    }
    return place;
  }

private:
  ElementShape                       shape_;
  std::size_t                        numNodes_;
  std::array<Vector, kMostNodes>     nodes_ = {};
  double                             size_  = 0.0;
  std::array<double, kMostNodes>     values_;
  std::array<double, 3 * kMostNodes> derivatives_;
};

double Determinant(const Matrix& m)
{
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

/// By Cramer's rule. @return whether there is a solution that is finite
bool Solve(const Matrix& m, const Vector& right, Vector& solution)
{
  const double determinant = Determinant(m);
  for (std::size_t j = 0; j < 3; ++j) {
    Matrix replaced = m;
    for (std::size_t i = 0; i < 3; ++i) replaced[i][j] = right[i];
    solution[j] = Determinant(replaced) / determinant;
  }
  return std::isfinite(solution[0]) && std::isfinite(solution[1]) && std::isfinite(solution[2]);
}

/// The step of least squares, damped a little: it exists where an element is flat or an edge has collapsed.
Vector DampedStep(const Matrix& jacobian, const Vector& rest)
{
  Matrix normal = {};
  Vector right  = {};
  double trace  = 0.0;
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      for (std::size_t k = 0; k < 3; ++k) normal[i][j] += jacobian[k][i] * jacobian[k][j];
    }
    for (std::size_t k = 0; k < 3; ++k) right[i] += jacobian[k][i] * rest[k];
    trace += normal[i][i];
  }
  for (std::size_t i = 0; i < 3; ++i) normal[i][i] += 1e-10 * trace;
  Vector step = {};
  if (!Solve(normal, right, step)) return {};
  return step;
}

/// @return the nearest of the places that Newton's method comes by
Vector Iterate(Map& map, const Vector& target, Vector local)
{
  Vector best         = local;
  double bestDistance = std::numeric_limits<double>::infinity();
  for (int count = 0; count < kMostSteps; ++count) {
    Matrix       jacobian;
    const Vector place    = map.Evaluate(local, jacobian);
    const Vector rest     = {target[0] - place[0], target[1] - place[1], target[2] - place[2]};
    const double distance = Length(rest);
    if (distance < bestDistance) {
      best         = local;
      bestDistance = distance;
    } else if (bestDistance <= kArrived * map.GetSize()) {
      break;  // rounding is all that is left
    }
    if (distance == 0.0) break;

    Vector step    = {};
    double product = 1.0;
    for (std::size_t j = 0; j < 3; ++j) product *= Length({jacobian[0][j], jacobian[1][j], jacobian[2][j]});
    const bool isSound = std::abs(Determinant(jacobian)) > 1e-10 * product;
    if (!isSound || !Solve(jacobian, rest, step)) step = DampedStep(jacobian, rest);
    const double length = std::max({std::abs(step[0]), std::abs(step[1]), std::abs(step[2])});
    if (length == 0.0) break;
    // Far steps lead out of the range in which the map is one to one.
    const double factor = length > 1.0 ? 1.0 / length : 1.0;
    for (std::size_t j = 0; j < 3; ++j) local[j] = std::clamp(local[j] + factor * step[j], -3.0, 3.0);
  }
  return best;
}

/// @param corners coordinates but the last one's, which is 1 less the others; brought into 0 to 1
template <typename Corners>
void ClampBarycentric(Corners corners)
{
  double last = 1.0;
  for (const double corner : corners) last -= corner;
  double sum = std::max(last, 0.0);
  for (double& corner : corners) {
    corner = std::max(corner, 0.0);
    sum += corner;
  }
  if (last >= 0.0 && sum == 1.0) return;
  for (double& corner : corners) corner /= sum;
}

/// @return a place within the element: the same one, or one on its border
Vector Clamped(ElementShape shape, Vector local)
{
  switch (shape) {
    case ElementShape::Tet4:
    case ElementShape::Tet10:
      ClampBarycentric(std::span(local));
      break;
    case ElementShape::Wedge6:
    case ElementShape::Wedge15:
      ClampBarycentric(std::span(local).first<2>());
      local[2] = std::clamp(local[2], -1.0, 1.0);
      break;
    case ElementShape::Brick8:
    case ElementShape::Brick20:
      for (double& coordinate : local) coordinate = std::clamp(coordinate, -1.0, 1.0);
      break;
  }
  return local;
}

Vector CentreOf(ElementShape shape)
{
  switch (shape) {
    case ElementShape::Tet4:
    case ElementShape::Tet10:
      return {0.25, 0.25, 0.25};
    case ElementShape::Wedge6:
    case ElementShape::Wedge15:
      return {1.0 / 3.0, 1.0 / 3.0, 0.0};
    case ElementShape::Brick8:
    case ElementShape::Brick20:
      break;
  }
  return {};
}

}  // namespace

Box BoundElement(ElementShape shape, std::span<const double> coordinates)
{
  assert(coordinates.size() == 3 * NumNodes(shape));
  const auto        edges      = EdgesOf(shape);
  const std::size_t numCorners = IsQuadratic(shape) ? NumNodes(shape) - edges.size() : NumNodes(shape);
  const double      most       = MostOfMiddles(shape);
  Box               box;
  for (std::size_t k = 0; k < 3; ++k) {
    box.least[k] = box.greatest[k] = coordinates[k];
    for (std::size_t n = 1; n < numCorners; ++n) {
      box.least[k]    = std::min(box.least[k], coordinates[3 * n + k]);
      box.greatest[k] = std::max(box.greatest[k], coordinates[3 * n + k]);
    }
    if (!IsQuadratic(shape)) continue;
    // The functions of a quadratic element are those of the linear one with each middle node's function times how far
    // that node is from the middle of its corners.
    double below = 0.0;
    double above = 0.0;
    for (std::size_t e = 0; e < edges.size(); ++e) {
      const auto& [a, b]  = edges[e];
      const double middle = 0.5 * (coordinates[3 * a + k] + coordinates[3 * b + k]);
      const double bent   = coordinates[3 * (numCorners + e) + k] - middle;
      below               = std::min(below, bent);
      above               = std::max(above, bent);
    }
    box.least[k] += most * below;
    box.greatest[k] += most * above;
  }
  return box;
}

std::optional<std::array<double, 3>> FindLocalPlace(ElementShape shape, std::span<const double> coordinates,
                                                    const std::array<double, 3>& point, double reach)
{
  Map          map(shape, coordinates);
  const Vector target  = {point[0] - coordinates[0], point[1] - coordinates[1], point[2] - coordinates[2]};
  const double allowed = std::max(reach, kArrived * map.GetSize());
  if (!std::isfinite(Length(target)) || !std::isfinite(map.GetSize())) return std::nullopt;

  const Vector      centre     = CentreOf(shape);
  const std::size_t numCorners = IsQuadratic(shape) ? map.GetNumNodes() - EdgesOf(shape).size() : map.GetNumNodes();
  // A tetrahedron of four nodes is mapped linearly: one start tells all.
  const std::size_t numStarts = shape == ElementShape::Tet4 ? 1 : 1 + numCorners;
  for (std::size_t start = 0; start < numStarts; ++start) {
    Vector local = centre;
    if (start > 0) {
      const Vector corner = LocalPosition(shape, start - 1);
      for (std::size_t k = 0; k < 3; ++k) local[k] = 0.5 * (centre[k] + corner[k]);
    }
    local = Clamped(shape, Iterate(map, target, local));
    Matrix       jacobian;
    const Vector place = map.Evaluate(local, jacobian);
    if (Length({target[0] - place[0], target[1] - place[1], target[2] - place[2]}) <= allowed) return local;
  }
  return std::nullopt;
}

}  // namespace quilon
