#include "ChunkCache.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_RecordFormat.h"
#include "QuilonUtilities/FED_DoubleArray.h"
#include "QuilonUtilities/FED_IntArray.h"

#include "failure_message.h"
#include "FakeChunkStore.h"
#include "ResultDataBlock.h"

namespace {

constexpr std::size_t kRows       = 64;             // of a chunk
constexpr std::size_t kChunkBytes = kRows * 6 * 8;  // of tensors

// A block whose chunks have 64 rows.
std::unique_ptr<ResultDataBlock> MakeBlock(FakeDisk& disk, BlockUid uid, const char* format = "T")
{
  StoredBlock stored;
  stored.uid        = uid;
  stored.descriptor = FED_DataDescriptor(static_cast<int>(uid), static_cast<FED_OnfId>(521));
  stored.format     = FED_RecordFormat::Parse(format);
  stored.chunkShift = 6;
  return std::make_unique<ResultDataBlock>(stored, disk.cache);
}

std::array<double, 6> TensorOf(std::size_t index)
{
  const auto first = static_cast<double>(index);
  return {first, first + 0.5, -first, 1.0 / (first + 1.0), 0.0, first * first};
}

void Fill(ResultDataBlock& block, std::size_t chunks)
{
  for (std::size_t index = 0; index < chunks * kRows; ++index) block.SetValuesAt(index, TensorOf(index).data());
}

void ExpectTensor(const ResultDataBlock& block, std::size_t index)
{
  std::array<double, 6> tensor;
  block.GetValuesAt(index, tensor.data());
  ASSERT_EQ(tensor, TensorOf(index)) << index;
}

// Reads a record of a chunk.
// @return whether the store was asked
bool IsLoadedFor(FakeDisk& disk, const ResultDataBlock& block, std::size_t chunk)
{
  const std::size_t before = disk.store.reads;
  ExpectTensor(block, chunk * kRows);
  return disk.store.reads != before;
}

}  // namespace

TEST(ChunkCache, MemoryStaysWithinTheLimitWhileBlocksGrowAndAreWalked)
{
  FakeDisk   disk(10 * kChunkBytes);
  const auto first = MakeBlock(disk, 1), second = MakeBlock(disk, 2);
  for (std::size_t index = 0; index < 100 * kRows; ++index) {
    first->SetValuesAt(index, TensorOf(index).data());
    second->SetValuesAt(index, TensorOf(index).data());
    ASSERT_LE(disk.cache.GetBytes(), 10 * kChunkBytes);
  }
  EXPECT_GT(disk.spills, 10u);
  EXPECT_LT(disk.spills, 100u);
  disk.Commit();
  std::mt19937 random(1);
  for (int step = 0; step < 2000; ++step) {
    ExpectTensor(step % 2 == 0 ? *first : *second, random() % (100 * kRows));
    ASSERT_LE(disk.cache.GetBytes(), 10 * kChunkBytes);
  }
  for (std::size_t index = 0; index < 100 * kRows; ++index) ExpectTensor(*first, index);
}

TEST(ChunkCache, FewChunksStayWhateverTheLimitIs)
{
  FakeDisk   disk(1);
  const auto block = MakeBlock(disk, 1);
  for (std::size_t index = 0; index < 20 * kRows; ++index) {
    block->SetValuesAt(index, TensorOf(index).data());
    ASSERT_LE(disk.cache.GetBytes(), (ChunkCache::kKeptChunks + 1) * kChunkBytes);
  }
  disk.Commit();
  for (std::size_t index = 0; index < 20 * kRows; ++index) ExpectTensor(*block, index);
  const std::size_t reads = disk.store.reads;
  // Four chunks side by side, again and again.
  for (std::size_t row = 0; row < kRows; ++row)
    for (const std::size_t chunk : {3u, 7u, 11u, 15u}) ExpectTensor(*block, chunk * kRows + row);
  EXPECT_EQ(disk.store.reads, reads + 4);
}

TEST(ChunkCache, SpansOfTheChunksTouchedLastStayValid)
{
  FakeDisk   disk(1);
  const auto block = MakeBlock(disk, 1);
  Fill(*block, 20);
  std::vector<QuilonContainer::Span<const double>> spans;
  for (const std::size_t chunk : {3u, 7u, 11u, 15u}) spans.push_back(block->GetDoubleChunk(1, chunk));
  for (std::size_t i = 0; i < spans.size(); ++i) {
    ASSERT_EQ(spans[i].GetSize(), 6 * kRows);
    for (std::size_t row = 0; row < kRows; ++row)
      EXPECT_EQ(spans[i].GetData()[6 * row], static_cast<double>((3 + 4 * i) * kRows + row));
  }
}

TEST(ChunkCache, ChunkThatIsUsedAgainAndAgainStaysWhileOthersPassBy)
{
  FakeDisk   disk(10 * kChunkBytes);
  const auto block = MakeBlock(disk, 1);
  Fill(*block, 100);
  disk.Commit();
  ExpectTensor(*block, 0);
  for (std::size_t chunk = 1; chunk < 100; ++chunk) {
    EXPECT_TRUE(IsLoadedFor(disk, *block, chunk) || chunk > 90);
    // More chunks pass in between than are kept anyway.
    if (chunk % (ChunkCache::kKeptChunks + 1) == 0) {
      EXPECT_FALSE(IsLoadedFor(disk, *block, 0)) << chunk;
    }
  }
  // One that nobody asked for since is gone.
  EXPECT_TRUE(IsLoadedFor(disk, *block, 50));
}

TEST(ChunkCache, CleanChunksGoBeforeAnythingIsSpilled)
{
  FakeDisk   disk(10 * kChunkBytes);
  const auto clean = MakeBlock(disk, 1), dirty = MakeBlock(disk, 2);
  Fill(*clean, 10);
  disk.Commit();
  Fill(*dirty, 9);
  EXPECT_EQ(disk.spills, 0u);
  Fill(*dirty, 10);
  EXPECT_EQ(disk.spills, 0u);
  dirty->SetValuesAt(10 * kRows, TensorOf(10 * kRows).data());
  EXPECT_EQ(disk.spills, 1u);
  EXPECT_TRUE(CollectDirty(disk.cache).size() == 1u);
  for (std::size_t index = 0; index < 10 * kRows; ++index) ExpectTensor(*clean, index);
}

TEST(ChunkCache, FailingSpillLeavesBlockAndRowsAsTheyWere)
{
  FakeDisk   disk(10 * kChunkBytes);
  const auto block = MakeBlock(disk, 1);
  Fill(*block, 10);
  disk.isFull = true;
  for (int attempt = 0; attempt < 3; ++attempt)
    EXPECT_EQ(MessageOf([&] { block->SetValuesAt(10 * kRows, TensorOf(1).data()); }), "the disk is full");
  EXPECT_EQ(block->GetRecordCount(), 10 * kRows);
  EXPECT_FALSE(block->HasRecord(10 * kRows));
  EXPECT_EQ(CollectDirty(disk.cache).size(), 10u);
  disk.isFull = false;
  block->SetValuesAt(10 * kRows, TensorOf(10 * kRows).data());
  for (std::size_t index = 0; index <= 10 * kRows; ++index) ExpectTensor(*block, index);
}

TEST(ChunkCache, RowsStayDirtyUntilTheyAreMarkedClean)
{
  FakeDisk   disk;
  const auto block = MakeBlock(disk, 1);
  Fill(*block, 2);
  disk.isFull = true;
  EXPECT_EQ(MessageOf([&] { disk.Commit(); }), "the disk is full");
  EXPECT_EQ(CollectDirty(disk.cache).size(), 2u);
  disk.isFull = false;
  disk.Commit();
  EXPECT_TRUE(CollectDirty(disk.cache).empty());
}

TEST(ChunkCache, DirtyRowsComeByBlockAndChunkWithTheRowsThatWereWritten)
{
  FakeDisk   disk;
  const auto second = MakeBlock(disk, 8), first = MakeBlock(disk, 7);
  Fill(*second, 3);
  Fill(*first, 2);
  disk.Commit();
  const std::array<double, 6> tensor{};
  second->SetValuesAt(2 * kRows + 5, tensor.data());
  second->SetValuesAt(2 * kRows + 3, tensor.data());
  first->SetValuesAt(kRows + 1, tensor.data());
  second->SetValuesAt(kRows - 1, tensor.data());
  second->SetValuesAt(900, tensor.data());  // a new row
  const std::vector<DirtyRows> dirty = CollectDirty(disk.cache);
  ASSERT_EQ(dirty.size(), 4u);
  const auto show = [](const DirtyRows& rows) {
    std::string text = std::to_string(rows.GetBlock()) + " chunk " + std::to_string(rows.GetChunk()) + " rows " +
                       std::to_string(rows.GetFirstRow()) + " + " + std::to_string(rows.GetRowCount());
    text += rows.KeysAreRun() ? " run" : " keys";
    for (const std::uint32_t key : rows.GetKeys()) text += " " + std::to_string(key);
    return text;
  };
  EXPECT_EQ(show(dirty[0]), "7 chunk 1 rows 65 + 1 run 65");
  EXPECT_EQ(show(dirty[1]), "8 chunk 0 rows 63 + 1 run 63");
  EXPECT_EQ(show(dirty[2]), "8 chunk 2 rows 131 + 3 run 131");
  EXPECT_EQ(show(dirty[3]), "8 chunk 3 rows 192 + 1 run 900");
  EXPECT_EQ(&dirty[3].GetOwner(), second.get());
  second->SetValuesAt(800, tensor.data());
  EXPECT_EQ(show(CollectDirty(disk.cache)[3]), "8 chunk 3 rows 192 + 2 keys 900 800");
}

TEST(ChunkCache, DeletedBlocksLeaveTheCache)
{
  FakeDisk disk(10 * kChunkBytes);
  auto     gone = MakeBlock(disk, 1), other = MakeBlock(disk, 2);
  Fill(*gone, 4);
  Fill(*other, 4);
  gone.reset();
  EXPECT_EQ(disk.cache.GetBytes(), 4 * kChunkBytes);
  EXPECT_EQ(CollectDirty(disk.cache).size(), 4u);
  Fill(*other, 40);
  for (std::size_t index = 0; index < 40 * kRows; ++index) ExpectTensor(*other, index);
  other.reset();
  EXPECT_EQ(disk.cache.GetBytes(), 0u);
  EXPECT_TRUE(CollectDirty(disk.cache).empty());
}

// Keys with gaps take memory by block, and a database has thousands of blocks.
TEST(ChunkCache, KeysOfManyBlocksStayNearTheLimit)
{
  constexpr std::size_t kBlocks   = 100;
  constexpr std::size_t kKeyBytes = kRows * 4 * 2 + 4096;  // of a block: rows of keys and keys of rows, and of gaps
  FakeDisk              disk(4 * kKeyBytes);
  std::vector<std::unique_ptr<ResultDataBlock>> blocks;
  for (std::size_t uid = 1; uid <= kBlocks; ++uid) {
    const auto block = MakeBlock(disk, uid);
    for (std::size_t index = 0; index < kRows; ++index) block->SetValuesAt(2 * index + uid % 3, TensorOf(index).data());
    disk.Commit();
    blocks.push_back(std::make_unique<ResultDataBlock>(block->Describe(), disk.cache));
  }
  const auto expectAll = [&](std::size_t first) {
    for (std::size_t i = first; i < blocks.size(); ++i) {
      EXPECT_TRUE(blocks[i]->HasRecord(2 * (kRows - 1) + (i + 1) % 3));
      EXPECT_FALSE(blocks[i]->HasRecord(2 * kRows + (i + 1) % 3));
      EXPECT_EQ(blocks[i]->GetMaxIndex(), 2 * (kRows - 1) + (i + 1) % 3);
      EXPECT_LE(disk.cache.GetKeyBytes(), (4 + ChunkCache::kKeptKeys + 1) * kKeyBytes);
    }
  };
  expectAll(0);
  EXPECT_EQ(disk.store.keyReads, kBlocks);
  EXPECT_GT(disk.cache.GetKeyBytes(), 0u);
  // Those that came last are there, and the others come again, wherever one goes on.
  expectAll(kBlocks - ChunkCache::kKeptKeys);
  EXPECT_EQ(disk.store.keyReads, kBlocks);
  expectAll(0);
  EXPECT_GT(disk.store.keyReads, kBlocks);
  blocks.clear();
  EXPECT_EQ(disk.cache.GetKeyBytes(), 0u);
}

TEST(ChunkCache, KeysThatTheStoreDoesNotHaveStay)
{
  FakeDisk disk(1 << 16);
  auto     written = MakeBlock(disk, 1);
  for (std::size_t index = 0; index < kRows; ++index) written->SetValuesAt(2 * index, TensorOf(index).data());
  disk.Commit();
  written = std::make_unique<ResultDataBlock>(written->Describe(), disk.cache);
  written->SetValuesAt(1001, TensorOf(1).data());
  EXPECT_FALSE(written->ReleaseKeys());
  EXPECT_EQ(written->GetMaxIndex(), 1001u);
  EXPECT_TRUE(written->HasRecord(1001));
  disk.Commit();
  EXPECT_TRUE(written->ReleaseKeys());
  EXPECT_EQ(written->GetMaxIndex(), 1001u);
  const std::size_t reads = disk.store.keyReads;
  EXPECT_TRUE(written->HasRecord(1001));
  EXPECT_EQ(disk.store.keyReads, reads + 1);
  // What is written then finds its row.
  EXPECT_TRUE(written->ReleaseKeys());
  written->SetValuesAt(4, TensorOf(77).data());
  written->SetValuesAt(1003, TensorOf(78).data());
  EXPECT_EQ(written->GetRecordCount(), kRows + 2);
  std::array<double, 6> tensor{};
  written->GetValuesAt(4, tensor.data());
  EXPECT_EQ(tensor, TensorOf(77));
  ExpectTensor(*written, 0);
}

TEST(ChunkCache, ListElementsCount)
{
  // 64 lists of 4,000 bytes are 256 kB a chunk; the pool steps ahead by no more than what it has.
  constexpr std::size_t kMost = (ChunkCache::kKeptChunks + 1) * 2 * kRows * 4000;
  FakeDisk              disk(1 << 17);
  const auto            block  = MakeBlock(disk, 1, "Lb");
  FED_DataRecord* const record = block->CreateDataRecord();
  record->SetIntList(1, FED_IntArray(std::vector<int>(1000, 7)));
  for (std::size_t index = 0; index < 40 * kRows; ++index) {
    block->SetRecord(index, *record);
    ASSERT_LE(disk.cache.GetBytes(), kMost);
  }
  EXPECT_GE(disk.spills, 40 / (ChunkCache::kKeptChunks + 1));
  for (std::size_t chunk = 0; chunk < 40; ++chunk) {
    block->GetRecord(chunk * kRows, *record);
    EXPECT_EQ(record->GetIntListLen(1), 1000u);
    ASSERT_LE(disk.cache.GetBytes(), kMost);
  }
  EXPECT_GE(disk.cache.GetBytes(), kRows * 4000);
}

TEST(ChunkCache, HintReservesNoMoreThanTheFirstChunk)
{
  FakeDisk   disk(10 * kChunkBytes);
  const auto block = MakeBlock(disk, 1);
  block->Expect(100 * kRows);
  EXPECT_EQ(disk.cache.GetBytes(), kChunkBytes);
  Fill(*block, 3);
  EXPECT_EQ(disk.cache.GetBytes(), 3 * kChunkBytes);
  block->Expect(100 * kRows);
  EXPECT_EQ(disk.cache.GetBytes(), 3 * kChunkBytes);
}

TEST(ChunkCache, AppendToRowsThatLeftTheMemoryReadsNothing)
{
  FakeDisk   disk(10 * kChunkBytes);
  const auto block = MakeBlock(disk, 1), other = MakeBlock(disk, 2);
  for (std::size_t index = 0; index < 40; ++index) block->SetValuesAt(index, TensorOf(index).data());
  disk.Commit();
  Fill(*other, 20);  // drives the first block out
  const std::size_t reads = disk.store.reads;
  for (std::size_t index = 40; index < 50; ++index) block->SetValuesAt(index, TensorOf(index).data());
  // New rows are read and replaced without the old ones.
  for (std::size_t index = 40; index < 50; ++index) ExpectTensor(*block, index);
  block->SetValuesAt(45, TensorOf(1).data());
  block->SetValuesAt(45, TensorOf(45).data());
  EXPECT_EQ(disk.store.reads, reads);
  const std::vector<DirtyRows> dirty = CollectDirty(disk.cache);
  ASSERT_EQ(dirty.front().GetBlock(), 1u);
  EXPECT_EQ(dirty.front().GetFirstRow(), 40u);
  EXPECT_EQ(dirty.front().GetRowCount(), 10u);
  // An old one brings all of them.
  ExpectTensor(*block, 39);
  EXPECT_EQ(disk.store.reads, reads + 1);
  for (std::size_t index = 0; index < 50; ++index) ExpectTensor(*block, index);
  EXPECT_EQ(disk.store.reads, reads + 1);
  EXPECT_EQ(block->GetDoubleChunk(1, 0).GetSize(), 6u * 50);
  EXPECT_EQ(block->GetFieldStatistics(1).elements, 6u * 50);
}

TEST(ChunkCache, RowsThatWereAppendedStayWhenTheOthersCannotBeRead)
{
  FakeDisk   disk(10 * kChunkBytes);
  const auto block = MakeBlock(disk, 1), other = MakeBlock(disk, 2);
  for (std::size_t index = 0; index < 40; ++index) block->SetValuesAt(index, TensorOf(index).data());
  disk.Commit();
  Fill(*other, 20);
  block->SetValuesAt(40, TensorOf(40).data());
  disk.store.failingRead = 1;
  EXPECT_THROW(ExpectTensor(*block, 0), FED_Failure);
  ExpectTensor(*block, 40);
  block->SetValuesAt(41, TensorOf(41).data());
  // Nor is anything lost when there is no room for a first row of new ones.
  disk.Commit();
  Fill(*other, 30);
  disk.isFull = true;
  while (true) {
    try {
      Fill(*other, 60);
      FAIL();
    } catch (const FED_Failure&) {
      break;
    }
  }
  EXPECT_THROW(
      {
        for (std::size_t index = 42; index < kRows; ++index) block->SetValuesAt(index, TensorOf(index).data());
      },
      FED_Failure);
  disk.isFull             = false;
  const std::size_t count = block->GetRecordCount();
  EXPECT_GE(count, 42u);
  block->SetValuesAt(count, TensorOf(count).data());
  for (std::size_t index = 0; index <= count; ++index) ExpectTensor(*block, index);
}

TEST(ChunkCache, BlocksWrittenInTurnSpillAsMuchAsThereIsRoomFor)
{
  constexpr std::size_t kBlocks = 8;
  for (const std::size_t chunks : {1u, 5u, 20u}) {
    SCOPED_TRACE(chunks);
    FakeDisk                                      disk(chunks * kChunkBytes);
    std::vector<std::unique_ptr<ResultDataBlock>> blocks;
    for (BlockUid uid = 1; uid <= kBlocks; ++uid) blocks.push_back(MakeBlock(disk, uid));
    for (std::size_t index = 0; index < 20 * kRows; ++index)
      for (const auto& block : blocks) block->SetValuesAt(index, TensorOf(index).data());
    EXPECT_EQ(disk.store.reads, 0u);
    // At least a quarter of the limit at once, and half a chunk where the limit is less than what is kept anyway.
    EXPECT_LE(disk.spills, kBlocks * 20 * 4 / std::max<std::size_t>(chunks, 2));
    disk.Commit();
    for (const auto& block : blocks)
      for (std::size_t index = 0; index < 20 * kRows; ++index) ExpectTensor(*block, index);
  }
}

TEST(ChunkCache, RandomWorkInLittleMemoryMatchesPlainRows)
{
  for (unsigned seed = 1; seed <= 6; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937                                  random(seed);
    FakeDisk                                      disk((1 + random() % 12) * kChunkBytes);
    std::vector<std::unique_ptr<ResultDataBlock>> blocks;
    std::vector<std::vector<std::vector<double>>> expected(6);  // list of each index of each block
    for (BlockUid uid = 1; uid <= expected.size(); ++uid) blocks.push_back(MakeBlock(disk, uid, "IDb"));
    for (int step = 0; step < 3000; ++step) {
      const std::size_t at    = random() % blocks.size();
      ResultDataBlock&  block = *blocks[at];
      auto&             rows  = expected[at];
      const unsigned    kind  = random() % 16;
      if (kind == 0 && random() % 4 == 0) disk.Commit();
      if (kind < 10) {
        // Mostly appends.
        const std::size_t   index = rows.empty() || kind < 8 ? rows.size() : random() % rows.size();
        std::vector<double> list(random() % 7);
        for (double& value : list) value = static_cast<double>(random() % 1000);
        if (index == rows.size()) rows.emplace_back();
        FED_DataRecord* record = block.CreateDataRecord();
        record->SetInteger(1, static_cast<int>(list.size()));
        record->SetDoubleList(2, FED_DoubleArray(list));
        block.SetRecord(index, *record);
        block.DeleteDataRecord(record);
        rows[index] = list;
      } else if (!rows.empty()) {
        const std::size_t index =
            kind < 13 ? rows.size() - 1 - random() % std::min<std::size_t>(rows.size(), 8) : random() % rows.size();
        FED_ConstDataRecord* record = block.CreateConstDataRecord();
        FED_DoubleArray      list;
        block.GetRecord(index, *record);
        record->GetDoubleList(2, list);
        block.DeleteDataRecord(record);
        ASSERT_EQ(std::vector<double>(list.GetData(), list.GetData() + list.GetSize()), rows[index]) << index;
      }
      if (kind == 15 && !rows.empty()) {
        std::size_t elements = 0;
        for (const auto& list : rows) elements += list.size();
        ASSERT_EQ(block.GetFieldStatistics(2).elements, elements);
        const std::size_t chunk = random() % block.GetChunkCount();
        const auto        span  = block.GetIntegerChunk(1, chunk);
        for (std::size_t i = 0; i < span.GetSize(); ++i)
          ASSERT_EQ(static_cast<std::size_t>(span.GetData()[i]), rows[chunk * kRows + i].size());
      }
    }
  }
}

TEST(ChunkCache, LimitGrowsForRowsThatAreReadOutOfOrderAlone)
{
  constexpr std::size_t kChunks = 30, kLimit = 6 * kChunkBytes;
  FakeDisk              disk(kLimit, 20 * kChunkBytes);
  const auto            first = MakeBlock(disk, 1), second = MakeBlock(disk, 2);
  Fill(*first, kChunks);
  Fill(*second, kChunks);
  disk.Commit();
  // Forth and back, one block beside the other, again and again.
  for (int pass = 0; pass < 4; ++pass) {
    for (std::size_t index = 0; index < kChunks * kRows; ++index) {
      ExpectTensor(*first, index);
      ExpectTensor(*second, index);
    }
    for (std::size_t index = kChunks * kRows; index-- > 0;) ExpectTensor(*second, index);
  }
  EXPECT_EQ(disk.cache.GetLimit(), kLimit);
  // Every other record in another chunk: what is wanted again stays.
  std::mt19937      random(2);
  const std::size_t reads = disk.store.reads;
  for (int step = 0; step < 5000; ++step) ExpectTensor(*first, random() % (16 * kRows));
  EXPECT_LT(disk.store.reads - reads, 100u);
  EXPECT_LE(disk.cache.GetBytes(), disk.cache.GetLimit());
  for (int step = 0; step < 500; ++step) ExpectTensor(*second, random() % (kChunks * kRows));
  EXPECT_EQ(disk.cache.GetLimit(), 20 * kChunkBytes);
  // So it does where a step leads from each chunk to the next.
  FakeDisk   steps(kLimit, 40 * kChunkBytes);
  const auto grid = MakeBlock(steps, 1);
  Fill(*grid, kChunks);
  steps.Commit();
  for (std::size_t row = 0; row < kRows; ++row)
    for (std::size_t chunk = 0; chunk < kChunks; ++chunk) ExpectTensor(*grid, chunk * kRows + row);
  EXPECT_LT(steps.store.reads, 3 * kChunks);
  // A limit that was asked for stays.
  FakeDisk   strict(kLimit);
  const auto block = MakeBlock(strict, 1);
  Fill(*block, kChunks);
  strict.Commit();
  for (int step = 0; step < 500; ++step) ExpectTensor(*block, random() % (kChunks * kRows));
  EXPECT_EQ(strict.cache.GetLimit(), kLimit);
}
