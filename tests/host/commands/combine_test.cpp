#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class CombineCommand : public testing::Test
{
protected:
  void SetUp() override
  {
    WriteTwoBricks(onf_);
    WriteCases("ULS1 = 1.5*lc1 + lc2\nULS2 [7] = ULS1 - 2*lc1/1\n");
  }

  void WriteCases(const std::string& text) const { std::ofstream(cases_) << text; }

  RunResult Combine(const std::vector<std::string>& arguments) const
  {
    std::vector<std::string> all = {"combine", onf_};
    all.insert(all.end(), arguments.begin(), arguments.end());
    all.insert(all.end(), {"--cases", cases_});
    return RunQuilon(all);
  }

  TempFolder        folder_;
  std::string       onf_   = (folder_ / "bricks.onf").string();
  std::string       out_   = (folder_ / "combined.onf").string();
  std::string       cases_ = (folder_ / "cases.txt").string();
  const std::string unknown_ =
      "quilon: note: nothing tells whether steps are geometrically nonlinear, --deck does; they are taken for linear\n";
};

TEST_F(CombineCommand, WritesSumsOfTheLastSubstepsUnlessOthersAreNamed)
{
  const RunResult run = Combine({"-o", out_});
  EXPECT_EQ(run.err, unknown_);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, out_ +
                         ": 12 blocks written\n"
                         "  ULS1: load case 10001 = 1.5*lc1/2 + 1*lc2/1\n"
                         "  ULS2: load case 7 = 1.5*lc1/2 + -2*lc1/1 + 1*lc2/1\n");
  // xx of node 4 is 4 times the time: 0.5 and 1 in load case 1, 2 in load case 2.
  EXPECT_EQ(RunQuilon({"show", out_, "stress@an=3,lc=10001,sub=1", "--ids", "4"}).out,
            "id\txx\tyy\tzz\txy\tyz\tzx\n4\t14\t0\t0\t0\t0\t0\n");
  EXPECT_EQ(RunQuilon({"show", out_, "displacement@an=3,lc=7,sub=1", "--ids", "4"}).out,
            "id\tx\ty\tz\n4\t10\t-10\t0\n");
  EXPECT_EQ(RunQuilon({"show", out_, "stress.mises@lc=10001", "--ids", "4"}).out, "id\tmises\n4\t14\n");
}

TEST_F(CombineCommand, SelectedKindsAloneAreCombined)
{
  const RunResult run = Combine({"stress", "-o", out_, "--json"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out,
            "{\n"
            "  \"output\": \"" +
                out_ +
                "\",\n"
                "  \"blocks\": 8,\n"
                "  \"combinations\": [\n"
                "    {\n"
                "      \"name\": \"ULS1\",\n"
                "      \"load-case\": 10001,\n"
                "      \"formula\": \"1.5*lc1/2 + 1*lc2/1\"\n"
                "    },\n"
                "    {\n"
                "      \"name\": \"ULS2\",\n"
                "      \"load-case\": 7,\n"
                "      \"formula\": \"1.5*lc1/2 + -2*lc1/1 + 1*lc2/1\"\n"
                "    }\n"
                "  ]\n"
                "}\n");
}

TEST_F(CombineCommand, TheEnvelopeOfCombinationsNeedsNoDatabaseBetween)
{
  const RunResult run = Combine({"stress.mises", "--envelope", "--csv"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out.substr(0, run.out.find("\n521@it=0,2,")),
            "block,id,component,least,least-step,greatest,greatest-step,magnitude,magnitude-step\n"
            "521@it=0,1,mises,2.5,ULS2,3.5,ULS1,3.5,ULS1");
  const RunResult json = Combine({"stress.mises", "--envelope", "--json"});
  EXPECT_NE(json.out.find("{\"id\":1,\"component\":\"mises\",\"least\":2.5,\"greatest\":3.5,\"magnitude\":3.5,"
                          "\"least-step\":\"it=0,an=3,lc=7,sub=1\",\"greatest-step\":\"it=0,an=3,lc=10001,sub=1\","
                          "\"magnitude-step\":\"it=0,an=3,lc=10001,sub=1\",\"least-combination\":\"ULS2\","
                          "\"greatest-combination\":\"ULS1\",\"magnitude-combination\":\"ULS1\"}"),
            std::string::npos)
      << json.out;

  // The envelope of written combinations is the same.
  ASSERT_EQ(Combine({"stress", "-o", out_}).exitCode, 0);
  const std::string written = RunQuilon({"envelope", out_, "stress.mises", "--csv"}).out;
  EXPECT_NE(written.find("521@it=0,1,mises,2.5,\"it=0,an=3,lc=7,sub=1\",3.5,\"it=0,an=3,lc=10001,sub=1\""),
            std::string::npos)
      << written;
}

TEST_F(CombineCommand, TheEnvelopeIsWrittenToo)
{
  const RunResult run = Combine({"stress.mises", "--envelope", "-o", out_});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out.substr(0, run.out.find('\n')), out_ + ": 15 blocks written");
  EXPECT_EQ(RunQuilon({"show", out_, "nodal-stress mises envelope load case@lc=20001", "--ids", "1"}).out,
            "id\tvalue\n1\t7\n");
}

// The deck of this job has a linear step and then a geometrically nonlinear one.
TEST_F(CombineCommand, TheDeckTellsWhichStepsAreNonlinear)
{
  const std::string job = std::string(QUILON_FIXTURES) + "/calculix/hex8/hex8";
  WriteCases("A = lc1\nB = A + lc2\n");
  const RunResult run = RunQuilon({"combine", job + ".frd", "--cases", cases_, "--deck", job + ".inp", "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + cases_ +
                         ":2: 'B' adds up results of a geometrically nonlinear step, load case 2, which are no sums of "
                         "loads, expected linear ones or --allow-nonlinear\n");
  EXPECT_FALSE(std::filesystem::exists(out_));
  EXPECT_EQ(
      RunQuilon({"combine", job + ".frd", "--cases", cases_, "--deck", job + ".inp", "--allow-nonlinear", "-o", out_})
          .exitCode,
      0);
}

TEST_F(CombineCommand, IsOfTheRegionThatIsAskedFor)
{
  const RunResult run = Combine({"--material", "STEEL", "-o", out_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const auto ids = nlohmann::json::parse(RunQuilon({"show", out_, "stress@an=3,lc=7", "--json"}).out).at(0).at("rows");
  EXPECT_EQ(ids.size(), 8U);
  EXPECT_NE(RunQuilon({"ls", out_, "coordinates"}).out.find("\t12\t"), std::string::npos) << "the model is whole";
  const RunResult nothing = Combine({"--ids", "99", "-o", out_});
  EXPECT_EQ(nothing.exitCode, 2);
}

// The solver's own answer to 1.35 of one load and 1.5 of the other is load case 3: as many digits as it prints.
TEST_F(CombineCommand, ASumIsWhatTheSolverFindsUnderTheSumOfTheLoads)
{
  const std::string stem  = std::string(QUILON_FIXTURES) + "/calculix/forces/combination";
  const std::string job   = (folder_ / "job.onf").string();
  const std::string out   = (folder_ / "sum.onf").string();
  const std::string cases = (folder_ / "sum.txt").string();
  std::ofstream(cases) << "ULS [3] = 1.35*lc1 + 1.5*lc2\n";
  ASSERT_EQ(RunQuilon({"import", stem + ".inp", stem + ".frd", stem + ".dat", "-o", job}).exitCode, 0);
  const RunResult run = RunQuilon({"combine", job, "--cases", cases, "-o", out});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  // The sum as load case 3 in time, to be compared with the solver's by the keys.
  const std::vector<std::pair<std::string, double>> kinds = {
      {"displacement", 2e-6}, {"reaction", 2e-6}, {"582", 2e-6}, {"stress", 2e-6}, {"stress-principal", 2e-6}};
  for (const auto& [kind, tolerance] : kinds) {
    const auto  sums   = nlohmann::json::parse(RunQuilon({"show", out, kind + "@an=3,lc=3", "--json"}).out);
    const auto  solver = nlohmann::json::parse(RunQuilon({"show", job, kind + "@an=1,lc=3", "--json"}).out);
    const auto& a      = sums.at(0).at("rows");
    const auto& b      = solver.at(0).at("rows");
    ASSERT_EQ(a.size(), b.size()) << kind;
    double peak = 0.0;
    double most = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
      ASSERT_EQ(a[i].at("id"), b[i].at("id")) << kind;
      for (const auto& [name, value] : a[i].items()) {
        if (!value.is_number_float() && !b[i].at(name).is_number_float()) continue;
        peak = std::max(peak, std::abs(b[i].at(name).get<double>()));
        most = std::max(most, std::abs(value.get<double>() - b[i].at(name).get<double>()));
      }
    }
    EXPECT_GT(peak, 0.0) << kind;
    EXPECT_LE(most, tolerance * peak) << kind;
  }
}

TEST_F(CombineCommand, BadInputIsTroubleAndWritesNothing)
{
  const auto failure = [&](const std::string& cases, std::vector<std::string> arguments) {
    WriteCases(cases);
    arguments.insert(arguments.end(), {"-o", out_});
    const RunResult run = Combine(arguments);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    return run.err;
  };
  EXPECT_EQ(failure("A = lc1 + lc5\n", {}),
            "quilon: error: " + cases_ + ":1: 'A' names load case 5, " + onf_ + " has 1-2\n");
  EXPECT_EQ(
      failure("A = B\nB = A\n", {}),
      "quilon: error: " + cases_ +
          ":2: 'B' is made of 'A', which is made of it, through line 1, expected names that lead to load cases\n");
  EXPECT_EQ(failure("A = lc1\n", {"time"}),
            "quilon: error: " + onf_ +
                ": no results that are linear in the loads, expected displacements, reactions, stresses or strains of "
                "load cases\n");
  EXPECT_NE(failure("A = lc1\n", {"stress.mises"}).find("names a component, expected whole kinds"), std::string::npos);
  EXPECT_EQ(failure("A = lc1\n", {"--axes", "principal"}),
            "quilon: error: --axes is of --envelope, expected none: combinations are written in the axes of their load "
            "cases\n");
  EXPECT_FALSE(std::filesystem::exists(out_));
  EXPECT_EQ(Combine({}).err, "quilon: error: -o is missing, expected where to write, or --envelope\n");
  EXPECT_EQ(RunQuilon({"combine", onf_, "--cases", (folder_ / "none").string(), "-o", out_}).exitCode, 2);
  EXPECT_FALSE(std::filesystem::exists(out_));
}

}  // namespace
