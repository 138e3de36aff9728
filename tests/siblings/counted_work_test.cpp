// Work that is counted: calls that reach the disk and bytes that they move may not grow faster than the input. Times
// would tell the same less surely, and cliffs later.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_BlockSpans.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfFileLayer.h>
#include <bundled/OnfTextExport.h>
#include <QuilonDbConnector/FED_DataRecord.h>
#include <QuilonOnfEngine/QuilonOnfTxtDatabase.h>
#include <QuilonUtilities/FED_DoubleArray.h>

#include "FaultyFiles.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

/// Nothing fails, and bytes are counted, too.
class CountedFiles final : public FaultyFiles
{
public:
  void Restart()
  {
    Arm(Fault::DiskFull, 0);
    bytes = 0;
  }

  std::error_code ReadAt(Handle handle, std::uint64_t offset, void* to, std::size_t count, std::size_t& done) override
  {
    bytes += count;
    return FaultyFiles::ReadAt(handle, offset, to, count, done);
  }
  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* from, std::size_t count) override
  {
    bytes += count;
    return FaultyFiles::WriteAt(handle, offset, from, count);
  }

  std::uint64_t bytes = 0;
};

/// Text databases use these files while it lives.
class TextGoesThrough
{
public:
  explicit TextGoesThrough(FED_FileLayer& files) : former_(OnfFileLayer::Set(&files)) {}
  TextGoesThrough(const TextGoesThrough&)            = delete;
  TextGoesThrough& operator=(const TextGoesThrough&) = delete;
  ~TextGoesThrough() { OnfFileLayer::Set(former_); }

private:
  FED_FileLayer* former_;
};

FED_DataDescriptor KeyOf(std::size_t block)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(521));
  descriptor.SetInteger(FED_DataDescriptor::Substep, static_cast<int>(1000 + block));
  return descriptor;
}

/// All numbers have as many digits.
void Fill(FED_Database& database, std::size_t blocks, std::size_t records)
{
  const double tensor[6] = {1, -2, 3, -4, 5, -6};
  for (std::size_t block = 0; block < blocks; ++block) {
    FED_DataBlock& values = database.GetOrCreateDataBlock(KeyOf(block), records);
    for (std::size_t i = 1; i <= records; ++i)
      values.SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(0, static_cast<int>(100000 + i)), tensor);
  }
}

FED_ResultDatabaseOptions Through(CountedFiles& files, std::size_t memory = FED_ResultDatabaseOptions::kUsualLimit)
{
  FED_ResultDatabaseOptions options;
  options.files       = &files;
  options.memoryLimit = memory;
  return options;
}

void Make(const fs::path& folder, std::size_t blocks, std::size_t records)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  Fill(database, blocks, records);
  database.Commit();
}

/// What is counted, after what was prepared.
struct Job
{
  const char* name;
  std::size_t size;
  double      mostGrowth;  ///< of bytes, for four times the size
  void (*work)(const fs::path& folder, std::size_t size, CountedFiles& files);
};

const Job kJobs[] = {
    {"a block in a commit", 10000, 4.0,
     [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, Through(files));
       Fill(database, 1, size);
       database.Commit();
     }},
    {"blocks in a commit", 100, 4.0,
     [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, Through(files));
       Fill(database, size, 10);
       database.Commit();
     }},
    // A byte is written anew once for each level of segments, of which four times as many commits have less than one
    // more: 6.2 times.
    {"commits", 100, 6.5,
     [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, Through(files));
       FED_DataBlock&     block     = database.GetOrCreateDataBlock(KeyOf(0), 0);
       const double       tensor[6] = {1, -2, 3, -4, 5, -6};
       for (std::size_t i = 1; i <= size; ++i) {
         block.SetValuesAt(i, tensor);
         database.Commit();
       }
     }},
    {"rows beyond the memory", 300, 4.5,
     [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, Through(files, 1 << 20));
       FED_DataBlock&     block  = *database.CreateDataBlock(KeyOf(0), 0, 0, "b");
       FED_DataRecord&    record = *block.CreateDataRecord();
       FED_DoubleArray    list;
       list.Resize(8192);  // more in all than the chunks that stay whatever the limit is
       record.SetDoubleList(1, list);
       for (std::size_t i = 1; i <= size; ++i) block.SetRecord(i, record);
       database.Commit();
     }},
    {"opening and listing blocks", 100, 4.0,
     [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       Make(folder / "a.fed", size, 10);
       files.Restart();
       const FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadOnly, Through(files));
       for (const FED_DataDescriptor& key : database.GetDataDescriptors(FED_DataDescriptorPattern()))
         database.GetConstDataBlock(key).GetMaxIndex();
     }},
    {"reading blocks", 100, 4.0,
     [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       Make(folder / "a.fed", size, 10);
       files.Restart();
       const FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadOnly, Through(files));
       for (const FED_DataDescriptor& key : database.GetDataDescriptors(FED_DataDescriptorPattern()))
         FED_ForEachSpan(database.GetConstDataBlock(key), [](const FED_BlockSpan&) {});
     }},
    {"walking blocks side by side", 20000, 4.0,
     [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       Make(folder / "a.fed", 3, size);
       files.Restart();
       const FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadOnly, Through(files));
       for (std::size_t i = 1; i <= size; ++i)
         for (std::size_t block = 0; block < 3; ++block) {
           double tensor[6];
           database.GetConstDataBlock(KeyOf(block)).GetValuesAt(i, tensor);
         }
     }},
    {"giving back half of the blocks", 100, 4.0,
     [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       Make(folder / "a.fed", size, 10);
       files.Restart();
       FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadWrite, Through(files));
       for (std::size_t block = 0; block < size; block += 2) database.DeleteDataBlock(KeyOf(block));
       database.Compact();
     }},
    {"blocks to text", 50, 4.0,
     [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       FED_ResultDatabase database;
       Fill(database, size, 10);
       OnfTextExport::Writer             writer(folder / "a.onf", &files);
       std::vector<OnfTextExport::Block> blocks;
       for (const FED_DataDescriptor& key : database.GetDataDescriptors(FED_DataDescriptorPattern()))
         blocks.push_back({&database, key});
       writer.Publish(blocks);
     }},
    {"blocks from text", 50, 4.0, [](const fs::path& folder, std::size_t size, CountedFiles& files) {
       FED_ResultDatabase memory;
       Fill(memory, size, 10);
       std::vector<OnfTextExport::Block> blocks;
       for (const FED_DataDescriptor& key : memory.GetDataDescriptors(FED_DataDescriptorPattern()))
         blocks.push_back({&memory, key});
       const TextGoesThrough through(files);
       OnfTextExport::Writer(folder / "a.onf").Publish(blocks);
       files.Restart();
       QuilonOnfTxtDatabase database((folder / "a.onf").wstring());
       database.InitDb(FED_DatabaseDefs::ReadAccess, 1024, std::wstring(), nullptr);
       for (const FED_DataDescriptor& key : database.GetDataDescriptors(FED_DataDescriptorPattern()))
         database.GetConstDataBlock(key);
     }}};

struct Work
{
  std::size_t   calls;
  std::uint64_t bytes;
};

Work Count(const Job& job, std::size_t size)
{
  const TempFolder folder;
  CountedFiles     files;
  files.Restart();
  job.work(folder.GetPath(), size, files);
  return {files.GetCalls(), files.bytes};
}

TEST(CountedWork, GrowsNoFasterThanTheInput)
{
  for (const Job& job : kJobs) {
    SCOPED_TRACE(job.name);
    const Work once = Count(job, job.size);
    const Work four = Count(job, 4 * job.size);
    std::cout << job.name << ": " << job.size << " take " << once.calls << " calls and " << once.bytes
              << " bytes, four times as many " << four.calls << " and " << four.bytes << '\n';
    EXPECT_GT(once.calls, 0U);
    EXPECT_GT(once.bytes, 0U);
    EXPECT_LE(static_cast<double>(four.calls), 4.0 * static_cast<double>(once.calls));
    EXPECT_LE(static_cast<double>(four.bytes), job.mostGrowth * static_cast<double>(once.bytes));
  }
}

}  // namespace
}  // namespace quilon_test
