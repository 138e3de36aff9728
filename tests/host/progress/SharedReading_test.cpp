// Threads that read one database on disk, each through objects of its own. Run under the thread sanitizer, too.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <bundled/OnfTextExport.h>
#include <gtest/gtest.h>

#include "progress/Crew.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "TempFolder.h"

namespace {

using namespace quilon;

constexpr int         kSteps = 24;
constexpr std::size_t kNodes = 700;

FED_DataDescriptor Key(int step)
{
  FED_DataDescriptor key(0, OnfKind::Displacement);
  key.SetInteger(FED_DataDescriptor::LoadCase, step);
  return key;
}

void WriteDatabase(const std::filesystem::path& path)
{
  FED_ResultDatabase database(path, FED_ResultDatabase::Create);
  for (int step = 0; step < kSteps; ++step) {
    FED_DataBlock& block = database.GetOrCreateDataBlock(Key(step), kNodes);
    for (std::size_t node = 0; node < kNodes; ++node) {
      const double value[3] = {1.0 / static_cast<double>(node + 1), static_cast<double>(step), -0.5};
      block.SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(OnfKind::NodeEntity, static_cast<int>(3 * node + 7)),
                        value);
    }
  }
  database.Commit();
}

struct Reader
{
  explicit Reader(const std::filesystem::path& path) : database(path, FED_ResultDatabase::ReadOnly), texts(database) {}

  FED_ResultDatabase        database;
  OnfTextExport::BlockTexts texts;
};

std::vector<std::string> ReadTexts(const std::filesystem::path& path, std::size_t jobs)
{
  ThreadCrew               crew(jobs);
  std::vector<std::string> texts;
  Plan<std::string>        plan;
  plan.units      = 2 * kSteps;
  plan.makeWorker = [&path](bool) {
    const auto reader = std::make_shared<Reader>(path);
    return [reader](std::size_t unit) {
      constexpr std::size_t kHalf = kNodes / 2;
      std::string           text;
      reader->texts.Write(Key(static_cast<int>(unit / 2)), unit % 2 * kHalf, kHalf,
                          [&text](std::string_view piece) { text += piece; });
      return text;
    };
  };
  CarryOut(crew, std::move(plan), [&texts](std::size_t, std::string text) { texts.push_back(std::move(text)); });
  return texts;
}

TEST(SharedReading, IsTheSameForAnyNumberOfThreads)
{
  const quilon_test::TempFolder folder;
  const std::filesystem::path   path = folder / "job.fed";
  WriteDatabase(path);
  const std::vector<std::string> one = ReadTexts(path, 1);
  ASSERT_EQ(one.size(), 2U * kSteps);
  EXPECT_NE(one[0].find("records: 700\n7 1 0 -0.5\n10 0.5 0 -0.5\n"), std::string::npos) << one[0].substr(0, 300);
  EXPECT_TRUE(one[3].starts_with("1057 ")) << "the second half of a block begins with its node 351";
  for (const std::size_t jobs : {2U, 3U, 8U}) EXPECT_EQ(ReadTexts(path, jobs), one) << jobs;
}

}  // namespace
