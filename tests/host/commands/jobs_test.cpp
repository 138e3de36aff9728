// --jobs: the same answers, files and messages for any number of threads.

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "program_support.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

using namespace quilon_test;
using nlohmann::json;

using Arguments = std::vector<std::string>;

class JobsOption : public testing::Test
{
protected:
  /// A working database of a whole import of several steps, without what derive makes.
  void SetUp() override
  {
    const std::string fixture = std::string(QUILON_FIXTURES) + "/calculix/a_tet/a_tet";
    ASSERT_EQ(RunQuilon({"import", fixture + ".frd", fixture + ".dat", "-o", fed_, "--request", "none"}).exitCode, 0);
  }

  static Arguments WithJobs(Arguments arguments, const std::string& jobs)
  {
    arguments.insert(arguments.end(), {"--jobs", jobs});
    return arguments;
  }

  /// Runs with 1, 2, 3 and 8 threads.
  static void ExpectOneAnswer(const Arguments& arguments, int exitCode = 0)
  {
    const RunResult one = RunQuilon(WithJobs(arguments, "1"));
    EXPECT_EQ(one.exitCode, exitCode) << one.err;
    EXPECT_NE(one.out + one.err, "");
    for (const char* jobs : {"2", "3", "8"}) {
      const RunResult many = RunQuilon(WithJobs(arguments, jobs));
      EXPECT_EQ(many.out, one.out) << jobs << ": " << testing::PrintToString(arguments);
      EXPECT_EQ(many.err, one.err) << jobs << ": " << testing::PrintToString(arguments);
      EXPECT_EQ(many.exitCode, exitCode) << jobs;
    }
  }

  /// The same for a command that writes OUT, each time into a folder of its own.
  /// @param arguments with OUT for the place
  void ExpectOneDatabase(const Arguments& arguments, const std::string& name, int exitCode = 0) const
  {
    std::string one;
    for (const char* jobs : {"1", "2", "3", "8"}) {
      const fs::path place = folder_ / ("jobs" + std::string(jobs));
      fs::remove_all(place);
      fs::create_directory(place);
      Arguments own = arguments;
      for (std::string& argument : own)
        if (argument == "OUT") argument = (place / name).string();
      const RunResult run = RunQuilon(WithJobs(own, jobs));
      EXPECT_EQ(run.exitCode, exitCode) << run.err;
      const std::string written = ReadTree(place);
      if (one.empty()) {
        one = written;
        EXPECT_NE(one, "");
      }
      EXPECT_TRUE(written == one) << jobs << " threads write something else: " << testing::PrintToString(arguments);
    }
  }

  TempFolder  folder_;
  std::string fed_ = (folder_ / "job.fed").string();
};

TEST_F(JobsOption, MaxTellsTheSame)
{
  const std::string all = "stress,displacement.magnitude,element-stress.mises";
  ExpectOneAnswer({"max", fed_, all});
  ExpectOneAnswer({"max", fed_, all, "--json", "--head", "5"});
  ExpectOneAnswer({"max", fed_, all, "--csv", "--per", "step", "--min"});
  ExpectOneAnswer({"max", fed_, all, "--per", "material", "--head", "2"});
  ExpectOneAnswer({"max", fed_, all, "--per", "group"}, 2);
  WriteTwoBricks(folder_ / "bricks.onf");
  const std::string bricks = (folder_ / "bricks.fed").string();
  ASSERT_EQ(RunQuilon({"from-onf", (folder_ / "bricks.onf").string(), "-o", bricks}).exitCode, 0);
  ExpectOneAnswer({"max", bricks, "stress,element-stress", "--per", "set", "--abs"});
  ExpectOneAnswer({"max", bricks, "stress,element-stress", "--per", "material", "--head", "4"});
  ExpectOneAnswer({"max", fed_, "stress.mises", "--near", "0.3,0.2,0.1"});
  ExpectOneAnswer({"max", fed_, "stress.xx", "--axes", "cylindrical:0,0,0,0,0,1", "--memory", "64K"});
  ExpectOneAnswer({"max", fed_, "stress", "--box", "90,90,90,91,91,91"}, 2);
}

TEST_F(JobsOption, EnvelopesAreTheSame)
{
  const std::string all = "stress.mises,displacement,element-stress";
  ExpectOneAnswer({"envelope", fed_, all});
  ExpectOneAnswer({"envelope", fed_, all, "--json", "--axes", "cylindrical:0,0,0,0,0,1"});
  ExpectOneAnswer({"envelope", fed_, all, "--csv", "--near", "0.3,0.2,0.1"});
  ExpectOneAnswer({"envelope", fed_, "stress", "--box", "90,90,90,91,91,91"}, 2);
  ExpectOneDatabase({"envelope", fed_, all, "-o", "OUT"}, "new.fed");
  ExpectOneDatabase({"envelope", fed_, all, "-o", "OUT"}, "new.onf");
}

TEST_F(JobsOption, DifferencesAreTheSame)
{
  const std::string other = (folder_ / "other.fed").string();
  const std::string input = std::string(QUILON_FIXTURES) + "/calculix/a_tet/a_tet";
  ASSERT_EQ(RunQuilon({"import", input + ".frd", "-o", other, "--request", "none"}).exitCode, 0);
  ExpectOneAnswer({"diff", fed_, fed_, "--norms"});
  ExpectOneAnswer({"diff", fed_, other}, 1);
  ExpectOneAnswer({"diff", fed_, other, "--json"}, 1);
  ExpectOneAnswer({"diff", fed_, other, "--csv", "--exact", "--nan", "forbid"}, 1);
  ExpectOneAnswer({"diff", fed_, other, "--junit", "-", "--rule", "stress: library"}, 1);
  ExpectOneAnswer({"diff", fed_, other, "--brief", "--match", "index", "--steps-a", "last", "--steps-b", "first"}, 1);
  ExpectOneAnswer({"diff", fed_, other, "--set", "NFIX"}, RunQuilon({"diff", fed_, other, "--set", "NFIX"}).exitCode);
  ExpectOneAnswer({"diff", "--learn", fed_, fed_, "-o", "-"});
  ExpectOneDatabase({"diff", fed_, other, "-o", "OUT"}, "new.fed", 1);
  ExpectOneDatabase({"diff", fed_, other, "-o", "OUT"}, "new.onf", 1);
}

TEST_F(JobsOption, TextIsTheSame)
{
  ExpectOneDatabase({"to-onf", fed_, "OUT"}, "new.onf");
  ExpectOneDatabase({"to-onf", fed_, "OUT", "--select", "stress,displacement", "--mirror", "--verify"}, "new.onf");
  const std::string onf = (folder_ / "source.onf").string();
  ASSERT_EQ(RunQuilon({"to-onf", fed_, onf}).exitCode, 0);
  ExpectOneDatabase({"to-onf", onf, "OUT"}, "again.onf");
}

TEST_F(JobsOption, DerivedResultsAreTheSame)
{
  ExpectOneDatabase({"derive", fed_, "-o", "OUT"}, "new.fed");
  ExpectOneDatabase({"derive", fed_, "-o", "OUT"}, "new.onf");
  const std::string before = ReadTree(fed_);
  std::string       one;
  for (const char* jobs : {"1", "2", "3", "8"}) {
    const std::string copy = (folder_ / "copy.fed").string();
    fs::remove_all(copy);
    fs::copy(fed_, copy);
    const RunResult run = RunQuilon({"derive", copy, "--jobs", jobs, "--memory", "64K"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const std::string after = run.out + ReadTree(copy);
    if (one.empty()) one = after;
    EXPECT_TRUE(after == one) << jobs;
  }
  EXPECT_EQ(ReadTree(fed_), before);
}

TEST_F(JobsOption, OfSeveralFailuresTheFirstIsTold)
{
  DamageBlock(fed_, "displacement", {"--steps", "last"});
  const std::string onf = (folder_ / "new.onf").string();
  ExpectOneAnswer({"max", fed_, "displacement,stress"}, 2);
  ExpectOneAnswer({"envelope", fed_, "displacement,stress"}, 2);
  ExpectOneAnswer({"diff", fed_, fed_}, 2);
  ExpectOneAnswer({"to-onf", fed_, onf}, 2);
  EXPECT_FALSE(fs::exists(onf));
}

TEST_F(JobsOption, AnInterruptLeavesNothing)
{
  const std::string before = ReadTree(folder_.GetPath());
  const std::string out    = (folder_ / "new.fed").string();
  for (const char* jobs : {"1", "3"}) {
    EXPECT_EQ(RunQuilon({"max", fed_, "stress", "--jobs", jobs}, {.interrupted = true}).exitCode, 130);
    EXPECT_EQ(RunQuilon({"envelope", fed_, "stress", "-o", out, "--jobs", jobs}, {.interrupted = true}).exitCode, 130);
    EXPECT_EQ(RunQuilon({"diff", fed_, fed_, "-o", out, "--jobs", jobs}, {.interrupted = true}).exitCode, 130);
    EXPECT_EQ(RunQuilon({"derive", fed_, "--jobs", jobs}, {.interrupted = true}).exitCode, 130);
  }
  EXPECT_EQ(ReadTree(folder_.GetPath()), before);
}

TEST_F(JobsOption, HasToBeANumberOfThreads)
{
  for (const char* command : {"check", "derive"})
    for (const char* jobs : {"0", "-1", "1025", "x"}) {
      const RunResult run = RunQuilon({command, fed_, "--jobs", jobs});
      EXPECT_EQ(run.exitCode, 2) << jobs;
      EXPECT_NE(run.err.find("--jobs"), std::string::npos) << run.err;
    }
}

}  // namespace
