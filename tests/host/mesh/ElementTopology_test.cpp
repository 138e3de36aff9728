#include "mesh/ElementTopology.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "elements/ElementShape.h"

namespace quilon {
namespace {

using Point = std::array<double, 3>;

struct Row
{
  int          frdType;
  const char*  name;
  ElementShape shape;
};

constexpr Row kSolids[] = {{1, "C3D8", ElementShape::Brick8},   {2, "C3D6", ElementShape::Wedge6},
                           {3, "C3D4", ElementShape::Tet4},     {4, "C3D20", ElementShape::Brick20},
                           {5, "C3D15", ElementShape::Wedge15}, {6, "C3D10", ElementShape::Tet10}};

Point  Minus(const Point& a, const Point& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
double Dot(const Point& a, const Point& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
Point  Cross(const Point& a, const Point& b)
{
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// The shapes know which nodes are on which face by their coordinates: a second method.
TEST(ElementTopology, FacesOfSolidsHaveTheNodesThatLieOnThem)
{
  for (const Row& row : kSolids) {
    const ElementTopology& topology = *FindTopology(row.frdType);
    EXPECT_STREQ(topology.name, row.name);
    ASSERT_EQ(topology.numNodes, NumNodes(row.shape)) << row.name;
    EXPECT_EQ(topology.dimension, 3);
    for (std::size_t f = 0; f < topology.faces.size(); ++f) {
      const ElementFace& face  = topology.faces[f];
      std::size_t        nodes = 0;
      for (std::size_t node = 0; node < topology.numNodes; ++node)
        if (IsOnFace(row.shape, node, static_cast<int>(f) + 1)) ++nodes;
      EXPECT_EQ(nodes, face.numCorners * (face.isCurved ? 2 : 1)) << row.name << " face " << f + 1;
      for (std::size_t i = 0; i < face.numCorners; ++i) {
        EXPECT_TRUE(IsOnFace(row.shape, face.corners[i], static_cast<int>(f) + 1)) << row.name << " face " << f + 1;
        if (!face.isCurved) continue;
        const Point from = LocalPosition(row.shape, face.corners[i]);
        const Point to   = LocalPosition(row.shape, face.corners[(i + 1) % face.numCorners]);
        const Point half = LocalPosition(row.shape, face.middles[i]);
        for (std::size_t k = 0; k < 3; ++k)
          EXPECT_DOUBLE_EQ(half[k], 0.5 * (from[k] + to[k])) << row.name << " face " << f + 1 << " side " << i;
      }
    }
  }
}

TEST(ElementTopology, FacesOfSolidsLookOutwards)
{
  for (const Row& row : kSolids) {
    const ElementTopology& topology = *FindTopology(row.frdType);
    Point                  centre   = {};
    for (std::size_t node = 0; node < topology.numNodes; ++node)
      for (std::size_t k = 0; k < 3; ++k)
        centre[k] += LocalPosition(row.shape, node)[k] / static_cast<double>(topology.numNodes);
    for (const ElementFace& face : topology.faces) {
      const Point a      = LocalPosition(row.shape, face.corners[0]);
      const Point b      = LocalPosition(row.shape, face.corners[1]);
      const Point c      = LocalPosition(row.shape, face.corners[2]);
      const Point normal = Cross(Minus(b, a), Minus(c, a));
      EXPECT_GT(Dot(normal, Minus(a, centre)), 0.0) << row.name;
    }
  }
}

TEST(ElementTopology, ShellsHaveOneFaceAndBeamsNone)
{
  const struct
  {
    int         frdType;
    const char* name;
    std::size_t nodes;
    int         dimension;
    std::size_t faces;
  } rows[] = {{7, "S3", 3, 2, 1},  {8, "S6", 6, 2, 1},   {9, "S4", 4, 2, 1},
              {10, "S8", 8, 2, 1}, {11, "B31", 2, 1, 0}, {12, "B32", 3, 1, 0}};
  for (const auto& row : rows) {
    const ElementTopology* topology = FindTopology(row.frdType);
    ASSERT_NE(topology, nullptr);
    EXPECT_STREQ(TypeNameOf(row.frdType), row.name);
    EXPECT_EQ(topology->numNodes, row.nodes) << row.name;
    EXPECT_EQ(topology->dimension, row.dimension) << row.name;
    EXPECT_EQ(topology->faces.size(), row.faces) << row.name;
  }
}

TEST(ElementTopology, OtherCodesHaveNoShape)
{
  for (const int code : {-1, 0, 13, 1000}) {
    EXPECT_EQ(FindTopology(code), nullptr) << code;
    EXPECT_STREQ(TypeNameOf(code), "none") << code;
  }
}

}  // namespace
}  // namespace quilon
