#include "ResultDataBlock.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_RecordFormat.h"

#include "AllocationFailure.h"
#include "failure_message.h"
#include "FakeChunkStore.h"
#include "record_model.h"

using quilon_test::AllocationFailure;

namespace {

constexpr const char* kAllTypes = "IiFDdVTSLblbDb";
constexpr double      kNan      = std::numeric_limits<double>::quiet_NaN();
constexpr double      kInfinity = std::numeric_limits<double>::infinity();

StoredBlock EmptyBlock(const char* format, unsigned chunkShift)
{
  StoredBlock stored;
  stored.uid        = 1;
  stored.descriptor = FED_DataDescriptor(0, static_cast<FED_OnfId>(590));
  stored.format     = FED_RecordFormat::Parse(format);
  stored.chunkShift = chunkShift;
  return stored;
}

// A block on a disk of its own, that can be closed and opened again.
class BlockOnDisk
{
public:
  explicit BlockOnDisk(const char* format, unsigned chunkShift = 2, std::size_t limit = std::size_t{1} << 30)
      : disk(limit), block(std::make_unique<ResultDataBlock>(EmptyBlock(format, chunkShift), disk.cache))
  {
    twin.types = block->GetRecordFormat().GetTypes();
  }

  void Commit() { disk.Commit(); }

  void Reopen()
  {
    Commit();
    const StoredBlock stored = block->Describe();
    block.reset();
    block = std::make_unique<ResultDataBlock>(stored, disk.cache);
  }

  // Opens without writing what is dirty.
  void OpenAs(const StoredBlock& stored)
  {
    block.reset();
    block = std::make_unique<ResultDataBlock>(stored, disk.cache);
  }

  void Set(std::size_t index, Random& random)
  {
    twin.records[index]          = MakeRecord(twin.types, random);
    FED_DataRecord* const record = block->CreateDataRecord();
    SetFields(*record, twin.types, twin.records[index]);
    block->SetRecord(index, *record);
    block->DeleteDataRecord(record);
  }

  FakeDisk                         disk;
  std::unique_ptr<ResultDataBlock> block;
  ModelBlock                       twin;
};

std::string Show(const FED_FieldStatistics& statistics)
{
  std::string text = std::to_string(statistics.elements) + " elements, " + std::to_string(statistics.nans) + " nan";
  if (statistics.hasRange)
    text += ", " + std::to_string(statistics.least) + " to " + std::to_string(statistics.greatest);
  return text;
}

void ExpectStatistics(const BlockOnDisk& on)
{
  for (std::size_t field = 1; field <= on.twin.types.size(); ++field)
    EXPECT_EQ(Show(on.block->GetFieldStatistics(field)), Show(CountField(on.twin, field))) << "record field " << field;
}

// A block of integers with four rows a chunk and a single extent per chunk, to be damaged.
struct Damaged
{
  explicit Damaged(std::size_t rows) : on("I")
  {
    for (std::size_t index = 1; index <= rows; ++index) on.twin.records[index] = {static_cast<int>(index)};
    FED_DataRecord* const record = on.block->CreateDataRecord();
    for (std::size_t index = 1; index <= rows; ++index) {
      record->SetInteger(1, static_cast<int>(index));
      on.block->SetRecord(index, *record);
    }
    on.block->DeleteDataRecord(record);
    on.Reopen();
  }

  FakeChunkStore::Extent& ExtentOf(std::uint32_t chunk) { return on.disk.store.chunks.at({1, chunk}).front(); }

  std::string MessageOfReading()
  {
    return MessageOf([this] { on.block->GetIntegerChunk(1, 1); });
  }
  std::string MessageOfFinding()
  {
    return MessageOf([this] { on.block->HasRecord(3); });
  }

  BlockOnDisk on;
};

constexpr const char* kPrefix = "block iteration=0 onf=590: ";

}  // namespace

TEST(ResultDataBlock, EveryTypeOfFieldComesBackFromTheStore)
{
  for (const unsigned shift : {0u, 2u, 20u}) {
    BlockOnDisk on(kAllTypes, shift);
    Random      random(1);
    for (std::size_t index = 1; index <= 50; ++index) on.Set(index, random);
    on.Reopen();
    ExpectSame(*on.block, on.twin);
    EXPECT_GT(on.disk.store.reads, 0u);
  }
}

TEST(ResultDataBlock, RowsOfManyCommitsComeBackInTheirPlaces)
{
  BlockOnDisk on(kAllTypes, 4);
  Random      random(2);
  for (std::size_t index = 1; index <= 40; ++index) {
    on.Set(index, random);
    if (index % 3 == 0) on.Commit();
  }
  on.Reopen();
  ExpectSame(*on.block, on.twin);
}

TEST(ResultDataBlock, LaterExtentsReplaceRowsOfEarlierOnes)
{
  BlockOnDisk on(kAllTypes, 4);
  Random      random(3);
  for (std::size_t index = 1; index <= 40; ++index) on.Set(index, random);
  for (int round = 0; round < 10; ++round) {
    on.Reopen();
    for (int i = 0; i < 3; ++i) on.Set(static_cast<std::size_t>(random.Int(1, 45)), random);
  }
  on.Reopen();
  ExpectSame(*on.block, on.twin);
}

TEST(ResultDataBlock, RewrittenRowsAreWrittenAndNoOthers)
{
  BlockOnDisk on("D", 4);
  for (std::size_t index = 0; index < 16; ++index) on.block->SetScalarAt(index, 1.0);
  on.Commit();
  on.block->SetScalarAt(5, 2.0);
  on.block->SetScalarAt(3, 2.0);
  on.Commit();
  const auto& extents = on.disk.store.chunks.at({1, 0});
  ASSERT_EQ(extents.size(), 2u);
  EXPECT_EQ(extents[1].stored.firstRow, 3u);
  EXPECT_EQ(extents[1].stored.rowCount, 3u);
  double       values[3];
  const double expected[3] = {2.0, 1.0, 2.0};
  ASSERT_EQ(extents[1].columns[0].size(), sizeof values);
  std::memcpy(values, extents[1].columns[0].data(), sizeof values);
  EXPECT_TRUE(std::equal(values, values + 3, expected));
}

TEST(ResultDataBlock, CountsFormatAndRangesNeedNeitherKeysNorRows)
{
  BlockOnDisk on(kAllTypes, 4);
  Random      random(4);
  for (std::size_t index = 100; index > 0; index -= 2) on.Set(index, random);
  on.Reopen();
  EXPECT_EQ(on.block->GetSize(), 100u);
  EXPECT_EQ(on.block->GetMaxIndex(), 100u);
  EXPECT_EQ(on.block->GetRecordCount(), 50u);
  EXPECT_EQ(on.block->GetRowsPerChunk(), 16u);
  EXPECT_EQ(on.block->GetChunkCount(), 4u);
  EXPECT_EQ(on.block->GetRecordFormat().ToString(), kAllTypes);
  ExpectStatistics(on);
  EXPECT_EQ(on.disk.store.reads, 0u);
  EXPECT_EQ(on.disk.store.keyReads, 0u);
  EXPECT_EQ(on.disk.cache.GetBytes(), 0u);
}

TEST(ResultDataBlock, KeysAreReadOnceWhenTheyAreFirstAskedFor)
{
  BlockOnDisk on("D", 4);
  for (std::size_t index = 100; index > 0; index -= 2) on.block->SetScalarAt(index, static_cast<double>(index));
  on.Reopen();
  EXPECT_TRUE(on.block->HasRecord(100));
  EXPECT_EQ(on.disk.store.keyReads, 4u);
  EXPECT_FALSE(on.block->HasRecord(99));
  EXPECT_EQ(on.block->GetIndices().size(), 50u);
  EXPECT_EQ(on.disk.store.keyReads, 4u);
  EXPECT_EQ(on.disk.store.reads, 0u);
  EXPECT_EQ(on.block->GetScalarAt(42), 42.0);
  EXPECT_EQ(on.disk.store.reads, 1u);
}

TEST(ResultDataBlock, RunsOfKeysAreNotRead)
{
  BlockOnDisk on("D", 4);
  for (std::size_t index = 7; index < 107; ++index) {
    on.block->SetScalarAt(index, static_cast<double>(index));
    if (index % 5 == 0) on.Commit();
  }
  on.Reopen();
  EXPECT_FALSE(on.block->HasRecord(6));
  EXPECT_FALSE(on.block->HasRecord(107));
  for (std::size_t index = 7; index < 107; ++index) EXPECT_EQ(on.block->GetScalarAt(index), static_cast<double>(index));
  EXPECT_EQ(on.disk.store.keyReads, 0u);
  on.block->SetScalarAt(107, 107.0);
  on.block->SetScalarAt(2, 2.0);
  on.Reopen();
  EXPECT_EQ(on.block->GetRow(2), 101u);
  EXPECT_EQ(on.block->GetRow(107), 100u);
  EXPECT_EQ(on.block->GetMaxIndex(), 107u);
}

TEST(ResultDataBlock, WritingToAStoredBlockFindsItsKeys)
{
  BlockOnDisk on("D", 2);
  for (const std::size_t index : {5u, 9u, 2u, 7u, 1u}) on.block->SetScalarAt(index, 0.0);
  on.Reopen();
  on.block->SetScalarAt(7, 70.0);
  on.block->SetScalarAt(8, 80.0);
  EXPECT_EQ(on.block->GetRecordCount(), 6u);
  on.Reopen();
  EXPECT_EQ(on.block->GetScalarAt(7), 70.0);
  EXPECT_EQ(on.block->GetScalarAt(8), 80.0);
  EXPECT_EQ(on.block->GetScalarAt(1), 0.0);
  EXPECT_EQ(on.block->GetIndices(), (std::vector<std::size_t>{1, 2, 5, 7, 8, 9}));
}

TEST(ResultDataBlock, FailingReadLeavesTheBlockAsItWas)
{
  BlockOnDisk on(kAllTypes, 3);
  Random      random(5);
  for (std::size_t index = 40; index > 0; index -= 2) {
    on.Set(index, random);
    if (index % 10 == 0) on.Commit();
  }
  for (std::size_t failing = 1;; ++failing) {
    SCOPED_TRACE(failing);
    on.Reopen();
    on.disk.store.failingRead = failing;
    const std::string message = MessageOf([&on] { ExpectSame(*on.block, on.twin); });
    const bool        passed  = on.disk.store.failingRead != 0;
    on.disk.store.failingRead = 0;
    EXPECT_EQ(message, passed ? "no failure" : "the disk is gone");
    ExpectSame(*on.block, on.twin);
    if (HasFatalFailure() || passed) break;
  }
}

TEST(ResultDataBlock, FailingReadWhileWritingLeavesTheBlockAsItWas)
{
  Random random(6);
  for (std::size_t failing = 1;; ++failing) {
    SCOPED_TRACE(failing);
    BlockOnDisk on(kAllTypes, 3);
    for (std::size_t index = 20; index > 0; index -= 2) on.Set(index, random);
    on.Reopen();
    const ModelBlock before   = on.twin;
    on.disk.store.failingRead = failing;
    // The chunk of the new row has rows already, and so has that of the rewritten one.
    const std::string message = MessageOf([&] {
      on.Set(5, random);
      on.Set(20, random);
    });
    const bool        passed  = on.disk.store.failingRead != 0;
    on.disk.store.failingRead = 0;
    if (!passed) {
      EXPECT_EQ(message, "the disk is gone");
      const bool isWritten = on.block->HasRecord(5);
      ModelBlock expected  = before;
      if (isWritten) expected.records[5] = on.twin.records[5];
      ExpectSame(*on.block, expected);
      on.twin = expected;
      on.Reopen();
    }
    ExpectSame(*on.block, on.twin);
    if (HasFatalFailure() || passed) break;
  }
}

TEST(ResultDataBlock, MemoryThatRunsOutWhileRowsComeBackLeavesTheBlockAsItWas)
{
  BlockOnDisk on("SLbDb", 3);
  Random      random(7);
  for (std::size_t index = 20; index > 0; index -= 2) on.Set(index, random);
  std::size_t failures = 0;
  for (std::size_t allocation = 1;; ++allocation) {
    SCOPED_TRACE(allocation);
    on.Reopen();
    FED_ConstDataRecord* const record    = on.block->CreateConstDataRecord();
    bool                       hasFailed = false;
    {
      const AllocationFailure failing(allocation);
      try {
        on.block->GetRecord(10, *record);
      } catch (const std::bad_alloc&) {
        hasFailed = true;
      }
    }
    on.block->DeleteDataRecord(record);
    ExpectSame(*on.block, on.twin);
    if (HasFatalFailure() || !hasFailed) break;
    ++failures;
  }
  EXPECT_GT(failures, 10u);
}

TEST(ResultDataBlock, ResidentRowsAreReadAndWrittenWithoutAllocation)
{
  FakeDisk              disk;
  StoredBlock           stored = EmptyBlock("T", 4);
  ResultDataBlock       block(stored, disk.cache);
  std::array<double, 6> tensor{};
  for (std::size_t index = 0; index < 100; ++index) block.SetValuesAt(index, tensor.data());
  disk.Commit();
  const AllocationFailure counting(0);
  for (std::size_t index = 0; index < 100; ++index) {
    block.GetValuesAt(index, tensor.data());
    block.SetValuesAt(99 - index, tensor.data());
  }
  EXPECT_EQ(counting.GetCount(), 0u);
}

TEST(ResultDataBlock, RangesAreExactWhateverIsStoredAndWritten)
{
  BlockOnDisk on(kAllTypes, 4);
  Random      random(8);
  EXPECT_EQ(Show(on.block->GetFieldStatistics(1)), "0 elements, 0 nan");
  for (int round = 0; round < 12; ++round) {
    SCOPED_TRACE(round);
    for (int i = 0; i < 4; ++i) on.Set(static_cast<std::size_t>(random.Int(1, 60)), random);
    ExpectStatistics(on);  // dirty
    on.Commit();
    ExpectStatistics(on);  // clean, partly overlapping
    if (round % 3 == 0) on.Reopen();
    ExpectStatistics(on);
  }
}

TEST(ResultDataBlock, RangesKnowNansInfinitiesAndZeros)
{
  const std::vector<std::pair<std::vector<double>, std::string>> rows = {
      {{kNan}, "1 elements, 1 nan"},
      {{kNan, kNan, kNan, kNan, kNan}, "5 elements, 5 nan"},
      {{kNan, 3.0}, "2 elements, 1 nan, 3.000000 to 3.000000"},
      {{1.0, 2.0, 3.0, 4.0, -5.0, kNan}, "6 elements, 1 nan, -5.000000 to 4.000000"},
      {{-kInfinity, 0.0}, "2 elements, 0 nan, -inf to 0.000000"},
      {{kInfinity}, "1 elements, 0 nan, inf to inf"},
      {{-0.0}, "1 elements, 0 nan, 0.000000 to 0.000000"},
      {{0.0, -0.0, -0.0, -0.0}, "4 elements, 0 nan, 0.000000 to 0.000000"},
      {{9, 8, 7, 6, 5, 4, 3, 2, 1}, "9 elements, 0 nan, 1.000000 to 9.000000"}};
  for (const auto& [values, expected] : rows) {
    BlockOnDisk on("D");
    for (std::size_t i = 0; i < values.size(); ++i) on.block->SetScalarAt(i, values[i]);
    EXPECT_EQ(Show(on.block->GetFieldStatistics(1)), expected);
    on.Reopen();
    EXPECT_EQ(Show(on.block->GetFieldStatistics(1)), expected);
    EXPECT_EQ(on.disk.store.reads, 0u);
  }
}

TEST(ResultDataBlock, RangesOfIntegersReachFromTheLeastToTheGreatest)
{
  BlockOnDisk           on("I");
  FED_DataRecord* const record = on.block->CreateDataRecord();
  for (const int value : {-2147483647 - 1, 2147483647}) {
    record->SetInteger(1, value);
    on.block->SetRecord(value < 0 ? 1 : 2, *record);
    if (value > 0) continue;
    EXPECT_EQ(Show(on.block->GetFieldStatistics(1)), "1 elements, 0 nan, -2147483648.000000 to -2147483648.000000");
  }
  EXPECT_EQ(Show(on.block->GetFieldStatistics(1)), "2 elements, 0 nan, -2147483648.000000 to 2147483647.000000");
}

TEST(ResultDataBlock, StatisticsOfAFieldThatIsNotThereAreAFailure)
{
  BlockOnDisk on("DV");
  EXPECT_EQ(MessageOf([&] { on.block->GetFieldStatistics(0); }),
            kPrefix + std::string("record field is 0, expected 1 to 2"));
  EXPECT_EQ(MessageOf([&] { on.block->GetFieldStatistics(3); }),
            kPrefix + std::string("record field is 3, expected 1 to 2"));
}

TEST(ResultDataBlock, LongFirstRecordMakesForFewRowsInAChunk)
{
  const std::pair<std::size_t, std::size_t> rows[] = {{0, 4096}, {8, 4096}, {1000, 1024}, {100000, 8}, {3000000, 1}};
  for (const auto& [length, expected] : rows) {
    FakeDisk              disk;
    ResultDataBlock       block(FED_DataDescriptor(), FED_RecordFormat::Parse("Lb"), 1, disk.cache);
    FED_DataRecord* const record = block.CreateDataRecord();
    record->SetIntList(1, FED_IntArray(std::vector<int>(length, 1)));
    block.Expect(100);
    block.SetRecord(1, *record);
    block.SetRecord(2, *record);
    EXPECT_EQ(block.GetRowsPerChunk(), expected) << length;
    EXPECT_EQ(block.Describe().chunkShift, static_cast<unsigned>(std::log2(expected)));
    block.GetRecord(2, *record);
    EXPECT_EQ(record->GetIntListLen(1), length);
  }
}

TEST(ResultDataBlock, MissingRowOfAChunkIsAFailure)
{
  Damaged damaged(8);
  damaged.ExtentOf(1).stored.rowCount = 3;
  damaged.ExtentOf(1).columns[0].resize(12);
  const std::string expected = kPrefix + std::string("chunk 1 of the store does not have row 7, expected rows 4 to 7");
  EXPECT_EQ(damaged.MessageOfReading(), expected);
  EXPECT_EQ(damaged.MessageOfFinding(), expected);
  EXPECT_EQ(MessageOf([&] { damaged.on.block->GetFieldStatistics(1); }), expected);
  damaged.on.disk.store.chunks.erase({1, 1});
  EXPECT_EQ(damaged.MessageOfReading(),
            kPrefix + std::string("chunk 1 of the store does not have row 4, expected rows 4 to 7"));
}

TEST(ResultDataBlock, RowsThatBelongElsewhereAreAFailure)
{
  const std::pair<std::uint32_t, std::uint32_t> extents[] = {{3, 4}, {5, 4}, {4, 0}, {0xffffffffu, 0xffffffffu}};
  for (const auto& [first, count] : extents) {
    Damaged damaged(8);
    damaged.ExtentOf(1).stored.firstRow = first;
    damaged.ExtentOf(1).stored.rowCount = count;
    EXPECT_EQ(damaged.MessageOfReading(), kPrefix + std::string("chunk 1 of the store has ") + std::to_string(count) +
                                              " rows from row " + std::to_string(first) + " on, expected rows 4 to 7");
  }
}

TEST(ResultDataBlock, ColumnOfAnotherLengthIsAFailureBeforeAnythingIsAllocated)
{
  Damaged damaged(8);
  damaged.ExtentOf(1).columns[0].resize(15);
  EXPECT_EQ(damaged.MessageOfReading(),
            kPrefix + std::string("the store has 15 bytes of record field 1 for 4 rows, expected 16"));
  EXPECT_EQ(damaged.on.disk.store.reads, 0u);
}

TEST(ResultDataBlock, ClaimOfManyRowsCostsNoMemory)
{
  Damaged     damaged(8);
  StoredBlock stored = damaged.on.block->Describe();
  stored.rowCount    = 2000000000;
  stored.chunkShift  = 0;
  damaged.on.OpenAs(stored);
  const AllocationFailure counting(0);
  EXPECT_NE(damaged.MessageOfFinding(), "no failure");
  EXPECT_NE(damaged.MessageOfReading(), "no failure");
  EXPECT_LT(counting.GetBytes(), 1u << 20);
  EXPECT_FALSE(counting.HasFailed());
}

TEST(ResultDataBlock, ListsThatDoNotAddUpAreAFailure)
{
  BlockOnDisk           on("Lb");
  FED_DataRecord* const record = on.block->CreateDataRecord();
  record->SetIntList(1, FED_IntArray(std::vector<int>{1, 2, 3}));
  on.block->SetRecord(1, *record);
  on.block->SetRecord(2, *record);
  on.Reopen();
  auto& extent = on.disk.store.chunks.at({1, 0}).front();
  extent.columns[1].resize(20);
  const auto read = [&on] {
    FED_ConstDataRecord* const own = on.block->CreateConstDataRecord();
    on.block->GetRecord(1, *own);
  };
  EXPECT_EQ(MessageOf(read), kPrefix + std::string("the store has 20 bytes for lists of 6 elements in all, the longest "
                                                   "of 3, expected 24"));
  extent.columns[0].assign(8, '\xff');
  EXPECT_EQ(MessageOf(read), kPrefix + std::string("the store has 20 bytes for lists of 8589934590 elements in all, "
                                                   "the longest of 4294967295, expected 34359738360"));
}

TEST(ResultDataBlock, KeysThatCannotBeAreAFailure)
{
  {
    Damaged damaged(8);
    damaged.ExtentOf(1).stored.firstKey = 4;
    EXPECT_EQ(damaged.MessageOfFinding(), kPrefix + std::string("the store has index 4 twice"));
  }
  {
    Damaged damaged(8);
    damaged.ExtentOf(1).stored.firstKey = 0x7ffffffdu;
    EXPECT_EQ(damaged.MessageOfFinding(),
              kPrefix + std::string("the store has indices from 2147483645 on for 4 rows, expected 0 to 2147483647"));
  }
  {
    Damaged damaged(8);
    damaged.ExtentOf(1).stored.keysAreRun = false;
    damaged.ExtentOf(1).keys              = {5, 6, 0x80000000u, 8};
    EXPECT_EQ(damaged.MessageOfFinding(),
              kPrefix + std::string("the store has index 2147483648, expected 0 to 2147483647"));
  }
  {
    Damaged damaged(8);
    auto&   extents = damaged.on.disk.store.chunks.at({1, 1});
    extents.push_back(extents.front());
    extents[1].stored.firstKey = 6;
    EXPECT_EQ(damaged.MessageOfFinding(), kPrefix + std::string("the store has the indices 5 and 6 for row 4"));
  }
  {
    Damaged     damaged(8);
    StoredBlock stored = damaged.on.block->Describe();
    stored.maxKey      = 9;
    damaged.on.OpenAs(stored);
    EXPECT_EQ(damaged.MessageOfFinding(),
              kPrefix + std::string("the greatest index of the store's rows is 8, expected 9"));
  }
}

TEST(ResultDataBlock, StoredRowsWithoutAFormatOrInBoundlessChunksAreAFailure)
{
  FakeDisk    disk;
  StoredBlock stored = EmptyBlock("", 0);
  stored.rowCount    = 1;
  EXPECT_EQ(MessageOf([&] { ResultDataBlock(stored, disk.cache); }),
            kPrefix + std::string("the store has rows of it and no record format"));
  stored = EmptyBlock("D", 25);
  EXPECT_EQ(MessageOf([&] { ResultDataBlock(stored, disk.cache); }),
            kPrefix + std::string("a chunk has 2^25 rows, expected at most 2^24"));
}

TEST(ResultDataBlock, RandomWorkInLittleMemoryMatchesPlainMaps)
{
  std::size_t spills = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    Random      random(seed);
    const char* formats[] = {"D", "T", "DdV", "iFS", "lbDb", kAllTypes};
    BlockOnDisk on(formats[seed % 6], static_cast<unsigned>(random.Int(0, 5)), seed % 3 == 0 ? 1 : 2000);
    const int   spread = std::array<int, 3>{40, 400, 2147483647}[seed % 3];
    for (int step = 0; step < 400; ++step) {
      const int action = random.Int(0, 39);
      if (action == 0) on.Commit();
      if (action == 1) on.Reopen();
      if (action == 2) ExpectSame(*on.block, on.twin);
      if (action == 3) ExpectStatistics(on);
      on.Set(static_cast<std::size_t>(random.Int(0, 1) == 0 ? random.Int(0, spread) : step), random);
      if (HasFailure()) return;
    }
    spills += on.disk.spills;
    on.Reopen();
    ExpectSame(*on.block, on.twin);
  }
  EXPECT_GT(spills, 1000u);
}
