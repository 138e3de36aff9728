#include <QuilonDataBlockDiff.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>

#include "FailureSweep.h"

namespace {

using quilon_test::Detail;
using quilon_test::RecordingDatabase;
using QuilonDataBlockDiff::CompareInfo;
using QuilonDataBlockDiff::DataBlockDiff;
using Indices = std::vector<std::size_t>;
using Lines   = std::vector<std::string>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

FED_DataDescriptor Descriptor(int onf) { return FED_DataDescriptor(1, static_cast<FED_OnfId>(onf)); }

FED_DataBlock& MakeScalars(FED_Database& db, int onf, const std::vector<std::pair<std::size_t, double>>& values)
{
  FED_DataBlock& block = *db.CreateDataBlock(Descriptor(onf), 1, 20, "D");
  for (const auto& [index, value] : values) block.SetScalarAt(index, value);
  return block;
}

FED_DataBlock& MakeLists(FED_Database& db, int onf, const std::vector<std::vector<double>>& lists)
{
  FED_DataBlock&        block  = *db.CreateDataBlock(Descriptor(onf), 1, 20, "Db");
  FED_DataRecord* const record = block.CreateDataRecord();
  for (std::size_t i = 0; i < lists.size(); ++i) {
    record->SetDoubleList(1, FED_DoubleArray(lists[i]));
    block.SetRecord(i, *record);
  }
  block.DeleteDataRecord(record);
  return block;
}

Indices Compare(const FED_DataBlock& first, const FED_DataBlock& second, const CompareInfo& info = CompareInfo())
{
  return DataBlockDiff(info, first, second).CompareBlocks();
}

}  // namespace

TEST(CompareInfo, TheDefaultsAreOneInAMillionAndTen)
{
  const CompareInfo info;
  EXPECT_EQ(info.absTol, 1e-6);
  EXPECT_EQ(info.relTol, 1e-6);
  EXPECT_FALSE(info.useExactCompare);
  EXPECT_EQ(info.maxDiffsPerBlock, 10u);
  EXPECT_EQ(info.maxBlockDiffs, 10u);
}

TEST(CompareInfo, ThePrintedSettingsAreOneLineWithASemicolonInIt)
{
  EXPECT_EQ(
      CompareInfo().ToString(),
      "Abs tol: 0.000001, Rel tol; 0.000001, Use exact compare: NO, Max diffs per block: 10, Max block diffs: 10");
}

TEST(CompareInfo, EachSettingPrintsInItsPlace)
{
  CompareInfo info;
  info.absTol           = 0.25;
  info.relTol           = 12.5;
  info.useExactCompare  = true;
  info.maxDiffsPerBlock = 3;
  info.maxBlockDiffs    = 0;
  EXPECT_EQ(
      info.ToString(),
      "Abs tol: 0.250000, Rel tol; 12.500000, Use exact compare: YES, Max diffs per block: 3, Max block diffs: 0");
}

TEST(CompareInfo, ToleranceBelowSixDecimalsPrintsAsZero)
{
  CompareInfo info;
  info.absTol = 1e-9;
  info.relTol = 4e-7;
  EXPECT_EQ(
      info.ToString(),
      "Abs tol: 0.000000, Rel tol; 0.000000, Use exact compare: NO, Max diffs per block: 10, Max block diffs: 10");
}

TEST(CompareInfo, TheLongestSettingsPrintWhole)
{
  // The largest double has 309 digits before the point.
  CompareInfo info;
  info.absTol            = -std::numeric_limits<double>::max();
  info.relTol            = -std::numeric_limits<double>::max();
  info.maxDiffsPerBlock  = std::numeric_limits<std::size_t>::max() / 2;
  info.maxBlockDiffs     = std::numeric_limits<std::size_t>::max() / 2;
  const std::string text = info.ToString();
  EXPECT_EQ(text.size(), std::string("Abs tol: , Rel tol; , Use exact compare: NO, Max diffs per block: "
                                     "9223372036854775807, Max block diffs: 9223372036854775807")
                                 .size() +
                             2 * (1 + 309 + 1 + 6));
  EXPECT_TRUE(text.ends_with(", Max block diffs: 9223372036854775807"));
}

TEST(CompareInfo, AnUnlimitedLimitPrintsSigned)
{
  CompareInfo info;
  info.maxDiffsPerBlock = std::numeric_limits<std::size_t>::max();
  EXPECT_EQ(
      info.ToString(),
      "Abs tol: 0.000001, Rel tol; 0.000001, Use exact compare: NO, Max diffs per block: -1, Max block diffs: 10");
}

TEST(CompareInfo, CopiesAndMoves)
{
  static_assert(std::is_copy_constructible_v<CompareInfo> && std::is_move_constructible_v<CompareInfo>);
  static_assert(std::is_copy_assignable_v<CompareInfo> && std::is_move_assignable_v<CompareInfo>);
  CompareInfo info;
  info.absTol = 2.0;
  CompareInfo copy;
  copy = info;
  EXPECT_EQ(copy.absTol, 2.0);
  CompareInfo moved;
  moved = std::move(copy);
  EXPECT_EQ(moved.absTol, 2.0);
}

TEST(DataBlockDiff, ABlockComparedWithItselfHasNoDifference)
{
  FED_ResultDatabase   db;
  const FED_DataBlock& block = MakeScalars(db, 500, {{0, 1.0}, {1, kNaN}, {7, -3.0}});
  EXPECT_EQ(Compare(block, block), Indices{});
}

TEST(DataBlockDiff, ABlockComparedWithItselfReportsItsEmptyDoubleLists)
{
  FED_ResultDatabase   db;
  const FED_DataBlock& block = MakeLists(db, 500, {{1.0}, {}, {2.0, 3.0}, {}});
  EXPECT_EQ(Compare(block, block), (Indices{1, 3}));
}

TEST(DataBlockDiff, ABlockComparedExactlyWithItselfReportsItsNaNs)
{
  FED_ResultDatabase   db;
  const FED_DataBlock& block = MakeScalars(db, 500, {{1, 1.0}, {2, kNaN}});
  CompareInfo          info;
  info.useExactCompare = true;
  EXPECT_EQ(Compare(block, block, info), Indices{2});
}

TEST(DataBlockDiff, EmptyBlocksHaveNoDifference)
{
  FED_ResultDatabase   db;
  const FED_DataBlock& empty  = MakeScalars(db, 500, {});
  const FED_DataBlock& filled = MakeScalars(db, 501, {{1, 1.0}});
  EXPECT_EQ(Compare(empty, empty), Indices{});
  EXPECT_EQ(Compare(empty, filled), Indices{});
}

TEST(DataBlockDiff, MissingAndDifferingRecordsComeInAscendingOrder)
{
  FED_ResultDatabase   db;
  const FED_DataBlock& first  = MakeScalars(db, 500, {{9, 1.0}, {0, 1.0}, {4, 1.0}, {6, 1.0}, {12, 1.0}});
  const FED_DataBlock& second = MakeScalars(db, 501, {{0, 2.0}, {4, 1.0 + 5e-7}, {6, 1.0}, {9, 1.0 + 2e-6}});
  EXPECT_EQ(Compare(first, second), (Indices{0, 9, 12}));
}

TEST(DataBlockDiff, RecordsThatOnlyTheSecondBlockHoldsAreNotReported)
{
  FED_ResultDatabase   db;
  const FED_DataBlock& first  = MakeScalars(db, 500, {{2, 1.0}});
  const FED_DataBlock& second = MakeScalars(db, 501, {{1, 1.0}, {2, 1.0}, {3, 1.0}});
  EXPECT_EQ(Compare(first, second), Indices{});
  EXPECT_EQ(Compare(second, first), (Indices{1, 3}));
}

TEST(DataBlockDiff, TheLimitsOfTheSettingsDoNotLimitTheResult)
{
  FED_ResultDatabase db;
  FED_DataBlock&     first = MakeScalars(db, 500, {});
  for (std::size_t i = 0; i < 25; ++i) first.SetScalarAt(i, 1.0);
  CompareInfo info;
  info.maxDiffsPerBlock = 1;
  info.maxBlockDiffs    = 0;
  EXPECT_EQ(Compare(first, MakeScalars(db, 501, {}), info).size(), 25u);
}

TEST(DataBlockDiff, BlocksOfOtherFormatsDifferInEveryRecordOfTheFirst)
{
  FED_ResultDatabase   db;
  const FED_DataBlock& scalars = MakeScalars(db, 500, {{0, 1.0}, {1, 1.0}});
  const FED_DataBlock& lists   = MakeLists(db, 501, {{1.0}, {1.0}});
  EXPECT_EQ(Compare(scalars, lists), (Indices{0, 1}));
}

TEST(DataBlockDiff, TheSettingsAreReadWhenTheBlocksAreCompared)
{
  FED_ResultDatabase   db;
  const FED_DataBlock& first  = MakeScalars(db, 500, {{1, 1.0}});
  const FED_DataBlock& second = MakeScalars(db, 501, {{1, 1.5}});
  CompareInfo          info;
  DataBlockDiff        diff(info, first, second);
  EXPECT_EQ(diff.CompareBlocks(), Indices{1});
  info.absTol = 1.0;
  info.relTol = 1.0;
  EXPECT_EQ(diff.CompareBlocks(), Indices{});
}

TEST(DataBlockDiff, AsksTheSecondBlockBeforeItReadsEitherAndFreesBothScratchRecords)
{
  FED_ResultDatabase inner;
  MakeScalars(inner, 500, {{0, 1.0}, {2, 1.0}});
  MakeScalars(inner, 501, {{2, 1.0}});
  RecordingDatabase    db(inner, Detail::Blocks);
  const FED_DataBlock& first  = db.GetConstDataBlock(Descriptor(500));
  const FED_DataBlock& second = db.GetConstDataBlock(Descriptor(501));
  db.ClearLines();
  EXPECT_EQ(Compare(first, second), Indices{0});
  const std::string a = "block<500 it=1>.";
  const std::string b = "block<501 it=1>.";
  EXPECT_EQ(db.GetLines(),
            (Lines{a + "CreateConstDataRecord()", b + "CreateConstDataRecord()", a + "GetMaxIndex()",
                   a + "HasRecord(0)", b + "HasRecord(0)", a + "HasRecord(1)", a + "HasRecord(2)", b + "HasRecord(2)",
                   a + "GetRecord(2)", b + "GetRecord(2)", b + "DeleteDataRecord()", a + "DeleteDataRecord()"}));
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
}

TEST(DataBlockDiff, ReadsTheStructureOfBothRecordsBeforeTheirValues)
{
  FED_ResultDatabase inner;
  MakeLists(inner, 500, {{1.0}});
  MakeLists(inner, 501, {{1.0}});
  RecordingDatabase    db(inner, Detail::Records);
  const FED_DataBlock& first  = db.GetConstDataBlock(Descriptor(500));
  const FED_DataBlock& second = db.GetConstDataBlock(Descriptor(501));
  db.ClearLines();
  EXPECT_EQ(Compare(first, second), Indices{});
  Lines records;
  for (const std::string& line : db.GetLines())
    if (line.starts_with("record")) records.push_back(line);
  const std::string a = "record<500 it=1>.";
  const std::string b = "record<501 it=1>.";
  EXPECT_EQ(records,
            (Lines{a + "GetFieldCount()", b + "GetFieldCount()", a + "GetFieldType(1)", b + "GetFieldType(1)",
                   a + "GetFieldSize(1)", b + "GetFieldSize(1)", a + "GetFieldType(1)", a + "GetDoubleListLen(1)",
                   b + "GetDoubleListLen(1)", a + "GetDoubleList(1)", b + "GetDoubleList(1)"}));
}

TEST(DataBlockDiff, AFailureOfEitherBlockComesThroughAndNoScratchRecordIsLeft)
{
  const auto prepare = [] {
    auto db = std::make_unique<FED_ResultDatabase>();
    MakeScalars(*db, 500, {{0, 1.0}, {1, 1.0}});
    MakeScalars(*db, 501, {{1, 1.0}});
    return db;
  };
  const std::size_t calls = quilon_test::SweepFailures(
      prepare,
      [](FED_Database& db) { Compare(db.GetConstDataBlock(Descriptor(500)), db.GetConstDataBlock(Descriptor(501))); },
      [](FED_Database&, const RecordingDatabase&) {});
  // Two blocks, two scratch records, the largest index; two records, each looked for in both blocks; one pair read and
  // compared: two counts, three types, two sizes, two values.
  EXPECT_EQ(calls, 2u + 2u + 1u + 4u + 2u + 9u);
}
