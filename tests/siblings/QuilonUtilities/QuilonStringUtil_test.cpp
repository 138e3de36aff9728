#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "QuilonUtilities/QuilonStringUtil.h"

namespace {

using QuilonStringUtil::ToDouble;
using QuilonStringUtil::ToInt;

constexpr int    kUntouchedInt    = -12345;
constexpr double kUntouchedDouble = -12345.0;

TEST(ToInt, TakesTheLeadingNumberAndTellsWhatFollows)
{
  struct Row
  {
    const char*   text;
    FedStatusCode status;
    int           value;
  };
  const Row rows[] = {
      {"", FedStatusNoNumber, kUntouchedInt},
      {"   ", FedStatusNoNumber, kUntouchedInt},
      {"abc", FedStatusNoNumber, kUntouchedInt},
      {"-", FedStatusNoNumber, kUntouchedInt},
      {"+", FedStatusNoNumber, kUntouchedInt},
      {"+-5", FedStatusNoNumber, kUntouchedInt},
      {"++5", FedStatusNoNumber, kUntouchedInt},
      {"-+5", FedStatusNoNumber, kUntouchedInt},
      {"- 5", FedStatusNoNumber, kUntouchedInt},
      {"0", FedStatusSuccess, 0},
      {"-0", FedStatusSuccess, 0},
      {"+7", FedStatusSuccess, 7},
      {" \t\r\n\v\f42", FedStatusSuccess, 42},
      {"42 \t\r\n", FedStatusSuccess, 42},
      {"0000000000000000000012", FedStatusSuccess, 12},
      {"2147483647", FedStatusSuccess, 2147483647},
      {"-2147483648", FedStatusSuccess, std::numeric_limits<int>::min()},
      {"2147483648", FedStatusOutOfRange, kUntouchedInt},
      {"-2147483649", FedStatusOutOfRange, kUntouchedInt},
      {"99999999999999999999x", FedStatusOutOfRange, kUntouchedInt},
      {"12abc", FedStatusTrailingText, 12},
      {"12 34", FedStatusTrailingText, 12},
      {"2.5", FedStatusTrailingText, 2},
      {"1e3", FedStatusTrailingText, 1},
      {"0x10", FedStatusTrailingText, 0},
      {"5 # nodes", FedStatusTrailingText, 5},
  };
  for (const Row& row : rows) {
    int value = kUntouchedInt;
    EXPECT_EQ(ToInt(row.text, value), row.status) << '"' << row.text << '"';
    EXPECT_EQ(value, row.value) << '"' << row.text << '"';
  }
}

TEST(ToInt, StopsAtANullInsideTheText)
{
  int value = 0;
  EXPECT_EQ(ToInt(std::string("7\0008", 3), value), FedStatusTrailingText);
  EXPECT_EQ(value, 7);
}

TEST(ToDouble, TakesTheLeadingNumberAndTellsWhatFollows)
{
  struct Row
  {
    const char*   text;
    FedStatusCode status;
    double        value;
  };
  const double inf    = std::numeric_limits<double>::infinity();
  const Row    rows[] = {
         {"", FedStatusNoNumber, kUntouchedDouble},
         {" \t", FedStatusNoNumber, kUntouchedDouble},
         {"x1", FedStatusNoNumber, kUntouchedDouble},
         {".", FedStatusNoNumber, kUntouchedDouble},
         {"-", FedStatusNoNumber, kUntouchedDouble},
         {"+-1", FedStatusNoNumber, kUntouchedDouble},
         {"e5", FedStatusNoNumber, kUntouchedDouble},
         {"0", FedStatusSuccess, 0.0},
         {"5.", FedStatusSuccess, 5.0},
         {".5", FedStatusSuccess, 0.5},
         {"+.5", FedStatusSuccess, 0.5},
         {" -1.5E+3\r", FedStatusSuccess, -1500.0},
         {"0.1", FedStatusSuccess, 0.1},
         {"1.7976931348623157e308", FedStatusSuccess, std::numeric_limits<double>::max()},
         {"2.2250738585072014e-308", FedStatusSuccess, std::numeric_limits<double>::min()},
         {"4.9e-324", FedStatusSuccess, std::numeric_limits<double>::denorm_min()},
         {"inf", FedStatusSuccess, inf},
         {"INF", FedStatusSuccess, inf},
         {"-Infinity", FedStatusSuccess, -inf},
         {"+inf", FedStatusSuccess, inf},
         {"infx", FedStatusTrailingText, inf},
         {"1.5abc", FedStatusTrailingText, 1.5},
         {"1,5", FedStatusTrailingText, 1.0},
         {"1.5 2.5", FedStatusTrailingText, 1.5},
         {"1e", FedStatusTrailingText, 1.0},
         {"1e+", FedStatusTrailingText, 1.0},
         {"1.0D+03", FedStatusTrailingText, 1.0},
         {"0x1p3", FedStatusTrailingText, 0.0},
         {"1e400", FedStatusOutOfRange, kUntouchedDouble},
         {"-1e400", FedStatusOutOfRange, kUntouchedDouble},
         {"1e400x", FedStatusOutOfRange, kUntouchedDouble},
         {"1.8e308", FedStatusOutOfRange, kUntouchedDouble},
         {"0.001e312", FedStatusOutOfRange, kUntouchedDouble},
         {"1e99999999999999999999", FedStatusOutOfRange, kUntouchedDouble},
         // Too small is no failure: the nearest double is zero.
         {"1e-400", FedStatusSuccess, 0.0},
         {"2e-324", FedStatusSuccess, 0.0},
         {"1e-400 x", FedStatusTrailingText, 0.0},
         {"1e-99999999999999999999", FedStatusSuccess, 0.0},
         {"0e99999999999999999999", FedStatusSuccess, 0.0},
  };
  for (const Row& row : rows) {
    double value = kUntouchedDouble;
    EXPECT_EQ(ToDouble(row.text, value), row.status) << '"' << row.text << '"';
    EXPECT_EQ(value, row.value) << '"' << row.text << '"';
  }
}

TEST(ToDouble, JudgesTheRangeByTheWholeNumberAndNotByItsExponent)
{
  double            value = kUntouchedDouble;
  const std::string zeros(400, '0');
  EXPECT_EQ(ToDouble("0." + zeros + "1", value), FedStatusSuccess);  // below the range without an exponent
  EXPECT_EQ(value, 0.0);
  EXPECT_EQ(ToDouble("0." + zeros + "1e401", value), FedStatusSuccess);
  EXPECT_EQ(value, 1.0);
  EXPECT_EQ(ToDouble("1" + zeros + "e-400", value), FedStatusSuccess);
  EXPECT_EQ(value, 1.0);
  EXPECT_EQ(ToDouble("1" + zeros, value), FedStatusOutOfRange);  // above the range without an exponent
  EXPECT_EQ(ToDouble("1" + zeros + "e-5", value), FedStatusOutOfRange);
  EXPECT_EQ(ToDouble("0." + zeros + "1e5", value), FedStatusSuccess);
  EXPECT_EQ(value, 0.0);
}

TEST(ToDouble, KeepsTheSignOfZero)
{
  for (const char* text : {"-0", "-0.0", " -0e5", "-1e-400"}) {
    double value = 1.0;
    EXPECT_EQ(ToDouble(text, value), FedStatusSuccess) << text;
    EXPECT_EQ(value, 0.0) << text;
    EXPECT_TRUE(std::signbit(value)) << text;
  }
  double value = -1.0;
  EXPECT_EQ(ToDouble("1e-400", value), FedStatusSuccess);
  EXPECT_FALSE(std::signbit(value));
}

TEST(ToDouble, TakesNotANumberInAnyCase)
{
  for (const char* text : {"nan", "NaN", "-NAN", " +nan "}) {
    double value = 1.0;
    EXPECT_EQ(ToDouble(text, value), FedStatusSuccess) << text;
    EXPECT_TRUE(std::isnan(value)) << text;
  }
}

/// Numbers with a comma for the point and dots between groups of digits.
class CommaPunctuation : public std::numpunct<char>
{
protected:
  char        do_decimal_point() const override { return ','; }
  char        do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(ToDouble, DoesNotAskTheLocale)
{
  const std::locale former = std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation));
  // A C locale with a comma, where the machine has one.
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"})
    if (std::setlocale(LC_ALL, name) != nullptr) break;
  double real    = 0.0;
  int    integer = 0;
  EXPECT_EQ(ToDouble("1.5", real), FedStatusSuccess);
  EXPECT_EQ(real, 1.5);
  EXPECT_EQ(ToDouble("1,5", real), FedStatusTrailingText);
  EXPECT_EQ(real, 1.0);
  EXPECT_EQ(ToInt("1.234", integer), FedStatusTrailingText);
  EXPECT_EQ(integer, 1);
  std::setlocale(LC_ALL, "C");
  std::locale::global(former);
}

TEST(Trim, RemovesWhiteSpaceAroundEveryElementAndReturnsItsArgument)
{
  std::vector<std::string>  texts = {"", "  ", "a", " \t\n\v\f\ra b\r\n", "\ta"};
  std::vector<std::string>& same  = QuilonStringUtil::Trim(texts);
  EXPECT_EQ(&same, &texts);
  EXPECT_EQ(texts, (std::vector<std::string>{"", "", "a", "a b", "a"}));
}

TEST(Trim, TakesNoElements)
{
  std::vector<std::string> texts;
  EXPECT_TRUE(QuilonStringUtil::Trim(texts).empty());
}

TEST(Trim, KeepsNullsAndBytesBeyondAscii)
{
  // 0xA0 is a blank in some 8-bit encodings and the second byte of a letter in UTF-8 ("à").
  std::vector<std::string> texts = {std::string(" \0 ", 3), "\xC3\xA0"};
  QuilonStringUtil::Trim(texts);
  EXPECT_EQ(texts, (std::vector<std::string>{std::string("\0", 1), "\xC3\xA0"}));
}

TEST(WideToUtf8, EncodesWhateverTheWidthOfAWideCharacter)
{
  EXPECT_EQ(QuilonStringUtil::wide_to_utf8(L""), "");
  EXPECT_EQ(QuilonStringUtil::wide_to_utf8(L"plain/ASCII.txt"), "plain/ASCII.txt");
  EXPECT_EQ(QuilonStringUtil::wide_to_utf8(L"\u00e9"), "\xC3\xA9");
  EXPECT_EQ(QuilonStringUtil::wide_to_utf8(L"\u20ac"), "\xE2\x82\xAC");
  EXPECT_EQ(QuilonStringUtil::wide_to_utf8(L"\U0001F600"), "\xF0\x9F\x98\x80");
}

TEST(WideToUtf8, ReplacesALoneSurrogate)
{
  const wchar_t lone[] = {L'a', static_cast<wchar_t>(0xD800), L'b', static_cast<wchar_t>(0xDC00), 0};
  EXPECT_EQ(QuilonStringUtil::wide_to_utf8(lone),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
}

}  // namespace
