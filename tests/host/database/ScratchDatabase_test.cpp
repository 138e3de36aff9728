#include "database/ScratchDatabase.h"

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

#include <bundled/FED_ResultDatabase.h>
#include <gtest/gtest.h>

#include "database/DatabaseFolder.h"
#include "database/MemoryLimit.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "QuilonUtilities/FED_Failure.h"

#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

/// A temporary folder of our own.
class ScratchDatabaseTest : public testing::Test
{
protected:
  ScratchDatabaseTest() { Set(parent_.GetPath().string()); }
  ~ScratchDatabaseTest() override
  {
    if (hadOne_)
      Set(former_);
    else
      unsetenv("TMPDIR");
  }

  static void Set(const std::string& folder) { setenv("TMPDIR", folder.c_str(), 1); }

  std::size_t CountFiles() const
  {
    std::size_t count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(parent_.GetPath()))
      count += entry.is_regular_file() ? 1 : 0;
    return count;
  }

private:
  const bool        hadOne_ = std::getenv("TMPDIR") != nullptr;
  const std::string former_ = hadOne_ ? std::getenv("TMPDIR") : "";

protected:
  const quilon_test::TempFolder parent_;
};

TEST_F(ScratchDatabaseTest, RowsLieInAPrivateFolderUntilTheEnd)
{
  {
    const quilon::MemoryLimit limit(1);
    quilon::ScratchDatabase   scratch;
    ASSERT_EQ(std::distance(fs::directory_iterator(parent_.GetPath()), fs::directory_iterator()), 1);
    EXPECT_EQ(fs::directory_iterator(parent_.GetPath())->status().permissions(), fs::perms::owner_all);
    const std::size_t before = CountFiles();
    // Chunks of whole rows, more of them than stay in memory whatever the limit is.
    constexpr std::size_t kRecords = 450000;
    FED_DataBlock& block = scratch.Get().GetOrCreateDataBlock(FED_DataDescriptor(0, static_cast<FED_OnfId>(521)), 0);
    for (std::size_t i = 1; i <= kRecords; ++i) {
      const double tensor[6] = {static_cast<double>(i), 0, 0, 0, 0, 1};
      block.SetValuesAt(i, tensor);
    }
    EXPECT_GT(CountFiles(), before);
    for (std::size_t i = 1; i <= kRecords; i += 90000) {
      double tensor[6] = {};
      block.GetValuesAt(i, tensor);
      EXPECT_EQ(tensor[0], static_cast<double>(i));
    }
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(parent_.GetPath()), fs::directory_iterator()), 0);
}

TEST_F(ScratchDatabaseTest, ATemporaryFolderThatIsNotThereIsNamed)
{
  Set((parent_ / "gone").string());
  try {
    const quilon::ScratchDatabase scratch;
    ADD_FAILURE();
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.GetMessage().find("the temporary folder: "), 0u) << failure.GetMessage();
  }
}

TEST_F(ScratchDatabaseTest, LargeOnfFoldersAreReadIntoOneAndSmallOnesIntoMemory)
{
  const fs::path           path = parent_ / "a.onf";
  const FED_DataDescriptor key(0, static_cast<FED_OnfId>(500));
  {
    QuilonOnfTxtDatabase written(path.wstring());
    written.InitDb(FED_DatabaseDefs::WriteAccess, 0, L"", nullptr);
    written.GetOrCreateDataBlock(key, 1).SetScalarAt(7, 0.5);
    written.ReleaseDb(false);
  }
  const auto countFolders = [this] {
    return std::distance(fs::directory_iterator(parent_.GetPath()), fs::directory_iterator());
  };
  {
    const auto opened = quilon::OpenOnf(path);
    EXPECT_EQ(countFolders(), 1);  // what is read
  }
  {
    const quilon::MemoryLimit limit(1);
    const auto                opened = quilon::OpenOnf(path);
    EXPECT_EQ(countFolders(), 2);
    EXPECT_EQ(opened->GetConstDataBlock(key).GetScalarAt(7), 0.5);
    EXPECT_EQ(OnfStores::Get(), nullptr);
  }
  EXPECT_EQ(countFolders(), 1);
}

}  // namespace
