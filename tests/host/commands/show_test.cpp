#include <string>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class ShowCommand : public testing::Test
{
protected:
  void SetUp() override { WriteSmallOnf(onf_); }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "small.onf").string();
};

TEST_F(ShowCommand, ShowsRecordsByAscendingId)
{
  const RunResult run = RunQuilon({"show", onf_, "stress"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out,
            "id\txx\tyy\tzz\txy\tyz\tzx\n"
            "10\t100\t0\t0\t0\t0\t-7.5\n"
            "20\t20\tnan\t3\t4\t5\t6\n");
}

TEST_F(ShowCommand, BlanksAroundPartsOfASelectionDoNotMatter)
{
  EXPECT_EQ(RunQuilon({"show", onf_, " Stress , eigenvalue @ lc = 1 , sub=last ", "--ids", " 1 , 10"}).out,
            RunQuilon({"show", onf_, "stress,eigenvalue@lc=1,sub=last", "--ids", "1,10"}).out);
}

TEST_F(ShowCommand, PointsAreARowEach)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "582"}).out,
            "id\tpoint\txx\tyy\tzz\txy\tyz\tzx\n"
            "7\t1\t1\t2\t3\t4\t5\t6\n"
            "7\t2\t-1\t-2\t-3\t-4\t-5\t-6.5\n");
}

TEST_F(ShowCommand, ScalarsStandUnderTheNameOfTheirQuantity)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "eigenvalue"}).out, "index\teigenvalue\n1\t4\n2\t9\n");
}

TEST_F(ShowCommand, ListsShowTheirLength)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "element-nodes"}).out, "id\tnodes\n7\t[3] 20 3 10\n");
}

TEST_F(ShowCommand, SeveralBlocksHaveTheirKeysInFront)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "510@lc=1", "--ids", "10"}).out,
            "kind\tit\tan\tlc\tsub\tid\tx\ty\tz\n"
            "displacement\t0\t1\t1\t1\t10\t0.5\t-1\t2\n"
            "displacement\t0\t1\t1\t2\t10\t1\t-2\t4\n");
}

TEST_F(ShowCommand, BlocksOfOtherColumnsStartAnotherTable)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "595,wear"}).out,
            "kind\tit\tan\tlc\tsub\tid\tnodes\n"
            "element-nodes\t0\t-\t-\t-\t7\t[3] 20 3 10\n"
            "\n"
            "kind\tit\tan\tlc\tsub\tid\tvalue\n"
            "Wear depth\t0\t1\t1\t2\t3\t0.125\n");
}

TEST_F(ShowCommand, IdsAreNumbersAndRanges)
{
  const std::string header = "id\tx\ty\tz\n";
  const std::string three  = "3\t0\t0\t0\n";
  const std::string ten    = "10\t0.1\t0\t0\n";
  const std::string twenty = "20\t0.25\t0\t0\n";
  const auto        ids = [this](const char* text) { return RunQuilon({"show", onf_, "510@lc=2", "--ids", text}).out; };
  EXPECT_EQ(ids("3,20"), header + three + twenty);
  EXPECT_EQ(ids("20,3"), header + three + twenty);
  EXPECT_EQ(ids("1-10"), header + three + ten);
  EXPECT_EQ(ids("10-99"), header + ten + twenty);
  EXPECT_EQ(ids("4-9"), header);
  EXPECT_EQ(ids("first"), header + three);
  EXPECT_EQ(ids("last"), header + twenty);
  EXPECT_EQ(ids("all"), header + three + ten + twenty);
}

TEST_F(ShowCommand, IdThatIsNotThereIsAnError)
{
  const RunResult run = RunQuilon({"show", onf_, "stress", "--ids", "10,11"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: " + onf_ + ": no record 11 in the blocks of 'stress', expected one of 10 to 20\n");
}

TEST_F(ShowCommand, BrokenIdsAreAnError)
{
  EXPECT_EQ(
      RunQuilon({"show", onf_, "stress", "--ids", "x"}).err,
      "quilon: error: a record id is 'x', expected a number, a range such as 1-9 or 1:9:2, first, last, none or all\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "stress", "--ids", "none"}).err,
            "quilon: error: a record id is 'none', expected a number, a range, first, last or all\n");
}

TEST_F(ShowCommand, HeadLimitsTheRecordsOfEachBlock)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "510@lc=2", "--head", "1"}).out, "id\tx\ty\tz\n3\t0\t0\t0\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "510@lc=2", "--head", "0"}).out, "id\tx\ty\tz\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "582", "--head", "1"}).out,
            "id\tpoint\txx\tyy\tzz\txy\tyz\tzx\n7\t1\t1\t2\t3\t4\t5\t6\n7\t2\t-1\t-2\t-3\t-4\t-5\t-6.5\n");
  for (const std::string count : {"-1", "x", "1.5"}) {
    const RunResult run = RunQuilon({"show", onf_, "stress", "--head", count});
    EXPECT_EQ(run.err,
              "quilon: error: --head: '" + count + "', expected a count, 0 or more, see 'quilon show --help'\n");
    EXPECT_EQ(run.exitCode, 2);
  }
}

TEST_F(ShowCommand, TableHasALineAboveEachBlock)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "500,1000", "--table"}).out,
            "eigenvalue  500@it=0,lc=1,sub=1,quantity=502  2 records\n"
            "index  eigenvalue\n"
            "    1           4\n"
            "    2           9\n"
            "\n"
            "Wear depth  1000@it=0,an=1,lc=1,sub=2  1 record\n"
            "id  value\n"
            " 3  0.125\n");
}

TEST_F(ShowCommand, CsvHasAHeader)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "510@lc=2", "--csv"}).out, "id,x,y,z\n3,0,0,0\n10,0.1,0,0\n20,0.25,0,0\n");
}

TEST_F(ShowCommand, JsonKeepsWhatIsNoNumberAsText)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "stress", "--json"}).out,
            "[\n"
            "{\"block\":\"521@it=0,an=1,lc=1,sub=2\",\"onf\":521,\"kind\":\"nodal-stress\",\"it\":0,\"an\":1,\"lc\":1,"
            "\"sub\":2,\"rows\":[\n"
            "  {\"id\":10,\"xx\":100.0,\"yy\":0.0,\"zz\":0.0,\"xy\":0.0,\"yz\":0.0,\"zx\":-7.5},\n"
            "  {\"id\":20,\"xx\":20.0,\"yy\":\"nan\",\"zz\":3.0,\"xy\":4.0,\"yz\":5.0,\"zx\":6.0}]}\n"
            "]\n");
}

TEST_F(ShowCommand, JsonOfSeveralBlocksIsOneArray)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "595,1000", "--json"}).out,
            "[\n"
            "{\"block\":\"595@it=0\",\"onf\":595,\"kind\":\"element-nodes\",\"it\":0,\"rows\":[\n"
            "  {\"id\":7,\"nodes\":[20,3,10]}]},\n"
            "{\"block\":\"1000@it=0,an=1,lc=1,sub=2\",\"onf\":1000,\"kind\":\"Wear depth\",\"it\":0,\"an\":1,\"lc\":1,"
            "\"sub\":2,\"rows\":[\n"
            "  {\"id\":3,\"value\":0.125}]}\n"
            "]\n");
}

TEST_F(ShowCommand, StepsAreSelectedByPosition)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "510", "--steps", "last", "--head", "1"}).out, "id\tx\ty\tz\n3\t0\t0\t0\n");
}

TEST_F(ShowCommand, SelectionThatMatchesNothingIsAnError)
{
  const RunResult run = RunQuilon({"show", onf_, "stress@lc=9"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + onf_ + ": no block matches 'stress@lc=9'\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "stress", "--steps", "9"}).err,
            "quilon: error: step 9 is not there, expected positions from 1 to 3\n");
}

TEST_F(ShowCommand, SelectionIsNeeded)
{
  const RunResult run = RunQuilon({"show", onf_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: SELECTION is missing, see 'quilon show --help'\n");
}

TEST_F(ShowCommand, HelpHasAnExample)
{
  const RunResult run = RunQuilon({"show", "--help"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.out.find("  quilon show bracket.onf stress@lc=2,sub=last --ids 1,5-9\n"), std::string::npos) << run.out;
}

class ShowModel : public testing::Test
{
protected:
  void SetUp() override { WriteTwoBricks(onf_); }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "bricks.onf").string();
};

TEST_F(ShowModel, ComponentsStandInTheirPlace)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "stress.mises,stress.p3@lc=1,sub=1", "--ids", "2,4", "--csv"}).out,
            "id,mises,p3,time\n2,1,0,0.5\n4,2,0,0.5\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "displacement.y", "--time", "2", "--ids", "3"}).out, "id\ty\ttime\n3\t-6\t2\n");
}

TEST_F(ShowModel, JsonNamesComponentsAndTheTime)
{
  EXPECT_EQ(
      RunQuilon({"show", onf_, "stress.mises", "--time", "last", "--ids", "1", "--json"}).out,
      "[\n{\"block\":\"521@it=0,an=1,lc=2,sub=1\",\"onf\":521,\"kind\":\"nodal-stress\",\"it\":0,\"an\":1,\"lc\":2,"
      "\"sub\":1,\"time\":2.0,\"rows\":[\n  {\"id\":1,\"mises\":2.0}]}\n]\n");
}

TEST_F(ShowModel, SeveralBlocksHaveTheirTime)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "displacement.x@lc=1", "--ids", "1"}).out,
            "kind\tit\tan\tlc\tsub\ttime\tid\tx\n"
            "displacement\t0\t1\t1\t1\t0.5\t1\t0.5\n"
            "displacement\t0\t1\t1\t2\t1\t1\t1\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "displacement.x@lc=2", "--ids", "1", "--table"}).out,
            "displacement  510@it=0,an=1,lc=2,sub=1  time 2  1 record\nid  x\n 1  2\n");
}

// Node 6 is at (1, 1, 0): of xx alone a half is radial, a half tangential, and the shear is minus a half.
TEST_F(ShowModel, ComponentsAreInTheAxesThatAreAskedFor)
{
  const RunResult round = RunQuilon({"show", onf_, "stress.xx,stress.yy,stress.xy,stress.mises", "--time", "1", "--ids",
                                     "4-6", "--axes", "cylindrical:0,0,0,0,0,1", "--table"});
  EXPECT_EQ(round.out,
            "nodal-stress  521@it=0,an=1,lc=1,sub=2  time 1  3 records\n"
            "id   xx   yy   xy  mises\n"
            " 4  nan  nan  nan    nan\n"
            " 5    5    0    0      5\n"
            " 6    3    3   -3      6\n");
  EXPECT_EQ(round.err,
            "quilon: note: axes: x radial, y tangential, z along the axis through 0,0,0 along 0,0,1\n"
            "quilon: note: 1 value at places where the axes are none, or that are not known\n");
  EXPECT_EQ(
      RunQuilon({"show", onf_, "displacement", "--time", "1", "--ids", "5", "--axes", "rectangular:0,1,0,1,0,0"}).out,
      "id\tx\ty\tz\ttime\n5\t-5\t5\t0\t1\n");
}

// xy alone: principal values at 45 degrees, the third direction their vector product.
TEST_F(ShowModel, PrincipalAxesAreShownWithTheirDirections)
{
  EXPECT_EQ(
      RunQuilon({"show", onf_, "element-stress", "--time", "2", "--ids", "101", "--axes", "principal", "--table"}).out,
      "element-stress  561@it=0,an=1,lc=2,sub=1  time 2  1 record\n"
      " id xx yy zz xy yz zx       x1       y1 z1 x2 y2 z2       x3        y3 z3\n"
      "101  2  0 -2  0  0  0 0.707107 0.707107  0  0  0  1 0.707107 -0.707107  0\n");
  const RunResult vectors = RunQuilon({"show", onf_, "displacement", "--axes", "principal"});
  EXPECT_EQ(vectors.exitCode, 2);
  EXPECT_EQ(
      vectors.err,
      "quilon: error: --axes: displacement (510) holds vectors, which have no principal axes, expected a tensor\n");
}

TEST_F(ShowModel, RegionsAreOfTheModel)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "stress.xx", "--time", "1", "--material", "ALU", "--box", "1,0,0,2,0,0"}).out,
            "id\txx\ttime\n5\t5\t1\n9\t9\t1\n");
  const RunResult near = RunQuilon({"show", onf_, "element-stress.tresca", "--time", "1", "--near", "2,0,0"});
  EXPECT_EQ(near.out, "id\ttresca\ttime\n102\t4\t1\n");
  EXPECT_EQ(near.err, "quilon: note: the node nearest to 2,0,0 is 9 at distance 0\n");
  const RunResult none = RunQuilon({"show", onf_, "stress", "--box", "7,7,7,8,8,8"});
  EXPECT_EQ(none.err,
            "quilon: error: " + onf_ + ": no node is in --box 7,7,7,8,8,8, the mesh is from 0,0,0 to 2,1,1\n");
  EXPECT_EQ(none.exitCode, 2);
  EXPECT_EQ(RunQuilon({"show", onf_, "stress", "--box", "1,2"}).err,
            "quilon: error: --box is '1,2', expected six numbers X0,Y0,Z0,X1,Y1,Z1: two corners\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "stress", "--near", "1,2,3,4"}).err,
            "quilon: error: --near is '1,2,3,4', expected three numbers X,Y,Z\n");
}

TEST_F(ShowModel, TypesAndMaterialsHaveTheirNames)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "element-type"}).out, "id\ttype\tmaterial\n101\tC3D8\tSTEEL\n102\tC3D8\tALU\n");
}

TEST_F(ShowModel, UnknownComponentsAndTimesAreErrors)
{
  const RunResult run = RunQuilon({"show", onf_, "displacement.mises"});
  EXPECT_EQ(run.err,
            "quilon: error: kind displacement (510) has no component 'mises', expected one of x, y, z, magnitude\n");
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(RunQuilon({"show", onf_, "displacement", "--time", "0.7"}).err,
            "quilon: error: " + onf_ + ": no step at time 0.7 within a thousandth of it, the nearest are 0.5 and 1\n");
}

TEST_F(ShowModel, CommandsOnWholeBlocksRefuseComponents)
{
  EXPECT_EQ(RunQuilon({"ls", onf_, "stress.mises"}).err,
            "quilon: error: selection 'stress.mises' names a component, expected whole kinds: this command works on "
            "blocks\n");
}

TEST_F(ShowCommand, SparkPrintsALineOfBarsAColumn)
{
  const RunResult run = RunQuilon({"show", onf_, "510@lc=2", "--spark"}, {.environment = {"LC_ALL=C"}});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "displacement  510@it=0,an=1,lc=2,sub=1  3 records\n"
            "  x             0  _:#  0.25\n"
            "  y             0  ___  0\n"
            "  z             0  ___  0\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "510", "--spark", "--csv"}).exitCode, 2);
}

}  // namespace
