// Programs that write one database, and what stands in their way.

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <bundled/FED_FileLayer.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

namespace fs = std::filesystem;

/// A lock of this process.
class HeldLock
{
public:
  explicit HeldLock(const fs::path& path)
  {
    const std::error_code error =
        fs::is_directory(path) ? files_.LockFolder(path, handle_) : files_.Lock(path, handle_);
    EXPECT_FALSE(error) << path;
  }
  HeldLock(const HeldLock&)            = delete;
  HeldLock& operator=(const HeldLock&) = delete;
  ~HeldLock() { files_.Close(handle_); }

private:
  FED_FileLayer         files_;
  FED_FileLayer::Handle handle_ = FED_FileLayer::kNoHandle;
};

std::string Us() { return "process " + std::to_string(getpid()) + ", quilon_host_com"; }

class Writers : public testing::Test
{
protected:
  void SetUp() override
  {
    WriteSmallOnf(onf_);
    EXPECT_EQ(RunQuilon({"to-onf", onf_, out_}).exitCode, 0);
    EXPECT_EQ(RunQuilon({"from-onf", onf_, "-o", fed_}).exitCode, 0);
  }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "small.onf").string();
  std::string out_ = (folder_ / "out.onf").string();
  std::string fed_ = (folder_ / "out.fed").string();
};

TEST_F(Writers, FailAtOnceAndSayWhoIsAtWork)
{
  const HeldLock onfLock(out_);
  const HeldLock fedLock(fed_ + "/lock");
  RunResult      run = RunQuilon({"to-onf", onf_, out_});
  EXPECT_EQ(run.err, "quilon: error: " + out_ + ": another program writes to the ONF folder (" + Us() + ")\n");
  EXPECT_EQ(run.exitCode, 2);
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"from-onf", onf_, "-o", fed_}, {"derive", fed_}, {"prune", fed_, "stress"}, {"compact", fed_}})
  {
    run = RunQuilon(arguments);
    EXPECT_EQ(run.err, "quilon: error: " + fed_ + ": another writer has the database open (" + Us() + ")\n");
    EXPECT_EQ(run.exitCode, 2);
  }
}

// A lock file of another machine: what is written by us names the host, the process and since when.
TEST_F(Writers, RespectLockFilesAndBreakThemOnDemand)
{
  const std::string holder = fed_ + "/lock.holder";
  const std::string text =
      "quilon-lock 1\nhost n042\nmachine 1\nboot 1\nprocesses 1\nprocess 812\nstarted 1\nsince 2026-03-01T12:00:00Z\n";
  for (const char* sort : {"file", "system"}) {
    std::ofstream(holder) << text;
    ExpectTrouble({"prune", fed_, "stress", "--lock", sort},
                  fed_ +
                      ": another writer has the database open (process 812 on n042 since 2026-03-01T12:00:00Z, by "
                      "lock.holder; --break-lock if that is gone)");
    EXPECT_EQ(RunQuilon({"ls", fed_}).exitCode, 0);
    EXPECT_EQ(RunQuilon({"prune", fed_, "stress", "--lock", sort, "--break-lock", "--dry-run"}).exitCode, 0);
    EXPECT_TRUE(fs::exists(holder));
    EXPECT_EQ(RunQuilon({"compact", fed_, "--lock", sort, "--break-lock"}).exitCode, 0);
    EXPECT_FALSE(fs::exists(holder));
  }
  EXPECT_EQ(RunQuilon({"compact", fed_, "--lock", "dot"}).exitCode, 2);
  const RunResult run = RunQuilon({"compact", fed_}, {.environment = {"QUILON_LOCK=dot"}});
  EXPECT_EQ(run.err, "quilon: error: QUILON_LOCK is 'dot', expected 'file' or 'system'\n");
}

TEST_F(Writers, RespectLockFilesOfOnfFolders)
{
  const std::string holder = out_ + "/lock.holder";
  const std::string before = ReadTree(out_);
  for (const char* sort : {"file", "system"}) {
    std::ofstream(holder) << "quilon-lock 1\nhost n042\nmachine 1\nboot 1\nprocesses 1\nprocess 812\nstarted 1\nsince "
                             "2026-03-01T12:00:00Z\n";
    for (const char* command : {"to-onf", "from-onf"}) {
      std::vector<std::string> arguments = {command, onf_, out_, "--lock", sort};
      if (command[0] == 'f') arguments.insert(arguments.begin() + 2, "-o");
      ExpectTrouble(arguments, out_ +
                                   ": another program writes to the ONF folder (process 812 on n042 since "
                                   "2026-03-01T12:00:00Z, by lock.holder; --break-lock if that is gone)");
    }
    EXPECT_EQ(RunQuilon({"ls", out_}).exitCode, 0);
    EXPECT_EQ(RunQuilon({"to-onf", onf_, out_, "--lock", sort, "--break-lock"}).exitCode, 0);
    EXPECT_FALSE(fs::exists(holder));
  }
  EXPECT_EQ(ReadTree(out_), before);
}

// What a first writer with a lock file left is no obstacle for the next one, of either form.
TEST_F(Writers, TakeOverWhatWasKilledBeforeItsFirstCommit)
{
  const std::string gone =
      "quilon-lock 1\nhost n042\nmachine 1\nboot 1\nprocesses 1\nprocess 812\nstarted 1\nsince 2026-03-01T12:00:00Z\n";
  for (const char* name : {"new.onf", "new.fed"}) {
    const std::string made = (folder_ / name).string();
    fs::create_directory(made);
    std::ofstream(made + "/lock.holder") << gone;
    std::ofstream(made + "/lock.holder.n042.812.1").flush();
    EXPECT_EQ(RunQuilon({"from-onf", onf_, "-o", made, "--lock", "file"}).exitCode, 2);
    const RunResult run = RunQuilon({"from-onf", onf_, "-o", made, "--lock", "file", "--break-lock"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(RunQuilon({"diff", onf_, made}).exitCode, 0);
    // A folder that is made in vain goes with its lock.
    const std::string vain = (folder_ / ("vain-" + std::string(name))).string();
    EXPECT_EQ(RunQuilon({"from-onf", (folder_ / "none.onf").string(), "-o", vain, "--lock", "file"}).exitCode, 2);
    EXPECT_FALSE(fs::exists(vain));
  }
}

TEST_F(Writers, WaitAsLongAsTheyAreToldAndSayForWhom)
{
  const std::string note = "waiting for another program that writes to it: " + Us();
  for (const bool isOnf : {true, false}) {
    auto          lock = std::make_unique<HeldLock>(isOnf ? out_ : fed_ + "/lock");
    RunningQuilon quilon(isOnf ? std::vector<std::string>{"to-onf", onf_, out_, "--wait", "1000"}
                               : std::vector<std::string>{"prune", fed_, "stress", "--wait", "1000"});
    EXPECT_THAT(quilon.ReadErrorsTo(note), testing::HasSubstr(note));
    lock.reset();
    EXPECT_EQ(quilon.Wait().exitCode, 0);
  }
}

TEST_F(Writers, StopWaitingForAnInterrupt)
{
  const std::string note   = "waiting for another program";
  const std::string before = ReadTree(out_);
  for (const bool isOnf : {true, false}) {
    const HeldLock lock(isOnf ? out_ : fed_ + "/lock");
    RunningQuilon  quilon(isOnf ? std::vector<std::string>{"to-onf", onf_, out_, "--wait", "1000"}
                                : std::vector<std::string>{"compact", fed_, "--wait", "1000"});
    EXPECT_THAT(quilon.ReadErrorsTo(note), testing::HasSubstr(note));
    quilon.Interrupt();
    const RunResult run = quilon.Wait();
    EXPECT_THAT(run.err, testing::HasSubstr("quilon: error: interrupted\n"));
    EXPECT_EQ(run.exitCode, 130);
  }
  EXPECT_EQ(ReadTree(out_), before);
}

TEST_F(Writers, AWaitThatIsNoTimeIsRefused)
{
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out_, "--wait", "long"}).exitCode, 2);
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out_, "--wait", "-1"}).exitCode, 2);
}

// One makes it; others fail and say what they found, or come behind it and replace equal blocks.
TEST_F(Writers, ThatMakeOneDatabaseAtOnceLeaveAWholeOne)
{
  constexpr int kNumPrograms = 4;
  for (const bool isOnf : {true, false}) {
    const std::string        made = (folder_ / (isOnf ? "made.onf" : "made.fed")).string();
    std::vector<RunResult>   runs(kNumPrograms);
    std::vector<std::thread> programs;
    for (RunResult& run : runs)
      programs.emplace_back([&run, &made, this] { run = RunQuilon({"from-onf", onf_, "-o", made}); });
    for (std::thread& program : programs) program.join();
    int successes = 0;
    for (const RunResult& run : runs) {
      if (run.exitCode == 0) ++successes;
      EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 2);
      if (run.exitCode != 0) {
        EXPECT_THAT(run.err, testing::AnyOf(testing::HasSubstr("another program writes to the ONF folder"),
                                            testing::HasSubstr("another writer has the database open"),
                                            testing::HasSubstr("of a first import that is at work"),
                                            testing::HasSubstr("a folder with other files"),
                                            testing::HasSubstr("cannot create a database: there is one already")));
      }
    }
    EXPECT_GE(successes, 1);
    EXPECT_EQ(RunQuilon({"diff", onf_, made}).exitCode, 0);
  }
}

TEST_F(Writers, StopForAnErrorThatIsNoAbsence)
{
  const std::string circle = (folder_ / "circle.onf").string();
  fs::create_directory(circle);
  fs::create_symlink("index", fs::path(circle) / "index");
  const RunResult run = RunQuilon({"to-onf", onf_, circle});
  EXPECT_EQ(run.err, "quilon: error: " + circle + "/index: Too many levels of symbolic links\n");
  EXPECT_EQ(run.exitCode, 2);
}

TEST_F(Writers, AMirrorHoldsWhatTheDatabaseHoldsAndNothingElse)
{
  WriteNamedUserKind(out_, "Wear depth");
  WriteDiagonalTensors(out_, 7);
  EXPECT_EQ(RunQuilon({"prune", fed_, "wear"}).exitCode, 0);
  const RunResult run = RunQuilon({"to-onf", fed_, out_, "--mirror", "--verify"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, out_ + ": 7 blocks written, read back and equal\n");
  const std::string fresh = (folder_ / "fresh.onf").string();
  EXPECT_EQ(RunQuilon({"to-onf", fed_, fresh}).exitCode, 0);
  EXPECT_EQ(ReadTree(out_), ReadTree(fresh));
}

// A user kind of another name is in the way of blocks that stay beside it; a mirror leaves none.
TEST_F(Writers, AMirrorTakesNamesFromTheDatabase)
{
  const std::string other = (folder_ / "other.onf").string();
  WriteNamedUserKind(other, "Crack length");
  EXPECT_EQ(RunQuilon({"to-onf", onf_, other}).exitCode, 2);
  EXPECT_EQ(RunQuilon({"to-onf", onf_, other, "--mirror"}).err, "");
  EXPECT_EQ(ReadTree(other), ReadTree(onf_));
}

TEST_F(Writers, PipesInPlaceOfResultsAreRefused)
{
  for (const char* name : {"a.frd", "a.dat"}) {
    const std::string pipe = (folder_ / name).string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(RunQuilon({"ls", pipe}).err,
              "quilon: error: " + pipe + ": expected a file that can be read: it is a pipe or a device\n");
  }
}

// Decks may come from pipes; one that nobody writes to keeps who opens it waiting.
TEST_F(Writers, AnInterruptEndsTheWaitForADeck)
{
  const std::string pipe = (folder_ / "a.inp").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  RunningQuilon quilon({"deck", "check", pipe});
  // A writer finds a reader when the program has come to the pipe.
  int writer = -1;
  while (writer < 0) writer = open(pipe.c_str(), O_WRONLY | O_NONBLOCK);
  quilon.Interrupt();
  const RunResult run = quilon.Wait();
  close(writer);
  EXPECT_EQ(run.err, "quilon: error: interrupted\n");
  EXPECT_EQ(run.exitCode, 130);
}

}  // namespace
