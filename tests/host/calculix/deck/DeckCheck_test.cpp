// Broken decks, each with what is said about it and where. What the solver itself says of them was the measure: an
// error stops it or changes its results, a warning does not.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "calculix/deck/ReadDeckModel.h"
#include "DeckSupport.h"

namespace {

using namespace quilon::calculix;
using quilon_test::DeckFolder;

// The parts of a deck that is whole, a cube of one element: lines 1 to 9, 10 and 11, 12 to 15, 16 to 25.
const std::string kNodes    = "*NODE, NSET=N\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n";
const std::string kElements = "*ELEMENT, TYPE=C3D8, ELSET=E\n1,1,2,3,4,5,6,7,8\n";
const std::string kMaterial = "*MATERIAL, NAME=M\n*ELASTIC\n210000,.3\n*SOLID SECTION, ELSET=E, MATERIAL=M\n";
const std::string kStep = "*STEP\n*STATIC\n*BOUNDARY\n1,1,3\nN,2\n*CLOAD\n7,3,10.\n*NODE PRINT, NSET=N\nU\n*END STEP\n";
const std::string kWhole = kNodes + kElements + kMaterial + kStep;

/// @return a whole deck, with one piece of its text replaced
std::string With(const std::string& old, const std::string& now)
{
  const std::size_t at = kWhole.find(old);
  EXPECT_NE(at, std::string::npos) << old;
  return std::string(kWhole).replace(at, old.size(), now);
}

/// @return a whole deck, with lines before its materials, from line 12 on
std::string WithModel(const std::string& lines) { return kNodes + kElements + lines + kMaterial + kStep; }

/// @return a whole deck, with lines before the end of its step, from line 25 on
std::string WithStep(const std::string& lines)
{
  return kNodes + kElements + kMaterial + kStep.substr(0, kStep.find("*END STEP")) + lines + "*END STEP\n";
}

std::string Joined(const std::vector<std::string>& texts)
{
  std::string all;
  for (const std::string& text : texts) all += text + '\n';
  return all;
}

class DeckCheck : public testing::Test
{
protected:
  std::vector<std::string> MessagesOf(const std::string& deck)
  {
    std::vector<DeckMessage> messages;
    const DeckModel          model = ReadDeckModel(folder_.Write("a.inp", deck), {}, messages);
    std::vector<std::string> all;
    for (const DeckMessage& message : messages)
      all.push_back(folder_.WithoutFolder(model.Describe(message.place)) + ": " +
                    (message.severity == DeckMessage::Error ? "error: " : "warning: ") +
                    folder_.WithoutFolder(message.text) + " [" + message.line + "]");
    return all;
  }

  DeckFolder folder_;
};

TEST_F(DeckCheck, WholeDeckHasNothingWrong) { EXPECT_EQ(Joined(MessagesOf(kWhole)), ""); }

TEST_F(DeckCheck, BrokenDecksAreToldWithPlaceAndLine)
{
  struct Row
  {
    const char*              name;
    std::string              deck;
    std::vector<std::string> messages;
  };
  const std::string longName(81, 'A');
  const std::string longComment = "**" + std::string(1318, 'x');
  const Row         rows[]      = {
                   // Nodes.
      {"node moved",
                    With("8,0,1,1\n", "8,0,1,1\n7,1,1,2\n"),
                    {"a.inp:10: error: node 7 is there already, at a.inp:8, at another position: (1, 1, 1), and the later one rules "
                                  "[7,1,1,2]"}},
      {"node repeated",
                    With("8,0,1,1\n", "8,0,1,1\n8,0,1.,1\n"),
                    {"a.inp:10: warning: node 8 is there already, at a.inp:9, at the same position [8,0,1.,1]"}},
      {"node id 0",
                    With("8,0,1,1\n", "8,0,1,1\n0,1,2,3\n"),
                    {"a.inp:10: error: expected a node id, found '0' [0,1,2,3]"}},
      {"node id below 0",
                    With("8,0,1,1\n", "8,0,1,1\n-3,1,2,3\n"),
                    {"a.inp:10: error: expected a node id, found '-3' [-3,1,2,3]"}},
      {"node id with a point",
                    With("8,0,1,1\n", "8,0,1,1\n9.0,1,1,1\n"),
                    {"a.inp:10: error: expected a node id, found '9.0' [9.0,1,1,1]"}},
      {"node id of eleven digits",
                    With("8,0,1,1\n", "8,0,1,1\n99999999999,1,1,1\n"),
                    {"a.inp:10: error: expected a node id, found '99999999999' [99999999999,1,1,1]"}},
      {"text for a coordinate",
                    With("7,1,1,1", "7,1,abc,1"),
                    {"a.inp:8: error: expected a coordinate, found 'abc' [7,1,abc,1]"}},
      {"comment behind data",
                    With("7,1,1,1", "7,1,1,1. ** corner"),
                    {"a.inp:8: error: expected a coordinate, found '1. ** corner' [7,1,1,1. ** corner]"}},
      {"comment of another program",
                    With("7,1,1,1", "# corner\n7,1,1,1"),
                    {"a.inp:8: error: expected a node id, found '# corner' [# corner]"}},
      {"coordinate that is not finite",
                    With("7,1,1,1", "7,1,1,inf"),
                    {"a.inp:8: error: expected a coordinate, found 'inf' [7,1,1,inf]"}},
      {"coordinate that no number holds",
                    With("7,1,1,1", "7,1,1,1e400"),
                    {"a.inp:8: error: expected a coordinate, found '1e400' [7,1,1,1e400]"}},
      {"coordinate that the solver cuts",
                    With("7,1,1,1", "7,1.,1.,0.1000000000000000000E+01"),
                    {"a.inp:8: error: the solver reads the first 20 characters of '0.1000000000000000000E+01', which is another "
                                  "number [7,1.,1.,0.1000000000000000000E+01]"}},

      // Elements.
      {"element repeated",
                    With("7,8\n", "7,8\n1,1,2,3,4,5,6,7,8\n"),
                    {"a.inp:12: error: element 1 is there already, at a.inp:11 [1,1,2,3,4,5,6,7,8]"}},
      {"element id 0",
                    With("7,8\n", "7,8\n0,1,2,3,4,5,6,7,8\n"),
                    {"a.inp:12: error: expected an element id, found '0' [0,1,2,3,4,5,6,7,8]"}},
      {"element with a missing node",
                    With("7,8\n", "7,9\n"),
                    {"a.inp:11: error: element 1 (C3D8): node 9 is not defined [1,1,2,3,4,5,6,7,9]"}},
      {"element with a node twice",
                    With("7,8\n", "7,7\n"),
                    {"a.inp:11: warning: element 1 (C3D8) has node 7 more than once [1,1,2,3,4,5,6,7,7]"}},
      {"element with a node 0",
                    With("7,8\n", "7,0\n"),
                    {"a.inp:11: error: expected a node id, found '0' [1,1,2,3,4,5,6,7,0]"}},
      {"element with an empty node",
                    With("6,7,8\n", "6,,8,7\n"),
                    {"a.inp:11: error: expected a node id, found '' [1,1,2,3,4,5,6,,8,7]",
                     "a.inp:11: warning: element 1 is complete with its 8 nodes, 1 more on the line are ignored "
                                  "[1,1,2,3,4,5,6,,8,7]"}},
      {"element with too many nodes",
                    With("7,8\n", "7,8,1\n"),
                    {"a.inp:11: warning: element 1 is complete with its 8 nodes, 1 more on the line are ignored "
                                  "[1,1,2,3,4,5,6,7,8,1]"}},
      {"element with too few nodes",
                    With("7,8\n", "7,8\n2,1,2,3,4,5,6,7\n"),
                    {"a.inp:12: error: element 2 has 7 nodes, expected 8 of a C3D8 [2,1,2,3,4,5,6,7]"}},
      {"element that takes the next one's line",
                    With("7,8\n", "7,8\n2,1,2,3,4,5,6,7\n8,1,2,3,4,5,6,7,8\n"),
                    {"a.inp:13: error: element 2 is complete with its 8 nodes, 8 more on the line are ignored [8,1,2,3,4,5,6,7,8]"}},
      {"unknown element type",
                    With("C3D8", "C3D9"),
                    {"a.inp:10: error: unknown element type 'C3D9' [*ELEMENT, TYPE=C3D9, ELSET=E]"}},
      {"no element type",
                    With("TYPE=C3D8, ", ""),
                    {"a.inp:10: error: expected the type of the elements, TYPE= [*ELEMENT, ELSET=E]"}},
      {"keyword goes on in the next line",
                    With("TYPE=C3D8, ELSET=E\n", "TYPE=C3D8,\nELSET=E\n"),
                    {"a.inp:11: error: expected an element id, found 'ELSET=E' [ELSET=E]",
                     "a.inp:12: error: 1 element without a section, the first is 1 [1,1,2,3,4,5,6,7,8]",
                     "a.inp:16: error: element set 'E' is not defined [*SOLID SECTION, ELSET=E, MATERIAL=M]"}},
      {"user element without nodes",
                    WithModel("*USER ELEMENT, TYPE=U1\n"),
                    {"a.inp:12: error: expected the number of nodes of an element, NODES= [*USER ELEMENT, TYPE=U1]"}},

      // Sets.
      {"set of unknown nodes",
                    WithModel("*NSET, NSET=A\n99,1,98\n"),
                    {"a.inp:12: warning: node set 'A' has 2 ids that no node has, the first is 99 [*NSET, NSET=A]"}},
      {"set of unknown elements",
                    WithModel("*ELSET, ELSET=A\n99\n"),
                    {"a.inp:12: warning: element set 'A' has 1 id that no element has, the first is 99 [*ELSET, ELSET=A]"}},
      {"set of an unknown node set",
                    WithModel("*NSET, NSET=A\n1, foo\n"),
                    {"a.inp:13: error: node set 'FOO' is not defined before this line [1, foo]"}},
      {"set of an element set",
                    WithModel("*NSET, NSET=A\nE\n"),
                    {"a.inp:13: error: node set 'E' is not defined before this line [E]"}},
      {"set of an unknown element set",
                    WithModel("*ELSET, ELSET=A\nN\n"),
                    {"a.inp:13: error: element set 'N' is not defined before this line [N]"}},
      {"set without a name", WithModel("*NSET\n1\n"), {"a.inp:12: error: expected the name of the set, NSET= [*NSET]"}},
      {"set with a long name",
                    WithModel("*NSET, NSET=" + longName + "\n1\n"),
                    {"a.inp:12: error: the name of a set has 81 characters, expected at most 80 [*NSET, NSET=" + longName + "]"}},
      {"set with an id below 1",
                    WithModel("*NSET, NSET=A\n1,-2\n"),
                    {"a.inp:13: error: expected an id from 1, found '-2' [1,-2]"}},
      {"range with step 0",
                    WithModel("*NSET, NSET=A, GENERATE\n1,8,0\n"),
                    {"a.inp:13: error: expected a step from 1, found 0 [1,8,0]"}},
      {"range that is empty",
                    WithModel("*NSET, NSET=A, GENERATE\n8,1\n"),
                    {"a.inp:13: warning: the range from 8 to 1 is empty [8,1]"}},
      {"range of a name",
                    WithModel("*NSET, NSET=A, GENERATE\nN\n"),
                    {"a.inp:13: error: expected first, last and step of a range, found 'N' [N]"}},
      {"range past the nodes",
                    WithModel("*NSET, NSET=A, GENERATE\n7,10\n"),
                    {"a.inp:12: warning: node set 'A' has 2 ids that no node has, the first is 9 [*NSET, NSET=A, GENERATE]"}},

      // Materials, orientations, sections.
      {"material without a name",
                    With("*MATERIAL, NAME=M\n", "*MATERIAL\n"),
                    {"a.inp:12: error: expected the name of the material, NAME= [*MATERIAL]",
                     "a.inp:13: error: *ELASTIC belongs behind a *MATERIAL [*ELASTIC]",
                     "a.inp:15: error: material 'M' is not defined [*SOLID SECTION, ELSET=E, MATERIAL=M]"}},
      {"material given twice",
                    WithModel("*MATERIAL, NAME=M\n*ELASTIC\n1,0\n"),
                    {"a.inp:15: error: material 'M' is there already, at a.inp:12, and the solver uses that one [*MATERIAL, "
                                  "NAME=M]"}},
      {"property without a material",
                    WithModel("*DENSITY\n7.8E-9\n"),
                    {"a.inp:12: error: *DENSITY belongs behind a *MATERIAL [*DENSITY]"}},
      {"property that is text", With("210000,.3", "E,.3"), {"a.inp:14: error: expected a number, found 'E' [E,.3]"}},
      {"section of an unknown set",
                    With("SECTION, ELSET=E", "SECTION, ELSET=X"),
                    {"a.inp:11: error: 1 element without a section, the first is 1 [1,1,2,3,4,5,6,7,8]",
                     "a.inp:15: error: element set 'X' is not defined [*SOLID SECTION, ELSET=X, MATERIAL=M]"}},
      {"section without a set",
                    With("SECTION, ELSET=E", "SECTION"),
                    {"a.inp:11: error: 1 element without a section, the first is 1 [1,1,2,3,4,5,6,7,8]",
                     "a.inp:15: error: expected the element set of the section, ELSET= [*SOLID SECTION, MATERIAL=M]"}},
      {"section of an unknown material",
                    With("MATERIAL=M", "MATERIAL=X"),
                    {"a.inp:15: error: material 'X' is not defined [*SOLID SECTION, ELSET=E, MATERIAL=X]"}},
      {"section without a material",
                    With(", MATERIAL=M", ""),
                    {"a.inp:15: error: expected the material of the section, MATERIAL= [*SOLID SECTION, ELSET=E]"}},
      {"section of a beam without a material",
                    WithModel("*BEAM SECTION, ELSET=E\n"),
                    {"a.inp:12: error: expected the material of the section, MATERIAL= [*BEAM SECTION, ELSET=E]"}},
      {"section of an unknown orientation",
                    With("MATERIAL=M", "MATERIAL=M, ORIENTATION=O"),
                    {"a.inp:15: error: orientation 'O' is not defined [*SOLID SECTION, ELSET=E, MATERIAL=M, ORIENTATION=O]"}},
      {"orientation without a name",
                    WithModel("*ORIENTATION\n1,0,0,0,1,0\n"),
                    {"a.inp:12: error: expected the name of the orientation, NAME= [*ORIENTATION]"}},
      {"orientation given twice",
                    WithModel("*ORIENTATION, NAME=O\n1,0,0,0,1,0\n*ORIENTATION, NAME=O\n0,1,0,1,0,0\n"),
                    {"a.inp:14: error: orientation 'O' is there already, at a.inp:12 [*ORIENTATION, NAME=O]"}},
      {"material with a long name",
                    WithModel("*MATERIAL, NAME=" + longName + "\n"),
                    {"a.inp:12: error: the name of a material has 81 characters, expected at most 80 [*MATERIAL, NAME=" + longName +
                     "]"}},
      {"orientation with a long name",
                    WithModel("*ORIENTATION, NAME=" + longName + "\n1,0,0,0,1,0\n"),
                    {"a.inp:12: error: the name of an orientation has 81 characters, expected at most 80 [*ORIENTATION, NAME=" +
                     longName + "]"}},
      {"orientation of an unknown system",
                    WithModel("*ORIENTATION, NAME=O, SYSTEM=POLAR\n1,0,0,0,1,0\n"),
                    {"a.inp:12: error: expected SYSTEM=RECTANGULAR or SYSTEM=CYLINDRICAL, found 'POLAR' [*ORIENTATION, NAME=O, "
                                  "SYSTEM=POLAR]"}},
      {"a cylindrical orientation that is turned",
                    WithModel("*ORIENTATION, NAME=O, SYSTEM=CYLINDRICAL\n0,0,0,0,0,1\n3,30.\n"),
                    {"a.inp:14: error: a cylindrical system cannot be turned, the solver stops here [3,30.]"}},
      {"orientation about a fourth axis",
                    WithModel("*ORIENTATION, NAME=O\n1,0,0,0,1,0\n4,30.\n"),
                    {"a.inp:14: error: expected the axis of a rotation, 1 to 3, found '4' [4,30.]"}},
      {"orientation by a distribution",
                    WithModel("*ORIENTATION, NAME=O\nDIST\n"),
                    {"a.inp:13: warning: an orientation by the distribution 'DIST' is not read [DIST]"}},

      // Keywords and lines.
      {"unknown keyword",
                    WithModel("*FOOBAR\n1,2\n3\n"),
                    {"a.inp:12: warning: unknown keyword *FOOBAR, 2 data lines skipped [*FOOBAR]"}},
      {"asterisk without a keyword",
                    WithModel("*\n1,2\n"),
                    {"a.inp:12: warning: unknown keyword *, 1 data line skipped [*]"}},
      {"misspelt keyword",
                    WithModel("*NSTE, NSET=A\n1\n"),
                    {"a.inp:12: warning: unknown keyword *NSTE, 1 data line skipped, did you mean 'NSET'? [*NSTE, NSET=A]"}},
      {"keyword with more letters",
                    With("*STATIC\n", "*Statics\n"),
                    {"a.inp:17: warning: keyword *STATICS is *STATIC to the solver [*Statics]"}},
      {"data before the first card",
                    "1,2,3\n" + kWhole,
                    {"a.inp:1: warning: the line belongs to no card and is skipped [1,2,3]"}},
      {"title of a step",
                    With("*STATIC\n", "first step\n*STATIC\n"),
                    {"a.inp:17: warning: the line belongs to no card and is skipped [first step]"}},
      {"line behind the last step",
                    kWhole + "end\n",
                    {"a.inp:26: warning: the line belongs to no card and is skipped [end]"}},
      {"comment of more than 1319 characters",
                    With("7,1,1,1", longComment + "\n7,1,1,1"),
                    {"a.inp:8: error: the line has 1320 characters, and the solver splits lines of more than 1319 [" + longComment +
                     "]"}},

      // Steps.
      {"step without an end", With("*END STEP\n", ""), {"a.inp:16: error: the step has no *END STEP [*STEP]"}},
      {"empty step without an end", kWhole + "*STEP\n", {"a.inp:26: warning: the step has no *END STEP [*STEP]"}},
      {"step in a step",
                    With("*STATIC\n", "*STATIC\n*STEP\n*STATIC\n"),
                    {"a.inp:18: error: a step begins inside of the step of a.inp:16 [*STEP]"}},
      {"end of no step", kWhole + "*END STEP\n", {"a.inp:26: error: no step is to be ended here [*END STEP]"}},
      {"procedure outside of a step",
                    WithModel("*STATIC\n"),
                    {"a.inp:12: error: *STATIC belongs between *STEP and *END STEP [*STATIC]"}},
      {"load outside of a step",
                    WithModel("*CLOAD\n1,1,1.\n"),
                    {"a.inp:12: error: *CLOAD belongs between *STEP and *END STEP [*CLOAD]"}},

      // What cards refer to.
      {"boundary of an unknown set",
                    With("N,2\n", "FOO,2\n"),
                    {"a.inp:20: error: node set 'FOO' is not defined [FOO,2]"}},
      {"boundary of an unknown node",
                    With("1,1,3\n", "99,1,3\n"),
                    {"a.inp:19: error: node 99 is not defined [99,1,3]"}},
      {"load on an unknown node", With("7,3,10.", "99,3,10."), {"a.inp:22: error: node 99 is not defined [99,3,10.]"}},
      {"load on an element set",
                    With("7,3,10.", "E,3,10."),
                    {"a.inp:22: error: node set 'E' is not defined [E,3,10.]"}},
      {"load of an unknown amplitude",
                    With("*CLOAD", "*CLOAD, AMPLITUDE=A"),
                    {"a.inp:21: error: amplitude 'A' is not defined [*CLOAD, AMPLITUDE=A]"}},
      {"pressure on an unknown element",
                    WithStep("*DLOAD\n99,P1,1.\n"),
                    {"a.inp:26: error: element 99 is not defined [99,P1,1.]"}},
      {"pressure on an unknown set",
                    WithStep("*DLOAD\nFOO,P1,1.\n"),
                    {"a.inp:26: error: element set 'FOO' is not defined [FOO,P1,1.]"}},
      {"film on an unknown set",
                    WithStep("*FILM\nFOO,F1,20.,1.\n"),
                    {"a.inp:26: error: element set 'FOO' is not defined [FOO,F1,20.,1.]"}},
      {"print of an unknown set",
                    With("PRINT, NSET=N", "PRINT, NSET=FOO"),
                    {"a.inp:23: error: node set 'FOO' is not defined [*NODE PRINT, NSET=FOO]"}},
      {"element print of an unknown set",
                    WithStep("*EL PRINT, ELSET=FOO\nS\n"),
                    {"a.inp:25: error: element set 'FOO' is not defined [*EL PRINT, ELSET=FOO]"}},
      {"equation of an unknown node",
                    WithModel("*EQUATION\n2\n7,1,1.,99,1,-1.\n"),
                    {"a.inp:14: error: node 99 is not defined [7,1,1.,99,1,-1.]"}},
      {"equation without a count",
                    WithModel("*EQUATION\nN,1,1.\n"),
                    {"a.inp:13: error: expected the number of terms of an equation, found 'N' [N,1,1.]"}},
      {"equation of a set",
                    WithModel("*EQUATION\n2\n7,1,1.,N,1,-1.\n"),
                    {"a.inp:14: error: expected a node id, found 'N' [7,1,1.,N,1,-1.]"}},
      {"equation with too few terms",
                    WithModel("*EQUATION\n3\n7,1,1.,8,1,-1.\n"),
                    {"a.inp:13: error: the equation has 2 terms, expected 3 [3]"}},
      {"equation with too few terms at the end of the deck",
                    kWhole + "*EQUATION\n2\n7,1,1.\n",
                    {"a.inp:26: error: *EQUATION belongs before the first *STEP [*EQUATION]",
                     "a.inp:27: error: the equation has 1 term, expected 2 [2]"}},
      {"film of an unknown amplitude",
                    WithStep("*FILM, FILM AMPLITUDE=A\nE,F1,20.,1.\n"),
                    {"a.inp:25: error: amplitude 'A' is not defined [*FILM, FILM AMPLITUDE=A]"}},
      {"radiation of an unknown amplitude",
                    WithStep("*RADIATE, RADIATION AMPLITUDE=A\nE,R1,20.,1.\n"),
                    {"a.inp:25: error: amplitude 'A' is not defined [*RADIATE, RADIATION AMPLITUDE=A]"}},
      {"print at unknown times",
                    With("PRINT, NSET=N", "PRINT, NSET=N, TIME POINTS=T"),
                    {"a.inp:23: error: time points 'T' is not defined [*NODE PRINT, NSET=N, TIME POINTS=T]"}},
      {"contact of an unknown interaction",
                    WithModel("*SURFACE, NAME=S\n1,S1\n*SURFACE, NAME=T\n1,S2\n*CONTACT PAIR, INTERACTION=I\nS,T\n"),
                    {"a.inp:16: error: surface interaction 'I' is not defined [*CONTACT PAIR, INTERACTION=I]"}},
      {"change of an unknown material",
                    WithStep("*CHANGE MATERIAL, NAME=X\n"),
                    {"a.inp:25: error: material 'X' is not defined [*CHANGE MATERIAL, NAME=X]"}},
      {"spring of an unknown orientation",
                    WithModel("*SPRING, ELSET=E, ORIENTATION=O\n1\n1.\n"),
                    {"a.inp:12: error: orientation 'O' is not defined [*SPRING, ELSET=E, ORIENTATION=O]"}},
      {"removal of an unknown set",
                    WithStep("*MODEL CHANGE, TYPE=ELEMENT, REMOVE\nX\n"),
                    {"a.inp:26: error: element set 'X' is not defined [X]"}},
      {"removal of contact between unknown surfaces",
                    WithModel("*SURFACE, NAME=S\n1,S1\n*SURFACE INTERACTION, NAME=I\n*CONTACT PAIR, INTERACTION=I\nS,S\n") +
                        "*STEP\n*STATIC\n*MODEL CHANGE, TYPE=CONTACT PAIR, REMOVE\nS,T\n*END STEP\n",
                    {"a.inp:34: error: surface 'T' is not defined [S,T]"}},
      {"normal in an unknown element",
                    WithModel("*NORMAL\n99,1,0.,0.,1.\n"),
                    {"a.inp:13: error: element 99 is not defined [99,1,0.,0.,1.]"}},
      {"coupling of unknown nodes",
                    WithModel("*DISTRIBUTING COUPLING, ELSET=E\nX,1.\n99,1.\n"),
                    {"a.inp:13: error: node set 'X' is not defined [X,1.]", "a.inp:14: error: node 99 is not defined [99,1.]"}},
      {"design variables of an unknown set",
                    WithModel("*DESIGN VARIABLES, TYPE=COORDINATE\nX\n"),
                    {"a.inp:13: error: node set 'X' is not defined [X]"}},
      {"pre-tension with an unknown node",
                    WithModel("*SURFACE, NAME=S\n1,S1\n*PRE-TENSION SECTION, SURFACE=S, NODE=99\n0,0,1\n"),
                    {"a.inp:14: error: node 99 is not defined [*PRE-TENSION SECTION, SURFACE=S, NODE=99]"}},
      {"surface without a name",
                    WithModel("*SURFACE\n1,S1\n"),
                    {"a.inp:12: error: expected the name of the surface, NAME= [*SURFACE]"}},
      {"time points without a name",
                    WithModel("*TIME POINTS\n1.\n"),
                    {"a.inp:12: error: expected the name of the time points, NAME= [*TIME POINTS]"}},
      {"surface interaction without a name", WithModel("*SURFACE INTERACTION\n"), {}},
      {"amplitude without a name",
                    WithModel("*AMPLITUDE\n0.,1.\n"),
                    {"a.inp:12: error: expected the name of the amplitude, NAME= [*AMPLITUDE]"}},
      {"rigid body with an unknown node",
                    WithModel("*RIGID BODY, NSET=N, REF NODE=99\n"),
                    {"a.inp:12: error: node 99 is not defined [*RIGID BODY, NSET=N, REF NODE=99]"}},
      {"surface of an unknown set",
                    WithModel("*SURFACE, NAME=S, TYPE=ELEMENT\nFOO,S1\n"),
                    {"a.inp:13: error: element set 'FOO' is not defined [FOO,S1]"}},
      {"surface of an unknown element",
                    WithModel("*SURFACE, NAME=S\n99,S1\n"),
                    {"a.inp:13: warning: element 99 is not defined [99,S1]"}},
      {"surface of an unknown node set",
                    WithModel("*SURFACE, NAME=S, TYPE=NODE\nE\n"),
                    {"a.inp:13: error: node set 'E' is not defined [E]"}},
      {"tie of unknown surfaces",
                    WithModel("*TIE, NAME=T\nA1,A2\n"),
                    {"a.inp:13: error: surface 'A1' is not defined [A1,A2]",
                     "a.inp:13: error: surface 'A2' is not defined [A1,A2]"}},
      {"initial temperature of an unknown set",
                    WithModel("*INITIAL CONDITIONS, TYPE=TEMPERATURE\nFOO,20.\n"),
                    {"a.inp:13: error: node set 'FOO' is not defined [FOO,20.]"}},
      {"initial temperature of an unknown node",
                    WithModel("*INITIAL CONDITIONS, TYPE=TEMPERATURE\n99,20.\n"),
                    {"a.inp:13: warning: node 99 is not defined [99,20.]"}},
      {"initial stress of an unknown element",
                    WithModel("*INITIAL CONDITIONS, TYPE=STRESS\n99,1,1.,1.,1.,0.,0.,0.\n"),
                    {"a.inp:13: warning: element 99 is not defined [99,1,1.,1.,1.,0.,0.,0.]"}},

      // Includes.
      {"include that is not there",
                    WithModel("*INCLUDE, INPUT=none.inc\n"),
                    {"a.inp:12: error: include file 'none.inc' is not there, looked for none.inc [*INCLUDE, INPUT=none.inc]"}},
      {"include in single quotes",
                    WithModel("*INCLUDE, INPUT='none.inc'\n"),
                    {"a.inp:12: error: include file ''none.inc'' is not there, looked for 'none.inc' [*INCLUDE, INPUT='none.inc']"}},
      {"include without a path",
                    WithModel("*INCLUDE\n"),
                    {"a.inp:12: error: expected the path of a file: *INCLUDE, INPUT=PATH [*INCLUDE]"}},
      {"include of itself",
                    WithModel("*INCLUDE, INPUT=a.inp\n"),
                    {"a.inp:12: error: include file 'a.inp' includes itself: a.inp:12 > a.inp [*INCLUDE, INPUT=a.inp]"}},
  };
  EXPECT_GE(std::size(rows), 40U);
  for (const Row& row : rows) EXPECT_EQ(Joined(MessagesOf(row.deck)), Joined(row.messages)) << row.name;
}

TEST_F(DeckCheck, MessageInAnIncludedFileNamesThatFile)
{
  folder_.Write("sub/mesh.inc", "** nodes\n" + kNodes + "oops\n");
  EXPECT_EQ(Joined(MessagesOf("*INCLUDE, INPUT=sub/mesh.inc\n" + kElements + kMaterial + kStep)),
            "sub/mesh.inc:11: error: expected a node id, found 'oops' [oops]\n");
}

TEST_F(DeckCheck, WhatIsDefinedLaterIsThere)
{
  EXPECT_EQ(Joined(MessagesOf(kMaterial + "*BOUNDARY\nLATER,1\n8,2\n" + kStep + "*AMPLITUDE, NAME=A\n0.,1.\n" + kNodes +
                              kElements + "*NSET, NSET=LATER\n1\n*SURFACE, NAME=S\nE,S1\n")),
            "");
}

// Programs that write decks often name sets so, and the solver has none of its own.
TEST_F(DeckCheck, SetOfAllIsThereOnlyWhereTheDeckDefinesIt)
{
  EXPECT_EQ(Joined(MessagesOf(WithStep("*NODE PRINT, NSET=Nall\nU\n*DLOAD\nEall,GRAV,9810.,0.,0.,-1.\n"))),
            "a.inp:25: error: node set 'NALL' is not defined [*NODE PRINT, NSET=Nall]\n"
            "a.inp:28: error: element set 'EALL' is not defined [Eall,GRAV,9810.,0.,0.,-1.]\n");
  EXPECT_EQ(Joined(MessagesOf(With("SECTION, ELSET=E", "SECTION, ELSET=Eall"))),
            "a.inp:11: error: 1 element without a section, the first is 1 [1,1,2,3,4,5,6,7,8]\n"
            "a.inp:15: error: element set 'EALL' is not defined [*SOLID SECTION, ELSET=Eall, MATERIAL=M]\n");
}

TEST_F(DeckCheck, LayersOfAShellHaveMaterialsAndOrientations)
{
  const std::string head =
      "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,.5,0,0\n6,1,.5,0\n7,.5,1,0\n8,0,.5,0\n"
      "*ELEMENT, TYPE=S8R, ELSET=E\n1,1,2,3,4,5,6,7,8\n*MATERIAL, NAME=M\n*ORIENTATION, NAME=O\n1,0,0,0,1,0\n";
  EXPECT_EQ(Joined(MessagesOf(head + "*SHELL SECTION, ELSET=E, COMPOSITE, ORIENTATION=O\n.1,,M\n.1,3,m,o\n")), "");
  EXPECT_EQ(
      Joined(MessagesOf(head + "*SHELL SECTION, ELSET=E, COMPOSITE, ORIENTATION=P\n.1,,M\n.1,,X,O\n.1,,M,Q\n.1\n")),
      "a.inp:15: error: orientation 'P' is not defined [*SHELL SECTION, ELSET=E, COMPOSITE, ORIENTATION=P]\n"
      "a.inp:17: error: material 'X' is not defined [.1,,X,O]\n"
      "a.inp:18: error: orientation 'Q' is not defined [.1,,M,Q]\n"
      "a.inp:19: error: expected the material of the layer in the third field [.1]\n");
  EXPECT_EQ(Joined(MessagesOf(head + "*SHELL SECTION, ELSET=E\n.1\n")),
            "a.inp:15: error: expected the material of the section, MATERIAL= [*SHELL SECTION, ELSET=E]\n");
}

TEST_F(DeckCheck, BlanksBehindTheSplitOfALineDoNoHarm)
{
  EXPECT_EQ(Joined(MessagesOf(With("7,1,1,1\n", "7,1,1,1" + std::string(2000, ' ') + "\t\n"))), "");
}

// Two files of a model that share the nodes of their border say each of them twice.
TEST_F(DeckCheck, WarningsBeyondTheLimitAreNoErrorAndHideNone)
{
  std::string nodes;
  for (int i = 1; i <= 10005; ++i) nodes += std::to_string(i) + ",0,0,0\n";
  const std::vector<std::string> messages = MessagesOf("*NODE\n" + nodes + "*NODE\n" + nodes + "x\n");
  ASSERT_EQ(messages.size(), 10002U);
  EXPECT_EQ(messages[9999],
            "a.inp:20007: warning: node 10000 is there already, at a.inp:10001, at the same position [10000,0,0,0]");
  EXPECT_EQ(messages[10000], "a.inp:20008: warning: there are more warnings than can be listed [10001,0,0,0]");
  EXPECT_EQ(messages[10001], "a.inp:20013: error: expected a node id, found 'x' [x]");
}

TEST_F(DeckCheck, SurfacesCarryLoads)
{
  EXPECT_EQ(Joined(MessagesOf(kNodes + kElements + "*SURFACE, NAME=TOP\nE,S2\n" + kMaterial +
                              "*STEP\n*STATIC\n*DLOAD\nTOP,P,1.\n*DSLOAD\nTOP,P,1.\n*END STEP\n")),
            "");
}

TEST_F(DeckCheck, EquationsMayWrap)
{
  EXPECT_EQ(Joined(MessagesOf(WithModel("*EQUATION\n5\n1,1,1.,2,1,1.,3,1,1.,4,1,1.\n5,1,1.\n2\n6,1,1.,\n7,1,1.\n"))),
            "");
}

TEST_F(DeckCheck, RepeatedNodeIsFoundInElementsOfAnySize)
{
  for (const int count : {32, 33, 40}) {
    std::string nodes = "*NODE\n";
    std::string line  = "1";
    for (int i = 1; i <= count; ++i) nodes += std::to_string(i) + "\n";
    for (int i = 1; i < count; ++i) line += "," + std::to_string(i);
    const std::string head = nodes + "*USER ELEMENT, TYPE=U1, NODES=" + std::to_string(count) + "\n*ELEMENT, TYPE=U1\n";
    EXPECT_EQ(Joined(MessagesOf(head + line + "," + std::to_string(count) + "\n")), "") << count;
    EXPECT_EQ(Joined(MessagesOf(head + line + ",7\n")), "a.inp:" + std::to_string(count + 4) +
                                                            ": warning: element 1 (U1) has node 7 more than once [" +
                                                            line + ",7]\n");
  }
}

// The model of such a deck is in a file of the solver's.
TEST_F(DeckCheck, RestartedDeckIsNotCheckedForWhatItRefersTo)
{
  EXPECT_EQ(Joined(MessagesOf("*RESTART, READ, STEP=1\n*STEP\n*STATIC\n*DLOAD, AMPLITUDE=A\n29,P2,-1.\nFOO,P1,1.\n*END "
                              "STEP\n")),
            "");
}

TEST_F(DeckCheck, AmplitudeOfAStepIsNoName)
{
  EXPECT_EQ(Joined(MessagesOf(With("*STEP\n*STATIC", "*STEP, AMPLITUDE=RAMP\n*STATIC"))), "");
}

TEST_F(DeckCheck, BoundaryOfASubmodelIsDrivenFromElsewhere)
{
  EXPECT_EQ(Joined(MessagesOf(WithStep("*BOUNDARY, SUBMODEL\n99,1,3\n"))), "");
}

}  // namespace
