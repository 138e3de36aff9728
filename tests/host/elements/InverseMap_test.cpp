#include "elements/InverseMap.h"

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace quilon {
namespace {

using Point = std::array<double, 3>;

struct Row
{
  ElementShape shape;
  const char*  name;
};

constexpr Row kShapes[] = {{ElementShape::Tet4, "Tet4"},     {ElementShape::Tet10, "Tet10"},
                           {ElementShape::Wedge6, "Wedge6"}, {ElementShape::Wedge15, "Wedge15"},
                           {ElementShape::Brick8, "Brick8"}, {ElementShape::Brick20, "Brick20"}};

bool IsTet(ElementShape shape) { return shape == ElementShape::Tet4 || shape == ElementShape::Tet10; }
bool IsWedge(ElementShape shape) { return shape == ElementShape::Wedge6 || shape == ElementShape::Wedge15; }

bool IsWithin(ElementShape shape, const Point& local)
{
  if (IsTet(shape)) return local[0] >= 0 && local[1] >= 0 && local[2] >= 0 && local[0] + local[1] + local[2] <= 1;
  if (IsWedge(shape)) return local[0] >= 0 && local[1] >= 0 && local[0] + local[1] <= 1 && std::abs(local[2]) <= 1;
  return std::abs(local[0]) <= 1 && std::abs(local[1]) <= 1 && std::abs(local[2]) <= 1;
}

/// Nodes where the shape has them, moved at random and away from the origin.
std::vector<double> MakeElement(ElementShape shape, std::mt19937& random, double distortion, double size, double offset)
{
  std::uniform_real_distribution<double> move(-distortion, distortion);
  std::vector<double>                    coordinates;
  for (std::size_t n = 0; n < NumNodes(shape); ++n) {
    for (const double coordinate : LocalPosition(shape, n))
      coordinates.push_back(offset + size * (coordinate + move(random)));
  }
  return coordinates;
}

Point PlaceOf(ElementShape shape, std::span<const double> coordinates, const Point& local)
{
  std::vector<double> values(NumNodes(shape));
  std::vector<double> derivatives(3 * values.size());
  EvaluateShape(shape, local, values, derivatives);
  Point place = {};
  for (std::size_t n = 0; n < values.size(); ++n) {
    for (std::size_t k = 0; k < 3; ++k) place[k] += values[n] * coordinates[3 * n + k];
  }
  return place;
}

double Distance(const Point& a, const Point& b) { return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]); }

Point RandomLocal(ElementShape shape, std::mt19937& random)
{
  std::uniform_real_distribution<double> place(-1.0, 1.0);
  for (;;) {
    const Point local = {place(random), place(random), place(random)};
    if (IsWithin(shape, local)) return local;
  }
}

// Tetrahedra and wedges have half the size of bricks: corners may move by a fifth of an edge, and middles too.
TEST(InverseMap, FindsTheWayBackFromAnyPlaceOfABentElement)
{
  std::mt19937 random(11);
  for (const Row& row : kShapes) {
    for (const double size : {1e-3, 1.0, 1e4}) {
      for (int element = 0; element < 20; ++element) {
        const auto coordinates = MakeElement(row.shape, random, IsTet(row.shape) ? 0.05 : 0.1, size, 0.0);
        for (int i = 0; i < 20; ++i) {
          const Point local = RandomLocal(row.shape, random);
          const auto  found = FindLocalPlace(row.shape, coordinates, PlaceOf(row.shape, coordinates, local), 0.0);
          ASSERT_TRUE(found.has_value()) << row.name << " " << size;
          // An iteration ends at 1e-10 of the size or earlier by rounding; it mostly ends at 1e-16.
          EXPECT_LT(Distance(*found, local), 1e-9) << row.name << " " << size;
        }
      }
    }
  }
}

TEST(InverseMap, FindsNodesAndMiddlesOfEdgesWithinTheElement)
{
  std::mt19937 random(12);
  for (const Row& row : kShapes) {
    const auto coordinates = MakeElement(row.shape, random, 0.05, 1.0, 3.0);
    for (std::size_t n = 0; n < NumNodes(row.shape); ++n) {
      const Point node  = {coordinates[3 * n], coordinates[3 * n + 1], coordinates[3 * n + 2]};
      const auto  found = FindLocalPlace(row.shape, coordinates, node, 0.0);
      ASSERT_TRUE(found.has_value()) << row.name << " node " << n;
      EXPECT_LT(Distance(*found, LocalPosition(row.shape, n)), 1e-9) << row.name << " node " << n;
      EXPECT_TRUE(IsWithin(row.shape, *found)) << row.name << " node " << n;
    }
  }
}

// Far from the origin a coordinate has six digits behind the point, of which differences keep all.
TEST(InverseMap, FindsPlacesFarFromTheOrigin)
{
  std::mt19937 random(13);
  for (const Row& row : kShapes) {
    const auto  coordinates = MakeElement(row.shape, random, 0.05, 1.0, 1e9);
    const Point local       = RandomLocal(row.shape, random);
    const auto  found       = FindLocalPlace(row.shape, coordinates, PlaceOf(row.shape, coordinates, local), 1e-5);
    ASSERT_TRUE(found.has_value()) << row.name;
    EXPECT_LT(Distance(*found, local), 1e-5) << row.name;
  }
}

TEST(InverseMap, APointOutsideHasNoPlaceBeyondTheReach)
{
  std::mt19937 random(14);
  for (const Row& row : kShapes) {
    const auto coordinates = MakeElement(row.shape, random, 0.0, 1.0, 0.0);
    // Faces z = 0 of tetrahedra and z = -1 of the others.
    const double bottom = IsTet(row.shape) ? 0.0 : -1.0;
    const Point  below  = {0.2, 0.2, bottom - 1e-4};
    EXPECT_FALSE(FindLocalPlace(row.shape, coordinates, below, 0.0).has_value()) << row.name;
    EXPECT_FALSE(FindLocalPlace(row.shape, coordinates, below, 0.99e-4).has_value()) << row.name;
    const auto found = FindLocalPlace(row.shape, coordinates, below, 1.5e-4);
    ASSERT_TRUE(found.has_value()) << row.name;
    EXPECT_EQ((*found)[2], bottom) << row.name;
    for (const Point& far : {Point{5, 5, 5}, Point{-4, 0, 0}, Point{0.2, 0.2, 1e6}})
      EXPECT_FALSE(FindLocalPlace(row.shape, coordinates, far, 1e-3).has_value()) << row.name;
  }
}

TEST(InverseMap, APointThatIsNoneHasNoPlace)
{
  std::mt19937 random(15);
  const auto   coordinates = MakeElement(ElementShape::Brick8, random, 0.0, 1.0, 0.0);
  for (const double none : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    EXPECT_FALSE(FindLocalPlace(ElementShape::Brick8, coordinates, {none, 0, 0}, 1.0).has_value());
}

// A brick whose nodes 3 and 4, and 7 and 8, are one: the map has no inverse on that edge, and finds it all the same.
TEST(InverseMap, ACollapsedBrickIsFoundInsideAndOnItsCollapsedEdge)
{
  const std::vector<double> coordinates = {-1, -1, -1, 1, -1, -1, 0, 1, -1, 0, 1, -1,
                                           -1, -1, 1,  1, -1, 1,  0, 1, 1,  0, 1, 1};
  for (const Point& point :
       {Point{0, 0, 0}, Point{0.1, 0.7, 0.3}, Point{0, 1, 0.5}, Point{0, 1, -1}, Point{0, 0.999999, 0}})
  {
    const auto found = FindLocalPlace(ElementShape::Brick8, coordinates, point, 0.0);
    ASSERT_TRUE(found.has_value()) << point[0] << " " << point[1] << " " << point[2];
    EXPECT_LT(Distance(PlaceOf(ElementShape::Brick8, coordinates, *found), point), 3e-10);
  }
  EXPECT_FALSE(FindLocalPlace(ElementShape::Brick8, coordinates, {0.5, 0.9, 0}, 0.0).has_value());
}

TEST(InverseMap, AnElementThatIsTurnedInsideOutIsMappedLikeAnyOther)
{
  std::vector<double> coordinates;
  for (std::size_t n = 0; n < 8; ++n) {
    const Point corner = LocalPosition(ElementShape::Brick8, n);
    coordinates.insert(coordinates.end(), {corner[0], corner[1], -corner[2]});
  }
  const auto found = FindLocalPlace(ElementShape::Brick8, coordinates, {0.25, -0.5, 0.75}, 0.0);
  ASSERT_TRUE(found.has_value());
  EXPECT_LT(Distance(*found, {0.25, -0.5, -0.75}), 1e-12);
}

// Middles are moved a lot, so that edges bulge far beyond the box of the nodes.
TEST(InverseMap, TheBoxOfAnElementHoldsAllOfIt)
{
  std::mt19937 random(16);
  for (const Row& row : kShapes) {
    for (int element = 0; element < 50; ++element) {
      const auto coordinates = MakeElement(row.shape, random, 0.4, 1.0, -2.0);
      const Box  box         = BoundElement(row.shape, coordinates);
      for (int i = 0; i < 100; ++i) {
        const Point place = PlaceOf(row.shape, coordinates, RandomLocal(row.shape, random));
        for (std::size_t k = 0; k < 3; ++k) {
          EXPECT_GE(place[k], box.least[k] - 1e-14) << row.name;
          EXPECT_LE(place[k], box.greatest[k] + 1e-14) << row.name;
        }
      }
    }
  }
}

TEST(InverseMap, TheBoxOfAStraightElementIsThatOfItsNodes)
{
  std::mt19937 random(17);
  for (const Row& row : kShapes) {
    const Box    box  = BoundElement(row.shape, MakeElement(row.shape, random, 0.0, 1.0, 0.0));
    const double zero = IsTet(row.shape) ? 0.0 : -1.0;
    EXPECT_EQ(box.least[2], zero) << row.name;
    EXPECT_EQ(box.greatest, (Point{1, 1, 1})) << row.name;
  }
}

}  // namespace
}  // namespace quilon
