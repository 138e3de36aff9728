#include "plot/Series.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "text/Failure.h"

namespace quilon {

namespace {

/// Leaves room around one value, so that it has a place.
ChartExtent Widened(ChartExtent extent, const ChartAxis& axis)
{
  if (extent.least < extent.greatest) return extent;
  if (axis.isLogarithmic) return {extent.least / 10.0, extent.greatest * 10.0};
  const double half = axis.isOfIntegers || extent.least == 0.0 ? 1.0 : 0.1 * std::abs(extent.least);
  return {extent.least - half, extent.greatest + half};
}

}  // namespace

bool IsShown(const Chart& chart, double x, double y) noexcept
{
  return std::isfinite(x) && std::isfinite(y) && (!chart.x.isLogarithmic || x > 0.0) &&
         (!chart.y.isLogarithmic || y > 0.0);
}

ChartExtents::ChartExtents(const Chart& chart)
{
  bool isEmpty = true;
  for (const Series& series : chart.series)
    for (std::size_t i = 0; i < series.x.size(); ++i) {
      if (!IsShown(chart, series.x[i], series.y[i])) continue;
      if (isEmpty) {
        x = {series.x[i], series.x[i]};
        y = {series.y[i], series.y[i]};
      }
      isEmpty = false;
      x       = {std::min(x.least, series.x[i]), std::max(x.greatest, series.x[i])};
      y       = {std::min(y.least, series.y[i]), std::max(y.greatest, series.y[i])};
    }
  if (isEmpty) {
    const bool isLogarithmic = chart.x.isLogarithmic || chart.y.isLogarithmic;
    Fail(std::string("nothing to plot: expected at least one point whose numbers are finite") +
         (isLogarithmic ? ", and above 0 on a logarithmic axis" : ""));
  }
  x = Widened(x, chart.x);
  y = Widened(y, chart.y);
}

}  // namespace quilon
