#include "calculix/Extrapolation.h"

#include <array>
#include <cassert>

namespace quilon::calculix {

namespace {

constexpr std::size_t kNumComponents = 6;

using Edge = std::pair<int, int>;

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

constexpr std::array<Edge, 12> kBrickEdges = {
    {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}}};

constexpr std::array<Edge, 6> kTetEdges = {{{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}}};

const std::array<ExtrapolationRule, 5> kRules = {{
    {"C3D4", 3, 1, 4, std::span(kConstant).first(4), {}},
    {"C3D8", 1, 8, 8, kBrickWeights, {}},
    {"C3D8R", 1, 1, 8, kConstant, {}},
    {"C3D10", 6, 4, 4, kTetWeights, kTetEdges},
    {"C3D20R", 4, 8, 8, kBrickWeights, kBrickEdges},
}};

/// Solids that have a name by type code and number of points, and no rule.
struct NamedType
{
  int         frdType;
  std::size_t numPoints;
  const char* name;
};

constexpr std::array<NamedType, 3> kNamedTypes = {{{2, 2, "C3D6"}, {4, 27, "C3D20"}, {5, 9, "C3D15"}}};

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

  for (std::size_t corner = 0; corner < rule.numCorners; ++corner) {
    const double* weights = &rule.weights[corner * rule.numPoints];
    for (std::size_t k = 0; k < kNumComponents; ++k) {
      double value = 0.0;
      for (std::size_t p = 0; p < rule.numPoints; ++p) value += weights[p] * points[p * kNumComponents + k];
      nodes[corner * kNumComponents + k] = value;
    }
  }

  std::size_t node = rule.numCorners;
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
  for (const NamedType& type : kNamedTypes) {
    if (type.frdType == frdType && type.numPoints == numPoints) return type.name;
  }
  const bool known = frdType > 0 && static_cast<std::size_t>(frdType) < kShapes.size();
  return std::string(kShapes[known ? static_cast<std::size_t>(frdType) : 0]) + " with " + std::to_string(numPoints) +
         (numPoints == 1 ? " point" : " points");
}

}  // namespace quilon::calculix
