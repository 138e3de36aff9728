#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "answers/Extremes.h"
#include "answers/Region.h"
#include "commands/AxesOption.h"
#include "commands/Command.h"
#include "commands/JobsOption.h"
#include "commands/NumberOptions.h"
#include "commands/RegionArguments.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/Listing.h"
#include "database/StepTimes.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Sheet.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  RegionOptions    region;
  bool             least     = false;
  bool             magnitude = false;
  std::size_t      head      = 1;
  std::string      per;
  std::string      axes;
  JobsOption       jobs;
  TableForm        form;
};

ExtremeRequest::Per ParsePer(const std::string& text)
{
  if (text.empty()) return ExtremeRequest::Whole;
  if (text == "step") return ExtremeRequest::Step;
  if (text == "material") return ExtremeRequest::Material;
  if (text == "set") return ExtremeRequest::Set;
  if (text == "group") return ExtremeRequest::Group;
  Fail("--per is '" + text + "', expected step, material, set or group");
}

std::string Joined(const std::vector<std::string>& names)
{
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : " ") + name;
  return text;
}

SheetValue NumberOrNothing(const std::optional<double>& number)
{
  if (number) return *number;
  return {};
}

SheetValue TextOrNothing(const std::string& text) { return text.empty() ? SheetValue() : SheetValue(text); }

Sheet MakeSheet(const ExtremeReport& report, const Options& options, const std::string& timeName)
{
  Sheet sheet({{"block", SheetColumn::Json},
               {"kind"},
               {"component"},
               {"value"},
               {"id"},
               {"point", SheetColumn::Everywhere, true},
               {"x"},
               {"y"},
               {"z"},
               {"type", SheetColumn::Everywhere, true},
               {"material", SheetColumn::Everywhere, true},
               {"set", SheetColumn::Everywhere, true},
               {"group", SheetColumn::Everywhere, true},
               {"sets", SheetColumn::Everywhere, true},
               {"step"},
               {timeName, SheetColumn::Tables, true},
               {"time", SheetColumn::Json},
               {"ties"},
               {"nan", SheetColumn::Everywhere, true}});
  for (const Extreme& row : report.rows) {
    const auto coordinate = [&row](std::size_t i) { return row.place ? SheetValue((*row.place)[i]) : SheetValue(); };
    const auto part       = [&](const char* name) { return options.per == name ? SheetValue(row.part) : SheetValue(); };
    sheet.Row({ToSelectionText(row.block), row.kind, row.component, row.value, row.id,
               row.point == 0 ? SheetValue() : SheetValue(row.point), coordinate(0), coordinate(1), coordinate(2),
               TextOrNothing(row.type), options.per == "material" ? part("material") : TextOrNothing(row.material),
               part("set"), part("group"), TextOrNothing(Joined(row.sets)), StepText(row.step),
               NumberOrNothing(row.time), NumberOrNothing(row.time), row.ties,
               row.nans == 0 ? SheetValue() : SheetValue(row.nans)});
  }
  return sheet;
}

void Run(const Options& options, CommandContext& context)
{
  if (options.least && options.magnitude) Fail("--min and --abs exclude each other, expected one at most");
  ExtremeRequest request;
  request.per      = ParsePer(options.per);
  request.head     = options.head;
  request.axes     = options.axes;
  request.measure  = options.least       ? ExtremeRequest::Least
                     : options.magnitude ? ExtremeRequest::Magnitude
                                         : ExtremeRequest::Greatest;
  request.database = options.database;
  CommandCrew     crew(options.jobs, context);
  OpenedDatabase  database(options.database, context.console);
  const KindTable kinds(database.Get());
  request.selection     = options.selection.Parse(kinds);
  request.selectionText = options.selection.ToString();
  const StepTimes times(database.Get());
  Region          region(database.Get(), options.region, options.database);
  const auto      blocks = options.selection.Choose(database.Get(), request.selection, times, options.database);
  region.RequireIds(blocks, request.selectionText);

  const ExtremeReport report =
      FindExtremes(database.Get(), blocks, times, region, request, &context.console, database.GetReaders(crew.Get()));
  context.console.ClearProgress();
  const Sheet sheet = MakeSheet(report, options, NameOfTimes(times, blocks, kinds).value_or("time"));
  if (options.form.json)
    PrintJson(context.output, sheet.ToJson());
  else
    sheet.PrintTable(context.output, options.form);
  TellNotes(region, context.console);
  if (!report.axes.empty()) context.console.Note(report.axes);
  if (report.numWithoutAxes != 0)
    context.console.Note(Counted(report.numWithoutAxes, "value") +
                         " at places where the axes are none, which count for nothing");
  if (report.nans != 0)
    context.console.Note(
        std::to_string(report.nans) + " of " + Counted(report.values, "value") +
        (report.nans == 1 ? " is no number and counts for nothing" : " are no numbers and count for nothing"));
}

}  // namespace

CommandFunction DefineMax(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddSelectionArguments(app, options->database, options->selection);
  AddRegionOptions(app, options->region);
  app.add_flag("--min", options->least, "The least values instead of the greatest");
  app.add_flag("--abs", options->magnitude, "The values of largest magnitude");
  AddCountOption(app, "--head", options->head, "How many of each component and part (1)");
  app.add_option("--per", options->per, "The worst of each of these")->type_name("step|material|set|group");
  AddAxesOption(app, options->axes);
  AddJobsOption(app, options->jobs);
  AddTableOptions(app, options->form);
  app.footer(
      "Prints the greatest value of each component that is selected, the worst first: where it is, when, and how many\n"
      "others are as bad (ties). Values that are no numbers count for nothing, and are told.\n"
      "\n"
      "Examples:\n"
      "  quilon max bracket.onf stress.mises\n"
      "  quilon max bracket.onf displacement.magnitude --per step --head 3\n"
      "  quilon max bracket.onf element-stress.p3 --min --material STEEL --json\n"
      "  quilon max vessel.fed stress.yy --axes cylindrical:0,0,0,0,0,1");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
