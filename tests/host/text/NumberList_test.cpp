#include "text/NumberList.h"

#include <array>

#include <gtest/gtest.h>

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

TEST(NumberList, WritesSixDigits)
{
  EXPECT_EQ(FormatNumbers(std::array<double, 3>{1.0 / 3.0, -2, 1e10}), "0.333333,-2,1e+10");
  EXPECT_EQ(FormatNumbers(std::array<double, 1>{-0.0}), "0");
  EXPECT_EQ(FormatNumbers({}), "");
}

}  // namespace
}  // namespace quilon
