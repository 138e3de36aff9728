#include "mesh/Mesh.h"

#include <gtest/gtest.h>
#include <QuilonUtilities/FED_Failure.h>

#include "MeshSupport.h"

namespace quilon {
namespace {

using quilon_test::ElementLine;
using quilon_test::MakeMesh;
using quilon_test::MeshView;
using quilon_test::NodeRow;
using quilon_test::WriteMesh;
using quilon_test::WriteSet;

std::vector<std::size_t> PositionsOf(const Mesh& mesh, std::size_t element)
{
  const auto nodes = mesh.NodesOf(mesh.Elements()[element]);
  return {nodes.begin(), nodes.end()};
}

TEST(Mesh, SortsNodesAndElementsById)
{
  const Mesh mesh =
      MakeMesh({{30, {3, 0, 0}}, {-5, {1, 0, 0}}, {7, {2, 0, 0}}}, {{9, 11, 4, {30, -5}}, {2, 12, 0, {-5, 7, 30}}});
  EXPECT_EQ(mesh.NodeIds(), (std::vector<int>{-5, 7, 30}));
  EXPECT_EQ(mesh.Points(), (std::vector<Mesh::Point>{{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}));
  ASSERT_EQ(mesh.NumElements(), 2U);
  EXPECT_EQ(mesh.Elements()[0].id, 2);
  EXPECT_EQ(mesh.Elements()[0].frdType, 12);
  EXPECT_EQ(mesh.Elements()[1].material, 4);
  EXPECT_EQ(PositionsOf(mesh, 0), (std::vector<std::size_t>{0, 1, 2}));
  EXPECT_EQ(PositionsOf(mesh, 1), (std::vector<std::size_t>{2, 0}));
  EXPECT_EQ(mesh.FindNode(30), 2U);
  EXPECT_EQ(mesh.FindNode(8), std::nullopt);
  EXPECT_EQ(mesh.FindElement(9), 1U);
  EXPECT_EQ(mesh.FindElement(3), std::nullopt);
}

// A network element names node 0 where it has none, and user elements have any number of nodes.
TEST(Mesh, ElementsThatLackNodesOrHaveOthersThanTheirTypeHaveNoShape)
{
  const Mesh mesh = MakeMesh({{1, {0, 0, 0}}, {2, {1, 0, 0}}, {3, {0, 1, 0}}},
                             {{1, 12, 0, {0, 2, 1}}, {2, 7, 0, {1, 2}}, {3, 0, 0, {1, 3}}, {4, 7, 0, {3, 1, 2}}});
  EXPECT_EQ(mesh.Elements()[0].frdType, 0);
  EXPECT_EQ(PositionsOf(mesh, 0), (std::vector<std::size_t>{1, 0}));
  EXPECT_EQ(mesh.Elements()[1].frdType, 0);
  EXPECT_EQ(mesh.Elements()[2].frdType, 0);
  EXPECT_EQ(mesh.Elements()[3].frdType, 7);
  EXPECT_EQ(PositionsOf(mesh, 3), (std::vector<std::size_t>{2, 0, 1}));
}

TEST(Mesh, HasNodesAloneWithoutElementBlocks)
{
  FED_ResultDatabase database;
  WriteMesh(database, {{1, {0, 0, 0}}}, {});
  EXPECT_EQ(ReadMesh(database, 0, "job.fed").NumNodes(), 1U);
  FED_IdDataBlock   lists = MeshView(database, OnfKind::ElementNodes);
  FED_IdDataRecord& list  = lists.CreateIdDataRecord();
  list.SetIntList(1, std::vector<int>{1});
  lists.SetRecord(4, list);
  EXPECT_EQ(ReadMesh(database, 0, "job.fed").NumElements(), 0U);  // and without types
}

TEST(Mesh, IsThatOfItsIteration)
{
  FED_ResultDatabase database;
  WriteMesh(database, {{1, {0, 0, 0}}}, {});
  WriteMesh(database, {{1, {5, 0, 0}}, {2, {6, 0, 0}}}, {}, 3);
  EXPECT_EQ(ReadMesh(database, 3, "job.fed").NumNodes(), 2U);
  EXPECT_EQ(ReadMesh(database, 3, "job.fed").Points().front(), (Mesh::Point{5, 0, 0}));
}

TEST(Mesh, NeedsCoordinates)
{
  FED_ResultDatabase database;
  const auto         message = [&database] {
    try {
      ReadMesh(database, 0, "job.fed");
    } catch (const FED_Failure& failure) {
      return std::string(failure.what());
    }
    return std::string();
  };
  const std::string expected =
      "job.fed: no coordinates (block 516), expected the mesh of a .frd or a deck, as quilon import reads it";
  EXPECT_EQ(message(), expected);
  database.GetOrCreateDataBlock(FED_DataDescriptor(0, OnfKind::Coordinates), 0);
  EXPECT_EQ(message(), expected);
}

TEST(Mesh, SetsComeAsTheDatabaseNumbersThem)
{
  FED_ResultDatabase database;
  EXPECT_TRUE(ReadSets(database, 0).empty());
  WriteSet(database, OnfKind::ElementSet, 1, "EALL", {10, 20});
  WriteSet(database, OnfKind::NodeSet, 1, "FIX", {4, 1, 4});
  WriteSet(database, OnfKind::NodeSet, 2, "EMPTY", {});
  const std::vector<NamedSet> sets = ReadSets(database, 0);
  ASSERT_EQ(sets.size(), 3U);
  EXPECT_EQ(sets[0].name, "FIX");
  EXPECT_FALSE(sets[0].ofElements);
  EXPECT_EQ(sets[0].ids, (std::vector<int>{4, 1, 4}));
  EXPECT_EQ(sets[1].name, "EMPTY");
  EXPECT_TRUE(sets[1].ids.empty());
  EXPECT_EQ(sets[2].name, "EALL");
  EXPECT_TRUE(sets[2].ofElements);
  EXPECT_TRUE(ReadSets(database, 1).empty());
}

}  // namespace
}  // namespace quilon
