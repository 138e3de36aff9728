#include "answers/Region.h"

#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"
#include "TwoBricks.h"

namespace {

using namespace quilon_test;
using quilon::Region;
using quilon::RegionOptions;
using Ids = std::vector<int>;

class Regions : public testing::Test
{
protected:
  void SetUp() override { FillTwoBricks(database_); }

  const FED_DataBlock& Block(int onf) const { return database_.GetConstDataBlock(StepBlock(onf, 1, 1)); }

  Ids Nodes(const RegionOptions& options)
  {
    return Region(database_, options, "db").IdsOf(Block(OnfKind::NodalStress));
  }
  Ids Elements(const RegionOptions& options)
  {
    return Region(database_, options, "db").IdsOf(Block(OnfKind::ElementStress));
  }
  std::string NodesMessage(const RegionOptions& options)
  {
    try {
      Nodes(options);
    } catch (const FED_Failure& failure) {
      return failure.what();
    }
    return "no failure";
  }

  FED_ResultDatabase database_;
};

TEST_F(Regions, EverythingIsEveryRecord)
{
  EXPECT_EQ(Nodes({}), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  EXPECT_EQ(Elements({}), (Ids{101, 102}));
}

TEST_F(Regions, IdsAreThoseOfTheRecords)
{
  EXPECT_EQ(Nodes({.ids = "3,5-7,last"}), (Ids{3, 5, 6, 7, 12}));
  EXPECT_EQ(Nodes({.ids = "first"}), Ids{1});
  EXPECT_EQ(Nodes({.ids = "1:9:4"}), (Ids{1, 5, 9}));
  EXPECT_EQ(Nodes({.ids = "all"}).size(), 12u);
  EXPECT_EQ(Elements({.ids = "100-101"}), Ids{101});
  EXPECT_THROW(Nodes({.ids = "none"}), FED_Failure);
}

TEST_F(Regions, MaterialIsItsElementsAndTheirNodes)
{
  EXPECT_EQ(Elements({.materials = {"ALU"}}), Ids{102});
  EXPECT_EQ(Nodes({.materials = {"ALU"}}), (Ids{5, 6, 7, 8, 9, 10, 11, 12}));
  EXPECT_EQ(Nodes({.materials = {"alu"}}), Nodes({.materials = {"2"}}));
  EXPECT_EQ(Elements({.materials = {"ALU", "STEEL"}}), (Ids{101, 102}));
}

TEST_F(Regions, SetOfElementsIsTheirNodesToo)
{
  EXPECT_EQ(Elements({.sets = {"LEFT"}}), Ids{101});
  EXPECT_EQ(Nodes({.sets = {"left"}}), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(Nodes({.sets = {"FIX"}}), (Ids{1, 2, 3, 4}));
}

TEST_F(Regions, NameOfTwoSetsIsTheOneThatFitsTheKind)
{
  EXPECT_EQ(Nodes({.sets = {"MIX"}}), Ids{9});
  EXPECT_EQ(Elements({.sets = {"MIX"}}), Ids{101});
}

TEST_F(Regions, SeveralSetsAreEitherAndSeveralOptionsBoth)
{
  EXPECT_EQ(Nodes({.sets = {"FIX", "MIX"}}), (Ids{1, 2, 3, 4, 9}));
  EXPECT_EQ(Nodes({.ids = "3-6", .sets = {"FIX"}}), (Ids{3, 4}));
  EXPECT_EQ(Nodes({.sets = {"LEFT"}, .materials = {"ALU"}}), (Ids{5, 6, 7, 8}));
}

TEST_F(Regions, BoxHasItsSidesAndCentresOfElements)
{
  EXPECT_EQ(Nodes({.box = {{1, 0, 0, 2, 1, 0}}}), (Ids{5, 6, 9, 10}));
  EXPECT_EQ(Elements({.box = {{0, 0, 0, 0.5, 1, 1}}}), Ids{101});
  EXPECT_EQ(NodesMessage({.box = {{3, 0, 0, 4, 1, 1}}}),
            "db: no node is in --box 3,0,0,4,1,1, the mesh is from 0,0,0 to 2,1,1");
  EXPECT_EQ(NodesMessage({.box = {{1, 0, 0, 0, 1, 1}}}),
            "--box is 1,0,0,0,1,1, expected X0,Y0,Z0,X1,Y1,Z1 with each first number no greater than its second");
}

TEST_F(Regions, NearIsTheNearestNodeOfTheRestAndItsElements)
{
  EXPECT_EQ(Nodes({.near = {{1.9, 0.1, 0}}}), Ids{9});
  EXPECT_EQ(Elements({.near = {{1.1, 0, 0}}}), (Ids{101, 102}));
  EXPECT_EQ(Nodes({.sets = {"LEFT"}, .near = {{5, 0, 0}}}), Ids{5});
  EXPECT_EQ(Elements({.sets = {"RIGHT"}, .near = {{0, 0, 0}}}), Ids{102});
  // Equally near: the least id.
  EXPECT_EQ(Nodes({.near = {{0.5, 0, 0}}}), Ids{1});
}

TEST_F(Regions, DistanceOfTheNearestNodeIsToldOnce)
{
  Region region(database_, {.near = {{2, 0, -0.25}}}, "db");
  region.IdsOf(Block(OnfKind::NodalStress));
  region.IdsOf(Block(OnfKind::ElementStress));
  region.IdsOf(database_.GetConstDataBlock(StepBlock(OnfKind::Displacement, 1, 2)));
  EXPECT_EQ(region.GetNotes(), std::vector<std::string>{"the node nearest to 2,0,-0.25 is 9 at distance 0.25"});
}

TEST_F(Regions, WhatIsNotThereIsToldWithWhatIs)
{
  EXPECT_EQ(NodesMessage({.sets = {"FXI"}}),
            "db: no set 'FXI', did you mean 'FIX'? There are FIX, MIX, LEFT, RIGHT, MIX");
  EXPECT_EQ(NodesMessage({.materials = {"GOLD"}}), "db: no material 'GOLD', expected one of STEEL, ALU");
  EXPECT_EQ(NodesMessage({.sets = {"MIX"}, .materials = {"STEEL"}}),
            "db: no node is in --set MIX --material STEEL, expected a region that holds one");
  Region region(database_, {.sets = {"FIX"}}, "db");
  try {
    region.FilterOf(Block(OnfKind::ElementStress));
    FAIL() << "expected a failure";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), "db: set 'FIX' is of nodes, expected a set of elements for results at elements");
  }
}

TEST_F(Regions, HistoriesAreNowhere)
{
  Region                    region(database_, {.sets = {"FIX"}}, "db");
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, FED_OnfId_ScalarHistory);
  const FED_DataDescriptor history = database_.GetDataDescriptors(pattern).front();
  EXPECT_FALSE(region.AppliesTo(history));
  EXPECT_THROW(region.FilterOf(database_.GetConstDataBlock(history)), FED_Failure);
  EXPECT_TRUE(Region(database_, {.ids = "1"}, "db").AppliesTo(history));
}

TEST_F(Regions, SingleIdsAreRequired)
{
  const std::vector<FED_DataDescriptor> blocks = {StepBlock(OnfKind::NodalStress, 1, 1)};
  Region(database_, {.ids = "12,13-20"}, "db").RequireIds(blocks, "stress");
  try {
    Region(database_, {.ids = "12,13"}, "db").RequireIds(blocks, "stress");
    FAIL() << "expected a failure";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), "db: no record 13 in the blocks of 'stress', expected one of 1 to 12");
  }
}

TEST_F(Regions, EntitiesOfAnIterationAreListed)
{
  EXPECT_EQ(Region(database_, {.materials = {"STEEL"}}, "db").ElementsOf(0), Ids{101});
  EXPECT_EQ(Region(database_, {.ids = "2-3"}, "db").NodesOf(0), (Ids{2, 3}));
}

}  // namespace
