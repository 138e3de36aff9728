// check, salvage and compact.

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "program_support.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

using namespace quilon_test;
using nlohmann::json;

class HealthCommands : public testing::Test
{
protected:
  /// A working database of a whole import: 95 blocks.
  void SetUp() override
  {
    const std::string fixture = std::string(QUILON_FIXTURES) + "/calculix/a_tet/a_tet";
    ASSERT_EQ(RunQuilon({"import", fixture + ".frd", fixture + ".dat", "-o", fed_}).exitCode, 0);
  }

  /// The report of a whole database or a damaged one is the same to the byte for any number of threads.
  void ExpectOneReport() const
  {
    const RunResult one = RunQuilon({"check", fed_, "--jobs", "1"});
    for (const char* jobs : {"2", "3", "8"}) {
      const RunResult many = RunQuilon({"check", fed_, "--jobs", jobs});
      EXPECT_EQ(many.out, one.out) << jobs;
      EXPECT_EQ(many.exitCode, one.exitCode) << jobs;
    }
  }

  static std::string List(const std::string& database) { return RunQuilon({"ls", database, "--csv"}).out; }

  TempFolder  folder_;
  std::string fed_ = (folder_ / "job.fed").string();
  std::string new_ = (folder_ / "new.fed").string();
};

TEST_F(HealthCommands, CheckFindsNothingInAWholeDatabase)
{
  const RunResult run = RunQuilon({"check", fed_, "--json"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const json report = json::parse(run.out);
  EXPECT_EQ(report.at("whole"), true);
  EXPECT_EQ(report.at("blocks"), 97);  // 95 of results and two that tell where they are from
  EXPECT_TRUE(report.at("findings").empty());
  EXPECT_TRUE(report.at("leftovers").empty());
  EXPECT_EQ(RunQuilon({"check", fed_}).out.rfind(fed_ + ": whole, 97 blocks, ", 0), 0U);
}

TEST_F(HealthCommands, CheckReadsWhatIsNoWorkingDatabaseToo)
{
  const std::string onf = (folder_ / "job.onf").string();
  WriteSmallOnf(onf);
  EXPECT_EQ(RunQuilon({"check", onf}).out.rfind(onf + ": whole, ", 0), 0U);
  fs::path block;
  for (const auto& entry : fs::directory_iterator(onf))
    if (entry.path().filename() != "index") block = entry.path();
  std::ofstream(block, std::ios::app) << "x\n";
  const RunResult run = RunQuilon({"check", onf});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.out.find(block.string() + ":"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(onf + ": 1 finding, "), std::string::npos) << run.out;
}

TEST_F(HealthCommands, CheckNamesFileBlockAndChunkOfDamage)
{
  DamageBlock(fed_, "displacement@lc=1");
  const RunResult run = RunQuilon({"check", fed_});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(
      run.out.rfind(SegmentOf(fed_).string() + ": chunk 0 (rows 0 to 62) of block iteration=0 onf=510 load-case=1", 0),
      0U)
      << run.out;
}

TEST_F(HealthCommands, CheckNamesLeftovers)
{
  std::ofstream(fs::path(fed_) / "segment-000099.h5") << "half";
  const RunResult run = RunQuilon({"check", fed_});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.out.find("segment-000099.h5: left by a commit that did not happen"), std::string::npos) << run.out;
}

TEST_F(HealthCommands, CheckOfNoDatabaseIsAnError)
{
  const std::string missing = (folder_ / "none.onf").string();
  const RunResult   run     = RunQuilon({"check", missing});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err.rfind("quilon: error: " + missing + ": no such file or folder, ", 0), 0U) << run.err;
}

TEST_F(HealthCommands, DamageIsAnErrorWhereItIsReadAndNowhereElse)
{
  DamageBlock(fed_, "displacement@lc=1");
  const RunResult run = RunQuilon({"show", fed_, "displacement@lc=1"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find(SegmentOf(fed_).string() + ": chunk 0"), std::string::npos) << run.err;
  EXPECT_EQ(RunQuilon({"show", fed_, "stress@lc=1"}).exitCode, 0);
}

TEST_F(HealthCommands, SalvageOfAWholeDatabaseLosesNothing)
{
  const RunResult run = RunQuilon({"salvage", fed_, "-o", new_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.out.find(new_ + ": 97 blocks and "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(" saved, nothing lost\n"), std::string::npos) << run.out;
  EXPECT_EQ(List(new_), List(fed_));
}

TEST_F(HealthCommands, SalvageSavesAllButTheDamagedChunk)
{
  const std::string whole = List(fed_);
  DamageBlock(fed_, "displacement@lc=1");
  const RunResult run = RunQuilon({"salvage", fed_, "-o", new_, "--json"});
  EXPECT_EQ(run.exitCode, 1) << run.err;
  const json report = json::parse(run.out);
  EXPECT_EQ(report.at("blocks"), 96);
  EXPECT_EQ(report.at("lost-records"), 63);
  EXPECT_EQ(report.at("losses").size(), 1U);
  // What is left is what was there, but for the one block.
  std::string       expected = whole;
  const std::size_t line     = expected.find("\n510,displacement,0,1,1,1,") + 1;
  ASSERT_NE(line, 0U);
  expected.erase(line, expected.find('\n', line) + 1 - line);
  EXPECT_EQ(List(new_), expected);
  EXPECT_EQ(RunQuilon({"check", new_}).exitCode, 0);
}

TEST_F(HealthCommands, SalvageNeedsNoManifest)
{
  const std::string whole = List(fed_);
  fs::remove(fs::path(fed_) / "manifest");
  EXPECT_EQ(RunQuilon({"ls", fed_}).exitCode, 2);
  const RunResult run = RunQuilon({"salvage", fed_, "-o", new_});
  EXPECT_EQ(run.exitCode, 1) << run.err;
  EXPECT_EQ(run.out.rfind(fed_ + ": not a database: it has no manifest\n"
                                 "without a manifest all whole segments count: what is saved may hold changes that "
                                 "were never committed\n",
                          0),
            0U)
      << run.out;
  EXPECT_EQ(List(new_), whole);
}

TEST_F(HealthCommands, WhatLacksItsManifestIsNamedHoweverItsPathEnds)
{
  fs::remove(fs::path(fed_) / "manifest");
  const std::string lacks = ": not a database: it has no manifest\n";
  EXPECT_EQ(RunQuilon({"check", fed_ + '/'}).exitCode, 1);
  EXPECT_EQ(RunQuilon({"ls", fed_ + '/'}).err, "quilon: error: " + fed_ + lacks);
  EXPECT_EQ(RunQuilon({"compact", fed_}).err, "quilon: error: " + fed_ + lacks);
  EXPECT_EQ(RunQuilon({"prune", fed_, "stress"}).err, "quilon: error: " + fed_ + lacks);
  EXPECT_EQ(RunQuilon({"derive", fed_}).err, "quilon: error: " + fed_ + lacks);
}

TEST_F(HealthCommands, SalvageWritesNothingIntoTheDamagedDatabase)
{
  const std::string inside = fed_ + "/new.fed";
  const RunResult   run    = RunQuilon({"salvage", fed_, "-o", inside});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + inside + ": inside a working database, expected a place outside\n");
  EXPECT_FALSE(fs::exists(inside));
}

// Nothing of the block is read: its size stands in the index.
TEST_F(HealthCommands, ADamagedBlockCanBePruned)
{
  DamageBlock(fed_, "displacement@lc=1");
  const RunResult run = RunQuilon({"prune", fed_, "displacement@lc=1"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.out.find(fed_ + ": 1 block pruned, 1512 bytes\n"), std::string::npos) << run.out;
  EXPECT_EQ(RunQuilon({"compact", fed_}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"check", fed_}).exitCode, 0);
}

// What stood behind the cut nobody knows.
TEST_F(HealthCommands, SalvageOfAFileThatWasCutIsNoSuccess)
{
  const fs::path segment = fs::path(fed_) / "segment-000001.h5";
  fs::resize_file(segment, fs::file_size(segment) - 1);
  EXPECT_EQ(RunQuilon({"salvage", fed_, "-o", new_}).exitCode, 1);
  const std::string help = RunQuilon({"salvage", "--help"}).out;
  EXPECT_NE(help.find("(a file that was cut, no manifest), 2 when"), std::string::npos) << help;
}

TEST_F(HealthCommands, SalvageWritesToNothingThatExists)
{
  fs::create_directory(new_);
  const RunResult run = RunQuilon({"salvage", fed_, "-o", new_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + new_ + ": exists, expected the name of a new database\n");
}

TEST_F(HealthCommands, SalvageOfRubbishWritesNothing)
{
  const std::string rubbish = (folder_ / "rubbish.fed").string();
  fs::create_directory(rubbish);
  std::ofstream(fs::path(rubbish) / "segment-000001.h5") << "rubbish";
  const RunResult run = RunQuilon({"salvage", rubbish, "-o", new_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + rubbish + ": nothing whole was found, nothing is written\n");
  EXPECT_FALSE(fs::exists(new_));
}

TEST_F(HealthCommands, CompactGivesBytesBack)
{
  const std::string fixture = std::string(QUILON_FIXTURES) + "/calculix/a_tet/a_tet";
  for (const char* iteration : {"1", "2", "3"})
    ASSERT_EQ(RunQuilon({"import", fixture + ".dat", fixture + ".frd", "-o", fed_, "--iteration", iteration}).exitCode,
              0);
  const std::string before = List(fed_);
  const json        report = json::parse(RunQuilon({"compact", fed_, "--json"}).out);
  EXPECT_LT(report.at("bytes-after"), report.at("bytes-before"));
  EXPECT_EQ(List(fed_), before);
  const json check = json::parse(RunQuilon({"check", fed_, "--json"}).out);
  EXPECT_EQ(check.at("segments"), 1);
  EXPECT_EQ(check.at("dead-bytes"), 0);
}

TEST_F(HealthCommands, CompactGivesBytesBackInPieces)
{
  const std::string fixture = std::string(QUILON_FIXTURES) + "/calculix/a_tet/a_tet";
  for (const char* iteration : {"1", "2", "3"})
    ASSERT_EQ(RunQuilon({"import", fixture + ".dat", fixture + ".frd", "-o", fed_, "--iteration", iteration}).exitCode,
              0);
  ASSERT_EQ(RunQuilon({"prune", fed_, "nodal-strain"}).exitCode, 0);
  const std::string before = List(fed_);
  const json        little = json::parse(RunQuilon({"compact", fed_, "--incremental", "--room", "10K", "--json"}).out);
  EXPECT_EQ(little.at("pieces"), 0);
  EXPECT_GE(little.at("kept-files"), 1);
  EXPECT_GT(little.at("room-for-all"), 10240);
  const RunResult told = RunQuilon({"compact", fed_, "--incremental", "--room", "10K"});
  EXPECT_NE(told.out.find(", --room 10K is less than the "), std::string::npos) << told.out;
  // Before it begins, too.
  EXPECT_NE(told.err.find(" to give back stay as they are: a room of 10 KiB is less than the "), std::string::npos)
      << told.err;
  const json report = json::parse(RunQuilon({"compact", fed_, "--incremental", "--json"}).out);
  EXPECT_GE(report.at("pieces"), 1);
  EXPECT_EQ(report.at("kept-files"), 0);
  EXPECT_LT(report.at("bytes-after"), report.at("bytes-before"));
  EXPECT_EQ(List(fed_), before);
  EXPECT_EQ(json::parse(RunQuilon({"check", fed_, "--json"}).out).at("dead-bytes"), 0);
  EXPECT_EQ(json::parse(RunQuilon({"compact", fed_, "--incremental", "--json"}).out).at("pieces"), 0);
}

TEST_F(HealthCommands, TheRoomOfACompactionIsASizeAndOfPieces)
{
  EXPECT_EQ(RunQuilon({"compact", fed_, "--room", "1G"}).exitCode, 2);
  ExpectTrouble({"compact", fed_, "--incremental", "--room", "much"},
                "size is 'much', expected a number of bytes such as 64M or 1G");
}

TEST_F(HealthCommands, CompactTakesWorkingDatabasesOnly)
{
  const std::string onf = (folder_ / "job.onf").string();
  WriteSmallOnf(onf);
  ExpectTrouble({"compact", onf, "--incremental"}, onf + ": not a working database (.fed)");
  const RunResult run = RunQuilon({"compact", onf});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + onf + ": not a working database (.fed)\n");
}

TEST_F(HealthCommands, AnInterruptLeavesEverythingAsItWas)
{
  const std::string before = List(fed_);
  EXPECT_EQ(RunQuilon({"compact", fed_}, {.interrupted = true}).exitCode, 130);
  EXPECT_EQ(RunQuilon({"compact", fed_, "--incremental"}, {.interrupted = true}).exitCode, 130);
  EXPECT_EQ(RunQuilon({"check", fed_}, {.interrupted = true}).exitCode, 130);
  EXPECT_EQ(RunQuilon({"salvage", fed_, "-o", new_}, {.interrupted = true}).exitCode, 130);
  EXPECT_EQ(List(fed_), before);
  EXPECT_FALSE(fs::exists(new_));
}

TEST_F(HealthCommands, CheckingInManyThreadsTellsTheSame)
{
  ExpectOneReport();
  DamageBlock(fed_, "displacement@lc=1");
  EXPECT_EQ(RunQuilon({"check", fed_}).exitCode, 1);
  ExpectOneReport();
  std::ofstream(fs::path(fed_) / "manifest") << "nothing";
  ExpectOneReport();
  EXPECT_EQ(RunQuilon({"check", fed_, "--jobs", "0"}).exitCode, 2);
}

}  // namespace
