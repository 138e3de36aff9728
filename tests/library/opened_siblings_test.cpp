// How the library opens and closes what the sibling libraries lend it: with which arguments, in which order, and what
// it closes when something throws. None of this changes a result of the bundled siblings, so this program brings id
// views, an ONF text database and a block copier of its own: their definitions here come before the libraries'.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <FEM_ResultUtil.h>
#include <QuilonDbConnector/FED_DataBlockSet.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonDbConnector/QuilonDatabaseUtils.h>
#include <QuilonOnfEngine/QuilonOnfTxtDatabase.h>
#include <QuilonOnfToVtm.h>
#include <QuilonUtilities/FED_Failure.h>
#include <QuilonUtilities/QuilonFileUtil.h>

#include "LogCapture.h"

namespace {

std::vector<std::string> g_calls;
FED_ResultDatabase*      g_onf    = nullptr;  // what every ONF text database holds
std::size_t              g_copied = 0;        // how many blocks the copier says it copied

void Call(const std::string& call) { g_calls.push_back(call); }

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

}  // namespace

// The id view.

FED_IdDataBlock::FED_IdDataBlock(FED_DataBlock& block, FED_IdMapsPool& pool, bool flag)
    : FED_ConstIdDataBlock(block, pool, flag), writableBlock_(block), writablePool_(pool)
{
  Call(std::string("open view ") + (flag ? "true" : "false"));
}
FED_IdDataBlock::~FED_IdDataBlock() { Call("close view"); }

// The ONF text database.

class QuilonOnfTxtDatabase::Implementation
{
public:
  FED_DataBlockSet blocks{*g_onf};
};

QuilonOnfTxtDatabase::QuilonOnfTxtDatabase(const std::wstring& path)
    : implementation_(std::make_unique<Implementation>())
{
  Call("construct " + Narrow(path));
}
QuilonOnfTxtDatabase::~QuilonOnfTxtDatabase() { Call("destroy"); }

void QuilonOnfTxtDatabase::InitDb(FED_DatabaseDefs::AccessMode mode, std::size_t cacheSize, const std::wstring& name,
                                  const FED_IdMapsPool* idMaps)
{
  Call("init mode " + std::to_string(mode) + " cache " + std::to_string(cacheSize) + " name '" + Narrow(name) + "' " +
       (idMaps == nullptr ? "no maps" : "maps"));
}
void QuilonOnfTxtDatabase::ReleaseDb(bool dropCachedBlocks)
{
  Call(std::string("release ") + (dropCachedBlocks ? "true" : "false"));
}

const FED_DataBlockSet& QuilonOnfTxtDatabase::GetDataBlockSet() const { return implementation_->blocks; }
FED_IdMapsPool&         QuilonOnfTxtDatabase::GetIdMapsPool() { return g_onf->GetIdMapsPool(); }
const FED_IdMapsPool&   QuilonOnfTxtDatabase::GetIdMapsPool() const { return g_onf->GetIdMapsPool(); }
bool                    QuilonOnfTxtDatabase::IsInitialized() const { return true; }
FED_DataBlock* QuilonOnfTxtDatabase::CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize,
                                                     std::size_t secondSize, const std::string& recordFormat)
{
  return g_onf->CreateDataBlock(descriptor, firstSize, secondSize, recordFormat);
}
FED_DataBlock& QuilonOnfTxtDatabase::GetOrCreateDataBlock(const FED_DataDescriptor& descriptor,
                                                          std::size_t               expectedRecords)
{
  return g_onf->GetOrCreateDataBlock(descriptor, expectedRecords);
}
bool QuilonOnfTxtDatabase::HasDataBlock(const FED_DataDescriptor& descriptor) const
{
  return g_onf->HasDataBlock(descriptor);
}
const FED_DataBlock& QuilonOnfTxtDatabase::GetConstDataBlock(const FED_DataDescriptor& descriptor) const
{
  return g_onf->GetConstDataBlock(descriptor);
}
FED_DataBlock& QuilonOnfTxtDatabase::GetDataBlock(const FED_DataDescriptor& descriptor)
{
  return g_onf->GetDataBlock(descriptor);
}
std::vector<FED_DataBlock*> QuilonOnfTxtDatabase::GetDataBlocks(const FED_DataDescriptorPattern& pattern)
{
  Call("get blocks");
  return g_onf->GetDataBlocks(pattern);
}
void QuilonOnfTxtDatabase::DeleteDataBlock(const FED_DataDescriptor& descriptor) { g_onf->DeleteDataBlock(descriptor); }
std::vector<FED_DataDescriptor> QuilonOnfTxtDatabase::GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const
{
  return g_onf->GetDataDescriptors(pattern);
}
std::string QuilonOnfTxtDatabase::GetUserKindName(FED_OnfId onf) const { return g_onf->GetUserKindName(onf); }
void        QuilonOnfTxtDatabase::SetUserKindName(FED_OnfId onf, const std::string& name)
{
  g_onf->SetUserKindName(onf, name);
}

// The functions around it.

bool QuilonFileUtil::FileExists(const std::wstring& path)
{
  Call("exists " + Narrow(path));
  return true;
}

std::size_t QuilonDatabaseUtils::copy_datablocks(const FED_Database&, FED_Database&,
                                                 const FED_DataDescriptorPattern& pattern, EmptyBlockAction action)
{
  const FED_DataDescriptorPattern::Criterion& onf = pattern.criteria[FED_DataDescriptor::OnfId];
  Call("copy onf " + std::to_string(onf.value) + " action " + std::to_string(action));
  return g_copied;
}

namespace {

using testing::ElementsAre;

class OpenedSiblings : public testing::Test
{
protected:
  void SetUp() override
  {
    g_onf    = &onf_;
    g_copied = 0;
    g_calls.clear();
  }

  static FED_DataDescriptor Descriptor(int onf) { return FED_DataDescriptor(1, static_cast<FED_OnfId>(onf)); }

  // A record of one node in a block of the ONF results.
  void AddNode(int onf, const std::vector<double>& values)
  {
    onf_.GetOrCreateDataBlock(Descriptor(onf), 0).SetValuesAt(onf_.GetIdMapsPool().FindOrAddIndex(0, 5), values.data());
  }

  FED_ResultDatabase      onf_;
  FED_ResultDatabase      vtm_;
  quilon_test::LogCapture log_;
};

using OpenedViews = OpenedSiblings;
using OpenedOnf   = OpenedSiblings;

const char* const kInitToRead  = "init mode 0 cache 1024 name '' no maps";
const char* const kInitToWrite = "init mode 1 cache 1024 name '' no maps";

TEST_F(OpenedViews, WritersOfSingleResultsOpenTheirViewWithTrueAndCloseIt)
{
  FEM_ResultUtil::SetResultMatrix(vtm_, Descriptor(597), 30, 1, {1.0});
  EXPECT_THAT(g_calls, ElementsAre("open view true", "close view"));
  g_calls.clear();
  FEM_ResultUtil::SetElementMatrixInfo(vtm_, Descriptor(590), 30, {true}, {1});
  EXPECT_THAT(g_calls, ElementsAre("open view true", "close view"));
}

TEST_F(OpenedViews, AWriterThatFailsClosesItsView)
{
  EXPECT_THROW(FEM_ResultUtil::SetElementMatrixInfo(vtm_, Descriptor(590), 30, std::vector<bool>(33), {}), FED_Failure);
  EXPECT_THAT(g_calls, ElementsAre("open view true", "close view"));
}

TEST_F(OpenedViews, TheCheckOfElementNodesOpensItsViewWithTrueAndClosesItInEveryCase)
{
  EXPECT_FALSE(FEM_ResultUtil::AreElementNodesDefined(vtm_, Descriptor(595), 30, {1}));
  EXPECT_THAT(g_calls, ElementsAre("open view true", "close view"));

  FED_DataBlock&        block  = vtm_.GetDataBlock(Descriptor(595));
  FED_DataRecord* const record = block.CreateDataRecord();
  record->SetIntList(1, std::vector<int>{1});
  block.SetRecord(vtm_.GetIdMapsPool().FindOrAddIndex(1, 30), *record);
  block.DeleteDataRecord(record);
  g_calls.clear();
  EXPECT_TRUE(FEM_ResultUtil::AreElementNodesDefined(vtm_, Descriptor(595), 30, {1}));
  EXPECT_THROW(FEM_ResultUtil::AreElementNodesDefined(vtm_, Descriptor(595), 30, {2}), FED_Failure);
  EXPECT_THAT(g_calls, ElementsAre("open view true", "close view", "open view true", "close view"));
}

TEST_F(OpenedViews, TheStressErrorHandsTheCallersFlagOn)
{
  FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6> stats;
  stats.AddValue(7, {1, 2, 3, 4, 5, 6});
  FEM_ResultUtil::CalculateNodalStressError(vtm_, Descriptor(551), stats, true, nullptr);
  FEM_ResultUtil::CalculateNodalStressError(vtm_, Descriptor(551), stats, false, nullptr);
  EXPECT_THAT(g_calls, ElementsAre("open view true", "close view", "open view false", "close view"));
}

TEST_F(OpenedOnf, ABlockOfScalarsOrVectorsIsReadBetweenInitAndRelease)
{
  AddNode(514, {1.5});
  AddNode(510, {1, 2, 3});
  int        id     = 0;
  double     xyz[3] = {};
  const auto calls  = ElementsAre("exists onf", "construct onf", kInitToRead, "open view false", "close view",
                                  "release false", "destroy");
  QuilonOnfToVtm::CopyOnfToScalar(L"onf", {&id, 1}, {xyz, 1}, Descriptor(514));
  EXPECT_THAT(g_calls, calls);
  EXPECT_EQ(id, 5);
  EXPECT_EQ(xyz[0], 1.5);

  g_calls.clear();
  QuilonOnfToVtm::CopyOnfToVector(L"onf", {&id, 1}, {xyz, 1}, {xyz + 1, 1}, {xyz + 2, 1}, Descriptor(510));
  EXPECT_THAT(g_calls, calls);
  EXPECT_THAT(xyz, ElementsAre(1, 2, 3));
}

TEST_F(OpenedOnf, ABlockThatIsMissingOrDoesNotFitLeavesTheDatabaseWithoutARelease)
{
  int    id    = 0;
  double value = 0;
  EXPECT_THROW(QuilonOnfToVtm::CopyOnfToScalar(L"onf", {&id, 1}, {&value, 1}, Descriptor(514)), FED_Failure);
  EXPECT_THAT(g_calls, ElementsAre("exists onf", "construct onf", kInitToRead, "destroy"));

  AddNode(510, {1, 2, 3});
  g_calls.clear();
  EXPECT_THROW(QuilonOnfToVtm::CopyOnfToScalar(L"onf", {&id, 1}, {&value, 1}, Descriptor(510)), FED_Failure);
  EXPECT_THAT(g_calls,
              ElementsAre("exists onf", "construct onf", kInitToRead, "open view false", "close view", "destroy"));
}

TEST_F(OpenedOnf, CopyingToVtmOpensBothViewsOfABlockWithFalse)
{
  AddNode(514, {1.5});
  QuilonOnfToVtm::CopyOnfToVtm(L"onf", vtm_, FED_DataDescriptorPattern(), 1, 0, nullptr);
  EXPECT_THAT(g_calls, ElementsAre("exists onf", "construct onf", kInitToRead, "get blocks", "open view false",
                                   "open view false", "close view", "close view", "release false", "destroy"));
}

TEST_F(OpenedOnf, WithoutAMatchForVtmTheDatabaseIsReleasedAllTheSame)
{
  QuilonOnfToVtm::CopyOnfToVtm(L"onf", vtm_, FED_DataDescriptorPattern(), 1, 0, nullptr);
  EXPECT_THAT(g_calls,
              ElementsAre("exists onf", "construct onf", kInitToRead, "get blocks", "release false", "destroy"));
}

TEST_F(OpenedOnf, CopyingToOnfAsksForNoFileAndLeavesEmptyBlocksOut)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, 514);
  g_copied = 1;
  QuilonOnfToVtm::CopyVtmToOnf(L"onf", vtm_, pattern);
  EXPECT_THAT(g_calls, ElementsAre("construct onf", kInitToWrite, "copy onf 514 action 1", "release false", "destroy"));
}

TEST_F(OpenedOnf, NothingCopiedToOnfLeavesTheDatabaseWithoutARelease)
{
  EXPECT_THROW(QuilonOnfToVtm::CopyVtmToOnf(L"onf", vtm_, FED_DataDescriptorPattern()), FED_Failure);
  EXPECT_THAT(g_calls, ElementsAre("construct onf", kInitToWrite, "copy onf 0 action 1", "destroy"));
}

}  // namespace
