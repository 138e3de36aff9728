#include "bundled/FED_ResultDatabase.h"

#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_ColumnDataBlock.h"
#include "QuilonDbConnector/FED_DataBlockSet.h"
#include "QuilonUtilities/FED_Failure.h"

#include "failure_message.h"

namespace {

constexpr auto kDisplacement = static_cast<FED_OnfId>(510);
constexpr auto kStress       = static_cast<FED_OnfId>(521);
constexpr auto kMatrix       = static_cast<FED_OnfId>(593);
constexpr auto kNoFormat     = static_cast<FED_OnfId>(590);

FED_DataDescriptor Key(FED_OnfId onf, int loadCase = 0)
{
  FED_DataDescriptor descriptor(0, onf);
  if (loadCase != 0) descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return descriptor;
}

std::vector<std::size_t> Walk(const FED_DataBlock& block)
{
  std::vector<std::size_t> indices;
  for (auto it = block.Begin(); it != block.End(); ++it) indices.push_back(*it);
  return indices;
}

class ResultDatabase : public testing::Test
{
protected:
  FED_ResultDatabase database;
};

}  // namespace

// --- the database ---

TEST_F(ResultDatabase, IsInitialized) { EXPECT_TRUE(database.IsInitialized()); }

TEST_F(ResultDatabase, EmptyDatabaseListsNothing)
{
  EXPECT_TRUE(database.GetDataDescriptors({}).empty());
  EXPECT_TRUE(database.GetDataBlocks({}).empty());
  EXPECT_FALSE(database.HasDataBlock(Key(kStress)));
}

TEST_F(ResultDatabase, GetOrCreateTwiceGivesTheSameBlock)
{
  FED_DataBlock& first  = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  FED_DataBlock& second = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 100);
  EXPECT_EQ(&first, &second);
  first.SetScalarAt(3, 1.5);
  EXPECT_EQ(second.GetScalarAt(3), 1.5);
}

TEST_F(ResultDatabase, GetOrCreateTakesTheFormatOfTheCatalogue)
{
  const FED_DataBlock& block  = database.GetOrCreateDataBlock(Key(kMatrix), 0);
  FED_ConstDataRecord* record = block.CreateConstDataRecord();
  ASSERT_EQ(record->GetFieldCount(), 5u);
  EXPECT_EQ(record->GetFieldType(1), 1);
  EXPECT_EQ(record->GetFieldType(2), 1);
  EXPECT_EQ(record->GetFieldType(3), 9);
  EXPECT_EQ(record->GetFieldType(4), 7);
  EXPECT_EQ(record->GetFieldType(5), 7);
  block.DeleteDataRecord(record);
}

TEST_F(ResultDatabase, GetOrCreateReadsTheRawOnfIdUnderAClearBit)
{
  FED_DataDescriptor key;
  key.values[FED_DataDescriptor::OnfId] = kStress;
  const double   tensor[6]              = {1, 2, 3, 4, 5, 6};
  FED_DataBlock& block                  = database.GetOrCreateDataBlock(key, 0);
  block.SetValuesAt(1, tensor);
  double out[6] = {};
  block.GetValuesAt(1, out);
  EXPECT_EQ(out[5], 6.0);
}

TEST_F(ResultDatabase, BlocksComeInAscendingOrderOfDescriptors)
{
  database.GetOrCreateDataBlock(Key(kStress, 2), 0);
  database.GetOrCreateDataBlock(Key(kDisplacement, 3), 0);
  database.GetOrCreateDataBlock(Key(kStress, 1), 0);
  const std::vector<FED_DataDescriptor> expected = {Key(kDisplacement, 3), Key(kStress, 1), Key(kStress, 2)};
  EXPECT_EQ(database.GetDataDescriptors({}), expected);
  const std::vector<FED_DataBlock*> blocks = database.GetDataBlocks({});
  ASSERT_EQ(blocks.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(blocks[i]->GetDescriptor() == expected[i]);
}

TEST_F(ResultDatabase, PatternSelectsBlocks)
{
  database.GetOrCreateDataBlock(Key(kStress, 2), 0);
  database.GetOrCreateDataBlock(Key(kDisplacement, 3), 0);
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, kStress);
  EXPECT_EQ(database.GetDataDescriptors(pattern), std::vector<FED_DataDescriptor>{Key(kStress, 2)});
  EXPECT_EQ(database.GetDataBlocks(pattern).size(), 1u);
}

TEST_F(ResultDatabase, ClearedMaskBitIsAnotherBlock)
{
  FED_DataDescriptor other = Key(kStress, 2);
  other.mask &= ~(1u << FED_DataDescriptor::LoadCase);
  database.GetOrCreateDataBlock(Key(kStress, 2), 0);
  EXPECT_FALSE(database.HasDataBlock(other));
}

TEST_F(ResultDatabase, KeyEditedInPlaceFindsTheBlockAndCachedIntegersStayUnset)
{
  FED_DataDescriptor edited = Key(kStress);
  edited.values[3]          = 2;
  edited.mask |= 1u << 3;
  edited.cached[0] = 77;
  database.GetOrCreateDataBlock(edited, 0);
  ASSERT_TRUE(database.HasDataBlock(Key(kStress, 2)));
  EXPECT_EQ(database.GetConstDataBlock(Key(kStress, 2)).GetDescriptor().cached[0], -1);
}

TEST_F(ResultDatabase, MissingBlockIsAFailureThatNamesTheDescriptor)
{
  const std::string expected = "block iteration=0 onf=521 load-case=4: the database has no such block";
  EXPECT_EQ(MessageOf([&] { database.GetDataBlock(Key(kStress, 4)); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetConstDataBlock(Key(kStress, 4)); }), expected);
  EXPECT_EQ(MessageOf([&] { database.DeleteDataBlock(Key(kStress, 4)); }), expected);
}

TEST_F(ResultDatabase, DeletedBlockIsGoneAndItsNeighboursStayWhereTheyWere)
{
  database.GetOrCreateDataBlock(Key(kStress, 1), 0);
  FED_DataBlock& neighbour = database.GetOrCreateDataBlock(Key(kStress, 2), 0);
  database.DeleteDataBlock(Key(kStress, 1));
  EXPECT_FALSE(database.HasDataBlock(Key(kStress, 1)));
  EXPECT_EQ(&database.GetDataBlock(Key(kStress, 2)), &neighbour);
}

TEST_F(ResultDatabase, CreateOnAnExistingKeyGivesTheExistingBlockWithItsRecords)
{
  FED_DataBlock* block = database.CreateDataBlock(Key(kStress), 1, 20, "D");
  block->SetScalarAt(1, 4.0);
  EXPECT_EQ(database.CreateDataBlock(Key(kStress), 1, 20, "D"), block);
  EXPECT_EQ(block->GetScalarAt(1), 4.0);
}

TEST_F(ResultDatabase, CreateWithSeparatorsIsTheSameFormat)
{
  FED_DataBlock* block = database.CreateDataBlock(Key(kMatrix), 1, 20, "IIbDbLbLb");
  EXPECT_EQ(database.CreateDataBlock(Key(kMatrix), 1, 20, "IIDbLbLb"), block);
}

TEST_F(ResultDatabase, CreateWithAnotherFormatIsAFailure)
{
  database.CreateDataBlock(Key(kStress), 1, 20, "T");
  EXPECT_EQ(MessageOf([&] { database.CreateDataBlock(Key(kStress), 1, 20, "V"); }),
            "block iteration=0 onf=521: the record format is \"T\", \"V\" was asked for");
}

TEST_F(ResultDatabase, CreateWithABadFormatMakesNoBlock)
{
  EXPECT_THROW(database.CreateDataBlock(Key(kStress), 1, 20, "IIx"), FED_Failure);
  EXPECT_FALSE(database.HasDataBlock(Key(kStress)));
}

TEST_F(ResultDatabase, BlockWithoutFormatAdoptsTheOneThatIsAskedFor)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(kNoFormat), 0);
  EXPECT_EQ(database.CreateDataBlock(Key(kNoFormat), 1, 1, "Db"), &block);
  FED_DataRecord* record = block.CreateDataRecord();
  EXPECT_EQ(record->GetFieldCount(), 1u);
  EXPECT_EQ(record->GetFieldType(1), 9);
  block.DeleteDataRecord(record);
}

TEST_F(ResultDatabase, CreateWithoutAFormatKeepsTheFormatOfTheBlock)
{
  FED_DataBlock* block = database.CreateDataBlock(Key(kStress), 1, 20, "T");
  EXPECT_EQ(database.CreateDataBlock(Key(kStress), 0, 0, ""), block);
  EXPECT_THROW(block->SetScalarAt(1, 1.0), FED_Failure);
}

TEST_F(ResultDatabase, AbsurdHintIsAHintOnly)
{
  FED_DataBlock& block     = database.GetOrCreateDataBlock(Key(kStress), std::numeric_limits<std::size_t>::max());
  const double   tensor[6] = {};
  block.SetValuesAt(0, tensor);
  EXPECT_TRUE(block.HasRecord(0));
}

TEST_F(ResultDatabase, KeepsNamesOfUserKinds)
{
  const auto kind = static_cast<FED_OnfId>(1999);
  EXPECT_EQ(database.GetUserKindName(kind), "");
  database.SetUserKindName(kind, "creep strain");
  EXPECT_EQ(database.GetUserKindName(kind), "creep strain");
  database.SetUserKindName(kind, "");
  EXPECT_EQ(database.GetUserKindName(kind), "");
}

TEST_F(ResultDatabase, NameOfAKindOfTheCatalogueIsAFailure)
{
  EXPECT_EQ(MessageOf([&] { database.SetUserKindName(kStress, "mine"); }),
            "FED_ResultDatabase: ONF id 521 takes no name, expected a user kind, 1000 to 1999");
  EXPECT_THROW(database.SetUserKindName(static_cast<FED_OnfId>(2000), "mine"), FED_Failure);
}

TEST_F(ResultDatabase, BlockSetFindsBlocksAndAnswersNullForOthers)
{
  FED_DataBlock&         block = database.GetOrCreateDataBlock(Key(kStress), 0);
  const FED_DataBlockSet set(database);
  EXPECT_EQ(set.GetDataBlockInstance(Key(kStress)), &block);
  EXPECT_EQ(set.GetDataBlockInstance(Key(kStress, 1)), nullptr);
}

// --- blocks: indices ---

TEST_F(ResultDatabase, EmptyBlockWalksNothing)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(kStress), 0);
  EXPECT_EQ(block.GetSize(), 0u);
  EXPECT_EQ(block.GetMaxIndex(), 0u);
  EXPECT_FALSE(block.HasRecord(0));
  EXPECT_TRUE(block.Begin() == block.End());
}

TEST_F(ResultDatabase, LoneRecordAtIndexZeroIsSeenByWalksFromZeroOnly)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  block.SetScalarAt(0, 5.0);
  EXPECT_EQ(Walk(block), std::vector<std::size_t>{0});
  EXPECT_EQ(block.GetMaxIndex(), 0u);
  std::size_t seen = 0;
  for (std::size_t index = 1; index <= block.GetSize(); ++index) ++seen;
  EXPECT_EQ(seen, 0u);
}

TEST_F(ResultDatabase, WalkSkipsGapsAndIsAscendingWhateverTheOrderOfWriting)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  for (const std::size_t index : {7u, 0u, 3u, 900u}) block.SetScalarAt(index, static_cast<double>(index));
  EXPECT_EQ(Walk(block), (std::vector<std::size_t>{0, 3, 7, 900}));
  EXPECT_EQ(block.GetSize(), 900u);
  for (const std::size_t index : {7u, 0u, 3u, 900u}) EXPECT_EQ(block.GetScalarAt(index), static_cast<double>(index));
  EXPECT_FALSE(block.HasRecord(1));
  EXPECT_FALSE(block.HasRecord(901));
}

TEST_F(ResultDatabase, WalkReadsTheLastIndexOnceSoThatABlockMayGrowMeanwhile)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  block.SetScalarAt(1, 1.0);
  block.SetScalarAt(2, 2.0);
  std::vector<std::size_t> seen;
  for (auto it = block.Begin(); it != block.End(); ++it) {
    seen.push_back(*it);
    block.SetScalarAt(*it + 2, 0.0);
  }
  EXPECT_EQ(seen, (std::vector<std::size_t>{1, 2}));
  EXPECT_EQ(block.GetMaxIndex(), 4u);
}

TEST_F(ResultDatabase, LoneRecordAtTheGreatestIndexIsKept)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  block.SetScalarAt(2147483647, 2.5);
  EXPECT_TRUE(block.HasRecord(2147483647));
  EXPECT_EQ(block.GetScalarAt(2147483647), 2.5);
  EXPECT_EQ(block.GetMaxIndex(), 2147483647u);
  EXPECT_FALSE(block.HasRecord(0));
}

TEST_F(ResultDatabase, IndexPastTheGreatestIsAFailureAndHoldsNoRecord)
{
  FED_DataBlock&    block    = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  const std::string expected = "block iteration=0 onf=500: index is 2147483648, expected 0 to 2147483647";
  EXPECT_EQ(MessageOf([&] { block.SetScalarAt(2147483648u, 1.0); }), expected);
  const double value = 1.0;
  EXPECT_EQ(MessageOf([&] { block.SetValuesAt(2147483648u, &value); }), expected);
  FED_DataRecord* record = block.CreateDataRecord();
  EXPECT_EQ(MessageOf([&] { block.SetRecord(2147483648u, *record); }), expected);
  EXPECT_FALSE(block.HasRecord(2147483648u));
  EXPECT_FALSE(block.HasRecord(static_cast<std::size_t>(-3)));
  EXPECT_TRUE(block.Begin() == block.End());
}

TEST_F(ResultDatabase, ReadingWhereNoRecordIsIsAFailureThatNamesTheDescriptor)
{
  FED_DataBlock&    block    = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory, 2), 0);
  const std::string expected = "block iteration=0 onf=500 load-case=2: no record at index 9";
  double            value    = 0.0;
  EXPECT_EQ(MessageOf([&] { block.GetScalarAt(9); }), expected);
  EXPECT_EQ(MessageOf([&] { block.GetValuesAt(9, &value); }), expected);
  FED_ConstDataRecord* record = block.CreateConstDataRecord();
  EXPECT_EQ(MessageOf([&] { block.GetRecord(9, *record); }), expected);
}

// --- blocks: values ---

TEST_F(ResultDatabase, ScalarsKeepEveryBit)
{
  FED_DataBlock& block    = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  const double   values[] = {-0.0, std::numeric_limits<double>::denorm_min(), std::nan("77"),
                             -std::numeric_limits<double>::infinity()};
  for (std::size_t i = 0; i < 4; ++i) block.SetScalarAt(i, values[i]);
  for (std::size_t i = 0; i < 4; ++i) {
    const double read = block.GetScalarAt(i);
    EXPECT_EQ(std::memcmp(&read, &values[i], sizeof(double)), 0) << i;
  }
}

TEST_F(ResultDatabase, WritingAgainReplacesTheRecord)
{
  FED_DataBlock& block    = database.GetOrCreateDataBlock(Key(kDisplacement), 0);
  const double   first[3] = {1, 2, 3}, second[3] = {4, 5, 6};
  block.SetValuesAt(8, first);
  block.SetValuesAt(8, second);
  double out[3] = {};
  block.GetValuesAt(8, out);
  EXPECT_EQ(out[0], 4.0);
  EXPECT_EQ(out[2], 6.0);
  EXPECT_EQ(Walk(block), std::vector<std::size_t>{8});
}

TEST_F(ResultDatabase, ValuesRunThroughAllDoubleFieldsOfARecord)
{
  FED_DataBlock* block = database.CreateDataBlock(Key(kNoFormat), 0, 0, "DVdT");
  double         values[11], out[11] = {};
  for (int i = 0; i < 11; ++i) values[i] = i + 0.5;
  block->SetValuesAt(2, values);
  block->GetValuesAt(2, out);
  for (int i = 0; i < 11; ++i) EXPECT_EQ(out[i], values[i]);
  FED_ConstDataRecord* record = block->CreateConstDataRecord();
  block->GetRecord(2, *record);
  EXPECT_EQ(record->GetDouble(1), 0.5);
  double vector[3];
  record->GetVector(2, vector);
  EXPECT_EQ(vector[2], 3.5);
  EXPECT_EQ(record->GetDouble(3), 4.5);
  double tensor[6];
  record->GetTensor(4, tensor);
  EXPECT_EQ(tensor[0], 5.5);
  EXPECT_EQ(tensor[5], 10.5);
}

TEST_F(ResultDatabase, ScalarInABlockOfTensorsIsAFailure)
{
  FED_DataBlock& block     = database.GetOrCreateDataBlock(Key(kStress), 0);
  const double   tensor[6] = {};
  block.SetValuesAt(1, tensor);
  EXPECT_EQ(MessageOf([&] { block.SetScalarAt(1, 1.0); }),
            "block iteration=0 onf=521: a scalar was given, the record format is \"T\"");
  EXPECT_EQ(MessageOf([&] { block.GetScalarAt(1); }),
            "block iteration=0 onf=521: a scalar was asked for, the record format is \"T\"");
}

TEST_F(ResultDatabase, ValuesInABlockOfListsAreAFailure)
{
  FED_DataBlock* block = database.CreateDataBlock(Key(kNoFormat), 0, 0, "DDb");
  double         value = 0.0;
  EXPECT_EQ(MessageOf([&] { block->SetValuesAt(1, &value); }),
            "block iteration=0 onf=590: the record format is \"DDb\", expected one of doubles (D, d, V, T)");
  FED_DataRecord* record = block->CreateDataRecord();
  block->SetRecord(1, *record);
  EXPECT_EQ(MessageOf([&] { block->GetValuesAt(1, &value); }),
            "block iteration=0 onf=590: the record format is \"DDb\", expected one of doubles (D, d, V, T)");
}

TEST_F(ResultDatabase, ValuesInABlockWithoutFormatAreAFailure)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(kNoFormat), 0);
  double         value = 0.0;
  EXPECT_EQ(MessageOf([&] { block.SetValuesAt(1, &value); }),
            "block iteration=0 onf=590: values were given before the record format is known");
}

TEST_F(ResultDatabase, ScalarGivesABlockWithoutFormatTheFormatD)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(kNoFormat), 0);
  block.SetScalarAt(4, 2.0);
  EXPECT_EQ(block.GetScalarAt(4), 2.0);
  FED_ConstDataRecord* record = block.CreateConstDataRecord();
  ASSERT_EQ(record->GetFieldCount(), 1u);
  EXPECT_EQ(record->GetFieldType(1), 2);
}

TEST_F(ResultDatabase, ScalarAtABadIndexLeavesABlockWithoutFormatAsItWas)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(kNoFormat), 0);
  EXPECT_THROW(block.SetScalarAt(static_cast<std::size_t>(-3), 2.0), FED_Failure);
  FED_DataRecord* record = block.CreateDataRecord();
  EXPECT_EQ(record->GetFieldCount(), 0u);
}

TEST_F(ResultDatabase, ValuesSurviveTheGrowthOverSeveralChunks)
{
  // A tensor chunk holds 2^18 rows: 2^24 bytes hold 349525 tensors of 48 bytes, cut down to a power of two.
  FED_DataBlock&    block = database.GetOrCreateDataBlock(Key(kStress), 0);
  const std::size_t count = (std::size_t{1} << 19) + 3;
  double            tensor[6];
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t c = 0; c < 6; ++c) tensor[c] = static_cast<double>(i * 6 + c);
    block.SetValuesAt(i + 1, tensor);
  }
  std::size_t wrong = 0;
  for (std::size_t i = 0; i < count; ++i) {
    block.GetValuesAt(i + 1, tensor);
    for (std::size_t c = 0; c < 6; ++c)
      if (tensor[c] != static_cast<double>(i * 6 + c)) ++wrong;
  }
  EXPECT_EQ(wrong, 0u);
  const auto& columns = dynamic_cast<const FED_ColumnDataBlock&>(block);
  EXPECT_EQ(columns.GetRowsPerChunk(), std::size_t{1} << 16);
  ASSERT_EQ(columns.GetChunkCount(), 9u);
  EXPECT_EQ(columns.GetDoubleChunk(1, 0).GetSize(), 6 * (std::size_t{1} << 16));
  EXPECT_EQ(columns.GetDoubleChunk(1, 8).GetSize(), 18u);
  EXPECT_EQ(columns.GetDoubleChunk(1, 8).GetData()[17], static_cast<double>(count * 6 - 1));
}

TEST_F(ResultDatabase, WalkOverRecordsFarApartVisitsThemAlone)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  for (const std::size_t index : {2000000000u, 1u, 2147483647u, 70u}) block.SetScalarAt(index, 0.5);
  // Asked for index by index, each of the walks would be two billions of questions.
  for (int walk = 0; walk < 1000; ++walk) Walk(block);
  EXPECT_EQ(Walk(block), (std::vector<std::size_t>{1, 70, 2000000000, 2147483647}));
  EXPECT_EQ(block.FindNextIndex(71, 1999999999), FED_DataBlock::npos);
  EXPECT_EQ(block.FindNextIndex(2147483648u, FED_DataBlock::npos), FED_DataBlock::npos);
}

// --- patterns ---

TEST_F(ResultDatabase, PatternsFindWhatLookingAtEveryDescriptorFinds)
{
  std::mt19937                 random(11);
  std::set<FED_DataDescriptor> all;
  const int  values[] = {0, 1, 2, -1, std::numeric_limits<int>::lowest(), std::numeric_limits<int>::max()};
  const auto any      = [&] { return values[random() % std::size(values)]; };
  for (int i = 0; i < 600; ++i) {
    FED_DataDescriptor key(any(), static_cast<FED_OnfId>(500 + random() % 3));
    for (const int index : {3, 4, 9, 13})
      if (random() % 2 == 0) key.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(index), any());
    if (random() % 4 == 0) key.mask &= ~8u;  // a value under a clear bit counts all the same
    database.CreateDataBlock(key, 0, 0, "D");
    all.insert(key);
  }
  for (int i = 0; i < 500; ++i) {
    FED_DataDescriptorPattern pattern;
    for (const int index : {0, 1, 3, 4, 9, 13})
      if (random() % 3 == 0)
        pattern.SetEqual(static_cast<FED_DataDescriptor::ResultIndex>(index),
                         index == 1 ? 500 + static_cast<int>(random() % 3) : any());
    std::vector<FED_DataDescriptor> expected;
    for (const FED_DataDescriptor& key : all)
      if (pattern.Matches(key)) expected.push_back(key);
    ASSERT_EQ(database.GetDataDescriptors(pattern), expected) << pattern.ToString();
    std::vector<FED_DataDescriptor> ofBlocks;
    for (const FED_DataBlock* block : database.GetDataBlocks(pattern)) ofBlocks.push_back(block->GetDescriptor());
    ASSERT_EQ(ofBlocks, expected) << pattern.ToString();
  }
  FED_DataDescriptorPattern unknown;
  unknown.criteria[13].mode = 7;
  EXPECT_THROW(database.GetDataDescriptors(unknown), FED_Failure);
}

// --- blocks: records ---

TEST_F(ResultDatabase, RecordKeepsEveryTypeOfField)
{
  FED_DataBlock*  block     = database.CreateDataBlock(Key(kNoFormat), 0, 0, "IiFDdSVTLblbDb");
  FED_DataRecord* record    = block->CreateDataRecord();
  const double    vector[3] = {1, 2, 3}, tensor[6] = {4, 5, 6, 7, 8, 9};
  record->SetInteger(1, -5);
  record->SetInteger(2, 2147483647);
  record->SetFloat(3, 0.1f);
  record->SetDouble(4, 0.1);
  record->SetDouble(5, -0.2);
  record->SetString(6, std::string("a\0b", 3));
  record->SetVector(7, vector);
  record->SetTensor(8, tensor);
  record->SetIntList(9, std::vector<int>{3, 1, 2});
  record->SetIntList(10, std::vector<int>{});
  record->SetDoubleList(11, std::vector<double>{1.5, -2.5});
  block->SetRecord(6, *record);
  block->DeleteDataRecord(record);

  FED_ConstDataRecord* read = block->CreateConstDataRecord();
  block->GetRecord(6, *read);
  EXPECT_EQ(read->GetFieldCount(), 11u);
  const int types[] = {1, 10, 3, 2, 11, 4, 5, 6, 7, 8, 9};
  for (std::size_t field = 1; field <= 11; ++field) EXPECT_EQ(read->GetFieldType(field), types[field - 1]);
  const std::size_t sizes[] = {4, 4, 4, 8, 8, 7, 24, 48, 16, 4, 20};
  for (std::size_t field = 1; field <= 11; ++field) EXPECT_EQ(read->GetFieldSize(field), sizes[field - 1]) << field;
  EXPECT_EQ(read->GetInteger(1), -5);
  EXPECT_EQ(read->GetInteger(2), 2147483647);
  EXPECT_EQ(read->GetFloat(3), 0.1f);
  EXPECT_EQ(read->GetDouble(4), 0.1);
  EXPECT_EQ(read->GetDouble(5), -0.2);
  EXPECT_EQ(read->GetString(6), std::string("a\0b", 3));
  double out[6] = {};
  read->GetVector(7, out);
  EXPECT_EQ(out[2], 3.0);
  EXPECT_EQ(out[3], 0.0);  // three doubles, no more
  read->GetTensor(8, out);
  EXPECT_EQ(out[5], 9.0);
  FED_IntArray integers;
  read->GetIntList(9, integers);
  EXPECT_TRUE(integers == FED_IntArray({3, 1, 2}));
  EXPECT_EQ(read->GetIntListLen(9), 3u);
  read->GetIntList(10, integers);
  EXPECT_EQ(integers.GetSize(), 0u);
  FED_DoubleArray doubles;
  read->GetDoubleList(11, doubles);
  EXPECT_TRUE(doubles == FED_DoubleArray({1.5, -2.5}));
  EXPECT_EQ(read->GetDoubleListLen(11), 2u);
}

TEST_F(ResultDatabase, FieldsThatWereNotSetAreZeroOrEmpty)
{
  FED_DataBlock*  block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "IDSLb");
  FED_DataRecord* record = block->CreateDataRecord();
  block->SetRecord(1, *record);
  record->SetInteger(1, 9);
  record->SetString(3, "text");
  block->GetRecord(1, *record);
  EXPECT_EQ(record->GetInteger(1), 0);
  EXPECT_EQ(record->GetDouble(2), 0.0);
  EXPECT_EQ(record->GetString(3), "");
  EXPECT_EQ(record->GetIntListLen(4), 0u);
}

TEST_F(ResultDatabase, StoredRecordIsACopy)
{
  FED_DataBlock*  block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "Lb");
  FED_DataRecord* record = block->CreateDataRecord();
  record->SetIntList(1, std::vector<int>{1});
  block->SetRecord(1, *record);
  record->SetIntList(1, std::vector<int>{2});
  block->GetRecord(1, *record);
  FED_IntArray list;
  record->GetIntList(1, list);
  EXPECT_TRUE(list == FED_IntArray({1}));
}

TEST_F(ResultDatabase, ListsGrowShrinkAndEmptyInPlace)
{
  FED_DataBlock*  block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "Db");
  FED_DataRecord* record = block->CreateDataRecord();
  const auto      write  = [&](std::size_t index, const std::vector<double>& list) {
    record->SetDoubleList(1, list);
    block->SetRecord(index, *record);
  };
  const auto read = [&](std::size_t index) {
    block->GetRecord(index, *record);
    FED_DoubleArray list;
    record->GetDoubleList(1, list);
    return std::vector<double>(list.GetData(), list.GetData() + list.GetSize());
  };
  write(1, {1, 2});
  write(2, {9});
  write(1, {3, 4, 5, 6});
  EXPECT_EQ(read(1), (std::vector<double>{3, 4, 5, 6}));
  write(1, {7});
  EXPECT_EQ(read(1), std::vector<double>{7});
  write(1, {});
  EXPECT_EQ(read(1), std::vector<double>{});
  write(1, {8, 8});
  EXPECT_EQ(read(1), (std::vector<double>{8, 8}));
  EXPECT_EQ(read(2), std::vector<double>{9});
}

TEST_F(ResultDatabase, ListsThatKeepGrowingStayWholeWhileTheirPoolIsCleaned)
{
  // Each of four rows is rewritten ever longer, so that the pool is cleaned several times; the neighbours stay whole.
  FED_DataBlock*  block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "LbS");
  FED_DataRecord* record = block->CreateDataRecord();
  for (std::size_t length = 1; length <= 3000; ++length) {
    record->SetIntList(1, std::vector<int>(length, static_cast<int>(length)));
    record->SetString(2, std::string(length, static_cast<char>('a' + length % 26)));
    block->SetRecord(length % 4, *record);
  }
  for (std::size_t length = 2997; length <= 3000; ++length) {
    block->GetRecord(length % 4, *record);
    FED_IntArray list;
    record->GetIntList(1, list);
    EXPECT_TRUE(list == FED_IntArray(std::vector<int>(length, static_cast<int>(length))));
    EXPECT_EQ(record->GetString(2), std::string(length, static_cast<char>('a' + length % 26)));
  }
}

TEST_F(ResultDatabase, ListLongerThanAChunkIsKept)
{
  FED_DataBlock*      block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "Db");
  FED_DataRecord*     record = block->CreateDataRecord();
  const std::size_t   length = (std::size_t{1} << 21) + 5;  // 2^21 doubles fill a chunk
  std::vector<double> list(length);
  for (std::size_t i = 0; i < length; ++i) list[i] = static_cast<double>(i);
  record->SetDoubleList(1, std::vector<double>{1.0});
  block->SetRecord(1, *record);
  record->SetDoubleList(1, list);
  block->SetRecord(2, *record);
  record->SetDoubleList(1, std::vector<double>{3.0});
  block->SetRecord(3, *record);
  FED_DoubleArray out;
  block->GetRecord(2, *record);
  record->GetDoubleList(1, out);
  EXPECT_TRUE(out == FED_DoubleArray(list));
  block->GetRecord(3, *record);
  record->GetDoubleList(1, out);
  EXPECT_TRUE(out == FED_DoubleArray({3.0}));
}

TEST_F(ResultDatabase, WrongFieldNumberOrTypeIsAFailureWithoutEffect)
{
  FED_DataBlock*  block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "ID");
  FED_DataRecord* record = block->CreateDataRecord();
  EXPECT_EQ(MessageOf([&] { record->SetInteger(0, 1); }),
            "block iteration=0 onf=590: record field is 0, expected 1 to 2");
  EXPECT_EQ(MessageOf([&] { record->SetInteger(3, 1); }),
            "block iteration=0 onf=590: record field is 3, expected 1 to 2");
  EXPECT_EQ(MessageOf([&] { record->SetDouble(1, 1.0); }),
            "block iteration=0 onf=590: record field 1 is of type integer, expected double");
  EXPECT_EQ(MessageOf([&] { record->GetString(2); }),
            "block iteration=0 onf=590: record field 2 is of type double, expected string");
  EXPECT_THROW(record->GetFieldType(3), FED_Failure);
  EXPECT_THROW(record->GetFieldSize(0), FED_Failure);
  EXPECT_THROW(record->GetIntListLen(1), FED_Failure);
  EXPECT_THROW(record->GetDoubleListLen(1), FED_Failure);
  EXPECT_EQ(record->GetInteger(1), 0);
}

TEST_F(ResultDatabase, CodesOfAPairAreReadAndWrittenAlike)
{
  FED_DataBlock*  block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "idlb");
  FED_DataRecord* record = block->CreateDataRecord();
  record->SetInteger(1, 4);
  record->SetDouble(2, 0.5);
  record->SetIntList(3, std::vector<int>{1, 2});
  block->SetRecord(1, *record);
  block->GetRecord(1, *record);
  EXPECT_EQ(record->GetInteger(1), 4);
  EXPECT_EQ(record->GetFieldType(1), 10);
  EXPECT_EQ(record->GetFieldType(2), 11);
  EXPECT_EQ(record->GetFieldType(3), 8);
}

TEST_F(ResultDatabase, FirstRecordGivesABlockWithoutFormatItsFormat)
{
  FED_DataBlock&  block  = database.GetOrCreateDataBlock(Key(kNoFormat), 0);
  FED_DataRecord* record = block.CreateDataRecord();
  EXPECT_EQ(record->GetFieldCount(), 0u);
  record->SetInteger(1, 3);
  record->SetDoubleList(2, std::vector<double>{1, 2, 3});
  block.SetRecord(1, *record);
  FED_ConstDataRecord* read = block.CreateConstDataRecord();
  ASSERT_EQ(read->GetFieldCount(), 2u);
  EXPECT_EQ(read->GetFieldType(1), 1);
  EXPECT_EQ(read->GetFieldType(2), 9);
  block.GetRecord(1, *read);
  EXPECT_EQ(read->GetInteger(1), 3);
  EXPECT_EQ(read->GetDoubleListLen(2), 3u);
}

TEST_F(ResultDatabase, FieldsOfARecordWithoutFormatAreSetInOrder)
{
  FED_DataBlock&  block  = database.GetOrCreateDataBlock(Key(kNoFormat), 0);
  FED_DataRecord* record = block.CreateDataRecord();
  EXPECT_EQ(MessageOf([&] { record->SetInteger(2, 1); }),
            "block iteration=0 onf=590: record field is 2, expected 1 to 0");
  record->SetInteger(1, 1);
  record->SetInteger(1, 2);  // set again, the type being the same
  EXPECT_THROW(record->SetDouble(1, 1.0), FED_Failure);
  EXPECT_EQ(record->GetInteger(1), 2);
}

TEST_F(ResultDatabase, RecordWithoutFieldsGivesNoFormat)
{
  FED_DataBlock&  block  = database.GetOrCreateDataBlock(Key(kNoFormat), 0);
  FED_DataRecord* record = block.CreateDataRecord();
  EXPECT_EQ(MessageOf([&] { block.SetRecord(1, *record); }),
            "block iteration=0 onf=590: the record has no fields and the block no record format");
  EXPECT_FALSE(block.HasRecord(1));
}

TEST_F(ResultDatabase, RecordThatDoesNotFitTheFormatIsAFailureAndLeavesTheBlockAsItWas)
{
  FED_DataBlock&  block  = database.GetOrCreateDataBlock(Key(kNoFormat), 0);
  FED_DataRecord* first  = block.CreateDataRecord();
  FED_DataRecord* other  = block.CreateDataRecord();
  FED_DataRecord* longer = block.CreateDataRecord();
  first->SetInteger(1, 3);
  other->SetDouble(1, 3.0);
  longer->SetInteger(1, 3);
  longer->SetInteger(2, 3);
  block.SetRecord(1, *first);
  EXPECT_EQ(MessageOf([&] { block.SetRecord(2, *other); }),
            "block iteration=0 onf=590: record field 1 is of type double, expected integer");
  EXPECT_EQ(MessageOf([&] { block.SetRecord(1, *longer); }),
            "block iteration=0 onf=590: the record has 2 fields, the record format \"I\" has 1");
  EXPECT_EQ(Walk(block), std::vector<std::size_t>{1});
  block.GetRecord(1, *first);
  EXPECT_EQ(first->GetInteger(1), 3);
}

TEST_F(ResultDatabase, RecordOfAnotherBlockOfTheSameFormatFits)
{
  FED_DataBlock*  one    = database.CreateDataBlock(Key(kNoFormat, 1), 0, 0, "ILb");
  FED_DataBlock*  two    = database.CreateDataBlock(Key(kNoFormat, 2), 0, 0, "ilb");
  FED_DataRecord* record = one->CreateDataRecord();
  record->SetInteger(1, 7);
  two->SetRecord(3, *record);
  two->GetRecord(3, *record);
  EXPECT_EQ(record->GetInteger(1), 7);
}

TEST_F(ResultDatabase, ReadingIntoARecordOfAnotherFormatIsAFailureAndLeavesTheRecordAsItWas)
{
  FED_DataBlock*  one    = database.CreateDataBlock(Key(kNoFormat, 1), 0, 0, "I");
  FED_DataBlock*  two    = database.CreateDataBlock(Key(kNoFormat, 2), 0, 0, "D");
  FED_DataRecord* record = two->CreateDataRecord();
  record->SetDouble(1, 2.5);
  one->SetRecord(1, *one->CreateDataRecord());
  EXPECT_EQ(MessageOf([&] { one->GetRecord(1, *record); }),
            "block iteration=0 onf=590 load-case=1: record field 1 is of type double, expected integer");
  EXPECT_EQ(record->GetDouble(1), 2.5);
}

TEST_F(ResultDatabase, ScratchRecordMadeBeforeTheFormatReadsTheFormatLater)
{
  FED_DataBlock&       block = database.GetOrCreateDataBlock(Key(kNoFormat), 0);
  FED_ConstDataRecord* early = block.CreateConstDataRecord();
  block.SetScalarAt(1, 6.0);
  block.GetRecord(1, *early);
  ASSERT_EQ(early->GetFieldCount(), 1u);
  EXPECT_EQ(early->GetDouble(1), 6.0);
}

TEST_F(ResultDatabase, NullRecordIsFreedWithoutEffectAndAForeignOneIsAFailure)
{
  FED_DataBlock& one = database.GetOrCreateDataBlock(Key(kNoFormat, 1), 0);
  FED_DataBlock& two = database.GetOrCreateDataBlock(Key(kNoFormat, 2), 0);
  one.DeleteDataRecord(nullptr);
  FED_DataRecord* record = one.CreateDataRecord();
  EXPECT_EQ(MessageOf([&] { two.DeleteDataRecord(record); }),
            "block iteration=0 onf=590 load-case=2: the scratch record to free was not made by this block");
  one.DeleteDataRecord(record);
}

// --- columns ---

TEST_F(ResultDatabase, ColumnsStandInTheOrderOfFirstWriting)
{
  FED_DataBlock*  block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "IFVLb");
  FED_DataRecord* record = block->CreateDataRecord();
  for (const int index : {5, 2, 9}) {
    const double vector[3] = {1.0 * index, 2.0 * index, 3.0 * index};
    record->SetInteger(1, index);
    record->SetFloat(2, static_cast<float>(index));
    record->SetVector(3, vector);
    block->SetRecord(static_cast<std::size_t>(index), *record);
  }
  const auto& columns = dynamic_cast<const FED_ColumnDataBlock&>(*block);
  EXPECT_EQ(columns.GetRecordFormat().ToString(), "IFVLb");
  EXPECT_EQ(columns.GetRecordCount(), 3u);
  EXPECT_EQ(columns.GetIndices(), (std::vector<std::size_t>{2, 5, 9}));
  EXPECT_EQ(columns.GetRow(2), 1u);
  ASSERT_EQ(columns.GetChunkCount(), 1u);
  const auto integers = columns.GetIntegerChunk(1, 0);
  EXPECT_EQ(std::vector<int>(integers.GetData(), integers.GetData() + integers.GetSize()), (std::vector<int>{5, 2, 9}));
  const auto floats = columns.GetFloatChunk(2, 0);
  EXPECT_EQ(std::vector<float>(floats.GetData(), floats.GetData() + floats.GetSize()), (std::vector<float>{5, 2, 9}));
  const auto doubles = columns.GetDoubleChunk(3, 0);
  EXPECT_EQ(std::vector<double>(doubles.GetData(), doubles.GetData() + doubles.GetSize()),
            (std::vector<double>{5, 10, 15, 2, 4, 6, 9, 18, 27}));
}

TEST_F(ResultDatabase, ColumnOfAnotherTypeFieldOrChunkIsAFailure)
{
  FED_DataBlock* block = database.CreateDataBlock(Key(kNoFormat), 0, 0, "D");
  block->SetScalarAt(1, 1.0);
  const auto& columns = dynamic_cast<const FED_ColumnDataBlock&>(*block);
  EXPECT_EQ(MessageOf([&] { columns.GetDoubleChunk(2, 0); }),
            "block iteration=0 onf=590: record field is 2, expected 1 to 1");
  EXPECT_EQ(MessageOf([&] { columns.GetDoubleChunk(1, 1); }), "block iteration=0 onf=590: chunk is 1, the block has 1");
  EXPECT_EQ(MessageOf([&] { columns.GetIntegerChunk(1, 0); }),
            "block iteration=0 onf=590: record field 1 is of type double");
}

TEST_F(ResultDatabase, EmptyBlockHasNoChunks)
{
  const auto& columns = dynamic_cast<const FED_ColumnDataBlock&>(database.GetOrCreateDataBlock(Key(kStress), 500));
  EXPECT_EQ(columns.GetChunkCount(), 0u);
  EXPECT_EQ(columns.GetRecordCount(), 0u);
}
