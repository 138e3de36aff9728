#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/WaitOption.h"
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
  double      wait = 0;
  bool        json = false;
};

void Run(const Options& options, CommandContext& context)
{
  const CompactionReport report = Compact(options.database, context.console, PatienceOf(options.wait, context.console));
  if (options.json)
    PrintJson(
        context.output,
        Json{{"database", options.database}, {"bytes-before", report.bytesBefore}, {"bytes-after", report.bytesAfter}});
  else
    context.output.Write(options.database + ": " + FormatBytes(report.bytesBefore) + " before, " +
                         FormatBytes(report.bytesAfter) + " after\n");
}

}  // namespace

CommandFunction DefineCompact(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed)")->required();
  AddWaitOption(app, options->wait);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Writes all that is alive into one segment: bytes of deleted and replaced records are given back. Whoever reads\n"
      "the database meanwhile is not disturbed, and an interrupt leaves it as it was.\n"
      "\n"
      "Example:\n"
      "  quilon compact bracket.fed");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
