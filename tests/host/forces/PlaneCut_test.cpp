#include "forces/PlaneCut.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QuilonUtilities/FED_Failure.h>

#include "../import/ImportTestSupport.h"
#include "calculix/deck/ReadDeckModel.h"
#include "forces/ForceBalance.h"
#include "ForceSupport.h"
#include "import/ResultImport.h"
#include "LogCapture.h"

namespace quilon::calculix {
namespace {

using namespace quilon_test;

void ExpectNear(const Vector& actual, const Vector& expected, double tolerance)
{
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(actual[k], expected[k], tolerance) << "component " << k;
}

/// Two cubes under a tension of 3 along x on faces of 4.
class PlaneCutTest : public testing::Test
{
protected:
  PlaneCutTest()
  {
    for (const int id : {10, 20}) WriteStress(database_, id, {3, 0, 0, 0, 0, 0});
  }

  PlaneCut Cut(const ForceMesh& mesh, const CutPlane& plane, const std::optional<std::set<int>>& part = std::nullopt,
               bool deformed = false)
  {
    ElementForces   forces(database_, mesh, 0, "job");
    const ForceStep step = forces.Calculate(ResultKey(582), deformed);
    return CalculatePlaneCut(database_, mesh, step, plane, part, "job");
  }

  std::string FailureOf(const ForceMesh& mesh, const CutPlane& plane,
                        const std::optional<std::set<int>>& part = std::nullopt)
  {
    try {
      Cut(mesh, plane, part);
    } catch (const FED_Failure& failure) {
      return failure.GetMessage();
    }
    return "";
  }

  FED_ResultDatabase database_;
};

TEST_F(PlaneCutTest, HasWhatTheSideOfTheNormalExertsOnTheOther)
{
  const PlaneCut cut = Cut(TwoCubes(), {{1, 0, 0}, {1, 0, 0}});
  EXPECT_EQ(cut.elements, std::vector<int>{10});
  EXPECT_EQ(cut.resultant.numNodes, 4u);
  ExpectNear(cut.resultant.force, {12, 0, 0}, 1e-13);
  // At the middle of the face, (y, z) = (1, 1).
  ExpectNear(cut.resultant.moment, {0, 12, -12}, 1e-13);
}

TEST_F(PlaneCutTest, TurnsWithItsNormalWhoseLengthSaysNothing)
{
  const PlaneCut cut = Cut(TwoCubes(), {{3, 1, 1}, {-1e-9, 0, 0}});
  EXPECT_EQ(cut.elements, std::vector<int>{20});
  ExpectNear(cut.resultant.force, {-12, 0, 0}, 1e-13);
  ExpectNear(cut.resultant.moment, {0, 0, 0}, 1e-13);
}

TEST_F(PlaneCutTest, BetweenElementsPassesThoseBehind)
{
  EXPECT_EQ(Cut(TwoCubes(), {{2, 0, 0}, {1, 0, 0}}).elements, std::vector<int>{10});
  EXPECT_EQ(Cut(TwoCubes(), {{2, 0, 0}, {-1, 0, 0}}).elements, std::vector<int>{20});
  // Within a millionth of the size, 4.9, and beyond it.
  EXPECT_EQ(Cut(TwoCubes(), {{2 + 4e-6, 0, 0}, {1, 0, 0}}).elements, std::vector<int>{10});
  EXPECT_EQ(Cut(TwoCubes(), {{2 + 6e-6, 0, 0}, {1, 0, 0}}).elements, std::vector<int>{20});
  ExpectNear(Cut(TwoCubes(), {{2, 0, 0}, {1, 0, 0}}).resultant.force, {12, 0, 0}, 1e-13);
}

TEST_F(PlaneCutTest, AllowsForTheRoundingOfCoordinates)
{
  ForceMesh mesh = TwoCubes();
  for (int node = 5; node <= 8; ++node) mesh.nodes.At(mesh.nodes.Find(node))[0] = 1.99999;
  EXPECT_EQ(Cut(mesh, {{2, 0, 0}, {1, 0, 0}}).elements, std::vector<int>{20});
  mesh.isRounded = true;
  EXPECT_EQ(Cut(mesh, {{1.999999, 0, 0}, {1, 0, 0}}).elements, std::vector<int>{10});
}

// The plane passes both cubes; forces at the nodes that they share cancel but for what acts there, which is nothing.
TEST_F(PlaneCutTest, ObliquePassesMoreElementsWithTheSameForce)
{
  const PlaneCut cut = Cut(TwoCubes(), {{2, 1, 1}, {1, 0.1, 0.2}});
  EXPECT_EQ(cut.elements, (std::vector<int>{10, 20}));
  ExpectNear(cut.resultant.force, {12, 0, 0}, 1e-13);
  ExpectNear(cut.resultant.moment, {0, 0, 0}, 1e-13);
}

TEST_F(PlaneCutTest, IsLimitedToAPart)
{
  const CutPlane plane{{2, 1, 1}, {0, 1, 0}};
  EXPECT_EQ(Cut(TwoCubes(), plane).elements, (std::vector<int>{10, 20}));
  EXPECT_EQ(Cut(TwoCubes(), plane, std::set<int>{20}).elements, std::vector<int>{20});
  EXPECT_EQ(FailureOf(TwoCubes(), plane, std::set<int>{20, 21}), "job: no element 21 in the mesh");
}

TEST_F(PlaneCutTest, SaysWhatWouldWorkWhenItMisses)
{
  EXPECT_EQ(FailureOf(TwoCubes(), {{9, 1, 1}, {2, 0, 0}}),
            "--plane passes no element, which lie from -9 to -5 along its normal, expected for example --plane "
            "2,1,1,2,0,0");
  EXPECT_EQ(FailureOf(TwoCubes(), {{1, 1, 1}, {1, 0, 0}}, std::set<int>{20}),
            "--plane passes no element of the part, which lie from 1 to 3 along its normal, expected for example "
            "--plane 3,1,1,1,0,0");
  // All nodes are on it or ahead.
  EXPECT_NE(FailureOf(TwoCubes(), {{0, 0, 0}, {1, 0, 0}}), "");
  EXPECT_EQ(FailureOf(TwoCubes(), {{4, 0, 0}, {1, 0, 0}}), "");
}

TEST_F(PlaneCutTest, NeedsForcesOfAllElementsThatItPasses)
{
  ForceMesh mesh = TwoCubes();
  AddElement(mesh, 30, "SPRINGA", 0, {9, 3});
  EXPECT_EQ(
      FailureOf(mesh, {{3, 0, 0}, {1, 0, 0}}),
      "job: no forces of 1 element that the plane passes in 580@it=0,an=1,lc=1,sub=1: 30, expected forces of all, "
      "or --elements or --set with those that have them");
  EXPECT_EQ(FailureOf(mesh, {{3, 0, 0}, {1, 0, 0}}, std::set<int>{20}), "");
}

TEST_F(PlaneCutTest, IsOfTheDisplacedNodesInDeformedGeometry)
{
  for (int node = 1; node <= 12; ++node) WriteVector(database_, 510, node, {10, 0, 0});
  const PlaneCut cut = Cut(TwoCubes(), {{11, 0, 0}, {1, 0, 0}}, std::nullopt, true);
  EXPECT_EQ(cut.elements, std::vector<int>{10});
  ExpectNear(cut.resultant.moment, {0, 12, -12}, 1e-13);
}

/// A cantilever along x from 0 to 8 whose end carries (0, -3, 0) at (8, 0, 0), (0, -2, 1.5) at (8, 2, 1) and (6, 0, 0)
/// at (8, 1, 0).
class PlaneCutOfTheCantilever : public testing::Test
{
protected:
  PlaneCutOfTheCantilever()
  {
    LogCapture log;
    ImportResults({Fixture("forces/cantilever.dat")}, database_, {});
    mesh_ = MakeForceMesh(deck_);
    ElementForces forces(database_, mesh_, 0, "cantilever");
    step_ = forces.Calculate(ResultKey(582), false);
  }

  PlaneCut Cut(const CutPlane& plane)
  {
    return CalculatePlaneCut(database_, mesh_, step_, plane, std::nullopt, "cantilever");
  }

  // Seven digits of stresses up to 60 on sections of 2, at arms of up to 8.
  static constexpr double kForce  = 3e-5;
  static constexpr double kMoment = 2e-4;

  DeckModel          deck_ = ReadDeckModel(Fixture("forces/cantilever.inp"));
  FED_ResultDatabase database_;
  ForceMesh          mesh_;
  ForceStep          step_;
};

// About (x, 1, 0.5), with the arm a = 8 - x: (1, -9 + 1.5 (4 - a), -20 + 5 (4 - a)).
TEST_F(PlaneCutOfTheCantilever, IsTheClosedFormAlongItsLength)
{
  for (const double x : {0.5, 1.0, 2.0, 3.7, 4.0, 5.1, 6.0, 7.999}) {
    const PlaneCut cut = Cut({{x, 1, 0.5}, {1, 0, 0}});
    const double   arm = 8 - x;
    EXPECT_EQ(cut.elements.size(), 2u) << x;
    ExpectNear(cut.resultant.force, {6, -5, 1.5}, kForce);
    ExpectNear(cut.resultant.moment, {1, -3 - 1.5 * arm, -5 * arm}, kMoment);
  }
}

// Whatever the plane: what acts on the nodes ahead of it.
TEST_F(PlaneCutOfTheCantilever, IsInEquilibriumWithWhatActsAhead)
{
  for (const Vector& normal : {Vector{1, 0.4, 0.2}, {0, 1, 0}, {0.3, -1, 0.5}, {0, 0, -1}, {-1, 2, -3}}) {
    const CutPlane             plane{{4.1, 0.9, 0.45}, normal};
    const FED_ConstIdDataBlock reactions(database_.GetConstDataBlock(ResultKey(511)), database_.GetIdMapsPool());
    Resultant                  expected;
    for (const auto& [id, position] : mesh_.nodes.Entries()) {
      const Vector arm = Minus(position, plane.point);
      if (arm[0] * normal[0] + arm[1] * normal[1] + arm[2] * normal[2] < 0) continue;
      Vector force;
      reactions.GetVector(id, force.data());
      expected.Add(arm, force.data());
    }
    const PlaneCut cut = Cut(plane);
    ExpectNear(cut.resultant.force, expected.force, kForce);
    ExpectNear(cut.resultant.moment, expected.moment, kMoment);
  }
}

TEST_F(PlaneCutOfTheCantilever, IsTheCutOfTheFreeBodyBehindIt)
{
  const PlaneCut cut  = Cut({{4, 1, 0.5}, {1, 0, 0}});
  const FreeBody body = CalculateFreeBody(database_, mesh_, step_, {11, 12, 21, 22}, {4, 1, 0.5}, "cantilever");
  ExpectNear(cut.resultant.force, body.cut.force, 1e-11);
  ExpectNear(cut.resultant.moment, body.cut.moment, 1e-11);
}

// The solver integrates stresses that it extrapolates to the surface with weights of five digits.
TEST_F(PlaneCutOfTheCantilever, IsTheSectionForceThatTheSolverPrints)
{
  std::ifstream       file(Fixture("forces/cantilever.dat"));
  std::string         line;
  std::vector<double> printed;
  const auto          readBehind = [&](const std::string& title) {
    while (std::getline(file, line) && line.find(title) == std::string::npos) {
    }
    for (double number = 0; file >> number;) printed.push_back(number);
    file.clear();
  };
  readBehind("total surface force");
  ASSERT_EQ(printed.size(), 6u);  // force and moment about the origin
  const PlaneCut cut = Cut({{4, 0, 0}, {1, 0, 0}});
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(cut.resultant.force[k], printed[k], 1e-4 * 6);
  // About the origin: that about (4, 0, 0), and (4, 0, 0) x force.
  const Vector& force = cut.resultant.force;
  const Vector  shift = {0, -4 * force[2], 4 * force[1]};
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(cut.resultant.moment[k] + shift[k], printed[3 + k], 1e-4 * 46);

  printed.clear();
  readBehind("moment about the center of gravity");
  ASSERT_EQ(printed.size(), 3u);
  const PlaneCut centre = Cut({{4, 1, 0.5}, {1, 0, 0}});
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(centre.resultant.moment[k], printed[k], 1e-4 * 20);
}

}  // namespace
}  // namespace quilon::calculix
