#include "calculix/deck/DeckLineConverter.h"

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace quilon::calculix;

std::string ConvertLines(const std::string& text, int lengthExponent, int nodeOffset, const DeckModel& model = {})
{
  DeckLineConverter converter(lengthExponent, nodeOffset, model,
                              [](const std::string& message) { throw std::runtime_error(message); });
  std::string       result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end  = text.find('\n', at);
    const std::string line = text.substr(at, end - at);
    switch (KindOfDeckLine(line)) {
      case DeckLineKind::Card:
        converter.EndCard();
        result += converter.ConvertCard(line);
        break;
      case DeckLineKind::Data:
        result += converter.ConvertData(line);
        break;
      default:
        result += line;
    }
    result += '\n';
    at = end + 1;
  }
  converter.EndCard();
  return result;
}

std::string InMetres(const std::string& text) { return ConvertLines(text, -3, 0); }
std::string Moved(const std::string& text) { return ConvertLines(text, 0, 1000); }

std::string FailureOf(const std::string& text, int lengthExponent, int nodeOffset, const DeckModel& model = {})
{
  try {
    ConvertLines(text, lengthExponent, nodeOffset, model);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "no failure";
}

struct Row
{
  const char* before;
  const char* after;
};

}  // namespace

TEST(ShiftDecimal, MovesThePointAndKeepsAllDigits)
{
  struct Shift
  {
    const char* text;
    int         exponent;
    const char* expected;
  };
  const Shift rows[] = {{"12.5", -3, "0.0125"},
                        {"12.5", 0, "12.5"},
                        {"12.5", 1, "125."},
                        {"12.5", 3, "12500."},
                        {"1", -3, "0.001"},
                        {"210000", 6, "210000000000."},
                        {"-.25", -3, "-0.00025"},
                        {"+3.", 3, "3000."},
                        {"0.", -3, "0."},
                        {"0", 6, "0"},
                        {"-0.000", 6, "-0.000"},
                        {"7.85E-9", 12, "7.85E3"},
                        {"7.85d-9", 12, "7.85E3"},
                        {"2.1+5", 6, "2.1E11"},
                        {"2.1-5", 6, "2.1E1"},
                        {"2.1 E 5", 6, "2.1E11"},
                        {"210.E3", 6, "2.1E11"},
                        {"0.00120", -3, "0.00000120"},
                        // Twenty characters are all that the solver reads.
                        {"1234567890.12345678", -3, "1234567.89012345678"},
                        {"123456789012345678", -3, "123456789012345.678"},
                        {"1.2345678901234567", -6, "1.2345678901234567E-6"},
                        {"1.", 30, "1.E30"}};
  for (const Shift& row : rows) {
    const std::string shifted = ShiftDecimal(row.text, row.exponent);
    if (std::string(row.expected).size() <= 20) {
      EXPECT_EQ(shifted, row.expected) << row.text;
    }
    EXPECT_LE(shifted.size(), 20u) << row.text;
    double before = 0.0;
    double after  = 0.0;
    ASSERT_TRUE(ReadDeckNumber(row.text, before)) << row.text;
    ASSERT_TRUE(ReadDeckNumber(shifted, after)) << shifted;
    // A rounded text keeps at least twelve digits.
    const double expected = before * std::pow(10.0, row.exponent);
    EXPECT_NEAR(after, expected, 1e-12 * std::abs(expected)) << row.text;
  }
}

// Force, time and temperature stay, so a quantity of length^k is multiplied by 10^(-3k): moduli 10^6, densities 10^12.
TEST(DeckLineConverter, QuantitiesFollowTheirLengths)
{
  const Row rows[] = {
      {"*NODE\n 7 , 12.5,  -3,\n", "*NODE\n 7 , 0.0125,  -0.003,\n"},
      {"*NODE, NSET=3\n1,1,2,3\n", "*NODE, NSET=3\n1,0.001,0.002,0.003\n"},
      {"*ELASTIC\n210000., .3, 293.\n200000.,.3,393.\n", "*ELASTIC\n210000000000., .3, 293.\n200000000000.,.3,393.\n"},
      {"*ELASTIC, TYPE=ORTHO\n1.,2.,3.,4.,5.,6.,7.,8.\n9.,293.\n",
       "*ELASTIC, "
       "TYPE=ORTHO\n1000000.,2000000.,3000000.,4000000.,5000000.,6000000.,7000000.,8000000.\n9000000.,293.\n"},
      {"*ELASTIC, "
       "TYPE=ANISO\n1E1,1E1,1E1,1E1,1E1,1E1,1E1,1E1\n1E1,1E1,1E1,1E1,1E1,1E1,1E1,1E1\n1E1,1E1,1E1,1E1,1E1,293.\n",
       "*ELASTIC, "
       "TYPE=ANISO\n1.E7,1.E7,1.E7,1.E7,1.E7,1.E7,1.E7,1.E7\n1.E7,1.E7,1.E7,1.E7,1.E7,1.E7,1.E7,1.E7\n1.E7,1.E7,1.E7,1."
       "E7,1.E7,293.\n"},
      {"*ELASTIC, TYPE=ENGINEERING CONSTANTS\n3E4,2E4,1E4,.1,.2,.3,5E3,6E3\n7E3,293.\n",
       "*ELASTIC, TYPE=ENGINEERING CONSTANTS\n3.E10,2.E10,1.E10,.1,.2,.3,5.E9,6.E9\n7.E9,293.\n"},
      {"*ELASTIC, TYPE=ORTHOTROPIC\n1.,2.,3.,4.,5.,6.,7.,8.\n9.,293.\n",
       "*ELASTIC, "
       "TYPE=ORTHOTROPIC\n1000000.,2000000.,3000000.,4000000.,5000000.,6000000.,7000000.,8000000.\n9000000.,293.\n"},
      {"*CYCLIC SYMMETRY MODEL, N=12, TIE=T\n1.,0,0,1.,0,10\n",
       "*CYCLIC SYMMETRY MODEL, N=12, TIE=T\n0.001,0,0,0.001,0,0.010\n"},
      {"*DENSITY\n7.85E-9\n", "*DENSITY\n7.85E3\n"},
      {"*PLASTIC\n235.,0.\n", "*PLASTIC\n235000000.,0.\n"},
      {"*EXPANSION, ZERO=293.\n1.2E-5\n", "*EXPANSION, ZERO=293.\n1.2E-5\n"},
      {"*CONDUCTIVITY\n50.,293.\n", "*CONDUCTIVITY\n50.,293.\n"},
      {"*SPECIFIC HEAT\n4.5E8,293.\n", "*SPECIFIC HEAT\n4.5E2,293.\n"},
      {"*ORIENTATION, NAME=O\n1.,0.,0.,0.,1.,0.\n3,45.\n", "*ORIENTATION, NAME=O\n0.001,0.,0.,0.,0.001,0.\n3,45.\n"},
      {"*TRANSFORM, NSET=N, TYPE=C\n0,0,0,0,0,10\n", "*TRANSFORM, NSET=N, TYPE=C\n0,0,0,0,0,0.010\n"},
      {"*SHELL SECTION, ELSET=E, MATERIAL=M, OFFSET=.5\n2.\n",
       "*SHELL SECTION, ELSET=E, MATERIAL=M, OFFSET=.5\n0.002\n"},
      {"*SHELL SECTION, ELSET=E, COMPOSITE\n1.,,M1,O1\n2.,,M2\n",
       "*SHELL SECTION, ELSET=E, COMPOSITE\n0.001,,M1,O1\n0.002,,M2\n"},
      {"*BEAM SECTION, ELSET=E, MATERIAL=M, SECTION=RECT\n3.,2.\n0.,0.,1.\n",
       "*BEAM SECTION, ELSET=E, MATERIAL=M, SECTION=RECT\n0.003,0.002\n0.,0.,1.\n"},
      {"*NODAL THICKNESS\nN,2.\n1,2.,3.\n", "*NODAL THICKNESS\nN,0.002\n1,0.002,0.003\n"},
      {"*MASS, ELSET=E\n1E-3\n", "*MASS, ELSET=E\n1.E0\n"},
      {"*BOUNDARY\nN,1,6\n1,1,3,0.\n1,1,6,0.\n1,3,,-0.5\n1,4,4,.1\n1,11,11,300.\n",
       "*BOUNDARY\nN,1,6\n1,1,3,0.\n1,1,6,0.\n1,3,,-0.0005\n1,4,4,.1\n1,11,11,300.\n"},
      {"*CLOAD\nN,2,100.\n1,5,40.\n", "*CLOAD\nN,2,100.\n1,5,0.040\n"},
      {"*DLOAD\nE,P1,2.\nE,P,2.\nE,GRAV,9810.,0.,0.,-1.\nE,CENTRIF,1E6,1.,2.,3.,0.,0.,1.\n",
       "*DLOAD\nE,P1,2000000.\nE,P,2000000.\nE,GRAV,9.810,0.,0.,-1.\nE,CENTRIF,1E6,0.001,0.002,0.003,0.,0.,1.\n"},
      {"*DSLOAD\nS,P,2.\n", "*DSLOAD\nS,P,2000000.\n"},
      {"*TEMPERATURE\n1,300.\n", "*TEMPERATURE\n1,300.\n"},
      // Gradients across a shell, and across a beam in two directions.
      {"*TEMPERATURE\n1,300.,10.\nN,300.,10.,-.5\n", "*TEMPERATURE\n1,300.,10000.\nN,300.,10000.,-500.\n"},
      {"*INITIAL CONDITIONS, TYPE=TEMPERATURE\nN,293.,10.,20.\n",
       "*INITIAL CONDITIONS, TYPE=TEMPERATURE\nN,293.,10000.,20000.\n"},
      {"*CFLUX\n1,11,5.\n", "*CFLUX\n1,11,0.005\n"},
      {"*DFLUX\nE,S1,5.\nE,BF,5.\n", "*DFLUX\nE,S1,5000.\nE,BF,5000000.\n"},
      {"*FILM\nE,F3,293.,.5\n", "*FILM\nE,F3,293.,500.\n"},
      {"*EQUATION\n2\n1,2,1.,5,3,-2.5\n", "*EQUATION\n2\n1,2,1.,5,3,-2.5\n"},
      {"*SURFACE BEHAVIOR, PRESSURE-OVERCLOSURE=LINEAR\n1E7,2.\n",
       "*SURFACE BEHAVIOR, PRESSURE-OVERCLOSURE=LINEAR\n1.E16,2000000.\n"},
      {"*FRICTION\n.2,1E5\n", "*FRICTION\n.2,1.E14\n"},
      // Degrees 1 to 3 of a ROT NODE are the rotations of its body.
      {"*RIGID BODY, NSET=N, REF NODE=8, ROT NODE=9\n*BOUNDARY\n9,1,3,.5\n8,1,3,.5\n*CLOAD\n9,1,4.\n8,1,4.\n",
       "*RIGID BODY, NSET=N, REF NODE=8, ROT NODE=9\n*BOUNDARY\n9,1,3,.5\n8,1,3,0.0005\n*CLOAD\n9,1,0.004\n8,1,4.\n"},
      {"*INITIAL CONDITIONS, TYPE=TEMPERATURE\nN,293.\n", "*INITIAL CONDITIONS, TYPE=TEMPERATURE\nN,293.\n"},
      {"*INITIAL CONDITIONS, TYPE=VELOCITY\nN,1,5.\n", "*INITIAL CONDITIONS, TYPE=VELOCITY\nN,1,0.005\n"},
      {"*INITIAL CONDITIONS, TYPE=STRESS\n1,1,1.,2.,3.,0.,0.,0.\n",
       "*INITIAL CONDITIONS, TYPE=STRESS\n1,1,1000000.,2000000.,3000000.,0.,0.,0.\n"},
      {"*CONTACT PAIR, INTERACTION=I, ADJUST=0.1\nA,B\n", "*CONTACT PAIR, INTERACTION=I, ADJUST=1.E-4\nA,B\n"},
      // Of this parameter the solver reads ten characters.
      {"*PHYSICAL CONSTANTS, NEWTON GRAVITY=66.743\n", "*PHYSICAL CONSTANTS, NEWTON GRAVITY=6.6743E-11\n"},
      {"*TIE, NAME=T, POSITION TOLERANCE = 2.\nA,B\n", "*TIE, NAME=T, POSITION TOLERANCE =0.002\nA,B\n"},
      {"*PHYSICAL CONSTANTS, ABSOLUTE ZERO=0, STEFAN BOLTZMANN=5.67E-11\n",
       "*PHYSICAL CONSTANTS, ABSOLUTE ZERO=0, STEFAN BOLTZMANN=5.67E-8\n"},
      {"*STEP, INC=100\n*STATIC\n0.1,1.\n*END STEP\n", "*STEP, INC=100\n*STATIC\n0.1,1.\n*END STEP\n"},
      {"*HEADING\nBracket, 3 mm, 2\n", "*HEADING\nBracket, 3 mm, 2\n"},
      {"*NODE PRINT, NSET=N, FREQUENCY=2\nU\n", "*NODE PRINT, NSET=N, FREQUENCY=2\nU\n"},
      {"*MADE UP\nA,B\n", "*MADE UP\nA,B\n"},
  };
  for (const Row& row : rows) EXPECT_EQ(InMetres(row.before), row.after);
}

TEST(DeckLineConverter, NodeNumbersAreFoundWhereverACardHoldsThem)
{
  const Row rows[] = {
      {"*NODE\n7,1.,2.,3.\n", "*NODE\n1007,1.,2.,3.\n"},
      {"*ELEMENT, TYPE=C3D4\n1, 1,2,\n3\n,4\n", "*ELEMENT, TYPE=C3D4\n1, 1001,1002,\n1003\n,4\n"},
      {"*ELEMENT, TYPE=C3D4\n1,1,2,\n** between\n3,4\n2,5,6,7,8\n",
       "*ELEMENT, TYPE=C3D4\n1,1001,1002,\n** between\n1003,1004\n2,1005,1006,1007,1008\n"},
      {"*NSET, NSET=N\n1,NFIX, 3,\n", "*NSET, NSET=N\n1001,NFIX, 1003,\n"},
      {"*NSET, NSET=N, GENERATE\n1,9,2\n", "*NSET, NSET=N, GENERATE\n1001,1009,2\n"},
      {"*ELSET, ELSET=E\n1,2\n", "*ELSET, ELSET=E\n1,2\n"},
      {"*SURFACE, NAME=S, TYPE=NODE\n1\nN\n", "*SURFACE, NAME=S, TYPE=NODE\n1001\nN\n"},
      {"*SURFACE, NAME=S\n1,S1\n", "*SURFACE, NAME=S\n1,S1\n"},
      {"*BOUNDARY\n1,1,3\nN,1\n", "*BOUNDARY\n1001,1,3\nN,1\n"},
      {"*CLOAD\n1,1,5.\n", "*CLOAD\n1001,1,5.\n"},
      {"*DLOAD\n1,P1,5.\n", "*DLOAD\n1,P1,5.\n"},
      {"*TEMPERATURE\n1,300.\n", "*TEMPERATURE\n1001,300.\n"},
      {"*INITIAL CONDITIONS, TYPE=TEMPERATURE\n1,300.\n", "*INITIAL CONDITIONS, TYPE=TEMPERATURE\n1001,300.\n"},
      {"*INITIAL CONDITIONS, TYPE=STRESS\n1,1,1.,1.,1.,0.,0.,0.\n",
       "*INITIAL CONDITIONS, TYPE=STRESS\n1,1,1.,1.,1.,0.,0.,0.\n"},
      {"*EQUATION\n3\n1,1,1.,2,1,-1.,\n3,1,-2.\n2\n4,1,1.,5,1,-1.\n",
       "*EQUATION\n3\n1001,1,1.,1002,1,-1.,\n1003,1,-2.\n2\n1004,1,1.,1005,1,-1.\n"},
      {"*EQUATION, REMOVE\n9,1,3\nN,2\n*EQUATION\n2\n4,1,1.,5,1,-1.\n",
       "*EQUATION, REMOVE\n1009,1,3\nN,2\n*EQUATION\n2\n1004,1,1.,1005,1,-1.\n"},
      {"*DLOAD\nE,P2NP,9\n", "*DLOAD\nE,P2NP,1009\n"},
      {"*FILM\nE,F5FC,9,0.1\n", "*FILM\nE,F5FC,1009,0.1\n"},
      {"*CYCLIC SYMMETRY MODEL, N=12, NGRAPH=3, TIE=T\n0,0,0,0,0,1\n",
       "*CYCLIC SYMMETRY MODEL, N=12, NGRAPH=3, TIE=T\n0,0,0,0,0,1\n"},
      {"*FLUID CONSTANTS\n1.,2.\n", "*FLUID CONSTANTS\n1.,2.\n"},
      {"*MPC\nPLANE,1,2,3,\n4,5\n", "*MPC\nPLANE,1001,1002,1003,\n1004,1005\n"},
      {"*RIGID BODY, NSET=N, REF NODE=9, ROT NODE = 10\n", "*RIGID BODY, NSET=N, REF NODE=1009, ROT NODE =1010\n"},
      {"*COUPLING, REF NODE=9, SURFACE=S, CONSTRAINT NAME=C\n",
       "*COUPLING, REF NODE=1009, SURFACE=S, CONSTRAINT NAME=C\n"},
      {"*PRE-TENSION SECTION, SURFACE=S, NODE=9\n0.,0.,1.\n", "*PRE-TENSION SECTION, SURFACE=S, NODE=1009\n0.,0.,1.\n"},
      {"*NODAL THICKNESS\n1,2.\n", "*NODAL THICKNESS\n1001,2.\n"},
      {"*NORMAL\n1,2,0.,0.,1.\n", "*NORMAL\n1,1002,0.,0.,1.\n"},
      {"*RETAINED NODAL DOFS\n1,1,3\n", "*RETAINED NODAL DOFS\n1001,1,3\n"},
      {"*SUBMODEL, TYPE=NODE, INPUT=global.frd\nN\n", "*SUBMODEL, TYPE=NODE, INPUT=global.frd\nN\n"},
      {"*RESTART, WRITE, FREQUENCY=1\n", "*RESTART, WRITE, FREQUENCY=1\n"},
      {"*SPRING, ELSET=E\n\n5.\n", "*SPRING, ELSET=E\n\n5.\n"},
  };
  for (const Row& row : rows) EXPECT_EQ(Moved(row.before), row.after);
}

TEST(DeckLineConverter, WhatIsNotKnownIsNamed)
{
  struct Failing
  {
    const char* text;
    int         lengthExponent;
    int         nodeOffset;
    const char* message;
  };
  constexpr const char* kLengths = ": which of its numbers hold lengths is not known";
  constexpr const char* kNodes   = ": which of its numbers are nodes is not known";
  const Failing         rows[]   = {
                {"*MADE UP\nA,1.\n", -3, 0, "cannot convert the data of *MADEUP"},
                {"*MADE UP\nA,1.\n", 0, 5, "cannot convert the data of *MADEUP"},
                {"*MADE UP, SIZE=3\n", -3, 0, "cannot convert the parameter SIZE of *MADEUP"},
                {"*STATIC, LENGTH=3\n", -3, 0, "cannot convert the parameter LENGTH of *STATIC"},
                {"*SPRING, ELSET=E\n\n5.\n", -3, 0, "cannot convert the data of *SPRING"},
                {"*HYPERELASTIC, NEO HOOKE\n5.,1.\n", -3, 0, "cannot convert the data of *HYPERELASTIC"},
                {"*ELASTIC, TYPE=MAGIC\n5.\n", -3, 0, "cannot convert the data of *ELASTIC"},
                {"*PLASTIC, HARDENING=JOHNSON COOK\n5.\n", -3, 0, "cannot convert the data of *PLASTIC"},
                {"*BEAM SECTION, SECTION=GENERAL\n5.\n", -3, 0, "cannot convert the data of *BEAMSECTION"},
                {"*NODE, SYSTEM=C\n1,1.,1.,1.\n", -3, 0, "cannot convert the system of coordinates of *NODE"},
                {"*DLOAD\nE,BX,1.\n", -3, 0, "cannot convert load 'BX' of *DLOAD"},
                {"*DLOAD\nE,P2NP,9\n", -3, 0, "cannot convert load 'P2NP' of *DLOAD"},
                {"*FILM\nE,F5FC,9,0.1\n", -3, 0, "cannot convert film 'F5FC' of *FILM"},
                {"*FILM\nE,F5NU1,9,0.1\n", 0, 5, "cannot convert film 'F5NU1' of *FILM"},
                {"*DFLUX\nE,X,1.\n", -3, 0, "cannot convert flux 'X' of *DFLUX"},
                {"*BOUNDARY\n1,1,6,.5\n", -3, 0, "cannot convert degrees of freedom 1 to 6 of *BOUNDARY"},
                {"*BOUNDARY\n1,8,8,.5\n", -3, 0, "cannot convert degrees of freedom 8 to 8 of *BOUNDARY"},
                {"*RESTART, READ, STEP=2\n", -3, 0, "cannot convert the file that *RESTART reads"},
                {"*RESTART, READ, STEP=2\n", 0, 5, "cannot convert the file that *RESTART reads"},
                {"*TEMPERATURE, FILE=heat.frd\n", 0, 5, "cannot convert the file that *TEMPERATURE reads"},
                {"*SUBMODEL, TYPE=NODE, INPUT=global.frd\nN\n", -3, 0, "cannot convert the file that *SUBMODEL reads"},
                {"*INITIAL CONDITIONS, TYPE=STRESS, USER\n", -3, 0,
                 "cannot convert what a subroutine gives to *INITIALCONDITIONS"},
                {"*BOUNDARY, USER\n1,1\n", 0, 5, "cannot convert what a subroutine gives to *BOUNDARY"},
                {"*ELEMENT, TYPE=D\n1,0,1,2\n", -3, 0, "cannot convert element type D"},
                {"*ELEMENT, TYPE=F3D8\n1,1,2,3,4,5,6,7,8\n", -3, 0, "cannot convert element type F3D8"},
                {"*RIGID BODY, NSET=N, REF NODE=8, ROT NODE=9\n*EQUATION\n2\n1,1,1.,9,1,1.\n", -3, 0,
                 "cannot convert an equation of translations and rotations"},
                {"*EQUATION\n2\n1,1,1.,2,5,1.\n", -3, 0, "cannot convert an equation of translations and rotations"},
                {"*SOLID SECTION, ELSET=E, MATERIAL=M\n1.\n", -3, 0,
                 "cannot convert the data of *SOLIDSECTION of elements of several kinds"},
                {"*MPC\nMEANROT,1,2,3\n", 0, 5, "cannot convert constraint 'MEANROT' of *MPC"},
                {"*INITIAL CONDITIONS, TYPE=MAGIC\n1,1.\n", 0, 5, "cannot convert the data of *INITIALCONDITIONS, TYPE=MAGIC"},
  };
  for (const Failing& row : rows)
    EXPECT_EQ(FailureOf(row.text, row.lengthExponent, row.nodeOffset),
              std::string(row.message) + (row.lengthExponent != 0 ? kLengths : kNodes));
  EXPECT_EQ(FailureOf("*ELEMENT, TYPE=C3D9\n1,2\n", 0, 5), "element type 'C3D9' is not known");
  EXPECT_EQ(FailureOf("*ELEMENT, TYPE=C3D4\n1,2\n*NODE\n", 0, 5), "*ELEMENT ends before its data are complete");
  EXPECT_EQ(FailureOf("*EQUATION\n2\n1,1,1.\n", 0, 5), "*EQUATION ends before its data are complete");
  EXPECT_EQ(FailureOf("*CLOAD\n1,1,1.23456789012345678E2\n1,4,1.23456789012345678E2\n", -3, 0),
            "the solver reads the first 20 characters of '1.23456789012345678E2', which is another number");
  for (const char* data : {".3\n", ".3,0.\n", ".3,,\n"}) {
    EXPECT_EQ(
        FailureOf(std::string("*FRICTION\n") + data, -3, 0),
        "cannot convert *FRICTION: expected a stick slope, the solver takes half of Young's modulus for none and 0");
    EXPECT_EQ(FailureOf(std::string("*FRICTION\n") + data, 0, 5), "no failure");
  }
  const std::string hard = "*SURFACE BEHAVIOR, PRESSURE-OVERCLOSURE=HARD\n";
  EXPECT_EQ(FailureOf(hard, -3, 0),
            "cannot convert *SURFACEBEHAVIOR, PRESSURE-OVERCLOSURE=HARD: expected LINEAR, its stiffness is 50 times "
            "Young's modulus");
  EXPECT_EQ(FailureOf(hard, 0, 5), "no failure");
  EXPECT_EQ(
      FailureOf("*PHYSICAL CONSTANTS, NEWTON GRAVITY=66.7430\n*PHYSICAL CONSTANTS, NEWTON GRAVITY=66.74301\n", -3, 0),
      "'66.74301' would become '6.674301E-11', of which the solver reads 10 characters");
  EXPECT_EQ(FailureOf("*NODE\n1,1E307,0,0\n", 3, 0), "'1E307' would become '1.E310', which is no number");
  EXPECT_EQ(FailureOf("*EQUATION\nA\n", 0, 5), "expected the number of terms");
  EXPECT_EQ(FailureOf("*CLOAD\n1,X,2.\n", -3, 0), "expected a degree of freedom, found 'X'");
  EXPECT_EQ(FailureOf("*NODE\n2147483000,0.\n", 0, 1000), "node 2147483000 would become 2147484000");
}

// Solid section data: the area of trusses, the thickness of plane elements, nothing of solids.
TEST(DeckLineConverter, SolidSectionsDependOnTheirElements)
{
  DeckModel model;
  int       id = 0;
  for (const char* type : {"C3D8", "CPS4", "T3D2"}) {
    DeckElement element;
    element.type = FindDeckElementType(type);
    model.elements.FindOrInsert(++id);
    model.elements.At(model.elements.Find(id)) = element;
    model.elementSets.push_back({type, {id}, {}});
  }
  const auto convert = [&](const std::string& set) {
    const std::string card = "*SOLID SECTION, ELSET=" + set + ", MATERIAL=M\n";
    return ConvertLines(card + "2.\n", -3, 0, model).substr(card.size());
  };
  EXPECT_EQ(convert("C3D8"), "2.\n");
  EXPECT_EQ(convert("CPS4"), "0.002\n");
  EXPECT_EQ(convert("T3D2"), "0.000002\n");
}

// The solver gives such elements a thickness of 1, in the new unit of length as in the old one.
TEST(DeckLineConverter, PlaneElementsWithoutAThicknessAreNotConverted)
{
  DeckModel model;
  int       id = 0;
  for (const char* type : {"C3D8", "CPS4", "CPE6", "CAX4"}) {
    DeckElement element;
    element.type = FindDeckElementType(type);
    model.elements.FindOrInsert(++id);
    model.elements.At(model.elements.Find(id)) = element;
    model.elementSets.push_back({type, {id}, {}});
  }
  const auto failure = [&](const std::string& set, const std::string& data, int lengthExponent) {
    return FailureOf("*SOLID SECTION, ELSET=" + set + ", MATERIAL=M\n" + data, lengthExponent, 0, model);
  };
  for (const char* set : {"CPS4", "CPE6"}) {
    for (const char* data : {"", "0.\n", ",\n", "*STEP\n", "** none\n"}) {
      EXPECT_EQ(failure(set, data, -3),
                "cannot convert *SOLIDSECTION of plane elements: expected their thickness, the solver takes 1 for none "
                "and 0")
          << set << ' ' << data;
      EXPECT_EQ(failure(set, data, 0), "no failure");
    }
    EXPECT_EQ(failure(set, ".5\n", -3), "no failure");
  }
  EXPECT_EQ(failure("C3D8", "", -3), "no failure");
  EXPECT_EQ(failure("CAX4", "", -3), "no failure") << "the solver takes an angle";
}

TEST(DeckLineConverter, ASetOfRotationNodesIsTakenWholeOrNotAtAll)
{
  DeckModel model;
  model.nodeSets.push_back({"NROT", {9, 10}, {}});
  model.nodeSets.push_back({"NMIXED", {8, 9}, {}});
  const std::string bodies =
      "*RIGID BODY, NSET=A, REF NODE=1, ROT NODE=9\n*RIGID BODY, NSET=B, REF NODE=2, ROT NODE=10\n*BOUNDARY\n";
  EXPECT_EQ(ConvertLines(bodies + "nrot,1,1,.5\n", -3, 0, model), bodies + "nrot,1,1,.5\n");
  EXPECT_EQ(
      FailureOf(bodies + "NMIXED,1,1,.5\n", -3, 0, model),
      "cannot convert node set 'NMIXED' with the ROT NODE of a rigid body in it: which of its numbers hold lengths "
      "is not known");
  EXPECT_EQ(FailureOf(bodies + "NMIXED,1,1\n", -3, 0, model), "no failure");
}

TEST(DeckLineConverter, ElementsOfATypeThatTheDeckDefinesAreRenumbered)
{
  DeckModel  model;
  const auto type = std::make_shared<DeckUserElementType>();
  type->name      = "U1";
  type->type      = {type->name.c_str(), 2, 0, 0, 0};
  model.userElementTypes.push_back(type);
  const std::string card = "*USER ELEMENT, TYPE=U1, NODES=2, INTEGRATION POINTS=1, MAXDOF=3\n";
  EXPECT_EQ(ConvertLines(card + "*ELEMENT, TYPE=U1\n1,1,2\n*USER SECTION, CONSTANTS=1\n5.\n", 0, 1000, model),
            card + "*ELEMENT, TYPE=U1\n1,1001,1002\n*USER SECTION, CONSTANTS=1\n5.\n");
}
