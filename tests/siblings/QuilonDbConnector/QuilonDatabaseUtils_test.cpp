#include "QuilonDbConnector/QuilonDatabaseUtils.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_BlockCopy.h"
#include "bundled/FED_RecordFormat.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_DoubleArray.h"
#include "QuilonUtilities/FED_Failure.h"

#include "failure_message.h"
#include "RecordingDatabase.h"
#include "TempFolder.h"

using QuilonDatabaseUtils::copy_datablocks;
using QuilonDatabaseUtils::CopyEmptyBlocks;
using QuilonDatabaseUtils::SkipEmptyBlocks;

namespace {

constexpr auto kTemperature = static_cast<FED_OnfId>(514);
constexpr auto kStress      = static_cast<FED_OnfId>(521);
constexpr auto kNoFormat    = static_cast<FED_OnfId>(590);
constexpr auto kMatrix      = static_cast<FED_OnfId>(593);  // its indices are no ids
constexpr auto kUser        = static_cast<FED_OnfId>(1001);
constexpr auto kUnknown     = static_cast<FED_OnfId>(77);

FED_DataDescriptor Key(FED_OnfId onf) { return FED_DataDescriptor(0, onf); }

void SetScalar(FED_Database& database, FED_OnfId onf, int id, double value)
{
  FED_IdDataBlock(database.GetOrCreateDataBlock(Key(onf), 0), database.GetIdMapsPool(), true).SetScalar(id, value);
}

double GetScalar(FED_Database& database, FED_OnfId onf, int id)
{
  double value = 0.0;
  FED_ConstIdDataBlock(database.GetConstDataBlock(Key(onf)), database.GetIdMapsPool()).GetScalar(id, value);
  return value;
}

std::string FormatOf(const FED_DataBlock& block)
{
  return FED_RecordFormat::FromRecord(*block.CreateConstDataRecord()).ToString();
}

class CopyDatablocks : public testing::Test
{
protected:
  FED_ResultDatabase source;
  FED_ResultDatabase target;
};

}  // namespace

TEST_F(CopyDatablocks, EmptyDatabaseCopiesNothing)
{
  EXPECT_EQ(copy_datablocks(source, target, {}, SkipEmptyBlocks), 0u);
  EXPECT_TRUE(target.GetDataDescriptors({}).empty());
}

TEST_F(CopyDatablocks, RecordsStayWithTheirIdsInATargetOfAnotherOrderOfFirstUse)
{
  for (const int id : {30, 10, -20}) SetScalar(source, kTemperature, id, id + 0.5);
  for (const int id : {10, 99, 30}) target.GetIdMapsPool().FindOrAddIndex(0, id);
  EXPECT_EQ(copy_datablocks(source, target, {}, SkipEmptyBlocks), 1u);
  for (const int id : {30, 10, -20}) EXPECT_EQ(GetScalar(target, kTemperature, id), id + 0.5);
  // 10 -> 1, 99 -> 2, 30 -> 3, and -20 is new.
  EXPECT_EQ(target.GetConstDataBlock(Key(kTemperature)).GetScalarAt(1), 10.5);
  EXPECT_FALSE(target.GetConstDataBlock(Key(kTemperature)).HasRecord(2));
  EXPECT_EQ(target.GetConstDataBlock(Key(kTemperature)).GetScalarAt(4), -19.5);
}

TEST_F(CopyDatablocks, TargetWithoutIdsGetsTheOrderOfTheSource)
{
  for (const int id : {30, 10, 20}) SetScalar(source, kTemperature, id, 0.0);
  copy_datablocks(source, target, {}, SkipEmptyBlocks);
  EXPECT_EQ(target.GetIdMapsPool().GetId(0, 1), 30);
  EXPECT_EQ(target.GetIdMapsPool().GetId(0, 3), 20);
}

TEST_F(CopyDatablocks, OneBlockIsCopiedAloneWithOrWithoutRecords)
{
  for (const int id : {30, 10}) SetScalar(source, kTemperature, id, id + 0.5);
  SetScalar(source, kUser, 10, 1.0);
  source.GetOrCreateDataBlock(Key(kStress), 0);
  target.GetIdMapsPool().FindOrAddIndex(0, 10);
  FED_CopyBlock(source, target, Key(kTemperature));
  FED_CopyBlock(source, target, Key(kStress));
  EXPECT_EQ(target.GetDataDescriptors({}), (std::vector<FED_DataDescriptor>{Key(kTemperature), Key(kStress)}));
  EXPECT_EQ(GetScalar(target, kTemperature, 30), 30.5);
  EXPECT_EQ(target.GetConstDataBlock(Key(kTemperature)).GetScalarAt(1), 10.5);
  EXPECT_EQ(FormatOf(target.GetConstDataBlock(Key(kStress))), "T");
  EXPECT_THROW(FED_CopyBlock(source, target, Key(kUnknown)), FED_Failure);
}

TEST_F(CopyDatablocks, IndexAddressedBlocksKeepTheirIndices)
{
  FED_DataBlock& block = source.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  block.SetScalarAt(0, 1.0);
  block.SetScalarAt(7, 2.0);
  copy_datablocks(source, target, {}, SkipEmptyBlocks);
  EXPECT_EQ(target.GetConstDataBlock(Key(FED_OnfId_ScalarHistory)).GetScalarAt(0), 1.0);
  EXPECT_EQ(target.GetConstDataBlock(Key(FED_OnfId_ScalarHistory)).GetScalarAt(7), 2.0);
}

TEST_F(CopyDatablocks, UnknownKindIsCopiedById)
{
  SetScalar(source, kUnknown, 900, 1.0);
  target.GetIdMapsPool().FindOrAddIndex(14, 5);
  copy_datablocks(source, target, {}, SkipEmptyBlocks);
  EXPECT_EQ(GetScalar(target, kUnknown, 900), 1.0);
}

TEST_F(CopyDatablocks, FormatsKeepTheirPairCodesAndRecordsAllTheirFields)
{
  FED_DataBlock*  block  = source.CreateDataBlock(Key(static_cast<FED_OnfId>(593)), 0, 0, "iISlbDb");
  FED_DataRecord* record = block->CreateDataRecord();
  record->SetInteger(1, 4);
  record->SetString(3, "text");
  record->SetIntList(4, std::vector<int>{1, 2, 3});
  record->SetDoubleList(5, std::vector<double>{0.5});
  block->SetRecord(3, *record);
  copy_datablocks(source, target, {}, SkipEmptyBlocks);
  const FED_DataBlock& copy = target.GetConstDataBlock(Key(static_cast<FED_OnfId>(593)));
  EXPECT_EQ(FormatOf(copy), "iISlbDb");
  FED_ConstDataRecord* read = copy.CreateConstDataRecord();
  copy.GetRecord(3, *read);
  EXPECT_EQ(read->GetInteger(1), 4);
  EXPECT_EQ(read->GetString(3), "text");
  EXPECT_EQ(read->GetIntListLen(4), 3u);
  EXPECT_EQ(read->GetDoubleListLen(5), 1u);
}

TEST_F(CopyDatablocks, NamesOfUserKindsComeAlongWithTheirBlocksOnly)
{
  source.SetUserKindName(kUser, "creep");
  source.SetUserKindName(static_cast<FED_OnfId>(1002), "unused");
  SetScalar(source, kUser, 1, 1.0);
  copy_datablocks(source, target, {}, SkipEmptyBlocks);
  EXPECT_EQ(target.GetUserKindName(kUser), "creep");
  EXPECT_EQ(target.GetUserKindName(static_cast<FED_OnfId>(1002)), "");
}

TEST_F(CopyDatablocks, NamesOfUserHistoriesComeAlongWithTheScalarHistoriesOfThem)
{
  constexpr auto kQuantity = static_cast<FED_DataDescriptor::ResultIndex>(10);
  for (const int onf : {1800, 1801, 1802})
    source.SetUserKindName(static_cast<FED_OnfId>(onf), "u" + std::to_string(onf));
  FED_DataDescriptor named = Key(FED_OnfId_ScalarHistory);
  named.SetInteger(kQuantity, 1800);
  source.GetOrCreateDataBlock(named, 0).SetScalarAt(1, 2.0);
  // Neither a value under a clear bit nor index 10 of another kind is a quantity.
  FED_DataDescriptor unset   = Key(FED_OnfId_ScalarHistory);
  unset.values[kQuantity]    = 1801;
  FED_DataDescriptor another = Key(kTemperature);
  another.SetInteger(kQuantity, 1802);
  source.GetOrCreateDataBlock(unset, 0).SetScalarAt(1, 2.0);
  source.GetIdMapsPool().FindOrAddIndex(0, 7);
  source.GetOrCreateDataBlock(another, 0).SetScalarAt(1, 2.0);
  EXPECT_EQ(copy_datablocks(source, target, {}, SkipEmptyBlocks), 3u);
  EXPECT_EQ(target.GetUserKindName(static_cast<FED_OnfId>(1800)), "u1800");
  EXPECT_EQ(target.GetUserKindName(static_cast<FED_OnfId>(1801)), "");
  EXPECT_EQ(target.GetUserKindName(static_cast<FED_OnfId>(1802)), "");
}

TEST_F(CopyDatablocks, EqualTargetBlockIsReplacedWhateverItsFormat)
{
  SetScalar(source, kTemperature, 1, 1.0);
  FED_DataBlock* old       = target.CreateDataBlock(Key(kTemperature), 0, 0, "V");
  const double   vector[3] = {};
  old->SetValuesAt(40, vector);
  EXPECT_EQ(copy_datablocks(source, target, {}, SkipEmptyBlocks), 1u);
  EXPECT_EQ(target.GetConstDataBlock(Key(kTemperature)).GetMaxIndex(), 1u);
  EXPECT_EQ(GetScalar(target, kTemperature, 1), 1.0);
}

TEST_F(CopyDatablocks, OtherTargetBlocksStay)
{
  SetScalar(source, kTemperature, 1, 1.0);
  SetScalar(target, kUser, 8, 2.0);
  copy_datablocks(source, target, {}, SkipEmptyBlocks);
  EXPECT_EQ(GetScalar(target, kUser, 8), 2.0);
}

TEST_F(CopyDatablocks, PatternSelectsBlocks)
{
  SetScalar(source, kTemperature, 1, 1.0);
  SetScalar(source, kUser, 1, 1.0);
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, kUser);
  EXPECT_EQ(copy_datablocks(source, target, pattern, SkipEmptyBlocks), 1u);
  EXPECT_FALSE(target.HasDataBlock(Key(kTemperature)));
}

TEST_F(CopyDatablocks, EmptyBlocksAreSkippedOrCopiedWithTheirFormat)
{
  source.GetOrCreateDataBlock(Key(kStress), 0);
  source.GetOrCreateDataBlock(Key(kNoFormat), 0);
  SetScalar(target, kTemperature, 1, 1.0);
  EXPECT_EQ(copy_datablocks(source, target, {}, SkipEmptyBlocks), 0u);
  EXPECT_FALSE(target.HasDataBlock(Key(kStress)));
  EXPECT_EQ(copy_datablocks(source, target, {}, CopyEmptyBlocks), 2u);
  EXPECT_EQ(FormatOf(target.GetConstDataBlock(Key(kStress))), "T");
  EXPECT_EQ(FormatOf(target.GetConstDataBlock(Key(kNoFormat))), "");
}

TEST_F(CopyDatablocks, SkippedEmptyBlockLeavesAnEqualTargetBlockAlone)
{
  source.GetOrCreateDataBlock(Key(kTemperature), 0);
  SetScalar(target, kTemperature, 4, 2.0);
  copy_datablocks(source, target, {}, SkipEmptyBlocks);
  EXPECT_EQ(GetScalar(target, kTemperature, 4), 2.0);
}

TEST_F(CopyDatablocks, BlockWithOneRecordAtIndexZeroIsNotEmpty)
{
  source.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0).SetScalarAt(0, 3.0);
  EXPECT_EQ(copy_datablocks(source, target, {}, SkipEmptyBlocks), 1u);
  EXPECT_EQ(target.GetConstDataBlock(Key(FED_OnfId_ScalarHistory)).GetScalarAt(0), 3.0);
}

// Columns are copied where rows are in the order of the indices, records where they are not.
TEST_F(CopyDatablocks, ManyRecordsComeAlongOverChunksOfAnyLengthAndLittleMemory)
{
  constexpr std::size_t kCount = 10000;  // more than two chunks of lists
  for (const bool ascends : {true, false})
    for (const bool hasLongList : {false, true}) {
      SCOPED_TRACE(std::to_string(ascends) + std::to_string(hasLongList));
      FED_ResultDatabase    from;
      FED_DataBlock&        block  = *from.CreateDataBlock(Key(kMatrix), 0, 0, "ITSDb");
      FED_DataRecord* const record = block.CreateDataRecord();
      const auto            set    = [&](std::size_t index, std::size_t length) {
        const auto   v         = static_cast<double>(index);
        const double tensor[6] = {v, -v, 0.5, v * v, 1.0, 0.0};
        record->SetInteger(1, static_cast<int>(index));
        record->SetTensor(2, tensor);
        record->SetString(3, std::string(index % 4, 'a'));
        record->SetDoubleList(4, FED_DoubleArray(std::vector<double>(length, v)));
        block.SetRecord(index, *record);
      };
      for (std::size_t i = 0; i < kCount; ++i) set(ascends ? 3 * i : 3 * (kCount - i), i % 5);
      // The copy's chunks are then shorter: its first record decides.
      if (hasLongList) set(ascends ? 0 : 3 * kCount, 5000);
      block.DeleteDataRecord(record);

      const quilon_test::TempFolder folder;
      FED_ResultDatabaseOptions     options;
      options.memoryLimit = 1;
      FED_ResultDatabase onDisk(folder / "a.fed", FED_ResultDatabase::Create, options);
      FED_ResultDatabase again;
      FED_CopyBlock(from, onDisk, Key(kMatrix));
      onDisk.Commit();
      FED_CopyBlock(onDisk, again, Key(kMatrix));

      const FED_DataBlock&       copy     = again.GetConstDataBlock(Key(kMatrix));
      FED_ConstDataRecord* const expected = block.CreateConstDataRecord();
      FED_ConstDataRecord* const actual   = copy.CreateConstDataRecord();
      std::size_t                wrong    = 0;
      std::size_t                count    = 0;
      for (auto index = copy.Begin(); index != copy.End(); ++index, ++count) {
        block.GetRecord(*index, *expected);
        copy.GetRecord(*index, *actual);
        double          values[2][6];
        FED_DoubleArray lists[2];
        expected->GetTensor(2, values[0]);
        actual->GetTensor(2, values[1]);
        expected->GetDoubleList(4, lists[0]);
        actual->GetDoubleList(4, lists[1]);
        const bool isSame =
            expected->GetInteger(1) == actual->GetInteger(1) && std::equal(values[0], values[0] + 6, values[1]) &&
            expected->GetString(3) == actual->GetString(3) && lists[0].GetSize() == lists[1].GetSize() &&
            std::equal(lists[0].GetData(), lists[0].GetData() + lists[0].GetSize(), lists[1].GetData());
        wrong += isSame ? 0 : 1;
      }
      EXPECT_EQ(wrong, 0u);
      EXPECT_EQ(count, kCount);
      EXPECT_EQ(copy.GetMaxIndex(), block.GetMaxIndex());
    }
}

TEST_F(CopyDatablocks, IndexThatNoIdHasIsAFailureAndTheTargetBlockStays)
{
  source.GetOrCreateDataBlock(Key(kTemperature), 0).SetScalarAt(3, 1.0);
  SetScalar(target, kTemperature, 4, 2.0);
  EXPECT_EQ(MessageOf([&] { copy_datablocks(source, target, {}, SkipEmptyBlocks); }),
            "id map of entity kind 0: no id has the index 3, there are none");
  EXPECT_EQ(GetScalar(target, kTemperature, 4), 2.0);
}

TEST_F(CopyDatablocks, OneDatabaseIsNoPairToCopyBetween)
{
  SetScalar(source, kTemperature, 1, 1.0);
  EXPECT_EQ(MessageOf([&] { copy_datablocks(source, source, {}, SkipEmptyBlocks); }),
            "copy_datablocks: source and target are one database, expected two");
  EXPECT_EQ(GetScalar(source, kTemperature, 1), 1.0);
}

TEST_F(CopyDatablocks, WorksBetweenForeignDatabasesAndFreesItsScratchRecords)
{
  SetScalar(source, kTemperature, 12, 1.5);
  FED_DataBlock*    block = source.CreateDataBlock(Key(FED_OnfId_ElementNodes), 0, 0, "lb");
  FED_IdDataBlock   view(*block, source.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.SetIntList(1, std::vector<int>{3, 4});
  view.SetRecord(9, record);
  quilon_test::RecordingDatabase foreignSource(source), foreignTarget(target);
  EXPECT_EQ(copy_datablocks(foreignSource, foreignTarget, {}, SkipEmptyBlocks), 2u);
  EXPECT_EQ(GetScalar(target, kTemperature, 12), 1.5);
  EXPECT_EQ(target.GetConstDataBlock(Key(FED_OnfId_ElementNodes)).GetMaxIndex(), 1u);
  EXPECT_EQ(FormatOf(target.GetConstDataBlock(Key(FED_OnfId_ElementNodes))), "lb");
  EXPECT_EQ(foreignSource.GetLiveScratchRecords(), 0u);
  EXPECT_EQ(foreignTarget.GetLiveScratchRecords(), 0u);
}
