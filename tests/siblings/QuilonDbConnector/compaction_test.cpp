// Compaction in pieces, in little room.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

#include "database_state.h"
#include "stored_tensors.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

constexpr auto kPoints = static_cast<FED_OnfId>(582);

constexpr std::uint64_t kEnough  = std::uint64_t{1} << 30;
constexpr std::uint64_t kOneFile = 200'000;  // more than a file of the folder below has, less than two

void SetPoints(FED_ResultDatabase& database, int substep, int element, int numPoints)
{
  FED_IdDataBlock   view(database.GetOrCreateDataBlock(Key(kPoints, substep), 0), database.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.GetDataRecord().SetInteger(1, numPoints);
  record.GetDataRecord().SetDoubleList(2, std::vector<double>(static_cast<std::size_t>(6 * numPoints), 0.5 * element));
  view.SetRecord(element, record);
  view.DeleteIdDataRecord(record);
}

/// Six files of 150 kB and a small one. Of the second and the fourth a third is dead; the third, and lists of the
/// first, are replaced in part by the last one.
void MakeWorn(const fs::path& folder)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  for (int step = 1; step <= 6; ++step) {
    SetTensors(database, step, 1, 2000, step);
    SetTensors(database, 100 + step, 1, 1000, -step);
    if (step == 1)
      for (int element = 1; element <= 20; ++element) SetPoints(database, 1, element, element % 4);
    database.Commit();
  }
  database.DeleteDataBlock(Key(kTensor, 102));
  database.DeleteDataBlock(Key(kTensor, 104));
  SetTensors(database, 3, 501, 700, 33.0);
  for (int element = 5; element <= 9; ++element) SetPoints(database, 1, element, 5);
  database.Commit();
}

State Read(const fs::path& folder) { return StateOf(FED_ResultDatabase(folder, FED_ResultDatabase::ReadOnly)); }

std::uint64_t BytesOf(const fs::path& folder)
{
  std::uint64_t bytes = 0;
  for (const auto& entry : fs::directory_iterator(folder)) bytes += entry.file_size();
  return bytes;
}

std::vector<std::string> FilesOf(const fs::path& folder)
{
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

/// Knows the most bytes that the folder had at any time.
class MeasuredDisk : public FED_FileLayer
{
public:
  explicit MeasuredDisk(fs::path folder) : folder_(std::move(folder)) {}

  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count) override
  {
    const std::error_code error = FED_FileLayer::WriteAt(handle, offset, bytes, count);
    most_                       = std::max(most_, BytesOf(folder_));
    return error;
  }

  std::uint64_t GetMost() const noexcept { return most_; }

private:
  fs::path      folder_;
  std::uint64_t most_ = 0;
};

class CompactionInPieces : public testing::Test
{
protected:
  CompactionInPieces()
  {
    MakeWorn(worn_);
    before_ = Read(worn_);
  }

  /// @return how many pieces there were; after each of them the database is whole, and as it was
  std::size_t CompactAll(std::uint64_t room, FED_FileLayer* files = nullptr) const
  {
    FED_ResultDatabaseOptions options;
    options.files = files;
    FED_ResultDatabase database(worn_, FED_ResultDatabase::ReadWrite, options);
    std::size_t        pieces = 0;
    while (database.CompactPiece(room).segments > 0) {
      ++pieces;
      EXPECT_EQ(Read(worn_), before_);
      EXPECT_EQ(FED_InspectDatabase(worn_).findings, std::vector<std::string>());
    }
    EXPECT_EQ(StateOf(database), before_);
    return pieces;
  }

  TempFolder files_;
  fs::path   worn_ = files_ / "worn.fed";
  State      before_;
};

TEST_F(CompactionInPieces, GivesAllBytesBackAndThenDoesNothingMore)
{
  const std::uint64_t bytes = BytesOf(worn_);
  ASSERT_EQ(FED_InspectDatabase(worn_).segments, 7U);
  EXPECT_GE(CompactAll(kOneFile), 4U);
  const FED_DatabaseReport report = FED_InspectDatabase(worn_);
  EXPECT_EQ(report.deadBytes, 0U);
  EXPECT_EQ(report.leftovers, std::vector<std::string>());
  // Two blocks of 48 kB and 200 rows of 48 bytes, less what is told of the pieces.
  EXPECT_LT(BytesOf(worn_), bytes - 2 * 48'000 - 200 * 48 + 4'000);
  const std::vector<std::string> names = FilesOf(worn_);
  EXPECT_EQ(CompactAll(kOneFile), 0U);
  EXPECT_EQ(FilesOf(worn_), names);
  EXPECT_EQ(FED_InspectDatabase(worn_).generation, report.generation);
}

TEST_F(CompactionInPieces, TakesNeighboursAlongAsFarAsThereIsRoom)
{
  EXPECT_EQ(CompactAll(kEnough), 1U);
  EXPECT_EQ(FED_InspectDatabase(worn_).segments, 1U);
}

TEST_F(CompactionInPieces, NeverNeedsMoreThanTheRoom)
{
  for (const std::uint64_t room : {kOneFile, 2 * kOneFile}) {
    fs::remove_all(worn_);
    MakeWorn(worn_);
    const std::uint64_t bytes = BytesOf(worn_);
    MeasuredDisk        disk(worn_);
    CompactAll(room, &disk);
    EXPECT_GT(disk.GetMost(), bytes);
    constexpr std::uint64_t kManifestBytes = 1024;  // the new one stands beside the old
    EXPECT_LE(disk.GetMost(), bytes + room + kManifestBytes);
  }
}

TEST_F(CompactionInPieces, FilesThatNeedMoreRoomStayAndAreTold)
{
  FED_ResultDatabase        database(worn_, FED_ResultDatabase::ReadWrite);
  const FED_CompactionPiece rest  = database.GetCompactionRest(120'000);  // before anything is done
  const FED_CompactionPiece piece = database.CompactPiece(120'000);
  // The second and the fourth have 100 kB left; the first and the third have all but some rows.
  EXPECT_EQ(piece.segments, 1U);
  EXPECT_EQ(piece.keptSegments, 2U);
  EXPECT_GE(piece.keptBytes, 200U * 48U);
  EXPECT_GT(piece.roomForAll, 120'000U);
  EXPECT_EQ(database.CompactPiece(120'000).segments, 1U);
  const FED_CompactionPiece last = database.CompactPiece(120'000);
  EXPECT_EQ(last.segments, 0U);
  EXPECT_EQ(last.keptSegments, 2U);
  EXPECT_EQ(rest.segments, 0U);
  EXPECT_EQ(rest.keptSegments, 2U);
  EXPECT_EQ(rest.keptBytes, last.keptBytes);
  EXPECT_EQ(rest.roomForAll, last.roomForAll);
  EXPECT_EQ(database.GetCompactionRest(last.roomForAll).keptSegments, 0U);
  EXPECT_GT(database.CompactPiece(last.roomForAll).segments, 0U);
  EXPECT_GT(database.CompactPiece(last.roomForAll).segments, 0U);
  EXPECT_EQ(database.CompactPiece(0).keptSegments, 0U);
  EXPECT_EQ(StateOf(database), before_);
}

TEST_F(CompactionInPieces, GoesOnWhereItWasStopped)
{
  std::size_t pieces = 0;
  for (bool goesOn = true; goesOn;) {
    FED_ResultDatabase database(worn_, FED_ResultDatabase::ReadWrite);
    goesOn = database.CompactPiece(kOneFile).segments > 0;
    pieces += goesOn ? 1 : 0;
    ASSERT_LE(pieces, 10U);
  }
  EXPECT_GE(pieces, 4U);
  EXPECT_EQ(Read(worn_), before_);
  EXPECT_EQ(FED_InspectDatabase(worn_).deadBytes, 0U);
}

TEST_F(CompactionInPieces, ReadersKeepWhatTheyHaveOpen)
{
  const FED_ResultDatabase reader(worn_, FED_ResultDatabase::ReadOnly);
  EXPECT_GT(CompactAll(kOneFile), 0U);
  EXPECT_EQ(StateOf(reader), before_);
}

TEST_F(CompactionInPieces, CommitsWhatWasWrittenBefore)
{
  FED_ResultDatabase database(worn_, FED_ResultDatabase::ReadWrite);
  database.DeleteDataBlock(Key(kTensor, 5));
  SetTensors(database, 7, 1, 3, 7.0);
  while (database.CompactPiece(kEnough).segments > 0) {
  }
  EXPECT_FALSE(database.HasDataBlock(Key(kTensor, 5)));
  EXPECT_EQ(Read(worn_), StateOf(database));
  EXPECT_NE(Read(worn_), before_);
}

TEST_F(CompactionInPieces, SegmentsOfWhichNothingIsLeftGo)
{
  {
    FED_ResultDatabase database(worn_, FED_ResultDatabase::ReadWrite);
    for (const FED_DataDescriptor& block : database.GetDataDescriptors(FED_DataDescriptorPattern()))
      database.DeleteDataBlock(block);
    database.Commit();
    before_ = StateOf(database);
  }
  CompactAll(kOneFile);
  EXPECT_LT(BytesOf(worn_), 40'000U);  // ids of 2,000 nodes, and what is told of segments
}

TEST_F(CompactionInPieces, LinkedFilesStay)
{
  const fs::path joined = files_ / "joined.fed";
  {
    FED_ResultDatabase database(joined, FED_ResultDatabase::Create);
    database.LinkBlocks(worn_, {Key(kTensor, 1), Key(kTensor, 2), Key(kTensor, 3)});
    database.Commit();
    database.DeleteDataBlock(Key(kTensor, 1));
    database.Commit();
  }
  const State               before = Read(joined);
  FED_ResultDatabase        database(joined, FED_ResultDatabase::ReadWrite);
  const FED_CompactionPiece piece = database.CompactPiece(kEnough);
  EXPECT_EQ(piece.segments, 0U);
  EXPECT_GE(piece.keptSegments, 1U);
  EXPECT_GE(piece.keptBytes, 2000U * 48U);
  EXPECT_EQ(piece.roomForAll, 0U);
  EXPECT_EQ(StateOf(database), before);
}

TEST_F(CompactionInPieces, WithoutADiskThereIsNothingToDo)
{
  FED_ResultDatabase database;
  SetTensors(database, 1, 1, 3, 1.0);
  EXPECT_EQ(database.CompactPiece(kEnough).segments, 0U);
  EXPECT_EQ(database.GetCompactionRest(0).keptSegments, 0U);
}

TEST_F(CompactionInPieces, IsOfAWriterAlone)
{
  FED_ResultDatabase database(worn_, FED_ResultDatabase::ReadOnly);
  EXPECT_THROW(database.CompactPiece(kEnough), FED_Failure);
}

}  // namespace
}  // namespace quilon_test
