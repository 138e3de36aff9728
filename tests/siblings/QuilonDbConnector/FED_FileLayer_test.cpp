#include "bundled/FED_FileLayer.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

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

void WriteFile(const std::filesystem::path& path, const std::string& text)
{
  FED_FileLayer  files;
  const OpenFile file(files, path, FED_FileLayer::Create);
  EXPECT_FALSE(file.error);
  EXPECT_FALSE(files.WriteAt(file.handle, 0, text.data(), text.size()));
}

std::string ReadFile(const std::filesystem::path& path)
{
  FED_FileLayer files;
  return ReadSome(OpenFile(files, path, FED_FileLayer::Read), 0, 100);
}

FED_FileStatus StatusOf(const std::filesystem::path& path)
{
  FED_FileLayer  files;
  FED_FileStatus status;
  EXPECT_FALSE(files.GetStatus(path, status));
  return status;
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

TEST(FileLayer, CreatingPutsANewFileInPlaceOfOneThatIsThere)
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

TEST(FileLayer, ClosingTellsWhatTheSystemTells)
{
  const TempFolder      folder;
  FED_FileLayer         files;
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  EXPECT_FALSE(files.Close(handle));
  ASSERT_FALSE(files.Open(folder / "a", FED_FileLayer::Create, handle));
  EXPECT_FALSE(files.Close(handle));
  EXPECT_EQ(files.Close(handle), std::errc::bad_file_descriptor);
}

TEST(FileLayer, StatusTellsWhatIsThere)
{
  const TempFolder folder;
  WriteFile(folder / "a", "four");
  std::filesystem::create_symlink(folder / "a", folder / "link");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(StatusOf(folder / "none").kind, FED_FileStatus::Nothing);
  EXPECT_EQ(StatusOf(folder / "a" / "none").kind, FED_FileStatus::Nothing);
  EXPECT_EQ(StatusOf(folder.GetPath()).kind, FED_FileStatus::Folder);
  EXPECT_EQ(StatusOf(folder / "pipe").kind, FED_FileStatus::Other);
  const FED_FileStatus file = StatusOf(folder / "a");
  EXPECT_EQ(file.kind, FED_FileStatus::File);
  EXPECT_EQ(file.size, 4u);
  EXPECT_EQ(StatusOf(folder / "link").number, file.number);

  FED_FileLayer  files;
  const OpenFile open(files, folder / "a", FED_FileLayer::Read);
  FED_FileStatus same;
  EXPECT_FALSE(files.GetStatus(open.handle, same));
  EXPECT_EQ(same.number, file.number);
  EXPECT_EQ(same.device, file.device);
  EXPECT_EQ(same.changed, file.changed);
}

// An error is not taken for "nothing is there".
TEST(FileLayer, StatusThatTheSystemDoesNotTellIsAnError)
{
  const TempFolder folder;
  FED_FileLayer    files;
  FED_FileStatus   status;
  std::filesystem::create_symlink("circle", folder / "circle");
  EXPECT_EQ(files.GetStatus(folder / "circle", status), std::errc::too_many_symbolic_link_levels);
  EXPECT_EQ(files.GetStatus(folder / std::string(300, 'x'), status), std::errc::filename_too_long);
}

TEST(FileLayer, OnlyPlainFilesAreOpened)
{
  const TempFolder folder;
  FED_FileLayer    files;
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(OpenFile(files, folder / "pipe", FED_FileLayer::Read).error, FED_FileLayer::NotAFile());
  EXPECT_EQ(OpenFile(files, "/dev/null", FED_FileLayer::Read).error, FED_FileLayer::NotAFile());
  EXPECT_EQ(OpenFile(files, folder.GetPath(), FED_FileLayer::Read).error, std::errc::is_a_directory);
  EXPECT_EQ(FED_FileLayer::NotAFile().message(), "not a plain file");
}

TEST(FileLayer, CreatingReplacesALinkAndDoesNotFollowIt)
{
  const TempFolder folder;
  WriteFile(folder / "victim", "precious");
  std::filesystem::create_symlink(folder / "victim", folder / "a");
  std::filesystem::create_symlink(folder / "elsewhere", folder / "b");
  WriteFile(folder / "a", "new");
  WriteFile(folder / "b", "new");
  EXPECT_EQ(ReadFile(folder / "victim"), "precious");
  EXPECT_EQ(ReadFile(folder / "a"), "new");
  EXPECT_FALSE(std::filesystem::is_symlink(folder / "a"));
  EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere"));
}

TEST(FileLayer, PrivateFilesAreTheOwnersUntilPermissionsAreSet)
{
  const TempFolder folder;
  FED_FileLayer    files;
  const OpenFile   file(files, folder / "a", FED_FileLayer::CreatePrivate);
  const auto       permissions = [&] { return StatusOf(folder / "a").permissions; };
  EXPECT_EQ(permissions(), std::filesystem::perms(0600));
  EXPECT_FALSE(files.SetPermissions(file.handle, std::filesystem::perms(0664)));
  EXPECT_EQ(permissions(), std::filesystem::perms(0664));
}

TEST(FileLayer, AllFilesOfAFolderAreFlushed)
{
  const TempFolder folder;
  FED_FileLayer    files;
  WriteFile(folder / "a", "text");
  EXPECT_FALSE(files.FlushAll(folder.GetPath()));
  EXPECT_TRUE(files.FlushAll(folder / "none"));
}

TEST(FileLayer, BeginningToFlushChangesNothing)
{
  const TempFolder folder;
  FED_FileLayer    files;
  const OpenFile   file(files, folder / "a", FED_FileLayer::Create);
  EXPECT_FALSE(files.WriteAt(file.handle, 0, "data", 4));
  EXPECT_FALSE(files.BeginFlush(file.handle, 0, 4));
  EXPECT_EQ(ReadSome(file, 0, 10), "data");
#if defined(__linux__)
  EXPECT_TRUE(files.BeginFlush(FED_FileLayer::kNoHandle, 0, 4));
#endif
}

TEST(FileLayer, LockMakesNoFileThroughALink)
{
  const TempFolder      folder;
  FED_FileLayer         files;
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  std::filesystem::create_symlink(folder / "elsewhere", folder / "lock");
  EXPECT_EQ(files.Lock(folder / "lock", handle), std::errc::too_many_symbolic_link_levels);
  EXPECT_EQ(handle, FED_FileLayer::kNoHandle);
  EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere"));
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(files.Lock(folder / "pipe", handle), FED_FileLayer::NotAFile());
}

TEST(FileLayer, FoldersAreLockedLikeFiles)
{
  const TempFolder      folder;
  FED_FileLayer         files;
  FED_FileLayer::Handle first  = FED_FileLayer::kNoHandle;
  FED_FileLayer::Handle second = FED_FileLayer::kNoHandle;
  EXPECT_EQ(files.LockFolder(folder / "none", first), std::errc::no_such_file_or_directory);
  EXPECT_FALSE(files.LockFolder(folder.GetPath(), first));
  EXPECT_EQ(files.LockFolder(folder.GetPath(), second), std::errc::resource_unavailable_try_again);
  files.Close(first);
  EXPECT_FALSE(files.LockFolder(folder.GetPath(), second));
  files.Close(second);
}

TEST(FileLayer, TellsWhoHoldsALock)
{
  const TempFolder      folder;
  FED_FileLayer         files;
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  EXPECT_FALSE(files.Lock(folder / "lock", handle));
  EXPECT_EQ(files.FindLockHolder(folder / "lock"), "process " + std::to_string(getpid()) + ", quilon_store_te");
  EXPECT_EQ(files.FindLockHolder(folder.GetPath()), "");
  files.Close(handle);
  EXPECT_EQ(files.FindLockHolder(folder / "lock"), "");
  EXPECT_EQ(files.FindLockHolder(folder / "none"), "");
}

namespace {

struct Stopped
{};

class StoppedFiles : public FED_FileLayer
{
protected:
  void OnSignal() override { throw Stopped(); }
};

}  // namespace

// A file that another process has leased to itself keeps who opens it waiting.
TEST(FileLayer, ASignalStopsWhoWaitsForAFileToOpen)
{
  const TempFolder folder;
  WriteFile(folder / "a", "text");
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    signal(SIGIO, SIG_IGN);
    const int  leased   = open((folder / "a").c_str(), O_RDWR);
    const char isLeased = fcntl(leased, F_SETLEASE, F_WRLCK) == 0 ? 'y' : 'n';
    char       end      = 0;
    close(ends[0]);
    if (write(ends[1], &isLeased, 1) == 1 && read(ends[1], &end, 1) < 0) _exit(1);
    _exit(0);  // when the other end is closed
  }
  close(ends[1]);
  char isLeased = 'n';
  ASSERT_EQ(read(ends[0], &isLeased, 1), 1);
  ASSERT_EQ(isLeased, 'y');

  struct sigaction quiet = {};
  quiet.sa_handler       = [](int) {};
  sigaction(SIGALRM, &quiet, nullptr);
  const itimerval again = {{0, 20'000}, {0, 20'000}};  // one that comes too early is followed by another
  const itimerval never = {};
  setitimer(ITIMER_REAL, &again, nullptr);
  StoppedFiles          files;
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  EXPECT_THROW(static_cast<void>(files.Open(folder / "a", FED_FileLayer::Read, handle)), Stopped);
  setitimer(ITIMER_REAL, &never, nullptr);
  close(ends[0]);
  waitpid(child, nullptr, 0);
}
