#include "bundled/FED_FileLayer.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;

// An open file of a layer, closed in the end.
struct OpenFile
{
  OpenFile(FED_FileLayer& layer, const std::filesystem::path& path, FED_FileLayer::Mode mode) : files(layer)
  {
    error = files.Open(path, mode, handle);
  }
  OpenFile(const OpenFile&)            = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { files.Close(handle); }

  FED_FileLayer&        files;
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  std::error_code       error;
};

std::string ReadSome(const OpenFile& file, std::uint64_t offset, std::size_t count)
{
  std::string bytes(count, '?');
  std::size_t done = 0;
  EXPECT_FALSE(file.files.ReadAt(file.handle, offset, bytes.data(), count, done));
  bytes.resize(done);
  return bytes;
}

}  // namespace

TEST(FileLayer, WhatIsWrittenAtAnOffsetIsReadThereUpToTheEnd)
{
  const TempFolder folder;
  FED_FileLayer    files;
  const OpenFile   file(files, folder / "a", FED_FileLayer::Create);
  EXPECT_FALSE(files.WriteAt(file.handle, 4, "data", 4));
  EXPECT_FALSE(files.Flush(file.handle));
  std::uint64_t size = 0;
  EXPECT_FALSE(files.GetSize(file.handle, size));
  EXPECT_EQ(size, 8u);
  EXPECT_EQ(ReadSome(file, 5, 2), "at");
  EXPECT_EQ(ReadSome(file, 6, 10), "ta");
  EXPECT_EQ(ReadSome(file, 8, 1), "");
  EXPECT_EQ(ReadSome(file, 0, 4), std::string(4, '\0'));
}

TEST(FileLayer, OpeningSaysWhatIsMissing)
{
  const TempFolder folder;
  FED_FileLayer    files;
  const OpenFile   none(files, folder / "none", FED_FileLayer::Read);
  EXPECT_EQ(none.error, std::errc::no_such_file_or_directory);
  EXPECT_EQ(none.handle, FED_FileLayer::kNoHandle);
}

TEST(FileLayer, CreatingEmptiesAFileThatIsThere)
{
  const TempFolder folder;
  FED_FileLayer    files;
  {
    const OpenFile file(files, folder / "a", FED_FileLayer::Create);
    EXPECT_FALSE(files.WriteAt(file.handle, 0, "old", 3));
  }
  EXPECT_EQ(ReadSome(OpenFile(files, folder / "a", FED_FileLayer::Read), 0, 9), "old");
  EXPECT_EQ(ReadSome(OpenFile(files, folder / "a", FED_FileLayer::Create), 0, 9), "");
}

TEST(FileLayer, WritingThroughAReadersHandleIsAnError)
{
  const TempFolder folder;
  FED_FileLayer    files;
  {
    const OpenFile file(files, folder / "a", FED_FileLayer::Create);
  }
  const OpenFile file(files, folder / "a", FED_FileLayer::Read);
  EXPECT_TRUE(files.WriteAt(file.handle, 0, "x", 1));
}

TEST(FileLayer, RenamingReplacesAndOpenFilesStayReadable)
{
  const TempFolder folder;
  FED_FileLayer    files;
  const OpenFile   old(files, folder / "a", FED_FileLayer::Create);
  EXPECT_FALSE(files.WriteAt(old.handle, 0, "old", 3));
  {
    const OpenFile next(files, folder / "b", FED_FileLayer::Create);
    EXPECT_FALSE(files.WriteAt(next.handle, 0, "new", 3));
  }
  EXPECT_FALSE(files.Rename(folder / "b", folder / "a"));
  EXPECT_FALSE(files.FlushFolder(folder.GetPath()));
  EXPECT_EQ(ReadSome(old, 0, 3), "old");
  EXPECT_EQ(ReadSome(OpenFile(files, folder / "a", FED_FileLayer::Read), 0, 3), "new");
  EXPECT_TRUE(files.Rename(folder / "b", folder / "a"));
}

TEST(FileLayer, RemovingTakesFilesEmptyFoldersAndWhatIsNotThere)
{
  const TempFolder folder;
  FED_FileLayer    files;
  bool             made = false;
  EXPECT_FALSE(files.MakeFolder(folder / "f", made));
  EXPECT_TRUE(made);
  EXPECT_FALSE(files.MakeFolder(folder / "f", made));
  EXPECT_FALSE(made);
  {
    const OpenFile file(files, folder / "f" / "a", FED_FileLayer::Create);
  }
  EXPECT_TRUE(files.Remove(folder / "f"));
  EXPECT_FALSE(files.Remove(folder / "f" / "a"));
  EXPECT_FALSE(files.Remove(folder / "f" / "a"));
  EXPECT_FALSE(files.Remove(folder / "f"));
  EXPECT_FALSE(std::filesystem::exists(folder / "f"));
}

TEST(FileLayer, ListingNamesAllEntries)
{
  const TempFolder         folder;
  FED_FileLayer            files;
  std::vector<std::string> names{"before"};
  EXPECT_FALSE(files.List(folder.GetPath(), names));
  EXPECT_TRUE(names.empty());
  {
    const OpenFile file(files, folder / "a", FED_FileLayer::Create);
  }
  bool made = false;
  EXPECT_FALSE(files.MakeFolder(folder / "b", made));
  EXPECT_FALSE(files.List(folder.GetPath(), names));
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"a", "b"}));
  EXPECT_TRUE(files.List(folder / "none", names));
}

TEST(FileLayer, LockKeepsOthersOffUntilItIsClosed)
{
  const TempFolder      folder;
  FED_FileLayer         files;
  FED_FileLayer::Handle first  = FED_FileLayer::kNoHandle;
  FED_FileLayer::Handle second = FED_FileLayer::kNoHandle;
  EXPECT_FALSE(files.Lock(folder / "lock", first));
  EXPECT_EQ(files.Lock(folder / "lock", second), std::errc::resource_unavailable_try_again);
  EXPECT_EQ(second, FED_FileLayer::kNoHandle);
  files.Close(first);
  EXPECT_FALSE(files.Lock(folder / "lock", second));
  files.Close(second);
}
