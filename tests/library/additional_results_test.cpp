#include "additional_results.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>

#include "FailureSweep.h"
#include "FEM_ResultUtil.h"
#include "LogCapture.h"
#include "RecordingDatabase.h"
#include "Snapshot.h"

namespace {

using quilon_test::Detail;
using quilon_test::LogCapture;
using quilon_test::RecordingDatabase;
using quilon_test::Snapshot;
using Lines   = std::vector<std::string>;
using Content = std::map<std::string, std::string>;
using Indices = std::vector<std::pair<FED_DataDescriptor::ResultIndex, int>>;

constexpr auto kLoadCase = FED_DataDescriptor::LoadCase;
constexpr auto kSubstep  = FED_DataDescriptor::Substep;

// Answers without a file and keeps what it was asked.
class Requests : public OnfResultRequestFile
{
public:
  explicit Requests(std::set<int> requested) : requested_(std::move(requested)) {}

  bool typeIsRequested(int onf) const override
  {
    asked.push_back(onf);
    return requested_.count(onf) != 0;
  }

  mutable std::vector<int> asked;

private:
  std::set<int> requested_;
};

FED_DataDescriptor Descriptor(int onf, const Indices& indices = {}, int iteration = 1)
{
  FED_DataDescriptor descriptor(iteration, static_cast<FED_OnfId>(onf));
  for (const auto& [index, value] : indices) descriptor.SetInteger(index, value);
  return descriptor;
}

// A uniaxial tensor: its principal values are (value, 0, 0).
void SetUniaxial(FED_Database& db, const FED_DataDescriptor& descriptor, std::size_t index, double value)
{
  const double tensor[6] = {value, 0, 0, 0, 0, 0};
  db.GetOrCreateDataBlock(descriptor, 0).SetValuesAt(index, tensor);
}

void SetScalar(FED_Database& db, const FED_DataDescriptor& descriptor, std::size_t index, double value)
{
  db.GetOrCreateDataBlock(descriptor, 0).SetScalarAt(index, value);
}

void Calculate(FED_Database& db, std::set<int> requested, int iteration = 1, int unused = 0)
{
  Requests requests(std::move(requested));
  FEM_ResultUtil::CalculateAdditionalResults(db, requests, iteration, unused);
}

const char* const kStart = "Calculating additional results.";

}  // namespace

TEST(CalculateAdditionalResults, AsksForEachTargetInTheOrderOfTheTables)
{
  LogCapture         log;
  FED_ResultDatabase db;
  Requests           requests({});
  FEM_ResultUtil::CalculateAdditionalResults(db, requests, 1, 0);
  EXPECT_EQ(requests.asked, (std::vector<int>{560, 520, 570, 530, 540, 541}));
}

TEST(CalculateAdditionalResults, TouchesNothingWhenNothingIsRequested)
{
  LogCapture         log;
  FED_ResultDatabase inner;
  SetUniaxial(inner, Descriptor(521), 1, 5.0);
  RecordingDatabase db(inner);
  Calculate(db, {521, 561, 903, 510});
  EXPECT_EQ(db.GetLines(), Lines{});
  EXPECT_EQ(log.GetWhole(), Lines{std::string("5 src/FEM_ResultUtil:196 |BrevanFem|FEM_ResultUtil: ") + kStart});
}

TEST(CalculateAdditionalResults, WalksTheSourcesInTheOrderOfTheTables)
{
  LogCapture         log;
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner);
  Calculate(db, {560, 520, 570, 530, 540, 541}, 4);
  EXPECT_EQ(db.GetLines(), (Lines{"db.GetDataBlocks({it=4 onf=561})", "db.GetDataBlocks({it=4 onf=521})",
                                  "db.GetDataBlocks({it=4 onf=571})", "db.GetDataBlocks({it=4 onf=531})",
                                  "db.GetDataBlocks({it=4 onf=540})", "db.GetDataBlocks({it=4 onf=541})"}));
  EXPECT_EQ(log.GetWhole(), (Lines{std::string("5 src/FEM_ResultUtil:196 |BrevanFem|FEM_ResultUtil: ") + kStart,
                                   "5 src/FEM_ResultUtil:276 |BrevanFem|FEM_ResultUtil: "
                                   "Adding scalar field(s) from ONF 903 to ONF 540",
                                   "5 src/FEM_ResultUtil:276 |BrevanFem|FEM_ResultUtil: "
                                   "Adding scalar field(s) from ONF 913 to ONF 541"}));
}

TEST(CalculateAdditionalResults, DerivesTheRequestedKindOfTheIterationWhereTensorsAre)
{
  LogCapture         log;
  FED_ResultDatabase inner;
  for (const std::size_t index : {1u, 2u, 4u}) SetUniaxial(inner, Descriptor(521), index, 10.0 * double(index));
  SetUniaxial(inner, Descriptor(521, {}, 2), 1, 7.0);
  SetUniaxial(inner, Descriptor(561), 1, 8.0);
  const Content     before = Snapshot(inner);
  RecordingDatabase db(inner);
  Calculate(db, {520});
  EXPECT_EQ(db.GetLines(), (Lines{"db.GetDataBlocks({it=1 onf=521})", "db.HasDataBlock(<520 it=1>)",
                                  "db.GetOrCreateDataBlock(<520 it=1>, 0)", "block<521 it=1>.GetSize()",
                                  "block<521 it=1>.HasRecord(1)", "block<521 it=1>.GetValuesAt(1)",
                                  "block<520 it=1>.SetValuesAt(1, (10 0 0))", "block<521 it=1>.HasRecord(2)",
                                  "block<521 it=1>.GetValuesAt(2)", "block<520 it=1>.SetValuesAt(2, (20 0 0))",
                                  "block<521 it=1>.HasRecord(3)", "block<521 it=1>.HasRecord(4)",
                                  "block<521 it=1>.GetValuesAt(4)", "block<520 it=1>.SetValuesAt(4, (40 0 0))"}));
  Content after         = before;
  after["<520 it=1> 1"] = "[V 10 0 0]";
  after["<520 it=1> 2"] = "[V 20 0 0]";
  after["<520 it=1> 4"] = "[V 40 0 0]";
  EXPECT_EQ(Snapshot(inner), after);
}

TEST(CalculateAdditionalResults, EveryPairOfPrincipalValuesIsDerivedFromItsTensors)
{
  const std::pair<int, int> pairs[] = {{560, 561}, {520, 521}, {570, 571}, {530, 531}};
  for (const auto& [target, source] : pairs) {
    LogCapture         log;
    FED_ResultDatabase db;
    // A plane tensor: a = 3, b = 1, c = 0 gives (3, 1, 0).
    const double tensor[6] = {1, 3, 0, 0, 0, 0};
    db.GetOrCreateDataBlock(Descriptor(source), 0).SetValuesAt(1, tensor);
    Calculate(db, {target});
    EXPECT_EQ(Snapshot(db).at("<" + std::to_string(target) + " it=1> 1"), "[V 3 1 0]");
  }
}

TEST(CalculateAdditionalResults, ABlockThatExistsIsNeitherLoggedNorChanged)
{
  LogCapture         log;
  FED_ResultDatabase db;
  SetUniaxial(db, Descriptor(561, {{kLoadCase, 1}}), 1, 5.0);
  SetUniaxial(db, Descriptor(561, {{kLoadCase, 2}}), 1, 6.0);
  const double kept[3] = {9, 8, 7};
  db.GetOrCreateDataBlock(Descriptor(560, {{kLoadCase, 1}}), 0).SetValuesAt(3, kept);
  Calculate(db, {560});
  EXPECT_EQ(Snapshot(db), (Content{{"<560 it=1 lc=1> 3", "[V 9 8 7]"},
                                   {"<560 it=1 lc=2> 1", "[V 6 0 0]"},
                                   {"<561 it=1 lc=1> 1", "[T 5 0 0 0 0 0]"},
                                   {"<561 it=1 lc=2> 1", "[T 6 0 0 0 0 0]"}}));
  EXPECT_EQ(log.GetTexts(), (Lines{kStart, "Processing:", "    Iteration:   1", "    Load case:   2"}));
}

TEST(CalculateAdditionalResults, LogsTheSetIndicesOfTheTargetInTheirOwnOrder)
{
  LogCapture         log;
  FED_ResultDatabase db;
  SetUniaxial(db,
              Descriptor(521, {{kLoadCase, 2},
                               {kSubstep, 30},
                               {FED_DataDescriptor::Analysis, 400},
                               {FED_DataDescriptor::Increment, 5000},
                               {FED_DataDescriptor::Layer, -6}}),
              1, 5.0);
  Calculate(db, {520});
  const std::string tag = " |BrevanFem|FEM_ResultUtil: ";
  EXPECT_EQ(log.GetWhole(),
            (Lines{"5 src/FEM_ResultUtil:196" + tag + kStart, "6 src/FEM_ResultUtil:239" + tag + "Processing:",
                   "6 src/FEM_ResultUtil:241" + tag + "    Iteration:   1",
                   "6 src/FEM_ResultUtil:243" + tag + "    Analysis:  400",
                   "6 src/FEM_ResultUtil:245" + tag + "    Load case:   2",
                   "6 src/FEM_ResultUtil:247" + tag + "    Substep:    30",
                   "6 src/FEM_ResultUtil:249" + tag + "    Increment: 5000",
                   "6 src/FEM_ResultUtil:251" + tag + "    Layer:      -6"}));
}

TEST(CalculateAdditionalResults, LogsIterationLoadCaseAndSubstepOfADescriptorThatHasThese)
{
  LogCapture         log;
  FED_ResultDatabase db;
  FED_DataDescriptor descriptor                   = Descriptor(521, {{kLoadCase, 2}, {kSubstep, 3}});
  descriptor.values[FED_DataDescriptor::Analysis] = 9;  // left under a clear bit: not set, not told
  SetUniaxial(db, descriptor, 1, 5.0);
  Calculate(db, {520});
  EXPECT_EQ(log.GetTexts(),
            (Lines{kStart, "Processing:", "    Iteration:   1", "    Load case:   2", "    Substep:     3"}));
}

TEST(CalculateAdditionalResults, SetsTheOnfBitOfTheTargetEvenWhereTheSourceHasItClear)
{
  LogCapture         log;
  FED_ResultDatabase db;
  FED_DataDescriptor descriptor = Descriptor(521);
  descriptor.mask &= ~(1u << FED_DataDescriptor::OnfId);
  SetUniaxial(db, descriptor, 1, 5.0);
  Calculate(db, {520});
  EXPECT_EQ(Snapshot(db), (Content{{"<520 it=1> 1", "[V 5 0 0]"}, {"<521 it=1 ~onf=521> 1", "[T 5 0 0 0 0 0]"}}));
}

TEST(CalculateAdditionalResults, ARecordAtIndex0IsNotSeen)
{
  LogCapture         log;
  FED_ResultDatabase db;
  SetUniaxial(db, Descriptor(521), 0, 5.0);
  SetUniaxial(db, Descriptor(521), 1, 6.0);
  SetScalar(db, Descriptor(540), 0, 1.0);
  SetScalar(db, Descriptor(540), 1, 2.0);
  SetScalar(db, Descriptor(903), 0, 10.0);
  SetScalar(db, Descriptor(903), 1, 20.0);
  Calculate(db, {520, 540});
  EXPECT_EQ(Snapshot(db), (Content{{"<520 it=1> 1", "[V 6 0 0]"},
                                   {"<521 it=1> 0", "[T 5 0 0 0 0 0]"},
                                   {"<521 it=1> 1", "[T 6 0 0 0 0 0]"},
                                   {"<540 it=1> 0", "[D 1]"},
                                   {"<540 it=1> 1", "[D 22]"}}));
}

TEST(CalculateAdditionalResults, FoldsTheAddedScalarsInAndDeletesTheirBlock)
{
  const std::pair<int, int> pairs[] = {{540, 903}, {541, 913}};
  for (const auto& [target, source] : pairs) {
    LogCapture         log;
    FED_ResultDatabase inner;
    SetScalar(inner, Descriptor(target), 1, 1.0);
    SetScalar(inner, Descriptor(target), 2, 2.0);
    SetScalar(inner, Descriptor(source), 1, 0.5);
    SetScalar(inner, Descriptor(source), 2, 0.5);
    RecordingDatabase db(inner);
    Calculate(db, {target});
    const std::string t = std::to_string(target);
    const std::string s = std::to_string(source);
    EXPECT_EQ(db.GetLines(), (Lines{"db.GetDataBlocks({it=1 onf=" + t + "})", "db.HasDataBlock(<" + s + " it=1>)",
                                    "db.GetDataBlock(<" + s + " it=1>)", "block<" + t + " it=1>.GetSize()",
                                    "block<" + t + " it=1>.HasRecord(1)", "block<" + s + " it=1>.HasRecord(1)",
                                    "block<" + s + " it=1>.GetScalarAt(1)", "block<" + t + " it=1>.GetScalarAt(1)",
                                    "block<" + t + " it=1>.SetScalarAt(1, 1.5)", "block<" + t + " it=1>.HasRecord(2)",
                                    "block<" + s + " it=1>.HasRecord(2)", "block<" + s + " it=1>.GetScalarAt(2)",
                                    "block<" + t + " it=1>.GetScalarAt(2)", "block<" + t + " it=1>.SetScalarAt(2, 2.5)",
                                    "db.DeleteDataBlock(<" + s + " it=1>)"}));
    EXPECT_EQ(Snapshot(inner), (Content{{"<" + t + " it=1> 1", "[D 1.5]"}, {"<" + t + " it=1> 2", "[D 2.5]"}}));
    EXPECT_FALSE(inner.HasDataBlock(Descriptor(source)));
  }
}

TEST(CalculateAdditionalResults, AddsOnlyWhereBothBlocksHaveARecord)
{
  LogCapture         log;
  FED_ResultDatabase db;
  SetScalar(db, Descriptor(540), 1, 1.0);
  SetScalar(db, Descriptor(540), 3, 3.0);
  SetScalar(db, Descriptor(903), 2, 20.0);
  SetScalar(db, Descriptor(903), 3, 30.0);
  SetScalar(db, Descriptor(903), 9, 90.0);
  Calculate(db, {540});
  EXPECT_EQ(Snapshot(db), (Content{{"<540 it=1> 1", "[D 1]"}, {"<540 it=1> 3", "[D 33]"}}));
}

TEST(CalculateAdditionalResults, LeavesATargetWithoutAnAddedBlockUnchanged)
{
  LogCapture         log;
  FED_ResultDatabase db;
  SetScalar(db, Descriptor(540, {{kLoadCase, 1}}), 1, 1.0);
  SetScalar(db, Descriptor(903, {{kLoadCase, 2}}), 1, 5.0);
  SetScalar(db, Descriptor(903, {{kLoadCase, 1}}, 2), 1, 6.0);
  const Content before = Snapshot(db);
  Calculate(db, {540});
  EXPECT_EQ(Snapshot(db), before) << "an added block without a target stays too";
}

TEST(CalculateAdditionalResults, ASecondRunAddsNothing)
{
  LogCapture         log;
  FED_ResultDatabase db;
  SetScalar(db, Descriptor(541), 1, 1.0);
  SetScalar(db, Descriptor(913), 1, 0.5);
  Calculate(db, {541});
  Calculate(db, {541});
  EXPECT_EQ(Snapshot(db), (Content{{"<541 it=1> 1", "[D 1.5]"}}));
}

TEST(CalculateAdditionalResults, IgnoresItsFourthArgument)
{
  Lines first;
  for (const int unused : {0, -1, 7}) {
    LogCapture         log;
    FED_ResultDatabase inner;
    SetUniaxial(inner, Descriptor(521), 1, 5.0);
    RecordingDatabase db(inner);
    Calculate(db, {520, 540}, 1, unused);
    if (first.empty()) first = db.GetLines();
    EXPECT_EQ(db.GetLines(), first);
  }
}

TEST(DerivePrincipalValues, RecomputesABlockThatExistsWhenTold)
{
  LogCapture         log;
  FED_ResultDatabase inner;
  SetUniaxial(inner, Descriptor(521), 1, 5.0);
  const double old[3] = {9, 8, 7};
  inner.GetOrCreateDataBlock(Descriptor(520), 0).SetValuesAt(1, old);
  RecordingDatabase db(inner, Detail::Database);
  quilon_results::DerivePrincipalValues(db, 1, 521, 520, false);
  EXPECT_EQ(db.GetLines(), (Lines{"db.GetDataBlocks({it=1 onf=521})", "db.GetOrCreateDataBlock(<520 it=1>, 0)"}));
  EXPECT_EQ(Snapshot(inner).at("<520 it=1> 1"), "[V 5 0 0]");
}

TEST(AddScalarFields, KeepsTheAddedBlockWhenTold)
{
  LogCapture         log;
  FED_ResultDatabase db;
  SetScalar(db, Descriptor(540), 1, 1.0);
  SetScalar(db, Descriptor(903), 1, 0.5);
  quilon_results::AddScalarFields(db, 1, 540, 903, false);
  EXPECT_EQ(Snapshot(db), (Content{{"<540 it=1> 1", "[D 1.5]"}, {"<903 it=1> 1", "[D 0.5]"}}));
}

TEST(CalculateAdditionalResults, AFailingDatabaseKeepsWhatWasWritten)
{
  LogCapture log;
  const auto prepare = [] {
    auto db = std::make_unique<FED_ResultDatabase>();
    for (const std::size_t index : {1u, 3u}) SetUniaxial(*db, Descriptor(521), index, 5.0);
    SetUniaxial(*db, Descriptor(521, {{kLoadCase, 2}}), 1, 6.0);
    SetScalar(*db, Descriptor(540), 1, 1.0);
    SetScalar(*db, Descriptor(903), 1, 0.5);
    return db;
  };
  const auto operation = [](FED_Database& db) { Calculate(db, {520, 540}); };

  const auto complete = prepare();
  operation(*complete);
  const Content derived = Snapshot(*complete);
  const Content before  = Snapshot(*prepare());

  const std::size_t calls =
      quilon_test::SweepFailures(prepare, operation, [&](FED_Database& db, const RecordingDatabase& recorded) {
        // A record is either as before or as it ends up, and the principal values are those that were passed on.
        std::size_t changed = 0;
        for (const auto& [key, content] : Snapshot(db)) {
          const auto old = before.find(key);
          if (old != before.end() && old->second == content) continue;
          ++changed;
          EXPECT_EQ(content, derived.at(key)) << key;
        }
        EXPECT_EQ(changed, quilon_test::CountWrites(recorded.GetLines()));
      });
  EXPECT_GT(calls, 20u);
}
