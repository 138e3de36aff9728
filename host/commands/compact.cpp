#include <cstdint>
#include <memory>
#include <string>

#include <bundled/FED_ResultDatabase.h>
#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/WaitOption.h"
#include "database/DatabaseFolder.h"
#include "database/FolderSize.h"
#include "database/WatchedFiles.h"
#include "import/OpenedDatabase.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/JsonText.h"

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
  if (!IsWorkingDatabaseFolder(options.database)) Fail(options.database + ": not a working database (.fed)");
  const std::uint64_t before = FolderSize(options.database);
  WatchedFiles        files([&](std::uint64_t bytes) { context.console.Progress("compacting", bytes, before); },
                     PatienceOf(options.wait, context.console));
  FED_ResultDatabase(options.database, FED_ResultDatabase::ReadWrite, files.GetOptions()).Compact();
  const std::uint64_t after = FolderSize(options.database);
  if (options.json)
    context.output.Write(
        JsonText(Json{{"database", options.database}, {"bytes-before", before}, {"bytes-after", after}}, 2) + '\n');
  else
    context.output.Write(options.database + ": " + FormatBytes(before) + " before, " + FormatBytes(after) + " after\n");
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
