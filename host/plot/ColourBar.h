#pragma once

/// @file
/// The legend of colours.

#include <string>

#include "plot/Canvas.h"
#include "plot/ColourScale.h"

namespace quilon {

/// A bar of colours with round ticks to its right and what is counted above it. Its ends are pointed where values lie
/// beyond them.
struct ColourBar
{
  const ColourScale& scale;
  std::string        name;  ///< of what is shown
  std::string        unit;  ///< may be empty
  bool               isOpenBelow = false;
  bool               isOpenAbove = false;
  Colour             ink         = {};

  static constexpr double kWidth = 18.0;

  /// @param height of the bar itself
  /// @return how wide the bar is with its texts
  double GetWidth(const Canvas& canvas, double height) const;

  /// @param corner top left of the bar itself; its heading stands above
  void Draw(Canvas& canvas, const Spot& corner, double height) const;
};

}  // namespace quilon
