#include "export/ExportPlan.h"

#include "export/ExportGroups.h"
#include "ExportSupport.h"

namespace quilon {
namespace {

using namespace quilon_test;

const std::vector<double> kVector = {1, 2, 3};
const std::vector<double> kTensor = {1, 2, 3, 4, 5, 6};

ExportPlan PlanOf(const FED_Database& database, const std::vector<int>& kinds = {},
                  const ExportComponents& components = {}, ExportGroupForm form = ExportGroupForm::Arrays)
{
  return MakeExportPlan(database, BlocksOf(database, kinds), components, ExportGroups(), form);
}

std::vector<std::string> NamesOf(const ExportPlan& plan)
{
  std::vector<std::string> names;
  for (const ExportArray& array : plan.arrays) names.push_back(array.name);
  return names;
}

using Names = std::vector<std::string>;

TEST(ExportPlan, CallsArraysAsTheirKind)
{
  FED_ResultDatabase database;
  SetValues(database, StepKey(510, 1), 1, kVector);
  SetValues(database, StepKey(521, 1), 1, kTensor);
  SetValues(database, StepKey(540, 1), 1, {7});
  database.SetUserKindName(static_cast<FED_OnfId>(1000), "wear/depth v1.2");
  SetValues(database, StepKey(1000, 1), 1, {7});
  const ExportPlan plan = PlanOf(database);
  EXPECT_EQ(NamesOf(plan), (Names{"displacement", "nodal-stress", "element-energy", "wear_depth v1_2"}));
  EXPECT_EQ(plan.arrays[0].components, (Names{"x", "y", "z"}));
  EXPECT_EQ(plan.arrays[1].components, (Names{"xx", "yy", "zz", "xy", "yz", "zx"}));
  EXPECT_EQ(plan.arrays[2].components, (Names{"value"}));
  EXPECT_FALSE(plan.arrays[1].ofElements);
  EXPECT_TRUE(plan.arrays[2].ofElements);
}

TEST(ExportPlan, NamesTellBlocksOfOneStepApart)
{
  FED_ResultDatabase database;
  FED_DataDescriptor layer = StepKey(521, 1);
  layer.SetInteger(FED_DataDescriptor::Layer, 2);
  FED_DataDescriptor other = StepKey(521, 1);
  other.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(7), 3);
  for (const FED_DataDescriptor& key : {StepKey(521, 1), StepKey(521, 1, 4), layer, other})
    SetValues(database, key, 1, kTensor);
  EXPECT_EQ(NamesOf(PlanOf(database)),
            (Names{"nodal-stress", "nodal-stress-group-4", "nodal-stress-layer-2", "nodal-stress-i7-3"}));
  EXPECT_EQ(NamesOf(PlanOf(database, {}, {.forAll = {"mises"}, .ofKind = {}})),
            (Names{"nodal-stress-mises", "nodal-stress-group-4-mises", "nodal-stress-layer-2-mises",
                   "nodal-stress-i7-3-mises"}));
}

TEST(ExportPlan, TwoArraysNeverShareAName)
{
  FED_ResultDatabase database;
  database.SetUserKindName(static_cast<FED_OnfId>(1000), "a.b");
  database.SetUserKindName(static_cast<FED_OnfId>(1001), "a/b");
  database.SetUserKindName(static_cast<FED_OnfId>(1400), "a_b");  // of elements
  for (const int onf : {1000, 1001, 1400}) SetValues(database, StepKey(onf, 1), 1, {7});
  EXPECT_EQ(NamesOf(PlanOf(database)), (Names{"a_b", "a_b-2", "a_b"}));
}

TEST(ExportPlan, StepsGoByTheirKeysAndHaveTheirTimes)
{
  FED_ResultDatabase database;
  SetTime(database, 1, 0.25);
  SetTime(database, 2, 0.5);
  SetValues(database, StepKey(510, 2), 1, kVector);
  SetValues(database, StepKey(510, 1), 1, kVector);
  SetValues(database, StepKey(540, 2), 1, {7});
  SetValues(database, FED_DataDescriptor(0, static_cast<FED_OnfId>(514)), 1, {7});  // of all steps
  const ExportPlan plan = PlanOf(database, {510, 540, 514});
  EXPECT_EQ(plan.times, (std::vector<double>{0.25, 0.5}));
  EXPECT_TRUE(plan.areTimesKnown);
  ASSERT_EQ(NamesOf(plan), (Names{"displacement", "temperature", "element-energy"}));
  EXPECT_EQ(plan.arrays[0].sources.size(), 2U);
  EXPECT_EQ(plan.arrays[0].sources[1].front().block, StepKey(510, 2));
  EXPECT_TRUE(plan.arrays[1].isStatic);
  EXPECT_EQ(plan.arrays[1].sources.size(), 1U);
  EXPECT_TRUE(plan.arrays[2].sources[0].empty());
  EXPECT_EQ(plan.arrays[2].sources[1].size(), 1U);
}

TEST(ExportPlan, CountsStepsWhereATimeIsNotKnown)
{
  FED_ResultDatabase database;
  SetTime(database, 1, 0.25);
  SetValues(database, StepKey(510, 1), 1, kVector);
  SetValues(database, StepKey(510, 2), 1, kVector);
  const ExportPlan plan = PlanOf(database, {510});
  EXPECT_FALSE(plan.areTimesKnown);
  EXPECT_EQ(plan.times, (std::vector<double>{1, 2}));
}

TEST(ExportPlan, ComponentsStandInPlaceOfWhatIsStored)
{
  FED_ResultDatabase database;
  SetValues(database, StepKey(510, 1), 1, kVector);
  SetValues(database, StepKey(521, 1), 1, kTensor);
  SetValues(database, StepKey(540, 1), 1, {7});
  EXPECT_EQ(NamesOf(PlanOf(database, {}, {.forAll = {"P1", "xx", "p1"}, .ofKind = {{510, {"magnitude"}}}})),
            (Names{"displacement-magnitude", "nodal-stress-p1", "nodal-stress-xx", "element-energy"}));
  EXPECT_EQ(NamesOf(PlanOf(database, {521}, {.forAll = {"hydro"}, .ofKind = {}})), (Names{"nodal-stress-hydrostatic"}));
}

TEST(ExportPlan, RefusesAComponentThatNoKindHas)
{
  FED_ResultDatabase database;
  SetValues(database, StepKey(510, 1), 1, kVector);
  SetValues(database, StepKey(540, 1), 1, {7});
  const std::string message = FailureOf([&] { PlanOf(database, {}, {.forAll = {"mises"}, .ofKind = {}}); });
  EXPECT_NE(message.find("mises"), std::string::npos) << message;
  EXPECT_NE(message.find("magnitude"), std::string::npos) << message;
  EXPECT_NE(FailureOf([&] { PlanOf(database, {}, {.forAll = {}, .ofKind = {{510, {"xx"}}}}); }), "");
  EXPECT_EQ(FailureOf([&] { PlanOf(database, {595}, {.forAll = {"mises"}, .ofKind = {}}); }),
            "component 'mises': expected a kind that has it");
}

TEST(ExportPlan, LeavesOutWhatIsNoValueOfNodesOrElements)
{
  FED_ResultDatabase database;
  SetTime(database, 1, 0.25);
  SetValues(database, StepKey(510, 1), 1, kVector);
  WriteMesh(database, TwoCubeNodes(), TwoCubeElements());
  const ExportPlan plan = PlanOf(database);
  EXPECT_EQ(NamesOf(plan), (Names{"displacement", "coordinates"}));
  EXPECT_EQ(plan.leftOut, (std::vector<int>{500, 595, 596}));
}

TEST(ExportPlan, JoinsGroupsInOneArrayOnRequest)
{
  FED_ResultDatabase database;
  for (const int group : {0, 1, 2}) SetValues(database, StepKey(521, 1, group), 1, kTensor);
  const ExportPlan plan = PlanOf(database, {}, {}, ExportGroupForm::Points);
  ASSERT_EQ(NamesOf(plan), (Names{"nodal-stress", "nodal-stress-group"}));
  EXPECT_FALSE(plan.arrays[0].isJoined);
  EXPECT_TRUE(plan.arrays[1].isJoined);
  ASSERT_EQ(plan.arrays[1].sources[0].size(), 2U);
  EXPECT_EQ(plan.arrays[1].sources[0][1].group, 2);
}

TEST(ExportPlan, NeedsValuesOfOneIteration)
{
  FED_ResultDatabase database;
  SetTime(database, 1, 0.25);
  EXPECT_EQ(FailureOf([&] { IterationOf(BlocksOf(database), "job.fed"); }),
            "job.fed: the selection has no values of nodes or elements, expected kinds such as displacement, "
            "nodal-stress or element-energy");
  SetValues(database, StepKey(510, 1), 1, kVector);
  EXPECT_EQ(IterationOf(BlocksOf(database), "job.fed"), 0);
  SetValues(database, FED_DataDescriptor(3, static_cast<FED_OnfId>(510)), 1, kVector);
  EXPECT_EQ(FailureOf([&] { IterationOf(BlocksOf(database), "job.fed"); }),
            "job.fed: expected blocks of one iteration, found 0 and 3; @it=3 selects one");
}

}  // namespace
}  // namespace quilon
