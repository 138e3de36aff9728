#include "mesh/Surface.h"

#include <set>
#include <utility>

#include <gtest/gtest.h>

#include "elements/ElementShape.h"
#include "MeshSupport.h"

namespace quilon {
namespace {

using quilon_test::ElementLine;
using quilon_test::MakeMesh;
using quilon_test::NodeRow;

/// Of a closed surface whose triangles look outwards, by the divergence theorem.
double VolumeInside(const Mesh& mesh, const Surface& surface)
{
  double volume = 0.0;
  for (const Surface::Triangle& triangle : surface.triangles) {
    const auto& a = mesh.Points()[triangle.nodes[0]];
    const auto& b = mesh.Points()[triangle.nodes[1]];
    const auto& c = mesh.Points()[triangle.nodes[2]];
    volume +=
        (a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) + a[2] * (b[0] * c[1] - b[1] * c[0])) /
        6.0;
  }
  return volume;
}

/// Every side of a triangle is that of one other triangle, the other way round.
bool IsClosed(const Surface& surface)
{
  std::multiset<std::pair<std::size_t, std::size_t>> sides;
  for (const Surface::Triangle& triangle : surface.triangles)
    for (std::size_t i = 0; i < 3; ++i) sides.insert({triangle.nodes[i], triangle.nodes[(i + 1) % 3]});
  for (const auto& [from, to] : sides)
    if (sides.count({from, to}) != 1 || sides.count({to, from}) != 1) return false;
  return true;
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

TEST(Surface, EnclosesEverySolid)
{
  const struct
  {
    const char*  name;
    ElementShape shape;
    int          frdType;
    std::size_t  triangles;
    std::size_t  edges;
    double       volume;
  } rows[] = {{"C3D8", ElementShape::Brick8, 1, 12, 12, 8.0},   {"C3D6", ElementShape::Wedge6, 2, 8, 9, 1.0},
              {"C3D4", ElementShape::Tet4, 3, 4, 6, 1.0 / 6},   {"C3D20", ElementShape::Brick20, 4, 36, 24, 8.0},
              {"C3D15", ElementShape::Wedge15, 5, 26, 18, 1.0}, {"C3D10", ElementShape::Tet10, 6, 16, 12, 1.0 / 6}};
  for (const auto& row : rows) {
    const Mesh    mesh    = OneSolid(row.shape, row.frdType);
    const Surface surface = ExtractSurface(mesh);
    EXPECT_EQ(surface.triangles.size(), row.triangles) << row.name;
    EXPECT_EQ(surface.edges.size(), row.edges) << row.name;
    EXPECT_EQ(surface.nodes.size(), mesh.NumNodes()) << row.name;
    EXPECT_TRUE(IsClosed(surface)) << row.name;
    EXPECT_NEAR(VolumeInside(mesh, surface), row.volume, 1e-14) << row.name;
  }
}

TEST(Surface, LeavesOutFacesBetweenTwoElements)
{
  const Mesh    mesh    = MakeMesh(quilon_test::TwoCubeNodes(), quilon_test::TwoCubeElements());
  const Surface surface = ExtractSurface(mesh);
  EXPECT_EQ(surface.triangles.size(), 20U);  // five squares a cube
  EXPECT_EQ(surface.edges.size(), 20U);      // 4 around each of three sections, 4 along each cube
  EXPECT_TRUE(IsClosed(surface));
  EXPECT_DOUBLE_EQ(VolumeInside(mesh, surface), 16.0);
  // The common side is the fourth of the first cube and the sixth of the second.
  for (const Surface::Triangle& triangle : surface.triangles) EXPECT_NE(triangle.face, triangle.element == 0 ? 4 : 6);
}

TEST(Surface, IsOutsideWhereTheNeighbourIsNotShown)
{
  const Mesh    mesh    = MakeMesh(quilon_test::TwoCubeNodes(), quilon_test::TwoCubeElements());
  const Surface surface = ExtractSurface(mesh, {false, true});
  EXPECT_EQ(surface.triangles.size(), 12U);
  EXPECT_DOUBLE_EQ(VolumeInside(mesh, surface), 8.0);
  EXPECT_EQ(surface.nodes, (std::vector<std::size_t>{4, 5, 6, 7, 8, 9, 10, 11}));
  for (const Surface::Triangle& triangle : surface.triangles) EXPECT_EQ(triangle.element, 1U);
  EXPECT_TRUE(ExtractSurface(mesh, {false, false}).triangles.empty());
}

// A solid and a wedge upon it share corners, whatever the shapes behind them.
TEST(Surface, MatchesFacesOfDifferentShapes)
{
  std::vector<NodeRow> nodes = quilon_test::TwoCubeNodes();
  nodes.push_back({13, {4, 0, 1}});
  nodes.push_back({14, {4, 2, 1}});
  // The wedge has its quadrangle 5 6 7 8 in common with the cube.
  const Mesh    mesh    = MakeMesh(nodes, {{1, 1, 0, {1, 5, 6, 2, 4, 8, 7, 3}}, {2, 2, 0, {5, 8, 13, 6, 7, 14}}});
  const Surface surface = ExtractSurface(mesh);
  EXPECT_EQ(surface.triangles.size(), 5U * 2 + 2 * 2 + 2);
  EXPECT_TRUE(IsClosed(surface));
  EXPECT_DOUBLE_EQ(VolumeInside(mesh, surface), 8.0 + 4.0);
}

TEST(Surface, CutsQuadranglesAlongTheShorterDiagonal)
{
  const auto shell = [](double x) {
    return MakeMesh({{1, {0, 0, 0}}, {2, {1, 0, 0}}, {3, {x, 1, 0}}, {4, {0, 1, 0}}}, {{1, 9, 0, {1, 2, 3, 4}}});
  };
  using Nodes          = std::array<std::size_t, 3>;
  const Surface longer = ExtractSurface(shell(2));  // from 2 to 4
  ASSERT_EQ(longer.triangles.size(), 2U);
  EXPECT_EQ(longer.triangles[0].nodes, (Nodes{0, 1, 3}));
  EXPECT_EQ(longer.triangles[1].nodes, (Nodes{1, 2, 3}));
  const Surface equal = ExtractSurface(shell(1));  // from 1 to 3
  EXPECT_EQ(equal.triangles[0].nodes, (Nodes{0, 1, 2}));
  EXPECT_EQ(equal.triangles[1].nodes, (Nodes{0, 2, 3}));
  EXPECT_EQ(equal.triangles[0].face, 0);
}

TEST(Surface, HasShellsBeamsAndSprings)
{
  const Mesh mesh = MakeMesh(
      {{1, {0, 0, 0}}, {2, {2, 0, 0}}, {3, {0, 2, 0}}, {4, {1, 0, 0}}, {5, {1, 1, 0}}, {6, {0, 1, 0}}, {7, {9, 9, 9}}},
      {{1, 8, 0, {1, 2, 3, 4, 5, 6}},  // a shell
       {2, 12, 0, {1, 4, 2}},          // a beam along its side
       {3, 11, 0, {3, 1}},
       {4, 0, 0, {2, 3}},  // a spring
       {5, 0, 0, {7}}});   // a mass
  const Surface surface = ExtractSurface(mesh);
  EXPECT_EQ(surface.triangles.size(), 4U);
  EXPECT_EQ(surface.edges.size(), 6U);
  using Nodes = std::array<std::size_t, 2>;
  ASSERT_EQ(surface.beams.size(), 4U);
  EXPECT_EQ(surface.beams[0].nodes, (Nodes{0, 3}));
  EXPECT_EQ(surface.beams[1].nodes, (Nodes{3, 1}));
  EXPECT_EQ(surface.beams[2].nodes, (Nodes{2, 0}));
  EXPECT_EQ(surface.beams[3].nodes, (Nodes{1, 2}));
  EXPECT_EQ(surface.beams[3].element, 3U);
  EXPECT_EQ(surface.nodes, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5}));
}

TEST(Surface, OfAMeshWithoutElementsIsEmpty)
{
  const Surface surface = ExtractSurface(MakeMesh({{1, {0, 0, 0}}}, {}));
  EXPECT_TRUE(surface.triangles.empty());
  EXPECT_TRUE(surface.nodes.empty());
}

}  // namespace
}  // namespace quilon
