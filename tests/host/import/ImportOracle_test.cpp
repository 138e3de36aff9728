// The solver judges our averages: at every node all of whose elements we average, at every result time, for stress and
// strain, our nodal value is the one that the solver prints.

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "import/ResultImport.h"
#include "ImportTestSupport.h"
#include "LogCapture.h"

namespace quilon {
namespace {

using namespace quilon_test;

// A .frd prints six digits, a .dat seven, and of the extrapolation of seven digits some are lost: 4.6e-6 was met.
constexpr double kTolerance = 5e-6;

// Half of the .frd's last digit is 5e-6 of a field whose largest magnitude has the figures 1.00000, and less of a
// larger one. In these decks it has 1.3 or more; with the digits that the extrapolation loses, 3.0e-6 was met.
constexpr double kSharpTolerance = 4e-6;

struct OracleRow
{
  const char*                        stem;
  std::map<std::string, std::size_t> nodes;  ///< node and time pairs by element type and quantity, counted by hand
  double                             tolerance = kTolerance;
};

void PrintTo(const OracleRow& row, std::ostream* out) { *out << row.stem; }

class ImportOracle : public testing::TestWithParam<OracleRow>
{};

struct Kinds
{
  const char* name;
  int         average;
  int         solver;
  int         count;
};

constexpr Kinds kKinds[] = {{"stress", 521, 522, 552}, {"strain", 531, 532, 555}};

/// The largest deviation over all element types, as a fraction of the field's largest magnitude, from the blocks alone.
double LargestDeviation(FED_ResultDatabase& database, const Kinds& kinds, std::size_t& numNodes)
{
  std::map<int, int> elementsOfNode;
  for (const auto& [element, nodes] : ElementNodes(database)) {
    for (const int node : nodes) ++elementsOfNode[node];
  }

  double largest = 0.0;
  numNodes       = 0;
  for (const StepKey& step : StepsOf(database, kinds.solver)) {
    const auto theirs    = ValuesOf(database, Key(step, kinds.solver), 6);
    const auto ours      = ValuesOf(database, Key(step, kinds.average), 6);
    const auto counts    = ValuesOf(database, Key(step, kinds.count), 1);
    double     magnitude = 0.0;
    double     deviation = 0.0;
    for (const auto& [node, tensor] : theirs) {
      for (const double value : tensor) magnitude = std::max(magnitude, std::abs(value));
      const auto own = ours.find(node);
      if (own == ours.end() || counts.at(node)[0] != elementsOfNode[node]) continue;
      ++numNodes;
      for (std::size_t k = 0; k < 6; ++k) deviation = std::max(deviation, std::abs(own->second[k] - tensor[k]));
    }
    largest = std::max(largest, deviation / magnitude);
  }
  return largest;
}

TEST_P(ImportOracle, NodalAveragesEqualTheSolversOwnAtEveryNodeAndTime)
{
  LogCapture         log;
  FED_ResultDatabase database;
  const std::string  stem   = GetParam().stem;
  const ImportReport report = ImportResults({Fixture(stem + ".frd"), Fixture(stem + ".dat")}, database, {});

  std::map<std::string, std::size_t> nodes;
  std::map<std::string, std::size_t> nodesOfQuantity;
  std::map<std::string, double>      reported;
  for (const AverageDeviation& deviation : report.deviations) {
    EXPECT_LE(deviation.largest, GetParam().tolerance) << deviation.elementType << " " << deviation.quantity;
    nodes[deviation.elementType + " " + deviation.quantity] = deviation.nodes;
    nodesOfQuantity[deviation.quantity] += deviation.nodes;
    reported[deviation.quantity] = std::max(reported[deviation.quantity], deviation.largest);
  }
  EXPECT_EQ(nodes, GetParam().nodes);

  // The same from the blocks, without what the import says of itself.
  for (const Kinds& kinds : kKinds) {
    std::size_t  numNodes = 0;
    const double largest  = LargestDeviation(database, kinds, numNodes);
    EXPECT_LE(largest, GetParam().tolerance) << kinds.name;
    EXPECT_EQ(largest, reported[kinds.name]) << kinds.name;
    EXPECT_EQ(numNodes, nodesOfQuantity[kinds.name]) << kinds.name;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Decks, ImportOracle,
    testing::Values(OracleRow{"a_tet/a_tet", {{"C3D4 stress", 3 * 63}}},
                    OracleRow{"b_hex/b_hex", {{"C3D8 stress", 45}, {"C3D8 strain", 45}}},
                    OracleRow{"hex8/hex8", {{"C3D8 stress", 3 * 36}, {"C3D8 strain", 3 * 36}}},
                    // A C3D8I goes by the rule of a C3D8, from which its results do not tell it.
                    OracleRow{"hex8i/hex8i", {{"C3D8 stress", 3 * 16}, {"C3D8 strain", 3 * 16}}},
                    OracleRow{"hex8r/hex8r", {{"C3D8R stress", 3 * 16}, {"C3D8R strain", 3 * 16}}},
                    OracleRow{"tet10/tet10", {{"C3D10 stress", 3 * 45}, {"C3D10 strain", 3 * 45}}},
                    OracleRow{"hex20r/hex20r", {{"C3D20R stress", 3 * 51}, {"C3D20R strain", 3 * 51}}},
                    OracleRow{"wedge6/wedge6", {{"C3D6 stress", 3 * 24}, {"C3D6 strain", 3 * 24}}, kSharpTolerance},
                    OracleRow{"wedge15/wedge15", {{"C3D15 stress", 3 * 59}, {"C3D15 strain", 3 * 59}}, kSharpTolerance},
                    OracleRow{"hex20/hex20", {{"C3D20 stress", 3 * 51}, {"C3D20 strain", 3 * 51}}, kSharpTolerance},
                    // Four cells in a row: the ends have nodes of one type, the three planes between have two.
                    OracleRow{"mixed_linear/mixed_linear",
                              {{"C3D8 stress", 3 * 4},
                               {"C3D8 strain", 3 * 4},
                               {"mixed stress", 3 * 12},
                               {"mixed strain", 3 * 12},
                               {"C3D8R stress", 3 * 4},
                               {"C3D8R strain", 3 * 4}}},
                    // A brick's own: its end's 8 and 4 along the cell; shared: three planes of 8; the tetrahedra's own:
                    // 4 along the cell, the middles of its body diagonal and of six face diagonals; the wedges' own: 4
                    // along the cell and the middles of two face diagonals.
                    OracleRow{"mixed_quadratic/mixed_quadratic",
                              {{"C3D20R stress", 3 * 12},
                               {"C3D20R strain", 3 * 12},
                               {"mixed stress", 3 * 24},
                               {"mixed strain", 3 * 24},
                               {"C3D10 stress", 3 * 11},
                               {"C3D10 strain", 3 * 11},
                               {"C3D15 stress", 3 * 6},
                               {"C3D15 strain", 3 * 6},
                               {"C3D20 stress", 3 * 12},
                               {"C3D20 strain", 3 * 12}}},
                    // Beams go by the rule of the bricks that they expand to: 4 in a row, 8 nodes of a plane between
                    // and 4 along each. The last plane belongs to the truss too.
                    OracleRow{"d_beam/d_beam3d", {{"C3D20 stress", 5 * 8 + 4 * 4}}},
                    OracleRow{"e_matrix/e_static", {{"C3D8 stress", 24}}},
                    OracleRow{"e_matrix/e_static_bin", {{"C3D8 stress", 24}}},
                    // Two results in time, three modes and two.
                    OracleRow{"modal_steps/modal_steps", {{"C3D20R stress", 7 * 32}}},
                    // A preload and two modes.
                    OracleRow{"buckling/buckling", {{"C3D20R stress", 3 * 32}}},
                    // Three frequencies; real parts alone are averaged.
                    OracleRow{"steady_state/steady_state", {{"C3D20R stress", 3 * 32}}},
                    OracleRow{"rigid_body/rigid_body", {{"C3D20R stress", 32}}}),
    [](const testing::TestParamInfo<OracleRow>& row) { return std::filesystem::path(row.param.stem).stem().string(); });

}  // namespace
}  // namespace quilon
