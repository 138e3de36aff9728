#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "answers/Path.h"
#include "answers/Region.h"
#include "commands/AxesOption.h"
#include "commands/ChartArguments.h"
#include "commands/Command.h"
#include "commands/EnvelopePrinting.h"
#include "commands/NumberOptions.h"
#include "commands/RegionArguments.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/StepTimes.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "plot/AnswerCharts.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/NumberList.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  RegionOptions    region;
  std::string      from;
  std::string      to;
  std::size_t      points = 51;
  std::string      through;
  std::string      axes;
  bool             linearize = false;
  TableForm        form;
  ChartOptions     chart;
};

constexpr const char* kTensorColumns[] = {"xx", "yy", "zz", "xy", "yz", "zx"};

PathPlace ParsePlace(const std::string& option, const std::string& text)
{
  PathPlace place{};
  ParseNumbers(option, text, place, "three numbers X,Y,Z");
  return place;
}

std::vector<PathPlace> PlacesOf(const Options& options)
{
  const bool hasLine = !options.from.empty() || !options.to.empty();
  if (hasLine == !options.through.empty()) Fail("expected either --from X,Y,Z and --to X,Y,Z or --through FILE");
  if (hasLine && (options.from.empty() || options.to.empty()))
    Fail(std::string(options.from.empty() ? "--from" : "--to") + " is missing, expected both ends of the line");
  if (hasLine) return PlacesOnLine(ParsePlace("--from", options.from), ParsePlace("--to", options.to), options.points);
  if (options.linearize) Fail("--linearize is of a straight line, expected --from and --to instead of --through");
  return ReadPlaces(std::filesystem::path(options.through));
}

SheetValue ValueOf(const std::optional<double>& value) { return value ? SheetValue(*value) : SheetValue(); }

/// @param before cells in front of each row
Sheet RowsOf(const PathReport& report, const PathStep& step,
             const std::vector<std::pair<std::string, SheetValue>>& before)
{
  std::vector<SheetColumn> columns;
  for (const auto& [name, value] : before) columns.push_back({name});
  for (const char* name : {"s", "x", "y", "z", "element"}) columns.push_back({name});
  for (const std::string& name : step.columns) columns.push_back({name});
  Sheet sheet(std::move(columns));
  for (std::size_t p = 0; p < report.points.size(); ++p) {
    const PathPoint&        point = report.points[p];
    std::vector<SheetValue> cells;
    for (const auto& [name, value] : before) cells.push_back(value);
    cells.insert(cells.end(), {point.s, point.place[0], point.place[1], point.place[2]});
    cells.push_back(point.element ? SheetValue(*point.element) : SheetValue());
    for (const std::optional<double>& value : step.rows[p]) cells.push_back(ValueOf(value));
    sheet.Row(std::move(cells));
  }
  return sheet;
}

Sheet PartsOf(const PathLinearization& linearization, const std::vector<std::pair<std::string, SheetValue>>& before)
{
  std::vector<SheetColumn> columns;
  for (const auto& [name, value] : before) columns.push_back({name});
  columns.push_back({"part"});
  for (const char* name : kTensorColumns) columns.push_back({name});
  columns.push_back({"mises"});
  Sheet sheet(std::move(columns));
  for (const PathLinearization::Part& part : linearization.parts) {
    std::vector<SheetValue> cells;
    for (const auto& [name, value] : before) cells.push_back(value);
    cells.emplace_back(part.name);
    for (const double component : part.tensor) cells.emplace_back(component);
    cells.emplace_back(part.mises);
    sheet.Row(std::move(cells));
  }
  return sheet;
}

void PrintJson(Output& output, const PathReport& report, const StepTimes& times)
{
  Json all = Json::array();
  for (const PathStep& step : report.steps) {
    Json object;
    object["step"]                   = KeyText(step.key);
    const std::optional<double> time = times.TimeOf(step.blocks.front());
    if (time) object["time"] = JsonNumber(*time);
    object["blocks"] = Json::array();
    for (const FED_DataDescriptor& block : step.blocks) object["blocks"].push_back(ToSelectionText(block));
    if (!report.axes.empty()) object["axes"] = report.axes;
    object["rows"] = RowsOf(report, step, {}).ToJson();
    if (step.linearization) {
      for (const PathLinearization::Part& part : step.linearization->parts) {
        Json tensor;
        for (std::size_t k = 0; k < part.tensor.size(); ++k) tensor[kTensorColumns[k]] = JsonNumber(part.tensor[k]);
        tensor["mises"]   = JsonNumber(part.mises);
        object[part.name] = std::move(tensor);
      }
    }
    all.push_back(std::move(object));
  }
  PrintJson(output, all);
}

void PrintTables(Output& output, const TableForm& form, const PathReport& report, const StepTimes& times)
{
  const bool  isForPeople = StyleOf(form) == TableStyle::Aligned;
  const char* before      = "";
  for (const PathStep& step : report.steps) {
    const std::optional<double>                     time = times.TimeOf(step.blocks.front());
    std::vector<std::pair<std::string, SheetValue>> keys;
    output.Write(before);
    before = "\n";
    if (isForPeople) {
      output.Write(KeyText(step.key) + (time ? "  time " + FormatRounded(*time) : "") + '\n');
    } else if (report.steps.size() > 1) {
      keys.emplace_back("step", KeyText(step.key));
      if (time) keys.emplace_back("time", *time);
    }
    RowsOf(report, step, keys).PrintTable(output, form);
    if (!step.linearization) continue;
    output.Write("\n");
    PartsOf(*step.linearization, keys).PrintTable(output, form);
  }
}

void TellNotes(const PathReport& report, Console& console, bool isRegion)
{
  if (!report.axes.empty()) console.Note(report.axes);
  std::string list;
  for (const std::string& kind : report.skippedKinds) list += (list.empty() ? "" : ", ") + Printable(kind);
  if (!list.empty()) console.Note("no values along a line in " + list);
  const auto outside =
      std::count_if(report.points.begin(), report.points.end(), [](const PathPoint& point) { return !point.element; });
  if (outside > 0) {
    const auto first =
        std::find_if(report.points.begin(), report.points.end(), [](const PathPoint& point) { return !point.element; });
    console.Note(Counted(static_cast<std::size_t>(outside), "point") + " of " + std::to_string(report.points.size()) +
                 " outside of all solid elements" + (isRegion ? " of the region" : "") +
                 ", without values; the first at " + FormatNumbers(first->place));
  }
  for (const PathStep& step : report.steps) {
    if (step.numWithoutAxes > 0)
      console.Note(KeyText(step.key) + ": " + Counted(step.numWithoutAxes, "point") +
                   " on the axis of --axes, where no direction is radial, without values");
    if (step.numWithoutValues > 0)
      console.Note(KeyText(step.key) + ": " + Counted(step.numWithoutValues, "point") +
                   " in elements some nodes of which have no value");
  }
}

void Run(const Options& options, CommandContext& context)
{
  CheckChart(options.chart);
  PathRequest request;
  request.places    = PlacesOf(options);
  request.database  = options.database;
  request.axes      = options.axes;
  request.linearize = options.linearize;
  OpenedDatabase  database(options.database, context.console);
  const KindTable kinds(database.Get());
  const StepTimes times(database.Get());
  request.selection = options.selection.Parse(kinds);
  const auto blocks = options.selection.Choose(database.Get(), request.selection, times, options.database);
  Region     region(database.Get(), options.region, options.database);
  request.region          = &region;
  const PathReport report = FollowPath(database.Get(), blocks, request);
  if (options.chart.IsAsked())
    WriteChart(MakePathChart(report, times), options.chart, context);
  else if (options.form.json)
    PrintJson(context.output, report, times);
  else
    PrintTables(context.output, options.form, report, times);
  TellNotes(region, context.console);
  TellNotes(report, context.console, !region.IsEverything());
}

}  // namespace

CommandFunction DefinePath(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddSelectionArguments(app, options->database, options->selection);
  AddRegionOptions(app, options->region);
  app.add_option("--from", options->from, "Where the line begins")->type_name("X,Y,Z");
  app.add_option("--to", options->to, "Where it ends")->type_name("X,Y,Z");
  CLI::Option* const points =
      AddCountOption(app, "--points", options->points, "Points on the line, both ends included (default: 51)");
  app.add_option("--through", options->through, "Points of a line of any shape, three coordinates a line")
      ->type_name("FILE")
      ->excludes(points);
  AddAxesOption(app, options->axes);
  app.add_flag("--linearize", options->linearize,
               "Membrane, bending and peak of the stress, from --from through a wall to --to");
  AddChartOption(app, options->chart, AddTableOptions(app, options->form));
  app.footer(
      "Interpolates by the shape functions of the solid that holds each point, in the undeformed mesh. Points outside\n"
      "have no values. Invariants are those of the interpolated tensor.\n"
      "\n"
      "Examples:\n"
      "  quilon path vessel.fed stress@lc=1,sub=last --from 100,0,0 --to 150,0,0 --points 21\n"
      "  quilon path vessel.fed stress@lc=1 --from 100,0,0 --to 150,0,0 --linearize --axes cylindrical:0,0,0,0,0,1\n"
      "  quilon path vessel.fed displacement,stress.mises --through line.txt --csv");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
