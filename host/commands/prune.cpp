#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "commands/WaitOption.h"
#include "database/Maintenance.h"
#include "kinds/KindTable.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  bool             dryRun = false;
  WaitOptions      wait;
  TableForm        form;
};

void Report(const Options& options, Output& output, const std::vector<ListedBlock>& blocks)
{
  std::size_t bytes = 0;
  for (const ListedBlock& block : blocks) bytes += block.summary.bytes;
  // Tables begin with the name that people look for.
  Sheet sheet({{"block", SheetColumn::Json}, {"kind"}, {"block", SheetColumn::Tables}, {"size"}});
  for (const ListedBlock& block : blocks) {
    const std::string text = ToSelectionText(block.descriptor);
    sheet.Row({text, block.kind, text, ByteCount{block.summary.bytes}});
  }
  if (options.form.json)
    return PrintJson(
        output,
        Json{{"database", options.database}, {"pruned", !options.dryRun}, {"size", bytes}, {"blocks", sheet.ToJson()}});
  sheet.PrintTable(output, options.form);
  if (options.form.csv) return;
  output.Write("\n" + options.database + ": " + Counted(blocks.size(), "block") +
               (options.dryRun ? " would be pruned, " : " pruned, ") + Counted(bytes, "byte") + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  const auto parse = [&options](const KindTable& kinds) { return options.selection.ParseBlocks(kinds); };
  const std::vector<ListedBlock> blocks =
      Prune(options.database, {parse, options.dryRun, PatienceOf(options.wait, context.console)});
  if (blocks.empty()) Fail(options.database + ": no block matches '" + options.selection.ToString() + "'");
  Report(options, context.output, blocks);
}

}  // namespace

CommandFunction DefinePrune(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed)")->required();
  app.add_option("SELECTION", options->selection.text, "Which blocks: KIND,...@KEY=VALUES,...")->required();
  AddStepsOption(app, options->selection);
  app.add_flag("--dry-run", options->dryRun, "Only tell what would go");
  AddWriterOptions(app, options->wait);
  AddTableOptions(app, options->form);
  app.footer(
      "Takes blocks out of a working database, all of them or none, and tells their sizes as 'quilon size' does. The\n"
      "files keep their bytes until the database is compacted.\n"
      "\n"
      "Examples:\n"
      "  quilon prune bracket.fed 582,583 --dry-run\n"
      "  quilon prune bracket.fed @lc=2");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
