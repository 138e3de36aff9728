#include "bundled/FED_LockFileLayer.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <regex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonUtilities/FED_Failure.h"

#include "failure_message.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

using Files = FED_LockFileLayer;

constexpr auto kScalar = static_cast<FED_OnfId>(500);

/// A file system without locks, of which single calls may fail.
class NoLocks : public Files
{
public:
  using Files::Files;

  int error = ENOLCK;
  int calls = 0;   ///< that change a name
  int fails = -1;  ///< this one of them
  /// What happens just before a name is given.
  std::function<void(const fs::path& to)> onLink;
  /// A second name is made, and the answer is lost.
  bool losesAnswers = false;
  /// There are no second names.
  bool hasNoLinks = false;
  /// What was asked for, of what brings bytes to the disk and names files.
  std::vector<std::string> asked;

  std::error_code Link(const fs::path& from, const fs::path& to) override
  {
    asked.push_back("link");
    if (calls++ == fails) return std::make_error_code(std::errc::io_error);
    if (hasNoLinks) return std::make_error_code(std::errc::operation_not_permitted);
    if (onLink) onLink(to);
    const std::error_code result = Files::Link(from, to);
    return losesAnswers && !result ? std::make_error_code(std::errc::file_exists) : result;
  }
  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count) override
  {
    asked.push_back("write");
    return Files::WriteAt(handle, offset, bytes, count);
  }
  std::error_code Flush(Handle handle) override
  {
    asked.push_back("flush");
    return Files::Flush(handle);
  }
  std::error_code Remove(const fs::path& path) override
  {
    if (calls++ == fails) return std::make_error_code(std::errc::io_error);
    return Files::Remove(path);
  }

protected:
  std::error_code LockBySystem(const fs::path&, Handle& handle) override
  {
    handle = kNoHandle;
    return {error, std::generic_category()};
  }
};

/// Throws in one call, as a layer does that somebody interrupts.
class Interrupted : public NoLocks
{
public:
  explicit Interrupted(int at) : NoLocks(LockFile), at_(at) {}

  bool IsOver() const { return count_ <= at_; }

  std::error_code Open(const fs::path& path, Mode mode, Handle& handle) override
  {
    Count();
    return NoLocks::Open(path, mode, handle);
  }
  using NoLocks::GetStatus;
  std::error_code GetStatus(const fs::path& path, FED_FileStatus& status) override
  {
    Count();
    return NoLocks::GetStatus(path, status);
  }
  std::error_code ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t size, std::size_t& done) override
  {
    Count();
    return NoLocks::ReadAt(handle, offset, bytes, size, done);
  }
  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t size) override
  {
    Count();
    return NoLocks::WriteAt(handle, offset, bytes, size);
  }

private:
  void Count()
  {
    if (count_++ == at_) throw std::runtime_error("interrupted");
  }

  int at_;
  int count_ = 0;
};

std::string ReadText(const fs::path& path)
{
  std::ifstream in(path);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

class LockFiles : public testing::Test
{
protected:
  /// Puts a lock file there that differs from ours in some of its lines.
  void WriteHolder(const std::vector<std::pair<std::string, std::string>>& changes)
  {
    fs::remove(holder_);
    NoLocks       files(Files::LockFile);
    Files::Handle handle = Files::kNoHandle;
    ASSERT_FALSE(files.Lock(lock_, handle));
    std::string text = ReadText(holder_);
    files.Close(handle);
    for (const auto& [word, value] : changes)
      text = std::regex_replace(text, std::regex("\n" + word + " [^\n]*"), "\n" + word + ' ' + value);
    std::ofstream(holder_) << text;
  }

  /// The number of a process that was there a moment ago.
  static std::string GoneProcess()
  {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    int status = 0;
    ::waitpid(child, &status, 0);
    return std::to_string(child);
  }

  bool Takes(Files& files) const
  {
    Files::Handle         handle = Files::kNoHandle;
    const std::error_code error  = files.Lock(lock_, handle);
    EXPECT_TRUE(!error || error == std::errc::resource_unavailable_try_again) << error.message();
    EXPECT_EQ(handle == Files::kNoHandle, bool(error));
    if (!error) files.Close(handle);
    return !error;
  }
  bool Takes(Files::Sort sort = Files::LockFile, bool breaks = false) const
  {
    NoLocks files(sort, breaks);
    return Takes(files);
  }

  std::vector<std::string> Names() const
  {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(fs::path(folder_ / "x").parent_path()))
      names.push_back(entry.path().filename().string());
    return names;
  }

  TempFolder folder_;
  fs::path   lock_   = folder_ / "lock";
  fs::path   holder_ = folder_ / "lock.holder";
};

TEST_F(LockFiles, OneHoldsItUntilItIsClosed)
{
  NoLocks       files(Files::LockFile);
  Files::Handle handle = Files::kNoHandle;
  ASSERT_FALSE(files.Lock(lock_, handle));
  EXPECT_TRUE(fs::exists(holder_));
  EXPECT_FALSE(Takes());
  const std::string text = ReadText(holder_);
  EXPECT_NE(text.find("\nprocess " + std::to_string(::getpid()) + '\n'), std::string::npos) << text;
  EXPECT_TRUE(std::regex_search(text, std::regex("\nsince 20[0-9]{2}-[0-9]{2}-[0-9]{2}T[0-9:]{8}Z\n"))) << text;
  EXPECT_TRUE(std::regex_match(NoLocks(Files::LockFile).FindLockHolder(lock_),
                               std::regex("process [0-9]+ on .+ since 20.+Z, by lock\\.holder")));
  files.Close(handle);
  EXPECT_EQ(Names(), std::vector<std::string>());
  EXPECT_TRUE(Takes());
}

TEST_F(LockFiles, TheSystemsLockIsTakenTooWhereThereIsOne)
{
  Files         files(Files::LockFile);
  Files::Handle handle = Files::kNoHandle;
  ASSERT_FALSE(files.Lock(lock_, handle));
  FED_FileLayer plain;
  Files::Handle other = Files::kNoHandle;
  EXPECT_EQ(plain.Lock(lock_, other), std::errc::resource_unavailable_try_again);
  files.Close(handle);
  ASSERT_FALSE(plain.Lock(lock_, other));
  EXPECT_FALSE(Takes(files));
  EXPECT_FALSE(fs::exists(holder_));
  plain.Close(other);
  EXPECT_TRUE(Takes(files));
}

TEST_F(LockFiles, WhoAsksTheSystemAloneRespectsThem)
{
  WriteHolder({{"host", "elsewhere"}});
  Files system(Files::SystemLock);
  EXPECT_FALSE(Takes(system));
  EXPECT_TRUE(fs::exists(holder_));
  WriteHolder({{"process", GoneProcess()}});
  EXPECT_TRUE(Takes(system));
  EXPECT_FALSE(fs::exists(holder_));
  NoLocks       noLocks(Files::SystemLock);
  Files::Handle handle = Files::kNoHandle;
  EXPECT_EQ(noLocks.Lock(lock_, handle).value(), ENOLCK);
}

TEST_F(LockFiles, ThoseOfProcessesThatAreGoneCountForNothing)
{
  WriteHolder({{"process", GoneProcess()}});
  EXPECT_TRUE(Takes());
  WriteHolder({{"started", "1"}});  // another process has the number now
  EXPECT_TRUE(Takes());
  WriteHolder({{"boot", "before"}});
  EXPECT_TRUE(Takes());
  EXPECT_EQ(Names(), std::vector<std::string>());
}

TEST_F(LockFiles, ThoseOfOtherMachinesStayUntilTheyAreBroken)
{
  using Changes = std::vector<std::pair<std::string, std::string>>;
  for (const Changes& changes :
       {Changes{{"host", "elsewhere"}}, Changes{{"machine", "other"}}, Changes{{"processes", "pid:[1]"}},
        Changes{{"host", "elsewhere"}, {"process", GoneProcess()}}})
  {
    WriteHolder(changes);
    EXPECT_FALSE(Takes());
    EXPECT_TRUE(NoLocks(Files::LockFile).IsHeldElsewhere(lock_));
    EXPECT_TRUE(Takes(Files::LockFile, true));
    EXPECT_EQ(Names(), std::vector<std::string>());
  }
  // What the system did not tell them or us is no sign that they are gone.
  for (const Changes& changes : {Changes{{"boot", "-"}}, Changes{{"started", "-"}}}) {
    WriteHolder(changes);
    EXPECT_FALSE(Takes());
    EXPECT_TRUE(Takes(Files::LockFile, true));
  }
  std::ofstream(holder_) << "of nobody knows whom";
  EXPECT_FALSE(Takes());
  EXPECT_TRUE(Takes(Files::LockFile, true));
}

TEST_F(LockFiles, NobodyBreaksThatOfAProcessAtWork)
{
  NoLocks       files(Files::LockFile);
  Files::Handle handle = Files::kNoHandle;
  ASSERT_FALSE(files.Lock(lock_, handle));
  EXPECT_FALSE(NoLocks(Files::LockFile).IsHeldElsewhere(lock_));
  EXPECT_FALSE(Takes(Files::LockFile, true));
  files.Close(handle);
}

TEST_F(LockFiles, OneThatWasBrokenIsNotRemovedByItsFormerHolder)
{
  NoLocks       files(Files::LockFile);
  Files::Handle handle = Files::kNoHandle;
  ASSERT_FALSE(files.Lock(lock_, handle));
  fs::remove(holder_);
  std::ofstream(holder_) << "another's";
  files.Close(handle);
  EXPECT_EQ(ReadText(holder_), "another's");
}

TEST_F(LockFiles, AnswersThatANetworkLosesChangeNothing)
{
  NoLocks files(Files::LockFile);
  files.losesAnswers = true;
  EXPECT_TRUE(Takes(files));
  WriteHolder({{"started", "1"}});
  EXPECT_TRUE(Takes(files));
  EXPECT_EQ(Names(), std::vector<std::string>());
}

TEST_F(LockFiles, OfTwoWhoFindOneThatIsGoneOneGetsIt)
{
  // While one is about to take it over, another does so and keeps it.
  WriteHolder({{"process", GoneProcess()}});
  NoLocks       other(Files::LockFile);
  Files::Handle kept = Files::kNoHandle;
  NoLocks       files(Files::LockFile);
  files.onLink = [&](const fs::path& to) {
    if (to.filename() == "lock.holder.taken-over" && kept == Files::kNoHandle) {
      EXPECT_FALSE(other.Lock(lock_, kept));
    }
  };
  EXPECT_FALSE(Takes(files));
  EXPECT_FALSE(Takes());
  other.Close(kept);
  EXPECT_TRUE(Takes());
  EXPECT_EQ(Names(), std::vector<std::string>());
  // While another is at it, one waits.
  WriteHolder({{"process", GoneProcess()}});
  std::ofstream(folder_ / "lock.holder.taken-over") << "another's";
  EXPECT_FALSE(Takes());
  // Who died in between left that file, which a break removes.
  EXPECT_TRUE(Takes(Files::LockFile, true));
  EXPECT_EQ(Names(), std::vector<std::string>());
}

// Who died while it took a lock over left its file: it goes in the same way, and so on.
TEST_F(LockFiles, WhoTakesOneOverAndDiesIsTakenOverTooAtOnce)
{
  WriteHolder({{"process", GoneProcess()}});
  fs::copy_file(holder_, folder_ / "lock.holder.taken-over");
  fs::copy_file(holder_, folder_ / "lock.holder.taken-over.taken-over");
  EXPECT_TRUE(Takes());
  EXPECT_EQ(Names(), std::vector<std::string>());
  // One at work is waited for, whatever is broken; of another machine's nobody can tell.
  NoLocks       files(Files::LockFile);
  Files::Handle handle = Files::kNoHandle;
  ASSERT_FALSE(files.Lock(lock_, handle));
  const std::string atWork = ReadText(holder_);
  files.Close(handle);
  WriteHolder({{"process", GoneProcess()}});
  std::ofstream(folder_ / "lock.holder.taken-over") << atWork;
  EXPECT_FALSE(Takes(Files::LockFile, true));
  EXPECT_FALSE(NoLocks(Files::LockFile).IsHeldElsewhere(lock_));
  std::ofstream(folder_ / "lock.holder.taken-over") << std::regex_replace(atWork, std::regex("\nhost "), "\nhost x");
  EXPECT_FALSE(Takes());
  EXPECT_TRUE(NoLocks(Files::LockFile).IsHeldElsewhere(lock_));
  EXPECT_TRUE(Takes(Files::LockFile, true));
  EXPECT_EQ(Names(), std::vector<std::string>());
}

// A system that does not say when it or a process was started says nothing about who is gone.
TEST_F(LockFiles, WhatTheSystemDoesNotTellIsNoAnswer)
{
  for (const char* untold : {"boot", "started"}) {
    WriteHolder({{untold, "-"}});
    EXPECT_FALSE(Takes()) << untold;
    EXPECT_TRUE(NoLocks(Files::LockFile).IsHeldElsewhere(lock_)) << untold;
    EXPECT_TRUE(Takes(Files::LockFile, true)) << untold;
  }
  WriteHolder({{"process", "99999999999999"}});  // a number that no process has
  EXPECT_FALSE(Takes());
}

TEST_F(LockFiles, WhoIsInterruptedLeavesNone)
{
  for (const bool isGone : {false, true})
    for (int call = 0;; ++call) {
      if (isGone) WriteHolder({{"started", "1"}});
      Interrupted   files(call);
      Files::Handle handle = Files::kNoHandle;
      try {
        EXPECT_FALSE(files.Lock(lock_, handle));
      } catch (const std::runtime_error&) {
        EXPECT_EQ(handle, Files::kNoHandle);
      }
      files.Close(handle);
      if (files.IsOver()) {
        EXPECT_GE(call, 3);
        break;
      }
      std::vector<std::string> names = Names();
      std::erase(names, isGone ? "lock.holder" : "");
      EXPECT_EQ(names, std::vector<std::string>()) << call;
      EXPECT_TRUE(Takes()) << call;
    }
  EXPECT_EQ(Names(), std::vector<std::string>());
}

// One that a loss of power leaves empty would be of nobody knows whom.
TEST_F(LockFiles, WhatTheySayIsOnTheDiskBeforeTheyAreLocks)
{
  NoLocks files(Files::LockFile);
  EXPECT_TRUE(Takes(files));
  EXPECT_EQ(files.asked, (std::vector<std::string>{"write", "flush", "link"}));
}

TEST_F(LockFiles, WhatDeadProcessesLeftBesideThemGoes)
{
  std::string own;  // the name of a file that is about to become a lock
  NoLocks     files(Files::LockFile);
  files.onLink = [&](const fs::path&) { own = Names().front(); };
  EXPECT_TRUE(Takes(files));
  const std::string us   = '.' + std::to_string(::getpid()) + '.';
  const auto        name = [&](const std::string& process) {
    std::string changed = own;
    changed.replace(own.rfind(us), us.size(), '.' + process + '.');
    return changed;
  };
  WriteHolder({{"boot", "before"}});
  const std::string before = ReadText(holder_);
  fs::remove(holder_);
  // Nothing was written yet, or the machine was started anew since.
  std::ofstream(folder_ / name(GoneProcess())).flush();
  std::ofstream(folder_ / "lock.holder.n042.812.1") << before;
  // Of a process at work, of another machine, and of one of which nothing is told: not ours to remove.
  const std::vector<std::string> kept = {name(std::to_string(::getppid())), "lock.holder.n042.812.2",
                                         "lock.holder.taken-over"};
  for (const std::string& file : kept) std::ofstream(folder_ / file).flush();
  EXPECT_TRUE(Takes());
  std::vector<std::string> names = Names();
  std::sort(names.begin(), names.end());
  std::vector<std::string> expected = kept;
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(names, expected);
}

TEST_F(LockFiles, OneThatWasCopiedToWhereThereAreNoLinksIsNotInTheWay)
{
  WriteHolder({{"process", GoneProcess()}});
  NoLocks       noLinks(Files::SystemLock);
  Files::Handle handle = Files::kNoHandle;
  noLinks.hasNoLinks   = true;
  noLinks.error        = 0;
  ASSERT_FALSE(noLinks.Lock(lock_, handle));
  EXPECT_EQ(Names(), std::vector<std::string>());
}

TEST_F(LockFiles, OneThatCountsForNothingIsNotNamedAsTheHolder)
{
  WriteHolder({{"process", GoneProcess()}});
  FED_FileLayer plain;
  Files::Handle handle = Files::kNoHandle;
  ASSERT_FALSE(plain.Lock(lock_, handle));
  EXPECT_EQ(Files(Files::SystemLock).FindLockHolder(lock_), plain.FindLockHolder(lock_));
  plain.Close(handle);
}

TEST_F(LockFiles, FoldersHaveThemInside)
{
  const fs::path folder = folder_ / "a.onf";
  fs::create_directory(folder);
  Files         files(Files::LockFile);
  Files         others(Files::SystemLock);
  Files::Handle handle = Files::kNoHandle;
  Files::Handle other  = Files::kNoHandle;
  ASSERT_FALSE(files.LockFolder(folder, handle));
  EXPECT_TRUE(fs::exists(folder / "lock.holder"));
  EXPECT_EQ(others.LockFolder(folder, other), std::errc::resource_unavailable_try_again);
  EXPECT_TRUE(std::regex_match(others.FindLockHolder(folder),
                               std::regex("process [0-9]+ on .+ since 20.+Z, by lock\\.holder")));
  files.Close(handle);
  EXPECT_TRUE(fs::is_empty(folder));
  WriteHolder({{"host", "elsewhere"}});
  fs::rename(holder_, folder / "lock.holder");
  for (const Files::Sort sort : {Files::SystemLock, Files::LockFile}) {
    Files asking(sort);
    EXPECT_EQ(asking.LockFolder(folder, other), std::errc::resource_unavailable_try_again);
    EXPECT_EQ(other, Files::kNoHandle);
    EXPECT_TRUE(asking.IsHeldElsewhere(folder));
  }
  Files breaking(Files::LockFile, true);
  ASSERT_FALSE(breaking.LockFolder(folder, other));
  breaking.Close(other);
  EXPECT_TRUE(fs::is_empty(folder));
  EXPECT_EQ(files.LockFolder(folder / "none", handle), std::errc::no_such_file_or_directory);
  EXPECT_TRUE(Files::IsFolderHolderName("lock.holder"));
  EXPECT_TRUE(Files::IsFolderHolderName("lock.holder.taken-over"));
  EXPECT_FALSE(Files::IsFolderHolderName("lock.holders"));
  EXPECT_FALSE(Files::IsFolderHolderName("lock"));
}

TEST_F(LockFiles, ErrorsOfTheDiskAreToldAndNobodyHoldsItThen)
{
  for (const bool isGone : {false, true})
    for (int call = 0;; ++call) {
      fs::remove_all(lock_.parent_path());
      fs::create_directory(lock_.parent_path());
      if (isGone) WriteHolder({{"started", "1"}});
      NoLocks files(Files::LockFile);
      files.fails            = call;
      Files::Handle   handle = Files::kNoHandle;
      std::error_code error  = files.Lock(lock_, handle);
      files.Close(handle);
      if (files.calls <= call) break;
      EXPECT_EQ(error, std::errc::io_error) << call;
      // What stays counts for nothing or is broken.
      EXPECT_TRUE(!fs::exists(holder_) || Takes(Files::LockFile, true)) << call;
    }
}

TEST_F(LockFiles, ADatabaseOnAFileSystemWithoutLocksIsWrittenByOne)
{
  const fs::path            path = folder_ / "a.fed";
  NoLocks                   system(Files::SystemLock);
  FED_ResultDatabaseOptions options;
  options.files = &system;
  EXPECT_NE(MessageOf([&] { FED_ResultDatabase(path, FED_ResultDatabase::Create, options); })
                .find("lock: cannot lock: No locks available; this file system has no locks: where all writers agree "
                      "to it, a lock file keeps them off each other (--lock file, or QUILON_LOCK=file in the "
                      "environment)"),
            std::string::npos);
  EXPECT_FALSE(fs::exists(path));
  NoLocks files(Files::LockFile);
  options.files = &files;
  {
    FED_ResultDatabase database(path, FED_ResultDatabase::Create, options);
    database.GetOrCreateDataBlock(FED_DataDescriptor(0, kScalar), 0).SetScalarAt(1, 2.0);
    database.Commit();
    const std::string message = MessageOf([&] { FED_ResultDatabase(path, FED_ResultDatabase::ReadWrite, options); });
    EXPECT_NE(message.find("another writer has the database open (process "), std::string::npos) << message;
    EXPECT_NO_THROW(FED_ResultDatabase(path, FED_ResultDatabase::ReadOnly));
  }
  EXPECT_FALSE(fs::exists(path / "lock.holder"));
  EXPECT_NO_THROW(FED_ResultDatabase(path, FED_ResultDatabase::ReadWrite, options));
  EXPECT_EQ(FED_InspectDatabase(path).findings, std::vector<std::string>());
  EXPECT_EQ(FED_InspectDatabase(path).leftovers, std::vector<std::string>());
}

TEST_F(LockFiles, ADatabaseThatIsGivenUpLeavesNothing)
{
  NoLocks                   files(Files::LockFile);
  FED_ResultDatabaseOptions options;
  options.files = &files;
  {
    FED_ResultDatabase(folder_ / "a.fed", FED_ResultDatabase::Create, options);
  }
  EXPECT_FALSE(fs::exists(folder_ / "a.fed"));
}

TEST_F(LockFiles, TheEnvironmentChoosesForThoseWhoDoNot)
{
  ::setenv("QUILON_LOCK", "file", 1);
  EXPECT_EQ(Files::GetSortOfEnvironment(), Files::LockFile);
  {
    const FED_ResultDatabase database(folder_ / "a.fed", FED_ResultDatabase::Create);
    EXPECT_TRUE(fs::exists(folder_ / "a.fed" / "lock.holder"));
  }
  ::setenv("QUILON_LOCK", "system", 1);
  EXPECT_EQ(Files::GetSortOfEnvironment(), Files::SystemLock);
  ::setenv("QUILON_LOCK", "dot", 1);
  EXPECT_EQ(MessageOf([&] { FED_ResultDatabase(folder_ / "a.fed", FED_ResultDatabase::Create); }),
            "QUILON_LOCK is 'dot', expected 'file' or 'system'");
  ::unsetenv("QUILON_LOCK");
  EXPECT_EQ(Files::GetSortOfEnvironment(), Files::SystemLock);
}

}  // namespace
}  // namespace quilon_test
