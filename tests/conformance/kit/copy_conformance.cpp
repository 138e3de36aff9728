#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonDbConnector/QuilonDatabaseUtils.h>

#include "support.h"

namespace conformance {
namespace {

using QuilonDatabaseUtils::copy_datablocks;
using QuilonDatabaseUtils::CopyEmptyBlocks;
using QuilonDatabaseUtils::SkipEmptyBlocks;

/// Copies from the fixture's database to a second one of the same kind.
class CopyConformance : public DatabaseTest
{
protected:
  CopyConformance() : target_(factory_->Create()) {}

  std::size_t Copy(const FED_DataDescriptorPattern& pattern = {})
  {
    return copy_datablocks(ConstDatabase(), *target_, pattern, SkipEmptyBlocks);
  }

  double TargetScalar(const FED_DataDescriptor& key, int id)
  {
    const FED_ConstIdDataBlock view(target_->GetDataBlock(key), target_->GetIdMapsPool());
    double                     value = 0.0;
    view.GetScalar(id, value);
    return value;
  }

  std::unique_ptr<FED_Database> target_;
};

TEST(CopyActionConformance, SkippingEmptyBlocksHasTheValueOne)
{
  EXPECT_EQ(static_cast<int>(SkipEmptyBlocks), 1);  // the library passes the number
}

TEST_F(CopyConformance, AnEmptyDatabaseGivesNothing)
{
  EXPECT_EQ(Copy(), 0U);
  EXPECT_TRUE(target_->GetDataDescriptors({}).empty());
}

TEST_F(CopyConformance, EveryMatchingBlockIsCopiedAndCounted)
{
  for (const int loadCase : {1, 2, 3}) Block(Key(kHistory, loadCase)).SetScalarAt(1, loadCase);
  Block(Key(kUserHistory, 1)).SetScalarAt(1, 9.0);
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, kHistory);
  EXPECT_EQ(Copy(pattern), 3U);
  EXPECT_EQ(target_->GetDataDescriptors({}).size(), 3U);
  for (const int loadCase : {1, 2, 3})
    EXPECT_EQ(target_->GetDataBlock(Key(kHistory, loadCase)).GetScalarAt(1), loadCase);
  EXPECT_FALSE(target_->HasDataBlock(Key(kUserHistory, 1)));
  EXPECT_EQ(Copy(), 4U);
}

TEST_F(CopyConformance, TheSourceIsLeftAsItIs)
{
  Block(Key(kHistory, 1)).SetScalarAt(2, 1.5);
  Copy();
  target_->GetDataBlock(Key(kHistory, 1)).SetScalarAt(2, 9.0);
  EXPECT_EQ(Block(Key(kHistory, 1)).GetScalarAt(2), 1.5);
  EXPECT_EQ(ConstDatabase().GetDataDescriptors({}).size(), 1U);
}

TEST_F(CopyConformance, ARecordStaysWithItsIdWhateverIndexTheTargetGivesIt)
{
  for (const int id : {30, 31, 32}) target_->GetIdMapsPool().FindOrAddIndex(kNodeKind, id);
  FED_IdDataBlock view(Block(Key(kUserScalar)), Pool(), true);
  for (const int id : {10, -20, 30}) view.SetScalar(id, id);
  EXPECT_EQ(Copy(), 1U);
  for (const int id : {10, -20, 30}) EXPECT_EQ(TargetScalar(Key(kUserScalar), id), id);
  EXPECT_EQ(target_->GetIdMapsPool().FindIndex(kNodeKind, 30), 1U);
  EXPECT_EQ(Visited(target_->GetDataBlock(Key(kUserScalar))).size(), 3U);
}

TEST_F(CopyConformance, IndicesThatAreNoIdsStayAsTheyAre)
{
  for (const std::size_t index : {0U, 3U, 9U}) Block(Key(kHistory)).SetScalarAt(index, static_cast<double>(index));
  Copy();
  EXPECT_EQ(Visited(target_->GetDataBlock(Key(kHistory))), (std::vector<std::size_t>{0, 3, 9}));
  EXPECT_EQ(target_->GetDataBlock(Key(kHistory)).GetScalarAt(9), 9.0);
}

TEST_F(CopyConformance, ATargetBlockOfTheSameKeyIsReplacedAndNotMerged)
{
  Block(Key(kHistory)).SetScalarAt(1, 1.0);
  target_->GetOrCreateDataBlock(Key(kHistory), 0).SetScalarAt(7, 7.0);
  target_->GetOrCreateDataBlock(Key(kHistory, 2), 0).SetScalarAt(7, 8.0);
  EXPECT_EQ(Copy(), 1U);
  EXPECT_EQ(Visited(target_->GetDataBlock(Key(kHistory))), std::vector<std::size_t>{1});
  EXPECT_EQ(target_->GetDataBlock(Key(kHistory, 2)).GetScalarAt(7), 8.0);  // another key is left alone
}

TEST_F(CopyConformance, AReplacedBlockTakesTheFormatOfTheSource)
{
  Database().CreateDataBlock(Key(kUnknown), 0, 0, "D")->SetScalarAt(1, 1.5);
  const double vector[3] = {1, 2, 3};
  target_->CreateDataBlock(Key(kUnknown), 0, 0, "V")->SetValuesAt(1, vector);
  EXPECT_EQ(Copy(), 1U);
  EXPECT_EQ(target_->GetDataBlock(Key(kUnknown)).GetScalarAt(1), 1.5);
}

TEST_F(CopyConformance, EmptyBlocksAreSkippedOrCopiedAsAsked)
{
  Block(Key(kHistory, 1));
  Database().CreateDataBlock(Key(kUnknown), 0, 0, "IDb");
  Block(Key(kHistory, 2)).SetScalarAt(1, 1.0);
  EXPECT_EQ(Copy(), 1U);
  EXPECT_FALSE(target_->HasDataBlock(Key(kHistory, 1)));
  EXPECT_EQ(copy_datablocks(ConstDatabase(), *target_, {}, CopyEmptyBlocks), 3U);
  EXPECT_TRUE(target_->HasDataBlock(Key(kHistory, 1)));
  EXPECT_TRUE(Visited(target_->GetDataBlock(Key(kHistory, 1))).empty());
  const ConstScratch record(target_->GetDataBlock(Key(kUnknown)));
  EXPECT_EQ(record->GetFieldCount(), 2U);  // an empty block keeps its format
}

TEST_F(CopyConformance, EveryFieldTypeIsCopied)
{
  FED_DataBlock&    block = *Database().CreateDataBlock(Key(kMatrixHalf), 0, 0, "IiFDdSVTLblbDb");
  FED_IdDataBlock   view(block, Pool(), true);
  FED_IdDataRecord& record    = view.CreateIdDataRecord();
  FED_DataRecord&   fields    = record.GetDataRecord();
  const double      vector[3] = {1, 2, 3};
  const double      tensor[6] = {4, 5, 6, 7, 8, -0.0};
  fields.SetInteger(1, 1);
  fields.SetInteger(2, -2);
  fields.SetFloat(3, 0.5F);
  fields.SetDouble(4, 0.1);
  fields.SetDouble(5, -0.0);
  fields.SetString(6, "text");
  fields.SetVector(7, vector);
  fields.SetTensor(8, tensor);
  fields.SetIntList(9, FED_IntArray(std::vector<int>{1, 2, 3}));
  fields.SetIntList(10, FED_IntArray());
  fields.SetDoubleList(11, FED_DoubleArray(std::vector<double>{0.5}));
  view.SetRecord(77, record);
  view.DeleteIdDataRecord(record);
  target_->GetIdMapsPool().FindOrAddIndex(kElementKind, 5);
  EXPECT_EQ(Copy(), 1U);

  const std::size_t index = target_->GetIdMapsPool().FindIndex(kElementKind, 77);
  ASSERT_NE(index, FED_IdMapsPool::npos);
  const ConstScratch copy(target_->GetDataBlock(Key(kMatrixHalf)), index);
  std::vector<int>   types;
  for (std::size_t field = 1; field <= copy->GetFieldCount(); ++field) types.push_back(copy->GetFieldType(field));
  EXPECT_EQ(types, (std::vector<int>{1, 10, 3, 2, 11, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(copy->GetInteger(2), -2);
  EXPECT_EQ(copy->GetFloat(3), 0.5F);
  EXPECT_TRUE(SameBits(copy->GetDouble(5), -0.0));
  EXPECT_EQ(copy->GetString(6), "text");
  double values[6] = {};
  copy->GetTensor(8, values);
  EXPECT_TRUE(SameBits(values[5], -0.0));
  EXPECT_EQ(copy->GetIntListLen(9), 3U);
  EXPECT_EQ(copy->GetIntListLen(10), 0U);
  EXPECT_EQ(copy->GetDoubleListLen(11), 1U);
}

TEST_F(CopyConformance, AnIndexThatNoIdHasIsAFailure)
{
  Block(Key(kUserScalar)).SetScalarAt(5, 1.0);  // past the view: no id has the index
  EXPECT_THROW(Copy(), FED_Failure);
}

TEST_F(CopyConformance, RecordsOfAnUnknownKindStayWithTheirIds)
{
  FED_IdDataBlock(Block(Key(kUnknown)), Pool(), true).SetScalar(77, 1.5);
  target_->GetIdMapsPool().FindOrAddIndex(kUnknownKind, 5);
  EXPECT_EQ(Copy(), 1U);
  EXPECT_EQ(TargetScalar(Key(kUnknown), 77), 1.5);
}

TEST_F(CopyConformance, NamesOfUserKindsGoAlong)
{
  const auto onf = static_cast<FED_OnfId>(kUserHistory);
  Database().SetUserKindName(onf, "wear");
  Block(Key(kUserHistory)).SetScalarAt(1, 1.0);
  Copy();
  EXPECT_EQ(target_->GetUserKindName(onf), ConstDatabase().GetUserKindName(onf));
}

TEST_F(CopyConformance, TheNameOfTheUserKindThatAScalarHistoryHoldsGoesAlong)
{
  const auto onf = static_cast<FED_OnfId>(kUserHistory);
  Database().SetUserKindName(onf, "wear");
  FED_DataDescriptor key = Key(kHistory);
  key.SetInteger(Index(10), kUserHistory);  // which scalar the history holds
  Block(key).SetScalarAt(1, 1.0);
  Copy();
  EXPECT_EQ(target_->GetUserKindName(onf), ConstDatabase().GetUserKindName(onf));
}

}  // namespace
}  // namespace conformance
