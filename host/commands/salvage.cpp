#include <filesystem>
#include <memory>
#include <string>

#include <bundled/FED_DatabaseInspection.h>
#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/ExitCode.h"
#include "database/FolderSize.h"
#include "database/Publication.h"
#include "database/WatchedFiles.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

struct Options
{
  std::string database;
  std::string output;
  bool        json = false;
};

void PrintJson(const Options& options, Output& output, const FED_SalvageReport& report)
{
  output.Write(JsonText(Json{{"output", options.output},
                             {"manifest", report.hasManifest},
                             {"blocks", report.blocks},
                             {"records", report.records},
                             {"lost-records", report.lostRecords},
                             {"losses", report.losses}},
                        2) +
               '\n');
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
  if (!fs::is_directory(options.database)) Fail(options.database + ": not the folder of a working database");
  if (fs::exists(options.output)) Fail(options.output + ": exists, expected the name of a new database");
  Publication         publication(options.output);
  const std::uint64_t total = FolderSize(options.database);
  WatchedFiles        files([&](std::uint64_t bytes) { context.console.Progress("salvaging", bytes, total); });
  FED_SalvageReport   report = FED_SalvageDatabase(options.database, publication.Target(), &files);
  if (report.blocks == 0) Fail(options.database + ": nothing whole was found, nothing is written");
  report.blocks = publication.Publish();  // those of which nothing is left are not written
  if (options.json)
    PrintJson(options, context.output, report);
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
