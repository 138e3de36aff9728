#include "answers/RegionCopy.h"

#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "answers/Region.h"
#include "database/RecordRows.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TwoBricks.h"

namespace {

using namespace quilon_test;
using namespace quilon;

class RegionCopies : public testing::Test
{
protected:
  void SetUp() override { FillTwoBricks(source_); }

  void Copy(const RegionOptions& options)
  {
    Region region(source_, options, "db");
    CopyRegion(source_, region, copy_);
  }

  std::vector<int> IdsOf(const FED_DataDescriptor& block) const
  {
    std::vector<int> ids;
    for (const RecordKey& key : GetRecordKeys(copy_.GetConstDataBlock(block), copy_.GetIdMapsPool()))
      ids.push_back(key.id);
    return ids;
  }

  FED_ResultDatabase source_;
  FED_ResultDatabase copy_;
};

TEST_F(RegionCopies, HoldTheRecordsOfTheRegionAndHistories)
{
  Copy({.materials = {"ALU"}});
  const FED_DataDescriptor displacement = StepBlock(OnfKind::Displacement, 1, 2);
  EXPECT_EQ(IdsOf(displacement), (std::vector<int>{5, 6, 7, 8, 9, 10, 11, 12}));
  double vector[3];
  FED_ConstIdDataBlock(copy_.GetConstDataBlock(displacement), copy_.GetIdMapsPool()).GetVector(9, vector);
  EXPECT_EQ(vector[0], 9);
  EXPECT_EQ(vector[1], -9);
  EXPECT_EQ(IdsOf(FED_DataDescriptor(0, OnfKind::ElementNodes)), std::vector<int>{102});
  EXPECT_EQ(IdsOf(FED_DataDescriptor(0, OnfKind::ElementType)), std::vector<int>{102});
  FED_DataDescriptorPattern histories;
  histories.SetEqual(FED_DataDescriptor::OnfId, FED_OnfId_ScalarHistory);
  EXPECT_EQ(copy_.GetDataDescriptors(histories).size(), 2u);
  EXPECT_FALSE(copy_.HasDataBlock(FED_DataDescriptor(0, OnfKind::Material)));
}

TEST_F(RegionCopies, OfNodesAloneHoldNoElements)
{
  Copy({.sets = {"FIX"}});
  EXPECT_EQ(IdsOf(FED_DataDescriptor(0, OnfKind::Coordinates)), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_FALSE(copy_.HasDataBlock(FED_DataDescriptor(0, OnfKind::ElementNodes)));
}

TEST_F(RegionCopies, OfNothingAreAnError) { EXPECT_THROW(Copy({.ids = "200-300"}), FED_Failure); }

}  // namespace
