// Memory that runs out at every allocation of a call in turn, and calls that allocate nothing.

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

#include "AllocationFailure.h"

using quilon_test::AllocationFailure;

namespace {

constexpr auto kStress   = static_cast<FED_OnfId>(521);
constexpr auto kNoFormat = static_cast<FED_OnfId>(590);

FED_DataDescriptor Key(FED_OnfId onf) { return FED_DataDescriptor(0, onf); }

// Everything that a block shows, as text.
std::string Show(const FED_DataBlock& block)
{
  const auto&          columns = dynamic_cast<const FED_ColumnDataBlock&>(block);
  std::string          text    = columns.GetRecordFormat().ToString() + " max " + std::to_string(block.GetMaxIndex());
  FED_ConstDataRecord* record  = block.CreateConstDataRecord();
  for (const std::size_t index : columns.GetIndices()) {
    block.GetRecord(index, *record);
    text += " | " + std::to_string(index) + ":";
    for (std::size_t field = 1; field <= record->GetFieldCount(); ++field) {
      FED_IntArray integers;
      switch (record->GetFieldType(field)) {
        case 1:
          text += " " + std::to_string(record->GetInteger(field));
          break;
        case 2:
          text += " " + std::to_string(record->GetDouble(field));
          break;
        case 4:
          text += " " + record->GetString(field);
          break;
        case 7:
          record->GetIntList(field, integers);
          for (std::size_t i = 0; i < integers.GetSize(); ++i) text += "," + std::to_string(integers.GetData()[i]);
          break;
        default:
          text += " ?";
          break;
      }
    }
  }
  block.DeleteDataRecord(record);
  return text;
}

// Runs `change` on a block that `prepare` makes, once for each allocation that fails: the block then shows what it
// showed before, and takes the change when memory is there again.
template <typename Prepare, typename Change>
void SweepAllocations(Prepare prepare, Change change)
{
  std::size_t failures = 0;
  for (std::size_t allocation = 1;; ++allocation) {
    FED_ResultDatabase database;
    FED_DataBlock&     block     = prepare(database);
    const std::string  before    = Show(block);
    bool               hasFailed = false;
    {
      const AllocationFailure failing(allocation);
      try {
        change(block);
      } catch (const std::bad_alloc&) {
        hasFailed = true;
      }
    }
    if (!hasFailed) break;
    ++failures;
    ASSERT_EQ(Show(block), before) << "allocation " << allocation;
    change(block);
    FED_ResultDatabase fresh;
    FED_DataBlock&     expected = prepare(fresh);
    change(expected);
    ASSERT_EQ(Show(block), Show(expected)) << "allocation " << allocation;
  }
  EXPECT_GT(failures, 0u) << "the change allocates nothing, so that the sweep tells nothing";
}

FED_DataBlock& MakeListBlock(FED_ResultDatabase& database)
{
  FED_DataBlock*  block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "ILbSLb");
  FED_DataRecord* record = block->CreateDataRecord();
  for (const std::size_t index : {4u, 5u, 6u, 7u}) {
    record->SetInteger(1, static_cast<int>(index));
    record->SetIntList(2, std::vector<int>(30, static_cast<int>(index)));
    record->SetString(3, std::string(30, 'x'));
    record->SetIntList(4, std::vector<int>{1});
    block->SetRecord(index, *record);
  }
  block->DeleteDataRecord(record);
  return *block;
}

FED_DataBlock& MakeBlockWithoutFormat(FED_ResultDatabase& database)
{
  return database.GetOrCreateDataBlock(Key(kNoFormat), 0);
}

FED_DataBlock& MakeHistory(FED_ResultDatabase& database)
{
  FED_DataBlock& block = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  for (const std::size_t index : {1u, 2u, 3u, 4u}) block.SetScalarAt(index, static_cast<double>(index));
  return block;
}

// Long lists and a long string in a record that is made outside the sweep.
class LongRecord
{
public:
  LongRecord()
  {
    FED_DataBlock* block = database_.CreateDataBlock(Key(kNoFormat), 0, 0, "ILbSLb");
    record_              = block->CreateDataRecord();
    record_->SetInteger(1, 77);
    record_->SetIntList(2, std::vector<int>(500, 8));
    record_->SetString(3, std::string(500, 'y'));
    record_->SetIntList(4, std::vector<int>(500, 9));
  }

  const FED_DataRecord& Get() const { return *record_; }

private:
  FED_ResultDatabase database_;
  FED_DataRecord*    record_;
};

}  // namespace

TEST(AllocationFailure, FailedSetRecordOfANewRecordLeavesTheBlockAsItWas)
{
  const LongRecord record;
  SweepAllocations(MakeListBlock, [&](FED_DataBlock& block) { block.SetRecord(8, record.Get()); });
}

TEST(AllocationFailure, FailedSetRecordOfALongerRecordLeavesTheBlockAsItWas)
{
  const LongRecord record;
  SweepAllocations(MakeListBlock, [&](FED_DataBlock& block) { block.SetRecord(5, record.Get()); });
}

TEST(AllocationFailure, FailedSetRecordAtAFarIndexLeavesTheBlockAsItWas)
{
  const LongRecord record;
  SweepAllocations(MakeListBlock, [&](FED_DataBlock& block) { block.SetRecord(2000000000, record.Get()); });
}

TEST(AllocationFailure, FailedFirstSetRecordLeavesTheBlockWithoutAFormat)
{
  const LongRecord record;
  SweepAllocations(MakeBlockWithoutFormat, [&](FED_DataBlock& block) { block.SetRecord(5, record.Get()); });
}

TEST(AllocationFailure, FailedFirstSetScalarLeavesTheBlockWithoutAFormat)
{
  SweepAllocations(MakeBlockWithoutFormat, [](FED_DataBlock& block) { block.SetScalarAt(3, 1.0); });
}

TEST(AllocationFailure, FailedSetScalarLeavesTheBlockAsItWas)
{
  for (const std::size_t index : {5u, 0u, 900u, 2147483647u})
    SweepAllocations(MakeHistory, [index](FED_DataBlock& block) { block.SetScalarAt(index, 9.0); });
}

TEST(AllocationFailure, FailedCleaningOfAListPoolLeavesTheBlockAsItWas)
{
  // Row 1 was rewritten ever longer until garbage outweighs content by more than the tolerated megabyte, so that the
  // next longer list has the pool cleaned first.
  const auto prepare = [](FED_ResultDatabase& database) -> FED_DataBlock& {
    FED_DataBlock*  block  = database.CreateDataBlock(Key(kNoFormat), 0, 0, "Lb");
    FED_DataRecord* record = block->CreateDataRecord();
    for (std::size_t length = 150000; length < 150003; ++length) {
      record->SetIntList(1, std::vector<int>(length, 1));
      block->SetRecord(1, *record);
    }
    record->SetIntList(1, std::vector<int>{1, 2, 3});
    block->SetRecord(2, *record);
    block->DeleteDataRecord(record);
    return *block;
  };
  FED_ResultDatabase other;
  FED_DataRecord*    record = other.CreateDataBlock(Key(kNoFormat), 0, 0, "Lb")->CreateDataRecord();
  record->SetIntList(1, std::vector<int>(150003, 2));
  SweepAllocations(prepare, [&](FED_DataBlock& block) { block.SetRecord(1, *record); });
}

TEST(AllocationFailure, FailedAdditionLeavesTheIdMapAsItWas)
{
  for (std::size_t allocation = 1;; ++allocation) {
    FED_ResultDatabase    database;
    FED_ResultIdMapsPool& pool = database.GetIdMapsPool();
    for (const int id : {5, 6, 7, 8}) pool.FindOrAddIndex(0, id);
    bool hasFailed = false;
    {
      const AllocationFailure failing(allocation);
      try {
        pool.FindOrAddIndex(0, 2000000000);
      } catch (const std::bad_alloc&) {
        hasFailed = true;
      }
    }
    if (!hasFailed) {
      EXPECT_GT(allocation, 1u);
      break;
    }
    EXPECT_EQ(pool.GetCount(0), 4u);
    EXPECT_EQ(pool.FindIndex(0, 2000000000), FED_IdMapsPool::npos);
    EXPECT_EQ(pool.FindIndex(0, 7), 3u);
    EXPECT_EQ(pool.FindOrAddIndex(0, 2000000000), 5u);
  }
}

TEST(AllocationFailure, FailedCreationMakesNoBlock)
{
  for (std::size_t allocation = 1;; ++allocation) {
    FED_ResultDatabase database;
    bool               hasFailed = false;
    {
      const AllocationFailure failing(allocation);
      try {
        database.GetOrCreateDataBlock(Key(kStress), 1000);
      } catch (const std::bad_alloc&) {
        hasFailed = true;
      }
    }
    EXPECT_EQ(database.HasDataBlock(Key(kStress)), !hasFailed);
    if (!hasFailed) break;
  }
}

TEST(Allocations, RewritingAndReadingAllocateNothing)
{
  FED_ResultDatabase database;
  FED_DataBlock&     tensors   = database.GetOrCreateDataBlock(Key(kStress), 0);
  FED_DataBlock&     history   = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  double             tensor[6] = {1, 2, 3, 4, 5, 6};
  for (const std::size_t index : {3u, 1u, 70000u}) {
    tensors.SetValuesAt(index, tensor);
    history.SetScalarAt(index, 1.0);
  }
  const AllocationFailure counting(0);
  for (const std::size_t index : {3u, 1u, 70000u}) {
    tensors.SetValuesAt(index, tensor);
    tensors.GetValuesAt(index, tensor);
    history.SetScalarAt(index, history.GetScalarAt(index));
  }
  EXPECT_EQ(counting.GetCount(), 0u);
}

TEST(Allocations, ExpectedRecordsAreReservedOverSeveralChunks)
{
  constexpr std::size_t   kCount = 600000;  // three chunks of 2^18 tensors
  FED_ResultDatabase      database;
  FED_DataBlock&          block     = database.GetOrCreateDataBlock(Key(kStress), kCount);
  const double            tensor[6] = {1, 2, 3, 4, 5, 6};
  const AllocationFailure counting(0);
  for (std::size_t index = 1; index <= kCount; ++index) block.SetValuesAt(index, tensor);
  EXPECT_EQ(counting.GetCount(), 0u);
}

TEST(Allocations, ViewsAllocateOncePerViewForTheFormatOnly)
{
  FED_ResultDatabase database;
  FED_DataBlock&     block = database.GetOrCreateDataBlock(Key(kStress), 100);
  FED_IdDataBlock    view(block, database.GetIdMapsPool(), true);
  double             tensor[6] = {1, 2, 3, 4, 5, 6};
  for (int id = 1; id <= 100; ++id) view.SetTensor(id, tensor);
  const AllocationFailure counting(0);
  for (int id = 1; id <= 100; ++id) {
    view.SetTensor(id, tensor);
    view.GetTensor(id, tensor);
  }
  EXPECT_EQ(counting.GetCount(), 0u);
}

TEST(Allocations, LoneRecordAtTheGreatestIndexCostsLittle)
{
  FED_ResultDatabase database;
  FED_DataBlock&     block = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  block.SetScalarAt(1, 1.0);
  const AllocationFailure counting(0);
  block.SetScalarAt(2147483647, 2.0);
  EXPECT_LT(counting.GetBytes(), 4096u);
}

TEST(Allocations, NegativeIndexAllocatesNoStorage)
{
  FED_ResultDatabase      database;
  FED_DataBlock&          block = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  FED_IdDataBlock         view(block, database.GetIdMapsPool(), true);
  const AllocationFailure counting(0);
  EXPECT_THROW(view.SetScalar(-3, 1.0), FED_Failure);
  EXPECT_THROW(block.SetScalarAt(static_cast<std::size_t>(-3), 1.0), FED_Failure);
  // Messages, tags and back traces of the two failures are all there is.
  EXPECT_LT(counting.GetBytes(), 1u << 20);
}

TEST(Allocations, NegativeIndexMakesNoRoomForTheFirstRecordOfABlockWithoutFormat)
{
  const LongRecord        record;
  FED_ResultDatabase      database;
  FED_DataBlock&          block = database.GetOrCreateDataBlock(Key(kNoFormat), 1000000);
  const AllocationFailure counting(0);
  EXPECT_THROW(block.SetRecord(static_cast<std::size_t>(-3), record.Get()), FED_Failure);
  EXPECT_THROW(block.SetScalarAt(static_cast<std::size_t>(-3), 1.0), FED_Failure);
  EXPECT_LT(counting.GetBytes(), 1u << 20);
}
