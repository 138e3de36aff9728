// What an import takes from a deck: the mesh, sets, materials, sections, orientations, and averages that stop at
// borders.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "elements/Extrapolation.h"
#include "import/ResultImport.h"
#include "ImportTestSupport.h"
#include "LogCapture.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace quilon {
namespace {

using namespace quilon_test;
using testing::ElementsAre;

constexpr auto kGroupIndex = static_cast<FED_DataDescriptor::ResultIndex>(11);

// Half of the .frd's last digit is 5e-6 of a field whose largest magnitude has the figures 1.00000; here it is 1.4 and
// more, and 2.4e-6 was met.
constexpr double kSharpTolerance = 4e-6;

struct Imported
{
  LogCapture         log;
  FED_ResultDatabase database;
  ImportReport       report;

  explicit Imported(const std::vector<std::filesystem::path>& files, const ImportOptions& options = {})
  {
    report = ImportResults(files, database, options);
  }

  /// The fields of each record of a block of the mesh, by id: strings, integers, doubles and lists in one line.
  std::map<int, std::string> Rows(int onf)
  {
    std::map<int, std::string> rows;
    const FED_DataBlock&       block = database.GetConstDataBlock(MeshKey(onf));
    const FED_ConstIdDataBlock view(block, database.GetIdMapsPool());
    FED_ConstDataRecord*       record = block.CreateConstDataRecord();
    for (FED_DataBlock::IndexIterator it = block.Begin(), end = block.End(); it != end; ++it) {
      block.GetRecord(*it, *record);
      rows[view.GetId(*it)] = Show(*record);
    }
    block.DeleteDataRecord(record);
    return rows;
  }

private:
  static std::string Show(const FED_ConstDataRecord& record)
  {
    std::ostringstream text;
    for (std::size_t field = 1; field <= record.GetFieldCount(); ++field) {
      if (field > 1) text << ' ';
      switch (record.GetFieldType(field)) {
        case 4:
          text << record.GetString(field);
          break;
        case 1:
        case 10:
          text << record.GetInteger(field);
          break;
        case 2:
        case 11:
          text << record.GetDouble(field);
          break;
        case 9: {
          FED_DoubleArray list;
          record.GetDoubleList(field, list);
          for (std::size_t i = 0; i < list.GetSize(); ++i) text << (i > 0 ? "," : "") << list.GetData()[i];
          break;
        }
        default: {
          FED_IntArray list;
          record.GetIntList(field, list);
          for (std::size_t i = 0; i < list.GetSize(); ++i) text << (i > 0 ? "," : "") << list.GetData()[i];
        }
      }
    }
    return text.str();
  }
};

std::vector<std::filesystem::path> WithDeck(const std::string& stem)
{
  return {Fixture(stem + ".inp"), Fixture(stem + ".frd"), Fixture(stem + ".dat")};
}

FED_DataDescriptor GroupKey(const StepKey& step, int onf, int group)
{
  FED_DataDescriptor key = Key(step, onf);
  key.SetInteger(kGroupIndex, group);
  return key;
}

std::string MessageOf(const std::vector<std::filesystem::path>& files, const ImportOptions& options = {})
{
  LogCapture         log;
  FED_ResultDatabase database;
  try {
    ImportResults(files, database, options);
  } catch (const FED_Failure& failure) {
    return failure.GetMessage();
  }
  return {};
}

std::string Replaced(std::string text, const std::string& from, const std::string& to)
{
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

const StepKey kFirst{1, AnalysisTime, 1};

TEST(DeckImport, CoordinatesHaveAllDigitsOfTheDeck)
{
  const TempFolder folder;
  WriteText(folder / "job.inp", Replaced(ReadText(Fixture("hex8i/hex8i.inp")), "8, 10.393,", "8, 10.39300000012,"));
  Imported job({folder / "job.inp", Fixture("hex8i/hex8i.frd")});
  EXPECT_EQ(ValuesOf(job.database, MeshKey(516), 3).at(8)[0], 10.39300000012);
}

TEST(DeckImport, WhereTheResultsContradictTheDeckTheSolversCoordinatesAreKept)
{
  const TempFolder folder;
  WriteText(folder / "job.inp", Replaced(ReadText(Fixture("hex8i/hex8i.inp")), "8, 10.393,", "8, 10.394,"));
  Imported job({folder / "job.inp", Fixture("hex8i/hex8i.frd")});
  EXPECT_EQ(ValuesOf(job.database, MeshKey(516), 3).at(8)[0], 10.393);
  ASSERT_EQ(job.report.skipped.size(), 1u);
  EXPECT_EQ(job.report.skipped[0].reason, "coordinates of the deck that the results contradict");
  EXPECT_EQ(job.report.skipped[0].rows, 1u);
  ASSERT_EQ(job.report.notices.size(), 1u);
  EXPECT_EQ(job.report.notices[0],
            "the deck has 1 node elsewhere than the results: node 8 by 0.001; the solver's coordinates are kept");

  ImportOptions strict;
  strict.strict = true;
  EXPECT_EQ(MessageOf({folder / "job.inp", Fixture("hex8i/hex8i.frd")}, strict),
            "expected to read everything, left out: 1 x coordinates of the deck that the results contradict");
}

// The solver moves nodes of contact and ties by a little, and no other node.
TEST(DeckImport, ADeckWhoseNodesLieFarFromTheResultsIsOfAnotherRun)
{
  const TempFolder  folder;
  const std::string deck = Replaced(ReadText(Fixture("hex8i/hex8i.inp")), "8, 10.393,", "8, 10.693,");
  WriteText(folder / "job.inp", deck);
  const std::vector<std::filesystem::path> files = {folder / "job.inp", Fixture("hex8i/hex8i.frd")};
  EXPECT_EQ(
      MessageOf(files, {}),
      "the files are not of one run, the deck has node 8 elsewhere than the results, by 0.3 of a model of 30, and "
      "nothing that lets the solver move it; expected at most 0.001 of the model, which --max-deviation sets");
  ImportOptions wide;
  wide.maxDeviation = 0.02;
  EXPECT_EQ(MessageOf(files, wide), "");

  WriteText(folder / "job.inp", Replaced(deck, "*STEP", "*EQUATION\n2\n8, 1, 1., 11, 1, -1.\n*STEP"));
  EXPECT_EQ(MessageOf(files, {}), "") << "a node that a constraint names";
}

TEST(DeckImport, ADeckAloneGivesItsMesh)
{
  Imported deck({Fixture("mixed_linear/mixed_linear.inp")});
  EXPECT_EQ(ValuesOf(deck.database, MeshKey(516), 3).size(), 20u);
  EXPECT_EQ(ValuesOf(deck.database, MeshKey(516), 3).at(11), (std::vector<double>{9.00668, 9, 0}));
  EXPECT_EQ(ElementNodes(deck.database).at(61), (std::vector<int>{29, 41, 44, 38, 47, 50}));
  const auto types = deck.Rows(596);
  EXPECT_EQ(types.size(), 10u);
  EXPECT_EQ(types.at(12), "1 1") << "a C3D8 of the first material";
  EXPECT_EQ(types.at(61), "2 2") << "a C3D6 of the second";
}

TEST(DeckImport, SetsMaterialsSectionsAndOrientationsAreBlocks)
{
  Imported deck({Fixture("oriented/oriented.inp")});
  EXPECT_THAT(deck.Rows(600), ElementsAre(testing::Pair(1, testing::StartsWith("NALL 5,8,11")),
                                          testing::Pair(2, testing::StartsWith("NFIX "))));
  EXPECT_THAT(deck.Rows(601), ElementsAre(testing::Pair(1, "ESTRAIGHT 12,19"), testing::Pair(2, "ERING 26,33"),
                                          testing::Pair(3, "EALL 12,19,26,33")));
  EXPECT_THAT(deck.Rows(602), ElementsAre(testing::Pair(1, "LAMINATE 1.6e-09 nan nan")))
      << "an orthotropic material has no Young's modulus";
  EXPECT_THAT(deck.Rows(603), ElementsAre(testing::Pair(12, "1 1 1"), testing::Pair(19, "1 1 1"),
                                          testing::Pair(26, "2 1 2"), testing::Pair(33, "2 1 2")));
  EXPECT_THAT(deck.Rows(604), ElementsAre(testing::Pair(1, "SLANTED 0 1,0.4,0.2,-0.3,1,0.1,3,25"),
                                          testing::Pair(2, "ROUND 1 0,0,0,0,0,1")));

  Imported isotropic({Fixture("hex8/hex8.inp")});
  EXPECT_THAT(isotropic.Rows(602), ElementsAre(testing::Pair(1, "STEEL 7.8e-09 210000 0.3"),
                                               testing::Pair(2, "ALUMINIUM 2.7e-09 70000 0.33")));
}

// What the code of the type does not tell: a C3D8 has that of its shape, and needs no record.
TEST(DeckImport, TypesOfTheDeckAreKeptWhereTheirCodeDoesNotTellThem)
{
  Imported mixed(WithDeck("mixed_linear/mixed_linear"));
  EXPECT_THAT(mixed.Rows(609), ElementsAre(testing::Pair(75, "C3D8R")));
  EXPECT_EQ(mixed.Rows(596).at(75), "1 2");
  Imported shells(WithDeck("c_shell_iso/c_shell_iso3d"));
  EXPECT_EQ(shells.Rows(609).begin()->second, "S8R") << "of a shell that the solver has expanded";
  Imported plain(WithDeck("hex8/hex8"));
  EXPECT_FALSE(plain.database.HasDataBlock(MeshKey(609)));
  Imported without({Fixture("hex8r/hex8r.frd")});
  EXPECT_FALSE(without.database.HasDataBlock(MeshKey(609)));
}

TEST(DeckImport, AnElementThatTwoSectionsNameBelongsToTheLast)
{
  const TempFolder folder;
  WriteText(folder / "job.inp", Replaced(ReadText(Fixture("hex8i/hex8i.inp")), "*BOUNDARY",
                                         "*SOLID SECTION, ELSET=ESTEEL, MATERIAL=ALUMINIUM\n*BOUNDARY"));
  Imported job({folder / "job.inp"});
  EXPECT_THAT(job.Rows(603),
              ElementsAre(testing::Pair(12, "3 2 0"), testing::Pair(19, "2 2 0"), testing::Pair(26, "2 2 0")));
}

TEST(DeckImport, AveragesWithoutAFrdAreThoseWithOne)
{
  Imported with(WithDeck("mixed_quadratic/mixed_quadratic"));
  Imported without({Fixture("mixed_quadratic/mixed_quadratic.inp"), Fixture("mixed_quadratic/mixed_quadratic.dat"),
                    Fixture("mixed_quadratic/mixed_quadratic.sta")});
  for (const int onf : {521, 531, 550, 552}) {
    EXPECT_EQ(ValuesOf(with.database, Key(kFirst, onf), onf == 552 ? 1 : 6),
              ValuesOf(without.database, Key(kFirst, onf), onf == 552 ? 1 : 6))
        << onf;
  }
  EXPECT_THAT(without.report.notices, ElementsAre());
}

TEST(DeckImport, DeviationsAreNamedByTheDecksElementTypes)
{
  Imported bricks(WithDeck("hex8i/hex8i"));
  ASSERT_EQ(bricks.report.deviations.size(), 2u);
  EXPECT_EQ(bricks.report.deviations[0].elementType, "C3D8I");
  Imported beams(WithDeck("d_beam/d_beam3d"));
  ASSERT_EQ(beams.report.deviations.size(), 1u);
  EXPECT_EQ(beams.report.deviations[0].elementType, "B32");
}

TEST(DeckImport, ExpandedElementsKeepTheNodesOfTheFrd)
{
  Imported shells(WithDeck("c_shell_iso/c_shell_iso3d"));
  EXPECT_EQ(ElementNodes(shells.database).begin()->second.size(), 20u);
  EXPECT_EQ(shells.Rows(596).begin()->second.substr(0, 2), "4 ");
  EXPECT_EQ(ValuesOf(shells.database, MeshKey(516), 3).at(2)[2], 0.1666667)
      << "nodes that the .frd leaves out are here";
}

TEST(DeckImport, ASolidWithOtherNodesInTheFrdIsRefused)
{
  const TempFolder folder;
  WriteText(folder / "job.inp", Replaced(ReadText(Fixture("hex8i/hex8i.inp")), "12, 5, 8, 11, 14, 17, 20, 23, 26",
                                         "12, 8, 11, 14, 5, 20, 23, 26, 17"));
  EXPECT_EQ(MessageOf({folder / "job.inp", Fixture("hex8i/hex8i.frd")}),
            Fixture("hex8i/hex8i.frd").string() + ": expected element 12 with the type and the nodes that it has at " +
                (folder / "job.inp").string() + ":21");
}

TEST(DeckImport, ADeckThatGoesOnFromARestartFileNeedsTheFrdForItsNodes)
{
  const TempFolder folder;
  WriteText(folder / "job.inp", "*RESTART, READ\n*NODE\n1,0,0,0\n*ELEMENT, TYPE=C3D4\n5,1,2,3,4\n");
  EXPECT_EQ(MessageOf({folder / "job.inp"}),
            (folder / "job.inp").string() +
                ":5: element 5 has node 2, which is not in the deck; expected results with the mesh beside it");

  // With it, what the deck does not tell stays unturned.
  std::string       deck  = "*RESTART, READ\n" + ReadText(Fixture("oriented/oriented.inp"));
  const std::size_t nodes = deck.find("*NODE");
  deck.erase(nodes, deck.find("*ELEMENT") - nodes);
  WriteText(folder / "later.inp", deck);
  Imported job({folder / "later.inp", Fixture("oriented/oriented.frd"), Fixture("oriented/oriented.dat")});
  EXPECT_EQ(ValuesOf(job.database, MeshKey(516), 3).size(), 20u);
  ASSERT_EQ(job.report.skipped.size(), 1u);
  EXPECT_EQ(job.report.skipped[0].reason, "rows in local systems (kept, not averaged)");
}

TEST(DeckImport, OneDeckIsEnough)
{
  const std::string a = Fixture("hex8/hex8.inp").string();
  const std::string b = Fixture("tet10/tet10.inp").string();
  EXPECT_EQ(MessageOf({a, b}), "expected one deck, found " + a + " and " + b);
}

// Two materials in two halves. The second way: extrapolate every element's points and average by hand.
TEST(DeckImport, AveragesStopAtMaterialBorders)
{
  ImportOptions options;
  options.averageBy = {AverageBy::Material, {}};
  Imported                                                       job(WithDeck("hex8/hex8"), options);
  const StepKey                                                  step{2, AnalysisTime, 1};
  const auto                                                     points = ListsOf(job.database, Key(step, 582), 2);
  const auto                                                     nodes  = ElementNodes(job.database);
  std::map<int, std::map<int, std::vector<std::vector<double>>>> values;  // by material and node
  for (const auto& [element, list] : points) {
    std::vector<double> nodal(48);
    Extrapolate(*FindExtrapolation(1, 8), list, nodal);
    for (std::size_t n = 0; n < 8; ++n) {
      values[element <= 47 ? 1 : 2][nodes.at(element)[n]].emplace_back(&nodal[6 * n], &nodal[6 * n] + 6);
    }
  }

  const auto  whole     = ValuesOf(job.database, Key(step, 521), 6);
  std::size_t numShared = 0;
  for (const int material : {1, 2}) {
    const auto average = ValuesOf(job.database, GroupKey(step, 521, material), 6);
    const auto count   = ValuesOf(job.database, GroupKey(step, 552, material), 1);
    ASSERT_EQ(average.size(), values[material].size());
    for (const auto& [node, all] : values[material]) {
      EXPECT_EQ(count.at(node)[0], static_cast<double>(all.size())) << node;
      if (values[3 - material].contains(node)) ++numShared;
      for (std::size_t k = 0; k < 6; ++k) {
        double sum = 0.0;
        for (const std::vector<double>& value : all) sum += value[k];
        // Sums of at most four values of 1e1: a few last digits of 2e-15.
        EXPECT_NEAR(average.at(node)[k], sum / static_cast<double>(all.size()), 1e-13) << node;
        if (!values[3 - material].contains(node)) {
          EXPECT_EQ(average.at(node)[k], whole.at(node)[k]) << node;
        }
      }
    }
  }
  EXPECT_EQ(numShared, 2u * 12u) << "a border of 3 x 2 cells has a value for each of its sides";
  EXPECT_TRUE(job.database.HasDataBlock(GroupKey(step, 520, 2))) << "principal values are derived for groups too";
}

TEST(DeckImport, SectionsAndSetsAreBordersToo)
{
  ImportOptions bySection;
  bySection.averageBy = {AverageBy::Section, {}};
  Imported      sections(WithDeck("hex8/hex8"), bySection);
  ImportOptions bySet;
  bySet.averageBy = {AverageBy::Sets, {"ealu", "ESTEEL", "EALL", "EALL"}};
  Imported sets(WithDeck("hex8/hex8"), bySet);

  const auto steel = ValuesOf(sections.database, GroupKey(kFirst, 531, 1), 6);
  const auto alu   = ValuesOf(sections.database, GroupKey(kFirst, 531, 2), 6);
  EXPECT_NE(steel, alu);
  EXPECT_EQ(ValuesOf(sets.database, GroupKey(kFirst, 531, 3), 6), steel) << "the deck's third set";
  EXPECT_EQ(ValuesOf(sets.database, GroupKey(kFirst, 531, 4), 6), alu);
  EXPECT_EQ(ValuesOf(sets.database, GroupKey(kFirst, 531, 2), 6), ValuesOf(sets.database, Key(kFirst, 531), 6))
      << "a set of all elements";
  EXPECT_FALSE(sets.database.HasDataBlock(GroupKey(kFirst, 531, 1))) << "a set that was not named";
}

TEST(DeckImport, MaterialsOfTheFrdAreBordersWithoutADeck)
{
  ImportOptions options;
  options.averageBy = {AverageBy::Material, {}};
  Imported with(WithDeck("hex8/hex8"), options);
  Imported without({Fixture("hex8/hex8.frd"), Fixture("hex8/hex8.dat")}, options);
  for (const int material : {1, 2}) {
    EXPECT_EQ(ValuesOf(with.database, GroupKey(kFirst, 521, material), 6),
              ValuesOf(without.database, GroupKey(kFirst, 521, material), 6));
  }
}

TEST(DeckImport, BordersThatAreNotThereAreRefused)
{
  ImportOptions options;
  options.averageBy = {AverageBy::Section, {}};
  EXPECT_EQ(MessageOf({Fixture("hex8/hex8.frd")}, options),
            "averages by section or set: expected the deck among the files");
  options.averageBy = {AverageBy::Sets, {" e Steel "}};
  EXPECT_EQ(MessageOf(WithDeck("hex8/hex8"), options), "") << "blanks and case mean nothing in names of a deck";
  options.averageBy = {AverageBy::Sets, {"ESTEEL", "Nobody"}};
  EXPECT_EQ(MessageOf(WithDeck("hex8/hex8"), options),
            "averages by set: expected material, section or element sets of the deck, found 'Nobody'");
}

TEST(DeckImport, OrientedSolidsAreTurnedAndAveragedAsTheSolverDoes)
{
  Imported oriented(WithDeck("oriented/oriented"));
  EXPECT_TRUE(oriented.report.skipped.empty());
  ASSERT_EQ(oriented.report.deviations.size(), 2u);
  for (const AverageDeviation& deviation : oriented.report.deviations) {
    EXPECT_EQ(deviation.nodes, 3u * 20u) << deviation.quantity;
    EXPECT_LE(deviation.largest, kSharpTolerance) << deviation.quantity;
  }
}

// The same job with its points printed in global axes: seven digits on either side, and a turned value is a sum of
// nine.
TEST(DeckImport, TurnedPointsAreThoseThatTheSolverPrintsInGlobalAxes)
{
  Imported local(WithDeck("oriented/oriented"));
  Imported global({Fixture("oriented/oriented.inp"), Fixture("oriented/oriented_global.dat")});
  for (const int onf : {582, 583}) {
    const auto turned   = ListsOf(local.database, Key(kFirst, onf), 2);
    const auto expected = ListsOf(global.database, Key(kFirst, onf), 2);
    ASSERT_EQ(turned.size(), 4u);
    double largest = 0.0;
    for (const auto& [element, values] : expected) {
      for (const double value : values) largest = std::max(largest, std::abs(value));
    }
    for (const auto& [element, values] : expected) {
      ASSERT_EQ(turned.at(element).size(), 48u);
      for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_NEAR(turned.at(element)[i], values[i], 2e-6 * largest) << onf << " " << element << " " << i;
      }
    }
  }
}

TEST(DeckImport, OrientedSolidsWithoutADeckAreKeptInTheirSystems)
{
  Imported oriented({Fixture("oriented/oriented.frd"), Fixture("oriented/oriented.dat")});
  ASSERT_EQ(oriented.report.skipped.size(), 1u);
  EXPECT_EQ(oriented.report.skipped[0].reason, "rows in local systems (kept, not averaged)");
  EXPECT_EQ(oriented.report.skipped[0].rows, 3u * 2u * 4u * 8u);
}

TEST(DeckImport, ShellsStayInTheirSystems)
{
  Imported shells(WithDeck("c_shell/c_shell3d"));
  ASSERT_EQ(shells.report.skipped.size(), 1u);
  EXPECT_EQ(shells.report.skipped[0].reason, "rows in local systems (kept, not averaged)");
}

class GroupsOfAnImport : public testing::Test
{
protected:
  ImportOptions WithGroups(const std::string& text)
  {
    WriteText(file_, text);
    ImportOptions options;
    options.groups = file_;
    return options;
  }

  TempFolder            folder_;
  std::filesystem::path file_ = folder_ / "my.groups";
};

TEST_F(GroupsOfAnImport, BecomeSetsBehindThoseOfTheDeck)
{
  ImportOptions options =
      WithGroups("nodes left\n5 5\n11-20\n1-2000000000:3\nelements left\n19-1000000 12\nelements NONE\n1-11\n");
  options.averageBy = {AverageBy::Sets, {"left"}};
  Imported job(WithDeck("hex8i/hex8i"), options);
  EXPECT_THAT(job.Rows(600), ElementsAre(testing::_, testing::_, testing::_, testing::Pair(4, "left 5,5,11,14,17,20")))
      << "of a range what the deck has: 1, 4, 7, ... is none of it";
  const auto sets = job.Rows(601);
  EXPECT_EQ(sets.at(5), "left 19,26,12");
  EXPECT_EQ(sets.at(6), "NONE ");
  EXPECT_EQ(ValuesOf(job.database, GroupKey(kFirst, 521, 5), 6), ValuesOf(job.database, Key(kFirst, 521), 6));
}

TEST_F(GroupsOfAnImport, AreRefusedWithTheirPlace)
{
  const std::string deck = Fixture("hex8i/hex8i.inp").string();
  EXPECT_EQ(MessageOf({deck}, WithGroups("\nnodes A\n5 6\n")),
            file_.string() + ":2: expected nodes of the deck in group \"A\", found 6");
  EXPECT_EQ(MessageOf({deck}, WithGroups("elements A\n5\n")),
            file_.string() + ":1: expected elements of the deck in group \"A\", found 5");
  EXPECT_EQ(MessageOf({deck}, WithGroups("elements EALU\n12\n")),
            file_.string() + ":1: expected a new name, the deck has a set \"EALU\" at " + deck + ":32");
  EXPECT_EQ(
      MessageOf({deck}, WithGroups("nodes A\n5x\n")),
      file_.string() + ":2: expected an id, FIRST-LAST or FIRST-LAST:STEP of positive 32-bit integers, found \"5x\"");
  EXPECT_EQ(MessageOf({Fixture("hex8i/hex8i.frd")}, WithGroups("nodes A\n5\n")),
            "groups become sets of a deck: expected the deck among the files");
}

/// Two tetrahedra on the triangle 1, 2, 3, of which a .frd has one, and a row of the other's tip.
constexpr const char* kGrowing =
    "*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n4,0,0,1\n5,0,0,-1\n"
    "*ELEMENT,TYPE=C3D4,ELSET=E\n1,1,2,3,4\n2,1,3,2,5\n"
    "*SOLID SECTION,ELSET=E,MATERIAL=M\n*MATERIAL,NAME=M\n*ELASTIC\n1,0\n*STEP\n*STATIC\n*END STEP\n";

std::string FrdOfOneTetrahedron(int tip, const std::string& rows, int numRows)
{
  const std::string place = std::string(tip < 10 ? 9 : 8, ' ') + std::to_string(tip);
  return "    1C\n    2C                             4                                     1\n"
         " -1         1 0.00000E+00 0.00000E+00 0.00000E+00\n -1         2 1.00000E+00 0.00000E+00 0.00000E+00\n"
         " -1         3 0.00000E+00 1.00000E+00 0.00000E+00\n -1" +
         place +
         " 0.00000E+00 0.00000E+00 1.00000E+00\n -3\n"
         "    3C                             1                                     1\n"
         " -1         1    3    0    1\n -2         1         2         3" +
         place +
         "\n -3\n    1PSTEP                         1           1           1\n"
         "  100CL  101 1.00000E+00           " +
         std::to_string(numRows) +
         "                     0    1           1\n -4  NDTEMP      1    1\n"
         " -5  T           1    1    0    0\n" +
         rows + " -3\n 9999\n";
}

// An element that comes into the model in a later step: the mesh of the .frd is that of the first.
TEST(DeckImport, AResultAtANodeThatTheDeckAloneHasIsOneOfAnElementThatCameLater)
{
  const TempFolder folder;
  WriteText(folder / "a.inp", kGrowing);
  WriteText(folder / "a.frd", FrdOfOneTetrahedron(4, " -1         1 2.00000E+01\n -1         5 3.00000E+01\n", 2));
  FED_ResultDatabase database;
  ImportResults({folder / "a.inp", folder / "a.frd"}, database, {});
  EXPECT_EQ(ValuesOf(database, Key({1, AnalysisTime, 1}, 514), 1),
            (std::map<int, std::vector<double>>{{1, {20}}, {5, {30}}}));
  FED_ResultDatabase alone;
  EXPECT_THROW(ImportResults({folder / "a.frd"}, alone, {}), FED_Failure) << "no deck knows the node";
}

// The solver gives the elements on one side of a pre-tension section nodes of their own.
TEST(DeckImport, NodesOfAPreTensionSectionMayBeOthers)
{
  const TempFolder  folder;
  const std::string section = "*SURFACE,NAME=S\n2,S3\n*PRE-TENSION SECTION,SURFACE=S,NODE=9\n0,0,1\n";
  std::string       deck    = kGrowing;
  deck.insert(deck.find("*ELEMENT"), "9,5,5,5\n");
  deck.insert(deck.find("*STEP"), section);
  WriteText(folder / "a.inp", deck);
  std::string frd = FrdOfOneTetrahedron(12, " -1         1 2.00000E+01\n", 1);
  // Element 2, with a new node 12 in the place of node 5.
  frd.replace(frd.find(" -1         1    3    0    1\n"), 29, " -1         2    3    0    1\n");
  frd.replace(frd.find(" -2         1         2         3"), 33, " -2         1         3         2");
  WriteText(folder / "a.frd", frd);
  FED_ResultDatabase database;
  ImportResults({folder / "a.inp", folder / "a.frd"}, database, {});
  EXPECT_EQ(ElementNodes(database)[2], (std::vector<int>{1, 3, 2, 12}));

  // Without the section it is the deck of another job.
  deck.erase(deck.find(section), section.size());
  WriteText(folder / "a.inp", deck);
  FED_ResultDatabase other;
  EXPECT_THROW(ImportResults({folder / "a.inp", folder / "a.frd"}, other, {}), FED_Failure);
}

}  // namespace
}  // namespace quilon
