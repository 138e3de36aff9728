#include "elements/IntegrationRule.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace quilon {

namespace {

using Matrix = std::array<std::array<double, 3>, 3>;
using Points = std::vector<IntegrationRule::Point>;

/// Abscissa and weight on [-1, 1].
struct GaussPoint
{
  double x;
  double weight;
};

std::vector<GaussPoint> Gauss(int numPoints)
{
  if (numPoints == 2) return {{-1.0 / std::sqrt(3.0), 1.0}, {1.0 / std::sqrt(3.0), 1.0}};
  assert(numPoints == 3);
  return {{-std::sqrt(0.6), 5.0 / 9.0}, {0.0, 8.0 / 9.0}, {std::sqrt(0.6), 5.0 / 9.0}};
}

Points BrickPoints(int numPerAxis)
{
  const std::vector<GaussPoint> gauss = Gauss(numPerAxis);
  Points                        points;
  for (const GaussPoint& z : gauss) {
    for (const GaussPoint& y : gauss) {
      for (const GaussPoint& x : gauss) points.push_back({{x.x, y.x, z.x}, x.weight * y.weight * z.weight});
    }
  }
  return points;
}

/// @param triangle places in the triangle, of equal weight
Points WedgePoints(const std::vector<std::array<double, 2>>& triangle, int numAlongAxis)
{
  const double weight = 0.5 / static_cast<double>(triangle.size());
  Points       points;
  for (const GaussPoint& z : Gauss(numAlongAxis)) {
    for (const auto& [x, y] : triangle) points.push_back({{x, y, z.x}, weight * z.weight});
  }
  return points;
}

Points TetPoints(int numPoints)
{
  if (numPoints == 1) return {{{0.25, 0.25, 0.25}, 1.0 / 6.0}};
  assert(numPoints == 4);
  const double near   = (5.0 + 3.0 * std::sqrt(5.0)) / 20.0;
  const double far    = (5.0 - std::sqrt(5.0)) / 20.0;
  const double weight = 1.0 / 24.0;
  return {
      {{far, far, far}, weight}, {{near, far, far}, weight}, {{far, near, far}, weight}, {{far, far, near}, weight}};
}

IntegrationRule MakeRule(const char* name, int frdType, ElementShape shape, bool holdsDeformed, Points points)
{
  const std::size_t   numNodes = NumNodes(shape);
  std::vector<double> values(numNodes);
  std::vector<double> derivatives(points.size() * numNodes * 3);
  for (std::size_t p = 0; p < points.size(); ++p) {
    EvaluateShape(shape, points[p].local, values, std::span(derivatives).subspan(3 * numNodes * p, 3 * numNodes));
  }
  return {name, frdType, shape, holdsDeformed, std::move(points), std::move(derivatives)};
}

const std::vector<IntegrationRule>& Rules()
{
  const double                             third = 1.0 / 3.0;
  const double                             sixth = 1.0 / 6.0;
  const std::vector<std::array<double, 2>> centre{{third, third}};
  const std::vector<std::array<double, 2>> corners{{sixth, sixth}, {4 * sixth, sixth}, {sixth, 4 * sixth}};

  // C3D8 before C3D8I: type code and number of points find the first.
  static const std::vector<IntegrationRule> kIntegrationRules = {
      MakeRule("C3D4", 3, ElementShape::Tet4, true, TetPoints(1)),
      MakeRule("C3D6", 2, ElementShape::Wedge6, true, WedgePoints(centre, 2)),
      MakeRule("C3D8", 1, ElementShape::Brick8, true, BrickPoints(2)),
      MakeRule("C3D8I", 1, ElementShape::Brick8, false, BrickPoints(2)),
      MakeRule("C3D10", 6, ElementShape::Tet10, true, TetPoints(4)),
      MakeRule("C3D15", 5, ElementShape::Wedge15, true, WedgePoints(corners, 3)),
      MakeRule("C3D20", 4, ElementShape::Brick20, true, BrickPoints(3)),
      MakeRule("C3D20R", 4, ElementShape::Brick20, true, BrickPoints(2)),
  };
  return kIntegrationRules;
}

/// dx_i / dlocal_j at a point.
Matrix Jacobian(std::span<const double> coordinates, const double* derivatives)
{
  Matrix jacobian{};
  for (std::size_t n = 0; 3 * n < coordinates.size(); ++n) {
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) jacobian[i][j] += coordinates[3 * n + i] * derivatives[3 * n + j];
    }
  }
  return jacobian;
}

/// The determinant times the transposed inverse.
Matrix Cofactors(const Matrix& m)
{
  Matrix cofactors;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t i1 = (i + 1) % 3;
    const std::size_t i2 = (i + 2) % 3;
    for (std::size_t j = 0; j < 3; ++j) {
      const std::size_t j1 = (j + 1) % 3;
      const std::size_t j2 = (j + 2) % 3;
      cofactors[i][j]      = m[i1][j1] * m[i2][j2] - m[i1][j2] * m[i2][j1];
    }
  }
  return cofactors;
}

/// How far the cofactors may be off when the entries are off by up to errors.
Matrix CofactorErrors(const Matrix& m, const Matrix& errors)
{
  Matrix cofactors;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t i1 = (i + 1) % 3;
    const std::size_t i2 = (i + 2) % 3;
    for (std::size_t j = 0; j < 3; ++j) {
      const std::size_t j1 = (j + 1) % 3;
      const std::size_t j2 = (j + 2) % 3;
      cofactors[i][j]      = std::abs(m[i1][j1]) * errors[i2][j2] + errors[i1][j1] * std::abs(m[i2][j2]) +
                        std::abs(m[i1][j2]) * errors[i2][j1] + errors[i1][j2] * std::abs(m[i2][j1]);
    }
  }
  return cofactors;
}

Matrix StressMatrix(const double* s) { return {{{s[0], s[3], s[5]}, {s[3], s[1], s[4]}, {s[5], s[4], s[2]}}}; }

Matrix Product(const Matrix& a, const Matrix& b)
{
  Matrix product{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      for (std::size_t k = 0; k < 3; ++k) product[i][j] += a[i][k] * b[k][j];
    }
  }
  return product;
}

Matrix Magnitudes(Matrix m)
{
  for (auto& row : m) {
    for (double& entry : row) entry = std::abs(entry);
  }
  return m;
}

}  // namespace

const IntegrationRule* FindIntegrationRule(std::string_view name)
{
  for (const IntegrationRule& rule : Rules()) {
    if (rule.name == name) return &rule;
  }
  return nullptr;
}

const IntegrationRule* FindIntegrationRule(int frdType, std::size_t numPoints)
{
  for (const IntegrationRule& rule : Rules()) {
    if (rule.frdType == frdType && rule.points.size() == numPoints) return &rule;
  }
  return nullptr;
}

bool CalculateNodalForces(const IntegrationRule& rule, std::span<const double> coordinates,
                          std::span<const double> stress, std::span<double> forces)
{
  const std::size_t numNodes = NumNodes(rule.shape);
  assert(coordinates.size() == 3 * numNodes && forces.size() == 3 * numNodes);
  assert(stress.size() == 6 * rule.points.size());

  bool isPositive = true;
  std::fill(forces.begin(), forces.end(), 0.0);
  for (std::size_t p = 0; p < rule.points.size(); ++p) {
    const double* derivatives = &rule.derivatives[3 * numNodes * p];
    const Matrix  jacobian    = Jacobian(coordinates, derivatives);
    const Matrix  cofactors   = Cofactors(jacobian);
    const Matrix  traction    = Product(StressMatrix(&stress[6 * p]), cofactors);
    const double  volume =
        jacobian[0][0] * cofactors[0][0] + jacobian[0][1] * cofactors[0][1] + jacobian[0][2] * cofactors[0][2];
    isPositive = isPositive && volume > 0.0;

    for (std::size_t n = 0; n < numNodes; ++n) {
      const double* d = derivatives + 3 * n;
      for (std::size_t i = 0; i < 3; ++i) {
        forces[3 * n + i] +=
            rule.points[p].weight * (traction[i][0] * d[0] + traction[i][1] * d[1] + traction[i][2] * d[2]);
      }
    }
  }
  return isPositive;
}

void BoundForceErrors(const IntegrationRule& rule, std::span<const double> coordinates, std::span<const double> stress,
                      std::span<const double> tolerance, std::span<double> bounds)
{
  const std::size_t numNodes = NumNodes(rule.shape);
  assert(coordinates.size() == 3 * numNodes && tolerance.size() == 3 * numNodes && bounds.size() == 3 * numNodes);
  assert(stress.size() == 6 * rule.points.size());

  std::vector<double> magnitudes(3 * numNodes);
  std::fill(bounds.begin(), bounds.end(), 0.0);
  for (std::size_t p = 0; p < rule.points.size(); ++p) {
    const double* derivatives = &rule.derivatives[3 * numNodes * p];
    std::transform(derivatives, derivatives + 3 * numNodes, magnitudes.begin(), [](double d) { return std::abs(d); });
    const Matrix errors   = CofactorErrors(Jacobian(coordinates, derivatives), Jacobian(tolerance, magnitudes.data()));
    const Matrix traction = Product(Magnitudes(StressMatrix(&stress[6 * p])), errors);

    for (std::size_t n = 0; n < numNodes; ++n) {
      const double* d = &magnitudes[3 * n];
      for (std::size_t i = 0; i < 3; ++i) {
        bounds[3 * n + i] +=
            rule.points[p].weight * (traction[i][0] * d[0] + traction[i][1] * d[1] + traction[i][2] * d[2]);
      }
    }
  }
}

}  // namespace quilon
