#pragma once

/// @file
/// Triangles and lines in space as pixels: the nearest shows.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "plot/Canvas.h"
#include "plot/ColourScale.h"

namespace quilon {

/// A corner of what is drawn.
struct RasterPoint
{
  double x     = 0.0;   ///< pixels to the right
  double y     = 0.0;   ///< pixels down
  double depth = 0.0;   ///< pixels toward who looks
  double value = 0.0;   ///< of a field; unused where a colour is given
  double side  = -1.0;  ///< what lies at a positive one is cut away
};

/// How a face or a line gets its colour.
struct RasterPaint
{
  const ColourScale* scale  = nullptr;  ///< by value; null: the colour
  Colour             colour = {};
  double             light  = 1.0;  ///< 0 dark to 1 as the colour is
};

/// A picture with depth. Each pixel is sampled at several places, at each of which the nearest face wins; of faces at
/// one depth the first. Values are interpolated, and coloured afterwards, per sample. A NaN among the values of a face
/// paints it in a grey that no scale has.
///
/// Lines lie on top of faces that they belong to: a line shows when nothing is nearer by more than its bias.
class Raster
{
public:
  /// @param width, height in pixels, at least 1
  /// @param samples along each side of a pixel, at least 1
  Raster(int width, int height, int samples);

  void DrawTriangle(const std::array<RasterPoint, 3>& points, const RasterPaint& paint);

  /// A line that hides what lies behind it, as a beam does.
  /// @param width in pixels
  void DrawRod(const RasterPoint& from, const RasterPoint& to, double width, const RasterPaint& paint);

  /// A line over faces. To be called when all faces are drawn. Where faint lines of one colour overlap they are as
  /// faint as the darkest of them.
  /// @param width   in pixels
  /// @param bias    in pixels: what is nearer by less does not hide the line
  void DrawLine(const RasterPoint& from, const RasterPoint& to, double width, const Colour& colour, double bias);

  /// @return how near the nearest face at a pixel is, of all its samples; nothing where there is none
  std::optional<double> GetDepth(double x, double y) const;

  /// @return the picture; what nothing was drawn on is transparent
  Bitmap Resolve() const;

private:
  template <typename Place>
  void Scan(const RasterPoint& from, const RasterPoint& to, double width, const Place& place) const;

  int                        width_;
  int                        height_;
  int                        samples_;
  int                        columns_;  // samples in a row
  int                        rows_;
  std::vector<float>         depths_;   // shape [rows_, columns_]; -infinity where nothing is
  std::vector<std::uint32_t> colours_;  // shape as depths_: 0xAARRGGBB
  std::vector<std::uint8_t>  inks_;     // shape as depths_: how much of a sample lines have covered, of 255
};

}  // namespace quilon
