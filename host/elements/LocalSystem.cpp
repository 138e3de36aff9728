#include "elements/LocalSystem.h"

#include <cassert>
#include <cmath>
#include <numbers>
#include <vector>

#include "elements/ElementShape.h"
#include "elements/IntegrationRule.h"
#include "elements/Vector.h"

namespace quilon {

namespace {

constexpr int kBrick8 = 1;

/// Sine of an angle that is none: products of numbers with sixteen digits leave 1e-16.
constexpr double kParallel = 1e-12;

/// @param least length below which the vector is rounding and nothing else
/// @return whether the vector had a direction
bool Normalise(Vector& a, double least = 0.0)
{
  const double length = Length(a);
  if (!(length > least) || !std::isfinite(length)) return false;
  for (double& component : a) component /= length;
  return true;
}

/// @param along   becomes the first of the axes
/// @param inPlane lies in the plane of the first two
std::optional<LocalAxes> AxesOf(Vector along, const Vector& inPlane)
{
  if (!Normalise(along)) return std::nullopt;
  Vector normal = Cross(along, inPlane);
  if (!Normalise(normal, kParallel * Length(inPlane))) return std::nullopt;
  return LocalAxes{along, Cross(normal, along), normal};
}

/// @param axis 1 to 3
void TurnAbout(LocalAxes& axes, int axis, double degrees)
{
  const double angle  = degrees * std::numbers::pi / 180.0;
  const double cosine = std::cos(angle);
  const double sine   = std::sin(angle);
  Vector&      first  = axes[static_cast<std::size_t>(axis % 3)];
  Vector&      second = axes[static_cast<std::size_t>((axis + 1) % 3)];
  for (std::size_t k = 0; k < 3; ++k) {
    const double turned = cosine * first[k] + sine * second[k];
    second[k]           = cosine * second[k] - sine * first[k];
    first[k]            = turned;
  }
}

/// @param radius from a point of the axis to the point
std::optional<LocalAxes> CylindricalAxes(Vector axis, const Vector& radius)
{
  if (!Normalise(axis)) return std::nullopt;
  const double height  = Dot(radius, axis);
  Vector       outward = {radius[0] - height * axis[0], radius[1] - height * axis[1], radius[2] - height * axis[2]};
  if (!Normalise(outward, kParallel * Length(radius))) return std::nullopt;
  return LocalAxes{outward, Cross(axis, outward), axis};
}

void LocatePoint(ElementShape shape, const Vector& local, std::span<const double> coordinates, double* point)
{
  std::vector<double> values(NumNodes(shape));
  std::vector<double> derivatives(3 * values.size());
  EvaluateShape(shape, local, values, derivatives);
  assert(coordinates.size() == 3 * values.size());
  for (std::size_t k = 0; k < 3; ++k) {
    point[k] = 0.0;
    for (std::size_t n = 0; n < values.size(); ++n) point[k] += values[n] * coordinates[3 * n + k];
  }
}

/// The transposed rotation times the tensor times the rotation.
void Turn(const LocalAxes& axes, std::span<double, 6> tensor)
{
  const double from[3][3] = {
      {tensor[0], tensor[3], tensor[5]}, {tensor[3], tensor[1], tensor[4]}, {tensor[5], tensor[4], tensor[2]}};
  double to[3][3] = {};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = i; j < 3; ++j) {
      for (std::size_t k = 0; k < 3; ++k) {
        for (std::size_t l = 0; l < 3; ++l) to[i][j] += axes[k][i] * from[k][l] * axes[l][j];
      }
    }
  }
  const double turned[6] = {to[0][0], to[1][1], to[2][2], to[0][1], to[1][2], to[0][2]};
  for (std::size_t k = 0; k < 6; ++k) tensor[k] = turned[k];
}

}  // namespace

std::optional<LocalAxes> FindLocalAxes(const Orientation& orientation, const std::array<double, 3>& point)
{
  if (orientation.system == Orientation::Cylindrical)
    return CylindricalAxes(Minus(orientation.b, orientation.a), Minus(point, orientation.a));

  std::optional<LocalAxes> axes = AxesOf(orientation.a, orientation.b);
  if (axes && orientation.rotationAxis != 0) TurnAbout(*axes, orientation.rotationAxis, orientation.rotationAngle);
  return axes;
}

void TurnToGlobal(const LocalAxes& axes, std::span<double, 6> tensor) { Turn(axes, tensor); }

void TurnToLocal(const LocalAxes& axes, std::span<double, 6> tensor)
{
  LocalAxes back;
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) back[i][k] = axes[k][i];
  }
  Turn(back, tensor);
}

void TurnToLocal(const LocalAxes& axes, std::span<double, 3> vector)
{
  const Vector global = {vector[0], vector[1], vector[2]};
  for (std::size_t i = 0; i < 3; ++i) vector[i] = Dot(axes[i], global);
}

bool LocatePoints(int frdType, std::size_t numPoints, std::span<const double> coordinates, std::span<double> points)
{
  assert(points.size() == 3 * numPoints);
  if (frdType == kBrick8 && numPoints == 1) {  // reduced integration has no rule for forces
    LocatePoint(ElementShape::Brick8, {}, coordinates, points.data());
    return true;
  }
  const IntegrationRule* rule = FindIntegrationRule(frdType, numPoints);
  if (rule == nullptr) return false;
  for (std::size_t p = 0; p < numPoints; ++p)
    LocatePoint(rule->shape, rule->points[p].local, coordinates, &points[3 * p]);
  return true;
}

}  // namespace quilon
