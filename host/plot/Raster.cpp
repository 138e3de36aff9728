#include "plot/Raster.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quilon {

namespace {

constexpr float         kNothing   = -std::numeric_limits<float>::infinity();
constexpr std::uint32_t kOpaque    = 0xFF000000U;
constexpr std::uint32_t kNoValue   = 0xB4A7B4U;  // a NaN
constexpr int           kLightBits = 8;

std::uint32_t PixelOf(const Colour& colour)
{
  const auto byte = [](double part) { return static_cast<std::uint32_t>(std::lround(part * 255.0)); };
  return byte(colour.red) << 16U | byte(colour.green) << 8U | byte(colour.blue);
}

/// @param light in units of 2^-kLightBits
std::uint32_t Lit(std::uint32_t pixel, std::uint32_t light)
{
  const auto part = [&](unsigned shift) { return (((pixel >> shift) & 0xFFU) * light >> kLightBits) << shift; };
  return kOpaque | part(16) | part(8) | part(0);
}

std::uint32_t LightOf(double light)
{
  return static_cast<std::uint32_t>(std::lround(std::clamp(light, 0.0, 1.0) * (1 << kLightBits)));
}

/// A quantity that is linear in the place: value = origin + right * x + down * y.
struct Plane
{
  double origin = 0.0;
  double right  = 0.0;
  double down   = 0.0;

  double At(double x, double y) const noexcept { return origin + right * x + down * y; }
};

/// @param x, y of the corners
/// @param area twice that of the triangle, with its sign
Plane PlaneThrough(const std::array<double, 3>& x, const std::array<double, 3>& y, double area,
                   const std::array<double, 3>& values)
{
  Plane plane;
  plane.right  = ((values[1] - values[0]) * (y[2] - y[0]) - (values[2] - values[0]) * (y[1] - y[0])) / area;
  plane.down   = ((values[2] - values[0]) * (x[1] - x[0]) - (values[1] - values[0]) * (x[2] - x[0])) / area;
  plane.origin = values[0] - plane.right * x[0] - plane.down * y[0];
  return plane;
}

/// Where a row enters a triangle and leaves it: between the edges that it crosses; empty, the first beyond the second,
/// where it crosses none. An edge that two triangles share is crossed at the same place, computed from the same
/// numbers, and both draw a sample that lies on it: there are no gaps.
std::array<double, 2> CrossRow(const std::array<double, 3>& x, const std::array<double, 3>& y, int row)
{
  double left  = std::numeric_limits<double>::infinity();
  double right = -left;
  for (std::size_t i = 0; i < 3; ++i) {
    std::size_t a = i;
    std::size_t b = (i + 1) % 3;
    if (y[a] > y[b] || (y[a] == y[b] && x[a] > x[b])) std::swap(a, b);
    if (row < y[a] || row > y[b]) continue;
    const bool   isLevel = y[a] == y[b];
    const double share   = isLevel ? 0.0 : (row - y[a]) / (y[b] - y[a]);
    const double first   = x[a] + (x[b] - x[a]) * share;
    left                 = std::min(left, first);
    right                = std::max(right, isLevel ? x[b] : first);
  }
  return {left, right};
}

}  // namespace

Raster::Raster(int width, int height, int samples)
    : width_(width),
      height_(height),
      samples_(samples),
      columns_(width * samples),
      rows_(height * samples),
      depths_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_), kNothing),
      colours_(depths_.size(), 0),
      inks_(depths_.size(), 0)
{}

void Raster::DrawTriangle(const std::array<RasterPoint, 3>& points, const RasterPaint& paint)
{
  std::array<double, 3> x{};
  std::array<double, 3> y{};
  for (std::size_t i = 0; i < 3; ++i) {
    // Sample (i, j) lies at the integers (i, j) of this system.
    x[i] = points[i].x * samples_ - 0.5;
    y[i] = points[i].y * samples_ - 0.5;
  }
  const double area = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
  if (!(std::abs(area) > 1e-9)) return;
  const auto [top, bottom] = std::minmax({y[0], y[1], y[2]});
  if (!(bottom >= 0.0 && top <= rows_ - 1.0)) return;

  const Plane depth  = PlaneThrough(x, y, area, {points[0].depth, points[1].depth, points[2].depth});
  const Plane values = PlaneThrough(x, y, area, {points[0].value, points[1].value, points[2].value});
  const Plane sides  = PlaneThrough(x, y, area, {points[0].side, points[1].side, points[2].side});
  const bool  isCut  = points[0].side > 0.0 || points[1].side > 0.0 || points[2].side > 0.0;
  const bool  hasAll = paint.scale != nullptr && std::isfinite(values.origin + values.right + values.down);
  // Interpolated values stay within those of the corners, which rounding could leave.
  const auto [least, greatest] = std::minmax({points[0].value, points[1].value, points[2].value});
  const std::uint32_t light    = LightOf(paint.light);
  const std::uint32_t colour   = Lit(paint.scale == nullptr ? PixelOf(paint.colour) : kNoValue, light);

  const int firstRow = static_cast<int>(std::ceil(std::max(top, 0.0)));
  const int lastRow  = static_cast<int>(std::floor(std::min(bottom, rows_ - 1.0)));
  for (int row = firstRow; row <= lastRow; ++row) {
    const auto [left, right] = CrossRow(x, y, row);
    if (!(left <= columns_ - 1.0 && right >= 0.0)) continue;
    const int  first  = static_cast<int>(std::ceil(std::max(left, 0.0)));
    const int  last   = static_cast<int>(std::floor(std::min(right, columns_ - 1.0)));
    const auto offset = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_);
    for (int column = first; column <= last; ++column) {
      if (isCut && sides.At(column, row) > 0.0) continue;
      const std::size_t place = offset + static_cast<std::size_t>(column);
      const auto        near  = static_cast<float>(depth.At(column, row));
      if (!(near > depths_[place])) continue;
      depths_[place] = near;
      colours_[place] =
          hasAll ? Lit(paint.scale->PixelAt(std::clamp(values.At(column, row), least, greatest)), light) : colour;
    }
  }
}

/// Calls place(index, share) for the samples of a line, where share goes from 0 at its beginning to 1.
template <typename Place>
void Raster::Scan(const RasterPoint& from, const RasterPoint& to, double width, const Place& place) const
{
  double     x0      = from.x * samples_ - 0.5;
  double     y0      = from.y * samples_ - 0.5;
  double     x1      = to.x * samples_ - 0.5;
  double     y1      = to.y * samples_ - 0.5;
  const bool isSteep = std::abs(y1 - y0) > std::abs(x1 - x0);
  if (isSteep) {
    std::swap(x0, y0);
    std::swap(x1, y1);
  }
  const double length = x1 - x0;
  const double slope  = length == 0.0 ? 0.0 : (y1 - y0) / length;
  const double half   = 0.5 * width * samples_ * std::sqrt(1.0 + slope * slope);
  const int    most   = (isSteep ? rows_ : columns_) - 1;
  const int    wide   = (isSteep ? columns_ : rows_) - 1;
  // Half a width beyond its ends, so that lines that meet have no notch.
  const double beyond = 0.5 * width * samples_ / std::sqrt(1.0 + slope * slope);
  const double begin  = std::ceil(std::max(std::min(x0, x1) - beyond, 0.0));
  const double end    = std::floor(std::min(std::max(x0, x1) + beyond, static_cast<double>(most)));
  for (double step = begin; step <= end; ++step) {
    const double share  = length == 0.0 ? 0.0 : std::clamp((step - x0) / length, 0.0, 1.0);
    const double middle = y0 + (step - x0) * slope;
    const double first  = std::max(std::ceil(middle - half), 0.0);
    const double last   = std::min(std::ceil(middle + half) - 1.0, static_cast<double>(wide));
    for (double across = first; across <= last; ++across) {
      const auto column = static_cast<std::size_t>(isSteep ? across : step);
      const auto row    = static_cast<std::size_t>(isSteep ? step : across);
      place(row * static_cast<std::size_t>(columns_) + column, share);
    }
  }
}

void Raster::DrawRod(const RasterPoint& from, const RasterPoint& to, double width, const RasterPaint& paint)
{
  const std::uint32_t light  = LightOf(paint.light);
  const bool          hasAll = paint.scale != nullptr && std::isfinite(from.value + to.value);
  const std::uint32_t colour = Lit(paint.scale == nullptr ? PixelOf(paint.colour) : kNoValue, light);
  Scan(from, to, width, [&](std::size_t place, double share) {
    if (from.side + (to.side - from.side) * share > 0.0) return;
    const auto near = static_cast<float>(from.depth + (to.depth - from.depth) * share);
    if (!(near > depths_[place])) return;
    depths_[place]  = near;
    colours_[place] = hasAll ? Lit(paint.scale->PixelAt(from.value + (to.value - from.value) * share), light) : colour;
  });
}

void Raster::DrawLine(const RasterPoint& from, const RasterPoint& to, double width, const Colour& colour, double bias)
{
  const std::uint32_t pixel = PixelOf(colour);
  const auto          ink   = static_cast<std::uint8_t>(std::lround(colour.alpha * 255.0));
  Scan(from, to, width, [&](std::size_t place, double share) {
    if (from.side + (to.side - from.side) * share > 0.0 || ink <= inks_[place]) return;
    const auto near = static_cast<float>(from.depth + (to.depth - from.depth) * share + bias);
    if (!(near >= depths_[place])) return;
    // What is missing to this line's cover: lines before have left (255 - inks_) of what was there.
    const std::uint32_t left  = 255U - inks_[place];
    const std::uint32_t over  = (static_cast<std::uint32_t>(ink - inks_[place]) * 256U + left / 2) / left;  // of 256
    inks_[place]              = ink;
    const std::uint32_t below = colours_[place];
    const auto          mixed = [&](unsigned shift, std::uint32_t part) {
      return ((part * over + ((below >> shift) & 0xFFU) * (256U - over)) >> 8U) << shift;
    };
    // Colours are multiplied by alpha, which is that of the line where nothing else is.
    colours_[place] = mixed(24, 0xFFU) | mixed(16, (pixel >> 16U) & 0xFFU) | mixed(8, (pixel >> 8U) & 0xFFU) |
                      mixed(0, pixel & 0xFFU);
  });
}

std::optional<double> Raster::GetDepth(double x, double y) const
{
  const double column = std::floor(x);
  const double row    = std::floor(y);
  if (!(column >= 0.0 && row >= 0.0 && column < width_ && row < height_)) return std::nullopt;
  const auto samples = static_cast<std::size_t>(samples_);
  const auto left    = static_cast<std::size_t>(column) * samples;
  const auto top     = static_cast<std::size_t>(row) * samples;
  float      nearest = kNothing;
  for (std::size_t j = top; j < top + samples; ++j)
    for (std::size_t i = left; i < left + samples; ++i)
      nearest = std::max(nearest, depths_[j * static_cast<std::size_t>(columns_) + i]);
  if (nearest == kNothing) return std::nullopt;
  return nearest;
}

Bitmap Raster::Resolve() const
{
  Bitmap bitmap{width_, height_, {}};
  bitmap.pixels.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
  const auto samples = static_cast<std::size_t>(samples_);
  const auto columns = static_cast<std::size_t>(columns_);
  const auto count   = static_cast<std::uint32_t>(samples * samples);
  for (std::size_t row = 0; row < static_cast<std::size_t>(height_); ++row)
    for (std::size_t column = 0; column < static_cast<std::size_t>(width_); ++column) {
      std::array<std::uint32_t, 4> sums{};
      for (std::size_t j = row * samples; j < (row + 1) * samples; ++j)
        for (std::size_t i = column * samples; i < (column + 1) * samples; ++i) {
          const std::uint32_t colour = colours_[j * columns + i];
          for (unsigned part = 0; part < 4; ++part) sums[part] += (colour >> (8U * part)) & 0xFFU;
        }
      std::uint32_t pixel = 0;
      for (unsigned part = 0; part < 4; ++part) pixel |= ((sums[part] + count / 2) / count) << (8U * part);
      bitmap.pixels.push_back(pixel);
    }
  return bitmap;
}

}  // namespace quilon
