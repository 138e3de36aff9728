#pragma once

/// @file
/// Answers as charts.

#include "answers/Path.h"
#include "plot/Series.h"

namespace quilon {

class StepTimes;

/// Values along a line, a series a column of each step. Where there is no value the line is interrupted.
Chart MakePathChart(const PathReport& report, const StepTimes& times);

}  // namespace quilon
