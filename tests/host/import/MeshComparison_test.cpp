#include "import/MeshComparison.h"

#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

namespace quilon {
namespace {

using Ids = std::set<int>;

void AddNodes(FED_Database& database, const Ids& nodes, int iteration = 0)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(FED_DataDescriptor(iteration, FED_OnfId(516)), 0),
                       database.GetIdMapsPool(), true);
  const double    place[3] = {1, 2, 3};
  for (const int node : nodes) view.SetVector(node, place);
}

void AddElements(FED_Database& database, const std::vector<std::pair<int, std::vector<int>>>& elements)
{
  FED_IdDataBlock   view(database.GetOrCreateDataBlock(FED_DataDescriptor(0, FED_OnfId_ElementNodes), 0),
                         database.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  for (const auto& [id, nodes] : elements) {
    record.SetIntList(1, nodes);
    view.SetRecord(id, record);
  }
}

TEST(MeshComparison, TellsWhatEitherMeshAloneHasAndElementsOfOtherNodes)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  AddNodes(a, {1, 2, 3, 5});
  AddNodes(b, {2, 3, 4, 9, 10});
  AddElements(a, {{1, {1, 2, 3}}, {2, {2, 3}}, {3, {1, 2}}, {4, {2, 3, 5}}, {6, {2}}});
  AddElements(b, {{2, {2, 3}}, {3, {2, 1}}, {4, {2, 3}}, {5, {2, 3}}, {6, {3}}});
  const MeshComparison found = CompareMeshes(a, b, 0);
  EXPECT_TRUE(found.hasFirst);
  EXPECT_TRUE(found.hasSecond);
  EXPECT_EQ(found.nodesOfFirst, (Ids{1, 5}));
  EXPECT_EQ(found.nodesOfSecond, (Ids{4, 9, 10}));
  EXPECT_EQ(found.elementsOfFirst, (Ids{1}));
  EXPECT_EQ(found.elementsOfSecond, (Ids{5}));
  EXPECT_EQ(found.elementsOfOtherNodes, (Ids{3, 4, 6}));
  EXPECT_FALSE(found.IsFirstWithin());
  EXPECT_FALSE(found.IsSecondWithin());
}

TEST(MeshComparison, AMeshIsTheSameAsItselfAndWithinALargerOne)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  AddNodes(a, {1, 2});
  AddElements(a, {{1, {1, 2}}});
  AddNodes(b, {1, 2, 3});
  AddElements(b, {{1, {1, 2}}});
  EXPECT_TRUE(CompareMeshes(a, a, 0).IsSame());
  EXPECT_FALSE(CompareMeshes(a, b, 0).IsSame());
  EXPECT_TRUE(CompareMeshes(a, b, 0).IsFirstWithin());
  EXPECT_FALSE(CompareMeshes(a, b, 0).IsSecondWithin());
  EXPECT_TRUE(CompareMeshes(b, a, 0).IsSecondWithin());
}

TEST(MeshComparison, LooksAtOneIteration)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  AddNodes(a, {1}, 1);
  AddNodes(b, {1}, 0);
  const MeshComparison found = CompareMeshes(a, b, 1);
  EXPECT_TRUE(found.hasFirst);
  EXPECT_FALSE(found.hasSecond);
  EXPECT_FALSE(CompareMeshes(a, b, 0).hasFirst);
}

}  // namespace
}  // namespace quilon
