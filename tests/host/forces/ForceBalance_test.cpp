#include "forces/ForceBalance.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QuilonUtilities/FED_Failure.h>

#include "../import/ImportTestSupport.h"
#include "calculix/deck/ReadDeckModel.h"
#include "forces/Resultant.h"
#include "ForceSupport.h"
#include "import/ResultImport.h"
#include "LogCapture.h"
#include "progress/Interrupt.h"
#include "TempFolder.h"

namespace quilon::calculix {
namespace {

using namespace quilon_test;

/// Two cubes under a tension of 3 along x: -3 at each node at x = 0, nothing at x = 2, 3 at x = 4.
class ForceBalanceTest : public testing::Test
{
protected:
  ForceBalanceTest()
  {
    for (const int id : {10, 20}) WriteStress(database_, id, {3, 0, 0, 0, 0, 0});
  }

  void WriteReactions(std::vector<int> without = {})
  {
    for (int node = 1; node <= 12; ++node) {
      if (std::find(without.begin(), without.end(), node) != without.end()) continue;
      WriteVector(database_, 511, node, {node <= 4 ? -3.0 : node <= 8 ? 0.0 : 3.0, 0, 0});
    }
  }

  ForceBalance Balance(const ForceMesh& mesh, double tolerance = 0.0)
  {
    ElementForces   forces(database_, mesh, 0, "job");
    const ForceStep step = forces.Calculate(ResultKey(582), false);
    return CalculateBalance(database_, mesh, step, tolerance, "job");
  }

  FED_ResultDatabase database_;
};

// The two middle nodes that are tied have a force of the tie in their RF; the others balance.
TEST_F(ForceBalanceTest, JudgesTiedNodesApart)
{
  WriteReactions();
  WriteVector(database_, 511, 5, {0.5, 0, 0});
  WriteVector(database_, 511, 6, {0, -7, 0});
  EXPECT_FALSE(Balance(TwoCubes(), 1e-6).Holds());
  ForceMesh mesh = TwoCubes();
  mesh.Tie("ties", std::vector<int>{5, 6});
  mesh.Tie("contact", std::vector<int>{6, 9});  // 6 is tied already
  const ForceBalance balance = Balance(mesh, 1e-6);
  EXPECT_TRUE(balance.Holds());
  EXPECT_EQ(balance.numJudged, 9u);
  ASSERT_EQ(balance.tied.size(), 2u);
  EXPECT_EQ(balance.tied[0].how, "ties");
  EXPECT_EQ(balance.tied[0].numNodes, 2u);
  EXPECT_EQ(balance.tied[0].worstNode, 6);
  EXPECT_NEAR(balance.tied[0].largestResidual, 7.0, 1e-13);
  EXPECT_EQ(balance.tied[1].how, "contact");
  EXPECT_LE(balance.tied[1].largestResidual, 1e-14);
}

TEST_F(ForceBalanceTest, OfTiedNodesThatAreAsFarOffNamesTheFirst)
{
  WriteReactions();
  WriteVector(database_, 511, 6, {0.5, 0, 0});
  WriteVector(database_, 511, 7, {-0.5, 0, 0});
  ForceMesh mesh = TwoCubes();
  mesh.Tie("ties", std::vector<int>{6, 7});
  const ForceBalance balance = Balance(mesh, 1e-6);
  ASSERT_EQ(balance.tied.size(), 1u);
  EXPECT_EQ(balance.tied[0].worstNode, 6);
}

TEST(ForceMesh, KnowsTheNodesThatADeckTies)
{
  TempFolder folder;
  WriteText(
      folder / "a.inp",
      "*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n4,0,0,1\n5,1,1,1\n*NSET,NSET=N\n5\n"
      "*ELEMENT,TYPE=C3D4,ELSET=E\n1,1,2,3,4\n*SURFACE,NAME=S,TYPE=NODE\nN\n*SURFACE,NAME=M\n1,S1\n"
      "*SOLID "
      "SECTION,ELSET=E,MATERIAL=X\n*MATERIAL,NAME=X\n*ELASTIC\n1,0\n*TIE,NAME=T\nS,M\n*EQUATION\n2\n4,1,1.,5,1,-1.\n");
  const DeckModel            deck = ReadDeckModel(folder / "a.inp");
  const ForceMesh            mesh = MakeForceMesh(deck);
  std::map<int, std::string> ties;
  for (const auto& [node, way] : mesh.ties.Entries()) ties[node] = *mesh.HowTied(node);
  // Face S1 of a tetrahedron is that of its nodes 1, 2 and 3; the first card that names a node counts.
  EXPECT_EQ(ties, (std::map<int, std::string>{{1, "ties"}, {2, "ties"}, {3, "ties"}, {4, "equations"}, {5, "ties"}}));
}

TEST_F(ForceBalanceTest, HoldsWhereForcesAreWhatActs)
{
  WriteReactions();
  const ForceBalance balance = Balance(TwoCubes());
  EXPECT_EQ(balance.nodes.size(), 12u);
  EXPECT_LE(balance.largestResidual, 1e-14);
  EXPECT_NEAR(balance.largestForce, 3.0, 1e-14);
  for (const double component : balance.total) EXPECT_NEAR(component, 0.0, 1e-13);
  EXPECT_EQ(balance.numIncomplete, 0u);
  EXPECT_EQ(balance.numUnknown, 0u);
}

TEST_F(ForceBalanceTest, HasTheWorstNodesFirst)
{
  WriteReactions();
  WriteVector(database_, 511, 6, {0.5, 0, 0});
  WriteVector(database_, 511, 11, {3, -2, 0});
  WriteVector(database_, 511, 3, {-3, 0, 0.5});
  const ForceBalance balance = Balance(TwoCubes());
  ASSERT_GE(balance.nodes.size(), 3u);
  EXPECT_EQ(balance.nodes[0].node, 11);
  EXPECT_EQ(balance.nodes[1].node, 3);
  EXPECT_EQ(balance.nodes[2].node, 6);
  EXPECT_NEAR(balance.nodes[0].residual[1], 2.0, 1e-14);
  EXPECT_EQ(balance.nodes[0].external, (Vector{3, -2, 0}));
  EXPECT_NEAR(balance.nodes[0].elements[0], 3.0, 1e-14);
  EXPECT_NEAR(balance.nodes[2].residual[0], -0.5, 1e-14);
  EXPECT_NEAR(balance.largestResidual, 2.0, 1e-14);
}

TEST_F(ForceBalanceTest, JudgesNoNodeOfAnElementWithoutForces)
{
  WriteReactions();
  ForceMesh mesh = TwoCubes();
  AddElement(mesh, 30, "SPRINGA", 0, {9, 3});
  const ForceBalance balance = Balance(mesh);
  EXPECT_EQ(balance.nodes.size(), 10u);
  EXPECT_EQ(balance.numIncomplete, 2u);
  for (const NodeBalance& node : balance.nodes) EXPECT_TRUE(node.node != 9 && node.node != 3);
}

TEST_F(ForceBalanceTest, CountsNodesOfWhichNothingIsKnown)
{
  WriteReactions({2, 7, 12});
  WriteVector(database_, 511, 500, {1e6, 0, 0});  // of a node without elements: it is not judged
  const ForceBalance balance = Balance(TwoCubes());
  EXPECT_EQ(balance.nodes.size(), 9u);
  EXPECT_EQ(balance.numUnknown, 3u);
  EXPECT_NEAR(balance.largestForce, 3.0, 1e-14);
}

TEST_F(ForceBalanceTest, IsNotJudgedWithoutANodeThatCanBe)
{
  WriteVector(database_, 511, 500, {1, 0, 0});
  ForceMesh mesh = TwoCubes();
  AddElement(mesh, 30, "SPRINGA", 0, {9, 3});
  const ForceBalance balance = Balance(mesh);
  EXPECT_FALSE(balance.IsJudged());
  EXPECT_EQ(balance.numIncomplete, 2u);
  EXPECT_EQ(balance.numUnknown, 10u);
  EXPECT_FALSE(Balance(TwoCubes("C3D8R")).IsJudged());
}

// A tolerance of the largest force, and beyond it what the digits of coordinates leave open.
TEST_F(ForceBalanceTest, HasALimitThatAllowsForRoundedCoordinates)
{
  WriteReactions();
  WriteVector(database_, 511, 12, {3.003, 0, 0});
  EXPECT_NEAR(Balance(TwoCubes(), 1e-3).limit, 1e-3 * 3.003, 1e-15);
  EXPECT_TRUE(Balance(TwoCubes(), 1.01e-3).Holds());
  EXPECT_FALSE(Balance(TwoCubes(), 0.99e-3).Holds());
  ForceMesh mesh = TwoCubes();
  mesh.isRounded = true;
  ElementForces   forces(database_, mesh, 0, "job");
  const ForceStep step    = forces.Calculate(ResultKey(582), false);
  const auto      balance = CalculateBalance(database_, mesh, step, 1e-3, "job");
  EXPECT_GT(step.errorBound, 1.5e-5);
  EXPECT_DOUBLE_EQ(balance.limit, 1e-3 * 3.003 + step.errorBound);
}

TEST_F(ForceBalanceTest, IsWorstWhereANaNStands)
{
  WriteReactions();
  WriteVector(database_, 511, 1, {1000, 0, 0});
  WriteVector(database_, 511, 8, {0, std::nan(""), 0});
  const ForceBalance balance = Balance(TwoCubes());
  EXPECT_EQ(balance.nodes.front().node, 8);
  EXPECT_EQ(balance.largestResidual, std::numeric_limits<double>::infinity());
  EXPECT_EQ(balance.largestForce, 1000.0);
}

TEST_F(ForceBalanceTest, NeedsReactions)
{
  try {
    Balance(TwoCubes());
    FAIL();
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.GetMessage(),
              "job: no reactions 511@it=0,an=1,lc=1,sub=1, expected RF of the solver for a balance");
  }
}

void ExpectNear(const Vector& actual, const Vector& expected, double tolerance)
{
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(actual[k], expected[k], tolerance) << "component " << k;
}

class FreeBodyTest : public ForceBalanceTest
{
protected:
  FreeBody Cut(const ForceMesh& mesh, const std::set<int>& part, const Vector& about = {})
  {
    ElementForces   forces(database_, mesh, 0, "job");
    const ForceStep step = forces.Calculate(ResultKey(582), false);
    return CalculateFreeBody(database_, mesh, step, part, about, "job");
  }

  std::string FailureOf(const ForceMesh& mesh, const std::set<int>& part)
  {
    try {
      Cut(mesh, part);
    } catch (const FED_Failure& failure) {
      return failure.GetMessage();
    }
    return "";
  }
};

// The right cube is pulled to the left by 12 at the middle of the cut, (2, 1, 1).
TEST_F(FreeBodyTest, HasWhatTheRestExertsAtTheCut)
{
  const FreeBody body = Cut(TwoCubes(), {20});
  EXPECT_EQ(body.cut.numNodes, 4u);
  EXPECT_EQ(body.other.numNodes, 4u);
  EXPECT_EQ(body.sum.numNodes, 8u);
  ExpectNear(body.cut.force, {-12, 0, 0}, 1e-13);
  ExpectNear(body.cut.moment, {0, -12, 12}, 1e-13);
  ExpectNear(body.other.force, {12, 0, 0}, 1e-13);
  ExpectNear(body.other.moment, {0, 12, -12}, 1e-13);
  ExpectNear(body.sum.force, {0, 0, 0}, 1e-13);
  ExpectNear(body.sum.moment, {0, 0, 0}, 1e-13);
}

TEST_F(FreeBodyTest, HasNoMomentAboutTheMiddleOfItsCut)
{
  const FreeBody body = Cut(TwoCubes(), {20}, {-7, 1, 1});
  ExpectNear(body.cut.force, {-12, 0, 0}, 1e-13);
  ExpectNear(body.cut.moment, {0, 0, 0}, 1e-12);
}

TEST_F(FreeBodyTest, OfTheWholeModelHasNoCut)
{
  const FreeBody body = Cut(TwoCubes(), {10, 20});
  EXPECT_EQ(body.cut.numNodes, 0u);
  EXPECT_EQ(body.other.numNodes, 12u);
  ExpectNear(body.other.force, {0, 0, 0}, 1e-13);
}

// What an element without forces shares with the part is cut, too.
TEST_F(FreeBodyTest, IsCutFromElementsWithoutForces)
{
  ForceMesh mesh = TwoCubes();
  AddElement(mesh, 30, "SPRINGA", 0, {9, 3});
  EXPECT_EQ(Cut(mesh, {20}).cut.numNodes, 5u);
}

TEST_F(FreeBodyTest, NeedsForcesOfAllItsElements)
{
  ForceMesh mesh = TwoCubes();
  AddElement(mesh, 30, "SPRINGA", 0, {9, 3});
  AddElement(mesh, 31, "SPRINGA", 0, {9, 4});
  EXPECT_EQ(FailureOf(mesh, {20, 30, 31}),
            "job: no forces of 2 elements of the part in 580@it=0,an=1,lc=1,sub=1: 30-31, expected forces of all");
  EXPECT_EQ(FailureOf(mesh, {20, 21}), "job: no element 21 in the mesh");
}

TEST_F(FreeBodyTest, StopsWhereItIsInterrupted)
{
  const ForceMesh mesh = TwoCubes();
  ElementForces   forces(database_, mesh, 0, "job");
  const ForceStep step      = forces.Calculate(ResultKey(582), false);
  void (*const former)(int) = std::signal(SIGINT, [](int) {});
  {
    const InterruptWatch watch;
    std::raise(SIGINT);
    std::size_t numVisits = 0;
    EXPECT_THROW(ForEachForce(database_, mesh, step, [&](std::size_t, std::size_t, const double*) { ++numVisits; }),
                 Interrupted);
    EXPECT_EQ(numVisits, 0u);
  }
  std::signal(SIGINT, former);
}

// The bar's end carries a pull of 1.5 on a face of 8 and three forces, see its deck. Loads and their moments about the
// origin, by hand: force (12, 6, -5), moment (0, 12, -24) + (0, 0, 120) + (-6, 0, 120) + (-20, 200, 0).
TEST(FreeBodyOfTheBar, CarriesTheLoadsOfItsEndThroughTheCut)
{
  LogCapture         log;
  FED_ResultDatabase database;
  ImportResults({Fixture("forces/bar.dat")}, database, {});
  const DeckModel deck = ReadDeckModel(Fixture("forces/bar.inp"));
  const ForceMesh mesh = MakeForceMesh(deck);
  ElementForces   forces(database, mesh, 0, "bar");
  const ForceStep step = forces.Calculate(ResultKey(582), false);
  const DeckSet*  set  = deck.FindElementSet("ETIP");
  ASSERT_NE(set, nullptr);
  const std::set<int> part(set->ids.begin(), set->ids.end());

  // Seven digits of stresses up to 10 on faces of 8, at arms of 40.
  const double   force  = 2e-5;
  const double   moment = 8e-4;
  const FreeBody origin = CalculateFreeBody(database, mesh, step, part, {0, 0, 0}, "bar");
  EXPECT_EQ(origin.cut.numNodes, 4u);
  ExpectNear(origin.cut.force, {-12, -6, 5}, force);
  ExpectNear(origin.cut.moment, {26, -212, -216}, moment);
  ExpectNear(origin.other.force, {12, 6, -5}, force);
  ExpectNear(origin.other.moment, {-26, 212, 216}, moment);

  // About the middle of the cut, (20, 2, 1): less (20, 2, 1) x (12, 6, -5) = (-16, 112, 96).
  const FreeBody middle = CalculateFreeBody(database, mesh, step, part, {20, 2, 1}, "bar");
  ExpectNear(middle.cut.moment, {10, -100, -120}, moment);
  ExpectNear(middle.other.moment, {-10, 100, 120}, moment);
}

}  // namespace
}  // namespace quilon::calculix
