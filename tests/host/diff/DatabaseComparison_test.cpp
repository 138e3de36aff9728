#include "diff/DatabaseComparison.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>

#include "diff/RuleLearning.h"
#include "diff/Verification.h"
#include "import/OpenedDatabase.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"
#include "terminal/Console.h"

namespace {

using namespace quilon::diff;

FED_DataDescriptor Key(int onf, int loadCase = 1)
{
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(onf));
  key.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return key;
}

void SetScalars(FED_Database& db, const FED_DataDescriptor& key, const std::vector<double>& values)
{
  FED_IdDataBlock view(db.GetOrCreateDataBlock(key, 0), db.GetIdMapsPool(), true);
  for (std::size_t i = 0; i < values.size(); ++i) view.SetScalar(static_cast<int>(i + 1), values[i]);
}

DatabaseOutcome Compare(const FED_Database& a, const FED_Database& b, const std::string& rule)
{
  ComparisonTerms terms;
  terms.rules.fallback = ParseRule(rule, "");
  return CompareDatabases(WholeDatabase(a), WholeDatabase(b), terms);
}

// Where there is no NaN, judging value by value is the same as asking the library record by record.
TEST(DatabaseComparison, ValueByValueGivesWhatTheLibrarySaysOfRecords)
{
  std::mt19937                           random(5);
  std::uniform_int_distribution<int>     pick(0, 5);
  std::uniform_real_distribution<double> spread(-3e-6, 3e-6);
  const double                           bases[] = {0.0, 1.0, -1.0, 1e-7, 1e6, -1e-7};
  FED_ResultDatabase                     a;
  FED_ResultDatabase                     b;
  std::vector<double>                    first;
  std::vector<double>                    second;
  for (int i = 0; i < 5000; ++i) {
    first.push_back(bases[pick(random)]);
    second.push_back(pick(random) == 0 ? first.back() : first.back() + spread(random));
  }
  SetScalars(a, Key(514), first);
  SetScalars(b, Key(514), second);
  const QuilonDataBlockDiff::CompareInfo info;
  const std::size_t                      expected =
      QuilonDataBlockDiff::DataBlockDiff(info, a.GetConstDataBlock(Key(514)), b.GetConstDataBlock(Key(514)))
          .CompareBlocks()
          .size();
  ASSERT_GT(expected, 500u);
  ASSERT_LT(expected, 4500u);
  for (const char* rule : {"library", "library nan=equal", "library nan=different"}) {
    const DatabaseOutcome outcome = Compare(a, b, rule);
    ASSERT_EQ(outcome.blocks.size(), 1u);
    EXPECT_EQ(outcome.blocks[0].fields.differingRecords, expected) << rule;
    EXPECT_EQ(outcome.blocks[0].fields.differingValues, expected) << rule;
  }
}

TEST(DatabaseComparison, NormsAreOverAllFiniteValues)
{
  const double       nan = std::numeric_limits<double>::quiet_NaN();
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetScalars(a, Key(514), {3, 4, nan, 0});
  SetScalars(b, Key(514), {3, 1, 5, 4});
  const FieldNorms norms = Compare(a, b, "default").blocks[0].fields.norms;
  EXPECT_EQ(norms.values, 4u);
  EXPECT_EQ(norms.largest, 4.0);
  EXPECT_EQ(norms.sumSquares, 25.0);
  EXPECT_EQ(norms.unmeasured, 1u);
  EXPECT_EQ(norms.GetRms(), std::sqrt(25.0 / 3.0));  // the NaN has no share
  EXPECT_EQ(norms.GetRelative(), 1.0);               // 5 of 5
  EXPECT_EQ(norms.peak, 4.0);                        // of A, where it is smaller
}

/// Compares scalars with as many zeros by "abs=0.5".
FieldOutcome FieldsBesideZeros(const std::vector<double>& values, std::size_t maxDiffs)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetScalars(a, Key(514), std::vector<double>(values.size(), 0.0));
  SetScalars(b, Key(514), values);
  ComparisonTerms terms;
  terms.rules.fallback        = ParseRule("abs=0.5", "");
  terms.info.maxDiffsPerBlock = maxDiffs;
  return CompareDatabases(WholeDatabase(a), WholeDatabase(b), terms).blocks[0].fields;
}

TEST(DatabaseComparison, TheWorstOfEachRecordIsKeptTheWorstFirst)
{
  const FieldOutcome fields = FieldsBesideZeros({2, 8, 1, 4}, 3);
  EXPECT_EQ(fields.differingRecords, 4u);
  ASSERT_EQ(fields.worst.size(), 3u);
  EXPECT_EQ(fields.worst[0].excess, 16.0);
  EXPECT_EQ(fields.worst[1].excess, 8.0);
  EXPECT_EQ(fields.worst[2].excess, 4.0);
  EXPECT_EQ(fields.worst[0].index, 2u);
  EXPECT_EQ(fields.worst[0].a, Value(0.0));
  EXPECT_EQ(fields.worst[0].b, Value(8.0));
  EXPECT_EQ(fields.worst[0].rule, "abs 8 > 0.5");
}

TEST(DatabaseComparison, AsManyAreKeptAsAreAskedFor)
{
  for (const std::size_t most : {0u, 1u, 2u, 3u, 4u}) {
    const FieldOutcome fields = FieldsBesideZeros({2, 8, 4}, most);
    EXPECT_EQ(fields.differingRecords, 3u);
    ASSERT_EQ(fields.worst.size(), std::min<std::size_t>(most, 3));
    if (most > 0) {
      EXPECT_EQ(fields.worst[0].index, 2u);
    }
  }
}

TEST(DatabaseComparison, TheRuleOfANaNSaysWhetherItIsForbidden)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetScalars(a, Key(514), {1});
  SetScalars(b, Key(514), {std::numeric_limits<double>::quiet_NaN()});
  EXPECT_EQ(Compare(a, b, "abs=1 nan=forbid").blocks[0].fields.worst.at(0).rule, "nan forbidden");
  EXPECT_EQ(Compare(a, b, "abs=1 nan=different").blocks[0].fields.worst.at(0).rule, "nan");
}

TEST(DatabaseComparison, OfEquallyBadRecordsTheFirstAreKept)
{
  const FieldOutcome fields = FieldsBesideZeros({2, 2, 2, 2}, 2);
  ASSERT_EQ(fields.worst.size(), 2u);
  EXPECT_EQ(fields.worst[0].index, 1u);
  EXPECT_EQ(fields.worst[1].index, 2u);
}

TEST(DatabaseComparison, WhatIsFurtherBeyondItsRuleIsWorseThanWhatIsLarger)
{
  ValueDifference beyond;
  beyond.index    = 9;
  beyond.excess   = 3.0;
  beyond.distance = 1.0;
  ValueDifference large;
  large.index    = 1;
  large.excess   = 2.0;
  large.distance = 100.0;
  EXPECT_TRUE(beyond.IsWorseThan(large));
  EXPECT_FALSE(large.IsWorseThan(beyond));
  large.excess = beyond.excess;
  EXPECT_TRUE(large.IsWorseThan(beyond));
  EXPECT_FALSE(beyond.IsWorseThan(large));
}

// Blocks that keep their records in one order are compared many values at once, others record by record: the second of
// these has the same records in another order.
void SetDoubles(FED_Database& db, const FED_DataDescriptor& key, const std::string& format,
                const std::vector<double>& values, std::size_t width, bool inReverse)
{
  FED_DataBlock&    block = *db.CreateDataBlock(key, 0, 0, format);
  const std::size_t count = values.size() / width;
  for (std::size_t id = 1; id <= count; ++id) db.GetIdMapsPool().FindOrAddIndex(0, static_cast<int>(id));
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t index = inReverse ? count - i : i + 1;
    block.SetValuesAt(index, values.data() + (index - 1) * width);
  }
}

void ExpectSame(const FieldOutcome& a, const FieldOutcome& b, const std::string& what)
{
  EXPECT_EQ(a.records, b.records) << what;
  EXPECT_EQ(a.differingRecords, b.differingRecords) << what;
  EXPECT_EQ(a.differingValues, b.differingValues) << what;
  EXPECT_EQ(a.norms.values, b.norms.values) << what;
  EXPECT_EQ(a.norms.unmeasured, b.norms.unmeasured) << what;
  EXPECT_EQ(a.norms.peak, b.norms.peak) << what;
  EXPECT_EQ(a.norms.largest, b.norms.largest) << what;
  EXPECT_EQ(a.norms.sumSquares, b.norms.sumSquares) << what;
  EXPECT_EQ(a.norms.reference, b.norms.reference) << what;
  const auto expectSame = [&](const ValueDifference& one, const ValueDifference& other) {
    EXPECT_EQ(std::tie(one.index, one.field, one.component, one.excess, one.distance, one.rule),
              std::tie(other.index, other.field, other.component, other.excess, other.distance, other.rule))
        << what;
  };
  ASSERT_EQ(a.worst.size(), b.worst.size()) << what;
  for (std::size_t i = 0; i < a.worst.size(); ++i) expectSame(a.worst[i], b.worst[i]);
  ASSERT_EQ(a.components.size(), b.components.size()) << what;
  for (std::size_t i = 0; i < a.components.size(); ++i) {
    EXPECT_EQ(a.components[i].differingValues, b.components[i].differingValues) << what;
    expectSame(a.components[i].worst, b.components[i].worst);
  }
}

TEST(DatabaseComparison, ManyValuesAtOnceGiveWhatRecordsOneByOneGive)
{
  constexpr double                       kMost = std::numeric_limits<double>::max();
  constexpr double                       kInf  = std::numeric_limits<double>::infinity();
  const double                           nan   = std::numeric_limits<double>::quiet_NaN();
  std::mt19937                           random(11);
  std::uniform_real_distribution<double> spread(-1.0, 1.0);
  std::uniform_int_distribution<int>     pick(0, 199);
  const double                           odd[] = {nan, kInf, -kInf, kMost, -kMost, 0.0, -0.0, 5e-324};
  const struct
  {
    int         onf;
    const char* format;
    std::size_t width;
  } kinds[] = {{514, "D", 1}, {510, "V", 3}, {521, "T", 6}};
  for (const auto& [onf, format, width] : kinds) {
    for (const std::size_t count : {1u, 7u, 8u, 9u, 1000u}) {
      for (const double noise : {0.0, 1e-9, 0.3}) {
        std::vector<double> first(count * width);
        for (double& value : first) value = pick(random) == 0 ? odd[pick(random) % 8] : spread(random);
        std::vector<double> second = first;
        for (double& value : second) {
          if (noise > 0.0) value += noise * spread(random);
          if (noise > 0.0 && pick(random) == 0) value = odd[pick(random) % 8];
        }
        FED_ResultDatabase a;
        FED_ResultDatabase inOrder;
        FED_ResultDatabase inReverse;
        SetDoubles(a, Key(onf), format, first, width, false);
        SetDoubles(inOrder, Key(onf), format, second, width, false);
        SetDoubles(inReverse, Key(onf), format, second, width, true);
        for (const char* rule : {"default", "exact", "abs=0.1", "rel=0.1", "peak=1e-9", "ulps=3", "abs=0.1 rel=0.2",
                                 "abs=0.1 rel=0.2 any", "rel=0.1 ulps=3 any", "rel=0.2 peak=1e-9", "abs=1e308 peak=0.5",
                                 "abs=0.2 ulps=3", "exact nan=different", "abs=1 nan=forbid"})
        {
          const FieldOutcome atOnce   = Compare(a, inOrder, rule).blocks.at(0).fields;
          const FieldOutcome oneByOne = Compare(a, inReverse, rule).blocks.at(0).fields;
          ExpectSame(atOnce, oneByOne,
                     std::string(rule) + ' ' + format + ' ' + std::to_string(count) + ' ' + std::to_string(noise));
        }
      }
    }
  }
}

TEST(DatabaseComparison, WhatDiffersIsFoundInEveryChunk)
{
  constexpr std::size_t kCount = (std::size_t{1} << 18) + 5;  // more than one chunk of tensors
  std::vector<double>   first(6 * kCount);
  for (std::size_t i = 0; i < first.size(); ++i) first[i] = static_cast<double>(i % 7) - 3.0;
  std::vector<double> second = first;
  second[6 * 3 + 2] += 1.0;
  second[6 * (kCount - 2) + 5] += 2.0;
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetDoubles(a, Key(521), "T", first, 6, false);
  SetDoubles(b, Key(521), "T", second, 6, false);
  const FieldOutcome fields = Compare(a, b, "default").blocks.at(0).fields;
  EXPECT_EQ(fields.records, kCount);
  EXPECT_EQ(fields.differingValues, 2u);
  EXPECT_EQ(fields.norms.sumSquares, 5.0);
  ASSERT_EQ(fields.worst.size(), 2u);
  EXPECT_EQ(fields.worst[0].index, kCount - 1);
  EXPECT_EQ(fields.worst[0].component, 5u);
  EXPECT_EQ(fields.worst[1].index, 4u);
}

// Sums over all values are left out where nobody asks for them.
TEST(DatabaseComparison, NormsOfEqualBlocksAreLeftOutWhereNobodyWantsThem)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetScalars(a, Key(514), {3, 4});
  SetScalars(b, Key(514), {3, 4});
  SetScalars(a, Key(517), {3, 4});
  SetScalars(b, Key(517), {3, 5});
  ComparisonTerms terms;
  terms.allNorms                = false;
  const DatabaseOutcome outcome = CompareDatabases(WholeDatabase(a), WholeDatabase(b), terms);
  EXPECT_EQ(outcome.blocks[0].fields.norms.values, 2u);
  EXPECT_EQ(outcome.blocks[0].fields.norms.reference, 0.0);
  EXPECT_EQ(outcome.blocks[1].fields.norms.reference, 25.0);
  EXPECT_EQ(outcome.blocks[1].fields.norms.largest, 1.0);
  EXPECT_EQ(outcome.blocks[1].fields.norms.peak, 4.0);
}

TEST(DatabaseComparison, TheWorstOfEachComponentIsKept)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  const auto         set = [](FED_Database& db, int id, double x, double y, double z) {
    const double vector[3] = {x, y, z};
    FED_IdDataBlock(db.GetOrCreateDataBlock(Key(510), 0), db.GetIdMapsPool(), true).SetVector(id, vector);
  };
  set(a, 1, 0, 0, 0);
  set(b, 1, 1, 4, 0);
  set(a, 2, 0, 0, 0);
  set(b, 2, 2, 3, 0);
  const FieldOutcome fields = Compare(a, b, "abs=0.5").blocks[0].fields;
  ASSERT_EQ(fields.components.size(), 2u);  // z is the same
  EXPECT_EQ(fields.components[0].differingValues, 2u);
  EXPECT_EQ(fields.components[0].worst.component, 0u);
  EXPECT_EQ(fields.components[0].worst.index, 2u);
  EXPECT_EQ(fields.components[0].worst.b, Value(2.0));
  EXPECT_EQ(fields.components[0].worst.rule, "abs 2 > 0.5");
  EXPECT_EQ(fields.components[1].worst.component, 1u);
  EXPECT_EQ(fields.components[1].worst.index, 1u);
  EXPECT_EQ(fields.components[1].worst.excess, 8.0);
  ASSERT_EQ(fields.worst.size(), 2u);  // of each record its worst component
  EXPECT_EQ(fields.worst[0].index, 1u);
  EXPECT_EQ(fields.worst[0].component, 1u);
  EXPECT_EQ(fields.worst[1].index, 2u);
  EXPECT_EQ(fields.worst[1].component, 1u);
}

TEST(DatabaseComparison, OfDifferencesThatAreAsFarBeyondTheirRuleTheLargestIsTheWorst)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  const auto         set = [](FED_Database& db, int id, double x, double y) {
    const double vector[3] = {x, y, 0.0};
    FED_IdDataBlock(db.GetOrCreateDataBlock(Key(510), 0), db.GetIdMapsPool(), true).SetVector(id, vector);
  };
  // All are twice as large, which is 5 times what is allowed.
  set(a, 1, 1, 8);
  set(b, 1, 2, 16);
  set(a, 2, 4, 2);
  set(b, 2, 8, 4);
  const FieldOutcome fields = Compare(a, b, "rel=0.1").blocks[0].fields;
  ASSERT_EQ(fields.worst.size(), 2u);
  EXPECT_EQ(fields.worst[0].index, 1u);
  EXPECT_EQ(fields.worst[0].component, 1u);
  EXPECT_EQ(fields.worst[0].excess, 5.0);
  EXPECT_EQ(fields.worst[0].distance, 8.0);
  EXPECT_EQ(fields.worst[1].index, 2u);
  EXPECT_EQ(fields.worst[1].component, 0u);
  ASSERT_EQ(fields.components.size(), 2u);
  EXPECT_EQ(fields.components[0].worst.index, 2u);
  EXPECT_EQ(fields.components[1].worst.index, 1u);
}

TEST(DatabaseComparison, ARecordOfOneSideIsADifferenceOfTheRecordAsAWhole)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetScalars(a, Key(514), {3, 4, 5});
  SetScalars(b, Key(514), {3, 4});
  for (const bool isSecond : {false, true}) {
    const FieldOutcome fields = (isSecond ? Compare(b, a, "default") : Compare(a, b, "default")).blocks.at(0).fields;
    EXPECT_EQ(fields.missingRecords, isSecond ? 0u : 1u);
    EXPECT_EQ(fields.additionalRecords, isSecond ? 1u : 0u);
    ASSERT_EQ(fields.worst.size(), 1u);
    EXPECT_EQ(fields.worst[0].index, 3u);
    EXPECT_EQ(fields.worst[0].second, isSecond);
    EXPECT_EQ(fields.worst[0].field, 0u);
    EXPECT_EQ(fields.worst[0].component, 0u);
    EXPECT_EQ(fields.worst[0].rule, isSecond ? "record only in B" : "record missing in B");
  }
}

TEST(DatabaseComparison, EveryFieldOfARecordIsCompared)
{
  using Change    = std::function<void(FED_DataRecord&)>;
  const auto fill = [](FED_Database& db, const Change& change) {
    const double          values[6] = {1, 2, 3, 4, 5, 6};
    FED_DataBlock&        block     = *db.CreateDataBlock(Key(4711), 1, 20, "IDFSVTLbDb");
    FED_DataRecord* const record    = block.CreateDataRecord();
    record->SetInteger(1, 7);
    record->SetDouble(2, 0.5);
    record->SetFloat(3, 0.25f);
    record->SetString(4, "a");
    record->SetVector(5, values);
    record->SetTensor(6, values);
    record->SetIntList(7, FED_IntArray({1, 2}));
    record->SetDoubleList(8, FED_DoubleArray({1, 2, 3}));
    change(*record);
    block.SetRecord(1, *record);
    block.DeleteDataRecord(record);
  };
  const double other[6] = {1, 2, 4, 4, 5, 7};
  struct Row
  {
    Change      change;
    std::size_t field;
    std::size_t component;
    Value       a;
    Value       b;
    const char* rule;
  };
  const Row rows[] = {
      {[](FED_DataRecord& record) { record.SetInteger(1, 8); }, 1, 0, 7, 8, "integer"},
      {[](FED_DataRecord& record) { record.SetDouble(2, 1.5); }, 2, 0, 0.5, 1.5, "abs 1 > 0.5"},
      {[](FED_DataRecord& record) { record.SetFloat(3, 1.25f); }, 3, 0, 0.25f, 1.25f, "abs 1 > 0.5"},
      {[](FED_DataRecord& record) { record.SetString(4, "b"); }, 4, 0, std::string("a"), std::string("b"), "text"},
      {[&](FED_DataRecord& record) { record.SetVector(5, other); }, 5, 2, 3.0, 4.0, "abs 1 > 0.5"},
      {[&](FED_DataRecord& record) { record.SetTensor(6, other); }, 6, 2, 3.0, 4.0, "abs 1 > 0.5"},
      {[](FED_DataRecord& record) {
         record.SetIntList(7, FED_IntArray({1, 3}));
       },
       7, 1, 2, 3, "integer"},
      {[](FED_DataRecord& record) { record.SetIntList(7, FED_IntArray({1})); }, 7, 0, 2, 1, "length"},
      {[](FED_DataRecord& record) {
         record.SetDoubleList(8, FED_DoubleArray({1, 2, 5}));
       },
       8, 2, 3.0, 5.0, "abs 2 > 0.5"},
      {[](FED_DataRecord& record) {
         record.SetDoubleList(8, FED_DoubleArray({1, 2, 3, 4}));
       },
       8, 0, 3, 4, "length"},
  };
  FED_ResultDatabase a;
  fill(a, [](FED_DataRecord&) {});
  const FieldOutcome same = Compare(a, a, "abs=0.5").blocks.at(0).fields;
  EXPECT_TRUE(same.IsSame());
  EXPECT_EQ(same.norms.values, 14u);
  EXPECT_EQ(same.norms.reference, 0.3125 + 14.0 + 91.0 + 14.0);
  EXPECT_EQ(same.norms.peak, 6.0);
  for (const Row& row : rows) {
    FED_ResultDatabase b;
    fill(b, row.change);
    const FieldOutcome fields = Compare(a, b, "abs=0.5").blocks.at(0).fields;
    ASSERT_EQ(fields.worst.size(), 1u) << row.field;
    EXPECT_EQ(fields.worst[0].field, row.field);
    EXPECT_EQ(fields.worst[0].component, row.component) << row.field;
    EXPECT_EQ(fields.worst[0].a, row.a) << row.field;
    EXPECT_EQ(fields.worst[0].b, row.b) << row.field;
    EXPECT_EQ(fields.worst[0].rule, row.rule) << row.field;
  }
  FED_ResultDatabase    b;
  FED_DataBlock&        block  = *b.CreateDataBlock(Key(4711), 1, 20, "ID");
  FED_DataRecord* const record = block.CreateDataRecord();
  block.SetRecord(1, *record);
  block.DeleteDataRecord(record);
  const FieldOutcome fields = Compare(a, b, "abs=0.5").blocks.at(0).fields;
  ASSERT_EQ(fields.worst.size(), 1u);
  EXPECT_EQ(fields.worst[0].field, 0u);
  EXPECT_EQ(fields.worst[0].a, Value(8));
  EXPECT_EQ(fields.worst[0].b, Value(2));
  EXPECT_EQ(fields.worst[0].rule, "fields");
}

TEST(DatabaseComparison, StopsWhereItIsInterrupted)
{
  FED_ResultDatabase a;
  SetScalars(a, Key(514), {3, 4});
  const FED_DataBlock&                   block = a.GetConstDataBlock(Key(514));
  const QuilonDataBlockDiff::CompareInfo info;
  const Transformation                   asIs;
  RecordPairs                            pairs;
  pairs.Add(1, 1);
  pairs.Add(2, 2);
  void (*const former)(int) = std::signal(SIGINT, [](int) {});
  {
    const quilon::InterruptWatch watch;
    std::raise(SIGINT);
    for (const char* text : {"default", "library"}) {  // many values at once, and record by record
      const ComparisonRule rule  = ParseRule(text, "");
      FieldTerms           terms = {rule, info, asIs};
      terms.allNorms             = false;
      EXPECT_THROW(CompareFields(block, block, pairs, terms), quilon::Interrupted) << text;
    }
    EXPECT_THROW(FindNans(block, false, 1), quilon::Interrupted);
  }
  std::signal(SIGINT, former);
}

// Sums of forces are printed a component each: where nothing pulls, the sum is all rounding.
TEST(DatabaseComparison, TheComponentsOfAPrintedSumHaveOnePeak)
{
  const auto fill = [](FED_Database& db, double x, double y, double other) {
    const auto set = [&](int onf, const std::string& name, double value) {
      db.SetUserKindName(static_cast<FED_OnfId>(onf), name);
      FED_DataDescriptor key(0, FED_OnfId_ScalarHistory);
      key.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(10), onf);
      db.GetOrCreateDataBlock(key, 0).SetScalarAt(1, value);
    };
    set(1800, "total force x NFIX", x);
    set(1801, "total force y NFIX", y);
    set(1802, "total force x NEND", other);
  };
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  fill(a, 1e-12, 600, 5);
  fill(b, -3e-12, 600, 5);
  const DatabaseOutcome noise = Compare(a, b, "default");
  EXPECT_TRUE(noise.IsSame());
  EXPECT_EQ(noise.blocks[0].fields.norms.peak, 600.0);
  EXPECT_EQ(noise.blocks[2].fields.norms.peak, 5.0);
  EXPECT_FALSE(Compare(a, b, "rel=1e-5").IsSame());
  fill(b, 1, 600, 5);
  EXPECT_FALSE(Compare(a, b, "default").IsSame());
  // Another set's sum is no component of it.
  fill(b, 1e-12, 600, 5.005);
  EXPECT_FALSE(Compare(a, b, "default").IsSame());
}

TEST(DatabaseComparison, AModeOfZerosKeepsItsSign)
{
  FED_DataDescriptor key = Key(521);
  key.SetInteger(FED_DataDescriptor::Analysis, 2);
  const auto fill = [&key](FED_Database& db, double value) {
    const double tensor[6] = {value, 0, 0, 0, 0, 0};
    FED_IdDataBlock(db.GetOrCreateDataBlock(key, 0), db.GetIdMapsPool(), true).SetTensor(1, tensor);
  };
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  fill(a, 0.0);
  fill(b, 0.0);
  EXPECT_FALSE(Compare(a, b, "default mode-sign").blocks[0].isNegated);
  fill(a, 1.0);
  fill(b, -1.0);
  EXPECT_TRUE(Compare(a, b, "default mode-sign").blocks[0].isNegated);
}

TEST(DatabaseComparison, ANodeOfASetThatHasNoCounterpartDiffersFromANodeOfTheSameId)
{
  const auto make = [](FED_Database& db) {
    FED_DataBlock&        block  = *db.CreateDataBlock(FED_DataDescriptor(0, FED_OnfId(600)), 1, 20, "Slb");
    FED_DataRecord* const record = block.CreateDataRecord();
    record->SetString(1, "EDGE");
    record->SetIntList(2, FED_IntArray({1, 9}));
    block.SetRecord(db.GetIdMapsPool().FindOrAddIndex(3, 1), *record);
    block.DeleteDataRecord(record);
  };
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  make(a);
  make(b);
  MeshMatch mesh;
  mesh.nodes = {{1, 1}};  // node 9 of either is somewhere else
  ComparisonTerms terms;
  terms.mesh                  = &mesh;
  const DatabaseOutcome found = CompareDatabases(WholeDatabase(a), WholeDatabase(b), terms);
  ASSERT_EQ(found.blocks.size(), 1u);
  ASSERT_EQ(found.blocks[0].fields.worst.size(), 1u);
  EXPECT_EQ(found.blocks[0].fields.worst[0].rule, "no counterpart in B");
  EXPECT_EQ(found.blocks[0].fields.worst[0].a, Value(9));
  mesh.nodes = {{1, 1}, {9, 9}};
  EXPECT_TRUE(CompareDatabases(WholeDatabase(a), WholeDatabase(b), terms).IsSame());
}

// Under the library's rule as well, whose own comparison knows of no order.
TEST(DatabaseComparison, ASetOfElementsIsTheSameInAnotherOrderWherePlacesAreCompared)
{
  const auto make = [](FED_Database& db, const std::vector<int>& elements) {
    FED_DataBlock&        block  = *db.CreateDataBlock(FED_DataDescriptor(0, FED_OnfId(601)), 1, 20, "Slb");
    FED_DataRecord* const record = block.CreateDataRecord();
    record->SetString(1, "PART");
    record->SetIntList(2, FED_IntArray(elements));
    block.SetRecord(db.GetIdMapsPool().FindOrAddIndex(2, 1), *record);
    block.DeleteDataRecord(record);
  };
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  make(a, {7, 8});
  make(b, {8, 7});
  EXPECT_FALSE(Compare(a, b, "library").IsSame());
  MeshMatch       mesh;
  ComparisonTerms terms;
  terms.mesh           = &mesh;
  terms.rules.fallback = ParseRule("library", "");
  EXPECT_TRUE(CompareDatabases(WholeDatabase(a), WholeDatabase(b), terms).IsSame());
}

std::string Learn(const std::vector<const FED_Database*>& runs, double factor, const std::string& head = "")
{
  const quilon::KindTable kinds(*runs.front());
  RuleLearner             learner(kinds, factor, false);
  ComparisonTerms         terms;
  terms.rules = learner.GetRules();
  for (std::size_t i = 0; i < runs.size(); ++i)
    for (std::size_t j = i + 1; j < runs.size(); ++j)
      learner.Add(CompareDatabases(WholeDatabase(*runs[i]), WholeDatabase(*runs[j]), terms),
                  quilon::KindTable(*runs[i]), "runs");
  return learner.WriteRules(head);
}

TEST(RuleLearner, TakesTheLargestFractionOfAllBlocksOfAKind)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetScalars(a, Key(514, 1), {8, 0});
  SetScalars(b, Key(514, 1), {8, 0.0625});  // 1/128 of the peak
  SetScalars(a, Key(514, 2), {64, 0});
  SetScalars(b, Key(514, 2), {64, 0.25});  // 1/256
  EXPECT_EQ(Learn({&a, &b}, 16), "temperature: peak=0.125\n");
}

TEST(RuleLearner, ABlockOfNoiseCountsAsItIs)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetScalars(a, Key(514, 1), {0.0, 0.0});
  SetScalars(b, Key(514, 1), {0x1p-10, 0.0});
  EXPECT_EQ(Learn({&a, &b}, 1024), "temperature: abs=1\n");
  SetScalars(a, Key(514, 2), {1024, 1});
  SetScalars(b, Key(514, 2), {1024, 2});
  EXPECT_EQ(Learn({&a, &b}, 1024), "temperature: abs=1 peak=1 any\n");
}

TEST(RuleLearner, RoundsUpInTheThirdDigit)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetScalars(a, Key(514), {0.0});
  SetScalars(b, Key(514), {1.2341});
  EXPECT_EQ(Learn({&a, &b}, 1), "temperature: abs=1.24\n");
  SetScalars(b, Key(514), {9.991});
  EXPECT_EQ(Learn({&a, &b}, 1), "temperature: abs=10\n");
}

TEST(RuleLearner, AKindWithoutDifferencesStaysSo)
{
  FED_ResultDatabase a;
  SetScalars(a, Key(514), {1, std::numeric_limits<double>::quiet_NaN()});
  EXPECT_EQ(Learn({&a, &a}, 10, "# head\n"), "# head\ntemperature: abs=0\n");
}

TEST(RuleLearner, LearntRulesAcceptTheRunsEvenWithFactorOne)
{
  std::mt19937                           random(3);
  std::uniform_real_distribution<double> noise(-1e-3, 1e-3);
  FED_ResultDatabase                     a;
  FED_ResultDatabase                     b;
  for (int loadCase = 1; loadCase <= 50; ++loadCase) {
    std::vector<double> first;
    std::vector<double> second;
    for (int i = 0; i < 20; ++i) {
      first.push_back(static_cast<double>(loadCase) * noise(random) * (loadCase % 2 == 0 ? 1e3 : 1.0));
      second.push_back(first.back() + noise(random));
    }
    SetScalars(a, Key(514, loadCase), first);
    SetScalars(b, Key(514, loadCase), second);
  }
  ComparisonTerms         terms;
  const quilon::KindTable kinds;
  terms.rules.AddText(
      Learn({&a, &b}, 1), [&](std::string_view kind) { return kinds.Resolve(kind); }, "rules");
  EXPECT_TRUE(CompareDatabases(WholeDatabase(a), WholeDatabase(b), terms).IsSame());
}

TEST(RuleLearner, AFractionThatRoundsDownStillAcceptsItsRuns)
{
  // The quotient of the two is the double next to 0.005, and that times the peak is an ulp below the difference.
  const double       difference = 0x1.f2e147ae147afp-1;
  const double       peak       = 194.875;
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  ASSERT_EQ(difference / peak, 0.005);
  ASSERT_LT(0.005 * peak, difference);
  SetScalars(a, Key(514), {0.0, peak});
  SetScalars(b, Key(514), {difference, peak});
  ComparisonTerms         terms;
  const quilon::KindTable kinds;
  terms.rules.AddText(
      Learn({&a, &b}, 1), [&](std::string_view kind) { return kinds.Resolve(kind); }, "rules");
  EXPECT_TRUE(CompareDatabases(WholeDatabase(a), WholeDatabase(b), terms).IsSame());
}

TEST(RuleLearner, ADifferenceTimesTheFactorThatIsNoNumberBecomesTheLargest)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetScalars(a, Key(514), {0.0});
  SetScalars(b, Key(514), {1e308});
  EXPECT_EQ(Learn({&a, &b}, 10), "temperature: abs=1.7976931348623157e+308\n");
}

TEST(RuleLearner, UserKindsGoByTheirNamesWhateverTheirIdsInEachRun)
{
  const auto fill = [](FED_Database& db, int wear, int heat, double value) {
    db.SetUserKindName(static_cast<FED_OnfId>(wear), "Wear");
    db.SetUserKindName(static_cast<FED_OnfId>(heat), "Heat");
    SetScalars(db, Key(wear), {value});
    SetScalars(db, Key(heat), {1.0});
  };
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  FED_ResultDatabase c;
  fill(a, 1000, 1001, 1.0);
  fill(b, 1001, 1000, 1.0);
  fill(c, 1002, 1003, 1.5);
  EXPECT_EQ(Learn({&a, &b, &c}, 10), "Wear: abs=5\nHeat: abs=0\n");
}

TEST(RuleLearner, KindsWhoseNamesMeanSomethingElseAreWrittenByTheirIds)
{
  FED_ResultDatabase a;
  a.SetUserKindName(static_cast<FED_OnfId>(1000), "Wear, depth");
  a.SetUserKindName(static_cast<FED_OnfId>(1001), "Wear #2");
  a.SetUserKindName(static_cast<FED_OnfId>(1002), "Wear: 3");
  for (const int onf : {1000, 1001, 1002}) SetScalars(a, Key(onf), {1});
  a.CreateDataBlock(Key(4711), 1, 20, "D")->SetScalarAt(1, 1.0);
  EXPECT_EQ(Learn({&a, &a}, 10), "1000: abs=0\n1001: abs=0\nWear: 3: abs=0\nonf-4711: abs=0\n");
}

class Verification : public testing::Test
{
protected:
  void Write(const FED_DataDescriptor& key, const std::vector<double>& values) const
  {
    QuilonOnfTxtDatabase database(std::filesystem::path(written_).wstring());
    database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, std::wstring(), nullptr);
    SetScalars(database, key, values);
    database.ReleaseDb(true);
  }

  std::string Verify() const
  {
    quilon::Console console;
    try {
      quilon::OpenedDatabase written(written_, console);
      quilon::VerifyWritten(source_, source_.GetDataDescriptors(FED_DataDescriptorPattern()), "source", written.Get(),
                            written_);
    } catch (const FED_Failure& failure) {
      return failure.GetMessage();
    }
    return "";
  }

  quilon_test::TempFolder folder_;
  std::string             written_ = (folder_ / "written.onf").string();
  FED_ResultDatabase      source_;
};

TEST_F(Verification, EqualValuesAreAccepted)
{
  const std::vector<double> values = {1.0 / 3.0, -0.0, 5e-324, std::numeric_limits<double>::infinity(),
                                      std::numeric_limits<double>::quiet_NaN()};
  SetScalars(source_, Key(514), values);
  Write(Key(514), values);
  EXPECT_EQ(Verify(), "");
}

TEST_F(Verification, BlocksThatWereThereBeforeDoNotMatter)
{
  SetScalars(source_, Key(514), {1});
  Write(Key(514), {1});
  Write(Key(517), {7});
  EXPECT_EQ(Verify(), "");
}

TEST_F(Verification, AValueThatIsOffByItsLastBitIsFound)
{
  SetScalars(source_, Key(514), {1, 2});
  Write(Key(514), {1, std::nextafter(2.0, 3.0)});
  EXPECT_EQ(Verify(), written_ +
                          ": what was written is not what was read from source: different: 1 of 1 block, 1 of 2 "
                          "records; worst: temperature it=0,lc=1 id 2 value, ulps 1 > 0");
}

TEST_F(Verification, ABlockThatIsMissingIsFound)
{
  SetScalars(source_, Key(514), {1});
  Write(Key(517), {1});
  EXPECT_EQ(Verify(), written_ +
                          ": what was written is not what was read from source: different: 0 of 0 blocks, 0 of 0 "
                          "records, 1 block missing in B; worst: temperature it=0,lc=1, block missing in B");
}

}  // namespace
