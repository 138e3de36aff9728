#pragma once

/// @file
/// Pictures read back.

#include <cstddef>
#include <cstdint>
#include <string>

#include "plot/Canvas.h"

namespace quilon_test {

/// @return the pixels of a PNG
quilon::Bitmap ReadPng(const std::string& bytes);

/// @return the pixel as 0xAARRGGBB
inline std::uint32_t PixelAt(const quilon::Bitmap& bitmap, double x, double y)
{
  return bitmap.pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap.width) +
                          static_cast<std::size_t>(x));
}

}  // namespace quilon_test
