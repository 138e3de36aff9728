#include "import/ResultImport.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>

#include "elements/Extrapolation.h"
#include "FEM_PrincipalValue.h"
#include "ImportTestSupport.h"
#include "LogCapture.h"
#include "Snapshot.h"
#include "TempFolder.h"

namespace quilon {
namespace {

using namespace quilon_test;
using testing::ElementsAre;
using testing::IsEmpty;

ImportOptions InIteration(int iteration)
{
  ImportOptions options;
  options.iteration = iteration;
  return options;
}

/// A database with what one import left in it.
struct Imported
{
  LogCapture         log;
  FED_ResultDatabase database;
  ImportReport       report;

  explicit Imported(const std::vector<std::filesystem::path>& files, const ImportOptions& options = {})
  {
    report = ImportResults(files, database, options);
  }

  std::string NameOf(int onf) { return database.GetUserKindName(static_cast<FED_OnfId>(onf)); }

  double Scalar(int loadCase, int analysis, int quantity, std::size_t substep)
  {
    return database.GetDataBlock(ScalarKey(loadCase, analysis, quantity)).GetScalarAt(substep);
  }

  /// The user history of this name.
  int History(const std::string& name)
  {
    for (int onf = 1800; onf < 1900; ++onf) {
      if (NameOf(onf) == name) return onf;
    }
    return 0;
  }
};

std::vector<std::filesystem::path> Job(const std::string& stem)
{
  return {Fixture(stem + ".frd"), Fixture(stem + ".dat")};
}

std::vector<std::string> Lines(const std::vector<SkippedRows>& skipped)
{
  std::vector<std::string> lines;
  for (const SkippedRows& row : skipped) lines.push_back(std::to_string(row.rows) + " " + row.reason);
  return lines;
}

const std::set<StepKey> kTetSteps = {{1, AnalysisTime, 1}, {2, AnalysisTime, 2}, {2, AnalysisTime, 4}};

TEST(ResultImport, StepsAndIncrementsAreThoseOfTheFrd)
{
  Imported a(Job("a_tet/a_tet"));
  for (const int onf : {510, 511, 521, 522, 531, 550, 551, 552, 561, 582}) {
    EXPECT_EQ(StepsOf(a.database, onf), kTetSteps) << onf;
  }
  EXPECT_EQ(StepsOf(a.database, 519), (std::set<StepKey>{{1, AnalysisTime, 1}})) << "energy was asked for once";
}

TEST(ResultImport, DescriptorsOfResultsLeaveIncrementAndLayerUnset)
{
  Imported                 a(Job("a_tet/a_tet"), InIteration(3));
  const FED_DataDescriptor key = Key({2, AnalysisTime, 4}, 521, 3);
  ASSERT_TRUE(a.database.HasDataBlock(key));
  EXPECT_EQ(key.mask, 0b111011u) << "iteration, kind, load case, substep and analysis";
  EXPECT_FALSE(a.database.HasDataBlock(Key({2, AnalysisTime, 4}, 521, 0)));
}

TEST(ResultImport, TheMeshGoesByIterationAndKindAlone)
{
  Imported a(Job("a_tet/a_tet"));
  EXPECT_EQ(ValuesOf(a.database, MeshKey(516), 3).size(), 63u);
  const auto nodes = ElementNodes(a.database);
  EXPECT_EQ(nodes.size(), 144u);
  EXPECT_EQ(nodes.at(1001).size(), 4u);

  const FED_DataBlock& types  = a.database.GetConstDataBlock(MeshKey(596));
  FED_ConstDataRecord* record = types.CreateConstDataRecord();
  types.GetRecord(1, *record);
  EXPECT_EQ(record->GetInteger(1), 3) << "type code of a tetrahedron";
  EXPECT_EQ(record->GetInteger(2), 1) << "material";
  types.DeleteDataRecord(record);
}

TEST(ResultImport, QuadraticElementsHaveTheirNodesInTheDecksOrder)
{
  Imported h(Job("hex20r/hex20r"));
  // As the deck lists element 12.
  EXPECT_EQ(ElementNodes(h.database).at(12),
            (std::vector<int>{5, 8, 11, 14, 17, 20, 23, 26, 29, 32, 35, 38, 41, 44, 47, 50, 53, 56, 59, 62}));
}

TEST(ResultImport, NodalFieldsCarryTheFrdsValues)
{
  Imported      b(Job("b_hex/b_hex"));
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_THAT(ValuesOf(b.database, Key(step, 510), 3).at(2), ElementsAre(9.17084e-3, -8.46635e-3, -1.09629e-2));
  EXPECT_EQ(ValuesOf(b.database, Key(step, 510), 3).size(), 45u);
  EXPECT_EQ(ValuesOf(b.database, Key(step, 514), 1).at(1)[0], 393.0);
  for (const int vector : {511, 515}) EXPECT_EQ(ValuesOf(b.database, Key(step, vector), 3).size(), 45u) << vector;
  for (const int scalar : {517, 519}) EXPECT_EQ(ValuesOf(b.database, Key(step, scalar), 1).size(), 45u) << scalar;
}

TEST(ResultImport, VelocitiesGoToTheirKind)
{
  Imported f(Job("f_modal/f_dynamic"));
  EXPECT_EQ(StepsOf(f.database, 512),
            (std::set<StepKey>{{1, AnalysisTime, 5}, {1, AnalysisTime, 10}, {1, AnalysisTime, 15}}));
  EXPECT_THAT(ValuesOf(f.database, Key({1, AnalysisTime, 5}, 512), 3).at(11),
              ElementsAre(-3.42035, -5.061467e-1, -2.388587e1));
}

TEST(ResultImport, TheSolversOwnAverageGivesWayToOurs)
{
  Imported      b(Job("b_hex/b_hex"));
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_NE(ValuesOf(b.database, Key(step, 521), 6).at(1), ValuesOf(b.database, Key(step, 522), 6).at(1));
  EXPECT_TRUE(b.database.HasDataBlock(Key(step, 532)));
}

TEST(ResultImport, WithoutOursTheSolversAverageTakesItsPlace)
{
  Imported      alone({Fixture("b_hex/b_hex.frd")});
  Imported      both(Job("b_hex/b_hex"));
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_FALSE(alone.database.HasDataBlock(Key(step, 522)));
  EXPECT_EQ(ValuesOf(alone.database, Key(step, 521), 6), ValuesOf(both.database, Key(step, 522), 6));
  EXPECT_EQ(ValuesOf(alone.database, Key(step, 531), 6), ValuesOf(both.database, Key(step, 532), 6));
  EXPECT_THAT(alone.report.deviations, IsEmpty());
  EXPECT_THAT(alone.report.notices, IsEmpty());

  Imported tet(Job("a_tet/a_tet"));  // its .dat has stresses and no strains
  EXPECT_EQ(StepsOf(tet.database, 531), kTetSteps);
  EXPECT_THAT(StepsOf(tet.database, 532), IsEmpty());
}

TEST(ResultImport, UnknownDataSetsBecomeUserKindsOfTheirName)
{
  Imported      b(Job("b_hex/b_hex"));
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_EQ(b.NameOf(1000), "ERROR");
  EXPECT_EQ(b.NameOf(1200), "MESTRAIN");
  EXPECT_EQ(ValuesOf(b.database, Key(step, 1000), 1).size(), 45u);
  EXPECT_EQ(ValuesOf(b.database, Key(step, 1200), 6).size(), 45u);
}

TEST(ResultImport, ANameIsOneKindInAllFilesOfADatabase)
{
  LogCapture         log;
  FED_ResultDatabase database;
  ImportResults({Fixture("b_hex/b_hex.frd")}, database, {});
  ImportResults({Fixture("a_tet/a_tet.frd")}, database, InIteration(1));
  EXPECT_EQ(database.GetUserKindName(static_cast<FED_OnfId>(1000)), "ERROR");
  EXPECT_EQ(database.GetUserKindName(static_cast<FED_OnfId>(1001)), "");
  EXPECT_TRUE(database.HasDataBlock(Key({2, AnalysisTime, 4}, 1000, 1)));
}

TEST(ResultImport, PointsAreKeptInTheSolversOrder)
{
  Imported      b(Job("b_hex/b_hex"));
  const StepKey step{1, AnalysisTime, 1};
  const auto    points = ListsOf(b.database, Key(step, 582), 2);
  ASSERT_EQ(points.size(), 16u);
  ASSERT_EQ(points.at(1).size(), 48u);
  // The file prints xx, yy, zz, xy, xz, yz.
  EXPECT_THAT(std::vector<double>(points.at(1).begin(), points.at(1).begin() + 6),
              ElementsAre(-1.545892e2, -3.001448e2, -2.894167e2, -5.188939e1, 2.610384, -6.831894e1));
  EXPECT_EQ(ListsOf(b.database, Key(step, 583), 2).at(1)[0], 1.133823e-3);

  // Other points are lists of a user kind.
  EXPECT_EQ(b.NameOf(1700), "ME");
  EXPECT_EQ(b.NameOf(1701), "HFL");
  EXPECT_EQ(ListsOf(b.database, Key(step, 1700), 1).at(1).size(), 48u);
  EXPECT_EQ(ListsOf(b.database, Key(step, 1701), 1).at(1).size(), 24u);
  EXPECT_EQ(ListsOf(b.database, Key(step, 1701), 1).at(1)[0], 1.640676e2);
}

TEST(ResultImport, ElementRowsGoToEnergyOrAUserKind)
{
  Imported      b(Job("b_hex/b_hex"));
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_EQ(ValuesOf(b.database, Key(step, 540), 1).at(1)[0], 7.371435e1);
  EXPECT_EQ(b.NameOf(1400), "EVOL");
  EXPECT_EQ(ValuesOf(b.database, Key(step, 1400), 1).at(1)[0], 5.356065e2);

  Imported d(Job("d_beam/d_beam2d"));  // mass and six moments of inertia a row
  EXPECT_EQ(d.NameOf(1700), "ENER");
  EXPECT_EQ(d.NameOf(1701), "EMAS");
  EXPECT_EQ(ListsOf(d.database, Key(step, 1701), 1).at(1).size(), 7u);
}

/// A second road to the statistics: every value is gathered first, sums come after.
TEST(ResultImport, StatisticsAreThoseOfAPlainRecomputation)
{
  Imported      b(Job("b_hex/b_hex"));
  const StepKey step{1, AnalysisTime, 1};
  const auto    elements = ElementNodes(b.database);

  struct Kinds
  {
    int average, variance, error, count, mean, points;
  };
  for (const Kinds& kinds : {Kinds{521, 550, 551, 552, 561, 582}, Kinds{531, 553, 554, 555, 571, 583}}) {
    std::map<int, std::vector<std::array<double, 6>>> gathered;
    const auto                                        means     = ValuesOf(b.database, Key(step, kinds.mean), 6);
    double                                            magnitude = 0.0;
    for (const auto& [element, points] : ListsOf(b.database, Key(step, kinds.points), 2)) {
      std::vector<double> nodal(48);
      Extrapolate(*FindExtrapolation(1, 8), points, nodal);
      for (std::size_t n = 0; n < 8; ++n) {
        std::array<double, 6> tensor{};
        std::copy_n(&nodal[6 * n], 6, tensor.begin());
        gathered[elements.at(element)[n]].push_back(tensor);
      }
      for (std::size_t k = 0; k < 6; ++k) {
        double mean = 0.0;
        for (std::size_t p = 0; p < 8; ++p) mean += points[6 * p + k] / 8.0;
        EXPECT_NEAR(means.at(element)[k], mean, 1e-12 * std::abs(mean) + 1e-18);
        for (std::size_t p = 0; p < 8; ++p) magnitude = std::max(magnitude, std::abs(points[6 * p + k]));
      }
    }

    const auto   averages  = ValuesOf(b.database, Key(step, kinds.average), 6);
    const auto   variances = ValuesOf(b.database, Key(step, kinds.variance), 6);
    const auto   errors    = ValuesOf(b.database, Key(step, kinds.error), 1);
    const auto   counts    = ValuesOf(b.database, Key(step, kinds.count), 1);
    const double rounding  = 1e-13 * magnitude;
    ASSERT_EQ(averages.size(), 45u);
    ASSERT_EQ(gathered.size(), 45u);
    for (const auto& [node, tensors] : gathered) {
      const auto n = static_cast<double>(tensors.size());
      EXPECT_EQ(counts.at(node)[0], n);
      double standardError[6];
      for (std::size_t k = 0; k < 6; ++k) {
        double mean = 0.0;
        for (const auto& tensor : tensors) mean += tensor[k] / n;
        double variance = 0.0;
        for (const auto& tensor : tensors) variance += (tensor[k] - mean) * (tensor[k] - mean) / n;
        EXPECT_NEAR(averages.at(node)[k], mean, rounding);
        EXPECT_NEAR(variances.at(node)[k], variance, rounding * magnitude);
        standardError[k] = std::sqrt(variance / n);
      }
      // A unit in which strains are of the size of stresses, where the closed form holds.
      const double unit = kinds.error == 554 ? 1e6 : 1.0;
      for (double& component : standardError) component *= unit;
      double principal[3];
      FEM_PrincipalValue::Calculate(standardError, principal);
      EXPECT_NEAR(errors.at(node)[0] * unit, principal[0], 1e-7 * magnitude * unit);
    }
  }
}

TEST(ResultImport, ANodeOfOneElementHasNoVarianceAndNoError)
{
  Imported      h(Job("hex8r/hex8r"));
  const StepKey step{1, AnalysisTime, 1};
  const auto    counts    = ValuesOf(h.database, Key(step, 552), 1);
  const auto    variances = ValuesOf(h.database, Key(step, 550), 6);
  const auto    errors    = ValuesOf(h.database, Key(step, 551), 1);
  EXPECT_EQ(std::count_if(counts.begin(), counts.end(), [](const auto& c) { return c.second[0] == 1.0; }), 8)
      << "the two ends of a row of three";
  for (const auto& [node, count] : counts) {
    if (count[0] != 1.0) continue;
    EXPECT_EQ(variances.at(node), std::vector<double>(6, 0.0));
    EXPECT_EQ(errors.at(node)[0], 0.0);
  }
}

TEST(ResultImport, AnElementThatTwoBlocksPrintCountsOnce)
{
  TempFolder        folder;
  const std::string dat   = ReadText(Fixture("hex8r/hex8r.dat"));
  const std::size_t first = dat.find(" stresses");
  const std::size_t next  = dat.find(" strains");
  ASSERT_LT(first, next);
  WriteText(folder / "twice.dat", dat.substr(0, next) + dat.substr(first, next - first) + dat.substr(next));
  std::filesystem::copy(Fixture("hex8r/hex8r.frd"), folder / "twice.frd");

  Imported once(Job("hex8r/hex8r"));
  Imported twice({folder / "twice.frd", folder / "twice.dat"});
  EXPECT_EQ(Snapshot(twice.database), Snapshot(once.database));
}

TEST(ResultImport, TheOrderOfAJobsFilesDoesNotMatter)
{
  Imported one(Job("hex8r/hex8r"));
  Imported other({Fixture("hex8r/hex8r.dat"), Fixture("hex8r/hex8r.sta"), Fixture("hex8r/hex8r.frd")});
  EXPECT_EQ(Snapshot(one.database), Snapshot(other.database));
}

TEST(ResultImport, AveragesOfANodeAreGoneWhereALaterResultDoesNotReachIt)
{
  // The second result prints the first element alone.
  TempFolder  folder;
  std::string dat = ReadText(Fixture("hex8r/hex8r.dat"));
  for (std::size_t at = dat.find("0.1500000E+01"); at != std::string::npos; at = dat.find("0.1500000E+01", at + 1)) {
    const bool isPoint = dat.rfind("integ.pnt.", at) > dat.rfind('\n', at) && dat.rfind("integ.pnt.", at) < at;
    if (!isPoint) continue;
    const std::size_t row = dat.find('\n', dat.find('\n', dat.find('\n', at) + 1) + 1) + 1;  // behind the first row
    dat.erase(row, dat.find("\n\n", row) - row + 1);
  }
  WriteText(folder / "part.dat", dat);
  std::filesystem::copy(Fixture("hex8r/hex8r.frd"), folder / "part.frd");
  Imported part({folder / "part.frd", folder / "part.dat"});
  EXPECT_EQ(ValuesOf(part.database, Key({1, AnalysisTime, 1}, 521), 6).size(), 16u);
  EXPECT_EQ(ValuesOf(part.database, Key({2, AnalysisTime, 1}, 521), 6).size(), 8u);
  EXPECT_EQ(ValuesOf(part.database, Key({2, AnalysisTime, 2}, 521), 6).size(), 16u);
  EXPECT_THAT(part.report.notices,
              ElementsAre("part.dat: 8 nodal averages are over some of the node's elements only; the counts (552, 555) "
                          "tell"));
}

TEST(ResultImport, TimesAndTotalsAreHistoriesOfTheirStep)
{
  Imported a(Job("a_tet/a_tet"));
  EXPECT_EQ(a.Scalar(1, AnalysisTime, 501, 1), 1.0);
  EXPECT_EQ(a.Scalar(2, AnalysisTime, 501, 2), 1.5);
  EXPECT_EQ(a.Scalar(2, AnalysisTime, 501, 4), 2.0);
  EXPECT_EQ(a.Scalar(1, AnalysisTime, a.History("total force x FIX"), 1), -9.0);
  EXPECT_EQ(a.Scalar(1, AnalysisTime, a.History("total force z FIX"), 1), 4.05e1);
  EXPECT_EQ(a.Scalar(1, AnalysisTime, a.History("total internal energy EROOT"), 1), 2.921723e-2);
  EXPECT_EQ(a.Scalar(1, AnalysisTime, a.History("total volume EROOT"), 1), 7.870091e2);
}

TEST(ResultImport, AHistoryIsABlockOfKind500WithItsQuantityInIndexTen)
{
  Imported                 a(Job("a_tet/a_tet"));
  const FED_DataDescriptor key = ScalarKey(2, AnalysisTime, 501);
  EXPECT_EQ(key.GetInteger(FED_DataDescriptor::OnfId), 500);
  EXPECT_EQ(key.GetInteger(FED_DataDescriptor::Substep), 1);
  ASSERT_TRUE(a.database.HasDataBlock(key));
  const FED_DataBlock& block = a.database.GetConstDataBlock(key);
  EXPECT_FALSE(block.HasRecord(1));
  EXPECT_TRUE(block.HasRecord(2));
  EXPECT_FALSE(block.HasRecord(3));
  EXPECT_TRUE(block.HasRecord(4));
}

TEST(ResultImport, EigenvaluesAndFrequenciesGoByModeNumber)
{
  Imported          f(Job("f_modal/f_modal"));
  std::set<StepKey> modes;
  for (int mode = 1; mode <= 6; ++mode) modes.insert({1, AnalysisModes, mode});
  EXPECT_EQ(StepsOf(f.database, 510), modes);
  EXPECT_EQ(StepsOf(f.database, 521), modes);
  EXPECT_EQ(f.Scalar(1, AnalysisModes, 502, 1), 0.2692576e10);
  EXPECT_EQ(f.Scalar(1, AnalysisModes, 502, 6), 0.1238561e12);
  EXPECT_EQ(f.Scalar(1, AnalysisModes, 503, 1), 8258.555645) << "ten digits of the .frd, the .dat has seven";
  EXPECT_FALSE(f.database.HasDataBlock(ScalarKey(1, AnalysisModes, 501)));
  EXPECT_EQ(ValuesOf(f.database, Key({1, AnalysisModes, 2}, 510), 3).at(11)[1], -4.566096e2);

  Imported alone({Fixture("f_modal/f_modal.dat")});
  EXPECT_EQ(StepsOf(alone.database, 510), modes);
  EXPECT_EQ(alone.Scalar(1, AnalysisModes, 503, 1), 0.8258556e4);
  EXPECT_EQ(ValuesOf(alone.database, Key({1, AnalysisModes, 6}, 510), 3).at(11)[0], 3.879387e2);
}

TEST(ResultImport, StepsInTimeAndModesOfOneJobStayApart)
{
  Imported                m(Job("modal_steps/modal_steps"));
  const std::set<StepKey> steps = {{1, AnalysisTime, 1},  {2, AnalysisModes, 1}, {2, AnalysisModes, 2},
                                   {2, AnalysisModes, 3}, {3, AnalysisTime, 1},  {4, AnalysisModes, 1},
                                   {4, AnalysisModes, 2}};
  EXPECT_EQ(StepsOf(m.database, 521), steps);
  EXPECT_EQ(StepsOf(m.database, 522), steps);
  EXPECT_EQ(m.Scalar(3, AnalysisTime, 501, 1), 2.0);
  EXPECT_EQ(m.Scalar(2, AnalysisModes, 503, 3), 39408.72249);
  EXPECT_EQ(m.Scalar(4, AnalysisModes, 503, 1), 70678.97218);
}

TEST(ResultImport, ABucklingStepIsAPreloadAndModes)
{
  Imported b(Job("buckling/buckling"));
  EXPECT_EQ(StepsOf(b.database, 521),
            (std::set<StepKey>{{1, AnalysisTime, 1}, {1, AnalysisModes, 1}, {1, AnalysisModes, 2}}));
  EXPECT_EQ(b.Scalar(1, AnalysisModes, 504, 1), 399.3281520);
  EXPECT_EQ(b.Scalar(1, AnalysisModes, 504, 2), 869.5610408);
}

TEST(ResultImport, HarmonicResultsAreOfTheThirdAnalysis)
{
  Imported                s(Job("steady_state/steady_state"));
  const std::set<StepKey> steps = {{2, AnalysisOther, 1}, {2, AnalysisOther, 2}, {2, AnalysisOther, 3}};
  EXPECT_EQ(StepsOf(s.database, 521), steps);
  EXPECT_EQ(s.Scalar(2, AnalysisOther, 503, 3), 3000.0);
  EXPECT_EQ(s.NameOf(1100), "DISPI") << "the imaginary part of the displacements";
  EXPECT_EQ(s.NameOf(1200), "STRESSI");
  EXPECT_EQ(s.Scalar(1, AnalysisModes, 502, 1) > 0.0, true) << "the modes of the step before";
  EXPECT_EQ(s.NameOf(1700), "SI") << "the imaginary part of the points' stresses";
  EXPECT_EQ(StepsOf(s.database, 1700), steps);
}

TEST(ResultImport, HarmonicResultsOfPrintsAloneKeepTheirImaginaryParts)
{
  const std::set<StepKey> steps = {{2, AnalysisOther, 1}, {2, AnalysisOther, 2}, {2, AnalysisOther, 3}};
  Imported                both(Job("steady_state/steady_state"));
  Imported                prints({Fixture("steady_state/steady_state.dat")});
  EXPECT_EQ(StepsOf(prints.database, 510), steps);
  ASSERT_EQ(prints.NameOf(1100), "DISPI");
  ASSERT_EQ(prints.NameOf(1700), "SI");
  EXPECT_EQ(prints.Scalar(2, AnalysisOther, 503, 3), 3000.0);
  for (const StepKey& step : steps) {
    // At these nodes the .frd's values give way to those of the .dat, which have one digit more.
    for (const int onf : {510, 1100}) {
      const auto known = ValuesOf(both.database, Key(step, onf), 3);
      const auto found = ValuesOf(prints.database, Key(step, onf), 3);
      EXPECT_EQ(found.size(), 8u);
      for (const auto& [node, values] : found) EXPECT_EQ(known.at(node), values) << onf << " at node " << node;
    }
    EXPECT_EQ(ListsOf(both.database, Key(step, 1700), 1), ListsOf(prints.database, Key(step, 1700), 1));
    EXPECT_NE(ListsOf(both.database, Key(step, 1700), 1), ListsOf(both.database, Key(step, 582), 2));
  }
}

// The last block of the first time comes once more, of one node another value.
std::string WithRepeatedBlock(const std::string& dat, const std::string& title)
{
  const std::size_t first = dat.find(title);
  const std::size_t end   = dat.find("\n\n", dat.find("\n\n", first) + 2) + 2;
  std::string       block = dat.substr(first, end - first);
  block[block.find("E", block.find("\n\n")) - 1] ^= 1;  // the last digit of the first value
  return dat.substr(0, end) + block + dat.substr(end);
}

TEST(ResultImport, ABlockThatRepeatsATimeWithOtherValuesReplacesNothing)
{
  TempFolder folder;
  WriteText(folder / "job.dat", WithRepeatedBlock(ReadText(Fixture("hex8r/hex8r.dat")), " displacements"));
  std::filesystem::copy(Fixture("hex8r/hex8r.frd"), folder / "job.frd");
  Imported      job({folder / "job.frd", folder / "job.dat"});
  Imported      whole(Job("hex8r/hex8r"));
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_EQ(ValuesOf(job.database, Key(step, 510), 3), ValuesOf(whole.database, Key(step, 510), 3));
  EXPECT_THAT(Lines(job.report.skipped),
              testing::Contains("4 rows of blocks that repeat a time, a quantity and a set with other values"))
      << "the four nodes of the set";
}

// Where nothing lists the results, as of a substructure, they may all have one time.
TEST(ResultImport, BlocksOfOneTimeAreResultsOfTheirOwnWhereNothingListsThem)
{
  TempFolder        folder;
  const std::string header = "\n displacements (vx,vy,vz) for set N1 and time  0.8275784-312\n\n";
  const std::string forces = "\n forces (fx,fy,fz) for set N1 and time  0.8275784-312\n\n";
  const auto        row    = [](const char* value) {
    return std::string("         7  ") + value + "  0.000000E+00  0.000000E+00\n";
  };
  WriteText(folder / "sub.dat", header + row("1.000000E+00") + forces + row("5.000000E+00") + header +
                                    row("2.000000E+00") + forces + row("6.000000E+00") + header + row("3.000000E+00") +
                                    forces + row("7.000000E+00"));
  Imported                sub({folder / "sub.dat"});
  const std::set<StepKey> steps = {{1, AnalysisTime, 1}, {1, AnalysisTime, 2}, {1, AnalysisTime, 3}};
  EXPECT_EQ(StepsOf(sub.database, 510), steps);
  for (const StepKey& step : steps) {
    EXPECT_EQ(ValuesOf(sub.database, Key(step, 510), 3).at(7)[0], step.substep);
    EXPECT_EQ(ValuesOf(sub.database, Key(step, 511), 3).at(7)[0], step.substep + 4);
  }
}

TEST(ResultImport, BinaryAndTextFilesGiveTheSame)
{
  Imported      text({Fixture("e_matrix/e_static.frd")});
  Imported      binary({Fixture("e_matrix/e_static_bin.frd")});
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_EQ(ElementNodes(text.database), ElementNodes(binary.database));
  for (const auto& [onf, numValues] : {std::pair<int, std::size_t>{510, 3}, {511, 3}, {521, 6}}) {
    if (!text.database.HasDataBlock(Key(step, onf))) continue;
    const auto one   = ValuesOf(text.database, Key(step, onf), numValues);
    const auto other = ValuesOf(binary.database, Key(step, onf), numValues);
    ASSERT_EQ(one.size(), 24u);
    ASSERT_EQ(other.size(), 24u);
    double magnitude = 0.0;
    for (const auto& [node, row] : one) {
      for (const double value : row) magnitude = std::max(magnitude, std::abs(value));
    }
    for (const auto& [node, row] : one) {
      for (std::size_t k = 0; k < numValues; ++k) {
        EXPECT_NEAR(row[k], other.at(node)[k], 5e-6 * magnitude) << "text has six digits";
      }
    }
  }
}

TEST(ResultImport, NanAndInfinityAndTinyNumbersPassThrough)
{
  Imported      n(Job("traps/nan"));
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_TRUE(std::isnan(ValuesOf(n.database, Key(step, 510), 3).at(4)[0]));
  for (const int onf : {521, 522, 561}) {
    for (const auto& [id, tensor] : ValuesOf(n.database, Key(step, onf), 6)) EXPECT_TRUE(std::isnan(tensor[0])) << onf;
  }

  Imported tiny(Job("traps/x1_tiny"));
  double   largest = 0.0;
  for (const auto& [id, tensor] : ValuesOf(tiny.database, Key(step, 521), 6)) {
    for (const double value : tensor) largest = std::max(largest, std::abs(value));
  }
  EXPECT_GT(largest, 0.0) << "three-digit exponents";
  EXPECT_LT(largest, 1e-100);

  Imported big(Job("traps/x2_big"));
  bool     infinite = false;
  for (const auto& [id, tensor] : ValuesOf(big.database, Key(step, 522), 6))
    infinite = infinite || std::isinf(tensor[0]);
  EXPECT_TRUE(infinite) << "the solver's own";
  for (const auto& [id, tensor] : ValuesOf(big.database, Key(step, 521), 6)) EXPECT_TRUE(std::isfinite(tensor[0]));
}

TEST(ResultImport, ADatAloneIsNumberedAndNotAveraged)
{
  Imported a({Fixture("hex8r/hex8r.dat"), Fixture("hex8r/hex8r.sta")});
  // The .sta beside it tells the increments.
  EXPECT_EQ(StepsOf(a.database, 582),
            (std::set<StepKey>{{1, AnalysisTime, 1}, {2, AnalysisTime, 1}, {2, AnalysisTime, 2}}));
  EXPECT_THAT(a.report.notices,
              ElementsAre("hex8r.dat: neither hex8r.frd nor a deck with its mesh, nothing is averaged at nodes"));

  TempFolder folder;
  std::filesystem::copy(Fixture("hex8r/hex8r.dat"), folder / "alone.dat");
  Imported alone({folder / "alone.dat"});
  EXPECT_EQ(StepsOf(alone.database, 582),
            (std::set<StepKey>{{1, AnalysisTime, 1}, {1, AnalysisTime, 2}, {1, AnalysisTime, 3}}));
  EXPECT_THAT(StepsOf(alone.database, 521), IsEmpty());
  EXPECT_EQ(StepsOf(alone.database, 561).size(), 3u) << "element means need no mesh";
  EXPECT_THAT(
      alone.report.notices,
      ElementsAre("alone.dat: neither alone.frd nor a deck with its mesh, nothing is averaged at nodes",
                  "alone.dat: neither alone.frd nor alone.sta tells steps and increments, result times are numbered"));
  EXPECT_THAT(Lines(alone.report.skipped), ElementsAre("18 points of elements that no mesh holds"));
}

TEST(ResultImport, TheDatFillsInNodesAndFieldsThatTheFrdLacks)
{
  // The rotation node of a rigid body is in no mesh and in no .frd.
  Imported      r(Job("rigid_body/rigid_body"));
  const StepKey step{1, AnalysisTime, 1};
  const auto    displacements = ValuesOf(r.database, Key(step, 510), 3);
  EXPECT_EQ(displacements.at(9001)[2], 1.101682e-4);
  EXPECT_EQ(displacements.at(9000)[1], 1.483168e-3) << "seven digits, where the .frd has six of them";
  EXPECT_EQ(ValuesOf(r.database, Key(step, 511), 3).at(9000)[1], 4.999999) << "forces are in the .dat alone";
  EXPECT_THAT(Lines(r.report.skipped), ElementsAre("2 rows of nodes that no mesh holds (kept)"));
}

// All zeros in the .frd of some shells, to name one case.
TEST(ResultImport, AValueOfTheDatThatIsNotThatOfTheFrdGivesWay)
{
  TempFolder  folder;
  std::string dat = ReadText(Fixture("rigid_body/rigid_body.dat"));
  const auto  at  = dat.find(" 1.483168E-03");
  ASSERT_NE(at, std::string::npos);
  WriteText(folder / "a.dat", dat.replace(at, 13, " 1.483188E-03"));
  std::filesystem::copy(Fixture("rigid_body/rigid_body.frd"), folder / "a.frd");
  Imported   r({folder / "a.frd", folder / "a.dat"});
  const auto displacements = ValuesOf(r.database, Key({1, AnalysisTime, 1}, 510), 3);
  EXPECT_EQ(displacements.at(9000), (std::vector<double>{5.50693e-5, 1.48317e-3, -5.27809e-7}));
}

// Nodes with *TRANSFORM: the solver marks their rows.
TEST(ResultImport, VectorsOfNodesInAxesOfTheirOwnAreKeptApart)
{
  TempFolder folder;
  WriteText(folder / "a.dat",
            "\n displacements (vx,vy,vz) for set NALL and time  0.1000000E+01\n\n"
            "         7  1.000000E+00  0.000000E+00  0.000000E+00\n"
            "         8  5.000000E-01  2.000000E+00  0.000000E+00 L\n");
  Imported      a({folder / "a.dat"});
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_EQ(ValuesOf(a.database, Key(step, 510), 3), (std::map<int, std::vector<double>>{{7, {1, 0, 0}}}));
  EXPECT_EQ(a.database.GetUserKindName(static_cast<FED_OnfId>(1100)), "U in local systems");
  EXPECT_EQ(ValuesOf(a.database, Key(step, 1100), 3), (std::map<int, std::vector<double>>{{8, {0.5, 2, 0}}}));
  EXPECT_THAT(Lines(a.report.skipped), ElementsAre("1 rows of nodes in local systems (kept apart)"));
}

TEST(ResultImport, ElementTypesWithoutExtrapolationAreNamedAndCounted)
{
  Imported d(Job("d_beam/d_beam2d"));
  EXPECT_THAT(Lines(d.report.skipped),
              ElementsAre("200 element type without extrapolation: 3-node line with 50 points"))
      << "four beams";
  EXPECT_EQ(ListsOf(d.database, Key({1, AnalysisTime, 1}, 582), 2).size(), 4u) << "their points are kept";
  EXPECT_EQ(ValuesOf(d.database, Key({1, AnalysisTime, 1}, 561), 6).size(), 4u) << "and so are their means";
}

TEST(ResultImport, RowsInLocalSystemsAreKeptApartAndNotAveraged)
{
  Imported      c(Job("c_shell/c_shell3d"));
  const StepKey step{1, AnalysisTime, 1};
  EXPECT_EQ(c.NameOf(1700), "S in local systems");
  EXPECT_EQ(c.NameOf(1701), "E in local systems");
  const auto local = ListsOf(c.database, Key(step, 1700), 1);
  ASSERT_EQ(local.size(), 6u);
  EXPECT_EQ(local.at(1).size(), 24u * 6u) << "three layers of eight points";
  EXPECT_EQ(local.at(1)[0], 1.712224e1);
  EXPECT_FALSE(c.database.HasDataBlock(Key(step, 582)));
  EXPECT_FALSE(c.database.HasDataBlock(Key(step, 561)));
  EXPECT_FALSE(c.database.HasDataBlock(Key(step, 522)));
  EXPECT_TRUE(c.database.HasDataBlock(Key(step, 521))) << "the solver's own";
  EXPECT_EQ(ElementNodes(c.database).size(), 18u) << "the count in the file says 6";
  EXPECT_THAT(Lines(c.report.skipped), testing::Contains("288 rows in local systems (kept, not averaged)"))
      << "stress and strain of six elements with 24 points";
}

TEST(ResultImport, DerivesAllThatCanBeDerivedOrWhatIsRequested)
{
  class Requests : public OnfResultRequestFile
  {
  public:
    bool typeIsRequested(int onf) const override { return onf == 570; }
  };

  const StepKey step{1, AnalysisTime, 1};
  Imported      all(Job("b_hex/b_hex"));
  for (const int onf : {520, 530, 560, 570}) EXPECT_TRUE(all.database.HasDataBlock(Key(step, onf))) << onf;

  Requests      requests;
  ImportOptions options;
  options.requests = &requests;
  Imported some(Job("b_hex/b_hex"), options);
  EXPECT_TRUE(some.database.HasDataBlock(Key(step, 570)));
  for (const int onf : {520, 530, 560}) EXPECT_FALSE(some.database.HasDataBlock(Key(step, onf))) << onf;
  EXPECT_EQ(all.report.blocks, some.report.blocks + 3);
}

TEST(ResultImport, PrincipalStrainsSumToTheTrace)
{
  Imported      b(Job("b_hex/b_hex"));
  const StepKey step{1, AnalysisTime, 1};
  const auto    principals = ValuesOf(b.database, Key(step, 530), 3);
  for (const auto& [node, strain] : ValuesOf(b.database, Key(step, 531), 6)) {
    const std::vector<double>& p = principals.at(node);
    EXPECT_NEAR(p[0] + p[1] + p[2], strain[0] + strain[1] + strain[2], 1e-15) << "strains of 1e-3";
    // The determinant: a wrong branch of the closed form would make one value zero.
    const double xx = strain[0], yy = strain[1], zz = strain[2], xy = strain[3], yz = strain[4], zx = strain[5];
    const double determinant = xx * (yy * zz - yz * yz) - xy * (xy * zz - yz * zx) + zx * (xy * yz - yy * zx);
    EXPECT_NEAR(p[0] * p[1] * p[2], determinant, 1e-20) << "products of 1e-9";
  }
}

TEST(ResultImport, LogsWhichStepsOfWhichFileItReads)
{
  Imported a(Job("a_tet/a_tet"));
  EXPECT_THAT(a.log.GetTexts(),
              testing::IsSupersetOf({"reading results of a_tet.dat", "\treading loadcase  1, substep 1",
                                     "\treading loadcase  2, substeps 2,4", "reading results of a_tet.frd",
                                     "Calculating additional results."}));
}

TEST(ResultImport, TellsItsProgressPerFile)
{
  std::map<std::string, std::pair<std::uint64_t, std::uint64_t>> last;
  ImportOptions                                                  options;
  options.progress = [&last](const std::string& phase, std::uint64_t done, std::uint64_t total) {
    last[phase] = {done, total};
  };
  Imported   a(Job("a_tet/a_tet"), options);
  const auto size = [](const char* name) { return std::filesystem::file_size(Fixture(name)); };
  ASSERT_EQ(last.size(), 2u);
  EXPECT_EQ(last["reading a_tet.frd"].second, size("a_tet/a_tet.frd"));
  EXPECT_EQ(last["reading a_tet.dat"].second, size("a_tet/a_tet.dat"));
}

TEST(ResultImport, SeveralJobsAreReadOneAfterTheOther)
{
  LogCapture         log;
  FED_ResultDatabase database;
  const auto         one   = Job("hex8r/hex8r");
  const auto         other = Job("f_modal/f_modal");
  // Their element ids meet, so each has its iteration.
  ImportResults(one, database, {});
  const ImportReport report = ImportResults(other, database, InIteration(1));
  EXPECT_TRUE(database.HasDataBlock(Key({2, AnalysisTime, 2}, 521, 0)));
  EXPECT_TRUE(database.HasDataBlock(Key({1, AnalysisModes, 6}, 521, 1)));
  EXPECT_GT(report.blocks, 0u);

  Imported both({Fixture("e_matrix/e_static.frd"), Fixture("f_modal/f_modal.frd")});
  EXPECT_TRUE(both.database.HasDataBlock(Key({1, AnalysisTime, 1}, 510)));
  EXPECT_TRUE(both.database.HasDataBlock(Key({1, AnalysisModes, 1}, 510))) << "two jobs on one mesh";
}

TEST(ResultImport, ALaterImportReplacesValuesAndWhatWasDerivedFromThem)
{
  LogCapture         log;
  FED_ResultDatabase database;
  const StepKey      step{1, AnalysisTime, 1};
  ImportResults({Fixture("b_hex/b_hex.frd")}, database, {});
  const auto         former = ValuesOf(database, Key(step, 520), 3);
  const ImportReport report = ImportResults(Job("b_hex/b_hex"), database, {});

  Imported fresh(Job("b_hex/b_hex"));
  for (const int onf : {520, 530}) {
    EXPECT_EQ(ValuesOf(database, Key(step, onf), 3), ValuesOf(fresh.database, Key(step, onf), 3)) << onf;
  }
  EXPECT_NE(ValuesOf(database, Key(step, 520), 3), former);
  // 510, 511, 514, 515, 517, 519, 521, 531, ERROR and MESTRAIN.
  EXPECT_THAT(report.notices,
              ElementsAre("b_hex: 10 blocks of results that the database had already are written over"));
}

TEST(ResultImport, WhatTheReaderDoesNotDeliverIsNamedToo)
{
  Imported f(Job("f_modal/f_modal"));
  EXPECT_THAT(Lines(f.report.skipped), testing::Contains("6 participation factors"));
}

TEST(ResultImport, AFileWithoutMeshAndResultsLeavesNothing)
{
  Imported e({Fixture("e_matrix/e_matrix.frd")});
  EXPECT_EQ(e.report.blocks, 0u);
}

}  // namespace
}  // namespace quilon
