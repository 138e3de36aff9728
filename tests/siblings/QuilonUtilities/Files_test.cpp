#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "QuilonUtilities/LoadTextFileFast.h"
#include "QuilonUtilities/QuilonFileUtil.h"

namespace {

namespace fs = std::filesystem;

/// A folder of its own for each test.
class FilesTest : public ::testing::Test
{
protected:
  void SetUp() override
  {
    const auto* const info = ::testing::UnitTest::GetInstance()->current_test_info();
    folder_                = fs::path(::testing::TempDir()) / ("quilon_" + std::string(info->name()));
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  /// @param name ASCII
  std::wstring Write(const std::string& name, const std::string& text) const
  {
    const fs::path path = folder_ / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.wstring();
  }

  fs::path folder_;
};

struct Loaded
{
  bool                     success;
  std::vector<std::string> lines;
  std::size_t              lineCount;
};

Loaded Load(const std::wstring& path)
{
  Loaded loaded{false, {"left over"}, 77};
  loaded.success = LoadTextFileFast(path.c_str(), loaded.lines, loaded.lineCount);
  EXPECT_EQ(loaded.lineCount, loaded.lines.size());
  return loaded;
}

using Lines = std::vector<std::string>;

TEST_F(FilesTest, LoadsLinesOfEitherConvention)
{
  struct Row
  {
    const char* text;
    Lines       lines;
  };
  const Row rows[] = {
      {"", {}},
      {"\n", {""}},
      {"\r\n", {""}},
      {"a", {"a"}},
      {"a\n", {"a"}},
      {"a\n\n", {"a", ""}},
      {"a\r\nb\r\n", {"a", "b"}},
      {"a\r\nb\nc", {"a", "b", "c"}},
      {"a\rb\n", {"a\rb"}},
      {"a\r\r\n", {"a\r"}},
      {"a\r", {"a\r"}},  // no line feed behind it
      {"\n\r\n\n", {"", "", ""}},
  };
  for (const Row& row : rows) {
    const Loaded loaded = Load(Write("text", row.text));
    EXPECT_TRUE(loaded.success);
    EXPECT_EQ(loaded.lines, row.lines) << ::testing::PrintToString(row.text);
  }
}

TEST_F(FilesTest, LoadsNullsAndFilesAroundTheBufferSize)
{
  EXPECT_EQ(Load(Write("null", std::string("a\0b\nc", 5))).lines, (Lines{std::string("a\0b", 3), "c"}));
  for (const std::size_t size : {4094U, 4095U, 4096U, 4097U, 8191U, 8192U, 8193U, 200000U}) {
    const std::string text = std::string(size - 2, 'x') + "\nz";
    EXPECT_EQ(Load(Write("big", text)).lines, (Lines{std::string(size - 2, 'x'), "z"})) << size;
  }
}

#ifdef __linux__
TEST_F(FilesTest, LoadsAFileWhoseSizeTheSystemDoesNotTell)
{
  // The kernel's own files say that they are empty and are not.
  const Loaded loaded = Load(L"/proc/self/limits");
  EXPECT_TRUE(loaded.success);
  EXPECT_GT(loaded.lineCount, 3U);
}
#endif

TEST_F(FilesTest, ReachesAPathBeyondAsciiInAnyLocale)
{
  std::ofstream(folder_ / fs::path(u8"m\u00e9sh \u20ac \U0001F600.txt"), std::ios::binary) << "ok\n";
  const std::wstring path = folder_.wstring() + L"/m\u00e9sh \u20ac \U0001F600.txt";
  EXPECT_EQ(Load(path).lines, Lines{"ok"});
  EXPECT_TRUE(QuilonFileUtil::FileExists(path));
}

TEST_F(FilesTest, ReportsWhatCannotBeReadAndEmptiesBothOutputs)
{
  for (const fs::path& path : {folder_ / "missing", folder_, folder_ / "missing" / "deeper", fs::path()}) {
    const Loaded loaded = Load(path.wstring());
    EXPECT_FALSE(loaded.success) << path;
    EXPECT_TRUE(loaded.lines.empty()) << path;
    EXPECT_EQ(loaded.lineCount, 0U) << path;
  }
}

TEST_F(FilesTest, ExistsForAFileAndForAFolder)
{
  EXPECT_TRUE(QuilonFileUtil::FileExists(Write("file", "")));
  EXPECT_TRUE(QuilonFileUtil::FileExists(folder_.wstring()));
  EXPECT_FALSE(QuilonFileUtil::FileExists((folder_ / "missing").wstring()));
  EXPECT_FALSE(QuilonFileUtil::FileExists(L""));
  EXPECT_FALSE(QuilonFileUtil::FileExists(Write("file", "") + L"/below"));
}

TEST_F(FilesTest, APathThatIsNoTextNamesNothing)
{
  const std::wstring lone(1, static_cast<wchar_t>(0xD800));
  EXPECT_FALSE(QuilonFileUtil::FileExists((folder_.wstring() + L"/") + lone));
  FedStatusCode status = FedStatusSuccess;
  EXPECT_FALSE(QuilonFileUtil::IsExistingDir((folder_.wstring() + L"/") + lone, status));
  EXPECT_EQ(status, FedStatusNotFound);
}

TEST_F(FilesTest, IsAnExistingFolderOnlyWhereOneIs)
{
  FedStatusCode status = static_cast<FedStatusCode>(99);
  EXPECT_TRUE(QuilonFileUtil::IsExistingDir(folder_.wstring(), status));
  EXPECT_EQ(status, FedStatusSuccess);

  EXPECT_FALSE(QuilonFileUtil::IsExistingDir(Write("file", ""), status));
  EXPECT_EQ(status, FedStatusNotFound);
  status = FedStatusSuccess;
  EXPECT_FALSE(QuilonFileUtil::IsExistingDir((folder_ / "missing").wstring(), status));
  EXPECT_EQ(status, FedStatusNotFound);
  status = FedStatusSuccess;
  EXPECT_FALSE(QuilonFileUtil::IsExistingDir(Write("file", "") + L"/below", status));
  EXPECT_EQ(status, FedStatusNotFound);
  status = FedStatusSuccess;
  EXPECT_FALSE(QuilonFileUtil::IsExistingDir(L"", status));
  EXPECT_EQ(status, FedStatusNotFound);
}

TEST_F(FilesTest, TellsWhenTheSystemCannotSay)
{
  // A name longer than any file system takes.
  FedStatusCode status = FedStatusSuccess;
  EXPECT_FALSE(QuilonFileUtil::IsExistingDir((folder_ / std::wstring(5000, L'x')).wstring(), status));
  EXPECT_EQ(status, FedStatusSystemError);
  EXPECT_FALSE(QuilonFileUtil::FileExists((folder_ / std::wstring(5000, L'x')).wstring()));
}

}  // namespace
