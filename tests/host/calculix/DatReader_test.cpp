#include "calculix/DatReader.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ReaderSupport.h"
#include "TempFolder.h"

namespace {

using quilon::calculix::DatBlock;
using quilon::calculix::DatMode;
using quilon::calculix::DatRow;
using quilon::calculix::DatRows;
using quilon::calculix::DatSink;
using quilon::calculix::ReadDat;
using quilon_test::Damage;
using quilon_test::DamageEachByte;
using quilon_test::ExpectMessages;
using quilon_test::FailureOf;
using quilon_test::Fixture;
using quilon_test::NamesLine;
using quilon_test::Replaced;
using quilon_test::Short;

using Log = std::vector<std::string>;

const char* NameOf(DatRows rows)
{
  switch (rows) {
    case DatRows::Node:
      return "node";
    case DatRows::Point:
      return "point";
    case DatRows::Element:
      return "element";
    case DatRows::Total:
      return "total";
  }
  return "?";
}

// Keeps what it is sent, a text line each.
class LogSink : public DatSink
{
public:
  Log log;

  void OnModes(std::span<const DatMode> modes) override
  {
    for (const DatMode& mode : modes) {
      std::string text = "mode " + std::to_string(mode.mode) + ": " + Short(mode.eigenvalue);
      if (mode.buckling) {
        text += " buckling";
      } else {
        text += " " + Short(mode.omega) + " " + Short(mode.frequency) + " " + Short(mode.imaginary);
      }
      if (mode.diameter >= 0) text += " diameter " + std::to_string(mode.diameter);
      log.push_back(text);
    }
  }
  void OnBlockBegin(const DatBlock& block) override
  {
    std::string text = std::to_string(block.line) + ": " + block.key + " of " + block.set + " '" + block.title +
                       "' time " + Short(block.time) + " " + NameOf(block.rows) + " x " +
                       std::to_string(block.numValues);
    if (block.mode != 0) text += " mode " + std::to_string(block.mode);
    if (block.imaginary) text += " imaginary";
    log.push_back(text);
  }
  void OnRows(const DatBlock&, std::span<const DatRow> rows) override
  {
    for (const DatRow& row : rows) {
      std::string text = std::to_string(row.line) + ": " + std::to_string(row.id) + "/" + std::to_string(row.point);
      for (const double value : row.values) text += " " + Short(value);
      if (row.localSystem) text += " local";
      log.push_back(text);
    }
  }
  void OnBlockEnd(const DatBlock& block) override { log.push_back("end " + block.key); }
  void OnSkipped(const std::string& reason, std::size_t rows, std::int64_t line) override
  {
    log.push_back(std::to_string(line) + ": skipped " + std::to_string(rows) + " of " + reason);
  }
};

// Keeps what it is told of blocks.
class BlockSink : public DatSink
{
public:
  Log blocks;

  void OnModes(std::span<const DatMode>) override {}
  void OnBlockBegin(const DatBlock& block) override
  {
    blocks.push_back(block.key + (block.harmonic ? " harmonic" : "") + (block.imaginary ? " imaginary" : ""));
  }
  void OnRows(const DatBlock&, std::span<const DatRow>) override {}
  void OnBlockEnd(const DatBlock&) override {}
  void OnSkipped(const std::string&, std::size_t, std::int64_t) override {}
};

Log LogOf(const std::string& text)
{
  std::istringstream in(text);
  LogSink            sink;
  ReadDat(in, "a.dat", sink);
  return sink.log;
}

std::string FailureOfText(const std::string& text)
{
  return FailureOf([&] { LogOf(text); });
}

// One block of each kind of rows, the names glued as the solver glues them.
const std::string kSmall =
    "\n"
    " displacements (vx,vy,vz) for set NALL and time  0.1500000E+01\n"
    "\n"
    "         5  0.000000E+00 -1.250000E+00  2.500000E-01\n"
    "         7 -7.419576-120           NaN  1.483834+108\n"
    "\n"
    " total force (fx,fy,fz) for set NX0 and time  0.1500000E+01\n"
    "\n"
    "        9.750000E+00 -2.015970E+00  0.000000E+00\n"
    "\n"
    " stresses (elem, integ.pnt.,sxx,syy,szz,sxy,sxz,syz) for set EALL and time  0.1500000E+01\n"
    "\n"
    "      1001   1  1.000000E+00  2.000000E+00  3.000000E+00  4.000000E+00  5.000000E+00  6.000000E+00\n"
    "      1001   2 -1.000000E+00 -2.000000E+00 -3.000000E+00 -4.000000E+00 -5.000000E+00 -6.000000E+00 "
    "OR0_shell_0000000001\n"
    "      1003   1  1.000000E+00  2.000000E+00  3.000000E+00  4.000000E+00  5.000000E+00  6.000000E+00 "
    "_shell_0000000001   \n"
    "\n"
    " heat flux (elem, integ.pnt.,qx,qy,qz) for setEALL and time  0.1500000E+01\n"
    "\n"
    "         1   1  1.640676E+02 -3.135971E-01 -7.709725E-01\n"
    "\n"
    " internal state variables (elem, integ.pnt.,values) for set EALL and time  0.1500000E+01\n"
    "\n"
    "         1   1  1.000000E+00\n"
    "         1   2  1.000000E+00  2.000000E+00\n"
    "\n"
    " volume (element, volume) for set EALL and time  0.1500000E+01\n"
    "\n"
    "         1  5.356065E+02\n";

const Log kSmallLog = {
    "2: U of NALL 'displacements (vx,vy,vz)' time 1.5 node x 3",
    "4: 5/0 0 -1.25 0.25",
    "5: 7/0 -7.419576e-120 nan 1.483834e+108",
    "end U",
    "7: RF of NX0 'total force (fx,fy,fz)' time 1.5 total x 3",
    "9: 0/0 9.75 -2.01597 0",
    "end RF",
    "11: S of EALL 'stresses (elem, integ.pnt.,sxx,syy,szz,sxy,sxz,syz)' time 1.5 point x 6",
    "13: 1001/1 1 2 3 4 6 5",
    "14: 1001/2 -1 -2 -3 -4 -6 -5 local",
    "15: 1003/1 1 2 3 4 6 5 local",
    "end S",
    "17: HFL of EALL 'heat flux (elem, integ.pnt.,qx,qy,qz)' time 1.5 point x 3",
    "19: 1/1 164.0676 -0.3135971 -0.7709725",
    "end HFL",
    "21: SDV of EALL 'internal state variables (elem, integ.pnt.,values)' time 1.5 point x 0",
    "23: 1/1 1",
    "24: 1/2 1 2",
    "end SDV",
    "26: EVOL of EALL 'volume (element, volume)' time 1.5 element x 1",
    "28: 1/0 535.6065",
    "end EVOL",
};

TEST(DatReader, DeliversAWholeFileInItsOrder) { EXPECT_EQ(LogOf(kSmall), kSmallLog); }

TEST(DatReader, ReadsAnEmptyFileAsNothing)
{
  EXPECT_EQ(LogOf(""), Log());
  EXPECT_EQ(LogOf("\n  \n\r\n"), Log());
}

TEST(DatReader, AcceptsLineEndsOfAnySystemAndBlanksBeforeThem)
{
  std::string dos, blanks;
  for (const char c : kSmall) {
    dos += c == '\n' ? std::string("\r\n") : std::string(1, c);
    blanks += c == '\n' ? std::string("   \n") : std::string(1, c);
  }
  EXPECT_EQ(LogOf(dos), kSmallLog);
  EXPECT_EQ(LogOf(blanks), kSmallLog);
  EXPECT_EQ(LogOf(kSmall.substr(0, kSmall.size() - 1)), kSmallLog);
  EXPECT_EQ(LogOf(kSmall + "\n"), kSmallLog);
}

// One block with one row, the header as given.
std::string BlockWith(const std::string& header, const std::string& row)
{
  return "\n " + header + "\n\n" + row + "\n";
}

const std::string kTime = " and time  0.2000000E+01";
const std::string kOne  = "         4  1.000000E+00";
const std::string kVec  = "         4  1.000000E+00  2.000000E+00  3.000000E+00";
const std::string kPnt  = "         4   8";
const std::string kTot  = "      ";

std::string Values(int count)
{
  std::string text;
  for (int i = 1; i <= count; ++i) text += "  " + std::to_string(i) + ".000000E+00";
  return text;
}

// Table: every header that the solver prints, as it prints it, and what becomes of it.
TEST(DatReader, KnowsEveryKindOfBlock)
{
  struct Row
  {
    std::string header, row, block, values;
  };
  const Row rows[] = {
      {"displacements (vx,vy,vz) for set A", kVec, "U of A 'displacements (vx,vy,vz)' time 2 node x 3", "4/0 1 2 3"},
      {"velocities (vx,vy,vz) for set A", kVec, "V of A 'velocities (vx,vy,vz)' time 2 node x 3", "4/0 1 2 3"},
      {"forces (fx,fy,fz) for set A", kVec, "RF of A 'forces (fx,fy,fz)' time 2 node x 3", "4/0 1 2 3"},
      {"forces (fx,fy,fz) for set A", kVec + " L", "RF of A 'forces (fx,fy,fz)' time 2 node x 3", "4/0 1 2 3 local"},
      {"temperatures for set A", kOne, "NT of A 'temperatures' time 2 node x 1", "4/0 1"},
      {"heat generation for set A", kOne, "RFL of A 'heat generation' time 2 node x 1", "4/0 1"},
      {"total heat generation for set A", kTot + Values(1), "RFL of A 'total heat generation' time 2 total x 1",
       "0/0 1"},
      {"stresses (elem, integ.pnt.,sxx,syy,szz,sxy,sxz,syz) for set A", kPnt + Values(6),
       "S of A 'stresses (elem, integ.pnt.,sxx,syy,szz,sxy,sxz,syz)' time 2 point x 6", "4/8 1 2 3 4 6 5"},
      {"strains (elem, integ.pnt.,exx,eyy,ezz,exy,exz,eyz) for set A", kPnt + Values(6),
       "E of A 'strains (elem, integ.pnt.,exx,eyy,ezz,exy,exz,eyz)' time 2 point x 6", "4/8 1 2 3 4 6 5"},
      {"strains (elem, integ.pnt.,exx,eyy,ezz,exy,exz,eyz) forset A", kPnt + Values(6),
       "E of A 'strains (elem, integ.pnt.,exx,eyy,ezz,exy,exz,eyz)' time 2 point x 6", "4/8 1 2 3 4 6 5"},
      {"mechanical strains (elem, integ.pnt.,exx,eyy,ezz,exy,exz,eyz) for set A", kPnt + Values(6),
       "ME of A 'mechanical strains (elem, integ.pnt.,exx,eyy,ezz,exy,exz,eyz)' time 2 point x 6", "4/8 1 2 3 4 6 5"},
      {"equivalent plastic strain (elem, integ.pnt.,pe)for set A", kPnt + Values(1),
       "PEEQ of A 'equivalent plastic strain (elem, integ.pnt.,pe)' time 2 point x 1", "4/8 1"},
      {"internal energy density (elem, integ.pnt.,energy) for set A", kPnt + Values(1),
       "ENER of A 'internal energy density (elem, integ.pnt.,energy)' time 2 point x 1", "4/8 1"},
      {"internal energy density (elem, integ.pnt.,eneset A", kPnt + Values(1),
       "ENER of A 'internal energy density (elem, integ.pnt.,ene' time 2 point x 1", "4/8 1"},
      {"internal state variables (elem, integ.pnt.,values) for set A", kPnt + Values(9),
       "SDV of A 'internal state variables (elem, integ.pnt.,values)' time 2 point x 0", "4/8 1 2 3 4 5 6 7 8 9"},
      {"heat flux (elem, integ.pnt.,qx,qy,qz) for setA", kPnt + Values(3),
       "HFL of A 'heat flux (elem, integ.pnt.,qx,qy,qz)' time 2 point x 3", "4/8 1 2 3"},
      {"global coordinates (elem, integ.pnt.,x,y,z) for set A", kPnt + Values(3),
       "COORD of A 'global coordinates (elem, integ.pnt.,x,y,z)' time 2 point x 3", "4/8 1 2 3"},
      {"internal energy (element, energy) for set A", kOne,
       "ELSE of A 'internal energy (element, energy)' time 2 element x 1", "4/0 1"},
      {"total internal energy for set A", kTot + Values(1), "ELSE of A 'total internal energy' time 2 total x 1",
       "0/0 1"},
      {"kinetic energy (elem, energy) for set A", kOne, "ELKE of A 'kinetic energy (elem, energy)' time 2 element x 1",
       "4/0 1"},
      {"total kinetic energy for set A", kTot + Values(1), "ELKE of A 'total kinetic energy' time 2 total x 1",
       "0/0 1"},
      {"volume (element, volume) for set A", kOne, "EVOL of A 'volume (element, volume)' time 2 element x 1", "4/0 1"},
      {"total volume for set A", kTot + Values(1), "EVOL of A 'total volume' time 2 total x 1", "0/0 1"},
      {"mass (element, mass) and mass moment of itertia(xx,yy,zz,xy,xz,yz) for set A", "         4" + Values(7),
       "EMAS of A 'mass (element, mass) and mass moment of itertia(xx,yy,zz,xy,xz,yz)' time 2 element x 7",
       "4/0 1 2 3 4 5 7 6"},
      {"total mass for set A", kTot + Values(1), "EMAS of A 'total mass' time 2 total x 1", "0/0 1"},
      {"total mass moment of inertia (xx,yy,zz,xy,xz,yz) for set A", kTot + Values(6),
       "EMAS of A 'total mass moment of inertia (xx,yy,zz,xy,xz,yz)' time 2 total x 6", "0/0 1 2 3 4 6 5"},
      {"center of gravity for set A", kTot + Values(3), "EMAS of A 'center of gravity' time 2 total x 3", "0/0 1 2 3"},
      {"total mass moment of inertia about the center ofgravity (xx,yy,zz,xy,xz,yz) for set A", kTot + Values(6),
       "EMAS of A 'total mass moment of inertia about the center ofgravity (xx,yy,zz,xy,xz,yz)' time 2 total x 6",
       "0/0 1 2 3 4 6 5"},
      {"body heating (element, volume) for set A", kOne,
       "EBHE of A 'body heating (element, volume)' time 2 element x 1", "4/0 1"},
      {"total body heating for set A", kTot + Values(1), "EBHE of A 'total body heating' time 2 total x 1", "0/0 1"},
      {"centrifugal force(element,omega square) for set A", kOne,
       "CENT of A 'centrifugal force(element,omega square)' time 2 element x 1", "4/0 1"},
  };
  for (const Row& row : rows) {
    const std::string key = row.block.substr(0, row.block.find(' '));
    EXPECT_EQ(LogOf(BlockWith(row.header + kTime, row.row)),
              (Log{"2: " + row.block, "4: " + row.values, "end " + key}));
  }
}

// Contact headers name no set and have one blank less before the time.
TEST(DatReader, ReadsContactBlocksByNodeAndByFace)
{
  const std::string time = " for all contact elements and time 0.2000000E+01";
  EXPECT_EQ(LogOf(BlockWith("contact stress (slave element+face,press,tang1,tang2)" + time,
                            "         2          3" + Values(3))),
            (Log{"2: CSTR of  'contact stress (slave element+face,press,tang1,tang2)' time 2 element x 3",
                 "4: 2/3 1 2 3", "end CSTR"}));
  EXPECT_EQ(
      LogOf(BlockWith("contact stress (slave node,press,tang1,tang2)" + time, kVec)),
      (Log{"2: CSTR of  'contact stress (slave node,press,tang1,tang2)' time 2 node x 3", "4: 4/0 1 2 3", "end CSTR"}));
  EXPECT_EQ(
      LogOf(BlockWith("relative contact displacement (slave element+face,normal,tang1,tang2)" + time,
                      "         2          3" + Values(3))),
      (Log{"2: CDIS of  'relative contact displacement (slave element+face,normal,tang1,tang2)' time 2 element x 3",
           "4: 2/3 1 2 3", "end CDIS"}));
  const std::string energy =
      "contact print energy (slave element+face,energy)for all contact elements and time 0.2000000E+01";
  const Log log = {"2: CELS of  'contact print energy (slave element+face,energy)' time 2 element x 1", "4: 2/3 1",
                   "end CELS"};
  EXPECT_EQ(LogOf(BlockWith(energy, "         2          3" + Values(1))), log);
  // Older versions leave no line empty behind this header.
  EXPECT_EQ(LogOf("\n " + energy + "\n         2          3" + Values(1) + "\n"), (Log{log[0], "3: 2/3 1", log[2]}));
  EXPECT_EQ(LogOf(BlockWith("total contact spring energy for time  0.2000000E+01", kTot + Values(1))),
            (Log{"2: CELS of  'total contact spring energy' time 2 total x 1", "4: 0/0 1", "end CELS"}));
}

TEST(DatReader, KeepsSetNamesAsTheyArePrinted)
{
  const std::string longName(73, 'N');
  EXPECT_EQ(LogOf(BlockWith("temperatures for set " + longName + kTime, kOne))[0],
            "2: NT of " + longName + " 'temperatures' time 2 node x 1");
  EXPECT_EQ(LogOf(BlockWith("temperatures for set \"EALL\"" + kTime, kOne))[0],
            "2: NT of \"EALL\" 'temperatures' time 2 node x 1");
  EXPECT_EQ(LogOf(BlockWith("temperatures for set SETTIME" + kTime, kOne))[0],
            "2: NT of SETTIME 'temperatures' time 2 node x 1");
}

TEST(DatReader, ReadsABlockWithoutRows)
{
  const std::string empty = "\n temperatures for set A" + kTime + "\n\n";
  const Log         log   = {"2: NT of A 'temperatures' time 2 node x 1", "end NT"};
  EXPECT_EQ(LogOf(empty), log);
  EXPECT_EQ(LogOf(empty + BlockWith("temperatures for set A" + kTime, kOne)),
            (Log{log[0], log[1], "5: NT of A 'temperatures' time 2 node x 1", "7: 4/0 1", "end NT"}));
}

// 99 values fill a line; more of them follow on lines without an id.
TEST(DatReader, GoesOnWithStateVariablesOnTheNextLine)
{
  const auto repeated = [](int count, const std::string& value) {
    std::string text;
    for (int i = 0; i < count; ++i) text += value;
    return text;
  };
  const std::string header = "internal state variables (elem, integ.pnt.,values) for set A" + kTime;
  const std::string one    = "  1.000000E+00";
  const std::string nan    = "           NaN";
  for (const int more : {1, 31, 99, 100}) {
    const std::string first = kPnt + repeated(99, one);
    std::string       rest  = "\n" + repeated(std::min(more, 99), nan);
    if (more > 99) rest += "\n" + repeated(more - 99, one);
    const Log log = LogOf(BlockWith(header, first + rest + "\n" + first + rest));
    ASSERT_EQ(log.size(), 4u) << more;
    const std::string expected =
        ": 4/8" + repeated(99, " 1") + repeated(std::min(more, 99), " nan") + repeated(more - 99, " 1");
    EXPECT_EQ(log[1], "4" + expected) << more;
    EXPECT_EQ(log[2], (more > 99 ? "7" : "6") + expected) << more;
  }
  // Exactly 99 values: the next line is a row of its own.
  const std::string full = kPnt + repeated(99, one);
  EXPECT_EQ(LogOf(BlockWith(header, full + "\n" + full)).size(), 4u);
}

TEST(DatReader, DeliversTheFourPartsOfASectionPrint)
{
  const std::string text =
      "\n statistics for surface set SFIX and time  0.1000000E+01\n\n"
      "   total surface force (fx,fy,fz) and moment about the origin(mx,my,mz)\n\n"
      "   -1.443994E+02 -1.119441E+01  1.616613E+02  8.216183E+02 -1.068990E+03  5.925086E+02\n\n"
      "   center of gravity and mean normal\n\n"
      "    0.000000E+00  5.000000E+00  4.000000E+00 -1.000000E+00  0.000000E+00  0.000000E+00\n\n"
      "   moment about the center of gravity(mx,my,mz)\n\n"
      "   -3.146568E+01 -4.913924E+02 -1.294886E+02\n\n"
      "   area, normal force (+ = tension), shear force (size), torque and bending moment (size)\n\n"
      "    8.000000E+01  1.443994E+02  1.620484E+02  3.146568E+01  5.081671E+02\n";
  EXPECT_EQ(
      LogOf(text),
      (Log{"4: SOF of SFIX 'total surface force (fx,fy,fz) and moment about the origin(mx,my,mz)' time 1 total x 6",
           "6: 0/0 -144.3994 -11.19441 161.6613 821.6183 -1068.99 592.5086", "end SOF",
           "8: SOF of SFIX 'center of gravity and mean normal' time 1 total x 6", "10: 0/0 0 5 4 -1 0 0", "end SOF",
           "12: SOF of SFIX 'moment about the center of gravity(mx,my,mz)' time 1 total x 3",
           "14: 0/0 -31.46568 -491.3924 -129.4886", "end SOF",
           "16: SOF of SFIX 'area, normal force (+ = tension), shear force (size), torque and bending moment "
           "(size)' time 1 total x 5",
           "18: 0/0 80 144.3994 162.0484 31.46568 508.1671", "end SOF"}));
}

TEST(DatReader, SkipsWhatItDoesNotDeliverAndSaysSo)
{
  const std::string block = BlockWith("temperatures for set A" + kTime, kOne);
  EXPECT_EQ(LogOf("\nKNOT2\ntra         1  0.0000E+00  0.0000E+00  0.0000E+00\n"
                  "rot        22  0.0000E+00  0.0000E+00  0.0000E+00\n"
                  "exp        23  0.0000E+00 -0.1172E-04 -0.1172E-04\n\n"
                  "KNOT2\ntra         2  0.8245E-04 -0.2576E-15  0.1739E-03\n" +
                  block),
            (Log{"2: skipped 4 of rows of KNOT blocks", "10: NT of A 'temperatures' time 2 node x 1", "12: 4/0 1",
                 "end NT"}));
  EXPECT_EQ(LogOf("\n mass flows for set A" + kTime + "\n\n" + kOne + "\n" + kOne + "\n"),
            (Log{"2: skipped 2 of unknown block 'mass flows'"}));
  EXPECT_EQ(LogOf("\n displacements (v(i),i=1..ndof) for set A" + kTime + "\n\n         4" + Values(5) + "\n"),
            (Log{"2: skipped 1 of unknown block 'displacements (v(i),i=1..ndof)'"}));
  EXPECT_EQ(LogOf("\n total number of contact elements for time  0.2000000E+01\n\n               12\n" + block)[0],
            "2: skipped 1 of unknown block 'total number of contact elements'");
  EXPECT_EQ(LogOf("\n statistics for slave set A, master set B" + kTime +
                  "\n\n   total surface force (fx,fy,fz) and moment about the origin (mx,my,mz)\n\n   " + Values(6) +
                  "\n")[0],
            "2: skipped 1 of unknown block 'statistics for slave set A, master'");
  EXPECT_EQ(LogOf(" Modal Assurance Criterium\n\n  0.9994E+00  0.5069E-01\n  0.3521E-01  0.9987E+00\n"),
            (Log{"1: skipped 2 of modal assurance criterion"}));
}

const std::string kModes =
    "\n     E I G E N V A L U E   O U T P U T\n\n"
    " MODE NO    EIGENVALUE                       FREQUENCY   \n"
    "                                     REAL PART            IMAGINARY PART\n"
    "                           (RAD/TIME)      (CYCLES/TIME     (RAD/TIME)\n\n"
    "      1   0.2692576E+10   0.5189004E+05   0.8258556E+04   0.0000000E+00\n"
    "      2  -0.5546183E+10   0.0000000E+00   0.0000000E+00   0.7447270E+05\n\n"
    "     P A R T I C I P A T I O N   F A C T O R S\n\n"
    "MODE NO.   X-COMPONENT     Y-COMPONENT     Z-COMPONENT     X-ROTATION      Y-ROTATION      Z-ROTATION\n\n"
    "      1  -0.8509249E-06  -0.6982467E-04  -0.3227062E-02  -0.1918566E-01   0.7090422E-01  -0.1492800E-02\n"
    "      2   0.5915353E-05  -0.3205629E-02   0.6886923E-04   0.1009471E-01  -0.1452655E-02  -0.7188665E-01\n\n"
    "     E F F E C T I V E   M O D A L   M A S S\n\n"
    "MODE NO.   X-COMPONENT     Y-COMPONENT     Z-COMPONENT     X-ROTATION      Y-ROTATION      Z-ROTATION\n\n"
    "      1   0.7240732E-12   0.4875484E-08   0.1041393E-04   0.3680895E-03   0.5027408E-02   0.2228453E-05\n"
    "TOTAL     0.1239594E-04   0.1299157E-04   0.1295480E-04   0.7639951E-03   0.5234525E-02   0.5684126E-02\n\n"
    "     T O T A L   E F F E C T I V E   M A S S\n\n"
    "MODE NO.   X-COMPONENT     Y-COMPONENT     Z-COMPONENT     X-ROTATION      Y-ROTATION      Z-ROTATION\n\n"
    "          0.1327619E-04   0.1327619E-04   0.1327619E-04   0.7915223E-03   0.5246343E-02   0.5718779E-02\n\n\n";

std::string Banner(int mode)
{
  return std::string("\n                    E I G E N V A L U E    N U M B E R     ") + std::to_string(mode) + "\n\n";
}

const std::string kTemperatures = "\n temperatures for set A and time  0.2000000E+01\n\n" + kOne + "\n";
const std::string kHeat         = "\n heat generation for set A and time  0.2000000E+01\n\n" + kOne + "\n";

// The headers alone, without their line numbers.
Log HeadersOf(const std::string& text)
{
  Log headers;
  for (const std::string& line : LogOf(text))
    if (line.find(" of A '") != std::string::npos) headers.push_back(line.substr(line.find(": ") + 2));
  return headers;
}

TEST(DatReader, ReadsModesAndSkipsTheirFactors)
{
  EXPECT_EQ(LogOf(kModes), (Log{"mode 1: 2692576000 51890.04 8258.556 0", "mode 2: -5546183000 0 0 74472.7",
                                "11: skipped 2 of participation factors", "18: skipped 2 of effective modal mass",
                                "25: skipped 1 of total effective mass"}));
}

TEST(DatReader, ReadsBucklingFactors)
{
  EXPECT_EQ(
      LogOf("\n     B U C K L I N G   F A C T O R   O U T P U T\n\n MODE NO       BUCKLING\n                FACTOR\n\n"
            "      1   0.2476961E+04\n      2   0.5296905E+04\n\n" +
            Banner(1) + kTemperatures),
      (Log{"mode 1: 2476.961 buckling", "mode 2: 5296.905 buckling",
           "14: NT of A 'temperatures' time 2 node x 1 mode 1", "16: 4/0 1", "end NT"}));
}

TEST(DatReader, ReadsModesUnderCyclicSymmetryWithTheirDiameter)
{
  EXPECT_EQ(
      LogOf(
          "\n     E I G E N V A L U E   O U T P U T\n\n  NODAL   MODE NO    EIGENVALUE                      FREQUENCY\n"
          "DIAMETER                                    REAL PART            IMAGINARY PART\n"
          "                                   (RAD/TIME)      (CYCLES/TIME)   (RAD/TIME)\n\n"
          "    2          1   0.2692576E+10   0.5189004E+05   0.8258556E+04   0.0000000E+00\n"),
      (Log{"mode 1: 2692576000 51890.04 8258.556 0 diameter 2"}));
}

TEST(DatReader, SkipsComplexModesAndTellsRealFromImaginaryParts)
{
  const std::string text =
      "\n     E I G E N V A L U E   O U T P U T\n\n MODE NO                     FREQUENCY                   \n"
      "                      REAL PART         IMAGINARY PART\n"
      "             (RAD/TIME)   (CYCLES/TIME)   (RAD/TIME)\n\n"
      "      1   0.5184646E+05   0.8251621E+04   0.3283844E-11\n\n" +
      Banner(1) + "\n                    R E A L   P A R T\n\n" + kTemperatures +
      "\n                    I M A G I N A R Y   P A R T\n\n" + kTemperatures;
  EXPECT_EQ(LogOf(text), (Log{"2: skipped 1 of complex eigenvalues",
                              "17: NT of A 'temperatures' time 2 node x 1 mode 1", "19: 4/0 1", "end NT",
                              "24: NT of A 'temperatures' time 2 node x 1 mode 1 imaginary", "26: 4/0 1", "end NT"}));
}

std::string HarmonicBanner(const std::string& frequency)
{
  return "\nP A R T I C I P A T I O N   F A C T O R S   F O R   F R E Q U E N C Y    " + frequency +
         " (CYCLES/TIME)\n\n";
}

TEST(DatReader, OfAHarmonicResponseTheSecondOfTwoBlocksIsTheImaginaryPart)
{
  const std::string text = HarmonicBanner("0.2000000000000E+01") + kTemperatures + kHeat + kTemperatures + kHeat +
                           HarmonicBanner("0.3000000000000E+01") + kTemperatures;
  std::istringstream in(text);
  BlockSink          sink;
  ReadDat(in, "a.dat", sink);
  EXPECT_EQ(sink.blocks, (Log{"NT harmonic", "RFL harmonic", "NT harmonic imaginary", "RFL harmonic imaginary", "NT"}))
      << "the last block is of a time that the banner does not name";
}

TEST(DatReader, RefusesAThirdBlockOfAHarmonicResponse)
{
  const std::string message =
      FailureOfText(HarmonicBanner("0.2000000000000E+01") + kTemperatures + kTemperatures + kTemperatures);
  EXPECT_NE(message.find("expected a real and an imaginary part of 'temperatures'"), std::string::npos) << message;
}

// Nothing in the file says that the modes of a step are over. Two cards may ask for the same, so a block that comes
// twice proves nothing: the first mode tells how many blocks each has.
TEST(DatReader, EndsTheModesWhereTheBlocksOfTheLastOneEnd)
{
  const std::string twice = kTemperatures + kTemperatures + kHeat;
  EXPECT_EQ(HeadersOf(kModes + Banner(1) + twice + Banner(2) + twice + kTemperatures + kHeat),
            (Log{"NT of A 'temperatures' time 2 node x 1 mode 1", "NT of A 'temperatures' time 2 node x 1 mode 1",
                 "RFL of A 'heat generation' time 2 node x 1 mode 1", "NT of A 'temperatures' time 2 node x 1 mode 2",
                 "NT of A 'temperatures' time 2 node x 1 mode 2", "RFL of A 'heat generation' time 2 node x 1 mode 2",
                 "NT of A 'temperatures' time 2 node x 1", "RFL of A 'heat generation' time 2 node x 1"}));
}

TEST(DatReader, EndsTheModesWhereTheTimeChanges)
{
  std::string later = kTemperatures;
  later             = Replaced(later, "0.2000000E+01", "0.3000000E+01");
  EXPECT_EQ(HeadersOf(kModes + Banner(1) + kTemperatures + later + kTemperatures),
            (Log{"NT of A 'temperatures' time 2 node x 1 mode 1", "NT of A 'temperatures' time 3 node x 1",
                 "NT of A 'temperatures' time 2 node x 1"}));
}

TEST(DatReader, EndsTheOnlyModeWhereABlockComesAgain)
{
  const std::string one =
      Replaced(kModes, "      2  -0.5546183E+10   0.0000000E+00   0.0000000E+00   0.7447270E+05\n", "");
  EXPECT_EQ(HeadersOf(one + Banner(1) + kTemperatures + kHeat + kTemperatures),
            (Log{"NT of A 'temperatures' time 2 node x 1 mode 1", "RFL of A 'heat generation' time 2 node x 1 mode 1",
                 "NT of A 'temperatures' time 2 node x 1"}));
}

TEST(DatReader, EndsTheModesAtTheNextTable)
{
  EXPECT_EQ(HeadersOf(kModes + Banner(1) + kTemperatures + kModes + kTemperatures),
            (Log{"NT of A 'temperatures' time 2 node x 1 mode 1", "NT of A 'temperatures' time 2 node x 1"}));
  EXPECT_EQ(HeadersOf(kModes + Banner(1) + kTemperatures +
                      "\nP A R T I C I P A T I O N   F A C T O R S   F O R   F R E Q U E N C Y    0.5000000000000E+04 "
                      "(CYCLES/TIME)\n\n      1   0.8258556E+04   0.3325287E-04  -0.1271282E-05\n" +
                      kTemperatures),
            (Log{"NT of A 'temperatures' time 2 node x 1 mode 1", "NT of A 'temperatures' time 2 node x 1"}));
}

// Table: what is changed in the small file, and the whole message.
TEST(DatReader, NamesFileLineAndWhatWasExpected)
{
  const Damage damages[] = {
      {"-1.250000E+00", "-1.25x000E+00",
       "a.dat:4: expected a number of 13 columns from column 26, found '-1.25x000E+00'"},
      {"-1.250000E+00", "-1.25x00E+00", "a.dat:4: expected a row of 52 columns, found 51"},
      {"E+00 -1.250000E+00", "E+00x-1.250000E+00",
       "a.dat:4: expected a blank and a number of 14 columns from column 25, found 'x-1.250000E+00'"},
      {"         5  0.0", "         x  0.0",
       "a.dat:4: expected a 32-bit integer of 10 columns from column 1, found '         x'"},
      {"         5  0.0", "4294967296  0.0",
       "a.dat:4: expected a 32-bit integer of 10 columns from column 1, found '4294967296'"},
      {"2.500000E-01\n", "2.500000E-01 12\n", "a.dat:4: expected a row of 52 columns, found 55"},
      {"2.500000E-01\n", "2.500000E-01x1\n", "a.dat:4: expected a row of 52 columns, found 54"},
      {" for set NALL and time  0.1500000E+01", " for set NALL and time  0.1500000E+0",
       "a.dat:2: expected a time of 14 columns from column 49, found ' 0.1500000E+0'"},
      {" for set NALL and time  0.1500000E+01", " for set NALL and time  0.15000x0E+01",
       "a.dat:2: expected a number of 14 columns from column 49, found ' 0.15000x0E+01'"},
      {" for set NALL and", " forNALL and",
       "a.dat:2: expected the header of a block or table, found ' displacements (vx,vy,vz) forNALL and ti...'"},
      {" displacements (vx,vy,vz) for set NALL and time  0.1500000E+01\n\n",
       " displacements (vx,vy,vz) for set NALL and time  0.1500000E+01\n",
       "a.dat:3: expected an empty line behind the header, found '         5  0.000000E+00 -1.250000E+00  ...'"},
      {" displacements (vx,vy,vz) for set NALL and time  0.1500000E+01\n", " displacements\n",
       "a.dat:2: expected the header of a block or table, found ' displacements'"},
      {" displacements (vx,vy,vz) for set NALL and time  0.1500000E+01\n", "",
       "a.dat:3: expected the header of a block or table, found '         5  0.000000E+00 -1.250000E+00  ...'"},
      {"        9.750000E+00", "      1 9.750000E+00",
       "a.dat:9: expected a blank and a number of 14 columns from column 7, found '1 9.750000E+00'"},
      {"        9.750000E+00", "  1     9.750000E+00",
       "a.dat:9: expected blanks of 6 columns from column 1, found '  1   '"},
      {"      1001   1", "      1001  x1",
       "a.dat:13: expected a 32-bit integer of 3 columns from column 12, found ' x1'"},
      {"      1001   1", "      1001x  1",
       "a.dat:13: expected a blank and a number of 4 columns from column 11, found 'x  1'"},
      {"OR0_shell_0000000001\n", "OR0_shell_0000000001x\n", "a.dat:14: expected a row of 98 columns, found 120"},
      {"6.000000E+00 OR0_", "6.000000E+00OR0_", "a.dat:14: expected a row of 98 columns, found 118"},
      {"         1   1  1.000000E+00\n", "         1   1  1.000000E+0\n",
       "a.dat:23: expected a row of 14 columns and 14 for each of at most 99 values, found 27"},
      {"         1   1  1.000000E+00\n", "         1   1\n",
       "a.dat:23: expected a row of 14 columns and 14 for each of at most 99 values, found 14"},
      {"5.356065E+02\n", "5.356065E+0", "a.dat:28: expected a row of 24 columns, found 23"},
  };
  ExpectMessages(damages, kSmall, FailureOfText);
  EXPECT_EQ(FailureOfText("\n temperatures for set A" + kTime + "\n"),
            "a.dat:3: expected an empty line behind the header, found the end of the file");
  EXPECT_EQ(FailureOfText("\n temperatures for set A" + kTime),
            "a.dat:2: expected a whole line, found the end of the file behind it");
  EXPECT_EQ(FailureOfText("                    E I G E N V A L U E    N U M B E R    1\n"),
            "a.dat:1: expected a mode number, found '                    E I G E N V A L U E ...'");
  EXPECT_EQ(FailureOfText("                    E I G E N V A L U E    N U M B E R     x\n"),
            "a.dat:1: expected a 32-bit integer of 5 columns from column 56, found '    x'");
  EXPECT_EQ(FailureOfText(Replaced(kModes, "0.8258556E+04   0.0000000E+00", "0.8258556E+04")),
            "a.dat:8: expected a row of 71 columns, found 55");
  EXPECT_EQ(FailureOfText(Replaced(kModes, "0.8258556E+04", "0.82585.6E+04")),
            "a.dat:8: expected a number of 14 columns from column 42, found ' 0.82585.6E+04'");
}

bool IsPrefix(const Log& log, const Log& whole)
{
  // The reader closes a block that ends with the file.
  const bool isClosed = !log.empty() && log.back().rfind("end ", 0) == 0;
  const auto end      = isClosed ? log.end() - 1 : log.end();
  return log.size() <= whole.size() && std::equal(log.begin(), end, whole.begin());
}

// The file has no end mark, so a cut behind a line reads as a shorter file; any other cut is found.
TEST(DatReader, ReadsAPrefixOrFailsForEveryLengthThatTheFileIsCutTo)
{
  for (std::size_t size = 0; size < kSmall.size(); ++size) {
    Log               log;
    const std::string message = FailureOf([&] { log = LogOf(kSmall.substr(0, size)); });
    if (message == "no failure") {
      const std::size_t line = kSmall.find_last_not_of(" \n", size == 0 ? 0 : size - 1);
      EXPECT_TRUE(IsPrefix(log, kSmallLog)) << size;
      EXPECT_TRUE(line == std::string::npos || kSmall[line + 1] == '\n' || kSmall[line + 1] == ' ') << size;
    } else {
      EXPECT_TRUE(NamesLine(message, "a.dat")) << size << ": " << message;
    }
  }
}

// Cut in the name of its local system, a row would pass for one in global axes.
TEST(DatReader, FailsForALastLineThatIsCutInTheNameOfItsLocalSystem)
{
  const std::string row  = kPnt + Values(6);
  const std::string text = "\n stresses (elem, integ.pnt.,sxx,syy,szz,sxy,sxz,syz) for set A" + kTime + "\n\n" + row +
                           " _shell_0000000001   \n" + row;
  const std::string message = "a.dat:5: expected a whole line, found the end of the file behind it";
  EXPECT_EQ(FailureOfText(text), message);
  EXPECT_EQ(FailureOfText(text + " _sh"), message);
  EXPECT_EQ(LogOf(text + " _shell_0000000001   ").at(2), "5: 4/8 1 2 3 4 6 5 local");
  EXPECT_EQ(LogOf(text + "\n").at(2), "5: 4/8 1 2 3 4 6 5");  // a whole line tells that there is none
}

TEST(DatReader, SurvivesDamageOfAnyByte)
{
  DamageEachByte(kSmall + "\n" + kModes + Banner(1) + kTemperatures, "a.dat", FailureOfText);
}

TEST(DatReader, DeliversManyRowsInBatches)
{
  class BatchSink : public LogSink
  {
  public:
    std::size_t rows = 0, largest = 0;
    double      sum = 0.0;

    void OnRows(const DatBlock&, std::span<const DatRow> batch) override
    {
      rows += batch.size();
      largest = std::max(largest, batch.size());
      for (const DatRow& row : batch) sum += row.values[0] * row.id;
    }
  };
  constexpr int kNumRows = 60000;
  std::string   text     = "\n temperatures for set A" + kTime + "\n\n";
  for (int id = 1; id <= kNumRows; ++id) {
    char row[64];
    std::snprintf(row, sizeof row, "%10d  2.000000E+00\n", id);
    text += row;
  }
  std::istringstream in(text);
  BatchSink          sink;
  ReadDat(in, "a.dat", sink);
  EXPECT_EQ(sink.rows, 60000u);
  EXPECT_LE(sink.largest, 4096u);
  EXPECT_EQ(sink.sum, 60000.0 * 60001.0);  // twice the sum of 1 to 60000
}

TEST(DatReader, StopsWhereTheSinkThrows)
{
  class Stop : public LogSink
  {
  public:
    void OnRows(const DatBlock&, std::span<const DatRow>) override { throw std::runtime_error("enough"); }
  };
  std::istringstream in(kSmall);
  Stop               sink;
  EXPECT_THROW(ReadDat(in, "a.dat", sink), std::runtime_error);
  EXPECT_EQ(sink.log.size(), 1u);
}

TEST(DatReader, ReadsFilesByTheirPath)
{
  const quilon_test::TempFolder folder;
  const auto                    path = folder / "small.dat";
  LogSink                       sink;
  EXPECT_EQ(FailureOf([&] { ReadDat(path, sink); }),
            path.string() + ": expected a file that can be read: No such file or directory");
  std::ofstream(path, std::ios::binary) << kSmall;
  ReadDat(path, sink);
  EXPECT_EQ(sink.log, kSmallLog);
}

std::size_t CountOf(const Log& log, const std::string& start)
{
  return static_cast<std::size_t>(
      std::count_if(log.begin(), log.end(), [&](const std::string& line) { return line.rfind(start, 0) == 0; }));
}

// Blocks counted in the decks' requests, rows in their sets.
TEST(DatReader, ReadsWhatTheSolverWrites)
{
  struct Row
  {
    const char* file;
    std::size_t lines;      // of the log
    const char* block;      // key of a block
    std::size_t blocks;     // with that key
    std::size_t localRows;  // in local systems
  };
  const Row rows[] = {
      {"b_hex/b_hex.dat", 14 * 2 + 4 * 9 + 4 * 128 + 2 * 16 + 4, "RFL", 2, 0},
      {"c_shell/c_shell3d.dat", 5 * 2 + 2 * 5 + 1 + 2 * 144, "S", 1, 288},
      {"d_beam/d_beam2d.dat", 14 * 2 + 2 + 1 + 10 + 2 * 200 + 4 + 1 + 4 + 1 + 4 + 4, "EMAS", 5, 0},
      {"e_matrix/e_matrix.dat", 0, "U", 0, 0},
      {"e_matrix/e_static.dat", 4 * 2 + 24 + 6 + 1 + 48, "S", 1, 0},
      {"f_modal/f_dynamic.dat", 3 * (4 * 2 + 6 + 6 + 1 + 1), "ELKE", 3, 0},
      {"f_modal/f_modal.dat", 6 + 3 + 6 * (2 + 6), "U", 6, 0},
      {"traps/nan.dat", 3 * 2 + 4 + 4 + 1, "RF", 1, 0},
  };
  for (const Row& row : rows) {
    const Log log = LogOf(Fixture(row.file));
    EXPECT_EQ(log.size(), row.lines) << row.file;
    EXPECT_EQ(CountOf(log, std::string("end ") + row.block), row.blocks) << row.file;
    EXPECT_EQ(static_cast<std::size_t>(std::count_if(log.begin(), log.end(),
                                                     [](const std::string& line) {
                                                       return line.size() > 6 &&
                                                              line.compare(line.size() - 6, 6, " local") == 0;
                                                     })),
              row.localRows)
        << row.file;
  }
}

TEST(DatReader, ReadsThreeDigitExponentsOfTheSolver)
{
  const Log tiny = LogOf(Fixture("traps/x1_tiny.dat"));
  EXPECT_EQ(tiny[2], "5: 7/0 -7.419576e-120 -2.144454e-120 -1.483834e-119");
  const Log big = LogOf(Fixture("traps/x2_big.dat"));
  EXPECT_EQ(big[2], "5: 7/0 -7.419576e+107 -2.144454e+107 -1.483834e+108");
}

}  // namespace
