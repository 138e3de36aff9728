#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/JobsOption.h"
#include "commands/SelectionOptions.h"
#include "commands/WaitOption.h"
#include "import/DatabaseDerivation.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::string database;
  std::string output;
  std::string requests = "all";
  JobsOption  jobs;
  WaitOptions wait;
  bool        json = false;
};

void Report(const Options& options, Output& output, const std::vector<DerivedBlock>& blocks)
{
  std::map<std::string, std::size_t> blocksOfKind;
  for (const DerivedBlock& block : blocks) ++blocksOfKind[block.kind];
  const std::string& folder = options.output.empty() ? options.database : options.output;
  if (options.json) {
    Json report{{"output", folder}, {"blocks", blocks.size()}, {"kinds", Json::object()}};
    for (const auto& [kind, count] : blocksOfKind) report["kinds"][kind] = count;
    return PrintJson(output, report);
  }
  output.Write(folder + ": " + Counted(blocks.size(), "block") + " derived\n");
  for (const auto& [kind, count] : blocksOfKind)
    output.Write("  " + Printable(kind) + ": " + std::to_string(count) + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  CommandCrew        crew(options.jobs, context);
  const LockPatience patience = PatienceOf(options.wait, context.console);
  Report(options, context.output,
         DeriveDatabase({options.database, options.output, options.requests, patience, &crew.Get()}, context.console));
}

}  // namespace

CommandFunction DefineDerive(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database);
  app.add_option("-o,--output", options->output,
                 "Working database (.fed) or ONF folder for everything (default: add to DB)")
      ->type_name("OUT");
  app.add_option("--request", options->requests,
                 "What to derive: kinds, the path of a request file, all or none (default: all)")
      ->type_name("KIND,...|FILE");
  AddJobsOption(app, options->jobs);
  AddWriterOptions(app, options->wait);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Derives principal values of stresses and strains (520, 530, 560, 570) and adds energy contributions to the\n"
      "energies (903 to 540, 913 to 541). Results that exist are kept.\n"
      "\n"
      "Examples:\n"
      "  quilon derive bracket.onf --request stress-principal,strain-principal\n"
      "  quilon derive job.dat --request all -o job.onf");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
