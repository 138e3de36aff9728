#include "answers/PointLocator.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "mesh/Mesh.h"

namespace {

using namespace quilon;
using Point = Mesh::Point;

/// Bricks of edge 1 in a block of 3 x 2 x 2, ids descending along x where asked for, with a shell and a spring.
Mesh MakeBlock(bool isReversed = false)
{
  std::vector<int>           ids;
  std::vector<Point>         points;
  std::vector<Mesh::Element> elements;
  std::vector<int>           nodes;
  const auto                 nodeAt = [](int x, int y, int z) { return 1 + x + 4 * (y + 3 * z); };
  for (int z = 0; z <= 2; ++z) {
    for (int y = 0; y <= 2; ++y) {
      for (int x = 0; x <= 3; ++x) {
        ids.push_back(nodeAt(x, y, z));
        points.push_back({double(x), double(y), double(z)});
      }
    }
  }
  const auto add = [&](int id, int type, const std::vector<int>& list) {
    elements.push_back({id, type, 1, nodes.size(), list.size()});
    nodes.insert(nodes.end(), list.begin(), list.end());
  };
  add(1, 9, {nodeAt(0, 0, 0), nodeAt(1, 0, 0), nodeAt(1, 1, 0), nodeAt(0, 1, 0)});
  add(2, 0, {nodeAt(0, 0, 0), nodeAt(1, 0, 0)});
  int count = 0;
  for (int z = 0; z < 2; ++z) {
    for (int y = 0; y < 2; ++y) {
      for (int x = 0; x < 3; ++x) {
        const int id = isReversed ? 111 - count : 100 + count;
        ++count;
        add(id, 1,
            {nodeAt(x, y, z), nodeAt(x + 1, y, z), nodeAt(x + 1, y + 1, z), nodeAt(x, y + 1, z), nodeAt(x, y, z + 1),
             nodeAt(x + 1, y, z + 1), nodeAt(x + 1, y + 1, z + 1), nodeAt(x, y + 1, z + 1)});
      }
    }
  }
  return Mesh(ids, points, elements, nodes);
}

/// @return id of the element that holds the point, 0 for none
int IdAt(const Mesh& mesh, const Point& point)
{
  const auto place = PointLocator(mesh).Find(point);
  return place ? mesh.Elements()[place->element].id : 0;
}

TEST(PointLocator, FindsTheElementAndInterpolatesALinearFieldExactly)
{
  const Mesh         mesh = MakeBlock();
  const PointLocator locator(mesh);
  const Point        point = {2.25, 0.125, 1.75};
  const auto         place = locator.Find(point);
  ASSERT_TRUE(place.has_value());
  EXPECT_EQ(mesh.Elements()[place->element].id, 108);
  std::vector<double> values;
  for (const std::size_t node : mesh.NodesOf(mesh.Elements()[place->element])) {
    const Point& at = mesh.Points()[node];
    values.push_back(1.0 + 2.0 * at[0] - 3.0 * at[1] + 0.5 * at[2]);
    values.push_back(at[1]);
  }
  std::vector<double> result(2);
  place->Interpolate(values, result);
  EXPECT_NEAR(result[0], 1.0 + 4.5 - 0.375 + 0.875, 1e-14);
  EXPECT_NEAR(result[1], 0.125, 1e-15);
}

// Ids run the one way or the other: the least one has what several elements share.
TEST(PointLocator, OfSeveralElementsTheLeastIdHasAPoint)
{
  const Point shared[] = {{1, 0.5, 0.5}, {1, 1, 0.5}, {1, 1, 1}, {2, 1, 1}};
  const int   least[]  = {100, 100, 100, 101};
  const int   other[]  = {110, 107, 101, 100};
  for (std::size_t i = 0; i < std::size(shared); ++i) {
    EXPECT_EQ(IdAt(MakeBlock(), shared[i]), least[i]) << i;
    EXPECT_EQ(IdAt(MakeBlock(true), shared[i]), other[i]) << i;
  }
}

TEST(PointLocator, APointOutsideIsInNoElementNotEvenInAShell)
{
  const Mesh mesh = MakeBlock();
  EXPECT_EQ(IdAt(mesh, {3.01, 1, 1}), 0);
  EXPECT_EQ(IdAt(mesh, {-1, 0, 0}), 0);
  EXPECT_EQ(IdAt(mesh, {0.5, 0.5, -0.001}), 0);
  EXPECT_EQ(IdAt(mesh, {std::nan(""), 0, 0}), 0);
}

TEST(PointLocator, CoordinatesAreRoundedSoThatAMillionthOfTheModelIsWithin)
{
  const Mesh         mesh = MakeBlock();
  const PointLocator locator(mesh);
  EXPECT_NEAR(locator.GetReach(), 1e-6 * std::sqrt(17.0), 1e-15);
  EXPECT_EQ(IdAt(mesh, {3 + 4e-6, 0.5, 0.5}), 102);
  EXPECT_EQ(IdAt(mesh, {3 + 5e-6, 0.5, 0.5}), 0);
  const auto place = locator.Find({3 + 4e-6, 0.5, 0.5});
  double     sum   = 0.0;
  double     x     = 0.0;
  for (std::size_t n = 0; n < 8; ++n) {
    sum += place->weights[n];
    x += place->weights[n] * mesh.Points()[mesh.NodesOf(mesh.Elements()[place->element])[n]][0];
  }
  EXPECT_NEAR(sum, 1.0, 1e-15);
  EXPECT_NEAR(x, 3.0, 1e-15) << "the value is that of the border";
}

TEST(PointLocator, AMeshWithoutSolidsHoldsNothing)
{
  const Mesh         mesh({1, 2}, {{0, 0, 0}, {1, 0, 0}}, {}, {});
  const PointLocator locator(mesh);
  EXPECT_FALSE(locator.HasSolids());
  EXPECT_FALSE(locator.Find({0, 0, 0}).has_value());
}

}  // namespace
