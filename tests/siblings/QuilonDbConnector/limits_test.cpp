// What commits cost when there are many, and folders that cannot be written.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include <sys/resource.h>

#include <csignal>

#include <gtest/gtest.h>

#include "bundled/FED_FileLayer.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_DataRecord.h"
#include "QuilonUtilities/FED_DoubleArray.h"

#include "failure_message.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

FED_DataDescriptor History()
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(500));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, 1);
  return descriptor;
}

/// Counts bytes in both directions, and segments. Nothing is really flushed: the test is about what is done, not how
/// fast.
class CountingFiles : public FED_FileLayer
{
public:
  std::uint64_t bytes    = 0;
  std::size_t   segments = 0;  ///< that were begun

  std::error_code Open(const fs::path& path, Mode mode, Handle& handle) override
  {
    segments += mode == Create && path.extension() == ".h5" ? 1 : 0;
    return FED_FileLayer::Open(path, mode, handle);
  }
  std::error_code ReadAt(Handle handle, std::uint64_t offset, void* to, std::size_t count, std::size_t& done) override
  {
    bytes += count;
    return FED_FileLayer::ReadAt(handle, offset, to, count, done);
  }
  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* from, std::size_t count) override
  {
    bytes += count;
    return FED_FileLayer::WriteAt(handle, offset, from, count);
  }
  std::error_code Flush(Handle) override { return {}; }
  std::error_code FlushFolder(const fs::path&) override { return {}; }
};

// 100,000 in the long form; bytes, unlike times, are the same on every machine.
TEST(ManyCommits, TheLastOnesCostLittleMoreThanTheFirst)
{
  const char* const given   = std::getenv("QUILON_COMMITS");
  const std::size_t commits = given != nullptr ? std::stoul(given) : 2000;
  const std::size_t tenth   = commits / 10;
  const TempFolder  folder;
  CountingFiles     files;

  FED_ResultDatabaseOptions options;
  options.files = &files;
  std::vector<std::uint64_t> bytesOfTenth;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
    FED_DataBlock&     history = database.GetOrCreateDataBlock(History(), 0);
    for (std::size_t i = 0; i < commits; ++i) {
      if (i % tenth == 0) bytesOfTenth.push_back(files.bytes);
      history.SetScalarAt(i + 1, 0.5 * static_cast<double>(i));
      database.Commit();
    }
    bytesOfTenth.push_back(files.bytes);
  }
  const std::uint64_t first = bytesOfTenth[1] - bytesOfTenth[0];
  const std::uint64_t last  = bytesOfTenth.back() - bytesOfTenth[bytesOfTenth.size() - 2];
  std::cout << commits << " commits: " << first / tenth << " bytes a commit in the first tenth, " << last / tenth
            << " in the last\n";
  // A byte is written anew once per level of sizes, and there are few levels: 4.1 times at 2,000 and 4.2 at 20,000.
  // Without levels the last tenth would cost nineteen times the first.
  EXPECT_LT(last, 8 * first);

  std::size_t segments = 0;
  for (const auto& entry : fs::directory_iterator(folder / "a.fed")) segments += entry.path().extension() == ".h5";
  EXPECT_LT(segments, 40U);
  const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly);
  for (std::size_t i = 0; i < commits; ++i)
    ASSERT_EQ(reader.GetConstDataBlock(History()).GetScalarAt(i + 1), 0.5 * static_cast<double>(i));
}

// 100,000 in the long form.
TEST(ManyBlocks, AreOpenedAndListedWithoutTheirData)
{
  const char* const given  = std::getenv("QUILON_BLOCKS");
  const int         blocks = given != nullptr ? std::stoi(given) : 5000;
  const TempFolder  folder;
  CountingFiles     files;

  FED_ResultDatabaseOptions options;
  options.files          = &files;
  const double tensor[6] = {1, 2, 3, 4, 5, 6};
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
    for (int i = 0; i < blocks; ++i) {
      FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(521));
      descriptor.SetInteger(FED_DataDescriptor::Substep, i);
      FED_DataBlock& block = database.GetOrCreateDataBlock(descriptor, 0);
      for (std::size_t index = 1; index <= 20; ++index) block.SetValuesAt(index, tensor);
    }
    database.Commit();
  }
  const std::uint64_t dataBytes = static_cast<std::uint64_t>(blocks) * 20 * sizeof tensor;
  files.bytes                   = 0;
  const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly, options);
  const auto               descriptors = reader.GetDataDescriptors(FED_DataDescriptorPattern());
  ASSERT_EQ(descriptors.size(), static_cast<std::size_t>(blocks));
  for (const FED_DataDescriptor& descriptor : descriptors)
    EXPECT_EQ(reader.GetConstDataBlock(descriptor).GetMaxIndex(), 20U);
  EXPECT_LT(files.bytes, dataBytes / 2);
}

/// Makes a block of records of a MiB each.
void FillWithMiB(FED_ResultDatabase& database, const FED_DataDescriptor& key, std::size_t records)
{
  FED_DataBlock&  block  = *database.CreateDataBlock(key, 0, 0, "b");
  FED_DataRecord& record = *block.CreateDataRecord();
  FED_DoubleArray list;
  list.Resize((std::size_t{1} << 20) / sizeof(double));
  record.SetDoubleList(1, list);
  for (std::size_t index = 1; index <= records; ++index) block.SetRecord(index, record);
}

// Bytes that go to the disk before anything is committed are those that memory does not keep, and bytes that a second
// walk reads again those that it did not keep.
TEST(UsualMemory, IsBoundedForWritersAndForReadersWhateverTheDatabaseIs)
{
  constexpr std::uint64_t   kMiB     = std::uint64_t{1} << 20;
  constexpr std::size_t     kRecords = 120;        // of a MiB each
  constexpr std::uint64_t   kChunks  = 20 * kMiB;  // that stay whatever the limit is, and one on its way in
  const FED_DataDescriptor  key(0, static_cast<FED_OnfId>(582));
  const TempFolder          folder;
  CountingFiles             files;
  FED_ResultDatabaseOptions options;
  options.files = &files;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
    FillWithMiB(database, key, kRecords);
    EXPECT_GT(files.bytes, kRecords * kMiB - 64 * kMiB - kChunks);
    EXPECT_LT(files.bytes, 2 * kRecords * kMiB);
    database.Commit();
  }
  const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly, options);
  const FED_DataBlock&     block  = reader.GetConstDataBlock(key);
  FED_ConstDataRecord&     record = *block.CreateConstDataRecord();
  const auto               walk   = [&] {
    files.bytes = 0;
    for (std::size_t index = 1; index <= kRecords; ++index) block.GetRecord(index, record);
    return files.bytes;
  };
  EXPECT_GT(walk(), kRecords * kMiB);
  const std::uint64_t again = walk();
  EXPECT_GT(again, kRecords * kMiB - 16 * kMiB - kChunks);
  EXPECT_LT(again, 2 * kRecords * kMiB);
}

TEST(UsualMemory, IsDividedBetweenDatabasesThatShareIt)
{
  constexpr std::size_t     kRecords = 60;  // of a MiB each
  const FED_DataDescriptor  key(0, static_cast<FED_OnfId>(582));
  const TempFolder          folder;
  CountingFiles             files;
  FED_ResultDatabaseOptions options;
  options.files = &files;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
    FillWithMiB(database, key, kRecords);
    database.Commit();
  }
  const auto countKept = [&](std::size_t shares) {
    options.shares = shares;
    const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly, options);
    const FED_DataBlock&     block  = reader.GetConstDataBlock(key);
    FED_ConstDataRecord&     record = *block.CreateConstDataRecord();
    for (std::size_t index = 1; index <= kRecords; ++index) block.GetRecord(index, record);
    files.bytes      = 0;
    std::size_t kept = 0;
    while (kept < kRecords) {
      block.GetRecord(kRecords - kept, record);
      if (files.bytes > 0) break;
      ++kept;
    }
    return kept;
  };
  const std::size_t whole = countKept(1);
  EXPECT_GE(whole, 12u);
  const std::size_t half = countKept(2);
  EXPECT_LE(half, whole - 4);
  // Half of it is 8 MiB, and no share is less.
  EXPECT_EQ(countKept(4), half);
  EXPECT_EQ(countKept(1000), half);
}

/// Blocks of one format, filled one after the other or record by record in turn, in little memory.
struct Filling
{
  const char* name;
  const char* format;
  std::size_t blocks;
  std::size_t records;      ///< of a block
  std::size_t memoryLimit;  ///< far less than all of it
};

FED_DataDescriptor BlockOfFilling(std::size_t block)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(521));
  descriptor.SetInteger(FED_DataDescriptor::Substep, static_cast<int>(block));
  return descriptor;
}

// Of tensors, or of a list that is now and then empty.
void SetRecord(FED_DataBlock& block, FED_DataRecord* scratch, std::size_t number, std::size_t index)
{
  const auto value = static_cast<double>(number * 1000000 + index);
  if (scratch == nullptr) {
    const double tensor[6] = {value, -value, 0.5, value + 1.0, 0.0, 2.0};
    block.SetValuesAt(index, tensor);
    return;
  }
  FED_DoubleArray list;
  list.Resize(index % 9);
  for (std::size_t i = 0; i < list.GetSize(); ++i) list.GetData()[i] = value + static_cast<double>(i);
  scratch->SetInteger(1, static_cast<int>(index));
  scratch->SetDoubleList(2, list);
  block.SetRecord(index, *scratch);
}

bool HoldsRecord(const FED_DataBlock& block, FED_ConstDataRecord* scratch, std::size_t number, std::size_t index)
{
  const auto value = static_cast<double>(number * 1000000 + index);
  if (scratch == nullptr) {
    double tensor[6];
    block.GetValuesAt(index, tensor);
    return tensor[0] == value && tensor[3] == value + 1.0;
  }
  FED_DoubleArray list;
  block.GetRecord(index, *scratch);
  scratch->GetDoubleList(2, list);
  bool isSame = scratch->GetInteger(1) == static_cast<int>(index) && list.GetSize() == index % 9;
  for (std::size_t i = 0; i < list.GetSize(); ++i)
    isSame = isSame && list.GetData()[i] == value + static_cast<double>(i);
  return isSame;
}

void Fill(const fs::path& folder, const Filling& filling, bool inTurn, CountingFiles& files)
{
  FED_ResultDatabaseOptions options;
  options.files       = &files;
  options.memoryLimit = filling.memoryLimit;
  FED_ResultDatabase           database(folder, FED_ResultDatabase::Create, options);
  std::vector<FED_DataBlock*>  blocks;
  std::vector<FED_DataRecord*> scratch;
  const bool                   isTensors = filling.format == std::string("T");
  for (std::size_t i = 0; i < filling.blocks; ++i) {
    blocks.push_back(database.CreateDataBlock(BlockOfFilling(i), 0, 0, filling.format));
    scratch.push_back(isTensors ? nullptr : blocks.back()->CreateDataRecord());
  }
  if (inTurn) {
    for (std::size_t index = 1; index <= filling.records; ++index)
      for (std::size_t i = 0; i < blocks.size(); ++i) SetRecord(*blocks[i], scratch[i], i, index);
  } else {
    for (std::size_t i = 0; i < blocks.size(); ++i)
      for (std::size_t index = 1; index <= filling.records; ++index) SetRecord(*blocks[i], scratch[i], i, index);
  }
  database.Commit();
}

// An append needs nothing of the chunk that it goes to: what left the memory stays where it is.
TEST(WritingInTurn, MovesNoMoreThanHalfAsMuchAgainAsWritingOneAfterTheOther)
{
  // Segments above 4 MiB, which are merged late: those of smaller limits would be read and written once more eight by
  // eight, in whatever order their rows came.
  const Filling fillings[] = {{"as many blocks as chunks that are kept", "T", 4, 60000, std::size_t{8} << 20},
                              {"a few more", "T", 6, 100000, std::size_t{12} << 20},
                              {"less memory than the kept chunks take", "T", 5, 250000, std::size_t{16} << 20},
                              {"many blocks", "T", 200, 5000, std::size_t{16} << 20},
                              {"lists", "IDb", 10, 50000, std::size_t{12} << 20}};
  for (const Filling& filling : fillings) {
    SCOPED_TRACE(filling.name);
    const TempFolder folder;
    CountingFiles    inOrder, inTurn;
    Fill(folder / "order.fed", filling, false, inOrder);
    Fill(folder / "turn.fed", filling, true, inTurn);
    std::cout << filling.name << ": " << inOrder.bytes << " bytes in " << inOrder.segments
              << " segments one after the other, " << inTurn.bytes << " in " << inTurn.segments << " in turn\n";
    EXPECT_LT(2 * inTurn.bytes, 3 * inOrder.bytes);
    EXPECT_LT(inTurn.segments, 4 * inOrder.segments + 4);
    const FED_ResultDatabase reader(folder / "turn.fed", FED_ResultDatabase::ReadOnly);
    for (std::size_t i = 0; i < filling.blocks; ++i) {
      const FED_DataBlock& block  = reader.GetConstDataBlock(BlockOfFilling(i));
      FED_ConstDataRecord* record = filling.format == std::string("T") ? nullptr : block.CreateConstDataRecord();
      for (std::size_t index = 1; index <= filling.records; ++index)
        if (!HoldsRecord(block, record, i, index)) FAIL() << "block " << i << ", index " << index;
    }
  }
}

/// A file system that is mounted to be read.
class ReadOnlyFiles : public FED_FileLayer
{
public:
  std::error_code Open(const fs::path& path, Mode mode, Handle& handle) override
  {
    if (mode == Read) return FED_FileLayer::Open(path, mode, handle);
    handle = kNoHandle;
    return Refuse();
  }
  std::error_code WriteAt(Handle, std::uint64_t, const void*, std::size_t) override { return Refuse(); }
  std::error_code Rename(const fs::path&, const fs::path&) override { return Refuse(); }
  std::error_code Remove(const fs::path&) override { return Refuse(); }
  std::error_code MakeFolder(const fs::path&, bool& made) override
  {
    made = false;
    return Refuse();
  }
  std::error_code Lock(const fs::path&, Handle& handle) override
  {
    handle = kNoHandle;
    return Refuse();
  }

private:
  static std::error_code Refuse() { return std::make_error_code(std::errc::read_only_file_system); }
};

TEST(ReadOnlyFileSystem, IsReadAndNotWritten)
{
  const TempFolder folder;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
    database.GetOrCreateDataBlock(History(), 0).SetScalarAt(1, 2.5);
    database.Commit();
  }
  ReadOnlyFiles             files;
  FED_ResultDatabaseOptions options;
  options.files = &files;
  const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly, options);
  EXPECT_EQ(reader.GetConstDataBlock(History()).GetScalarAt(1), 2.5);
  EXPECT_EQ(MessageOf([&] { FED_ResultDatabase(folder / "a.fed", FED_ResultDatabase::ReadWrite, options); }),
            (folder / "a.fed" / "lock").string() + ": cannot lock: Read-only file system");
  EXPECT_EQ(MessageOf([&] { FED_ResultDatabase(folder / "b.fed", FED_ResultDatabase::Create, options); }),
            (folder / "b.fed").string() + ": cannot create: Read-only file system");
  EXPECT_FALSE(fs::exists(folder / "b.fed"));
}

/// Files of this process can get no longer than so many bytes: as a full disk, for all code that writes.
class FileSizeLimit
{
public:
  explicit FileSizeLimit(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN))
  {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limit{bytes, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&)            = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit()
  {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, signal_);
  }

private:
  void (*signal_)(int);
  rlimit former_{};
};

// HDF5 leaves a file open, and crashes when the process ends, where it cannot write what it has to say of a file.
TEST(FullDisk, StopsACommitAndTheSameObjectCommitsLater)
{
  const TempFolder   folder;
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
  database.GetOrCreateDataBlock(History(), 0).SetScalarAt(1, 2.5);
  {
    const FileSizeLimit limit(1000);
    EXPECT_EQ(MessageOf([&] { database.Commit(); }),
              (folder / "a.fed" / "segment-000001.h5").string() + ": cannot write: File too large");
  }
  EXPECT_FALSE(fs::exists(folder / "a.fed" / "segment-000001.h5"));
  database.Commit();
  EXPECT_EQ(
      FED_ResultDatabase(folder / "a.fed", FED_ResultDatabase::ReadOnly).GetConstDataBlock(History()).GetScalarAt(1),
      2.5);
}

}  // namespace
}  // namespace quilon_test
