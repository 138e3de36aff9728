#include "elements/Extrapolation.h"

#include <array>
#include <cassert>

namespace quilon {

namespace {

constexpr std::size_t kNumComponents = 6;

constexpr double kOwn  = 2.549;
constexpr double kEdge = -0.683;
constexpr double kFace = 0.183;
constexpr double kBody = -0.04904;

// Corners run around the bottom and then around the top, points run x fastest: corners 3 and 4 belong to points 4 and
// 3, corners 7 and 8 to points 8 and 7.
constexpr std::array<double, 64> kBrickWeights = {
    kOwn,  kEdge, kEdge, kFace, kEdge, kFace, kFace, kBody,  //
    kEdge, kOwn,  kFace, kEdge, kFace, kEdge, kBody, kFace,  //
    kFace, kEdge, kEdge, kOwn,  kBody, kFace, kFace, kEdge,  //
    kEdge, kFace, kOwn,  kEdge, kFace, kBody, kEdge, kFace,  //
    kEdge, kFace, kFace, kBody, kOwn,  kEdge, kEdge, kFace,  //
    kFace, kEdge, kBody, kFace, kEdge, kOwn,  kFace, kEdge,  //
    kBody, kFace, kFace, kEdge, kFace, kEdge, kEdge, kOwn,   //
    kFace, kBody, kEdge, kFace, kEdge, kFace, kOwn,  kEdge,
};

constexpr double kNear = 1.92705;
constexpr double kFar  = -0.30902;

constexpr std::array<double, 16> kTetWeights = {
    kNear, kFar,  kFar,  kFar,  //
    kFar,  kNear, kFar,  kFar,  //
    kFar,  kFar,  kNear, kFar,  //
    kFar,  kFar,  kFar,  kNear,
};

constexpr std::array<double, 8> kConstant = {1, 1, 1, 1, 1, 1, 1, 1};

// Odd nodes and even nodes, not bottom and top: so it is in the solver. Test: AC3D6TakesEverySecondNodeForTheTop.
constexpr std::array<double, 12> kLinearWedgeWeights = {
    1.1455,  -0.1455,  //
    -0.1455, 1.1455,   //
    1.1455,  -0.1455,  //
    -0.1455, 1.1455,   //
    1.1455,  -0.1455,  //
    -0.1455, 1.1455,
};

/// By layer as seen from the node's end.
constexpr std::array<double, 3> kWedgeOwn   = {1.63138, 0.55556, -0.52027};
constexpr std::array<double, 3> kWedgeOther = {-0.32628, -0.11111, 0.10405};

constexpr std::array<double, 54> MakeQuadraticWedgeWeights()
{
  std::array<double, 54> weights = {};
  for (std::size_t corner = 0; corner < 6; ++corner) {
    for (std::size_t p = 0; p < 9; ++p) {
      const std::size_t layer = corner < 3 ? p / 3 : 2 - p / 3;
      weights[9 * corner + p] = p % 3 == corner % 3 ? kWedgeOwn[layer] : kWedgeOther[layer];
    }
  }
  return weights;
}

constexpr std::array<double, 54> kQuadraticWedgeWeights = MakeQuadraticWedgeWeights();

/// Weights of a C3D20 by where a point lies as seen from the node: [directions in which it lies in the middle]
/// [directions in which it lies on the other side], of the directions in which the node lies at an end.
using PlaceWeights = std::array<std::array<double, 4>, 4>;

constexpr PlaceWeights kCornerWeights = {{{2.37499, -0.12559, -0.16145, 0.11575},
                                          {-0.31246, 0.31481, -0.16902, 0.0},
                                          {-0.48824, 0.22898, 0.0, 0.0},
                                          {-0.2963, 0.0, 0.0, 0.0}}};
/// Of a mid-side node, points towards an end of its edge.
constexpr PlaceWeights kEdgeEndWeights = {
    {{0.32628, 0.11111, -0.10405, 0.0}, {-0.27072, 0.15961, 0.0, 0.0}, {-0.22222, 0.0, 0.0, 0.0}, {}}};
/// Of a mid-side node, points halfway along its edge.
constexpr PlaceWeights kEdgeMiddleWeights = {
    {{1.28439, -0.19444, -0.00661, 0.0}, {0.05556, 0.05556, 0.0, 0.0}, {-0.11111, 0.0, 0.0, 0.0}, {}}};

constexpr std::array<double, 540> MakeQuadraticBrickWeights()
{
  std::array<double, 540> weights = {};
  for (std::size_t n = 0; n < 20; ++n) {
    for (std::size_t p = 0; p < 27; ++p) {
      const int point[3] = {static_cast<int>(p % 3) - 1, static_cast<int>(p / 3 % 3) - 1, static_cast<int>(p / 9) - 1};
      const PlaceWeights* table     = &kCornerWeights;
      std::size_t         numMiddle = 0;
      std::size_t         numFar    = 0;
      for (std::size_t d = 0; d < 3; ++d) {
        int place = n < 8 ? static_cast<int>(kBrickCorners[n][d]) : 0;
        if (n >= 8) {
          const ElementEdge edge = kBrickEdges[n - 8];
          place                  = static_cast<int>((kBrickCorners[edge.first][d] + kBrickCorners[edge.second][d]) / 2);
        }
        if (place == 0) {
          table = point[d] == 0 ? &kEdgeMiddleWeights : &kEdgeEndWeights;
        } else if (point[d] == 0) {
          ++numMiddle;
        } else if (point[d] != place) {
          ++numFar;
        }
      }
      weights[27 * n + p] = (*table)[numMiddle][numFar];
    }
  }
  return weights;
}

constexpr std::array<double, 540> kQuadraticBrickWeights = MakeQuadraticBrickWeights();

const std::array<ExtrapolationRule, 8> kRules = {{
    {"C3D4", 3, 1, 4, std::span(kConstant).first(4), {}},
    {"C3D6", 2, 2, 6, kLinearWedgeWeights, {}},
    {"C3D8", 1, 8, 8, kBrickWeights, {}},
    {"C3D8R", 1, 1, 8, kConstant, {}},
    {"C3D10", 6, 4, 4, kTetWeights, kTetEdges},
    {"C3D15", 5, 9, 6, kQuadraticWedgeWeights, kWedgeEdges},
    {"C3D20", 4, 27, 20, kQuadraticBrickWeights, {}},
    {"C3D20R", 4, 8, 8, kBrickWeights, kBrickEdges},
}};

constexpr std::array<const char*, 13> kShapes = {
    "element",         "8-node brick",         "6-node wedge",         "4-node tetrahedron",
    "20-node brick",   "15-node wedge",        "10-node tetrahedron",  "3-node triangle",
    "6-node triangle", "4-node quadrilateral", "8-node quadrilateral", "2-node line",
    "3-node line"};

}  // namespace

const ExtrapolationRule* FindExtrapolation(int frdType, std::size_t numPoints)
{
  for (const ExtrapolationRule& rule : kRules) {
    if (rule.frdType == frdType && rule.numPoints == numPoints) return &rule;
  }
  return nullptr;
}

void Extrapolate(const ExtrapolationRule& rule, std::span<const double> points, std::span<double> nodes)
{
  assert(points.size() == rule.numPoints * kNumComponents);
  assert(nodes.size() == rule.NumNodes() * kNumComponents);

  for (std::size_t n = 0; n < rule.numWeighted; ++n) {
    const double* weights = &rule.weights[n * rule.numPoints];
    for (std::size_t k = 0; k < kNumComponents; ++k) {
      double value = 0.0;
      for (std::size_t p = 0; p < rule.numPoints; ++p) value += weights[p] * points[p * kNumComponents + k];
      nodes[n * kNumComponents + k] = value;
    }
  }

  std::size_t node = rule.numWeighted;
  for (const auto& [first, second] : rule.edges) {
    for (std::size_t k = 0; k < kNumComponents; ++k) {
      nodes[node * kNumComponents + k] = 0.5 * (nodes[static_cast<std::size_t>(first) * kNumComponents + k] +
                                                nodes[static_cast<std::size_t>(second) * kNumComponents + k]);
    }
    ++node;
  }
}

std::string DescribeElementType(int frdType, std::size_t numPoints)
{
  if (const ExtrapolationRule* rule = FindExtrapolation(frdType, numPoints)) return rule->name;
  const bool known = frdType > 0 && static_cast<std::size_t>(frdType) < kShapes.size();
  return std::string(kShapes[known ? static_cast<std::size_t>(frdType) : 0]) + " with " + std::to_string(numPoints) +
         (numPoints == 1 ? " point" : " points");
}

}  // namespace quilon
