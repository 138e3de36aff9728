// What stops the solver though a model could be read. Each line was tried on the solver itself: an error stops it or
// changes what it computes without a word, a warning does not.

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

// Lines 1 to 9, 10 and 11, 12 to 15, 16 on.
const std::string kNodes    = "*NODE, NSET=N\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n";
const std::string kElements = "*ELEMENT, TYPE=C3D8, ELSET=E\n1,1,2,3,4,5,6,7,8\n";
const std::string kSection  = "*SOLID SECTION, ELSET=E, MATERIAL=M\n";
const std::string kMaterial = "*MATERIAL, NAME=M\n*ELASTIC\n210000,.3\n" + kSection;
const std::string kStep     = "*STEP\n*STATIC\n*END STEP\n";

class DeckLintTest : public testing::Test
{
protected:
  /// @return "LINE: error: TEXT" of each message, a line each
  std::string MessagesOf(const std::string& deck)
  {
    std::vector<DeckMessage> messages;
    ReadDeckModel(folder_.Write("a.inp", deck), {}, messages);
    std::string all;
    for (const DeckMessage& message : messages)
      all += std::to_string(message.place.line) +
             (message.severity == DeckMessage::Error ? ": error: " : ": warning: ") + message.text + '\n';
    return all;
  }

  /// With lines in the place of the material's, from line 13 on.
  std::string OfMaterial(const std::string& lines)
  {
    return MessagesOf(kNodes + kElements + "*MATERIAL, NAME=M\n" + lines + kSection + kStep);
  }

  /// With lines before the first step, from line 16 on.
  std::string OfModel(const std::string& lines) { return MessagesOf(kNodes + kElements + kMaterial + lines + kStep); }

  /// With lines in a static step, from line 18 on.
  std::string OfStep(const std::string& lines)
  {
    return MessagesOf(kNodes + kElements + kMaterial + "*STEP\n*STATIC\n" + lines + "*END STEP\n");
  }

  DeckFolder folder_;
};

TEST_F(DeckLintTest, WordsWhereNumbersBelongStopTheSolver)
{
  EXPECT_EQ(OfStep("*CLOAD\n7,3,ten\n"), "19: error: expected a number, found 'ten'\n");
  EXPECT_EQ(OfStep("*CLOAD\n7,x,1.\n"), "19: error: expected a whole number, found 'x'\n");
  EXPECT_EQ(OfStep("*CLOAD\n7,1.0,1.\n"), "19: error: expected a whole number, found '1.0'\n");
  EXPECT_EQ(OfStep("*BOUNDARY\n7,1,1,1e\n"), "19: error: expected a number, found '1e'\n");
  EXPECT_EQ(OfStep("*DLOAD\nE,GRAV,9.81,0,down,-1\n"), "19: error: expected a number, found 'down'\n");
  EXPECT_EQ(OfModel("*AMPLITUDE, NAME=A\n0.,0.,1.,x\n"), "17: error: expected a number, found 'x'\n");
  EXPECT_EQ(OfModel("*INITIAL CONDITIONS, TYPE=TEMPERATURE\nN,warm\n"), "17: error: expected a number, found 'warm'\n");
  EXPECT_EQ(MessagesOf(kNodes + kElements + kMaterial + "*STEP\n*STATIC\n.1,x\n*END STEP\n"),
            "18: error: expected a number, found 'x'\n");
  EXPECT_EQ(OfModel("*EQUATION\n2\n1,1,x,2,1,\n-1.\n"), "18: error: expected a number, found 'x'\n");
  EXPECT_EQ(
      OfStep("*CLOAD\n7,3,0.1000000000000000000E+01\n"),
      "19: error: the solver reads the first 20 characters of '0.1000000000000000000E+01', which is another number\n");
}

TEST_F(DeckLintTest, EmptyFieldsAndFieldsThatTheSolverDoesNotReadAreNoError)
{
  EXPECT_EQ(OfStep("*BOUNDARY\n7,1,,\nN,1\n*CLOAD\n7,3\n7,1,1.,whatever\n"), "");
  EXPECT_EQ(OfStep("*CLOAD\n7,1,1.d0\n7,2, 2.5 + 1\n"), "");
  EXPECT_EQ(MessagesOf("*HEADING\nany words, 1, at all\n" + kNodes + kElements + kMaterial + kStep), "");
}

TEST_F(DeckLintTest, NumbersThatAreNotFiniteAreComputedWith)
{
  EXPECT_EQ(OfStep("*CLOAD\n7,3,NaN\n"), "19: warning: the solver computes with 'NaN'\n");
}

TEST_F(DeckLintTest, DegreesOfFreedomAreThoseOfTheCard)
{
  const std::string ofBoundary = ", expected 0 to 6, 8 and 11\n";
  EXPECT_EQ(OfStep("*BOUNDARY\nN,1,6\nN,8\nN,11\nN\n"), "");
  EXPECT_EQ(OfStep("*BOUNDARY\nN,7\n"), "19: error: *BOUNDARY has no degree of freedom 7" + ofBoundary);
  EXPECT_EQ(OfStep("*BOUNDARY\nN,1,7\n"), "19: error: *BOUNDARY has no degree of freedom 7" + ofBoundary);
  EXPECT_EQ(OfStep("*BOUNDARY\nN,8,11\n"), "19: error: *BOUNDARY has no degree of freedom 9" + ofBoundary);
  EXPECT_EQ(OfStep("*BOUNDARY\nN,-1\n"), "19: error: *BOUNDARY has no degree of freedom -1" + ofBoundary);
  EXPECT_EQ(OfStep("*BOUNDARY\nN,1,2000000000\n"), "19: error: *BOUNDARY has no degree of freedom 7" + ofBoundary);
  EXPECT_EQ(OfStep("*BOUNDARY\nN,3,1\n"), "19: warning: there are no degrees of freedom from 3 to 1\n");
  EXPECT_EQ(OfStep("*CLOAD\n7,1,1.\n7,6,1.\n"), "");
  EXPECT_EQ(OfStep("*CLOAD\n7,0,1.\n"), "19: error: *CLOAD has no degree of freedom 0, expected 1 to 6\n");
  EXPECT_EQ(OfStep("*CLOAD\n7,,1.\n"), "19: error: *CLOAD has no degree of freedom 0, expected 1 to 6\n");
  EXPECT_EQ(OfStep("*CFLUX\n7,11,1.\n7,0,1.\n"), "");
  EXPECT_EQ(OfStep("*CFLUX\n7,1,1.\n"), "19: error: *CFLUX has no degree of freedom 1, expected 0 and 11\n");
  EXPECT_EQ(OfModel("*EQUATION\n2\n1,7,1.,2,1,1.\n"), "18: error: *EQUATION has no degree of freedom 7" + ofBoundary);
}

TEST_F(DeckLintTest, ElasticConstantsAreAllThereAndInRange)
{
  const std::string modulus = ", expected a number above 0\n";
  const std::string ratio   = ", expected a number between -1 and 0.5\n";
  EXPECT_EQ(OfMaterial("*ELASTIC\n210000,.499\n210000,-.99,20.\n1e-30,0\n210000,.3,\n"), "");
  EXPECT_EQ(OfMaterial("*ELASTIC\n210000\n"), "14: error: expected 2 numbers on the line of *ELASTIC, found 1\n");
  EXPECT_EQ(OfMaterial("*ELASTIC\n210000,\n"), "14: error: expected 2 numbers on the line of *ELASTIC, found 1\n");
  EXPECT_EQ(OfMaterial("*ELASTIC\n0,.3\n"), "14: error: Young's modulus is 0" + modulus);
  EXPECT_EQ(OfMaterial("*ELASTIC\n-210000,.3\n"), "14: error: Young's modulus is -210000" + modulus);
  EXPECT_EQ(OfMaterial("*ELASTIC\n,.3\n"), "14: error: Young's modulus is 0" + modulus);
  EXPECT_EQ(OfMaterial("*ELASTIC\n210000,.5\n"), "14: error: Poisson's ratio is 0.5" + ratio);
  EXPECT_EQ(OfMaterial("*ELASTIC, TYPE=ISO\n210000,.3\n210000,-1.,20.\n"), "15: error: Poisson's ratio is -1" + ratio);
  EXPECT_EQ(OfMaterial("*ELASTIC\n"), "13: error: expected data lines behind *ELASTIC\n");

  EXPECT_EQ(OfMaterial("*ELASTIC, TYPE=ORTHO\n1e5,1e4,1e5,1e4,1e4,1e5,1e5,1e5\n1e5\n"), "");
  EXPECT_EQ(OfMaterial("*ELASTIC, TYPE=ORTHO\n1e5,1e4,1e5,1e4,1e4,1e5,1e5\n1e5\n"),
            "14: error: expected 8 numbers on the line of *ELASTIC, found 7\n");
  EXPECT_EQ(OfMaterial("*ELASTIC, TYPE=ORTHO\n1e5,1e4,1e5,1e4,1e4,1e5,1e5,1e5\n"),
            "13: error: *ELASTIC has 1 data line, expected 2 for each set of constants\n");
  EXPECT_EQ(OfMaterial("*ELASTIC, TYPE=ANISO\n1e5,1e4,1e5,1e4,1e4,1e5,1e5,1e5\n1e5,1e4,1e5,1e4,1e4,1e5,1e5,1e5\n"),
            "13: error: *ELASTIC has 2 data lines, expected 3 for each set of constants\n");
}

TEST_F(DeckLintTest, DensityIsNotNegative)
{
  EXPECT_EQ(OfMaterial("*ELASTIC\n210000,.3\n*DENSITY\n0.\n"), "");
  EXPECT_EQ(OfMaterial("*ELASTIC\n210000,.3\n*DENSITY\n-7.8e-9\n"),
            "16: error: the density is -7.8e-09, expected a number from 0\n");
}

TEST_F(DeckLintTest, LabelsAreThoseOfTheCard)
{
  EXPECT_EQ(OfStep("*NODE FILE\nU,RF,nt\n*EL FILE\nS, E, ENER, NOE\nZZS\n*EL PRINT, ELSET=E\nS,COORD,EVOL\n"
                   "*NODE PRINT, NSET=N\nU\nRF\n"),
            "");
  EXPECT_EQ(OfStep("*EL PRINT, ELSET=E\nS,EVLO\n"),
            "19: error: unknown label 'EVLO' of *ELPRINT, did you mean 'EVOL'?\n");
  EXPECT_EQ(OfStep("*EL FILE\nS,MISES\n"), "19: warning: unknown label 'MISES' of *ELFILE\n");
  EXPECT_EQ(OfStep("*NODE PRINT, NSET=N\nS\n"), "19: warning: unknown label 'S' of *NODEPRINT, did you mean 'PS'?\n");
  EXPECT_EQ(OfStep("*DLOAD\nE,P7,1.\n"), "19: error: unknown label 'P7' of *DLOAD, did you mean 'P1'?\n");
  EXPECT_EQ(OfStep("*DLOAD\nE,P6,1.\nE,P1NU,1.\nE,centrif,1.,0,0,0,0,0,1\n"), "");
  EXPECT_EQ(OfModel("*SURFACE, NAME=S\nE,S1\n1,S9\n"),
            "18: error: unknown label 'S9' of *SURFACE, did you mean 'S1'?\n");
}

TEST_F(DeckLintTest, CardsStandWhereTheSolverTakesThem)
{
  EXPECT_EQ(OfStep("*SOLID SECTION, ELSET=E, MATERIAL=M\n"),
            "18: error: *SOLIDSECTION belongs before the first *STEP\n");
  EXPECT_EQ(MessagesOf(kNodes + kElements + kMaterial + kStep + "*EQUATION\n2\n1,1,1.,2,1,1.\n"),
            "19: error: *EQUATION belongs before the first *STEP\n");
  EXPECT_EQ(OfStep("*EQUATION, REMOVE\n1,1\n"), "");
  EXPECT_EQ(OfStep("*EQUATION, REMOVE ALL\n"), "");
  EXPECT_EQ(OfModel("*NODE PRINT, NSET=N\nU\n"), "16: error: *NODEPRINT belongs between *STEP and *END STEP\n");
  EXPECT_EQ(OfModel("*CLOAD\n7,1,1.\n"), "16: error: *CLOAD belongs between *STEP and *END STEP\n");
  EXPECT_EQ(OfModel("*MODEL CHANGE, TYPE=ELEMENT, REMOVE\n1\n"),
            "16: error: *MODELCHANGE belongs between *STEP and *END STEP\n");
  EXPECT_EQ(OfModel("*BOUNDARY\n7,1\n"), "");
  EXPECT_EQ(OfStep("*BOUNDARY\n7,1\n*NSET, NSET=M\n1\n"), "");
}

TEST_F(DeckLintTest, StepsHaveAProcedure)
{
  EXPECT_EQ(MessagesOf(kNodes + kElements + kMaterial + "*STEP\n*CLOAD\n7,1,1.\n*END STEP\n"),
            "16: error: the step has no procedure, such as *STATIC\n");
  EXPECT_EQ(MessagesOf(kNodes + kElements + kMaterial + kStep + "*STEP\n*NO ANALYSIS\n*END STEP\n"), "");
}

TEST_F(DeckLintTest, CardsHaveTheDataThatTheyNeed)
{
  const std::string head = kNodes + kElements + kMaterial;
  EXPECT_EQ(MessagesOf(head + "*STEP\n*FREQUENCY\n*END STEP\n"), "17: error: expected data lines behind *FREQUENCY\n");
  EXPECT_EQ(MessagesOf(head + "*STEP\n*FREQUENCY, SOLVER=MATRIXSTORAGE\n*END STEP\n"), "");
  EXPECT_EQ(MessagesOf(head + "*STEP\n*FREQUENCY\n\n** comment\n5\n*END STEP\n"), "");
  EXPECT_EQ(MessagesOf(head + "*STEP\n*FREQUENCY\n"),
            "16: error: the step has no *END STEP\n17: error: expected data lines behind *FREQUENCY\n");
  EXPECT_EQ(OfMaterial("*ELASTIC\n210000,.3\n*PLASTIC\n"), "15: error: expected data lines behind *PLASTIC\n");
  EXPECT_EQ(OfMaterial("*ELASTIC\n210000,.3\n*PLASTIC, HARDENING=USER\n"), "");
}

// The unit cube and parts of it, each once as it belongs and once turned inside out.
TEST_F(DeckLintTest, ElementsTurnedInsideOutAreFoundInEveryShape)
{
  const std::string edges =
      "9,.5,0,0\n10,1,.5,0\n11,.5,1,0\n12,0,.5,0\n13,.5,0,1\n14,1,.5,1\n15,.5,1,1\n16,0,.5,1\n17,0,0,.5\n18,1,0,.5\n"
      "19,1,1,.5\n20,0,1,.5\n21,.5,.5,0\n22,.5,.5,1\n23,.5,0,.5\n24,0,.5,.5\n";
  struct Row
  {
    const char* type;
    const char* good;
    const char* bad;
    int         point;
  };
  const Row rows[] = {
      {"C3D4", "1,2,4,5", "2,1,4,5", 1},
      {"C3D6", "1,2,4,5,6,8", "5,6,8,1,2,4", 1},
      {"C3D8", "1,2,3,4,5,6,7,8", "5,6,7,8,1,2,3,4", 1},
      {"C3D8R", "1,2,3,4,5,6,7,8", "5,6,7,8,1,2,3,4", 1},
      {"C3D8I", "1,2,3,4,5,6,7,8", "1,2,4,3,5,6,8,7", 3},
      {"DC3D8", "1,2,3,4,5,6,7,8", "5,6,7,8,1,2,3,4", 1},
      {"C3D10", "1,2,4,5,9,21,12,17,23,24", "2,1,4,5,9,12,21,23,17,24", 1},
      {"C3D15", "1,2,4,5,6,8,9,21,12,13,22,16,17,18,20", "5,6,8,1,2,4,13,22,16,9,21,12,17,18,20", 1},
      {"C3D20", "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20",
       "5,6,7,8,1,2,3,4,13,14,15,16,9,10,11,12,17,18,19,20", 1},
      {"C3D20R", "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20",
       "5,6,7,8,1,2,3,4,13,14,15,16,9,10,11,12,17,18,19,20", 1},
      {"CPS3", "1,2,4", "1,4,2", 1},
      {"CPE4", "1,2,3,4", "1,4,3,2", 1},
      {"CAX4R", "1,2,3,4", "1,4,3,2", 1},
      {"CPS6", "1,2,4,9,21,12", "1,4,2,12,21,9", 1},
      {"CPS8", "1,2,3,4,9,10,11,12", "1,4,3,2,12,11,10,9", 1},
      {"CPS8R", "1,2,3,4,9,10,11,12", "1,4,3,2,12,11,10,9", 1},
      {"S4", "1,2,3,4", "1,4,3,2", 0},
  };
  for (const Row& row : rows) {
    const std::string head = kNodes + edges + "*ELEMENT, ELSET=E, TYPE=" + row.type + '\n';
    EXPECT_EQ(MessagesOf(head + "1," + row.good + '\n' + kMaterial + kStep), "") << row.type;
    const std::string expected = row.point == 0 ? ""
                                                : "27: error: element 1 (" + std::string(row.type) +
                                                      ") is turned inside out: its volume is not positive at "
                                                      "integration point " +
                                                      std::to_string(row.point) + '\n';
    EXPECT_EQ(MessagesOf(head + "1," + row.bad + '\n' + kMaterial + kStep), expected) << row.type;
  }
}

TEST_F(DeckLintTest, FlatElementsHaveNoVolume)
{
  EXPECT_EQ(MessagesOf(kNodes + "*ELEMENT, TYPE=C3D4, ELSET=E\n1,1,2,3,4\n" + kMaterial + kStep),
            "11: error: element 1 (C3D4) is turned inside out: its volume is not positive at integration point 1\n");
}

TEST_F(DeckLintTest, EmptyDeckIsAnError)
{
  const std::string expected = "1: error: the deck is empty: it has no keyword card\n";
  EXPECT_EQ(MessagesOf(""), expected);
  EXPECT_EQ(MessagesOf("** a comment\n\n"), expected);
}

// A model is what it is: who reads one, to import results, is not kept from it by what the solver may say.
TEST_F(DeckLintTest, ModelsAreReadWithoutThis)
{
  const auto deck = folder_.Write("a.inp", kNodes + "*ELEMENT, TYPE=C3D8, ELSET=E\n1,5,6,7,8,1,2,3,4\n" + kMaterial +
                                               "*STEP\n*STATIC\n*CLOAD\n7,7,x\n*EL PRINT, ELSET=E\nFOO\n*END STEP\n");
  EXPECT_EQ(ReadDeckModel(deck).elements.Entries().size(), 1U);
}

}  // namespace
