#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PictureBytes.h"
#include "plot/Canvas.h"
#include "plot/LineChart.h"
#include "plot/TextChart.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using namespace quilon;
using testing::HasSubstr;
using testing::Not;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

Chart Ramp() { return {"Ramp", {"time [s]"}, {"value"}, {{"a", {0, 1, 2, 3}, {0, 10, 20, 30}}}, {}, false}; }

TEST(Canvas, FormatsAreToldByTheExtension)
{
  EXPECT_EQ(PictureFormatOf("a.png"), PictureFormat::Png);
  EXPECT_EQ(PictureFormatOf("x/A.SVG"), PictureFormat::Svg);
  EXPECT_EQ(PictureFormatOf("a.b.pdf"), PictureFormat::Pdf);
  try {
    PictureFormatOf("x/a.jpg");
    FAIL();
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), "x/a.jpg: expected a name that ends in .png, .svg or .pdf");
  }
}

TEST(Canvas, Sizes)
{
  EXPECT_EQ(ParsePictureSize("640x480").width, 640);
  EXPECT_EQ(ParsePictureSize("640X480").height, 480);
  for (const char* wrong : {"", "640", "640x", "x480", "640x480x", "99x480", "640x10001", "-640x480", "1e3x480"})
    EXPECT_THROW(ParsePictureSize(wrong), FED_Failure) << wrong;
}

TEST(Canvas, ASheetOfOneColourHasThatColour)
{
  const Bitmap white = quilon_test::ReadPng(Canvas(PictureFormat::Png, {120, 100}, {1, 1, 1, 1}).Finish());
  EXPECT_EQ(white.width, 120);
  EXPECT_EQ(white.height, 100);
  EXPECT_THAT(white.pixels, testing::Each(0xFFFFFFFFU));
  const Bitmap clear = quilon_test::ReadPng(Canvas(PictureFormat::Png, {120, 100}, {1, 1, 1, 0}).Finish());
  EXPECT_THAT(clear.pixels, testing::Each(0U));
}

TEST(Canvas, ASmallPictureIsALargerOneMadeSmaller)
{
  const auto sheetOf = [](const PictureSize& size) {
    const PictureSize sheet = Canvas(PictureFormat::Png, size, {1, 1, 1, 1}).GetSize();
    return std::array<int, 2>{sheet.width, sheet.height};
  };
  EXPECT_EQ(sheetOf({480, 360}), (std::array{480, 360}));
  EXPECT_EQ(sheetOf({240, 360}), (std::array{480, 720}));
  EXPECT_EQ(sheetOf({1000, 120}), (std::array{3000, 360}));
  Canvas canvas(PictureFormat::Png, {240, 180}, {1, 1, 1, 1});
  canvas.FillPolygon(std::array<Spot, 4>{{{240, 0}, {480, 0}, {480, 360}, {240, 360}}}, {0, 0, 0, 1});
  const Bitmap picture = quilon_test::ReadPng(canvas.Finish());
  EXPECT_EQ(picture.width, 240);
  EXPECT_EQ(picture.height, 180);
  for (const double y : {0.0, 179.0}) {
    EXPECT_EQ(quilon_test::PixelAt(picture, 0, y), 0xFFFFFFFFU);
    EXPECT_EQ(quilon_test::PixelAt(picture, 119, y), 0xFFFFFFFFU);
    EXPECT_EQ(quilon_test::PixelAt(picture, 120, y), 0xFF000000U);
    EXPECT_EQ(quilon_test::PixelAt(picture, 239, y), 0xFF000000U);
  }
}

TEST(LineChart, TheSameChartIsTheSameFileByteForByte)
{
  for (const PictureFormat format : {PictureFormat::Png, PictureFormat::Svg, PictureFormat::Pdf}) {
    const std::string first = DrawLineChart(Ramp(), format);
    // Another picture between the two: what the library counts over a process is no part of a file.
    Canvas between(PictureFormat::Svg, {100, 100}, {1, 1, 1, 1});
    between.DrawBitmap({0, 0}, 10, 10, {1, 1, {0xFF000000U}});
    EXPECT_THAT(between.Finish(), HasSubstr("<image id=\"image1\""));
    EXPECT_EQ(first, DrawLineChart(Ramp(), format));
    EXPECT_THAT(first, Not(HasSubstr("CreationDate")));
  }
}

TEST(LineChart, VectorFormatsHoldTheLineAsAPath)
{
  const std::string svg = DrawLineChart(Ramp(), PictureFormat::Svg);
  EXPECT_THAT(svg, HasSubstr("<svg"));
  EXPECT_THAT(svg, Not(HasSubstr("<image")));
  EXPECT_THAT(DrawLineChart(Ramp(), PictureFormat::Pdf), testing::StartsWith("%PDF-"));
}

TEST(LineChart, ARampGoesFromTheLowerLeftToTheUpperRight)
{
  const Bitmap bitmap = quilon_test::ReadPng(DrawLineChart(Ramp(), PictureFormat::Png));
  EXPECT_EQ(bitmap.width, 900);
  EXPECT_EQ(bitmap.height, 600);
  // Of the pixels in the colour of the line: the mean height of each half of the sheet.
  double      sums[2]   = {0, 0};
  std::size_t counts[2] = {0, 0};
  for (int y = 0; y < bitmap.height; ++y)
    for (int x = 0; x < bitmap.width; ++x)
      if (quilon_test::PixelAt(bitmap, x, y) == 0xFF0072B2U) {
        sums[x >= 450] += y;
        ++counts[x >= 450];
      }
  ASSERT_GT(counts[0], 100u);
  ASSERT_GT(counts[1], 100u);
  EXPECT_GT(sums[0] / static_cast<double>(counts[0]), sums[1] / static_cast<double>(counts[1]) + 100.0);
}

TEST(LineChart, NothingToShowIsAFailure)
{
  Chart chart = Ramp();
  chart.series.front().y.assign(4, kNan);
  EXPECT_THROW(DrawLineChart(chart, PictureFormat::Png), FED_Failure);
  chart.series.front().y.assign(4, 0.0);
  EXPECT_NO_THROW(DrawLineChart(chart, PictureFormat::Png));
  chart.y.isLogarithmic = true;
  try {
    DrawTextChart(chart);
    FAIL();
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(),
                 "nothing to plot: expected at least one point whose numbers are finite, and above 0 on a logarithmic "
                 "axis");
  }
}

TEST(TextChart, ARampInLetters)
{
  // 21 places: a point at every fifth column, a row at every fifth, each of which the line enters half way.
  EXPECT_EQ(
      DrawTextChart({"Ramp", {"time [s]"}, {"value"}, {{"a", {0, 1, 4}, {0, 10, 40}}}, {}, false}, {25, 5, false}),
      "Ramp\n"
      "value\n"
      "40 |                  ***\n"
      "   |             *****\n"
      "20 |        *****\n"
      "   |   *****\n"
      " 0 |***\n"
      "   +---------------------\n"
      "    0     time [s]      4\n");
}

TEST(TextChart, DotsOfBrailleAreEightACharacter)
{
  // 20 rows of dots, four a character: a level line at the middle lies on the third dot of the middle character.
  const std::string text = DrawTextChart({"", {""}, {""}, {{"", {0, 1}, {1, 1}}}, {}, false}, {20, 5, true});
  EXPECT_EQ(text,
            "1.1 \u2502\n"
            "    \u2502\n"
            "  1 \u2502\u2824\u2824\u2824\u2824\u2824\u2824\u2824\u2824\u2824\u2824\u2824\u2824\u2824\u2824\u2824\n"
            "    \u2502\n"
            "0.9 \u2502\n"
            "    \u2514\u2500\u2500\u2500\u2500\u2500\u2500\u2500\u2500\u2500\u2500\u2500\u2500\u2500\u2500\u2500\n"
            "     0             1\n");
}

TEST(TextChart, SeveralSeriesAreNamed)
{
  const std::string text = DrawTextChart(
      {"", {""}, {""}, {{"first", {0, 1}, {0, 1}}, {"second", {0, 1}, {0, 0}}}, {}, false}, {30, 5, false});
  EXPECT_THAT(text, HasSubstr("  a  first  ends at 1\n  b  second  ends at 0\n"));
}

TEST(Sparkline, HasAHeightAValue)
{
  EXPECT_EQ(DrawSparkline(std::vector<double>{0, 1, 2, 3, 4, 5, 6, 7}, 20),
            "\u2581\u2582\u2583\u2584\u2585\u2586\u2587\u2588");
  EXPECT_EQ(DrawSparkline(std::vector<double>{0, 1, 2, 3, 4, 5, 6, 7}, 20, false), "_.-:=+*#");
  EXPECT_EQ(DrawSparkline(std::vector<double>{5, 5, 5}, 20), "\u2581\u2581\u2581");
  EXPECT_EQ(DrawSparkline(std::vector<double>{1, kNan, 2}, 20), "\u2581 \u2588");
  EXPECT_EQ(DrawSparkline(std::vector<double>{}, 20), "");
  EXPECT_EQ(DrawSparkline(std::vector<double>{-1.7e308, 1.7e308}, 20), "\u2581\u2588");
}

TEST(Sparkline, KeepsPeaksWhereValuesShareACharacter)
{
  std::vector<double> values(100, 0.0);
  values[37] = 1.0;
  EXPECT_EQ(DrawSparkline(values, 10), "\u2581\u2581\u2581\u2588\u2581\u2581\u2581\u2581\u2581\u2581");
}

}  // namespace
