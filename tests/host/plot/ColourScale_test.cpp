#include "plot/ColourScale.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::Colour;
using quilon::ColourAt;
using quilon::ColourMap;
using quilon::ColourScale;

/// CIE 1976 L*a*b* of an sRGB colour, white point D65 (IEC 61966-2-1).
std::array<double, 3> Lab(const Colour& colour)
{
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  const double r   = linear(colour.red);
  const double g   = linear(colour.green);
  const double b   = linear(colour.blue);
  const auto curve = [](double t) { return t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0; };
  const double x   = curve((0.4124564 * r + 0.3575761 * g + 0.1804375 * b) / 0.95047);
  const double y   = curve(0.2126729 * r + 0.7151522 * g + 0.0721750 * b);
  const double z   = curve((0.0193339 * r + 0.1191920 * g + 0.9503041 * b) / 1.08883);
  return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
}

TEST(ColourScale, ViridisGetsBrighterInEvenSteps)
{
  constexpr int kSteps = 16;
  const double  whole  = Lab(ColourAt(ColourMap::Viridis, 1.0))[0] - Lab(ColourAt(ColourMap::Viridis, 0.0))[0];
  EXPECT_GT(whole, 70.0);
  for (int i = 0; i < kSteps; ++i) {
    const double step = Lab(ColourAt(ColourMap::Viridis, (i + 1.0) / kSteps))[0] -
                        Lab(ColourAt(ColourMap::Viridis, static_cast<double>(i) / kSteps))[0];
    EXPECT_NEAR(step, whole / kSteps, 0.15 * whole / kSteps) << i;
  }
}

TEST(ColourScale, CoolWarmIsBrightestAtItsMiddleAndAsDarkOnBothSides)
{
  for (int i = 1; i <= 8; ++i) {
    const double cool = Lab(ColourAt(ColourMap::CoolWarm, 0.5 - i / 16.0))[0];
    const double warm = Lab(ColourAt(ColourMap::CoolWarm, 0.5 + i / 16.0))[0];
    EXPECT_LT(warm, Lab(ColourAt(ColourMap::CoolWarm, 0.5 + (i - 1) / 16.0))[0]);
    EXPECT_NEAR(cool, warm, 5.0) << i;
  }
  const Colour middle = ColourAt(ColourMap::CoolWarm, 0.5);
  EXPECT_EQ(middle.red, middle.green);
  EXPECT_EQ(middle.red, middle.blue);
}

TEST(ColourScale, ADivergingScaleHasItsMiddleAtZero)
{
  const ColourScale scale(ColourMap::CoolWarm, {-1.0, 4.0});
  const Colour      zero = ColourAt(ColourMap::CoolWarm, 0.5);
  EXPECT_EQ(scale.At(0.0).red, zero.red);
  // As deep at -1 as at 1: an eighth of the map from its middle.
  EXPECT_EQ(scale.At(-1.0).blue, ColourAt(ColourMap::CoolWarm, 0.375).blue);
  EXPECT_EQ(scale.At(1.0).red, ColourAt(ColourMap::CoolWarm, 0.625).red);
  EXPECT_EQ(scale.At(4.0).red, ColourAt(ColourMap::CoolWarm, 1.0).red);
  // Beyond the range the colour of the end stays.
  EXPECT_EQ(scale.At(-3.0).blue, scale.At(-1.0).blue);
}

TEST(ColourScale, ZeroMattersWhereBothSignsDo)
{
  EXPECT_EQ(ColourScale::Choose({-1.0, 1.0}), ColourMap::CoolWarm);
  EXPECT_EQ(ColourScale::Choose({-0.05, 1.0}), ColourMap::CoolWarm);
  EXPECT_EQ(ColourScale::Choose({-0.049, 1.0}), ColourMap::Viridis);
  EXPECT_EQ(ColourScale::Choose({-1.0, 0.05}), ColourMap::CoolWarm);
  EXPECT_EQ(ColourScale::Choose({0.0, 1.0}), ColourMap::Viridis);
  EXPECT_EQ(ColourScale::Choose({-2.0, -1.0}), ColourMap::Viridis);
  EXPECT_EQ(ColourScale::Choose({0.0, 0.0}), ColourMap::Viridis);
}

TEST(ColourScale, PixelsAreItsColours)
{
  const ColourScale scale(ColourMap::Viridis, {10.0, 20.0});
  for (const double value : {-5.0, 10.0, 12.5, 15.0, 20.0, 1e300}) {
    const Colour        colour = scale.At(value);
    const std::uint32_t pixel  = scale.PixelAt(value);
    // A step of the table is a 1024th of the range.
    EXPECT_NEAR((pixel >> 16U) & 0xFFU, colour.red * 255.0, 1.0) << value;
    EXPECT_NEAR((pixel >> 8U) & 0xFFU, colour.green * 255.0, 1.0) << value;
    EXPECT_NEAR(pixel & 0xFFU, colour.blue * 255.0, 1.0) << value;
  }
  EXPECT_EQ(ColourScale(ColourMap::Viridis, {3.0, 3.0}).PixelAt(3.0),
            ColourScale(ColourMap::Viridis, {0.0, 1.0}).PixelAt(0.5))
      << "one value lies in the middle";
}

TEST(ColourScale, NamesOfMaps)
{
  EXPECT_EQ(quilon::ParseColourMap("Viridis"), ColourMap::Viridis);
  EXPECT_EQ(quilon::ParseColourMap("coolwarm"), ColourMap::CoolWarm);
  EXPECT_EQ(quilon::ParseColourMap("grey"), ColourMap::Grey);
  try {
    quilon::ParseColourMap("virids");
    FAIL();
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), "'virids' is no colour map, did you mean 'viridis'?");
  }
}

TEST(Colour, NamesAndHexadecimalNumbers)
{
  EXPECT_EQ(quilon::ParseColour("white").green, 1.0);
  EXPECT_EQ(quilon::ParseColour("Transparent").alpha, 0.0);
  EXPECT_EQ(quilon::ParseColour("#ff8000").red, 1.0);
  EXPECT_EQ(quilon::ParseColour("#ff8000").green, 128.0 / 255.0);
  EXPECT_EQ(quilon::ParseColour("#FF800033").alpha, 0.2);
  for (const char* wrong : {"", "#", "#12345", "#12345g", "#-10000", "whit", "#ff 000"})
    EXPECT_THROW(quilon::ParseColour(wrong), FED_Failure) << wrong;
  EXPECT_TRUE(quilon::IsBright({1, 1, 1, 1}));
  EXPECT_TRUE(quilon::IsBright({0, 0, 0, 0}));
  EXPECT_FALSE(quilon::IsBright({0, 0, 0, 1}));
  EXPECT_FALSE(quilon::IsBright({0, 0, 1, 1})) << "blue is dark";
}

}  // namespace
