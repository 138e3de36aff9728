#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "foreign.h"
#include "support.h"

namespace conformance {
namespace {

constexpr std::size_t npos = FED_IdMapsPool::npos;

class IdViewConformance : public DatabaseTest
{
protected:
  std::size_t IndexOf(int kind, int id) { return ConstDatabase().GetIdMapsPool().FindIndex(kind, id); }

  int IntegerAt(const FED_ConstIdDataBlock& view, int id)
  {
    FED_ConstIdDataRecord& record = view.CreateConstIdDataRecord();
    view.GetRecord(id, record);
    const int value = record.GetDataRecord().GetInteger(1);
    view.DeleteIdDataRecord(record);
    return value;
  }
};

TEST_F(IdViewConformance, ScalarsVectorsAndTensorsAreStoredUnderTheirIds)
{
  const double    vector[3] = {1, 2, 3};
  const double    tensor[6] = {1, 2, 3, 4, 5, 6};
  FED_IdDataBlock scalars(Block(Key(kUserScalar)), Pool(), true);
  FED_IdDataBlock vectors(Block(Key(kUserVector)), Pool(), true);
  FED_IdDataBlock tensors(Block(Key(kUserTensor)), Pool(), true);
  scalars.SetScalar(30, 1.5);
  scalars.SetScalar(-7, 2.5);
  vectors.SetVector(30, vector);
  tensors.SetTensor(30, tensor);

  double scalar = 0.0;
  scalars.GetScalar(30, scalar);
  EXPECT_EQ(scalar, 1.5);
  scalars.GetScalar(-7, scalar);
  EXPECT_EQ(scalar, 2.5);
  double back[7] = {0, 0, 0, 99, 0, 0, 0};
  vectors.GetVector(30, back);
  EXPECT_EQ(std::vector<double>(back, back + 4), (std::vector<double>{1, 2, 3, 99}));
  back[6] = 99;
  tensors.GetTensor(30, back);
  EXPECT_EQ(std::vector<double>(back, back + 7), (std::vector<double>{1, 2, 3, 4, 5, 6, 99}));
}

TEST_F(IdViewConformance, SettingReplacesTheRecordOfTheId)
{
  FED_IdDataBlock view(Block(Key(kUserScalar)), Pool(), true);
  view.SetScalar(30, 1.0);
  view.SetScalar(30, 2.0);
  double scalar = 0.0;
  view.GetScalar(30, scalar);
  EXPECT_EQ(scalar, 2.0);
  EXPECT_EQ(Visited(Block(Key(kUserScalar))).size(), 1U);
}

TEST_F(IdViewConformance, TheRecordOfAnIdStandsAtTheIndexOfItsMap)
{
  FED_IdDataBlock view(Block(Key(kUserScalar)), Pool(), true);
  for (const int id : {30, 10, 20}) view.SetScalar(id, id);
  const FED_DataBlock& block = ConstDatabase().GetConstDataBlock(Key(kUserScalar));
  for (const int id : {30, 10, 20}) {
    const std::size_t index = IndexOf(kNodeKind, id);
    ASSERT_NE(index, npos) << id;
    EXPECT_EQ(block.GetScalarAt(index), id);
    EXPECT_EQ(view.GetId(index), id);
  }
}

TEST_F(IdViewConformance, BlocksOfOneKindShareTheirIndices)
{
  FED_IdDataBlock first(Block(Key(kUserScalar, 1)), Pool(), true);
  FED_IdDataBlock second(Block(Key(kUserScalar, 2)), Pool(), true);
  first.SetScalar(30, 1.0);
  first.SetScalar(10, 2.0);
  second.SetScalar(10, 3.0);
  const std::size_t index = IndexOf(kNodeKind, 10);
  ASSERT_NE(index, npos);
  EXPECT_EQ(Block(Key(kUserScalar, 1)).GetScalarAt(index), 2.0);
  EXPECT_EQ(Block(Key(kUserScalar, 2)).GetScalarAt(index), 3.0);
  EXPECT_FALSE(second.HasRecord(30));
}

TEST_F(IdViewConformance, KindsOfEntitiesDoNotShareIds)
{
  FED_IdDataBlock nodes(Block(Key(kUserScalar)), Pool(), true);
  FED_IdDataBlock elements(Block(Key(kUserElement)), Pool(), true);
  nodes.SetScalar(30, 1.0);
  EXPECT_EQ(IndexOf(kElementKind, 30), npos);
  elements.SetScalar(99, 2.0);
  EXPECT_FALSE(elements.HasRecord(30));
  EXPECT_FALSE(nodes.HasRecord(99));
}

TEST_F(IdViewConformance, AskingForARecordAddsNoId)
{
  FED_IdDataBlock view(Block(Key(kUserScalar)), Pool(), true);
  EXPECT_FALSE(view.HasRecord(30));
  EXPECT_EQ(IndexOf(kNodeKind, 30), npos);
}

TEST_F(IdViewConformance, ReadingAnUnknownIdIsAFailureAndAddsNone)
{
  FED_IdDataBlock view(Block(Key(kUserScalar)), Pool(), true);
  view.SetScalar(1, 1.0);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  double            scalar = 0.0;
  EXPECT_THROW(view.GetScalar(30, scalar), FED_Failure);
  EXPECT_THROW(view.GetRecord(30, record), FED_Failure);
  EXPECT_EQ(IndexOf(kNodeKind, 30), npos);
  view.DeleteIdDataRecord(record);
}

TEST_F(IdViewConformance, AKnownIdWithoutARecordInTheBlockHasNone)
{
  FED_IdDataBlock first(Block(Key(kUserScalar, 1)), Pool(), true);
  FED_IdDataBlock second(Block(Key(kUserScalar, 2)), Pool(), true);
  first.SetScalar(30, 1.0);
  first.SetScalar(31, 1.0);
  second.SetScalar(31, 1.0);
  EXPECT_FALSE(second.HasRecord(30));
  double scalar = 0.0;
  EXPECT_THROW(second.GetScalar(30, scalar), FED_Failure);
}

TEST_F(IdViewConformance, SettingAddsTheIdWhateverTheFlag)
{
  for (const bool flag : {true, false}) {
    FED_IdDataBlock view(Block(Key(kUserScalar, flag ? 1 : 2)), Pool(), flag);
    const int       id = flag ? 30 : 40;
    view.SetScalar(id, 1.5);
    EXPECT_TRUE(view.HasRecord(id)) << flag;
    EXPECT_NE(IndexOf(kNodeKind, id), npos) << flag;
  }
}

TEST_F(IdViewConformance, ViewsForReadingSeeTheRecordsWhateverTheFlag)
{
  FED_IdDataBlock(Block(Key(kUserScalar)), Pool(), true).SetScalar(30, 1.5);
  const FED_DataBlock&       block = ConstDatabase().GetConstDataBlock(Key(kUserScalar));
  const FED_ConstIdDataBlock plain(block, ConstDatabase().GetIdMapsPool());
  const FED_ConstIdDataBlock flagged(block, ConstDatabase().GetIdMapsPool(), true);
  const FED_ConstIdDataBlock unflagged(block, ConstDatabase().GetIdMapsPool(), false);
  for (const FED_ConstIdDataBlock* view : {&plain, &flagged, &unflagged}) {
    double scalar = 0.0;
    view->GetScalar(30, scalar);
    EXPECT_EQ(scalar, 1.5);
    EXPECT_FALSE(view->HasRecord(31));
  }
  EXPECT_EQ(IndexOf(kNodeKind, 31), npos);
}

TEST_F(IdViewConformance, FromKind15OnTheIndexIsTheId)
{
  FED_DataBlock&  block = Block(Key(kUserHistory));
  FED_IdDataBlock view(block, Pool(), true);
  view.SetScalar(7, 1.5);
  EXPECT_EQ(Visited(block), std::vector<std::size_t>{7});
  EXPECT_TRUE(view.HasRecord(7));
  EXPECT_FALSE(view.HasRecord(1));
  EXPECT_EQ(view.GetId(7), 7);
}

TEST_F(IdViewConformance, AViewKnowsTheDescriptorOfItsBlock)
{
  FED_IdDataBlock view(Block(Key(kUserScalar, 3)), Pool(), true);
  EXPECT_TRUE(view.GetDescriptor() == Key(kUserScalar, 3));
}

TEST_F(IdViewConformance, TheIdOfAnIndexWithoutOneIsAFailure)
{
  FED_IdDataBlock view(Block(Key(kUserScalar)), Pool(), true);
  view.SetScalar(30, 1.0);
  EXPECT_THROW(view.GetId(2), FED_Failure);
}

TEST_F(IdViewConformance, ARecordIsStoredUnderItsIdAndReadBack)
{
  FED_IdDataBlock   view(Block(Key(kMatrixHalf)), Pool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.SetInteger(1, 12);
  record.SetDoubleList(2, std::vector<double>{1.5, -0.0});
  view.SetRecord(30, record);
  view.DeleteIdDataRecord(record);

  FED_ConstIdDataRecord& read = view.CreateConstIdDataRecord();
  view.GetRecord(30, read);
  EXPECT_EQ(read.GetDataRecord().GetInteger(1), 12);
  FED_DoubleArray doubles;
  read.GetDataRecord().GetDoubleList(2, doubles);
  ASSERT_EQ(ToVector(doubles), (std::vector<double>{1.5, 0.0}));
  EXPECT_TRUE(SameBits(doubles.GetData()[1], -0.0));
  view.DeleteIdDataRecord(read);
}

TEST_F(IdViewConformance, IntegerListsAreTakenAsVectorAndAsArray)
{
  FED_IdDataBlock   view(Block(Key(kElementNodes)), Pool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.SetIntList(1, std::vector<int>{4, -5});
  view.SetRecord(30, record);
  record.SetIntList(1, FED_IntArray(std::vector<int>{6}));
  view.SetRecord(31, record);
  FED_IntArray list;
  view.GetRecord(30, record);
  record.GetIntList(1, list);
  EXPECT_EQ(ToVector(list), (std::vector<int>{4, -5}));
  view.GetRecord(31, record);
  record.GetIntList(1, list);
  EXPECT_EQ(ToVector(list), std::vector<int>{6});
  view.DeleteIdDataRecord(record);
}

TEST_F(IdViewConformance, AViewStoresACopyOfTheScratchRecord)
{
  FED_IdDataBlock   view(Block(Key(kMatrixHalf)), Pool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.SetInteger(1, 1);
  view.SetRecord(30, record);
  record.SetInteger(1, 2);
  EXPECT_EQ(IntegerAt(view, 30), 1);
  view.SetRecord(30, record);
  EXPECT_EQ(IntegerAt(view, 30), 2);
  view.DeleteIdDataRecord(record);
}

TEST_F(IdViewConformance, AssignmentCopiesAllFieldsAcrossBlocks)
{
  FED_DataBlock&    sourceBlock = *Database().CreateDataBlock(Key(kMatrixHalf, 1), 0, 0, "IDLbDbSVTF");
  FED_DataBlock&    targetBlock = *Database().CreateDataBlock(Key(kMatrixHalf, 2), 0, 0, "IDLbDbSVTF");
  FED_IdDataBlock   source(sourceBlock, Pool(), false);
  FED_IdDataBlock   target(targetBlock, Pool(), false);
  FED_IdDataRecord& record    = source.CreateIdDataRecord();
  FED_DataRecord&   fields    = record.GetDataRecord();
  const double      vector[3] = {1, 2, 3};
  const double      tensor[6] = {4, 5, 6, 7, 8, 9};
  fields.SetInteger(1, 5);
  fields.SetDouble(2, -0.0);
  fields.SetIntList(3, FED_IntArray(std::vector<int>{1, 2}));
  fields.SetDoubleList(4, FED_DoubleArray(std::vector<double>{0.5}));
  fields.SetString(5, "text");
  fields.SetVector(6, vector);
  fields.SetTensor(7, tensor);
  fields.SetFloat(8, 0.25F);

  FED_IdDataRecord& fromWritable = target.CreateIdDataRecord();
  fromWritable                   = record;
  FED_IdDataRecord& fromConst    = target.CreateIdDataRecord();
  fromConst                      = static_cast<const FED_ConstIdDataRecord&>(record);
  fields.SetInteger(1, 6);  // copies, no references
  for (const FED_ConstIdDataRecord* copy :
       {static_cast<FED_ConstIdDataRecord*>(&fromWritable), static_cast<FED_ConstIdDataRecord*>(&fromConst)})
  {
    const FED_ConstDataRecord& out = copy->GetDataRecord();
    EXPECT_EQ(out.GetInteger(1), 5);
    EXPECT_TRUE(SameBits(out.GetDouble(2), -0.0));
    FED_IntArray list;
    copy->GetIntList(3, list);
    EXPECT_EQ(ToVector(list), (std::vector<int>{1, 2}));
    EXPECT_EQ(out.GetDoubleListLen(4), 1U);
    EXPECT_EQ(out.GetString(5), "text");
    double values[6] = {};
    out.GetVector(6, values);
    EXPECT_EQ(std::vector<double>(values, values + 3), (std::vector<double>{1, 2, 3}));
    out.GetTensor(7, values);
    EXPECT_EQ(std::vector<double>(values, values + 6), (std::vector<double>{4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(out.GetFloat(8), 0.25F);
  }
}

TEST_F(IdViewConformance, AssignmentCopiesTheCodesOfATypePairIntoEachOther)
{
  FED_IdDataBlock   plain(*Database().CreateDataBlock(Key(kMatrixHalf, 1), 0, 0, "IDLb"), Pool(), false);
  FED_IdDataBlock   paired(*Database().CreateDataBlock(Key(kMatrixHalf, 2), 0, 0, "idlb"), Pool(), false);
  FED_IdDataRecord& from = plain.CreateIdDataRecord();
  from.SetInteger(1, 5);
  from.GetDataRecord().SetDouble(2, 0.5);
  from.SetIntList(3, std::vector<int>{7});
  FED_IdDataRecord& to = paired.CreateIdDataRecord();
  to                   = from;
  EXPECT_EQ(to.GetDataRecord().GetFieldType(1), 10);
  EXPECT_EQ(to.GetDataRecord().GetFieldType(2), 11);
  EXPECT_EQ(to.GetDataRecord().GetFieldType(3), 8);
  EXPECT_EQ(to.GetDataRecord().GetInteger(1), 5);
  EXPECT_EQ(to.GetDataRecord().GetDouble(2), 0.5);
  EXPECT_EQ(to.GetDataRecord().GetIntListLen(3), 1U);
}

TEST_F(IdViewConformance, AssignmentOfFieldsThatDoNotFitIsAFailure)
{
  FED_IdDataBlock   integers(*Database().CreateDataBlock(Key(kMatrixHalf, 1), 0, 0, "I"), Pool(), false);
  FED_IdDataBlock   doubles(*Database().CreateDataBlock(Key(kMatrixHalf, 2), 0, 0, "D"), Pool(), false);
  FED_IdDataRecord& from = integers.CreateIdDataRecord();
  FED_IdDataRecord& to   = doubles.CreateIdDataRecord();
  EXPECT_THROW(to = from, FED_Failure);
}

TEST_F(IdViewConformance, ValuesOfAnotherNumberOfDoublesAreAFailure)
{
  const double    values[6] = {};
  double          back[6]   = {};
  double          scalar    = 0.0;
  FED_IdDataBlock scalars(Block(Key(kUserScalar)), Pool(), true);
  FED_IdDataBlock vectors(Block(Key(kUserVector)), Pool(), true);
  scalars.SetScalar(30, 1.0);
  vectors.SetVector(30, values);
  EXPECT_THROW(scalars.SetVector(30, values), FED_Failure);
  EXPECT_THROW(vectors.SetTensor(30, values), FED_Failure);
  EXPECT_THROW(vectors.SetScalar(30, 1.0), FED_Failure);
  EXPECT_THROW(scalars.GetVector(30, back), FED_Failure);
  EXPECT_THROW(vectors.GetTensor(30, back), FED_Failure);
  EXPECT_THROW(vectors.GetScalar(30, scalar), FED_Failure);
}

TEST_F(IdViewConformance, ABlockWithoutAFormatTakesItFromTheFirstValue)
{
  const double    values[6] = {1, 2, 3, 4, 5, 6};
  FED_IdDataBlock scalars(Block(Key(kMatrixHalf, 1)), Pool(), true);
  FED_IdDataBlock vectors(Block(Key(kMatrixHalf, 2)), Pool(), true);
  FED_IdDataBlock tensors(Block(Key(kMatrixHalf, 3)), Pool(), true);
  scalars.SetScalar(30, 1.0);
  vectors.SetVector(30, values);
  tensors.SetTensor(30, values);
  std::vector<int> types;
  for (const int loadCase : {1, 2, 3}) {
    const ConstScratch record(Block(Key(kMatrixHalf, loadCase)));
    ASSERT_EQ(record->GetFieldCount(), 1U);
    types.push_back(record->GetFieldType(1));
  }
  EXPECT_EQ(types, (std::vector<int>{2, 5, 6}));
}

TEST_F(IdViewConformance, TwoViewsOfOneBlockSeeEachOthersRecords)
{
  FED_IdDataBlock            writer(Block(Key(kUserScalar)), Pool(), true);
  const FED_ConstIdDataBlock reader(Block(Key(kUserScalar)), Pool());
  writer.SetScalar(30, 1.5);
  EXPECT_TRUE(reader.HasRecord(30));
}

TEST_F(IdViewConformance, ScratchRecordsThatWereNotFreedGoWithTheView)
{
  FED_DataBlock& block = Block(Key(kElementNodes));
  {
    FED_IdDataBlock view(block, Pool(), true);
    view.CreateIdDataRecord().SetIntList(1, std::vector<int>(100, 1));
    EXPECT_EQ(view.CreateConstIdDataRecord().GetDataRecord().GetFieldCount(), 1U);
  }
  EXPECT_FALSE(block.HasRecord(1));  // a leak checker tells the rest
}

TEST(ForeignBlockConformance, ABlockOfAnybodysIsWalkedByTheIterator)
{
  ForeignBlock block(Key(kUserScalar, 2));
  EXPECT_TRUE(block.GetDescriptor() == Key(kUserScalar, 2));
  EXPECT_TRUE(block.Begin() == block.End());
  for (const std::size_t index : {9U, 0U, 4U}) block.SetScalarAt(index, 1.0);
  EXPECT_EQ(Visited(block), (std::vector<std::size_t>{0, 4, 9}));
}

TEST(ForeignBlockConformance, AViewReachesForeignStorageThroughTheInterfacesAlone)
{
  ForeignBlock block(Key(kUserScalar));
  ForeignPool  pool;
  {
    FED_IdDataBlock view(block, pool, true);
    EXPECT_FALSE(view.HasRecord(5));
    view.SetScalar(5, 1.5);
    EXPECT_EQ(Visited(block), std::vector<std::size_t>{1005});
    double scalar = 0.0;
    view.GetScalar(5, scalar);
    EXPECT_EQ(scalar, 1.5);
    EXPECT_EQ(view.GetId(1007), 7);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    view.GetRecord(5, record);
    view.SetRecord(6, record);
    EXPECT_EQ(block.GetScalarAt(1006), 1.5);
    EXPECT_EQ(block.GetScratchCount(), 1U);
    view.DeleteIdDataRecord(record);
    EXPECT_EQ(block.GetScratchCount(), 0U);
    view.CreateConstIdDataRecord();
  }
  EXPECT_EQ(block.GetScratchCount(), 0U);
}

TEST(ForeignBlockConformance, FromKind15OnAViewAsksNoMap)
{
  ForeignBlock    block(Key(kUserHistory));
  ForeignPool     pool;
  FED_IdDataBlock view(block, pool, true);
  view.SetScalar(5, 1.5);
  double scalar = 0.0;
  view.GetScalar(5, scalar);
  EXPECT_EQ(scalar, 1.5);
  EXPECT_FALSE(view.HasRecord(6));
  EXPECT_EQ(view.GetId(5), 5);
  EXPECT_EQ(pool.asked, 0);
}

}  // namespace
}  // namespace conformance
