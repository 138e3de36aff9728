#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class ToOnfCommand : public testing::Test
{
protected:
  void SetUp() override { WriteSmallOnf(onf_); }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "small.onf").string();
  std::string out_ = (folder_ / "out.onf").string();
};

TEST_F(ToOnfCommand, CopyOfAFolderHasTheSameBytes)
{
  const RunResult run = RunQuilon({"to-onf", onf_, out_});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, out_ + ": 8 blocks written\n");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(ReadTree(out_), ReadTree(onf_));
}

TEST_F(ToOnfCommand, WritesSelectedBlocks)
{
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out_, "--select", "stress,wear"}).out, out_ + ": 2 blocks written\n");
  EXPECT_EQ(RunQuilon({"ls", out_}).out,
            "onf\tkind\tit\tan\tlc\tsub\trecords\tsize\tleast\tgreatest\tnan\n"
            "521\tnodal-stress\t0\t1\t1\t2\t2\t96\t-7.5\t100\t1\n"
            "1000\tWear depth\t0\t1\t1\t2\t1\t8\t0.125\t0.125\t0\n");
}

TEST_F(ToOnfCommand, WritesSelectedSteps)
{
  // Of load case 2: its displacement, and the element nodes that belong to all steps.
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out_, "--steps", "last"}).out, out_ + ": 2 blocks written\n");
}

TEST_F(ToOnfCommand, OtherBlocksOfTheFolderStay)
{
  RunQuilon({"to-onf", onf_, out_, "--select", "stress"});
  RunQuilon({"to-onf", onf_, out_, "--select", "wear"});
  EXPECT_EQ(RunQuilon({"ls", out_, "@it=0", "--csv"}).out,
            "onf,kind,it,an,lc,sub,records,size,least,greatest,nan\n"
            "521,nodal-stress,0,1,1,2,2,96,-7.5,100,1\n"
            "1000,Wear depth,0,1,1,2,1,8,0.125,0.125,0\n");
}

TEST_F(ToOnfCommand, JsonTellsFolderAndCount)
{
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out_, "--json"}).out,
            "{\n  \"output\": \"" + out_ + "\",\n  \"blocks\": 8\n}\n");
}

TEST_F(ToOnfCommand, VerifiedCopiesSaySo)
{
  const RunResult run = RunQuilon({"to-onf", onf_, out_, "--verify"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, out_ + ": 8 blocks written, read back and equal\n");
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out_, "--verify", "--select", "stress", "--json"}).out,
            "{\n  \"output\": \"" + out_ + "\",\n  \"blocks\": 1,\n  \"verified\": true\n}\n");
}

TEST_F(ToOnfCommand, SelectionThatMatchesNothingWritesNothing)
{
  const RunResult run = RunQuilon({"to-onf", onf_, out_, "--select", "velocity"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + onf_ + ": no block matches 'velocity'\n");
  EXPECT_FALSE(std::filesystem::exists(out_));
}

TEST_F(ToOnfCommand, FolderOfOtherFilesIsNotWrittenTo)
{
  const std::string parent = folder_.GetPath().string();
  const RunResult   run    = RunQuilon({"to-onf", onf_, parent});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + parent +
                         ": a folder with other files, expected an ONF folder or the name of a new one\n");
}

// A first publication that was killed leaves these and no index.
TEST_F(ToOnfCommand, WhatAKilledPublicationLeftIsNoObstacle)
{
  std::filesystem::create_directory(out_);
  for (const char* name : {"index.new", "nodal-stress_it0.onf.new"})
    std::ofstream(std::filesystem::path(out_) / name) << "half";
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out_}).err, "");
  EXPECT_EQ(ReadTree(out_), ReadTree(onf_));
}

// Only kinds that are written need one name.
TEST_F(ToOnfCommand, UserKindOfAnotherNameMattersWhereItIsWrittenOnly)
{
  WriteNamedUserKind(out_, "Crack length");
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out_, "--select", "stress"}).err, "");
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out_, "--select", "wear"}).exitCode, 2);
}

TEST_F(ToOnfCommand, FileIsNotWrittenTo)
{
  const std::string file = onf_ + "/index";
  EXPECT_EQ(RunQuilon({"to-onf", onf_, file}).err,
            "quilon: error: " + file + ": not a folder, expected an ONF folder or the name of a new one\n");
}

TEST_F(ToOnfCommand, FolderNeedsAParent)
{
  const std::string parent = (folder_ / "none").string();
  EXPECT_EQ(RunQuilon({"to-onf", onf_, parent + "/out.onf"}).err,
            "quilon: error: " + parent + "/out.onf: no folder " + parent + " to make it in\n");
}

TEST_F(ToOnfCommand, WorkingDatabaseIsNoOnfFolder)
{
  const std::string fed = (folder_ / "out.fed").string();
  EXPECT_EQ(RunQuilon({"to-onf", onf_, fed}).err,
            "quilon: error: " + fed + ": a working database, expected the name of an ONF folder\n");
  EXPECT_FALSE(std::filesystem::exists(fed));
}

TEST_F(ToOnfCommand, UserKindOfAnotherNameIsRefused)
{
  WriteNamedUserKind(out_, "Crack length");
  const std::string before = ReadTree(out_);
  const RunResult   run    = RunQuilon({"to-onf", onf_, out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + out_ +
                         ": kind 1000 is 'Crack length' here and 'Wear depth' in what is written, expected one name\n");
  EXPECT_EQ(ReadTree(out_), before);
}

TEST_F(ToOnfCommand, HelpHasAnExample)
{
  const RunResult run = RunQuilon({"to-onf", "--help"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.out.find("  quilon to-onf job.frd job.onf\n"), std::string::npos) << run.out;
}

}  // namespace
