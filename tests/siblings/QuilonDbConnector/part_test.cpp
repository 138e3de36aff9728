// Parts of a database that several write at a time.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
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

constexpr auto kNodes = static_cast<FED_OnfId>(516);

void SetTensors(FED_ResultDatabase& database, int substep, int numIds)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(Key(kTensor, substep), 0), database.GetIdMapsPool(), true);
  for (int id = 1; id <= numIds; ++id) {
    const double tensor[6] = {1.0 * substep, 1.0 * id, 0, 0, 0, -0.5 * id};
    view.SetTensor(id, tensor);
  }
}

void SetNodes(FED_ResultDatabase& database, int numIds)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(Key(kNodes, 0), 0), database.GetIdMapsPool(), true);
  for (int id = numIds; id >= 1; --id) {
    const double place[3] = {1.0 * id, 0, 0};
    view.SetVector(id, place);
  }
}

std::map<std::string, std::string> FilesOf(const fs::path& folder)
{
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::directory_iterator(folder)) {
    std::ifstream in(entry.path(), std::ios::binary);
    files[entry.path().filename().string()] = {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  return files;
}

State Read(const fs::path& folder) { return StateOf(FED_ResultDatabase(folder, FED_ResultDatabase::ReadOnly)); }

/// A database of ten nodes, whose tensors come in parts: substeps 10 i and 10 i + 1 in part i.
class Parts : public testing::Test
{
protected:
  static constexpr int kNumIds = 10;

  /// Writes a part in a process or a thread of its own, as far as files tell.
  std::uint64_t WritePart(const FED_DatabasePart& part, const FED_PartBase& base, int number, int numIds = kNumIds,
                          const FED_ResultDatabaseOptions& options = {}) const
  {
    FED_ResultDatabase database(folder_, part, base, options);
    SetTensors(database, 10 * number, numIds);
    SetTensors(database, 10 * number + 1, numIds);
    return database.FinishPart();
  }

  /// @param order in which parts are written
  void Make(const std::vector<std::size_t>& order, int numIds = kNumIds,
            const FED_ResultDatabaseOptions& options = {}) const
  {
    FED_ResultDatabase database(folder_, FED_ResultDatabase::Create);
    SetNodes(database, numIds);
    database.SetUserKindName(static_cast<FED_OnfId>(1000), "known");
    const auto                 parts = database.ReserveParts(order.size());
    const FED_PartBase         base  = database.GetPartBase();
    std::vector<std::uint64_t> segments(order.size());
    for (const std::size_t part : order)
      segments[part] = WritePart(parts[part], base, static_cast<int>(part), numIds, options);
    for (std::size_t part = 0; part < order.size(); ++part) {
      const std::vector<FED_DataDescriptor> taken = database.TakePart(parts[part], segments[part]);
      ASSERT_EQ(taken.size(), 2U);
      EXPECT_EQ(taken[0], Key(kTensor, 10 * static_cast<int>(part)));
    }
    database.Commit();
  }

  TempFolder files_;
  fs::path   folder_ = files_ / "new.fed";
};

TEST_F(Parts, MakeTheSameFilesInWhateverOrderTheyAreWritten)
{
  Make({0, 1, 2});
  const auto expected = FilesOf(folder_);
  EXPECT_EQ(FED_InspectDatabase(folder_).findings, std::vector<std::string>());
  EXPECT_EQ(FED_InspectDatabase(folder_).leftovers, std::vector<std::string>());
  fs::remove_all(folder_);
  Make({2, 0, 1});
  EXPECT_TRUE(FilesOf(folder_) == expected);
}

TEST_F(Parts, HoldWhatOneWriterWouldHaveWritten)
{
  FED_ResultDatabase whole;
  SetNodes(whole, kNumIds);
  whole.SetUserKindName(static_cast<FED_OnfId>(1000), "known");
  for (const int substep : {0, 1, 10, 11, 20, 21}) SetTensors(whole, substep, kNumIds);
  Make({0, 1, 2});
  EXPECT_EQ(Read(folder_), StateOf(whole));
}

TEST_F(Parts, AreChangedAndCompactedAsAnythingElse)
{
  Make({0, 1, 2});
  {
    FED_ResultDatabase database(folder_, FED_ResultDatabase::ReadWrite);
    SetTensors(database, 10, 3);
    SetTensors(database, 99, 3);
    database.DeleteDataBlock(Key(kTensor, 20));
    database.Commit();
  }
  const State expected = Read(folder_);
  EXPECT_EQ(expected.count("block " + Key(kTensor, 20).ToString()), 0U);
  FED_ResultDatabase(folder_, FED_ResultDatabase::ReadWrite).Compact();
  EXPECT_EQ(Read(folder_), expected);
  EXPECT_EQ(FED_InspectDatabase(folder_).findings, std::vector<std::string>());
}

TEST_F(Parts, OfMoreRowsThanFitIntoMemoryAreOneSegmentAllTheSame)
{
  FED_ResultDatabaseOptions little;
  little.memoryLimit  = 1 << 16;
  constexpr int kMany = 4000;
  Make({0, 1}, kMany, little);
  const auto  files    = FilesOf(folder_);
  std::size_t segments = 0;
  for (const auto& [name, bytes] : files) segments += name.starts_with("segment-") ? 1 : 0;
  EXPECT_EQ(segments, 3U);
  FED_ResultDatabase whole;
  SetNodes(whole, kMany);
  whole.SetUserKindName(static_cast<FED_OnfId>(1000), "known");
  for (const int substep : {0, 1, 10, 11}) SetTensors(whole, substep, kMany);
  EXPECT_EQ(Read(folder_), StateOf(whole));
}

TEST_F(Parts, TakeThePlaceOfBlocksOfTheirKeys)
{
  {
    FED_ResultDatabase database(folder_, FED_ResultDatabase::Create);
    SetTensors(database, 0, 3);
    SetTensors(database, 5, 3);
    database.Commit();
  }
  FED_ResultDatabase database(folder_, FED_ResultDatabase::ReadWrite);
  SetNodes(database, kNumIds);
  const auto parts = database.ReserveParts(1);
  database.TakePart(parts[0], WritePart(parts[0], database.GetPartBase(), 0));
  FED_ResultDatabase whole;
  SetTensors(whole, 0, 3);
  SetNodes(whole, kNumIds);
  for (const int substep : {0, 1}) SetTensors(whole, substep, kNumIds);
  SetTensors(whole, 5, 3);
  EXPECT_EQ(StateOf(database), StateOf(whole)) << "before the commit";
  database.Commit();
  EXPECT_EQ(Read(folder_), StateOf(whole));
}

/// Files that are never flushed: a test that writes thousands of them.
class HastyFiles final : public FED_FileLayer
{
public:
  std::error_code Flush(Handle) override { return {}; }
  std::error_code FlushFolder(const fs::path&) override { return {}; }
};

// The numbers behind those of a part are the next one's, which may be written at the same time.
TEST_F(Parts, OfTooManyPiecesFailBeforeTheyTouchTheNextOne)
{
  HastyFiles                files;
  FED_ResultDatabaseOptions little;
  little.memoryLimit = 0;
  little.files       = &files;
  FED_ResultDatabase database(folder_, FED_ResultDatabase::Create);
  SetNodes(database, 4);
  const auto          parts = database.ReserveParts(2);
  const FED_PartBase  base  = database.GetPartBase();
  const std::uint64_t next  = WritePart(parts[1], base, 1, 4);
  const auto          write = [&] {
    FED_ResultDatabase part(folder_, parts[0], base, little);
    for (int substep = 0; substep < 20000; ++substep) SetTensors(part, substep, 4);
    part.FinishPart();
  };
  EXPECT_EQ(MessageOf(write),
            folder_.string() + ": a part is written in more than 1000 pieces, expected more memory for each");
  EXPECT_EQ(database.TakePart(parts[1], next).size(), 2U);
}

TEST_F(Parts, WithoutBlocksAreNoFile)
{
  FED_ResultDatabase database(folder_, FED_ResultDatabase::Create);
  const auto         parts   = database.ReserveParts(1);
  const auto         segment = FED_ResultDatabase(folder_, parts[0], database.GetPartBase()).FinishPart();
  EXPECT_EQ(segment, 0U);
  EXPECT_EQ(database.TakePart(parts[0], segment), std::vector<FED_DataDescriptor>());
}

TEST_F(Parts, ThatAreNotTakenLeaveNothing)
{
  Make({0});
  const auto before = FilesOf(folder_);
  {
    FED_ResultDatabase database(folder_, FED_ResultDatabase::ReadWrite);
    const auto         parts = database.ReserveParts(3);
    const FED_PartBase base  = database.GetPartBase();
    database.TakePart(parts[0], WritePart(parts[0], base, 3));
    WritePart(parts[1], base, 4);
    FED_ResultDatabase unfinished(folder_, parts[2], base);
    SetTensors(unfinished, 50, kNumIds);
  }
  EXPECT_TRUE(FilesOf(folder_) == before);
}

// As when its process was killed.
TEST_F(Parts, OfAWriterThatDiedGoWithTheNextOne)
{
  Make({0});
  const auto before = FilesOf(folder_);
  fs::copy_file(folder_ / "segment-000001.h5", folder_ / "segment-002001.h5");
  EXPECT_EQ(Read(folder_).empty(), false);
  {
    const FED_ResultDatabase database(folder_, FED_ResultDatabase::ReadWrite);
  }
  EXPECT_TRUE(FilesOf(folder_) == before);
}

TEST_F(Parts, HaveNoIdsAndNamesOfTheirOwn)
{
  FED_ResultDatabase database(folder_, FED_ResultDatabase::Create);
  SetNodes(database, 2);
  const auto         parts = database.ReserveParts(2);
  const FED_PartBase base  = database.GetPartBase();
  EXPECT_EQ(MessageOf([&] { WritePart(parts[0], base, 0, 3); }),
            "FED_ResultDatabase: a part has id 3 of entity kind 0, expected ids of its database alone");
  FED_ResultDatabase named(folder_, parts[1], base);
  named.SetUserKindName(static_cast<FED_OnfId>(1001), "new");
  EXPECT_EQ(MessageOf([&] { named.FinishPart(); }), "FED_ResultDatabase: expected a part without names of its own");
}

TEST_F(Parts, AreTakenInTheirOrderAndAsThemselves)
{
  FED_ResultDatabase database(folder_, FED_ResultDatabase::Create);
  SetNodes(database, kNumIds);
  const auto          parts = database.ReserveParts(3);
  const FED_PartBase  base  = database.GetPartBase();
  const std::uint64_t first = WritePart(parts[0], base, 0), second = WritePart(parts[1], base, 1);
  const std::string   name = (folder_ / "segment-001001.h5").string();
  EXPECT_EQ(MessageOf([&] { database.TakePart(parts[2], second); }),
            name + ": not the segment of a part of the database");
  database.TakePart(parts[1], second);
  EXPECT_EQ(MessageOf([&] { database.TakePart(parts[0], first); }),
            (folder_ / "segment-000001.h5").string() +
                ": a part comes behind what was written later, expected parts in their order");
  EXPECT_EQ(MessageOf([&] { database.TakePart(parts[2], parts[2].firstSegment); }),
            (folder_ / "segment-002001.h5").string() + ": cannot open: No such file or directory");
}

TEST_F(Parts, AreOfDatabasesOnDisk)
{
  FED_ResultDatabase database;
  EXPECT_EQ(MessageOf([&] { database.ReserveParts(1); }),
            "FED_ResultDatabase: a database in memory has no parts, expected one on disk");
}

// Whatever call of the part's writer fails: nothing of the part is there, and the database goes on without it.
TEST_F(Parts, AreWholeOrNotThere)
{
  Make({0});
  FED_ResultDatabase database(folder_, FED_ResultDatabase::ReadWrite);
  const FED_PartBase base   = database.GetPartBase();
  std::size_t        failed = 0;
  for (const Fault fault : {Fault::InputOutputError, Fault::DiskFull, Fault::ShortWrite}) {
    const auto before = FilesOf(folder_);
    for (std::size_t position = 1;; ++position) {
      const FED_DatabasePart    part = database.ReserveParts(1)[0];
      FaultyFiles               files;
      FED_ResultDatabaseOptions options;
      options.files         = &files;
      std::uint64_t segment = 0;
      files.Arm(fault, position);
      const std::string message = MessageOf([&] { segment = WritePart(part, base, 7, kNumIds, options); });
      if (!files.HasFailed()) {
        database.TakePart(part, segment);
        break;
      }
      if (segment != 0) continue;  // it was the closing of a file whose bytes are on the disk
      EXPECT_NE(message.find(folder_.string()), std::string::npos) << message;
      EXPECT_TRUE(FilesOf(folder_) == before) << position;
      ++failed;
      ASSERT_LT(position, 100U) << "it fails for ever";
    }
  }
  EXPECT_GT(failed, 10U);
}

}  // namespace
}  // namespace quilon_test
