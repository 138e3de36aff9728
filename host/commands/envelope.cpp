#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "answers/Combine.h"
#include "answers/Envelope.h"
#include "answers/Region.h"
#include "commands/AxesOption.h"
#include "commands/Command.h"
#include "commands/EnvelopePrinting.h"
#include "commands/JobsOption.h"
#include "commands/RegionArguments.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "commands/WaitOption.h"
#include "commands/WriteReport.h"
#include "database/ModelCopy.h"
#include "database/Publication.h"
#include "database/StepTimes.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  RegionOptions    region;
  std::string      output;
  std::string      axes;
  JobsOption       jobs;
  WaitOptions      wait;
  TableForm        form;
};

void Run(const Options& options, CommandContext& context)
{
  CommandCrew                crew(options.jobs, context);
  std::optional<Publication> publication;
  if (!options.output.empty() && crew.Get().Leads())
    publication.emplace(options.output, Publication::AnyDatabase, PatienceOf(options.wait, context.console));
  OpenedDatabase  database(options.database, context.console);
  const KindTable kinds(database.Get());
  EnvelopeRequest request;
  request.database  = options.database;
  request.selection = options.selection.Parse(kinds);
  request.axes      = options.axes;
  const auto blocks =
      options.selection.Choose(database.Get(), request.selection, StepTimes(database.Get()), options.database);
  Region region(database.Get(), options.region, options.database);
  region.RequireIds(blocks, options.selection.ToString());
  request.region        = &region;
  request.selectionText = options.selection.ToString();

  const bool      prints = !publication || options.form.json || options.form.csv || options.form.table;
  EnvelopePrinter printer(context.output, options.form, kinds);
  std::set<int>   iterations;
  const auto      report = CalculateEnvelopes(
           database.Get(), blocks, request, &context.console,
           [&](const EnvelopeSeries& series) {
        TellNotes(series, kinds, context.console);
        iterations.insert(series.key.GetInteger(FED_DataDescriptor::Iteration));
        if (publication) WriteEnvelope(series, kinds, publication->Target());
        if (prints) printer.Print(series);
      },
           database.GetReaders(crew.Get()));
  if (prints) printer.Finish();
  TellNotes(report, context.console);
  TellNotes(region, context.console);
  if (!publication) return;
  CopyModel(database.Get(), {iterations.begin(), iterations.end()}, publication->Target());
  const std::size_t written = publication->Publish();
  if (prints)
    context.console.Note(options.output + ": " + std::to_string(written) + " blocks written");
  else
    ReportWritten(context.output, false, options.output, written);
}

}  // namespace

CommandFunction DefineEnvelope(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddSelectionArguments(app, options->database, options->selection);
  AddRegionOptions(app, options->region);
  app.add_option("-o,--output", options->output, "Working database (.fed) or ONF folder to write the envelope to")
      ->type_name("OUT");
  AddAxesOption(app, options->axes);
  AddJobsOption(app, options->jobs);
  AddWriterOptions(app, options->wait);
  AddTableOptions(app, options->form);
  app.footer(
      "Prints the least value, the greatest one and that of largest magnitude over the selected result steps, at each\n"
      "node or element, with the steps that govern. With -o they are written to OUT, and printed only when a form is\n"
      "asked for.\n"
      "\n"
      "Examples:\n"
      "  quilon envelope bracket.fed stress.mises,displacement.magnitude\n"
      "  quilon envelope bracket.fed stress@lc=1-4,sub=last -o envelope.fed\n"
      "  quilon envelope bracket.fed stress.mises --material STEEL --csv\n"
      "  quilon envelope bracket.fed stress.xx --axes cylindrical:0,0,0,0,0,1 --csv");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
