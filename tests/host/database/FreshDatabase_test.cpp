#include "database/FreshDatabase.h"

#include <bundled/FED_ResultDatabase.h>
#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::FreshDatabase;

FED_DataDescriptor Temperatures(int loadCase)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(514));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return descriptor;
}

/// A database with temperatures of load cases 1 and 2, seen afresh.
class FreshDatabaseTest : public testing::Test
{
protected:
  FreshDatabaseTest()
  {
    for (const int loadCase : {1, 2}) database_.GetOrCreateDataBlock(Temperatures(loadCase), 0).SetScalarAt(7, 20.0);
  }

  FED_ResultDatabase database_;
};

TEST_F(FreshDatabaseTest, ShowsNothingOfWhatWasThere)
{
  FreshDatabase fresh(database_);
  EXPECT_TRUE(fresh.IsInitialized());
  EXPECT_FALSE(fresh.HasDataBlock(Temperatures(1)));
  EXPECT_TRUE(fresh.GetDataDescriptors(FED_DataDescriptorPattern()).empty());
  EXPECT_TRUE(fresh.GetDataBlocks(FED_DataDescriptorPattern()).empty());
  EXPECT_THROW(fresh.GetConstDataBlock(Temperatures(1)), FED_Failure);
  EXPECT_THROW(fresh.GetDataBlock(Temperatures(1)), FED_Failure);
  EXPECT_THROW(fresh.DeleteDataBlock(Temperatures(1)), FED_Failure);
}

TEST_F(FreshDatabaseTest, LeavesAloneWhatIsNotWritten)
{
  FreshDatabase fresh(database_);
  fresh.GetOrCreateDataBlock(Temperatures(3), 0).SetScalarAt(1, 30.0);
  EXPECT_EQ(fresh.CountReplaced(), 0U);
  EXPECT_EQ(fresh.GetDataDescriptors(FED_DataDescriptorPattern()).size(), 1U);
  EXPECT_EQ(database_.GetDataDescriptors(FED_DataDescriptorPattern()).size(), 3U);
  EXPECT_EQ(database_.GetConstDataBlock(Temperatures(1)).GetScalarAt(7), 20.0);
}

TEST_F(FreshDatabaseTest, ABlockThatIsMadeReplacesTheFormerOneWhole)
{
  FreshDatabase fresh(database_);
  fresh.GetOrCreateDataBlock(Temperatures(1), 0).SetScalarAt(3, 30.0);
  fresh.CreateDataBlock(Temperatures(2), 1, 1, "T");
  EXPECT_EQ(fresh.CountReplaced(), 2U);
  EXPECT_TRUE(fresh.HasDataBlock(Temperatures(1)));
  EXPECT_FALSE(fresh.GetConstDataBlock(Temperatures(1)).HasRecord(7));
  EXPECT_EQ(database_.GetConstDataBlock(Temperatures(1)).GetScalarAt(3), 30.0);
}

TEST_F(FreshDatabaseTest, ABlockThatIsMadeIsThereFromThenOn)
{
  FreshDatabase fresh(database_);
  fresh.GetOrCreateDataBlock(Temperatures(1), 0).SetScalarAt(3, 30.0);
  fresh.GetOrCreateDataBlock(Temperatures(1), 0).SetScalarAt(4, 40.0);
  EXPECT_EQ(fresh.GetDataBlock(Temperatures(1)).GetScalarAt(3), 30.0);
  fresh.DeleteDataBlock(Temperatures(1));
  EXPECT_FALSE(database_.HasDataBlock(Temperatures(1)));
}

TEST_F(FreshDatabaseTest, IdsAndNamesAreTheDatabases)
{
  FreshDatabase fresh(database_);
  EXPECT_EQ(fresh.GetIdMapsPool().FindOrAddIndex(0, 42), 1U);
  EXPECT_EQ(database_.GetIdMapsPool().GetId(0, 1), 42);
  EXPECT_EQ(static_cast<const FED_Database&>(fresh).GetIdMapsPool().FindIndex(0, 42), 1U);
  fresh.SetUserKindName(static_cast<FED_OnfId>(1000), "Wear depth");
  EXPECT_EQ(database_.GetUserKindName(static_cast<FED_OnfId>(1000)), "Wear depth");
  EXPECT_EQ(fresh.GetUserKindName(static_cast<FED_OnfId>(1000)), "Wear depth");
}

}  // namespace
