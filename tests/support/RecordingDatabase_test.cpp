#include "RecordingDatabase.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonDbConnector/FED_DataBlockSet.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonUtilities/FED_Failure.h>

#include "FailureSweep.h"
#include "Snapshot.h"

namespace quilon_test {

namespace {

using Lines = std::vector<std::string>;

FED_DataDescriptor Descriptor(int onf) { return FED_DataDescriptor(1, static_cast<FED_OnfId>(onf)); }

void SetOneOfEach(FED_DataRecord& record)
{
  const double values[6] = {1, 2, 3, 4, 5, 6.5};
  record.SetInteger(1, -1);
  record.SetFloat(2, 0.25f);
  record.SetDouble(3, 0.1);
  record.SetString(4, "a b");
  record.SetVector(5, values);
  record.SetTensor(6, values);
  record.SetIntList(7, std::vector<int>{7, 8});
  record.SetDoubleList(8, std::vector<double>{});
}

}  // namespace

TEST(RecordingDatabase, TellsDescriptorsAndPatternsInOneWord)
{
  FED_DataDescriptor descriptor = Descriptor(595);
  EXPECT_EQ(Key(descriptor), "<595 it=1>");
  descriptor.SetInteger(FED_DataDescriptor::Layer, 2);
  descriptor.values[FED_DataDescriptor::LoadCase] = 7;
  EXPECT_EQ(Key(descriptor), "<595 it=1 ~lc=7 lay=2>");
  descriptor.mask &= ~(1u << FED_DataDescriptor::OnfId);
  EXPECT_EQ(Key(descriptor), "<595 it=1 ~onf=595 ~lc=7 lay=2>");
  EXPECT_EQ(Key(FED_DataDescriptor()), "<0 ~onf=0>");

  FED_DataDescriptorPattern pattern;
  EXPECT_EQ(Key(pattern), "{*}");
  pattern.SetEqual(FED_DataDescriptor::OnfId, 521);
  pattern.SetEqual(FED_DataDescriptor::Iteration, 1);
  EXPECT_EQ(Key(pattern), "{it=1 onf=521}");
}

TEST(RecordingDatabase, TellsEveryCallOfTheDatabase)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner);
  db.IsInitialized();
  db.CreateDataBlock(Descriptor(1), 1, 20, "IIbDbLbLb");
  db.GetOrCreateDataBlock(Descriptor(2), 3);
  db.HasDataBlock(Descriptor(2));
  db.GetConstDataBlock(Descriptor(2));
  db.GetDataBlock(Descriptor(2));
  db.GetDataBlocks(FED_DataDescriptorPattern());
  db.GetDataDescriptors(FED_DataDescriptorPattern());
  db.GetIdMapsPool();
  std::as_const(db).GetIdMapsPool();
  db.SetUserKindName(static_cast<FED_OnfId>(1800), "lift");
  EXPECT_EQ(db.GetUserKindName(static_cast<FED_OnfId>(1800)), "lift");
  db.DeleteDataBlock(Descriptor(2));
  EXPECT_EQ(db.GetLines(),
            (Lines{"db.IsInitialized()", "db.CreateDataBlock(<1 it=1>, 1, 20, \"IIbDbLbLb\")",
                   "db.GetOrCreateDataBlock(<2 it=1>, 3)", "db.HasDataBlock(<2 it=1>)",
                   "db.GetConstDataBlock(<2 it=1>)", "db.GetDataBlock(<2 it=1>)", "db.GetDataBlocks({*})",
                   "db.GetDataDescriptors({*})", "db.GetIdMapsPool()", "db.GetIdMapsPool() const",
                   "db.SetUserKindName(1800, \"lift\")", "db.GetUserKindName(1800)", "db.DeleteDataBlock(<2 it=1>)"}));
  EXPECT_EQ(db.GetCallCount(), db.GetLines().size());
  EXPECT_FALSE(inner.HasDataBlock(Descriptor(2)));
}

TEST(RecordingDatabase, TellsEveryTypeOfARecord)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Records);
  FED_DataBlock&     block  = *db.CreateDataBlock(Descriptor(1), 0, 0, "IFDSVTLbDb");
  FED_DataRecord*    record = block.CreateDataRecord();
  SetOneOfEach(*record);
  block.SetRecord(4, *record);
  block.DeleteDataRecord(record);
  EXPECT_EQ(db.GetLines(),
            (Lines{"db.CreateDataBlock(<1 it=1>, 0, 0, \"IFDSVTLbDb\")", "block<1 it=1>.CreateDataRecord()",
                   "record<1 it=1>.SetInteger(1, -1)", "record<1 it=1>.SetFloat(2, 0.25)",
                   "record<1 it=1>.SetDouble(3, 0.1)", "record<1 it=1>.SetString(4, \"a b\")",
                   "record<1 it=1>.SetVector(5, (1 2 3))", "record<1 it=1>.SetTensor(6, (1 2 3 4 5 6.5))",
                   "record<1 it=1>.SetIntList(7, (7 8))", "record<1 it=1>.SetDoubleList(8, ())",
                   "block<1 it=1>.SetRecord(4, [I -1; F 0.25; D 0.1; S \"a b\"; V 1 2 3; T 1 2 3 4 5 6.5; Lb 7 8; Db])",
                   "block<1 it=1>.DeleteDataRecord()"}));
  EXPECT_EQ(Snapshot(inner).at("<1 it=1> 4"), "[I -1; F 0.25; D 0.1; S \"a b\"; V 1 2 3; T 1 2 3 4 5 6.5; Lb 7 8; Db]");
}

TEST(RecordingDatabase, TellsTypedAccessWithItsValues)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner);
  const double       values[6] = {1, 2, 3, 4, 5, 6};
  double             out[6]    = {};
  FED_DataBlock&     tensors   = db.GetOrCreateDataBlock(Descriptor(521), 0);
  tensors.SetValuesAt(3, values);
  tensors.GetValuesAt(3, out);
  FED_DataBlock& scalars = db.GetOrCreateDataBlock(Descriptor(514), 0);
  scalars.SetScalarAt(2, 0.1 + 0.2);
  EXPECT_EQ(scalars.GetScalarAt(2), 0.1 + 0.2);
  EXPECT_EQ(scalars.GetSize(), 2u);
  EXPECT_EQ(scalars.GetMaxIndex(), 2u);
  EXPECT_FALSE(scalars.HasRecord(1));
  EXPECT_EQ(out[5], 6.0);
  EXPECT_EQ(db.GetLines(),
            (Lines{"db.GetOrCreateDataBlock(<521 it=1>, 0)", "block<521 it=1>.SetValuesAt(3, (1 2 3 4 5 6))",
                   "block<521 it=1>.GetValuesAt(3)", "db.GetOrCreateDataBlock(<514 it=1>, 0)",
                   "block<514 it=1>.SetScalarAt(2, 0.30000000000000004)", "block<514 it=1>.GetScalarAt(2)",
                   "block<514 it=1>.GetSize()", "block<514 it=1>.GetMaxIndex()", "block<514 it=1>.HasRecord(1)"}));
}

TEST(RecordingDatabase, TellsAsMuchAsIsAskedAndCountsAll)
{
  std::size_t calls = 0;
  for (const auto& [detail, lines] :
       {std::pair<Detail, std::size_t>{Detail::Database, 1}, {Detail::Blocks, 3}, {Detail::Records, 5}})
  {
    FED_ResultDatabase inner;
    RecordingDatabase  db(inner, detail);
    FED_DataBlock&     block  = db.GetOrCreateDataBlock(Descriptor(514), 0);
    FED_DataRecord*    record = block.CreateDataRecord();
    record->SetDouble(1, 1.0);
    record->GetDouble(1);
    block.DeleteDataRecord(record);
    EXPECT_EQ(db.GetLines().size(), lines);
    calls = db.GetCallCount();
    EXPECT_EQ(calls, 4u) << "freeing is not counted";
  }
}

TEST(RecordingDatabase, IdViewsReachTheDatabaseThroughItsWrappers)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner);
  {
    FED_IdDataBlock view(db.GetOrCreateDataBlock(Descriptor(514), 0), db.GetIdMapsPool(), true);
    view.SetScalar(-30, 2.5);
    double value = 0.0;
    view.GetScalar(-30, value);
    EXPECT_EQ(value, 2.5);
    EXPECT_EQ(view.GetId(1), -30);
  }
  const Lines& lines = db.GetLines();
  EXPECT_EQ(lines.at(2), "pool.FindOrAddIndex(0, -30)");
  EXPECT_EQ(lines.at(3), "block<514 it=1>.SetScalarAt(1, 2.5)");
  EXPECT_EQ(lines.back(), "pool.GetId(0, 1)");
  EXPECT_EQ(inner.GetIdMapsPool().FindIndex(0, -30), 1u);
}

TEST(RecordingDatabase, ABlockHasOneWrapperHoweverItIsObtained)
{
  FED_ResultDatabase   inner;
  RecordingDatabase    db(inner);
  FED_DataBlock* const block = &db.GetOrCreateDataBlock(Descriptor(514), 0);
  EXPECT_EQ(&db.GetDataBlock(Descriptor(514)), block);
  EXPECT_EQ(&db.GetConstDataBlock(Descriptor(514)), block);
  EXPECT_EQ(db.GetDataBlocks(FED_DataDescriptorPattern()), std::vector<FED_DataBlock*>{block});
  EXPECT_EQ(FED_DataBlockSet(db).GetDataBlockInstance(Descriptor(514)), block);
  EXPECT_TRUE(block->GetDescriptor() == Descriptor(514));
}

TEST(RecordingDatabase, FailsAtTheChosenCallFromNowAndOnlyThere)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner);
  db.IsInitialized();
  db.FailAt(2);
  db.IsInitialized();
  EXPECT_THROW(db.GetOrCreateDataBlock(Descriptor(514), 0), FED_Failure);
  EXPECT_FALSE(inner.HasDataBlock(Descriptor(514))) << "a failing call is not passed on";
  db.GetOrCreateDataBlock(Descriptor(514), 0);
  EXPECT_EQ(db.GetLines(),
            (Lines{"db.IsInitialized()", "db.IsInitialized()", "db.GetOrCreateDataBlock(<514 it=1>, 0) fails",
                   "db.GetOrCreateDataBlock(<514 it=1>, 0)"}));

  db.FailAt(1, std::make_exception_ptr(std::out_of_range("full")));
  EXPECT_THROW(db.IsInitialized(), std::out_of_range);
  db.FailAt(1);
  db.FailAt(0);
  EXPECT_TRUE(db.IsInitialized());
}

TEST(RecordingDatabase, CountsScratchRecordsUntilTheyAreFreedOrTheirBlockGoes)
{
  FED_ResultDatabase         inner;
  RecordingDatabase          db(inner);
  FED_DataBlock&             block = db.GetOrCreateDataBlock(Descriptor(514), 0);
  FED_ConstDataRecord* const freed = block.CreateConstDataRecord();
  block.CreateDataRecord();
  EXPECT_EQ(db.GetLiveScratchRecords(), 2u);
  block.DeleteDataRecord(freed);
  EXPECT_EQ(db.GetLiveScratchRecords(), 1u);
  block.DeleteDataRecord(nullptr);
  db.DeleteDataBlock(Descriptor(514));
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
  EXPECT_EQ(db.GetMadeScratchRecords(), 2u);
}

TEST(RecordingDatabase, RefusesARecordOfAnotherBlock)
{
  FED_ResultDatabase    inner;
  RecordingDatabase     db(inner);
  FED_DataRecord* const record = db.GetOrCreateDataBlock(Descriptor(514), 0).CreateDataRecord();
  EXPECT_THROW(db.GetOrCreateDataBlock(Descriptor(518), 0).DeleteDataRecord(record), std::logic_error);
}

TEST(FailureSweep, FailsEachCallOnceAndTellsTheirNumber)
{
  const auto        prepare = [] { return std::make_unique<FED_ResultDatabase>(); };
  Lines             failed;
  const std::size_t calls = SweepFailures(
      prepare, [](FED_Database& db) { db.GetOrCreateDataBlock(Descriptor(514), 0).SetScalarAt(1, 2.0); },
      [&](FED_Database& db, const RecordingDatabase& recorded) {
        failed.push_back(recorded.GetLines().back());
        EXPECT_EQ(CountWrites(recorded.GetLines()), 0u);
        EXPECT_TRUE(Snapshot(db).empty());
      });
  EXPECT_EQ(calls, 2u);
  EXPECT_EQ(failed, (Lines{"db.GetOrCreateDataBlock(<514 it=1>, 0) fails", "block<514 it=1>.SetScalarAt(1, 2) fails"}));
}

}  // namespace quilon_test
