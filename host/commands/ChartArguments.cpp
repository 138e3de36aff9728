#include "commands/ChartArguments.h"

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "plot/LineChart.h"
#include "plot/TextChart.h"
#include "terminal/Output.h"
#include "terminal/Terminal.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

constexpr char kTerminal[] = "-";

}  // namespace

void AddChartOption(CLI::App& app, ChartOptions& options, const std::array<CLI::Option*, 3>& tables)
{
  CLI::Option* const plot =
      app.add_option("--plot", options.file, "Draw a chart instead: .png, .svg or .pdf, - in the terminal")
          ->type_name("FILE|-");
  for (CLI::Option* const table : tables) plot->excludes(table);
}

void CheckChart(const ChartOptions& options)
{
  if (!options.IsAsked() || options.file == kTerminal) return;
  static_cast<void>(PictureFormatOf(options.file));
  CheckOutputFile(options.file);
}

void WriteChart(const Chart& chart, const ChartOptions& options, CommandContext& context)
{
  if (options.file == kTerminal) {
    TextChartStyle style;
    style.width     = GetTerminalWidth();
    style.isUnicode = MayUseUnicode();
    context.output.Write(DrawTextChart(chart, style));
    return;
  }
  WriteFile(options.file, DrawLineChart(chart, PictureFormatOf(options.file)));
}

}  // namespace quilon
