#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <bundled/OnfKinds.h>
#include <CLI/CLI.hpp>

#include "answers/History.h"
#include "answers/Region.h"
#include "commands/ChartArguments.h"
#include "commands/Command.h"
#include "commands/RegionArguments.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/Listing.h"
#include "database/StepTimes.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "plot/AnswerCharts.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Sheet.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::vector<std::string> arguments;  // databases, then the selection
  std::vector<std::string> labels;
  SelectionOptions         selection;
  RegionOptions            region;
  std::string              resample;
  TableForm                form;
  ChartOptions             chart;

  std::size_t NumDatabases() const { return arguments.size() - 1; }
};

/// The histories of one database.
struct Labelled
{
  std::string                label;  // empty where there is one database
  std::vector<HistorySeries> series;
};

/// What times are called, by their quantity.
using TimeNames = std::map<int, std::string>;

TimeNames NameTimes(const std::vector<Labelled>& all)
{
  const KindTable kinds;
  TimeNames       names;
  for (const Labelled& labelled : all)
    for (const HistorySeries& series : labelled.series)
      for (const HistoryPoint& point : series.points)
        if (point.time && !names.contains(point.quantity)) names.emplace(point.quantity, kinds.GetName(point.quantity));
  if (names.empty()) names.emplace(0, "time");
  return names;
}

std::vector<std::string> LabelsOf(const Options& options)
{
  if (options.NumDatabases() == 1 && options.labels.empty()) return {""};
  std::vector<std::string> labels = options.labels;
  if (labels.empty())
    for (std::size_t i = 0; i < options.NumDatabases(); ++i)
      labels.push_back(std::filesystem::path(options.arguments[i]).stem().string());
  if (labels.size() != options.NumDatabases())
    Fail("found " + Counted(labels.size(), "label") + " for " + Counted(options.NumDatabases(), "database") +
         ", expected as many --label");
  const std::set<std::string> different(labels.begin(), labels.end());
  if (different.size() != labels.size()) Fail("two databases have one label, expected a --label for each that differs");
  return labels;
}

Labelled ReadDatabase(const Options& options, const std::string& path, const std::string& label,
                      const std::vector<double>& times, Console& console)
{
  OpenedDatabase  database(path, console);
  const KindTable kinds(database.Get());
  HistoryRequest  request;
  request.selection     = options.selection.Parse(kinds);
  request.selectionText = options.selection.ToString();
  request.onNote        = [&console](const std::string& text) { console.Note(text); };
  const StepTimes stepTimes(database.Get());
  Region          region(database.Get(), options.region, path);
  const auto      blocks = options.selection.Choose(database.Get(), request.selection, stepTimes, path);
  region.RequireIds(blocks, request.selectionText);
  Labelled result{label, ReadHistories(database.Get(), blocks, stepTimes, region, request)};
  if (!options.resample.empty())
    for (HistorySeries& series : result.series) series = Resampled(series, times);
  TellNotes(region, console);
  return result;
}

/// What tells a series apart from others of its kind: layer and group.
std::string KeysOf(const FED_DataDescriptor& key)
{
  std::string text;
  for (const IndexKey& index : GetIndexKeys()) {
    const bool isTold = index.index == FED_DataDescriptor::Iteration || index.index == OnfIndex::Quantity;
    if (key.IsSet(index.index) && !isTold)
      text += std::string(index.key) + '=' + std::to_string(key.GetInteger(index.index)) + '.';
  }
  return text;
}

/// "new:nodal-stress.7.mises": label, kind where there are several, keys, id, point and component, as far as needed.
std::string ColumnOf(const Labelled& labelled, const HistorySeries& series, bool hasKinds)
{
  std::string name = labelled.label.empty() ? "" : labelled.label + ':';
  if (!series.id) return name + series.component;
  if (hasKinds) name += series.kind + '.';
  name += KeysOf(series.key) + std::to_string(*series.id) + '.';
  if (series.point != 0) name += std::to_string(series.point) + '.';
  return name + series.component;
}

bool HasSeveralKinds(const std::vector<Labelled>& all)
{
  std::set<std::string> kinds;
  for (const Labelled& labelled : all)
    for (const HistorySeries& series : labelled.series)
      if (series.id) kinds.insert(series.kind);
  return kinds.size() > 1;
}

/// Iteration, analysis, quantity, time and step. Steps of several databases are the same where their times are; without
/// times, where their keys are.
using RowKey = std::tuple<int, int, int, std::optional<double>, std::string>;

struct Row
{
  std::string                   step;
  std::map<std::size_t, double> values;  ///< by column
};

/// @param byStep whether rows are told apart by their steps, too
void AddPoints(const HistorySeries& series, std::size_t column, bool byStep, std::map<RowKey, Row>& rows)
{
  for (const HistoryPoint& point : series.points) {
    const auto numberOf = [&point](FED_DataDescriptor::ResultIndex index) {
      return point.step.IsSet(index) ? point.step.GetInteger(index) : 0;
    };
    const bool        tellsStep = byStep || !point.time;
    const std::string step = point.step.mask == FED_DataDescriptor().mask || !tellsStep ? "" : StepText(point.step);
    Row& row = rows[{numberOf(FED_DataDescriptor::Iteration), numberOf(FED_DataDescriptor::Analysis), point.quantity,
                     point.time, step}];
    row.values[column] = point.value;
    row.step           = step;
  }
}

/// A row for each time, a column for each series. Times, frequencies and buckling factors have columns of their own.
Sheet MakeTable(const std::vector<Labelled>& all)
{
  const bool               hasKinds  = HasSeveralKinds(all);
  const TimeNames          timeNames = NameTimes(all);
  std::map<RowKey, Row>    rows;
  std::vector<SheetColumn> columns;
  for (const auto& [quantity, name] : timeNames) columns.push_back({name, SheetColumn::Everywhere, true});
  columns.push_back({"step", SheetColumn::Everywhere, true});
  std::size_t column = 0;
  for (const Labelled& labelled : all)
    for (const HistorySeries& series : labelled.series) {
      columns.push_back({ColumnOf(labelled, series, hasKinds)});
      AddPoints(series, column++, all.size() == 1, rows);
    }
  Sheet sheet(std::move(columns));
  for (const auto& [key, row] : rows) {
    const auto& [iteration, analysis, quantity, time, step] = key;
    std::vector<SheetValue> cells;
    const auto              add = [&cells](const auto* value) {
      if (value == nullptr)
        cells.emplace_back();
      else
        cells.emplace_back(*value);
    };
    for (const auto& names : timeNames) add(time && names.first == quantity ? &*time : nullptr);
    add(row.step.empty() ? nullptr : &row.step);
    for (std::size_t i = 0; i < column; ++i) {
      const auto value = row.values.find(i);
      add(value == row.values.end() ? nullptr : &value->second);
    }
    sheet.Row(std::move(cells));
  }
  return sheet;
}

/// @return one past the last series that is a component of the same record as the first one
std::size_t EndOfRecord(const std::vector<HistorySeries>& series, std::size_t first)
{
  const HistorySeries& one  = series[first];
  std::size_t          last = first + 1;
  while (last < series.size() && one.id && series[last].id == one.id && series[last].key == one.key &&
         series[last].point == one.point)
    ++last;
  return last;
}

/// The components from first to before last of a record at one time. What stands under "time" is told where it is none.
Json PointJson(const Labelled& labelled, std::size_t first, std::size_t last, std::size_t position,
               const TimeNames& timeNames)
{
  const HistorySeries& one   = labelled.series[first];
  const HistoryPoint&  point = one.points[position];
  Json                 row;
  if (!labelled.label.empty()) row["label"] = labelled.label;
  row["kind"] = one.kind;
  for (const IndexKey& index : GetIndexKeys()) {
    const bool isTold = index.index == FED_DataDescriptor::Iteration || index.index == OnfIndex::Quantity;
    if (one.key.IsSet(index.index) && !isTold) row[index.key] = one.key.GetInteger(index.index);
  }
  row["time"] = point.time ? JsonNumber(*point.time) : Json();
  if (point.time && point.quantity != OnfKind::Time) row["time-name"] = timeNames.at(point.quantity);
  row["step"] = point.step.mask == FED_DataDescriptor().mask ? Json() : Json(StepText(point.step));
  if (one.id) row["id"] = *one.id;
  if (one.point != 0) row["point"] = one.point;
  for (std::size_t s = first; s < last; ++s)
    row[labelled.series[s].component] = JsonNumber(labelled.series[s].points[position].value);
  return row;
}

/// An object for each time and record, its components beside one another: they stand in the same blocks, so that their
/// points go together.
Json MakeJson(const std::vector<Labelled>& all)
{
  const TimeNames timeNames = NameTimes(all);
  Json            list      = Json::array();
  for (const Labelled& labelled : all)
    for (std::size_t first = 0; first < labelled.series.size();) {
      const std::size_t last = EndOfRecord(labelled.series, first);
      for (std::size_t p = 0; p < labelled.series[first].points.size(); ++p)
        list.push_back(PointJson(labelled, first, last, p, timeNames));
      first = last;
    }
  return list;
}

Chart ChartOf(const std::vector<Labelled>& all)
{
  const bool                 hasKinds = HasSeveralKinds(all);
  std::vector<HistorySeries> series;
  std::vector<std::string>   names;
  for (const Labelled& labelled : all)
    for (const HistorySeries& one : labelled.series) {
      series.push_back(one);
      names.push_back(ColumnOf(labelled, one, hasKinds));
    }
  std::string timeName;
  for (const auto& [quantity, name] : NameTimes(all)) timeName += (timeName.empty() ? "" : " or ") + name;
  return MakeHistoryChart(series, names, timeName);
}

void Run(const Options& options, CommandContext& context)
{
  CheckChart(options.chart);
  if (options.arguments.size() < 2) Fail("there is one argument, expected one database or several and a selection");
  const std::vector<std::string> labels = LabelsOf(options);
  const std::vector<double> times  = options.resample.empty() ? std::vector<double>() : ParseTimes(options.resample);
  Options                   chosen = options;
  chosen.selection.text            = options.arguments.back();
  std::vector<Labelled> all;
  for (std::size_t i = 0; i < options.NumDatabases(); ++i)
    all.push_back(ReadDatabase(chosen, options.arguments[i], labels[i], times, context.console));
  context.console.ClearProgress();
  if (options.chart.IsAsked())
    WriteChart(ChartOf(all), options.chart, context);
  else if (options.form.json)
    PrintJson(context.output, MakeJson(all));
  else
    MakeTable(all).PrintTable(context.output, options.form);
}

}  // namespace

CommandFunction DefineHistory(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB... SELECTION", options->arguments,
                 "Working databases (.fed), ONF folders or solver result files, then KIND.COMPONENT,...@KEY=VALUES,...")
      ->required();
  AddStepsOption(app, options->selection);
  AddTimeOption(app, options->selection);
  AddRegionOptions(app, options->region);
  app.add_option("--label", options->labels, "What a database is called in the columns, one for each (its file name)")
      ->type_name("NAME")
      ->expected(1)
      ->take_all();
  app.add_option("--resample", options->resample,
                 "Values at these times, on straight lines between steps: 0.1,0.5 or FIRST:LAST:STEP")
      ->type_name("TIMES");
  AddChartOption(app, options->chart, AddTableOptions(app, options->form));
  app.footer(
      "Rows are times, columns are records and components. Scalar histories (total-force, eigenvalue) need no region.\n"
      "Of several databases, steps of one time stand in one row. Nothing is guessed before the first and behind the "
      "last\n"
      "time of a database.\n"
      "\n"
      "Examples:\n"
      "  quilon history bracket.onf displacement.z --ids 7,12\n"
      "  quilon history bracket.onf stress.mises --near 10,0,5 --csv\n"
      "  quilon history old.fed new.fed stress.mises --ids 7 --label old --label new --resample 0:1:0.05\n"
      "  quilon history bracket.fed displacement.z --ids 7,12 --plot z.svg");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
