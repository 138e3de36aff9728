#include "elements/LocalSystem.h"

#include <array>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

namespace quilon::calculix {
namespace {

using Vector = std::array<double, 3>;

Orientation Make(Orientation::System system, const Vector& a, const Vector& b, int axis = 0, double angle = 0.0)
{
  Orientation orientation;
  orientation.system        = system;
  orientation.a             = a;
  orientation.b             = b;
  orientation.rotationAxis  = axis;
  orientation.rotationAngle = angle;
  return orientation;
}

void ExpectAxes(const Orientation& orientation, const Vector& point, const LocalAxes& expected)
{
  const std::optional<LocalAxes> axes = FindLocalAxes(orientation, point);
  ASSERT_TRUE(axes.has_value());
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR((*axes)[i][k], expected[i][k], 1e-15) << i << " " << k;
  }
}

constexpr auto   kRectangular = Orientation::Rectangular;
constexpr auto   kCylindrical = Orientation::Cylindrical;
constexpr Vector kA           = {0, 2, 0};
constexpr Vector kB           = {-3, 1, 0};
constexpr Vector kAnywhere    = {4, 5, 6};

TEST(LocalSystem, ARectangularSystemHasItsFirstAxisAlongAAndItsSecondOnBsSide)
{
  ExpectAxes(Make(kRectangular, kA, kB), kAnywhere, {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}});
  ExpectAxes(Make(kRectangular, kA, {3, 1, 0}), kAnywhere, {{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}});
}

TEST(LocalSystem, AnAngleTurnsARectangularSystemAboutALocalAxis)
{
  ExpectAxes(Make(kRectangular, kA, kB, 1, 90), kAnywhere, {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}});
  ExpectAxes(Make(kRectangular, kA, kB, 2, 90), kAnywhere, {{{0, 0, -1}, {-1, 0, 0}, {0, 1, 0}}});
  ExpectAxes(Make(kRectangular, kA, kB, 3, 90), kAnywhere, {{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}});
  const double h = std::sqrt(0.5);
  ExpectAxes(Make(kRectangular, kA, kB, 3, -45), kAnywhere, {{{h, h, 0}, {-h, h, 0}, {0, 0, 1}}});
}

TEST(LocalSystem, ACylindricalSystemIsRadialTangentialAndAlongItsAxis)
{
  const Orientation round = Make(kCylindrical, {1, 0, 0}, {1, 0, 5});
  ExpectAxes(round, {1, 3, 7}, {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}});
  ExpectAxes(round, {5, 0, -2}, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}});
  ExpectAxes(Make(kCylindrical, {1, 0, 5}, {1, 0, 0}), {1, 3, 7}, {{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}});
}

TEST(LocalSystem, NumbersThatGiveNoAxesGiveNoSystem)
{
  EXPECT_FALSE(FindLocalAxes(Make(kRectangular, {1, 2, 3}, {2, 4, 6}), kAnywhere)) << "parallel";
  EXPECT_FALSE(FindLocalAxes(Make(kRectangular, {0, 0, 0}, {2, 4, 6}), kAnywhere));
  EXPECT_FALSE(FindLocalAxes(Make(kRectangular, {NAN, 0, 0}, {2, 4, 6}), kAnywhere));
  EXPECT_FALSE(FindLocalAxes(Make(kCylindrical, {1, 2, 3}, {1, 2, 3}), kAnywhere)) << "no axis";
  EXPECT_FALSE(FindLocalAxes(Make(kCylindrical, {1, 2, 3}, {1, 2, 9}), {1, 2, 4})) << "a point on the axis";
}

TEST(LocalSystem, ATensorTurnsAsTheProductsOfItsAxes)
{
  const LocalAxes axes = *FindLocalAxes(Make(kRectangular, {1, 0.4, 0.2}, {-0.3, 1, 0.1}, 3, 25), kAnywhere);
  // One local component at a time: xx, yy, zz, xy, yz, zx.
  constexpr std::size_t kRows[6][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {1, 2}, {2, 0}};
  for (std::size_t c = 0; c < 6; ++c) {
    std::array<double, 6> tensor = {};
    tensor[c]                    = 7.0;
    TurnToGlobal(axes, tensor);
    const Vector& p = axes[kRows[c][0]];
    const Vector& q = axes[kRows[c][1]];
    for (std::size_t g = 0; g < 6; ++g) {
      const auto [i, j]     = kRows[g];
      const double expected = c < 3 ? 7.0 * p[i] * p[j] : 7.0 * (p[i] * q[j] + q[i] * p[j]);
      EXPECT_NEAR(tensor[g], expected, 1e-14) << c << " " << g;
    }
  }
}

TEST(LocalSystem, PointsLieWhereTheShapeFunctionsPutThem)
{
  const std::vector<double> brick = {-1, -1, -1, 1, -1, -1, 1, 1, -1, -1, 1, -1,  //
                                     -1, -1, 1,  1, -1, 1,  1, 1, 1,  -1, 1, 1};
  std::vector<double>       centre(3, 9.0);
  ASSERT_TRUE(LocatePoints(1, 1, brick, centre));
  for (const double x : centre) EXPECT_EQ(x, 0.0);

  std::vector<double> points(24);
  ASSERT_TRUE(LocatePoints(1, 8, brick, points));
  const double g = 1.0 / std::sqrt(3.0);
  for (std::size_t p = 0; p < 8; ++p) {
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(points[3 * p + k], p >> k & 1 ? g : -g, 1e-15) << p;
  }

  const std::vector<double> tet = {1, 0, 0, 5, 0, 0, 1, 8, 0, 1, 0, 12};
  ASSERT_TRUE(LocatePoints(3, 1, tet, centre));
  EXPECT_NEAR(centre[0], 2.0, 1e-14);
  EXPECT_NEAR(centre[1], 2.0, 1e-14);
  EXPECT_NEAR(centre[2], 3.0, 1e-14);
}

TEST(LocalSystem, PointsOfOtherElementsAreNotKnown)
{
  std::vector<double> points(15);
  EXPECT_FALSE(LocatePoints(10, 5, {}, points));
  EXPECT_FALSE(LocatePoints(0, 5, {}, points));
}

TEST(LocalSystem, WhatIsTurnedToLocalAxesTurnsBack)
{
  const LocalAxes       axes   = *FindLocalAxes(Make(kRectangular, {1, 2, -0.5}, {0.3, -1, 4}), kAnywhere);
  std::array<double, 6> tensor = {7, -3, 2, 0.5, -1.5, 4};
  const auto            global = tensor;
  TurnToLocal(axes, std::span<double, 6>(tensor));
  // The first local component by its definition: a . tensor . a.
  const Vector a = axes[0];
  EXPECT_NEAR(tensor[0],
              7 * a[0] * a[0] - 3 * a[1] * a[1] + 2 * a[2] * a[2] + a[0] * a[1] - 3 * a[1] * a[2] + 8 * a[0] * a[2],
              1e-14);
  TurnToGlobal(axes, tensor);
  for (std::size_t k = 0; k < 6; ++k) EXPECT_NEAR(tensor[k], global[k], 1e-14) << k;
}

TEST(LocalSystem, AVectorIsTurnedToLocalAxes)
{
  const LocalAxes       axes   = *FindLocalAxes(Make(kCylindrical, {1, 0, 0}, {1, 0, 5}), {1, 3, 7});
  std::array<double, 3> vector = {1, 2, 3};
  TurnToLocal(axes, std::span<double, 3>(vector));  // radial along y, tangential against x
  EXPECT_EQ(vector, (std::array<double, 3>{2, -1, 3}));
}

}  // namespace
}  // namespace quilon::calculix
