#include "export/ExportGroups.h"

#include "ExportSupport.h"

namespace quilon {
namespace {

using namespace quilon_test;

/// Two cubes: the first of material 1 STEEL, the second of material 2 BRASS.
class ExportGroupsOfTwoCubes : public testing::Test
{
protected:
  void SetUp() override
  {
    WriteMesh(database_, TwoCubeNodes(), TwoCubeElements());
    mesh_                    = ReadMesh(database_, 0, "test");
    FED_IdDataBlock   view   = MeshView(database_, OnfKind::Material);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    int               number = 0;
    for (const char* name : {"STEEL", "BRASS"}) {
      record.GetDataRecord().SetString(1, name);
      view.SetRecord(++number, record);
    }
  }

  void WriteAverage(int group, int firstNode, int lastNode)
  {
    for (int node = firstNode; node <= lastNode; ++node)
      SetValues(database_, StepKey(521, 1, group), node, {1, 2, 3, 4, 5, 6});
  }

  ExportGroups Groups() { return ExportGroups(database_, 0, mesh_, BlocksOf(database_, {521})); }

  FED_ResultDatabase database_;
  Mesh               mesh_;
};

TEST_F(ExportGroupsOfTwoCubes, AreMaterialsWhereTheirNodesHaveTheAverages)
{
  WriteAverage(1, 1, 8);
  WriteAverage(2, 5, 12);
  const ExportGroups groups = Groups();
  EXPECT_TRUE(groups.AreKnown());
  EXPECT_EQ(groups.NameOf(1), "STEEL");
  EXPECT_EQ(groups.NameOf(2), "BRASS");
  EXPECT_EQ(groups.NameOf(3), "3");
  EXPECT_EQ(groups.ElementGroups(), (std::vector<int>{1, 2}));
}

TEST_F(ExportGroupsOfTwoCubes, AreSetsWhereTheseFitBetter)
{
  WriteSet(database_, OnfKind::NodeSet, 1, "NODES", {1});
  WriteSet(database_, OnfKind::ElementSet, 1, "RIGHT", {20});
  WriteSet(database_, OnfKind::ElementSet, 2, "BOTH", {10, 20});
  WriteAverage(1, 5, 12);
  WriteAverage(2, 1, 12);
  const ExportGroups groups = Groups();
  EXPECT_EQ(groups.NameOf(1), "RIGHT");
  EXPECT_EQ(groups.NameOf(2), "BOTH");
  EXPECT_EQ(groups.ElementGroups(), (std::vector<int>{2, 1}));  // the least of several
}

TEST_F(ExportGroupsOfTwoCubes, AreSectionsByNumber)
{
  FED_IdDataBlock   view   = MeshView(database_, OnfKind::ElementSection);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  for (const int element : {10, 20}) {
    record.SetInteger(1, element == 10 ? 2 : 1);
    view.SetRecord(element, record);
  }
  WriteAverage(2, 1, 8);
  WriteAverage(1, 5, 12);
  const ExportGroups groups = Groups();
  EXPECT_EQ(groups.NameOf(1), "section-1");
  EXPECT_EQ(groups.NameOf(2), "section-2");
  EXPECT_EQ(groups.ElementGroups(), (std::vector<int>{2, 1}));
}

TEST_F(ExportGroupsOfTwoCubes, KeepTheirNumbersWhereNothingFits)
{
  WriteAverage(7, 1, 8);
  const ExportGroups groups = Groups();
  EXPECT_FALSE(groups.AreKnown());
  EXPECT_EQ(groups.NameOf(7), "7");
}

TEST_F(ExportGroupsOfTwoCubes, AreNoneWithoutAverages)
{
  EXPECT_TRUE(Groups().ElementGroups().empty());
  EXPECT_FALSE(Groups().AreKnown());
}

}  // namespace
}  // namespace quilon
