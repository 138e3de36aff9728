#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class FromOnfCommand : public testing::Test
{
protected:
  void SetUp() override { WriteSmallOnf(onf_); }

  /// The load cases of the displacements in the output, in the order of `quilon ls`.
  std::string LoadCases()
  {
    std::string       loadCases;
    const std::string json = RunQuilon({"ls", out_, "510", "--json"}).out;
    for (std::size_t at = json.find("\"lc\": "); at != std::string::npos; at = json.find("\"lc\": ", at + 1))
      loadCases += json.substr(at + 6, json.find(',', at) - at - 6) + ' ';
    return loadCases;
  }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "small.onf").string();
  std::string out_ = (folder_ / "out.onf").string();
};

TEST_F(FromOnfCommand, KeepsBlocksAsTheyAre)
{
  const RunResult run = RunQuilon({"from-onf", onf_, "-o", out_});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, out_ + ": 8 blocks written\n");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(ReadTree(out_), ReadTree(onf_));
}

TEST_F(FromOnfCommand, OffsetIsAddedToEveryLoadCase)
{
  RunQuilon({"from-onf", onf_, "-o", out_, "--load-case-offset", "10"});
  EXPECT_EQ(LoadCases(), "11 11 12 ");
}

TEST_F(FromOnfCommand, MapComesBeforeTheOffset)
{
  RunQuilon({"from-onf", onf_, "-o", out_, "--load-case-map", "1:5", "--load-case-offset", "10"});
  EXPECT_EQ(LoadCases(), "12 15 15 ");
}

TEST_F(FromOnfCommand, IterationThatABlockHasStays)
{
  RunQuilon({"from-onf", onf_, "-o", out_, "--iteration", "7"});
  EXPECT_EQ(ReadTree(out_), ReadTree(onf_));
}

TEST_F(FromOnfCommand, BlockWithoutIterationGetsIt)
{
  const std::string plain = (folder_ / "plain.onf").string();
  WriteBlockWithoutIteration(plain);
  RunQuilon({"from-onf", plain, "-o", out_, "--iteration", "7"});
  EXPECT_EQ(RunQuilon({"ls", out_, "--csv"}).out,
            "onf,kind,it,records,size,least,greatest,nan\n514,temperature,7,1,8,21.5,21.5,0\n");
}

TEST_F(FromOnfCommand, LoadCasesThatMeetAreAnError)
{
  const RunResult run = RunQuilon({"from-onf", onf_, "-o", out_, "--load-case-map", "1:2"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + onf_ +
                         ": 8 blocks would become 7, expected a load case map and an iteration that keep them apart\n");
  EXPECT_FALSE(std::filesystem::exists(out_));
}

TEST_F(FromOnfCommand, BrokenMapIsAnError)
{
  const RunResult run = RunQuilon({"from-onf", onf_, "-o", out_, "--load-case-map", "4-2"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: the load case map has '4-2', expected OLD:NEW with two integers\n");
}

TEST_F(FromOnfCommand, ReadsOnfFoldersOnly)
{
  EXPECT_EQ(RunQuilon({"from-onf", "none.frd", "-o", out_}).err, "quilon: error: none.frd: not an ONF folder\n");
}

TEST_F(FromOnfCommand, JsonTellsFolderAndCount)
{
  EXPECT_EQ(RunQuilon({"from-onf", onf_, "-o", out_, "--json"}).out,
            "{\n  \"output\": \"" + out_ + "\",\n  \"blocks\": 8\n}\n");
}

TEST_F(FromOnfCommand, VerboseLogNamesTheBlocks)
{
  const std::string log = RunQuilon({"from-onf", onf_, "-o", out_, "-vv"}).err;
  EXPECT_EQ(log.rfind("quilon: ONF has 8 datablocks \n", 0), 0U) << log;
}

TEST_F(FromOnfCommand, OutputIsNeeded)
{
  const RunResult run = RunQuilon({"from-onf", onf_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: --output is missing, see 'quilon from-onf --help'\n");
}

TEST_F(FromOnfCommand, HelpHasAnExample)
{
  const RunResult run = RunQuilon({"from-onf", "--help"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.out.find("  quilon from-onf wing.onf -o all.fed --iteration 3"), std::string::npos) << run.out;
}

TEST_F(FromOnfCommand, VerifiedCopiesAreComparedUnderTheirNewKeys)
{
  const std::string fed = (folder_ / "out.fed").string();
  const RunResult   run = RunQuilon({"from-onf", onf_, "-o", fed, "--verify", "--iteration", "3", "--load-case-map",
                                     "1:7", "--load-case-offset", "100"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, fed + ": 8 blocks written, read back and equal\n");
  EXPECT_EQ(run.exitCode, 0);
}

}  // namespace
