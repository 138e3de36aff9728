#include "calculix/deck/DeckReader.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "../ReaderSupport.h"
#include "calculix/deck/ReadDeckModel.h"
#include "DeckSupport.h"

namespace {

using namespace quilon::calculix;
using quilon_test::DeckFolder;
using quilon_test::FailureOf;

using Log = std::vector<std::string>;

/// Logs what the hooks are told: "NAME:LINE text" for lines, "NAME {" and "NAME }" around files.
class LoggingReader : public DeckReader
{
public:
  using DeckReader::DeckReader;

  void ReadModel() override { Walk(); }
  void CheckModel() override {}
  void ConvertModel() override {}

  Log  log;
  bool goesOn = false;  // behind include statements that cannot be followed

protected:
  void OnFileBegin(std::uint32_t file) override { log.push_back(Name(file) + " {"); }
  void OnLine(const DeckLine& line) override
  {
    log.push_back(Name(line.place.file) + ":" + std::to_string(line.place.line) + " " + std::string(line.text));
  }
  void OnInclude(const DeckLine& line, std::uint32_t file) override
  {
    log.push_back("include " + Name(file) + " as " + GetFiles()[file].statement + " at " +
                  std::to_string(line.place.line));
  }
  void OnBadInclude(const DeckLine& line, const std::string& text) override
  {
    if (!goesOn) DeckReader::OnBadInclude(line, text);
    log.push_back("bad: " + text);
  }
  void OnDoubtfulInclude(const DeckLine&, const std::string& text) override { log.push_back("doubt: " + text); }
  void OnFileEnd(std::uint32_t file) override
  {
    log.push_back(Name(file) + " } " + std::to_string(GetFiles()[file].lines));
  }

private:
  std::string Name(std::uint32_t file) const { return GetFiles()[file].path.filename().string(); }
};

class DeckReaderTest : public testing::Test
{
protected:
  Log Read(const std::string& name, bool goesOn = false)
  {
    LoggingReader reader(folder_ / name, options_);
    reader.goesOn = goesOn;
    reader.ReadModel();
    for (std::string& entry : reader.log) entry = folder_.WithoutFolder(entry);
    return reader.log;
  }

  std::string Failure(const std::string& name)
  {
    return folder_.WithoutFolder(FailureOf([&] { Read(name); }));
  }

  DeckFolder  folder_;
  DeckOptions options_;
};

TEST_F(DeckReaderTest, LinesHaveTheirNumbersWhateverEndsTheFile)
{
  folder_.Write("a.inp", "A\n\nB");
  EXPECT_EQ(Read("a.inp"), (Log{"a.inp {", "a.inp:1 A", "a.inp:2 ", "a.inp:3 B", "a.inp } 3"}));
  folder_.Write("a.inp", "A\r\n\r\nB\r\n");
  EXPECT_EQ(Read("a.inp"), (Log{"a.inp {", "a.inp:1 A", "a.inp:2 ", "a.inp:3 B", "a.inp } 3"}));
  folder_.Write("a.inp", "A\n\n");
  EXPECT_EQ(Read("a.inp"), (Log{"a.inp {", "a.inp:1 A", "a.inp:2 ", "a.inp } 2"}));
}

TEST_F(DeckReaderTest, EmptyFilesHaveNoLines)
{
  folder_.Write("a.inp", "");
  EXPECT_EQ(Read("a.inp"), (Log{"a.inp {", "a.inp } 0"}));
  folder_.Write("a.inp", "\n");
  EXPECT_EQ(Read("a.inp"), (Log{"a.inp {", "a.inp:1 ", "a.inp } 1"}));
  folder_.Write("a.inp", "*INCLUDE, INPUT=e.inc\nB\n");
  folder_.Write("e.inc", "");
  EXPECT_EQ(Read("a.inp"), (Log{"a.inp {", "a.inp:1 *INCLUDE, INPUT=e.inc", "include e.inc as e.inc at 1", "e.inc {",
                                "e.inc } 0", "a.inp:2 B", "a.inp } 2"}));
}

TEST_F(DeckReaderTest, IncludedLinesHaveTheirOwnNumbers)
{
  folder_.Write("a.inp", "A\n*INCLUDE, INPUT=b.inc\nC\n");
  folder_.Write("b.inc", "B1\n\nB3");
  EXPECT_EQ(Read("a.inp"),
            (Log{"a.inp {", "a.inp:1 A", "a.inp:2 *INCLUDE, INPUT=b.inc", "include b.inc as b.inc at 2", "b.inc {",
                 "b.inc:1 B1", "b.inc:2 ", "b.inc:3 B3", "b.inc } 3", "a.inp:3 C", "a.inp } 3"}));
}

TEST_F(DeckReaderTest, IncludeAsLastLineOfAnIncludeEndsItsFileAfterTheInnerOne)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=b.inc\nA2\n*INCLUDE, INPUT=c.inc");
  folder_.Write("b.inc", "B1\n*INCLUDE, INPUT=c.inc\n");
  folder_.Write("c.inc", "C1\n");
  EXPECT_EQ(Read("a.inp"), (Log{"a.inp {", "a.inp:1 *INCLUDE, INPUT=b.inc", "include b.inc as b.inc at 1", "b.inc {",
                                "b.inc:1 B1", "b.inc:2 *INCLUDE, INPUT=c.inc", "include c.inc as c.inc at 2", "c.inc {",
                                "c.inc:1 C1", "c.inc } 1", "b.inc } 2", "a.inp:2 A2", "a.inp:3 *INCLUDE, INPUT=c.inc",
                                "include c.inc as c.inc at 3", "c.inc {", "c.inc:1 C1", "c.inc } 1", "a.inp } 3"}));
}

TEST_F(DeckReaderTest, FilesAreDescribedInTheOrderOfReading)
{
  folder_.Write("a.inp", "A\n*INCLUDE, INPUT=sub/b.inc\n*INCLUDE, INPUT=c.inc\n");
  folder_.Write("sub/b.inc", "12345\n*INCLUDE, INPUT=c.inc\n");
  folder_.Write("c.inc", "C\n");
  LoggingReader reader(folder_ / "a.inp", options_);
  reader.ReadModel();
  const std::vector<DeckFile>& files = reader.GetFiles();
  ASSERT_EQ(files.size(), 4U);
  EXPECT_EQ(files[0].path, folder_ / "a.inp");
  EXPECT_EQ(files[0].statement, "");
  EXPECT_EQ(files[0].includedAt.line, 0);
  EXPECT_EQ(files[0].lines, 3);
  EXPECT_EQ(files[0].bytes, 50U);
  EXPECT_EQ(files[1].path, folder_ / "sub/b.inc");
  EXPECT_EQ(files[1].statement, "sub/b.inc");
  EXPECT_EQ(files[1].includedAt.file, 0U);
  EXPECT_EQ(files[1].includedAt.line, 2);
  EXPECT_EQ(files[1].lines, 2);
  EXPECT_EQ(files[1].bytes, 28U);
  EXPECT_EQ(files[2].path, folder_ / "c.inc");
  EXPECT_EQ(files[2].includedAt.file, 1U);
  EXPECT_EQ(files[2].includedAt.line, 2);
  EXPECT_EQ(files[3].path, folder_ / "c.inc");
  EXPECT_EQ(files[3].includedAt.file, 0U);
  EXPECT_EQ(files[3].includedAt.line, 3);
}

TEST_F(DeckReaderTest, PathIsRelativeToTheWorkingDirectoryFirst)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=sub/b.inc\n");
  folder_.Write("sub/b.inc", "*INCLUDE, INPUT=c.inc\n");
  folder_.Write("sub/c.inc", "nested\n");
  EXPECT_EQ(Read("a.inp"),
            (Log{"a.inp {", "a.inp:1 *INCLUDE, INPUT=sub/b.inc", "include b.inc as sub/b.inc at 1", "b.inc {",
                 "b.inc:1 *INCLUDE, INPUT=c.inc", "doubt: the solver looks for 'c.inc' as c.inc, found sub/c.inc",
                 "include c.inc as c.inc at 1", "c.inc {", "c.inc:1 nested", "c.inc } 1", "b.inc } 1", "a.inp } 1"}));
  folder_.Write("c.inc", "of the deck\n");
  EXPECT_EQ(Read("a.inp")[7], "c.inc:1 of the deck");
}

TEST_F(DeckReaderTest, IncludeRuleFixesWherePathsBegin)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=sub/b.inc\n");
  folder_.Write("sub/b.inc", "*INCLUDE, INPUT=c.inc\n");
  folder_.Write("sub/c.inc", "nested\n");
  options_.includeRule = DeckOptions::SolverOnly;
  EXPECT_EQ(Failure("a.inp"), "sub/b.inc:1: include file 'c.inc' is not there, looked for c.inc");
  folder_.Write("c.inc", "of the deck\n");
  EXPECT_EQ(Read("a.inp")[7], "c.inc:1 of the deck");
  options_.includeRule = DeckOptions::IncludingFile;
  const Log log        = Read("a.inp");
  EXPECT_EQ(log[5], "doubt: the solver looks for 'c.inc' as c.inc, found sub/c.inc");
  EXPECT_EQ(log[8], "c.inc:1 nested");
}

TEST_F(DeckReaderTest, WorkingDirectoryOfTheSolverCanBeNamed)
{
  folder_.Write("jobs/a.inp", "*INCLUDE, INPUT=b.inc\n");
  folder_.Write("jobs/run/b.inc", "B\n");
  options_.workingDirectory = folder_ / "jobs/run";
  EXPECT_EQ(Read("jobs/a.inp")[4], "b.inc:1 B");
}

TEST_F(DeckReaderTest, BlanksOfAPathAreKeptWhereTheSolversNameIsNotThere)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=\"has space.inc\"\n");
  folder_.Write("has space.inc", "with\n");
  const Log log = Read("a.inp");
  EXPECT_EQ(log[2], "doubt: the solver looks for 'hasspace.inc' as hasspace.inc, found has space.inc");
  EXPECT_EQ(log[5], "has space.inc:1 with");
  folder_.Write("hasspace.inc", "without\n");
  EXPECT_EQ(Read("a.inp")[4], "hasspace.inc:1 without");
}

TEST_F(DeckReaderTest, MissingIncludeNamesWhatWasTried)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=sub/b.inc\n");
  folder_.Write("sub/b.inc", "B\n  *INCLUDE, INPUT=\"no where.inc\"\n");
  EXPECT_EQ(Failure("a.inp"),
            "sub/b.inc:2: include file 'nowhere.inc' is not there, looked for nowhere.inc and sub/nowhere.inc and no "
            "where.inc and sub/no where.inc");
  folder_.Write("a.inp", "*INCLUDE, INPUT=sub\n");
  EXPECT_EQ(Failure("a.inp"), "a.inp:1: include file 'sub' is not there, looked for sub");
}

TEST_F(DeckReaderTest, IncludeWithoutAPathIsAnError)
{
  for (const char* statement :
       {"*INCLUDE", "*INCLUDE, INPUT=", "*INCLUDE, mesh.inc", "*INCLUDE, INPUT=\"\"", "*INCLUDE, INPUT=\"mesh.inc"})
  {
    folder_.Write("a.inp", std::string("A\n") + statement + "\n");
    EXPECT_EQ(Failure("a.inp"), "a.inp:2: expected the path of a file: *INCLUDE, INPUT=PATH") << statement;
  }
}

TEST_F(DeckReaderTest, ReadingGoesOnBehindABadIncludeWhereTheHookReturns)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=b.inc\nA2\n");
  EXPECT_EQ(Read("a.inp", true),
            (Log{"a.inp {", "a.inp:1 *INCLUDE, INPUT=b.inc", "bad: include file 'b.inc' is not there, looked for b.inc",
                 "a.inp:2 A2", "a.inp } 2"}));
}

TEST_F(DeckReaderTest, CyclesShowTheirChain)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=a.inp\n");
  EXPECT_EQ(Failure("a.inp"), "a.inp:1: include file 'a.inp' includes itself: a.inp:1 > a.inp");
  folder_.Write("a.inp", "A\n*INCLUDE, INPUT=b.inc\nA\n");
  folder_.Write("b.inc", "B\nB\n*INCLUDE, INPUT=c.inc\nB\n");
  folder_.Write("c.inc", "*INCLUDE, INPUT=./b.inc\nC\n");
  EXPECT_EQ(Failure("a.inp"), "c.inc:1: include file './b.inc' includes itself: a.inp:2 > b.inc:3 > c.inc:1 > ./b.inc");
}

// The stream of such a file is closed before the next one is entered, so that a cycle would never end.
TEST_F(DeckReaderTest, CyclesOfLastLinesAreFound)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=b.inc\n");
  folder_.Write("b.inc", "*INCLUDE, INPUT=c.inc");
  folder_.Write("c.inc", "*INCLUDE, INPUT=b.inc");
  EXPECT_EQ(Failure("a.inp"), "c.inc:1: include file 'b.inc' includes itself: a.inp:1 > b.inc:1 > c.inc:1 > b.inc");
}

TEST_F(DeckReaderTest, CycleThroughALinkIsFound)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=b.inc\nA\n");
  std::filesystem::create_symlink("a.inp", folder_ / "b.inc");
  EXPECT_EQ(Failure("a.inp"), "a.inp:1: include file 'b.inc' includes itself: a.inp:1 > b.inc");
}

TEST_F(DeckReaderTest, SixtyFourLevelsAreAllowed)
{
  const auto name      = [](int i) { return "f" + std::to_string(i); };
  const auto statement = [&](int i) { return "*INCLUDE, INPUT=" + name(i) + "\nafter\n"; };
  for (int i = 0; i < 64; ++i) folder_.Write(name(i), statement(i + 1));
  folder_.Write("f64", "deepest\n");
  const Log log = Read("f0");
  EXPECT_EQ(log.back(), "f0 } 2");
  EXPECT_EQ(log.size(), 4U * 65U + 64U - 1U);  // begin, two lines, end; a statement each; one line of the deepest file

  folder_.Write("f64", statement(65));
  folder_.Write("f65", "too deep\n");
  std::string chain;
  for (int i = 0; i <= 64; ++i) chain += name(i) + ":1 > ";
  EXPECT_EQ(Failure("f0"), "f64:1: includes are nested 65 deep, expected at most 64: " + chain + "f65");
}

TEST_F(DeckReaderTest, NumberOfFilesIsBounded)
{
  for (int i = 0; i < 40; ++i) {
    const std::string statement = "*INCLUDE, INPUT=f" + std::to_string(i + 1) + "\n";
    folder_.Write("f" + std::to_string(i), statement + statement);
  }
  folder_.Write("f40", "");
  options_.mostFiles = 200;
  // The walk is 40 deep before it comes to a second statement, in the deepest files but one.
  const std::string failure = Failure("f0");
  EXPECT_NE(failure.find(": the deck has more than 200 files"), std::string::npos) << failure;
}

TEST_F(DeckReaderTest, PathsOutsideOfTheDecksFolderNeedPermission)
{
  const std::filesystem::path outside = folder_.Write("outside.inc", "out\n");
  folder_.Write("job/a.inp", "*INCLUDE, INPUT=../outside.inc\n");
  const std::string root = std::filesystem::canonical(folder_ / "job").string();
  EXPECT_EQ(Failure("job/a.inp"),
            folder_.WithoutFolder("job/a.inp:1: include file '../outside.inc' is outside of the deck's folder " + root +
                                  ", expected --allow-outside"));
  folder_.Write("job/b.inp", "*INCLUDE, INPUT=" + outside.string() + "\n");
  EXPECT_NE(Failure("job/b.inp").find("is outside of the deck's folder"), std::string::npos);
  folder_.Write("job/c.inp", "*INCLUDE, INPUT=link.inc\n");
  std::filesystem::create_symlink("../outside.inc", folder_ / "job/link.inc");
  EXPECT_NE(Failure("job/c.inp").find("is outside of the deck's folder"), std::string::npos);

  options_.allowOutside = true;
  EXPECT_EQ(Read("job/a.inp")[4], "outside.inc:1 out");
  EXPECT_EQ(Read("job/b.inp")[4], "outside.inc:1 out");
  EXPECT_EQ(Read("job/c.inp")[4], "link.inc:1 out");
}

TEST_F(DeckReaderTest, FolderWhoseNameOnlyBeginsAlikeIsOutside)
{
  folder_.Write("job-2/b.inc", "B\n");
  folder_.Write("job/a.inp", "*INCLUDE, INPUT=../job-2/b.inc\n");
  EXPECT_NE(Failure("job/a.inp").find("is outside of the deck's folder"), std::string::npos);
}

TEST_F(DeckReaderTest, PathUpAndBackIntoTheFolderIsInside)
{
  folder_.Write("job/b.inc", "B\n");
  folder_.Write("job/a.inp", "*INCLUDE, INPUT=../job/b.inc\n");
  EXPECT_EQ(Read("job/a.inp")[4], "b.inc:1 B");
}

TEST_F(DeckReaderTest, DeckThatCannotBeReadIsNamed)
{
  EXPECT_EQ(Failure("none.inp"), "none.inp: expected a deck that can be read: No such file or directory");
  std::filesystem::create_directory(folder_ / "folder");
  EXPECT_EQ(Failure("folder"), "folder: expected a deck that can be read: Is a directory");
}

TEST_F(DeckReaderTest, NamesMayHaveAnyCharacters)
{
  folder_.Write("größe.inp", "*INCLUDE, INPUT=maß.inc\n");
  folder_.Write("maß.inc", "B\n");
  EXPECT_EQ(Read("größe.inp")[4], "maß.inc:1 B");
}

TEST_F(DeckReaderTest, IncludeWhoseNameIsNoUtf8IsNamedWithItsPlace)
{
  folder_.Write("a.inp", "*NODE\n*INCLUDE, INPUT=ma\xdf.inc\n");
  folder_.Write("ma\xdf.inc", "1\n");
  EXPECT_EQ(Failure("a.inp"), "a.inp:2: include file ma\xdf.inc has a name that is no UTF-8");
}

// Another file of that name elsewhere is not taken for one that cannot be looked at.
TEST_F(DeckReaderTest, IncludeThatTheSystemDoesNotTellOfIsAnError)
{
  std::filesystem::create_directory(folder_ / "sub");
  folder_.Write("a.inp", "*INCLUDE, INPUT=sub/b.inp\n");
  folder_.Write("sub/b.inp", "*INCLUDE, INPUT=c.inc\n");
  folder_.Write("sub/c.inc", "1\n");
  std::filesystem::create_symlink("c.inc", folder_ / "c.inc");
  EXPECT_EQ(Failure("a.inp"), "sub/b.inp:1: include file c.inc cannot be looked at: Too many levels of symbolic links");
}

TEST_F(DeckReaderTest, PipesAreReadOnce)
{
  for (const char* name : {"a.inp", "b.inc"}) ASSERT_EQ(mkfifo((folder_ / name).c_str(), 0600), 0);
  std::thread              writer([this] {
    std::ofstream(folder_ / "a.inp") << "*NODE\n*INCLUDE, INPUT=b.inc\n";
    std::ofstream(folder_ / "b.inc") << "1, zero\n";
  });
  std::vector<DeckMessage> messages;
  ReadDeckModel(folder_ / "a.inp", {}, messages);
  writer.join();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].text, "expected a coordinate, found 'zero'");
  EXPECT_EQ(messages[0].place.file, 1U);
  EXPECT_EQ(messages[0].line, "") << "to read it again would be to wait for another writer";
}

TEST_F(DeckReaderTest, ProgressCountsBytesOfAllFiles)
{
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "1, 2\n";
  folder_.Write("a.inp", "*INCLUDE, INPUT=b.inc\n" + text);
  folder_.Write("b.inc", text);
  std::vector<std::pair<std::uint64_t, std::uint64_t>> calls;
  options_.progress = [&](std::uint64_t done, std::uint64_t total) { calls.emplace_back(done, total); };
  Read("a.inp");
  // Each file is 20000 lines of five bytes; the deck has an include statement of 22 bytes before them.
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[0].second, 200022U);
  EXPECT_NEAR(static_cast<double>(calls[0].first), 22.0 + 5.0 * 16384.0, 10.0);  // a line ahead
  EXPECT_NEAR(static_cast<double>(calls[1].first), 100022.0 + 5.0 * (16384.0 - 1.0), 10.0);
  EXPECT_EQ(calls[1].second, 200022U);
}

/// Writes the lines that it reads to the echo, each include statement with another path.
class EchoingReader : public LoggingReader
{
public:
  EchoingReader(const std::filesystem::path& deck, const std::filesystem::path& echo)
      : LoggingReader(deck, {}, L"copy"), echo_(echo)
  {}

protected:
  void OnFileBegin(std::uint32_t file) override
  {
    if (file == 0) currentOutput_ = new std::ofstream(echo_, std::ios::binary);
  }
  void OnLine(const DeckLine& line) override
  {
    if (line.kind != DeckLineKind::Include) *currentOutput_ << line.text << '\n';
  }
  void OnInclude(const DeckLine&, std::uint32_t file) override { currentLine_ = "-> " + GetFiles()[file].statement; }
  void OnFileEnd(std::uint32_t file) override
  {
    if (file != 0) EndEcho();
  }

private:
  std::filesystem::path echo_;
};

TEST_F(DeckReaderTest, EchoesOfFilesThatEndTogetherAreAllClosed)
{
  folder_.Write("a.inp", "A1\n*INCLUDE, INPUT=b.inc\nA3\n");
  folder_.Write("b.inc", "B1\n*INCLUDE, INPUT=c.inc\n");
  folder_.Write("c.inc", "C1\n");
  EchoingReader(folder_ / "a.inp", folder_ / "out.inp").ReadModel();
  const auto text = [this](const char* name) {
    std::ifstream in(folder_ / name);
    return std::string(std::istreambuf_iterator<char>(in), {});
  };
  EXPECT_EQ(text("out.inp"), "A1\n-> b.inc\nA3\n");
  EXPECT_EQ(text("b_copy.inc"), "B1\n-> c.inc\n");
  EXPECT_EQ(text("c_copy.inc"), "C1\n");
}

// Reading that ends in the middle of an include leaves no stream behind; the leak checker looks on.
TEST_F(DeckReaderTest, StreamsAreClosedWhenAnIncludedFileFails)
{
  folder_.Write("a.inp", "*INCLUDE, INPUT=b.inc\nA\n");
  folder_.Write("b.inc", "*INCLUDE, INPUT=c.inc\nB\n");
  folder_.Write("c.inc", "C\n*INCLUDE, INPUT=none\nC\n");
  EXPECT_EQ(Failure("a.inp"), "c.inc:2: include file 'none' is not there, looked for none");
}

}  // namespace
