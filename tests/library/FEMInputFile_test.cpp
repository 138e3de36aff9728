#include <FEMInputFile.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonUtilities/FED_Failure.h>

#include "TempFolder.h"

#if defined(__SANITIZE_ADDRESS__)
#  define QUILON_LEAK_CHECK 1
#elif defined(__has_feature)
#  if __has_feature(address_sanitizer)
#    define QUILON_LEAK_CHECK 1
#  endif
#endif
#ifdef QUILON_LEAK_CHECK
#  include <sanitizer/lsan_interface.h>
#endif

namespace {

namespace fs = std::filesystem;
using quilon_test::TempFolder;

constexpr const char* kTag = "|%P|QuilonDbDataTools|FEMInputFile";

/// Opens what a converter sees. "INC <path>" in a deck includes a file beside the deck.
class Reader : public FEMInputFile
{
public:
  explicit Reader(const fs::path& path, const std::wstring& suffix = L"", int number = 0)
      : FEMInputFile(L"test", path.wstring(), suffix, number)
  {}

  void ReadModel() override {}
  void CheckModel() override {}
  void ConvertModel() override {}

  using FEMInputFile::currentInput_;
  using FEMInputFile::currentLine_;
  using FEMInputFile::currentLinePosition_;
  using FEMInputFile::currentOutput_;
  using FEMInputFile::end_of_file;
  using FEMInputFile::endState_;
  using FEMInputFile::GetCurrentLine;
  using FEMInputFile::GetLine;
  using FEMInputFile::GetPath;
  using FEMInputFile::Include;
  using FEMInputFile::includeSuffix_;
  using FEMInputFile::Initialize;
  using FEMInputFile::inputDirectory_;
  using FEMInputFile::inputPath_;
  using FEMInputFile::inputStack_;
  using FEMInputFile::lineCounter_;
  using FEMInputFile::lineNumberStack_;
  using FEMInputFile::name_;
  using FEMInputFile::nextLine_;
  using FEMInputFile::nextLinePosition_;
  using FEMInputFile::nextLineStack_;
  using FEMInputFile::outputStack_;
  using FEMInputFile::ReadLine;
  using FEMInputFile::restorePending_;
  using FEMInputFile::spare_;
  using FEMInputFile::userNumber_;

  bool IsInclude() const { return GetCurrentLine().compare(0, 4, "INC ") == 0; }

  void IncludeNamedFile() { Include(GetPath() + fs::path(GetCurrentLine().substr(4)).wstring()); }

  /// Gives all streams up, so that the destructor finds none.
  void Detach()
  {
    currentInput_  = nullptr;
    currentOutput_ = nullptr;
    inputStack_.clear();
    outputStack_.clear();
  }

  /// Deletes the streams of the including files, which the destructor leaves.
  void DeleteStacks()
  {
    for (const std::istream* stream : inputStack_) delete stream;
    for (const std::ostream* stream : outputStack_) delete stream;
    inputStack_.clear();
    outputStack_.clear();
  }
};

fs::path Write(const fs::path& path, const std::string& text)
{
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

std::string ReadText(const fs::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

/// What a caller sees after a call of ReadLine().
struct Seen
{
  std::string    line;
  int            status;
  int            counter;
  std::streamoff position;
  std::streamoff nextPosition;
  int            endState;

  bool operator==(const Seen&) const = default;
};

void PrintTo(const Seen& seen, std::ostream* out)
{
  *out << '"' << seen.line << "\" status " << seen.status << " counter " << seen.counter << " position "
       << seen.position << " next " << seen.nextPosition << " end " << seen.endState;
}

constexpr int kOk    = FEMInputFile::file_ok;
constexpr int kEnded = FEMInputFile::file_ended;

Seen Step(Reader& reader)
{
  const int status = reader.ReadLine();
  return {reader.GetCurrentLine(),  status,          reader.lineCounter_, reader.currentLinePosition_,
          reader.nextLinePosition_, reader.endState_};
}

/// Reads to the end and enters every include.
std::vector<Seen> ReadAll(Reader& reader)
{
  std::vector<Seen> all;
  reader.Initialize();
  do {
    all.push_back(Step(reader));
    if (reader.IsInclude()) reader.IncludeNamedFile();
  } while (!reader.end_of_file());
  return all;
}

/// The loop of a converter that copies every line.
void Convert(Reader& reader, const fs::path& echo)
{
  reader.Initialize();
  reader.currentOutput_ = new std::ofstream(echo);
  while (true) {
    reader.ReadLine();
    if (reader.end_of_file()) break;
    if (reader.IsInclude()) {
      reader.IncludeNamedFile();
    } else {
      *reader.currentOutput_ << reader.GetCurrentLine() << '\n';
      reader.RestoreOutputStreamIfNeeded();
    }
  }
}

template <typename Action>
std::string FailureOf(Action action)
{
  try {
    action();
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.GetTag(), kTag);
    EXPECT_EQ(failure.GetCause(), nullptr);
    return failure.GetMessage();
  }
  return "no failure";
}

/// Relative paths start in the folder for as long as this lives.
class WorkingFolder
{
public:
  explicit WorkingFolder(const fs::path& path) : former_(fs::current_path()) { fs::current_path(path); }
  ~WorkingFolder() { fs::current_path(former_); }
  WorkingFolder(const WorkingFolder&)            = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

private:
  fs::path former_;
};

}  // namespace

// ---- construction

TEST(FEMInputFile, IsConstructedWithNothingOpen)
{
  const Reader reader("folder/model.inp", L"conv", -3);
  EXPECT_EQ(reader.name_, L"test");
  EXPECT_EQ(reader.inputPath_, L"folder/model.inp");
  EXPECT_EQ(reader.spare_, L"");
  EXPECT_EQ(reader.inputDirectory_, L"folder/");
  EXPECT_TRUE(reader.inputStack_.empty());
  EXPECT_EQ(reader.currentInput_, nullptr);
  EXPECT_TRUE(reader.outputStack_.empty());
  EXPECT_EQ(reader.currentOutput_, nullptr);
  EXPECT_FALSE(reader.restorePending_);
  EXPECT_EQ(reader.includeSuffix_, L"_conv");
  EXPECT_EQ(reader.userNumber_, -3);
  EXPECT_EQ(reader.currentLinePosition_, 0);
  EXPECT_EQ(reader.nextLinePosition_, 0);
  EXPECT_TRUE(reader.lineNumberStack_.empty());
  EXPECT_EQ(reader.lineCounter_, 0);
  EXPECT_EQ(reader.currentLine_, "");
  EXPECT_EQ(reader.nextLine_, "");
  EXPECT_TRUE(reader.nextLineStack_.empty());
  EXPECT_EQ(reader.endState_, 0);
}

TEST(FEMInputFile, TheInputDirectoryEndsAtTheLastSeparatorOfEitherKind)
{
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {{L"model.inp", L""},
                                                            {L"C:/work/model.inp", L"C:/work/"},
                                                            {L"C:\\work\\model.inp", L"C:\\work\\"},
                                                            {L"C:/work\\model.inp", L"C:/work\\"},
                                                            {L"C:\\work/model.inp", L"C:\\work/"},
                                                            {L"/model.inp", L"/"},
                                                            {L"work/", L"work/"},
                                                            {L"/", L"/"},
                                                            {L"C:model.inp", L""},
                                                            {L"", L""}};
  for (const auto& [path, directory] : rows) EXPECT_EQ(Reader(fs::path(path)).GetPath(), directory);
}

TEST(FEMInputFile, AnEmptySuffixStaysEmpty)
{
  EXPECT_EQ(Reader("a.inp").includeSuffix_, L"");
  EXPECT_EQ(Reader("a.inp", L"x").includeSuffix_, L"_x");
}

TEST(FEMInputFile, IsAnAbstractInputBase)
{
  EXPECT_TRUE(std::is_abstract_v<FEMInputFile>);
  EXPECT_TRUE((std::is_base_of_v<FemInputBase, FEMInputFile>));
}

TEST(FEMInputFile, DestroyedUnopenedItTouchesNothing) { EXPECT_NO_THROW(Reader("missing.inp")); }

// ---- the main file

TEST(FEMInputFile, InitializeReadsTheFirstLineAheadAndCountsNothing)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\ntwo\n"));
  reader.Initialize();
  EXPECT_EQ(reader.nextLine_, "one");
  EXPECT_EQ(reader.GetCurrentLine(), "");
  EXPECT_EQ(reader.lineCounter_, 0);
  EXPECT_EQ(reader.currentLinePosition_, 0);
  EXPECT_EQ(reader.nextLinePosition_, 0);
  EXPECT_EQ(reader.endState_, 0);
  EXPECT_FALSE(reader.end_of_file());
}

TEST(FEMInputFile, InitializingAgainBeginsAnewAndCountsFromZero)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\ntwo\n"));
  reader.Initialize();
  EXPECT_EQ(Step(reader), (Seen{"one", kOk, 1, 0, 4, 0}));
  delete reader.currentInput_;
  reader.Initialize();
  EXPECT_EQ(reader.lineCounter_, 0);
  EXPECT_EQ(Step(reader), (Seen{"one", kOk, 1, 0, 4, 0}));
}

TEST(FEMInputFile, AnEmptyFileDeliversOneEmptyLineAndThenItsEnd)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", ""));
  reader.Initialize();
  EXPECT_EQ(reader.nextLine_, "");
  EXPECT_EQ(Step(reader), (Seen{"", kEnded, 0, 0, -1, 1}));
  EXPECT_FALSE(reader.end_of_file());
  EXPECT_EQ(Step(reader), (Seen{"", kEnded, 0, -1, -1, 2}));
  EXPECT_TRUE(reader.end_of_file());
}

// Byte by byte: "one\n" is 4, "two\r\n" 5, "three" 5.
TEST(FEMInputFile, CounterAndPositionsAreThoseOfTheCurrentLine)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\ntwo\r\nthree\n"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"one", kOk, 1, 0, 4, 0},
                                                {"two", kOk, 2, 4, 9, 0},
                                                {"three", kEnded, 3, 9, 15, 1},
                                                {"", kEnded, 3, 15, -1, 2}}));
}

// Nothing is read ahead any more when the last line is delivered, and the counter moves with reading ahead.
TEST(FEMInputFile, WithoutAFinalNewlineTheCounterLagsAtTheLastLine)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\ntwo\r\nthree"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"one", kOk, 1, 0, 4, 0},
                                                {"two", kOk, 2, 4, 9, 0},
                                                {"three", kEnded, 2, 9, -1, 1},
                                                {"", kEnded, 2, -1, -1, 2}}));
}

TEST(FEMInputFile, TheLastLineComesWithTheEndWhetherOrNotANewlineFollows)
{
  TempFolder folder;
  for (const char* text : {"A\nB\n", "A\nB", "A\r\nB\r\n", "A\r\nB"}) {
    Reader reader(Write(folder / "a.inp", text));
    reader.Initialize();
    EXPECT_EQ(reader.ReadLine(), kOk) << text;
    EXPECT_EQ(reader.GetCurrentLine(), "A") << text;
    EXPECT_EQ(reader.ReadLine(), kEnded) << text;
    EXPECT_EQ(reader.GetCurrentLine(), "B") << text;
    EXPECT_FALSE(reader.end_of_file()) << text;
    EXPECT_EQ(reader.ReadLine(), kEnded) << text;
    EXPECT_EQ(reader.GetCurrentLine(), "") << text;
    EXPECT_TRUE(reader.end_of_file()) << text;
  }
}

TEST(FEMInputFile, OneLineWithoutANewlineIsDeliveredAtOnceWithTheEnd)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "A"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"A", kEnded, 0, 0, -1, 1}, {"", kEnded, 0, -1, -1, 2}}));
}

TEST(FEMInputFile, AnEmptyLineAtTheEndIsDeliveredWithTheEnd)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "A\n\n"));
  EXPECT_EQ(ReadAll(reader),
            (std::vector<Seen>{{"A", kOk, 1, 0, 2, 0}, {"", kEnded, 2, 2, 3, 1}, {"", kEnded, 2, 3, -1, 2}}));
}

TEST(FEMInputFile, AnEmptyLineInTheMiddleIsALineOfItsOwn)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "A\n\r\nB\n"));
  EXPECT_EQ(ReadAll(reader),
            (std::vector<Seen>{
                {"A", kOk, 1, 0, 2, 0}, {"", kOk, 2, 2, 4, 0}, {"B", kEnded, 3, 4, 6, 1}, {"", kEnded, 3, 6, -1, 2}}));
}

TEST(FEMInputFile, OnlyTheCarriageReturnBeforeTheNewlineGoes)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "a\rb\r\r\nlast\r"));
  reader.Initialize();
  reader.ReadLine();
  EXPECT_EQ(reader.GetCurrentLine(), "a\rb\r");
  reader.ReadLine();
  EXPECT_EQ(reader.GetCurrentLine(), "last");
}

TEST(FEMInputFile, ACarriageReturnAloneAtTheEndIsNoLine)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "A\n\r"));
  reader.Initialize();
  EXPECT_EQ(reader.ReadLine(), kEnded);
  EXPECT_EQ(reader.GetCurrentLine(), "A");
}

TEST(FEMInputFile, TheEndShowsForOneCallOnly)
{
  TempFolder        folder;
  Reader            reader(Write(folder / "a.inp", "A\n"));
  std::vector<int>  states;
  std::vector<bool> ends;
  reader.Initialize();
  for (int call = 0; call < 4; ++call) {
    EXPECT_EQ(reader.ReadLine(), kEnded);
    states.push_back(reader.endState_);
    ends.push_back(reader.end_of_file());
  }
  EXPECT_EQ(states, (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(ends, (std::vector<bool>{false, true, false, false}));
}

TEST(FEMInputFile, GetLineCopiesTheLineAndKeepsItsStatusToItself)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\ntwo\n"));
  reader.Initialize();
  std::string line = "before";
  reader.GetLine(line);
  EXPECT_EQ(line, "one");
  EXPECT_EQ(reader.GetCurrentLine(), "one");
  reader.GetLine(line);
  EXPECT_EQ(line, "two");
  reader.GetLine(line);
  EXPECT_EQ(line, "");
  EXPECT_TRUE(reader.end_of_file());
}

// The second method: positions added up from the lengths of lines that are longer and shorter than what is read at
// once.
TEST(FEMInputFile, PositionsAreExactAcrossWhatIsReadAtOnce)
{
  TempFolder                  folder;
  std::vector<std::string>    lines;
  std::string                 text;
  std::vector<std::streamoff> positions;
  for (int i = 0; i < 4000; ++i) {
    lines.push_back(std::string(static_cast<std::size_t>(i % 97 == 0 ? 65534 + i % 5 : i * 31 % 90), 'x'));
    positions.push_back(static_cast<std::streamoff>(text.size()));
    text += lines.back() + (i % 3 == 0 ? "\r\n" : "\n");
  }
  positions.push_back(static_cast<std::streamoff>(text.size()));

  Reader reader(Write(folder / "a.inp", text));
  reader.Initialize();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    ASSERT_EQ(reader.ReadLine(), i + 1 < lines.size() ? kOk : kEnded);
    ASSERT_EQ(reader.GetCurrentLine(), lines[i]) << i;
    ASSERT_EQ(reader.currentLinePosition_, positions[i]) << i;
    ASSERT_EQ(reader.nextLinePosition_, positions[i + 1]) << i;
    ASSERT_EQ(reader.lineCounter_, static_cast<int>(i) + 1);
  }
}

TEST(FEMInputFile, TheInputIsAFileStreamForAConverter)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\ntwo\nthree\nfour\n"));
  reader.Initialize();
  reader.ReadLine();
  auto* file = dynamic_cast<std::ifstream*>(reader.currentInput_);
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(file->is_open());
  EXPECT_EQ(file->tellg(), 8) << "behind the line that was read ahead";

  // What a converter reads or skips itself is gone for the reader, and the positions know of it.
  std::string line;
  std::getline(*file, line);
  EXPECT_EQ(line, "three");
  EXPECT_EQ(Step(reader), (Seen{"two", kOk, 2, 4, 14, 0}));
  file->seekg(4);
  EXPECT_EQ(Step(reader), (Seen{"four", kOk, 3, 14, 4, 0}));
  EXPECT_EQ(Step(reader), (Seen{"two", kOk, 4, 4, 8, 0}));
}

TEST(FEMInputFile, AConverterMayPutAnotherStreamInPlace)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\ntwo\n"));
  reader.Initialize();
  delete reader.currentInput_;
  reader.currentInput_ = new std::istringstream("alpha\r\nbeta\n");
  EXPECT_EQ(Step(reader), (Seen{"one", kOk, 1, 0, 0, 0}));
  EXPECT_EQ(Step(reader), (Seen{"alpha", kOk, 2, 0, 7, 0}));
  EXPECT_EQ(Step(reader), (Seen{"beta", kEnded, 3, 7, 12, 1}));
}

// ---- includes

// main: "a\n" 0 to 2, "INC x\n" to 8, "b\n" to 10, "c\n" to 12; x: "x\n" 0 to 2, "y\n" to 4. The first line of the
// included file has the position behind the include statement, the first line after it the included file's length. With
// the last line of an included file the counter is the including file's again.
TEST(FEMInputFile, InsideAnIncludeTheCounterIsOneAheadOfTheLine)
{
  TempFolder folder;
  Write(folder / "x", "x\ny\n");
  Reader reader(Write(folder / "a.inp", "a\nINC x\nb\nc\n"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"a", kOk, 1, 0, 2, 0},
                                                {"INC x", kOk, 2, 2, 8, 0},
                                                {"x", kOk, 2, 8, 2, 0},
                                                {"y", kEnded, 2, 2, 4, 0},
                                                {"b", kOk, 3, 4, 10, 0},
                                                {"c", kEnded, 4, 10, 12, 1},
                                                {"", kEnded, 4, 12, -1, 2}}));
}

TEST(FEMInputFile, TheCounterOfAnIncludeStartsAtTwo)
{
  TempFolder folder;
  Write(folder / "x", "1\n2\n3\n4\n");
  Reader           reader(Write(folder / "a.inp", "a\nINC x\nb\n"));
  std::vector<int> counters;
  for (const Seen& seen : ReadAll(reader)) counters.push_back(seen.counter);
  EXPECT_EQ(counters, (std::vector<int>{1, 2, 2, 3, 4, 2, 3, 3}));
}

TEST(FEMInputFile, AfterAnIncludeWithoutAFinalNewlineThePositionIsUnknown)
{
  TempFolder folder;
  Write(folder / "x", "x\ny");
  Reader reader(Write(folder / "a.inp", "a\nINC x\nb\nc\n"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"a", kOk, 1, 0, 2, 0},
                                                {"INC x", kOk, 2, 2, 8, 0},
                                                {"x", kOk, 2, 8, 2, 0},
                                                {"y", kEnded, 2, 2, -1, 0},
                                                {"b", kOk, 3, -1, 10, 0},
                                                {"c", kEnded, 4, 10, 12, 1},
                                                {"", kEnded, 4, 12, -1, 2}}));
}

TEST(FEMInputFile, AnIncludeEntersAtOnceAndItsEndComesBackAtOnce)
{
  TempFolder folder;
  Write(folder / "x", "X\n");
  Reader reader(Write(folder / "a.inp", "INC x\nb\n"));
  reader.Initialize();
  reader.ReadLine();
  std::istream* const outer = reader.currentInput_;
  reader.IncludeNamedFile();
  EXPECT_EQ(reader.inputStack_, (std::vector<std::istream*>{outer}));
  EXPECT_EQ(reader.lineNumberStack_, (std::vector<int>{1}));
  EXPECT_EQ(reader.nextLineStack_, (std::vector<std::string>{"b"}));
  EXPECT_EQ(reader.lineCounter_, 1);
  EXPECT_EQ(reader.nextLine_, "X");
  EXPECT_EQ(reader.GetCurrentLine(), "INC x");
  EXPECT_NE(dynamic_cast<std::ifstream*>(reader.currentInput_), nullptr);
  EXPECT_FALSE(reader.restorePending_);

  EXPECT_EQ(reader.ReadLine(), kEnded);
  EXPECT_EQ(reader.GetCurrentLine(), "X") << "still the included file's";
  EXPECT_EQ(reader.currentInput_, outer);
  EXPECT_TRUE(reader.inputStack_.empty());
  EXPECT_TRUE(reader.lineNumberStack_.empty());
  EXPECT_TRUE(reader.nextLineStack_.empty());
  EXPECT_EQ(reader.lineCounter_, 1);
  EXPECT_EQ(reader.nextLine_, "b");
  EXPECT_TRUE(reader.restorePending_);
  EXPECT_EQ(reader.endState_, 0);

  EXPECT_EQ(reader.ReadLine(), kEnded);
  EXPECT_EQ(reader.GetCurrentLine(), "b");
  EXPECT_EQ(reader.lineCounter_, 2);
}

TEST(FEMInputFile, AnEmptyIncludeDeliversOneEmptyLine)
{
  TempFolder folder;
  Write(folder / "x", "");
  Reader reader(Write(folder / "a.inp", "INC x\nb\n"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"INC x", kOk, 1, 0, 6, 0},
                                                {"", kEnded, 1, 6, -1, 0},
                                                {"b", kEnded, 2, -1, 8, 1},
                                                {"", kEnded, 2, 8, -1, 2}}));
}

TEST(FEMInputFile, AnIncludeOfAnEmptyLineAloneLooksLikeAnEmptyOne)
{
  TempFolder folder;
  Write(folder / "x", "\n");
  Reader reader(Write(folder / "a.inp", "INC x\nb\n"));
  EXPECT_EQ(
      ReadAll(reader),
      (std::vector<Seen>{
          {"INC x", kOk, 1, 0, 6, 0}, {"", kEnded, 1, 6, 1, 0}, {"b", kEnded, 2, 1, 8, 1}, {"", kEnded, 2, 8, -1, 2}}));
}

// The statement is delivered with the end of the main file, so the end state is 1 while the included file is read.
TEST(FEMInputFile, AnIncludeAsLastLineOfTheMainFileIsReadToItsEnd)
{
  TempFolder folder;
  Write(folder / "x", "x\ny\n");
  Reader reader(Write(folder / "a.inp", "a\nINC x\n"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"a", kOk, 1, 0, 2, 0},
                                                {"INC x", kEnded, 2, 2, 8, 1},
                                                {"x", kOk, 2, 8, 2, 1},
                                                {"y", kEnded, 2, 2, 4, 1},
                                                {"", kEnded, 2, 4, -1, 2}}));
}

// The counter stays that of the line before: nothing is read ahead any more.
TEST(FEMInputFile, AnIncludeAsLastLineWithoutANewlineIsReadToItsEnd)
{
  TempFolder folder;
  Write(folder / "x", "x\ny\n");
  Reader reader(Write(folder / "a.inp", "a\nINC x"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"a", kOk, 1, 0, 2, 0},
                                                {"INC x", kEnded, 1, 2, -1, 1},
                                                {"x", kOk, 2, -1, 2, 1},
                                                {"y", kEnded, 1, 2, 4, 1},
                                                {"", kEnded, 1, 4, -1, 2}}));
}

TEST(FEMInputFile, BehindAnIncludeTheCounterLagsAtALastLineWithoutANewline)
{
  TempFolder folder;
  Write(folder / "x", "x\n");
  Reader reader(Write(folder / "a.inp", "INC x\nb"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"INC x", kOk, 1, 0, 6, 0},
                                                {"x", kEnded, 1, 6, 2, 0},
                                                {"b", kEnded, 1, 2, -1, 1},
                                                {"", kEnded, 1, -1, -1, 2}}));
}

// Reading is back in the main file when the last line of x is delivered, so y returns there and not into x.
TEST(FEMInputFile, AnIncludeAsLastLineOfAnIncludeReturnsPastIt)
{
  TempFolder folder;
  Write(folder / "x", "x\nINC y\n");
  Write(folder / "y", "y\n");
  Reader reader(Write(folder / "a.inp", "INC x\nb\n"));
  EXPECT_EQ(ReadAll(reader), (std::vector<Seen>{{"INC x", kOk, 1, 0, 6, 0},
                                                {"x", kOk, 2, 6, 2, 0},
                                                {"INC y", kEnded, 1, 2, 8, 0},
                                                {"y", kEnded, 1, 8, 2, 0},
                                                {"b", kEnded, 2, 2, 8, 1},
                                                {"", kEnded, 2, 8, -1, 2}}));
}

TEST(FEMInputFile, IncludesNestFiveDeep)
{
  TempFolder folder;
  for (int level = 1; level < 5; ++level) {
    const std::string number = std::to_string(level);
    Write(folder / ("f" + number), "in " + number + "\nINC f" + std::to_string(level + 1) + "\nout " + number + "\n");
  }
  Write(folder / "f5", "in 5\nout 5\n");
  Reader reader(Write(folder / "f0", "in 0\nINC f1\nout 0\n"));

  std::vector<std::string> lines;
  std::vector<int>         counters;
  std::size_t              deepest = 0;
  reader.Initialize();
  while (reader.ReadLine(), !reader.end_of_file()) {
    deepest = std::max(deepest, reader.inputStack_.size());
    if (reader.IsInclude()) {
      reader.IncludeNamedFile();
    } else {
      lines.push_back(reader.GetCurrentLine());
      counters.push_back(reader.lineCounter_);
    }
  }
  EXPECT_EQ(lines, (std::vector<std::string>{"in 0", "in 1", "in 2", "in 3", "in 4", "in 5", "out 5", "out 4", "out 3",
                                             "out 2", "out 1", "out 0"}));
  EXPECT_EQ(deepest, 5u);
  // Lines 1 of six files, then line 2 of the deepest, whose end has restored the counter of its includer, and line 3 of
  // the others alike: the counter shown with the last line of an included file is the including file's.
  EXPECT_EQ(counters, (std::vector<int>{1, 2, 2, 2, 2, 2, 3, 3, 3, 3, 2, 3}));
}

TEST(FEMInputFile, TheSameFileIsIncludedTwice)
{
  TempFolder folder;
  Write(folder / "x", "x\n");
  Reader                   reader(Write(folder / "a.inp", "INC x\nb\nINC x\n"));
  std::vector<std::string> lines;
  for (const Seen& seen : ReadAll(reader)) lines.push_back(seen.line);
  EXPECT_EQ(lines, (std::vector<std::string>{"INC x", "x", "b", "INC x", "x", ""}));
}

// ---- failures

TEST(FEMInputFile, ADirectoryIsNamedByItsFirstCharacterOnly)
{
  TempFolder folder;
  fs::create_directory(folder / "data");
  fs::create_directory(folder / "d");
  const WorkingFolder here(folder.GetPath());
  EXPECT_EQ(FailureOf([] { Reader("data").Initialize(); }), "The provided file \"d\" is a directory.");
  EXPECT_EQ(FailureOf([] { Reader("d").Initialize(); }), "The provided file \"d\" is a directory.");
  EXPECT_EQ(FailureOf([&] { Reader(folder / "data").Initialize(); }), "The provided file \"/\" is a directory.");

  Reader reader("data");
  EXPECT_THROW(reader.Initialize(), FED_Failure);
  EXPECT_EQ(reader.currentInput_, nullptr);
}

TEST(FEMInputFile, AMissingFileIsNamedInFull)
{
  TempFolder          folder;
  const WorkingFolder here(folder.GetPath());
  EXPECT_EQ(FailureOf([] { Reader("missing/model.inp").Initialize(); }),
            "The file \"missing/model.inp\" was not found.");
  EXPECT_EQ(FailureOf([] { Reader("m").Initialize(); }), "The file \"m\" was not found.");
  EXPECT_EQ(FailureOf([] { Reader("").Initialize(); }), "The file \"\" was not found.");

  Reader reader("missing.inp");
  EXPECT_THROW(reader.Initialize(), FED_Failure);
  EXPECT_NE(reader.currentInput_, nullptr) << "owned from the moment it is created";
}

TEST(FEMInputFile, AMissingFileIsNamedInUtf8)
{
  class WideReader : public Reader
  {
  public:
    explicit WideReader(const std::wstring& path) : Reader("") { inputPath_ = path; }
  };
  EXPECT_EQ(FailureOf([] { WideReader(L"no such folder/d\u00e9\u4e2d.inp").Initialize(); }),
            "The file \"no such folder/d\xc3\xa9\xe4\xb8\xad.inp\" was not found.");
}

TEST(FEMInputFile, ALongMessageIsCutAt1023Characters)
{
  const std::string path = "missing/" + std::string(2000, 'x');
  EXPECT_EQ(FailureOf([&] { Reader(path).Initialize(); }),
            ("The file \"" + path + "\" was not found.").substr(0, 1023));
}

TEST(FEMInputFile, AMissingIncludeIsNamedByItsFirstCharacterOnly)
{
  TempFolder          folder;
  const WorkingFolder here(folder.GetPath());
  for (const auto* path : {L"missing.inc", L"m"}) {
    Reader reader(Write(folder / "a.inp", "one\ntwo\n"));
    reader.Initialize();
    EXPECT_EQ(FailureOf([&] { reader.Include(path); }), "The file \"m\" (FEMInputFile) was not found.");
    reader.DeleteStacks();
  }
}

TEST(FEMInputFile, AWidePathInANarrowMessageShowsItsBytes)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\n"));
  reader.Initialize();
  // Read as bytes, U+4E2D is 2D 4E 00 on a machine that keeps the low byte first.
  const std::wstring path  = L"\u4e2d.inc";
  const std::string  bytes = reinterpret_cast<const char*>(path.c_str());
  EXPECT_EQ(FailureOf([&] { reader.Include(path); }), "The file \"" + bytes + "\" (FEMInputFile) was not found.");
  reader.DeleteStacks();
}

TEST(FEMInputFile, AFolderIsNoIncludedFile)
{
  TempFolder folder;
  fs::create_directory(folder / "part.inc");
  const WorkingFolder here(folder.GetPath());
  Reader              reader(Write(folder / "a.inp", "one\n"));
  reader.Initialize();
  EXPECT_EQ(FailureOf([&] { reader.Include(L"part.inc"); }), "The file \"p\" (FEMInputFile) was not found.");
  reader.DeleteStacks();
}

TEST(FEMInputFile, AFailedIncludeLeavesTheStacksPushed)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "INC missing.inc\ntwo\n"), L"x");
  reader.Initialize();
  auto* const echo      = new std::ofstream(folder / "a_x.inp");
  reader.currentOutput_ = echo;
  reader.ReadLine();
  std::istream* const outer = reader.currentInput_;
  EXPECT_THROW(reader.IncludeNamedFile(), FED_Failure);

  EXPECT_EQ(reader.inputStack_, (std::vector<std::istream*>{outer}));
  EXPECT_EQ(reader.outputStack_, (std::vector<std::ostream*>{echo}));
  EXPECT_EQ(reader.lineNumberStack_, (std::vector<int>{1}));
  EXPECT_EQ(reader.nextLineStack_, (std::vector<std::string>{"two"}));
  EXPECT_EQ(reader.lineCounter_, 1);
  ASSERT_NE(reader.currentInput_, outer);
  EXPECT_TRUE(reader.currentInput_->fail());
  EXPECT_EQ(ReadText(folder / "a_x.inp"), "INC missing.inc\n") << "the statement is out";
  EXPECT_TRUE(fs::exists(folder / "missing_x.inc")) << "its echo file is open";
  reader.DeleteStacks();
}

// The stream that could not be opened has not hit its end and never will: a converter that catches the failure has to
// stop reading.
TEST(FEMInputFile, BehindAFailedIncludeEmptyLinesNeverEnd)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "INC missing.inc\ntwo\n"));
  reader.Initialize();
  reader.ReadLine();
  EXPECT_THROW(reader.IncludeNamedFile(), FED_Failure);
  EXPECT_EQ(Step(reader), (Seen{"two", kOk, 2, 16, -1, 0})) << "it had been read ahead";
  EXPECT_EQ(Step(reader), (Seen{"", kOk, 3, -1, -1, 0}));
  EXPECT_EQ(Step(reader), (Seen{"", kOk, 4, -1, -1, 0}));
  reader.DeleteStacks();
}

TEST(FEMInputFile, AStreamThatFailsToReadIsNamedInsteadOfNeverEnding)
{
  struct Broken : std::stringbuf
  {
    int_type underflow() override { throw std::runtime_error("broken"); }
  };
  TempFolder          folder;
  const WorkingFolder here(folder.GetPath());
  Reader              reader(Write("a.inp", "one\ntwo\n"));
  reader.Initialize();
  Broken        broken;
  std::istream* file = std::exchange(reader.currentInput_, new std::istream(&broken));
  EXPECT_EQ(FailureOf([&] { reader.ReadLine(); }), "Reading \"a.inp\" or a file that it includes failed.");
  delete file;
}

// ---- paths

TEST(FEMInputFile, PathsBeyondAsciiOpenWhateverTheLocale)
{
  TempFolder         folder;
  const std::wstring base = folder.GetPath().wstring() + L"/";
  Write(folder / fs::path(u8"d\u00e9\u4e2d.inp"), "one\n");
  Write(folder / fs::path(u8"\u00fcber.inc"), "two\n");

  class WideReader : public Reader
  {
  public:
    explicit WideReader(const std::wstring& path) : Reader("", L"\u00e4") { inputPath_ = path; }
  };
  WideReader reader(base + L"d\u00e9\u4e2d.inp");
  reader.Initialize();
  reader.currentOutput_ = new std::ofstream(folder / "out");
  reader.ReadLine();
  EXPECT_EQ(reader.GetCurrentLine(), "one");
  reader.Include(base + L"\u00fcber.inc");
  reader.ReadLine();
  EXPECT_EQ(reader.GetCurrentLine(), "two");
  EXPECT_TRUE(fs::exists(folder / fs::path(u8"\u00fcber_\u00e4.inc")));
  reader.RestoreOutputStreamIfNeeded();
}

// ---- echo files

TEST(FEMInputFile, EveryIncludedFileHasAnEchoFileWithTheSuffix)
{
  TempFolder folder;
  fs::create_directory(folder / "dir");
  Write(folder / "dir/part.dat", "p\nINC dir/deep.v2.dat\nq\n");
  Write(folder / "dir/deep.v2.dat", "d\n");
  Reader reader(Write(folder / "a.inp", "a\r\nINC dir/part.dat\r\nb\r\n"), L"x");
  Convert(reader, folder / "a_x.inp");
  reader.currentOutput_->flush();
  EXPECT_EQ(ReadText(folder / "a_x.inp"), "a\nINC dir/part.dat\nb\n");
  EXPECT_EQ(ReadText(folder / "dir/part_x.dat"), "p\nINC dir/deep.v2.dat\nq\n");
  EXPECT_EQ(ReadText(folder / "dir/deep.v2_x.dat"), "d\n");
  EXPECT_EQ(ReadText(folder / "dir/part.dat"), "p\nINC dir/deep.v2.dat\nq\n");
}

TEST(FEMInputFile, TheStatementIsWrittenAndFlushedBeforeTheFileIsEntered)
{
  TempFolder folder;
  Write(folder / "part.dat", "p\nq\n");
  Reader reader(Write(folder / "a.inp", "INC part.dat\nb\n"), L"x");
  reader.Initialize();
  auto* const outer     = new std::ofstream(folder / "a_x.inp");
  reader.currentOutput_ = outer;
  reader.ReadLine();
  reader.currentLine_ = "INC part_x.dat";  // the copy of the tree names the copies
  reader.Include(folder.GetPath().wstring() + L"/part.dat");
  EXPECT_EQ(ReadText(folder / "a_x.inp"), "INC part_x.dat\n");
  EXPECT_EQ(reader.outputStack_, (std::vector<std::ostream*>{outer}));
  ASSERT_NE(reader.currentOutput_, outer);
  EXPECT_NE(dynamic_cast<std::ofstream*>(reader.currentOutput_), nullptr);
  EXPECT_EQ(reader.currentOutput_->precision(), 8);
  *reader.currentOutput_ << 1.23456789012;
  reader.ReadLine();
  reader.ReadLine();
  reader.RestoreOutputStreamIfNeeded();
  EXPECT_EQ(ReadText(folder / "part_x.dat"), "1.2345679");
}

TEST(FEMInputFile, AFormerEchoFileIsReplaced)
{
  TempFolder folder;
  Write(folder / "part_x.dat", "a much longer file that stood here before\n");
  Write(folder / "part.dat", "p\n");
  Reader reader(Write(folder / "a.inp", "INC part.dat\nb\n"), L"x");
  Convert(reader, folder / "a_x.inp");
  EXPECT_EQ(ReadText(folder / "part_x.dat"), "p\n");
}

// The echo file is opened for writing before the included file is opened for reading, and they are one file.
TEST(FEMInputFile, WithAnEmptySuffixTheEchoOverwritesTheIncludedFile)
{
  TempFolder folder;
  Write(folder / "part.dat", "p\nq\n");
  Reader reader(Write(folder / "a.inp", "INC part.dat\nb\n"));
  Convert(reader, folder / "a_x.inp");
  EXPECT_EQ(ReadText(folder / "part.dat"), "\n") << "one empty line, as an empty file delivers it";
}

TEST(FEMInputFile, WithoutAnExtensionTheEchoOverwritesTheIncludedFile)
{
  TempFolder folder;
  fs::create_directory(folder / "v1.2");
  Write(folder / "v1.2/part", "p\nq\n");
  Reader reader(Write(folder / "a.inp", "INC v1.2/part\nb\n"), L"x");
  Convert(reader, folder / "a_x.inp");
  EXPECT_EQ(ReadText(folder / "v1.2/part"), "\n");
  EXPECT_FALSE(fs::exists(folder / "v1_x.2"));
}

TEST(FEMInputFile, AnEchoFileThatCannotBeOpenedIsNoError)
{
  TempFolder folder;
  Write(folder / "part.dat", "p\nq\n");
  fs::create_directory(folder / "part_x.dat");
  Reader reader(Write(folder / "a.inp", "INC part.dat\nb\n"), L"x");
  reader.Initialize();
  reader.currentOutput_ = new std::ofstream(folder / "a_x.inp");
  reader.ReadLine();
  EXPECT_NO_THROW(reader.IncludeNamedFile());
  EXPECT_TRUE(reader.currentOutput_->fail());
  EXPECT_EQ(reader.currentOutput_->precision(), 8);
  EXPECT_EQ(reader.ReadLine(), kOk);
  EXPECT_EQ(reader.GetCurrentLine(), "p");
  EXPECT_NO_THROW(*reader.currentOutput_ << "p\n");
  reader.ReadLine();
  reader.RestoreOutputStreamIfNeeded();
  EXPECT_TRUE(reader.currentOutput_->good()) << "the outer echo goes on";
}

TEST(FEMInputFile, WithoutAnOutputNothingIsWritten)
{
  TempFolder folder;
  Write(folder / "part.dat", "p\n");
  Reader reader(Write(folder / "a.inp", "INC part.dat\nb\n"), L"x");
  reader.Initialize();
  reader.ReadLine();
  reader.IncludeNamedFile();
  EXPECT_EQ(reader.currentOutput_, nullptr);
  EXPECT_TRUE(reader.outputStack_.empty());
  reader.ReadLine();
  EXPECT_TRUE(reader.restorePending_);
  reader.RestoreOutputStreamIfNeeded();
  EXPECT_FALSE(reader.restorePending_);
  EXPECT_EQ(reader.currentOutput_, nullptr);
  EXPECT_FALSE(fs::exists(folder / "part_x.dat"));
}

TEST(FEMInputFile, RestoreDoesNothingUntilAnIncludeHasEnded)
{
  TempFolder folder;
  Write(folder / "part.dat", "p\nq\n");
  Reader reader(Write(folder / "a.inp", "INC part.dat\nb\n"), L"x");
  reader.Initialize();
  auto* const outer     = new std::ofstream(folder / "a_x.inp");
  reader.currentOutput_ = outer;
  reader.RestoreOutputStreamIfNeeded();
  EXPECT_EQ(reader.currentOutput_, outer);

  reader.ReadLine();
  reader.IncludeNamedFile();
  std::ostream* const inner = reader.currentOutput_;
  reader.ReadLine();
  reader.RestoreOutputStreamIfNeeded();
  EXPECT_EQ(reader.currentOutput_, inner);
  reader.ReadLine();
  EXPECT_EQ(reader.currentOutput_, inner) << "the last line is still to be written";
  reader.RestoreOutputStreamIfNeeded();
  EXPECT_EQ(reader.currentOutput_, outer);
  EXPECT_TRUE(reader.outputStack_.empty());
  reader.RestoreOutputStreamIfNeeded();
  EXPECT_EQ(reader.currentOutput_, outer) << "once per include";
}

TEST(FEMInputFile, AnOutputSetInsideAnIncludeLeavesItsPointerBehind)
{
  TempFolder folder;
  Write(folder / "part.dat", "p\n");
  Reader reader(Write(folder / "a.inp", "INC part.dat\nb\n"), L"x");
  reader.Initialize();
  reader.ReadLine();
  reader.IncludeNamedFile();
  reader.currentOutput_ = new std::ofstream(folder / "inside");
  *reader.currentOutput_ << "p\n";
  reader.ReadLine();
  reader.RestoreOutputStreamIfNeeded();
  EXPECT_EQ(ReadText(folder / "inside"), "p\n") << "deleted, hence closed";
  EXPECT_NE(reader.currentOutput_, nullptr) << "the former value, which points nowhere";
  EXPECT_FALSE(reader.restorePending_);
  reader.currentOutput_ = nullptr;
}

TEST(FEMInputFile, AnOutputTakenAwayInsideAnIncludeBringsTheOuterOneBack)
{
  TempFolder folder;
  Write(folder / "part.dat", "p\n");
  Reader reader(Write(folder / "a.inp", "INC part.dat\nb\n"), L"x");
  reader.Initialize();
  auto* const outer     = new std::ofstream(folder / "a_x.inp");
  reader.currentOutput_ = outer;
  reader.ReadLine();
  reader.IncludeNamedFile();
  delete reader.currentOutput_;
  reader.currentOutput_ = nullptr;
  reader.ReadLine();
  reader.RestoreOutputStreamIfNeeded();
  EXPECT_EQ(reader.currentOutput_, outer);
  EXPECT_TRUE(reader.outputStack_.empty());
  EXPECT_FALSE(reader.restorePending_);
}

// The end of x is pending while y is entered: the first line of y restores the output of x, and the others go there. No
// line is lost or out of order in the copy of the tree.
TEST(FEMInputFile, AnIncludeAsLastLineOfAnIncludeLeavesItsEchoAfterOneLine)
{
  TempFolder folder;
  Write(folder / "x.inc", "x\nINC y.inc\n");
  Write(folder / "y.inc", "y1\ny2\ny3\n");
  Reader reader(Write(folder / "a.inp", "INC x.inc\nb\n"), L"c");
  Convert(reader, folder / "a_c.inp");
  reader.currentOutput_->flush();
  EXPECT_EQ(ReadText(folder / "y_c.inc"), "y1\n");
  EXPECT_EQ(ReadText(folder / "x_c.inc"), "x\nINC y.inc\ny2\ny3\n");
  EXPECT_EQ(ReadText(folder / "a_c.inp"), "INC x.inc\nb\n");
}

// ---- copies

TEST(FEMInputFile, ACopyRefersToTheSameStreams)
{
  TempFolder folder;
  Write(folder / "part.dat", "p\nq\n");
  Reader reader(Write(folder / "a.inp", "INC part.dat\nb\n"), L"x", 5);
  reader.spare_ = L"spare";
  reader.Initialize();
  reader.currentOutput_ = new std::ofstream(folder / "a_x.inp");
  reader.ReadLine();
  reader.IncludeNamedFile();
  reader.ReadLine();

  Reader copy(reader);
  EXPECT_EQ(copy.currentInput_, reader.currentInput_);
  EXPECT_EQ(copy.currentOutput_, reader.currentOutput_);
  EXPECT_EQ(copy.inputStack_, reader.inputStack_);
  EXPECT_EQ(copy.outputStack_, reader.outputStack_);
  EXPECT_EQ(copy.lineNumberStack_, (std::vector<int>{1}));
  EXPECT_EQ(copy.nextLineStack_, (std::vector<std::string>{"b"}));
  EXPECT_EQ(copy.inputPath_, reader.inputPath_);
  EXPECT_EQ(copy.name_, L"test");
  EXPECT_EQ(copy.spare_, L"spare");
  EXPECT_EQ(copy.GetPath(), reader.GetPath());
  EXPECT_EQ(copy.includeSuffix_, L"_x");
  EXPECT_EQ(copy.userNumber_, 5);
  EXPECT_EQ(copy.GetCurrentLine(), "p");
  EXPECT_EQ(copy.nextLine_, "q");
  EXPECT_EQ(copy.lineCounter_, 2);
  EXPECT_EQ(copy.currentLinePosition_, reader.currentLinePosition_);
  EXPECT_EQ(copy.nextLinePosition_, reader.nextLinePosition_);
  EXPECT_FALSE(copy.restorePending_);
  EXPECT_EQ(copy.endState_, 0);

  // The copy reads on where both stood; its strings and numbers are its own.
  reader.Detach();
  EXPECT_EQ(copy.ReadLine(), kEnded);
  EXPECT_EQ(copy.GetCurrentLine(), "q");
  EXPECT_EQ(reader.GetCurrentLine(), "p");
  EXPECT_EQ(reader.lineCounter_, 2);
  copy.RestoreOutputStreamIfNeeded();
  EXPECT_EQ(copy.ReadLine(), kEnded);
  EXPECT_EQ(copy.GetCurrentLine(), "b");
}

TEST(FEMInputFile, AssignmentTakesTheStreamsToo)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\ntwo\n"), L"x", 5);
  reader.Initialize();
  Reader target("other.inp");
  target = reader;
  EXPECT_EQ(target.currentInput_, reader.currentInput_);
  EXPECT_EQ(target.inputPath_, reader.inputPath_);
  EXPECT_EQ(target.GetPath(), reader.GetPath());
  EXPECT_EQ(target.includeSuffix_, L"_x");
  EXPECT_EQ(target.userNumber_, 5);
  EXPECT_EQ(target.nextLine_, "one");
  reader.Detach();
  EXPECT_EQ(target.ReadLine(), kOk);
  EXPECT_EQ(target.GetCurrentLine(), "one");
}

TEST(FEMInputFile, ACopyOfAnUnopenedReaderIsOneMore)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\n"));
  Reader     copy(reader);
  reader.Initialize();
  copy.Initialize();
  EXPECT_NE(reader.currentInput_, copy.currentInput_);
  reader.ReadLine();
  EXPECT_EQ(copy.ReadLine(), kEnded);
  EXPECT_EQ(copy.GetCurrentLine(), "one");
}

// ---- destruction

TEST(FEMInputFile, TheDestructorClosesTheEcho)
{
  TempFolder folder;
  {
    Reader reader(Write(folder / "a.inp", "one\ntwo\n"), L"x");
    reader.Initialize();
    reader.currentOutput_ = new std::ofstream(folder / "out");
    reader.ReadLine();
    *reader.currentOutput_ << reader.GetCurrentLine() << '\n';
  }
  EXPECT_EQ(ReadText(folder / "out"), "one\n");
}

#ifdef __linux__
// Even where a converter asked its stream to throw: nobody could catch it here.
TEST(FEMInputFile, AnEchoThatCannotBeClosedFailsSilently)
{
  TempFolder folder;
  Reader     reader(Write(folder / "a.inp", "one\n"));
  reader.Initialize();
  reader.currentOutput_ = new std::ofstream("/dev/full");
  reader.currentOutput_->exceptions(std::ios::failbit | std::ios::badbit);
  *reader.currentOutput_ << "one\n";
  EXPECT_TRUE(reader.currentOutput_->good()) << "still in the buffer";
}
#endif

// They stay open and allocated. This test keeps the pointers, so it can look at the streams and delete them.
TEST(FEMInputFile, DestroyedInsideAnIncludeItLeavesTheStreamsOfTheIncludingFiles)
{
  TempFolder folder;
  Write(folder / "part.dat", "p\nq\n");
  std::unique_ptr<std::istream> input;
  std::unique_ptr<std::ostream> output;
  {
    Reader reader(Write(folder / "a.inp", "INC part.dat\nb\nc\n"), L"x");
    reader.Initialize();
    output.reset(reader.currentOutput_ = new std::ofstream(folder / "a_x.inp"));
    input.reset(reader.currentInput_);
    reader.ReadLine();
    reader.IncludeNamedFile();
    reader.ReadLine();
    *reader.currentOutput_ << "p\n";
  }
  EXPECT_EQ(ReadText(folder / "part_x.dat"), "p\n") << "the included file's echo is closed";
  std::string line;
  EXPECT_TRUE(std::getline(*input, line)) << "the including file is open";
  EXPECT_EQ(line, "c");
  *output << "more\n" << std::flush;
  EXPECT_TRUE(output->good());
  EXPECT_EQ(ReadText(folder / "a_x.inp"), "INC part.dat\nmore\n");
}

// A converter that fails inside an include leaves the streams to nobody. That is the price of copies that share them:
// at most two streams a level, once per failed deck. The leak checker is told of these and of nothing else.
TEST(FEMInputFile, WhatADestroyedReaderLeavesIsLostWhenNobodyElseKnowsIt)
{
  TempFolder folder;
  Write(folder / "x.inc", "INC y.inc\n\n");
  Write(folder / "y.inc", "y\n");
  std::vector<const void*> left;
  {
    Reader reader(Write(folder / "a.inp", "INC x.inc\nb\n"), L"c");
    reader.Initialize();
    reader.currentOutput_ = new std::ofstream(folder / "a_c.inp");
    for (int level = 0; level < 2; ++level) {
      reader.ReadLine();
      reader.IncludeNamedFile();
    }
    left.insert(left.end(), reader.inputStack_.begin(), reader.inputStack_.end());
    left.insert(left.end(), reader.outputStack_.begin(), reader.outputStack_.end());
  }
  EXPECT_EQ(left.size(), 4u);
#ifdef QUILON_LEAK_CHECK
  for (const void* stream : left) __lsan_ignore_object(stream);
#endif
}

// ---- the virtual operations

TEST(FEMInputFile, AConverterMayOpenAndEndItsOwnWay)
{
  class Own : public Reader
  {
  public:
    using Reader::Reader;
    void Initialize() override
    {
      Reader::Initialize();
      ++opened;
    }
    bool end_of_file() override { return endState_ >= 1; }
    int  opened = 0;
  };
  TempFolder folder;
  Own        own(Write(folder / "a.inp", "one\ntwo\n"));
  Reader&    reader = own;
  EXPECT_EQ(ReadAll(reader).size(), 2u);
  EXPECT_EQ(own.opened, 1);
}
