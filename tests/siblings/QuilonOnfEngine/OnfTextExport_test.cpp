#include <bundled/OnfTextExport.h>

#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfFileLayer.h>
#include <gtest/gtest.h>

#include "onf_text_support.h"
#include "QuilonDbConnector/QuilonDatabaseUtils.h"

namespace {

namespace fs = std::filesystem;

using quilon_test::TempFolder;

std::vector<OnfTextExport::Block> AllOf(const FED_Database& database)
{
  std::vector<OnfTextExport::Block> blocks;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors({}))
    blocks.push_back({&database, descriptor});
  return blocks;
}

class OnfTextExportTest : public testing::Test
{
protected:
  /// Temperatures of two load cases, ids not in their order, and a history of a scalar with a name.
  OnfTextExportTest()
  {
    for (const int id : {30, 10, -20}) SetScalar(database_, MakeKey(514, 1), id, id + 0.1);
    SetScalar(database_, MakeKey(514, 2), 10, 2.0);
    FED_DataDescriptor history = MakeKey(500, 1);
    history.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(10), 1801);
    database_.GetOrCreateDataBlock(history, 0).SetScalarAt(1, 0.5);
    database_.SetUserKindName(static_cast<FED_OnfId>(1801), "total force");
    database_.SetUserKindName(static_cast<FED_OnfId>(1000), "unused");
  }

  /// What a text database writes that the blocks are copied into.
  std::map<std::string, std::string> WriteThroughTextDatabase()
  {
    const fs::path       path = folder_ / "copied.onf";
    QuilonOnfTxtDatabase text(path.wstring());
    OpenToWrite(text);
    QuilonDatabaseUtils::copy_datablocks(database_, text, {}, QuilonDatabaseUtils::SkipEmptyBlocks);
    text.ReleaseDb(true);
    return ReadAllFiles(path);
  }

  TempFolder         folder_;
  fs::path           path_ = folder_ / "direct.onf";
  FED_ResultDatabase database_;
};

TEST_F(OnfTextExportTest, WritesWhatATextDatabaseWrites)
{
  OnfTextExport::Publish(path_, AllOf(database_));
  EXPECT_EQ(ReadAllFiles(path_).size(), 4u);
  EXPECT_EQ(ReadAllFiles(path_), WriteThroughTextDatabase());
}

TEST_F(OnfTextExportTest, WritesTheNamesOfItsBlocksKindsAlone)
{
  SetScalar(database_, MakeKey(1000, 1), 10, 2.0);
  database_.SetUserKindName(static_cast<FED_OnfId>(1000), "wear");
  database_.SetUserKindName(static_cast<FED_OnfId>(1001), "unused");
  OnfTextExport::Publish(path_, AllOf(database_));
  QuilonOnfTxtDatabase text(path_.wstring());
  OpenToRead(text);
  EXPECT_EQ(text.GetUserKindName(static_cast<FED_OnfId>(1000)), "wear");
  EXPECT_EQ(text.GetUserKindName(static_cast<FED_OnfId>(1001)), "");
  EXPECT_EQ(text.GetUserKindName(static_cast<FED_OnfId>(1801)), "total force");
}

TEST_F(OnfTextExportTest, ReplacesBlocksOfEqualKeysAndLeavesOthers)
{
  OnfTextExport::Publish(path_, {{&database_, MakeKey(514, 1)}, {&database_, MakeKey(514, 2)}});
  SetScalar(database_, MakeKey(514, 2), 10, 3.0);
  OnfTextExport::Publish(path_, {{&database_, MakeKey(514, 2)}});
  QuilonOnfTxtDatabase text(path_.wstring());
  OpenToRead(text);
  EXPECT_EQ(GetScalar(text, MakeKey(514, 1), 30), 30.1);
  EXPECT_EQ(GetScalar(text, MakeKey(514, 2), 10), 3.0);
}

TEST_F(OnfTextExportTest, ABlockWithoutRecordsEmptiesTheOneOfItsKey)
{
  OnfTextExport::Publish(path_, AllOf(database_));
  FED_ResultDatabase empty;
  empty.GetOrCreateDataBlock(MakeKey(514, 1), 0);
  OnfTextExport::Publish(path_, AllOf(empty));
  QuilonOnfTxtDatabase text(path_.wstring());
  OpenToRead(text);
  EXPECT_EQ(text.GetConstDataBlock(MakeKey(514, 1)).GetSize(), 0u);
  EXPECT_EQ(GetScalar(text, MakeKey(514, 2), 10), 2.0);
}

TEST_F(OnfTextExportTest, TextsOfBlocksMayBeMadeInPieces)
{
  const std::vector<OnfTextExport::Block> blocks = AllOf(database_);
  OnfTextExport::BlockTexts               texts(database_);
  std::vector<std::size_t>                positions;
  OnfTextExport::Writer(path_).PublishTexts(blocks, [&](std::size_t position, const OnfTextExport::TextSink& append) {
    positions.push_back(position);
    const FED_DataDescriptor& descriptor = blocks[position].descriptor;
    const std::size_t         count =
        dynamic_cast<const FED_ColumnDataBlock&>(database_.GetConstDataBlock(descriptor)).GetRecordCount();
    for (std::size_t first = 0; first < count; ++first) texts.Write(descriptor, first, 1, append);
  });
  EXPECT_EQ(positions, (std::vector<std::size_t>{0, 1, 2}));
  EXPECT_EQ(ReadAllFiles(path_), WriteThroughTextDatabase());
}

TEST_F(OnfTextExportTest, ABlockWhoseTextCannotBeMadeLeavesThoseOfOthersAsTheyAre)
{
  // Index 7 stands for no id.
  database_.GetOrCreateDataBlock(MakeKey(514, 3), 0).SetScalarAt(7, 1.0);
  OnfTextExport::BlockTexts texts(database_);
  const auto                write = [&](int loadCase) {
    std::string text;
    texts.Write(MakeKey(514, loadCase), 0, 1, [&](std::string_view piece) { text += piece; });
    return text;
  };
  const std::string expected = write(2);
  EXPECT_THROW(write(3), FED_Failure);
  EXPECT_EQ(write(2), expected);
  EXPECT_THROW(write(3), FED_Failure);
}

TEST_F(OnfTextExportTest, TheFolderMayBeTheOneThatABlockIsReadFrom)
{
  OnfTextExport::Publish(path_, AllOf(database_));
  const auto           before = ReadAllFiles(path_);
  QuilonOnfTxtDatabase text(path_.wstring());
  OpenToRead(text);
  OnfTextExport::Publish(path_, AllOf(text));
  EXPECT_EQ(ReadAllFiles(path_), before);
}

TEST_F(OnfTextExportTest, WhatIsThrownBeforeABlockPublishesNothing)
{
  OnfTextExport::Publish(path_, {{&database_, MakeKey(514, 1)}});
  const auto before = ReadAllFiles(path_);
  SetScalar(database_, MakeKey(514, 1), 30, 99.0);
  std::vector<std::size_t> positions;
  const auto               stopAtTheLast = [&](std::size_t position) {
    positions.push_back(position);
    if (position == 2) throw std::runtime_error("stop");
  };
  EXPECT_THROW(OnfTextExport::Publish(path_, AllOf(database_), stopAtTheLast), std::runtime_error);
  EXPECT_EQ(positions, (std::vector<std::size_t>{0, 1, 2}));
  EXPECT_EQ(ReadAllFiles(path_), before);
}

TEST_F(OnfTextExportTest, ABlockThatTheDatabaseDoesNotHaveIsAFailure)
{
  EXPECT_THROW(OnfTextExport::Publish(path_, {{&database_, MakeKey(514, 9)}}), FED_Failure);
  EXPECT_FALSE(fs::exists(path_));
}

TEST(OnfFileLayer, GivesBackTheOneThatWasSetBefore)
{
  FED_FileLayer        own;
  FED_FileLayer* const former = OnfFileLayer::Set(&own);
  EXPECT_EQ(&OnfFileLayer::Get(), &own);
  EXPECT_EQ(OnfFileLayer::Set(former), &own);
}

}  // namespace
