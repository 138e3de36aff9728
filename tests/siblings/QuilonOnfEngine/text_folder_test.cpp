// Publishing, stopped at every step.

#include "text_folder.h"

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "onf_text_support.h"
#include "text_output.h"

namespace {

/// What happens at the chosen step.
enum class Fault
{
  Fails,  ///< the step fails, later ones (tidying up) work
  Dies    ///< the process is gone: nothing happens any more
};

/// Counts the steps and fails at one of them. A write that fails has written half of its bytes.
class FaultyDisk : public Disk
{
public:
  FaultyDisk(std::size_t failingStep, Fault fault) : failingStep_(failingStep), fault_(fault) {}

  std::size_t GetStepCount() const noexcept { return step_; }

  /// @return whether the step works
  bool Step()
  {
    if (isDead_) return false;
    if (++step_ != failingStep_) return true;
    isDead_ = fault_ == Fault::Dies;
    return false;
  }
  void Require()
  {
    if (!Step()) throw FED_Failure("the disk fails", "|%P|Test|FaultyDisk");
  }

  bool CreateFolder(const std::filesystem::path& folder) override
  {
    Require();
    return Disk::CreateFolder(folder);
  }
  std::unique_ptr<OutputFile> CreateFile(const std::filesystem::path& path) override
  {
    Require();
    return std::make_unique<File>(*this, Disk::CreateFile(path));
  }
  void Rename(const std::filesystem::path& from, const std::filesystem::path& to) override
  {
    Require();
    Disk::Rename(from, to);
  }
  // Nobody pulls the plug, so there is nothing to wait for.
  void SyncFile(const std::filesystem::path& /*path*/) override { Require(); }
  void SyncFolder(const std::filesystem::path& /*folder*/) override { Require(); }
  void Remove(const std::filesystem::path& path) noexcept override
  {
    if (Step()) Disk::Remove(path);
  }

private:
  class File : public OutputFile
  {
  public:
    File(FaultyDisk& disk, std::unique_ptr<OutputFile> file) : disk_(disk), file_(std::move(file)) {}

    void Write(const char* data, std::size_t size) override
    {
      if (disk_.Step()) {
        file_->Write(data, size);
        return;
      }
      if (disk_.step_ == disk_.failingStep_) file_->Write(data, size / 2);
      throw FED_Failure("the disk is full", "|%P|Test|FaultyDisk");
    }
    void Close() override
    {
      disk_.Require();
      file_->Close();
    }

  private:
    FaultyDisk&                 disk_;
    std::unique_ptr<OutputFile> file_;
  };

  std::size_t failingStep_;
  Fault       fault_;
  std::size_t step_   = 0;
  bool        isDead_ = false;
};

NewBlock MakeBlock(int loadCase, int value)
{
  return {MakeKey(514, loadCase), [=](TextOutput& out) {
            out.Append("onf-text-block: 1\niteration: 0\nonf: 514 temperature\nload-case: " + std::to_string(loadCase) +
                       "\nrecord-format: D\nrecords-by: id\nrecords: 1\n1 " + std::to_string(value) + "\n");
          }};
}

constexpr std::size_t kNever = 0;

void Publish(const std::filesystem::path& folder, const std::vector<NewBlock>& blocks, const UserKindNames& names)
{
  FaultyDisk disk(kNever, Fault::Fails);
  PublishBlocks(folder, blocks, names, disk);
}

/// All that a reader sees, as text; "none" where there is no database.
std::string Describe(const std::filesystem::path& folder)
{
  if (!std::filesystem::exists(folder / "index")) return "none";
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

class TextFolderFaults : public ::testing::TestWithParam<Fault>
{};

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, TextFolderFaults, ::testing::Values(Fault::Fails, Fault::Dies),
                         [](const auto& row) { return row.param == Fault::Fails ? "Fails" : "Dies"; });

TEST_P(TextFolderFaults, AReplacementThatStopsAnywhereShowsTheOldStateOrTheNewOne)
{
  const std::vector<NewBlock>   oldBlocks = {MakeBlock(1, 1), MakeBlock(2, 2)};
  const std::vector<NewBlock>   newBlocks = {MakeBlock(1, 10), MakeBlock(3, 30)};
  const quilon_test::TempFolder test;
  Publish(test / "expected", {MakeBlock(1, 10), MakeBlock(2, 2), MakeBlock(3, 30)}, {{1000, "new"}});
  const auto expected = ReadAllFiles(test / "expected");

  bool        wasNew        = false;
  std::size_t step          = 0;
  int         leftoverSteps = 0;
  for (bool isDone = false; !isDone;) {
    const std::filesystem::path folder = test / std::to_string(++step);
    Publish(folder, oldBlocks, {{1000, "old"}});
    const auto before = ReadAllFiles(folder);
    FaultyDisk disk(step, GetParam());
    const bool failed = !MessageOf([&] { PublishBlocks(folder, newBlocks, {{1000, "new"}}, disk); }).empty();
    const auto after  = ReadAllFiles(folder);
    isDone            = disk.GetStepCount() < step;

    const std::string state = Describe(folder);
    const bool        isNew = state == "new 1=10 2=2 3=30";
    if (!isNew) {
      EXPECT_EQ(state, "old 1=1 2=2") << "step " << step;
      EXPECT_TRUE(failed) << "step " << step;
      EXPECT_FALSE(wasNew) << "step " << step << " loses what step " << step - 1 << " had published";
    }
    wasNew = isNew;
    if (GetParam() == Fault::Fails && !isNew && after != before) ++leftoverSteps;

    // The next writer finishes and tidies up.
    Publish(folder, newBlocks, {{1000, "new"}});
    EXPECT_EQ(ReadAllFiles(folder), expected) << "step " << step;
  }
  EXPECT_TRUE(wasNew);
  EXPECT_GT(step, 20u);
  // Nothing is left behind, but where the index itself cannot be renamed and nobody knows whether it was.
  EXPECT_LE(leftoverSteps, 1);
}

TEST_P(TextFolderFaults, AnotherWriterAfterAStopAnywhereKeepsWhatWasPublished)
{
  const quilon_test::TempFolder test;
  std::size_t                   step = 0;
  for (bool isDone = false; !isDone;) {
    const std::filesystem::path folder = test / std::to_string(++step);
    Publish(folder, {MakeBlock(1, 1), MakeBlock(2, 2)}, {});
    FaultyDisk disk(step, GetParam());
    MessageOf([&] { PublishBlocks(folder, {MakeBlock(1, 10)}, {}, disk); });
    isDone            = disk.GetStepCount() < step;
    const bool wasNew = Describe(folder) == " 1=10 2=2";
    Publish(folder, {MakeBlock(2, 20)}, {});
    EXPECT_EQ(Describe(folder), wasNew ? " 1=10 2=20" : " 1=1 2=20") << "step " << step;
    for (const auto& [name, bytes] : ReadAllFiles(folder)) EXPECT_EQ(name.find(".new"), std::string::npos) << name;
  }
}

TEST_P(TextFolderFaults, AFirstPublicationThatStopsAnywhereShowsNothingOrAll)
{
  const quilon_test::TempFolder test;
  Publish(test / "expected", {MakeBlock(1, 1), MakeBlock(2, 2)}, {});
  const auto  expected      = ReadAllFiles(test / "expected");
  std::size_t step          = 0;
  int         leftoverSteps = 0;
  for (bool isDone = false; !isDone;) {
    const std::filesystem::path folder = test / std::to_string(++step);
    FaultyDisk                  disk(step, GetParam());
    MessageOf([&] { PublishBlocks(folder, {MakeBlock(1, 1), MakeBlock(2, 2)}, {}, disk); });
    isDone                  = disk.GetStepCount() < step;
    const std::string state = Describe(folder);
    EXPECT_TRUE(state == " 1=1 2=2" || state == "none") << state << " at step " << step;
    if (GetParam() == Fault::Fails && state == "none" && std::filesystem::exists(folder)) ++leftoverSteps;
    Publish(folder, {MakeBlock(1, 1), MakeBlock(2, 2)}, {});
    EXPECT_EQ(ReadAllFiles(folder), expected) << "step " << step;
  }
  EXPECT_LE(leftoverSteps, 1);
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
TEST(TextFolder, PublicationsOfOneFolderWaitForEachOther)
{
  constexpr int                 kNumWriters = 4;
  constexpr int                 kNumBlocks  = 10;
  const quilon_test::TempFolder test;
  std::vector<std::thread>      writers;
  for (int writer = 0; writer < kNumWriters; ++writer)
    writers.emplace_back([&test, writer] {
      for (int i = 0; i < kNumBlocks; ++i)
        EXPECT_EQ(MessageOf([&] { Publish(test / "onf", {MakeBlock(kNumBlocks * writer + i, i)}, {}); }), "");
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
  FaultyDisk                    disk(3, Fault::Dies);
  EXPECT_NE(MessageOf([&] { PublishBlocks(test / "onf", {MakeBlock(1, 1)}, {}, disk); }), "");
  Publish(test / "onf", {MakeBlock(1, 2)}, {});
  EXPECT_EQ(Describe(test / "onf"), " 1=2");
}

// Each publication is flushed, as a user's is: the file system's clock ticks between two of them.
TEST(TextFolder, AReaderBesideAWriterSeesWholeStates)
{
  constexpr int                 kNumStates = 25;
  const quilon_test::TempFolder test;
  const auto                    publish = [&test](int value) {
    Disk disk;
    PublishBlocks(test / "onf", {MakeBlock(1, value), MakeBlock(2, value)}, {}, disk);
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
