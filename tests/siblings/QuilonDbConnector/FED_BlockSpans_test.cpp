#include "bundled/FED_BlockSpans.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_RecordFormat.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_DataRecord.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"
#include "QuilonUtilities/FED_DoubleArray.h"
#include "QuilonUtilities/FED_IntArray.h"

#include "failure_message.h"
#include "TempFolder.h"

namespace {

constexpr auto kFormat = "IFDVTSLbDb";  // a field of every type

/// A block of somebody else's database: the contract and nothing more.
class PlainBlock final : public FED_DataBlock
{
public:
  explicit PlainBlock(const FED_DataBlock& inner) : FED_DataBlock(inner.GetDescriptor()), inner_(inner) {}

  bool HasRecord(std::size_t index) const override { return inner_.HasRecord(index); }
  void SetRecord(std::size_t, const FED_DataRecord&) override { ADD_FAILURE(); }
  void GetRecord(std::size_t index, FED_ConstDataRecord& record) const override { inner_.GetRecord(index, record); }
  std::size_t          GetSize() const override { return inner_.GetSize(); }
  std::size_t          GetMaxIndex() const override { return inner_.GetMaxIndex(); }
  void                 SetScalarAt(std::size_t, double) override { ADD_FAILURE(); }
  double               GetScalarAt(std::size_t index) const override { return inner_.GetScalarAt(index); }
  void                 SetValuesAt(std::size_t, const double*) override { ADD_FAILURE(); }
  void                 GetValuesAt(std::size_t index, double* out) const override { inner_.GetValuesAt(index, out); }
  FED_DataRecord*      CreateDataRecord() override { return nullptr; }
  FED_ConstDataRecord* CreateConstDataRecord() const override { return inner_.CreateConstDataRecord(); }
  void                 DeleteDataRecord(FED_ConstDataRecord* record) const override { inner_.DeleteDataRecord(record); }

private:
  const FED_DataBlock& inner_;
};

FED_DataDescriptor Key(int onf, int substep = 0)
{
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(onf));
  key.SetInteger(FED_DataDescriptor::Substep, substep);
  return key;
}

// The record of an index, with empty lists and texts among them.
void SetRecord(FED_DataBlock& block, FED_DataRecord& record, std::size_t index)
{
  const auto   v         = static_cast<double>(index);
  const double tensor[6] = {v, -v, 0.5 * v, 1.0 / (v + 1.0), v * v, 0.0};
  record.SetInteger(1, static_cast<int>(index) - 7);
  record.SetFloat(2, static_cast<float>(index) * 0.1f);
  record.SetDouble(3, v * 0.1);
  record.SetVector(4, tensor + 1);
  record.SetTensor(5, tensor);
  record.SetString(6, std::string(index % 5, 'x') + (index % 3 == 0 ? std::to_string(index) : ""));
  record.SetIntList(7, FED_IntArray(std::vector<int>(index % 4, static_cast<int>(index))));
  record.SetDoubleList(8, FED_DoubleArray(std::vector<double>(index % 7, v)));
  block.SetRecord(index, record);
}

void Fill(FED_DataBlock& block, const std::vector<std::size_t>& indices)
{
  FED_DataRecord* const record = block.CreateDataRecord();
  for (const std::size_t index : indices) SetRecord(block, *record, index);
  block.DeleteDataRecord(record);
}

template <typename T>
std::vector<T> Copy(QuilonContainer::Span<const T> span)
{
  return std::vector<T>(span.GetData(), span.GetData() + span.GetSize());
}

template <typename T>
std::vector<T> Row(QuilonContainer::Span<const T> span, std::size_t row, std::size_t width)
{
  return std::vector<T>(span.GetData() + row * width, span.GetData() + (row + 1) * width);
}

// Reads each record of a walk by the contract too.
// @return the indices in the order of the walk
std::vector<std::size_t> WalkAndCompare(const FED_DataBlock& block)
{
  std::vector<std::size_t>   walked;
  FED_ConstDataRecord* const record = block.CreateConstDataRecord();
  std::size_t                wrong  = 0;
  FED_ForEachSpan(block, [&](const FED_BlockSpan& span) {
    EXPECT_EQ(span.GetFormat().ToString(), kFormat);
    EXPECT_EQ(span.GetIds().GetSize(), 0u);
    for (std::size_t row = 0; row < span.GetCount(); ++row) {
      const std::size_t index = span.GetIndices().GetData()[row];
      walked.push_back(index);
      block.GetRecord(index, *record);
      double          vector[3], tensor[6];
      FED_IntArray    integers;
      FED_DoubleArray doubles;
      record->GetVector(4, vector);
      record->GetTensor(5, tensor);
      record->GetIntList(7, integers);
      record->GetDoubleList(8, doubles);
      const bool isSame = span.GetIntegers(1).GetData()[row] == record->GetInteger(1) &&
                          span.GetFloats(2).GetData()[row] == record->GetFloat(2) &&
                          span.GetDoubles(3).GetData()[row] == record->GetDouble(3) &&
                          Row(span.GetDoubles(4), row, 3) == std::vector<double>(vector, vector + 3) &&
                          Row(span.GetDoubles(5), row, 6) == std::vector<double>(tensor, tensor + 6) &&
                          span.GetText(6, row) == record->GetString(6) &&
                          Copy(span.GetIntegerList(7, row)) ==
                              std::vector<int>(integers.GetData(), integers.GetData() + integers.GetSize()) &&
                          Copy(span.GetDoubleList(8, row)) ==
                              std::vector<double>(doubles.GetData(), doubles.GetData() + doubles.GetSize());
      wrong += isSame ? 0 : 1;
    }
  });
  block.DeleteDataRecord(record);
  EXPECT_EQ(wrong, 0u);
  return walked;
}

std::vector<std::size_t> Dense(std::size_t count, std::size_t first = 1, std::size_t step = 1)
{
  std::vector<std::size_t> indices(count);
  for (std::size_t i = 0; i < count; ++i) indices[i] = first + i * step;
  return indices;
}

void ExpectWalks(const FED_DataBlock& block, const std::vector<std::size_t>& indices)
{
  std::vector<std::size_t> ascending = indices;
  std::sort(ascending.begin(), ascending.end());
  EXPECT_EQ(WalkAndCompare(block), indices);
  EXPECT_EQ(FED_SpansAscend(block), indices == ascending);
  const PlainBlock foreign(block);
  EXPECT_EQ(WalkAndCompare(foreign), ascending);
  EXPECT_TRUE(FED_SpansAscend(foreign));
}

}  // namespace

TEST(BlockSpans, GiveTheRecordsThatReadingOneByOneGives)
{
  std::vector<std::size_t> shuffled = Dense(3000, 0, 3);
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(5));
  const std::vector<std::vector<std::size_t>> orders = {
      {}, {0}, {4000000}, Dense(1024), Dense(1025), Dense(9000), Dense(3000, 5, 7), shuffled, {9, 8, 7}};
  for (const std::vector<std::size_t>& indices : orders) {
    SCOPED_TRACE(indices.size());
    FED_ResultDatabase inMemory;
    FED_DataBlock&     block = *inMemory.CreateDataBlock(Key(590), 0, 0, kFormat);
    Fill(block, indices);
    ExpectWalks(block, indices);

    const quilon_test::TempFolder folder;
    FED_ResultDatabaseOptions     options;
    options.memoryLimit = 1;
    {
      FED_ResultDatabase onDisk(folder / "a.fed", FED_ResultDatabase::Create, options);
      FED_DataBlock&     written = *onDisk.CreateDataBlock(Key(590), 0, 0, kFormat);
      Fill(written, indices);
      ExpectWalks(written, indices);
      onDisk.Commit();
      ExpectWalks(written, indices);
    }
    const FED_ResultDatabase reader(folder / "a.fed", FED_ResultDatabase::ReadOnly, options);
    ExpectWalks(reader.GetConstDataBlock(Key(590)), indices);
  }
}

TEST(BlockSpans, ShowRecordsThatCameAfterAWalk)
{
  FED_ResultDatabase database;
  FED_DataBlock&     block = *database.CreateDataBlock(Key(590), 0, 0, kFormat);
  Fill(block, {5, 3});
  EXPECT_EQ(WalkAndCompare(block), (std::vector<std::size_t>{5, 3}));
  Fill(block, {9, 5, 4});
  EXPECT_EQ(WalkAndCompare(block), (std::vector<std::size_t>{5, 3, 9, 4}));
}

TEST(BlockSpans, GiveIdsByTheMapOfTheKind)
{
  FED_ResultDatabase database;
  FED_DataBlock&     stress    = database.GetOrCreateDataBlock(Key(521), 0);
  FED_DataBlock&     history   = database.GetOrCreateDataBlock(Key(FED_OnfId_ScalarHistory), 0);
  const double       tensor[6] = {1, 2, 3, 4, 5, 6};
  const int          kind      = FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(521)).GetEntityKind();
  for (const int id : {70, -3, 12}) stress.SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(kind, id), tensor);
  history.SetScalarAt(40, 0.5);
  std::vector<int> ids;
  const auto       collect = [&](const FED_BlockSpan& span) { ids = Copy(span.GetIds()); };
  FED_ForEachSpan(stress, database.GetIdMapsPool(), collect);
  std::vector<int> expected;
  for (std::size_t index = 1; index <= 3; ++index) expected.push_back(database.GetIdMapsPool().GetId(kind, index));
  EXPECT_EQ(ids, expected);
  EXPECT_EQ(ids, (std::vector<int>{70, -3, 12}));
  FED_ForEachSpan(PlainBlock(stress), database.GetIdMapsPool(), collect);
  EXPECT_EQ(ids, expected);
  FED_ForEachSpan(history, database.GetIdMapsPool(), collect);
  EXPECT_EQ(ids, std::vector<int>{40});
  stress.SetValuesAt(9, tensor);
  EXPECT_THROW(FED_ForEachSpan(stress, database.GetIdMapsPool(), collect), FED_Failure);
}

TEST(BlockSpans, OfSingleChunksAreThoseOfTheWalk)
{
  FED_ResultDatabase database;
  const auto&        block = dynamic_cast<const FED_ColumnDataBlock&>(database.GetOrCreateDataBlock(Key(521), 0));
  for (int id = 70000; id > 0; --id) {
    const double tensor[6] = {0.5 * id, 2, 3, 4, 5, 6};
    database.GetDataBlock(Key(521)).SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(0, id), tensor);
  }
  std::vector<std::vector<int>>    ids;
  std::vector<std::vector<double>> values;
  FED_ForEachSpan(block, database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
    ids.push_back(Copy(span.GetIds()));
    values.push_back(Copy(span.GetDoubles(1)));
  });
  ASSERT_EQ(block.GetChunkCount(), 2u);
  ASSERT_EQ(ids.size(), 2u);
  for (const std::size_t chunk : {1u, 0u}) {
    int numSpans = 0;
    FED_VisitChunk(block, database.GetIdMapsPool(), chunk, [&](const FED_BlockSpan& span) {
      ++numSpans;
      EXPECT_TRUE(Copy(span.GetIds()) == ids[chunk]);
      EXPECT_TRUE(Copy(span.GetDoubles(1)) == values[chunk]);
    });
    FED_VisitChunk(block, chunk, [&](const FED_BlockSpan& span) {
      ++numSpans;
      EXPECT_EQ(span.GetIds().GetSize(), 0u);
      ASSERT_EQ(span.GetIndices().GetSize(), ids[chunk].size());
      EXPECT_EQ(database.GetIdMapsPool().GetId(0, span.GetIndices().GetData()[1]), ids[chunk][1]);
      EXPECT_TRUE(Copy(span.GetDoubles(1)) == values[chunk]);
    });
    EXPECT_EQ(numSpans, 2);
  }
  const auto visit = [&] { FED_VisitChunk(block, database.GetIdMapsPool(), 2, [](const FED_BlockSpan&) {}); };
  EXPECT_EQ(MessageOf(visit), "block iteration=0 onf=521 substep=0: chunk is 2, the block has 2");
}

// Indices with gaps come from the store, those of the chunk alone.
TEST(BlockSpans, OfSingleChunksOnDiskAreThoseOfTheWalk)
{
  const quilon_test::TempFolder folder;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
    FED_DataBlock&     block = database.GetOrCreateDataBlock(Key(521), 0);
    for (int id = 1; id <= 9000; ++id) {
      const double      tensor[6] = {0.5 * id, 2, 3, 4, 5, 6};
      const std::size_t index     = database.GetIdMapsPool().FindOrAddIndex(0, id);
      if (id % 3 != 1) block.SetValuesAt(index, tensor);
      if (id == 4000 || id == 8000) database.Commit();
    }
    database.Commit();
  }
  const FED_ResultDatabase      database(folder / "a.fed", FED_ResultDatabase::ReadOnly);
  const auto&                   block = dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(Key(521)));
  std::vector<std::vector<int>> ids;
  const auto                    collect = [&](const FED_BlockSpan& span) { ids.push_back(Copy(span.GetIds())); };
  FED_VisitChunk(block, database.GetIdMapsPool(), 0, collect);
  FED_ForEachSpan(block, database.GetIdMapsPool(), collect);
  FED_VisitChunk(block, database.GetIdMapsPool(), 0, collect);
  ASSERT_EQ(ids.size(), 3u);
  EXPECT_EQ(ids[0].size(), 6000u);
  EXPECT_TRUE(ids[0] == ids[1]);
  EXPECT_TRUE(ids[0] == ids[2]);
}

TEST(BlockSpans, StayValidWhateverElseIsReadAndWrittenMeanwhile)
{
  const quilon_test::TempFolder folder;
  FED_ResultDatabaseOptions     options;
  options.memoryLimit = 1;
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
  for (int block = 0; block < 8; ++block) Fill(*database.CreateDataBlock(Key(590, block), 0, 0, kFormat), Dense(5000));
  database.Commit();
  FED_DataBlock& others = *database.CreateDataBlock(Key(590, 100), 0, 0, kFormat);
  std::size_t    next   = 1;
  std::size_t    wrong  = 0;
  FED_ForEachSpan(database.GetConstDataBlock(Key(590, 0)), [&](const FED_BlockSpan& span) {
    const double* const values = span.GetDoubles(3).GetData();
    for (int block = 1; block < 8; ++block) {
      const FED_DataBlock&       other  = database.GetConstDataBlock(Key(590, block));
      FED_ConstDataRecord* const record = other.CreateConstDataRecord();
      for (const std::size_t index : {1u, 4999u}) other.GetRecord(index, *record);
      other.DeleteDataRecord(record);
    }
    Fill(others, Dense(1000, next));
    next += 1000;
    EXPECT_EQ(span.GetDoubles(3).GetData(), values);
    for (std::size_t row = 0; row < span.GetCount(); ++row) {
      const std::size_t index = span.GetIndices().GetData()[row];
      wrong += values[row] == static_cast<double>(index) * 0.1 ? 0 : 1;
      wrong += span.GetDoubleList(8, row).GetSize() == index % 7 ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0u);
  EXPECT_EQ(WalkAndCompare(others).size(), next - 1);
}

TEST(BlockSpans, LetGoOfTheChunkWhenTheCallThrows)
{
  const quilon_test::TempFolder folder;
  FED_ResultDatabaseOptions     options;
  options.memoryLimit = 1;
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
  FED_DataBlock&     block = *database.CreateDataBlock(Key(590), 0, 0, kFormat);
  Fill(block, Dense(9000));
  EXPECT_THROW(FED_ForEachSpan(block, [](const FED_BlockSpan&) { throw std::runtime_error("enough"); }),
               std::runtime_error);
  EXPECT_EQ(WalkAndCompare(block), Dense(9000));
}

TEST(HeldChunk, StaysWhereItIsWhateverElseIsReadUntilItIsLetGo)
{
  const quilon_test::TempFolder folder;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
    for (int block = 0; block < 8; ++block)
      Fill(*database.CreateDataBlock(Key(590, block), 0, 0, kFormat), Dense(5000));
    database.Commit();
  }
  FED_ResultDatabaseOptions options;
  options.memoryLimit = 1;
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadOnly, options);
  const auto&        block = dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(Key(590)));
  auto               held  = block.HoldChunk(0);
  const auto         span  = block.GetDoubleChunk(3, 0);
  const auto         copy  = std::vector<double>(span.GetData(), span.GetData() + span.GetSize());
  for (int other = 1; other < 8; ++other) WalkAndCompare(database.GetConstDataBlock(Key(590, other)));
  EXPECT_EQ(block.GetDoubleChunk(3, 0).GetData(), span.GetData());
  EXPECT_EQ(std::vector<double>(span.GetData(), span.GetData() + span.GetSize()), copy);
  held.reset();
  EXPECT_EQ(WalkAndCompare(block), Dense(5000));
  EXPECT_THROW(block.HoldChunk(2), FED_Failure);
}

TEST(BlockSpans, FieldsThatAreNotThereOrOfAnotherTypeAreFailures)
{
  FED_ResultDatabase database;
  FED_DataBlock&     block = *database.CreateDataBlock(Key(590), 0, 0, kFormat);
  Fill(block, {1});
  std::vector<std::string> texts;
  FED_ForEachSpan(block, [&](const FED_BlockSpan& span) {
    texts.push_back(MessageOf([&] { span.GetDoubles(0); }));
    texts.push_back(MessageOf([&] { span.GetDoubles(9); }));
    texts.push_back(MessageOf([&] { span.GetDoubles(1); }));
    texts.push_back(MessageOf([&] { span.GetIntegerList(8, 0); }));
  });
  const std::string of = "block iteration=0 onf=590 substep=0: ";
  EXPECT_EQ(texts, (std::vector<std::string>{
                       of + "record field is 0, expected 1 to 8", of + "record field is 9, expected 1 to 8",
                       of + "record field 1 is of type integer", of + "record field 8 is of type double list"}));
}
