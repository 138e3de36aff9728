// Working databases on disk under every command that takes or writes a database.

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "program_support.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

using namespace quilon_test;

class WorkingDatabase : public testing::Test
{
protected:
  void SetUp() override { WriteSmallOnf(onf_); }

  RunResult FromOnf() { return RunQuilon({"from-onf", onf_, "-o", fed_}); }

  static std::string List(const std::string& database) { return RunQuilon({"ls", database, "--csv"}).out; }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "small.onf").string();
  std::string fed_ = (folder_ / "small.fed").string();
  std::string frd_ = std::string(QUILON_FIXTURES) + "/calculix/a_tet/a_tet.frd";
  std::string dat_ = std::string(QUILON_FIXTURES) + "/calculix/a_tet/a_tet.dat";
};

TEST_F(WorkingDatabase, HoldsAndListsWhatAnOnfFolderHolds)
{
  const RunResult run = FromOnf();
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_FALSE(List(onf_).empty());
  EXPECT_EQ(List(fed_), List(onf_));
  EXPECT_EQ(RunQuilon({"show", fed_, "displacement@lc=1,sub=2", "--csv"}).out,
            RunQuilon({"show", onf_, "displacement@lc=1,sub=2", "--csv"}).out);
}

// Text of equal databases is equal byte by byte, so this compares every value.
TEST_F(WorkingDatabase, GoesBackToTheSameText)
{
  FromOnf();
  const std::string back = (folder_ / "back.onf").string();
  EXPECT_EQ(RunQuilon({"to-onf", fed_, back}).exitCode, 0);
  std::size_t files = 0;
  for (const auto& entry : fs::directory_iterator(onf_)) {
    ++files;
    EXPECT_EQ(ReadAll(entry.path()), ReadAll(fs::path(back) / entry.path().filename())) << entry.path();
  }
  EXPECT_EQ(files, static_cast<std::size_t>(std::distance(fs::directory_iterator(back), fs::directory_iterator())));
}

TEST_F(WorkingDatabase, TakesAnImportAsAnOnfFolderDoes)
{
  const std::string onf = (folder_ / "job.onf").string();
  const std::string fed = (folder_ / "job.fed").string();
  EXPECT_EQ(RunQuilon({"import", frd_, dat_, "-o", onf}).exitCode, 0);
  const RunResult run = RunQuilon({"import", frd_, dat_, "-o", fed});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(List(fed), List(onf));
}

TEST_F(WorkingDatabase, ASecondImportReplacesEqualBlocksAndLeavesOthers)
{
  RunQuilon({"import", frd_, dat_, "-o", fed_});
  const std::string once = List(fed_);
  EXPECT_EQ(RunQuilon({"import", frd_, dat_, "-o", fed_}).exitCode, 0);
  EXPECT_EQ(List(fed_), once);

  EXPECT_EQ(RunQuilon({"import", frd_, dat_, "-o", fed_, "--iteration", "1"}).exitCode, 0);
  const nlohmann::json all = nlohmann::json::parse(RunQuilon({"ls", fed_, "--json"}).out);
  EXPECT_EQ(all.size(), 2U * 95U);
}

TEST_F(WorkingDatabase, BadInputLeavesItAsItWas)
{
  FromOnf();
  const std::string before = List(fed_);
  const std::string bad    = (folder_ / "bad.frd").string();
  const std::string text   = ReadAll(frd_);
  std::ofstream(bad, std::ios::binary) << text.substr(0, text.size() / 2);
  EXPECT_EQ(RunQuilon({"import", bad, "-o", fed_}).exitCode, 2);
  EXPECT_EQ(List(fed_), before);
}

TEST_F(WorkingDatabase, BadInputMakesNone)
{
  const std::string fed = (folder_ / "new.fed").string();
  EXPECT_EQ(RunQuilon({"import", (folder_ / "missing.frd").string(), "-o", fed}).exitCode, 2);
  EXPECT_FALSE(fs::exists(fed));
}

TEST_F(WorkingDatabase, AnInterruptLeavesItAsItWas)
{
  FromOnf();
  const std::string before = List(fed_);
  EXPECT_EQ(RunQuilon({"import", frd_, dat_, "-o", fed_}, {.interrupted = true}).exitCode, 130);
  EXPECT_EQ(List(fed_), before);
}

TEST_F(WorkingDatabase, IsDerivedInPlace)
{
  const std::string onf = (folder_ / "tensors.onf").string();
  WriteDiagonalTensors(onf);
  RunQuilon({"from-onf", onf, "-o", fed_});
  EXPECT_EQ(RunQuilon({"derive", fed_}).out,
            fed_ + ": 2 blocks derived\n  nodal-strain-principal: 1\n  nodal-stress-principal: 1\n");
  RunQuilon({"derive", onf});
  EXPECT_EQ(List(fed_), List(onf));
}

// A text database can only empty a block; here it goes.
TEST_F(WorkingDatabase, ContributionsThatWereAddedGo)
{
  const std::string onf = (folder_ / "energies.onf").string();
  WriteEnergies(onf);
  RunQuilon({"from-onf", onf, "-o", fed_});
  EXPECT_EQ(RunQuilon({"derive", fed_}).exitCode, 0);
  const nlohmann::json blocks = nlohmann::json::parse(RunQuilon({"ls", fed_, "--json"}).out);
  ASSERT_EQ(blocks.size(), 1U);
  EXPECT_EQ(blocks.at(0).at("onf"), 540);
}

TEST_F(WorkingDatabase, HasOneWriterAtATime)
{
  FromOnf();
  const FED_ResultDatabase writer(fed_, FED_ResultDatabase::ReadWrite);
  const RunResult          run = RunQuilon({"from-onf", onf_, "-o", fed_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find(fed_), std::string::npos) << run.err;
  EXPECT_EQ(RunQuilon({"ls", fed_}).exitCode, 0);
}

// The limits stop a commit in the front of a segment, behind it, and in a merge of all segments.
TEST_F(WorkingDatabase, AFullDiskIsAnErrorAndLeavesItAsItWas)
{
  const std::string tensors = (folder_ / "tensors.onf").string();
  WriteDiagonalTensors(tensors);
  RunQuilon({"from-onf", tensors, "-o", fed_});
  ASSERT_EQ(RunQuilon({"import", frd_, dat_, "-o", fed_, "--iteration", "1"}).exitCode, 0);
  const std::string before = ReadTree(fed_);

  using Arguments            = std::vector<std::string>;
  const Arguments commands[] = {{"import", frd_, dat_, "-o", fed_, "--keep-others"},
                                {"from-onf", tensors, "-o", fed_},
                                {"derive", fed_},
                                {"prune", fed_, "stress@it=1"},
                                {"compact", fed_}};
  for (const std::size_t limit : {1000U, 1400U}) {
    for (const Arguments& arguments : commands) {
      const RunResult run = RunQuilon(arguments, {.fileLimit = limit});
      EXPECT_EQ(run.exitCode, 2) << arguments.front() << ' ' << limit << '\n' << run.out;
      EXPECT_EQ(run.err.rfind("quilon: error: " + fed_ + "/segment-", 0), 0U) << run.err;
      EXPECT_TRUE(run.err.ends_with(": cannot write: File too large\n")) << run.err;
      EXPECT_EQ(ReadTree(fed_), before) << arguments.front() << ' ' << limit;
    }
  }
}

TEST_F(WorkingDatabase, AFullDiskMakesNone)
{
  const std::string fed = (folder_ / "new.fed").string();
  for (const std::size_t limit : {1000U, 20000U, 60000U}) {
    const RunResult run = RunQuilon({"import", frd_, dat_, "-o", fed}, {.fileLimit = limit});
    EXPECT_EQ(run.exitCode, 2) << limit;
    EXPECT_EQ(run.err, "quilon: error: " + fed + "/segment-000001.h5: cannot write: File too large\n");
    EXPECT_FALSE(fs::exists(fed)) << limit;
  }
}

// A killed program leaves its lock, and perhaps a manifest that was never renamed.
TEST_F(WorkingDatabase, WhatAKilledWriterLeftBeforeItsFirstSegmentIsNoObstacle)
{
  fs::create_directory(fed_);
  for (const char* name : {"lock", "manifest.new"}) std::ofstream(fs::path(fed_) / name) << "";
  EXPECT_EQ(FromOnf().err, "");
  EXPECT_EQ(List(fed_), List(onf_));
  EXPECT_FALSE(fs::exists(fs::path(fed_) / "manifest.new"));
}

// They may be all that is left of a database, and a writer would remove them.
TEST_F(WorkingDatabase, SegmentsWithoutAManifestAreLeftAlone)
{
  FromOnf();
  fs::remove(fs::path(fed_) / "manifest");
  const std::string before = ReadTree(fed_);
  EXPECT_EQ(FromOnf().err, "quilon: error: " + fed_ +
                               ": segments without a manifest, of a damaged database, expected a working database or "
                               "the name of a new one; 'quilon salvage' saves what is whole of them\n");
  EXPECT_EQ(ReadTree(fed_), before);
}

// A writer that was killed before its first commit, with segments already: its mark tells them from a database's.
TEST_F(WorkingDatabase, SegmentsOfAKilledFirstWriterAreNoObstacle)
{
  FromOnf();
  const fs::path mark = fs::path(fed_) / "unpublished";
  EXPECT_FALSE(fs::exists(mark)) << "it goes with the first commit";
  fs::rename(fs::path(fed_) / "segment-000001.h5", fs::path(fed_) / "segment-000007.h5");
  fs::remove(fs::path(fed_) / "manifest");
  std::ofstream(mark) << "";
  EXPECT_EQ(FromOnf().err, "");
  EXPECT_EQ(List(fed_), List(onf_));
  EXPECT_FALSE(fs::exists(mark));
  EXPECT_FALSE(fs::exists(fs::path(fed_) / "segment-000007.h5"));
  // Killed right behind the first commit.
  std::ofstream(mark) << "";
  EXPECT_EQ(FromOnf().err, "");
  EXPECT_FALSE(fs::exists(mark));
}

TEST_F(WorkingDatabase, NothingElseIsWrittenIntoIt)
{
  FromOnf();
  const std::string inside = fed_ + "/segment-000009.h5";
  EXPECT_EQ(RunQuilon({"to-onf", onf_, inside}).err,
            "quilon: error: " + inside + ": inside a working database, expected a place outside\n");
  EXPECT_FALSE(fs::exists(inside));
}

// Probing every index up to the last would take minutes.
TEST_F(WorkingDatabase, SizesCostNoWalkOverIndicesWithoutRecords)
{
  {
    FED_ResultDatabase database(fed_, FED_ResultDatabase::Create);
    database.GetOrCreateDataBlock(FED_DataDescriptor(0, FED_OnfId_ScalarHistory), 0).SetScalarAt(2147483647, 1.0);
    database.Commit();
  }
  EXPECT_NE(RunQuilon({"size", fed_}).out.find("\n1 block, 8 bytes\n"), std::string::npos);
  EXPECT_NE(RunQuilon({"prune", fed_, "500", "--dry-run"}).out.find(": 1 block would be pruned, 8 bytes\n"),
            std::string::npos);
}

TEST_F(WorkingDatabase, AFolderWithOtherFilesIsRefused)
{
  fs::create_directory(fed_);
  std::ofstream(fs::path(fed_) / "notes.txt") << "mine";
  EXPECT_EQ(FromOnf().err, "quilon: error: " + fed_ +
                               ": a folder with other files, expected a working database or the name of a new one\n");
  EXPECT_EQ(ReadAll(fs::path(fed_) / "notes.txt"), "mine");
}

}  // namespace
