#include "plot/ColourScale.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "text/Failure.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

using Rgb = std::array<std::uint8_t, 3>;

// Every eighth colour of "viridis" by S. van der Walt and N. Smith (2015), CC0, and its last, 255.
constexpr std::array<Rgb, 33> kViridis = {{
    {68, 1, 84},    {71, 13, 96},   {72, 24, 106},  {72, 35, 116},  {71, 45, 123},  {69, 55, 129},  {66, 64, 134},
    {62, 73, 137},  {59, 82, 139},  {55, 91, 141},  {51, 99, 141},  {47, 107, 142}, {44, 114, 142}, {41, 122, 142},
    {38, 130, 142}, {35, 137, 142}, {33, 145, 140}, {31, 152, 139}, {31, 160, 136}, {34, 167, 133}, {40, 174, 128},
    {50, 182, 122}, {63, 188, 115}, {78, 195, 107}, {94, 201, 98},  {112, 207, 87}, {132, 212, 75}, {152, 216, 62},
    {173, 220, 48}, {194, 223, 35}, {216, 226, 25}, {236, 229, 27}, {253, 231, 37},
}};

// Evenly spaced colours of the smooth diverging map of K. Moreland, Diverging Color Maps for Scientific Visualization
// (2009), from (59, 76, 192) over (221, 221, 221) to (180, 4, 38), computed by its formula.
constexpr std::array<Rgb, 33> kCoolWarm = {{
    {59, 76, 192},   {68, 90, 204},   {78, 104, 215},  {88, 117, 225},  {98, 130, 234},  {108, 142, 241},
    {119, 154, 247}, {130, 165, 251}, {141, 176, 254}, {152, 185, 255}, {163, 194, 255}, {174, 201, 253},
    {184, 208, 249}, {194, 213, 244}, {204, 217, 238}, {213, 219, 230}, {221, 221, 221}, {229, 216, 209},
    {236, 211, 198}, {241, 204, 185}, {245, 196, 173}, {247, 187, 160}, {247, 177, 148}, {247, 166, 135},
    {244, 154, 123}, {241, 141, 111}, {236, 127, 99},  {229, 112, 87},  {222, 97, 76},   {213, 80, 66},
    {203, 62, 56},   {192, 40, 47},   {180, 4, 38},
}};

Colour ColourOf(const Rgb& rgb) { return {rgb[0] / 255.0, rgb[1] / 255.0, rgb[2] / 255.0, 1.0}; }

/// @param place in units of the distance of two colours, 0 to size - 1
Colour Interpolate(std::span<const Rgb> colours, double place)
{
  const auto index = std::min(static_cast<std::size_t>(place), colours.size() - 2);
  return Blend(ColourOf(colours[index]), ColourOf(colours[index + 1]), place - static_cast<double>(index));
}

}  // namespace

ColourMap ParseColourMap(const std::string& name)
{
  constexpr ColourMap kMaps[] = {ColourMap::Viridis, ColourMap::CoolWarm, ColourMap::Grey};
  return kMaps[FindName(name, {"viridis", "coolwarm", "grey"}, "is no colour map", "viridis, coolwarm, grey or auto")];
}

Colour ColourAt(ColourMap map, double position)
{
  const double inside = std::clamp(position, 0.0, 1.0);
  switch (map) {
    case ColourMap::CoolWarm:
      return Interpolate(kCoolWarm, inside * static_cast<double>(kCoolWarm.size() - 1));
    case ColourMap::Grey: {
      const double light = 0.2 + 0.75 * inside;
      return {light, light, light, 1.0};
    }
    case ColourMap::Viridis:
      break;
  }
  // The last two colours of the table are 7 steps of 255 apart, all others 8.
  const double step = inside * 255.0;
  return Interpolate(kViridis, step <= 248.0 ? step / 8.0 : 31.0 + (step - 248.0) / 7.0);
}

ColourScale::ColourScale(ColourMap map, const ValueRange& range) : map_(map), range_(range)
{
  if (map == ColourMap::CoolWarm) {
    const double depth = std::max(std::abs(range.least), std::abs(range.greatest));
    first_             = -depth;
    length_            = 2.0 * depth;
  } else {
    first_  = range.least;
    length_ = range.greatest - range.least;
  }
  for (int i = 0; i <= kSteps; ++i) {
    const Colour colour = ColourAt(map_, static_cast<double>(i) / kSteps);
    const auto   byte   = [](double part) { return static_cast<std::uint32_t>(std::lround(part * 255.0)); };
    pixels_[static_cast<std::size_t>(i)] = byte(colour.red) << 16U | byte(colour.green) << 8U | byte(colour.blue);
  }
}

ColourMap ColourScale::Choose(const ValueRange& range)
{
  constexpr double kShare = 0.05;
  const double     below  = -range.least;
  const double     above  = range.greatest;
  return std::min(below, above) > 0.0 && std::min(below, above) >= kShare * std::max(below, above) ? ColourMap::CoolWarm
                                                                                                   : ColourMap::Viridis;
}

double ColourScale::PositionOf(double value) const noexcept
{
  if (!(length_ > 0.0)) return 0.5;
  return (std::clamp(value, range_.least, range_.greatest) - first_) / length_;
}

Colour ColourScale::At(double value) const { return ColourAt(map_, PositionOf(value)); }

std::uint32_t ColourScale::PixelAt(double value) const noexcept
{
  return pixels_[static_cast<std::size_t>(std::lrint(PositionOf(value) * kSteps))];
}

}  // namespace quilon
