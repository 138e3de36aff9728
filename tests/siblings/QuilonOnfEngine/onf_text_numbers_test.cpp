// Numbers through text: the bits come back, the text is the shortest, reading rounds correctly.

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "memory_file.h"
#include "onf_text_support.h"

namespace {

using Limits      = std::numeric_limits<double>;
using FloatLimits = std::numeric_limits<float>;

struct Row
{
  double      value;
  const char* text;
};

const Row kRows[] = {
    {0.0, "0"},
    {-0.0, "-0"},
    {1.0, "1"},
    {-1.5, "-1.5"},
    {0.1, "0.1"},
    {0.1 + 0.2, "0.30000000000000004"},
    {1.0 / 3.0, "0.3333333333333333"},
    {100.0, "100"},
    {1e5, "1e+05"},
    {123456789.0, "123456789"},
    {1e22, "1e+22"},
    {9007199254740991.0, "9007199254740991"},  // 2^53 - 1
    {9007199254740992.0, "9007199254740992"},
    {Limits::max(), "1.7976931348623157e+308"},
    {Limits::lowest(), "-1.7976931348623157e+308"},
    {Limits::min(), "2.2250738585072014e-308"},
    {std::bit_cast<double>(std::uint64_t{0x000fffffffffffff}), "2.225073858507201e-308"},  // greatest denormal
    {Limits::denorm_min(), "5e-324"},
    {-Limits::denorm_min(), "-5e-324"},
    {Limits::infinity(), "inf"},
    {-Limits::infinity(), "-inf"},
    {std::bit_cast<double>(std::uint64_t{0x7ff8000000000000}), "nan"},
    {std::bit_cast<double>(std::uint64_t{0xfff8000000000000}), "nan(0xfff8000000000000)"},  // sign set
    {std::bit_cast<double>(std::uint64_t{0x7ff80000deadbeef}), "nan(0x7ff80000deadbeef)"},  // payload
    {std::bit_cast<double>(std::uint64_t{0x7ff0000000000001}), "nan(0x7ff0000000000001)"},  // signalling
    {std::bit_cast<double>(std::uint64_t{0xffffffffffffffff}), "nan(0xffffffffffffffff)"},
};

const FED_DataDescriptor kKey = MakeKey(500, 1);  // index-addressed

std::string TextOf(const std::vector<double>& values)
{
  FED_ResultDatabase database;
  FED_DataBlock&     block = *database.CreateDataBlock(kKey, values.size(), 0, "D");
  for (std::size_t i = 0; i < values.size(); ++i) block.SetValuesAt(i, &values[i]);
  return WriteToText(database, kKey);
}

/// The words behind the indices.
std::vector<std::string> NumbersOf(const std::string& text)
{
  std::vector<std::string> numbers;
  std::size_t              at = text.find('\n', text.find("records: ")) + 1;
  for (; at < text.size(); at = text.find('\n', at) + 1) {
    const std::size_t blank = text.find(' ', at);
    numbers.push_back(text.substr(blank + 1, text.find('\n', at) - blank - 1));
  }
  return numbers;
}

/// @return one of the doubles with these bits, of every class: each exponent and sign is equally likely
double AnyDouble(std::mt19937_64& random) { return std::bit_cast<double>(random()); }

}  // namespace

TEST(OnfTextNumbers, EveryClassOfDoubleHasItsText)
{
  std::vector<double> values;
  for (const Row& row : kRows) values.push_back(row.value);
  const std::vector<std::string> numbers = NumbersOf(TextOf(values));
  ASSERT_EQ(numbers.size(), values.size());
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(numbers[i], kRows[i].text);
}

TEST(OnfTextNumbers, EveryDoubleComesBackWithItsBits)
{
  std::mt19937_64     random(20240501);
  std::vector<double> values;
  for (const Row& row : kRows) values.push_back(row.value);
  for (int i = 0; i < 100000; ++i) values.push_back(AnyDouble(random));
  FED_ResultDatabase copy;
  ReadFromText(TextOf(values), copy);
  const FED_DataBlock& block = copy.GetConstDataBlock(kKey);
  for (std::size_t i = 0; i < values.size(); ++i) {
    double value = 0.0;
    block.GetValuesAt(i, &value);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(values[i])) << values[i];
  }
}

TEST(OnfTextNumbers, EveryFloatComesBackWithItsBits)
{
  std::mt19937       random(7);
  std::vector<float> values = {0.0f,
                               -0.0f,
                               0.1f,
                               16777216.0f,
                               FloatLimits::max(),
                               FloatLimits::min(),
                               FloatLimits::denorm_min(),
                               FloatLimits::infinity(),
                               -FloatLimits::infinity(),
                               FloatLimits::quiet_NaN(),
                               std::bit_cast<float>(0xffc00001u),
                               std::bit_cast<float>(0x7f800001u)};
  for (int i = 0; i < 100000; ++i) values.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
  FED_ResultDatabase source;
  FED_DataBlock&     block  = *source.CreateDataBlock(kKey, values.size(), 0, "F");
  FED_DataRecord&    record = *block.CreateDataRecord();
  for (std::size_t i = 0; i < values.size(); ++i) {
    record.SetFloat(1, values[i]);
    block.SetRecord(i, record);
  }
  const std::string text = WriteToText(source, kKey);
  EXPECT_EQ(NumbersOf(text)[2], "0.1");
  EXPECT_EQ(NumbersOf(text)[9], "nan");
  EXPECT_EQ(NumbersOf(text)[11], "nan(0x7f800001)");
  FED_ResultDatabase copy;
  ReadFromText(text, copy);
  for (std::size_t i = 0; i < values.size(); ++i) {
    copy.GetConstDataBlock(kKey).GetRecord(i, record);
    ASSERT_EQ(std::bit_cast<std::uint32_t>(record.GetFloat(1)), std::bit_cast<std::uint32_t>(values[i])) << values[i];
  }
}

TEST(OnfTextNumbers, NoShorterTextReadsBackToTheSameDouble)
{
  std::mt19937_64     random(99);
  std::vector<double> values;
  while (values.size() < 2000) {
    const double value =
        values.size() % 2 == 0 ? AnyDouble(random) : std::ldexp(static_cast<double>(random() >> 40), -9);
    if (std::isfinite(value)) values.push_back(value);
  }
  const std::vector<std::string> numbers = NumbersOf(TextOf(values));
  for (std::size_t i = 0; i < values.size(); ++i) {
    // Second method: the fewest digits with which the C library's text reads back.
    char text[64];
    for (int digits = 1; digits <= 17; ++digits) {
      std::snprintf(text, sizeof text, "%.*g", digits, values[i]);
      if (std::strtod(text, nullptr) == values[i]) break;
    }
    EXPECT_LE(numbers[i].size(), std::string(text).size()) << numbers[i] << " against " << text;
    EXPECT_EQ(std::strtod(numbers[i].c_str(), nullptr), values[i]) << numbers[i];
  }
}

TEST(OnfTextNumbers, LongerTextsAreRoundedCorrectly)
{
  std::mt19937_64          random(5);
  std::vector<std::string> numbers = {"0.1000000000000000055511151231257827021181583404541015625",
                                      "9007199254740993",                            // halfway, to even
                                      "9007199254740993.0000000000000000000000001",  // just above halfway
                                      "2.2250738585072011e-308",  // greatest denormal or least normal number
                                      "2.4703282292062328e-324",  // just above half the least denormal
                                      "1.7976931348623158e308",
                                      "1E5",
                                      "00012.50",
                                      "-0.0e-7"};
  for (int i = 0; i < 2000; ++i) {
    char text[64];
    std::snprintf(text, sizeof text, "%d.%018llu%07llue%d", static_cast<int>(random() % 10),
                  static_cast<unsigned long long>(random() % 1000000000000000000u),
                  static_cast<unsigned long long>(random() % 10000000u), static_cast<int>(random() % 600) - 300);
    numbers.push_back(text);
  }
  std::string text = TextOf({});
  text.replace(text.find("records: 0"), 10, "records: " + std::to_string(numbers.size()));
  for (std::size_t i = 0; i < numbers.size(); ++i) text += std::to_string(i) + " " + numbers[i] + "\n";
  FED_ResultDatabase database;
  ReadFromText(text, database);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    double value = 0.0;
    database.GetConstDataBlock(kKey).GetValuesAt(i, &value);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value),
              std::bit_cast<std::uint64_t>(std::strtod(numbers[i].c_str(), nullptr)))
        << numbers[i];
  }
}
