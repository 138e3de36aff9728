#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

const std::string kModel =
    "*NODE, NSET=N\n1,0,0,0\n2,1,0,0\n3,0,1,0\n4,0,0,1\n*ELEMENT, TYPE=C3D4, ELSET=E\n1,1,2,3,4\n"
    "*MATERIAL, NAME=M\n*ELASTIC\n210000,.3\n*SOLID SECTION, ELSET=E, MATERIAL=M\n";

class DeckCommands : public testing::Test
{
protected:
  std::string Write(const std::string& name, std::string_view text) const
  {
    const std::filesystem::path path = folder_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  /// @return the text without the name of the test's folder
  std::string Local(std::string text) const
  {
    const std::string prefix = folder_.GetPath().string() + '/';
    for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix, at))
      text.erase(at, prefix.size());
    return text;
  }

  /// A deck of three files, one of them read twice.
  std::string WriteTree() const
  {
    Write("parts/mesh.inc", "** mesh\r\n*INCLUDE, INPUT=nodes.inc\r\n");
    Write("nodes.inc", "*NODE\n1,0,0,0");
    return Write("job.inp",
                 "*HEADING\na job\n*INCLUDE, INPUT=parts/mesh.inc\n*NODE\n*INCLUDE, INPUT=nodes.inc\n2,1,1,1\n");
  }

  TempFolder folder_;
};

TEST_F(DeckCommands, CommandBelowDeckIsNeeded)
{
  RunResult run = RunQuilon({"deck"});
  EXPECT_EQ(run.err, "quilon: error: the command is missing, see 'quilon deck --help'\n");
  EXPECT_EQ(run.exitCode, 2);
  run = RunQuilon({"deck", "chekc", "a.inp"});
  EXPECT_EQ(run.err, "quilon: error: unknown command 'chekc', did you mean 'check'?\n");
  run = RunQuilon({"deck", "banana"});
  EXPECT_EQ(run.err,
            "quilon: error: unknown command 'banana', expected one of the commands that 'quilon deck --help' lists\n");
  run = RunQuilon({"deck", "check"});
  EXPECT_EQ(run.err, "quilon: error: DECK is missing, see 'quilon deck check --help'\n");
  run = RunQuilon({"deck", "check", "a.inp", "--jsno"});
  EXPECT_EQ(run.err, "quilon: error: unknown option '--jsno', did you mean '--json'?\n");
}

TEST_F(DeckCommands, HelpListsCommandsAndExamples)
{
  const RunResult run = RunQuilon({"deck", "--help"});
  EXPECT_EQ(run.exitCode, 0);
  for (const char* command : {"check", "tree", "deps", "expand", "convert"}) {
    EXPECT_NE(run.out.find("\n  " + std::string(command) + ' '), std::string::npos) << command << '\n' << run.out;
    const RunResult help = RunQuilon({"deck", command, "--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.out.find("Example"), std::string::npos) << help.out;
  }
}

TEST_F(DeckCommands, CheckOfAWholeDeckSaysWhatItHolds)
{
  const RunResult run = RunQuilon({"deck", "check", Write("a.inp", kModel)});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "0 errors, 0 warnings in 11 lines of 1 file: 4 nodes, 1 element, 2 sets, 1 material, 0 steps\n");
  EXPECT_EQ(run.exitCode, 0);
}

TEST_F(DeckCommands, CheckShowsPlaceMessageAndLine)
{
  Write("more.inc", "5,x,0,0\n");
  const RunResult run = RunQuilon({"deck", "check", Write("a.inp", "*NODE\n*INCLUDE, INPUT=more.inc\n*FOO\n1\n")});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(Local(run.out),
            "a.inp:3: warning: unknown keyword *FOO, 1 data line skipped\n"
            "  *FOO\n"
            "more.inc:1: error: expected a coordinate, found 'x'\n"
            "  5,x,0,0\n"
            "1 error, 1 warning in 5 lines of 2 files: 1 node, 0 elements, 0 sets, 0 materials, 0 steps\n");
  EXPECT_EQ(run.exitCode, 1);
}

TEST_F(DeckCommands, WarningsAreNoFailure)
{
  EXPECT_EQ(RunQuilon({"deck", "check", Write("a.inp", "*FOO\n")}).exitCode, 0);
}

TEST_F(DeckCommands, WarningsFailWhereThatIsAsked)
{
  const std::string deck = Write("a.inp", "*FOO\n");
  const RunResult   run  = RunQuilon({"deck", "check", deck, "--werror"});
  EXPECT_EQ(run.out, RunQuilon({"deck", "check", deck}).out);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(RunQuilon({"deck", "check", deck, "--json", "--werror"}).exitCode, 1);
  EXPECT_EQ(RunQuilon({"deck", "check", Write("b.inp", kModel), "--werror"}).exitCode, 0);
}

TEST_F(DeckCommands, EmptyDeckIsNoGoodDeck)
{
  const RunResult run = RunQuilon({"deck", "check", Write("a.inp", "")});
  EXPECT_EQ(Local(run.out),
            "a.inp:1: error: the deck is empty: it has no keyword card\n  \n"
            "1 error, 0 warnings in 0 lines of 1 file: 0 nodes, 0 elements, 0 sets, 0 materials, 0 steps\n");
  EXPECT_EQ(run.exitCode, 1);
}

TEST_F(DeckCommands, WhatAMissingIncludeMayHoldIsNotMissedToo)
{
  const RunResult run = RunQuilon({"deck", "check", Write("a.inp", "*INCLUDE, INPUT=none\n")});
  EXPECT_EQ(Local(run.out),
            "a.inp:1: error: include file 'none' is not there, looked for none\n  *INCLUDE, INPUT=none\n"
            "1 error, 0 warnings in 1 line of 1 file: 0 nodes, 0 elements, 0 sets, 0 materials, 0 steps\n");
  EXPECT_EQ(run.exitCode, 1);
}

TEST_F(DeckCommands, LinesWithControlCharactersDoNotDriveATerminal)
{
  const RunResult run = RunQuilon({"deck", "check", Write("a.inp", "*NODE\n1,\x1b[31mred\n")});
  EXPECT_EQ(Local(run.out),
            "a.inp:2: error: expected a coordinate, found '?[31mred'\n  1,\\x1b[31mred\n"
            "1 error, 0 warnings in 2 lines of 1 file: 1 node, 0 elements, 0 sets, 0 materials, 0 steps\n");
}

TEST_F(DeckCommands, CheckPrintsJson)
{
  const RunResult run = RunQuilon({"deck", "check", Write("a.inp", "*NODE\n1,y\n"), "--json"});
  EXPECT_EQ(Local(run.out),
            "{\n"
            "  \"files\": 1,\n"
            "  \"lines\": 2,\n"
            "  \"nodes\": 1,\n"
            "  \"elements\": 0,\n"
            "  \"node-sets\": 0,\n"
            "  \"element-sets\": 0,\n"
            "  \"materials\": 0,\n"
            "  \"steps\": 0,\n"
            "  \"errors\": 1,\n"
            "  \"warnings\": 0,\n"
            "  \"messages\": [\n"
            "    {\n"
            "      \"severity\": \"error\",\n"
            "      \"file\": \"a.inp\",\n"
            "      \"line\": 2,\n"
            "      \"message\": \"expected a coordinate, found 'y'\",\n"
            "      \"text\": \"1,y\"\n"
            "    }\n"
            "  ]\n"
            "}\n");
  EXPECT_EQ(run.exitCode, 1);
}

TEST_F(DeckCommands, DeckThatCannotBeReadIsTrouble)
{
  for (const char* command : {"check", "tree", "deps", "expand"}) {
    const RunResult run = RunQuilon({"deck", command, (folder_ / "none.inp").string()});
    EXPECT_EQ(Local(run.err), "quilon: error: none.inp: expected a deck that can be read: No such file or directory\n")
        << command;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.exitCode, 2);
  }
}

TEST_F(DeckCommands, IncludeThatCannotBeFollowedIsTroubleOutsideOfCheck)
{
  const std::string deck = Write("a.inp", "*NODE\n*INCLUDE, INPUT=none\n");
  for (const char* command : {"tree", "deps", "expand"}) {
    const RunResult run = RunQuilon({"deck", command, deck, "-q"});
    EXPECT_EQ(Local(run.err), "quilon: error: a.inp:2: include file 'none' is not there, looked for none\n") << command;
    EXPECT_EQ(run.exitCode, 2);
  }
  EXPECT_EQ(RunQuilon({"deck", "check", deck}).exitCode, 1);
}

TEST_F(DeckCommands, TreeHangsFilesBelowThoseThatIncludeThem)
{
  const RunResult run = RunQuilon({"deck", "tree", WriteTree()});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(Local(run.out),
            "job.inp  (6 lines, 86 B)\n"
            "|-- parts/mesh.inc  (line 3, 2 lines, 36 B)\n"
            "|   `-- nodes.inc  (line 2, 2 lines, 13 B)\n"
            "`-- nodes.inc  (line 5, 2 lines, 13 B)\n"
            "4 files, 12 lines, 148 B\n");
}

TEST_F(DeckCommands, TreePrintsJson)
{
  Write("b.inc", "1\n");
  const RunResult run = RunQuilon({"deck", "tree", Write("a.inp", "*NODE\n*INCLUDE, INPUT=b.inc\n"), "--json"});
  EXPECT_EQ(Local(run.out),
            "{\n"
            "  \"path\": \"a.inp\",\n"
            "  \"lines\": 2,\n"
            "  \"bytes\": 28,\n"
            "  \"includes\": [\n"
            "    {\n"
            "      \"path\": \"b.inc\",\n"
            "      \"lines\": 1,\n"
            "      \"bytes\": 2,\n"
            "      \"statement\": \"b.inc\",\n"
            "      \"line\": 2,\n"
            "      \"includes\": []\n"
            "    }\n"
            "  ]\n"
            "}\n");
}

TEST_F(DeckCommands, DepsNameEachFileOnce)
{
  const std::string deck = WriteTree();
  EXPECT_EQ(Local(RunQuilon({"deck", "deps", deck}).out),
            "job.frd: \\\n  job.inp \\\n  parts/mesh.inc \\\n  nodes.inc\n");
  EXPECT_EQ(Local(RunQuilon({"deck", "deps", deck, "--target", "out/job.dat"}).out),
            "out/job.dat: \\\n  job.inp \\\n  parts/mesh.inc \\\n  nodes.inc\n");
  EXPECT_EQ(
      Local(RunQuilon({"deck", "deps", deck, "--json"}).out),
      "{\n  \"target\": \"job.frd\",\n  \"files\": [\n    \"job.inp\",\n    \"parts/mesh.inc\",\n    \"nodes.inc\"\n  "
      "]\n}\n");
}

TEST_F(DeckCommands, DepsEscapeWhatMakeWouldRead)
{
  Write("a$b#c.inc", "\n");
  Write("ba\\ ck.inc", "\n");
  Write("x:y.inc", "\n");
  const std::string deck =
      Write("my job.inp", "*INCLUDE, INPUT=a$b#c.inc\n*INCLUDE, INPUT=ba\\ ck.inc\n*INCLUDE, INPUT=x:y.inc\n");
  EXPECT_EQ(Local(RunQuilon({"deck", "deps", deck, "-q"}).out),
            "my\\ job.frd: \\\n  my\\ job.inp \\\n  a$$b\\#c.inc \\\n  ba\\\\\\ ck.inc \\\n  x\\:y.inc\n");
  Write("line\nend.inp", "\n");
  const RunResult run = RunQuilon({"deck", "deps", (folder_ / "line\nend.inp").string(), "--target", "x"});
  EXPECT_EQ(Local(run.err), "quilon: error: line\\nend.inp: expected a path without line ends\n");
}

TEST_F(DeckCommands, DepsAreWrittenToAFile)
{
  const std::string deck = Write("a.inp", "\n");
  const RunResult   run  = RunQuilon({"deck", "deps", deck, "-o", (folder_ / "a.d").string()});
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(Local(ReadAll(folder_ / "a.d")), "a.frd: \\\n  a.inp\n");
}

TEST_F(DeckCommands, NothingIsWrittenIntoAWorkingDatabase)
{
  const std::string deck = Write("a.inp", "\n");
  std::filesystem::create_directory(folder_ / "job.fed");
  const std::string place    = (folder_ / "job.fed" / "manifest").string();
  const std::string expected = "quilon: error: job.fed/manifest: inside a working database, expected a place outside\n";
  for (const std::vector<std::string>& command : {std::vector<std::string>{"deck", "deps", deck, "-o", place},
                                                  {"deck", "expand", deck, "-o", place},
                                                  {"deck", "expand", deck, "--map", place}})
  {
    const RunResult run = RunQuilon(command);
    EXPECT_EQ(Local(run.err), expected);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(std::filesystem::is_empty(folder_ / "job.fed"));
  }
}

TEST_F(DeckCommands, DepsNeverWriteOverAFileOfTheDeck)
{
  const std::string deck   = WriteTree();
  const std::string before = ReadTree(folder_.GetPath());
  RunResult         run    = RunQuilon({"deck", "deps", deck, "-o", deck});
  EXPECT_EQ(Local(run.err), "quilon: error: job.inp: expected a file that the deck does not read\n");
  EXPECT_EQ(run.exitCode, 2);
  run = RunQuilon({"deck", "deps", deck, "-o", (folder_ / "parts" / ".." / "nodes.inc").string()});
  EXPECT_EQ(Local(run.err), "quilon: error: parts/../nodes.inc: expected a file that the deck does not read\n");
  EXPECT_EQ(ReadTree(folder_.GetPath()), before);
}

TEST_F(DeckCommands, ExpandPutsFilesInPlaceOfTheirStatements)
{
  const RunResult run = RunQuilon({"deck", "expand", WriteTree()});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "*HEADING\na job\n** mesh\n*NODE\n1,0,0,0\n*NODE\n*NODE\n1,0,0,0\n2,1,1,1\n");
}

TEST_F(DeckCommands, MapTellsWhereLinesCameFrom)
{
  const std::string out = (folder_ / "whole.inp").string();
  const std::string map = (folder_ / "whole.map").string();
  const RunResult   run = RunQuilon({"deck", "expand", WriteTree(), "-o", out, "--map", map});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(ReadAll(out), "*HEADING\na job\n** mesh\n*NODE\n1,0,0,0\n*NODE\n*NODE\n1,0,0,0\n2,1,1,1\n");
  EXPECT_EQ(Local(ReadAll(map)),
            "first\tlast\tline\tfile\n"
            "1\t2\t1\tjob.inp\n"
            "3\t3\t1\tparts/mesh.inc\n"
            "4\t5\t1\tnodes.inc\n"
            "6\t6\t4\tjob.inp\n"
            "7\t8\t1\tnodes.inc\n"
            "9\t9\t6\tjob.inp\n");
}

TEST_F(DeckCommands, StandardOutputStandsForOneFile)
{
  const std::string deck = WriteTree();
  const std::string out  = (folder_ / "whole.inp").string();
  const std::string map  = (folder_ / "whole.map").string();
  ASSERT_EQ(RunQuilon({"deck", "expand", deck, "-o", out, "--map", map}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"deck", "expand", deck, "-o", "-"}).out, ReadAll(out));
  EXPECT_EQ(RunQuilon({"deck", "expand", deck, "-o", out, "--map", "-"}).out, ReadAll(map));
  EXPECT_EQ(RunQuilon({"deck", "expand", deck, "--map", "-"}).err,
            "quilon: error: -: expected another file for the map than for the deck\n");
  EXPECT_EQ(RunQuilon({"deck", "deps", deck, "-o", "-"}).out, RunQuilon({"deck", "deps", deck}).out);
  EXPECT_EQ(RunQuilon({"deck", "convert", deck, "--suffix", "m", "-o", "-"}).err,
            "quilon: error: -o is '-', expected a file: a deck is written with its includes beside it\n");
  EXPECT_FALSE(std::filesystem::exists("-"));
}

TEST_F(DeckCommands, ExpandWritesNothingWhenItFails)
{
  const std::string deck   = Write("a.inp", "*NODE\n*INCLUDE, INPUT=none\n");
  const std::string before = ReadTree(folder_.GetPath());
  const RunResult   run =
      RunQuilon({"deck", "expand", deck, "-o", (folder_ / "b.inp").string(), "--map", (folder_ / "b.map").string()});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(ReadTree(folder_.GetPath()), before);
}

TEST_F(DeckCommands, ExpandNeverWritesOverItsSources)
{
  const std::string deck   = WriteTree();
  const std::string before = ReadTree(folder_.GetPath());
  RunResult         run    = RunQuilon({"deck", "expand", deck, "-o", deck});
  EXPECT_EQ(Local(run.err), "quilon: error: job.inp: expected a file that the deck does not read\n");
  run = RunQuilon({"deck", "expand", deck, "-o", (folder_ / "new.inp").string(), "--map",
                   (folder_ / "parts" / ".." / "nodes.inc").string()});
  EXPECT_EQ(Local(run.err), "quilon: error: parts/../nodes.inc: expected a file that the deck does not read\n");
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(ReadTree(folder_.GetPath()), before);
}

TEST_F(DeckCommands, MapAndDeckAreTwoFiles)
{
  const std::string deck   = WriteTree();
  const std::string before = ReadTree(folder_.GetPath());
  const RunResult   run    = RunQuilon({"deck", "expand", deck, "-o", (folder_ / "new.inp").string(), "--map",
                                        (folder_ / "parts" / ".." / "new.inp").string()});
  EXPECT_EQ(Local(run.err), "quilon: error: parts/../new.inp: expected another file for the map than for the deck\n");
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(ReadTree(folder_.GetPath()), before);
}

TEST_F(DeckCommands, ExpandWritesThroughLinksAndIntoPipes)
{
  const std::string deck = Write("a.inp", "*NODE\n");
  Write("real.inp", "** old\n");
  std::filesystem::create_symlink("real.inp", folder_ / "link.inp");
  EXPECT_EQ(RunQuilon({"deck", "expand", deck, "-o", (folder_ / "link.inp").string()}).exitCode, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "link.inp"));
  EXPECT_EQ(ReadAll(folder_ / "real.inp"), "*NODE\n");

  std::filesystem::create_symlink("/dev/full", folder_ / "full.inp");
  const RunResult run = RunQuilon({"deck", "expand", deck, "-o", (folder_ / "full.inp").string()});
  EXPECT_EQ(Local(run.err), "quilon: error: full.inp: expected a file that can be written: No space left on device\n");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "full.inp")) << "a device is not replaced by a file";
}

TEST_F(DeckCommands, ExpandNamesAFileThatCannotBeWritten)
{
  const std::string deck = Write("a.inp", "*NODE\n");
  RunResult         run  = RunQuilon({"deck", "expand", deck, "-o", (folder_ / "no" / "b.inp").string()});
  EXPECT_EQ(Local(run.err),
            "quilon: error: no/b.inp: expected a file that can be written: No such file or directory\n");
  std::filesystem::create_directory(folder_ / "folder");
  run = RunQuilon({"deck", "expand", deck, "-o", (folder_ / "folder").string()});
  EXPECT_EQ(Local(run.err), "quilon: error: folder: expected a file to write, found a folder\n");
  run = RunQuilon({"deck", "expand", deck}, {.output = "/dev/full"});
  EXPECT_EQ(run.exitCode, 2);
}

TEST_F(DeckCommands, ExpandedDeckReadsLikeTheTree)
{
  const std::filesystem::path deck = std::filesystem::path(QUILON_FIXTURES) / "calculix/a_tet/a_tet.inp";
  const std::string           out  = (folder_ / "whole.inp").string();
  EXPECT_EQ(RunQuilon({"deck", "expand", deck.string(), "-o", out}).exitCode, 0);
  const std::string tree  = RunQuilon({"deck", "check", deck.string()}).out;
  const std::string whole = RunQuilon({"deck", "check", out}).out;
  EXPECT_EQ(tree.substr(tree.find(": ")), whole.substr(whole.find(": ")));
  EXPECT_EQ(whole.substr(0, 20), "0 errors, 0 warnings");
}

TEST_F(DeckCommands, IncludeRuleAndFolderOfTheRunDecideWhichFileIsRead)
{
  Write("sub/b.inc", "*INCLUDE, INPUT=c.inc\n");
  Write("sub/c.inc", "** nested\n");
  Write("run/sub/b.inc", "** run\n");
  const std::string deck = Write("a.inp", "*INCLUDE, INPUT=sub/b.inc\n");
  EXPECT_EQ(RunQuilon({"deck", "expand", deck}).out, "** nested\n");
  Write("c.inc", "** of the deck\n");
  EXPECT_EQ(RunQuilon({"deck", "expand", deck}).out, "** of the deck\n");
  EXPECT_EQ(RunQuilon({"deck", "expand", deck, "--include-rule", "solver"}).out, "** of the deck\n");
  EXPECT_EQ(RunQuilon({"deck", "expand", deck, "--include-rule", "including-file"}).out, "** nested\n");
  EXPECT_EQ(RunQuilon({"deck", "expand", deck, "--run-in", (folder_ / "run").string()}).out, "** run\n");
  const RunResult run = RunQuilon({"deck", "expand", deck, "--include-rule", "mine"});
  EXPECT_EQ(run.err, "quilon: error: --include-rule is 'mine', expected solver or including-file\n");
  EXPECT_EQ(run.exitCode, 2);
}

TEST_F(DeckCommands, FolderOfTheRunIsThere)
{
  const std::string deck = Write("a.inp", "*NODE\n1\n");
  for (const char* folder : {"none", "a.inp"}) {
    const RunResult run = RunQuilon({"deck", "check", deck, "--run-in", (folder_ / folder).string()});
    EXPECT_EQ(Local(run.err), "quilon: error: --run-in is '" + std::string(folder) + "', expected a folder\n");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.exitCode, 2);
  }
}

TEST_F(DeckCommands, IncludesOutsideOfTheFolderNeedAllowOutside)
{
  Write("out.inc", "** out\n");
  const std::string deck = Write("job/a.inp", "*INCLUDE, INPUT=../out.inc\n");
  const RunResult   run  = RunQuilon({"deck", "tree", deck});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("is outside of the deck's folder"), std::string::npos) << run.err;
  EXPECT_EQ(RunQuilon({"deck", "expand", deck, "--allow-outside"}).out, "** out\n");
}

}  // namespace
