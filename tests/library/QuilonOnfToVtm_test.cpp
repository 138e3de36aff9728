#include <QuilonOnfToVtm.h>

#include <climits>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonDbConnector/FED_DatabaseDefs.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonOnfEngine/QuilonOnfTxtDatabase.h>
#include <QuilonUtilities/FED_Failure.h>

#include "FailureSweep.h"
#include "LogCapture.h"
#include "RecordingDatabase.h"
#include "Snapshot.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

using quilon_test::Detail;
using quilon_test::LogCapture;
using quilon_test::RecordingDatabase;
using quilon_test::Snapshot;
using quilon_test::TempFolder;
using Lines   = std::vector<std::string>;
using Content = std::map<std::string, std::string>;
using Ints    = std::vector<int>;
using Doubles = std::vector<double>;

constexpr const char* kTag       = "|%P|QuilonDbDataTools|QuilonOnfToVtm";
constexpr int         kUntouched = -77;

FED_DataDescriptor Descriptor(int onf, int loadCase = 1)
{
  FED_DataDescriptor descriptor(1, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return descriptor;
}

FED_DataDescriptor WithoutIteration(int onf)
{
  FED_DataDescriptor descriptor;
  descriptor.SetInteger(FED_DataDescriptor::OnfId, onf);
  return descriptor;
}

FED_DataDescriptorPattern Only(int onf)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, onf);
  return pattern;
}

void SetScalar(FED_Database& db, const FED_DataDescriptor& descriptor, int id, double value)
{
  FED_IdDataBlock(db.GetOrCreateDataBlock(descriptor, 0), db.GetIdMapsPool(), true).SetScalar(id, value);
}

void SetVector(FED_Database& db, const FED_DataDescriptor& descriptor, int id, double x, double y, double z)
{
  const double vector[3] = {x, y, z};
  FED_IdDataBlock(db.GetOrCreateDataBlock(descriptor, 0), db.GetIdMapsPool(), true).SetVector(id, vector);
}

void WriteOnf(const fs::path& path, const std::function<void(FED_Database&)>& fill)
{
  QuilonOnfTxtDatabase onf(path.wstring());
  onf.InitDb(FED_DatabaseDefs::WriteAccess, 1024, L"", nullptr);
  fill(onf);
  onf.ReleaseDb(true);
}

Content ReadOnf(const fs::path& path)
{
  QuilonOnfTxtDatabase onf(path.wstring());
  onf.InitDb(FED_DatabaseDefs::ReadAccess, 1024, L"", nullptr);
  Content content = Snapshot(onf);
  onf.ReleaseDb(true);
  return content;
}

// Every file beneath a folder with its bytes.
Content FilesOf(const fs::path& folder)
{
  Content files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    files[entry.path().string()] = std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return files;
}

void ExpectFailure(const std::string& message, const std::function<void()>& operation)
{
  try {
    operation();
    ADD_FAILURE() << "nothing was thrown, expected: " << message;
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.what(), message);
    EXPECT_EQ(failure.GetTag(), kTag);
  }
}

// Room for `count` records behind a span that tells `size`.
struct Arrays
{
  explicit Arrays(std::size_t count) : ids(count, kUntouched), x(count, kUntouched), y(x), z(x) {}

  void ReadScalars(const fs::path& path, const FED_DataDescriptor& descriptor, std::size_t size)
  {
    QuilonOnfToVtm::CopyOnfToScalar(path.wstring(), {ids.data(), size}, {x.data(), size}, descriptor);
  }
  void ReadVectors(const fs::path& path, const FED_DataDescriptor& descriptor, std::size_t size)
  {
    QuilonOnfToVtm::CopyOnfToVector(path.wstring(), {ids.data(), size}, {x.data(), size}, {y.data(), size},
                                    {z.data(), size}, descriptor);
  }

  Ints    ids;
  Doubles x;
  Doubles y;
  Doubles z;
};

class QuilonOnfToVtmTest : public testing::Test
{
protected:
  void CopyToVtm(FED_Database& vtm, int iteration = 1, int offset = 0, const std::map<int, int>* map = nullptr,
                 const FED_DataDescriptorPattern& pattern = FED_DataDescriptorPattern())
  {
    QuilonOnfToVtm::CopyOnfToVtm(onf_.wstring(), vtm, pattern, iteration, offset, map);
  }

  // The one block that a copy of `source` makes in an empty VTM database.
  std::string CopiedKey(const FED_DataDescriptor& source, int iteration, int offset, const std::map<int, int>* map)
  {
    const TempFolder folder;
    WriteOnf(folder / "onf", [&](FED_Database& db) { SetScalar(db, source, 5, 1.0); });
    FED_ResultDatabase vtm;
    QuilonOnfToVtm::CopyOnfToVtm((folder / "onf").wstring(), vtm, FED_DataDescriptorPattern(), iteration, offset, map);
    const auto descriptors = vtm.GetDataDescriptors(FED_DataDescriptorPattern());
    EXPECT_EQ(descriptors.size(), 1u);
    return quilon_test::Key(descriptors.at(0));
  }

  TempFolder folder_;
  fs::path   onf_     = folder_ / "onf";
  fs::path   missing_ = folder_ / "missing";
  LogCapture log_;
};

using CopyOnfToScalar = QuilonOnfToVtmTest;
using CopyOnfToVector = QuilonOnfToVtmTest;
using CopyOnfToVtm    = QuilonOnfToVtmTest;
using CopyVtmToOnf    = QuilonOnfToVtmTest;

}  // namespace

// CopyOnfToScalar

TEST_F(CopyOnfToScalar, FailsWithoutTheFolder)
{
  Arrays arrays(1);
  ExpectFailure(missing_.string() + " ONF file not found.", [&] { arrays.ReadScalars(missing_, Descriptor(514), 1); });
  EXPECT_EQ(arrays.ids, Ints{kUntouched});
}

TEST_F(CopyOnfToScalar, NamesAMissingFolderInUtf8)
{
  Arrays             arrays(1);
  const std::wstring path = L"/quilon-nowhere/\u00e4\u20ac";
  ExpectFailure("/quilon-nowhere/\xc3\xa4\xe2\x82\xac ONF file not found.", [&] {
    QuilonOnfToVtm::CopyOnfToScalar(path, {arrays.ids.data(), 1}, {arrays.x.data(), 1}, Descriptor(514));
  });
}

TEST_F(CopyOnfToScalar, CutsALongMessageAt1023Characters)
{
  Arrays             arrays(1);
  const std::wstring path = L"/quilon-nowhere/" + std::wstring(2000, L'x');
  ExpectFailure("/quilon-nowhere/" + std::string(1023 - 16, 'x'), [&] {
    QuilonOnfToVtm::CopyOnfToScalar(path, {arrays.ids.data(), 1}, {arrays.x.data(), 1}, Descriptor(514));
  });
}

TEST_F(CopyOnfToScalar, FailsWithoutABlockOfTheDescriptor)
{
  WriteOnf(onf_, [](FED_Database& db) { SetScalar(db, Descriptor(514, 1), 5, 1.0); });
  Arrays arrays(1);
  ExpectFailure("No blocks matching the pattern found", [&] { arrays.ReadScalars(onf_, Descriptor(514, 2), 1); });
  EXPECT_EQ(arrays.ids, Ints{kUntouched});
}

TEST_F(CopyOnfToScalar, ReadsIdsAndValuesByAscendingIndexAndLeavesTheFilesAlone)
{
  WriteOnf(onf_, [](FED_Database& db) {
    SetScalar(db, Descriptor(514), -4, 0.25);
    SetScalar(db, Descriptor(514), 10, 2.5);
    SetScalar(db, Descriptor(514), 30, 1.5);
  });
  const Content files = FilesOf(folder_.GetPath());
  Arrays        arrays(4);
  arrays.ReadScalars(onf_, Descriptor(514), 3);

  // In which order the text database indexes its ids is its own affair: the view over it says so.
  Ints    ids;
  Doubles values;
  {
    QuilonOnfTxtDatabase onf(onf_.wstring());
    onf.InitDb(FED_DatabaseDefs::ReadAccess, 1024, L"", nullptr);
    const FED_DataBlock&       block = std::as_const(onf).GetConstDataBlock(Descriptor(514));
    const FED_ConstIdDataBlock view(block, onf.GetIdMapsPool());
    for (auto index = block.Begin(); index != block.End(); ++index) {
      ids.push_back(view.GetId(*index));
      values.push_back(block.GetScalarAt(*index));
    }
  }
  ids.push_back(kUntouched);
  values.push_back(kUntouched);
  EXPECT_EQ(arrays.ids, ids);
  EXPECT_EQ(arrays.x, values);
  const std::map<int, double> expected = {{-4, 0.25}, {10, 2.5}, {30, 1.5}};
  for (std::size_t n = 0; n < 3; ++n) EXPECT_EQ(arrays.x[n], expected.at(arrays.ids[n]));
  EXPECT_EQ(FilesOf(folder_.GetPath()), files);
  EXPECT_EQ(log_.GetTexts(), Lines{});
}

TEST_F(CopyOnfToScalar, OneElementBehindTheSpanIsWritten)
{
  WriteOnf(onf_, [](FED_Database& db) {
    for (int id = 1; id <= 5; ++id) SetScalar(db, Descriptor(514), id, 10.0 * id);
  });
  struct Row
  {
    std::size_t size;
    Ints        ids;
  };
  const Row rows[] = {{0, {1, kUntouched, kUntouched, kUntouched, kUntouched, kUntouched}},
                      {2, {1, 2, 3, kUntouched, kUntouched, kUntouched}},
                      {4, {1, 2, 3, 4, 5, kUntouched}},
                      {5, {1, 2, 3, 4, 5, kUntouched}},
                      {6, {1, 2, 3, 4, 5, kUntouched}}};
  for (const Row& row : rows) {
    Arrays arrays(6);
    arrays.ReadScalars(onf_, Descriptor(514), row.size);
    EXPECT_EQ(arrays.ids, row.ids) << row.size;
    for (std::size_t n = 0; n < 6; ++n) {
      EXPECT_EQ(arrays.x[n], row.ids[n] == kUntouched ? kUntouched : 10.0 * row.ids[n]) << row.size;
    }
  }
}

TEST_F(CopyOnfToScalar, TheSizeOfTheIdsAloneCounts)
{
  WriteOnf(onf_, [](FED_Database& db) {
    SetScalar(db, Descriptor(514), 1, 10.0);
    SetScalar(db, Descriptor(514), 2, 20.0);
  });
  Arrays arrays(3);
  QuilonOnfToVtm::CopyOnfToScalar(onf_.wstring(), {arrays.ids.data(), 2}, {arrays.x.data(), 0}, Descriptor(514));
  EXPECT_EQ(arrays.x, (Doubles{10.0, 20.0, kUntouched}));
}

TEST_F(CopyOnfToScalar, IdsOfAHistoryAreItsBlockIndices)
{
  WriteOnf(onf_, [](FED_Database& db) {
    for (const std::size_t index : {0u, 3u, 8u}) {
      db.GetOrCreateDataBlock(Descriptor(500), 0).SetScalarAt(index, 0.5 * double(index));
    }
  });
  Arrays arrays(3);
  arrays.ReadScalars(onf_, Descriptor(500), 3);
  EXPECT_EQ(arrays.ids, (Ints{0, 3, 8}));
  EXPECT_EQ(arrays.x, (Doubles{0.0, 1.5, 4.0}));
}

TEST_F(CopyOnfToScalar, ABlockOfVectorsIsTheDatabasesFailure)
{
  WriteOnf(onf_, [](FED_Database& db) { SetVector(db, Descriptor(510), 5, 1, 2, 3); });
  Arrays arrays(1);
  EXPECT_THROW(arrays.ReadScalars(onf_, Descriptor(510), 1), FED_Failure);
  EXPECT_EQ(arrays.ids, Ints{5}) << "the id is written before the value is read";
  EXPECT_EQ(arrays.x, Doubles{kUntouched});
}

// CopyOnfToVector

TEST_F(CopyOnfToVector, FailsWithoutTheFolder)
{
  Arrays arrays(1);
  ExpectFailure(missing_.string() + " ONF file not found.", [&] { arrays.ReadVectors(missing_, Descriptor(510), 1); });
}

TEST_F(CopyOnfToVector, FailsWithoutABlockOfTheDescriptor)
{
  WriteOnf(onf_, [](FED_Database& db) { SetVector(db, Descriptor(510, 1), 5, 1, 2, 3); });
  Arrays arrays(1);
  ExpectFailure("No blocks matching the pattern found", [&] { arrays.ReadVectors(onf_, Descriptor(510, 2), 1); });
}

TEST_F(CopyOnfToVector, OneElementBehindTheSpanIsWrittenInAllFourArrays)
{
  WriteOnf(onf_, [](FED_Database& db) {
    for (int id = 1; id <= 4; ++id) SetVector(db, Descriptor(510), id, id, 10.0 * id, 100.0 * id);
  });
  Arrays truncated(4);
  truncated.ReadVectors(onf_, Descriptor(510), 2);
  EXPECT_EQ(truncated.ids, (Ints{1, 2, 3, kUntouched}));
  EXPECT_EQ(truncated.x, (Doubles{1, 2, 3, kUntouched}));
  EXPECT_EQ(truncated.y, (Doubles{10, 20, 30, kUntouched}));
  EXPECT_EQ(truncated.z, (Doubles{100, 200, 300, kUntouched}));

  Arrays whole(5);
  whole.ReadVectors(onf_, Descriptor(510), 4);
  EXPECT_EQ(whole.ids, (Ints{1, 2, 3, 4, kUntouched}));
  EXPECT_EQ(whole.z, (Doubles{100, 200, 300, 400, kUntouched}));

  Arrays one(2);
  one.ReadVectors(onf_, Descriptor(510), 0);
  EXPECT_EQ(one.ids, (Ints{1, kUntouched}));
}

// CopyOnfToVtm: failures

TEST_F(CopyOnfToVtm, LooksForTheFolderBeforeItAsksTheDatabase)
{
  FED_ResultDatabase inner;
  RecordingDatabase  vtm(inner);
  ExpectFailure(missing_.string() + " ONF file not found.", [&] {
    QuilonOnfToVtm::CopyOnfToVtm(missing_.wstring(), vtm, FED_DataDescriptorPattern(), 1, 0, nullptr);
  });
  EXPECT_EQ(vtm.GetLines(), Lines{});
  EXPECT_EQ(log_.GetTexts(), Lines{});
}

TEST_F(CopyOnfToVtm, FailsWhenTheVtmDatabaseIsNotInitialized)
{
  WriteOnf(onf_, [](FED_Database& db) { SetScalar(db, Descriptor(514), 5, 1.0); });
  QuilonOnfTxtDatabase closed((folder_ / "closed").wstring());
  ExpectFailure("VTM database does not exist or isn't initialized", [&] { CopyToVtm(closed); });
  EXPECT_EQ(log_.GetTexts(), Lines{});
}

TEST_F(CopyOnfToVtm, ALoadCaseThatLeavesTheRangeIsAFailure)
{
  WriteOnf(onf_, [](FED_Database& db) { SetScalar(db, Descriptor(514, INT_MAX), 5, 1.0); });
  FED_ResultDatabase vtm;
  ExpectFailure("Load case 2147483647 with offset 1 is 2147483648, expected a 32-bit integer",
                [&] { CopyToVtm(vtm, 1, 1); });
  EXPECT_TRUE(vtm.GetDataDescriptors(FED_DataDescriptorPattern()).empty());
}

// CopyOnfToVtm: log lines

TEST_F(CopyOnfToVtm, WithoutAMatchLogsTwoLinesAndReturns)
{
  WriteOnf(onf_, [](FED_Database& db) { SetScalar(db, Descriptor(514), 5, 1.0); });
  FED_ResultDatabase inner;
  RecordingDatabase  vtm(inner);
  CopyToVtm(vtm, 1, 0, nullptr, Only(510));
  EXPECT_EQ(log_.GetWhole(), (Lines{"5 src/QuilonOnfToVtm:70 |QuilonDbDataTools|QuilonOnfToVtm: ONF has 0 datablocks ",
                                    "4 src/QuilonOnfToVtm:128 |QuilonDbDataTools|QuilonOnfToVtm: "
                                    "No blocks matching the pattern found for pattern " +
                                        Only(510).ToString()}));
  EXPECT_EQ(vtm.GetLines(), Lines{"db.IsInitialized()"});
}

TEST_F(CopyOnfToVtm, LogsTheNumberOfBlocksAndEachBlockAsItIsWritten)
{
  WriteOnf(onf_, [](FED_Database& db) {
    SetScalar(db, Descriptor(514, 1), 5, 1.0);
    SetScalar(db, Descriptor(514, 2), 5, 2.0);
  });
  FED_ResultDatabase vtm;
  CopyToVtm(vtm, 1, 10);
  const std::string source = "src/QuilonOnfToVtm";
  const std::string tag    = " |QuilonDbDataTools|QuilonOnfToVtm: ";
  EXPECT_EQ(log_.GetWhole(),
            (Lines{"5 " + source + ":70" + tag + "ONF has 2 datablocks ",
                   "5 " + source + ":100" + tag + "Writing " + Descriptor(514, 11).ToString() + " to VTM",
                   "5 " + source + ":100" + tag + "Writing " + Descriptor(514, 12).ToString() + " to VTM"}));
}

// CopyOnfToVtm: descriptors

TEST_F(CopyOnfToVtm, MapsTheLoadCaseThenAddsTheOffset)
{
  const std::map<int, int> map   = {{4, 2}, {2, 9}};
  const std::map<int, int> empty = {};
  struct Row
  {
    int                       loadCase;
    int                       offset;
    const std::map<int, int>* map;
    const char*               key;
  };
  const Row rows[] = {
      {4, 10, &map, "<514 it=1 lc=12>"},    {4, 10, &empty, "<514 it=1 lc=14>"}, {4, 10, nullptr, "<514 it=1 lc=14>"},
      {5, 10, &map, "<514 it=1 lc=15>"},    {4, 0, &map, "<514 it=1 lc=2>"},     {4, 0, nullptr, "<514 it=1 lc=4>"},
      {4, -6, nullptr, "<514 it=1 lc=-2>"}, {2, 1, &map, "<514 it=1 lc=10>"},
  };
  for (const Row& row : rows) EXPECT_EQ(CopiedKey(Descriptor(514, row.loadCase), 1, row.offset, row.map), row.key);
}

TEST_F(CopyOnfToVtm, ABlockWithoutALoadCaseKeepsNone)
{
  const std::map<int, int> map = {{0, 3}, {6, 3}};
  EXPECT_EQ(CopiedKey(FED_DataDescriptor(1, static_cast<FED_OnfId>(514)), 1, 10, &map), "<514 it=1>");

  FED_DataDescriptor leftover(1, static_cast<FED_OnfId>(514));
  leftover.values[FED_DataDescriptor::LoadCase] = 6;
  EXPECT_EQ(CopiedKey(leftover, 1, 10, &map), "<514 it=1 ~lc=6>");
}

TEST_F(CopyOnfToVtm, KeepsAnIterationAndFillsAMissingOneIn)
{
  EXPECT_EQ(CopiedKey(FED_DataDescriptor(3, static_cast<FED_OnfId>(514)), 7, 0, nullptr), "<514 it=3>");
  EXPECT_EQ(CopiedKey(FED_DataDescriptor(0, static_cast<FED_OnfId>(514)), 7, 0, nullptr), "<514 it=0>");
  EXPECT_EQ(CopiedKey(WithoutIteration(514), 7, 0, nullptr), "<514 it=7>");

  FED_DataDescriptor leftover                    = WithoutIteration(514);
  leftover.values[FED_DataDescriptor::Iteration] = 3;
  EXPECT_EQ(CopiedKey(leftover, 7, 0, nullptr), "<514 it=7>") << "a value under a clear bit is no iteration";
}

// CopyOnfToVtm: records

TEST_F(CopyOnfToVtm, AsksTheDatabaseInThisOrder)
{
  WriteOnf(onf_, [](FED_Database& db) {
    SetScalar(db, Descriptor(514), 5, 1.5);
    SetScalar(db, Descriptor(514), 6, 2.5);
  });
  FED_ResultDatabase inner;
  RecordingDatabase  vtm(inner);
  CopyToVtm(vtm);
  EXPECT_EQ(vtm.GetLines(),
            (Lines{"db.IsInitialized()", "db.GetOrCreateDataBlock(<514 it=1 lc=1>, 0)", "db.GetIdMapsPool()",
                   "block<514 it=1 lc=1>.CreateDataRecord()", "pool.FindOrAddIndex(0, 5)",
                   "block<514 it=1 lc=1>.SetRecord(1, [D 1.5])", "pool.FindOrAddIndex(0, 6)",
                   "block<514 it=1 lc=1>.SetRecord(2, [D 2.5])", "block<514 it=1 lc=1>.DeleteDataRecord()"}));
  EXPECT_EQ(vtm.GetMadeScratchRecords(), 1u);
  EXPECT_EQ(vtm.GetLiveScratchRecords(), 0u);
}

TEST_F(CopyOnfToVtm, CopiesTheMatchingBlocksOnly)
{
  WriteOnf(onf_, [](FED_Database& db) {
    SetScalar(db, Descriptor(514, 1), 5, 1.0);
    SetVector(db, Descriptor(510, 1), 5, 1, 2, 3);
  });
  FED_ResultDatabase vtm;
  CopyToVtm(vtm, 1, 0, nullptr, Only(510));
  EXPECT_EQ(Snapshot(vtm), (Content{{"<510 it=1 lc=1> 1", "[V 1 2 3]"}}));
}

TEST_F(CopyOnfToVtm, RecordsStayWithTheirIdsWhateverTheirIndices)
{
  WriteOnf(onf_, [](FED_Database& db) {
    for (const int id : {30, 10, -7}) SetScalar(db, Descriptor(514), id, id / 2.0);
  });
  FED_ResultDatabase vtm;
  for (const int id : {10, 20, 30}) SetScalar(vtm, Descriptor(519), id, 0.0);  // first use in another order
  CopyToVtm(vtm);
  const FED_ConstIdDataBlock view(vtm.GetConstDataBlock(Descriptor(514)), vtm.GetIdMapsPool());
  for (const int id : {30, 10, -7}) {
    double value = 0.0;
    view.GetScalar(id, value);
    EXPECT_EQ(value, id / 2.0);
  }
  EXPECT_FALSE(view.HasRecord(20));
}

TEST_F(CopyOnfToVtm, OverwritesRecordsOfTheSameIdAndKeepsOthers)
{
  WriteOnf(onf_, [](FED_Database& db) {
    SetScalar(db, Descriptor(514), 10, 1.0);
    SetScalar(db, Descriptor(514), 30, 3.0);
  });
  FED_ResultDatabase vtm;
  SetScalar(vtm, Descriptor(514), 20, 200.0);
  SetScalar(vtm, Descriptor(514), 30, 300.0);
  CopyToVtm(vtm);
  const FED_ConstIdDataBlock  view(vtm.GetConstDataBlock(Descriptor(514)), vtm.GetIdMapsPool());
  const std::map<int, double> expected = {{10, 1.0}, {20, 200.0}, {30, 3.0}};
  for (const auto& [id, value] : expected) {
    double found = 0.0;
    view.GetScalar(id, found);
    EXPECT_EQ(found, value) << id;
  }
}

TEST_F(CopyOnfToVtm, IdsOfIndexedKindsAreTheBlockIndices)
{
  const auto fill = [](FED_Database& db) {
    for (const std::size_t index : {0u, 3u}) {
      db.GetOrCreateDataBlock(Descriptor(500), 0).SetScalarAt(index, 0.5 + double(index));
    }
    FED_DataBlock&        matrix = *db.CreateDataBlock(Descriptor(593), 1, 20, "IIbDbLbLb");
    FED_DataRecord* const record = matrix.CreateDataRecord();
    record->SetInteger(1, 1);
    record->SetInteger(2, 2);
    record->SetDoubleList(3, Doubles{0.5, -0.0});
    record->SetIntList(4, Ints{0, 2});
    record->SetIntList(5, Ints{0, 1});
    matrix.SetRecord(7, *record);
    matrix.DeleteDataRecord(record);
  };
  WriteOnf(onf_, fill);
  FED_ResultDatabase vtm;
  CopyToVtm(vtm);
  EXPECT_EQ(Snapshot(vtm), (Content{{"<500 it=1 lc=1> 0", "[D 0.5]"},
                                    {"<500 it=1 lc=1> 3", "[D 3.5]"},
                                    {"<593 it=1 lc=1> 7", "[I 1; I 2; Db 0.5 -0; Lb 0 2; Lb 0 1]"}}));
}

TEST_F(CopyOnfToVtm, BlocksOfAnUnknownKindTakeTheirFormatAlong)
{
  WriteOnf(onf_, [](FED_Database& db) {
    FED_IdDataBlock   view(*db.CreateDataBlock(Descriptor(20), 1, 1, "SFlbT"), db.GetIdMapsPool(), true);
    FED_IdDataRecord& record    = view.CreateIdDataRecord();
    const double      tensor[6] = {1, 2, 3, 4, 5, 6};
    for (const int id : {40, 41}) {
      record.GetDataRecord().SetString(1, "a \"quoted\" name");
      record.GetDataRecord().SetFloat(2, 0.25f);
      record.GetDataRecord().SetIntList(3, Ints{id, 2});
      record.GetDataRecord().SetTensor(4, tensor);
      view.SetRecord(id, record);
    }
  });
  FED_ResultDatabase vtm;
  CopyToVtm(vtm);
  const FED_ConstIdDataBlock view(vtm.GetConstDataBlock(Descriptor(20)), vtm.GetIdMapsPool());
  FED_ConstIdDataRecord&     record = view.CreateConstIdDataRecord();
  for (const int id : {40, 41}) {
    view.GetRecord(id, record);
    EXPECT_EQ(record.GetDataRecord().GetString(1), "a \"quoted\" name");
    EXPECT_EQ(record.GetDataRecord().GetFloat(2), 0.25f);
    FED_IntArray list;
    record.GetIntList(3, list);
    EXPECT_TRUE(list == FED_IntArray(Ints{id, 2}));
    double tensor[6] = {};
    record.GetDataRecord().GetTensor(4, tensor);
    EXPECT_EQ(tensor[5], 6.0);
  }
}

TEST_F(CopyOnfToVtm, AFailingVtmDatabaseKeepsWhatWasWrittenAndTheFilesAsTheyWere)
{
  WriteOnf(onf_, [](FED_Database& db) {
    for (const int id : {30, 10}) {
      SetScalar(db, Descriptor(514, 1), id, id);
      SetVector(db, Descriptor(510, 2), id, id, 0, 0);
    }
  });
  const Content files   = FilesOf(folder_.GetPath());
  const auto    prepare = [] { return std::make_unique<FED_ResultDatabase>(); };
  const auto    copy    = [&](FED_Database& vtm) { CopyToVtm(vtm); };

  const auto complete = prepare();
  copy(*complete);
  const Content     whole = Snapshot(*complete);
  const std::size_t calls =
      quilon_test::SweepFailures(prepare, copy, [&](FED_Database& vtm, const RecordingDatabase& recorded) {
        const Content part = Snapshot(vtm);
        EXPECT_TRUE(quilon_test::IsPartOf(part, whole));
        EXPECT_EQ(part.size(), quilon_test::CountWrites(recorded.GetLines()));
      });
  EXPECT_GT(calls, 10u);
  EXPECT_EQ(FilesOf(folder_.GetPath()), files);
}

// CopyVtmToOnf

TEST_F(CopyVtmToOnf, WritesTheMatchingBlocksThatHaveRecords)
{
  FED_ResultDatabase vtm;
  SetScalar(vtm, Descriptor(514, 1), 30, 3.0);
  SetScalar(vtm, Descriptor(514, 2), 10, 1.0);
  SetVector(vtm, Descriptor(510, 1), 10, 1, 2, 3);
  vtm.GetOrCreateDataBlock(Descriptor(514, 3), 0);  // no records
  QuilonOnfToVtm::CopyVtmToOnf(onf_.wstring(), vtm, Only(514));
  const Content content = ReadOnf(onf_);
  ASSERT_EQ(content.size(), 2u);
  Content keys;
  for (const auto& [key, record] : content) keys[key.substr(0, key.find('>') + 1)] = record;
  EXPECT_EQ(keys, (Content{{"<514 it=1 lc=1>", "[D 3]"}, {"<514 it=1 lc=2>", "[D 1]"}}));

  QuilonOnfTxtDatabase onf(onf_.wstring());
  onf.InitDb(FED_DatabaseDefs::ReadAccess, 1024, L"", nullptr);
  EXPECT_FALSE(onf.HasDataBlock(Descriptor(514, 3))) << "a block without records is left out";
}

TEST_F(CopyVtmToOnf, RecordsComeBackUnderTheirIds)
{
  FED_ResultDatabase vtm;
  for (const int id : {30, 10, -7}) SetScalar(vtm, Descriptor(514), id, id / 3.0);
  QuilonOnfToVtm::CopyVtmToOnf(onf_.wstring(), vtm, FED_DataDescriptorPattern());
  FED_ResultDatabase back;
  CopyToVtm(back);
  const FED_ConstIdDataBlock view(back.GetConstDataBlock(Descriptor(514)), back.GetIdMapsPool());
  for (const int id : {30, 10, -7}) {
    double value = 0.0;
    view.GetScalar(id, value);
    EXPECT_EQ(value, id / 3.0) << "to the last bit";
  }
}

TEST_F(CopyVtmToOnf, ReplacesEqualKeysAndLeavesOtherBlocks)
{
  FED_ResultDatabase first;
  SetScalar(first, Descriptor(514, 1), 10, 1.0);
  SetScalar(first, Descriptor(514, 1), 20, 2.0);
  SetScalar(first, Descriptor(514, 2), 10, 4.0);
  QuilonOnfToVtm::CopyVtmToOnf(onf_.wstring(), first, FED_DataDescriptorPattern());
  FED_ResultDatabase second;
  SetScalar(second, Descriptor(514, 1), 10, 8.0);
  QuilonOnfToVtm::CopyVtmToOnf(onf_.wstring(), second, FED_DataDescriptorPattern());
  Content records;
  for (const auto& [key, record] : ReadOnf(onf_)) records[key.substr(0, key.find('>') + 1)] += record;
  EXPECT_EQ(records, (Content{{"<514 it=1 lc=1>", "[D 8]"}, {"<514 it=1 lc=2>", "[D 4]"}}));
}

TEST_F(CopyVtmToOnf, NothingToCopyToOnfIsAFailure)
{
  FED_ResultDatabase vtm;
  SetScalar(vtm, Descriptor(514), 10, 1.0);
  vtm.GetOrCreateDataBlock(Descriptor(510), 0);  // no records
  for (const int onf : {512, 510}) {
    ExpectFailure("No blocks matching the pattern found",
                  [&] { QuilonOnfToVtm::CopyVtmToOnf(onf_.wstring(), vtm, Only(onf)); });
    EXPECT_FALSE(fs::exists(onf_)) << "nothing is published";
  }
  EXPECT_EQ(log_.GetTexts(), Lines{}) << "unlike the other direction, which logs and returns";

  QuilonOnfToVtm::CopyVtmToOnf(onf_.wstring(), vtm, Only(514));
  const Content files = FilesOf(folder_.GetPath());
  ExpectFailure("No blocks matching the pattern found",
                [&] { QuilonOnfToVtm::CopyVtmToOnf(onf_.wstring(), vtm, Only(512)); });
  EXPECT_EQ(FilesOf(folder_.GetPath()), files);
}

TEST_F(CopyVtmToOnf, AFailingVtmDatabasePublishesNothing)
{
  const auto prepare = [] {
    auto vtm = std::make_unique<FED_ResultDatabase>();
    SetScalar(*vtm, Descriptor(514), 30, 3.0);
    SetVector(*vtm, Descriptor(510), 10, 1, 2, 3);
    return vtm;
  };
  const auto copy = [&](FED_Database& vtm) {
    QuilonOnfToVtm::CopyVtmToOnf(onf_.wstring(), vtm, FED_DataDescriptorPattern());
  };
  const std::size_t calls = quilon_test::SweepFailures(
      prepare, copy, [&](FED_Database&, const RecordingDatabase&) { EXPECT_FALSE(fs::exists(onf_)); });
  EXPECT_GT(calls, 5u);
  EXPECT_EQ(ReadOnf(onf_).size(), 2u);
}
