#include "text/OutputFile.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace {

/// What close() of this program answers: 0, or the error that it tells once it has closed.
int closeError = 0;

}  // namespace

// Takes the place of the C library's: no file system here loses bytes on closing.
extern "C" __attribute__((visibility("default"))) int close(int descriptor)
{
  const long result = syscall(SYS_close, descriptor);
  if (result != 0 || closeError == 0) return static_cast<int>(result);
  errno = closeError;
  return -1;
}

namespace {

namespace fs = std::filesystem;

using quilon::OutputFile;

std::string ReadAll(const fs::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void Publish(const fs::path& path, const std::string& text)
{
  OutputFile file(path);
  file.Write(text);
  file.Publish();
}

std::string FailureOf(const fs::path& path, const std::string& text)
{
  try {
    Publish(path, text);
  } catch (const FED_Failure& failure) {
    return failure.GetMessage();
  }
  return {};
}

class OutputFileTest : public testing::Test
{
protected:
  std::ptrdiff_t CountFiles() const
  {
    return std::distance(fs::directory_iterator(folder_.GetPath()), fs::directory_iterator());
  }

  quilon_test::TempFolder folder_;
  fs::path                path_ = folder_ / "out.txt";
};

TEST_F(OutputFileTest, TakesItsPlaceWhenItIsPublished)
{
  std::ofstream(path_) << "old";
  OutputFile file(path_);
  file.Write("new");
  EXPECT_EQ(ReadAll(path_), "old");
  file.Publish();
  EXPECT_EQ(ReadAll(path_), "new");
  EXPECT_EQ(CountFiles(), 1);
}

TEST_F(OutputFileTest, WithoutPublicationLeavesNothing)
{
  OutputFile(path_).Write("text");
  EXPECT_EQ(CountFiles(), 0);
}

TEST_F(OutputFileTest, AFinishedFileWaitsForItsPublication)
{
  std::ofstream(path_) << "old";
  OutputFile file(path_);
  file.Write("new");
  file.Finish();
  EXPECT_EQ(ReadAll(path_), "old");
  file.Publish();
  EXPECT_EQ(ReadAll(path_), "new");
  OutputFile(path_).Finish();
  EXPECT_EQ(ReadAll(path_), "new");
  EXPECT_EQ(CountFiles(), 1);
}

TEST_F(OutputFileTest, WhatWritesByPathWritesBeside)
{
  OutputFile file(path_);
  std::ofstream(file.PathToWrite()) << "text";
  EXPECT_FALSE(fs::exists(path_));
  file.Publish();
  EXPECT_EQ(ReadAll(path_), "text");
  const OutputFile null("/dev/null");
  EXPECT_THROW(null.PathToWrite(), FED_Failure);
}

TEST_F(OutputFileTest, ALinkStaysALinkToTheFileThatIsReplaced)
{
  fs::create_directory(folder_ / "sub");
  fs::create_symlink("sub/real.txt", folder_ / "second");
  fs::create_symlink("second", path_);
  std::ofstream(folder_ / "sub" / "real.txt") << "old";
  Publish(path_, "text");
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_EQ(ReadAll(folder_ / "sub" / "real.txt"), "text");
  EXPECT_EQ(CountFiles(), 3);
}

TEST_F(OutputFileTest, ThePermissionsOfTheFileThatIsReplacedStay)
{
  std::ofstream(path_) << "old";
  fs::permissions(path_, fs::perms(0640));
  Publish(path_, "new");
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms(0640));
}

TEST_F(OutputFileTest, NobodyForeseesTheNameBesideThePlace)
{
  const auto nameBeside = [&] {
    const OutputFile file(path_);
    return fs::directory_iterator(folder_.GetPath())->path().filename().string();
  };
  const std::string first = nameBeside();
  EXPECT_EQ(first.substr(0, 12), "out.txt.tmp" + first.substr(11, 1));
  EXPECT_NE(nameBeside(), first);
}

TEST_F(OutputFileTest, LongTextsArriveWhole)
{
  std::string text;
  for (int i = 0; i < 50000; ++i) text += std::to_string(i) + '\n';
  OutputFile file(path_);
  file.Write(text.substr(0, 100));
  file.Stream() << text.substr(100);
  file.Publish();
  EXPECT_EQ(ReadAll(path_), text);
}

TEST_F(OutputFileTest, APipeIsWrittenTo)
{
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  const int reader = open(path_.c_str(), O_RDONLY | O_NONBLOCK);
  Publish(path_, "text");
  char buffer[8] = {};
  EXPECT_EQ(read(reader, buffer, sizeof buffer), 4);
  EXPECT_EQ(std::string(buffer), "text");
  EXPECT_TRUE(fs::is_fifo(path_));
  close(reader);
}

TEST_F(OutputFileTest, FilesOfAWorkingDatabaseAreRefusedHoweverTheyAreReached)
{
  const fs::path named = folder_ / "new.FED";
  const fs::path other = folder_ / "renamed";
  const fs::path link  = folder_ / "link";
  fs::create_directory(named);
  fs::create_directory(other);
  std::ofstream(other / "manifest") << "kept";
  fs::create_directory_symlink(named, link);
  fs::create_symlink(other / "manifest", path_);
  for (const fs::path& path : {named / "a", other / "manifest", other / "b", link / "a", path_}) {
    const std::string expected = path.string() + ": inside a working database, expected a place outside";
    EXPECT_EQ(FailureOf(path, "text"), expected);
    EXPECT_THROW(quilon::CheckOutputFile(path), FED_Failure);
  }
  EXPECT_EQ(ReadAll(other / "manifest"), "kept");
  EXPECT_TRUE(fs::is_empty(named));
  EXPECT_NO_THROW(quilon::CheckOutputFile(folder_ / "a.fed"));
}

TEST_F(OutputFileTest, BytesThatAreLostInClosingAreToldAndTheOldFileStays)
{
  std::ofstream(path_) << "old";
  OutputFile file(path_);
  file.Write("new");
  closeError = EDQUOT;
  EXPECT_THAT([&] { file.Publish(); },
              testing::Throws<FED_Failure>(
                  testing::Property(&FED_Failure::GetMessage, path_.string() + ": cannot close: Disk quota exceeded")));
  closeError = 0;
  EXPECT_EQ(ReadAll(path_), "old");
}

TEST_F(OutputFileTest, WhatCannotBeWrittenIsNamed)
{
  const std::string expected = ": expected a file that can be written";
  fs::create_symlink("/dev/full", path_);
  EXPECT_EQ(FailureOf(path_, "text"), path_.string() + expected + ": No space left on device");
  const fs::path lost = folder_ / "none" / "out.txt";
  EXPECT_EQ(FailureOf(lost, "text"), lost.string() + expected + ": No such file or directory");
  EXPECT_EQ(FailureOf(folder_.GetPath(), "text"),
            folder_.GetPath().string() + ": expected a file to write, found a folder");
}

}  // namespace
