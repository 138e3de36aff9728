#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "support.h"

namespace conformance {
namespace {

/// What a database holds after it was closed and opened again. One in memory just keeps it.
class PersistenceConformance : public DatabaseTest
{};

TEST_F(PersistenceConformance, AnEmptyDatabaseStaysEmpty)
{
  Reopen();
  EXPECT_TRUE(ConstDatabase().IsInitialized());
  EXPECT_TRUE(ConstDatabase().GetDataDescriptors({}).empty());
}

TEST_F(PersistenceConformance, ScalarsKeepTheirBits)
{
  const std::vector<double> values = TellingDoubles();
  for (std::size_t i = 0; i < values.size(); ++i) Block(Key(kHistory)).SetScalarAt(i, values[i]);
  Reopen();
  const FED_DataBlock& block = ConstDatabase().GetConstDataBlock(Key(kHistory));
  for (std::size_t i = 0; i < values.size(); ++i)
    EXPECT_TRUE(SameBits(block.GetScalarAt(i), values[i])) << values[i] << " became " << block.GetScalarAt(i);
}

TEST_F(PersistenceConformance, IndicesWithRecordsStayTheSame)
{
  for (const std::size_t index : {0U, 3U, 700U}) Block(Key(kHistory)).SetScalarAt(index, 1.0);
  Reopen();
  const FED_DataBlock& block = ConstDatabase().GetConstDataBlock(Key(kHistory));
  EXPECT_EQ(Visited(block), (std::vector<std::size_t>{0, 3, 700}));
  EXPECT_EQ(block.GetSize(), 700U);
}

TEST_F(PersistenceConformance, KeysStayTheSameToTheValueUnderAClearBit)
{
  FED_DataDescriptor three = Key(kHistory, 3, -4);
  FED_DataDescriptor four  = Key(kHistory, 4);
  three.mask = four.mask                     = 3U;
  const std::vector<FED_DataDescriptor> keys = {three, four, Key(kHistory, 3), Key(kUserHistory, 1)};
  for (std::size_t i = 0; i < keys.size(); ++i) Block(keys[i]).SetScalarAt(1, static_cast<double>(i));
  Reopen();
  EXPECT_EQ(ConstDatabase().GetDataDescriptors({}).size(), keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    ASSERT_TRUE(ConstDatabase().HasDataBlock(keys[i])) << i;
    EXPECT_EQ(ConstDatabase().GetConstDataBlock(keys[i]).GetScalarAt(1), static_cast<double>(i));
  }
}

TEST_F(PersistenceConformance, RecordsStayWithTheirIds)
{
  {
    FED_IdDataBlock first(Block(Key(kUserScalar, 1)), Pool(), true);
    FED_IdDataBlock second(Block(Key(kUserScalar, 2)), Pool(), true);
    for (const int id : {30, -10, 2147483647, 0}) first.SetScalar(id, id);
    for (const int id : {5, -10, 30}) second.SetScalar(id, 2.0 * id);
  }
  Reopen();
  const FED_IdMapsPool&      pool = ConstDatabase().GetIdMapsPool();
  const FED_ConstIdDataBlock first(ConstDatabase().GetConstDataBlock(Key(kUserScalar, 1)), pool);
  const FED_ConstIdDataBlock second(ConstDatabase().GetConstDataBlock(Key(kUserScalar, 2)), pool);
  double                     value = 0.0;
  for (const int id : {30, -10, 2147483647, 0}) {
    first.GetScalar(id, value);
    EXPECT_EQ(value, id);
  }
  for (const int id : {5, -10, 30}) {
    second.GetScalar(id, value);
    EXPECT_EQ(value, 2.0 * id);
  }
  EXPECT_FALSE(first.HasRecord(5));
  EXPECT_FALSE(second.HasRecord(0));
}

TEST_F(PersistenceConformance, EveryFieldTypeComesBack)
{
  {
    const Scratch record(*Database().CreateDataBlock(Key(kUserHistory), 0, 0, "D"));
    record->SetDouble(1, 0.5);
    Block(Key(kUserHistory)).SetRecord(1, *record);
  }
  {
    FED_DataBlock&    block = *Database().CreateDataBlock(Key(kUnknown), 0, 0, "IiFDdSVTLblbDb");
    FED_IdDataBlock   view(block, Pool(), true);
    FED_IdDataRecord& record    = view.CreateIdDataRecord();
    FED_DataRecord&   fields    = record.GetDataRecord();
    const double      vector[3] = {0.1, -0.0, 3};
    const double      tensor[6] = {4, 5, 6, 7, 8, -0.0};
    fields.SetInteger(1, -2147483647 - 1);
    fields.SetInteger(2, 7);
    fields.SetFloat(3, 0.1F);
    fields.SetDouble(4, 0.1);
    fields.SetDouble(5, -0.0);
    fields.SetString(6, "a \"quoted\" \\ text,\twith\nlines and \xC3\xA9");
    fields.SetVector(7, vector);
    fields.SetTensor(8, tensor);
    fields.SetIntList(9, FED_IntArray(std::vector<int>{3, -1}));
    fields.SetIntList(10, FED_IntArray());
    fields.SetDoubleList(11, FED_DoubleArray(std::vector<double>{0.1, -0.0}));
    view.SetRecord(77, record);
    view.DeleteIdDataRecord(record);
  }
  Reopen();
  EXPECT_EQ(ConstDatabase().GetConstDataBlock(Key(kUserHistory)).GetScalarAt(1), 0.5);
  const FED_ConstIdDataBlock view(ConstDatabase().GetConstDataBlock(Key(kUnknown)), ConstDatabase().GetIdMapsPool());
  FED_ConstIdDataRecord&     record = view.CreateConstIdDataRecord();
  view.GetRecord(77, record);
  const FED_ConstDataRecord& fields = record.GetDataRecord();
  std::vector<int>           types;
  for (std::size_t field = 1; field <= fields.GetFieldCount(); ++field) types.push_back(fields.GetFieldType(field));
  ASSERT_EQ(types, (std::vector<int>{1, 10, 3, 2, 11, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(fields.GetInteger(1), -2147483647 - 1);
  EXPECT_EQ(fields.GetFloat(3), 0.1F);
  EXPECT_TRUE(SameBits(fields.GetDouble(5), -0.0));
  EXPECT_EQ(fields.GetString(6), "a \"quoted\" \\ text,\twith\nlines and \xC3\xA9");
  double values[6] = {};
  fields.GetVector(7, values);
  EXPECT_EQ(values[0], 0.1);
  EXPECT_TRUE(SameBits(values[1], -0.0));
  fields.GetTensor(8, values);
  EXPECT_TRUE(SameBits(values[5], -0.0));
  FED_IntArray list;
  fields.GetIntList(9, list);
  EXPECT_EQ(ToVector(list), (std::vector<int>{3, -1}));
  EXPECT_EQ(fields.GetIntListLen(10), 0U);
  FED_DoubleArray doubles;
  fields.GetDoubleList(11, doubles);
  ASSERT_EQ(doubles.GetSize(), 2U);
  EXPECT_EQ(doubles.GetData()[0], 0.1);
  EXPECT_TRUE(SameBits(doubles.GetData()[1], -0.0));
  view.DeleteIdDataRecord(record);
}

TEST_F(PersistenceConformance, EmptyBlocksStayWithTheirFormat)
{
  Database().CreateDataBlock(Key(kUnknown), 0, 0, "IDb");
  Block(Key(kHistory));
  Reopen();
  ASSERT_TRUE(ConstDatabase().HasDataBlock(Key(kHistory)));
  EXPECT_TRUE(Visited(ConstDatabase().GetConstDataBlock(Key(kHistory))).empty());
  ASSERT_TRUE(ConstDatabase().HasDataBlock(Key(kUnknown)));
  const ConstScratch record(ConstDatabase().GetConstDataBlock(Key(kUnknown)));
  ASSERT_EQ(record->GetFieldCount(), 2U);
  EXPECT_EQ(record->GetFieldType(1), 1);
  EXPECT_EQ(record->GetFieldType(2), 9);
}

TEST_F(PersistenceConformance, DeletedBlocksStayDeleted)
{
  Block(Key(kHistory, 1)).SetScalarAt(1, 1.0);
  Block(Key(kHistory, 2)).SetScalarAt(1, 2.0);
  Database().DeleteDataBlock(Key(kHistory, 1));
  Reopen();
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kHistory, 1)));
  EXPECT_TRUE(ConstDatabase().HasDataBlock(Key(kHistory, 2)));
}

TEST_F(PersistenceConformance, NamesOfUserKindsStay)
{
  const auto onf = static_cast<FED_OnfId>(kUserHistory);
  Database().SetUserKindName(onf, "wear \"depth\"");
  Block(Key(kUserHistory)).SetScalarAt(1, 1.0);
  Reopen();
  EXPECT_EQ(ConstDatabase().GetUserKindName(onf), factory_->KeepsUserKindNames() ? "wear \"depth\"" : "");
}

}  // namespace
}  // namespace conformance
