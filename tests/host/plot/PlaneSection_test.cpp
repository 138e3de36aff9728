#include "plot/PlaneSection.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../mesh/MeshSupport.h"
#include "elements/ElementShape.h"

namespace quilon {
namespace {

using quilon_test::ElementLine;
using quilon_test::MakeMesh;
using quilon_test::NodeRow;

Mesh::Point PointOf(const Mesh& mesh, const Mesh::Element& element, const SectionPoint& weights)
{
  Mesh::Point point{};
  const auto  nodes = mesh.NodesOf(element);
  for (std::size_t i = 0; i < nodes.size(); ++i)
    for (std::size_t k = 0; k < 3; ++k) point[k] += weights[i] * mesh.Points()[nodes[i]][k];
  return point;
}

double Length(const Mesh::Point& v) { return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]); }

Mesh::Point Minus(const Mesh::Point& a, const Mesh::Point& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }

/// The area of the cut through all elements.
double CutArea(const Mesh& mesh, const SectionPlane& plane)
{
  const PlaneSection        section;
  const std::vector<double> sides = SidesOf(mesh, plane);
  double                    area  = 0.0;
  for (const Mesh::Element& element : mesh.Elements())
    for (const auto& triangle : section.Cut(mesh, element, sides).triangles) {
      const Mesh::Point a = PointOf(mesh, element, triangle[0]);
      const Mesh::Point u = Minus(PointOf(mesh, element, triangle[1]), a);
      const Mesh::Point v = Minus(PointOf(mesh, element, triangle[2]), a);
      area += 0.5 * Length({u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]});
    }
  return area;
}

/// The length of the lines where the plane meets the sides of elements.
double RimLength(const Mesh& mesh, const SectionPlane& plane)
{
  const PlaneSection        section;
  const std::vector<double> sides  = SidesOf(mesh, plane);
  double                    length = 0.0;
  for (const Mesh::Element& element : mesh.Elements())
    for (const auto& edge : section.Cut(mesh, element, sides).edges)
      length += Length(Minus(PointOf(mesh, element, edge[0]), PointOf(mesh, element, edge[1])));
  return length;
}

/// One element of a shape, in its own system.
Mesh OneSolid(ElementShape shape, int frdType)
{
  std::vector<NodeRow> nodes;
  ElementLine          element{1, frdType, 0, {}};
  for (std::size_t node = 0; node < NumNodes(shape); ++node) {
    nodes.push_back({static_cast<int>(node) + 1, LocalPosition(shape, node)});
    element.nodes.push_back(static_cast<int>(node) + 1);
  }
  return MakeMesh(nodes, {element});
}

// Table: cuts of solids in their own system (bricks from -1 to 1, tetrahedra and wedges from 0 to 1, wedges from -1 to
// 1 along z) with the areas and rims that elementary geometry gives.
TEST(PlaneSection, CutsSolidsInTheirClosedForms)
{
  const double root2 = std::sqrt(2.0);
  const double root3 = std::sqrt(3.0);
  const struct
  {
    const char*  name;
    ElementShape linear, quadratic;
    int          linearType, quadraticType;
    SectionPlane plane;
    double       area, rim;
  } rows[] = {
      {"brick across", ElementShape::Brick8, ElementShape::Brick20, 1, 4, {{0, 0, 0.3}, {0, 0, 2}}, 4.0, 8.0},
      {"brick through the diagonal",
       ElementShape::Brick8,
       ElementShape::Brick20,
       1,
       4,
       {{0, 0, 0}, {1, 1, 0}},
       4.0 * root2,
       4.0 + 4.0 * root2},
      {"brick in a hexagon",
       ElementShape::Brick8,
       ElementShape::Brick20,
       1,
       4,
       {{0, 0, 0}, {1, 1, 1}},
       3.0 * root3,
       6.0 * root2},
      {"brick at its face", ElementShape::Brick8, ElementShape::Brick20, 1, 4, {{0, 0, 1}, {0, 0, 1}}, 4.0, 8.0},
      {"brick from outside", ElementShape::Brick8, ElementShape::Brick20, 1, 4, {{0, 0, 1}, {0, 0, -1}}, 0.0, 0.0},
      {"brick missed", ElementShape::Brick8, ElementShape::Brick20, 1, 4, {{0, 0, 1.5}, {0, 0, 1}}, 0.0, 0.0},
      {"tetrahedron across",
       ElementShape::Tet4,
       ElementShape::Tet10,
       3,
       6,
       {{0, 0, 0.25}, {0, 0, 1}},
       0.5 * 0.75 * 0.75,
       0.75 * (2.0 + root2)},
      {"wedge across", ElementShape::Wedge6, ElementShape::Wedge15, 2, 5, {{0, 0, 0.1}, {0, 0, 1}}, 0.5, 2.0 + root2},
      {"wedge along", ElementShape::Wedge6, ElementShape::Wedge15, 2, 5, {{0.25, 0, 0}, {1, 0, 0}}, 1.5, 5.5},
  };
  for (const auto& row : rows) {
    EXPECT_NEAR(CutArea(OneSolid(row.linear, row.linearType), row.plane), row.area, 1e-12) << row.name;
    EXPECT_NEAR(CutArea(OneSolid(row.quadratic, row.quadraticType), row.plane), row.area, 1e-12) << row.name;
    EXPECT_NEAR(RimLength(OneSolid(row.linear, row.linearType), row.plane), row.rim, 1e-12) << row.name;
    EXPECT_NEAR(RimLength(OneSolid(row.quadratic, row.quadraticType), row.plane), row.rim, 1e-12) << row.name;
  }
}

TEST(PlaneSection, APlaneBetweenTwoElementsCutsOneOfThem)
{
  const Mesh mesh = MakeMesh(quilon_test::TwoCubeNodes(), quilon_test::TwoCubeElements());
  EXPECT_NEAR(CutArea(mesh, {{2, 0, 0}, {1, 0, 0}}), 4.0, 1e-12);
  EXPECT_NEAR(CutArea(mesh, {{2, 0, 0}, {-1, 0, 0}}), 4.0, 1e-12);
  EXPECT_NEAR(CutArea(mesh, {{2, 1, 0}, {0, 1, 0}}), 8.0, 1e-12) << "along both";
}

TEST(PlaneSection, LinearValuesAreInterpolatedExactly)
{
  const auto value = [](const Mesh::Point& p) { return 1.0 + 2.0 * p[0] + 3.0 * p[1] - p[2]; };
  for (const auto& [shape, type] : {std::pair{ElementShape::Brick8, 1}, std::pair{ElementShape::Wedge15, 5},
                                    std::pair{ElementShape::Tet10, 6}, std::pair{ElementShape::Brick20, 4}})
  {
    const Mesh         mesh  = OneSolid(shape, type);
    const SectionPlane plane = {{0.2, 0.2, 0.2}, {1, 2, 3}};
    const SolidCut     cut   = PlaneSection().Cut(mesh, mesh.Elements()[0], SidesOf(mesh, plane));
    const auto         nodes = mesh.NodesOf(mesh.Elements()[0]);
    ASSERT_FALSE(cut.triangles.empty());
    for (const auto& triangle : cut.triangles)
      for (const SectionPoint& weights : triangle) {
        double interpolated = 0.0;
        for (std::size_t i = 0; i < nodes.size(); ++i) interpolated += weights[i] * value(mesh.Points()[nodes[i]]);
        const Mesh::Point point = PointOf(mesh, mesh.Elements()[0], weights);
        EXPECT_NEAR(interpolated, value(point), 1e-13);
        EXPECT_NEAR(point[0] + 2 * point[1] + 3 * point[2], 1.2, 1e-13) << "on the plane";
      }
  }
}

}  // namespace
}  // namespace quilon
