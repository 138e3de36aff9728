#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonUtilities/FED_Backtrace.h>
#include <QuilonUtilities/FED_DoubleArray.h>
#include <QuilonUtilities/FED_Exception.h>
#include <QuilonUtilities/FED_Failure.h>
#include <QuilonUtilities/FED_IntArray.h>
#include <QuilonUtilities/FED_IntegerCodedBoolVector.h>
#include <QuilonUtilities/FED_LogMacros.h>
#include <QuilonUtilities/FED_YaleMatrix.h>
#include <QuilonUtilities/getline_dosunix.h>
#include <QuilonUtilities/LoadTextFileFast.h>
#include <QuilonUtilities/QuilonContainer.h>
#include <QuilonUtilities/QuilonFileNameUtil.h>
#include <QuilonUtilities/QuilonFileUtil.h>
#include <QuilonUtilities/QuilonMathUtil.h>
#include <QuilonUtilities/QuilonStringUtil.h>

#include "support.h"

namespace conformance {
namespace {

TEST(ArrayConformance, IntegerArraysCopyMoveResizeAndCompare)
{
  FED_IntArray empty;
  EXPECT_EQ(empty.GetSize(), 0U);
  FED_IntArray array(std::vector<int>{1, -2});
  FED_IntArray copy(array);
  EXPECT_TRUE(copy == array);
  copy.GetData()[0] = 9;
  EXPECT_FALSE(copy == array);
  const FED_IntArray& shown = array;
  EXPECT_EQ(shown.GetData()[1], -2);
  array.Resize(3);
  EXPECT_EQ(ToVector(array), (std::vector<int>{1, -2, 0}));
  FED_IntArray moved(std::move(array));
  empty = moved;
  copy  = std::move(moved);
  EXPECT_TRUE(copy == empty);
  EXPECT_EQ(copy.GetSize(), 3U);
}

TEST(ArrayConformance, DoubleArraysCopyMoveResizeAndCompare)
{
  FED_DoubleArray empty;
  EXPECT_EQ(empty.GetSize(), 0U);
  FED_DoubleArray array(std::vector<double>{0.5, -0.0});
  FED_DoubleArray copy(array);
  EXPECT_TRUE(copy == array);
  copy.GetData()[0] = 9;
  EXPECT_FALSE(copy == array);
  const FED_DoubleArray& shown = array;
  EXPECT_TRUE(SameBits(shown.GetData()[1], -0.0));
  array.Resize(3);
  EXPECT_EQ(ToVector(array), (std::vector<double>{0.5, 0.0, 0.0}));
  FED_DoubleArray moved(std::move(array));
  empty = moved;
  copy  = std::move(moved);
  EXPECT_TRUE(copy == empty);
  EXPECT_EQ(copy.GetSize(), 3U);
}

TEST(ArrayConformance, ASpanShowsTheCallersArray)
{
  int                              values[2] = {3, 4};
  const QuilonContainer::Span<int> span(values, 2);
  span.GetData()[0] = 5;
  EXPECT_EQ(values[0], 5);
  EXPECT_EQ(span.GetSize(), 2U);
}

TEST(MatrixConformance, AMatrixTakesItsArraysOverAndCopiesAndMoves)
{
  FED_YaleMatrix matrix;
  EXPECT_EQ(matrix.GetNumRows(), 0U);
  EXPECT_EQ(matrix.GetNumColumns(), 0U);
  FED_DoubleArray     values(std::vector<double>{5, 7, 9});
  const double* const data = values.GetData();
  matrix.SetInternalData(2, 3, std::move(values), FED_IntArray(std::vector<int>{0, 1, 3}),
                         FED_IntArray(std::vector<int>{1, 0, 2}));
  EXPECT_EQ(matrix.GetValues().GetData(), data);
  FED_YaleMatrix copy(matrix);
  FED_YaleMatrix assigned;
  assigned = copy;
  FED_YaleMatrix moved(std::move(copy));
  matrix = std::move(moved);
  for (const FED_YaleMatrix* each : {&assigned, &matrix}) {
    EXPECT_EQ(each->GetNumRows(), 2U);
    EXPECT_EQ(each->GetNumColumns(), 3U);
    EXPECT_EQ(ToVector(each->GetValues()), (std::vector<double>{5, 7, 9}));
    EXPECT_EQ(ToVector(each->GetRowPointers()), (std::vector<int>{0, 1, 3}));
    EXPECT_EQ(ToVector(each->GetColumnIndices()), (std::vector<int>{1, 0, 2}));
  }
  EXPECT_EQ(matrix.GetRowPointers().GetSize(), 3U);
  EXPECT_EQ(matrix.GetColumnIndices().GetSize(), 3U);
}

TEST(FailureConformance, AFailureCarriesItsParts)
{
  FED_Failure failure("message", "|%P|Module|source");
  EXPECT_STREQ(failure.what(), "message");
  EXPECT_EQ(failure.GetMessage(), "message");
  EXPECT_EQ(failure.GetTag(), "|%P|Module|source");
  EXPECT_EQ(failure.GetContext(), "");
  EXPECT_EQ(failure.GetCause(), nullptr);
  EXPECT_EQ(failure.GetBacktrace().empty(), FED_Backtrace::GetBacktrace().empty());
  failure.SetContext("context");
  failure.SetCause(std::make_unique<FED_Exception>("cause", "tag"));
  EXPECT_EQ(failure.GetContext(), "context");

  FED_Failure                        copy(failure);
  const std::unique_ptr<FED_Failure> clone(failure.Clone());
  FED_Failure                        assigned("other", "other");
  assigned = failure;
  for (const FED_Failure* each : {&copy, clone.get(), &assigned}) {
    EXPECT_STREQ(each->what(), "message");
    EXPECT_EQ(each->GetContext(), "context");
    ASSERT_NE(each->GetCause(), nullptr);
    EXPECT_NE(each->GetCause(), failure.GetCause());
    EXPECT_STREQ(each->GetCause()->what(), "cause");
  }
}

TEST(FailureConformance, AnExceptionCopiesAndClones)
{
  FED_Exception exception("message", "tag");
  FED_Exception copy(exception);
  FED_Exception assigned("other", "other");
  assigned = exception;
  const std::unique_ptr<FED_Exception> clone(exception.Clone());
  for (const FED_Exception* each : std::vector<const FED_Exception*>{&copy, &assigned, clone.get()}) {
    EXPECT_STREQ(each->what(), "message");
    EXPECT_EQ(each->GetTag(), "tag");
  }
  EXPECT_EQ(exception.GetMessage(), "message");
}

TEST(FailureConformance, AFailureOfALibraryIsCaughtByEachOfItsTypes)
{
  // The descriptor throws inside the sibling library.
  const auto fail = [] { FED_DataDescriptor().GetInteger(Index(99)); };
  EXPECT_THROW(fail(), FED_Failure);
  EXPECT_THROW(fail(), FED_Exception);
  EXPECT_THROW(fail(), std::exception);
}

TEST(LogConformance, LinesAreFormattedInThePrintfManner)
{
  using FED_LogMacros::log_msg;
  const auto               factory = MakeConformanceFactory();
  std::vector<std::string> texts;
  const std::string        longText(3000, 'x');
  const bool               caught = factory->CatchLog(
      [&longText] {
        log_msg(FED_LogMacros::LogNotice, "src/file", 1, "|%P|Module|source", "plain");
        log_msg(FED_LogMacros::LogVerbose, "src/file", 70, "|%P|Module|source", "ONF has %Iu datablocks ",
                              std::size_t{12});
        log_msg(FED_LogMacros::LogDetail, "src/file", 3, "|%P|Module|source", "    Layer:     %3d|%s|%5.2f", 7, "text",
                              1.5);
        log_msg(FED_LogMacros::LogNotice, "src/file", 4, "|%P|Module|source", "%Iu %d %Iu", std::size_t{1}, 2,
                              std::size_t{3});
        log_msg(FED_LogMacros::LogNotice, "src/file", 5, "|%P|Module|source", "%s", longText.c_str());
      },
      texts);
  const std::vector<std::string> expected = {"plain", "ONF has 12 datablocks ", "    Layer:       7|text| 1.50",
                                             "1 2 3", longText};
  if (caught) {
    EXPECT_EQ(texts, expected);
  }
}

TEST(LogConformance, MessageTypesHaveTheirNumbers)
{
  EXPECT_EQ(static_cast<int>(FED_LogMacros::LogNotice), 4);
  EXPECT_EQ(static_cast<int>(FED_LogMacros::LogVerbose), 5);
  EXPECT_EQ(static_cast<int>(FED_LogMacros::LogDetail), 6);
}

TEST(UtilityConformance, FlagsArePackedFromTheLeastSignificantBit)
{
  unsigned int code = 9;
  FED_IntegerCodedBoolVector::BoolVecToInt({true, false, true}, code);
  EXPECT_EQ(code, 5U);
  FED_IntegerCodedBoolVector::BoolVecToInt({}, code);
  EXPECT_EQ(code, 0U);
  FED_IntegerCodedBoolVector::BoolVecToInt(std::vector<bool>(32, true), code);
  EXPECT_EQ(code, 0xFFFFFFFFU);
  EXPECT_THROW(FED_IntegerCodedBoolVector::BoolVecToInt(std::vector<bool>(33, true), code), FED_Failure);
}

TEST(UtilityConformance, IntegersAreTakenFromTheStartOfAText)
{
  int value = -1;
  EXPECT_EQ(QuilonStringUtil::ToInt("  +42 ", value), FedStatusSuccess);
  EXPECT_EQ(value, 42);
  EXPECT_EQ(QuilonStringUtil::ToInt("-7 # seven", value), FedStatusTrailingText);
  EXPECT_EQ(value, -7);
  EXPECT_EQ(QuilonStringUtil::ToInt("none", value), FedStatusNoNumber);
  EXPECT_EQ(QuilonStringUtil::ToInt("99999999999", value), FedStatusOutOfRange);
  EXPECT_EQ(value, -7);
  EXPECT_EQ(static_cast<int>(FedStatusSuccess), 0);
}

TEST(UtilityConformance, DoublesAreTakenFromTheStartOfAText)
{
  double value = -1.0;
  EXPECT_EQ(QuilonStringUtil::ToDouble(" 1.5e3\r", value), FedStatusSuccess);
  EXPECT_EQ(value, 1500.0);
  EXPECT_EQ(QuilonStringUtil::ToDouble("1.5abc", value), FedStatusTrailingText);
  EXPECT_EQ(value, 1.5);
  EXPECT_EQ(QuilonStringUtil::ToDouble("", value), FedStatusNoNumber);
  EXPECT_EQ(QuilonStringUtil::ToDouble("1e400", value), FedStatusOutOfRange);
  EXPECT_EQ(value, 1.5);
  EXPECT_EQ(QuilonStringUtil::ToDouble("-0", value), FedStatusSuccess);
  EXPECT_TRUE(SameBits(value, -0.0));
  EXPECT_EQ(QuilonStringUtil::ToDouble("nan", value), FedStatusSuccess);
  EXPECT_TRUE(std::isnan(value));
}

TEST(UtilityConformance, TrimmingHappensInPlace)
{
  std::vector<std::string>  texts = {" \ta b\r\n", "", "  "};
  std::vector<std::string>& same  = QuilonStringUtil::Trim(texts);
  EXPECT_EQ(&same, &texts);
  EXPECT_EQ(texts, (std::vector<std::string>{"a b", "", ""}));
}

TEST(UtilityConformance, WideTextBecomesUtf8)
{
  EXPECT_EQ(QuilonStringUtil::wide_to_utf8(L""), "");
  EXPECT_EQ(QuilonStringUtil::wide_to_utf8(L"a\u00e9\u20ac"), "a\xC3\xA9\xE2\x82\xAC");
}

TEST(UtilityConformance, AnExtensionIsFoundWithinThePath)
{
  const wchar_t* const path = L"a.b/mesh.inc";
  EXPECT_EQ(QuilonFileNameUtil::path_find_ext(path), path + 8);
  const wchar_t* const none = L"a.b/mesh";
  EXPECT_EQ(QuilonFileNameUtil::path_find_ext(none), none + 8);
}

TEST(UtilityConformance, AcoshIsTheInverseOfCosh)
{
  EXPECT_EQ(QuilonMathUtil::acosh(1.0), 0.0);
  EXPECT_NEAR(QuilonMathUtil::acosh(std::cosh(2.0)), 2.0, 4e-16 * 4);  // a few roundings
  EXPECT_TRUE(std::isnan(QuilonMathUtil::acosh(0.5)));
}

TEST(UtilityConformance, LinesAreReadWithoutTheirEnds)
{
  std::istringstream in("dos\r\nunix\nlast");
  std::string        line;
  EXPECT_EQ(&getline_dosunix(in, line), &in);
  EXPECT_EQ(line, "dos");
  getline_dosunix(in, line);
  EXPECT_EQ(line, "unix");
  getline_dosunix(in, line);
  EXPECT_EQ(line, "last");
  EXPECT_TRUE(in.eof());
  EXPECT_FALSE(getline_dosunix(in, line));
}

class FileConformance : public FolderTest
{};

TEST_F(FileConformance, ATextFileIsLoadedAsLines)
{
  Write("text", "dos\r\nunix\n\nlast");
  std::vector<std::string> lines     = {"former"};
  std::size_t              lineCount = 99;
  EXPECT_TRUE(LoadTextFileFast(Path("text").c_str(), lines, lineCount));
  EXPECT_EQ(lines, (std::vector<std::string>{"dos", "unix", "", "last"}));
  EXPECT_EQ(lineCount, 4U);
}

TEST_F(FileConformance, AFileThatCannotBeReadGivesNoLines)
{
  std::vector<std::string> lines     = {"former"};
  std::size_t              lineCount = 99;
  EXPECT_FALSE(LoadTextFileFast(Path("missing").c_str(), lines, lineCount));
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(lineCount, 0U);
}

TEST_F(FileConformance, FilesAndFoldersExist)
{
  Write("file", "");
  EXPECT_TRUE(QuilonFileUtil::FileExists(Path("file")));
  EXPECT_TRUE(QuilonFileUtil::FileExists(folder_.wstring()));  // a text database is a folder
  EXPECT_FALSE(QuilonFileUtil::FileExists(Path("missing")));
}

TEST_F(FileConformance, OnlyAFolderIsAnExistingFolder)
{
  Write("file", "");
  FedStatusCode status = FedStatusSystemError;
  EXPECT_TRUE(QuilonFileUtil::IsExistingDir(folder_.wstring(), status));
  EXPECT_EQ(status, FedStatusSuccess);
  EXPECT_FALSE(QuilonFileUtil::IsExistingDir(Path("file"), status));
  EXPECT_EQ(status, FedStatusNotFound);
  EXPECT_FALSE(QuilonFileUtil::IsExistingDir(Path("missing"), status));
  EXPECT_EQ(status, FedStatusNotFound);
}

}  // namespace
}  // namespace conformance
