#include "plot/Colour.h"

#include <charconv>
#include <cmath>
#include <cstddef>

#include "text/Case.h"
#include "text/Failure.h"

namespace quilon {

namespace {

/// @return the part that two hexadecimal digits give
double PartOf(const std::string& text, std::size_t first)
{
  int        value = 0;
  const auto taken = std::from_chars(text.data() + first, text.data() + first + 2, value, 16);
  return taken.ec == std::errc() && taken.ptr == text.data() + first + 2 && value >= 0 ? value / 255.0 : -1.0;
}

}  // namespace

Colour ParseColour(const std::string& text)
{
  const std::string name = LowerCase(text);
  if (name == "white") return {1.0, 1.0, 1.0, 1.0};
  if (name == "black") return {0.0, 0.0, 0.0, 1.0};
  if (name == "transparent") return {1.0, 1.0, 1.0, 0.0};
  if (name.starts_with('#') && (name.size() == 7 || name.size() == 9)) {
    const Colour colour{PartOf(name, 1), PartOf(name, 3), PartOf(name, 5), name.size() == 9 ? PartOf(name, 7) : 1.0};
    if (colour.red >= 0.0 && colour.green >= 0.0 && colour.blue >= 0.0 && colour.alpha >= 0.0) return colour;
  }
  Fail("'" + text + "' is no colour, expected white, black, transparent, #rrggbb or #rrggbbaa");
}

bool IsBright(const Colour& colour)
{
  // Luminance as ITU-R BT.709 weighs it, over white where the colour lets light through.
  const double luminance = 0.2126 * colour.red + 0.7152 * colour.green + 0.0722 * colour.blue;
  return luminance * colour.alpha + (1.0 - colour.alpha) > 0.5;
}

Colour Blend(const Colour& first, const Colour& second, double position)
{
  const auto between = [position](double a, double b) { return a + (b - a) * position; };
  return {between(first.red, second.red), between(first.green, second.green), between(first.blue, second.blue),
          between(first.alpha, second.alpha)};
}

}  // namespace quilon
