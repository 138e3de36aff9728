#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "commands/WaitOption.h"
#include "database/BlockSummary.h"
#include "database/DatabaseFolder.h"
#include "database/WatchedFiles.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  bool             dryRun = false;
  double           wait   = 0;
  TableForm        form;
};

struct PrunedBlock
{
  FED_DataDescriptor descriptor;
  std::string        kind;
  std::size_t        bytes;
};

std::vector<PrunedBlock> FindBlocks(const Options& options, const FED_Database& database)
{
  const KindTable          kinds(database);
  const Selection          selection = options.selection.Parse(kinds);
  std::vector<PrunedBlock> blocks;
  for (const FED_DataDescriptor& descriptor : selection.Apply(database.GetDataDescriptors(FED_DataDescriptorPattern())))
  {
    ThrowIfInterrupted();
    // Asked of the indices: blocks that cannot be read any more can still be taken out.
    const std::size_t bytes = Summarize(database.GetConstDataBlock(descriptor)).bytes;
    blocks.push_back({descriptor, kinds.GetName(descriptor), bytes});
  }
  if (blocks.empty()) Fail(options.database + ": no block matches '" + options.selection.ToString() + "'");
  return blocks;
}

void Report(const Options& options, Output& output, const std::vector<PrunedBlock>& blocks)
{
  std::size_t bytes = 0;
  for (const PrunedBlock& block : blocks) bytes += block.bytes;
  if (options.form.json) {
    Json json;
    json["database"] = options.database;
    json["pruned"]   = !options.dryRun;
    json["size"]     = bytes;
    json["blocks"]   = Json::array();
    for (const PrunedBlock& block : blocks)
      json["blocks"].push_back(
          Json{{"block", ToSelectionText(block.descriptor)}, {"kind", block.kind}, {"size", block.bytes}});
    return output.Write(JsonText(json, 2) + '\n');
  }
  const bool  forPeople = StyleOf(options.form) == TableStyle::Aligned;
  TableWriter table     = MakeTable(output, options.form, {{"kind", true}, {"block", true}, {"size", false}});
  for (const PrunedBlock& block : blocks)
    table.Row({block.kind, ToSelectionText(block.descriptor),
               forPeople ? FormatBytes(block.bytes) : std::to_string(block.bytes)});
  table.Finish();
  if (options.form.csv) return;
  output.Write("\n" + options.database + ": " + Counted(blocks.size(), "block") +
               (options.dryRun ? " would be pruned, " : " pruned, ") + Counted(bytes, "byte") + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  if (!IsWorkingDatabaseFolder(options.database))
    Fail(options.database + ": not a working database (.fed), expected one to take blocks out of");
  const auto                     access = options.dryRun ? FED_ResultDatabase::ReadOnly : FED_ResultDatabase::ReadWrite;
  WatchedFiles                   files({}, PatienceOf(options.wait, context.console));
  FED_ResultDatabase             database(options.database, access, files.GetOptions());
  const std::vector<PrunedBlock> blocks = FindBlocks(options, database);
  if (!options.dryRun) {
    for (const PrunedBlock& block : blocks) database.DeleteDataBlock(block.descriptor);
    database.Commit();
  }
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
  AddWaitOption(app, options->wait);
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
