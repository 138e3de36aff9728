#include <algorithm>
#include <csignal>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "program_support.h"
#include "progress/Interrupt.h"
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
  for (const char* command : {"import", "ls", "show", "derive", "to-onf", "from-onf", "deck"})
    EXPECT_NE(run.out.find("\n  " + std::string(command) + ' '), std::string::npos) << command << '\n' << run.out;
}

TEST_F(Program, WithoutCommandIsAnError)
{
  const RunResult run = RunQuilon({});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: the command is missing, see 'quilon --help'\n");
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

TEST_F(Program, UnknownOptionIsNamedBeforeWhatIsMissing)
{
  EXPECT_EQ(RunQuilon({"--versoin"}).err, "quilon: error: unknown option '--versoin', did you mean '--version'?\n");
  EXPECT_EQ(RunQuilon({"-x"}).err, "quilon: error: unknown option '-x', see 'quilon --help'\n");
  EXPECT_EQ(RunQuilon({"ls", "--jsno"}).err, "quilon: error: unknown option '--jsno', did you mean '--json'?\n");
}

TEST_F(Program, OptionNeedsOneValueOfItsSort)
{
  EXPECT_EQ(RunQuilon({"to-onf", onf_, "out.onf", "--steps"}).err,
            "quilon: error: --steps has no value, see 'quilon to-onf --help'\n");
  EXPECT_EQ(RunQuilon({"to-onf", onf_, "out.onf", "--steps", "1", "--steps", "2"}).err,
            "quilon: error: --steps is given more than once, see 'quilon to-onf --help'\n");
  EXPECT_EQ(RunQuilon({"from-onf", onf_, "-o", "out.onf", "--iteration", "2147483648"}).err,
            "quilon: error: --iteration: '2147483648', expected an integer of 32 bits, see 'quilon from-onf --help'\n");
}

// The locale of the tests knows no letters beyond ASCII.
TEST_F(Program, PathsMayHaveBlanksAndLettersBeyondAscii)
{
  const std::string odd = (folder_ / "b\xC3\xBCro \xE6\x97\xA5.onf").string();
  EXPECT_EQ(RunQuilon({"to-onf", onf_, odd}, {.environment = {"LC_ALL=C"}}).err, "");
  EXPECT_EQ(ReadTree(odd), ReadTree(onf_));
  const RunResult shown = RunQuilon({"show", odd, "eigenvalue"}, {.environment = {"LC_ALL=C"}});
  EXPECT_EQ(shown.out, "index\teigenvalue\n1\t4\n2\t9\n");
  EXPECT_EQ(
      RunQuilon({"from-onf", odd, "-o", (folder_ / "b\xC3\xBCro 2.onf").string()}, {.environment = {"LC_ALL=C"}}).err,
      "");
}

TEST_F(Program, PathThatIsNoUtf8IsAnError)
{
  const std::string odd = (folder_ / "b\xFCro.onf").string();
  const RunResult   run = RunQuilon({"to-onf", onf_, odd});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + odd + ": the name is no UTF-8\n");
  EXPECT_FALSE(std::filesystem::exists(odd));
}

TEST_F(Program, OutputFolderMayEndInASlash)
{
  const std::string out = (folder_ / "out.onf").string();
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out + '/'}).err, "");
  EXPECT_EQ(ReadTree(out), ReadTree(onf_));
  EXPECT_EQ(RunQuilon({"to-onf", onf_, out + '/'}).err, "");
}

TEST_F(Program, PathThatTheSystemRefusesIsNamed)
{
  const std::string loop = (folder_ / "loop.onf").string();
  std::filesystem::create_symlink(loop, loop);
  EXPECT_EQ(RunQuilon({"ls", loop}).err, "quilon: error: " + loop + ": Too many levels of symbolic links\n");
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

TEST_F(Program, ALimitOnTheSizeOfFilesIsAnErrorToo)
{
  const std::string out = (folder_ / "out.onf").string();
  const RunResult   run = RunQuilon({"to-onf", onf_, out}, {.fileLimit = 250});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err.rfind("quilon: error: " + out + '/', 0), 0U) << run.err;
  EXPECT_TRUE(run.err.ends_with(": File too large\n")) << run.err;
  EXPECT_FALSE(std::filesystem::exists(out));
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
  EXPECT_EQ(RunQuilon({"size", onf_}, {.interrupted = true}).exitCode, 130);
}

TEST(InterruptDeathTest, FirstSignalLeavesAMarkAndTheSecondEndsTheProgram)
{
  EXPECT_EXIT(
      {
        std::signal(SIGINT, SIG_DFL);  // whoever runs the tests may ignore it
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
        std::signal(SIGINT, SIG_DFL);  // whoever runs the tests may ignore it
        quilon::WatchSignals();
        std::raise(SIGINT);
        std::raise(SIGINT);
        _exit(1);
      },
      testing::KilledBySignal(SIGINT), "");
}

TEST(InterruptDeathTest, TerminationAndHangUpAreInterruptsToo)
{
  for (const int number : {SIGTERM, SIGHUP}) {
    EXPECT_EXIT(
        {
          std::signal(number, SIG_DFL);  // whoever runs the tests may ignore it
          quilon::WatchSignals();
          std::raise(number);
          try {
            quilon::ThrowIfInterrupted();
          } catch (const quilon::Interrupted&) {
            _exit(7);
          }
          _exit(1);
        },
        testing::ExitedWithCode(7), "");
  }
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

TEST_F(Program, NoColourIsPrintedWhereNoneIsWanted)
{
  const RunOptions colourful = {.environment = {"TERM=xterm", "NO_COLOR="}};
  EXPECT_NE(RunQuilonOnTerminal({"ls", onf_, "510"}, colourful).out.find("\x1b[1m"), std::string::npos);
  EXPECT_EQ(RunQuilonOnTerminal({"ls", onf_, "510", "--no-color"}, colourful).out.find('\x1b'), std::string::npos);
}

TEST_F(Program, HelpOfACommandIsAskedForInTwoWays)
{
  EXPECT_EQ(RunQuilon({"help"}).out, RunQuilon({"--help"}).out);
  EXPECT_EQ(RunQuilon({"help", "ls"}).out, RunQuilon({"ls", "--help"}).out);
  EXPECT_EQ(RunQuilon({"help", "deck", "check"}).out, RunQuilon({"deck", "check", "--help"}).out);
  EXPECT_EQ(RunQuilon({"help", "sl"}).err, "quilon: error: unknown command 'sl', did you mean 'ls'?\n");
  EXPECT_EQ(RunQuilon({"help", "sl"}).exitCode, 2);
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
            "quilon: Principal values: 520@it=0,an=1,lc=1,sub=2\n"
            "quilon: Calculating additional results.\n");
  EXPECT_EQ(Errors({"-vv", "-q"}), "");
}

TEST_F(Program, LittleMemoryChangesNoAnswer)
{
  const std::string bar     = QUILON_FIXTURES "/calculix/mixed_linear/mixed_linear.frd";
  const RunOptions  options = {.environment = {"TMPDIR=" + folder_.GetPath().string()}};
  const RunResult   usual   = RunQuilon({"show", bar, "stress@sub=last", "--csv"}, options);
  const RunResult   little  = RunQuilon({"show", bar, "stress@sub=last", "--csv", "--memory", "1K"}, options);
  EXPECT_EQ(usual.exitCode, 0) << usual.err;
  EXPECT_EQ(little.exitCode, 0);
  EXPECT_EQ(little.err, usual.err);
  EXPECT_EQ(little.out, usual.out);
  const auto isLeft = [](const auto& entry) { return entry.path().filename().string().starts_with("quilon-"); };
  EXPECT_EQ(std::count_if(std::filesystem::directory_iterator(folder_.GetPath()), {}, isLeft), 0);
}

TEST_F(Program, ResultFileBeyondTheMemoryGoesToTheTemporaryFolder)
{
  const std::string bar     = QUILON_FIXTURES "/calculix/mixed_linear/mixed_linear.frd";
  const RunOptions  options = {.environment = {"TMPDIR=" + (folder_ / "gone").string()}};
  const RunResult   run     = RunQuilon({"ls", bar, "--memory", "0"}, options);
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err.find("quilon: error: the temporary folder: "), 0U) << run.err;
  EXPECT_EQ(RunQuilon({"ls", bar, "--memory", "1M"}, options).exitCode, 0);
}

TEST_F(Program, SizeOfTheMemoryIsChecked)
{
  for (const std::string text : {"", "64Q", "-1"}) {
    const RunResult run = RunQuilon({"ls", onf_, "--memory=" + text});
    EXPECT_EQ(run.exitCode, 2);
    if (!text.empty()) {
      EXPECT_EQ(run.err, "quilon: error: size is '" + text + "', expected a number of bytes such as 64M or 1G\n");
    }
  }
}

/// Checks the help of a command and of those below it.
void CheckHelpFits(std::vector<std::string> command)
{
  std::vector<std::string> arguments = command;
  arguments.emplace_back("--help");
  std::istringstream help(RunQuilon(arguments).out);
  bool               areCommands = false;
  for (std::string line; std::getline(help, line);) {
    EXPECT_LE(line.size(), 80U) << line;
    EXPECT_EQ(line.find(" in {"), std::string::npos) << "values of a type of ours: " << line;
    areCommands = line == "Subcommands:" || (areCommands && !line.empty());
    if (!areCommands || line.size() < 3 || line[2] == ' ') continue;
    std::vector<std::string> below = command;
    below.push_back(line.substr(2, line.find(' ', 2) - 2));
    if (line[0] == ' ') CheckHelpFits(std::move(below));
  }
}

TEST_F(Program, HelpFitsATerminal) { CheckHelpFits({}); }

}  // namespace
