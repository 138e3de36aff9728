#include "file_input.h"

#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <typeinfo>
#include <utility>

#include <gtest/gtest.h>

#ifdef __unix__
#  include <fcntl.h>
#  include <sys/stat.h>
#  include <unistd.h>
#endif

#include "FEMInputFile.h"
#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;

constexpr std::size_t kReadAhead = 65536;  // bytes that the buffer holds

std::filesystem::path Write(const std::filesystem::path& path, const std::string& text)
{
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

/// Lines of random lengths and either convention, `size` bytes of them.
std::string RandomLines(std::size_t size, std::mt19937& random)
{
  std::string text;
  while (text.size() < size) {
    const std::size_t longest = random() % 50 == 0 ? 20000 : 80;
    const std::size_t length  = random() % longest;
    text.append(length, static_cast<char>('a' + random() % 26));
    text += random() % 2 == 0 ? "\n" : "\r\n";
  }
  text.resize(size);
  return text;
}

/// One operation that readers of a stream use, with what it answers.
std::string Operate(std::istream& in, unsigned operation, long long argument)
{
  switch (operation) {
    case 0:
      return std::to_string(in.get());
    case 1:
      return std::to_string(in.peek());
    case 2:
      in.unget();
      return "";
    case 3:
      in.seekg(argument);
      return "";
    case 4:
      in.seekg(-(argument % 150), std::ios::cur);
      return "";
    case 5:
      in.seekg(-(argument % 1000), std::ios::end);
      return "";
    case 6:
      in.clear();
      return "";
    case 7:
      in.ignore(argument % 2000, '\n');
      return std::to_string(in.gcount());
    case 8: {
      std::string bytes(static_cast<std::size_t>(argument % 9000), '\0');
      in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
      return bytes.substr(0, static_cast<std::size_t>(in.gcount()));
    }
    case 9: {
      const int next = in.get();
      if (next != EOF) in.putback(static_cast<char>(next));
      return std::to_string(next);
    }
    default: {
      std::string line = "untouched";
      std::getline(in, line);
      return line;
    }
  }
}

}  // namespace

// Not beside a plain file stream: that of libstdc++ 12 delivers a stale character for unget() behind a long read().
TEST(FileInput, DoesWhatAStreamOverTheSameTextDoes)
{
  TempFolder   folder;
  std::mt19937 random(7);
  for (const std::size_t size : {std::size_t{1}, kReadAhead - 1, kReadAhead, kReadAhead + 1, 3 * kReadAhead}) {
    const std::string  text = RandomLines(size, random);
    FileInput          in(Write(folder / "lines", text));
    std::istringstream expected(text);
    for (int step = 0; step < 3000; ++step) {
      const auto        operation = static_cast<unsigned>(random() % 24);
      const auto        argument  = static_cast<long long>(random() % (size + 1));
      const std::string context =
          std::to_string(size) + " bytes, step " + std::to_string(step) + ", operation " + std::to_string(operation);
      ASSERT_EQ(Operate(in, operation, argument), Operate(expected, operation, argument)) << context;
      ASSERT_EQ(in.tellg(), expected.tellg()) << context;
      ASSERT_EQ(in.rdstate(), expected.rdstate()) << context;
      if (in.eof() || random() % 100 == 0) {
        in.clear();
        expected.clear();
        in.seekg(argument / 2);
        expected.seekg(argument / 2);
      }
    }
  }
}

TEST(FileInput, TakesTheLinesThatHaveBeenReadAhead)
{
  TempFolder     folder;
  FileInput      in(Write(folder / "lines", "one\ntwo\r\n\r\n\nlast"));
  std::string    line;
  std::streamoff position = -7;
  EXPECT_FALSE(in.TakeLine(line, position)) << "nothing has been read yet";
  EXPECT_EQ(position, -7);
  in.peek();

  const std::pair<const char*, std::streamoff> expected[] = {{"one", 0}, {"two", 4}, {"", 9}, {"", 11}};
  for (const auto& [text, place] : expected) {
    ASSERT_TRUE(in.TakeLine(line, position));
    EXPECT_EQ(line, text);
    EXPECT_EQ(position, place);
  }
  EXPECT_FALSE(in.TakeLine(line, position)) << "the last line has no line feed";
  EXPECT_EQ(line, "");
  EXPECT_EQ(position, 11);
  EXPECT_EQ(in.tellg(), 12);
}

TEST(FileInput, TakesNothingFromAStreamThatIsNotInOrder)
{
  TempFolder     folder;
  FileInput      in(Write(folder / "lines", "one\ntwo\nthree\n"));
  std::string    line     = "untouched";
  std::streamoff position = -7;
  in.peek();

  in.setstate(std::ios::failbit);
  EXPECT_FALSE(in.TakeLine(line, position));
  in.clear();

  std::ofstream tied(folder / "tied");
  in.tie(&tied);
  EXPECT_FALSE(in.TakeLine(line, position)) << "reading flushes the tied stream";
  in.tie(nullptr);

  in.close();
  EXPECT_FALSE(in.TakeLine(line, position));
  EXPECT_EQ(line, "untouched");
  EXPECT_EQ(position, -7);
}

TEST(FileInput, ItsOwnFileBufferHoldsTheFile)
{
  TempFolder     folder;
  FileInput      in(Write(folder / "lines", "one\ntwo\n"));
  std::ifstream& file = in;
  EXPECT_TRUE(file.is_open());
  EXPECT_TRUE(file.rdbuf()->is_open());
  EXPECT_EQ(file.get(), 'o');
  file.close();
  EXPECT_FALSE(file.is_open());
  EXPECT_TRUE(file.good());
  EXPECT_EQ(file.tellg(), -1);
  EXPECT_EQ(file.get(), EOF) << "what was read ahead is gone too";
}

TEST(FileInput, AMissingFileLeavesTheStreamInTheFailState)
{
  TempFolder folder;
  FileInput  in(folder / "missing");
  EXPECT_TRUE(in.fail());
  EXPECT_FALSE(in.bad());
  EXPECT_FALSE(in.is_open());
  std::string    line;
  std::streamoff position = 0;
  EXPECT_FALSE(in.TakeLine(line, position));
}

TEST(FileInput, ACharacterThatIsPutBackIsReadInPlaceOfTheOneBefore)
{
  TempFolder folder;
  FileInput  in(Write(folder / "text", std::string(kReadAhead, 'a') + "bc"));
  in.ignore(2);
  EXPECT_TRUE(in.putback('X'));
  EXPECT_EQ(in.tellg(), 1);
  EXPECT_EQ(in.get(), 'X');
  EXPECT_EQ(in.get(), 'a') << "the one behind is as it was";

  // Across what has been read ahead.
  in.seekg(kReadAhead);
  EXPECT_EQ(in.peek(), 'b');
  EXPECT_TRUE(in.putback('Y'));
  EXPECT_EQ(in.get(), 'Y');
  EXPECT_EQ(in.get(), 'b');
}

TEST(FileInput, NothingCanBePutBackBeforeTheBeginning)
{
  TempFolder folder;
  FileInput  in(Write(folder / "text", "ab"));
  EXPECT_FALSE(in.putback('X'));
  EXPECT_TRUE(in.bad());
}

TEST(FileInput, TellsWhatCanBeReadAtOnceLikeAPlainStream)
{
  TempFolder    folder;
  const auto    path = Write(folder / "text", "three");
  FileInput     in(path);
  std::ifstream plain(path, std::ios::binary);
  std::istream& ours = in;
  EXPECT_EQ(ours.rdbuf()->in_avail(), plain.rdbuf()->in_avail());
  EXPECT_EQ(in.get(), 't');
  EXPECT_EQ(ours.rdbuf()->in_avail(), 4);
}

#ifdef __unix__
// A reader that waited for a full buffer would never see these lines: their writer waits too.
TEST(FileInput, APipeDeliversItsLinesAsTheyComeAndHasNoPositions)
{
  TempFolder                  folder;
  const std::filesystem::path path = folder / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const int writer = open(path.c_str(), O_RDWR);  // so that no open() waits for the other end
  ASSERT_GE(writer, 0);
  FileInput   in(path);
  std::string line;
  for (const std::string text : {"one", "two"}) {
    ASSERT_EQ(write(writer, (text + "\n").c_str(), 4), 4);
    EXPECT_TRUE(std::getline(in, line));
    EXPECT_EQ(line, text);
    EXPECT_EQ(in.tellg(), -1);
    in.clear();
  }
  ASSERT_EQ(write(writer, "a\nlast", 6), 6);
  EXPECT_EQ(in.peek(), 'a');
  std::streamoff position = -7;
  EXPECT_FALSE(in.TakeLine(line, position)) << "a line goes with its place";
  EXPECT_FALSE(in.seekg(0));
  in.clear();
  close(writer);
  EXPECT_TRUE(std::getline(in, line));
  EXPECT_TRUE(std::getline(in, line));
  EXPECT_EQ(line, "last");
  EXPECT_TRUE(in.eof());
}
#endif

#ifdef __linux__
// A file that opens and fails when it is read.
TEST(FileInput, AFailedReadShowsInTheState)
{
  FileInput   in("/proc/self/mem");
  std::string line;
  EXPECT_FALSE(std::getline(in, line));
  EXPECT_TRUE(in.bad());
}
#endif

namespace {

class Reader : public FEMInputFile
{
public:
  explicit Reader(const std::filesystem::path& path) : FEMInputFile(L"test", path.wstring(), L"", 0) {}

  void ReadModel() override {}
  void CheckModel() override {}
  void ConvertModel() override {}

  using FEMInputFile::Initialize;

  bool IsOfTheFastKind() const { return typeid(*currentInput_) == typeid(FileInput); }
};

}  // namespace

// The fast way through lines is for this kind of stream alone; others are read as well, at a third of the speed.
TEST(FileInput, IsWhatReadersOpen)
{
  const TempFolder folder;
  Reader           reader(Write(folder / "a.inp", "one\n"));
  reader.Initialize();
  EXPECT_TRUE(reader.IsOfTheFastKind());
}
