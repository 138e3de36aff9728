#include "elements/Extrapolation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace quilon::calculix {
namespace {

constexpr int kHex8 = 1, kWedge6 = 2, kTet4 = 3, kHex20 = 4, kWedge15 = 5, kTet10 = 6;

// Corners of the brick [-1, 1]^3 in the deck's order.
constexpr std::array<std::array<double, 3>, 8> kBrick = {
    {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1}, {-1, -1, 1}, {1, -1, 1}, {1, 1, 1}, {-1, 1, 1}}};

// The 2 x 2 x 2 Gauss points, x fastest.
std::array<double, 3> BrickPoint(std::size_t p)
{
  const double g = 1.0 / std::sqrt(3.0);
  return {p & 1 ? g : -g, p & 2 ? g : -g, p & 4 ? g : -g};
}

// Values of one point only, so that the nodes show its weights. Component k carries k + 1 times the unit.
std::vector<double> UnitPoint(std::size_t numPoints, std::size_t point)
{
  std::vector<double> values(6 * numPoints, 0.0);
  for (std::size_t k = 0; k < 6; ++k) values[6 * point + k] = static_cast<double>(k + 1);
  return values;
}

std::vector<double> NodesOf(const ExtrapolationRule& rule, const std::vector<double>& points)
{
  std::vector<double> nodes(6 * rule.NumNodes(), -99.0);
  Extrapolate(rule, points, nodes);
  return nodes;
}

TEST(Extrapolation, KnowsEightElementTypesByTypeCodeAndNumberOfPoints)
{
  struct Row
  {
    int         type;
    std::size_t points;
    const char* name;
    std::size_t nodes;
  };
  const Row rows[] = {{kTet4, 1, "C3D4", 4},     {kWedge6, 2, "C3D6", 6},  {kHex8, 8, "C3D8", 8},
                      {kHex8, 1, "C3D8R", 8},    {kTet10, 4, "C3D10", 10}, {kWedge15, 9, "C3D15", 15},
                      {kHex20, 27, "C3D20", 20}, {kHex20, 8, "C3D20R", 20}};
  for (const Row& row : rows) {
    const ExtrapolationRule* rule = FindExtrapolation(row.type, row.points);
    ASSERT_NE(rule, nullptr) << row.name;
    EXPECT_STREQ(rule->name, row.name);
    EXPECT_EQ(rule->NumNodes(), row.nodes) << row.name;
  }
}

TEST(Extrapolation, HasNoRuleForOtherPairs)
{
  EXPECT_EQ(FindExtrapolation(kHex20, 50), nullptr);
  EXPECT_EQ(FindExtrapolation(kWedge6, 9), nullptr);
  EXPECT_EQ(FindExtrapolation(kWedge15, 2), nullptr);
  EXPECT_EQ(FindExtrapolation(kHex8, 0), nullptr);
  EXPECT_EQ(FindExtrapolation(kTet10, 1), nullptr);
  EXPECT_EQ(FindExtrapolation(0, 1), nullptr);
  EXPECT_EQ(FindExtrapolation(-3, 8), nullptr);
  EXPECT_EQ(FindExtrapolation(13, 8), nullptr);
}

TEST(Extrapolation, DescribesATypeByTheDecksNameOrByItsShape)
{
  EXPECT_EQ(DescribeElementType(kTet4, 1), "C3D4");
  EXPECT_EQ(DescribeElementType(kWedge6, 2), "C3D6");
  EXPECT_EQ(DescribeElementType(kHex20, 27), "C3D20");
  EXPECT_EQ(DescribeElementType(kWedge15, 9), "C3D15");
  EXPECT_EQ(DescribeElementType(kHex20, 50), "20-node brick with 50 points");
  EXPECT_EQ(DescribeElementType(12, 1), "3-node line with 1 point");
  EXPECT_EQ(DescribeElementType(99, 4), "element with 4 points");
  EXPECT_EQ(DescribeElementType(-1, 4), "element with 4 points");
}

TEST(Extrapolation, AOnePointElementHasThePointsValueAtEveryNode)
{
  const std::vector<double> point = {1.5, -2.25, 3e-9, 4e9, -5.0, 0.0};
  for (const auto& [type, nodes] : {std::pair<int, std::size_t>{kTet4, 4}, {kHex8, 8}}) {
    const std::vector<double> values = NodesOf(*FindExtrapolation(type, 1), point);
    ASSERT_EQ(values.size(), 6 * nodes);
    for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(values[i], point[i % 6]) << i;
  }
}

// Trilinear functions of the points' own cell, taken at a corner r: per direction (1 +- sqrt 3) / 2. The solver rounds
// the products to 2.549, -0.683, 0.183 and -0.04904, at most 3.8e-5 away in sum of a weight.
TEST(Extrapolation, BrickWeightsAreTheTrilinearFunctionsAtTheCorners)
{
  const double nearWeight = (1.0 + std::sqrt(3.0)) / 2.0;
  const double farWeight  = (1.0 - std::sqrt(3.0)) / 2.0;
  for (const int type : {kHex8, kHex20}) {
    const ExtrapolationRule& rule = *FindExtrapolation(type, 8);
    for (std::size_t p = 0; p < 8; ++p) {
      const std::vector<double> nodes = NodesOf(rule, UnitPoint(8, p));
      for (std::size_t corner = 0; corner < 8; ++corner) {
        double weight = 1.0;
        for (std::size_t d = 0; d < 3; ++d) {
          weight *= kBrick[corner][d] * BrickPoint(p)[d] > 0.0 ? nearWeight : farWeight;
        }
        for (std::size_t k = 0; k < 6; ++k) {
          EXPECT_NEAR(nodes[6 * corner + k], static_cast<double>(k + 1) * weight, 6.0 * 4e-5) << p << " " << corner;
        }
      }
    }
  }
}

TEST(Extrapolation, BrickWeightsAreTheSolversRoundedOnes)
{
  const std::vector<double> nodes       = NodesOf(*FindExtrapolation(kHex8, 8), UnitPoint(8, 0));
  const double              expected[8] = {2.549, -0.683, 0.183, -0.683, -0.683, 0.183, -0.04904, 0.183};
  for (std::size_t corner = 0; corner < 8; ++corner) EXPECT_EQ(nodes[6 * corner], expected[corner]) << corner;
}

// Barycentric coordinates of the four points are a at the own corner and b at the others; inverting that matrix gives
// (1 + 1 / sqrt 5 ... ): own weight (a + 2 b) / (a - b), other weight -b / (a - b).
TEST(Extrapolation, TetWeightsInvertTheFourPointRule)
{
  const double             a    = (5.0 + 3.0 * std::sqrt(5.0)) / 20.0;
  const double             b    = (5.0 - std::sqrt(5.0)) / 20.0;
  const ExtrapolationRule& rule = *FindExtrapolation(kTet10, 4);
  for (std::size_t p = 0; p < 4; ++p) {
    const std::vector<double> nodes = NodesOf(rule, UnitPoint(4, p));
    for (std::size_t corner = 0; corner < 4; ++corner) {
      const double weight = corner == p ? (a + 2.0 * b) / (a - b) : -b / (a - b);
      EXPECT_NEAR(nodes[6 * corner], weight, 5e-6) << "weights are rounded to five decimals";
    }
    EXPECT_EQ(nodes[6 * p], 1.92705);
  }
}

// Odd nodes take the first point for the near one, even nodes the second, whatever layer they are in: the solver's own
// nodal values are so (fixture wedge6, where a rule by layers is off by up to 1.3 times the field).
TEST(Extrapolation, AC3D6TakesEverySecondNodeForTheTop)
{
  const ExtrapolationRule& rule = *FindExtrapolation(kWedge6, 2);
  const double             half = 0.5 / std::sqrt(0.6);  // slope of the line through points at +-sqrt(3/5), times 1
  for (std::size_t p = 0; p < 2; ++p) {
    const std::vector<double> nodes = NodesOf(rule, UnitPoint(2, p));
    for (std::size_t n = 0; n < 6; ++n) {
      EXPECT_EQ(nodes[6 * n], n % 2 == p ? 1.1455 : -0.1455) << n;
      EXPECT_NEAR(nodes[6 * n], n % 2 == p ? 0.5 + half : 0.5 - half, 5e-6) << "weights have five decimals";
    }
  }
}

// Within a layer points lie at barycentric coordinates (2/3, 1/6, 1/6): linear functions give 5/3 and -1/3 at corners.
// Through layers at z = -sqrt(3/5), 0 and sqrt(3/5) the line of least squares has at z = -1 the weights 1/3 - z /
// (6/5).
TEST(Extrapolation, C3D15WeightsAreALineOfLeastSquaresThroughLinearLayers)
{
  const ExtrapolationRule& rule = *FindExtrapolation(kWedge15, 9);
  for (std::size_t p = 0; p < 9; ++p) {
    const std::vector<double> nodes = NodesOf(rule, UnitPoint(9, p));
    const double              z     = (static_cast<double>(p / 3) - 1.0) * std::sqrt(0.6);
    for (std::size_t corner = 0; corner < 6; ++corner) {
      const double inLayer = p % 3 == corner % 3 ? 5.0 / 3.0 : -1.0 / 3.0;
      const double through = 1.0 / 3.0 + (corner < 3 ? -z : z) / 1.2;
      EXPECT_NEAR(nodes[6 * corner], inLayer * through, 5e-6) << p << " " << corner;
    }
  }
}

/// The monomials whose span is that of a 20-node brick's shape functions: no two exponents are 2.
std::vector<double> BrickMonomials(const std::array<double, 3>& x)
{
  std::vector<double> values;
  for (int code = 0; code < 27; ++code) {
    const int exponents[3] = {code % 3, code / 3 % 3, code / 9};
    if (std::count(std::begin(exponents), std::end(exponents), 2) > 1) continue;
    values.push_back(std::pow(x[0], exponents[0]) * std::pow(x[1], exponents[1]) * std::pow(x[2], exponents[2]));
  }
  return values;
}

/// Solves a x = b by elimination with row exchanges.
std::vector<double> Solve(std::vector<std::vector<double>> a, std::vector<double> b)
{
  const std::size_t n = b.size();
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t pivot = k;
    for (std::size_t i = k + 1; i < n; ++i) {
      if (std::abs(a[i][k]) > std::abs(a[pivot][k])) pivot = i;
    }
    std::swap(a[k], a[pivot]);
    std::swap(b[k], b[pivot]);
    for (std::size_t i = k + 1; i < n; ++i) {
      const double factor = a[i][k] / a[k][k];
      for (std::size_t j = k; j < n; ++j) a[i][j] -= factor * a[k][j];
      b[i] -= factor * b[k];
    }
  }
  for (std::size_t k = n; k-- > 0;) {
    for (std::size_t j = k + 1; j < n; ++j) b[k] -= a[k][j] * b[j];
    b[k] /= a[k][k];
  }
  return b;
}

std::array<double, 3> QuadraticBrickPoint(std::size_t p)
{
  const double place[3] = {-std::sqrt(0.6), 0.0, std::sqrt(0.6)};
  return {place[p % 3], place[p / 3 % 3], place[p / 9]};
}

std::array<double, 3> QuadraticBrickNode(std::size_t n)
{
  constexpr std::pair<int, int> kEdges[] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                                            {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
  if (n < 8) return kBrick[n];
  const auto& first  = kBrick[static_cast<std::size_t>(kEdges[n - 8].first)];
  const auto& second = kBrick[static_cast<std::size_t>(kEdges[n - 8].second)];
  return {(first[0] + second[0]) / 2, (first[1] + second[1]) / 2, (first[2] + second[2]) / 2};
}

TEST(Extrapolation, C3D20WeightsAreALeastSquaresFitByTheElementsOwnFunctions)
{
  // Row n of the weights is m(node)^T (M^T M)^-1 M^T with the monomials at the points in the rows of M.
  std::vector<std::vector<double>> normal(20, std::vector<double>(20, 0.0));
  for (std::size_t p = 0; p < 27; ++p) {
    const std::vector<double> m = BrickMonomials(QuadraticBrickPoint(p));
    ASSERT_EQ(m.size(), 20u);
    for (std::size_t i = 0; i < 20; ++i) {
      for (std::size_t j = 0; j < 20; ++j) normal[i][j] += m[i] * m[j];
    }
  }

  const ExtrapolationRule& rule = *FindExtrapolation(kHex20, 27);
  for (std::size_t n = 0; n < 20; ++n) {
    const std::vector<double> at = Solve(normal, BrickMonomials(QuadraticBrickNode(n)));
    for (std::size_t p = 0; p < 27; ++p) {
      const std::vector<double> m        = BrickMonomials(QuadraticBrickPoint(p));
      double                    expected = 0.0;
      for (std::size_t i = 0; i < 20; ++i) expected += at[i] * m[i];
      EXPECT_NEAR(NodesOf(rule, UnitPoint(27, p))[6 * n], expected, 5.1e-6) << "five decimals, " << n << " " << p;
    }
  }
}

TEST(Extrapolation, AMidsideNodeIsTheMeanOfItsCorners)
{
  const std::pair<int, int> brickEdges[] = {{1, 2}, {2, 3}, {3, 4}, {4, 1}, {5, 6}, {6, 7},
                                            {7, 8}, {8, 5}, {1, 5}, {2, 6}, {3, 7}, {4, 8}};
  const std::pair<int, int> tetEdges[]   = {{1, 2}, {2, 3}, {3, 1}, {1, 4}, {2, 4}, {3, 4}};
  const std::pair<int, int> wedgeEdges[] = {{1, 2}, {2, 3}, {3, 1}, {4, 5}, {5, 6}, {6, 4}, {1, 4}, {2, 5}, {3, 6}};

  const auto check = [](const ExtrapolationRule& rule, std::size_t numCorners, const auto& edges) {
    std::vector<double> points(6 * rule.numPoints);
    for (std::size_t i = 0; i < points.size(); ++i) points[i] = std::sin(static_cast<double>(7 * i + 1));
    const std::vector<double> nodes = NodesOf(rule, points);
    std::size_t               node  = numCorners;
    for (const auto& [first, second] : edges) {
      for (std::size_t k = 0; k < 6; ++k) {
        const double mean =
            (nodes[6 * static_cast<std::size_t>(first - 1) + k] + nodes[6 * static_cast<std::size_t>(second - 1) + k]) /
            2.0;
        EXPECT_DOUBLE_EQ(nodes[6 * node + k], mean) << rule.name << " node " << node + 1;
      }
      ++node;
    }
    EXPECT_EQ(node, rule.NumNodes());
  };
  check(*FindExtrapolation(kHex20, 8), 8, brickEdges);
  check(*FindExtrapolation(kTet10, 4), 4, tetEdges);
  check(*FindExtrapolation(kWedge15, 9), 6, wedgeEdges);
}

// A linear field comes out linear at the corners; what is left is the rounding of the weights.
TEST(Extrapolation, ALinearFieldIsReproducedAtTheCorners)
{
  const auto field = [](const std::array<double, 3>& x, std::size_t k) {
    return 3.0 + 0.5 * static_cast<double>(k) + 2.0 * x[0] - 1.5 * x[1] + 0.25 * x[2];
  };

  for (const int type : {kHex8, kHex20}) {
    std::vector<double> points(48);
    for (std::size_t p = 0; p < 8; ++p) {
      for (std::size_t k = 0; k < 6; ++k) points[6 * p + k] = field(BrickPoint(p), k);
    }
    const std::vector<double> nodes = NodesOf(*FindExtrapolation(type, 8), points);
    for (std::size_t corner = 0; corner < 8; ++corner) {
      for (std::size_t k = 0; k < 6; ++k) {
        EXPECT_NEAR(nodes[6 * corner + k], field(kBrick[corner], k), 1e-3) << "eight weights off by 4e-5, values to 8";
      }
    }
  }

  const double                                   a       = (5.0 + 3.0 * std::sqrt(5.0)) / 20.0;
  const double                                   b       = (5.0 - std::sqrt(5.0)) / 20.0;
  constexpr std::array<std::array<double, 3>, 4> corners = {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  std::vector<double>                            points(24);
  for (std::size_t p = 0; p < 4; ++p) {
    std::array<double, 3> x = {b, b, b};
    if (p > 0) x[p - 1] = a;
    for (std::size_t k = 0; k < 6; ++k) points[6 * p + k] = field(x, k);
  }
  const std::vector<double> nodes = NodesOf(*FindExtrapolation(kTet10, 4), points);
  for (std::size_t corner = 0; corner < 4; ++corner) {
    for (std::size_t k = 0; k < 6; ++k) {
      EXPECT_NEAR(nodes[6 * corner + k], field(corners[corner], k), 1e-4) << "four weights off by 5e-6, values to 8";
    }
  }
}

}  // namespace
}  // namespace quilon::calculix
