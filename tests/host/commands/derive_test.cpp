#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class DeriveCommand : public testing::Test
{
protected:
  TempFolder  folder_;
  std::string onf_ = (folder_ / "tensors.onf").string();
  std::string out_ = (folder_ / "out.onf").string();
};

// Diagonal tensors are their own principal values, sorted.
TEST_F(DeriveCommand, AddsPrincipalValuesToAFolder)
{
  WriteDiagonalTensors(onf_);
  const RunResult run = RunQuilon({"derive", onf_});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, onf_ + ": 2 blocks derived\n  nodal-strain-principal: 1\n  nodal-stress-principal: 1\n");
  // The closed form rounds a few times: a hundred units in the last place are plenty.
  const nlohmann::json row =
      nlohmann::json::parse(RunQuilon({"show", onf_, "stress-principal", "--json"}).out).at(0).at("rows").at(0);
  EXPECT_NEAR(row.at("p1").get<double>(), 30.0, 30.0 * 2e-14);
  EXPECT_NEAR(row.at("p2").get<double>(), 20.0, 30.0 * 2e-14);
  EXPECT_NEAR(row.at("p3").get<double>(), 10.0, 30.0 * 2e-14);
  EXPECT_EQ(RunQuilon({"ls", onf_, "--csv"}).out,
            "onf,kind,it,records,size,least,greatest,nan\n"
            "520,nodal-stress-principal,0,1,24,10,30,0\n"
            "521,nodal-stress,0,1,48,0,30,0\n"
            "530,nodal-strain-principal,0,1,24,1.52587890625e-05,4.57763671875e-05,0\n"
            "531,nodal-strain,0,1,48,0,4.57763671875e-05,0\n");
}

TEST_F(DeriveCommand, DerivesOnlyWhatIsRequested)
{
  WriteDiagonalTensors(onf_);
  EXPECT_EQ(RunQuilon({"derive", onf_, "--request", "stress-principal"}).out,
            onf_ + ": 1 block derived\n  nodal-stress-principal: 1\n");
  EXPECT_EQ(RunQuilon({"derive", onf_, "--request", "none"}).out, onf_ + ": 0 blocks derived\n");
  EXPECT_EQ(RunQuilon({"derive", onf_, "--request", "520,530"}).out,
            onf_ + ": 1 block derived\n  nodal-strain-principal: 1\n");
}

TEST_F(DeriveCommand, RequestsMayComeFromAFile)
{
  WriteDiagonalTensors(onf_);
  const std::string file = (folder_ / "wanted.txt").string();
  std::ofstream(file) << "# principal values\n530\n";
  EXPECT_EQ(RunQuilon({"derive", onf_, "--request", file}).out,
            onf_ + ": 1 block derived\n  nodal-strain-principal: 1\n");
}

TEST_F(DeriveCommand, UnknownRequestGetsASuggestion)
{
  WriteDiagonalTensors(onf_);
  const RunResult run = RunQuilon({"derive", onf_, "--request", "stress-principle"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: unknown kind 'stress-principle', did you mean 'stress-principal'?\n");
}

TEST_F(DeriveCommand, NewFolderGetsEverything)
{
  WriteDiagonalTensors(onf_);
  const std::string before = ReadTree(onf_);
  EXPECT_EQ(RunQuilon({"derive", onf_, "-o", out_, "--request", "520"}).out,
            out_ + ": 1 block derived\n  nodal-stress-principal: 1\n");
  EXPECT_EQ(ReadTree(onf_), before);
  EXPECT_EQ(RunQuilon({"ls", out_, "--csv"}).out,
            "onf,kind,it,records,size,least,greatest,nan\n"
            "520,nodal-stress-principal,0,1,24,10,30,0\n"
            "521,nodal-stress,0,1,48,0,30,0\n"
            "531,nodal-strain,0,1,48,0,4.57763671875e-05,0\n");
}

TEST_F(DeriveCommand, SecondRunChangesNothing)
{
  WriteDiagonalTensors(onf_);
  RunQuilon({"derive", onf_});
  const std::string before = ReadTree(onf_);
  EXPECT_EQ(RunQuilon({"derive", onf_}).out, onf_ + ": 0 blocks derived\n");
  EXPECT_EQ(ReadTree(onf_), before);
}

TEST_F(DeriveCommand, ContributionsAreAddedOnceHoweverOftenItRuns)
{
  WriteEnergies(onf_);
  EXPECT_EQ(RunQuilon({"derive", onf_}).out, onf_ + ": 1 block derived\n  element-energy: 1\n");
  const std::string sums = "id\tvalue\n1\t1.5\n2\t2.5\n";
  EXPECT_EQ(RunQuilon({"show", onf_, "element-energy"}).out, sums);
  RunQuilon({"derive", onf_});
  EXPECT_EQ(RunQuilon({"show", onf_, "element-energy"}).out, sums);
  EXPECT_EQ(RunQuilon({"ls", onf_, "element-energy-contribution", "--json"}).out, "[]\n");
}

TEST_F(DeriveCommand, EveryIterationIsDerived)
{
  WriteDiagonalTensors(onf_, 0);
  WriteDiagonalTensors(onf_, 4);
  EXPECT_EQ(RunQuilon({"derive", onf_, "--json"}).out,
            "{\n"
            "  \"output\": \"" +
                onf_ +
                "\",\n"
                "  \"blocks\": 4,\n"
                "  \"kinds\": {\n"
                "    \"nodal-strain-principal\": 2,\n"
                "    \"nodal-stress-principal\": 2\n"
                "  }\n"
                "}\n");
}

TEST_F(DeriveCommand, ResultFileNeedsAnOutput)
{
  const RunResult run = RunQuilon({"derive", "job.frd"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err,
            "quilon: error: job.frd: not a database to add results to, expected a working database, an ONF "
            "folder or -o OUT\n");
}

TEST_F(DeriveCommand, HelpHasAnExample)
{
  const RunResult run = RunQuilon({"derive", "--help"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.out.find("  quilon derive bracket.onf --request stress-principal,strain-principal\n"),
            std::string::npos)
      << run.out;
}

}  // namespace
