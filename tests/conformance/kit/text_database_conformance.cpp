#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonDbConnector/FED_DatabaseDefs.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonOnfEngine/QuilonOnfTxtDatabase.h>

#include "foreign.h"
#include "support.h"

namespace conformance {
namespace {

using FED_DatabaseDefs::ReadAccess;
using FED_DatabaseDefs::WriteAccess;

constexpr std::size_t kCacheSize = 1024;  // what the library passes

class TextDatabaseConformance : public FolderTest
{
protected:
  /// A database over the folder "db".
  std::unique_ptr<QuilonOnfTxtDatabase> Open(FED_DatabaseDefs::AccessMode mode) const
  {
    auto database = std::make_unique<QuilonOnfTxtDatabase>(Path("db"));
    database->InitDb(mode, kCacheSize, L"", nullptr);
    return database;
  }

  /// Writes one scalar at index 1 and publishes it.
  void Publish(const FED_DataDescriptor& key, double value) const
  {
    const auto database = Open(WriteAccess);
    database->GetOrCreateDataBlock(key, 0).SetScalarAt(1, value);
    database->ReleaseDb(true);
  }

  /// The bytes of every file of the folder, by name.
  std::map<std::string, std::string> Files() const
  {
    std::map<std::string, std::string> files;
    if (!std::filesystem::exists(folder_ / "db")) return files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_ / "db")) {
      if (!entry.is_regular_file()) continue;
      std::ifstream in(entry.path(), std::ios::binary);
      files[entry.path().lexically_relative(folder_).string()] =
          std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    return files;
  }
};

TEST(AccessModeConformance, ReadingIsZeroAndWritingIsOne)
{
  EXPECT_EQ(static_cast<int>(ReadAccess), 0);
  EXPECT_EQ(static_cast<int>(WriteAccess), 1);
}

TEST_F(TextDatabaseConformance, IsInitializedFromInitDbToReleaseDb)
{
  QuilonOnfTxtDatabase database(Path("db"));
  EXPECT_FALSE(database.IsInitialized());
  database.InitDb(WriteAccess, kCacheSize, L"", nullptr);
  EXPECT_TRUE(database.IsInitialized());
  database.ReleaseDb(true);
  EXPECT_FALSE(database.IsInitialized());
}

TEST_F(TextDatabaseConformance, WhatIsReleasedIsReadAgain)
{
  {
    QuilonOnfTxtDatabase database(Path("db"));
    database.InitDb(WriteAccess, kCacheSize, L"", nullptr);
    database.GetOrCreateDataBlock(Key(kHistory), 0).SetScalarAt(3, -0.0);
    database.CreateDataBlock(Key(kUserMatrix), 1, 20, "IIbDbLbLb");
    database.SetUserKindName(static_cast<FED_OnfId>(kUserMatrix), "damping");
    FED_IdDataBlock(database.GetOrCreateDataBlock(Key(kUserScalar), 0), database.GetIdMapsPool(), false)
        .SetScalar(30, 1.5);
    database.GetOrCreateDataBlock(Key(kHistory, 9), 0);
    database.DeleteDataBlock(Key(kHistory, 9));
    database.ReleaseDb(false);
  }
  QuilonOnfTxtDatabase database(Path("db"));
  database.InitDb(ReadAccess, kCacheSize, L"", nullptr);
  EXPECT_EQ(database.GetDataDescriptors({}).size(), 3U);
  EXPECT_EQ(database.GetDataBlocks({}).size(), 3U);
  EXPECT_TRUE(database.HasDataBlock(Key(kHistory)));
  EXPECT_TRUE(SameBits(database.GetConstDataBlock(Key(kHistory)).GetScalarAt(3), -0.0));
  EXPECT_TRUE(database.HasDataBlock(Key(kUserMatrix)));
  EXPECT_EQ(database.GetUserKindName(static_cast<FED_OnfId>(kUserMatrix)), "damping");
  const QuilonOnfTxtDatabase& shown = database;
  // Named with its class: a call through the virtual table leaves no trace of what it ran.
  const FED_ConstIdDataBlock view(database.GetDataBlock(Key(kUserScalar)), shown.QuilonOnfTxtDatabase::GetIdMapsPool());
  double                     value = 0.0;
  view.GetScalar(30, value);
  EXPECT_EQ(value, 1.5);
  database.ReleaseDb(true);
}

TEST_F(TextDatabaseConformance, ShowsItsBlocksAsASet)
{
  Publish(Key(kHistory, 1), 1.5);
  const auto           database = Open(ReadAccess);
  FED_DataBlock* const block    = database->GetDataBlockSet().GetDataBlockInstance(Key(kHistory, 1));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(block->GetScalarAt(1), 1.5);
  EXPECT_EQ(database->GetDataBlockSet().GetDataBlockInstance(Key(kHistory, 2)), nullptr);
  database->ReleaseDb(true);
}

TEST_F(TextDatabaseConformance, EqualKeysAreReplacedAndOtherBlocksStay)
{
  Publish(Key(kHistory, 1), 1.0);
  Publish(Key(kHistory, 2), 2.0);
  {
    const auto database = Open(WriteAccess);
    if (database->HasDataBlock(Key(kHistory, 1))) database->DeleteDataBlock(Key(kHistory, 1));
    database->GetOrCreateDataBlock(Key(kHistory, 1), 0).SetScalarAt(5, 9.0);
    database->ReleaseDb(true);
  }
  const auto database = Open(ReadAccess);
  EXPECT_EQ(database->GetDataDescriptors({}).size(), 2U);
  EXPECT_EQ(Visited(database->GetDataBlock(Key(kHistory, 1))), std::vector<std::size_t>{5});
  EXPECT_EQ(database->GetDataBlock(Key(kHistory, 2)).GetScalarAt(1), 2.0);
  database->ReleaseDb(true);
}

TEST_F(TextDatabaseConformance, DestroyedWithoutReleaseItLeavesTheFolderAsItWas)
{
  {
    const auto database = Open(WriteAccess);
    database->GetOrCreateDataBlock(Key(kHistory, 1), 0).SetScalarAt(1, 1.0);
  }
  EXPECT_TRUE(Files().empty());
  Publish(Key(kHistory, 1), 1.0);
  const auto before = Files();
  {
    const auto database = Open(WriteAccess);
    database->GetOrCreateDataBlock(Key(kHistory, 2), 0).SetScalarAt(1, 2.0);
  }
  EXPECT_EQ(Files(), before);
}

TEST_F(TextDatabaseConformance, ReadingLeavesTheFolderAsItIs)
{
  Publish(Key(kHistory, 1), 1.0);
  const auto before = Files();
  {
    const auto database = Open(ReadAccess);
    EXPECT_EQ(database->GetDataBlock(Key(kHistory, 1)).GetScalarAt(1), 1.0);
    database->ReleaseDb(true);
  }
  EXPECT_EQ(Files(), before);
}

TEST_F(TextDatabaseConformance, EqualDatabasesGiveEqualBytes)
{
  const auto write = [this](std::vector<int> ids) {
    const auto      database = Open(WriteAccess);
    FED_IdDataBlock view(database->GetOrCreateDataBlock(Key(kUserScalar), 0), database->GetIdMapsPool(), false);
    for (const int id : ids) view.SetScalar(id, 0.1 * id);
    database->ReleaseDb(true);
    return Files();
  };
  const auto first = write({30, -10, 20});
  std::filesystem::remove_all(folder_ / "db");
  EXPECT_EQ(write({20, 30, -10}), first);
}

TEST_F(TextDatabaseConformance, IdsStandInTheOrderOfTheMapsThatAreHandedOver)
{
  {
    const auto      database = Open(WriteAccess);
    FED_IdDataBlock view(database->GetOrCreateDataBlock(Key(kUserScalar), 0), database->GetIdMapsPool(), false);
    for (const int id : {10, 20, 30}) view.SetScalar(id, id);
    database->ReleaseDb(true);
  }
  QuilonOnfTxtDatabase donor(Path("donor"));
  donor.InitDb(WriteAccess, kCacheSize, L"", nullptr);
  for (const int id : {30, 99, 10}) donor.GetIdMapsPool().FindOrAddIndex(kNodeKind, id);
  const QuilonOnfTxtDatabase& shown = donor;
  QuilonOnfTxtDatabase        database(Path("db"));
  database.InitDb(ReadAccess, kCacheSize, L"name", &shown.GetIdMapsPool());
  const FED_ConstIdDataBlock view(database.GetDataBlock(Key(kUserScalar)), database.GetIdMapsPool());
  for (const int id : {10, 20, 30}) {
    double value = 0.0;
    view.GetScalar(id, value);
    EXPECT_EQ(value, id);
  }
  EXPECT_EQ(database.GetIdMapsPool().FindIndex(kNodeKind, 30), 1U);
  EXPECT_EQ(database.GetIdMapsPool().FindIndex(kNodeKind, 10), 3U);
  database.ReleaseDb(true);
}

TEST_F(TextDatabaseConformance, AFolderThatIsNotThereIsAFailureToRead)
{
  QuilonOnfTxtDatabase database(Path("db"));
  EXPECT_THROW(database.InitDb(ReadAccess, kCacheSize, L"", nullptr), FED_Failure);
  EXPECT_FALSE(database.IsInitialized());
}

TEST_F(TextDatabaseConformance, AFolderThatIsNoTextDatabaseIsAFailure)
{
  std::filesystem::create_directories(folder_ / "db");
  Write("db/readme", "not a database\n");
  QuilonOnfTxtDatabase database(Path("db"));
  EXPECT_THROW(database.InitDb(ReadAccess, kCacheSize, L"", nullptr), FED_Failure);
}

}  // namespace
}  // namespace conformance
