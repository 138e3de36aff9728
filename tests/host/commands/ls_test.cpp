#include <string>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class LsCommand : public testing::Test
{
protected:
  void SetUp() override { WriteSmallOnf(onf_); }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "small.onf").string();
};

const char* const kHeader = "onf\tkind\tit\tan\tlc\tsub\trecords\tsize\tleast\tgreatest\tnan\n";

TEST_F(LsCommand, ListsEveryBlock)
{
  const RunResult run = RunQuilon({"ls", onf_});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, std::string(kHeader) +
                         "500\teigenvalue\t0\t-\t1\t1\t2\t16\t4\t9\t0\n"
                         "510\tdisplacement\t0\t1\t1\t1\t3\t72\t-2\t4\t0\n"
                         "510\tdisplacement\t0\t1\t1\t2\t3\t72\t-4\t8\t0\n"
                         "510\tdisplacement\t0\t1\t2\t1\t3\t72\t0\t0.25\t0\n"
                         "521\tnodal-stress\t0\t1\t1\t2\t2\t96\t-7.5\t100\t1\n"
                         "582\tintegration-point-stress\t0\t1\t1\t2\t1\t104\t-6.5\t6\t0\n"
                         "595\telement-nodes\t0\t-\t-\t-\t1\t16\t3\t20\t0\n"
                         "1000\tWear depth\t0\t1\t1\t2\t1\t8\t0.125\t0.125\t0\n");
}

TEST_F(LsCommand, ListsSelectedBlocksOnly)
{
  EXPECT_EQ(RunQuilon({"ls", onf_, "displacement@lc=1,sub=last"}).out,
            std::string(kHeader) + "510\tdisplacement\t0\t1\t1\t2\t3\t72\t-4\t8\t0\n");
  EXPECT_EQ(RunQuilon({"ls", onf_, "eigenvalue"}).out,
            "onf\tkind\tit\tlc\tsub\trecords\tsize\tleast\tgreatest\tnan\n"
            "500\teigenvalue\t0\t1\t1\t2\t16\t4\t9\t0\n");
  EXPECT_EQ(RunQuilon({"ls", onf_, "wear"}).out,
            std::string(kHeader) + "1000\tWear depth\t0\t1\t1\t2\t1\t8\t0.125\t0.125\t0\n");
}

TEST_F(LsCommand, SelectionThatMatchesNothingListsNothing)
{
  const RunResult run = RunQuilon({"ls", onf_, "velocity"});
  EXPECT_EQ(run.out, "onf\tkind\trecords\tsize\tleast\tgreatest\tnan\n");
  EXPECT_EQ(run.err, "quilon: note: " + onf_ + ": no block matches 'velocity'\n");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(RunQuilon({"ls", onf_, "--steps", "99"}).err,
            "quilon: error: step 99 is not there, expected positions from 1 to 3\n");
  EXPECT_EQ(RunQuilon({"size", onf_, "velocity"}).err, run.err);
}

TEST_F(LsCommand, StepsAreSelectedByPosition)
{
  EXPECT_EQ(RunQuilon({"ls", onf_, "510", "--steps", "1:3:2"}).out,
            std::string(kHeader) +
                "510\tdisplacement\t0\t1\t1\t1\t3\t72\t-2\t4\t0\n"
                "510\tdisplacement\t0\t1\t2\t1\t3\t72\t0\t0.25\t0\n");
}

TEST_F(LsCommand, TableIsAlignedWhereAskedFor)
{
  EXPECT_EQ(RunQuilon({"ls", onf_, "510,521", "--table"}).out,
            "onf  kind          it  an  lc  sub  records  size  least  greatest  nan\n"
            "510  displacement   0   1   1    1        3  72 B     -2         4    0\n"
            "510  displacement   0   1   1    2        3  72 B     -4         8    0\n"
            "510  displacement   0   1   2    1        3  72 B      0      0.25    0\n"
            "521  nodal-stress   0   1   1    2        2  96 B   -7.5       100    1\n"
            "4 blocks, 312 B\n");
}

TEST_F(LsCommand, TerminalGetsAlignedTableWithBoldHeader)
{
  const std::string header = "onf  kind        it  lc  sub  records  size  least  greatest  nan";
  const std::string rest   = "500  eigenvalue   0   1    1        2  16 B      4         9    0\n1 block, 16 B\n";
  EXPECT_EQ(RunQuilonOnTerminal({"ls", onf_, "500"}, {.environment = {"TERM=xterm", "NO_COLOR="}}).out,
            "\x1b[1m" + header + "\x1b[0m\n" + rest);
  EXPECT_EQ(RunQuilonOnTerminal({"ls", onf_, "500"}, {.environment = {"TERM=xterm", "NO_COLOR=1"}}).out,
            header + "\n" + rest);
  EXPECT_EQ(RunQuilonOnTerminal({"ls", onf_, "500"}, {.environment = {"TERM=dumb", "NO_COLOR="}}).out,
            header + "\n" + rest);
}

TEST_F(LsCommand, CsvHasEmptyCellsForWhatIsNotSet)
{
  EXPECT_EQ(RunQuilon({"ls", onf_, "521,595", "--csv"}).out,
            "onf,kind,it,an,lc,sub,records,size,least,greatest,nan\n"
            "521,nodal-stress,0,1,1,2,2,96,-7.5,100,1\n"
            "595,element-nodes,0,,,,1,16,3,20,0\n");
}

TEST_F(LsCommand, JsonNamesEachBlockAsASelection)
{
  EXPECT_EQ(RunQuilon({"ls", onf_, "521", "--json"}).out,
            "[\n"
            "  {\n"
            "    \"block\": \"521@it=0,an=1,lc=1,sub=2\",\n"
            "    \"onf\": 521,\n"
            "    \"kind\": \"nodal-stress\",\n"
            "    \"it\": 0,\n"
            "    \"an\": 1,\n"
            "    \"lc\": 1,\n"
            "    \"sub\": 2,\n"
            "    \"records\": 2,\n"
            "    \"size\": 96,\n"
            "    \"least\": -7.5,\n"
            "    \"greatest\": 100.0,\n"
            "    \"nan\": 1\n"
            "  }\n"
            "]\n");
  EXPECT_EQ(RunQuilon({"ls", onf_, "velocity", "--json"}).out, "[]\n");
}

TEST_F(LsCommand, FormsOfOutputExcludeEachOther)
{
  const RunResult run = RunQuilon({"ls", onf_, "--json", "--csv"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: --json, --csv and --table exclude each other, expected one at most\n");
}

TEST_F(LsCommand, PathThatIsNoDatabaseIsAnError)
{
  const std::string accepted =
      "expected a working database (.fed), an ONF folder or a solver result file (.frd, .dat)\n";
  const std::string none = (folder_ / "none").string();
  const std::string text = onf_ + "/index";
  const std::string fed  = (folder_ / "a.fed").string();
  std::filesystem::create_directory(fed);
  const std::string parent = folder_.GetPath().string();

  EXPECT_EQ(RunQuilon({"ls", none}).err, "quilon: error: " + none + ": no such file or folder, " + accepted);
  EXPECT_EQ(RunQuilon({"ls", text}).err, "quilon: error: " + text + ": not a database, " + accepted);
  EXPECT_EQ(RunQuilon({"ls", parent}).err,
            "quilon: error: " + parent + ": a folder without a file 'manifest' or 'index', " + accepted);
  const RunResult run = RunQuilon({"ls", fed});
  EXPECT_EQ(run.err, "quilon: error: " + fed + ": not a database: it has no manifest\n");
  EXPECT_EQ(run.exitCode, 2);
}

TEST_F(LsCommand, UnknownKindGetsASuggestion)
{
  const RunResult run = RunQuilon({"ls", onf_, "strss@lc=1"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: unknown kind 'strss', did you mean 'stress'?\n");
}

TEST_F(LsCommand, HelpHasAnExample)
{
  const RunResult run = RunQuilon({"ls", "--help"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("Usage: quilon ls [OPTIONS] DB [SELECTION]\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("  quilon ls bracket.onf stress,strain@lc=2,sub=last\n"), std::string::npos) << run.out;
}

TEST_F(LsCommand, DatabaseIsNeeded)
{
  const RunResult run = RunQuilon({"ls"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: DB is missing, see 'quilon ls --help'\n");
}

}  // namespace
