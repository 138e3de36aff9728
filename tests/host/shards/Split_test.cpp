#include "shards/Split.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_DatabaseInspection.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "QuilonUtilities/FED_Failure.h"
#include "shards/Join.h"
#include "shards_support.h"
#include "TempFolder.h"
#include "TwoBricks.h"

namespace {

using namespace quilon;
using namespace quilon_test;
namespace fs = std::filesystem;

class Split : public testing::Test
{
protected:
  Split()
  {
    FED_ResultDatabase database(database_, FED_ResultDatabase::Create);
    FillTwoBricks(database);
    database.SetUserKindName(static_cast<FED_OnfId>(1000), "Wear depth");
    database.GetOrCreateDataBlock(StepBlock(1000, 1, 2), 0).SetScalarAt(3, 0.5);
    database.Commit();
  }

  SplitReport Run(const std::string& by) const
  {
    SilentListener listener;
    return SplitDatabase({database_, by, folder_}, listener);
  }

  std::string MessageOf(const std::string& by) const
  {
    try {
      Run(by);
    } catch (const FED_Failure& failure) {
      return failure.GetMessage();
    }
    return {};
  }

  /// @return the content of the shards joined, under the rules of a model alone
  std::map<std::string, std::string> JoinAgain(const SplitReport& report)
  {
    SilentListener listener;
    JoinOptions    options;
    for (const Shard& shard : report.shards) options.shards.push_back(shard.path);
    options.output = files_ / ("joined" + std::to_string(++joined_) + ".fed");
    join_          = JoinDatabases(options, listener);
    EXPECT_EQ(FED_InspectDatabase(options.output).findings, std::vector<std::string>());
    return ContentOf(options.output);
  }

  TempFolder  files_;
  fs::path    database_ = files_ / "bricks.fed";
  fs::path    folder_   = files_ / "shards";
  JoinReport  join_;
  std::size_t joined_ = 0;
};

TEST_F(Split, ByStepCopiesNothingEitherWay)
{
  const SplitReport report = Run("step");
  ASSERT_EQ(report.shards.size(), 3U);
  EXPECT_EQ(report.shards[2].path, folder_ / "0003.fed");
  EXPECT_EQ(report.shards[2].holds, "it=0,an=1,lc=2,sub=1");
  EXPECT_EQ(report.copiedBytes, 0U);
  for (const Shard& shard : report.shards) {
    EXPECT_EQ(FED_InspectDatabase(shard.path).findings, std::vector<std::string>());
    EXPECT_TRUE(FED_ResultDatabase(shard.path, FED_ResultDatabase::ReadOnly)
                    .HasDataBlock(FED_DataDescriptor(0, OnfKind::Coordinates)));
  }
  EXPECT_EQ(JoinAgain(report), ContentOf(database_));
  EXPECT_EQ(join_.mergedBlocks, 0U);
  EXPECT_EQ(join_.copies, 0U);
}

TEST_F(Split, BySetDealsElementsOutAndNodesAfterThem)
{
  const SplitReport report = Run("set:LEFT,RIGHT");
  ASSERT_EQ(report.shards.size(), 3U);
  EXPECT_EQ(report.shards[0].holds, "set LEFT");
  EXPECT_EQ(report.shards[2].holds, "the rest");
  const auto left  = ContentOf(report.shards[0].path);
  const auto right = ContentOf(report.shards[1].path);
  const auto count = [](const auto& content, const std::string& block) {
    std::size_t found = 0;
    for (const auto& [key, value] : content) found += key.starts_with(block) ? 1 : 0;
    return found;
  };
  EXPECT_EQ(count(left, "<516 it=0> "), 8U);
  EXPECT_EQ(count(right, "<516 it=0> "), 4U);
  EXPECT_EQ(count(left, "<595 it=0> "), 1U);
  EXPECT_EQ(count(right, "<595 it=0> "), 1U);
  EXPECT_EQ(JoinAgain(report), ContentOf(database_));
  fs::remove_all(folder_);
  EXPECT_EQ(JoinAgain(Run("set")), ContentOf(database_));
}

TEST_F(Split, ByNumberGivesAnyNumberOfParts)
{
  for (const char* count : {"1", "2", "3", "64", "65"}) {
    const SplitReport report = Run(count);
    EXPECT_EQ(report.shards.size(), static_cast<std::size_t>(std::stoi(count)));
    EXPECT_EQ(JoinAgain(report), ContentOf(database_)) << count;
    fs::remove_all(folder_);
  }
}

TEST_F(Split, WhatCannotBeCutLeavesNothing)
{
  EXPECT_EQ(MessageOf("steps"), "'steps' is no way to split, expected step, set, set:NAME,... or a number of parts");
  EXPECT_EQ(MessageOf("0"), "a database cannot be split into 0 parts, expected 1 to 9999");
  EXPECT_EQ(MessageOf("10000"), "a database cannot be split into 10000 parts, expected 1 to 9999");
  EXPECT_EQ(MessageOf("set:MIDDLE"), database_.string() + ": has no set of elements 'MIDDLE'");
  EXPECT_FALSE(fs::exists(folder_));
  fs::create_directory(folder_);
  EXPECT_EQ(MessageOf("step"), folder_.string() + ": exists, expected the name of a new folder");
  EXPECT_TRUE(fs::is_empty(folder_));
  EXPECT_FALSE(fs::exists(folder_.string() + ".part"));
}

}  // namespace
