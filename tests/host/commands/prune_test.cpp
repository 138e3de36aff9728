#include <string>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class PruneCommand : public testing::Test
{
protected:
  void SetUp() override
  {
    WriteSmallOnf(onf_);
    RunQuilon({"from-onf", onf_, "-o", fed_});
  }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "small.onf").string();
  std::string fed_ = (folder_ / "small.fed").string();
};

TEST_F(PruneCommand, TakesSelectedBlocksOut)
{
  const RunResult run = RunQuilon({"prune", fed_, "displacement@lc=1"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out,
            "kind\tblock\tsize\n"
            "displacement\t510@it=0,an=1,lc=1,sub=1\t72\n"
            "displacement\t510@it=0,an=1,lc=1,sub=2\t72\n"
            "\n" +
                fed_ + ": 2 blocks pruned, 144 bytes\n");
  EXPECT_EQ(RunQuilon({"ls", fed_, "displacement", "--csv"}).out,
            "onf,kind,it,an,lc,sub,records,size,least,greatest,nan\n"
            "510,displacement,0,1,2,1,3,72,0,0.25,0\n");
  // The other blocks keep every value.
  EXPECT_EQ(RunQuilon({"diff", onf_, fed_, "--select", "510@lc=2"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", onf_, fed_, "--select", "521,582,595,1000,500", "--nan", "equal"}).exitCode, 0);
}

TEST_F(PruneCommand, ADryRunTellsTheSameAndChangesNothing)
{
  const std::string before = ReadTree(fed_);
  EXPECT_EQ(RunQuilon({"prune", fed_, "stress", "--dry-run"}).out,
            "kind\tblock\tsize\n"
            "nodal-stress\t521@it=0,an=1,lc=1,sub=2\t96\n"
            "\n" +
                fed_ + ": 1 block would be pruned, 96 bytes\n");
  EXPECT_EQ(ReadTree(fed_), before);
}

TEST_F(PruneCommand, JsonNamesTheBlocks)
{
  EXPECT_EQ(RunQuilon({"prune", fed_, "wear", "--json"}).out,
            "{\n"
            "  \"database\": \"" +
                fed_ +
                "\",\n"
                "  \"pruned\": true,\n"
                "  \"size\": 8,\n"
                "  \"blocks\": [\n"
                "    {\n"
                "      \"block\": \"1000@it=0,an=1,lc=1,sub=2\",\n"
                "      \"kind\": \"Wear depth\",\n"
                "      \"size\": 8\n"
                "    }\n"
                "  ]\n"
                "}\n");
}

TEST_F(PruneCommand, ASelectionThatMatchesNothingIsAnError)
{
  const std::string before = ReadTree(fed_);
  const RunResult   run    = RunQuilon({"prune", fed_, "velocity"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + fed_ + ": no block matches 'velocity'\n");
  EXPECT_EQ(ReadTree(fed_), before);
}

TEST_F(PruneCommand, AFolderOfTextIsRefused)
{
  const RunResult run = RunQuilon({"prune", onf_, "stress"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err,
            "quilon: error: " + onf_ + ": not a working database (.fed), expected one to take blocks out of\n");
}

TEST_F(PruneCommand, HelpHasAnExample)
{
  EXPECT_NE(RunQuilon({"prune", "--help"}).out.find("  quilon prune bracket.fed 582,583 --dry-run\n"),
            std::string::npos);
}

}  // namespace
