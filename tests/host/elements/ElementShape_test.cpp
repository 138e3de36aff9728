#include "elements/ElementShape.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace quilon::calculix {
namespace {

using Point = std::array<double, 3>;

/// x^a y^b z^c
struct Monomial
{
  int a, b, c;

  double At(const Point& p) const { return std::pow(p[0], a) * std::pow(p[1], b) * std::pow(p[2], c); }
  Point  GradientAt(const Point& p) const
  {
    return {a == 0 ? 0.0 : a * Monomial{a - 1, b, c}.At(p), b == 0 ? 0.0 : b * Monomial{a, b - 1, c}.At(p),
            c == 0 ? 0.0 : c * Monomial{a, b, c - 1}.At(p)};
  }
};

/// Whether the space of the shape functions holds a monomial.
bool IsInSpace(ElementShape shape, const Monomial& m)
{
  const auto atMost    = [](int power, int limit) { return power <= limit; };
  const auto nonlinear = [](int power) { return power > 1 ? power : 0; };
  switch (shape) {
    case ElementShape::Tet4:
      return m.a + m.b + m.c <= 1;
    case ElementShape::Tet10:
      return m.a + m.b + m.c <= 2;
    case ElementShape::Wedge6:
      return m.a + m.b <= 1 && m.c <= 1;
    case ElementShape::Wedge15:
      return (m.a + m.b <= 2 && m.c <= 1) || (m.a + m.b <= 1 && m.c == 2);
    case ElementShape::Brick8:
      return atMost(m.a, 1) && atMost(m.b, 1) && atMost(m.c, 1);
    case ElementShape::Brick20:  // powers above one add up to at most two
      return nonlinear(m.a) + nonlinear(m.b) + nonlinear(m.c) <= 2;
  }
  return false;
}

struct Row
{
  ElementShape shape;
  const char*  name;
  std::size_t  nodes;
};

constexpr Row kShapes[] = {{ElementShape::Tet4, "Tet4", 4},     {ElementShape::Tet10, "Tet10", 10},
                           {ElementShape::Wedge6, "Wedge6", 6}, {ElementShape::Wedge15, "Wedge15", 15},
                           {ElementShape::Brick8, "Brick8", 8}, {ElementShape::Brick20, "Brick20", 20}};

constexpr Point kPlaces[] = {{0.1, 0.2, 0.3}, {0.25, 0.6, -0.7}, {0.0, 0.0, 0.0}, {0.9, 0.05, 0.01}};

TEST(ElementShape, IsOneAtItsOwnNodeAndZeroAtAllOthers)
{
  for (const Row& row : kShapes) {
    ASSERT_EQ(NumNodes(row.shape), row.nodes) << row.name;
    std::vector<double> values(row.nodes);
    std::vector<double> derivatives(3 * row.nodes);
    for (std::size_t at = 0; at < row.nodes; ++at) {
      EvaluateShape(row.shape, LocalPosition(row.shape, at), values, derivatives);
      for (std::size_t n = 0; n < row.nodes; ++n)
        EXPECT_NEAR(values[n], n == at ? 1.0 : 0.0, 1e-15) << row.name << " function " << n << " at node " << at;
    }
  }
}

// As many monomials as nodes, so values and derivatives are determined by them.
TEST(ElementShape, ReproducesEveryMonomialOfItsSpaceAndItsGradient)
{
  for (const Row& row : kShapes) {
    std::vector<double> values(row.nodes);
    std::vector<double> derivatives(3 * row.nodes);
    std::size_t         numMonomials = 0;
    for (int power = 0; power < 27; ++power) {
      const Monomial m{power % 3, power / 3 % 3, power / 9};
      if (!IsInSpace(row.shape, m)) continue;
      ++numMonomials;
      for (const Point& place : kPlaces) {
        EvaluateShape(row.shape, place, values, derivatives);
        double value    = 0.0;
        Point  gradient = {};
        for (std::size_t n = 0; n < row.nodes; ++n) {
          const double atNode = m.At(LocalPosition(row.shape, n));
          value += values[n] * atNode;
          for (std::size_t k = 0; k < 3; ++k) gradient[k] += derivatives[3 * n + k] * atNode;
        }
        const std::string name = row.name + std::string(" x^") + std::to_string(m.a) + " y^" + std::to_string(m.b) +
                                 " z^" + std::to_string(m.c);
        EXPECT_NEAR(value, m.At(place), 2e-15) << name;
        for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(gradient[k], m.GradientAt(place)[k], 4e-15) << name;
      }
    }
    EXPECT_EQ(numMonomials, row.nodes) << row.name;
  }
}

// The corners as decks number them, from 1; middles of edges lie between corners of the face.
TEST(ElementShape, FacesHaveTheCornersOfDecksAndTheMiddlesBetweenThem)
{
  using Nodes                    = std::set<std::size_t>;
  const std::vector<Nodes> brick = {{1, 2, 3, 4}, {5, 8, 7, 6}, {1, 5, 6, 2}, {2, 6, 7, 3}, {3, 7, 8, 4}, {4, 8, 5, 1}};
  const std::vector<Nodes> wedge = {{1, 2, 3}, {4, 5, 6}, {1, 2, 5, 4}, {2, 3, 6, 5}, {3, 1, 4, 6}};
  const std::vector<Nodes> tet   = {{1, 2, 3}, {1, 4, 2}, {2, 4, 3}, {3, 4, 1}};
  const std::vector<std::tuple<ElementShape, ElementShape, std::vector<Nodes>>> rows = {
      {ElementShape::Brick8, ElementShape::Brick20, brick},
      {ElementShape::Wedge6, ElementShape::Wedge15, wedge},
      {ElementShape::Tet4, ElementShape::Tet10, tet}};
  const auto nodesOf = [](ElementShape shape, int face) {
    Nodes nodes;
    for (std::size_t n = 0; n < NumNodes(shape); ++n)
      if (IsOnFace(shape, n, face)) nodes.insert(n + 1);
    return nodes;
  };
  for (const auto& [linear, quadratic, faces] : rows) {
    for (std::size_t i = 0; i < faces.size(); ++i) {
      const int face = static_cast<int>(i) + 1;
      EXPECT_EQ(nodesOf(linear, face), faces[i]) << face;
      // As many middles as corners: the edges of the face.
      const Nodes all = nodesOf(quadratic, face);
      EXPECT_EQ(all.size(), 2 * faces[i].size()) << face;
      EXPECT_TRUE(std::includes(all.begin(), all.end(), faces[i].begin(), faces[i].end())) << face;
    }
    EXPECT_EQ(nodesOf(linear, 0), Nodes());
    EXPECT_EQ(nodesOf(linear, static_cast<int>(faces.size()) + 1), Nodes());
  }
}

TEST(ElementShape, MiddlesLieBetweenTheCornersOfTheirEdges)
{
  for (const ElementShape shape : {ElementShape::Tet10, ElementShape::Wedge15, ElementShape::Brick20}) {
    const auto        edges      = EdgesOf(shape);
    const std::size_t numCorners = NumNodes(shape) - edges.size();
    for (std::size_t e = 0; e < edges.size(); ++e) {
      const Point a = LocalPosition(shape, edges[e].first);
      const Point b = LocalPosition(shape, edges[e].second);
      for (std::size_t k = 0; k < 3; ++k) EXPECT_EQ(LocalPosition(shape, numCorners + e)[k], 0.5 * (a[k] + b[k])) << e;
    }
  }
}

TEST(ElementShape, TypeCodesOfSolidsHaveShapesAndOthersNone)
{
  EXPECT_EQ(FindShape(0), std::nullopt);
  const std::size_t nodes[] = {8, 6, 4, 20, 15, 10};
  for (int type = 1; type <= 6; ++type) {
    ASSERT_TRUE(FindShape(type).has_value()) << type;
    EXPECT_EQ(NumNodes(*FindShape(type)), nodes[type - 1]) << type;
  }
  EXPECT_EQ(FindShape(7), std::nullopt);
}

}  // namespace
}  // namespace quilon::calculix
