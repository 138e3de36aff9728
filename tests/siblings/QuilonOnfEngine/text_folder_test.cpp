// Publishing and reading, with every call that reaches the disk made to fail in turn.

#include "text_folder.h"

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "bundled/FED_FileLayer.h"
#include "bundled/OnfFileLayer.h"
#include "FaultyFiles.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "onf_text_support.h"
#include "text_output.h"

namespace {

namespace fs = std::filesystem;

using quilon_test::Fault;
using quilon_test::FaultyFiles;

NewBlock MakeBlock(int loadCase, int value)
{
  return {MakeKey(514, loadCase), [=](TextOutput& out) {
            out.Append("onf-text-block: 1\niteration: 0\nonf: 514 temperature\nload-case: " + std::to_string(loadCase) +
                       "\nrecord-format: D\nrecords-by: id\nrecords: 1\n1 " + std::to_string(value) + "\n");
          }};
}

/// Nobody pulls the plug, so there is nothing to wait for.
class UnflushedFiles : public FED_FileLayer
{
public:
  std::error_code Flush(Handle) override { return {}; }
  std::error_code FlushAll(const fs::path&) override { return {}; }
  std::error_code FlushFolder(const fs::path&) override { return {}; }
};

void Publish(const fs::path& folder, const std::vector<NewBlock>& blocks, const UserKindNames& names,
             OtherBlocks others = OtherBlocks::Stay)
{
  UnflushedFiles files;
  TextFolderWriter(folder, files).Publish(blocks, names, others);
}

/// What is opened meanwhile reaches its files through a layer.
class LayerInForce
{
public:
  explicit LayerInForce(FED_FileLayer& files) : former_(OnfFileLayer::Set(&files)) {}
  LayerInForce(const LayerInForce&)            = delete;
  LayerInForce& operator=(const LayerInForce&) = delete;
  ~LayerInForce() { OnfFileLayer::Set(former_); }

private:
  FED_FileLayer* former_;
};

/// All that a reader sees, as text; "none" where there is no database.
std::string Describe(const fs::path& folder)
{
  if (!fs::exists(folder / "index")) return "none";
  QuilonOnfTxtDatabase database(folder.wstring());
  OpenToRead(database);
  std::string text = database.GetUserKindName(static_cast<FED_OnfId>(1000));
  for (const FED_DataBlock* block : database.GetDataBlocks(FED_DataDescriptorPattern())) {
    const FED_DataDescriptor& key = block->GetDescriptor();
    text += " " + std::to_string(key.GetInteger(FED_DataDescriptor::LoadCase)) + "=" +
            std::to_string(static_cast<int>(GetScalar(database, key, 1)));
  }
  return text;
}

/// A publication whose every call is made to fail in turn.
struct Scenario
{
  const char*                          name;
  std::function<void(const fs::path&)> makeBase;  ///< may make nothing
  std::vector<NewBlock>                blocks;
  UserKindNames                        userKindNames;
  OtherBlocks                          others   = OtherBlocks::Stay;
  bool                                 isAtRest = true;  ///< the base; else its tidying up is no leftover
};

class PublicationUnderFaults
{
public:
  explicit PublicationUnderFaults(const Scenario& scenario) : scenario_(scenario)
  {
    Prepare(trial_);
    before_ = Describe(trial_);
    PublishTrial();
    after_ = Describe(trial_);
    files_ = ReadAllFiles(trial_);
  }

  const std::string& GetAfter() const { return after_; }

  /// @return the positions tried
  std::size_t TryAll(Fault fault)
  {
    std::size_t position = 0;
    leftovers_           = 0;
    for (bool hasFailed = true; hasFailed && !testing::Test::HasFailure();) {
      ++position;
      SCOPED_TRACE(scenario_.name + (", fault " + std::to_string(static_cast<int>(fault))) + ", call " +
                   std::to_string(position));
      hasFailed = Try(fault, position);
    }
    EXPECT_EQ(leftovers_, 0) << static_cast<int>(fault);
    return position - 1;
  }

private:
  /// Whatever a call did to a folder above is undone as well.
  void Prepare(const fs::path& trial)
  {
    fs::remove_all(test_ / "above");
    if (!scenario_.makeBase) return;
    fs::create_directory(test_ / "above");
    scenario_.makeBase(trial);
  }

  void PublishTrial() { Publish(trial_, scenario_.blocks, scenario_.userKindNames, scenario_.others); }

  bool Try(Fault fault, std::size_t position)
  {
    Prepare(trial_);
    const auto        base      = ReadAllFiles(trial_);
    const bool        hadFolder = fs::exists(test_ / "above");
    FaultyFiles       files;
    const std::string message   = MessageOf([&] {
      files.Arm(fault, position);
      TextFolderWriter(trial_, files).Publish(scenario_.blocks, scenario_.userKindNames, scenario_.others);
    });
    const bool        hasFailed = files.HasFailed();
    EXPECT_EQ(message.empty(), !hasFailed) << message;
    // Behind the last call the power may go as well: what was told to be written is on the disk.
    if (files.IsDead() || !hasFailed) files.Bury();

    const std::string state = Describe(trial_);
    const bool        isNew = state == after_ && (state != before_ || !hasFailed);
    if (!isNew) {
      EXPECT_EQ(state, before_) << message;
      EXPECT_TRUE(hasFailed);
      EXPECT_THAT(message, testing::Not(testing::HasSubstr("is in force")));
    }
    if (hasFailed && isNew && !files.IsDead() && before_ != after_) {
      EXPECT_THAT(message, testing::HasSubstr("in force"));
    }
    // A disk that stays broken lets nobody tidy up.
    if (scenario_.isAtRest && !files.IsDead() && fault != Fault::Outage && !isNew &&
        (ReadAllFiles(trial_) != base || fs::exists(test_ / "above") != hadFolder))
      ++leftovers_;

    // The next writer finishes and tidies up.
    PublishTrial();
    EXPECT_EQ(ReadAllFiles(trial_), files_) << message;
    return hasFailed;
  }

  const Scenario&                    scenario_;
  quilon_test::TempFolder            test_;
  fs::path                           trial_ = test_ / "above" / "trial.onf";
  std::string                        before_;
  std::string                        after_;
  std::map<std::string, std::string> files_;  ///< of the new state
  int                                leftovers_ = 0;
};

const std::vector<Fault> kAllFaults = {Fault::InputOutputError,
                                       Fault::DiskFull,
                                       Fault::Outage,
                                       Fault::ShortWrite,
                                       Fault::Death,
                                       Fault::DeathBehind,
                                       Fault::PowerLoss,
                                       Fault::PowerLossButRenames,
                                       Fault::PowerLossButRemovals};

void TryFaults(const Scenario& scenario, const std::string& expected, const std::vector<Fault>& faults = kAllFaults)
{
  PublicationUnderFaults publication(scenario);
  EXPECT_EQ(publication.GetAfter(), expected);
  std::size_t positions = 0;
  for (const Fault fault : faults) positions += publication.TryAll(fault);
  std::cout << scenario.name << ": " << positions << " positions tried\n";
  testing::Test::RecordProperty("positions", std::to_string(positions));
  EXPECT_GT(positions, 20 * faults.size());
}

/// A folder whose writer died behind the renaming of the index: load case 1 has a new state beside the old one, load
/// case 2 is at rest, and load case 3 has been moved already.
void MakeUnsettled(const fs::path& folder)
{
  Publish(folder, {MakeBlock(1, 10), MakeBlock(2, 2), MakeBlock(3, 3)}, {{1000, "old"}});
  fs::rename(folder / "temperature_it0_lc1.onf", folder / "temperature_it0_lc1.onf.new");
  Publish(folder / "former", {MakeBlock(1, 1)}, {});
  fs::rename(folder / "former" / "temperature_it0_lc1.onf", folder / "temperature_it0_lc1.onf");
  fs::remove_all(folder / "former");
  WriteBytes(folder / "index",
             "onf-text-index: 1\nnames: 1\nname: 1000 \"old\"\nblocks: 3\nblock: temperature_it0_lc1.onf.new\n"
             "block: temperature_it0_lc2.onf\nblock: temperature_it0_lc3.onf.new\n");
}

}  // namespace

TEST(TextFolderFaults, AReplacementHappensWhollyOrNotAtAll)
{
  TryFaults({.name = "replace",
             .makeBase =
                 [](const fs::path& folder) {
                   Publish(folder, {MakeBlock(1, 1), MakeBlock(2, 2)}, {{1000, "old"}});
                 },
             .blocks        = {MakeBlock(1, 10), MakeBlock(3, 30)},
             .userKindNames = {{1000, "new"}}},
            "new 1=10 2=2 3=30");
}

TEST(TextFolderFaults, AFirstPublicationHappensWhollyOrNotAtAll)
{
  TryFaults({.name = "first", .makeBase = nullptr, .blocks = {MakeBlock(1, 1), MakeBlock(2, 2)}, .userKindNames = {}},
            " 1=1 2=2");
}

TEST(TextFolderFaults, WhatADeadWriterHadPublishedStays)
{
  TryFaults({.name          = "settle",
             .makeBase      = MakeUnsettled,
             .blocks        = {MakeBlock(2, 20)},
             .userKindNames = {},
             .isAtRest      = false},
            "old 1=10 2=20 3=3");
}

// So many that they are flushed together.
TEST(TextFolderFaults, ManyBlocksArePublishedWhollyOrNotAtAll)
{
  std::vector<NewBlock> blocks;
  std::string           expected;
  for (int i = 10; i < 27; ++i) {
    blocks.push_back(MakeBlock(i, i));
    expected += " " + std::to_string(i) + "=" + std::to_string(i);
  }
  TryFaults({.name          = "many",
             .makeBase      = [](const fs::path& folder) { Publish(folder, {MakeBlock(10, 1)}, {}); },
             .blocks        = blocks,
             .userKindNames = {}},
            expected, {Fault::InputOutputError, Fault::Death, Fault::PowerLoss, Fault::PowerLossButRenames});
}

TEST(TextFolderFaults, AMirrorIsMadeWhollyOrNotAtAll)
{
  TryFaults({.name = "mirror",
             .makeBase =
                 [](const fs::path& folder) {
                   Publish(folder, {MakeBlock(1, 1), MakeBlock(2, 2)}, {{1000, "old"}});
                 },
             .blocks        = {MakeBlock(1, 10), MakeBlock(3, 30)},
             .userKindNames = {},
             .others        = OtherBlocks::Go},
            " 1=10 3=30");
}

// Where files lie beyond a network, a full disk shows when one is closed.
TEST(TextFolderFaults, BytesThatAreLostInClosingAreTold)
{
  class LossyFiles : public UnflushedFiles
  {
  public:
    std::error_code Close(Handle handle) noexcept override
    {
      const std::error_code error = UnflushedFiles::Close(handle);
      return error ? error : std::make_error_code(std::errc::no_space_on_device);
    }
  };
  const quilon_test::TempFolder test;
  Publish(test / "onf", {MakeBlock(1, 1)}, {});
  const auto before = ReadAllFiles(test / "onf");
  LossyFiles files;
  EXPECT_EQ(MessageOf([&] { TextFolderWriter(test / "onf", files).Publish({MakeBlock(1, 10)}, {}); }),
            (test / "onf" / "temperature_it0_lc1.onf.new").string() + ": cannot close: No space left on device");
  EXPECT_EQ(ReadAllFiles(test / "onf"), before);
}

TEST(TextFolderFaults, AReaderWhoseCallFailsSeesNoOtherState)
{
  const quilon_test::TempFolder test;
  MakeUnsettled(test / "onf");
  const std::string expected = "old 1=10 2=2 3=3";
  EXPECT_EQ(Describe(test / "onf"), expected);
  std::size_t position = 0;
  for (bool hasFailed = true; hasFailed;) {
    FaultyFiles files;
    files.Arm(Fault::InputOutputError, ++position);
    const LayerInForce inForce(files);
    std::string        found;
    const std::string  message = MessageOf([&] { found = Describe(test / "onf"); });
    hasFailed                  = files.HasFailed();
    EXPECT_EQ(message.empty(), !hasFailed) << "call " << position;
    if (message.empty()) {
      EXPECT_EQ(found, expected) << "call " << position;
    }
  }
  EXPECT_GT(position, 20u);
}

// Each block costs a bounded number of calls, and all of them are flushed together.
TEST(TextFolderCalls, FlushesDoNotGrowWithTheBlocks)
{
  class CountingFiles : public UnflushedFiles
  {
  public:
    std::size_t     flushes = 0;
    std::error_code Flush(Handle) override { return Count(); }
    std::error_code FlushAll(const fs::path&) override { return Count(); }
    std::error_code FlushFolder(const fs::path&) override { return Count(); }

  private:
    std::error_code Count()
    {
      ++flushes;
      return {};
    }
  };
  const auto countFlushes = [](int numBlocks) {
    const quilon_test::TempFolder test;
    std::vector<NewBlock>         blocks;
    for (int i = 0; i < numBlocks; ++i) blocks.push_back(MakeBlock(i, i));
    CountingFiles files;
    TextFolderWriter(test / "onf", files).Publish(blocks, {});
    return files.flushes;
  };
  const std::size_t few = countFlushes(100);
  EXPECT_LE(few, 10u);
  EXPECT_EQ(countFlushes(2000), few);
}

TEST(TextFolderCalls, WhereFilesCannotBeFlushedTogetherEachIsFlushed)
{
  class OneByOne : public UnflushedFiles
  {
  public:
    std::size_t     flushes = 0;
    std::error_code Flush(Handle) override
    {
      ++flushes;
      return {};
    }
    std::error_code FlushAll(const fs::path&) override
    {
      return std::make_error_code(std::errc::function_not_supported);
    }
  };
  const quilon_test::TempFolder test;
  std::vector<NewBlock>         blocks;
  for (int i = 0; i < 100; ++i) blocks.push_back(MakeBlock(i, i));
  OneByOne files;
  TextFolderWriter(test / "onf", files).Publish(blocks, {});
  EXPECT_EQ(files.flushes, 102u);  // and the index, twice
}

TEST(TextFolderMirror, HoldsWhatIsPublishedAndNothingElse)
{
  const quilon_test::TempFolder test;
  Publish(test / "onf", {MakeBlock(1, 1), MakeBlock(2, 2)}, {{1000, "old"}, {1001, "other"}});
  WriteBytes(test / "onf" / "stray_it0.onf", "no block\n");
  WriteBytes(test / "onf" / "README.md", "of the user\n");
  Publish(test / "onf", {MakeBlock(2, 20)}, {{1000, "new"}}, OtherBlocks::Go);
  Publish(test / "expected", {MakeBlock(2, 20)}, {{1000, "new"}});
  auto expected         = ReadAllFiles(test / "expected");
  expected["README.md"] = "of the user\n";
  EXPECT_EQ(ReadAllFiles(test / "onf"), expected);
}

TEST(TextFolderLinks, APlantedLinkIsReplacedAndNotFollowed)
{
  const quilon_test::TempFolder test;
  Publish(test / "onf", {MakeBlock(1, 1)}, {});
  const fs::path victim = test / "victim";
  WriteBytes(victim, "precious\n");
  for (const char* name : {"index.new", "temperature_it0_lc1.onf.new", "temperature_it0_lc2.onf"})
    fs::create_symlink(victim, test / "onf" / name);
  Publish(test / "onf", {MakeBlock(1, 10), MakeBlock(2, 20)}, {});
  EXPECT_EQ(ReadBytes(victim), "precious\n");
  EXPECT_EQ(Describe(test / "onf"), " 1=10 2=20");
  for (const auto& entry : fs::directory_iterator(test / "onf")) EXPECT_FALSE(entry.is_symlink()) << entry.path();
}

TEST(TextFolderPermissions, OfFilesThatAreReplacedStay)
{
  const quilon_test::TempFolder test;
  Publish(test / "onf", {MakeBlock(1, 1), MakeBlock(2, 2)}, {});
  const auto permissions = [&](const char* name) { return fs::status(test / "onf" / name).permissions(); };
  const auto ofAnyFile   = permissions("temperature_it0_lc2.onf");
  fs::permissions(test / "onf" / "index", fs::perms(0640));
  fs::permissions(test / "onf" / "temperature_it0_lc1.onf", fs::perms(0604));
  Publish(test / "onf", {MakeBlock(1, 10), MakeBlock(2, 20), MakeBlock(3, 30)}, {});
  EXPECT_EQ(permissions("index"), fs::perms(0640));
  EXPECT_EQ(permissions("temperature_it0_lc1.onf"), fs::perms(0604));
  EXPECT_EQ(permissions("temperature_it0_lc2.onf"), ofAnyFile);
  EXPECT_EQ(permissions("temperature_it0_lc3.onf"), ofAnyFile);
}

TEST(TextFolderPipes, KeepNobodyWaiting)
{
  const quilon_test::TempFolder test;
  Publish(test / "onf", {MakeBlock(1, 1)}, {});
  const fs::path block = test / "onf" / "temperature_it0_lc1.onf";
  fs::remove(block);
  ASSERT_EQ(mkfifo(block.c_str(), 0600), 0);
  EXPECT_EQ(MessageOf([&] { Describe(test / "onf"); }), block.string() + ": no plain file");
  const fs::path index = test / "onf" / "index";
  fs::remove(index);
  ASSERT_EQ(mkfifo(index.c_str(), 0600), 0);
  EXPECT_EQ(MessageOf([&] { Describe(test / "onf"); }), index.string() + ": no plain file");
  EXPECT_EQ(MessageOf([&] { Publish(test / "onf", {MakeBlock(1, 1)}, {}); }), index.string() + ": no plain file");
}

TEST(TextFolderLock, AnotherWriterIsToldWhoIsThere)
{
  const quilon_test::TempFolder test;
  UnflushedFiles                files;
  {
    TextFolderWriter writer(test / "onf", files);
    EXPECT_EQ(MessageOf([&] { TextFolderWriter second(test / "onf", files); }),
              (test / "onf").string() + ": another program writes to the ONF folder (process " +
                  std::to_string(getpid()) + ", quilon_onf_text)");  // the system cuts names
    writer.Publish({MakeBlock(1, 1)}, {});
  }
  Publish(test / "onf", {MakeBlock(2, 2)}, {});
  EXPECT_EQ(Describe(test / "onf"), " 1=1 2=2");
}

TEST(TextFolderLock, AFolderMadeInVainGoesAgain)
{
  const quilon_test::TempFolder test;
  UnflushedFiles                files;
  {
    const TextFolderWriter writer(test / "a" / "b" / "onf", files);
    EXPECT_TRUE(fs::is_directory(test / "a" / "b" / "onf"));
  }
  EXPECT_FALSE(fs::exists(test / "a"));
}

TEST(TextFolder, AnUnfinishedNameMeansTheFinishedFileWhenThatIsAllThereIs)
{
  const quilon_test::TempFolder test;
  Publish(test / "onf", {MakeBlock(1, 1), MakeBlock(2, 2)}, {});
  WriteBytes(test / "onf" / "index",
             "onf-text-index: 1\nnames: 0\nblocks: 2\n"
             "block: temperature_it0_lc1.onf.new\nblock: temperature_it0_lc2.onf.new\n");
  std::filesystem::rename(test / "onf" / "temperature_it0_lc2.onf", test / "onf" / "temperature_it0_lc2.onf.new");
  EXPECT_EQ(Describe(test / "onf"), " 1=1 2=2");
  Publish(test / "onf", {}, {});
  EXPECT_EQ(ReadBytes(test / "onf" / "index"),
            "onf-text-index: 1\nnames: 0\nblocks: 2\n"
            "block: temperature_it0_lc1.onf\nblock: temperature_it0_lc2.onf\n");
  EXPECT_EQ(Describe(test / "onf"), " 1=1 2=2");
}

TEST(TextFolder, AReaderThatOpenedAnUnfinishedStateReadsItWhenItIsFinished)
{
  const quilon_test::TempFolder test;
  Publish(test / "onf", {MakeBlock(1, 1)}, {});
  WriteBytes(test / "onf" / "index", "onf-text-index: 1\nnames: 0\nblocks: 1\nblock: temperature_it0_lc1.onf.new\n");
  std::filesystem::rename(test / "onf" / "temperature_it0_lc1.onf", test / "onf" / "temperature_it0_lc1.onf.new");
  QuilonOnfTxtDatabase reader((test / "onf").wstring());
  OpenToRead(reader);
  Publish(test / "onf", {}, {});
  EXPECT_EQ(GetScalar(reader, MakeKey(514, 1), 1), 1.0);
}

// Without the lock a publication writes an index that lacks what another one has published since it read the index.
TEST(TextFolder, PublicationsOfOneFolderKeepEachOtherOff)
{
  constexpr int                 kNumWriters = 4;
  constexpr int                 kNumBlocks  = 10;
  const quilon_test::TempFolder test;
  std::vector<std::thread>      writers;
  for (int writer = 0; writer < kNumWriters; ++writer)
    writers.emplace_back([&test, writer] {
      for (int i = 0; i < kNumBlocks; ++i)
        for (std::string message = "none yet"; !message.empty();) {
          message = MessageOf([&] { Publish(test / "onf", {MakeBlock(kNumBlocks * writer + i, i)}, {}); });
          if (!message.empty()) {
            EXPECT_THAT(message, testing::HasSubstr("another program writes to the ONF folder"));
          }
        }
    });
  for (std::thread& writer : writers) writer.join();
  std::string expected;
  for (int loadCase = 0; loadCase < kNumWriters * kNumBlocks; ++loadCase)
    expected += " " + std::to_string(loadCase) + "=" + std::to_string(loadCase % kNumBlocks);
  EXPECT_EQ(Describe(test / "onf"), expected);
  EXPECT_EQ(ReadAllFiles(test / "onf").size(), 1u + kNumWriters * kNumBlocks);
}

TEST(TextFolder, AFolderIsFreeAgainWhenAPublicationHasFailed)
{
  const quilon_test::TempFolder test;
  FaultyFiles                   files;
  files.Arm(Fault::Death, 8);
  EXPECT_NE(MessageOf([&] { TextFolderWriter(test / "onf", files).Publish({MakeBlock(1, 1)}, {}); }), "");
  Publish(test / "onf", {MakeBlock(1, 2)}, {});
  EXPECT_EQ(Describe(test / "onf"), " 1=2");
}

// Each publication is flushed, as a user's is: the file system's clock ticks between two of them.
TEST(TextFolder, AReaderBesideAWriterSeesWholeStates)
{
  constexpr int                 kNumStates = 25;
  const quilon_test::TempFolder test;
  const auto                    publish = [&test](int value) {
    FED_FileLayer files;
    TextFolderWriter(test / "onf", files).Publish({MakeBlock(1, value), MakeBlock(2, value)}, {});
  };
  publish(0);
  std::atomic<bool> isDone = false;
  std::thread       writer([&] {
    for (int value = 1; value <= kNumStates; ++value) publish(value);
    isDone = true;
  });
  while (!isDone) {
    QuilonOnfTxtDatabase reader((test / "onf").wstring());
    const std::string    message = MessageOf([&] {
      OpenToRead(reader);
      EXPECT_EQ(GetScalar(reader, MakeKey(514, 1), 1), GetScalar(reader, MakeKey(514, 2), 1));
    });
    if (!message.empty()) {
      EXPECT_THAT(message, ::testing::HasSubstr("has changed since the database was opened"));
    }
  }
  writer.join();
  EXPECT_EQ(Describe(test / "onf"), " 1=25 2=25");
}
