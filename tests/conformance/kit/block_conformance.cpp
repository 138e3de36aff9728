#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace conformance {
namespace {

using Indices = std::vector<std::size_t>;

constexpr std::size_t kAbsurdIndex = static_cast<std::size_t>(-1);

class BlockConformance : public DatabaseTest
{
protected:
  FED_DataBlock& Made(const char* format) { return *Database().CreateDataBlock(Key(kUnknown), 0, 0, format); }
};

TEST_F(BlockConformance, AnEmptyBlockHasNoRecordAndSizeZero)
{
  const FED_DataBlock& block = Block(Key(kHistory));
  EXPECT_FALSE(block.HasRecord(0));
  EXPECT_FALSE(block.HasRecord(1));
  EXPECT_EQ(block.GetSize(), 0U);
  EXPECT_EQ(block.GetMaxIndex(), 0U);
  EXPECT_TRUE(block.Begin() == block.End());
  EXPECT_FALSE(block.Begin() != block.End());
}

TEST_F(BlockConformance, ALoneRecordAtIndexZeroIsSeenByIterationButNotByAWalkFrom1)
{
  FED_DataBlock& block = Block(Key(kHistory));
  block.SetScalarAt(0, 2.5);
  EXPECT_TRUE(block.HasRecord(0));
  EXPECT_EQ(block.GetMaxIndex(), 0U);
  EXPECT_EQ(block.GetSize(), 0U);
  EXPECT_EQ(Visited(block), Indices{0});
  EXPECT_EQ(block.GetScalarAt(0), 2.5);
}

TEST_F(BlockConformance, SizeIsTheHighestIndexWhateverTheGaps)
{
  FED_DataBlock& block = Block(Key(kHistory));
  for (const std::size_t index : {4U, 1U, 2U}) block.SetScalarAt(index, 1.0);
  EXPECT_EQ(block.GetSize(), 4U);
}

TEST_F(BlockConformance, MaxIndexIsTheHighestIndexWhateverTheGaps)
{
  FED_DataBlock& block = Block(Key(kHistory));
  for (const std::size_t index : {9U, 0U, 2U}) block.SetScalarAt(index, 1.0);
  EXPECT_EQ(block.GetMaxIndex(), 9U);
}

TEST_F(BlockConformance, OnlyIndicesThatWereSetHoldARecord)
{
  FED_DataBlock& block = Block(Key(kHistory));
  block.SetScalarAt(1, 0.0);
  block.SetScalarAt(3, 0.0);
  for (const std::size_t index : {0U, 2U, 4U, 5U, 1000000U}) EXPECT_FALSE(block.HasRecord(index)) << index;
  EXPECT_TRUE(block.HasRecord(1));
  EXPECT_TRUE(block.HasRecord(3));
}

TEST_F(BlockConformance, IterationVisitsTheIndicesWithRecordsAscending)
{
  FED_DataBlock& block = Block(Key(kHistory));
  for (const std::size_t index : {700U, 0U, 5U, 6U, 2U}) block.SetScalarAt(index, 1.0);
  EXPECT_EQ(Visited(block), (Indices{0, 2, 5, 6, 700}));
}

TEST_F(BlockConformance, TheNextIndexIsTheLowestWithARecordFromThereOn)
{
  FED_DataBlock& block = Block(Key(kHistory));
  EXPECT_EQ(block.FindNextIndex(0, 1000), FED_DataBlock::npos);
  for (const std::size_t index : {700U, 0U, 5U, 6U, 2U}) block.SetScalarAt(index, 1.0);
  const std::size_t cases[][3] = {{0, 700, 0},
                                  {1, 700, 2},
                                  {2, 2, 2},
                                  {3, 700, 5},
                                  {5, 5, 5},
                                  {6, 10, 6},
                                  {7, 700, 700},
                                  {7, 699, FED_DataBlock::npos},
                                  {3, 4, FED_DataBlock::npos},
                                  {5, 3, FED_DataBlock::npos},
                                  {7, FED_DataBlock::npos, 700}};
  for (const auto& [first, last, expected] : cases)
    EXPECT_EQ(block.FindNextIndex(first, last), expected) << first << " to " << last;
  // It is asked again whenever a record came.
  block.SetScalarAt(650, 1.0);
  EXPECT_EQ(block.FindNextIndex(7, 700), 650U);
  EXPECT_EQ(block.FindNextIndex(651, 700), 700U);
}

TEST_F(BlockConformance, IterationStandsOnTheFirstRecord)
{
  FED_DataBlock& block = Block(Key(kHistory));
  block.SetScalarAt(5, 1.0);
  FED_DataBlock::IndexIterator it = block.Begin();
  EXPECT_EQ(*it, 5U);
  EXPECT_TRUE(++it == block.End());
}

TEST_F(BlockConformance, AnIteratorMayStartAtAnyRecord)
{
  FED_DataBlock& block = Block(Key(kHistory));
  for (const std::size_t index : {2U, 5U, 6U}) block.SetScalarAt(index, 1.0);
  FED_DataBlock::IndexIterator it(block, 2, block.GetMaxIndex());
  EXPECT_EQ(*it, 2U);
  ++it;
  EXPECT_EQ(*it, 5U);
}

TEST_F(BlockConformance, ScalarsKeepTheirBits)
{
  FED_DataBlock&            block  = Block(Key(kHistory));
  const std::vector<double> values = TellingDoubles();
  for (std::size_t i = 0; i < values.size(); ++i) block.SetScalarAt(i + 1, values[i]);
  for (std::size_t i = 0; i < values.size(); ++i)
    EXPECT_TRUE(SameBits(block.GetScalarAt(i + 1), values[i])) << values[i] << " became " << block.GetScalarAt(i + 1);
}

TEST_F(BlockConformance, SettingAScalarReplacesTheOneThere)
{
  FED_DataBlock& block = Block(Key(kHistory));
  block.SetScalarAt(3, 1.0);
  block.SetScalarAt(3, 2.0);
  EXPECT_EQ(block.GetScalarAt(3), 2.0);
  EXPECT_EQ(block.GetSize(), 3U);
}

TEST_F(BlockConformance, AScalarThatIsNotThereIsAFailure)
{
  FED_DataBlock& block = Block(Key(kHistory));
  EXPECT_THROW(block.GetScalarAt(1), FED_Failure);
  block.SetScalarAt(2, 1.0);
  EXPECT_THROW(block.GetScalarAt(1), FED_Failure);
  EXPECT_THROW(block.GetScalarAt(3), FED_Failure);
}

TEST_F(BlockConformance, AScalarOfAFormatOfMoreDoublesIsAFailure)
{
  FED_DataBlock& block     = Made("V");
  const double   values[3] = {1, 2, 3};
  block.SetValuesAt(1, values);
  EXPECT_THROW(block.GetScalarAt(1), FED_Failure);
  EXPECT_THROW(block.SetScalarAt(1, 5.0), FED_Failure);
  double back[3] = {};
  block.GetValuesAt(1, back);
  EXPECT_EQ(back[0], 1.0);
}

TEST_F(BlockConformance, ABlockWithoutAFormatTakesOneDoubleFromItsFirstScalar)
{
  FED_DataBlock& block = Block(Key(kUnknown));
  block.SetScalarAt(1, 2.5);
  const ConstScratch record(block, 1);
  ASSERT_EQ(record->GetFieldCount(), 1U);
  EXPECT_EQ(record->GetFieldType(1), 2);
  EXPECT_EQ(record->GetDouble(1), 2.5);
}

TEST_F(BlockConformance, ValuesComeBackWithEveryComponent)
{
  struct Row
  {
    const char* format;
    std::size_t count;
  };
  for (const Row& row : {Row{"D", 1}, Row{"V", 3}, Row{"T", 6}, Row{"DVTd", 11}}) {
    FED_DataBlock&      block = Made(row.format);
    std::vector<double> values(row.count);
    for (std::size_t i = 0; i < row.count; ++i) values[i] = 1.5 + static_cast<double>(i);
    block.SetValuesAt(4, values.data());
    std::vector<double> back(row.count, -1.0);
    block.GetValuesAt(4, back.data());
    EXPECT_EQ(back, values) << row.format;
    Database().DeleteDataBlock(Key(kUnknown));
  }
}

TEST_F(BlockConformance, GettingValuesWritesNothingBeyondTheRecord)
{
  FED_DataBlock& block     = Made("V");
  const double   values[3] = {1, 2, 3};
  block.SetValuesAt(1, values);
  double back[4] = {0, 0, 0, 99};
  block.GetValuesAt(1, back);
  EXPECT_EQ(back[3], 99.0);
}

TEST_F(BlockConformance, SettingValuesReplacesTheOnesThere)
{
  FED_DataBlock& block     = Made("V");
  const double   first[3]  = {1, 2, 3};
  const double   second[3] = {4, 5, 6};
  block.SetValuesAt(1, first);
  block.SetValuesAt(1, second);
  double back[3] = {};
  block.GetValuesAt(1, back);
  EXPECT_EQ(std::vector<double>(back, back + 3), (std::vector<double>{4, 5, 6}));
}

TEST_F(BlockConformance, ValuesThatAreNotThereAreAFailure)
{
  const FED_DataBlock& block   = Made("V");
  double               back[3] = {7, 7, 7};
  EXPECT_THROW(block.GetValuesAt(1, back), FED_Failure);
}

TEST_F(BlockConformance, ValuesOfAFormatThatIsNotMadeOfDoublesAreAFailure)
{
  const double values[6] = {};
  EXPECT_THROW(Block(Key(kUnknown)).SetValuesAt(1, values), FED_Failure);  // no format yet
  EXPECT_FALSE(Block(Key(kUnknown)).HasRecord(1));
  FED_DataBlock& block = Made("ID");
  EXPECT_THROW(block.SetValuesAt(1, values), FED_Failure);
  EXPECT_FALSE(block.HasRecord(1));
  const Scratch record(block);
  record->SetInteger(1, 1);
  record->SetDouble(2, 2.0);
  block.SetRecord(1, *record);
  double back[6] = {};
  EXPECT_THROW(block.GetValuesAt(1, back), FED_Failure);
}

TEST_F(BlockConformance, AnAbsurdIndexIsAFailure)
{
  FED_DataBlock& block = Block(Key(kHistory));
  const Scratch  record(block);
  record->SetDouble(1, 1.0);
  EXPECT_THROW(block.SetRecord(kAbsurdIndex, *record), FED_Failure);
  EXPECT_THROW(block.SetScalarAt(kAbsurdIndex, 1.0), FED_Failure);
  EXPECT_FALSE(block.HasRecord(kAbsurdIndex));
  EXPECT_EQ(block.GetMaxIndex(), 0U);
}

TEST_F(BlockConformance, MayBeSparse)
{
  FED_DataBlock& block = Block(Key(kHistory));
  block.SetScalarAt(1, 1.0);
  block.SetScalarAt(1000000, 2.0);
  EXPECT_EQ(block.GetSize(), 1000000U);
  EXPECT_EQ(block.GetScalarAt(1000000), 2.0);
  EXPECT_FALSE(block.HasRecord(999999));
}

class RecordConformance : public DatabaseTest
{
protected:
  FED_DataBlock& Made(const char* format) { return *Database().CreateDataBlock(Key(kUnknown), 0, 0, format); }
};

/// Sets every field of a record of the format "IiFDdSVTLblbDb".
void FillAllTypes(FED_DataRecord& record)
{
  const double vector[3] = {1.5, 2.5, 3.5};
  const double tensor[6] = {1, 2, 3, 4, 5, -0.0};
  record.SetInteger(1, -2147483647 - 1);
  record.SetInteger(2, 2147483647);
  record.SetFloat(3, 0.1F);
  record.SetDouble(4, 0.1);
  record.SetDouble(5, -0.0);
  record.SetString(6, "a \"quoted\"\tline\nand \xC3\xA9");
  record.SetVector(7, vector);
  record.SetTensor(8, tensor);
  record.SetIntList(9, FED_IntArray(std::vector<int>{3, -1, 4}));
  record.SetIntList(10, FED_IntArray());
  record.SetDoubleList(11, FED_DoubleArray(std::vector<double>{0.5, -0.0}));
}

void ExpectAllTypes(const FED_ConstDataRecord& record)
{
  ASSERT_EQ(record.GetFieldCount(), 11U);
  EXPECT_EQ(record.GetInteger(1), -2147483647 - 1);
  EXPECT_EQ(record.GetInteger(2), 2147483647);
  EXPECT_EQ(record.GetFloat(3), 0.1F);
  EXPECT_EQ(record.GetDouble(4), 0.1);
  EXPECT_TRUE(SameBits(record.GetDouble(5), -0.0));
  EXPECT_EQ(record.GetString(6), "a \"quoted\"\tline\nand \xC3\xA9");
  double vector[4] = {0, 0, 0, 99};
  record.GetVector(7, vector);
  EXPECT_EQ(std::vector<double>(vector, vector + 4), (std::vector<double>{1.5, 2.5, 3.5, 99}));
  double tensor[7] = {0, 0, 0, 0, 0, 0, 99};
  record.GetTensor(8, tensor);
  EXPECT_EQ(std::vector<double>(tensor, tensor + 7), (std::vector<double>{1, 2, 3, 4, 5, 0, 99}));
  EXPECT_TRUE(std::signbit(tensor[5]));
  FED_IntArray integers(std::vector<int>{9});
  record.GetIntList(9, integers);
  EXPECT_EQ(ToVector(integers), (std::vector<int>{3, -1, 4}));
  record.GetIntList(10, integers);
  EXPECT_EQ(ToVector(integers), std::vector<int>{});
  FED_DoubleArray doubles;
  record.GetDoubleList(11, doubles);
  ASSERT_EQ(ToVector(doubles), (std::vector<double>{0.5, 0.0}));
  EXPECT_TRUE(std::signbit(doubles.GetData()[1]));
}

TEST_F(RecordConformance, EveryFieldTypeIsStoredAndReadBack)
{
  FED_DataBlock& block = Made("IiFDdSVTLblbDb");
  {
    const Scratch record(block);
    FillAllTypes(*record);
    ExpectAllTypes(*record);
    block.SetRecord(3, *record);
  }
  ExpectAllTypes(*ConstScratch(block, 3));
  const Scratch writable(block);
  block.GetRecord(3, *writable);
  ExpectAllTypes(*writable);
}

TEST_F(RecordConformance, TypeCodesAreThoseOfTheFormat)
{
  const FED_DataBlock& block = Made("IiFDdSVTLblbDb");
  const ConstScratch   record(block);
  std::vector<int>     types;
  for (std::size_t field = 1; field <= record->GetFieldCount(); ++field) types.push_back(record->GetFieldType(field));
  EXPECT_EQ(types, (std::vector<int>{1, 10, 3, 2, 11, 4, 5, 6, 7, 8, 9}));
}

TEST_F(RecordConformance, ListsTellTheirLengths)
{
  FED_DataBlock& block = Made("IiFDdSVTLblbDb");
  const Scratch  record(block);
  FillAllTypes(*record);
  block.SetRecord(1, *record);
  const ConstScratch stored(block, 1);
  EXPECT_EQ(stored->GetIntListLen(9), 3U);
  EXPECT_EQ(stored->GetIntListLen(10), 0U);
  EXPECT_EQ(stored->GetDoubleListLen(11), 2U);
}

TEST_F(RecordConformance, FieldsTellTheirSizes)
{
  FED_DataBlock& block = Made("IiFDdSVTLblbDb");
  const Scratch  record(block);
  FillAllTypes(*record);
  record->SetString(6, "four");
  std::vector<std::size_t> sizes;
  for (std::size_t field = 1; field <= 11; ++field) sizes.push_back(record->GetFieldSize(field));
  EXPECT_EQ(sizes, (std::vector<std::size_t>{4, 4, 4, 8, 8, 8, 24, 48, 16, 4, 20}));
}

TEST_F(RecordConformance, SetRecordReplacesTheRecordThere)
{
  FED_DataBlock& block = Made("ILbDb");
  const Scratch  record(block);
  record->SetInteger(1, 1);
  record->SetIntList(2, FED_IntArray(std::vector<int>{1, 2, 3}));
  record->SetDoubleList(3, FED_DoubleArray(std::vector<double>{1.0}));
  block.SetRecord(5, *record);
  record->SetInteger(1, 2);
  record->SetIntList(2, FED_IntArray(std::vector<int>{7}));
  record->SetDoubleList(3, FED_DoubleArray(std::vector<double>{2.0, 3.0}));
  block.SetRecord(5, *record);
  EXPECT_EQ(Visited(block), Indices{5});
  const ConstScratch stored(block, 5);
  EXPECT_EQ(stored->GetInteger(1), 2);
  FED_IntArray integers;
  stored->GetIntList(2, integers);
  EXPECT_EQ(ToVector(integers), std::vector<int>{7});
  FED_DoubleArray doubles;
  stored->GetDoubleList(3, doubles);
  EXPECT_EQ(ToVector(doubles), (std::vector<double>{2.0, 3.0}));
}

TEST_F(RecordConformance, TheBlockStoresACopyOfTheScratchRecord)
{
  FED_DataBlock& block = Made("ILb");
  const Scratch  record(block);
  record->SetInteger(1, 1);
  record->SetIntList(2, FED_IntArray(std::vector<int>{1, 2}));
  block.SetRecord(1, *record);
  record->SetInteger(1, 9);
  record->SetIntList(2, FED_IntArray(std::vector<int>{9}));
  const ConstScratch stored(block, 1);
  EXPECT_EQ(stored->GetInteger(1), 1);
  EXPECT_EQ(stored->GetIntListLen(2), 2U);
}

TEST_F(RecordConformance, AScratchRecordKeepsWhatItReadWhenTheBlockChanges)
{
  FED_DataBlock& block = Made("I");
  const Scratch  record(block);
  record->SetInteger(1, 1);
  block.SetRecord(1, *record);
  const ConstScratch read(block, 1);
  record->SetInteger(1, 2);
  block.SetRecord(1, *record);
  EXPECT_EQ(read->GetInteger(1), 1);
}

TEST_F(RecordConformance, ScratchRecordsOfOneBlockAreIndependent)
{
  FED_DataBlock& block = Made("I");
  const Scratch  first(block);
  const Scratch  second(block);
  first->SetInteger(1, 1);
  second->SetInteger(1, 2);
  EXPECT_EQ(first->GetInteger(1), 1);
  EXPECT_EQ(second->GetInteger(1), 2);
}

TEST_F(RecordConformance, ReadingARecordThatIsNotThereIsAFailure)
{
  FED_DataBlock& block = Made("I");
  const Scratch  record(block);
  record->SetInteger(1, 1);
  EXPECT_THROW(block.GetRecord(1, *record), FED_Failure);
  block.SetRecord(2, *record);
  EXPECT_THROW(block.GetRecord(1, *record), FED_Failure);
  EXPECT_THROW(block.GetRecord(3, *record), FED_Failure);
}

TEST_F(RecordConformance, AFieldNumberThatTheRecordDoesNotHaveIsAFailure)
{
  FED_DataBlock& block = Made("I");
  const Scratch  record(block);
  for (const std::size_t field : {std::size_t{0}, std::size_t{2}, kAbsurdIndex}) {
    EXPECT_THROW(record->GetInteger(field), FED_Failure) << field;
    EXPECT_THROW(record->SetInteger(field, 1), FED_Failure) << field;
    EXPECT_THROW(record->GetFieldType(field), FED_Failure) << field;
    EXPECT_THROW(record->GetFieldSize(field), FED_Failure) << field;
  }
}

TEST_F(RecordConformance, ReadingAFieldAsAnotherTypeIsAFailure)
{
  FED_DataBlock&  block = Made("IDLbDbSVTF");
  const Scratch   record(block);
  FED_IntArray    integers;
  FED_DoubleArray doubles;
  double          values[6] = {};
  EXPECT_THROW(record->GetInteger(2), FED_Failure);
  EXPECT_THROW(record->GetDouble(1), FED_Failure);
  EXPECT_THROW(record->GetFloat(2), FED_Failure);
  EXPECT_THROW(record->GetIntList(4, integers), FED_Failure);
  EXPECT_THROW(record->GetDoubleList(3, doubles), FED_Failure);
  EXPECT_THROW(record->GetIntListLen(1), FED_Failure);
  EXPECT_THROW(record->GetDoubleListLen(3), FED_Failure);
  EXPECT_THROW(record->GetString(1), FED_Failure);
  EXPECT_THROW(record->GetVector(7, values), FED_Failure);
  EXPECT_THROW(record->GetTensor(6, values), FED_Failure);
}

TEST_F(RecordConformance, WritingAFieldAsAnotherTypeIsAFailureWithoutEffect)
{
  FED_DataBlock& block = Made("ID");
  const Scratch  record(block);
  const double   values[6] = {};
  record->SetInteger(1, 5);
  EXPECT_THROW(record->SetDouble(1, 1.0), FED_Failure);
  EXPECT_THROW(record->SetFloat(1, 1.0F), FED_Failure);
  EXPECT_THROW(record->SetString(1, "x"), FED_Failure);
  EXPECT_THROW(record->SetVector(1, values), FED_Failure);
  EXPECT_THROW(record->SetTensor(1, values), FED_Failure);
  EXPECT_THROW(record->SetIntList(1, FED_IntArray()), FED_Failure);
  EXPECT_THROW(record->SetDoubleList(1, FED_DoubleArray()), FED_Failure);
  EXPECT_THROW(record->SetInteger(2, 1), FED_Failure);
  EXPECT_EQ(record->GetFieldType(1), 1);
  EXPECT_EQ(record->GetInteger(1), 5);
}

TEST_F(RecordConformance, ARecordThatDoesNotFitTheFormatIsAFailure)
{
  FED_DataBlock& block = Made("I");
  const Scratch  other(Block(Key(kHistory)));
  other->SetDouble(1, 1.0);
  EXPECT_THROW(block.SetRecord(1, *other), FED_Failure);
  EXPECT_FALSE(block.HasRecord(1));
}

TEST_F(RecordConformance, TheFirstRecordGivesABlockItsFormat)
{
  FED_DataBlock& block = Block(Key(kUnknown));
  {
    const Scratch first(block);
    EXPECT_EQ(first->GetFieldCount(), 0U);
    first->SetInteger(1, 4);
    first->SetDoubleList(2, FED_DoubleArray(std::vector<double>{1.5}));
    block.SetRecord(1, *first);
  }
  const ConstScratch stored(block, 1);
  ASSERT_EQ(stored->GetFieldCount(), 2U);
  EXPECT_EQ(stored->GetFieldType(1), 1);
  EXPECT_EQ(stored->GetFieldType(2), 9);
  EXPECT_EQ(stored->GetInteger(1), 4);
  const Scratch other(Block(Key(kHistory)));
  other->SetDouble(1, 1.0);
  EXPECT_THROW(block.SetRecord(2, *other), FED_Failure);
}

TEST_F(RecordConformance, FieldsOfABlockWithoutAFormatAreSetInOrder)
{
  const Scratch record(Block(Key(kUnknown)));
  EXPECT_THROW(record->SetInteger(2, 1), FED_Failure);
  EXPECT_EQ(record->GetFieldCount(), 0U);
}

TEST_F(RecordConformance, FreeingNullDoesNothing)
{
  FED_DataBlock& block = Made("I");
  block.DeleteDataRecord(nullptr);
  EXPECT_FALSE(block.HasRecord(0));
}

TEST_F(RecordConformance, ScratchRecordsThatWereNotFreedGoWithTheBlock)
{
  FED_DataBlock& block = Made("ILb");
  block.CreateDataRecord()->SetIntList(2, FED_IntArray(std::vector<int>(100, 1)));
  EXPECT_NE(block.CreateConstDataRecord(), nullptr);
  Database().DeleteDataBlock(Key(kUnknown));  // a leak checker tells whether they did
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kUnknown)));
}

TEST_F(RecordConformance, ASparseMatrixRecordComesBackWhole)
{
  FED_DataBlock& block = Block(Key(kUserMatrix));
  {
    const Scratch record(block);
    record->SetInteger(1, 2);
    record->SetInteger(2, 3);
    record->SetDoubleList(3, FED_DoubleArray(std::vector<double>{5, 7, 9}));
    record->SetIntList(4, FED_IntArray(std::vector<int>{0, 1, 3}));
    record->SetIntList(5, FED_IntArray(std::vector<int>{1, 0, 2}));
    block.SetRecord(1, *record);
  }
  const ConstScratch stored(block, 1);
  EXPECT_EQ(stored->GetInteger(1), 2);
  EXPECT_EQ(stored->GetInteger(2), 3);
  FED_DoubleArray values;
  stored->GetDoubleList(3, values);
  EXPECT_EQ(ToVector(values), (std::vector<double>{5, 7, 9}));
  FED_IntArray list;
  stored->GetIntList(4, list);
  EXPECT_EQ(ToVector(list), (std::vector<int>{0, 1, 3}));
  stored->GetIntList(5, list);
  EXPECT_EQ(ToVector(list), (std::vector<int>{1, 0, 2}));
}

}  // namespace
}  // namespace conformance
