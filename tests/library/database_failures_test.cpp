// A database that fails at each of its calls in turn: the exception arrives unchanged, id views are closed and their
// scratch records freed, and what was written before stays.

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <FEM_AvgField.h>
#include <FEM_IforceData.h>
#include <FEM_ResultUtil.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "FailureSweep.h"
#include "Snapshot.h"

namespace {

using quilon_test::RecordingDatabase;
using quilon_test::Snapshot;
using quilon_test::SweepFailures;
using Content = std::map<std::string, std::string>;

FED_DataDescriptor Descriptor(int onf) { return FED_DataDescriptor(1, static_cast<FED_OnfId>(onf)); }

std::unique_ptr<FED_ResultDatabase> MakeEmpty() { return std::make_unique<FED_ResultDatabase>(); }

// Sweeps an operation that only adds records: after a failure there are exactly the records whose writing was passed
// on, and they are those of a run without a failure.
template <typename Prepare, typename Operation>
std::size_t SweepWriter(const Prepare& prepare, const Operation& operation)
{
  const auto complete = prepare();
  operation(*complete);
  const Content     whole  = Snapshot(*complete);
  const std::size_t before = Snapshot(*prepare()).size();
  return SweepFailures(prepare, operation, [&](FED_Database& db, const RecordingDatabase& recorded) {
    const Content part = Snapshot(db);
    EXPECT_TRUE(quilon_test::IsPartOf(part, whole));
    EXPECT_EQ(part.size(), before + quilon_test::CountWrites(recorded.GetLines()));
  });
}

template <typename Data, int N>
FEM_AvgField<int, Data, N> MakeField()
{
  FEM_AvgField<int, Data, N> field(2);
  for (const int id : {7, 300, -1}) {
    for (int layer = 0; layer < 2; ++layer) {
      double value[N] = {};
      value[0]        = id + 0.5 * layer;
      field.AddValue(id, layer, value);
    }
  }
  return field;
}

template <typename Data, int N>
void SweepSaveField(int onf)
{
  const FEM_AvgField<int, Data, N> field = MakeField<Data, N>();
  const std::size_t                calls = SweepWriter(MakeEmpty, [&](FED_Database& db) {
    field.SaveField(db, Descriptor(onf), FEM_AvgFieldDefs::SeparateLayers, FEM_AvgFieldDefs::Average, true, nullptr);
  });
  // Two layers, each with the id maps, the block and for each of three ids its index and its record.
  EXPECT_GE(calls, 2u * (2u + 3u * 2u));
}

}  // namespace

TEST(DatabaseFailures, SaveFieldOfScalarsKeepsWhatWasWritten)
{
  SweepSaveField<FEM_AvgUtil::AvgData<1>, 1>(514);
  SweepSaveField<FEM_AvgUtil::StatData<1>, 1>(514);
}

TEST(DatabaseFailures, SaveFieldOfVectorsKeepsWhatWasWritten)
{
  SweepSaveField<FEM_AvgUtil::AvgData<3>, 3>(510);
  SweepSaveField<FEM_AvgUtil::StatData<3>, 3>(510);
}

TEST(DatabaseFailures, SaveFieldOfTensorsKeepsWhatWasWritten)
{
  SweepSaveField<FEM_AvgUtil::AvgData<6>, 6>(521);
  SweepSaveField<FEM_AvgUtil::StatData<6>, 6>(521);
}

TEST(DatabaseFailures, SaveFieldIntoABlockWithoutAFormatKeepsWhatWasWritten)
{
  SweepSaveField<FEM_AvgUtil::AvgData<1>, 1>(20);
  SweepSaveField<FEM_AvgUtil::AvgData<3>, 3>(20);
  SweepSaveField<FEM_AvgUtil::AvgData<6>, 6>(20);
}

TEST(DatabaseFailures, SaveFieldKeepsTheDescriptorsOfTheLayersThatWereBegun)
{
  const auto                   field = MakeField<FEM_AvgUtil::AvgData<1>, 1>();
  std::size_t                  most  = 0;
  std::set<FED_DataDescriptor> written;
  SweepFailures(
      MakeEmpty,
      [&](FED_Database& db) {
        written.clear();
        field.SaveField(db, Descriptor(514), FEM_AvgFieldDefs::SeparateLayers, FEM_AvgFieldDefs::Average, true,
                        &written);
      },
      [&](FED_Database& db, const RecordingDatabase&) {
        for (const FED_DataDescriptor& block : db.GetDataDescriptors(FED_DataDescriptorPattern())) {
          EXPECT_EQ(written.count(block), 1u);
        }
        EXPECT_GE(written.size(), most) << "the later the failure, the more layers were begun";
        most = written.size();
      });
  EXPECT_EQ(written.size(), 2u);
}

TEST(DatabaseFailures, SetResultScalarWritesNothing)
{
  EXPECT_EQ(SweepWriter(MakeEmpty, [](FED_Database& db) { FEM_ResultUtil::SetResultScalar(db, Descriptor(501), 2.5); }),
            2u);
}

TEST(DatabaseFailures, SetResultMatrixFreesItsRecord)
{
  EXPECT_EQ(SweepWriter(MakeEmpty,
                        [](FED_Database& db) { FEM_ResultUtil::SetResultMatrix(db, Descriptor(597), 30, 1, {2.5}); }),
            7u);
}

TEST(DatabaseFailures, SetElementMatrixInfoFreesItsRecord)
{
  EXPECT_EQ(SweepWriter(MakeEmpty,
                        [](FED_Database& db) {
                          FEM_ResultUtil::SetElementMatrixInfo(db, Descriptor(590), 30, {true}, {1, 2});
                        }),
            7u);
}

TEST(DatabaseFailures, AreElementNodesDefinedFreesItsRecord)
{
  const auto prepare = [] {
    auto              db = std::make_unique<FED_ResultDatabase>();
    FED_IdDataBlock   view(db->GetOrCreateDataBlock(Descriptor(595), 0), db->GetIdMapsPool(), true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetIntList(1, std::vector<int>{1, 2, 3});
    view.SetRecord(30, record);
    return db;
  };
  const std::size_t calls = SweepWriter(prepare, [](FED_Database& db) {
    EXPECT_TRUE(FEM_ResultUtil::AreElementNodesDefined(db, Descriptor(595), 30, {1, 2, 3}));
  });
  EXPECT_GE(calls, 7u);
}

TEST(DatabaseFailures, CalculateNodalStressErrorKeepsWhatWasWritten)
{
  const auto        stats = MakeField<FEM_AvgUtil::StatData<6>, 6>();
  const std::size_t calls = SweepWriter(MakeEmpty, [&](FED_Database& db) {
    FEM_ResultUtil::CalculateNodalStressError(db, Descriptor(551), stats, true, nullptr);
  });
  EXPECT_EQ(calls, 2u + 3u * 2u);
}

TEST(DatabaseFailures, SavingForcesKeepsWhatWasWritten)
{
  FEM_IforceData data;
  for (const int element : {7, 300, -1}) {
    const double values[3] = {1.0, 2.0, element + 0.5};
    data.InsertVectors(element, 30, values, values);
    data.InsertVectors(element, 10, values, values);
  }
  const std::size_t calls = SweepWriter(
      MakeEmpty, [&](FED_Database& db) { data.Save(db, Descriptor(580), Descriptor(581), FEM_IforceData::Sum); });
  // Three blocks, each with the id maps and a scratch record, one question for a block, and for each of three elements
  // three records of three calls and two to ask for the nodes.
  EXPECT_GE(calls, 3u * 3u + 1u + 3u * (3u * 3u + 1u));
}
