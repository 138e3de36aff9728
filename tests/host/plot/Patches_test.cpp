#include "plot/Patches.h"

#include <algorithm>
#include <cstddef>

#include <gtest/gtest.h>

#include "../mesh/MeshSupport.h"

namespace quilon {
namespace {

std::size_t CountFeatures(const std::vector<PatchEdge>& edges)
{
  return static_cast<std::size_t>(
      std::count_if(edges.begin(), edges.end(), [](const PatchEdge& edge) { return edge.isFeature; }));
}

TEST(Patches, SharpEdgesAndBordersOfMaterialsAreFeatures)
{
  auto elements = quilon_test::TwoCubeElements();
  for (const bool areAlike : {false, true}) {
    elements[1].material             = areAlike ? 1 : 2;
    const Mesh               mesh    = quilon_test::MakeMesh(quilon_test::TwoCubeNodes(), elements);
    const std::vector<Patch> patches = CollectPatches(mesh, ExtractSurface(mesh));
    EXPECT_EQ(patches.size(), 10u);
    const std::vector<PatchEdge> edges = CollectEdges(mesh, patches);
    EXPECT_EQ(edges.size(), 20u);
    // Of a box of two cubes all 16 edges along its sides, and the four around its middle where materials meet.
    EXPECT_EQ(CountFeatures(edges), areAlike ? 16u : 20u);
  }
}

TEST(Patches, TheEndOfAShellIsAFeature)
{
  const Mesh mesh = quilon_test::MakeMesh(
      {{1, {0, 0, 0}}, {2, {1, 0, 0}}, {3, {1, 1, 0}}, {4, {0, 1, 0}}, {5, {2, 0, 0}}, {6, {2, 1, 0}}},
      // The second is turned over.
      {{1, 9, 1, {1, 2, 3, 4}}, {2, 9, 1, {2, 3, 6, 5}}});
  const std::vector<PatchEdge> edges = CollectEdges(mesh, CollectPatches(mesh, ExtractSurface(mesh)));
  EXPECT_EQ(edges.size(), 7u);
  EXPECT_EQ(CountFeatures(edges), 6u);
}

TEST(Patches, GridsCoverThePatchWithItsNodesAmongTheirPoints)
{
  for (const std::size_t corners : {3u, 4u})
    for (const bool isCurved : {false, true})
      for (const std::size_t steps : {2u, 4u, 8u}) {
        const PatchGrid grid(corners, isCurved, steps);
        EXPECT_EQ(grid.triangles.size(), (corners == 3 ? 1 : 2) * steps * steps);
        const std::size_t numNodes = isCurved ? 2 * corners : corners;
        for (const PatchGrid::Weights& weights : grid.points) {
          double sum = 0.0;
          for (const double weight : weights) sum += weight;
          EXPECT_NEAR(sum, 1.0, 1e-14);
        }
        for (std::size_t node = 0; node < numNodes; ++node) {
          PatchGrid::Weights alone{};
          alone[node] = 1.0;
          EXPECT_NE(std::find(grid.points.begin(), grid.points.end(), alone), grid.points.end()) << node;
        }
        for (std::size_t side = 0; side < corners; ++side) {
          ASSERT_EQ(grid.sides[side].size(), steps + 1);
          EXPECT_EQ(grid.points[grid.sides[side].front()][side], 1.0);
          EXPECT_EQ(grid.points[grid.sides[side].back()][(side + 1) % corners], 1.0);
          if (isCurved) {
            EXPECT_EQ(grid.points[grid.sides[side][steps / 2]][corners + side], 1.0) << "its middle";
          }
        }
      }
}

}  // namespace
}  // namespace quilon
