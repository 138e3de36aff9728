#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/ExitCode.h"
#include "commands/JobsOption.h"
#include "commands/SelectionOptions.h"
#include "database/DatabaseFolder.h"
#include "database/Maintenance.h"
#include "import/OpenedDatabase.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::string database;
  JobsOption  jobs;
  bool        json = false;
};

Json ToJson(const Options& options, const FED_DatabaseReport& report)
{
  return Json{{"database", options.database}, {"whole", report.findings.empty()}, {"generation", report.generation},
              {"segments", report.segments},  {"file-bytes", report.fileBytes},   {"dead-bytes", report.deadBytes},
              {"blocks", report.blocks},      {"records", report.records},        {"findings", report.findings},
              {"leftovers", report.leftovers}};
}

void PrintText(const Options& options, Output& output, const FED_DatabaseReport& report)
{
  for (const std::string& finding : report.findings) output.Write(Printable(finding) + '\n');
  for (const std::string& name : report.leftovers)
    output.Write(Printable(name) + ": left by a commit that did not happen, the next writer removes it\n");
  std::string text = options.database + ": " +
                     (report.findings.empty() ? "whole" : Counted(report.findings.size(), "finding")) + ", " +
                     Counted(report.blocks, "block") + ", " + Counted(report.records, "record");
  if (report.fileBytes > 0)
    text += ", " + FormatBytes(report.fileBytes) + " in " + Counted(report.segments, "segment") + ", " +
            FormatBytes(report.deadBytes) + " to be given back";
  output.Write(text + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  CommandCrew              crew(options.jobs, context);
  const FED_DatabaseReport report =
      IsWorkingDatabaseName(options.database) || IsWorkingDatabase(options.database)
          ? CheckWorkingDatabase(options.database, context.console, &crew.Get())
          : CheckByReading(OpenedDatabase(options.database, context.console, OpenedDatabase::DeriveNothing).Get());
  if (options.json)
    PrintJson(context.output, ToJson(options, report));
  else
    PrintText(options, context.output, report);
  context.exitCode = report.findings.empty() ? ExitSuccess : ExitDifferent;
}

}  // namespace

CommandFunction DefineCheck(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database);
  AddJobsOption(app, options->jobs);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Reads all of a database and says what is wrong, and where: structure, checksums, id maps, counts. Exit code 0\n"
      "when it is whole, 1 when it is not, 2 when it cannot be looked at.\n"
      "\n"
      "Example:\n"
      "  quilon check bracket.fed");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
