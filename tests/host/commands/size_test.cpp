#include <cstddef>
#include <map>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "database/DatabaseFolder.h"
#include "program_support.h"
#include "QuilonDataBlockSize.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class SizeCommand : public testing::Test
{
protected:
  void SetUp() override { WriteSmallOnf(onf_); }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "small.onf").string();
};

TEST_F(SizeCommand, TheLargestBlockComesFirstAndTotalsFollow)
{
  const RunResult run = RunQuilon({"size", onf_});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  // 582: 4 bytes, and 4 + 12 * 8 of a list; 595: 4 + 3 * 4.
  EXPECT_EQ(run.out,
            "kind\tblock\tsize\n"
            "integration-point-stress\t582@it=0,an=1,lc=1,sub=2\t104\n"
            "nodal-stress\t521@it=0,an=1,lc=1,sub=2\t96\n"
            "displacement\t510@it=0,an=1,lc=1,sub=1\t72\n"
            "displacement\t510@it=0,an=1,lc=1,sub=2\t72\n"
            "displacement\t510@it=0,an=1,lc=2,sub=1\t72\n"
            "eigenvalue\t500@it=0,lc=1,sub=1,quantity=502\t16\n"
            "element-nodes\t595@it=0\t16\n"
            "Wear depth\t1000@it=0,an=1,lc=1,sub=2\t8\n"
            "\n"
            "kind\tblocks\tsize\n"
            "displacement\t3\t216\n"
            "integration-point-stress\t1\t104\n"
            "nodal-stress\t1\t96\n"
            "eigenvalue\t1\t16\n"
            "element-nodes\t1\t16\n"
            "Wear depth\t1\t8\n"
            "\n"
            "step\tblocks\tsize\n"
            "it=0,an=1,lc=1,sub=2\t4\t280\n"
            "it=0,an=1,lc=1,sub=1\t1\t72\n"
            "it=0,an=1,lc=2,sub=1\t1\t72\n"
            "it=0\t1\t16\n"
            "it=0,lc=1,sub=1\t1\t16\n"
            "\n"
            "8 blocks, 456 bytes\n");
}

TEST_F(SizeCommand, TotalsAddUpToWhatTheLibraryCounts)
{
  const auto json = nlohmann::json::parse(RunQuilon({"size", onf_, "--json"}).out);
  const auto sum  = [&](const char* list) {
    std::size_t bytes = 0;
    for (const auto& entry : json.at(list)) bytes += entry.at("size").get<std::size_t>();
    return bytes;
  };
  const std::size_t whole = QuilonDataBlockSize::DataBaseSizeOf(*quilon::OpenOnf(onf_));
  EXPECT_EQ(whole, 456u);
  EXPECT_EQ(json.at("size"), whole);
  for (const char* list : {"blocks", "kinds", "steps"}) EXPECT_EQ(sum(list), whole) << list;
}

TEST_F(SizeCommand, SelectedBlocksAloneAreCounted)
{
  EXPECT_EQ(RunQuilon({"size", onf_, "stress@lc=1"}).out,
            "kind\tblock\tsize\n"
            "nodal-stress\t521@it=0,an=1,lc=1,sub=2\t96\n"
            "\n"
            "kind\tblocks\tsize\n"
            "nodal-stress\t1\t96\n"
            "\n"
            "step\tblocks\tsize\n"
            "it=0,an=1,lc=1,sub=2\t1\t96\n"
            "\n"
            "1 block, 96 bytes\n");
}

TEST_F(SizeCommand, JsonNamesBlocksKindsAndSteps)
{
  EXPECT_EQ(RunQuilon({"size", onf_, "eigenvalue", "--json"}).out,
            "{\n"
            "  \"size\": 16,\n"
            "  \"blocks\": [\n"
            "    {\n"
            "      \"block\": \"500@it=0,lc=1,sub=1,quantity=502\",\n"
            "      \"kind\": \"eigenvalue\",\n"
            "      \"step\": \"it=0,lc=1,sub=1\",\n"
            "      \"size\": 16\n"
            "    }\n"
            "  ],\n"
            "  \"kinds\": [\n"
            "    {\n"
            "      \"kind\": \"eigenvalue\",\n"
            "      \"blocks\": 1,\n"
            "      \"size\": 16\n"
            "    }\n"
            "  ],\n"
            "  \"steps\": [\n"
            "    {\n"
            "      \"step\": \"it=0,lc=1,sub=1\",\n"
            "      \"blocks\": 1,\n"
            "      \"size\": 16\n"
            "    }\n"
            "  ]\n"
            "}\n");
}

TEST_F(SizeCommand, CsvHasTheBlocksAlone)
{
  EXPECT_EQ(RunQuilon({"size", onf_, "wear", "--csv"}).out,
            "kind,block,size\nWear depth,\"1000@it=0,an=1,lc=1,sub=2\",8\n");
}

TEST_F(SizeCommand, TablesForPeopleHaveUnits)
{
  EXPECT_EQ(RunQuilon({"size", onf_, "wear", "--table"}).out,
            "kind        block                      size\n"
            "Wear depth  1000@it=0,an=1,lc=1,sub=2   8 B\n"
            "\n"
            "kind        blocks  size\n"
            "Wear depth       1   8 B\n"
            "\n"
            "step                  blocks  size\n"
            "it=0,an=1,lc=1,sub=2       1   8 B\n"
            "\n"
            "1 block, 8 bytes\n");
}

TEST_F(SizeCommand, HelpSaysWhatIsCounted)
{
  const RunResult run = RunQuilon({"size", "--help"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.out.find("48 a tensor"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("  quilon size job.frd stress --json"), std::string::npos) << run.out;
}

}  // namespace
