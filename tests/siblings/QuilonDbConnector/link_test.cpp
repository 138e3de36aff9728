// Blocks of other databases that are taken in by linking their files.

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_BlockCopy.h"
#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

#include "database_state.h"
#include "failure_message.h"
#include "FaultyFiles.h"
#include "stored_tensors.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

constexpr auto kTemperature = static_cast<FED_OnfId>(514);
constexpr auto kText        = static_cast<FED_OnfId>(600);
constexpr auto kScalar      = static_cast<FED_OnfId>(500);

void SetTensors(FED_ResultDatabase& database, int substep, const std::vector<int>& ids)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(Key(kTensor, substep), 0), database.GetIdMapsPool(), true);
  for (const int id : ids) {
    const double tensor[6] = {1.0 * substep, 1.0 * id, 0, 0, 0, -0.5 * id};
    view.SetTensor(id, tensor);
  }
}

void SetText(FED_ResultDatabase& database, int substep, int id, const std::string& text)
{
  FED_IdDataBlock   view(database.GetOrCreateDataBlock(Key(kText, substep), 0), database.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.GetDataRecord().SetString(1, text);
  record.GetDataRecord().SetIntList(2, std::vector<int>{id, 2 * id});
  view.SetRecord(id, record);
}

/// Three commits, rows that were written twice, a deleted block and one without records; ids from `first` on, in no
/// order.
void MakeSource(const fs::path& folder, int substep, int first)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  SetTensors(database, substep, {first + 4, first, first + 2});
  SetTensors(database, substep + 100, {first});
  database.Commit();
  SetTensors(database, substep, {first + 2, first + 1, first + 3});
  SetText(database, substep, first, "set " + std::to_string(first));
  database.DeleteDataBlock(Key(kTensor, substep + 100));
  database.Commit();
  database.GetOrCreateDataBlock(Key(kScalar, substep), 0).SetScalarAt(7, 0.25);
  database.GetOrCreateDataBlock(Key(kTensor, substep + 200), 0);
  database.Commit();
}

std::vector<FED_DataDescriptor> BlocksOf(const fs::path& folder)
{
  return FED_ResultDatabase(folder, FED_ResultDatabase::ReadOnly).GetDataDescriptors(FED_DataDescriptorPattern());
}

State Read(const fs::path& folder) { return StateOf(FED_ResultDatabase(folder, FED_ResultDatabase::ReadOnly)); }

/// What one process would have made: all blocks copied record by record.
State CopyOf(const std::vector<fs::path>& sources)
{
  FED_ResultDatabase copy;
  for (const fs::path& folder : sources) {
    const FED_ResultDatabase source(folder, FED_ResultDatabase::ReadOnly);
    for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind)
      for (std::size_t index = 1; index <= source.GetIdMapsPool().GetCount(kind); ++index)
        copy.GetIdMapsPool().FindOrAddIndex(kind, source.GetIdMapsPool().GetId(kind, index));
    for (const FED_DataDescriptor& block : source.GetDataDescriptors(FED_DataDescriptorPattern()))
      FED_CopyBlock(source, copy, block);
  }
  return StateOf(copy);
}

std::string ReadFile(const fs::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFile(const fs::path& path, const std::string& bytes)
{
  // What is linked is another database's as well: it gets a file of its own first.
  fs::remove(path);
  std::ofstream(path, std::ios::binary) << bytes;
}

/// Two sources that share some ids, and no block.
class LinkedBlocks : public testing::Test
{
protected:
  LinkedBlocks()
  {
    MakeSource(a_, 1, 10);
    MakeSource(b_, 2, 12);
  }

  FED_LinkReport Join(FED_ResultDatabase& target) const
  {
    FED_LinkReport all = target.LinkBlocks(a_, BlocksOf(a_));
    const auto     b   = target.LinkBlocks(b_, BlocksOf(b_));
    all.segments += b.segments;
    all.copies += b.copies;
    all.linkedBytes += b.linkedBytes;
    all.copiedBytes += b.copiedBytes;
    return all;
  }

  void Join() const
  {
    FED_ResultDatabase target(target_, FED_ResultDatabase::Create);
    Join(target);
    target.Commit();
  }

  TempFolder files_;
  fs::path   a_      = files_ / "a.fed";
  fs::path   b_      = files_ / "b.fed";
  fs::path   target_ = files_ / "joined.fed";
};

TEST_F(LinkedBlocks, AreThoseOfBothSourcesByIdAndShareTheirFiles)
{
  {
    FED_ResultDatabase   target(target_, FED_ResultDatabase::Create);
    const FED_LinkReport report = Join(target);
    EXPECT_EQ(report.segments, 6U);
    EXPECT_EQ(report.copies, 0U);
    EXPECT_GT(report.linkedBytes, 0U);
    EXPECT_EQ(StateOf(target), CopyOf({a_, b_})) << "before the commit";
    target.Commit();
  }
  EXPECT_EQ(Read(target_), CopyOf({a_, b_}));
  std::size_t shared = 0;
  for (const auto& entry : fs::directory_iterator(target_))
    if (entry.path().extension() == ".h5" && fs::hard_link_count(entry.path()) == 2) ++shared;
  EXPECT_EQ(shared, 6U);
  const FED_DatabaseReport report = FED_InspectDatabase(target_);
  EXPECT_EQ(report.findings, std::vector<std::string>());
  EXPECT_EQ(report.leftovers, std::vector<std::string>());
}

TEST_F(LinkedBlocks, StayWhenTheSourcesGo)
{
  const State expected = CopyOf({a_, b_});
  Join();
  {
    FED_ResultDatabase source(a_, FED_ResultDatabase::ReadWrite);
    SetTensors(source, 1, {10});
    source.Compact();
  }
  fs::remove_all(b_);
  EXPECT_EQ(Read(target_), expected);
}

TEST_F(LinkedBlocks, AreChangedMergedAndCompactedAsAnyOthers)
{
  Join();
  State expected = CopyOf({a_, b_});
  for (int substep = 300; substep < 320; ++substep) {
    FED_ResultDatabase database(target_, FED_ResultDatabase::ReadWrite);
    SetTensors(database, substep, {10, 99});
    SetTensors(database, 1, {11});
    database.Commit();
    expected = StateOf(database);
    EXPECT_EQ(Read(target_), expected) << substep;
  }
  EXPECT_EQ(FED_InspectDatabase(target_).findings, std::vector<std::string>());
  {
    FED_ResultDatabase database(target_, FED_ResultDatabase::ReadWrite);
    database.Compact();
  }
  EXPECT_EQ(Read(target_), expected);
  for (const auto& entry : fs::directory_iterator(target_)) EXPECT_NE(entry.path().extension(), ".index");
  EXPECT_EQ(ReadFile(target_ / "manifest").substr(0, 18), "quilon-database 2\n");
}

TEST_F(LinkedBlocks, AreLinkedOnFromAJoinedDatabase)
{
  Join();
  const fs::path again = files_ / "again.fed";
  {
    FED_ResultDatabase target(again, FED_ResultDatabase::Create);
    SetTensors(target, 50, {12, 11});  // other indices
    target.LinkBlocks(target_, BlocksOf(target_));
    target.Commit();
  }
  FED_ResultDatabase       copy;
  const FED_ResultDatabase joined(target_, FED_ResultDatabase::ReadOnly);
  SetTensors(copy, 50, {12, 11});
  for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind)
    for (std::size_t index = 1; index <= joined.GetIdMapsPool().GetCount(kind); ++index)
      copy.GetIdMapsPool().FindOrAddIndex(kind, joined.GetIdMapsPool().GetId(kind, index));
  for (const FED_DataDescriptor& block : BlocksOf(target_)) FED_CopyBlock(joined, copy, block);
  EXPECT_EQ(Read(again), StateOf(copy));
  EXPECT_EQ(FED_InspectDatabase(again).findings, std::vector<std::string>());
}

TEST_F(LinkedBlocks, OfSomeOfABlocksAreThoseAlone)
{
  {
    FED_ResultDatabase target(target_, FED_ResultDatabase::Create);
    target.LinkBlocks(a_, {Key(kText, 1)});
    target.Commit();
  }
  EXPECT_EQ(BlocksOf(target_), std::vector<FED_DataDescriptor>{Key(kText, 1)});
  EXPECT_EQ(FED_InspectDatabase(target_).findings, std::vector<std::string>());
}

/// A file system that gives no file a second name.
class NoLinks final : public FED_FileLayer
{
public:
  std::error_code Link(const fs::path&, const fs::path&) override
  {
    return std::make_error_code(std::errc::cross_device_link);
  }
};

TEST_F(LinkedBlocks, AreCopiedWhereNoFileHasTwoNames)
{
  NoLinks                   files;
  FED_ResultDatabaseOptions options;
  options.files = &files;
  {
    FED_ResultDatabase   target(target_, FED_ResultDatabase::Create, options);
    const FED_LinkReport report = Join(target);
    EXPECT_EQ(report.copies, 6U);
    EXPECT_EQ(report.linkedBytes, 0U);
    target.Commit();
  }
  EXPECT_EQ(Read(target_), CopyOf({a_, b_}));
  EXPECT_EQ(FED_InspectDatabase(target_).findings, std::vector<std::string>());
}

TEST_F(LinkedBlocks, WithoutTheManifestAreSaved)
{
  Join();
  fs::remove(target_ / "manifest");
  FED_ResultDatabase saved;
  FED_SalvageDatabase(target_, saved);
  EXPECT_EQ(StateOf(saved), CopyOf({a_, b_}));
}

TEST_F(LinkedBlocks, TellWhateverByteIsChanged)
{
  Join();
  const State expected = Read(target_);
  for (const auto& entry : fs::directory_iterator(target_)) {
    if (entry.path().filename() == "lock") continue;
    const std::string whole = ReadFile(entry.path());
    const std::size_t step  = entry.path().extension() == ".h5" ? 211 : 5;
    for (std::size_t at = 0; at < whole.size(); at += step) {
      std::string bytes = whole;
      bytes[at]         = static_cast<char>(bytes[at] ^ 0x10);
      WriteFile(entry.path(), bytes);
      ASSERT_FALSE(FED_InspectDatabase(target_).findings.empty()) << entry.path() << ", byte " << at;
    }
    WriteFile(entry.path(), whole);
  }
  EXPECT_EQ(Read(target_), expected);
}

// Files that were commits of a source by themselves look like commits that follow, if one overlooks what is beside
// them.
TEST_F(LinkedBlocks, AreNotTakenForCommits)
{
  Join();
  const State expected = Read(target_);
  WriteFile(target_ / "segment-000008.h5", "no segment");
  EXPECT_EQ(Read(target_), expected);
  FED_ResultDatabase(target_, FED_ResultDatabase::ReadWrite);
  EXPECT_EQ(Read(target_), expected);
}

TEST_F(LinkedBlocks, AreRefusedWhereTheyAreNotThereOrThereAlready)
{
  FED_ResultDatabase target(target_, FED_ResultDatabase::Create);
  EXPECT_EQ(MessageOf([&] { target.LinkBlocks(a_, {Key(kTensor, 9)}); }),
            "block iteration=0 onf=521 substep=9: the database " + a_.string() + " has no such block");
  SetTensors(target, 1, {3});
  EXPECT_EQ(MessageOf([&] { target.LinkBlocks(a_, {Key(kTensor, 1)}); }),
            "block iteration=0 onf=521 substep=1: the database has it already");
  FED_ResultDatabase memory;
  EXPECT_EQ(MessageOf([&] { memory.LinkBlocks(a_, {}); }),
            "FED_ResultDatabase: a database in memory takes no files, expected one on disk");
}

// An index without an id would get one of another database's.
TEST_F(LinkedBlocks, WithRecordsThatHaveNoIdComeAloneOrNotAtAll)
{
  const fs::path odd = files_ / "odd.fed";
  {
    FED_ResultDatabase database(odd, FED_ResultDatabase::Create);
    database.GetOrCreateDataBlock(Key(kTemperature, 70), 0).SetScalarAt(5, 1.0);
    database.Commit();
  }
  {
    FED_ResultDatabase target(files_ / "first.fed", FED_ResultDatabase::Create);
    target.LinkBlocks(a_, BlocksOf(a_));
    EXPECT_EQ(
        MessageOf([&] { target.LinkBlocks(odd, BlocksOf(odd)); }),
        "block iteration=0 onf=514 substep=70: a record stands at an index that no id has; it has no place beside "
        "other ids");
  }
}

/// Whatever fails, and wherever: there is no database, or the whole one, and the sources are as they were.
TEST_F(LinkedBlocks, AreAllThereOrNoneWhateverFails)
{
  const State expected = CopyOf({a_, b_});
  for (const auto fault : {Fault::InputOutputError, Fault::DiskFull, Fault::ShortWrite, Fault::Death,
                           Fault::DeathBehind, Fault::PowerLoss, Fault::PowerLossButRenames})
  {
    std::size_t position = 0;
    for (bool hasFailed = true; hasFailed;) {
      fs::remove_all(target_);
      FaultyFiles files;
      files.Arm(fault, ++position);
      FED_ResultDatabaseOptions options;
      options.files = &files;
      try {
        FED_ResultDatabase target(target_, FED_ResultDatabase::Create, options);
        Join(target);
        target.Commit();
      } catch (const FED_Failure&) {
      }
      hasFailed = files.HasFailed();
      files.Bury();
      const bool isThere = fs::exists(target_ / "manifest");
      if (isThere) {
        ASSERT_EQ(Read(target_), expected) << "call " << position;
        ASSERT_EQ(FED_InspectDatabase(target_).findings, std::vector<std::string>()) << "call " << position;
      } else {
        ASSERT_TRUE(hasFailed);
        FaultyFiles               sound;  // and flushes nothing
        FED_ResultDatabaseOptions again;
        again.files = &sound;
        FED_ResultDatabase target(target_, FED_ResultDatabase::Create, again);  // what is left is no obstacle
        Join(target);
        target.Commit();
      }
    }
    EXPECT_EQ(CopyOf({a_, b_}), expected);
    EXPECT_GT(position, 60U);
  }
}

}  // namespace
}  // namespace quilon_test
