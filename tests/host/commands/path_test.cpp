#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

// Along the middle of the two bricks xx is 2.5 + 4 x times the time.
class PathCommand : public testing::Test
{
protected:
  void SetUp() override { WriteTwoBricks(onf_); }

  RunResult Follow(const std::vector<std::string>& arguments) const
  {
    std::vector<std::string> all = {"path", onf_};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunQuilon(all);
  }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "bricks.onf").string();
};

TEST_F(PathCommand, PrintsValuesWithTheirPlaceAndElement)
{
  const RunResult run = Follow({"stress.xx,stress.mises,displacement.x@lc=1,sub=last", "--from", "0,0.5,0.5", "--to",
                                "2,0.5,0.5", "--points", "5"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out,
            "s\tx\ty\tz\telement\tdisplacement-x\txx\tmises\n"
            "0\t0\t0.5\t0.5\t101\t2.5\t2.5\t2.5\n"
            "0.5\t0.5\t0.5\t0.5\t101\t4.5\t4.5\t4.5\n"
            "1\t1\t0.5\t0.5\t101\t6.5\t6.5\t6.5\n"
            "1.5\t1.5\t0.5\t0.5\t102\t8.5\t8.5\t8.5\n"
            "2\t2\t0.5\t0.5\t102\t10.5\t10.5\t10.5\n");
}

TEST_F(PathCommand, APointOutsideIsToldAndHasNoValue)
{
  const RunResult run =
      Follow({"stress.xx", "--time", "1", "--from", "1.5,0.5,0.5", "--to", "2.5,0.5,0.5", "--points", "3", "--csv"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, "s,x,y,z,element,xx\n0,1.5,0.5,0.5,102,8.5\n0.5,2,0.5,0.5,102,10.5\n1,2.5,0.5,0.5,,\n");
  EXPECT_EQ(run.err,
            "quilon: note: 1 point of 3 outside of all solid elements, without values; the first at 2.5,0.5,0.5\n");
}

TEST_F(PathCommand, ALineOutsideIsAnErrorThatTellsWhereTheModelIs)
{
  const std::string plot = (folder_ / "line.svg").string();
  const RunResult   run  = Follow({"stress.xx", "--time", "1", "--from", "3,0,0", "--to", "5,0,0", "--plot", plot});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: " + onf_ +
                         ": all 51 points are outside of all solid elements, which are from 0,0,0 to 2,1,1; nearest to "
                         "3,0,0 is node 9 at 2,0,0, 1 away. Expected a line that passes one\n");
  EXPECT_FALSE(std::filesystem::exists(plot));
}

TEST_F(PathCommand, IsWithinTheRegionThatIsAskedFor)
{
  const RunResult run = Follow({"element-stress.xy", "--time", "1", "--from", "0.5,0.5,0.5", "--to", "1.5,0.5,0.5",
                                "--points", "3", "--material", "ALU", "--csv"});
  EXPECT_EQ(run.out, "s,x,y,z,element,xy\n0,0.5,0.5,0.5,,\n0.5,1,0.5,0.5,102,2\n1,1.5,0.5,0.5,102,2\n");
  EXPECT_EQ(run.err,
            "quilon: note: 1 point of 3 outside of all solid elements of the region, without values; the "
            "first at 0.5,0.5,0.5\n");
}

TEST_F(PathCommand, JsonHasRowsAndTheLinearizedStressOfEachStep)
{
  const RunResult run =
      Follow({"stress@lc=2", "--from", "0,0.5,0.5", "--to", "2,0.5,0.5", "--points", "3", "--linearize", "--json"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out.substr(0, run.out.find("      {\n        \"s\": 1.0")),
            "[\n"
            "  {\n"
            "    \"step\": \"it=0,an=1,lc=2,sub=1\",\n"
            "    \"time\": 2.0,\n"
            "    \"blocks\": [\n"
            "      \"521@it=0,an=1,lc=2,sub=1\"\n"
            "    ],\n"
            "    \"rows\": [\n"
            "      {\n"
            "        \"s\": 0.0,\n"
            "        \"x\": 0.0,\n"
            "        \"y\": 0.5,\n"
            "        \"z\": 0.5,\n"
            "        \"element\": 101,\n"
            "        \"xx\": 5.0,\n"
            "        \"yy\": 0.0,\n"
            "        \"zz\": 0.0,\n"
            "        \"xy\": 0.0,\n"
            "        \"yz\": 0.0,\n"
            "        \"zx\": 0.0\n"
            "      },\n");
  const auto partOf = [&](const std::string& name) {
    const std::size_t at = run.out.find("    \"" + name + "\": {\n");
    return at == std::string::npos ? "none" : run.out.substr(at, run.out.find('}', at) + 1 - at);
  };
  const auto part = [](const std::string& name, const std::string& xx, const std::string& mises) {
    return "    \"" + name + "\": {\n      \"xx\": " + xx +
           ",\n      \"yy\": 0.0,\n      \"zz\": 0.0,\n      \"xy\": 0.0,\n      \"yz\": 0.0,\n      \"zx\": 0.0,\n"
           "      \"mises\": " +
           mises + "\n    }";
  };
  // Simpson's weights of three points, 1/6, 4/6 and 1/6, leave a bit of rounding in the last digits of nothing here.
  EXPECT_EQ(partOf("membrane"), part("membrane", "13.0", "13.0"));
  EXPECT_EQ(partOf("membrane-bending-end"), part("membrane-bending-end", "21.0", "21.0"));
  for (const char* name : {"bending-start", "bending-end", "membrane-bending-start", "peak-start", "peak-end"})
    EXPECT_NE(partOf(name), "none") << name;
}

TEST_F(PathCommand, TablesOfTheLinearizedStressFollowTheRows)
{
  const RunResult run =
      Follow({"stress@lc=2", "--from", "0,0.5,0.5", "--to", "2,0.5,0.5", "--points", "3", "--linearize", "--table"});
  EXPECT_NE(run.out.find("it=0,an=1,lc=2,sub=1  time 2\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\n\npart                    xx  yy"), std::string::npos) << run.out;
}

TEST_F(PathCommand, SeveralStepsHaveTheirKeyInFront)
{
  const RunResult run = Follow({"stress.xx@lc=1", "--from", "0,0.5,0.5", "--to", "2,0.5,0.5", "--points", "2"});
  EXPECT_EQ(run.out,
            "step\ttime\ts\tx\ty\tz\telement\txx\n"
            "it=0,an=1,lc=1,sub=1\t0.5\t0\t0\t0.5\t0.5\t101\t1.25\n"
            "it=0,an=1,lc=1,sub=1\t0.5\t2\t2\t0.5\t0.5\t102\t5.25\n"
            "\n"
            "step\ttime\ts\tx\ty\tz\telement\txx\n"
            "it=0,an=1,lc=1,sub=2\t1\t0\t0\t0.5\t0.5\t101\t2.5\n"
            "it=0,an=1,lc=1,sub=2\t1\t2\t2\t0.5\t0.5\t102\t10.5\n");
}

TEST_F(PathCommand, PointsAreReadFromAFile)
{
  const std::string points = (folder_ / "points.txt").string();
  std::ofstream(points) << "# x y z\n1.5 0.5 0.5\n0.5, 0.5, 0.5\n";
  EXPECT_EQ(Follow({"element-stress.xy@lc=2", "--through", points}).out,
            "s\tx\ty\tz\telement\txy\n0\t1.5\t0.5\t0.5\t102\t4\n1\t0.5\t0.5\t0.5\t101\t2\n");
}

TEST_F(PathCommand, BadInputIsTrouble)
{
  const auto failure = [&](const std::vector<std::string>& arguments) {
    const RunResult run = Follow(arguments);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    return run.err;
  };
  EXPECT_EQ(failure({"stress"}), "quilon: error: expected either --from X,Y,Z and --to X,Y,Z or --through FILE\n");
  EXPECT_EQ(failure({"stress", "--from", "0,0,0"}), "quilon: error: --to is missing, expected both ends of the line\n");
  EXPECT_EQ(failure({"stress", "--from", "0,0", "--to", "1,1,1"}),
            "quilon: error: --from is '0,0', expected three numbers X,Y,Z\n");
  EXPECT_EQ(failure({"stress", "--from", "0,0,0", "--to", "0,0,0"}),
            "quilon: error: --from and --to are both 0,0,0, expected two places\n");
  EXPECT_EQ(failure({"stress", "--from", "0,0,0", "--to", "1,1,1", "--points", "1"}),
            "quilon: error: --points is 1, expected 2 or more\n");
  EXPECT_EQ(failure({"stress", "--through", (folder_ / "p").string(), "--linearize"}),
            "quilon: error: --linearize is of a straight line, expected --from and --to instead of --through\n");
  EXPECT_EQ(failure({"displacement", "--from", "0,0.5,0.5", "--to", "2,0.5,0.5", "--linearize"}),
            "quilon: error: --linearize is of one kind of stress, expected one in the selection, such as "
            "stress@lc=1,sub=last\n");
  EXPECT_EQ(failure({"stress", "--from", "0,0.5,0.5", "--to", "3,0.5,0.5", "--points", "4", "--linearize"}),
            "quilon: error: --linearize: 1 point of 4 outside of all solid elements, the first at 3,0.5,0.5 (s = 3), "
            "expected a line through one wall\n");
}

TEST_F(PathCommand, PlotsValuesOverTheLength)
{
  const std::vector<std::string> line = {"stress.xx@lc=1", "--from", "0,0.5,0.5", "--to", "2,0.5,0.5"};
  std::vector<std::string>       plot = line;
  plot.insert(plot.end(), {"--plot", (folder_ / "a.svg").string()});
  const RunResult run = Follow(plot);
  EXPECT_EQ(run.err + run.out, "");
  EXPECT_EQ(ReadAll(folder_ / "a.svg").substr(0, 5), "<?xml");
  plot.back()           = "-";
  const RunResult chart = Follow(plot);
  EXPECT_EQ(chart.exitCode, 0);
  EXPECT_NE(chart.out.find("length"), std::string::npos);
  EXPECT_NE(chart.out.find("xx at 0.5  ends at 5.25"), std::string::npos) << chart.out;
  EXPECT_NE(chart.out.find("xx at 1  ends at 10.5"), std::string::npos);
  plot.back() = "a.gif";
  EXPECT_EQ(Follow(plot).err, "quilon: error: a.gif: expected a name that ends in .png, .svg or .pdf\n");
  plot.insert(plot.end(), "--csv");
  EXPECT_EQ(Follow(plot).exitCode, 2);
}

}  // namespace
