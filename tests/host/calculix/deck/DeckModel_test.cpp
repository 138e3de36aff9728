#include "calculix/deck/DeckModel.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "../ReaderSupport.h"
#include "calculix/deck/ReadDeckModel.h"
#include "DeckSupport.h"

namespace {

using namespace quilon::calculix;
using quilon_test::DeckFolder;
using quilon_test::FailureOf;

using Ids = std::vector<int>;

const std::string kTetNodes = "*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n4,0,0,1\n";

class DeckModelTest : public testing::Test
{
protected:
  DeckModel Read(std::string_view text) { return ReadDeckModel(folder_.Write("a.inp", text)); }

  std::string Failure(std::string_view text)
  {
    return folder_.WithoutFolder(FailureOf([&] { Read(text); }));
  }

  std::vector<std::string> Messages(std::string_view text)
  {
    std::vector<DeckMessage> messages;
    const DeckModel          model = ReadDeckModel(folder_.Write("a.inp", text), {}, messages);
    std::vector<std::string> all;
    for (const DeckMessage& message : messages)
      all.push_back((message.severity == DeckMessage::Error ? "E " : "W ") +
                    folder_.WithoutFolder(model.Describe(message.place) + ": " + message.text) + " | " + message.line);
    return all;
  }

  DeckFolder folder_;
};

using Lines = std::vector<std::string>;

TEST_F(DeckModelTest, NodesKeepAllDigits)
{
  const DeckModel model = Read(
      "*Node, Nset = corner s\n"
      "** comment\n"
      "  7, 0.1234567890123456 , -2.5D-3, 1\n"
      "\n"
      "3,.5,\n"
      "1 2, 1+2, 0 . 5, 3E0,\n"
      "4\n");
  EXPECT_EQ(model.nodes.Entries().size(), 4U);
  EXPECT_EQ(model.FindNode(7)->position, (std::array<double, 3>{0.1234567890123456, -0.0025, 1.0}));
  EXPECT_EQ(model.FindNode(3)->position, (std::array<double, 3>{0.5, 0.0, 0.0}));
  EXPECT_EQ(model.FindNode(12)->position, (std::array<double, 3>{100.0, 0.5, 3.0}));
  EXPECT_EQ(model.FindNode(4)->position, (std::array<double, 3>{0.0, 0.0, 0.0}));
  EXPECT_EQ(model.FindNode(5), nullptr);
  EXPECT_EQ(model.FindNode(12)->place.line, 6);
  ASSERT_EQ(model.nodeSets.size(), 1U);
  EXPECT_EQ(model.nodeSets[0].name, "CORNERS");
  EXPECT_EQ(model.nodeSets[0].ids, (Ids{7, 3, 12, 4}));
  EXPECT_EQ(model.nodeSets[0].place.line, 1);
}

TEST_F(DeckModelTest, ConnectivityWrapsWithAndWithoutACommaAtTheEnd)
{
  std::string nodes = "*NODE\n";
  for (int i = 1; i <= 20; ++i) nodes += std::to_string(i) + "," + std::to_string(i) + ",0,0\n";
  const DeckModel model = Read(nodes +
                               "*MATERIAL,NAME=M\n*SOLID SECTION,ELSET=E,MATERIAL=M\n"
                               "*ELEMENT, TYPE=c3d20r, ELSET=E\n"
                               "5, 1,2,3,4,5,6,7,8,9,10,\n"
                               "** comment in between\n"
                               "11,12,13,14,15,16,17,18,19,20\n"
                               "2, 1,2,3,4,5,6,7,8\n"
                               "9,10,11,12\n"
                               "\n"
                               "13,14,15,16,17,18,19,\n"
                               "20,\n"
                               "*ELEMENT, TYPE=C3D8I, ELSET=E\n"
                               "9,1\n2\n3\n4\n5\n6\n7\n8\n");
  Ids             all;
  for (int i = 1; i <= 20; ++i) all.push_back(i);
  for (const int id : {5, 2}) {
    const DeckElement* element = model.FindElement(id);
    ASSERT_NE(element, nullptr);
    EXPECT_STREQ(element->type->name, "C3D20R");
    const auto found = model.NodesOf(*element);
    EXPECT_EQ(Ids(found.begin(), found.end()), all);
  }
  const DeckElement* brick = model.FindElement(9);
  EXPECT_STREQ(brick->type->name, "C3D8I");
  EXPECT_EQ(model.NodesOf(*brick).size(), 8U);
  EXPECT_EQ(model.NodesOf(*brick)[7], 8);
  EXPECT_EQ(model.FindElement(5)->place.line, 25);
  EXPECT_EQ(model.FindElementSet("E")->ids, (Ids{5, 2, 9}));
}

TEST_F(DeckModelTest, BlocksGoOnBehindAnInclude)
{
  folder_.Write("n.inc", "2,1,0,0\n3,0,1,0\n");
  folder_.Write("e.inc", "2,3\n");
  const DeckModel model = Read(
      "*NODE\n1,0,0,0\n*INCLUDE,INPUT=n.inc\n4,0,0,1\n*MATERIAL,NAME=M\n*SOLID SECTION,ELSET=E,MATERIAL=M\n"
      "*ELEMENT,TYPE=C3D4,ELSET=E\n1,1\n*INCLUDE,INPUT=e.inc\n4\n");
  EXPECT_EQ(model.nodes.Entries().size(), 4U);
  EXPECT_EQ(folder_.WithoutFolder(model.Describe(model.FindNode(3)->place)), "n.inc:2");
  EXPECT_EQ(folder_.WithoutFolder(model.Describe(model.FindNode(4)->place)), "a.inp:4");
  const auto nodes = model.NodesOf(*model.FindElement(1));
  EXPECT_EQ(Ids(nodes.begin(), nodes.end()), (Ids{1, 2, 3, 4}));
  ASSERT_EQ(model.files.size(), 3U);
  EXPECT_EQ(model.files[2].lines, 1);
}

TEST_F(DeckModelTest, SetsTakeIdsNamesAndRanges)
{
  const DeckModel model = Read(
      "*NODE,NSET=ALL\n1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n"
      "*NSET,NSET=a\n7,7,9\n"
      "*NSET,NSET=B,GENERATE\n1,5\n6,11,2\n"
      "*NSET,NSET=C\n3, a,B,4,\n"
      "*NSET,NSET=A\n9,11\n"
      "*NSET,NSET=D\n1\n*NSET,NSET=D\nD,D\n"
      "*ELSET,ELSET=A\n");
  EXPECT_EQ(model.FindNodeSet("A")->ids, (Ids{7, 7, 9, 9, 11}));
  EXPECT_EQ(model.FindNodeSet("A")->place.line, 13);
  EXPECT_EQ(model.FindNodeSet("B")->ids, (Ids{1, 2, 3, 4, 5, 6, 8, 10}));
  EXPECT_EQ(model.FindNodeSet("C")->ids, (Ids{3, 7, 7, 9, 1, 2, 3, 4, 5, 6, 8, 10, 4}));
  EXPECT_EQ(model.FindNodeSet("D")->ids, (Ids{1, 1, 1, 1}));
  EXPECT_EQ(model.FindElementSet("A")->ids, Ids());
  EXPECT_EQ(model.FindNodeSet("E"), nullptr);
  std::vector<std::string> names;
  for (const DeckSet& set : model.nodeSets) names.push_back(set.name);
  EXPECT_EQ(names, (std::vector<std::string>{"ALL", "A", "B", "C", "D"}));
}

TEST_F(DeckModelTest, RangesReachTheGreatestId)
{
  std::vector<DeckMessage> messages;
  const DeckModel          model =
      ReadDeckModel(folder_.Write("a.inp", "*NSET,NSET=A,GENERATE\n2147483640,2147483647,3\n"), {}, messages);
  EXPECT_EQ(model.FindNodeSet("A")->ids, (Ids{2147483640, 2147483643, 2147483646}));
}

TEST_F(DeckModelTest, QuotesBelongToNamesOfSets)
{
  const DeckModel model = Read("*NODE, NSET=\"N all\"\n1\n");
  EXPECT_NE(model.FindNodeSet("\"NALL\""), nullptr);
}

TEST_F(DeckModelTest, MaterialsHaveTheirProperties)
{
  const DeckModel model = Read(
      "*MATERIAL, NAME=Steel\n"
      "*ELASTIC\n210000,.3\n"
      "*DENSITY\n7.8E-9\n"
      "*PLASTIC\n200.,0.\n250.,,20\n"
      "*MATERIAL, NAME=WOOD\n"
      "*ELASTIC, TYPE=ENGINEERING CONSTANTS\n1,2,3,4,5,6,7,8\n9,\n");
  ASSERT_EQ(model.materials.size(), 2U);
  const DeckMaterial* steel = model.FindMaterial("STEEL");
  ASSERT_NE(steel, nullptr);
  EXPECT_EQ(steel->Find("ELASTIC")->values, (std::vector<double>{210000.0, 0.3}));
  EXPECT_EQ(steel->Find("ELASTIC")->type, "");
  EXPECT_EQ(steel->Find("DENSITY")->values, (std::vector<double>{7.8e-9}));
  EXPECT_EQ(steel->Find("PLASTIC")->values, (std::vector<double>{200.0, 0.0, 250.0, 0.0, 20.0}));
  EXPECT_EQ(steel->Find("EXPANSION"), nullptr);
  EXPECT_EQ(steel->Find("DENSITY")->place.line, 4);
  const DeckProperty* wood = model.materials[1].Find("ELASTIC");
  EXPECT_EQ(wood->type, "ENGINEERINGCONSTANTS");
  EXPECT_EQ(wood->values, (std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(model.FindMaterial("IRON"), nullptr);
}

TEST_F(DeckModelTest, OrientationsAreRectangularOrCylindrical)
{
  const DeckModel model = Read(
      "*ORIENTATION, NAME=O1\n1,0,0,0,1,0\n3, 45.\n"
      "*ORIENTATION, NAME=O2, SYSTEM=Cylindrical\n0.,0.,0.,0.,0.,1.5\n");
  const DeckOrientation* first = model.FindOrientation("O1");
  EXPECT_EQ(first->system, DeckOrientation::Rectangular);
  EXPECT_EQ(first->a, (std::array<double, 3>{1, 0, 0}));
  EXPECT_EQ(first->b, (std::array<double, 3>{0, 1, 0}));
  EXPECT_EQ(first->rotationAxis, 3);
  EXPECT_EQ(first->rotationAngle, 45.0);
  const DeckOrientation* second = model.FindOrientation("O2");
  EXPECT_EQ(second->system, DeckOrientation::Cylindrical);
  EXPECT_EQ(second->b, (std::array<double, 3>{0, 0, 1.5}));
  EXPECT_EQ(second->rotationAxis, 0);
}

TEST_F(DeckModelTest, SectionsNameSetMaterialAndOrientation)
{
  const DeckModel model = Read(
      kTetNodes +
      "*ELEMENT,TYPE=S3,ELSET=SHELLS\n1,1,2,3\n*ELEMENT,TYPE=C3D4,ELSET=SOLIDS\n2,1,2,3,4\n*ELSET,ELSET=LAYERS\n1\n"
      "*MATERIAL,NAME=M\n*MATERIAL,NAME=TOP\n*ORIENTATION,NAME=O\n1,0,0,0,1,0\n"
      "*SOLID SECTION, ELSET=solids, MATERIAL=m, ORIENTATION=o\n"
      "*SHELL SECTION, ELSET=SHELLS, MATERIAL=M\n0.1\n"
      "*SHELL SECTION, ELSET=LAYERS, COMPOSITE\n0.1,,TOP,O\n0.2,,M\n");
  ASSERT_EQ(model.sections.size(), 3U);
  EXPECT_EQ(model.sections[0].kind, "SOLID");
  EXPECT_EQ(model.sections[0].elementSet, "SOLIDS");
  EXPECT_EQ(model.sections[0].material, "M");
  EXPECT_EQ(model.sections[0].orientation, "O");
  EXPECT_FALSE(model.sections[0].isComposite);
  EXPECT_EQ(model.sections[1].kind, "SHELL");
  EXPECT_EQ(model.sections[1].orientation, "");
  EXPECT_TRUE(model.sections[2].isComposite);
  EXPECT_EQ(model.sections[2].material, "TOP");
  EXPECT_EQ(model.sections[2].orientation, "O");
}

TEST_F(DeckModelTest, StepsKnowTheirProcedureAndWhetherGeometryIsNonlinear)
{
  const DeckModel model = Read(
      "*STEP\n*STATIC\n*END STEP\n"
      "*STEP, NLGEOM\na line that means nothing\n*DYNAMIC, ALPHA=-.1\n1,1\n*END STEP\n"
      "*STEP, PERTURBATION\n*FREQUENCY\n10\n*END STEP\n"
      "*STEP, NLGEOM=NO\n*MODAL DYNAMIC\n*DAMPING, ALPHA=1\n*END STEP\n"
      "*STEP, NLGEOM=YES\n*ENDSTEP\n");
  ASSERT_EQ(model.steps.size(), 5U);
  const char* const procedures[]   = {"STATIC", "DYNAMIC", "FREQUENCY", "MODALDYNAMIC", ""};
  const bool        nlgeom[]       = {false, true, true, false, true};
  const bool        perturbation[] = {false, false, true, false, false};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(model.steps[i].procedure, procedures[i]) << i;
    EXPECT_EQ(model.steps[i].nlgeom, nlgeom[i]) << i;
    EXPECT_EQ(model.steps[i].perturbation, perturbation[i]) << i;
  }
  EXPECT_EQ(model.steps[1].place.line, 4);
}

TEST_F(DeckModelTest, DeckMayDefineElementTypes)
{
  DeckModel model;
  {
    const DeckModel read = Read("*NODE\n1\n2\n*USER ELEMENT,TYPE=U7,NODES=2\n*ELEMENT,TYPE=U7\n5,1,2\n");
    model                = read;  // a copy does not point into what it was copied from
  }
  EXPECT_STREQ(model.FindElement(5)->type->name, "U7");
  EXPECT_EQ(model.FindElement(5)->type->numNodes, 2);
}

TEST_F(DeckModelTest, FluidNetworkElementsMayLackANode)
{
  const DeckModel model = Read("*NODE\n1\n2\n*ELEMENT,TYPE=D\n5,0,1,2\n6,,1,2\n");
  for (const int id : {5, 6}) {
    const auto nodes = model.NodesOf(*model.FindElement(id));
    EXPECT_EQ(Ids(nodes.begin(), nodes.end()), (Ids{0, 1, 2}));
  }
}

TEST_F(DeckModelTest, HeadingIsFreeText)
{
  EXPECT_EQ(Messages("*HEADING\n1,2,nonsense\n# anything\n*NODE\n1\n"), Lines());
}

TEST_F(DeckModelTest, ElementTypesAreKnownByName)
{
  struct Row
  {
    const char* name;
    int         nodes, frd, points, dimension;
  };
  const Row rows[] = {
      {"C3D4", 4, 3, 1, 3},     {"C3D10", 10, 6, 4, 3},  {"C3D6", 6, 2, 2, 3},    {"C3D15", 15, 5, 9, 3},
      {"C3D8", 8, 1, 8, 3},     {"C3D8R", 8, 1, 1, 3},   {"C3D8I", 8, 1, 8, 3},   {"C3D20", 20, 4, 27, 3},
      {"S8R", 8, 10, 0, 2},     {"C3D20R", 20, 4, 8, 3}, {"B32R", 3, 12, 0, 1},   {"SPRINGA", 2, 0, 0, 0},
      {"DC3D20R", 20, 4, 8, 3}, {"DC3D8I", 8, 1, 8, 3},  {"DCAX8R", 8, 10, 0, 2}, {"DCPE3", 3, 7, 0, 2},
      {"B21", 2, 11, 0, 1},     {"T3D3", 3, 12, 0, 1},   {"CPE6", 6, 8, 0, 2},    {"D", 3, 12, 0, 1}};
  for (const Row& row : rows) {
    const DeckElementType* type = FindDeckElementType(row.name);
    ASSERT_NE(type, nullptr) << row.name;
    EXPECT_STREQ(type->name, row.name);
    EXPECT_EQ(type->numNodes, row.nodes) << row.name;
    EXPECT_EQ(type->frdType, row.frd) << row.name;
    EXPECT_EQ(type->numPoints, row.points) << row.name;
    EXPECT_EQ(type->dimension, row.dimension) << row.name;
  }
  for (const char* name : {"", "C3D", "C3D9", "c3d8", "DS4", "DB31", "ZZZ", "A"})
    EXPECT_EQ(FindDeckElementType(name), nullptr) << name;
}

TEST_F(DeckModelTest, FirstErrorIsThrownWithItsPlace)
{
  EXPECT_EQ(Failure("*NODE\n1,0,0,0\n2,x,0,0\n3,y,0,0\n"), "a.inp:3: expected a coordinate, found 'x'");
  folder_.Write("n.inc", "2,0,0,0\nabc\n");
  EXPECT_EQ(Failure("*NODE\n1,0,0,0\n*INCLUDE,INPUT=n.inc\n"), "n.inc:2: expected a node id, found 'abc'");
}

TEST_F(DeckModelTest, WarningsAreNotThrown)
{
  EXPECT_EQ(Failure("*NODE\n1,0,0,0\n1,0,0,0\n*FOO\n1,2\n"), "no failure");
}

TEST_F(DeckModelTest, ReadingGoesOnBehindErrors)
{
  EXPECT_EQ(Messages("*NODE\n1,0,0,0\n2,x,0,0\n3,0,0,y\n*INCLUDE, INPUT=none\n4,1\n"),
            (Lines{"E a.inp:3: expected a coordinate, found 'x' | 2,x,0,0",
                   "E a.inp:4: expected a coordinate, found 'y' | 3,0,0,y",
                   "E a.inp:5: include file 'none' is not there, looked for none | *INCLUDE, INPUT=none"}));
}

TEST_F(DeckModelTest, MessagesAreInTheOrderOfTheirPlacesAndShowLinesOfAllFiles)
{
  folder_.Write("n.inc", "\r\n2 , 0,0,zero\r\n");
  EXPECT_EQ(
      Messages("*NODE\n1,0,0,0\n*INCLUDE,INPUT=n.inc\n3,bad\n*ELEMENT,TYPE=T3D2\n1,1,9\n*NSET,NSET=A\n17\n*FOO\n"),
      (Lines{"E a.inp:4: expected a coordinate, found 'bad' | 3,bad",
             "E a.inp:6: element 1 (T3D2): node 9 is not defined | 1,1,9",
             "E a.inp:6: 1 element without a section, the first is 1 | 1,1,9",
             "W a.inp:7: node set 'A' has 1 id that no node has, the first is 17 | *NSET,NSET=A",
             "W a.inp:9: unknown keyword *FOO | *FOO",
             "E n.inc:2: expected a coordinate, found 'zero' | 2 , 0,0,zero"}));
}

TEST_F(DeckModelTest, LaterNodeOfAnIdRules)
{
  std::vector<DeckMessage> messages;
  const DeckModel          model = ReadDeckModel(folder_.Write("a.inp", "*NODE\n7,1,1,1\n7,1,1,2.5\n"), {}, messages);
  EXPECT_EQ(model.FindNode(7)->position[2], 2.5);
  EXPECT_EQ(Messages("*NODE\n7,1,1,1\n7,1,1,2.5\n"),
            (Lines{"E a.inp:3: node 7 is there already, at a.inp:2, at another position: (1, 1, 1), and the later one "
                   "rules | 7,1,1,2.5"}));
}

TEST_F(DeckModelTest, MessagesHaveAnEnd)
{
  std::string text = "*NODE\n";
  for (int i = 0; i < 10005; ++i) text += "x\n";
  const Lines messages = Messages(text);
  ASSERT_EQ(messages.size(), 10001U);
  EXPECT_EQ(messages.back(), "E a.inp:10002: more is wrong than can be listed | x");
}

TEST_F(DeckModelTest, SmallDeckCannotAskForAnyAmountOfIds)
{
  EXPECT_EQ(Messages("*NSET,NSET=A,GENERATE\n1,2147483647\n"),
            (Lines{"E a.inp:2: the sets have more than 100000000 ids | 1,2147483647"}));
  DeckOptions options;
  options.mostIdsInSets = 1000;
  std::string doubling  = "*NSET,NSET=A\n1\n";
  for (int i = 0; i < 40; ++i) doubling += "A\n";
  // The set has 2^n ids behind n of these lines; line 12 would make 1024 of 512.
  const auto path = folder_.Write("a.inp", doubling);
  EXPECT_EQ(folder_.WithoutFolder(FailureOf([&] { ReadDeckModel(path, options); })),
            "a.inp:12: the sets have more than 1000 ids");
}

TEST_F(DeckModelTest, DecksThatTheSolverRanAreRead)
{
  const std::filesystem::path fixtures = std::filesystem::path(QUILON_FIXTURES) / "calculix";
  for (const char* deck : {"a_tet/a_tet.inp", "b_hex/b_hex.inp", "c_shell/c_shell3d.inp", "d_beam/d_beam3d.inp",
                           "e_matrix/e_static.inp", "f_modal/f_modal.inp"})
  {
    std::vector<DeckMessage> messages;
    ReadDeckModel(fixtures / deck, {}, messages);
    for (const DeckMessage& message : messages)
      ADD_FAILURE() << deck << ":" << message.place.line << ": " << message.text << ": " << message.line;
  }
  std::vector<DeckMessage> messages;
  ReadDeckModel(fixtures / "traps/nan.inp", {}, messages);
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].severity, DeckMessage::Warning);
  EXPECT_EQ(messages[0].text, "the solver computes with 'NAN'");
}

// The solver runs this deck of some fifty kinds of cards, written in every way that it allows, with either line end.
TEST_F(DeckModelTest, DeckOfManyCardsHasNothingWrong)
{
  const std::filesystem::path seeds = std::filesystem::path(QUILON_FIXTURES).parent_path() / "fuzz/seeds/deck";
  std::ifstream               in(seeds / "cards.inp");
  std::string                 unixText;
  std::string                 dosText;
  for (std::string line; std::getline(in, line);) {
    unixText += line + "\n";
    dosText += line + "\r\n";
  }
  for (const std::string& text : {unixText, dosText}) {
    EXPECT_EQ(Messages(text), Lines());
    const DeckModel model = Read(text);
    EXPECT_EQ(model.nodes.Entries().size(), 13U);
    EXPECT_EQ(model.elements.Entries().size(), 4U);
    EXPECT_EQ(model.FindNode(6)->position, (std::array<double, 3>{1.0, 0.0, 1.0}));
    EXPECT_EQ(model.FindNodeSet("NODES1")->ids, (Ids{1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 14}));
    EXPECT_EQ(model.FindNodeSet("FIX")->ids, (Ids{1, 4, 5, 8, 1}));
    EXPECT_EQ(model.FindNodeSet("BOTH")->ids, (Ids{1, 4, 5, 8, 1, 11, 12, 13, 14, 1, 2, 3, 4, 5, 6, 7, 8, 7}));
    EXPECT_EQ(model.FindElementSet("\"Q\"")->ids, Ids{1});
    EXPECT_EQ(model.sections[1].orientation, "REC");
    EXPECT_EQ(model.steps[0].procedure, "STATIC");
    EXPECT_EQ(model.steps[1].procedure, "FREQUENCY");
  }
}

}  // namespace
