#pragma once

/// @file
/// Colours of pictures.

#include <string>

namespace quilon {

/// sRGB, each part from 0 to 1.
struct Colour
{
  double red   = 0.0;
  double green = 0.0;
  double blue  = 0.0;
  double alpha = 1.0;  ///< 0 lets everything through
};

/// Reads "white", "black", "transparent", "#rrggbb" or "#rrggbbaa".
/// @throws FED_Failure for anything else
Colour ParseColour(const std::string& text);

/// @return whether dark letters are easier to read on it than bright ones; what is transparent counts as white
bool IsBright(const Colour& colour);

/// @return a colour between two, at 0 the first
Colour Blend(const Colour& first, const Colour& second, double position);

}  // namespace quilon
