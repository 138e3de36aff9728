#include "database/Listing.h"

#include <string>
#include <utility>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "kinds/KindTable.h"
#include "selection/Selection.h"

namespace {

using quilon::BlockSizes;
using quilon::BlockTotal;
using quilon::KindTable;
using quilon::ListBlocks;
using quilon::ListedBlock;
using quilon::Selection;
using quilon::StepText;
using quilon::SumSizes;

FED_DataDescriptor Block(FED_OnfId onf, int loadCase)
{
  FED_DataDescriptor descriptor(0, onf);
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return descriptor;
}

/// Temperatures of load cases 1 (one node) and 2 (two), energies of load case 1 (one node).
class ListingTest : public testing::Test
{
protected:
  ListingTest()
  {
    Fill(Block(OnfKind::Temperature, 1), 1);
    Fill(Block(OnfKind::Temperature, 2), 2);
    Fill(Block(OnfKind::NodeEnergy, 1), 1);
  }

  void Fill(const FED_DataDescriptor& descriptor, int records)
  {
    FED_DataBlock& block = database_.GetOrCreateDataBlock(descriptor, 0);
    for (int i = 0; i < records; ++i) block.SetScalarAt(static_cast<std::size_t>(i), 20.0 + i);
  }

  std::vector<ListedBlock> List(const char* selection) const
  {
    const KindTable kinds(database_);
    return ListBlocks(database_, Selection(selection, kinds), kinds);
  }

  FED_ResultDatabase database_;
};

TEST_F(ListingTest, TellsNameAndSummaryOfTheSelectedBlocks)
{
  const std::vector<ListedBlock> blocks = List("temperature@lc=2");
  ASSERT_EQ(blocks.size(), 1U);
  EXPECT_EQ(blocks[0].descriptor, Block(OnfKind::Temperature, 2));
  EXPECT_EQ(blocks[0].kind, "temperature");
  EXPECT_EQ(blocks[0].summary.records, 2U);
  EXPECT_EQ(blocks[0].summary.greatest, 21.0);
}

TEST_F(ListingTest, TellsProgressBeforeEachBlock)
{
  const KindTable                                  kinds(database_);
  std::vector<std::pair<std::size_t, std::size_t>> calls;
  ListBlocks(database_, Selection(), kinds,
             [&](std::size_t done, std::size_t total) { calls.emplace_back(done, total); });
  EXPECT_EQ(calls, (std::vector<std::pair<std::size_t, std::size_t>>{{0, 3}, {1, 3}, {2, 3}}));
}

TEST_F(ListingTest, PutsTheLargestBlockFirst)
{
  const BlockSizes sizes = SumSizes(List("all"));
  ASSERT_EQ(sizes.blocks.size(), 3U);
  EXPECT_EQ(sizes.blocks[0].descriptor, Block(OnfKind::Temperature, 2));
  // Of one size: in the order of their descriptors.
  EXPECT_EQ(sizes.blocks[1].descriptor, Block(OnfKind::Temperature, 1));
  EXPECT_EQ(sizes.blocks[2].descriptor, Block(OnfKind::NodeEnergy, 1));
}

TEST_F(ListingTest, SumsByKindAndByStep)
{
  const BlockSizes sizes = SumSizes(List("all"));
  const auto       one   = sizes.blocks[2].summary.bytes;
  EXPECT_EQ(sizes.bytes, 4 * one);
  ASSERT_EQ(sizes.kinds.size(), 2U);
  EXPECT_EQ(sizes.kinds[0].name, "temperature");
  EXPECT_EQ(sizes.kinds[0].blocks, 2U);
  EXPECT_EQ(sizes.kinds[0].bytes, 3 * one);
  ASSERT_EQ(sizes.steps.size(), 2U);
  EXPECT_EQ(sizes.steps[0].name, "it=0,lc=1");  // as large as the other: by name
  EXPECT_EQ(sizes.steps[1].name, "it=0,lc=2");
  EXPECT_EQ(sizes.steps[1].blocks, 1U);
}

TEST(StepText, IsADashWithoutKeys) { EXPECT_EQ(StepText(FED_DataDescriptor()), "-"); }

TEST(StepText, LeavesOutLayerAndTheQuantityOfAHistory)
{
  FED_DataDescriptor history = Block(OnfKind::ScalarHistory, 3);
  history.SetInteger(OnfIndex::Quantity, OnfKind::Time);
  history.SetInteger(FED_DataDescriptor::Layer, 2);
  EXPECT_EQ(StepText(history), "it=0,lc=3");
}

}  // namespace
