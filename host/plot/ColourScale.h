#pragma once

/// @file
/// From values to colours.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "plot/Colour.h"

namespace quilon {

enum class ColourMap
{
  Viridis,   ///< dark blue over green to yellow: equal steps look equal, in grey and to the colour-blind too
  CoolWarm,  ///< blue over light grey to red, for values whose zero matters
  Grey       ///< dark to light
};

/// @return the map of this name
/// @throws FED_Failure that lists the names
ColourMap ParseColourMap(const std::string& name);

/// @param position 0 to 1; what is outside has the colour of the end
Colour ColourAt(ColourMap map, double position);

/// Least and greatest value that a picture shows.
struct ValueRange
{
  double least    = 0.0;
  double greatest = 0.0;
};

/// Colours for a range of values. What is outside has the colour of the end.
///
/// CoolWarm has its middle at zero and is as deep at a value as at its negative, so that a range that is not even about
/// zero shows a part of it.
class ColourScale
{
public:
  /// @param range least < greatest, or equal: all one value
  ColourScale(ColourMap map, const ValueRange& range);

  /// @return a scale for a range: CoolWarm where values of both signs are worth telling apart, which is when the
  ///         smaller side has at least a twentieth of the larger one; else Viridis
  static ColourMap Choose(const ValueRange& range);

  const ValueRange& GetRange() const noexcept { return range_; }
  Colour            At(double value) const;

  /// A colour as pixels hold it, for many values.
  /// @param value a number
  std::uint32_t PixelAt(double value) const noexcept;

private:
  static constexpr int kSteps = 1024;

  double PositionOf(double value) const noexcept;

  ColourMap                             map_;
  ValueRange                            range_;
  double                                first_  = 0.0;  // value at position 0 of the map
  double                                length_ = 1.0;  // of values between positions 0 and 1
  std::array<std::uint32_t, kSteps + 1> pixels_{};      // 0xRRGGBB
};

}  // namespace quilon
