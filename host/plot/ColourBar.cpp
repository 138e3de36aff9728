#include "plot/ColourBar.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "plot/Ticks.h"

namespace quilon {

namespace {

constexpr double kTickSize = 12.0;
constexpr double kNameSize = 13.0;

Ticks TicksFor(const ValueRange& range, double height)
{
  constexpr double kApart = 40.0;
  return MakeTicks(range.least, range.greatest, std::max(2, static_cast<int>(height / kApart)));
}

/// @return "× 10⁻³ mm"
std::string HeadOf(const Ticks& ticks, const std::string& unit)
{
  const std::string factor = ticks.GetFactor();
  return factor.empty() || unit.empty() ? factor + unit : factor + "\u2009" + unit;
}

}  // namespace

double ColourBar::GetWidth(const Canvas& canvas, double height) const
{
  const Ticks     ticks = TicksFor(scale.GetRange(), height);
  const TextStyle style{kTickSize, ink};
  double          width = canvas.GetTextWidth(name, {kNameSize, ink, true});
  width                 = std::max(width, canvas.GetTextWidth(HeadOf(ticks, unit), style));
  for (const Tick& tick : ticks.ticks) width = std::max(width, kWidth + 12.0 + canvas.GetTextWidth(tick.label, style));
  return width;
}

void ColourBar::Draw(Canvas& canvas, const Spot& corner, double height) const
{
  constexpr int kStops   = 64;
  const double  low      = scale.GetRange().least;
  const double  high     = scale.GetRange().greatest;
  const bool    isOne    = !(low < high);
  const auto    colourAt = [&](double share) { return scale.At(low + (high - low) * share); };
  const double  right    = corner.x + kWidth;
  const double  bottom   = corner.y + height;
  const double  point    = 0.6 * kWidth;

  std::vector<std::pair<double, Colour>> stops;
  for (int i = 0; i <= kStops; ++i) {
    const double share = static_cast<double>(i) / kStops;
    stops.emplace_back(share, colourAt(share));
  }
  canvas.FillGradient(corner, kWidth, height, stops);
  std::vector<Spot> outline = {{corner.x, corner.y}};
  if (isOpenAbove) outline.push_back({corner.x + 0.5 * kWidth, corner.y - point});
  outline.push_back({right, corner.y});
  if (isOpenAbove) canvas.FillPolygon(outline, colourAt(1.0));
  outline.push_back({right, bottom});
  std::vector<Spot> lower = {{right, bottom}, {corner.x, bottom}};
  if (isOpenBelow) {
    outline.push_back({corner.x + 0.5 * kWidth, bottom + point});
    lower.push_back({corner.x + 0.5 * kWidth, bottom + point});
    canvas.FillPolygon(lower, colourAt(0.0));
  }
  outline.push_back({corner.x, bottom});
  outline.push_back(outline.front());
  canvas.DrawLine(outline, {ink, 1.0, false});

  const Ticks ticks = TicksFor(scale.GetRange(), height);
  for (const Tick& tick : ticks.ticks) {
    const double share = isOne ? 0.5 : (tick.value - low) / (high - low);
    const double y     = bottom - height * share;
    canvas.DrawLine(std::array<Spot, 2>{{{right, y}, {right + 5.0, y}}}, {ink, 1.0, false});
    canvas.DrawText({right + 9.0, y + 0.36 * kTickSize}, tick.label, {kTickSize, ink});
  }
  const double      above = corner.y - (isOpenAbove ? point : 0.0) - 12.0;
  const std::string head  = HeadOf(ticks, unit);
  canvas.DrawText({corner.x, above - (head.empty() ? 0.0 : 18.0)}, name, {kNameSize, ink, true});
  canvas.DrawText({corner.x, above}, head, {kTickSize, ink});
}

}  // namespace quilon
