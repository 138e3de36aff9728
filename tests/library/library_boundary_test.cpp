// Uses the shared library as its users do: only what it exports, exceptions caught and classes derived on this side.

#include <exception>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <FEM_ResultUtil.h>
#include <FemLogger.h>
#include <FEMResultFile.h>
#include <QuilonDataBlockDiff.h>
#include <QuilonDataBlockSize.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonOnfToVtm.h>
#include <QuilonUtilities/FED_Failure.h>

#include "LogCapture.h"

namespace {

const char* const kMissing = "/quilon-nowhere/onf ONF file not found.";

void FailInTheLibrary()
{
  FED_ResultDatabase vtm;
  QuilonOnfToVtm::CopyOnfToVtm(L"/quilon-nowhere/onf", vtm, FED_DataDescriptorPattern(), 1, 0, nullptr);
}

FED_DataDescriptor ElementNodes() { return FED_DataDescriptor(1, FED_OnfId_ElementNodes); }

class Logger : public FemLogger
{
public:
  std::vector<int> announced;

protected:
  void PrintResultTypeStatus(int reading) override { announced.push_back(reading); }
};

class Reader : public FEMResultFile
{
public:
  using FEMResultFile::FEMResultFile;

  void Read() override { FEM_ResultUtil::SetResultScalar(database_, FED_DataDescriptor(1, FED_OnfId(501)), 2.5); }
};

}  // namespace

TEST(LibraryBoundary, AFailureOfTheLibraryIsCaughtAsFailure)
{
  try {
    FailInTheLibrary();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), kMissing);
    EXPECT_EQ(failure.GetMessage(), kMissing);
    EXPECT_EQ(failure.GetTag(), "|%P|QuilonDbDataTools|QuilonOnfToVtm");
    EXPECT_EQ(failure.GetCause(), nullptr);
    const std::unique_ptr<FED_Exception> clone(failure.Clone());
    EXPECT_NE(dynamic_cast<const FED_Failure*>(clone.get()), nullptr);
  }
}

TEST(LibraryBoundary, AFailureOfTheLibraryIsCaughtAsException) { EXPECT_THROW(FailInTheLibrary(), FED_Exception); }

TEST(LibraryBoundary, AFailureOfTheLibraryIsCaughtAsStandardException)
{
  EXPECT_THROW(FailInTheLibrary(), std::exception);
}

TEST(LibraryBoundary, AFailureOfTheDatabaseComesThroughTheLibrary)
{
  FED_ResultDatabase db;
  FED_DataDescriptor negative(1, FED_OnfId(501));
  negative.SetInteger(FED_DataDescriptor::Substep, -1);
  EXPECT_THROW(FEM_ResultUtil::SetResultScalar(db, negative, 1.0), FED_Failure);
}

TEST(LibraryBoundary, AnOrderFailureOfTheResultHelpersIsCaught)
{
  FED_ResultDatabase db;
  {
    FED_IdDataBlock   view(db.GetOrCreateDataBlock(ElementNodes(), 0), db.GetIdMapsPool(), true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetIntList(1, std::vector<int>{3, 4});
    view.SetRecord(9, record);
  }
  EXPECT_TRUE(FEM_ResultUtil::AreElementNodesDefined(db, ElementNodes(), 9, {3, 4}));
  EXPECT_THROW(FEM_ResultUtil::AreElementNodesDefined(db, ElementNodes(), 9, {4, 3}), FED_Failure);
}

TEST(LibraryBoundary, AFieldIsFilledHereAndSavedThere)
{
  FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6> stats;
  stats.AddValue(4, {100, 0, 0, 0, 0, 0});
  FED_ResultDatabase           db;
  std::set<FED_DataDescriptor> written;
  FEM_ResultUtil::CalculateNodalStressError(db, FED_DataDescriptor(1, FED_OnfId(551)), stats, true, &written);
  EXPECT_EQ(written.size(), 1u);
}

TEST(LibraryBoundary, TheLibraryCallsALoggerThatIsDerivedHere)
{
  quilon_test::LogCapture log;
  Logger                  logger;
  logger.SetReadResultType(1, "a");
  logger.SetSkipResultType(2, "b");
  EXPECT_EQ(logger.announced, (std::vector<int>{1, 0}));
}

// Lines reach a user through the sink that it sets: without one the library prints nothing.
TEST(LibraryBoundary, WithoutASinkTheLogOfTheLibraryIsNotPrinted)
{
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  {
    Logger logger;
    logger.SetReadSubstep(1, 2, 3);
    logger.SetSkipSubstep(1, 2, 4);
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(LibraryBoundary, AReaderThatIsDerivedHereWritesThroughTheLibrary)
{
  FED_ResultDatabase                   db;
  const std::unique_ptr<FEMResultFile> reader = std::make_unique<Reader>("model.frd", 1, 2, db);
  reader->Read();
  EXPECT_EQ(db.GetDataDescriptors(FED_DataDescriptorPattern()).size(), 1u);
}

TEST(LibraryBoundary, BlocksOfADatabaseThatIsMadeHereAreMeasuredAndCompared)
{
  FED_ResultDatabase db;
  FED_DataBlock&     block = db.GetOrCreateDataBlock(FED_DataDescriptor(1, FED_OnfId_ScalarHistory), 0);
  block.SetScalarAt(1, 2.5);
  EXPECT_EQ(QuilonDataBlockSize::DataBaseSizeOf(db), 8u);
  const QuilonDataBlockDiff::CompareInfo info;
  EXPECT_TRUE(QuilonDataBlockDiff::DataBlockDiff(info, block, block).CompareBlocks().empty());
}
