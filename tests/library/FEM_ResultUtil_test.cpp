#include <FEM_ResultUtil.h>

#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonUtilities/FED_Failure.h>
#include <QuilonUtilities/FED_IntegerCodedBoolVector.h>

#include "LogCapture.h"
#include "RecordingDatabase.h"
#include "Snapshot.h"

namespace {

using quilon_test::Detail;
using quilon_test::LogCapture;
using quilon_test::RecordingDatabase;
using quilon_test::Snapshot;
using Lines       = std::vector<std::string>;
using Content     = std::map<std::string, std::string>;
using StressField = FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6>;
using Indices     = std::vector<std::pair<FED_DataDescriptor::ResultIndex, int>>;

constexpr auto kLoadCase  = FED_DataDescriptor::LoadCase;
constexpr auto kSubstep   = FED_DataDescriptor::Substep;
constexpr auto kAnalysis  = FED_DataDescriptor::Analysis;
constexpr auto kIncrement = FED_DataDescriptor::Increment;
constexpr auto kLayer     = FED_DataDescriptor::Layer;

FED_DataDescriptor Descriptor(int onf, const Indices& indices = {})
{
  FED_DataDescriptor descriptor(1, static_cast<FED_OnfId>(onf));
  for (const auto& [index, value] : indices) descriptor.SetInteger(index, value);
  return descriptor;
}

void StoreNodes(FED_Database& db, int element, const std::vector<int>& nodes)
{
  FED_IdDataBlock   view(db.GetOrCreateDataBlock(Descriptor(595), 0), db.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.SetIntList(1, nodes);
  view.SetRecord(element, record);
}

const char* const kOrderDiffers =
    "The Node ID order within the element definition is different from the previously defined.";

void ExpectOrderDiffers(FED_Database& db, int element, const std::vector<int>& nodes)
{
  try {
    FEM_ResultUtil::AreElementNodesDefined(db, Descriptor(595), element, nodes);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), kOrderDiffers);
    EXPECT_EQ(failure.GetTag(), "|%P|BrevanFem|FEM_ResultUtil");
  }
}

double ScalarOf(FED_Database& db, const FED_DataDescriptor& descriptor, int id)
{
  const FED_ConstIdDataBlock view(db.GetConstDataBlock(descriptor), std::as_const(db).GetIdMapsPool());
  double                     value = std::nan("");
  view.GetScalar(id, value);
  return value;
}

}  // namespace

// SetResultScalar

TEST(SetResultScalar, StoresAtTheSubstepInTheBlockOfOnf500AndSubstep1)
{
  FED_ResultDatabase       inner;
  RecordingDatabase        db(inner);
  const FED_DataDescriptor descriptor = Descriptor(503, {{kLoadCase, 2}, {kSubstep, 7}});
  const FED_DataDescriptor before     = descriptor;
  FEM_ResultUtil::SetResultScalar(db, descriptor, 2.5);
  EXPECT_EQ(db.GetLines(), (Lines{"db.GetOrCreateDataBlock(<500 it=1 lc=2 sub=1>, 0)",
                                  "block<500 it=1 lc=2 sub=1>.SetScalarAt(7, 2.5)"}));
  EXPECT_EQ(Snapshot(inner), (Content{{"<500 it=1 lc=2 sub=1> 7", "[D 2.5]"}}));
  EXPECT_TRUE(descriptor == before) << "the caller's descriptor is not changed";
}

TEST(SetResultScalar, SubstepsOfOneStepShareABlockAndOthersHaveTheirOwn)
{
  FED_ResultDatabase db;
  FEM_ResultUtil::SetResultScalar(db, Descriptor(501, {{kLoadCase, 2}, {kSubstep, 1}}), 0.5);
  FEM_ResultUtil::SetResultScalar(db, Descriptor(501, {{kLoadCase, 2}, {kSubstep, 2}}), 1.0);
  FEM_ResultUtil::SetResultScalar(db, Descriptor(501, {{kLoadCase, 3}, {kSubstep, 2}}), 7.0);
  FEM_ResultUtil::SetResultScalar(db, Descriptor(501, {{kLoadCase, 2}, {kSubstep, 2}, {kLayer, 4}}), 8.0);
  EXPECT_EQ(Snapshot(db), (Content{{"<500 it=1 lc=2 sub=1> 1", "[D 0.5]"},
                                   {"<500 it=1 lc=2 sub=1> 2", "[D 1]"},
                                   {"<500 it=1 lc=3 sub=1> 2", "[D 7]"},
                                   {"<500 it=1 lc=2 sub=1 lay=4> 2", "[D 8]"}}));
}

TEST(SetResultScalar, OverwritesTheScalarOfTheSameSubstep)
{
  FED_ResultDatabase db;
  FEM_ResultUtil::SetResultScalar(db, Descriptor(501, {{kSubstep, 3}}), 1.0);
  FEM_ResultUtil::SetResultScalar(db, Descriptor(502, {{kSubstep, 3}}), 2.0);
  EXPECT_EQ(Snapshot(db), (Content{{"<500 it=1 sub=1> 3", "[D 2]"}}));
}

TEST(SetResultScalar, StoresAtZeroWithoutASubstep)
{
  FED_ResultDatabase db;
  FEM_ResultUtil::SetResultScalar(db, Descriptor(501), 1.0);
  EXPECT_EQ(Snapshot(db), (Content{{"<500 it=1 sub=1> 0", "[D 1]"}}));
}

TEST(SetResultScalar, GoesByTheSubstepThatWasLeftUnderAClearBit)
{
  FED_ResultDatabase db;
  FED_DataDescriptor descriptor = Descriptor(501);
  descriptor.values[kSubstep]   = 5;
  FEM_ResultUtil::SetResultScalar(db, descriptor, 1.0);
  EXPECT_EQ(Snapshot(db), (Content{{"<500 it=1 sub=1> 5", "[D 1]"}}));
}

TEST(SetResultScalar, WidensANegativeSubstepForTheDatabaseToRefuse)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner);
  EXPECT_THROW(FEM_ResultUtil::SetResultScalar(db, Descriptor(501, {{kSubstep, -1}}), 1.0), FED_Failure);
  EXPECT_EQ(db.GetLines(), (Lines{"db.GetOrCreateDataBlock(<500 it=1 sub=1>, 0)",
                                  "block<500 it=1 sub=1>.SetScalarAt(" +
                                      std::to_string(std::numeric_limits<std::size_t>::max()) + ", 1)"}));
  EXPECT_EQ(Snapshot(inner), Content{});
}

// SetResultMatrix

TEST(SetResultMatrix, AsksForTheIdMapsThenTheBlockAndFreesItsRecord)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Records);
  FEM_ResultUtil::SetResultMatrix(db, Descriptor(597), 30, 2, {1.0, 2.0, 2.0, 5.0});
  EXPECT_EQ(db.GetLines(),
            (Lines{"db.GetIdMapsPool()", "db.GetOrCreateDataBlock(<597 it=1>, 0)", "block<597 it=1>.CreateDataRecord()",
                   "record<597 it=1>.SetInteger(1, 2)", "record<597 it=1>.SetDoubleList(2, (1 2 2 5))",
                   "pool.FindOrAddIndex(1, 30)", "block<597 it=1>.SetRecord(1, [I 2; Db 1 2 2 5])",
                   "block<597 it=1>.DeleteDataRecord()"}));
  EXPECT_EQ(db.GetMadeScratchRecords(), 1u);
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
}

TEST(SetResultMatrix, StoresASizeThatDoesNotMatchTheValuesAsGiven)
{
  FED_ResultDatabase db;
  FEM_ResultUtil::SetResultMatrix(db, Descriptor(597), 30, 9, {1.0});
  FEM_ResultUtil::SetResultMatrix(db, Descriptor(597), 31, -1, {});
  EXPECT_EQ(Snapshot(db), (Content{{"<597 it=1> 1", "[I 9; Db 1]"}, {"<597 it=1> 2", "[I -1; Db]"}}));
}

TEST(SetResultMatrix, ReplacesTheRecordOfTheSameIdOnly)
{
  FED_ResultDatabase db;
  FEM_ResultUtil::SetResultMatrix(db, Descriptor(597), 30, 1, {1.0});
  FEM_ResultUtil::SetResultMatrix(db, Descriptor(597), 10, 1, {2.0});
  FEM_ResultUtil::SetResultMatrix(db, Descriptor(597), 30, 1, {3.0});
  EXPECT_EQ(Snapshot(db), (Content{{"<597 it=1> 1", "[I 1; Db 3]"}, {"<597 it=1> 2", "[I 1; Db 2]"}}));
}

// SetElementMatrixInfo

TEST(SetElementMatrixInfo, AsksForTheIdMapsThenTheBlockAndFreesItsRecord)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Records);
  FEM_ResultUtil::SetElementMatrixInfo(db, Descriptor(590), -4, {true, false, true}, {7, 8});
  EXPECT_EQ(
      db.GetLines(),
      (Lines{"db.GetIdMapsPool()", "db.GetOrCreateDataBlock(<590 it=1>, 0)", "block<590 it=1>.CreateDataRecord()",
             "record<590 it=1>.SetInteger(1, 5)", "record<590 it=1>.SetIntList(2, (7 8))", "pool.FindOrAddIndex(1, -4)",
             "block<590 it=1>.SetRecord(1, [I 5; Lb 7 8])", "block<590 it=1>.DeleteDataRecord()"}));
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
}

TEST(SetElementMatrixInfo, PacksTheFlagsAsTheUtilityDoes)
{
  const std::vector<std::vector<bool>> rows = {
      {}, {false}, {true}, {true, false, true}, std::vector<bool>(31, true), std::vector<bool>(32, true)};
  for (const std::vector<bool>& flags : rows) {
    unsigned int code = 0;
    FED_IntegerCodedBoolVector::BoolVecToInt(flags, code);
    FED_ResultDatabase db;
    FEM_ResultUtil::SetElementMatrixInfo(db, Descriptor(590), 1, flags, {});
    EXPECT_EQ(Snapshot(db), (Content{{"<590 it=1> 1", "[I " + std::to_string(static_cast<int>(code)) + "; Lb]"}}));
  }
}

TEST(SetElementMatrixInfo, StoresNothingWhenTheFlagsDoNotFit)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner);
  EXPECT_THROW(FEM_ResultUtil::SetElementMatrixInfo(db, Descriptor(590), 1, std::vector<bool>(33), {1}), FED_Failure);
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
  EXPECT_EQ(Snapshot(inner), Content{});
}

// AreElementNodesDefined

TEST(AreElementNodesDefined, IsFalseWithoutARecordOfTheElement)
{
  FED_ResultDatabase inner;
  StoreNodes(inner, 5, {1, 2});
  RecordingDatabase db(inner);
  EXPECT_FALSE(FEM_ResultUtil::AreElementNodesDefined(db, Descriptor(595), 6, {1, 2}));
  EXPECT_EQ(db.GetLines(),
            (Lines{"db.GetIdMapsPool()", "db.GetOrCreateDataBlock(<595 it=1>, 0)", "pool.FindIndex(1, 6)"}));
  EXPECT_EQ(db.GetMadeScratchRecords(), 0u);
}

TEST(AreElementNodesDefined, IsFalseForAKnownElementWithoutARecordHere)
{
  FED_ResultDatabase db;
  StoreNodes(db, 5, {1, 2});
  EXPECT_FALSE(FEM_ResultUtil::AreElementNodesDefined(db, Descriptor(595, {{kLoadCase, 1}}), 5, {1, 2}));
}

TEST(AreElementNodesDefined, IsFalseInAnEmptyDatabase)
{
  FED_ResultDatabase db;
  EXPECT_FALSE(FEM_ResultUtil::AreElementNodesDefined(db, Descriptor(595), 5, {}));
}

TEST(AreElementNodesDefined, ReadsTheStoredListWithARecordThatItFrees)
{
  FED_ResultDatabase inner;
  StoreNodes(inner, 5, {3, 4, 9});
  RecordingDatabase db(inner, Detail::Records);
  EXPECT_TRUE(FEM_ResultUtil::AreElementNodesDefined(db, Descriptor(595), 5, {3, 4, 9}));
  const Lines& lines = db.GetLines();
  ASSERT_GE(lines.size(), 4u);
  EXPECT_EQ(lines[0], "db.GetIdMapsPool()");
  EXPECT_EQ(lines[1], "db.GetOrCreateDataBlock(<595 it=1>, 0)");
  EXPECT_EQ(lines[lines.size() - 3], "block<595 it=1>.GetRecord(1)");
  EXPECT_EQ(lines[lines.size() - 2], "record<595 it=1>.GetIntList(1)");
  EXPECT_EQ(lines[lines.size() - 1], "block<595 it=1>.DeleteDataRecord()");
  EXPECT_EQ(db.GetMadeScratchRecords(), 1u);
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
}

TEST(AreElementNodesDefined, IsTrueForNoNodes)
{
  FED_ResultDatabase db;
  StoreNodes(db, 5, {3, 4});
  EXPECT_TRUE(FEM_ResultUtil::AreElementNodesDefined(db, Descriptor(595), 5, {}));
}

TEST(AreElementNodesDefined, ALongerStoredListAgrees)
{
  FED_ResultDatabase db;
  StoreNodes(db, 5, {3, 4, 9});
  EXPECT_TRUE(FEM_ResultUtil::AreElementNodesDefined(db, Descriptor(595), 5, {3, 4}));
}

TEST(AreElementNodesDefined, AShorterStoredListDiffers)
{
  FED_ResultDatabase db;
  StoreNodes(db, 5, {3, 4});
  StoreNodes(db, 6, {});
  ExpectOrderDiffers(db, 5, {3, 4, 9});
  ExpectOrderDiffers(db, 6, {3});
}

TEST(AreElementNodesDefined, FailsForAnotherOrder)
{
  FED_ResultDatabase db;
  StoreNodes(db, 5, {3, 4});
  ExpectOrderDiffers(db, 5, {4, 3});
  ExpectOrderDiffers(db, 5, {3, 5});
}

TEST(AreElementNodesDefined, ADifferenceLeavesTheDatabaseAndTheLogAsTheyWere)
{
  FED_ResultDatabase inner;
  StoreNodes(inner, 5, {3, 4});
  const Content     before = Snapshot(inner);
  RecordingDatabase db(inner);
  LogCapture        log;
  ExpectOrderDiffers(db, 5, {4, 3});
  EXPECT_EQ(log.GetTexts(), Lines{});
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
  EXPECT_EQ(Snapshot(inner), before);
}

// MatricesOnfLoc

TEST(MatricesOnfLoc, HasTheSixOnfIdsOfTheStep)
{
  const FEM_ResultUtil::MatricesOnfLoc matrices(Descriptor(521));
  for (int i = 0; i < 3; ++i) {
    const auto& [first, second] = matrices.pairs[static_cast<std::size_t>(i)];
    EXPECT_EQ(quilon_test::Key(first), "<" + std::to_string(597 + i) + " it=1>");
    EXPECT_EQ(quilon_test::Key(second), "<" + std::to_string(590 + i) + " it=1>");
  }
}

TEST(MatricesOnfLoc, OnlyTheFirstOfAPairDropsTheIncrement)
{
  const FED_DataDescriptor descriptor =
      Descriptor(521, {{kLoadCase, 2}, {kSubstep, 5}, {kAnalysis, 1}, {kIncrement, 3}, {kLayer, 4}});
  const FEM_ResultUtil::MatricesOnfLoc matrices(descriptor);
  for (int i = 0; i < 3; ++i) {
    const auto& [first, second] = matrices.pairs[static_cast<std::size_t>(i)];
    EXPECT_EQ(quilon_test::Key(first), "<" + std::to_string(597 + i) + " it=1 ~lc=2 ~sub=5 ~an=1 ~inc=3 lay=4>");
    EXPECT_EQ(quilon_test::Key(second), "<" + std::to_string(590 + i) + " it=1 ~lc=2 ~sub=5 ~an=1 inc=3 lay=4>");
  }
}

TEST(MatricesOnfLoc, ClearsExactlyTheMaskBitsOfTheDroppedIndices)
{
  FED_DataDescriptor descriptor;
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index) {
    descriptor.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(index), index + 1);
  }
  const FEM_ResultUtil::MatricesOnfLoc matrices(descriptor);
  EXPECT_EQ(matrices.pairs[0].first.mask, 0x3fffu & ~0x78u);
  EXPECT_EQ(matrices.pairs[0].second.mask, 0x3fffu & ~0x38u);
}

TEST(MatricesOnfLoc, ResetsTheCachedIntegers)
{
  FED_DataDescriptor descriptor = Descriptor(521, {{kIncrement, 3}});
  descriptor.cached[0]          = 17;
  descriptor.cached[1]          = 18;
  const FEM_ResultUtil::MatricesOnfLoc matrices(descriptor);
  for (const auto& [first, second] : matrices.pairs) {
    for (const FED_DataDescriptor& each : {first, second}) {
      EXPECT_EQ(each.cached[0], -1);
      EXPECT_EQ(each.cached[1], -1);
    }
  }
}

TEST(MatricesOnfLoc, CopiesAndMovesAllSix)
{
  const FEM_ResultUtil::MatricesOnfLoc matrices(Descriptor(521, {{kLayer, 4}}));
  FEM_ResultUtil::MatricesOnfLoc       copy(Descriptor(510));
  copy = matrices;
  EXPECT_TRUE(copy.pairs == matrices.pairs);
  FEM_ResultUtil::MatricesOnfLoc moved(Descriptor(510));
  moved = std::move(copy);
  EXPECT_TRUE(moved.pairs == matrices.pairs);
}

// CalculateNodalStressError: the error of e = sqrt(m2 / n^2), read as a tensor.

TEST(CalculateNodalStressError, OneElementHasNoError)
{
  StressField stats;
  stats.AddValue(4, {100.0, 50.0, 25.0, 12.0, 6.0, 3.0});
  FED_ResultDatabase db;
  FEM_ResultUtil::CalculateNodalStressError(db, Descriptor(551), stats, true, nullptr);
  EXPECT_EQ(Snapshot(db), (Content{{"<551 it=1> 1", "[D 0]"}}));
}

TEST(CalculateNodalStressError, IsTheLargestPrincipalValueOfTheStandardErrors)
{
  // Per component, for values p and q: m2 = (p - q)^2 / 2, n = 2, so e = |p - q| / sqrt(8).
  struct Row
  {
    const char* name;
    double      p[6];
    double      q[6];
    double      expected;
  };
  const double unit   = std::sqrt(8.0);
  const Row    rows[] = {
         {"uniaxial", {100, 0, 0, 0, 0, 0}, {200, 0, 0, 0, 0, 0}, std::sqrt(5000.0 / 4)},
         {"falling", {200, 0, 0, 0, 0, 0}, {100, 0, 0, 0, 0, 0}, std::sqrt(5000.0 / 4)},
         {"two axes", {unit, 3 * unit, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0}, 3.0},
         // In the plane: (a + b) / 2 + sqrt(((a - b) / 2)^2 + c^2) with a = 3, b = 1, c = 1.
         {"plane", {3 * unit, unit, 0, unit, 0, 0}, {0, 0, 0, 0, 0, 0}, 2 + std::sqrt(2.0)},
         {"shear yz", {0, 0, 0, 0, 7 * unit, 0}, {0, 0, 0, 0, 0, 0}, 7.0},
  };
  for (const Row& row : rows) {
    StressField stats;
    stats.AddValue(9, row.p);
    stats.AddValue(9, row.q);
    FED_ResultDatabase db;
    FEM_ResultUtil::CalculateNodalStressError(db, Descriptor(551), stats, true, nullptr);
    // A few roundings of the mean, the square root and the closed form.
    EXPECT_NEAR(ScalarOf(db, Descriptor(551), 9), row.expected, 1e-14 * row.expected) << row.name;
  }
}

TEST(CalculateNodalStressError, WritesZeroForAnEntryThatWasReset)
{
  StressField stats;
  stats.AddValue(9, {100, 0, 0, 0, 0, 0});
  stats.AddValue(9, {200, 0, 0, 0, 0, 0});
  stats.ResetField();
  FED_ResultDatabase db;
  FEM_ResultUtil::CalculateNodalStressError(db, Descriptor(551), stats, true, nullptr);
  EXPECT_EQ(Snapshot(db), (Content{{"<551 it=1> 1", "[D 0]"}}));
}

TEST(CalculateNodalStressError, ReadsLayer0Alone)
{
  StressField stats(2);
  stats.AddValue(9, 1, {100, 0, 0, 0, 0, 0});
  stats.AddValue(9, 1, {200, 0, 0, 0, 0, 0});
  stats.AddValue(8, 0, {1, 0, 0, 0, 0, 0});
  FED_ResultDatabase db;
  FEM_ResultUtil::CalculateNodalStressError(db, Descriptor(551), stats, true, nullptr);
  EXPECT_EQ(Snapshot(db).size(), 1u);
  EXPECT_EQ(ScalarOf(db, Descriptor(551), 8), 0.0);
}

TEST(CalculateNodalStressError, TheBlockNeverCarriesALayer)
{
  StressField stats;
  stats.AddValue(9, {1, 0, 0, 0, 0, 0});
  FED_ResultDatabase           db;
  std::set<FED_DataDescriptor> written;
  FEM_ResultUtil::CalculateNodalStressError(db, Descriptor(551, {{kLoadCase, 2}, {kLayer, 4}}), stats, false, &written);
  ASSERT_EQ(written.size(), 1u);
  EXPECT_EQ(quilon_test::Key(*written.begin()), "<551 it=1 lc=2 ~lay=4>");
  EXPECT_TRUE(db.HasDataBlock(*written.begin()));
  EXPECT_EQ(Snapshot(db).size(), 1u);
}

TEST(CalculateNodalStressError, WritesOneRecordPerNodeByAscendingUnsignedId)
{
  StressField stats;
  for (const int id : {300, -1, 7}) stats.AddValue(id, {1, 0, 0, 0, 0, 0});
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner);
  FEM_ResultUtil::CalculateNodalStressError(db, Descriptor(551), stats, true, nullptr);
  EXPECT_EQ(db.GetLines(), (Lines{"db.GetIdMapsPool()", "db.GetOrCreateDataBlock(<551 it=1>, 3)",
                                  "pool.FindOrAddIndex(0, 7)", "block<551 it=1>.SetScalarAt(1, 0)",
                                  "pool.FindOrAddIndex(0, 300)", "block<551 it=1>.SetScalarAt(2, 0)",
                                  "pool.FindOrAddIndex(0, -1)", "block<551 it=1>.SetScalarAt(3, 0)"}));
}

TEST(CalculateNodalStressError, AFieldWithoutIdsInLayer0SavesNothing)
{
  StressField onlyLayer1(2);
  onlyLayer1.AddValue(9, 1, {1, 0, 0, 0, 0, 0});
  const StressField        withoutLayers(0);
  const StressField* const fields[] = {&onlyLayer1, &withoutLayers};
  for (const StressField* stats : fields) {
    FED_ResultDatabase           inner;
    RecordingDatabase            db(inner);
    std::set<FED_DataDescriptor> written;
    FEM_ResultUtil::CalculateNodalStressError(db, Descriptor(551), *stats, true, &written);
    EXPECT_EQ(db.GetLines(), Lines{});
    EXPECT_TRUE(written.empty());
  }
}
