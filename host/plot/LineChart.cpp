#include "plot/LineChart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "plot/Ticks.h"

namespace quilon {

namespace {

constexpr double kTextSize  = 12.0;
constexpr double kTitleSize = 16.0;

/// An axis with its ticks, and where its numbers are on the sheet.
class PlacedAxis
{
public:
  /// @param from, to of the sheet, where the axis begins and ends
  PlacedAxis(const ChartAxis& axis, ChartExtent extent, int maxTicks, bool isRounded) : axis_(axis), extent_(extent)
  {
    if (axis.isLogarithmic) {
      if (isRounded) {
        // Whole decades, so that both ends are labelled.
        extent_ = {std::pow(10.0, std::floor(std::log10(extent.least) + 1e-9)),
                   std::pow(10.0, std::ceil(std::log10(extent.greatest) - 1e-9))};
        if (!(extent_.least < extent_.greatest)) extent_.greatest *= 10.0;
      }
      ticks_ = MakeLogarithmicTicks(extent_.least, extent_.greatest, maxTicks);
      return;
    }
    if (isRounded) {
      const double margin = 0.04 * (extent.greatest - extent.least);
      // What begins at zero stays there.
      extent_ = {extent.least == 0.0 ? 0.0 : extent.least - margin,
                 extent.greatest == 0.0 ? 0.0 : extent.greatest + margin};
    }
    ticks_ = MakeTicks(extent_.least, extent_.greatest, maxTicks);
    if (axis.isOfIntegers)
      std::erase_if(ticks_.ticks, [](const Tick& tick) { return std::remainder(tick.value, 1.0) != 0.0; });
    if (axis.isOfIntegers)
      for (Tick& tick : ticks_.ticks)
        if (ticks_.exponent == 0) tick.label = PrintedNumber(tick.value, 9);
  }

  void Place(double from, double to)
  {
    from_ = from;
    to_   = to;
  }

  double At(double value) const
  {
    const auto   map   = [this](double number) { return axis_.isLogarithmic ? std::log10(number) : number; };
    const double share = (map(value) - map(extent_.least)) / (map(extent_.greatest) - map(extent_.least));
    return from_ + (to_ - from_) * share;
  }

  const std::vector<Tick>& GetTicks() const noexcept { return ticks_.ticks; }

  /// @return the title with the power of ten that labels are in
  std::string GetTitle() const
  {
    const std::string factor = ticks_.GetFactor();
    return factor.empty() ? axis_.title : axis_.title + (axis_.title.empty() ? "" : "  ") + "(" + factor + ")";
  }

private:
  const ChartAxis& axis_;
  ChartExtent      extent_;
  Ticks            ticks_;
  double           from_ = 0.0;
  double           to_   = 1.0;
};

struct Frame
{
  double left, top, right, bottom;

  double Width() const { return right - left; }
  double Height() const { return bottom - top; }
};

class ChartDrawing
{
public:
  ChartDrawing(const Chart& chart, PictureFormat format, const ChartStyle& style)
      : chart_(chart),
        extents_(chart),
        canvas_(format, style.size, style.background),
        ink_(IsBright(style.background) ? Colour{0.13, 0.13, 0.15, 1} : Colour{0.92, 0.92, 0.94, 1}),
        faint_(IsBright(style.background) ? Colour{0.88, 0.88, 0.90, 1} : Colour{0.22, 0.22, 0.24, 1}),
        x_(chart.x, extents_.x, std::max(2, canvas_.GetSize().width / 110), false),
        y_(chart.y, extents_.y, std::max(2, canvas_.GetSize().height / 55), true)
  {}

  std::string Run()
  {
    FindFrame();
    DrawGrid();
    // Dots on the edge are whole.
    constexpr double kDot = 4.0;
    canvas_.BeginClip({frame_.left - kDot, frame_.top - kDot}, frame_.Width() + 2 * kDot, frame_.Height() + 2 * kDot);
    for (std::size_t i = 0; i < chart_.series.size(); ++i) DrawSeries(chart_.series[i], SeriesColour(i));
    canvas_.EndClip();
    // The frame lies over lines that run along it.
    canvas_.DrawRectangle({frame_.left, frame_.top}, frame_.Width(), frame_.Height(), {ink_, 1.0, false});
    if (HasLegend()) DrawLegend();
    return canvas_.Finish();
  }

private:
  bool HasLegend() const { return chart_.series.size() > 1; }

  TextStyle Style(double size = kTextSize, Align align = Align::Left, bool isBold = false) const
  {
    return {size, ink_, isBold, align};
  }

  double LegendWidth() const
  {
    double widest = 0.0;
    for (const Series& series : chart_.series) widest = std::max(widest, canvas_.GetTextWidth(series.name, Style()));
    return std::min(widest + 36.0, 0.4 * canvas_.GetSize().width);
  }

  void FindFrame()
  {
    double widest = 0.0;
    for (const Tick& tick : y_.GetTicks()) widest = std::max(widest, canvas_.GetTextWidth(tick.label, Style()));
    const double width  = canvas_.GetSize().width;
    const double height = canvas_.GetSize().height;
    frame_.left         = std::floor(16.0 + widest + 10.0 + (y_.GetTitle().empty() ? 0.0 : 20.0)) + 0.5;
    frame_.top          = chart_.title.empty() ? 16.5 : 44.5;
    frame_.right        = std::floor(width - (HasLegend() ? LegendWidth() + 16.0 : 24.0)) + 0.5;
    frame_.bottom       = std::floor(height - (x_.GetTitle().empty() ? 32.0 : 52.0)) + 0.5;
    // Points at the ends are whole, and the first label is not below the corner.
    constexpr double kInset = 8.0;
    x_.Place(frame_.left + kInset, frame_.right - kInset);
    y_.Place(frame_.bottom, frame_.top);
  }

  void DrawGrid()
  {
    for (const Tick& tick : x_.GetTicks()) {
      const double x = std::floor(x_.At(tick.value)) + 0.5;
      canvas_.DrawLine(std::array<Spot, 2>{{{x, frame_.top}, {x, frame_.bottom}}}, {faint_, 1.0, false});
      canvas_.DrawText({x, frame_.bottom + 18.0}, tick.label, Style(kTextSize, Align::Centre));
    }
    for (const Tick& tick : y_.GetTicks()) {
      const double y      = std::floor(y_.At(tick.value)) + 0.5;
      const bool   isZero = tick.value == 0.0 && !chart_.y.isLogarithmic;
      canvas_.DrawLine(std::array<Spot, 2>{{{frame_.left, y}, {frame_.right, y}}},
                       {isZero ? Blend(faint_, ink_, 0.4) : faint_, 1.0, false});
      canvas_.DrawText({frame_.left - 8.0, y + 0.36 * kTextSize}, tick.label, Style(kTextSize, Align::Right));
    }
    for (const double divider : chart_.dividers) {
      if (!(divider > extents_.x.least && divider < extents_.x.greatest)) continue;
      const double x = std::floor(x_.At(divider)) + 0.5;
      canvas_.DrawLine(std::array<Spot, 2>{{{x, frame_.top}, {x, frame_.bottom}}},
                       {Blend(faint_, ink_, 0.5), 1.0, true});
    }
    const double middle = 0.5 * (frame_.left + frame_.right);
    canvas_.DrawText({middle, frame_.bottom + 40.0}, x_.GetTitle(), Style(kTextSize + 1.0, Align::Centre));
    TextStyle turned = Style(kTextSize + 1.0, Align::Centre);
    turned.angle     = 90.0;
    canvas_.DrawText({20.0, 0.5 * (frame_.top + frame_.bottom)}, y_.GetTitle(), turned);
    if (!chart_.title.empty())
      canvas_.DrawText({frame_.left, 28.0}, chart_.title, Style(kTitleSize, Align::Left, true));
  }

  void DrawSeries(const Series& series, const Colour& colour)
  {
    std::vector<Spot> line;
    const auto        finish = [&] {
      if (line.size() > 1) canvas_.DrawLine(line, {colour, 2.0, false});
      if (chart_.hasDots || line.size() == 1)
        for (const Spot& spot : line) canvas_.FillCircle(spot, 3.0, colour);
      line.clear();
    };
    for (std::size_t i = 0; i < series.x.size(); ++i) {
      if (IsShown(chart_, series.x[i], series.y[i]))
        line.push_back({x_.At(series.x[i]), y_.At(series.y[i])});
      else
        finish();
    }
    finish();
  }

  /// To the right of the frame, as many lines as have room.
  void DrawLegend()
  {
    constexpr double kRow   = 20.0;
    const double     left   = frame_.right + 14.0;
    const auto       room   = static_cast<std::size_t>(std::max(1.0, std::floor(frame_.Height() / kRow)));
    const bool       hasAll = chart_.series.size() <= room;
    const auto       shown  = hasAll ? chart_.series.size() : room - 1;
    double           y      = frame_.top + 12.0;
    for (std::size_t i = 0; i < shown; ++i, y += kRow) {
      canvas_.DrawLine(std::array<Spot, 2>{{{left, y - 4.0}, {left + 16.0, y - 4.0}}}, {SeriesColour(i), 2.5, false});
      canvas_.DrawText({left + 22.0, y}, chart_.series[i].name, Style());
    }
    if (!hasAll) canvas_.DrawText({left, y}, std::to_string(chart_.series.size() - shown) + " more", Style());
  }

  const Chart&       chart_;
  const ChartExtents extents_;
  Canvas             canvas_;
  Colour             ink_;
  Colour             faint_;
  PlacedAxis         x_;
  PlacedAxis         y_;
  Frame              frame_{0, 0, 0, 0};
};

}  // namespace

Colour SeriesColour(std::size_t index)
{
  // M. Okabe and K. Ito, Color Universal Design (2008), without black and with the yellow last: it is faint on white.
  constexpr std::array<Colour, 7> kColours = {{{0.000, 0.447, 0.698, 1},
                                               {0.835, 0.369, 0.000, 1},
                                               {0.000, 0.620, 0.451, 1},
                                               {0.800, 0.475, 0.655, 1},
                                               {0.337, 0.706, 0.914, 1},
                                               {0.902, 0.624, 0.000, 1},
                                               {0.780, 0.720, 0.150, 1}}};
  return kColours[index % kColours.size()];
}

std::string DrawLineChart(const Chart& chart, PictureFormat format, const ChartStyle& style)
{
  return ChartDrawing(chart, format, style).Run();
}

}  // namespace quilon
