#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "database/StepTimes.h"
#include "export/Export.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

struct Options
{
  std::string              database;
  SelectionOptions         selection;
  std::string              output;
  std::vector<std::string> components;
  std::string              groups = "arrays";
  bool                     link   = false;
  bool                     json   = false;
};

void Print(Output& output, const ExportReport& report)
{
  output.Write(report.files.front().string() + ": " + Counted(report.arrays.size(), "array"));
  if (!report.times.empty()) output.Write(" of " + Counted(report.times.size(), "step"));
  if (report.numPoints != 0)
    output.Write(", " + Counted(report.numPoints, "point") + ", " + Counted(report.numCells, "cell"));
  output.Write("\n");
  if (report.files.size() > 1)
    output.Write(report.files[1].string() + (report.files.size() > 2 ? " to " + report.files.back().string() : "") +
                 ": the steps\n");
}

void PrintAsJson(Output& output, const ExportReport& report)
{
  Json json{{"files", Json::array()}, {"arrays", report.arrays}};
  for (const auto& file : report.files) json["files"].push_back(file.string());
  if (report.numPoints != 0) {
    json["points"] = report.numPoints;
    json["cells"]  = report.numCells;
  }
  if (report.areTimesKnown) {
    json["times"] = Json::array();
    for (const double time : report.times) json["times"].push_back(JsonNumber(time));
  }
  json["steps"]    = report.times.size();
  json["left-out"] = report.leftOut;
  PrintJson(output, json);
}

void Run(const Options& options, CommandContext& context)
{
  const bool isPrinted = options.output == kStandardOutput;
  const bool isShared  = context.processes != nullptr && !isPrinted && IsSharedExport(options.output);
  if (context.processes != nullptr && !isShared) LeaveToLeader(*context.processes);
  if (options.groups != "arrays" && options.groups != "points")
    Fail("--groups is '" + options.groups + "', expected arrays or points");
  if (isPrinted && options.json) Fail("-o - prints the table, expected a file with --json");
  if (isPrinted && options.link) Fail("--link is of a .vtkhdf, expected a file in place of -o -");
  if (!isPrinted) CheckExportOutput(options.output);
  if (options.link) CheckLink(options.database, options.output);
  OpenedDatabase  database(options.database, context.console);
  const KindTable kinds(database.Get());
  ExportRequest   request;
  request.name   = options.database;
  request.output = options.output;
  request.groups = options.groups == "points" ? ExportGroupForm::Points : ExportGroupForm::Arrays;
  if (options.link) request.linkedFolder = options.database;
  request.components.forAll = options.components;
  const Selection selection = options.selection.Parse(kinds);
  request.blocks = options.selection.Choose(database.Get(), selection, StepTimes(database.Get()), options.database);
  for (const FED_DataDescriptor& block : request.blocks) {
    const int onf                  = block.GetInteger(FED_DataDescriptor::OnfId);
    request.components.ofKind[onf] = selection.ComponentsOf(onf);
  }

  if (isShared) request.readers = database.GetReaders(*context.processes);
  OutputStream table(context.output);
  if (isPrinted) request.table = &table.Get();
  const ExportReport report = Export(database.Get(), request, context.console);
  // Without a selection all is exported that can be.
  if (!options.selection.text.empty()) {
    for (const std::string& kind : report.leftOut)
      context.console.Note("left out " + kind + ": expected a scalar, vector or tensor of each node or element");
  }
  if (isPrinted) return;
  if (options.json)
    PrintAsJson(context.output, report);
  else
    Print(context.output, report);
}

}  // namespace

CommandFunction DefineExport(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database);
  app.add_option("SELECTION", options->selection.text,
                 "Which blocks and components: KIND.COMPONENT,...@KEY=VALUES,... (default: all that have values of "
                 "nodes or elements)");
  app.add_option("-o,--output", options->output,
                 "File to write: .vtkhdf (all steps in one), .pvd (and a .vtu a step), .vtu (one step) or .csv; - "
                 "prints a .csv")
      ->required()
      ->type_name("FILE");
  AddStepsOption(app, options->selection);
  AddTimeOption(app, options->selection);
  app.add_option("--component", options->components,
                 "Components and invariants, each an array of its own: mises,p1 (default: vectors and tensors)")
      ->type_name("NAME,...")
      ->delimiter(',');
  app.add_option("--groups", options->groups,
                 "Averages of groups: an array each, or points of their own where groups meet (arrays)")
      ->type_name("arrays|points");
  app.add_flag("--link", options->link,
               "Point at the values in a working database, in place of writing them (.vtkhdf)");
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Arrays are called as their kind, a component behind it: nodal-stress, nodal-stress-mises. Points and cells "
      "have\n"
      "their id, cells their material, and each set is an array set-NAME of 0 and 1.\n"
      "\n"
      "Examples:\n"
      "  quilon export job.fed -o job.vtkhdf\n"
      "  quilon export job.fed displacement,stress.mises,stress.p1 -o job.pvd\n"
      "  quilon export job.fed stress@lc=last,sub=last --component mises,p1 -o worst.csv");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
