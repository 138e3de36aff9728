#include "forces/ForceCalculation.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <bundled/FED_BlockCopy.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>
#include <QuilonUtilities/FED_Failure.h>

#include "database/DescriptorParcel.h"
#include "database/StoredDatabase.h"
#include "DistantCrew.h"
#include "ForceSupport.h"
#include "progress/Crew.h"
#include "progress/Listener.h"
#include "progress/Parcel.h"
#include "Snapshot.h"
#include "TempFolder.h"

namespace quilon {
namespace {

using namespace quilon_test;

/// Keeps what it is told.
class RecordingListener : public Listener
{
public:
  std::vector<std::string> lines;

  void Note(const std::string& message) override { lines.push_back(message); }
  void Progress(const std::string& phase, std::uint64_t done, std::uint64_t total, const std::string& unit) override
  {
    lines.push_back(phase + ' ' + std::to_string(done) + '/' + std::to_string(total) + ' ' + unit);
  }
};

/// Two cubes with mesh, a tension of 3 along x in two results, and what acts in balance with it.
class ForceCalculation : public testing::Test
{
protected:
  ForceCalculation()
  {
    WriteMesh(database_, TwoCubes(nullptr));
    for (const int loadCase : {1, 2}) {
      for (const int id : {10, 20}) WriteStress(database_, id, {3, 0, 0, 0, 0, 0}, 8, loadCase);
      for (int node = 1; node <= 12; ++node)
        WriteVector(database_, 511, node, {node <= 4 ? -3.0 : node <= 8 ? 0.0 : 3.0, 0, 0}, loadCase);
    }
    request_.database = "job";
  }

  std::vector<FED_DataDescriptor> All() { return database_.GetDataDescriptors(FED_DataDescriptorPattern()); }

  std::string FailureOf()
  {
    try {
      CalculateForces(database_, {ResultKey(582)}, request_, nullptr);
    } catch (const FED_Failure& failure) {
      return failure.GetMessage();
    }
    return "";
  }

  FED_ResultDatabase database_;
  ForceRequest       request_;
};

TEST_F(ForceCalculation, IsOfStressesAndTheirIngredientsAlone)
{
  EXPECT_EQ(ChooseForceResults(database_, All(), "job", ""),
            (std::vector<FED_DataDescriptor>{ResultKey(582, 1), ResultKey(582, 2)}));
  const auto                         ingredients = FindForceIngredients(database_, {ResultKey(582, 2)});
  const std::set<FED_DataDescriptor> found(ingredients.begin(), ingredients.end());
  const FED_DataDescriptor           mesh[] = {
                {0, static_cast<FED_OnfId>(516)}, {0, static_cast<FED_OnfId>(595)}, {0, static_cast<FED_OnfId>(596)}};
  EXPECT_EQ(found, (std::set<FED_DataDescriptor>{mesh[0], mesh[1], mesh[2], ResultKey(511, 2), ResultKey(582, 2)}));
}

TEST_F(ForceCalculation, NeedsStresses)
{
  try {
    ChooseForceResults(database_, {ResultKey(511)}, "job", "511");
    FAIL();
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.GetMessage(),
              "job: no stresses of integration points (582) in '511', expected a .dat with S of the solver");
  }
}

TEST_F(ForceCalculation, TellsWhatItAddedAndHowFarItIs)
{
  RecordingListener listener;
  const ForceReport report = CalculateForces(database_, {ResultKey(582, 1), ResultKey(582, 2)}, request_, &listener);
  EXPECT_EQ(report.added, (std::vector<FED_DataDescriptor>{ResultKey(580, 1), ResultKey(580, 2)}));
  EXPECT_TRUE(report.outdated.empty());
  ASSERT_EQ(report.steps.size(), 2u);
  EXPECT_EQ(report.steps[1].step.numElements, 2u);
  EXPECT_FALSE(report.steps[1].balance || report.steps[1].body);
  EXPECT_EQ(listener.lines, (std::vector<std::string>{"calculating forces 0/2 steps", "calculating forces 1/2 steps"}));
}

// Each thread reads the database through an object of its own. One result has no forces, and those that it had go.
TEST_F(ForceCalculation, IsTheSameWhoeverShares)
{
  for (const int loadCase : {3, 4, 5, 6, 7}) {
    for (const int id : {10, 20})
      WriteStress(database_, id, {1.0 * loadCase, 0.5, 0, 0.1 * id, 0, 0}, loadCase == 5 ? 1 : 8, loadCase);
    for (int node = 1; node <= 12; ++node) WriteVector(database_, 511, node, {1.0 * node, 0, 0}, loadCase);
  }
  const TempFolder            folder;
  const std::filesystem::path path = folder / "job.fed";
  {
    FED_ResultDatabase stored(path, FED_ResultDatabase::Create);
    for (const FED_DataDescriptor& block : All()) FED_CopyBlock(database_, stored, block);
    stored.Commit();
  }
  const auto                            stored  = StoredDatabase::OpenIfThere(path);
  const std::vector<FED_DataDescriptor> results = ChooseForceResults(stored->Get(), All(), "job", "");
  request_.balance                              = true;
  request_.plane                                = CutPlane{{1, 0, 0}, {1, 0, 0}};
  request_.part.elements                        = ParseElementIds("10");
  const auto calculated                         = [&](Crew* crew) {
    const ForceSource  source{stored->Get(), {crew, [&] { return stored->OpenAgain(path, 2); }}};
    FED_ResultDatabase target;
    {
      FED_IdDataBlock   former(target.GetOrCreateDataBlock(ResultKey(580, 5), 0), target.GetIdMapsPool(), true);
      FED_IdDataRecord& record = former.CreateIdDataRecord();
      record.SetDoubleList(1, std::vector<double>{1, 2, 3});
      former.SetRecord(10, record);
    }
    ForceReport                        report = CalculateForces(source, &target, results, request_, nullptr);
    std::map<std::string, std::string> state  = Snapshot(target);
    for (ForceStepReport& told : report.steps) {
      ParcelWriter parcel;
      parcel(told);
      state["told of " + told.step.forces.ToString()] = parcel.Take();
    }
    state["added"]    = std::to_string(report.added.size());
    state["outdated"] = report.outdated.size() == 1 ? report.outdated[0].ToString() : "not one";
    return state;
  };
  // The plane passes no element with forces in the result that has none.
  EXPECT_THROW(calculated(nullptr), FED_Failure);
  request_.plane.reset();
  request_.part  = {};
  const auto one = calculated(nullptr);
  EXPECT_EQ(one.at("added"), "6");
  EXPECT_EQ(one.at("outdated"), ResultKey(580, 5).ToString());
  ThreadCrew  four(4);
  DistantCrew distant;
  EXPECT_EQ(calculated(&four), one);
  EXPECT_EQ(calculated(&distant), one);
  EXPECT_EQ(CalculateForces({stored->Get(), {}}, nullptr, results, request_, nullptr).added.size(), 6U);
}

TEST_F(ForceCalculation, GivesItsVerdictInWords)
{
  request_.balance  = true;
  request_.numWorst = 3;
  const std::vector<FED_DataDescriptor> both{ResultKey(582, 1), ResultKey(582, 2)};
  EXPECT_TRUE(CalculateForces(database_, both, request_, nullptr).Holds());
  WriteVector(database_, 511, 12, {4, 0, 0}, 2);
  const ForceReport report = CalculateForces(database_, both, request_, nullptr);
  EXPECT_EQ(report.steps[1].balance->nodes.size(), 3u);
  EXPECT_EQ(report.steps[1].balance->numJudged, 12u);
  EXPECT_FALSE(report.Holds());
  // Coordinates of 2 and 4 may have been rounded to six digits.
  EXPECT_EQ(DescribeVerdict(request_, report)
                .rfind("balance failed: largest residual 0.25 of the largest force, at node "
                       "12 of 580@it=0,an=1,lc=2,sub=1; limit 1e-05 and ",
                       0),
            0u)
      << DescribeVerdict(request_, report);
  request_.tolerance = 0.25;
  EXPECT_EQ(DescribeVerdict(request_, CalculateForces(database_, both, request_, nullptr)).rfind("balance passed: ", 0),
            0u);
}

// The first result has forces, the second none.
TEST_F(ForceCalculation, SaysWhyAResultIsNotJudged)
{
  request_.balance = true;
  for (const int id : {10, 20}) WriteStress(database_, id, {3, 0, 0, 0, 0, 0}, 1, 2);
  const ForceReport report = CalculateForces(database_, {ResultKey(582, 1), ResultKey(582, 2)}, request_, nullptr);
  EXPECT_TRUE(report.Holds());
  EXPECT_EQ(report.FindWorstBalance(), &report.steps[0]);
  EXPECT_FALSE(report.steps[1].balance->IsJudged());
  const std::vector<std::string> notes = ListForceNotes(request_, report);
  EXPECT_NE(std::find(notes.begin(), notes.end(),
                      "no node of 580@it=0,an=1,lc=2,sub=1 is judged: no rule for C3D8R (2 elements)"),
            notes.end());
  try {
    CalculateForces(database_, {ResultKey(582, 2)}, request_, nullptr);
    FAIL();
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.GetMessage(), "job: no node to judge in any result: no rule for C3D8R (2 elements)");
  }
}

TEST_F(ForceCalculation, CountsNodesOfWhichNothingIsKnownAmongTheReasons)
{
  request_.balance = true;
  database_.DeleteDataBlock(ResultKey(511));
  WriteVector(database_, 511, 500, {1, 0, 0});
  EXPECT_EQ(FailureOf(), "job: no node to judge in any result: 12 nodes without RF");
}

TEST_F(ForceCalculation, CutsThePartThatIsAsked)
{
  request_.part.elements   = ParseElementIds("20");
  const ForceReport report = CalculateForces(database_, {ResultKey(582)}, request_, nullptr);
  ASSERT_TRUE(report.steps[0].body);
  EXPECT_NEAR(report.steps[0].body->cut.force[0], -12.0, 1e-13);

  request_.part     = {};
  request_.part.set = "TIP";
  EXPECT_EQ(FailureOf(), "job: no element set TIP, expected one of the database or --deck");
  request_.part          = {};
  request_.part.text     = "1-9";
  request_.part.elements = ParseElementIds("1-9");
  EXPECT_EQ(FailureOf(), "--elements is '1-9', which names no element of the mesh");
}

TEST_F(ForceCalculation, KnowsASetAsItIsWrittenAndInCapitals)
{
  FED_DataBlock& sets   = database_.GetOrCreateDataBlock(FED_DataDescriptor(0, static_cast<FED_OnfId>(601)), 0);
  int            number = 0;
  for (const auto& [name, element] : {std::pair<const char*, int>{"TIP", 20}, {"root", 10}}) {
    FED_DataRecord* const record = sets.CreateDataRecord();
    FED_IntArray          elements;
    elements.Resize(1);
    elements.GetData()[0] = element;
    record->SetString(1, name);
    record->SetIntList(2, elements);
    sets.SetRecord(database_.GetIdMapsPool().FindOrAddIndex(OnfKind::EntityOf(601), ++number), *record);
    sets.DeleteDataRecord(record);
  }
  for (const auto& [name, force] : {std::pair<const char*, double>{"TIP", -12.0}, {"tip", -12.0}, {"root", 12.0}}) {
    request_.part.set        = name;
    const ForceReport report = CalculateForces(database_, {ResultKey(582)}, request_, nullptr);
    ASSERT_TRUE(report.steps[0].body) << name;
    EXPECT_NEAR(report.steps[0].body->cut.force[0], force, 1e-13) << name;
  }
  request_.part.set = "ROOT";
  EXPECT_EQ(FailureOf(), "job: no element set ROOT, expected one of the database or --deck");
}

TEST_F(ForceCalculation, GoesByTheStepsThatAreSaidToBeNonlinear)
{
  request_.nonlinearSteps = ParseNonlinearSteps("2");
  for (int node = 1; node <= 12; ++node) WriteVector(database_, 510, node, {0, 0, 0}, 2);
  const ForceReport report = CalculateForces(database_, {ResultKey(582, 1), ResultKey(582, 2)}, request_, nullptr);
  EXPECT_FALSE(report.steps[0].step.deformed);
  EXPECT_TRUE(report.steps[1].step.deformed);
}

}  // namespace
}  // namespace quilon
