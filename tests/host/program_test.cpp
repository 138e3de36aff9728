#include <csignal>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "Interrupt.h"
#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class Program : public testing::Test
{
protected:
  void SetUp() override { WriteSmallOnf(onf_); }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "small.onf").string();
};

TEST_F(Program, TellsItsVersion)
{
  const RunResult run = RunQuilon({"--version"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, "quilon " QUILON_VERSION "\n");
  EXPECT_EQ(run.err, "");
}

TEST_F(Program, HelpListsEveryCommand)
{
  const RunResult run = RunQuilon({"--help"});
  EXPECT_EQ(run.exitCode, 0);
  for (const char* command : {"import", "ls", "show", "derive", "to-onf", "from-onf"})
    EXPECT_NE(run.out.find("\n  " + std::string(command) + ' '), std::string::npos) << command << '\n' << run.out;
}

TEST_F(Program, WithoutCommandIsAnError)
{
  const RunResult run = RunQuilon({});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: A subcommand is required\n");
}

TEST_F(Program, UnknownCommandGetsASuggestion)
{
  EXPECT_EQ(RunQuilon({"sl", onf_}).err, "quilon: error: unknown command 'sl', did you mean 'ls'?\n");
  EXPECT_EQ(RunQuilon({"banana"}).err,
            "quilon: error: unknown command 'banana', expected one of the commands that 'quilon --help' lists\n");
  EXPECT_EQ(RunQuilon({"banana"}).exitCode, 2);
}

TEST_F(Program, UnknownOptionGetsASuggestion)
{
  EXPECT_EQ(RunQuilon({"ls", onf_, "--jsno"}).err, "quilon: error: unknown option '--jsno', did you mean '--json'?\n");
  EXPECT_EQ(RunQuilon({"ls", onf_, "--vrebose"}).err,
            "quilon: error: unknown option '--vrebose', did you mean '--verbose'?\n");
  EXPECT_EQ(RunQuilon({"ls", onf_, "--banana"}).err,
            "quilon: error: unknown option '--banana', see 'quilon ls --help'\n");
  EXPECT_EQ(RunQuilon({"ls", onf_, "--banana"}).exitCode, 2);
}

TEST_F(Program, ArgumentTooManyIsAnError)
{
  EXPECT_EQ(RunQuilon({"ls", onf_, "stress", "wear"}).err,
            "quilon: error: unexpected argument 'wear', see 'quilon ls --help'\n");
}

TEST_F(Program, FullDiskIsAnError)
{
  const RunResult run = RunQuilon({"ls", onf_}, {.output = "/dev/full"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: standard output: No space left on device\n");
  EXPECT_EQ(RunQuilon({"--version"}, {.output = "/dev/full"}).exitCode, 2);
}

TEST_F(Program, ReaderThatHasGoneIsNoError)
{
  const RunResult run = RunQuilon({"ls", onf_}, {.closedPipe = true});
  EXPECT_EQ(run.exitCode, 141);
  EXPECT_EQ(run.err, "");
}

TEST_F(Program, InterruptEndsQuietlyAndWritesNothing)
{
  const std::string out = (folder_ / "out.onf").string();
  const RunResult   run = RunQuilon({"to-onf", onf_, out}, {.interrupted = true});
  EXPECT_EQ(run.exitCode, 130);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: interrupted\n");
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(Program, InterruptStopsEveryWalk)
{
  EXPECT_EQ(RunQuilon({"ls", onf_}, {.interrupted = true}).exitCode, 130);
  EXPECT_EQ(RunQuilon({"show", onf_, "stress"}, {.interrupted = true}).exitCode, 130);
  EXPECT_EQ(RunQuilon({"derive", onf_}, {.interrupted = true}).exitCode, 130);
}

TEST(InterruptDeathTest, FirstSignalLeavesAMarkAndTheSecondEndsTheProgram)
{
  EXPECT_EXIT(
      {
        quilon::WatchSignals();
        quilon::ThrowIfInterrupted();
        std::raise(SIGINT);
        try {
          quilon::ThrowIfInterrupted();
        } catch (const quilon::Interrupted&) {
          _exit(7);
        }
        _exit(1);
      },
      testing::ExitedWithCode(7), "");
  EXPECT_EXIT(
      {
        quilon::WatchSignals();
        std::raise(SIGINT);
        std::raise(SIGINT);
        _exit(1);
      },
      testing::KilledBySignal(SIGINT), "");
}

TEST(InterruptDeathTest, IgnoredSignalStaysIgnored)
{
  EXPECT_EXIT(
      {
        std::signal(SIGINT, SIG_IGN);
        quilon::WatchSignals();
        std::raise(SIGINT);
        quilon::ThrowIfInterrupted();
        _exit(7);
      },
      testing::ExitedWithCode(7), "");
}

TEST_F(Program, ErrorIsRedOnATerminalThatHasColours)
{
  const std::string rest = " unknown command 'sl', did you mean 'ls'?\n";
  EXPECT_EQ(RunQuilonOnTerminal({"sl"}, {.environment = {"TERM=xterm", "NO_COLOR="}}).out,
            "quilon: \x1b[1;31merror:\x1b[0m" + rest);
  EXPECT_EQ(RunQuilonOnTerminal({"sl"}, {.environment = {"TERM=xterm", "NO_COLOR=1"}}).out, "quilon: error:" + rest);
}

TEST_F(Program, VerbosityRisesAndFalls)
{
  const std::string out    = (folder_ / "out.onf").string();
  const auto        Errors = [&](const std::vector<std::string>& flags) {
    std::filesystem::remove_all(out);
    std::vector<std::string> arguments = {"derive", onf_, "-o", out, "--request", "stress-principal"};
    arguments.insert(arguments.end(), flags.begin(), flags.end());
    return RunQuilon(arguments).err;
  };
  EXPECT_EQ(Errors({}), "");
  EXPECT_EQ(Errors({"-v"}), "");
  EXPECT_EQ(Errors({"-vv"}), "quilon: Calculating additional results.\n");
  EXPECT_EQ(Errors({"--verbose", "--verbose"}), Errors({"-vv"}));
  EXPECT_EQ(Errors({"-vvv"}),
            "quilon: Calculating additional results.\n"
            "quilon: Processing:\n"
            "quilon:     Iteration:   0\n"
            "quilon:     Analysis:    1\n"
            "quilon:     Load case:   1\n"
            "quilon:     Substep:     2\n");
  EXPECT_EQ(Errors({"-vv", "-q"}), "");
}

}  // namespace
