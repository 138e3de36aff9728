#include "SegmentStore.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <hdf5.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bundled/FED_DatabaseInspection.h"

#include "failure_message.h"
#include "SegmentWriter.h"
#include "store_support.h"
#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;
using testing::HasSubstr;

constexpr auto kCreate    = SegmentStore::Create;
constexpr auto kReadWrite = SegmentStore::ReadWrite;
constexpr auto kReadOnly  = SegmentStore::ReadOnly;

std::vector<std::uint32_t> Keys(std::uint32_t first, std::uint32_t count)
{
  std::vector<std::uint32_t> keys(count);
  for (std::uint32_t i = 0; i < count; ++i) keys[i] = first + i;
  return keys;
}

std::vector<std::string> ListFolder(const std::filesystem::path& folder)
{
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

std::string ReadBytes(const std::filesystem::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void WriteBytes(const std::filesystem::path& path, const std::string& bytes)
{
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// In place: replacing whole files makes some file systems flush them.
void PutByte(const std::filesystem::path& path, std::size_t position, char byte)
{
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(static_cast<std::streamoff>(position));
  file.put(byte);
}

// A block of lists and one of scalars, with keys that are no run, ids and a name.
void WriteSample(SegmentStore& store)
{
  const BlockUid  scalars = store.TakeUid();
  const BlockUid  lists   = store.TakeUid();
  PlainRows       scalarRows(scalars, 0, 0, Keys(1, 3));
  PlainRows       listRows(lists, 0, 0, {7, 3});
  const int       ids[] = {30, -4, 12};
  SegmentContents contents;
  scalarRows.Add<double>({1.5, -2.5, 0.0});
  listRows.Add<int>({10, 20})
      .Add<std::uint32_t>({2, 0})
      .Add<double>({0.5, 0.25})
      .Add<std::uint32_t>({1, 3})
      .Add<char>({'a', 'x', 'y', 'z'});
  contents.blocks = {MakeBlock(scalars, "D"), MakeBlock(lists, "IDbS")};
  contents.rows   = {&scalarRows, &listRows};
  contents.ids.push_back({0, 1, {ids, 3}});
  contents.hasNames = true;
  contents.names    = {{1000, "wear"}};
  store.Write(contents);
}

}  // namespace

TEST(SegmentStore, WhatIsPublishedIsReadBackByteForByte)
{
  const TempFolder folder;
  FED_FileLayer    files;
  StoredContent    written;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    written = ReadContent(store);
    store.Publish(false);
    EXPECT_EQ(ReadContent(store), written);
  }
  ASSERT_EQ(written.blocks.size(), 2u);
  EXPECT_EQ(written.ids[0], (std::vector<int>{30, -4, 12}));
  EXPECT_EQ(written.names.at(1000), "wear");
  const auto& lists = written.blocks.rbegin()->second;
  ASSERT_EQ(lists.size(), 2u);
  EXPECT_EQ(lists.at(3)[2], "xyz");
  EXPECT_EQ(lists.at(7)[2], "a");
  EXPECT_EQ(lists.at(7)[1].size(), 16u);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), written);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed/", kReadWrite, files)), written);
  EXPECT_EQ(ListFolder(folder / "a.fed"), (std::vector<std::string>{"lock", "manifest", "segment-000001.h5"}));
}

// Neither groups nor data sets have times: equal data give equal files. HDF5 itself reads the structure.
TEST(SegmentStore, SegmentsHoldNoTimes)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     store(folder / "a.fed", kCreate, files);
  WriteSample(store);
  const hid_t file = H5Fopen((folder / "a.fed" / "segment-000001.h5").c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
  ASSERT_GE(file, 0);
  int        objects = 0;
  const auto visit   = [](hid_t, const char* name, const H5O_info_t* info, void* count) -> herr_t {
    EXPECT_EQ(info->btime, 0) << name;
    EXPECT_EQ(info->mtime, 0) << name;
    ++*static_cast<int*>(count);
    return 0;
  };
  EXPECT_GE(H5Ovisit(file, H5_INDEX_NAME, H5_ITER_NATIVE, visit, &objects), 0);
  EXPECT_GT(objects, 12);  // the root, six groups, data sets of five columns, ...
  H5Fclose(file);
}

TEST(SegmentStore, ToolsShowABlockUnderItsKindAndTheIndicesThatAreSet)
{
  FED_DataDescriptor key;
  key.mask = 0;
  EXPECT_EQ(GetBlockPath(key), "block/all");
  key = FED_DataDescriptor(0, static_cast<FED_OnfId>(521));
  EXPECT_EQ(GetBlockPath(key), "nodal-stress/all");  // the first iteration goes without saying
  key.SetInteger(FED_DataDescriptor::Substep, 0);
  EXPECT_EQ(GetBlockPath(key), "nodal-stress/sub0");
  key.SetInteger(FED_DataDescriptor::Iteration, 2);
  key.SetInteger(FED_DataDescriptor::LoadCase, 1);
  key.SetInteger(FED_DataDescriptor::Analysis, 3);
  EXPECT_EQ(GetBlockPath(key), "nodal-stress/it2_lc1_sub0_an3");
}

TEST(SegmentStore, WhatIsNotPublishedIsGoneWithTheStore)
{
  const TempFolder folder;
  FED_FileLayer    files;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    EXPECT_TRUE(std::filesystem::exists(folder / "a.fed" / "segment-000001.h5"));
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "a.fed"));
}

TEST(SegmentStore, LeftoversOfADeadWriterGoWithTheNextOne)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore(folder / "a.fed", kCreate, files).Publish(false);
  WriteBytes(folder / "a.fed" / "segment-000001.h5", "half");
  WriteBytes(folder / "a.fed" / "manifest.new", "half");
  {
    const SegmentStore reader(folder / "a.fed", kReadOnly, files);
  }
  EXPECT_EQ(ListFolder(folder / "a.fed").size(), 4u);
  {
    const SegmentStore writer(folder / "a.fed", kReadWrite, files);
  }
  EXPECT_EQ(ListFolder(folder / "a.fed"), (std::vector<std::string>{"lock", "manifest"}));
}

TEST(SegmentStore, OfProcessesThatCreateOneDatabaseAtOnceOneWins)
{
  constexpr int    kNumProcesses = 4;
  const TempFolder folder;
  for (int round = 0; round < 25; ++round) {
    const std::filesystem::path path = folder / (std::to_string(round) + ".fed");
    int                         gate[2];
    ASSERT_EQ(pipe(gate), 0);
    std::vector<pid_t> processes;
    for (int i = 0; i < kNumProcesses; ++i) {
      const pid_t child = fork();
      if (child == 0) {
        char end = 0;
        close(gate[1]);
        if (read(gate[0], &end, 1) != 0) _exit(9);  // when all are here
        FED_FileLayer     files;
        const std::string message = MessageOf([&] {
          SegmentStore store(path, kCreate, files);
          WriteSample(store);
          store.Publish(false);
        });
        const bool        isClear = message.find(": another writer has the database open") != std::string::npos ||
                             message.find(": cannot create a database: there is one already") != std::string::npos;
        _exit(message == "no failure" ? 0 : isClear ? 1 : 2);
      }
      processes.push_back(child);
    }
    close(gate[0]);
    close(gate[1]);
    std::vector<int> exits;
    for (const pid_t process : processes) {
      int status = 0;
      waitpid(process, &status, 0);
      exits.push_back(WEXITSTATUS(status));
    }
    EXPECT_EQ(std::count(exits.begin(), exits.end(), 0), 1);
    EXPECT_EQ(std::count(exits.begin(), exits.end(), 1), kNumProcesses - 1);
    FED_FileLayer files;
    EXPECT_EQ(ReadContent(SegmentStore(path, kReadOnly, files)).blocks.size(), 2u);
  }
}

TEST(SegmentStore, ThePermissionsOfAManifestStay)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     store(folder / "a.fed", kCreate, files);
  store.Publish(false);
  std::filesystem::permissions(folder / "a.fed" / "manifest", std::filesystem::perms(0640));
  WriteSample(store);
  store.Publish(false);
  EXPECT_EQ(std::filesystem::status(folder / "a.fed" / "manifest").permissions(), std::filesystem::perms(0640));
}

TEST(SegmentStore, PlantedLinksAreNotFollowed)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore(folder / "a.fed", kCreate, files).Publish(false);
  WriteBytes(folder / "victim", "precious");
  {
    SegmentStore store(folder / "a.fed", kReadWrite, files);
    std::filesystem::create_symlink(folder / "victim", folder / "a.fed" / "manifest.new");
    std::filesystem::create_symlink(folder / "victim", folder / "a.fed" / "segment-000001.h5");
    WriteSample(store);
    store.Publish(false);
  }
  EXPECT_EQ(std::filesystem::file_size(folder / "victim"), 8u);
  EXPECT_FALSE(std::filesystem::is_symlink(folder / "a.fed" / "manifest"));
  EXPECT_FALSE(std::filesystem::is_symlink(folder / "a.fed" / "segment-000001.h5"));

  std::filesystem::remove(folder / "a.fed" / "lock");
  std::filesystem::create_symlink(folder / "elsewhere", folder / "a.fed" / "lock");
  EXPECT_THROW(SegmentStore(folder / "a.fed", kReadWrite, files), FED_Failure);
  EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere"));
}

TEST(SegmentStore, PipesInPlaceOfFilesKeepNobodyWaiting)
{
  const TempFolder folder;
  FED_FileLayer    files;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    store.Publish(false);
  }
  for (const char* name : {"segment-000001.h5", "manifest"}) {
    const std::filesystem::path path = folder / "a.fed" / name;
    std::filesystem::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(MessageOf([&] { SegmentStore(folder / "a.fed", kReadOnly, files); }),
              path.string() + ": cannot open: not a plain file");
  }
  EXPECT_EQ(MessageOf([&] { SegmentStore(folder / "a.fed", kCreate, files); }),
            (folder / "a.fed").string() + ": cannot create a database: there is one already");
}

TEST(SegmentStore, SecondWriterIsRefusedReadersAreNot)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     writer(folder / "a.fed", kCreate, files);
  writer.Publish(false);
  EXPECT_EQ(MessageOf([&] { SegmentStore(folder / "a.fed", kReadWrite, files); }),
            (folder / "a.fed").string() + ": another writer has the database open (process " +
                std::to_string(getpid()) + ", quilon_store_te)");
  const SegmentStore reader(folder / "a.fed", kReadOnly, files);
  EXPECT_EQ(MessageOf([&] { SegmentStore(folder / "a.fed", kReadOnly, files).Publish(false); }),
            (folder / "a.fed").string() + ": cannot write: the database is open for reading only");
}

TEST(SegmentStore, FoldersThatAreNoDatabaseAreNamed)
{
  const TempFolder folder;
  FED_FileLayer    files;
  EXPECT_EQ(MessageOf([&] { SegmentStore(folder / "none.fed", kReadOnly, files); }),
            (folder / "none.fed").string() + ": not a database: it has no manifest");
  EXPECT_EQ(MessageOf([&] { SegmentStore(folder / "none.fed", kReadWrite, files); }),
            (folder / "none.fed").string() + ": not a database: it has no manifest");
  EXPECT_FALSE(std::filesystem::exists(folder / "none.fed"));
  std::filesystem::create_directory(folder / "other");
  WriteBytes(folder / "other" / "manifest", "of a ship");
  for (const auto access : {kReadOnly, kReadWrite})
    EXPECT_EQ(MessageOf([&] { SegmentStore(folder / "other", access, files); }),
              (folder / "other" / "manifest").string() + ": not the manifest of a database, or damaged");
  EXPECT_EQ(ListFolder(folder / "other"), std::vector<std::string>{"manifest"});
  std::filesystem::create_directory(folder / "full");
  WriteBytes(folder / "full" / "notes.txt", "mine");
  EXPECT_EQ(MessageOf([&] { SegmentStore(folder / "full", kCreate, files); }),
            (folder / "full").string() + ": cannot create a database: the folder is not empty, it has \"notes.txt\"");
  EXPECT_EQ(ListFolder(folder / "full"), std::vector<std::string>{"notes.txt"});
  SegmentStore(folder / "a.fed", kCreate, files).Publish(false);
  EXPECT_EQ(MessageOf([&] { SegmentStore(folder / "a.fed", kCreate, files); }),
            (folder / "a.fed").string() + ": cannot create a database: there is one already");
}

TEST(SegmentStore, ReaderKeepsItsSnapshotWhileTheDatabaseIsRewritten)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     writer(folder / "a.fed", kCreate, files);
  WriteSample(writer);
  writer.Publish(false);
  const SegmentStore  reader(folder / "a.fed", kReadOnly, files);
  const StoredContent before = ReadContent(reader);
  PlainRows           row(1, 0, 1, {2});
  row.Add<double>({99.0});
  SegmentContents change;
  change.rows    = {&row};
  change.deleted = {2};
  writer.Write(change);
  writer.Publish(true);
  EXPECT_FALSE(std::filesystem::exists(folder / "a.fed" / "segment-000001.h5"));
  EXPECT_EQ(ReadContent(reader), before);
  const StoredContent after = ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files));
  EXPECT_EQ(after, ReadContent(writer));
  ASSERT_EQ(after.blocks.size(), 1u);
  const double changed = 99.0;
  EXPECT_EQ(after.blocks.begin()->second.at(2)[0], std::string(reinterpret_cast<const char*>(&changed), 8));
}

namespace {

// Lets a writer at the folder just before a reader opens its first segment.
class InterruptedFiles : public FED_FileLayer
{
public:
  std::function<void()> interrupt;

  std::error_code Open(const std::filesystem::path& path, Mode mode, Handle& handle) override
  {
    if (interrupt && path.extension() == ".h5") std::exchange(interrupt, nullptr)();
    return FED_FileLayer::Open(path, mode, handle);
  }
};

}  // namespace

TEST(SegmentStore, ReaderStartsAgainWhenItsSegmentsAreMergedBeforeItOpensThem)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     writer(folder / "a.fed", kCreate, files);
  WriteSample(writer);
  writer.Publish(false);
  InterruptedFiles interrupted;
  interrupted.interrupt = [&] {
    PlainRows row(1, 0, 3, {9});
    row.Add<double>({4.0});
    SegmentContents contents;
    contents.rows = {&row};
    writer.Write(contents);
    writer.Publish(true);
  };
  const SegmentStore reader(folder / "a.fed", kReadOnly, interrupted);
  EXPECT_FALSE(interrupted.interrupt);
  EXPECT_EQ(ReadContent(reader), ReadContent(writer));
}

namespace {

// Fails one kind of call on demand.
class BrokenFiles : public FED_FileLayer
{
public:
  bool failsRename      = false;
  bool failsFolderFlush = false;
  bool failsChange      = false;
  bool failsFlush       = false;
  bool failsRemove      = false;

  std::vector<std::string> log;  // of removals and of flushes of folders

  std::error_code Flush(Handle handle) override
  {
    return failsFlush ? std::make_error_code(std::errc::io_error) : FED_FileLayer::Flush(handle);
  }
  std::error_code Remove(const std::filesystem::path& path) override
  {
    log.push_back("remove " + path.filename().string());
    return failsRemove ? std::make_error_code(std::errc::io_error) : FED_FileLayer::Remove(path);
  }
  std::error_code Open(const std::filesystem::path& path, Mode mode, Handle& handle) override
  {
    if (failsChange && mode == Change) return std::make_error_code(std::errc::io_error);
    return FED_FileLayer::Open(path, mode, handle);
  }
  std::error_code Rename(const std::filesystem::path& from, const std::filesystem::path& to) override
  {
    return failsRename ? std::make_error_code(std::errc::io_error) : FED_FileLayer::Rename(from, to);
  }
  std::error_code FlushFolder(const std::filesystem::path& folder) override
  {
    log.push_back("flush " + folder.filename().string());
    // Behind the renaming.
    const bool isBehind = !std::filesystem::exists(folder / "manifest.new") && std::filesystem::exists(folder / "lock");
    return failsFolderFlush && isBehind ? std::make_error_code(std::errc::io_error)
                                        : FED_FileLayer::FlushFolder(folder);
  }
};

// One row more of the block that WriteSample() makes first.
void WriteRow(SegmentStore& store, std::uint32_t row)
{
  PlainRows rows(1, 0, row, {row + 1});
  rows.Add<double>({0.5 * row});
  SegmentContents contents;
  contents.rows = {&rows};
  store.Write(contents, true);
}

std::size_t CountLines(const std::filesystem::path& manifest, const std::string& word)
{
  std::size_t   count = 0;
  std::ifstream in(manifest);
  for (std::string line; std::getline(in, line);) count += line.rfind(word + ' ', 0) == 0 ? 1 : 0;
  return count;
}

}  // namespace

TEST(SegmentStore, FilesThatCannotBeRemovedAreRemovedLaterByTheSameWriter)
{
  const TempFolder folder;
  BrokenFiles      files;
  SegmentStore     store(folder / "a.fed", kCreate, files);
  WriteSample(store);
  store.Publish(false);
  WriteRow(store, 3);
  const auto countSegments = [&] {
    const std::vector<std::string> names = ListFolder(folder / "a.fed");
    return std::count_if(names.begin(), names.end(),
                         [](const std::string& name) { return name.starts_with("segment-"); });
  };
  files.failsRemove = true;
  store.Publish(true);
  EXPECT_EQ(countSegments(), 3);  // two, and the one for both
  files.failsRemove = false;
  WriteRow(store, 4);
  store.Publish(true);
  EXPECT_EQ(countSegments(), 1);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), ReadContent(store));
}

TEST(SegmentStore, FirstPublicationWhoseRenamingFailsLeavesNothing)
{
  const TempFolder folder;
  BrokenFiles      files;
  files.failsRename = true;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    EXPECT_EQ(MessageOf([&] { store.Publish(false); }),
              (folder / "a.fed" / "manifest").string() + ": cannot replace: Input/output error");
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "a.fed"));
}

TEST(SegmentStore, FlushThatFailsWhenTheCommitIsMadeSaysThatItMayBeInForce)
{
  const TempFolder  folder;
  BrokenFiles       files;
  const std::string expected =
      (folder / "a.fed").string() + ": cannot flush: Input/output error; the commit may be in force all the same";
  SegmentStore store(folder / "a.fed", kCreate, files);
  WriteSample(store);
  files.failsFolderFlush = true;
  EXPECT_EQ(MessageOf([&] { store.Publish(false); }), expected);
  files.failsFolderFlush = false;
  store.Publish(false);
  WriteRow(store, 3);
  files.failsFolderFlush = true;
  EXPECT_EQ(MessageOf([&] { store.Publish(false); }), expected);
  files.failsFolderFlush = false;
  store.Publish(false);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), ReadContent(store));
}

// Its bytes may be on the disk although the flush failed: after a loss of power it would be there again, and be a
// commit.
TEST(SegmentStore, ACommitWhoseFlushFailsIsGoneForGood)
{
  const TempFolder folder;
  BrokenFiles      files;
  SegmentStore     store(folder / "a.fed", kCreate, files);
  WriteSample(store);
  store.Publish(false);
  files.failsFlush = true;
  files.log.clear();
  EXPECT_EQ(MessageOf([&] { WriteRow(store, 3); }),
            (folder / "a.fed" / "segment-000002.h5").string() + ": cannot flush: Input/output error");
  ASSERT_FALSE(files.log.empty());
  EXPECT_EQ(files.log.back(), "flush a.fed");
  EXPECT_EQ(ListFolder(folder / "a.fed"), (std::vector<std::string>{"lock", "manifest", "segment-000001.h5"}));
}

// A disk that stays broken: what cannot be removed either is a commit, whole as it is.
TEST(SegmentStore, ACommitWhoseFlushFailsAndThatStaysSaysThatItMayBeInForce)
{
  const TempFolder folder;
  BrokenFiles      files;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    store.Publish(false);
    files.failsFlush = files.failsRemove = true;
    EXPECT_EQ(MessageOf([&] { WriteRow(store, 3); }),
              (folder / "a.fed" / "segment-000002.h5").string() +
                  ": cannot flush: Input/output error; the commit may be in force all the same");
    // Nothing but the message tells of it: the next one who opens the database finds the commit.
    EXPECT_NE(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), ReadContent(store));
    files.failsFlush = files.failsRemove = false;
    WriteRow(store, 3);
    store.Publish(false);
    EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), ReadContent(store));
  }
  EXPECT_EQ(FED_InspectDatabase(folder / "a.fed").findings, std::vector<std::string>());
}

TEST(SegmentStore, ACommitThatIsGivenUpIsGoneForGood)
{
  const TempFolder folder;
  BrokenFiles      files;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    store.Publish(false);
    WriteRow(store, 3);
    files.log.clear();
  }
  EXPECT_EQ(files.log, (std::vector<std::string>{"remove segment-000002.h5", "flush a.fed"}));
}

namespace {

// As a commit goes that is given up where a file that goes is emptied for those who have it open: whole at the first
// look, not found at the second, empty at the third.
class EmptiedCommit : public FED_FileLayer
{
public:
  std::error_code Open(const std::filesystem::path& path, Mode mode, Handle& handle) override
  {
    if (path.filename() != "segment-000002.h5") return FED_FileLayer::Open(path, mode, handle);
    ++looks_;
    if (looks_ == 4) std::filesystem::remove(path);
    handle = kNoHandle;
    if (looks_ == 2) return std::make_error_code(std::errc::no_such_file_or_directory);
    const std::error_code error = FED_FileLayer::Open(path, mode, handle);
    if (looks_ == 3) emptied_ = handle;
    return error;
  }
  std::error_code ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                         std::size_t& done) override
  {
    if (handle != emptied_) return FED_FileLayer::ReadAt(handle, offset, bytes, count, done);
    emptied_ = kNoHandle;  // handles are used again
    done     = 0;
    return {};
  }

private:
  int    looks_   = 0;
  Handle emptied_ = kNoHandle;
};

/// @param meanwhile what happens to a commit that is not published while somebody reads
void ExpectNoCommit(FED_FileLayer& meanwhile)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     writer(folder / "a.fed", kCreate, files);
  WriteSample(writer);
  writer.Publish(false);
  const StoredContent before = ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files));
  WriteRow(writer, 3);  // whole, and not published
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, meanwhile)), before);
}

}  // namespace

TEST(SegmentStore, AReaderTakesACommitThatIsGivenUpMeanwhileForNone)
{
  GivenUpCommit vanishing;
  ExpectNoCommit(vanishing);
}

TEST(SegmentStore, AReaderTakesACommitThatIsEmptiedMeanwhileForNone)
{
  EmptiedCommit vanishing;
  ExpectNoCommit(vanishing);
}

TEST(SegmentStore, APartHasRowsOfItsOwnBlocksAlone)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     store(folder / "a.fed", kCreate, files);
  WriteSample(store);
  store.Publish(false);
  const FED_DatabasePart part = store.ReservePart();
  PlainRows              rows(1, 0, 3, {4});  // of a block that the database has already
  rows.Add<double>({0.5});
  SegmentContents contents;
  contents.rows = {&rows};
  SegmentEntry entry;
  entry.number = entry.first = entry.last = part.firstSegment;
  WriteSegment(files, folder / "a.fed", entry, contents,
               [&](BlockUid uid) -> const StoredBlock& { return *store.FindBlock(uid); });
  EXPECT_EQ(
      MessageOf([&] { store.OpenPart(part, part.firstSegment); }),
      (folder / "a.fed" / GetSegmentName(part.firstSegment)).string() + ": not the segment of a part of the database");
}

TEST(SegmentStore, SmallCommitsAreAppendedAndFoldedNowAndThen)
{
  const TempFolder            folder;
  FED_FileLayer               files;
  const std::filesystem::path manifest = folder / "a.fed" / "manifest";
  SegmentStore                store(folder / "a.fed", kCreate, files);
  WriteSample(store);
  store.Publish(false);
  EXPECT_EQ(CountLines(manifest, "segment"), 1u);
  for (std::uint32_t row = 3; row < 8; ++row) {
    WriteRow(store, row);
    store.Publish(false);
    EXPECT_EQ(CountLines(manifest, "segment"), 1u);
    EXPECT_EQ(CountLines(manifest, "commit"), row - 2u);
    EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), ReadContent(store));
  }
  store.Publish(true);
  EXPECT_EQ(CountLines(manifest, "segment"), 1u);
  EXPECT_EQ(CountLines(manifest, "commit"), 0u);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), ReadContent(store));
}

// The line is lost when the power goes; the segment stays.
TEST(SegmentStore, CommitWithoutItsLineIsInForceAndTheNextWriterTellsOfIt)
{
  const TempFolder            folder;
  BrokenFiles                 files;
  const std::filesystem::path manifest = folder / "a.fed" / "manifest";
  StoredContent               content;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    store.Publish(false);
    files.failsChange = true;
    WriteRow(store, 3);
    store.Publish(false);
    EXPECT_EQ(CountLines(manifest, "commit"), 0u);
    content = ReadContent(store);
    EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), content);
    // Nothing is appended behind a line that is missing.
    WriteRow(store, 4);
    store.Publish(false);
    EXPECT_EQ(CountLines(manifest, "segment"), 3u);
    WriteRow(store, 5);
    store.Publish(false);
    content = ReadContent(store);
  }
  EXPECT_EQ(CountLines(manifest, "segment"), 3u);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadWrite, files)), content);
  EXPECT_EQ(CountLines(manifest, "segment"), 4u);
  EXPECT_EQ(ListFolder(folder / "a.fed").size(), 6u);
}

// The file system has made room for the line, and nothing has reached it when the power goes.
TEST(SegmentStore, ALineOfZerosIsNoneAndTheNextWriterWritesTheManifestAnew)
{
  const TempFolder            folder;
  FED_FileLayer               files;
  const std::filesystem::path manifest = folder / "a.fed" / "manifest";
  StoredContent               content;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    store.Publish(false);
  }
  const auto before = std::filesystem::file_size(manifest);
  {
    SegmentStore store(folder / "a.fed", kReadWrite, files);
    WriteRow(store, 3);
    store.Publish(false);
    content = ReadContent(store);
  }
  const auto after = std::filesystem::file_size(manifest);
  ASSERT_GT(after, before);
  std::filesystem::resize_file(manifest, before);
  std::filesystem::resize_file(manifest, after);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), content);
  {
    SegmentStore store(folder / "a.fed", kReadWrite, files);
    EXPECT_EQ(ReadContent(store), content);
    EXPECT_EQ(CountLines(manifest, "commit"), 0u);
    WriteRow(store, 4);
    store.Publish(false);
    content = ReadContent(store);
  }
  EXPECT_EQ(CountLines(manifest, "commit"), 1u);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), content);
}

TEST(SegmentStore, ADamagedCommitWithCommitsBehindItIsToldAndNothingIsRemoved)
{
  const TempFolder            folder;
  FED_FileLayer               files;
  const std::filesystem::path manifest = folder / "a.fed" / "manifest";
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    store.Publish(false);
  }
  const auto                     before = std::filesystem::file_size(manifest);
  const std::vector<std::string> former = ListFolder(folder / "a.fed");
  {
    SegmentStore store(folder / "a.fed", kReadWrite, files);
    for (std::uint32_t row = 3; row < 6; ++row) {
      WriteRow(store, row);
      store.Publish(false);
    }
  }
  ASSERT_EQ(CountLines(manifest, "commit"), 3u);
  const std::vector<std::string> names = ListFolder(folder / "a.fed");
  std::vector<std::string>       added;
  std::set_difference(names.begin(), names.end(), former.begin(), former.end(), std::back_inserter(added));
  ASSERT_EQ(added.size(), 3u);
  std::filesystem::resize_file(manifest, before);  // the lines are lost
  const std::filesystem::path damaged = folder / "a.fed" / added.front();
  std::filesystem::resize_file(damaged, std::filesystem::file_size(damaged) - 1);
  for (const auto access : {kReadOnly, kReadWrite}) {
    try {
      SegmentStore(folder / "a.fed", access, files);
      ADD_FAILURE() << "opened";
    } catch (const FED_Failure& failure) {
      EXPECT_NE(failure.GetMessage().find(added.front() + ": damaged: it was a commit"), std::string::npos)
          << failure.GetMessage();
    }
  }
  EXPECT_EQ(ListFolder(folder / "a.fed"), names);
}

TEST(SegmentStore, SegmentOfACommitThatWasCutShortIsNoneAndGoesWithTheNextWriter)
{
  const TempFolder folder;
  BrokenFiles      files;
  StoredContent    before;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    store.Publish(false);
    before            = ReadContent(store);
    files.failsChange = true;
    WriteRow(store, 3);
    store.Publish(false);
  }
  const std::filesystem::path path  = folder / "a.fed" / "segment-000002.h5";
  const std::string           bytes = ReadBytes(path);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    PutByte(path, i, static_cast<char>(bytes[i] ^ 4));
    ASSERT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), before) << i;
    PutByte(path, i, bytes[i]);
  }
  std::filesystem::resize_file(path, bytes.size() - 1);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadWrite, files)), before);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(SegmentStore, EveryFlippedAndEveryMissingByteIsNamedOrChangesNothing)
{
  const TempFolder folder;
  FED_FileLayer    files;
  {
    SegmentStore store(folder / "a.fed", kCreate, files);
    WriteSample(store);
    store.Publish(false);
  }
  const StoredContent whole = ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files));
  for (const char* name : {"manifest", "segment-000001.h5"}) {
    const std::filesystem::path path  = folder / "a.fed" / name;
    const std::string           bytes = ReadBytes(path);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      PutByte(path, i, static_cast<char>(bytes[i] ^ (1 << i % 8)));
      try {
        EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), whole) << name << ' ' << i;
      } catch (const FED_Failure& failure) {
        EXPECT_THAT(failure.what(), HasSubstr(path.string())) << i;
      }
      PutByte(path, i, bytes[i]);
    }
    for (std::size_t size = bytes.size(); size-- > 0;) {
      std::filesystem::resize_file(path, size);
      const std::string message = MessageOf([&] { SegmentStore(folder / "a.fed", kReadOnly, files); });
      EXPECT_THAT(message, HasSubstr(path.string())) << size;
    }
    WriteBytes(path, bytes);
  }
}

// The plain model: what was written last counts.
TEST(SegmentStore, ManySmallCommitsStayFewSegmentsAndOneRun)
{
  const TempFolder folder;
  FED_FileLayer    files;
  StoredContent    content;
  std::size_t      mostFiles = 0;
  {
    SegmentStore   store(folder / "a.fed", kCreate, files);
    const BlockUid uid = store.TakeUid();
    for (std::uint32_t i = 0; i < 300; ++i) {
      PlainRows row(uid, i >> 7, i, {i + 1});
      row.Add<double>({0.5 * i});
      SegmentContents contents;
      if (i == 0) contents.blocks = {MakeBlock(uid, "D", static_cast<FED_OnfId>(500), 7)};
      contents.rows = {&row};
      store.Write(contents);
      store.Publish(false);
      mostFiles = std::max(mostFiles, ListFolder(folder / "a.fed").size());
    }
  }
  EXPECT_LE(mostFiles, 2u + 16u);
  SegmentStore store(folder / "a.fed", kReadWrite, files);
  content = ReadContent(store);
  ASSERT_EQ(content.blocks.size(), 1u);
  const auto& records = content.blocks.begin()->second;
  ASSERT_EQ(records.size(), 300u);
  for (std::uint32_t i = 0; i < 300; ++i) {
    double value = -1;
    std::memcpy(&value, records.at(i + 1)[0].data(), 8);
    EXPECT_EQ(value, 0.5 * i);
  }
  store.Publish(true);
  EXPECT_EQ(ReadContent(store), content);
  EXPECT_EQ(store.GetExtents(1, 0).size(), 1u);
  EXPECT_TRUE(store.GetExtents(1, 0).front().keysAreRun);
  EXPECT_EQ(ListFolder(folder / "a.fed").size(), 3u);
}

TEST(SegmentStore, StatisticsOfMergedColumnsAreThoseOfAllRows)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     store(folder / "a.fed", kCreate, files);
  const BlockUid   uid = store.TakeUid();
  PlainRows        first(uid, 0, 0, {4, 2, 9});
  PlainRows        second(uid, 0, 2, {9, 5});
  first.Add<double>({1.0, std::nan(""), -70.0});
  second.Add<double>({3.0, 8.0});
  SegmentContents contents;
  contents.blocks = {MakeBlock(uid, "D")};
  contents.rows   = {&first};
  store.Write(contents);
  contents.blocks.clear();
  contents.rows = {&second};
  store.Write(contents);
  store.Publish(true);
  const std::vector<StoredExtent> extents = store.GetExtents(uid, 0);
  ASSERT_EQ(extents.size(), 1u);
  const ColumnStatistics statistics = store.GetStatistics(extents[0], 0);
  EXPECT_EQ(statistics.values, 3u);
  EXPECT_EQ(statistics.nans, 1u);
  EXPECT_EQ(statistics.least, 1.0);  // -70 was replaced
  EXPECT_EQ(statistics.greatest, 8.0);
  std::vector<std::uint32_t> keys(4);
  store.ReadKeys(extents[0], keys.data());
  EXPECT_EQ(keys, (std::vector<std::uint32_t>{4, 2, 9, 5}));
}

TEST(SegmentStore, DeletedBlockStaysDeletedWhenItsLaterSegmentsMerge)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     store(folder / "a.fed", kCreate, files);
  const BlockUid   large = store.TakeUid();
  const BlockUid   gone  = store.TakeUid();
  PlainRows        rows(large, 0, 0, Keys(0, 100000));  // too large to merge with the small segments behind it
  rows.Add(std::vector<double>(100000, 2.0));
  SegmentContents contents;
  contents.blocks = {MakeBlock(large, "D", static_cast<FED_OnfId>(500), 20), MakeBlock(gone, "")};
  contents.rows   = {&rows};
  store.Write(contents);
  store.Publish(false);
  PlainRows row(gone, 0, 0, {1});
  row.Add<double>({1.0});
  contents        = {};
  contents.blocks = {MakeBlock(gone, "D")};  // takes its format
  contents.rows   = {&row};
  store.Write(contents);
  contents         = {};
  contents.deleted = {gone};
  store.Write(contents);
  for (int i = 0; i < 6; ++i) {
    contents          = {};
    contents.hasNames = true;
    contents.names    = {{1000, "name " + std::to_string(i)}};
    store.Write(contents);
  }
  store.Publish(false);
  EXPECT_EQ(ListFolder(folder / "a.fed").size(), 4u);  // lock, manifest, the large segment, the merged one
  const SegmentStore reader(folder / "a.fed", kReadOnly, files);
  EXPECT_EQ(reader.FindBlock(gone), nullptr);
  EXPECT_NE(reader.FindBlock(large), nullptr);
  EXPECT_EQ(reader.GetUserKindNames().at(1000), "name 5");
}

TEST(SegmentStore, DeletionGivesTheBytesBack)
{
  const TempFolder folder;
  FED_FileLayer    files;
  SegmentStore     store(folder / "a.fed", kCreate, files);
  const BlockUid   uid = store.TakeUid();
  PlainRows        rows(uid, 0, 0, Keys(0, 100000));
  rows.Add(std::vector<double>(100000, 2.0));
  SegmentContents contents;
  contents.blocks = {MakeBlock(uid, "D", static_cast<FED_OnfId>(500), 20)};
  contents.rows   = {&rows};
  store.Write(contents);
  WriteSample(store);
  store.Publish(false);
  EXPECT_GT(std::filesystem::file_size(folder / "a.fed" / "segment-000001.h5"), 800000u);
  contents         = {};
  contents.deleted = {uid};
  store.Write(contents);
  const StoredContent expected = ReadContent(store);
  store.Publish(false);
  std::uintmax_t bytes = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder / "a.fed")) bytes += entry.file_size();
  EXPECT_LT(bytes, 20000u);
  EXPECT_EQ(ReadContent(store), expected);
  EXPECT_EQ(ReadContent(SegmentStore(folder / "a.fed", kReadOnly, files)), expected);
}
