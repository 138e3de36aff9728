#include "text/Format.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace quilon;

TEST(Format, NumbersAreShortestAndReadBack)
{
  EXPECT_EQ(FormatNumber(0.1), "0.1");
  EXPECT_EQ(FormatNumber(1.0), "1");
  EXPECT_EQ(FormatNumber(-0.0), "-0");
  EXPECT_EQ(FormatNumber(1e300), "1e+300");
  EXPECT_EQ(FormatNumber(0.1F), "0.1");
  for (const double value : {1.0 / 3.0, 5e-324, std::numeric_limits<double>::max(), -2.7182818284590452})
    EXPECT_EQ(std::strtod(FormatNumber(value).c_str(), nullptr), value);
}

TEST(Format, WhatIsNoNumberHasAName)
{
  EXPECT_EQ(FormatNumber(std::nan("")), "nan");
  EXPECT_EQ(FormatNumber(-std::nan("")), "nan");
  EXPECT_EQ(FormatNumber(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(FormatNumber(-std::numeric_limits<double>::infinity()), "-inf");
}

TEST(Format, RoundedNumbersHaveSixDigits)
{
  EXPECT_EQ(FormatRounded(9.985667497229368), "9.98567");
  EXPECT_EQ(FormatRounded(-1.0 / 3.0 * 1e-9), "-3.33333e-10");
  EXPECT_EQ(FormatRounded(4.0), "4");
  EXPECT_EQ(FormatRounded(-std::nan("")), "nan");
  EXPECT_EQ(FormatRounded(-std::numeric_limits<double>::infinity()), "-inf");
}

TEST(Format, RoundedNumbersAreThoseOfPrintf)
{
  std::mt19937_64 random(7);
  std::string     behind = "x";
  for (int i = 0; i < 20000; ++i) {
    // Any bits, and numbers of a usual size with few digits, which are ties now and then.
    const double value = i % 2 == 0 ? std::bit_cast<double>(random())
                                    : (static_cast<double>(random() % 2000001) - 1e6) * std::pow(10.0, i % 16 - 10);
    if (!std::isfinite(value)) continue;
    char text[64];
    std::snprintf(text, sizeof text, "%.6g", value);
    ASSERT_EQ(FormatRounded(value), text);
    behind.resize(1);
    AppendRounded(behind, value);
    ASSERT_EQ(behind, std::string("x") + text);
  }
}

TEST(Format, BytesHaveTwoDigitsOrMore)
{
  EXPECT_EQ(FormatBytes(0), "0 B");
  EXPECT_EQ(FormatBytes(1023), "1023 B");
  EXPECT_EQ(FormatBytes(1024), "1.0 KiB");
  EXPECT_EQ(FormatBytes(1843), "1.8 KiB");
  EXPECT_EQ(FormatBytes(10 * 1024), "10 KiB");
  EXPECT_EQ(FormatBytes(1024 * 1024 - 1), "1.0 MiB");
  EXPECT_EQ(FormatBytes(std::size_t{3} << 30U), "3.0 GiB");
}

TEST(Format, CountsHaveTheirPlural)
{
  EXPECT_EQ(Counted(0, "block"), "0 blocks");
  EXPECT_EQ(Counted(1, "block"), "1 block");
  EXPECT_EQ(Counted(2, "block"), "2 blocks");
}

TEST(Format, IdsBecomeRanges)
{
  EXPECT_EQ(FormatIds({}), "");
  EXPECT_EQ(FormatIds({7}), "7");
  EXPECT_EQ(FormatIds({7, 8}), "7-8");
  EXPECT_EQ(FormatIds({1, 2, 3, 5, 7, 8}), "1-3, 5, 7-8");
  EXPECT_EQ(FormatIds({-2147483647 - 1, 2147483646, 2147483647}), "-2147483648, 2147483646-2147483647");
  EXPECT_EQ(FormatIds({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), "1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23");
  EXPECT_EQ(FormatIds({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27}),
            "1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, ...");
}

TEST(Format, ControlCharactersBecomeQuestionMarks)
{
  EXPECT_EQ(Printable(""), "");
  EXPECT_EQ(Printable("a\x1b[1m\n\r\t\x7f\xc3\xa4"), "a\\x1b[1m\\n\\r\\t\\x7f\xc3\xa4");
  EXPECT_EQ(Printable(std::string_view("\0\x1f ~", 4)), "\\x00\\x1f ~");
  // C1: a character of its own, a byte of no character, and the same byte as a part of one.
  EXPECT_EQ(Printable("\xc2\x9b"
                      "31m"),
            "\\u009b31m");
  EXPECT_EQ(Printable("\x9b"
                      "31m"),
            "\\x9b31m");
  EXPECT_EQ(Printable("\xc3\x9b \xe2\x82\xac \xc2\xa0"), "\xc3\x9b \xe2\x82\xac \xc2\xa0");
  // What turns the direction of writing, and the next characters on either side.
  EXPECT_EQ(Printable("\xe2\x80\xae"), "\\u202e");
  EXPECT_EQ(Printable("\xe2\x81\xa6\xe2\x81\xa9\xe2\x80\x8f\xd8\x9c\xe2\x80\xa8"),
            "\\u2066\\u2069\\u200f\\u061c\\u2028");
  EXPECT_EQ(Printable("\xe2\x80\xaf\xe2\x80\x8d\xe2\x81\xaa"), "\xe2\x80\xaf\xe2\x80\x8d\xe2\x81\xaa");
  // Cut characters, and longer ones.
  EXPECT_EQ(Printable("\xe2\x80"), "\xe2\\x80");
  EXPECT_EQ(Printable("\xc3"), "\xc3");
  EXPECT_EQ(Printable("\xf0\x9f\x98\x80"), "\xf0\x9f\x98\x80");
}

}  // namespace
