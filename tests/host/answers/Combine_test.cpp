#include "answers/Combine.h"
#include "answers/Region.h"

#include <cmath>
#include <sstream>

#include <gtest/gtest.h>

#include "AnswerSupport.h"
#include "database/ModelCopy.h"
#include "database/ScratchRecord.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_DataDescriptorPattern.h"

namespace {

using namespace quilon;
using namespace quilon_test;

class Combining : public ::testing::Test
{
protected:
  Combining()
  {
    for (int loadCase = 1; loadCase <= 3; ++loadCase) {
      const double size = loadCase == 3 ? 100 : loadCase;
      for (const int node : {20, 10}) {
        const double at = size * node;
        WriteTensor(database_, ResultKey(OnfKind::NodalStress, loadCase), node, {at, -at, 0, 2 * at, 0, 0});
        WriteVector(database_, ResultKey(OnfKind::NodalStressPrincipal, loadCase), node, {9, 9, 9});
        WriteVector(database_, ResultKey(OnfKind::Displacement, loadCase), node, {at, 0, 1});
      }
      WriteScalar(database_, ResultKey(OnfKind::NodalStressError, loadCase), 10, 5);
      WritePoints(loadCase, {size, 0, 0, 0, 0, 1});
    }
    WriteVector(database_, ResultKey(OnfKind::Displacement, 1, 2), 10, {1000, 0, 0});
    WriteVector(database_, ResultKey(OnfKind::Displacement, 1, 2), 20, {2000, 0, 0});
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 1, 2), 10, {10000, 0, 0, 0, 0, 0});
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 1, 2), 20, {20000, 0, 0, 0, 0, 0});
  }

  void WritePoints(int loadCase, const std::vector<double>& values)
  {
    FED_IdDataBlock   view   = ViewOf(database_, ResultKey(OnfKind::IntegrationPointStress, loadCase));
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetInteger(1, static_cast<int>(values.size() / 6));
    record.SetDoubleList(2, values);
    view.SetRecord(7, record);
  }

  CombineRequest MakeRequest(const std::string& cases, const std::string& selection = "")
  {
    std::istringstream in(cases);
    CombineRequest     request;
    request.database     = "small";
    request.caseFile     = "cases.txt";
    request.combinations = ReadCombinations(in, "cases.txt");
    request.hasSelection = !selection.empty();
    if (request.hasSelection) request.selection = Selection(selection, KindTable(database_));
    return request;
  }

  CombinePlan Plan(const CombineRequest& request)
  {
    return PlanCombinations(
        database_, request.selection.Apply(database_.GetDataDescriptors(FED_DataDescriptorPattern())), request);
  }

  CombineReport Combine(const CombineRequest& request)
  {
    return CombineInto(database_, Plan(request), request, target_, nullptr);
  }

  std::string PlanFailure(const std::string& cases, const std::string& selection = "")
  {
    const CombineRequest request = MakeRequest(cases, selection);
    return FailureOf([&] { Plan(request); });
  }

  std::vector<std::string> ListTarget() const
  {
    std::vector<std::string> list;
    for (const auto& descriptor : target_.GetDataDescriptors(FED_DataDescriptorPattern()))
      list.push_back(ToSelectionText(descriptor));
    return list;
  }

  template <std::size_t N>
  std::array<double, N> Get(int onf, int loadCase, int id) const
  {
    std::array<double, N> values{};
    const FED_DataBlock&  block = target_.GetConstDataBlock(ResultKey(onf, loadCase, 1, 3));
    block.GetValuesAt(target_.GetIdMapsPool().FindIndex(0, id), values.data());
    return values;
  }

  FED_ResultDatabase database_;
  FED_ResultDatabase target_;
};

TEST_F(Combining, AddsUpTensorsAndVectorsAndThenTakesPrincipalValues)
{
  const CombineReport report = Combine(MakeRequest("A = 2*lc1/1 - lc2\nB [7] = lc3 + 0.5*A\n"));
  EXPECT_EQ(ListTarget(), (std::vector<std::string>{"510@it=0,an=3,lc=7,sub=1", "510@it=0,an=3,lc=10001,sub=1",
                                                    "520@it=0,an=3,lc=7,sub=1", "520@it=0,an=3,lc=10001,sub=1",
                                                    "521@it=0,an=3,lc=7,sub=1", "521@it=0,an=3,lc=10001,sub=1",
                                                    "582@it=0,an=3,lc=7,sub=1", "582@it=0,an=3,lc=10001,sub=1"}));
  EXPECT_EQ(report.blocks, 8u);
  EXPECT_EQ(report.numPartial, 0u);
  EXPECT_EQ(Get<6>(OnfKind::NodalStress, 10001, 10), (Tensor{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Get<6>(OnfKind::NodalStress, 7, 20), (Tensor{2000, -2000, 0, 4000, 0, 0}));
  EXPECT_EQ(Get<3>(OnfKind::Displacement, 10001, 20), (Vector{0, 0, 1}));
  EXPECT_EQ(Get<3>(OnfKind::Displacement, 7, 20), (Vector{2000, 0, 1.5}));
  // Of xx = -yy = s and xy = 2 s: sqrt(5) s, 0 and its negative.
  const Vector principal = Get<3>(OnfKind::NodalStressPrincipal, 7, 20);
  EXPECT_NEAR(principal[0], 2000 * std::sqrt(5.0), 1e-9);
  EXPECT_NEAR(principal[1], 0, 1e-9);
  EXPECT_NEAR(principal[2], -2000 * std::sqrt(5.0), 1e-9);
}

TEST_F(Combining, ListsOfPointsAddUpPointByPoint)
{
  Combine(MakeRequest("A = 2*lc1/1 - lc2\n", "582"));
  const FED_DataBlock& block = target_.GetConstDataBlock(ResultKey(582, 10001, 1, 3));
  const ScratchRecord  record(block);
  block.GetRecord(target_.GetIdMapsPool().FindIndex(1, 7), *record);
  EXPECT_EQ(record->GetInteger(1), 1);
  FED_DoubleArray values;
  record->GetDoubleList(2, values);
  ASSERT_EQ(values.GetSize(), 6u);
  EXPECT_EQ(values.GetData()[0], 0.0);
  EXPECT_EQ(values.GetData()[5], 1.0);
}

TEST_F(Combining, OfARegionHasItsRecordsAlone)
{
  CombineRequest request = MakeRequest("A = 2*lc1/1 + lc2\n");
  Region         region(database_, {"20"}, "small");
  request.region = &region;
  EXPECT_EQ(Plan(request).notes.front(), "integration-point-stress left out: none of it in the region");
  Combine(request);
  EXPECT_EQ(ListTarget(), (std::vector<std::string>{"510@it=0,an=3,lc=10001,sub=1", "520@it=0,an=3,lc=10001,sub=1",
                                                    "521@it=0,an=3,lc=10001,sub=1"}));
  EXPECT_EQ(target_.GetConstDataBlock(ResultKey(OnfKind::NodalStress, 10001, 1, 3)).GetSize(), 1u);
  EXPECT_EQ(Get<6>(OnfKind::NodalStress, 10001, 20), (Tensor{80, -80, 0, 160, 0, 0}));

  Region element(database_, {"7"}, "small");
  request.region = &element;
  FED_ResultDatabase points;
  EXPECT_EQ(CombineInto(database_, Plan(request), request, points, nullptr).blocks, 1u);

  Region nothing(database_, {"8"}, "small");
  request.region        = &nothing;
  request.selectionText = "the database";
  EXPECT_NE(FailureOf([&] { Plan(request); }).find("--ids 8"), std::string::npos);
}

TEST_F(Combining, ALoadCaseAloneIsItsLastSubstep)
{
  Combine(MakeRequest("A = lc1\n", "displacement"));
  EXPECT_EQ(Get<3>(OnfKind::Displacement, 10001, 10), (Vector{1000, 0, 0}));
}

TEST_F(Combining, KindsThatALoadCaseLacksAreLeftOutUnlessTheyAreSelected)
{
  const CombinePlan plan = Plan(MakeRequest("A = lc1 + lc2\n"));
  ASSERT_EQ(plan.series.size(), 2u);
  ASSERT_EQ(plan.notes.size(), 2u);
  EXPECT_EQ(plan.notes[0], "integration-point-stress left out: none of it in lc1");
  EXPECT_EQ(plan.notes[1],
            "nothing tells whether steps are geometrically nonlinear, --deck does; they are taken for linear");
  EXPECT_EQ(PlanFailure("A = lc1 + lc2\n", "582,521"),
            "small: no integration-point-stress in lc1, expected it in every load case that cases.txt names");
}

TEST_F(Combining, ALoadCaseThatIsNotThereIsAFailureBeforeAnythingIsComputed)
{
  EXPECT_EQ(PlanFailure("A = lc1\nB = A + lc9\n"), "cases.txt:2: 'B' names load case 9, small has 1-3");
  EXPECT_EQ(PlanFailure("A = lc1/3\n"), "cases.txt:1: 'A' names lc1/3, load case 1 has substeps 1-2");
  EXPECT_EQ(PlanFailure("A = lc3\n", "stress@lc=1"), "cases.txt:1: 'A' names load case 3, small has 1");
}

TEST_F(Combining, KindsThatAreNotLinearAreAFailureWhenTheyAreSelected)
{
  EXPECT_EQ(PlanFailure("A = lc1\n", "stress-error,stress"),
            "small: nodal-stress-error not linear in the loads, expected kinds that are, such as displacement, "
            "reaction, stress and strain");
}

TEST_F(Combining, ResultsInTimeComeBeforeModesAndModesNeedANumber)
{
  WriteVector(database_, ResultKey(OnfKind::Displacement, 1, 3, 2), 10, {5, 5, 5});
  WriteVector(database_, ResultKey(OnfKind::Displacement, 4, 1, 2), 10, {1, 2, 3});
  WriteVector(database_, ResultKey(OnfKind::Displacement, 4, 2, 2), 10, {4, 5, 6});
  WriteVector(database_, ResultKey(OnfKind::Displacement, 5, 1, 2), 10, {4, 5, 6});
  WriteVector(database_, ResultKey(OnfKind::Displacement, 5, 1, 3), 10, {4, 5, 6});
  Combine(MakeRequest("A = lc1\nB = lc4/2\n", "displacement"));
  EXPECT_EQ(Get<3>(OnfKind::Displacement, 10001, 10), (Vector{1000, 0, 0}));
  EXPECT_EQ(Get<3>(OnfKind::Displacement, 10002, 10), (Vector{4, 5, 6}));
  EXPECT_EQ(PlanFailure("A = lc4\n", "displacement"),
            "cases.txt:1: load case 4 holds modes, expected the number of one: lc4/1");
  EXPECT_EQ(PlanFailure("A = lc5\n", "displacement"),
            "cases.txt:1: load case 5 has results of analyses 2-3, expected those of one: select it, as in '@an=2'");
}

TEST_F(Combining, ACombinationIsALoadCaseLikeOthers)
{
  WriteVector(database_, ResultKey(OnfKind::Displacement, 10001, 1, 3), 10, {7, 0, 0});
  Combine(MakeRequest("A [5] = 2*lc10001\n", "displacement"));
  EXPECT_EQ(Get<3>(OnfKind::Displacement, 5, 10), (Vector{14, 0, 0}));
}

TEST_F(Combining, IdsThatOneLoadCaseLacksAreLeftOutAndCounted)
{
  WriteVector(database_, ResultKey(OnfKind::Displacement, 2), 30, {1, 1, 1});
  WriteVector(database_, ResultKey(OnfKind::Displacement, 3), 40, {1, 1, 1});
  const CombineReport report = Combine(MakeRequest("A = lc2 + lc3\n", "displacement"));
  EXPECT_EQ(report.numPartial, 2u);
  const FED_DataBlock& block = target_.GetConstDataBlock(ResultKey(OnfKind::Displacement, 10001, 1, 3));
  EXPECT_FALSE(block.HasRecord(target_.GetIdMapsPool().FindOrAddIndex(0, 30)));
  EXPECT_EQ(Get<3>(OnfKind::Displacement, 10001, 20), (Vector{2040, 0, 2}));
}

TEST_F(Combining, IdsInAnotherOrderAreFoundById)
{
  FED_DataDescriptor other = ResultKey(OnfKind::Displacement, 8);
  WriteVector(database_, other, 10, {1, 0, 0});
  WriteVector(database_, other, 20, {2, 0, 0});
  const CombineReport report = Combine(MakeRequest("A = 5*lc8 + 3*lc3\n", "displacement"));
  EXPECT_EQ(report.numPartial, 0u);
  EXPECT_EQ(Get<3>(OnfKind::Displacement, 10001, 20), (Vector{6010, 0, 3}));
}

TEST_F(Combining, ListsOfOtherLengthsAreAFailure)
{
  WritePoints(2, {1, 2, 3, 4, 5, 6, 1, 2, 3, 4, 5, 6});
  const CombineRequest request = MakeRequest("A = lc2 + lc3\n", "582");
  EXPECT_EQ(FailureOf([&] { Combine(request); }),
            "small: 582@it=0,an=1,lc=3,sub=1 has 6 values at id 7, expected 12 as in the load cases before it");
}

TEST_F(Combining, ANonlinearStepIsAFailureUnlessItIsAllowed)
{
  CombineRequest request               = MakeRequest("A = lc1\nB = A + lc2\n");
  request.linearity.isKnown            = true;
  request.linearity.nonlinearLoadCases = {2};
  const std::string failure =
      "cases.txt:2: 'B' adds up results of a geometrically nonlinear step, load case 2, which are no sums of loads, "
      "expected linear ones or --allow-nonlinear";
  EXPECT_EQ(FailureOf([&] { Plan(request); }), failure);
  request.allowNonlinear = true;
  EXPECT_EQ(Plan(request).notes.size(), 1u) << "the points that are not in lc1, and nothing of linearity";
  request.allowNonlinear               = false;
  request.linearity.nonlinearLoadCases = {3};
  EXPECT_EQ(FailureOf([&] { Plan(request); }), "no failure") << "a step that no combination names";
}

TEST_F(Combining, TheDatabaseTellsWhichStepsAreNonlinear)
{
  EXPECT_FALSE(ReadStepLinearity(database_).isKnown);
  FED_DataDescriptor history(0, FED_OnfId_ScalarHistory);
  history.SetInteger(FED_DataDescriptor::Analysis, 1);
  history.SetInteger(FED_DataDescriptor::LoadCase, 2);
  history.SetInteger(OnfIndex::Quantity, 607);
  database_.GetOrCreateDataBlock(history, 1).SetScalarAt(1, 1.0);
  const StepLinearity linearity = ReadStepLinearity(database_);
  EXPECT_TRUE(linearity.isKnown);
  EXPECT_TRUE(linearity.IsNonlinear(GetResultStep(ResultKey(521, 2, 1))));
  EXPECT_FALSE(linearity.IsNonlinear(GetResultStep(ResultKey(521, 2, 2))));
  EXPECT_FALSE(linearity.IsNonlinear(GetResultStep(ResultKey(521, 1, 1))));
}

TEST_F(Combining, TheEnvelopeOfCombinationsIsThatOfTheCombinedTensors)
{
  const CombineRequest        request = MakeRequest("A = lc1/1\nB = lc2 - lc3\nC = 2*A\n", "stress,stress-principal");
  const CombinePlan           plan    = Plan(request);
  CombineReport               report;
  std::vector<EnvelopeSeries> all;
  EnvelopeOfCombinations(
      database_, plan, request, nullptr, [&all](const EnvelopeSeries& series) { all.push_back(series); }, report);
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0].names, (std::vector<std::string>{"A", "B", "C"}));
  EXPECT_EQ(ToSelectionText(all[0].steps[1]), "0@it=0,an=3,lc=10002,sub=1");
  const auto rows = all[0].field.SortedRows();
  EXPECT_EQ(all[0].field.GetId(rows[0]), 10);
  EXPECT_EQ(all[0].field.GetLeast(rows[0], 0).value, -980.0);
  EXPECT_EQ(all[0].field.GetLeast(rows[0], 0).step, 1u);
  EXPECT_EQ(all[0].field.GetGreatest(rows[0], 0).value, 20.0);
  EXPECT_EQ(all[0].field.GetGreatest(rows[0], 0).step, 2u);
  // p1 of combination B is sqrt(5) 980, although its xx is the least of all.
  EXPECT_EQ(OnfKind::TensorOf(all[1].key.GetInteger(FED_DataDescriptor::OnfId)), OnfKind::NodalStress);
  EXPECT_NEAR(all[1].field.GetGreatest(all[1].field.SortedRows()[0], 0).value, 980 * std::sqrt(5.0), 1e-9);
  EXPECT_EQ(all[1].field.GetGreatest(all[1].field.SortedRows()[0], 0).step, 1u);
}

TEST_F(Combining, CopiesTheModel)
{
  WriteTwoCubes(database_);
  EXPECT_EQ(CopyModel(database_, {0}, target_), 3u);
  EXPECT_EQ(ListTarget(), (std::vector<std::string>{"516@it=0", "595@it=0", "596@it=0"}));
}

}  // namespace
