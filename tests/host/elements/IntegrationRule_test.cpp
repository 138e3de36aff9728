#include "elements/IntegrationRule.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace quilon::calculix {
namespace {

constexpr int kHex8 = 1, kWedge6 = 2, kTet4 = 3, kHex20 = 4, kWedge15 = 5, kTet10 = 6;

using Vector = std::array<double, 3>;
using Tensor = std::array<double, 6>;  // xx, yy, zz, xy, yz, zx

const IntegrationRule& Rule(const std::string& name)
{
  const IntegrationRule* rule = FindIntegrationRule(name);
  EXPECT_NE(rule, nullptr) << name;
  return *rule;
}

/// The element in its own system, carried by x -> A x + b. Quadratic sides stay straight.
std::vector<double> Carried(const IntegrationRule& rule, const std::array<Vector, 3>& a, const Vector& b)
{
  std::vector<double> coordinates;
  for (std::size_t n = 0; n < NumNodes(rule.shape); ++n) {
    const Vector local = LocalPosition(rule.shape, n);
    for (std::size_t i = 0; i < 3; ++i)
      coordinates.push_back(b[i] + a[i][0] * local[0] + a[i][1] * local[1] + a[i][2] * local[2]);
  }
  return coordinates;
}

constexpr std::array<Vector, 3> kUnit = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

std::vector<double> Uniform(const IntegrationRule& rule, const Tensor& stress)
{
  std::vector<double> points;
  for (std::size_t p = 0; p < rule.points.size(); ++p) points.insert(points.end(), stress.begin(), stress.end());
  return points;
}

std::vector<double> ForcesOf(const IntegrationRule& rule, const std::vector<double>& coordinates,
                             const std::vector<double>& stress)
{
  std::vector<double> forces(coordinates.size(), -99.0);
  EXPECT_TRUE(CalculateNodalForces(rule, coordinates, stress, forces)) << rule.name;
  return forces;
}

constexpr const char* kNames[] = {"C3D4", "C3D6", "C3D8", "C3D8I", "C3D10", "C3D15", "C3D20", "C3D20R"};

TEST(IntegrationRule, IsFoundByTheDecksNameAndByTypeCodeAndNumberOfPoints)
{
  struct Row
  {
    const char* name;
    int         frdType;
    std::size_t points;
    std::size_t nodes;
  };
  const Row rows[] = {{"C3D4", kTet4, 1, 4},    {"C3D6", kWedge6, 2, 6},    {"C3D8", kHex8, 8, 8},
                      {"C3D10", kTet10, 4, 10}, {"C3D15", kWedge15, 9, 15}, {"C3D20", kHex20, 27, 20},
                      {"C3D20R", kHex20, 8, 20}};
  for (const Row& row : rows) {
    const IntegrationRule* rule = FindIntegrationRule(row.name);
    ASSERT_NE(rule, nullptr) << row.name;
    EXPECT_EQ(rule->points.size(), row.points) << row.name;
    EXPECT_EQ(NumNodes(rule->shape), row.nodes) << row.name;
    EXPECT_TRUE(rule->holdsDeformed) << row.name;
    EXPECT_EQ(FindIntegrationRule(row.frdType, row.points), rule) << row.name;
  }
}

TEST(IntegrationRule, HoldsForIncompatibleModesInLinearStepsOnly) { EXPECT_FALSE(Rule("C3D8I").holdsDeformed); }

// A rule would leave out the forces that hold its zero-energy modes.
TEST(IntegrationRule, HasNoneForReducedLinearBricks)
{
  EXPECT_EQ(FindIntegrationRule("C3D8R"), nullptr);
  EXPECT_EQ(FindIntegrationRule(kHex8, 1), nullptr);
}

TEST(IntegrationRule, HasNoneForOtherTypes)
{
  for (const char* name : {"", "C3D", "c3d8", "S8R", "B32", "SPRINGA", "C3D20RI"})
    EXPECT_EQ(FindIntegrationRule(name), nullptr) << name;
  EXPECT_EQ(FindIntegrationRule(kHex20, 50), nullptr);
  EXPECT_EQ(FindIntegrationRule(kHex20, 0), nullptr);
  EXPECT_EQ(FindIntegrationRule(0, 1), nullptr);
  EXPECT_EQ(FindIntegrationRule(-1, 8), nullptr);
}

TEST(IntegrationRule, WeightsSumToTheVolumeOfTheElementsOwnSystem)
{
  for (const char* name : kNames) {
    const IntegrationRule& rule     = Rule(name);
    const double           expected = rule.frdType == kHex8 || rule.frdType == kHex20       ? 8.0
                                      : rule.frdType == kWedge6 || rule.frdType == kWedge15 ? 1.0
                                                                                            : 1.0 / 6.0;
    double                 sum      = 0.0;
    for (const IntegrationRule::Point& point : rule.points) sum += point.weight;
    EXPECT_NEAR(sum, expected, 4e-15) << name;
  }
}

// A cube of edge 2 under tension 3 along x: each of its two faces carries 3 x 4 = 12, a quarter at each corner.
TEST(NodalForces, OfATensionedCubeAreAQuarterOfTheFaceForceAtEachCorner)
{
  const IntegrationRule&    rule        = Rule("C3D8");
  const std::vector<double> coordinates = Carried(rule, kUnit, {7, 8, 9});
  const std::vector<double> forces      = ForcesOf(rule, coordinates, Uniform(rule, {3, 0, 0, 0, 0, 0}));
  for (std::size_t n = 0; n < 8; ++n) {
    EXPECT_NEAR(forces[3 * n], coordinates[3 * n] > 7 ? 3.0 : -3.0, 1e-14) << n;
    EXPECT_NEAR(forces[3 * n + 1], 0.0, 1e-14) << n;
    EXPECT_NEAR(forces[3 * n + 2], 0.0, 1e-14) << n;
  }
}

// The serendipity face of a quadratic brick: -1/12 of the face's force at a corner, 1/3 at the middle of a side.
TEST(NodalForces, OfAQuadraticCubePullAtMidSidesAndPushAtCorners)
{
  for (const char* name : {"C3D20", "C3D20R"}) {
    const IntegrationRule&    rule        = Rule(name);
    const std::vector<double> coordinates = Carried(rule, kUnit, {0, 0, 0});
    const std::vector<double> forces      = ForcesOf(rule, coordinates, Uniform(rule, {0, 0, 6, 0, 0, 0}));
    for (std::size_t n = 0; n < 20; ++n) {
      const double side     = coordinates[3 * n + 2];  // -1, 0, 1
      const double expected = side * 24.0 * (n < 8 ? -1.0 / 12.0 : 1.0 / 3.0);
      EXPECT_NEAR(forces[3 * n + 2], expected, 1e-13) << name << " node " << n;
      EXPECT_NEAR(forces[3 * n], 0.0, 1e-13) << name << " node " << n;
    }
  }
}

// The gradient of a corner's function is the inward normal of the face opposite over three volumes times its area.
TEST(NodalForces, OfATetrahedronBalanceItsFaces)
{
  const IntegrationRule&    rule   = Rule("C3D4");
  const std::vector<double> corner = {0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4};
  const Tensor              s      = {1, 2, 3, 4, 5, 6};
  const std::vector<double> forces = ForcesOf(rule, corner, Uniform(rule, s));
  // Volume 4; gradients (1/2, 0, 0), (0, 1/3, 0), (0, 0, 1/4) and their negative sum.
  const double expected[4][3] = {
      {0, 0, 0}, {2 * s[0], 2 * s[3], 2 * s[5]}, {4.0 / 3 * s[3], 4.0 / 3 * s[1], 4.0 / 3 * s[4]}, {s[5], s[4], s[2]}};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t n = 1; n < 4; ++n) EXPECT_NEAR(forces[3 * n + i], expected[n][i], 1e-14);
    EXPECT_NEAR(forces[i], -(expected[1][i] + expected[2][i] + expected[3][i]), 1e-14);
  }
}

// Under uniform stress the corners of a quadratic tetrahedron carry nothing, a mid-side node what its two corners
// would.
TEST(NodalForces, OfAQuadraticTetrahedronStandAtItsMidSides)
{
  const std::array<Vector, 3> shape  = {{{2, 0.5, 0}, {0, 3, 0.25}, {0.5, 0, 4}}};
  const Tensor                stress = {1, -2, 3, 4, -5, 6};
  const IntegrationRule&      linear = Rule("C3D4");
  const IntegrationRule&      rule   = Rule("C3D10");
  const std::vector<double>   corner = ForcesOf(linear, Carried(linear, shape, {}), Uniform(linear, stress));
  const std::vector<double>   forces = ForcesOf(rule, Carried(rule, shape, {}), Uniform(rule, stress));

  const std::size_t edges[6][2] = {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t n = 0; n < 4; ++n) EXPECT_NEAR(forces[3 * n + i], 0.0, 1e-13);
    for (std::size_t e = 0; e < 6; ++e)
      EXPECT_NEAR(forces[3 * (4 + e) + i], corner[3 * edges[e][0] + i] + corner[3 * edges[e][1] + i], 1e-13);
  }
}

/// A curved element under stresses that differ from point to point.
struct Curved
{
  explicit Curved(const IntegrationRule& rule)
      : coordinates(Carried(rule, {{{3, 0.2, 0}, {0.1, 2, 0.3}, {0, 0, 1.5}}}, {5, -6, 7}))
  {
    std::mt19937                           random(11);
    std::uniform_real_distribution<double> off(-0.05, 0.05);
    std::uniform_real_distribution<double> any(-100.0, 100.0);
    for (double& coordinate : coordinates) coordinate += off(random);
    for (std::size_t i = 0; i < 6 * rule.points.size(); ++i) stress.push_back(any(random));
  }

  std::vector<double> coordinates;
  std::vector<double> stress;
};

TEST(NodalForces, OfAnyElementBalanceInForceAndMoment)
{
  for (const char* name : kNames) {
    const IntegrationRule&    rule = Rule(name);
    const Curved              element(rule);
    const std::vector<double> forces = ForcesOf(rule, element.coordinates, element.stress);
    Vector                    force  = {};
    Vector                    moment = {};
    for (std::size_t n = 0; n < NumNodes(rule.shape); ++n) {
      for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        const std::size_t k = (i + 2) % 3;
        force[i] += forces[3 * n + i];
        moment[i] +=
            element.coordinates[3 * n + j] * forces[3 * n + k] - element.coordinates[3 * n + k] * forces[3 * n + j];
      }
    }
    // Forces of about 1e3 at arms of about 10, in double precision.
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_NEAR(force[i], 0.0, 1e-11) << name;
      EXPECT_NEAR(moment[i], 0.0, 1e-10) << name;
    }
  }
}

// The virial: sum of x f^T = volume times stress, whatever the shape of the element.
TEST(NodalForces, OfUniformStressTellTheVolume)
{
  const std::array<Vector, 3> shape = {{{3, 0.2, 0}, {0.1, 2, 0.3}, {0, 0, 1.5}}};
  const double                scale = 3 * 2 * 1.5 - 0.2 * 0.1 * 1.5;  // the determinant: row 3 has its diagonal alone
  for (const char* name : kNames) {
    const IntegrationRule&    rule        = Rule(name);
    const std::vector<double> coordinates = Carried(rule, shape, {5, -6, 7});
    const std::vector<double> forces      = ForcesOf(rule, coordinates, Uniform(rule, {1, 1, 1, 0, 0, 0}));
    double                    volume      = 0.0;
    for (std::size_t i = 0; i < forces.size(); ++i) volume += coordinates[i] * forces[i] / 3.0;
    double own = 0.0;
    for (const IntegrationRule::Point& point : rule.points) own += point.weight;
    EXPECT_NEAR(volume, scale * own, 1e-12) << name;
  }
}

TEST(NodalForces, AreToldToBeOfAnElementInsideOut)
{
  for (const char* name : kNames) {
    const IntegrationRule&    rule        = Rule(name);
    std::vector<double>       coordinates = Carried(rule, {{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {});
    std::vector<double>       forces(coordinates.size());
    const std::vector<double> stress = Uniform(rule, {1, 0, 0, 0, 0, 0});
    EXPECT_FALSE(CalculateNodalForces(rule, coordinates, stress, forces)) << name;
    std::fill(coordinates.begin(), coordinates.end(), 0.0);
    EXPECT_FALSE(CalculateNodalForces(rule, coordinates, stress, forces)) << name << " without volume";
    coordinates.front() = std::nan("");
    EXPECT_FALSE(CalculateNodalForces(rule, coordinates, stress, forces)) << name << " with a NaN";
  }
}

TEST(ForceErrorBounds, HoldForEveryChangeOfTheCoordinatesWithinTheirTolerance)
{
  std::mt19937                           random(5);
  std::uniform_real_distribution<double> fraction(-1.0, 1.0);
  for (const char* name : kNames) {
    const IntegrationRule&    rule = Rule(name);
    const Curved              element(rule);
    const std::vector<double> forces = ForcesOf(rule, element.coordinates, element.stress);
    const std::vector<double> tolerance(forces.size(), 1e-6);
    std::vector<double>       bounds(forces.size());
    BoundForceErrors(rule, element.coordinates, element.stress, tolerance, bounds);

    double closest = 0.0;
    for (int attempt = 0; attempt < 50; ++attempt) {
      std::vector<double> moved = element.coordinates;
      for (std::size_t i = 0; i < moved.size(); ++i) moved[i] += fraction(random) * tolerance[i];
      const std::vector<double> other = ForcesOf(rule, moved, element.stress);
      for (std::size_t i = 0; i < forces.size(); ++i) {
        EXPECT_LE(std::abs(other[i] - forces[i]), bounds[i] * (1 + 1e-5) + 1e-10) << name;
        closest = std::max(closest, std::abs(other[i] - forces[i]) / bounds[i]);
      }
    }
    EXPECT_GT(closest, 0.02) << name;  // the bound is no wild guess
  }
}

TEST(ForceErrorBounds, AreZeroForExactCoordinates)
{
  const IntegrationRule&    rule = Rule("C3D15");
  const Curved              element(rule);
  const std::vector<double> exact(element.coordinates.size(), 0.0);
  std::vector<double>       bounds(exact.size(), -1.0);
  BoundForceErrors(rule, element.coordinates, element.stress, exact, bounds);
  EXPECT_EQ(bounds, exact);
}

}  // namespace
}  // namespace quilon::calculix
