// The solver judges our forces: at every node of every result the sum of element forces is the RF that it prints.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../import/ImportTestSupport.h"
#include "calculix/deck/ReadDeckModel.h"
#include "calculix/ElementExpansion.h"
#include "elements/IntegrationRule.h"
#include "forces/ElementForces.h"
#include "forces/ForceBalance.h"
#include "forces/ForceMesh.h"
#include "import/ResultImport.h"
#include "LogCapture.h"

namespace quilon::calculix {
namespace {

using namespace quilon_test;

// A .dat prints stresses and RF with seven digits. The forces of an element add some fifty such stresses of either
// sign; 3.7e-7 of the largest RF was met in linear results. The deformed geometry adds the seven digits of
// displacements, which are of the size of the geometry here: 4.5e-7 was met.
constexpr double kLinearTolerance    = 2e-6;
constexpr double kNonlinearTolerance = 5e-6;

struct Result
{
  StepKey     key;
  bool        deformed;
  std::size_t numNodes;  ///< of which the deck asks RF
};

struct OracleRow
{
  const char*         stem;
  std::vector<Result> results;
  bool                fromFrd = false;  ///< displacements that the .dat does not have come from the .frd
};

void PrintTo(const OracleRow& row, std::ostream* out) { *out << row.stem; }

class ForceOracle : public testing::TestWithParam<OracleRow>
{};

void Import(const std::vector<std::filesystem::path>& files, FED_ResultDatabase& database)
{
  LogCapture log;
  ImportResults(files, database, {});
}

using NodeForces = std::map<int, std::array<double, 3>>;

/// Sums of element forces, from the blocks alone.
NodeForces SumsOf(FED_ResultDatabase& database, const FED_DataDescriptor& forces)
{
  NodeForces sums;
  const auto nodes = ElementNodes(database);
  for (const auto& [element, values] : ListsOf(database, forces, 1)) {
    const std::vector<int>& list = nodes.at(element);
    EXPECT_EQ(values.size(), 3 * list.size()) << "element " << element;
    for (std::size_t i = 0; i < values.size(); ++i) sums[list[i / 3]][i % 3] += values[i];
  }
  return sums;
}

TEST_P(ForceOracle, NodalSumsEqualTheSolversForcesAtEveryNode)
{
  const std::string  stem = GetParam().stem;
  FED_ResultDatabase reactions;
  Import({Fixture(stem + ".dat")}, reactions);
  FED_ResultDatabase both;
  if (GetParam().fromFrd) Import({Fixture(stem + ".dat"), Fixture(stem + ".frd")}, both);
  FED_ResultDatabase& database = GetParam().fromFrd ? both : reactions;
  const DeckModel     deck     = ReadDeckModel(Fixture(stem + ".inp"));
  const ForceMesh     mesh     = MakeForceMesh(deck);
  ElementForces       forces(database, mesh, 0, stem);

  double largest[2] = {};
  for (const auto& [key, deformed, numNodes] : GetParam().results) {
    const ForceStep step = forces.Calculate(Key(key, 582), deformed);
    EXPECT_EQ(step.numElements, mesh.elements.Entries().size());
    EXPECT_TRUE(step.skipped.empty());

    const auto sums      = SumsOf(database, step.forces);
    const auto theirs    = ValuesOf(reactions, Key(key, 511), 3);
    double     magnitude = 0.0;
    double     deviation = 0.0;
    double     total[3]  = {};
    for (const auto& [node, reaction] : theirs) {
      for (std::size_t k = 0; k < 3; ++k) {
        magnitude = std::max(magnitude, std::abs(reaction[k]));
        deviation = std::max(deviation, std::abs(sums.at(node)[k] - reaction[k]));
      }
    }
    for (const auto& [node, sum] : sums) {
      for (std::size_t k = 0; k < 3; ++k) total[k] += sum[k];
    }
    EXPECT_EQ(theirs.size(), numNodes);
    EXPECT_LE(deviation / magnitude, deformed ? kNonlinearTolerance : kLinearTolerance)
        << "step " << key.loadCase << " substep " << key.substep;
    largest[deformed ? 1 : 0] = std::max(largest[deformed ? 1 : 0], deviation / magnitude);
    // The functions of an element sum to one, so its forces sum to zero but for the rounding of doubles.
    for (const double component : total) EXPECT_LE(std::abs(component), 1e-12 * magnitude);

    // What the command tells is the same.
    if (!GetParam().fromFrd) {
      const ForceBalance balance = CalculateBalance(database, mesh, step, 0.0, stem);
      EXPECT_EQ(balance.nodes.size(), numNodes);
      EXPECT_EQ(balance.numIncomplete, 0u);
      EXPECT_NEAR(balance.largestResidual, deviation, 1e-12 * magnitude);
    }
  }
  std::printf("%-32s linear %.2e, deformed %.2e of max |RF|\n", stem.c_str(), largest[0], largest[1]);
}

/// A linear step and two increments of a nonlinear one.
std::vector<Result> LinearThenDeformed(std::size_t numNodes)
{
  return {{{1, AnalysisTime, 1}, false, numNodes},
          {{2, AnalysisTime, 1}, true, numNodes},
          {{2, AnalysisTime, 2}, true, numNodes}};
}

INSTANTIATE_TEST_SUITE_P(
    Decks, ForceOracle,
    testing::Values(
        OracleRow{"forces/c3d4", LinearThenDeformed(18)}, OracleRow{"forces/c3d6", LinearThenDeformed(18)},
        OracleRow{"forces/c3d8", LinearThenDeformed(18)},
        // Incompatible modes move its points when the geometry is deformed.
        OracleRow{"forces/c3d8i", {{{1, AnalysisTime, 1}, false, 18}}},
        // A brick with an edge on one node, and one with a face on one node.
        OracleRow{"forces/collapsed", LinearThenDeformed(11)}, OracleRow{"forces/c3d10", LinearThenDeformed(45)},
        OracleRow{"forces/c3d15", LinearThenDeformed(36)}, OracleRow{"forces/c3d20", LinearThenDeformed(32)},
        OracleRow{"forces/c3d20r", LinearThenDeformed(32)},
        OracleRow{"forces/bar", {{{1, AnalysisTime, 1}, false, 20}}},
        OracleRow{"forces/cantilever", {{{1, AnalysisTime, 1}, false, 89}}},
        // NLGEOM holds for the second step too; modes are of the undeformed mesh.
        OracleRow{"forces/steps",
                  {{{1, AnalysisTime, 1}, true, 12},
                   {{2, AnalysisTime, 1}, true, 12},
                   {{3, AnalysisTime, 1}, false, 12},
                   {{4, AnalysisModes, 1}, false, 12},
                   {{4, AnalysisModes, 2}, false, 12}}},
        OracleRow{"forces/dynamic", {{{1, AnalysisTime, 1}, true, 12}, {{1, AnalysisTime, 2}, true, 12}}},
        OracleRow{
            "a_tet/a_tet",
            {{{1, AnalysisTime, 1}, false, 9}, {{2, AnalysisTime, 2}, true, 63}, {{2, AnalysisTime, 4}, true, 63}}},
        // Two materials under pressure and heat.
        OracleRow{"b_hex/b_hex", {{{1, AnalysisTime, 1}, false, 9}}},
        OracleRow{"e_matrix/e_static", {{{1, AnalysisTime, 1}, false, 6}}},
        OracleRow{"hex8/hex8", LinearThenDeformed(9), true},
        OracleRow{"hex8i/hex8i", {{{1, AnalysisTime, 1}, false, 4}}},
        OracleRow{"hex20/hex20", LinearThenDeformed(13), true},
        OracleRow{"hex20r/hex20r", LinearThenDeformed(13), true}, OracleRow{"tet10/tet10", LinearThenDeformed(9), true},
        OracleRow{"wedge6/wedge6", LinearThenDeformed(6), true},
        OracleRow{"wedge15/wedge15", LinearThenDeformed(13), true},
        OracleRow{"mixed_quadratic/mixed_quadratic", LinearThenDeformed(8), true}),
    [](const auto& row) {
      std::string name = row.param.stem;
      std::replace(name.begin(), name.end(), '/', '_');
      return name;
    });

/// The user kind of a name.
int KindNamed(FED_ResultDatabase& database, const std::string& name)
{
  for (int onf = 1000; onf < 2000; ++onf) {
    if (database.GetUserKindName(static_cast<FED_OnfId>(onf)) == name) return onf;
  }
  return 0;
}

class PointOracle : public testing::TestWithParam<const char*>
{};

TEST_P(PointOracle, PointsLieWhereTheSolverPrintsThem)
{
  const std::string  stem = std::string("forces/") + GetParam();
  FED_ResultDatabase database;
  Import({Fixture(stem + ".dat")}, database);
  const DeckModel deck   = ReadDeckModel(Fixture(stem + ".inp"));
  const auto      theirs = ListsOf(database, Key({1, AnalysisTime, 1}, KindNamed(database, "COORD")), 1);
  ASSERT_EQ(theirs.size(), deck.elements.Entries().size());

  for (const auto& [id, element] : deck.elements.Entries()) {
    const IntegrationRule* rule = FindIntegrationRule(element.type->name);
    ASSERT_NE(rule, nullptr);
    ASSERT_EQ(theirs.at(id).size(), 3 * rule->points.size());
    std::vector<double> values(element.count);
    std::vector<double> derivatives(3 * element.count);
    for (std::size_t p = 0; p < rule->points.size(); ++p) {
      EvaluateShape(rule->shape, rule->points[p].local, values, derivatives);
      for (std::size_t k = 0; k < 3; ++k) {
        double own = 0.0;
        for (std::size_t n = 0; n < element.count; ++n)
          own += values[n] * deck.FindNode(deck.NodesOf(element)[n])->position[k];
        // Seven digits of coordinates up to 25.
        EXPECT_NEAR(theirs.at(id)[3 * p + k], own, 5.1e-6) << "element " << id << " point " << p + 1;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Decks, PointOracle,
                         testing::Values("c3d4", "c3d6", "c3d8", "c3d8i", "c3d10", "c3d15", "c3d20", "c3d20r"));

// The geometry matters: the deformed one taken for the undeformed is off a hundred times the tolerance.
TEST(ForceOracleGeometry, IsTheDeformedOneInNonlinearSteps)
{
  const std::string  stem = "forces/c3d10";
  FED_ResultDatabase database;
  Import({Fixture(stem + ".dat")}, database);
  const ForceMesh mesh = MakeForceMesh(ReadDeckModel(Fixture(stem + ".inp")));
  ElementForces   forces(database, mesh, 0, stem);
  for (const auto& [key, deformed, numNodes] : LinearThenDeformed(45)) {
    const ForceStep    step    = forces.Calculate(Key(key, 582), !deformed);
    const ForceBalance balance = CalculateBalance(database, mesh, step, 0.0, stem);
    EXPECT_GT(balance.largestResidual, 100 * kNonlinearTolerance * balance.largestForce);
  }
}

struct ExpansionRow
{
  const char* frd;
  Expansion   expected;
};

// What the solver has expanded is told from solids by its numbers, in every mesh that is here.
TEST(ForceOracleExpansion, IsThatOfEveryElement)
{
  const ExpansionRow rows[] = {
      {"c_shell/c_shell3d", Expansion::Layer}, {"c_shell_iso/c_shell_iso3d", Expansion::Layer},
      {"d_beam/d_beam3d", Expansion::Beam},    {"forces/bar", Expansion::None},
      {"forces/cantilever", Expansion::None},  {"forces/c3d6", Expansion::None},
      {"forces/c3d15", Expansion::None},       {"forces/c3d20", Expansion::None},
      {"hex8/hex8", Expansion::None},          {"hex20/hex20", Expansion::None},
      {"wedge6/wedge6", Expansion::None},      {"wedge15/wedge15", Expansion::None},
      {"b_hex/b_hex", Expansion::None},        {"mixed_quadratic/mixed_quadratic", Expansion::None},
      {"buckling/buckling", Expansion::None},  {"oriented/oriented", Expansion::None},
  };
  for (const ExpansionRow& row : rows) {
    FED_ResultDatabase database;
    Import({Fixture(std::string(row.frd) + ".frd")}, database);
    const ForceMesh mesh   = ReadForceMesh(database, 0, row.frd);
    const auto      isNode = [&mesh](int id) { return mesh.nodes.Find(id) != IdRadixMap<Vector>::npos; };
    EXPECT_FALSE(mesh.elements.Entries().empty());
    for (const auto& [id, element] : mesh.elements.Entries())
      EXPECT_EQ(FindExpansion(element.frdType, mesh.NodesOf(element), isNode), row.expected) << row.frd << ' ' << id;
  }
}

// Coordinates and displacements of a .frd have six digits. The bound that is told holds, and is within two orders of
// what is met.
TEST(ForceOracleRounding, StaysWithinTheBoundThatIsTold)
{
  for (const char* name : {"c3d4", "c3d8", "c3d10", "c3d15", "c3d20", "c3d20r"}) {
    const std::string  stem = std::string("forces/") + name;
    FED_ResultDatabase exact;
    FED_ResultDatabase rounded;
    Import({Fixture(stem + ".dat")}, exact);
    Import({Fixture(stem + ".dat"), Fixture(stem + ".frd")}, rounded);
    const ForceMesh exactMesh   = MakeForceMesh(ReadDeckModel(Fixture(stem + ".inp")));
    const ForceMesh roundedMesh = ReadForceMesh(rounded, 0, stem);
    EXPECT_FALSE(exactMesh.isRounded);
    ASSERT_TRUE(roundedMesh.isRounded);

    for (const auto& [key, deformed, numNodes] : LinearThenDeformed(0)) {
      const FED_DataDescriptor points      = Key(key, 582);
      const ForceStep          exactStep   = ElementForces(exact, exactMesh, 0, stem).Calculate(points, deformed);
      const ForceStep          roundedStep = ElementForces(rounded, roundedMesh, 0, stem).Calculate(points, deformed);
      EXPECT_EQ(exactStep.errorBound, 0.0);
      const auto one     = ListsOf(exact, exactStep.forces, 1);
      const auto other   = ListsOf(rounded, roundedStep.forces, 1);
      double     largest = 0.0;
      for (const auto& [element, values] : one) {
        for (std::size_t i = 0; i < values.size(); ++i)
          largest = std::max(largest, std::abs(values[i] - other.at(element)[i]));
      }
      EXPECT_GT(largest, 0.0) << name;
      EXPECT_LE(largest, roundedStep.errorBound) << name << " step " << key.loadCase << ' ' << key.substep;
      EXPECT_GE(largest, 0.01 * roundedStep.errorBound) << name << " step " << key.loadCase << ' ' << key.substep;
    }
  }
}

}  // namespace
}  // namespace quilon::calculix
