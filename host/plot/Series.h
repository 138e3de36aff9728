#pragma once

/// @file
/// What a chart shows.

#include <string>
#include <vector>

namespace quilon {

/// A line of a chart. A NaN in x or y interrupts it; so do numbers that are not above 0 on a logarithmic axis.
struct Series
{
  std::string         name;  ///< in the legend
  std::vector<double> x;
  std::vector<double> y;  ///< shape as x
};

struct ChartAxis
{
  std::string title;
  bool        isLogarithmic = false;
  bool        isOfIntegers  = false;  ///< ticks at integers alone, as for counts
};

/// A line chart, however it is drawn.
struct Chart
{
  std::string         title;
  ChartAxis           x;
  ChartAxis           y;
  std::vector<Series> series;
  std::vector<double> dividers;  ///< places along x with a thin line from bottom to top, such as where steps begin
  bool                hasDots = false;  ///< a dot at each point; lines of a single point have one anyway
};

/// Least and greatest number that a chart shows along an axis.
struct ChartExtent
{
  double least    = 0.0;
  double greatest = 1.0;
};

/// The extents of both axes; of one value or none something around it.
/// @throws FED_Failure when no series has a point that can be shown
struct ChartExtents
{
  explicit ChartExtents(const Chart& chart);

  ChartExtent x;
  ChartExtent y;
};

/// @return whether the point can be shown on these axes
bool IsShown(const Chart& chart, double x, double y) noexcept;

}  // namespace quilon
