#include "plot/TextChart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <vector>

#include "plot/Ticks.h"

namespace quilon {

namespace {

constexpr std::size_t kDotsAcross = 2;  // of a character of Braille
constexpr std::size_t kDotsDown   = 4;

/// @return how many columns the text takes; no character of ours is wide
std::size_t WidthOf(const std::string& text)
{
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

void AppendCharacter(std::string& text, std::uint32_t code)
{
  text += static_cast<char>(0xE0U | code >> 12U);
  text += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
  text += static_cast<char>(0x80U | (code & 0x3FU));
}

/// Numbers in the letters of ASCII, for terminals that have no others.
std::string Plain(const std::string& text)
{
  std::string plain;
  for (std::size_t i = 0; i < text.size();) {
    if (text.compare(i, 3, "\u2212") == 0) {
      plain += '-';
      i += 3;
    } else {
      plain += text[i++];
    }
  }
  return plain;
}

/// A field of dots.
class Dots
{
public:
  Dots(std::size_t columns, std::size_t rows, bool isUnicode)
      : isUnicode_(isUnicode),
        across_(columns * (isUnicode ? kDotsAcross : 1)),
        down_(rows * (isUnicode ? kDotsDown : 1)),
        marks_(across_ * down_, 0)
  {}

  std::size_t Across() const noexcept { return across_; }
  std::size_t Down() const noexcept { return down_; }

  void Set(double x, double y, char mark)
  {
    if (!(x >= 0.0 && y >= 0.0)) return;
    const auto column = static_cast<std::size_t>(std::lround(x));
    const auto row    = static_cast<std::size_t>(std::lround(y));
    if (column < across_ && row < down_) marks_[row * across_ + column] = mark;
  }

  void Line(double x0, double y0, double x1, double y1, char mark)
  {
    const double steps = std::max(1.0, std::ceil(std::max(std::abs(x1 - x0), std::abs(y1 - y0))));
    for (double step = 0.0; step <= steps; ++step)
      Set(x0 + (x1 - x0) * step / steps, y0 + (y1 - y0) * step / steps, mark);
  }

  /// @return a line of characters
  std::string Row(std::size_t row) const
  {
    std::string text;
    if (!isUnicode_) {
      for (std::size_t column = 0; column < across_; ++column) {
        const char mark = marks_[row * across_ + column];
        text += mark == 0 ? ' ' : mark;
      }
      return text;
    }
    // Bits of U+2800 by column and row of the dot.
    constexpr std::array<std::array<std::uint32_t, kDotsDown>, kDotsAcross> kBits = {
        {{0x01, 0x02, 0x04, 0x40}, {0x08, 0x10, 0x20, 0x80}}};
    for (std::size_t column = 0; column < across_ / kDotsAcross; ++column) {
      std::uint32_t bits = 0;
      for (std::size_t i = 0; i < kDotsAcross; ++i)
        for (std::size_t j = 0; j < kDotsDown; ++j)
          if (marks_[(row * kDotsDown + j) * across_ + column * kDotsAcross + i] != 0) bits |= kBits[i][j];
      if (bits == 0)
        text += ' ';
      else
        AppendCharacter(text, 0x2800U + bits);
    }
    return text;
  }

private:
  bool              isUnicode_;
  std::size_t       across_;
  std::size_t       down_;
  std::vector<char> marks_;  // shape [down_, across_]; 0 where nothing is
};

double Mapped(double value, bool isLogarithmic) { return isLogarithmic ? std::log10(value) : value; }

/// Where a number lies between the ends of an axis, from 0 to 1.
double ShareOf(double value, const ChartExtent& extent, bool isLogarithmic)
{
  const double least = Mapped(extent.least, isLogarithmic);
  return (Mapped(value, isLogarithmic) - least) / (Mapped(extent.greatest, isLogarithmic) - least);
}

char LetterOf(std::size_t series) { return static_cast<char>('a' + series % 26); }

std::string NumberText(double value, bool isUnicode)
{
  if (isUnicode) return PrintedNumber(value, 5);
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.5g", value);
  return text.data();
}

void PlotSeries(const Chart& chart, const Series& series, const ChartExtents& extents, char mark, Dots& dots)
{
  const double right  = static_cast<double>(dots.Across() - 1);
  const double down   = static_cast<double>(dots.Down() - 1);
  bool         hasOne = false;
  double       lastX  = 0.0;
  double       lastY  = 0.0;
  for (std::size_t i = 0; i < series.x.size(); ++i) {
    if (!IsShown(chart, series.x[i], series.y[i])) {
      hasOne = false;
      continue;
    }
    const double x = right * ShareOf(series.x[i], extents.x, chart.x.isLogarithmic);
    const double y = down * (1.0 - ShareOf(series.y[i], extents.y, chart.y.isLogarithmic));
    dots.Line(hasOne ? lastX : x, hasOne ? lastY : y, x, y, mark);
    hasOne = true;
    lastX  = x;
    lastY  = y;
  }
}

/// A line a series.
std::string LegendOf(const Chart& chart, bool isUnicode)
{
  std::string text;
  for (std::size_t i = 0; i < chart.series.size(); ++i) {
    const Series& series = chart.series[i];
    text += (isUnicode ? std::string("  ") : "  " + std::string(1, LetterOf(i)) + "  ") + series.name;
    const auto last =
        std::find_if(series.y.rbegin(), series.y.rend(), [](double value) { return std::isfinite(value); });
    if (last != series.y.rend()) text += "  ends at " + NumberText(*last, isUnicode);
    text += '\n';
  }
  return text;
}

}  // namespace

std::string DrawTextChart(const Chart& chart, const TextChartStyle& style)
{
  const ChartExtents extents(chart);
  // An odd number has a middle line, whose label is a plain half.
  const auto height  = static_cast<std::size_t>(std::max(style.height, 5)) | 1U;
  const auto printed = [&](const std::string& text) { return style.isUnicode ? text : Plain(text); };
  const auto number  = [&](double value) { return NumberText(value, style.isUnicode); };

  // Labels of the top, the middle and the bottom line.
  std::vector<std::string> labels(height);
  const auto               valueAt = [&](double share) {
    const double least    = Mapped(extents.y.least, chart.y.isLogarithmic);
    const double greatest = Mapped(extents.y.greatest, chart.y.isLogarithmic);
    const double value    = least + (greatest - least) * share;
    return chart.y.isLogarithmic ? std::pow(10.0, value) : value;
  };
  const std::size_t middle = height / 2;
  labels.front()           = number(extents.y.greatest);
  labels[middle]           = number(valueAt(0.5));
  labels.back()            = number(extents.y.least);
  std::size_t widest       = 0;
  for (const std::string& label : labels) widest = std::max(widest, WidthOf(label));
  const auto width   = static_cast<std::size_t>(std::max(style.width, 20));
  const auto columns = width > widest + 12 ? width - widest - 2 : std::size_t{10};

  Dots dots(columns, height, style.isUnicode);
  for (std::size_t i = 0; i < chart.series.size(); ++i)
    PlotSeries(chart, chart.series[i], extents, chart.series.size() > 1 ? LetterOf(i) : '*', dots);

  const std::string bar   = style.isUnicode ? "\u2502" : "|";
  const std::string dash  = style.isUnicode ? "\u2500" : "-";
  const std::string angle = style.isUnicode ? "\u2514" : "+";
  std::string       text;
  if (!chart.title.empty()) text += chart.title + '\n';
  if (!chart.y.title.empty()) text += printed(chart.y.title) + '\n';
  for (std::size_t row = 0; row < height; ++row) {
    text += std::string(widest - WidthOf(labels[row]), ' ') + labels[row] + ' ' + bar + dots.Row(row);
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
  }
  text += std::string(widest + 1, ' ') + angle;
  for (std::size_t i = 0; i < columns; ++i) text += dash;
  text += '\n';
  const std::string least    = number(extents.x.least);
  const std::string greatest = number(extents.x.greatest);
  const std::size_t ends     = WidthOf(least) + WidthOf(greatest);
  std::string       between  = printed(chart.x.title);
  if (ends + WidthOf(between) + 2 > columns) between.clear();
  const std::size_t blanks = columns > ends + WidthOf(between) ? columns - ends - WidthOf(between) : 1;
  text += std::string(widest + 2, ' ') + least + std::string(blanks / 2, ' ') + between +
          std::string(blanks - blanks / 2, ' ') + greatest + '\n';
  return chart.series.size() > 1 ? text + LegendOf(chart, style.isUnicode) : text;
}

std::string DrawSparkline(std::span<const double> values, std::size_t width, bool isUnicode)
{
  constexpr int  kHeights   = 8;
  constexpr char kLetters[] = "_.-:=+*#";
  double         least      = std::numeric_limits<double>::infinity();
  double         greatest   = -least;
  double         mean       = 0.0;
  for (const double value : values) {
    if (!std::isfinite(value)) continue;
    least    = std::min(least, value);
    greatest = std::max(greatest, value);
    mean += value / static_cast<double>(values.size());
  }
  // Halves first: the difference of two finite numbers may be none.
  const double      half   = 0.5 * greatest - 0.5 * least;
  const std::size_t places = std::min(width, values.size());
  std::string       line;
  for (std::size_t place = 0; place < places; ++place) {
    const std::size_t first = place * values.size() / places;
    const std::size_t last  = (place + 1) * values.size() / places;
    double            shown = std::numeric_limits<double>::quiet_NaN();
    for (std::size_t i = first; i < last; ++i) {
      if (!std::isfinite(values[i])) continue;
      if (std::isnan(shown) || std::abs(0.5 * values[i] - 0.5 * mean) > std::abs(0.5 * shown - 0.5 * mean))
        shown = values[i];
    }
    if (std::isnan(shown)) {
      line += ' ';
      continue;
    }
    const double share  = half > 0.0 ? (0.5 * shown - 0.5 * least) / half : 0.0;
    const int    height = std::clamp(static_cast<int>(share * kHeights), 0, kHeights - 1);
    if (isUnicode)
      AppendCharacter(line, 0x2581U + static_cast<std::uint32_t>(height));
    else
      line += kLetters[height];
  }
  return line;
}

}  // namespace quilon
