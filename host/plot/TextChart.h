#pragma once

/// @file
/// Charts of characters, for terminals.

#include <cstddef>
#include <span>
#include <string>

#include "plot/Series.h"

namespace quilon {

struct TextChartStyle
{
  int  width     = 80;    ///< columns of the terminal
  int  height    = 19;    ///< lines of the field of the chart, odd: an even one gets one more
  bool isUnicode = true;  ///< dots of Braille, eight a character; else a letter a point
};

/// @return a line chart, a line of text a line of the terminal, each ended by a line feed. Lines of several series are
///         told apart in the legend by the order of their ends, without Unicode by their letters.
/// @throws FED_Failure when there is nothing to draw
std::string DrawTextChart(const Chart& chart, const TextChartStyle& style = {});

/// @param width of the line in characters, at least 1; several values behind a character are shown by the one that is
///              farthest from the mean of all, so that no peak is lost
/// @return the values as a line of bars: eight heights from the least to the greatest, all low where they are equal, a
///         blank for what is no finite number
std::string DrawSparkline(std::span<const double> values, std::size_t width, bool isUnicode = true);

}  // namespace quilon
