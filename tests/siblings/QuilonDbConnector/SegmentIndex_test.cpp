#include "SegmentIndex.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "failure_message.h"
#include "QuilonUtilities/FED_Failure.h"
#include "store_support.h"

namespace {

using testing::StartsWith;

constexpr std::uint64_t kFileBytes = 100000;

SegmentIndex MakeIndex()
{
  SegmentIndex index;
  index.blocks   = {MakeBlock(1, "T"), MakeBlock(2, "IDb"), MakeBlock(3, "")};
  index.deleted  = {7, 9};
  index.ids      = {{0, 1, {600, 8, 0x11}}, {14, 5, {608, 4, 0x22}}};
  index.hasNames = true;
  index.names    = {{1000, "wear"}, {1999, ""}};
  IndexExtent run;
  run.block       = 1;
  run.rowCount    = 3;
  run.keysAreRun  = true;
  run.firstKey    = 10;
  run.maxKey      = 12;
  run.columnCount = 1;
  IndexExtent keyed;
  keyed.block       = 2;
  keyed.chunk       = 1;
  keyed.firstRow    = 8;
  keyed.rowCount    = 2;
  keyed.maxKey      = 0x7fffffff;
  keyed.keys        = {700, 8, 0x33};
  keyed.columnCount = 3;
  keyed.firstColumn = 1;
  index.extents     = {run, keyed};
  for (std::uint64_t i = 0; i < 4; ++i) index.columns.push_back({{800 + 16 * i, 16, i}, {i, 1, -0.5, 1e300}});
  return index;
}

std::string Decode(const std::vector<std::uint8_t>& bytes)
{
  return MessageOf([&] { DecodeIndex(bytes.data(), bytes.size(), kFileBytes, "segment"); });
}

}  // namespace

TEST(SegmentIndex, BytesReadBackToTheSameIndex)
{
  const std::vector<std::uint8_t> bytes = EncodeIndex(MakeIndex());
  const SegmentIndex              index = DecodeIndex(bytes.data(), bytes.size(), kFileBytes, "segment");
  ASSERT_EQ(index.blocks.size(), 3u);
  EXPECT_EQ(index.blocks[1].descriptor, MakeBlock(2, "IDb").descriptor);
  EXPECT_EQ(index.blocks[1].format.ToString(), "IDb");
  EXPECT_EQ(index.blocks[1].chunkShift, 3u);
  EXPECT_EQ(index.deleted, (std::vector<BlockUid>{7, 9}));
  EXPECT_EQ(index.ids[1].firstIndex, 5u);
  EXPECT_EQ(index.ids[1].ids.checksum, 0x22u);
  EXPECT_EQ(index.names, MakeIndex().names);
  EXPECT_EQ(index.extents[0].firstKey, 10u);
  EXPECT_EQ(index.extents[1].keys.offset, 700u);
  EXPECT_EQ(index.extents[1].firstColumn, 1u);
  EXPECT_EQ(index.columns[3].statistics.greatest, 1e300);
  EXPECT_EQ(EncodeIndex(index), bytes);
}

TEST(SegmentIndex, SizeDependsOnCountsAndTextsAlone)
{
  SegmentIndex index                 = MakeIndex();
  const auto   size                  = EncodeIndex(index).size();
  index.columns[0].bytes             = {~0ull, ~0ull, ~0ull};
  index.extents[1].keys.checksum     = ~0ull;
  index.columns[1].statistics.values = ~0ull;
  EXPECT_EQ(EncodeIndex(index).size(), size);
}

TEST(SegmentIndex, EveryShorterIndexAndEveryBytesBehindItAreRefused)
{
  const std::vector<std::uint8_t> bytes = EncodeIndex(MakeIndex());
  for (std::size_t size = 0; size < bytes.size(); ++size)
    EXPECT_THAT(Decode({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)}),
                StartsWith("segment: its index is damaged: "))
        << size;
  std::vector<std::uint8_t> longer = bytes;
  longer.push_back(0);
  EXPECT_EQ(Decode(longer), "segment: its index is damaged: bytes follow its end");
}

// What decodes after random damage is an index again: it encodes to the same bytes, but for unused ones.
TEST(SegmentIndex, RandomDamageIsRefusedOrDecodes)
{
  const std::vector<std::uint8_t> bytes = EncodeIndex(MakeIndex());
  std::mt19937                    random(7);
  for (int round = 0; round < 20000; ++round) {
    std::vector<std::uint8_t> damaged = bytes;
    for (unsigned count = 1 + random() % 4; count > 0; --count)
      damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random());
    try {
      const SegmentIndex index = DecodeIndex(damaged.data(), damaged.size(), kFileBytes, "segment");
      EXPECT_LE(index.columns.size(), bytes.size());
    } catch (const FED_Failure& failure) {
      EXPECT_THAT(failure.what(), StartsWith("segment: "));
    }
  }
}

TEST(SegmentIndex, ClaimsAreCheckedBeforeTheyAreUsed)
{
  const auto decode = [](const SegmentIndex& index) { return Decode(EncodeIndex(index)); };
  const auto change = [&](auto edit) {
    SegmentIndex index = MakeIndex();
    edit(index);
    return decode(index);
  };
  const std::string start = "segment: its index is damaged: ";
  EXPECT_EQ(decode(MakeIndex()), "no failure");
  EXPECT_EQ(change([](auto& index) { index.columns[0].bytes.offset = kFileBytes; }),
            start + "a place is beyond the file's end");
  EXPECT_EQ(change([](auto& index) { index.columns[0].bytes.bytes = ~0ull; }),
            start + "a place is beyond the file's end");
  EXPECT_EQ(change([](auto& index) { index.columns[0].bytes.offset = 511; }), start + "two places overlap");
  EXPECT_EQ(change([](auto& index) { index.columns[2].bytes.offset = 801; }), start + "two places overlap");
  EXPECT_EQ(change([](auto& index) { index.extents[1].keys.offset = 607; }), start + "two places overlap");
  EXPECT_EQ(change([](auto& index) {
              index.ids[1].ids = {600, 0, 0};
            }),
            start + "the bytes of ids are no whole numbers");
  EXPECT_EQ(change([](auto& index) { index.columns[2].bytes = {800, 0, 0}; }), "no failure");
  EXPECT_EQ(change([](auto& index) { index.blocks[0].uid = 0; }), start + "a block has the number 0");
  EXPECT_EQ(change([](auto& index) { index.blocks[0].chunkShift = 25; }),
            start + "a block's chunks have too many rows");
  EXPECT_EQ(change([](auto& index) { index.ids[0].kind = 15; }), start + "ids are of an unknown kind");
  EXPECT_EQ(change([](auto& index) { index.ids[0].firstIndex = 0; }), start + "ids have too great indices");
  EXPECT_EQ(change([](auto& index) { index.ids[0].ids.bytes = 6; }), start + "the bytes of ids are no whole numbers");
  EXPECT_EQ(change([](auto& index) { index.names[1].first = 2000; }), start + "a name belongs to no user kind");
  EXPECT_EQ(change([](auto& index) { index.names[1].first = 1000; }), start + "a name belongs to no user kind");
  EXPECT_EQ(change([](auto& index) { index.hasNames = false; }), start + "names of user kinds are there and not there");
  EXPECT_EQ(change([](auto& index) { index.extents[0].rowCount = 0; }), start + "rows are none or too many");
  EXPECT_EQ(change([](auto& index) { index.extents[0].firstRow = 0x7fffffff; }), start + "rows are none or too many");
  EXPECT_EQ(change([](auto& index) { index.extents[0].maxKey = 13; }), start + "rows have wrong record indices");
  EXPECT_EQ(change([](auto& index) { index.extents[1].maxKey = 0x80000000u; }),
            start + "rows have wrong record indices");
  EXPECT_EQ(change([](auto& index) { index.extents[1].keys.bytes = 4; }), start + "rows have too few record indices");
  EXPECT_EQ(change([](auto& index) { index.extents[1].columnCount = 4; }),
            start + "rows have columns that are not there");
  EXPECT_EQ(change([](auto& index) { index.extents[1].columnCount = 2; }), start + "a column belongs to no rows");
}

TEST(SegmentIndex, CountBeyondTheBytesAllocatesNothing)
{
  std::vector<std::uint8_t> bytes = EncodeIndex({});
  for (std::size_t i = 12; i < 20; ++i) bytes[i] = 0xff;  // the number of blocks
  EXPECT_EQ(Decode(bytes), "segment: its index is damaged: a count is greater than the bytes that are there");
}

TEST(SegmentIndex, NewerFormatVersionIsNamed)
{
  std::vector<std::uint8_t> bytes = EncodeIndex(MakeIndex());
  bytes[8]                        = 3;
  EXPECT_EQ(Decode(bytes), "segment: the database has format version 3, this program reads versions 1 to 2");
}

namespace {

SegmentHeader MakeHeader()
{
  SegmentHeader header;
  header.entry      = {30, 1, 29, 90112, 88064, 1936, 0x0123456789abcdefu};
  header.copyOffset = 87000;
  header.structure  = {512, 2000, 0x11};
  return header;
}

}  // namespace

TEST(SegmentHeader, RepeatsTheManifestAndTellsOfACommit)
{
  const SegmentHeader plain = DecodeHeader(EncodeHeader(MakeHeader()), "segment");
  EXPECT_EQ(plain.entry, MakeHeader().entry);
  EXPECT_EQ(plain.version, 2u);
  EXPECT_EQ(plain.copyOffset, 87000u);
  EXPECT_EQ(plain.structure.offset, 512u);
  EXPECT_EQ(plain.structure.bytes, 2000u);
  EXPECT_EQ(plain.structure.checksum, 0x11u);
  EXPECT_FALSE(plain.commit);
  SegmentHeader header = MakeHeader();
  header.commit        = CommitMark{7, 3, 99};
  EXPECT_EQ(DecodeHeader(EncodeHeader(header), "segment").commit, header.commit);
}

TEST(SegmentHeader, EveryFlippedBitIsNamed)
{
  const auto header = EncodeHeader(MakeHeader());
  for (std::size_t i = 0; i < header.size(); ++i)
    for (int bit = 0; bit < 8; ++bit) {
      auto damaged = header;
      damaged[i]   = static_cast<std::uint8_t>(damaged[i] ^ (1 << bit));
      EXPECT_THAT(MessageOf([&] { DecodeHeader(damaged, "segment"); }), StartsWith("segment: ")) << i;
    }
}
