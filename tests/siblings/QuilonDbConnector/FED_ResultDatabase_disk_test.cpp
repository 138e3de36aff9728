#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "bundled/FED_FileLayer.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"

#include "failure_message.h"
#include "stored_tensors.h"
#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;
using testing::EndsWith;
using testing::HasSubstr;

constexpr auto kScalar = static_cast<FED_OnfId>(500);

// Fails every write to a segment's data while it is told to.
class FullDisk : public FED_FileLayer
{
public:
  bool isFull = false;

  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count) override
  {
    if (isFull) return std::make_error_code(std::errc::no_space_on_device);
    return FED_FileLayer::WriteAt(handle, offset, bytes, count);
  }
};

// Knows how far each write goes and which bytes the disk was to begin with.
class EagerDisk : public FED_FileLayer
{
public:
  std::uint64_t   written = 0;
  std::uint64_t   begun   = 0;
  std::error_code answer;

  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count) override
  {
    written = std::max(written, offset + count);
    return FED_FileLayer::WriteAt(handle, offset, bytes, count);
  }
  std::error_code BeginFlush(Handle handle, std::uint64_t offset, std::uint64_t count) override
  {
    EXPECT_EQ(offset, begun);
    EXPECT_LE(offset + count, written);
    begun = offset + count;
    return answer ? answer : FED_FileLayer::BeginFlush(handle, offset, count);
  }
};

std::size_t CountSegments(const std::filesystem::path& folder)
{
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) count += entry.path().extension() == ".h5";
  return count;
}

}  // namespace

TEST(ResultDatabaseOnDisk, CommittedBlocksIdsAndNamesComeBack)
{
  const TempFolder folder;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
    FED_DataBlock&     scalars = database.GetOrCreateDataBlock(Key(kScalar, 1), 0);
    for (std::size_t i = 0; i < 5; ++i) scalars.SetScalarAt(i, 0.5 * static_cast<double>(i));
    database.CreateDataBlock(Key(kTensor, 2), 0, 0, "");
    EXPECT_EQ(database.GetIdMapsPool().FindOrAddIndex(0, -7), 1u);
    EXPECT_EQ(database.GetIdMapsPool().FindOrAddIndex(0, 12), 2u);
    database.SetUserKindName(static_cast<FED_OnfId>(1000), "wear");
    database.Commit();
    scalars.SetScalarAt(0, 99.0);  // after the commit: lost
  }
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadWrite);
  EXPECT_EQ(database.GetDataDescriptors({}).size(), 2u);
  FED_DataBlock& scalars = database.GetDataBlock(Key(kScalar, 1));
  EXPECT_EQ(scalars.GetScalarAt(0), 0.0);
  EXPECT_EQ(scalars.GetScalarAt(4), 2.0);
  EXPECT_FALSE(scalars.HasRecord(5));
  EXPECT_EQ(database.GetIdMapsPool().GetId(0, 1), -7);
  EXPECT_EQ(database.GetIdMapsPool().FindOrAddIndex(0, 44), 3u);
  EXPECT_EQ(database.GetUserKindName(static_cast<FED_OnfId>(1000)), "wear");
  const double tensor[6] = {1, 2, 3, 4, 5, 6};
  database.CreateDataBlock(Key(kTensor, 2), 0, 0, "T")->SetValuesAt(3, tensor);
  scalars.SetScalarAt(2, -1.0);
  database.Commit();

  const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly);
  EXPECT_EQ(reader.GetConstDataBlock(Key(kScalar, 1)).GetScalarAt(2), -1.0);
  EXPECT_EQ(reader.GetConstDataBlock(Key(kScalar, 1)).GetScalarAt(3), 1.5);
  double out[6] = {};
  reader.GetConstDataBlock(Key(kTensor, 2)).GetValuesAt(3, out);
  EXPECT_EQ(out[5], 6.0);
  EXPECT_EQ(reader.GetIdMapsPool().FindIndex(0, 44), 3u);
}

TEST(ResultDatabaseOnDisk, DatabaseLargerThanTheMemoryLimitIsWrittenAndWalked)
{
  const TempFolder          folder;
  FED_ResultDatabaseOptions options;
  options.memoryLimit       = std::size_t{32} << 20;
  constexpr int    kBlocks  = 8;
  constexpr size_t kRecords = 500000;  // 24 MB a block
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
    for (int block = 0; block < kBlocks; ++block) {
      FED_DataBlock& tensors = database.GetOrCreateDataBlock(Key(kTensor, block), 0);
      for (std::size_t i = 1; i <= kRecords; ++i) {
        const double value     = static_cast<double>(i) + 1e6 * block;
        const double tensor[6] = {value, 0, 0, 0, 0, -value};
        tensors.SetValuesAt(i, tensor);
      }
    }
    EXPECT_GT(CountSegments(folder / "a.fed"), 2u);
    EXPECT_FALSE(std::filesystem::exists(folder / "a.fed" / "manifest"));
    database.Commit();
  }
  const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly, options);
  for (int block = 0; block < kBlocks; ++block) {
    const FED_DataBlock& tensors = reader.GetConstDataBlock(Key(kTensor, block));
    for (std::size_t i = 1; i <= kRecords; i += 997) {
      double tensor[6] = {};
      tensors.GetValuesAt(i, tensor);
      ASSERT_EQ(tensor[5], -(static_cast<double>(i) + 1e6 * block));
    }
  }
}

TEST(ResultDatabaseOnDisk, AfterAFullDiskTheSameObjectCommitsAll)
{
  const TempFolder          folder;
  FullDisk                  disk;
  FED_ResultDatabaseOptions options;
  options.files = &disk;
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
  database.GetOrCreateDataBlock(Key(kScalar, 1), 0).SetScalarAt(1, 1.0);
  database.Commit();
  database.GetOrCreateDataBlock(Key(kScalar, 1), 0).SetScalarAt(2, 2.0);
  database.GetOrCreateDataBlock(Key(kScalar, 2), 0).SetScalarAt(3, 3.0);
  database.GetIdMapsPool().FindOrAddIndex(1, 5);
  disk.isFull = true;
  EXPECT_EQ(MessageOf([&] { database.Commit(); }),
            (folder / "a.fed" / "segment-000002.h5").string() + ": cannot write: No space left on device");
  EXPECT_EQ(CountSegments(folder / "a.fed"), 1u);
  {
    const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly);
    EXPECT_FALSE(reader.HasDataBlock(Key(kScalar, 2)));
    EXPECT_FALSE(reader.GetConstDataBlock(Key(kScalar, 1)).HasRecord(2));
  }
  disk.isFull = false;
  database.GetDataBlock(Key(kScalar, 2)).SetScalarAt(4, 4.0);
  database.Commit();
  const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly);
  EXPECT_EQ(reader.GetConstDataBlock(Key(kScalar, 1)).GetScalarAt(2), 2.0);
  EXPECT_EQ(reader.GetConstDataBlock(Key(kScalar, 2)).GetScalarAt(3), 3.0);
  EXPECT_EQ(reader.GetConstDataBlock(Key(kScalar, 2)).GetScalarAt(4), 4.0);
  EXPECT_EQ(reader.GetIdMapsPool().GetId(1, 1), 5);
}

TEST(ResultDatabaseOnDisk, TheDiskBeginsWithALargeCommitBeforeAllOfItIsWritten)
{
  constexpr std::uint64_t   kMebibyte = std::uint64_t{1} << 20;
  const TempFolder          folder;
  EagerDisk                 disk;
  FED_ResultDatabaseOptions options;
  options.files = &disk;
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
  database.GetOrCreateDataBlock(Key(kScalar, 1), 0).SetScalarAt(1, 1.0);
  database.Commit();
  EXPECT_EQ(disk.begun, 0u);  // small ones are flushed at once
  const double   tensor[6] = {1, 2, 3, 4, 5, 6};
  FED_DataBlock& tensors   = database.GetOrCreateDataBlock(Key(kTensor, 1), 0);
  for (std::size_t i = 1; i <= 500000; ++i) tensors.SetValuesAt(i, tensor);  // 24 MB
  disk.answer = std::make_error_code(std::errc::io_error);
  EXPECT_EQ(MessageOf([&] { database.Commit(); }),
            (folder / "a.fed" / "segment-000002.h5").string() + ": cannot flush: Input/output error");
  EXPECT_EQ(CountSegments(folder / "a.fed"), 1u);
  disk.answer = {};
  disk.begun  = 0;
  database.Commit();
  EXPECT_GE(disk.begun, 16 * kMebibyte);
  const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly);
  EXPECT_TRUE(reader.GetConstDataBlock(Key(kTensor, 1)).HasRecord(500000));
}

TEST(ResultDatabaseOnDisk, BlocksAreDeletedReplacedAndCompacted)
{
  const TempFolder folder;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
    for (int i = 0; i < 20; ++i) database.GetOrCreateDataBlock(Key(kScalar, i), 0).SetScalarAt(1, i);
    database.Commit();
    for (int i = 0; i < 20; i += 2) database.DeleteDataBlock(Key(kScalar, i));
    database.CreateDataBlock(Key(kScalar, 4), 0, 0, "V");
    database.Commit();
    database.Compact();
    EXPECT_EQ(CountSegments(folder / "a.fed"), 1u);
    database.Compact();  // nothing to do
  }
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadWrite);
  EXPECT_EQ(database.GetDataDescriptors({}).size(), 11u);
  EXPECT_EQ(database.GetDataBlock(Key(kScalar, 7)).GetScalarAt(1), 7.0);
  EXPECT_EQ(database.GetDataBlock(Key(kScalar, 4)).GetSize(), 0u);
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors({})) database.DeleteDataBlock(descriptor);
  database.Compact();
  EXPECT_EQ(CountSegments(folder / "a.fed"), 0u);
  EXPECT_TRUE(FED_ResultDatabase(folder / "a.fed", FED_ResultDatabase::ReadOnly).GetDataDescriptors({}).empty());
}

// What makes room for a new block may write the rows of others.
TEST(ResultDatabaseOnDisk, BlockThatFindsTheDiskFullIsNotMadeAndDoesNotStopTheCommit)
{
  const TempFolder          folder;
  FullDisk                  disk;
  FED_ResultDatabaseOptions options;
  options.files       = &disk;
  options.memoryLimit = std::size_t{1} << 20;
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
  for (int i = 0; i < 5; ++i) database.GetOrCreateDataBlock(Key(kScalar, i), 0).SetScalarAt(1, i);
  disk.isFull = true;
  EXPECT_THAT(MessageOf([&] { database.GetOrCreateDataBlock(Key(kTensor, 1), 100000); }),
              HasSubstr("cannot write: No space left on device"));
  EXPECT_FALSE(database.HasDataBlock(Key(kTensor, 1)));
  disk.isFull = false;
  database.Commit();
  const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly);
  ASSERT_EQ(reader.GetDataDescriptors({}).size(), 5u);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(reader.GetConstDataBlock(Key(kScalar, i)).GetScalarAt(1), i);
}

TEST(ResultDatabaseOnDisk, ReaderTakesNoChange)
{
  const TempFolder folder;
  const auto       list     = static_cast<FED_OnfId>(595);
  const auto       userKind = static_cast<FED_OnfId>(1000);
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
    database.GetOrCreateDataBlock(Key(kScalar, 1), 0).SetScalarAt(1, 1.0);
    database.CreateDataBlock(Key(kTensor, 1), 0, 0, "");
    database.GetOrCreateDataBlock(Key(list, 1), 0);
    database.GetIdMapsPool().FindOrAddIndex(0, 12);
    database.SetUserKindName(userKind, "wear");
    database.Commit();
  }
  FED_ResultDatabase    reader(folder / "a.fed", FED_ResultDatabase::ReadOnly);
  FED_DataBlock&        scalars = reader.GetOrCreateDataBlock(Key(kScalar, 1), 100);
  FED_DataBlock&        lists   = reader.GetDataBlock(Key(list, 1));
  FED_DataRecord* const record  = lists.CreateDataRecord();
  const double          value   = 2.0;
  const std::string     isRead  = "the database is open for reading only";
  const std::string     refused = (folder / "a.fed").string() + ": cannot write: " + isRead;
  EXPECT_EQ(MessageOf([&] { reader.GetOrCreateDataBlock(Key(kScalar, 2), 0); }), refused);
  EXPECT_EQ(MessageOf([&] { reader.CreateDataBlock(Key(kTensor, 1), 0, 0, "T"); }), refused);
  EXPECT_EQ(MessageOf([&] { reader.DeleteDataBlock(Key(kScalar, 1)); }), refused);
  EXPECT_EQ(MessageOf([&] { reader.SetUserKindName(userKind, ""); }), refused);
  EXPECT_EQ(MessageOf([&] { reader.Commit(); }), refused);
  EXPECT_EQ(MessageOf([&] { reader.Compact(); }), refused);
  for (const std::size_t index : {1u, 2u}) {
    EXPECT_THAT(MessageOf([&] { scalars.SetScalarAt(index, value); }), EndsWith(isRead));
    EXPECT_THAT(MessageOf([&] { scalars.SetValuesAt(index, &value); }), EndsWith(isRead));
    EXPECT_THAT(MessageOf([&] { lists.SetRecord(index, *record); }), EndsWith(isRead));
  }
  EXPECT_THAT(MessageOf([&] { reader.GetDataBlock(Key(kTensor, 1)).SetScalarAt(1, value); }), EndsWith(isRead));
  EXPECT_EQ(MessageOf([&] { reader.GetIdMapsPool().FindOrAddIndex(0, 13); }),
            "id map of entity kind 0: id 13 is not there, and " + isRead);
  lists.DeleteDataRecord(record);

  EXPECT_EQ(reader.GetIdMapsPool().FindOrAddIndex(0, 12), 1u);
  EXPECT_EQ(reader.GetIdMapsPool().GetCount(0), 1u);
  EXPECT_EQ(reader.GetDataDescriptors({}).size(), 3u);
  EXPECT_EQ(scalars.GetScalarAt(1), 1.0);
  EXPECT_EQ(scalars.GetMaxIndex(), 1u);
  EXPECT_EQ(lists.GetMaxIndex(), 0u);
  EXPECT_EQ(reader.GetUserKindName(userKind), "wear");
}
