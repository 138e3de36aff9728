#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;
using testing::HasSubstr;
using testing::StartsWith;

class ReportCommand : public testing::Test
{
protected:
  /// Expects that a run fails with this message and writes nothing.
  void ExpectTrouble(std::vector<std::string> arguments, const std::string& message)
  {
    arguments.insert(arguments.begin(), {"-q", "report"});
    quilon_test::ExpectTrouble(arguments, message);
    EXPECT_TRUE(std::filesystem::is_empty(folder_.GetPath()));
  }

  TempFolder        folder_;
  const std::string page_ = (folder_ / "a.html").string();
  const std::string job_  = std::string(QUILON_FIXTURES) + "/calculix/hex8/hex8.frd";
};

TEST_F(ReportCommand, WritesThePageOfAResultFileTheSameEachTime)
{
  const RunResult run = RunQuilon({"report", job_, "-o", page_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, StartsWith(page_ + ": 3 steps, "));
  const std::string first = ReadAll(page_);
  EXPECT_THAT(first, StartsWith("<!doctype html>"));
  RunQuilon({"report", job_, "-o", page_});
  EXPECT_EQ(ReadAll(page_), first);
}

TEST_F(ReportCommand, KeepsWhatIsSelected)
{
  EXPECT_THAT(RunQuilon({"report", job_, "displacement", "-o", page_, "--steps", "2"}).out, HasSubstr(": 1 step, "));
  const std::string one = ReadAll(page_);
  EXPECT_THAT(one, HasSubstr(R"("fields":[{"name":"displacement",)"));
  EXPECT_THAT(RunQuilon({"report", job_, "-o", page_, "--max-steps", "2"}).out, HasSubstr(": 2 steps, "));
  const std::string two = ReadAll(page_);
  EXPECT_EQ(RunQuilon({"report", job_, "-o", page_, "--max-steps", "2", "--bits", "16"}).exitCode, 0);
  EXPECT_THAT(ReadAll(page_), HasSubstr(R"("bits":16)"));
  EXPECT_NE(ReadAll(page_), two);
}

TEST_F(ReportCommand, LeavesOutTheInsideWhereAsked)
{
  EXPECT_EQ(RunQuilon({"report", job_, "-o", page_}).exitCode, 0);
  EXPECT_THAT(ReadAll(page_), HasSubstr(R"("inside":{)"));
  const auto      size = std::filesystem::file_size(page_);
  const RunResult run  = RunQuilon({"report", job_, "-o", page_, "--no-inside"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_LT(std::filesystem::file_size(page_), size);
}

TEST_F(ReportCommand, SaysWhatIsWrongAndWritesNothing)
{
  ExpectTrouble({job_, "-o", (folder_ / "a.pdf").string()},
                (folder_ / "a.pdf").string() + ": expected a name that ends in .html");
  ExpectTrouble(
      {job_, "-o", (folder_ / "no" / "a.html").string()},
      (folder_ / "no" / "a.html").string() + ": expected a file that can be written: No such file or directory");
  ExpectTrouble({job_, "time", "-o", page_},
                job_ +
                    ": the selection has no values of nodes or elements, expected kinds such as displacement, "
                    "nodal-stress or element-energy");
  const std::string dat = job_.substr(0, job_.size() - 3) + "dat";
  EXPECT_THAT(RunQuilon({"report", dat, "-o", page_}).err, HasSubstr("no coordinates (block 516)"));
  ExpectTrouble({job_, "-o", page_, "--bits", "8"}, "--bits is 8, expected 16 or 32");
  EXPECT_EQ(RunQuilon({"report", job_, "-o", page_, "--max-steps", "-1"}).exitCode, 2);
  EXPECT_THAT(RunQuilon({"report", job_, "stress.mises", "-o", page_}).err, HasSubstr("mises"));
  EXPECT_EQ(RunQuilon({"report", job_, "-o", page_}, {.interrupted = true}).exitCode, 130);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.GetPath()));
}

TEST_F(ReportCommand, ShowsADifferenceAndStillTellsIt)
{
  TempFolder databases;
  WriteTwoBricks(databases / "a");
  WriteChangedBricks(databases / "b");
  const std::string a   = (databases / "a").string();
  const std::string b   = (databases / "b").string();
  const RunResult   run = RunQuilon({"diff", a, b, "--brief", "--html", page_});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.out, StartsWith("different: "));
  const std::string page = ReadAll(page_);
  EXPECT_THAT(page, HasSubstr(R"("titles":["a","b"])"));
  EXPECT_THAT(page, HasSubstr(R"("place":"node 12")"));
  // The same page beside a difference that is kept.
  EXPECT_EQ(RunQuilon({"diff", a, b, "--html", page_, "-o", (databases / "d.fed").string()}).exitCode, 1);
  EXPECT_EQ(ReadAll(page_), page);
  EXPECT_EQ(RunQuilon({"diff", a, a, "--html", page_}).exitCode, 0);

  std::filesystem::remove(page_);
  EXPECT_EQ(RunQuilon({"diff", a, b, "--html", (databases / "a" / "x.html").string()}).exitCode, 2);
  EXPECT_EQ(RunQuilon({"diff", a, b, "--html", (folder_ / "no" / "x.html").string()}).exitCode, 2);
  EXPECT_EQ(RunQuilon({"diff", "--learn", a, b, "--html", page_, "-o", (databases / "r").string()}).exitCode, 2);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.GetPath()));
}

// What browsers get: web/test/run.js.
TEST_F(ReportCommand, ServesUntilItIsInterrupted)
{
  const RunResult trouble = RunQuilon({"-q", "serve", job_, "--port", "70000"});
  EXPECT_EQ(trouble.exitCode, 2);
  if (trouble.err.find("without cpp-httplib") != std::string::npos) return;
  EXPECT_EQ(trouble.err, "quilon: error: --port is 70000, expected 1 to 65535, or 0 for any\n");
  RunningQuilon server({"serve", job_});
  EXPECT_THAT(server.ReadErrorsTo("Ctrl-C ends"), HasSubstr("quilon: note: Ctrl-C ends"));
  server.Interrupt();
  EXPECT_EQ(server.Wait().exitCode, 130);
}

TEST_F(ReportCommand, LeavesNothingOnAFullDisk)
{
  EXPECT_EQ(RunQuilon({"report", job_, "-o", page_}, {.fileLimit = 10000}).exitCode, 2);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.GetPath()));
}

}  // namespace
