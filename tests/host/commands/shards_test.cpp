#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;
namespace fs = std::filesystem;

class ShardCommands : public testing::Test
{
protected:
  void SetUp() override
  {
    WriteTwoBricks(onf_);
    RunQuilon({"from-onf", onf_, "-o", fed_});
  }

  /// "SHARDS/0001.fed" and so on, with options around them.
  std::vector<std::string> JoinOf(int count) const
  {
    std::vector<std::string> arguments = {"join"};
    for (int i = 1; i <= count; ++i) arguments.push_back(shards_ + "/000" + std::to_string(i) + ".fed");
    arguments.insert(arguments.end(), {"-o", joined_});
    return arguments;
  }

  TempFolder  folder_;
  std::string onf_    = (folder_ / "bricks.onf").string();
  std::string fed_    = (folder_ / "bricks.fed").string();
  std::string shards_ = (folder_ / "shards").string();
  std::string joined_ = (folder_ / "joined.fed").string();
};

TEST_F(ShardCommands, WhatIsSplitAndJoinedIsTheSameToTheLastBit)
{
  const RunResult split = RunQuilon({"split", fed_, "--by", "step", "-o", shards_, "--csv"});
  EXPECT_EQ(split.err, "");
  EXPECT_EQ(split.out.substr(0, split.out.find('\n')), "shard,holds,blocks");
  const RunResult join = RunQuilon(JoinOf(3));
  EXPECT_EQ(join.err, "");
  EXPECT_EQ(join.exitCode, 0);
  EXPECT_EQ(join.out.find(" copied"), std::string::npos) << join.out;
  EXPECT_EQ(RunQuilon({"diff", fed_, joined_, "--exact"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"check", joined_}).exitCode, 0);

  fs::remove_all(shards_);
  fs::remove_all(joined_);
  EXPECT_EQ(RunQuilon({"split", fed_, "--by", "4", "-o", shards_}).exitCode, 0);
  EXPECT_EQ(RunQuilon(JoinOf(4)).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", fed_, joined_, "--exact"}).exitCode, 0);
}

// Sections and the deck's names of element types are of elements, which parts divide and at whose borders they meet.
TEST_F(ShardCommands, WhatADeckSaysIsSplitAndJoined)
{
  const std::string deck = QUILON_FIXTURES "/calculix/mixed_linear/mixed_linear.inp";
  fs::remove_all(fed_);
  ASSERT_EQ(RunQuilon({"import", deck, "-o", fed_}).exitCode, 0);
  for (const std::string by : {"2", "set"}) {
    fs::remove_all(shards_);
    fs::remove_all(joined_);
    EXPECT_EQ(RunQuilon({"split", fed_, "--by", by, "-o", shards_}).exitCode, 0);
    const auto count = std::distance(fs::directory_iterator(shards_), fs::directory_iterator());
    EXPECT_EQ(RunQuilon(JoinOf(static_cast<int>(count))).exitCode, 0) << by;
    EXPECT_EQ(RunQuilon({"diff", fed_, joined_, "--exact"}).exitCode, 0) << by;
    EXPECT_NE(RunQuilon({"sets", joined_}).out.find("element-type\t-\tC3D8R\t"), std::string::npos) << by;
  }
}

TEST_F(ShardCommands, RecordsThatMeetWithoutARuleAreTroubleAndLeaveNothing)
{
  const RunResult run = RunQuilon({"join", fed_, fed_, "-o", joined_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("is in a shard before it as well, expected a rule"), std::string::npos) << run.err;
  EXPECT_FALSE(fs::exists(joined_));
  EXPECT_EQ(RunQuilon({"join", fed_, fed_, "-o", joined_, "--rule", "nosuchkind: sum"}).exitCode, 2);
  EXPECT_EQ(RunQuilon({"join", fed_, fed_, "-o", joined_, "--rule", "stress: middle"}).exitCode, 2);
  EXPECT_FALSE(fs::exists(joined_));
  EXPECT_EQ(RunQuilon({"join", fed_, fed_, "-o", joined_, "--rule", "*: first"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", fed_, joined_, "--exact"}).exitCode, 0);
}

TEST_F(ShardCommands, AnInterruptLeavesNothing)
{
  RunOptions interrupted;
  interrupted.interrupted = true;
  EXPECT_EQ(RunQuilon({"join", fed_, "-o", joined_}, interrupted).exitCode, 130);
  EXPECT_EQ(RunQuilon({"split", fed_, "--by", "step", "-o", shards_}, interrupted).exitCode, 130);
  EXPECT_FALSE(fs::exists(joined_));
  EXPECT_FALSE(fs::exists(shards_));
  EXPECT_FALSE(fs::exists(shards_ + ".part"));
}

}  // namespace
