// quilon index, and histories that read what it wrote.

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "program_support.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;
using nlohmann::json;

namespace fs = std::filesystem;

FED_DataDescriptor Step(FED_OnfId onf, int substep)
{
  FED_DataDescriptor step(0, onf);
  step.SetInteger(FED_DataDescriptor::LoadCase, 1);
  step.SetInteger(FED_DataDescriptor::Substep, substep);
  step.SetInteger(FED_DataDescriptor::Analysis, 1);
  return step;
}

class IndexCommand : public testing::Test
{
protected:
  void SetUp() override
  {
    FED_ResultDatabase database(fed_, FED_ResultDatabase::Create);
    for (int step = 1; step <= 8; ++step) AddStep(database, step, 1.0);
    database.Commit();
  }

  /// 600 nodes; every seventh has no stress in even steps.
  static void AddStep(FED_ResultDatabase& database, int step, double factor)
  {
    FED_IdDataBlock stress(database.GetOrCreateDataBlock(Step(OnfKind::NodalStress, step), 0), database.GetIdMapsPool(),
                           true);
    FED_IdDataBlock shift(database.GetOrCreateDataBlock(Step(OnfKind::Displacement, step), 0), database.GetIdMapsPool(),
                          true);
    for (int id = 1; id <= 600; ++id) {
      const double tensor[6] = {factor * id, 2.0 * step, -3.0, 0.1 * id, 0.0, 1.0 / id};
      const double vector[3] = {1.0 * id, 0.5 * step, -1.0};
      if (id % 7 != 0 || step % 2 != 0) stress.SetTensor(id, tensor);
      shift.SetVector(id, vector);
    }
  }

  std::vector<std::string> Histories() const
  {
    std::vector<std::string> outputs;
    for (const std::vector<std::string>& question :
         std::vector<std::vector<std::string>>{{"stress.mises,stress.xx", "--ids", "7,14"},
                                               {"stress.mises", "--ids", "7,14,600"},
                                               {"displacement", "--ids", "3", "--json"},
                                               {"displacement.z,stress", "--ids", "70-72", "--csv"},
                                               {"stress.p1@sub=2-5", "--ids", "7,8"},
                                               {"stress.xx@sub=4", "--ids", "1-600"}})
    {
      std::vector<std::string> arguments = {"history", fed_};
      arguments.insert(arguments.end(), question.begin(), question.end());
      const RunResult run = RunQuilon(arguments);
      EXPECT_EQ(run.exitCode, 0) << run.err;
      outputs.push_back(run.out);
      notes_ = run.err;
    }
    return outputs;
  }

  std::string FirstOrder() const
  {
    for (const auto& entry : fs::directory_iterator(fed_))
      if (entry.path().extension() == ".order") return entry.path().string();
    return "";
  }

  TempFolder          folder_;
  std::string         fed_ = (folder_ / "a.fed").string();
  mutable std::string notes_;
};

TEST_F(IndexCommand, HistoriesAreTheSameBytes)
{
  const std::vector<std::string> before = Histories();
  const json                     report = json::parse(RunQuilon({"index", fed_, "--by", "id", "--json"}).out);
  ASSERT_EQ(report.at("orders").size(), 2U);
  EXPECT_EQ(report.at("orders").at(0).at("kind"), "displacement");
  EXPECT_EQ(report.at("orders").at(0).at("blocks"), 8);
  EXPECT_EQ(report.at("orders").at(0).at("records"), 600);
  EXPECT_EQ(Histories(), before);
  EXPECT_EQ(notes_, "");
  EXPECT_EQ(RunQuilon({"check", fed_}).exitCode, 0);
  // Blocks are not looked at: this one is damaged.
  std::string segment = (fs::path(fed_) / "segment-000001.h5").string();
  {
    std::fstream file(segment, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(fs::file_size(segment) / 2));
    file << "damage";
  }
  EXPECT_EQ(RunQuilon({"check", fed_}).exitCode, 1);
  const RunResult run = RunQuilon({"history", fed_, "stress.mises,stress.xx", "--ids", "7,14"});
  EXPECT_EQ(run.out, before.front()) << run.err;
}

TEST_F(IndexCommand, IsMadeOnceAndOfWhatIsNewThen)
{
  EXPECT_EQ(RunQuilon({"index", fed_, "stress"}).exitCode, 0);
  json report = json::parse(RunQuilon({"index", fed_, "stress", "--json"}).out);
  EXPECT_EQ(report.at("orders").size(), 0U);
  EXPECT_EQ(report.at("present-blocks"), 8);
  {
    FED_ResultDatabase database(fed_, FED_ResultDatabase::ReadWrite);
    AddStep(database, 9, 1.0);
    AddStep(database, 10, 1.0);
    database.Commit();
  }
  const std::vector<std::string> before = Histories();
  EXPECT_EQ(notes_, "");
  report = json::parse(RunQuilon({"index", fed_, "stress", "--json"}).out);
  EXPECT_EQ(report.at("orders").at(0).at("blocks"), 2);
  EXPECT_EQ(report.at("removed").size(), 0U);
  EXPECT_EQ(Histories(), before);
  EXPECT_EQ(json::parse(RunQuilon({"index", fed_, "--drop", "--json"}).out).at("removed").size(), 2U);
  EXPECT_EQ(FirstOrder(), "");
  EXPECT_EQ(Histories(), before);
}

TEST_F(IndexCommand, WhatIsNotTrueAnyMoreIsLeftAsideWithAWord)
{
  EXPECT_EQ(RunQuilon({"index", fed_}).exitCode, 0);
  {
    FED_ResultDatabase database(fed_, FED_ResultDatabase::ReadWrite);
    AddStep(database, 2, 5.0);
    database.Commit();
  }
  RunResult run = RunQuilon({"history", fed_, "stress.xx", "--ids", "8", "--csv"});
  EXPECT_NE(run.err.find("the order by id is not true any more of 1 block, read as without one; 'quilon index --by id' "
                         "makes another"),
            std::string::npos)
      << run.err;
  EXPECT_NE(run.out.find("40"), std::string::npos) << run.out;
  // Most of it is true, so a compaction lets it be; what is new of the block is ordered by the next call.
  EXPECT_EQ(RunQuilon({"compact", fed_}).exitCode, 0);
  EXPECT_NE(FirstOrder(), "");
  EXPECT_EQ(RunQuilon({"history", fed_, "stress.xx", "--ids", "8", "--csv"}).out, run.out);
  EXPECT_EQ(RunQuilon({"prune", fed_, "all@sub=1-7"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"compact", fed_, "--incremental"}).exitCode, 0);
  EXPECT_EQ(FirstOrder(), "");
}

TEST_F(IndexCommand, ADamagedOrderIsToldAndDoneWithout)
{
  const std::vector<std::string> before = Histories();
  EXPECT_EQ(RunQuilon({"index", fed_, "stress"}).exitCode, 0);
  const std::string order = FirstOrder();
  fs::resize_file(order, fs::file_size(order) - 1);
  EXPECT_EQ(Histories(), before);
  EXPECT_NE(notes_.find(fs::path(order).filename().string()), std::string::npos) << notes_;
  fs::resize_file(order, fs::file_size(order) + 1);
  {
    std::fstream file(order, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(fs::file_size(order) / 4));
    file << "damage";
  }
  EXPECT_EQ(Histories(), before);
  EXPECT_EQ(RunQuilon({"check", fed_}).exitCode, 1);
}

TEST_F(IndexCommand, TakesWorkingDatabasesAndBlocksThatAreThere)
{
  const std::string onf = (folder_ / "job.onf").string();
  WriteSmallOnf(onf);
  ExpectTrouble({"index", onf}, onf + ": not a working database (.fed)");
  ExpectTrouble({"index", fed_, "temperature"}, fed_ + ": no block matches 'temperature'");
  EXPECT_EQ(RunQuilon({"index", fed_, "--by", "step"}).exitCode, 2);
  EXPECT_EQ(RunQuilon({"index", fed_}, {.interrupted = true}).exitCode, 130);
  EXPECT_EQ(FirstOrder(), "");
}

}  // namespace
