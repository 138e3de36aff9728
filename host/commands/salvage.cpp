#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/ExitCode.h"
#include "database/Maintenance.h"
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
  bool        json = false;
};

Json ToJson(const Options& options, const FED_SalvageReport& report)
{
  return Json{{"output", options.output},  {"manifest", report.hasManifest},     {"blocks", report.blocks},
              {"records", report.records}, {"lost-records", report.lostRecords}, {"losses", report.losses}};
}

void PrintText(const Options& options, Output& output, const FED_SalvageReport& report)
{
  for (const std::string& loss : report.losses) output.Write(Printable(loss) + '\n');
  if (!report.hasManifest)
    output.Write(
        "without a manifest all whole segments count: what is saved may hold changes that were never committed\n");
  output.Write(options.output + ": " + Counted(report.blocks, "block") + " and " + Counted(report.records, "record") +
               " saved, " +
               (report.losses.empty() ? "nothing lost" : Counted(report.lostRecords, "record") + " known to be lost") +
               '\n');
}

void Run(const Options& options, CommandContext& context)
{
  const FED_SalvageReport report = Salvage(options.database, options.output, context.console);
  if (options.json)
    PrintJson(context.output, ToJson(options, report));
  else
    PrintText(options, context.output, report);
  context.exitCode = report.losses.empty() ? ExitSuccess : ExitDifferent;
}

}  // namespace

CommandFunction DefineSalvage(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Damaged working database (.fed)")->required();
  app.add_option("-o,--output", options->output, "New working database (.fed) or ONF folder")
      ->required()
      ->type_name("NEW");
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Copies every whole chunk of a damaged database and says what is lost. DB stays as it is. Without a manifest "
      "all\n"
      "whole segments count, those of a commit that never happened too. Exit code 0 when nothing is lost, 1 when\n"
      "something is or may be (a file that was cut, no manifest), 2 when nothing can be saved.\n"
      "\n"
      "Example:\n"
      "  quilon salvage bracket.fed -o saved.fed");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
