#include <QuilonDataBlockSize.h>

#include <climits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonUtilities/FED_Failure.h>

#include "FailureSweep.h"
#include "FieldRecord.h"

namespace {

using quilon_test::Detail;
using quilon_test::Double;
using quilon_test::Doubles;
using quilon_test::FieldRecord;
using quilon_test::Float;
using quilon_test::Integer;
using quilon_test::IntList;
using quilon_test::RecordingDatabase;
using quilon_test::String;
using quilon_test::Unknown;
using Lines = std::vector<std::string>;

FED_DataDescriptor Descriptor(int onf, int loadCase = 1)
{
  FED_DataDescriptor descriptor(1, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return descriptor;
}

FED_DataBlock& MakeBlock(FED_Database& db, const FED_DataDescriptor& descriptor, const std::string& format)
{
  return *db.CreateDataBlock(descriptor, 1, 20, format);
}

// Sets `count` scalars from index 0.
void SetScalars(FED_DataBlock& block, std::size_t count)
{
  for (std::size_t i = 0; i < count; ++i) block.SetScalarAt(i, 1.5);
}

std::size_t SizeOf(const std::vector<FieldRecord::Field>& fields)
{
  return QuilonDataBlockSize::DataRecordSizeOf(FieldRecord(fields));
}

}  // namespace

TEST(DataRecordSizeOf, EveryTypeCodeCountsItsContent)
{
  struct Row
  {
    const char*        name;
    FieldRecord::Field field;
    std::size_t        expected;
  };
  const Row rows[] = {
      {"1 integer", Integer(1, INT_MAX), 4},
      {"10 entity id", Integer(10, -7), 4},
      {"3 float", Float(0.5f), 4},
      {"2 double", Double(2, 1.0), 8},
      {"11 quantity", Double(11, 1.0), 8},
      {"4 string of 0", String(""), 4},
      {"4 string of 1", String("x"), 5},
      {"4 string of 3", String("abc"), 7},
      {"4 string with a zero byte", String(std::string("a\0b", 3)), 7},
      {"4 string of two bytes for one letter", String("\xc3\xa4"), 6},
      {"5 vector", Doubles(5, {1, 2, 3}), 24},
      {"6 tensor", Doubles(6, {1, 2, 3, 4, 5, 6}), 48},
      {"7 integer list of 0", IntList(7, {}), 4},
      {"7 integer list of 1", IntList(7, {9}), 8},
      {"7 integer list of 5", IntList(7, {1, 2, 3, 4, 5}), 24},
      {"8 id list of 0", IntList(8, {}), 4},
      {"8 id list of 2", IntList(8, {1, 2}), 12},
      {"9 double list of 0", Doubles(9, {}), 4},
      {"9 double list of 1", Doubles(9, {1}), 12},
      {"9 double list of 4", Doubles(9, {1, 2, 3, 4}), 36},
  };
  for (const Row& row : rows) EXPECT_EQ(SizeOf({row.field}), row.expected) << row.name;
}

TEST(DataRecordSizeOf, AThreeLetterStringAndFiveIntegersCount31Bytes)
{
  EXPECT_EQ(SizeOf({String("abc"), IntList(7, {1, 2, 3, 4, 5})}), 31u);
}

TEST(DataRecordSizeOf, ARecordWithoutFieldsCountsNothing) { EXPECT_EQ(SizeOf({}), 0u); }

TEST(DataRecordSizeOf, AnUnknownTypeCodeCountsNothing)
{
  for (const int type : {INT_MIN, -1, 0, 12, 13, INT_MAX}) EXPECT_EQ(SizeOf({Unknown(type, 1)}), 0u) << type;
}

TEST(DataRecordSizeOf, FieldsBehindAnUnknownOneAreCounted)
{
  EXPECT_EQ(SizeOf({Integer(1, 1), Unknown(99, 1), Double(2, 1.0)}), 12u);
}

TEST(DataRecordSizeOf, TheStoredSizeThatARecordTellsPlaysNoPart)
{
  FieldRecord::Field field = Double(2, 1.0);
  field.size               = 4711;
  EXPECT_EQ(SizeOf({field}), 8u);
}

TEST(DataRecordSizeOf, ReadsLengthsAndNoValues)
{
  const FieldRecord record({Integer(1, 1), String("ab"), Doubles(6, {1, 2, 3, 4, 5, 6}), Doubles(9, {1})});
  QuilonDataBlockSize::DataRecordSizeOf(record);
  EXPECT_EQ(record.GetReadFields(), (std::vector<std::size_t>{2, 4}));
}

TEST(DataBlockSizeOf, AddsEveryRecordFromIndexZeroToTheLargest)
{
  FED_ResultDatabase db;
  FED_DataBlock&     block = MakeBlock(db, Descriptor(500), "D");
  for (const std::size_t index : {0u, 1u, 7u}) block.SetScalarAt(index, 1.0);
  EXPECT_EQ(QuilonDataBlockSize::DataBlockSizeOf(block), 24u);
}

TEST(DataBlockSizeOf, ABlockWhoseOnlyRecordLiesAtIndexZeroCounts)
{
  FED_ResultDatabase db;
  FED_DataBlock&     block = MakeBlock(db, Descriptor(500), "D");
  block.SetScalarAt(0, 1.0);
  EXPECT_EQ(QuilonDataBlockSize::DataBlockSizeOf(block), 8u);
}

TEST(DataBlockSizeOf, RecordsOfDifferentLengthEachCountTheirOwn)
{
  FED_ResultDatabase    db;
  FED_DataBlock&        block  = MakeBlock(db, Descriptor(500), "SLbDb");
  FED_DataRecord* const record = block.CreateDataRecord();
  record->SetString(1, "abc");
  record->SetIntList(2, FED_IntArray({1, 2, 3, 4, 5}));
  record->SetDoubleList(3, FED_DoubleArray(std::vector<double>{}));
  block.SetRecord(1, *record);  // 7 + 24 + 4
  record->SetString(1, "");
  record->SetIntList(2, FED_IntArray(std::vector<int>{}));
  record->SetDoubleList(3, FED_DoubleArray({1.0, 2.0}));
  block.SetRecord(2, *record);  // 4 + 4 + 20
  block.DeleteDataRecord(record);
  EXPECT_EQ(QuilonDataBlockSize::DataBlockSizeOf(block), 35u + 28u);
}

TEST(DataBlockSizeOf, AnEmptyBlockIsProbedAtIndexZeroOnly)
{
  FED_ResultDatabase inner;
  MakeBlock(inner, Descriptor(500), "D");
  RecordingDatabase    db(inner, Detail::Blocks);
  const FED_DataBlock& block = db.GetConstDataBlock(Descriptor(500));
  db.ClearLines();
  EXPECT_EQ(QuilonDataBlockSize::DataBlockSizeOf(block), 0u);
  EXPECT_EQ(db.GetLines(), (Lines{"block<500 it=1 lc=1>.GetMaxIndex()", "block<500 it=1 lc=1>.CreateConstDataRecord()",
                                  "block<500 it=1 lc=1>.HasRecord(0)", "block<500 it=1 lc=1>.DeleteDataRecord()"}));
}

TEST(DataBlockSizeOf, AsksForTheLargestIndexOnceAndUsesOneScratchRecord)
{
  FED_ResultDatabase inner;
  FED_DataBlock&     stored = MakeBlock(inner, Descriptor(500), "D");
  stored.SetScalarAt(0, 1.0);
  stored.SetScalarAt(2, 1.0);
  RecordingDatabase    db(inner, Detail::Records);
  const FED_DataBlock& block = db.GetConstDataBlock(Descriptor(500));
  db.ClearLines();
  QuilonDataBlockSize::DataBlockSizeOf(block);
  const std::string name   = "block<500 it=1 lc=1>.";
  const std::string record = "record<500 it=1 lc=1>.";
  EXPECT_EQ(db.GetLines(),
            (Lines{name + "GetMaxIndex()", name + "CreateConstDataRecord()", name + "HasRecord(0)",
                   name + "GetRecord(0)", record + "GetFieldCount()", record + "GetFieldType(1)", name + "HasRecord(1)",
                   name + "HasRecord(2)", name + "GetRecord(2)", record + "GetFieldCount()", record + "GetFieldType(1)",
                   name + "DeleteDataRecord()"}));
  EXPECT_EQ(db.GetMadeScratchRecords(), 1u);
}

TEST(DataBaseSizeOf, ADatabaseWithoutBlocksHoldsNothing)
{
  const FED_ResultDatabase db;
  EXPECT_EQ(QuilonDataBlockSize::DataBaseSizeOf(db), 0u);
}

TEST(DataBaseSizeOf, AddsAllBlocksWhateverTheirKind)
{
  FED_ResultDatabase db;
  SetScalars(MakeBlock(db, Descriptor(500), "D"), 3);  // 24
  MakeBlock(db, Descriptor(511), "V");                 // 0
  const double tensor[6] = {1, 2, 3, 4, 5, 6};
  MakeBlock(db, Descriptor(4711), "T").SetValuesAt(5, tensor);  // 48
  EXPECT_EQ(QuilonDataBlockSize::DataBaseSizeOf(db), 72u);
}

TEST(DataBaseSizeOf, ListsAllDescriptorsOnceAndOpensEachBlock)
{
  FED_ResultDatabase inner;
  MakeBlock(inner, Descriptor(500), "D");
  MakeBlock(inner, Descriptor(511), "V");
  const RecordingDatabase db(inner, Detail::Database);
  QuilonDataBlockSize::DataBaseSizeOf(db);
  EXPECT_EQ(db.GetLines(), (Lines{"db.GetDataDescriptors({*})", "db.GetConstDataBlock(<500 it=1 lc=1>)",
                                  "db.GetConstDataBlock(<511 it=1 lc=1>)"}));
}

TEST(DataBlocksSortedSizeOf, ADatabaseWithoutBlocksGivesAnEmptyList)
{
  const FED_ResultDatabase db;
  EXPECT_TRUE(QuilonDataBlockSize::DataBlocksSortedSizeOf(db).empty());
}

TEST(DataBlocksSortedSizeOf, TheSmallestComesFirstAndEmptyBlocksAreListed)
{
  FED_ResultDatabase db;
  SetScalars(MakeBlock(db, Descriptor(500, 1), "D"), 3);
  SetScalars(MakeBlock(db, Descriptor(500, 2), "D"), 1);
  MakeBlock(db, Descriptor(500, 3), "D");
  SetScalars(MakeBlock(db, Descriptor(500, 4), "D"), 2);
  const std::vector<std::pair<std::size_t, FED_DataDescriptor>> expected = {
      {0, Descriptor(500, 3)}, {8, Descriptor(500, 2)}, {16, Descriptor(500, 4)}, {24, Descriptor(500, 1)}};
  EXPECT_EQ(QuilonDataBlockSize::DataBlocksSortedSizeOf(db), expected);
}

TEST(DataBlocksSortedSizeOf, BlocksOfOneSizeComeInTheOrderOfTheirDescriptors)
{
  FED_ResultDatabase db;
  // Made in another order than the descriptors', load case 3 before 1, the higher kind before the lower.
  for (const FED_DataDescriptor& descriptor : {Descriptor(505, 3), Descriptor(505, 1), Descriptor(500, 9)})
    SetScalars(MakeBlock(db, descriptor, "D"), 2);
  const std::vector<std::pair<std::size_t, FED_DataDescriptor>> expected = {
      {16, Descriptor(500, 9)}, {16, Descriptor(505, 1)}, {16, Descriptor(505, 3)}};
  EXPECT_EQ(QuilonDataBlockSize::DataBlocksSortedSizeOf(db), expected);
}

TEST(DataBlocksSortedSizeOf, BlocksOfOneSizeThatDifferInTheMaskAloneComeWithTheSmallerMaskFirst)
{
  FED_ResultDatabase db;
  FED_DataDescriptor unset = Descriptor(500, 0);
  unset.mask &= ~(1u << FED_DataDescriptor::LoadCase);
  for (const FED_DataDescriptor& descriptor : {Descriptor(500, 0), unset})
    SetScalars(MakeBlock(db, descriptor, "D"), 1);
  const auto sizes = QuilonDataBlockSize::DataBlocksSortedSizeOf(db);
  ASSERT_EQ(sizes.size(), 2u);
  EXPECT_EQ(sizes[0].second.mask, unset.mask);
  EXPECT_EQ(sizes[1].second.mask, Descriptor(500, 0).mask);
}

TEST(DataBlockSizes, AFailureOfTheDatabaseComesThroughAndNoScratchRecordIsLeft)
{
  const auto prepare = [] {
    auto db = std::make_unique<FED_ResultDatabase>();
    SetScalars(MakeBlock(*db, Descriptor(500), "D"), 2);
    return db;
  };
  const auto nothing = [](FED_Database&, const RecordingDatabase&) {};
  // The list, the block, its largest index, its scratch record, and per record four calls.
  EXPECT_EQ(quilon_test::SweepFailures(
                prepare, [](FED_Database& db) { QuilonDataBlockSize::DataBaseSizeOf(db); }, nothing),
            4u + 2u * 4u);
  EXPECT_EQ(quilon_test::SweepFailures(
                prepare, [](FED_Database& db) { QuilonDataBlockSize::DataBlocksSortedSizeOf(db); }, nothing),
            4u + 2u * 4u);
}
