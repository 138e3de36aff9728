// Indices and manifests that contradict themselves although every checksum is right: a failure that names the file,
// from whoever opens the database and from whoever checks it.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_ResultDatabase.h"

#include "AllocationFailure.h"
#include "Checksum.h"
#include "failure_message.h"
#include "Manifest.h"
#include "SegmentIndex.h"
#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

FED_DataDescriptor Key(int onf) { return FED_DataDescriptor(0, static_cast<FED_OnfId>(onf)); }

std::string ReadBytes(const std::filesystem::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void WriteBytes(const std::filesystem::path& path, const std::string& bytes)
{
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// A segment of scalars at the indices 4, 2 and 9, a history of two, ids of two nodes and the name of a kind.
class ForgedDatabase : public testing::Test
{
protected:
  void SetUp() override
  {
    FED_ResultDatabase database(database_, FED_ResultDatabase::Create);
    for (const std::size_t index : {4U, 2U, 9U})
      database.GetOrCreateDataBlock(Key(514), 0).SetScalarAt(index, 0.5 * static_cast<double>(index));
    for (const std::size_t index : {1U, 2U}) database.GetOrCreateDataBlock(Key(500), 0).SetScalarAt(index, 1.0);
    for (const int id : {7, -3}) database.GetIdMapsPool().FindOrAddIndex(0, id);
    database.Commit();
  }

  // Changes what segment and manifest say, or what the segment holds, and makes every checksum right again.
  // @param number of the segment
  void Forge(const std::function<void(Manifest& manifest, SegmentIndex& index, std::string& bytes)>& edit,
             std::size_t                                                                             number = 1) const
  {
    const auto        segment  = number == 1 ? segment_ : database_ / GetSegmentName(number);
    Manifest          manifest = DecodeManifest(ReadBytes(database_ / "manifest"), "manifest").manifest;
    SegmentEntry&     entry    = manifest.segments.at(number - 1);
    std::string       bytes    = ReadBytes(segment);
    const char* const at       = bytes.data() + entry.indexOffset;
    SegmentIndex      index =
        DecodeIndex(reinterpret_cast<const std::uint8_t*>(at), entry.indexBytes, bytes.size(), segment);
    edit(manifest, index, bytes);
    const auto fix = [&](StoredBytes& stored) {
      stored.checksum = GetChecksum(bytes.data() + stored.offset, static_cast<std::size_t>(stored.bytes));
    };
    for (IndexColumn& column : index.columns) fix(column.bytes);
    for (IndexExtent& extent : index.extents) fix(extent.keys);
    for (IndexIds& ids : index.ids) fix(ids.ids);
    const std::vector<std::uint8_t> encoded = EncodeIndex(index);
    ASSERT_EQ(encoded.size(), entry.indexBytes);
    std::memcpy(bytes.data() + entry.indexOffset, encoded.data(), encoded.size());
    entry.indexChecksum = GetChecksum(encoded.data(), encoded.size());
    SegmentHeaderBytes header{};
    std::memcpy(header.data(), bytes.data(), header.size());
    SegmentHeader decoded = DecodeHeader(header, segment);
    decoded.entry         = entry;
    header                = EncodeHeader(decoded);
    std::memcpy(bytes.data(), header.data(), header.size());
    std::memcpy(bytes.data() + decoded.copyOffset, encoded.data(), encoded.size());
    std::memcpy(bytes.data() + bytes.size() - kSegmentTailBytes, header.data(), kSegmentTailBytes);
    WriteBytes(segment, bytes);
    WriteBytes(database_ / "manifest", EncodeManifest(manifest));
  }

  // Reads all records and ids.
  std::string Open() const
  {
    return MessageOf([&] {
      const FED_ResultDatabase database(database_, FED_ResultDatabase::ReadOnly);
      for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors({})) {
        const FED_DataBlock& block = database.GetConstDataBlock(descriptor);
        for (auto index = block.Begin(); index != block.End(); ++index) block.GetScalarAt(*index);
      }
      database.GetIdMapsPool().FindIndex(0, 7);
    });
  }

  std::string Check() const
  {
    const FED_DatabaseReport report = FED_InspectDatabase(database_);
    return report.findings.empty() ? "no finding" : report.findings.front();
  }

  TempFolder            folder_;
  std::filesystem::path database_ = folder_ / "a.fed";
  std::filesystem::path segment_  = database_ / "segment-000001.h5";
};

// Positions in the index: blocks and extents ascend, so the scalars, which came first, are at 0.
constexpr std::size_t kScalars = 0;

}  // namespace

TEST_F(ForgedDatabase, WhatIsOnlyWrittenAnewIsWhole)
{
  Forge([](Manifest&, SegmentIndex& index, std::string&) {
    ASSERT_EQ(index.extents.size(), 2u);
    ASSERT_FALSE(index.extents[kScalars].keysAreRun);
  });
  EXPECT_EQ(Open(), "no failure");
  EXPECT_EQ(Check(), "no finding");
}

TEST_F(ForgedDatabase, BlockThatTheNextOneWouldReplaceIsRefused)
{
  Forge([](Manifest& manifest, SegmentIndex&, std::string&) { manifest.nextBlock = 2; });
  const std::string message =
      segment_.string() + ": its index is damaged: it has a block of number 2, the manifest says that all are below 2";
  EXPECT_EQ(Open(), message);
  EXPECT_EQ(Check(), message);
}

TEST_F(ForgedDatabase, WrongGreatestIndexIsFound)
{
  Forge([](Manifest&, SegmentIndex& index, std::string&) { index.extents[kScalars].maxKey = 8; });
  EXPECT_THAT(Open(), HasSubstr("the greatest index of the store's rows is 9, expected 8"));
  EXPECT_EQ(Check(), segment_.string() + ": chunk 0 (rows 0 to 2) of block " + Key(514).ToString() +
                         ", record indices: the greatest is 9, the index tells 8");
}

TEST_F(ForgedDatabase, IndexBeyondTheGreatestIsFoundAndItsRowsAreNotSalvaged)
{
  Forge([](Manifest&, SegmentIndex& index, std::string& bytes) {
    const std::uint32_t key = 0xffffffffu;
    std::memcpy(bytes.data() + index.extents[kScalars].keys.offset, &key, sizeof key);
  });
  EXPECT_THAT(Open(), HasSubstr("the store has index 4294967295, expected 0 to 2147483647"));
  const std::string message = segment_.string() + ": chunk 0 (rows 0 to 2) of block " + Key(514).ToString() +
                              ", record indices are damaged: one is 4294967295, expected 0 to 2147483647";
  EXPECT_EQ(Check(), message);
  FED_ResultDatabase      target;
  const FED_SalvageReport report = FED_SalvageDatabase(database_, target);
  EXPECT_EQ(report.losses, std::vector<std::string>{message});
  EXPECT_EQ(report.records, 2u);
  EXPECT_EQ(report.lostRecords, 3u);
}

TEST_F(ForgedDatabase, IndexThatIsThereTwiceIsFound)
{
  Forge([](Manifest&, SegmentIndex& index, std::string& bytes) {
    const std::uint32_t key = 9;
    std::memcpy(bytes.data() + index.extents[kScalars].keys.offset, &key, sizeof key);
  });
  EXPECT_THAT(Open(), HasSubstr("the store has index 9 twice"));
  EXPECT_EQ(Check(), "block " + Key(514).ToString() + ": record index 9 is there twice");
}

TEST_F(ForgedDatabase, RowWithAnotherIndexThanEarlierIsRefusedAndFound)
{
  {
    FED_ResultDatabase database(database_, FED_ResultDatabase::ReadWrite);
    database.GetOrCreateDataBlock(Key(514), 0).SetScalarAt(2, 1.0);
    database.Commit();
  }
  Forge(
      [](Manifest&, SegmentIndex& index, std::string&) {
        IndexExtent& extent = index.extents.at(0);
        ASSERT_EQ(extent.firstRow, 1u);
        ASSERT_TRUE(extent.keysAreRun);
        extent.firstKey = 3;
        extent.maxKey   = 3;
      },
      2);
  EXPECT_THAT(Open(), HasSubstr("the store has the indices 2 and 3 for row 1"));
  EXPECT_THAT(Check(), testing::StartsWith((database_ / "segment-000002.h5: ").string()));
  EXPECT_THAT(Check(), testing::EndsWith("row 1 has 3, an earlier segment tells 2"));
}

TEST_F(ForgedDatabase, WrongRangeOfValuesIsFoundByACheck)
{
  Forge([](Manifest&, SegmentIndex& index, std::string&) { index.columns[0].statistics.greatest = 99.0; });
  EXPECT_THAT(Check(), HasSubstr("the index tells another range than the values have"));
}

TEST_F(ForgedDatabase, WhatDoesNotFitTogetherIsRefused)
{
  struct Case
  {
    std::string                        expected;
    std::function<void(SegmentIndex&)> edit;
  };
  const std::string scalars = "block " + Key(514).ToString();
  const Case        cases[] = {
             {"ids of entity kind 0 start at index 2, expected 1", [](SegmentIndex& index) { index.ids[0].firstIndex = 2; }},
             {"row 0 of " + scalars + " is missing", [](SegmentIndex& index) { index.extents[kScalars].firstRow = 1; }},
             {"rows belong to no block", [](SegmentIndex& index) { index.extents[kScalars].block = 99; }},
             {"chunk 1 (rows 0 to 2) of " + scalars + " has rows of another chunk",
              [](SegmentIndex& index) { index.extents[kScalars].chunk = 1; }},
             {"chunk 0 (rows 0 to 2) of " + scalars + ", field 1, has 16 bytes",
              [](SegmentIndex& index) { index.columns[0].bytes.bytes = 16; }},
             {"chunk 0 (rows 0 to 2) of " + scalars + ", field 1, has 24 bytes",
              [](SegmentIndex& index) { index.blocks[kScalars].format = FED_RecordFormat::Parse("V"); }},
  };
  const std::string whole    = ReadBytes(segment_);
  const std::string manifest = ReadBytes(database_ / "manifest");
  for (const Case& one : cases) {
    Forge([&](Manifest&, SegmentIndex& index, std::string&) { one.edit(index); });
    EXPECT_EQ(Open(), segment_.string() + ": its index is damaged: " + one.expected);
    EXPECT_EQ(Check(), segment_.string() + ": its index contradicts others: " + one.expected);
    WriteBytes(segment_, whole);
    WriteBytes(database_ / "manifest", manifest);
  }
}

TEST_F(ForgedDatabase, DescriptorThatTwoBlocksShareIsRefused)
{
  Forge([](Manifest&, SegmentIndex& index, std::string&) { index.blocks[1].descriptor = index.blocks[0].descriptor; });
  EXPECT_THAT(Open(), HasSubstr("the database " + database_.string() + " has it twice"));
  EXPECT_EQ(Check(), "block " + Key(514).ToString() + " is there twice");
}

// Memory for all indices before them would be 16 GiB.
TEST_F(ForgedDatabase, IdsThatClaimAFarIndexTakeNoMemoryForIt)
{
  Forge([](Manifest&, SegmentIndex& index, std::string&) { index.ids[0].firstIndex = 2000000000; });
  const std::string                    claim = "ids of entity kind 0 start at index 2000000000, expected 1";
  FED_ResultDatabase                   target;
  const quilon_test::AllocationFailure counting(0);
  EXPECT_EQ(Open(), segment_.string() + ": its index is damaged: " + claim);
  EXPECT_EQ(Check(), segment_.string() + ": its index contradicts others: " + claim);
  const FED_SalvageReport report = FED_SalvageDatabase(database_, target);
  EXPECT_LT(counting.GetBytes(), std::size_t{16} << 20);
  EXPECT_EQ(report.losses, (std::vector<std::string>{segment_.string() + ": its index contradicts others: " + claim,
                                                     "the id map of entity kind 0: 1999999999 ids are lost"}));
  EXPECT_EQ(report.records, 2u);
  EXPECT_EQ(target.GetIdMapsPool().GetCount(0), 2u);
}

// Names with more digits sort before those with fewer.
TEST_F(ForgedDatabase, SegmentThatWasMergedIntoOneOfMoreDigitsIsNotSalvagedBesideIt)
{
  Forge([&](Manifest& manifest, SegmentIndex&, std::string&) {
    manifest.nextSegment        = 1000001;
    manifest.segments[0].number = 999999;
    manifest.segments[0].first = manifest.segments[0].last = 999999;
  });
  std::filesystem::rename(segment_, database_ / "segment-999999.h5");
  segment_ = database_ / "segment-999999.h5";
  std::filesystem::copy_file(segment_, database_ / "part.h5");
  Forge([&](Manifest& manifest, SegmentIndex&, std::string&) { manifest.segments[0].number = 1000000; });
  std::filesystem::rename(segment_, database_ / "segment-1000000.h5");
  std::filesystem::rename(database_ / "part.h5", segment_);
  std::filesystem::remove(database_ / "manifest");
  FED_ResultDatabase      target;
  const FED_SalvageReport report = FED_SalvageDatabase(database_, target);
  EXPECT_THAT(report.losses, Not(Contains(HasSubstr("contradicts"))));
  EXPECT_EQ(report.records, 5u);
}
