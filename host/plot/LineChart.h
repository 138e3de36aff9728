#pragma once

/// @file
/// Line charts as picture files.

#include <string>

#include "plot/Canvas.h"
#include "plot/Series.h"

namespace quilon {

struct ChartStyle
{
  PictureSize size       = {900, 600};
  Colour      background = {1, 1, 1, 1};
};

/// Draws a chart: axes with round ticks, a faint grid, a legend where there are several series.
/// @return the bytes of the file
/// @throws FED_Failure when there is nothing to draw
std::string DrawLineChart(const Chart& chart, PictureFormat format, const ChartStyle& style = {});

/// The colour of the n-th series: told apart by people who see few colours, on white and on black.
/// @param index from 0; they come round again
Colour SeriesColour(std::size_t index);

}  // namespace quilon
