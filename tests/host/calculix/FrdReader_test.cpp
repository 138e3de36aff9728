#include "calculix/FrdReader.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "AllocationFailure.h"
#include "ReaderSupport.h"
#include "TempFolder.h"

namespace {

using quilon::ReadProgress;
using quilon::calculix::FrdDataset;
using quilon::calculix::FrdElement;
using quilon::calculix::FrdSink;
using quilon::calculix::ReadFrd;
using quilon::calculix::ReadFrdDataset;
using quilon::calculix::ReadFrdHeads;
using quilon_test::Damage;
using quilon_test::DamageEachByte;
using quilon_test::ExpectMessages;
using quilon_test::FailureOf;
using quilon_test::Fixture;
using quilon_test::NamesLine;
using quilon_test::Replaced;
using quilon_test::Short;

using Log = std::vector<std::string>;

// Keeps what it is sent, a text line each.
class LogSink : public FrdSink
{
public:
  Log  log;
  bool isWanted = true;  // rows of data sets

  void OnNodes(std::span<const int> ids, std::span<const double> coordinates) override
  {
    for (std::size_t i = 0; i < ids.size(); ++i) log.push_back("node " + Row(ids[i], coordinates.subspan(3 * i, 3)));
  }
  void OnElements(std::span<const FrdElement> elements) override
  {
    for (const FrdElement& element : elements) {
      std::string text = "element " + std::to_string(element.id) + " type " + std::to_string(element.type) +
                         " material " + std::to_string(element.material) + ":";
      for (const int node : element.nodes) text += " " + std::to_string(node);
      log.push_back(text);
    }
  }
  bool OnDatasetBegin(const FrdDataset& dataset) override
  {
    std::string text = dataset.name + " value " + Short(dataset.value) + " kind " + std::to_string(dataset.kind) +
                       " step " + std::to_string(dataset.step) + " increment " + std::to_string(dataset.increment) +
                       " output " + std::to_string(dataset.outputNumber) + " mode " + std::to_string(dataset.mode) +
                       " line " + std::to_string(dataset.line) + ":";
    for (const std::string& component : dataset.components) text += " " + component;
    log.push_back(text);
    return isWanted;
  }
  void OnRows(const FrdDataset& dataset, std::span<const int> ids, std::span<const double> values,
              std::int64_t line) override
  {
    const std::size_t numValues = dataset.components.size();
    for (std::size_t i = 0; i < ids.size(); ++i) {
      std::string text = Row(ids[i], values.subspan(numValues * i, numValues));
      if (i == 0) text += " from line " + std::to_string(line);
      log.push_back(text);
    }
  }
  void OnDatasetEnd(const FrdDataset& dataset) override { log.push_back("end " + dataset.name); }

private:
  static std::string Row(int id, std::span<const double> values)
  {
    std::string text = std::to_string(id);
    for (const double value : values) text += " " + Short(value);
    return text;
  }
};

Log LogOf(const std::string& text)
{
  std::istringstream in(text);
  LogSink            sink;
  ReadFrd(in, "a.frd", sink);
  return sink.log;
}

std::string FailureOfText(const std::string& text)
{
  return FailureOf([&] { LogOf(text); });
}

// A tetrahedron with displacements at all nodes and thirteen state variables at two.
const std::string kSmall =
    "    1C\n"
    "    1UUSER                                                              \n"
    "    1UMAT    1MST\xc4HL                                                    \n"
    "    2C                             4                                     1\n"
    " -1         3 0.00000E+00 0.00000E+00 0.00000E+00\n"
    " -1         5 1.25000E+00 0.00000E+00-6.25000E-01\n"
    " -1         7 0.00000E+00-2.50000E+00 0.00000E+00\n"
    " -1        90 0.00000E+00 0.00000E+00 8.00000E+01\n"
    " -3\n"
    "    3C                             1                                     1\n"
    " -1        12    3    0    4\n"
    " -2         3         5         7        90\n"
    " -3\n"
    "    1PSTEP                         1           2           3           \n"
    "  100CL  106 2.75000E-01           4                     0    6           1\n"
    " -4  DISP        4    1\n"
    " -5  D1          1    2    1    0\n"
    " -5  D2          1    2    2    0\n"
    " -5  D3          1    2    3    0\n"
    " -5  ALL         1    2    0    0    1ALL\n"
    " -1         3-2.81872E-04 5.37105E-05-5.63946E-04\n"
    " -1         5 1.00000E+00-1.00000E+00-0.00000E+00\n"
    " -1         7         INF        -INF         NAN\n"
    " -1        90 1.48383+108-7.41957-120 5.00000E-01\n"
    " -3\n"
    "    1PSTEP                         2           3           3           \n"
    "  100CL  107 1.500000000           2                     0    7           1\n"
    " -4  SDV        13    1\n"
    " -5  SDV1        1    1    0    0\n"
    " -5  SDV2        1    1    0    0\n"
    " -5  SDV3        1    1    0    0\n"
    " -5  SDV4        1    1    0    0\n"
    " -5  SDV5        1    1    0    0\n"
    " -5  SDV6        1    1    0    0\n"
    " -5  SDV7        1    1    0    0\n"
    " -5  SDV8        1    1    0    0\n"
    " -5  SDV9        1    1    0    0\n"
    " -5  SDV10       1    1    0    0\n"
    " -5  SDV11       1    1    0    0\n"
    " -5  SDV12       1    1    0    0\n"
    " -5  SDV13       1    1    0    0\n"
    " -1         7 1.00000E+00 2.00000E+00 3.00000E+00 4.00000E+00 5.00000E+00 6.00000E+00\n"
    " -2           7.00000E+00 8.00000E+00 9.00000E+00 1.00000E+01 1.10000E+01 1.20000E+01\n"
    " -2           1.30000E+01\n"
    " -1         3-1.00000E+00-2.00000E+00-3.00000E+00-4.00000E+00-5.00000E+00-6.00000E+00\n"
    " -2          -7.00000E+00-8.00000E+00-9.00000E+00-1.00000E+01-1.10000E+01-1.20000E+01\n"
    " -2          -1.30000E+01\n"
    " -3\n"
    " 9999\n";

const Log kSmallLog = {
    "node 3 0 0 0",
    "node 5 1.25 0 -0.625",
    "node 7 0 -2.5 0",
    "node 90 0 0 80",
    "element 12 type 3 material 4: 3 5 7 90",
    "DISP value 0.275 kind 0 step 3 increment 2 output 6 mode 0 line 15: D1 D2 D3",
    "3 -0.000281872 5.37105e-05 -0.000563946 from line 21",
    "5 1 -1 -0",
    "7 inf -inf nan",
    "90 1.48383e+108 -7.41957e-120 0.5",
    "end DISP",
    "SDV value 1.5 kind 0 step 3 increment 3 output 7 mode 0 line 27: SDV1 SDV2 SDV3 SDV4 SDV5 SDV6 SDV7 SDV8 SDV9 "
    "SDV10 SDV11 SDV12 SDV13",
    "7 1 2 3 4 5 6 7 8 9 10 11 12 13 from line 42",
    "3 -1 -2 -3 -4 -5 -6 -7 -8 -9 -10 -11 -12 -13",
    "end SDV",
};

TEST(FrdReader, DeliversAWholeFileInItsOrder) { EXPECT_EQ(LogOf(kSmall), kSmallLog); }

TEST(FrdReader, AcceptsLineEndsOfAnySystemAndBlanksBeforeThem)
{
  std::string dos, blanks;
  for (const char c : kSmall) {
    dos += c == '\n' ? std::string("\r\n") : std::string(1, c);
    blanks += c == '\n' ? std::string("   \n") : std::string(1, c);
  }
  EXPECT_EQ(LogOf(dos), kSmallLog);
  EXPECT_EQ(LogOf(blanks), kSmallLog);
  EXPECT_EQ(LogOf(kSmall.substr(0, kSmall.size() - 1)), kSmallLog);
  EXPECT_EQ(LogOf(kSmall + "\n   \n"), kSmallLog);
}

std::string NodeRow(int id)
{
  char text[64];
  std::snprintf(text, sizeof text, " -1%10d 0.00000E+00 0.00000E+00 0.00000E+00\n", id);
  return text;
}

std::string MeshLine(const char* key, int count, int format)
{
  char text[96];
  std::snprintf(text, sizeof text, "    %s                  %12d                                     %d\n", key, count,
                format);
  return text;
}

/// Reads the heads of a file, then its data sets one by one, the last one first.
struct Pieces
{
  Log              heads;
  std::vector<Log> datasets;
};

class KnowingSink : public LogSink
{
public:
  bool IsKnown(int node) const override { return node != 99999; }
};

Pieces PiecesOf(const std::string& text)
{
  const quilon_test::TempFolder files;
  const auto                    path = files / "a.frd";
  std::ofstream(path, std::ios::binary) << text;
  Pieces     pieces;
  LogSink    sink;
  const auto marks = ReadFrdHeads(path, sink);
  pieces.heads     = sink.log;
  pieces.datasets.resize(marks.size());
  for (std::size_t i = marks.size(); i-- > 0;) {
    KnowingSink own;
    ReadFrdDataset(path, marks[i], own);
    pieces.datasets[i] = own.log;
  }
  return pieces;
}

/// What stands before the data sets, and each of them without its rows.
Log HeadsOf(const Log& log)
{
  Log  heads;
  bool isRow = false;
  for (const std::string& line : log) {
    isRow = isRow && line.rfind("end ", 0) != 0;
    if (!isRow) heads.push_back(line);
    isRow = isRow || line.find(" value ") != std::string::npos;
  }
  return heads;
}

Log Joined(const Log& mesh, const std::vector<Log>& datasets)
{
  Log log = mesh;
  for (const Log& dataset : datasets) log.insert(log.end(), dataset.begin(), dataset.end());
  return log;
}

TEST(FrdReader, ReadsDataSetsOneByOneAsInOneGo)
{
  std::string dos, blanks;
  for (const char c : kSmall) {
    dos += c == '\n' ? std::string("\r\n") : std::string(1, c);
    blanks += c == '\n' ? std::string("   \n") : std::string(1, c);
  }
  const Log mesh(kSmallLog.begin(), kSmallLog.begin() + 5);
  for (const std::string& text : {kSmall, dos, blanks, Replaced(kSmall, "DISP        4", "DISP        4") + "  \n"}) {
    const Pieces pieces = PiecesOf(text);
    EXPECT_EQ(pieces.heads, HeadsOf(kSmallLog));
    EXPECT_EQ(Joined(mesh, pieces.datasets), kSmallLog);
  }
}

// More rows than the reader's buffer holds, and ids that are large.
TEST(FrdReader, PassesOverManyRowsToTheirEnd)
{
  constexpr int kMany = 30000;
  std::string   mesh  = "    1C\n" + MeshLine("2C", kMany, 1);
  std::string   rows;
  for (int id = 1; id <= kMany; ++id) {
    char row[64];
    std::snprintf(row, sizeof row, " -1%10d 0.00000E+00 0.00000E+00%12.5E\n", id, -1.0 * id);
    mesh += row;
    rows += row;
  }
  const std::string head =
      "  100CL  106 2.75000E-01       30000                     0    6           1\n"
      " -4  DISP        3    1\n -5  D1          1    2    1    0\n"
      " -5  D2          1    2    2    0\n -5  D3          1    2    3    0\n";
  std::string text = mesh + " -3\n";
  for (int step = 1; step <= 3; ++step) {
    text += "    1PSTEP                         1           " + std::to_string(step) + "           1           \n";
    text += head + rows + " -3\n";
  }
  text += " 9999\n";
  const Log    whole  = LogOf(text);
  const Pieces pieces = PiecesOf(text);
  EXPECT_EQ(pieces.heads, HeadsOf(whole));
  EXPECT_TRUE(Joined({whole.begin(), whole.begin() + kMany}, pieces.datasets) == whole);
}

TEST(FrdReader, TellsOfABrokenDataSetAsInOneGo)
{
  const std::string broken = Replaced(kSmall, "5.00000E-01\n -3", "5.x0000E-01\n -3");
  const std::string told   = FailureOf([&] { PiecesOf(broken); });
  EXPECT_EQ(told.substr(told.rfind("a.frd:")), FailureOfText(broken));
  const std::string stranger = Replaced(kSmall, " -1         5 1.00000E+00-1", " -1     99999 1.00000E+00-1");
  EXPECT_NE(FailureOf([&] { PiecesOf(stranger); }).find("a.frd:22: expected a node of the mesh, found node 99999"),
            std::string::npos);
  const std::string fewer = Replaced(kSmall, "2.75000E-01           4", "2.75000E-01           3");
  EXPECT_NE(FailureOf([&] { PiecesOf(fewer); }).find("a.frd:25: expected the 3 rows that line 15 announces, found 4"),
            std::string::npos);
  EXPECT_NE(FailureOf([&] { PiecesOf(Replaced(kSmall, " 9999\n", "")); }).find("found the end of the file"),
            std::string::npos);
}

TEST(FrdReader, HasNoMarksWhereMeshComesBehindADataSet)
{
  const std::string text = Replaced(kSmall, "    1PSTEP                         2",
                                    MeshLine("2C", 1, 1) + NodeRow(8) + " -3\n    1PSTEP                         2");
  EXPECT_EQ(PiecesOf(text).datasets.size(), 0U);
  EXPECT_EQ(PiecesOf(text).heads, HeadsOf(LogOf(text)));
}

// The solver writes such a file when it only stores matrices.
TEST(FrdReader, SaysThatResultsOfFluidsAreNotRead)
{
  EXPECT_EQ(FailureOfText("    1C\n    1C\n"),
            "a.frd:2: expected one heading '    1C', found a second one: results of fluids and networks are not read");
}

TEST(FrdReader, ReadsAFileWithoutAMesh) { EXPECT_EQ(LogOf("    1C\n    1USmall brick\n 9999\n"), Log()); }

// A shell of three plies counts as one element and is written as three.
TEST(FrdReader, ReadsElementsToTheirEndWhateverTheirCountSays)
{
  const std::string text =
      Replaced(kSmall, "    3C                             1 ", "    3C                            99 ");
  EXPECT_EQ(LogOf(text), kSmallLog);
  EXPECT_EQ(LogOf(Replaced(kSmall, "    3C                             1 ", "    3C                             0 ")),
            kSmallLog);
}

// A mesh of nodes 1 to count and the given element lines.
std::string MeshWith(int count, const std::string& elements)
{
  std::string text = "    1C\n" + MeshLine("2C", count, 1);
  for (int id = 1; id <= count; ++id) text += NodeRow(id);
  return text + " -3\n" + MeshLine("3C", 1, 1) + elements + " -3\n 9999\n";
}

// The file has the verticals 17-20 before the middles 13-16 of the top, a deck the other way round.
TEST(FrdReader, PutsTheNodesOfABrickOf20InTheOrderOfADeck)
{
  const Log log = LogOf(MeshWith(20,
                                 " -1         1    4    0    1\n"
                                 " -2         1         2         3         4         5         6         7         8"
                                 "         9        10\n"
                                 " -2        11        12        17        18        19        20        13        14"
                                 "        15        16\n"));
  EXPECT_EQ(log.back(), "element 1 type 4 material 1: 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20");
}

TEST(FrdReader, PutsTheNodesOfAWedgeOf15InTheOrderOfADeck)
{
  const Log log = LogOf(MeshWith(15,
                                 " -1         1    5    0    1\n"
                                 " -2         1         2         3         4         5         6         7         8"
                                 "         9        13\n"
                                 " -2        14        15        10        11        12\n"));
  EXPECT_EQ(log.back(), "element 1 type 5 material 1: 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15");
}

TEST(FrdReader, PutsTheMiddleOfALineBetweenItsEnds)
{
  const Log log = LogOf(MeshWith(3,
                                 " -1         1   12    0    1\n"
                                 " -2         1         3         2\n"));
  EXPECT_EQ(log.back(), "element 1 type 12 material 1: 1 2 3");
}

TEST(FrdReader, LeavesTheNodesOfAllOtherTypesInTheirOrder)
{
  const std::pair<int, int> types[] = {{1, 8}, {2, 6}, {3, 4}, {6, 10}, {7, 3}, {8, 6}, {9, 4}, {10, 8}, {11, 2}};
  for (const auto& [type, numNodes] : types) {
    char head[64];
    std::snprintf(head, sizeof head, " -1         1%5d    0    1\n", type);
    std::string lines    = std::string(head) + " -2";
    std::string expected = "element 1 type " + std::to_string(type) + " material 1:";
    for (int node = 1; node <= numNodes; ++node) {
      char id[16];
      std::snprintf(id, sizeof id, "%10d", node);
      lines += id;
      expected += " " + std::to_string(node);
    }
    EXPECT_EQ(LogOf(MeshWith(10, lines + "\n")).back(), expected);
  }
}

TEST(FrdReader, TakesTheModeFromItsParameterAndForgetsItBehindTheDataSet)
{
  const std::string text = Replaced(kSmall, "    1PSTEP                         1           2           3           \n",
                                    "    1PSTEP                         1           0           3          \n"
                                    "    1PGM                1.000000E+00                                  \n"
                                    "    1PGK                2.692576E+09                                  \n"
                                    "    1PHID                         -1                                  \n"
                                    "    1PSUBC                         0                                  \n"
                                    "    1PAX                           0\n"
                                    "    1PMODE                         4                                  \n");
  const Log         log  = LogOf(Replaced(text, "0    6           1", "2    6MODAL      1"));
  EXPECT_EQ(log[5], "DISP value 0.275 kind 2 step 3 increment 0 output 6 mode 4 line 21: D1 D2 D3");
  EXPECT_EQ(log[11].substr(0, 66), "SDV value 1.5 kind 0 step 3 increment 3 output 7 mode 0 line 33: S");
}

TEST(FrdReader, KnowsNoStepWithoutAStepParameter)
{
  const Log log =
      LogOf(Replaced(kSmall, "    1PSTEP                         2           3           3           \n", ""));
  EXPECT_EQ(log[11].substr(0, 66), "SDV value 1.5 kind 0 step 0 increment 0 output 7 mode 0 line 26: S");
}

// Table: what is changed in the small file, and the whole message.
TEST(FrdReader, NamesFileLineAndWhatWasExpected)
{
  const Damage damages[] = {
      {"    1C\n", "    1X\n", "a.frd:1: expected the first line of a result file, '    1C', found '    1X'"},
      {" 1.25000E+00", " 1.2x000E+00", "a.frd:6: expected a number of 12 columns from column 14, found ' 1.2x000E+00'"},
      {"-6.25000E-01\n", "-6.25000E-0 \n",
       "a.frd:6: expected a number of 12 columns from column 38, found '-6.25000E-0 '"},
      {"-6.25000E-01\n", "-6.25000E-0\n", "a.frd:6: expected a node row of 49 columns, found 48"},
      {"-6.25000E-01\n", "-6.25000E-01 1.00000E+00\n", "a.frd:6: expected a node row of 49 columns, found 61"},
      {" -1         5 1.25", " -1       x 5 1.25",
       "a.frd:6: expected a 32-bit integer of 10 columns from column 4, found '       x 5'"},
      {" -1         5 1.25", " -12147483648 1.25",
       "a.frd:6: expected a 32-bit integer of 10 columns from column 4, found '2147483648'"},
      {" -1         5 1.25", " -1         0 1.25", "a.frd:6: expected a node id from 1 on, found 0"},
      {" -1         5 1.25", " -1        -5 1.25", "a.frd:6: expected a node id from 1 on, found -5"},
      {" -1         5 1.25", " -1         3 1.25", "a.frd:6: expected every node once, found node 3 again"},
      {" -1         5 1.25", " -7         5 1.25",
       "a.frd:6: expected a node row ' -1' or the end of the nodes ' -3', found ' -7         5 1.25000E+00 "
       "0.00000E+00-6....'"},
      {"    2C                             4", "    2C                             5",
       "a.frd:9: expected the 5 nodes that line 4 announces, found 4"},
      {"    2C                             4", "    2C                             3",
       "a.frd:9: expected the 3 nodes that line 4 announces, found 4"},
      {"    2C                             4", "    2C                            -4",
       "a.frd:4: expected a count from 0 on, found -4"},
      {"    2C                             4", "    2C                              ",
       "a.frd:4: expected a 32-bit integer of 12 columns from column 25, found '            '"},
      {"    2C                             4                                     1",
       "    2C                             4                                     0",
       "a.frd:4: expected format 1 (text), 2 or 3 (binary) in column 74 or 75, found ' 0'"},
      {"    2C                             4                                     1",
       "    2C                             4                                      ",
       "a.frd:4: expected format 1 (text), 2 or 3 (binary) in column 74 or 75, found ''"},
      {"    2C                             4                                     1",
       "    2C                             4                                     4",
       "a.frd:4: expected format 1 (text), 2 or 3 (binary) in column 74 or 75, found ' 4'"},
      {" -1        12    3", " -1        12   13", "a.frd:11: expected an element type from 1 to 12, found 13"},
      {" -1        12    3", " -1        12    0", "a.frd:11: expected an element type from 1 to 12, found 0"},
      {" -1        12    3", " -1         0    3", "a.frd:11: expected an element id from 1 on, found 0"},
      {" -1        12    3    0    4", " -1        12    3    0    x",
       "a.frd:11: expected a 32-bit integer of 5 columns from column 24, found '    x'"},
      {" -1        12    3    0    4", " -1        12    3    0",
       "a.frd:11: expected an element row of 28 columns, found 23"},
      {"        90\n -3", "\n -3", "a.frd:12: expected a line ' -2' with nodes of 43 columns, found 33"},
      {" -2         3         5         7        90\n", "", "a.frd:12: expected a line ' -2' with nodes, found ' -3'"},
      {"         7        90\n -3", "         8        90\n -3",
       "a.frd:12: expected nodes of the mesh in element 12, found node 8"},
      {"    1PSTEP                         1           2           3 ",
       "    1PSTEP                         1           2           x ",
       "a.frd:14: expected a 32-bit integer of 12 columns from column 49, found '           x'"},
      {"    1PSTEP                         1", "    1PSTOP                         1",
       "a.frd:14: expected a parameter 1PSTEP, 1PMODE, 1PGM, 1PGK, 1PHID, 1PSUBC or 1PAX, found '    1PSTOP           "
       "              1    ...'"},
      {"    1PSTEP                         1", "    4C                             1",
       "a.frd:14: expected a block or the last line ' 9999', found '    4C                             1    ...'"},
      {"L  106 2.75000E-01", "L  106 2.75000E-0x",
       "a.frd:15: expected a number of 12 columns from column 13, found ' 2.75000E-0x'"},
      {"0    6           1", "x    6           1",
       "a.frd:15: expected a 32-bit integer of 2 columns from column 57, found ' x'"},
      {"0    6           1", "0    x           1",
       "a.frd:15: expected a 32-bit integer of 5 columns from column 59, found '    x'"},
      {" 2.75000E-01           4", " 2.75000E-01           5",
       "a.frd:25: expected the 5 rows that line 15 announces, found 4"},
      {" -4  DISP        4    1\n", "",
       "a.frd:16: expected the name of a data set, ' -4', found ' -5  D1          1    2    1    0'"},
      {" -4  DISP        4    1\n", " -4  DISP        4    2\n",
       "a.frd:16: expected a data set at nodes, type 1, found type 2"},
      {" -4  DISP        4    1\n", " -4  DISP        5    1\n",
       "a.frd:21: expected a component, ' -5', found ' -1         3-2.81872E-04 5.37105E-05-5....'"},
      {" -4  DISP        4    1\n", " -4  DISP        0    1\n",
       "a.frd:16: expected at least one component with values, found none"},
      {" -4  DISP        4    1\n", " -4  DISP        3    1\n",
       "a.frd:20: expected a row ' -1' or the end of the data set ' -3', found ' -5  ALL         1    2    0    0    "
       "1AL...'"},
      {"    0    1ALL", "    0    2ALL", "a.frd:20: expected 0 (stored) or 1 (computed) for a component, found 2"},
      {" -1         5 1.00000E+00-1", " -1        50 1.00000E+00-1",
       "a.frd:22: expected a node of the mesh, found node 50"},
      {" -1         5 1.00000E+00-1", " -1        -5 1.00000E+00-1",
       "a.frd:22: expected a node of the mesh, found node -5"},
      {" 1.00000E+00-1.00000E+00-0", " 1.00000E+00-1.00000F+00-0",
       "a.frd:22: expected a number of 12 columns from column 26, found '-1.00000F+00'"},
      {"-0.00000E+00\n", "-0.00000E+00 0.00000E+00\n", "a.frd:22: expected a row of 49 columns, found 61"},
      {" -2           1.30000E+01\n", "",
       "a.frd:44: expected a line ' -2' with more values, found ' -1         3-1.00000E+00-2.00000E+00-3....'"},
      {" -2           1.30000E+01\n", " -2           1.30000E+01 1.40000E+01\n",
       "a.frd:44: expected a line ' -2' with more values of 25 columns, found 37"},
      {" 1.00000E+01 1.10000E+01", " 1.00000E+01 1.1000 E+01",
       "a.frd:43: expected a number of 12 columns from column 62, found ' 1.1000 E+01'"},
      {" 9999\n", "",
       "a.frd:49: expected a block or the last line ' 9999' of a run that came to its end, found the end of the file"},
      {" 9999\n", " 9999\n    1U\n", "a.frd:50: expected nothing behind the last line ' 9999', found '    1U'"},
  };
  ExpectMessages(damages, kSmall, FailureOfText);
  EXPECT_EQ(FailureOfText(""),
            "a.frd:1: expected the first line of a result file, '    1C', found the end of the file");
}

TEST(FrdReader, FailsForAComponentThatAViewerComputesAlone)
{
  const std::string text =
      Replaced(kSmall,
               " -4  DISP        4    1\n -5  D1          1    2    1    0\n -5  D2          1    2 "
               "   2    0\n -5  D3          1    2    3    0\n",
               " -4  DISP        1    1\n");
  EXPECT_EQ(FailureOfText(text), "a.frd:17: expected at least one component with values, found none");
}

TEST(FrdReader, FailsForEveryLengthThatTheFileIsCutTo)
{
  for (std::size_t size = 0; size + 1 < kSmall.size(); ++size) {
    const std::string message = FailureOfText(kSmall.substr(0, size));
    ASSERT_TRUE(NamesLine(message, "a.frd")) << size << ": " << message;
  }
}

TEST(FrdReader, SurvivesDamageOfAnyByte) { DamageEachByte(kSmall, "a.frd", FailureOfText); }

void AppendInt(std::string& bytes, int value)
{
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(static_cast<unsigned>(value) >> shift & 0xff);
}

void AppendFloat(std::string& bytes, float value) { AppendInt(bytes, std::bit_cast<int>(value)); }

void AppendDouble(std::string& bytes, double value)
{
  const auto bits = std::bit_cast<std::uint64_t>(value);
  AppendInt(bytes, static_cast<int>(bits & 0xffffffff));
  AppendInt(bytes, static_cast<int>(bits >> 32));
}

void AppendElement(std::string& bytes, int id, int type, std::initializer_list<int> nodes)
{
  for (const int word : {id, type, 0, 9}) AppendInt(bytes, word);
  for (const int node : nodes) AppendInt(bytes, node);
}

const std::string kDispHeader =
    " -4  DISP        4    1\n"
    " -5  D1          1    2    1    0\n"
    " -5  D2          1    2    2    0\n"
    " -5  D3          1    2    3    0\n"
    " -5  ALL         1    2    0    0    1ALL\n";

std::string RowsLine(int count, int format)
{
  char text[96];
  std::snprintf(text, sizeof text, "  100CL  101 1.000000000%12d                     0    1           %d\n", count,
                format);
  return text;
}

// Four nodes, a tetrahedron and a line of two plies that count as one, displacements at two nodes.
std::string BinarySmall()
{
  std::string text = "    1C\n" + MeshLine("2C", 4, 3);
  for (const int id : {3, 5, 7, 90}) {
    AppendInt(text, id);
    for (const double value : {id / 2.0, 0.1, -1e300}) AppendDouble(text, value);
  }
  text += MeshLine("3C", 1, 2);
  AppendElement(text, 12, 3, {3, 5, 7, 90});
  AppendElement(text, 13, 12, {3, 7, 5});
  text += "    1PSTEP                         1           2           3           \n" + RowsLine(2, 2) + kDispHeader;
  AppendInt(text, 7);
  for (const float value : {1.5f, -0.0f, std::numeric_limits<float>::infinity()}) AppendFloat(text, value);
  AppendInt(text, 3);
  for (const float value : {0.1f, 1e-40f, -2.0f}) AppendFloat(text, value);
  return text + " 9999\n";
}

TEST(FrdReader, ReadsBinaryParts)
{
  const Log expected = {
      "node 3 1.5 0.1 -1e+300",
      "node 5 2.5 0.1 -1e+300",
      "node 7 3.5 0.1 -1e+300",
      "node 90 45 0.1 -1e+300",
      "element 12 type 3 material 9: 3 5 7 90",
      "element 13 type 12 material 9: 3 5 7",
      "DISP value 1 kind 0 step 3 increment 2 output 1 mode 0 line 5: D1 D2 D3",
      "7 1.5 -0 inf from line 0",
      "3 " + Short(static_cast<double>(0.1f)) + " " + Short(static_cast<double>(1e-40f)) + " -2",
      "end DISP",
  };
  EXPECT_EQ(LogOf(BinarySmall()), expected);
}

// Format 2 has four bytes a value and format 3 eight, in nodes and in rows.
TEST(FrdReader, ReadsBothBinaryFormatsInEveryBlock)
{
  std::string text = "    1C\n" + MeshLine("2C", 1, 2);
  AppendInt(text, 1);
  for (const float value : {1.0f, 2.0f, 3.0f}) AppendFloat(text, value);
  text += MeshLine("3C", 0, 3) + RowsLine(1, 3) + kDispHeader;
  AppendInt(text, 1);
  for (const double value : {0.1, 0.2, 0.3}) AppendDouble(text, value);
  text += " 9999\n";
  EXPECT_EQ(LogOf(text), (Log{"node 1 1 2 3", "DISP value 1 kind 0 step 0 increment 0 output 1 mode 0 line 4: D1 D2 D3",
                              "1 0.1 0.2 0.3 from line 0", "end DISP"}));
}

TEST(FrdReader, NamesTheLineBeforeABinaryPartThatIsWrong)
{
  const std::string mesh = "    1C\n" + MeshLine("2C", 2, 3);
  EXPECT_EQ(FailureOfText(mesh + std::string(55, '\1')),
            "a.frd:2: expected 2 nodes of 28 bytes behind this line, found 55 bytes");
  EXPECT_EQ(FailureOfText("    1C\n" + MeshLine("2C", 2147483647, 3) + std::string(100, '\1')),
            "a.frd:2: expected 2147483647 nodes of 28 bytes behind this line, found 100 bytes");
  EXPECT_EQ(FailureOfText(mesh + std::string(56, '\1')),
            "a.frd:2: expected every node once, found node 16843009 again");
  EXPECT_EQ(FailureOfText(mesh + std::string(56, '\0')), "a.frd:2: expected a node id from 1 on, found 0");

  std::string whole = "    1C\n" + MeshLine("2C", 1, 3);
  AppendInt(whole, 1);
  for (int i = 0; i < 3; ++i) AppendDouble(whole, 0.0);
  whole += MeshLine("3C", 1, 2);
  std::string text = whole;
  AppendElement(text, 1, 13, {1, 1});
  EXPECT_EQ(FailureOfText(text + " 9999\n"),
            "a.frd:3: expected an element type from 1 to 12 or a text line behind this block, found 13");
  text = whole;
  AppendElement(text, 1, 3, {1, 1, 1});
  EXPECT_EQ(FailureOfText(text), "a.frd:3: expected an element of 32 bytes in this block, found 28");
  text = whole;
  AppendElement(text, 0, 11, {1, 1});
  EXPECT_EQ(FailureOfText(text), "a.frd:3: expected an element id from 1 on, found 0");
  text = whole;
  AppendElement(text, 8, 11, {1, 2});
  EXPECT_EQ(FailureOfText(text), "a.frd:3: expected nodes of the mesh in element 8, found node 2");

  const std::string rows = whole + RowsLine(2, 2) + kDispHeader;
  EXPECT_EQ(FailureOfText(rows + std::string(31, '\0')),
            "a.frd:9: expected 2 rows of 16 bytes behind this line, found 31 bytes");
  text = rows;
  AppendInt(text, 1);
  text += std::string(12, '\0');
  AppendInt(text, -7);
  text += std::string(12, '\0');
  EXPECT_EQ(FailureOfText(text), "a.frd:9: expected a node of the mesh in row 2 behind this line, found node -7");
}

TEST(FrdReader, FailsForEveryLengthThatABinaryFileIsCutTo)
{
  const std::string text = BinarySmall();
  for (std::size_t size = 0; size + 1 < text.size(); ++size) {
    const std::string message = FailureOfText(text.substr(0, size));
    ASSERT_TRUE(NamesLine(message, "a.frd")) << size << ": " << message;
  }
}

Log UnwantedLogOf(const std::string& text)
{
  std::istringstream in(text);
  LogSink            sink;
  sink.isWanted = false;
  ReadFrd(in, "a.frd", sink);
  return sink.log;
}

TEST(FrdReader, RowsThatNobodyWantsAreCountedAndNotDecoded)
{
  const auto isRow = [](const std::string& text) {
    return std::isdigit(static_cast<unsigned char>(text.front())) != 0;
  };
  for (const std::string& text : {kSmall, BinarySmall()}) {
    Log expected = LogOf(text);
    EXPECT_NE(std::erase_if(expected, isRow), 0u);
    EXPECT_EQ(UnwantedLogOf(text), expected);
  }

  // What a row says is checked when it is wanted; that it is there, always.
  const std::string damaged = Replaced(kSmall, " -1         5 1.00000E+00", " -1         5 1.0x000E+00");
  EXPECT_NO_THROW(UnwantedLogOf(damaged));
  EXPECT_THROW(LogOf(damaged), FED_Failure);
  const std::string missing = Replaced(kSmall, " -1         5 1.00000E+00-1.00000E+00-0.00000E+00\n", "");
  EXPECT_EQ(FailureOf([&] { UnwantedLogOf(missing); }), FailureOfText(missing));
}

TEST(FrdReader, SurvivesDamageOfAnyByteOfABinaryFile) { DamageEachByte(BinarySmall(), "a.frd", FailureOfText); }

// Counts what arrives, and sums what a test can add up by hand.
class CountSink : public FrdSink
{
public:
  std::size_t               nodes = 0, elements = 0, datasets = 0, rows = 0, largestBatch = 0;
  double                    sum = 0.0;
  std::vector<std::int64_t> lines;  // of the batches

  void OnNodes(std::span<const int> ids, std::span<const double>) override { nodes += ids.size(); }
  void OnElements(std::span<const FrdElement> e) override { elements += e.size(); }
  bool OnDatasetBegin(const FrdDataset&) override
  {
    ++datasets;
    return true;
  }
  void OnRows(const FrdDataset&, std::span<const int> ids, std::span<const double> values, std::int64_t line) override
  {
    rows += ids.size();
    largestBatch = std::max(largestBatch, ids.size());
    lines.push_back(line);
    for (const double value : values) sum += value;
  }
  void OnDatasetEnd(const FrdDataset&) override {}
};

// A file of several buffers: every line and every record crosses their ends somewhere. The sum of 1 to n in steps of a
// quarter is exact in six digits and in double precision.
std::string LargeFile(int numNodes, bool isBinary)
{
  std::string text = "    1C\n" + MeshLine("2C", numNodes, isBinary ? 3 : 1);
  for (int id = 1; id <= numNodes; ++id) {
    if (isBinary) {
      AppendInt(text, id);
      for (int i = 0; i < 3; ++i) AppendDouble(text, i);
    } else {
      text += NodeRow(id);
    }
  }
  if (!isBinary) text += " -3\n";
  text += RowsLine(numNodes, isBinary ? 2 : 1) + " -4  NDTEMP      1    1\n -5  T           1    1    0    0\n";
  for (int id = 1; id <= numNodes; ++id) {
    if (isBinary) {
      AppendInt(text, id);
      AppendFloat(text, static_cast<float>(id % 1000) / 4);
    } else {
      char row[64];
      std::snprintf(row, sizeof row, " -1%10d%12.5E\n", id, (id % 1000) / 4.0);
      text += row;
    }
  }
  if (!isBinary) text += " -3\n";
  return text + " 9999\n";
}

TEST(FrdReader, ReadsAFileThatIsLargerThanItsBuffer)
{
  constexpr int kNumNodes = 60000;
  for (const bool isBinary : {false, true}) {
    std::istringstream in(LargeFile(kNumNodes, isBinary));
    CountSink          sink;
    ReadFrd(in, "a.frd", sink);
    EXPECT_EQ(sink.nodes, kNumNodes);
    EXPECT_EQ(sink.rows, kNumNodes);
    EXPECT_LE(sink.largestBatch, 4096u);
    EXPECT_EQ(sink.sum, 60 * (999 * 1000 / 2) / 4.0);  // 60 times 0 to 999, in quarters
    ASSERT_GE(sink.lines.size(), 2u);
    // The rows start behind 1C, 2C, the nodes, -3, 100C, -4 and -5.
    EXPECT_EQ(sink.lines[0], isBinary ? 0 : kNumNodes + 7);
    EXPECT_EQ(sink.lines[1], isBinary ? 0 : kNumNodes + 7 + 4096);
  }
}

TEST(FrdReader, RefusesALineThatNoBufferHolds)
{
  EXPECT_EQ(FailureOfText("    1C\n    1U" + std::string(3000000, 'x') + "\n 9999\n"),
            "a.frd:2: expected a line of at most 1048576 bytes");
}

TEST(FrdReader, ReportsItsProgressUpToTheLastByte)
{
  const std::string                                    text = LargeFile(60000, false);
  std::istringstream                                   in(text);
  CountSink                                            sink;
  std::vector<std::pair<std::uint64_t, std::uint64_t>> calls;
  ReadFrd(in, "a.frd", sink, [&](std::uint64_t done, std::uint64_t total) { calls.emplace_back(done, total); });
  ASSERT_GE(calls.size(), 2u);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    EXPECT_EQ(calls[i].second, text.size());
    EXPECT_GE(calls[i].first, calls[i == 0 ? 0 : i - 1].first);
  }
  EXPECT_EQ(calls.back().first, text.size());
}

TEST(FrdReader, StopsWhereProgressOrTheSinkThrows)
{
  class Stop : public LogSink
  {
  public:
    void OnElements(std::span<const FrdElement>) override { throw std::runtime_error("enough"); }
  };
  std::istringstream in(kSmall);
  Stop               sink;
  EXPECT_THROW(ReadFrd(in, "a.frd", sink), std::runtime_error);
  EXPECT_EQ(sink.log.size(), 4u);  // the nodes were there

  std::istringstream again(kSmall);
  LogSink            none;
  EXPECT_THROW(
      ReadFrd(again, "a.frd", none, [](std::uint64_t, std::uint64_t) { throw std::runtime_error("interrupted"); }),
      std::runtime_error);
  EXPECT_EQ(none.log, Log());
}

TEST(FrdReader, NamesAFileThatCannotBeRead)
{
  const quilon_test::TempFolder folder;
  LogSink                       sink;
  const auto                    missing = folder / "missing.frd";
  EXPECT_EQ(FailureOf([&] { ReadFrd(missing, sink); }),
            missing.string() + ": expected a file that can be read: No such file or directory");
  EXPECT_EQ(FailureOf([&] { ReadFrd(folder.GetPath(), sink); }),
            folder.GetPath().string() + ": expected a file that can be read: Is a directory");
}

TEST(FrdReader, ReadsFilesByTheirPath)
{
  const quilon_test::TempFolder folder;
  const auto                    path = folder / "small.frd";
  std::ofstream(path, std::ios::binary) << kSmall;
  LogSink sink;
  ReadFrd(path, sink);
  EXPECT_EQ(sink.log, kSmallLog);

  std::ofstream(path, std::ios::binary) << kSmall.substr(0, 100);
  EXPECT_TRUE(NamesLine(FailureOf([&] { ReadFrd(path, sink); }), path.string()));
}

// Counts taken from the decks: nodes, elements and requests of each.
TEST(FrdReader, ReadsWhatTheSolverWrites)
{
  struct Row
  {
    const char* file;
    std::size_t nodes, elements, datasets, rows;
  };
  const Row rows[] = {
      {"b_hex/b_hex.frd", 45, 16, 10, 450},
      {"c_shell/c_shell3d.frd", 210, 18, 5, 1050},  // six elements of three plies each
      {"c_shell_iso/c_shell_iso2d.frd", 29, 6, 5, 145},
      {"d_beam/d_beam2d.frd", 10, 5, 4, 40},
      {"e_matrix/e_matrix.frd", 0, 0, 0, 0},
      {"e_matrix/e_static.frd", 24, 6, 4, 96},
      {"e_matrix/e_static_bin.frd", 24, 6, 4, 96},
      {"f_modal/f_modal.frd", 24, 6, 18, 432},
      {"traps/nan.frd", 4, 1, 3, 12},
  };
  for (const Row& row : rows) {
    std::istringstream in(Fixture(row.file));
    CountSink          sink;
    ReadFrd(in, row.file, sink);
    EXPECT_EQ(sink.nodes, row.nodes) << row.file;
    EXPECT_EQ(sink.elements, row.elements) << row.file;
    EXPECT_EQ(sink.datasets, row.datasets) << row.file;
    EXPECT_EQ(sink.rows, row.rows) << row.file;
  }
}

TEST(FrdReader, ReadsTheSolversModes)
{
  const Log log = LogOf(Fixture("f_modal/f_modal.frd"));
  EXPECT_EQ(log[0], "node 5 0 0 0");
  EXPECT_EQ(log[24], "element 1 type 1 material 1: 5 7 15 13 29 31 39 37");
  EXPECT_EQ(log[30], "DISP value 8258.555645 kind 2 step 1 increment 1 output 1 mode 1 line 59: D1 D2 D3");
  // Three data sets a mode, each with a line before and behind 24 rows.
  EXPECT_EQ(log[30 + 3 * 26], "DISP value 11852.69837 kind 2 step 1 increment 1 output 2 mode 2 line 169: D1 D2 D3");
}

// Keeps all values of a file.
class ValueSink : public CountSink
{
public:
  std::vector<double> values;

  void OnNodes(std::span<const int>, std::span<const double> v) override { Keep(v); }
  void OnRows(const FrdDataset&, std::span<const int>, std::span<const double> v, std::int64_t) override { Keep(v); }

private:
  void Keep(std::span<const double> v) { values.insert(values.end(), v.begin(), v.end()); }
};

// Two runs of one deck, once with a text and once with a binary file. The text has six digits.
TEST(FrdReader, ReadsTheSameFromTheSolversTextAndBinaryFiles)
{
  ValueSink          text, binary;
  std::istringstream textIn(Fixture("e_matrix/e_static.frd")), binaryIn(Fixture("e_matrix/e_static_bin.frd"));
  ReadFrd(textIn, "a.frd", text);
  ReadFrd(binaryIn, "b.frd", binary);
  ASSERT_EQ(text.values.size(), 24u * (3 + 3 + 6 + 3 + 1));
  ASSERT_EQ(binary.values.size(), text.values.size());
  for (std::size_t i = 0; i < text.values.size(); ++i) {
    // Half a unit of the sixth digit is at most 5e-6 of a number, and single precision adds 6e-8.
    EXPECT_NEAR(binary.values[i], text.values[i], 5.1e-6 * std::abs(text.values[i])) << i;
  }
}

class NodeCounter : public FrdSink
{
public:
  std::size_t count = 0;

  void OnNodes(std::span<const int> ids, std::span<const double>) override { count += ids.size(); }
  void OnElements(std::span<const FrdElement>) override {}
  bool OnDatasetBegin(const FrdDataset&) override { return false; }
  void OnRows(const FrdDataset&, std::span<const int>, std::span<const double>, std::int64_t) override {}
  void OnDatasetEnd(const FrdDataset&) override {}
};

// A node each in a range of ids of its own, descending, and many in one range.
TEST(FrdReader, IdsFarFromEachOtherTakeLittleMemory)
{
  constexpr int kFar   = 20000;
  constexpr int kNear  = 5000;
  const auto    column = [](int number, int width) {
    const std::string text = std::to_string(number);
    return std::string(static_cast<std::size_t>(width) - text.size(), ' ') + text;
  };
  std::string text = "    1C\n    2C" + std::string(18, ' ') + column(kFar + kNear, 12) + std::string(37, ' ') + "1\n";
  const auto  add  = [&](int id) { text += " -1" + column(id, 10) + " 0.00000E+00 0.00000E+00 0.00000E+00\n"; };
  for (int i = kFar; i > 0; --i) add(100000 * i);
  for (int i = 0; i < kNear; ++i) add(3 + i);
  text += " -3\n 9999\n";

  std::istringstream                   in(text);
  NodeCounter                          sink;
  const quilon_test::AllocationFailure counter(0);
  ReadFrd(in, "job.frd", sink);
  EXPECT_EQ(sink.count, static_cast<std::size_t>(kFar + kNear));
  // A buffer of 1 MiB, a table of ranges of as much, which is made in pieces that grow, and some bytes for each id.
  EXPECT_LT(counter.GetBytes(), std::size_t{8} << 20);

  for (const auto& [id, other] : {std::pair{700000, 800000}, std::pair{5002, 4}}) {
    std::istringstream twice(Replaced(text, column(id, 10), column(other, 10)));
    const int          line = id == 700000 ? kFar - 4 : 2 + kFar + kNear;
    EXPECT_EQ(FailureOf([&] { ReadFrd(twice, "job.frd", sink); }), "job.frd:" + std::to_string(line) +
                                                                       ": expected every node once, found node " +
                                                                       std::to_string(other) + " again");
  }
}

}  // namespace
