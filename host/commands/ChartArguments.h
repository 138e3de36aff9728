#pragma once

/// @file
/// The options of every command that draws a chart of what it tells.

#include <array>
#include <string>

#include "plot/Series.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace quilon {

struct CommandContext;

struct ChartOptions
{
  std::string file;  ///< empty: no chart; "-": on the terminal

  bool IsAsked() const noexcept { return !file.empty(); }
};

/// Adds --plot. The options outlive the parsing.
/// @param tables what it excludes, see AddTableOptions()
void AddChartOption(CLI::App& app, ChartOptions& options, const std::array<CLI::Option*, 3>& tables);

/// To be called before long work.
/// @throws FED_Failure for a file that is no picture or cannot be written
void CheckChart(const ChartOptions& options);

/// Draws the chart into its file or on standard output.
/// @throws FED_Failure when there is nothing to draw, and as OutputFile does
void WriteChart(const Chart& chart, const ChartOptions& options, CommandContext& context);

}  // namespace quilon
