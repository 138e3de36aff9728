#include "plot/Raster.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace {

using quilon::Bitmap;
using quilon::Colour;
using quilon::ColourMap;
using quilon::ColourScale;
using quilon::Raster;
using quilon::RasterPoint;

constexpr Colour kRed{1, 0, 0, 1};
constexpr Colour kBlue{0, 0, 1, 1};

std::uint32_t PixelOf(const Bitmap& bitmap, int x, int y)
{
  return bitmap.pixels[static_cast<std::size_t>(y * bitmap.width + x)];
}

std::size_t CountPixels(const Bitmap& bitmap, std::uint32_t colour)
{
  return static_cast<std::size_t>(std::count(bitmap.pixels.begin(), bitmap.pixels.end(), colour));
}

TEST(Raster, TwoTrianglesFillASquareWithoutGapAndNothingElse)
{
  Raster raster(20, 20, 2);
  raster.DrawTriangle({{{3, 4, 0}, {15, 4, 0}, {15, 14, 0}}}, {nullptr, kRed, 1.0});
  raster.DrawTriangle({{{3, 4, 0}, {15, 14, 0}, {3, 14, 0}}}, {nullptr, kRed, 1.0});
  const Bitmap bitmap = raster.Resolve();
  EXPECT_EQ(CountPixels(bitmap, 0xFFFF0000U), 120u);
  EXPECT_EQ(CountPixels(bitmap, 0), 400u - 120u);
  EXPECT_EQ(PixelOf(bitmap, 3, 4), 0xFFFF0000U);
  EXPECT_EQ(PixelOf(bitmap, 14, 13), 0xFFFF0000U);
  EXPECT_EQ(PixelOf(bitmap, 15, 13), 0u);
}

TEST(Raster, AFanOfThinTrianglesHasNoHoles)
{
  Raster        raster(200, 200, 1);
  constexpr int kCount = 97;
  const auto    rim    = [](int i) {
    const double angle = 2 * 3.14159265358979 * i / kCount;
    return RasterPoint{100 + 90 * std::cos(angle), 100 + 90 * std::sin(angle), 0};
  };
  for (int i = 0; i < kCount; ++i)
    raster.DrawTriangle({{{100.3, 99.7, 0}, rim(i), rim((i + 1) % kCount)}}, {nullptr, kRed, 1.0});
  const Bitmap bitmap = raster.Resolve();
  for (int y = 0; y < 200; ++y)
    for (int x = 0; x < 200; ++x)
      if (std::hypot(x + 0.5 - 100, y + 0.5 - 100) < 89.0) {
        EXPECT_EQ(PixelOf(bitmap, x, y), 0xFFFF0000U) << x << ' ' << y;
      }
}

TEST(Raster, TheNearerFaceWinsInEitherOrderAndFacesMayPierceEachOther)
{
  for (const bool redFirst : {true, false}) {
    Raster     raster(20, 10, 1);
    const auto red = [&] {  // flat at depth 0
      raster.DrawTriangle({{{0, 0, 0}, {40, 0, 0}, {0, 20, 0}}}, {nullptr, kRed, 1.0});
    };
    const auto blue = [&] {  // rises from -5 at the left to 5 at the right
      raster.DrawTriangle({{{0, -20, -5}, {20, 5, 5}, {0, 30, -5}}}, {nullptr, kBlue, 1.0});
    };
    if (redFirst) red();
    blue();
    if (!redFirst) red();
    const Bitmap bitmap = raster.Resolve();
    EXPECT_EQ(PixelOf(bitmap, 5, 4), 0xFFFF0000U);
    EXPECT_EQ(PixelOf(bitmap, 9, 4), 0xFFFF0000U);
    EXPECT_EQ(PixelOf(bitmap, 10, 4), 0xFF0000FFU);
    EXPECT_EQ(PixelOf(bitmap, 15, 4), 0xFF0000FFU);
  }
}

TEST(Raster, ValuesAreInterpolatedAndColouredPerPixel)
{
  const ColourScale scale(ColourMap::Viridis, {0.0, 100.0});
  Raster            raster(100, 10, 1);
  // The value is the distance from the left: at the middle of pixel i it is i + 1/2.
  raster.DrawTriangle({{{0, 0, 0, 0}, {100, 0, 0, 100}, {100, 10, 0, 100}}}, {&scale, {}, 1.0});
  raster.DrawTriangle({{{0, 0, 0, 0}, {100, 10, 0, 100}, {0, 10, 0, 0}}}, {&scale, {}, 1.0});
  const Bitmap bitmap = raster.Resolve();
  for (int i = 0; i < 100; ++i) EXPECT_EQ(PixelOf(bitmap, i, 5), 0xFF000000U | scale.PixelAt(i + 0.5)) << i;
}

TEST(Raster, AFaceWithANanIsGrey)
{
  const ColourScale scale(ColourMap::Viridis, {0.0, 1.0});
  Raster            raster(4, 4, 1);
  raster.DrawTriangle({{{0, 0, 0, 0.5}, {9, 0, 0, std::numeric_limits<double>::quiet_NaN()}, {0, 9, 0, 0.5}}},
                      {&scale, {}, 1.0});
  EXPECT_EQ(PixelOf(raster.Resolve(), 1, 1), 0xFFB4A7B4U);
}

TEST(Raster, WhatLiesAtAPositiveSideIsCutAway)
{
  Raster raster(10, 10, 1);
  raster.DrawTriangle({{{0, 0, 0, 0, -5}, {20, 0, 0, 0, 15}, {0, 20, 0, 0, -5}}}, {nullptr, kRed, 1.0});
  const Bitmap bitmap = raster.Resolve();
  EXPECT_EQ(PixelOf(bitmap, 4, 2), 0xFFFF0000U);
  EXPECT_EQ(PixelOf(bitmap, 5, 2), 0u);
}

TEST(Raster, LinesLieOnFacesAndHideBehindThem)
{
  Raster raster(20, 20, 1);
  raster.DrawTriangle({{{0, 0, 0}, {40, 0, 0}, {0, 40, 0}}}, {nullptr, kRed, 1.0});
  raster.DrawLine({2, 5.5, 0}, {18, 5.5, 0}, 1.0, {0, 0, 0, 1}, 1.0);
  raster.DrawLine({2, 9.5, -3}, {18, 9.5, -3}, 1.0, {0, 0, 0, 1}, 1.0);
  const Bitmap bitmap = raster.Resolve();
  EXPECT_EQ(PixelOf(bitmap, 10, 5), 0xFF000000U);
  EXPECT_EQ(PixelOf(bitmap, 10, 4), 0xFFFF0000U);
  EXPECT_EQ(PixelOf(bitmap, 10, 9), 0xFFFF0000U);
}

TEST(Raster, RodsHaveAWidthAndADepth)
{
  Raster raster(20, 20, 2);
  raster.DrawRod({10, 2, 1}, {10, 18, 1}, 4.0, {nullptr, kBlue, 1.0});
  raster.DrawRod({2, 10, 0}, {18, 10, 0}, 4.0, {nullptr, kRed, 1.0});
  const Bitmap bitmap = raster.Resolve();
  EXPECT_EQ(PixelOf(bitmap, 10, 10), 0xFF0000FFU) << "the nearer one";
  EXPECT_EQ(PixelOf(bitmap, 5, 9), 0xFFFF0000U);
  EXPECT_EQ(PixelOf(bitmap, 5, 8), 0xFFFF0000U);
  EXPECT_EQ(PixelOf(bitmap, 5, 7), 0u);
  EXPECT_EQ(PixelOf(bitmap, 5, 11), 0xFFFF0000U);
  EXPECT_EQ(PixelOf(bitmap, 5, 12), 0u);
}

TEST(Raster, DepthIsTheNearestOfAPixel)
{
  Raster raster(10, 10, 3);
  EXPECT_FALSE(raster.GetDepth(5, 5).has_value());
  raster.DrawTriangle({{{0, 0, 7}, {40, 0, 7}, {0, 40, 7}}}, {nullptr, kRed, 1.0});
  EXPECT_EQ(raster.GetDepth(5, 5), 7.0);
  EXPECT_FALSE(raster.GetDepth(-1, 5).has_value());
  EXPECT_FALSE(raster.GetDepth(5, 10).has_value());
}

TEST(Raster, EdgesAreSmoothAndWhatIsOutsideTheSheetIsLeftOut)
{
  Raster raster(4, 4, 4);
  // Half of each pixel of the first column, and far beyond the sheet on all other sides.
  raster.DrawTriangle({{{0.5, -1000, 0}, {5000, 2, 0}, {0.5, 1000, 0}}}, {nullptr, kRed, 1.0});
  const Bitmap bitmap = raster.Resolve();
  EXPECT_EQ(PixelOf(bitmap, 0, 2) >> 24U, 128u);
  EXPECT_EQ(PixelOf(bitmap, 3, 2), 0xFFFF0000U);
}

}  // namespace
