#include <cmath>
#include <cwchar>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"
#include "QuilonUtilities/FED_IntegerCodedBoolVector.h"
#include "QuilonUtilities/getline_dosunix.h"
#include "QuilonUtilities/QuilonFileNameUtil.h"
#include "QuilonUtilities/QuilonMathUtil.h"

namespace {

using FED_IntegerCodedBoolVector::BoolVecToInt;

TEST(BoolVecToInt, PacksTheFirstFlagIntoTheLeastSignificantBit)
{
  struct Row
  {
    std::vector<bool> flags;
    unsigned int      code;
  };
  const Row rows[] = {
      {{}, 0U},
      {{false}, 0U},
      {{true}, 1U},
      {{true, false, true}, 5U},
      {{false, true}, 2U},
      {std::vector<bool>(32, true), 0xFFFFFFFFU},
  };
  for (const Row& row : rows) {
    unsigned int code = 99;
    BoolVecToInt(row.flags, code);
    EXPECT_EQ(code, row.code);
  }
  std::vector<bool> last(32, false);
  last[31]          = true;
  unsigned int code = 0;
  BoolVecToInt(last, code);
  EXPECT_EQ(code, 0x80000000U);
}

TEST(BoolVecToInt, RefusesMoreThan32FlagsAndLeavesTheOutputAlone)
{
  unsigned int code = 99;
  try {
    BoolVecToInt(std::vector<bool>(33, true), code);
    FAIL() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), "BoolVecToInt: 33 flags, expected at most 32");
  }
  EXPECT_EQ(code, 99U);
}

TEST(PathFindExt, PointsAtTheLastDotOfTheFileName)
{
  struct Row
  {
    const wchar_t* path;
    const wchar_t* extension;
  };
  const Row rows[] = {
      {L"", L""},      {L"mesh", L""},           {L"mesh.inc", L".inc"},       {L"c.tar.gz", L".gz"},
      {L"a.b/c", L""}, {L"a.b\\c", L""},         {L"a.b/c.d", L".d"},          {L"a/b\\c.d", L".d"},
      {L"a.b/", L""},  {L".hidden", L".hidden"}, {L"dir/.hidden", L".hidden"}, {L"end.", L"."},
      {L"..", L"."},   {L"../x", L""},
  };
  for (const Row& row : rows) {
    const wchar_t* const found = QuilonFileNameUtil::path_find_ext(row.path);
    EXPECT_EQ(std::wstring(found), row.extension) << std::string(row.path, row.path + std::wcslen(row.path));
    // It points into the path, so that a caller can cut or insert there.
    EXPECT_GE(found, row.path);
    EXPECT_LE(found, row.path + std::wcslen(row.path));
  }
}

TEST(Acosh, IsTheNonNegativeInverseOfCosh)
{
  EXPECT_EQ(QuilonMathUtil::acosh(1.0), 0.0);
  // Closed form: ln(x + sqrt(x^2 - 1)), a few roundings apart.
  for (const double x : {1.25, 2.0, 10.0, 1e6})
    EXPECT_NEAR(QuilonMathUtil::acosh(x), std::log(x + std::sqrt(x * x - 1.0)), 4e-16 * 20) << x;
  EXPECT_NEAR(QuilonMathUtil::acosh(std::cosh(3.0)), 3.0, 1e-15 * 3);
}

TEST(Acosh, HasNoValueBelowOne)
{
  EXPECT_TRUE(std::isnan(QuilonMathUtil::acosh(0.999999)));
  EXPECT_TRUE(std::isnan(QuilonMathUtil::acosh(-1.0)));
  EXPECT_TRUE(std::isnan(QuilonMathUtil::acosh(std::numeric_limits<double>::quiet_NaN())));
  EXPECT_EQ(QuilonMathUtil::acosh(std::numeric_limits<double>::infinity()), std::numeric_limits<double>::infinity());
}

std::vector<std::string> LinesOf(const std::string& text)
{
  std::istringstream       in(text);
  std::vector<std::string> lines;
  for (std::string line; getline_dosunix(in, line);) lines.push_back(line);
  return lines;
}

TEST(GetlineDosunix, ReadsLinesOfEitherConvention)
{
  using Lines = std::vector<std::string>;
  EXPECT_EQ(LinesOf(""), Lines{});
  EXPECT_EQ(LinesOf("\n"), Lines{""});
  EXPECT_EQ(LinesOf("\r\n"), Lines{""});
  EXPECT_EQ(LinesOf("a\nb\n"), (Lines{"a", "b"}));
  EXPECT_EQ(LinesOf("a\r\nb\r\n"), (Lines{"a", "b"}));
  EXPECT_EQ(LinesOf("a\r\nb"), (Lines{"a", "b"}));
}

TEST(GetlineDosunix, RemovesOneCarriageReturnAndOnlyAtTheEnd)
{
  using Lines = std::vector<std::string>;
  EXPECT_EQ(LinesOf("a\r\r\n"), Lines{"a\r"});
  EXPECT_EQ(LinesOf("a\rb\n"), Lines{"a\rb"});
  EXPECT_EQ(LinesOf("a\r"), Lines{"a"});
}

TEST(GetlineDosunix, LeavesTheStateOfGetline)
{
  std::istringstream in("last");
  std::string        line;
  EXPECT_EQ(&getline_dosunix(in, line), &in);
  EXPECT_EQ(line, "last");
  EXPECT_TRUE(in.eof());
  EXPECT_FALSE(in.fail());
  getline_dosunix(in, line);
  EXPECT_TRUE(in.fail());
}

TEST(GetlineDosunix, AFailedReadDoesNotTouchTheCallersString)
{
  std::istringstream in;
  in.setstate(std::ios::failbit);
  std::string line = "kept\r";
  getline_dosunix(in, line);
  EXPECT_EQ(line, "kept\r");
}

}  // namespace
