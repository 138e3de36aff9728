#pragma once

/// @file
/// A sheet to draw on, which becomes a picture file.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "plot/Colour.h"

namespace quilon {

enum class PictureFormat
{
  Png,
  Svg,
  Pdf
};

/// @return the format that the file's extension names
/// @throws FED_Failure "PATH: ..." for another extension
PictureFormat PictureFormatOf(const std::filesystem::path& path);

/// Width and height in pixels, or in points of vector formats.
struct PictureSize
{
  int width  = 1200;
  int height = 900;
};

/// Reads "WxH", 100x100 to 10000x10000.
/// @throws FED_Failure for anything else
PictureSize ParsePictureSize(const std::string& text);

/// Pixels from the top left, row by row: 0xAARRGGBB, the colours multiplied by alpha.
struct Bitmap
{
  int                        width  = 0;
  int                        height = 0;
  std::vector<std::uint32_t> pixels;  ///< shape [height, width]
};

struct Spot
{
  double x = 0.0;  ///< to the right
  double y = 0.0;  ///< down
};

/// Where a text stands about its point.
enum class Align
{
  Left,
  Centre,
  Right
};

struct TextStyle
{
  double size   = 13.0;
  Colour colour = {};
  bool   isBold = false;
  Align  align  = Align::Left;
  double angle  = 0.0;  ///< degrees, counterclockwise, about the point
};

struct LineStyle
{
  Colour colour   = {};
  double width    = 1.0;
  bool   isDashed = false;
};

/// A sheet whose point (0, 0) is the top left. What is drawn depends on nothing but the calls, and the same calls give
/// the same bytes. Texts are UTF-8.
///
/// A picture below 480 x 360 is a larger one, made smaller: texts that keep their size would leave no room for the
/// rest.
///
/// Errors: FED_Failure when the drawing library refuses, which it does without memory.
class Canvas
{
public:
  Canvas(PictureFormat format, const PictureSize& size, const Colour& background);
  Canvas(const Canvas&)            = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas();

  /// @return of the sheet, in units: that of the picture, or larger where that is small
  const PictureSize& GetSize() const noexcept { return size_; }
  const Colour&      GetBackground() const noexcept { return background_; }
  /// How many pixels of a bitmap go to a unit of length: more in vector formats, which are enlarged.
  int GetPixelsPerUnit() const noexcept;

  /// @param at the start, middle or end of the text's base line
  void   DrawText(const Spot& at, const std::string& text, const TextStyle& style);
  double GetTextWidth(const std::string& text, const TextStyle& style) const;

  /// A line that ends where it begins is closed.
  void DrawLine(std::span<const Spot> points, const LineStyle& style);
  void DrawRectangle(const Spot& corner, double width, double height, const LineStyle& style);
  void FillPolygon(std::span<const Spot> points, const Colour& colour);
  void FillCircle(const Spot& centre, double radius, const Colour& colour);
  void DrawCircle(const Spot& centre, double radius, const LineStyle& style);

  /// Fills a rectangle with colours that change from its bottom to its top.
  /// @param stops position from 0, the bottom, to 1 and colour, ascending
  void FillGradient(const Spot& corner, double width, double height, std::span<const std::pair<double, Colour>> stops);

  /// @param corner top left; the bitmap takes its size divided by GetPixelsPerUnit(), at most that
  void DrawBitmap(const Spot& corner, double width, double height, const Bitmap& bitmap);

  /// What is drawn until EndClip() shows only inside the rectangle.
  void BeginClip(const Spot& corner, double width, double height);
  void EndClip();

  /// @return the bytes of the picture file; nothing is drawn afterwards
  std::string Finish();

private:
  struct Drawing;

  PictureFormat            format_;
  PictureSize              size_;
  Colour                   background_;
  bool                     isReduced_ = false;
  std::unique_ptr<Drawing> drawing_;
};

}  // namespace quilon
