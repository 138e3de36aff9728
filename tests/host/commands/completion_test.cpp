// What shells are told of a line being written, and man pages.

#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using quilon_test::ReadAll;
using quilon_test::RunQuilon;
using quilon_test::RunResult;
using Words = std::vector<std::string>;

class Completion : public testing::Test
{
protected:
  Completion()
  {
    quilon_test::WriteSmallOnf(onf_);
    quilon_test::WriteTwoBricks(bricks_);
  }

  /// @return the candidates without what they mean
  static Words Complete(Words arguments)
  {
    arguments.insert(arguments.begin(), "__complete");
    const RunResult run = RunQuilon(arguments);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "");
    Words              words;
    std::istringstream lines(run.out);
    for (std::string line; std::getline(lines, line);) words.push_back(line.substr(0, line.find('\t')));
    return words;
  }

  quilon_test::TempFolder folder_;
  const std::string       onf_    = (folder_.GetPath() / "small.onf").string();
  const std::string       bricks_ = (folder_.GetPath() / "bricks.onf").string();
};

TEST_F(Completion, CommandsAndOptionsAreThoseOfTheHelp)
{
  EXPECT_EQ(Complete({"sh"}), Words{"show"});
  EXPECT_EQ(Complete({"deck", ""}), (Words{"check", "tree", "deps", "expand", "convert"}));
  EXPECT_EQ(Complete({"help", "deck", "ch"}), Words{"check"});
  EXPECT_EQ(Complete({"help", "show", ""}), Words{});
  EXPECT_EQ(Complete({"-q", "sh"}), Words{"show"});
  EXPECT_EQ(Complete({"show", "--st"}), Words{"--steps"});
  EXPECT_EQ(Complete({"show", "--ver"}), Words{"--verbose"});
  EXPECT_EQ(Complete({"--ver"}), (Words{"--version", "--verbose"}));
  EXPECT_EQ(RunQuilon({"__complete", "sho"}).out, "show\tShow the records of blocks\n");
  const Words commands = Complete({""});
  EXPECT_EQ(std::set<std::string>(commands.begin(), commands.end()).count("help"), 1U);
  std::istringstream help(RunQuilon({"--help"}).out);
  std::size_t        listed      = 0;
  bool               areCommands = false;
  for (std::string line; std::getline(help, line);) {
    if (areCommands && line.size() > 2 && line[2] != ' ') ++listed;
    areCommands = line == "Subcommands:" || (areCommands && !line.empty());
  }
  EXPECT_EQ(commands.size(), listed + 1);
}

TEST_F(Completion, WordsOfOptionsAreThoseThatTheHelpNames)
{
  EXPECT_EQ(Complete({"matrix", "export", "--to", ""}), (Words{"mtx", "yale"}));
  EXPECT_EQ(Complete({"matrix", "export", "--to=m"}), Words{"--to=mtx"});
  EXPECT_EQ(Complete({"diff", "--match", "i"}), (Words{"id", "index"}));
  EXPECT_EQ(Complete({"max", "x", "--per", "s"}), (Words{"step", "set"}));
  EXPECT_EQ(Complete({"show", "--ids", ""}), Words{});
  EXPECT_EQ(Complete({"show", "--no-such-option", ""}), Words{":files"});
}

TEST_F(Completion, PathsStandWhereFilesAreNamed)
{
  EXPECT_EQ(Complete({"show", ""}), Words{":files"});
  EXPECT_EQ(Complete({"import", "a.frd", "b"}), Words{":files"});
  EXPECT_EQ(Complete({"import", "a.frd", "-o", ""}), Words{":files"});
  EXPECT_EQ(Complete({"import", "a.frd", "--output="}), Words{":files"});
  EXPECT_EQ(Complete({"show", "--", "--json"}), Words{":files"});
  EXPECT_EQ(Complete({"show", "no-such.fed", ""}), Words{});
}

TEST_F(Completion, SelectionsAreOfTheDatabaseAtHand)
{
  EXPECT_EQ(Complete({"show", onf_, "dis"}), (Words{"displacement"}));
  EXPECT_EQ(Complete({"show", onf_, "--json", "str"}), Words{"stress"});
  EXPECT_EQ(Complete({"show", onf_, "nodal-s"}), Words{"nodal-stress"});
  EXPECT_EQ(Complete({"show", onf_, "displacement"}), (Words{"displacement", "displacement@"}));
  EXPECT_EQ(Complete({"show", onf_, "stress,disp"}), Words{"stress,displacement"});
  EXPECT_EQ(Complete({"show", onf_, "stress.m"}), (Words{"stress.mises", "stress.max-shear"}));
  EXPECT_EQ(Complete({"show", onf_, "displacement@s"}), Words{"displacement@sub="});
  EXPECT_EQ(Complete({"show", onf_, "stress@lc=1,s"}), Words{"stress@lc=1,sub="});
  EXPECT_EQ(Complete({"show", onf_, "displacement@lc="}),
            (Words{"displacement@lc=1", "displacement@lc=2", "displacement@lc=first", "displacement@lc=last"}));
  EXPECT_EQ(Complete({"show", onf_, "stress@lc="}), (Words{"stress@lc=1", "stress@lc=first", "stress@lc=last"}));
  EXPECT_EQ(Complete({"history", onf_, "stress.sig"}), (Words{"stress.signed-mises", ":files"}));
  EXPECT_EQ(Complete({"to-onf", onf_, "out", "--select", "st"}), Words{"stress"});
}

TEST_F(Completion, StepsTimesAndNamesAreOfTheDatabaseAtHand)
{
  EXPECT_EQ(Complete({"show", onf_, "--steps", ""}), (Words{"1", "2", "3", "last"}));
  EXPECT_EQ(Complete({"show", onf_, "--steps=1:"}),
            (Words{"--steps=1:1", "--steps=1:2", "--steps=1:3", "--steps=1:last"}));
  EXPECT_EQ(Complete({"plot", onf_, "stress", "--component", "mi"}), Words{"mises"});
  const Words sets = Complete({"show", bricks_, "--set", ""});
  EXPECT_FALSE(sets.empty());
  for (const std::string& name : sets) EXPECT_EQ(Complete({"show", bricks_, "--set", name}).front(), name);
}

TEST_F(Completion, AxesMayBeAnOrientation)
{
  const std::string fed = (folder_ / "oriented.fed").string();
  ASSERT_EQ(RunQuilon({"import", QUILON_FIXTURES "/calculix/oriented/oriented.inp", "-o", fed}).exitCode, 0);
  EXPECT_EQ(Complete({"show", fed, "--axes", ""}),
            (Words{"global", "principal", "rectangular:", "cylindrical:", "SLANTED", "ROUND"}));
}

TEST_F(Completion, DatabaseThatCannotBeReadOffersNothing)
{
  std::filesystem::remove(folder_.GetPath() / "small.onf" / "index");
  EXPECT_EQ(Complete({"show", onf_, "st"}), Words{});
}

TEST_F(Completion, EveryCommandHasAManPage)
{
  const std::filesystem::path pages = folder_.GetPath() / "man";
  EXPECT_EQ(RunQuilon({"__man", pages.string()}).exitCode, 0);
  std::vector<Words> commands = {{}};
  std::size_t        count    = 0;
  while (!commands.empty()) {
    const Words command = commands.back();
    commands.pop_back();
    std::string name = "quilon";
    for (const std::string& word : command) name += '-' + word;
    SCOPED_TRACE(name);
    const std::string page = ReadAll(pages / (name + ".1"));
    ++count;
    EXPECT_EQ(page.substr(0, 4), ".TH ");
    // Every option of the help, its dashes as man(7) has them.
    Words options = command;
    options.emplace_back("--");
    for (const std::string& option : Complete(options)) {
      std::string written;
      for (const char c : option) written += c == '-' ? std::string("\\-") : std::string(1, c);
      const bool isGlobal =
          !command.empty() && (option == "--verbose" || option == "--quiet" || option == "--no-color");
      EXPECT_EQ(page.find("\\fB" + written + "\\fR") != std::string::npos, !isGlobal || option == "--no-color")
          << option;
    }
    Words below = command;
    below.emplace_back("");
    if (command.empty() || command == Words{"deck"} || command == Words{"matrix"})
      for (const std::string& word : Complete(below))
        if (word != "help") {
          below.back() = word;
          commands.push_back(below);
        }
  }
  // And one of the program that runs some of them in several processes.
  EXPECT_EQ(count + 1, static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(pages), {})));
  const std::string shared = ReadAll(pages / "quilon-mpi.1");
  EXPECT_NE(shared.find("\\fBimport\\fR\nRead solver results into a database\n"), std::string::npos) << shared;
  EXPECT_EQ(shared.find("\\fBls\\fR\n"), std::string::npos);
}

TEST_F(Completion, ManPageHasSynopsisAndExamples)
{
  RunQuilon({"__man", (folder_.GetPath() / "man").string()});
  const std::string page = ReadAll(folder_.GetPath() / "man" / "quilon-max.1");
  EXPECT_NE(page.find("quilon\\-max \\- find the worst values, where and when\n"), std::string::npos);
  EXPECT_NE(page.find(".SH SYNOPSIS\n\\fBquilon max\\fR [\\fIOPTIONS\\fR] \\fIDB\\fR \\fISELECTION\\fR\n"),
            std::string::npos);
  EXPECT_NE(page.find(".SH EXAMPLES\n.PP\n.EX\n  quilon max bracket.onf stress.mises\n"), std::string::npos);
  EXPECT_NE(page.find("\\fB\\-\\-per\\fR \\fIstep|material|set|group\\fR\n"), std::string::npos);
}

}  // namespace
