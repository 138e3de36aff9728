#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/JobsOption.h"
#include "commands/SelectionOptions.h"
#include "commands/WaitOption.h"
#include "commands/WriteReport.h"
#include "database/Publication.h"
#include "diff/Verification.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  std::string      output;
  SelectionOptions selection;
  bool             mirror = false;
  bool             verify = false;
  JobsOption       jobs;
  WaitOptions      wait;
  bool             json = false;
};

void Run(const Options& options, CommandContext& context)
{
  CommandCrew     crew(options.jobs, context);
  Publication     publication(options.output, Publication::OnfFolder, PatienceOf(options.wait, context.console));
  OpenedDatabase  database(options.database, context.console);
  const Selection selection                     = options.selection.ParseBlocks(KindTable(database.Get()));
  const std::vector<FED_DataDescriptor> blocks  = database.RequireBlocks(selection, options.selection.ToString());
  const Readers                         readers = database.GetReaders(crew.Get());
  const std::size_t written = options.mirror ? publication.MirrorBlocks(database.Get(), blocks, readers)
                                             : publication.PublishBlocks(database.Get(), blocks, {}, readers);
  if (options.verify) {
    OpenedDatabase result(options.output, context.console);
    VerifyWritten(database.Get(), blocks, options.database, result.Get(), options.output);
  }
  ReportWritten(context.output, options.json, options.output, written, options.verify);
}

}  // namespace

CommandFunction DefineToOnf(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database);
  app.add_option("OUT", options->output, "ONF folder to write; blocks of equal keys are replaced")->required();
  app.add_option("--select", options->selection.text, "Which blocks: KIND,...@KEY=VALUES,... (default: all)")
      ->type_name("SELECTION");
  AddStepsOption(app, options->selection);
  app.add_flag("--mirror", options->mirror, "Leave nothing else in OUT: other blocks of the folder go");
  app.add_flag("--verify", options->verify, "Read back what was written and compare every value");
  AddJobsOption(app, options->jobs);
  AddWriterOptions(app, options->wait);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Blocks without records are left out.\n"
      "\n"
      "Examples:\n"
      "  quilon to-onf job.frd job.onf\n"
      "  quilon to-onf job.fed job.onf --mirror\n"
      "  quilon to-onf bracket.onf last.onf --select stress,displacement --steps last");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
