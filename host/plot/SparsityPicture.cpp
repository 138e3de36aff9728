#include "plot/SparsityPicture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "plot/Ticks.h"
#include "progress/Interrupt.h"

namespace quilon {

namespace {

/// @return a pixel that the ink covers by a share
std::uint32_t Covered(double share)
{
  constexpr Colour kInk{0.10, 0.20, 0.45, 1};
  const auto byte = [share](double part) { return static_cast<std::uint32_t>(std::lround(part * share * 255.0)); };
  return byte(1.0) << 24U | byte(kInk.red) << 16U | byte(kInk.green) << 8U | byte(kInk.blue);
}

/// Fills a bitmap that the matrix is spread over.
Bitmap SpreadMatrix(const matrix::RowView& rows, int width, int height)
{
  const auto                 w = static_cast<std::int64_t>(width);
  const auto                 h = static_cast<std::int64_t>(height);
  std::vector<std::uint32_t> counts(static_cast<std::size_t>(w * h), 0);
  // A place of a matrix smaller than the bitmap covers several pixels, one of a larger matrix a part of one.
  const auto firstOf = [](std::int64_t place, std::int64_t count, std::int64_t pixels) {
    return place * pixels / count;
  };
  const auto lastOf = [&](std::int64_t place, std::int64_t count, std::int64_t pixels) {
    return std::max(firstOf(place + 1, count, pixels) - 1, firstOf(place, count, pixels));
  };
  for (std::int64_t row = 0; row < rows.NumRows(); ++row) {
    ThrowIfInterrupted();
    const std::int64_t top    = firstOf(row, rows.NumRows(), h);
    const std::int64_t bottom = lastOf(row, rows.NumRows(), h);
    for (std::int64_t at = rows.Begin(row); at < rows.Begin(row + 1); ++at) {
      if (rows.Value(at) == 0.0) continue;
      const std::int64_t left  = firstOf(rows.Column(at), rows.NumColumns(), w);
      const std::int64_t right = lastOf(rows.Column(at), rows.NumColumns(), w);
      for (std::int64_t y = top; y <= bottom; ++y)
        for (std::int64_t x = left; x <= right; ++x) ++counts[static_cast<std::size_t>(y * w + x)];
    }
  }
  const double places = std::max(1.0, static_cast<double>(rows.NumRows()) / height) *
                        std::max(1.0, static_cast<double>(rows.NumColumns()) / width);
  Bitmap bitmap{width, height, {}};
  bitmap.pixels.reserve(counts.size());
  for (const std::uint32_t count : counts) {
    // The root keeps single values of large matrices visible.
    constexpr double kLeast = 0.25;
    const double     share  = count == 0 ? 0.0 : std::clamp(std::sqrt(count / places), kLeast, 1.0);
    bitmap.pixels.push_back(Covered(share));
  }
  return bitmap;
}

}  // namespace

std::string DrawSparsity(const matrix::RowView& rows, const std::string& title, PictureFormat format,
                         const PictureSize& size, const Colour& background)
{
  constexpr double kSide = 64.0;
  constexpr double kTop  = 76.0;
  Canvas           canvas(format, size, background);
  const Colour     ink        = IsBright(background) ? Colour{0.13, 0.13, 0.15, 1} : Colour{0.92, 0.92, 0.94, 1};
  const auto       numRows    = static_cast<double>(std::max<std::int64_t>(rows.NumRows(), 1));
  const auto       numColumns = static_cast<double>(std::max<std::int64_t>(rows.NumColumns(), 1));
  const double     roomX      = std::max(10.0, canvas.GetSize().width - kSide - 24.0);
  const double     roomY      = std::max(10.0, canvas.GetSize().height - kTop - 24.0);
  const double     unit       = std::min(roomX / numColumns, roomY / numRows);
  const double     width      = std::max(1.0, std::floor(unit * numColumns));
  const double     height     = std::max(1.0, std::floor(unit * numRows));
  const int        ppu        = canvas.GetPixelsPerUnit();

  canvas.DrawText({kSide, 28.0}, title, {16.0, ink, true});
  if (!IsBright(background)) {
    // The dots are dark.
    const Spot corners[] = {
        {kSide, kTop}, {kSide + width, kTop}, {kSide + width, kTop + height}, {kSide, kTop + height}};
    canvas.FillPolygon(corners, {1, 1, 1, 1});
  }
  canvas.DrawBitmap({kSide, kTop}, width, height,
                    SpreadMatrix(rows, static_cast<int>(width) * ppu, static_cast<int>(height) * ppu));
  canvas.DrawRectangle({kSide - 0.5, kTop - 0.5}, width + 1.0, height + 1.0, {ink, 1.0, false});

  // Rows and columns count from 1, as in files; the middle of a row is half of it below its top.
  const auto ticksFor = [](double count, double length) {
    return MakeTicks(1.0, std::max(count, 1.0), std::max(2, static_cast<int>(length / 70.0)));
  };
  const auto isWhole = [](const Tick& tick) { return std::remainder(tick.value, 1.0) == 0.0; };
  for (const Tick& tick : ticksFor(numColumns, width).ticks) {
    if (!isWhole(tick)) continue;
    const double x       = kSide + (tick.value - 0.5) / numColumns * width;
    const Spot   mark[2] = {{x, kTop - 1.0}, {x, kTop - 6.0}};
    canvas.DrawLine(mark, {ink, 1.0, false});
    canvas.DrawText({x, kTop - 10.0}, PrintedNumber(tick.value, 9), {12.0, ink, false, Align::Centre});
  }
  for (const Tick& tick : ticksFor(numRows, height).ticks) {
    if (!isWhole(tick)) continue;
    const double y       = kTop + (tick.value - 0.5) / numRows * height;
    const Spot   mark[2] = {{kSide - 1.0, y}, {kSide - 6.0, y}};
    canvas.DrawLine(mark, {ink, 1.0, false});
    canvas.DrawText({kSide - 10.0, y + 4.3}, PrintedNumber(tick.value, 9), {12.0, ink, false, Align::Right});
  }
  return canvas.Finish();
}

}  // namespace quilon
