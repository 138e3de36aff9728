#include "text/NumberList.h"

#include <array>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace quilon {
namespace {

TEST(NumberList, ReadsAsManyFiniteNumbersAsAreWanted)
{
  std::array<double, 3> three{};
  EXPECT_TRUE(ParseNumbers("1,-2.5,3e2", three));
  EXPECT_EQ(three, (std::array<double, 3>{1, -2.5, 300}));
  for (const char* text : {"", "1", "1,2", "1,2,", "1,2,3,", "1,2,3,4", "1 ,2,3", "1,,3", "1;2;3", "1,2,inf", "nan,2,3",
                           "1,2,3x", "1,2,1e999"})
    EXPECT_FALSE(ParseNumbers(text, three)) << text;
}

TEST(NumberList, NamesTheOptionWhoseTextIsAnother)
{
  std::array<double, 2> two{};
  ParseNumbers("--range", "-1,2", two, "two numbers LEAST,GREATEST");
  EXPECT_EQ(two, (std::array<double, 2>{-1, 2}));
  try {
    ParseNumbers("--range", "1;2", two, "two numbers LEAST,GREATEST");
    ADD_FAILURE() << "expected a failure";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), "--range is '1;2', expected two numbers LEAST,GREATEST");
  }
}

TEST(NumberList, WritesSixDigits)
{
  EXPECT_EQ(FormatNumbers(std::array<double, 3>{1.0 / 3.0, -2, 1e10}), "0.333333,-2,1e+10");
  EXPECT_EQ(FormatNumbers(std::array<double, 1>{-0.0}), "0");
  EXPECT_EQ(FormatNumbers({}), "");
}

}  // namespace
}  // namespace quilon
