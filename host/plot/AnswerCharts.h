#pragma once

/// @file
/// Answers as charts.

#include <string>
#include <vector>

#include "answers/History.h"
#include "answers/Path.h"
#include "plot/Series.h"

namespace quilon {

class StepTimes;

/// Values over time; over the position of the step where a point of a series has no time.
/// @param names    of the series, for the legend; shape as series
/// @param timeName what times are called
Chart MakeHistoryChart(const std::vector<HistorySeries>& series, const std::vector<std::string>& names,
                       const std::string& timeName);

/// Values along a line, a series a column of each step. Where there is no value the line is interrupted.
Chart MakePathChart(const PathReport& report, const StepTimes& times);

}  // namespace quilon
