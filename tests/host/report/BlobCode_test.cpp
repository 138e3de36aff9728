#include "report/BlobCode.h"

#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "BlobDecoding.h"

namespace quilon {
namespace {

using namespace quilon_test;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double     kNan      = std::nan("");

double DoubleAt(const std::string& bytes, std::size_t offset)
{
  double value = 0.0;
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

TEST(BlobCode, KeepsIntegersOfEverySize)
{
  const std::vector<std::uint32_t> integers = {0, 1, 7, 3, 255, 256, 65536, 0x7FFFFFFF, 0xFFFFFFFF, 0x80000000, 5};
  EXPECT_EQ(DecodeIntegers(EncodeIntegers(integers)), integers);
  EXPECT_EQ(DecodeIntegers(EncodeIntegers({})), std::vector<std::uint32_t>());
}

TEST(BlobCode, KeepsTheFloatsOfEachComponentBitByBit)
{
  const std::vector<double> values = {1.5, -0.0, kNan, 1e-40, 0.1, 1e38, -kInfinity, 3.0};
  const std::vector<float>  read   = DecodeFloats(EncodeValues(values, 2, BlobBits::Full));
  ASSERT_EQ(read.size(), 8u);
  for (std::size_t component = 0; component < 2; ++component)
    for (std::size_t i = 0; i < 4; ++i) {
      const auto expected = static_cast<float>(values[2 * i + component]);
      EXPECT_EQ(std::memcmp(&read[4 * component + i], &expected, sizeof expected), 0) << component << ' ' << i;
    }
}

TEST(BlobCode, HalvesAreOffByAPartOfTheRangeOfTheirComponent)
{
  std::vector<double> values;
  for (int i = 0; i <= 1000; ++i) {
    values.push_back(-3.0 + 0.017 * i);
    values.push_back(i == 500 ? kNan : 1e300 * (i - 500));
  }
  const std::string                blob  = EncodeValues(values, 2, BlobBits::Half);
  const std::vector<std::uint32_t> steps = DecodeIntegers(std::string_view(blob).substr(32), 2);
  ASSERT_EQ(steps.size(), values.size());
  for (std::size_t component = 0; component < 2; ++component) {
    const double least    = DoubleAt(blob, 16 * component);
    const double greatest = DoubleAt(blob, 16 * component + 8);
    EXPECT_EQ(least, values[component]);
    EXPECT_EQ(greatest, values[2000 + component]);
    for (std::size_t i = 0; i <= 1000; ++i) {
      const std::uint32_t step  = steps[1001 * component + i];
      const double        value = values[2 * i + component];
      if (std::isnan(value)) {
        EXPECT_EQ(step, 65535u);
        continue;
      }
      // Half a step, and the rounding of the sum that reads it.
      EXPECT_NEAR(least + step / 65534.0 * (greatest - least), value, (greatest - least) / 131068.0 * (1 + 1e-9));
    }
  }
}

TEST(BlobCode, HalvesOfOneValueAreThatValueAndInfinityIsNone)
{
  const std::string blob = EncodeValues(std::vector<double>{2.5, kInfinity, 2.5}, 1, BlobBits::Half);
  EXPECT_EQ(DoubleAt(blob, 0), 2.5);
  EXPECT_EQ(DoubleAt(blob, 8), 2.5);
  EXPECT_EQ(DecodeIntegers(std::string_view(blob).substr(16), 2), (std::vector<std::uint32_t>{0, 65535, 0}));
  const std::string none = EncodeValues(std::vector<double>{kNan}, 1, BlobBits::Half);
  EXPECT_EQ(DoubleAt(none, 0), 0.0);
  EXPECT_EQ(DecodeIntegers(std::string_view(none).substr(16), 2), std::vector<std::uint32_t>{65535});
}

// The vectors of RFC 4648, section 10, and bytes above 127.
TEST(BlobCode, WritesBase64)
{
  EXPECT_EQ(ToBase64(""), "");
  EXPECT_EQ(ToBase64("f"), "Zg==");
  EXPECT_EQ(ToBase64("fo"), "Zm8=");
  EXPECT_EQ(ToBase64("foo"), "Zm9v");
  EXPECT_EQ(ToBase64("foob"), "Zm9vYg==");
  EXPECT_EQ(ToBase64("fooba"), "Zm9vYmE=");
  EXPECT_EQ(ToBase64("foobar"), "Zm9vYmFy");
  EXPECT_EQ(ToBase64("\xff\xfe\xfd"), "//79");
}

}  // namespace
}  // namespace quilon
