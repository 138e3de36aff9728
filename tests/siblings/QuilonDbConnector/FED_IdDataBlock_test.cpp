#include "QuilonDbConnector/FED_IdDataBlock.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_RecordFormat.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonUtilities/FED_Failure.h"

#include "failure_message.h"
#include "RecordingDatabase.h"

namespace {

constexpr auto kDisplacement  = static_cast<FED_OnfId>(510);
constexpr auto kTemperature   = static_cast<FED_OnfId>(514);
constexpr auto kStress        = static_cast<FED_OnfId>(521);
constexpr auto kElementEnergy = static_cast<FED_OnfId>(540);
constexpr auto kForces        = static_cast<FED_OnfId>(580);
constexpr auto kNoFormat      = static_cast<FED_OnfId>(590);
constexpr auto kUnknown       = static_cast<FED_OnfId>(77);

class IdView : public testing::Test
{
protected:
  FED_DataBlock&  Block(FED_OnfId onf) { return database.GetOrCreateDataBlock(FED_DataDescriptor(0, onf), 0); }
  FED_IdDataBlock View(FED_OnfId onf) { return FED_IdDataBlock(Block(onf), database.GetIdMapsPool(), true); }

  FED_ResultDatabase database;
};

// What a record's fields are, as a format string.
std::string FormatOf(const FED_DataBlock& block)
{
  FED_ConstDataRecord* record = block.CreateConstDataRecord();
  std::string          text   = FED_RecordFormat::FromRecord(*record).ToString();
  block.DeleteDataRecord(record);
  return text;
}

}  // namespace

// --- the id maps ---

TEST_F(IdView, IndicesCountFromOneInTheOrderOfFirstUse)
{
  FED_IdMapsPool& pool = database.GetIdMapsPool();
  EXPECT_EQ(pool.FindOrAddIndex(0, 70), 1u);
  EXPECT_EQ(pool.FindOrAddIndex(0, -5), 2u);
  EXPECT_EQ(pool.FindOrAddIndex(0, 3), 3u);
  EXPECT_EQ(pool.FindOrAddIndex(0, 70), 1u);
  EXPECT_EQ(pool.FindIndex(0, -5), 2u);
  EXPECT_EQ(pool.FindIndex(0, 4), FED_IdMapsPool::npos);
  EXPECT_EQ(pool.GetId(0, 2), -5);
  EXPECT_EQ(database.GetIdMapsPool().GetCount(0), 3u);
}

TEST_F(IdView, EveryKindHasItsOwnMap)
{
  FED_IdMapsPool& pool = database.GetIdMapsPool();
  for (int kind = 0; kind <= 14; ++kind) EXPECT_EQ(pool.FindOrAddIndex(kind, 100 - kind), 1u);
  for (int kind = 0; kind <= 14; ++kind) EXPECT_EQ(pool.GetId(kind, 1), 100 - kind);
}

TEST_F(IdView, ExtremeIdsAreIds)
{
  FED_IdMapsPool& pool  = database.GetIdMapsPool();
  const int       ids[] = {0, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 1};
  for (const int id : ids) pool.FindOrAddIndex(1, id);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(pool.FindIndex(1, ids[i]), i + 1);
    EXPECT_EQ(pool.GetId(1, i + 1), ids[i]);
  }
}

TEST_F(IdView, KindWithoutAMapIsAFailure)
{
  FED_IdMapsPool&   pool     = database.GetIdMapsPool();
  const std::string expected = "id map of entity kind 15: only the kinds 0 to 14 have one";
  EXPECT_EQ(MessageOf([&] { pool.FindIndex(15, 1); }), expected);
  EXPECT_EQ(MessageOf([&] { pool.FindOrAddIndex(15, 1); }), expected);
  EXPECT_EQ(MessageOf([&] { pool.GetId(15, 1); }), expected);
  EXPECT_THROW(pool.FindIndex(-1, 1), FED_Failure);
}

TEST_F(IdView, IndexThatNoIdHasIsAFailure)
{
  FED_IdMapsPool& pool = database.GetIdMapsPool();
  pool.FindOrAddIndex(0, 70);
  EXPECT_EQ(MessageOf([&] { pool.GetId(0, 0); }), "id map of entity kind 0: no id has the index 0, indices are 1 to 1");
  EXPECT_EQ(MessageOf([&] { pool.GetId(0, 2); }), "id map of entity kind 0: no id has the index 2, indices are 1 to 1");
}

TEST_F(IdView, UnmappedIndexOfTheUnknownKindReadsAsItself)
{
  FED_IdMapsPool& pool = database.GetIdMapsPool();
  pool.FindOrAddIndex(14, 900);
  EXPECT_EQ(pool.GetId(14, 1), 900);
  EXPECT_EQ(pool.GetId(14, 0), 0);
  EXPECT_EQ(pool.GetId(14, 6), 6);
  EXPECT_THROW(pool.GetId(14, std::size_t{1} << 31), FED_Failure);
}

// --- writing ---

TEST_F(IdView, RecordsOfOneIdStandAtOneIndexInAllBlocksOfAKind)
{
  const double vector[3] = {1, 2, 3};
  View(kDisplacement).SetVector(40, vector);
  View(kDisplacement).SetVector(7, vector);
  View(kTemperature).SetScalar(7, 21.0);
  EXPECT_EQ(Block(kTemperature).GetScalarAt(2), 21.0);
  EXPECT_FALSE(Block(kTemperature).HasRecord(1));
}

TEST_F(IdView, KindsDoNotShareIds)
{
  View(kTemperature).SetScalar(7, 1.0);
  EXPECT_FALSE(View(kElementEnergy).HasRecord(7));
  View(kElementEnergy).SetScalar(9, 2.0);
  EXPECT_EQ(Block(kElementEnergy).GetScalarAt(1), 2.0);
}

TEST_F(IdView, HasAndGetNeverAddAnId)
{
  FED_IdDataBlock view  = View(kTemperature);
  double          value = 0.0;
  EXPECT_FALSE(view.HasRecord(5));
  EXPECT_THROW(view.GetScalar(5, value), FED_Failure);
  EXPECT_THROW(view.GetVector(5, &value), FED_Failure);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  EXPECT_THROW(view.GetRecord(5, record), FED_Failure);
  EXPECT_EQ(database.GetIdMapsPool().GetCount(0), 0u);
}

TEST_F(IdView, SetAddsTheIdWhateverTheFlag)
{
  for (const bool flag : {true, false}) {
    FED_IdDataBlock view(Block(kTemperature), database.GetIdMapsPool(), flag);
    view.SetScalar(flag ? 1 : 2, 4.0);
    EXPECT_TRUE(view.HasRecord(flag ? 1 : 2));
  }
}

TEST_F(IdView, IdWithoutARecordInThisBlockHasNone)
{
  View(kTemperature).SetScalar(7, 1.0);
  FED_IdDataBlock view = View(kDisplacement);
  double          vector[3];
  EXPECT_FALSE(view.HasRecord(7));
  EXPECT_EQ(MessageOf([&] { view.GetVector(7, vector); }), "block iteration=0 onf=510: no record for id 7");
}

TEST_F(IdView, NegativeIdsAreIds)
{
  FED_IdDataBlock view = View(kTemperature);
  view.SetScalar(-8, 3.5);
  double value = 0.0;
  view.GetScalar(-8, value);
  EXPECT_EQ(value, 3.5);
  EXPECT_EQ(view.GetId(1), -8);
}

TEST_F(IdView, VectorAndTensorComeBack)
{
  const double    vector[3] = {1, 2, 3}, tensor[6] = {1, 2, 3, 4, 5, 6};
  double          out[6]  = {};
  FED_IdDataBlock vectors = View(kDisplacement);
  FED_IdDataBlock tensors = View(kStress);
  vectors.SetVector(30, vector);
  tensors.SetTensor(30, tensor);
  vectors.GetVector(30, out);
  EXPECT_EQ(out[2], 3.0);
  EXPECT_EQ(out[3], 0.0);
  tensors.GetTensor(30, out);
  EXPECT_EQ(out[5], 6.0);
}

TEST_F(IdView, VectorIntoABlockOfTensorsIsAFailureAndAddsNoId)
{
  FED_IdDataBlock view      = View(kStress);
  const double    vector[3] = {};
  EXPECT_EQ(MessageOf([&] { view.SetVector(1, vector); }),
            "block iteration=0 onf=521: doubles in a record: 6, expected 3");
  EXPECT_EQ(database.GetIdMapsPool().GetCount(0), 0u);
}

TEST_F(IdView, VectorOutOfABlockOfScalarsIsAFailure)
{
  FED_IdDataBlock view = View(kTemperature);
  view.SetScalar(1, 1.0);
  double out[6];
  EXPECT_EQ(MessageOf([&] { view.GetVector(1, out); }),
            "block iteration=0 onf=514: doubles in a record: 1, expected 3");
  EXPECT_EQ(MessageOf([&] { view.GetTensor(1, out); }),
            "block iteration=0 onf=514: doubles in a record: 1, expected 6");
}

TEST_F(IdView, TensorIntoABlockOfListsIsAFailure)
{
  FED_IdDataBlock view      = View(kForces);
  const double    tensor[6] = {};
  EXPECT_EQ(MessageOf([&] { view.SetTensor(1, tensor); }),
            "block iteration=0 onf=580: doubles in a record: 0, expected 6 (the record format is not made of doubles)");
}

TEST_F(IdView, ScalarIntoABlockOfVectorsIsAFailure)
{
  FED_IdDataBlock view = View(kDisplacement);
  EXPECT_EQ(MessageOf([&] { view.SetScalar(1, 1.0); }),
            "block iteration=0 onf=510: a scalar was given, the record format is \"V\"");
}

TEST_F(IdView, ThreeScalarFieldsAreAVectorToo)
{
  FED_DataBlock*  block = database.CreateDataBlock(FED_DataDescriptor(0, kNoFormat), 0, 0, "DDd");
  FED_IdDataBlock view(*block, database.GetIdMapsPool(), true);
  const double    vector[3] = {7, 8, 9};
  view.SetVector(5, vector);
  double out[3];
  view.GetVector(5, out);
  EXPECT_EQ(out[2], 9.0);
}

TEST_F(IdView, FirstRecordGivesABlockWithoutFormatItsFormat)
{
  const double values[6] = {1, 2, 3, 4, 5, 6};
  View(kNoFormat).SetScalar(1, 1.0);
  EXPECT_EQ(FormatOf(Block(kNoFormat)), "D");

  FED_DataBlock&  vectors = Block(static_cast<FED_OnfId>(591));
  FED_IdDataBlock view(vectors, database.GetIdMapsPool(), true);
  view.SetVector(4, values);
  view.SetVector(5, values + 3);  // the second by way of the format
  EXPECT_EQ(FormatOf(vectors), "V");
  double out[6];
  view.GetVector(4, out);
  EXPECT_EQ(out[0], 1.0);
  view.GetVector(5, out);
  EXPECT_EQ(out[0], 4.0);
  EXPECT_THROW(view.SetTensor(6, values), FED_Failure);

  View(static_cast<FED_OnfId>(592)).SetTensor(4, values);
  EXPECT_EQ(FormatOf(Block(static_cast<FED_OnfId>(592))), "T");
  View(static_cast<FED_OnfId>(592)).GetTensor(4, out);
  EXPECT_EQ(out[5], 6.0);
}

// --- kinds addressed by index ---

TEST_F(IdView, IndexIsTheIdFromKind15OnAndNoMapIsAsked)
{
  quilon_test::RecordingDatabase recording(database, quilon_test::Detail::Records);
  FED_DataBlock&  block = recording.GetOrCreateDataBlock(FED_DataDescriptor(0, FED_OnfId_ScalarHistory), 0);
  FED_IdDataBlock view(block, recording.GetIdMapsPool(), true);
  view.SetScalar(0, 1.0);
  view.SetScalar(12, 2.0);
  EXPECT_EQ(Block(FED_OnfId_ScalarHistory).GetScalarAt(12), 2.0);
  EXPECT_TRUE(view.HasRecord(0));
  EXPECT_EQ(view.GetId(12), 12);
  EXPECT_EQ(view.GetId(99), 99);
  for (const std::string& line : recording.GetLines()) EXPECT_EQ(line.rfind("pool.", 0), std::string::npos) << line;
}

TEST_F(IdView, NegativeIndexFromKind15OnIsAFailure)
{
  FED_IdDataBlock view  = View(FED_OnfId_ScalarHistory);
  double          value = 0.0;
  EXPECT_FALSE(view.HasRecord(-3));
  EXPECT_EQ(MessageOf([&] { view.SetScalar(-3, 1.0); }),
            "block iteration=0 onf=500: index is -3, expected 0 to 2147483647");
  EXPECT_EQ(MessageOf([&] { view.GetScalar(-3, value); }), "block iteration=0 onf=500: no record for id -3");
  EXPECT_TRUE(Block(FED_OnfId_ScalarHistory).Begin() == Block(FED_OnfId_ScalarHistory).End());
  EXPECT_EQ(MessageOf([&] { view.GetId(2147483648u); }),
            "block iteration=0 onf=500: index is 2147483648, expected 0 to 2147483647");
}

TEST_F(IdView, GreatestIndexIsAnId)
{
  FED_IdDataBlock view = View(FED_OnfId_ScalarHistory);
  view.SetScalar(2147483647, 6.0);
  double value = 0.0;
  view.GetScalar(2147483647, value);
  EXPECT_EQ(value, 6.0);
  EXPECT_EQ(view.GetId(2147483647), 2147483647);
}

// --- the unknown kind ---

TEST_F(IdView, RecordOfTheUnknownKindThatWasWrittenByIndexIsFoundUnderTheIdThatGetIdGives)
{
  Block(kUnknown).SetScalarAt(6, 2.0);
  FED_IdDataBlock view = View(kUnknown);
  ASSERT_EQ(view.GetId(6), 6);
  EXPECT_TRUE(view.HasRecord(6));
  double value = 0.0;
  view.GetScalar(6, value);
  EXPECT_EQ(value, 2.0);
  EXPECT_EQ(database.GetIdMapsPool().GetCount(14), 0u);
}

TEST_F(IdView, MappedIndexOfTheUnknownKindIsNotItsOwnId)
{
  FED_IdDataBlock view = View(kUnknown);
  view.SetScalar(900, 1.0);
  EXPECT_EQ(view.GetId(1), 900);
  EXPECT_TRUE(view.HasRecord(900));
  EXPECT_FALSE(view.HasRecord(1));
}

// --- records ---

TEST_F(IdView, RecordsAreStoredUnderTheirIds)
{
  FED_IdDataBlock   view   = View(FED_OnfId_ElementNodes);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.SetIntList(1, std::vector<int>{4, 5, 6});
  view.SetRecord(12, record);
  record.SetIntList(1, FED_IntArray({7}));
  view.SetRecord(3, record);
  view.GetRecord(12, record);
  FED_IntArray list;
  record.GetIntList(1, list);
  EXPECT_TRUE(list == FED_IntArray({4, 5, 6}));
  view.DeleteIdDataRecord(record);
}

TEST_F(IdView, IdRecordSetsEveryTypeThatItOffers)
{
  FED_DataBlock*    block = database.CreateDataBlock(FED_DataDescriptor(0, kNoFormat), 0, 0, "ILbDb");
  FED_IdDataBlock   view(*block, database.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.SetInteger(1, 3);
  record.SetIntList(2, std::vector<int>{1, 2});
  record.SetDoubleList(3, std::vector<double>{0.5});
  view.SetRecord(1, record);
  FED_ConstIdDataRecord& read = view.CreateConstIdDataRecord();
  view.GetRecord(1, read);
  EXPECT_EQ(read.GetDataRecord().GetInteger(1), 3);
  EXPECT_EQ(read.GetDataRecord().GetIntListLen(2), 2u);
  EXPECT_EQ(read.GetDataRecord().GetDoubleListLen(3), 1u);
}

TEST_F(IdView, AssignmentCopiesAllFieldsAndKeepsTheTargetsPairCodes)
{
  FED_DataBlock*    from = database.CreateDataBlock(FED_DataDescriptor(1, kNoFormat), 0, 0, "iFDSVTLbDb");
  FED_DataBlock*    to   = database.CreateDataBlock(FED_DataDescriptor(2, kNoFormat), 0, 0, "IFdSVTlbDb");
  FED_IdDataBlock   source(*from, database.GetIdMapsPool(), false), target(*to, database.GetIdMapsPool(), false);
  FED_IdDataRecord &a = source.CreateIdDataRecord(), &b = target.CreateIdDataRecord();
  FED_DataRecord&   fields    = a.GetDataRecord();
  const double      values[6] = {1, 2, 3, 4, 5, 6};
  fields.SetInteger(1, 9);
  fields.SetFloat(2, 0.5f);
  fields.SetDouble(3, 0.25);
  fields.SetString(4, "text");
  fields.SetVector(5, values);
  fields.SetTensor(6, values);
  fields.SetIntList(7, std::vector<int>{1, 2});
  fields.SetDoubleList(8, std::vector<double>{3});
  b = static_cast<const FED_ConstIdDataRecord&>(a);
  target.SetRecord(1, b);
  target.GetRecord(1, b);
  const FED_ConstDataRecord& copy = b.GetDataRecord();
  EXPECT_EQ(FED_RecordFormat::FromRecord(copy).ToString(), "IFdSVTlbDb");
  EXPECT_EQ(copy.GetInteger(1), 9);
  EXPECT_EQ(copy.GetFloat(2), 0.5f);
  EXPECT_EQ(copy.GetDouble(3), 0.25);
  EXPECT_EQ(copy.GetString(4), "text");
  double out[6] = {};
  copy.GetTensor(6, out);
  EXPECT_EQ(out[5], 6.0);
  EXPECT_EQ(copy.GetIntListLen(7), 2u);
  EXPECT_EQ(copy.GetDoubleListLen(8), 1u);
}

TEST_F(IdView, AssignmentBetweenIdRecordsAndToItselfCopiesFields)
{
  FED_IdDataBlock   view = View(FED_OnfId_ElementNodes);
  FED_IdDataRecord &a = view.CreateIdDataRecord(), &b = view.CreateIdDataRecord();
  a.SetIntList(1, std::vector<int>{5});
  b                         = a;
  const FED_IdDataRecord& c = b;
  b                         = c;
  EXPECT_EQ(b.GetDataRecord().GetIntListLen(1), 1u);
}

TEST_F(IdView, AssignmentToARecordWithoutFormatTakesThePairCodesToo)
{
  FED_DataBlock*    from = database.CreateDataBlock(FED_DataDescriptor(1, kNoFormat), 0, 0, "idlb");
  FED_IdDataBlock   source(*from, database.GetIdMapsPool(), false);
  FED_IdDataBlock   target = View(kNoFormat);
  FED_IdDataRecord &a = source.CreateIdDataRecord(), &b = target.CreateIdDataRecord();
  b = static_cast<const FED_ConstIdDataRecord&>(a);
  target.SetRecord(1, b);
  EXPECT_EQ(FormatOf(Block(kNoFormat)), "idlb");
}

TEST_F(IdView, AssignmentOfFieldsThatDoNotFitIsAFailureAndChangesNothing)
{
  FED_DataBlock*    from = database.CreateDataBlock(FED_DataDescriptor(1, kNoFormat), 0, 0, "ID");
  FED_DataBlock*    to   = database.CreateDataBlock(FED_DataDescriptor(2, kNoFormat), 0, 0, "II");
  FED_DataBlock*    less = database.CreateDataBlock(FED_DataDescriptor(3, kNoFormat), 0, 0, "I");
  FED_IdDataBlock   source(*from, database.GetIdMapsPool(), false), target(*to, database.GetIdMapsPool(), false);
  FED_IdDataBlock   shorter(*less, database.GetIdMapsPool(), false);
  FED_IdDataRecord &a = source.CreateIdDataRecord(), &b = target.CreateIdDataRecord();
  FED_IdDataRecord& c = shorter.CreateIdDataRecord();
  a.SetInteger(1, 7);
  EXPECT_EQ(MessageOf([&] { b = a; }), "record field 2 is of type double and is copied into one of type integer");
  EXPECT_EQ(b.GetDataRecord().GetInteger(1), 0);
  EXPECT_EQ(MessageOf([&] { c = a; }), "a record of 2 fields is copied into one of 1");
}

TEST_F(IdView, ScratchRecordsThatWereNotFreedGoWithTheView)
{
  quilon_test::RecordingDatabase recording(database);
  FED_DataBlock& block = recording.GetOrCreateDataBlock(FED_DataDescriptor(0, FED_OnfId_ElementNodes), 0);
  {
    FED_IdDataBlock view(block, recording.GetIdMapsPool(), true);
    view.CreateIdDataRecord();
    FED_ConstIdDataRecord& freed = view.CreateConstIdDataRecord();
    view.CreateConstIdDataRecord();
    view.DeleteIdDataRecord(freed);
    EXPECT_EQ(recording.GetLiveScratchRecords(), 2u);
  }
  EXPECT_EQ(recording.GetLiveScratchRecords(), 0u);
}

TEST_F(IdView, FreeingARecordOfAnotherViewIsAFailure)
{
  FED_IdDataBlock one = View(kTemperature), two = View(kTemperature);
  EXPECT_EQ(MessageOf([&] { two.DeleteIdDataRecord(one.CreateIdDataRecord()); }),
            "block iteration=0 onf=514: the scratch record to free was not made by this id view");
}

// --- over foreign blocks and pools ---

TEST_F(IdView, WorksOverForeignBlocksAndPoolsAndFreesTheRecordsThatItMakes)
{
  quilon_test::RecordingDatabase recording(database, quilon_test::Detail::Blocks);
  const double                   values[6] = {1, 2, 3, 4, 5, 6};
  for (const FED_OnfId onf : {kStress, static_cast<FED_OnfId>(592)}) {
    FED_DataBlock&  block = recording.GetOrCreateDataBlock(FED_DataDescriptor(0, onf), 0);
    FED_IdDataBlock view(block, recording.GetIdMapsPool(), true);
    view.SetTensor(30, values);
    view.SetTensor(20, values);
    EXPECT_THROW(view.SetVector(10, values), FED_Failure);
    double out[6] = {};
    view.GetTensor(20, out);
    EXPECT_EQ(out[5], 6.0);
    EXPECT_EQ(recording.GetLiveScratchRecords(), 0u);
  }
}

TEST_F(IdView, FormatIsAskedOncePerView)
{
  quilon_test::RecordingDatabase recording(database);
  const double                   vector[3] = {};
  FED_DataBlock&                 block     = recording.GetOrCreateDataBlock(FED_DataDescriptor(0, kDisplacement), 0);
  FED_IdDataBlock                view(block, recording.GetIdMapsPool(), true);
  for (int id = 1; id <= 10; ++id) view.SetVector(id, vector);
  EXPECT_EQ(recording.GetMadeScratchRecords(), 1u);
}
