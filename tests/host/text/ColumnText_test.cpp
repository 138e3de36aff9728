#include "text/ColumnText.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <regex>
#include <string>

#include <gtest/gtest.h>

namespace {

using quilon::Columns;
using quilon::ReadDouble;
using quilon::ReadInteger;
using quilon::ReadScientific;
using quilon::Shown;
using quilon::WithoutTrailingBlanks;

std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }

TEST(ColumnText, ReadsEveryFormOfANumber)
{
  struct Row
  {
    const char* text;
    double      expected;
  };
  const Row rows[] = {
      {" 1.00000E+00", 1.0},
      {"-6.25000E-01", -0.625},
      {" 0.00000E+00", 0.0},
      {" 1.000000000", 1.0},
      {" 8258.555645", 8258.555645},
      {"  0.1000000E+01", 1.0},
      {"  0.5000000D+03", 500.0},
      {" 2.5d-1", 0.25},
      {" 2.5e2", 250.0},
      {"-7.419576-120", -7.419576e-120},  // three digits leave no room for the letter
      {" 1.483834+108", 1.483834e108},
      {" 4.940656-324", 4.940656e-324},  // the least number of all
      {"+1.5", 1.5},
      {"   7", 7.0},
      {".5", 0.5},
      {"5.", 5.0},
      {"         INF", std::numeric_limits<double>::infinity()},
      {"        -INF", -std::numeric_limits<double>::infinity()},
      {"    Infinity", std::numeric_limits<double>::infinity()},
  };
  for (const Row& row : rows) {
    double value = -1.0;
    EXPECT_TRUE(ReadDouble(row.text, value)) << row.text;
    EXPECT_EQ(Bits(value), Bits(row.expected)) << row.text;
  }
}

TEST(ColumnText, ReadsNotANumberInAnyLetters)
{
  for (const char* text : {"         NAN", "          NaN", "nan", "         -nan"}) {
    double value = 0.0;
    EXPECT_TRUE(ReadDouble(text, value)) << text;
    EXPECT_TRUE(std::isnan(value)) << text;
  }
}

// Underflow is printed as "-0.00000E+00".
TEST(ColumnText, KeepsTheSignOfZero)
{
  double value = 1.0;
  EXPECT_TRUE(ReadDouble("-0.00000E+00", value));
  EXPECT_EQ(Bits(value), Bits(-0.0));
  value = 1.0;
  EXPECT_TRUE(ReadScientific<5>("-0.00000E+00", value));
  EXPECT_EQ(Bits(value), Bits(-0.0));
}

TEST(ColumnText, TakesNothingElseForANumber)
{
  for (const char* text : {"",      "            ", "-",        "+",        ".",      "E+05",     "1.0E",  "1.0E+",
                           "1.0+",  "1.0-",         "1.0x",     "1 .0",     "1.0 ",   "1.0E+05 ", "--1.0", "+-1.0",
                           "0x10",  "1,5",          "1.5.2",    "1.0E+5.",  "1.0EE5", "in",       "infi",  "nano",
                           "- 1.0", "************", "1.0E+400", "1.0E-400", "\t1.0"})
  {
    double value = 4.0;
    EXPECT_FALSE(ReadDouble(text, value)) << "'" << text << "'";
    EXPECT_EQ(value, 4.0) << "'" << text << "'";
  }
}

TEST(ColumnText, TakesAtMost64Characters)
{
  double value = 4.0;
  EXPECT_TRUE(ReadDouble(std::string(63, ' ') + "1", value));
  EXPECT_EQ(value, 1.0);
  EXPECT_TRUE(ReadDouble(std::string(60, '0') + "1-05", value));  // the letter that is missing fits too
  EXPECT_EQ(value, 1e-5);
  EXPECT_FALSE(ReadDouble(std::string(64, ' ') + "1", value));
}

TEST(ColumnText, ReadsIntegersThatFit32Bits)
{
  struct Row
  {
    const char* text;
    int         expected;
  };
  for (const Row& row :
       {Row{"         1", 1}, Row{"    -1", -1}, Row{"+5", 5}, Row{"0", 0}, Row{"2147483647", 2147483647},
        Row{"-2147483648", std::numeric_limits<int>::min()}, Row{"000000000000000012", 12}})
  {
    int value = 77;
    EXPECT_TRUE(ReadInteger(row.text, value)) << row.text;
    EXPECT_EQ(value, row.expected) << row.text;
  }
  for (const char* text : {"", "          ", "-", "+", "2147483648", "-2147483649", "9999999999", "1.0", "1 2", "12 ",
                           "x1", "**********", "--1", "1111111111111111111111"})
  {
    int value = 77;
    EXPECT_FALSE(ReadInteger(text, value)) << text;
    EXPECT_EQ(value, 77) << text;
  }
}

TEST(ColumnText, ShowsAPieceOfAFileInPrintableCharacters)
{
  EXPECT_EQ(Shown("abc"), "abc");
  EXPECT_EQ(Shown(std::string("a\0b\n\xff", 5)), "a?b??");
  EXPECT_EQ(Shown(std::string(40, 'x')), std::string(40, 'x'));
  EXPECT_EQ(Shown(std::string(41, 'x')), std::string(40, 'x') + "...");
}

TEST(ColumnText, CutsColumnsWhereALineEnds)
{
  EXPECT_EQ(Columns("abcdef", 2, 3), "bcd");
  EXPECT_EQ(Columns("abcdef", 5, 3), "ef");
  EXPECT_EQ(Columns("abcdef", 7, 3), "");
  EXPECT_EQ(Columns("", 1, 3), "");
  EXPECT_EQ(WithoutTrailingBlanks("  a b  "), "  a b");
  EXPECT_EQ(WithoutTrailingBlanks("   "), "");
}

// The reference: std::from_chars, which is correctly rounded, without the blank that it does not skip.
double FromChars(const std::string& column)
{
  double value = 0.0;
  std::from_chars(column.data() + (column[0] == ' ' ? 1 : 0), column.data() + column.size(), value);
  return value;
}

template <int kDecimals>
void CompareWithFromChars(std::mt19937_64& random, int count, int leastExponent, int mostExponent)
{
  std::uniform_int_distribution<int> digits(0, kDecimals == 5 ? 999999 : 9999999);
  std::uniform_int_distribution<int> exponents(leastExponent, mostExponent);
  const int                          unit = kDecimals == 5 ? 100000 : 1000000;
  for (int i = 0; i < count; ++i) {
    const int  mantissa = digits(random);
    const int  exponent = exponents(random);
    char       column[32];
    const char sign = random() % 2 == 0 ? ' ' : '-';
    std::snprintf(column, sizeof column, "%c%d.%0*dE%c%02d", sign, mantissa / unit, kDecimals, mantissa % unit,
                  exponent < 0 ? '-' : '+', std::abs(exponent));
    double value = 1.0;
    ASSERT_TRUE(ReadScientific<kDecimals>(column, value)) << column;
    ASSERT_EQ(Bits(value), Bits(FromChars(column))) << column;
  }
}

TEST(ColumnText, QuickNumbersHaveTheBitsOfFromChars)
{
  std::mt19937_64 random(1);
  CompareWithFromChars<5>(random, 1000000, -99, 99);
  CompareWithFromChars<5>(random, 1000000, -18, 28);  // where one power of ten is enough
  CompareWithFromChars<6>(random, 500000, -99, 99);
  CompareWithFromChars<6>(random, 500000, -17, 29);
}

// Every exponent with mantissas at the ends of the range and about the halves.
TEST(ColumnText, QuickNumbersHaveTheBitsOfFromCharsForEveryExponent)
{
  for (int exponent = -99; exponent <= 99; ++exponent) {
    for (const int mantissa : {0, 1, 99999, 100000, 100001, 499999, 500000, 500001, 999998, 999999}) {
      char column[32];
      std::snprintf(column, sizeof column, " %d.%05dE%c%02d", mantissa / 100000, mantissa % 100000,
                    exponent < 0 ? '-' : '+', std::abs(exponent));
      double value = 1.0;
      ASSERT_TRUE(ReadScientific<5>(column, value)) << column;
      ASSERT_EQ(Bits(value), Bits(FromChars(column))) << column;
    }
  }
}

// The quick form accepts exactly what the general one does: each byte of a number is replaced by every other byte.
template <int kDecimals>
void ReplaceEachByte(std::string column)
{
  for (std::size_t at = 0; at < column.size(); ++at) {
    const char original = column[at];
    for (int byte = 0; byte < 256; ++byte) {
      column[at]           = static_cast<char>(byte);
      double     quick     = 4.0;
      double     general   = 4.0;
      const bool isQuick   = ReadScientific<kDecimals>(column.data(), quick);
      const bool isGeneral = ReadDouble(column, general);
      ASSERT_EQ(isQuick, isGeneral) << "'" << column << "'";
      ASSERT_EQ(Bits(quick), Bits(general)) << "'" << column << "'";
    }
    column[at] = original;
  }
}

TEST(ColumnText, QuickNumbersAcceptWhatTheGeneralFormAccepts)
{
  ReplaceEachByte<5>("-1.23456E+07");
  ReplaceEachByte<5>(" 9.87654E-21");
  ReplaceEachByte<5>("         NAN");
  ReplaceEachByte<5>(" 1.000000000");
  ReplaceEachByte<6>("-1.234567E+07");
  ReplaceEachByte<6>("-7.419576-120");
}

// By a grammar, and by the C library's reading of what the grammar takes.
TEST(ReadDouble, TakesWhatIsANumberAndNothingElse)
{
  const std::regex number("[+-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eEdD][+-]?[0-9]+|[+-][0-9]+)?");
  constexpr char   kLetters[] = "0123456789.eED+-";
  std::mt19937     random(11);
  int              numNumbers = 0;
  for (int i = 0; i < 3000; ++i) {
    std::string text;
    for (std::size_t length = 1 + random() % 7; length > 0; --length)
      text += kLetters[random() % (sizeof kLetters - 1)];
    double      value    = -1.0;
    const bool  isNumber = std::regex_match(text, number);
    std::string usual;  // with the letter that may be missing
    for (const char c : text) {
      const bool isLetter = c == 'e' || c == 'E' || c == 'D';
      if ((c == '+' || c == '-') && !usual.empty() && usual.back() != 'e') usual += 'e';
      usual += isLetter ? 'e' : c;
    }
    const double read = isNumber ? std::strtod(usual.c_str(), nullptr) : 0.0;
    // What is beyond doubles is not read: it has become infinite, or zero with a digit that is not.
    const bool isZero = text.find_first_of("123456789") >= std::min(text.size(), text.find_first_of("eED+-", 1));
    if (!std::isfinite(read) || (isNumber && read == 0.0 && !isZero)) continue;
    EXPECT_EQ(ReadDouble(text, value), isNumber) << text;
    if (isNumber) {
      EXPECT_EQ(value, read) << text;
    }
    numNumbers += isNumber ? 1 : 0;
  }
  EXPECT_GT(numNumbers, 500);
}

}  // namespace
