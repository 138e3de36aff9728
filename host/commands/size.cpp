#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/Listing.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  TableForm        form;
};

Sheet BlockSheet(const BlockSizes& sizes)
{
  // Tables begin with the name that people look for.
  Sheet sheet(
      {{"block", SheetColumn::Json}, {"kind"}, {"block", SheetColumn::Tables}, {"step", SheetColumn::Json}, {"size"}});
  for (const ListedBlock& block : sizes.blocks) {
    const std::string text = ToSelectionText(block.descriptor);
    sheet.Row({text, block.kind, text, StepText(block.descriptor), ByteCount{block.summary.bytes}});
  }
  return sheet;
}

Sheet TotalSheet(const char* name, const std::vector<BlockTotal>& totals)
{
  Sheet sheet({{name}, {"blocks"}, {"size"}});
  for (const BlockTotal& total : totals) sheet.Row({total.name, total.blocks, ByteCount{total.bytes}});
  return sheet;
}

void PrintTables(Output& output, const TableForm& form, const BlockSizes& sizes)
{
  BlockSheet(sizes).PrintTable(output, form);
  if (form.csv) return;
  for (const Sheet& totals : {TotalSheet("kind", sizes.kinds), TotalSheet("step", sizes.steps)}) {
    output.Write("\n");
    totals.PrintTable(output, form);
  }
  output.Write("\n" + Counted(sizes.blocks.size(), "block") + ", " + Counted(sizes.bytes, "byte") + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  OpenedDatabase   database(options.database, context.console);
  const KindTable  kinds(database.Get());
  const BlockSizes sizes = SumSizes(ListBlocks(database.Get(), options.selection.ParseBlocks(kinds), kinds));
  if (sizes.blocks.empty()) context.console.Note(options.selection.DescribeNothing(options.database));
  if (options.form.json)
    PrintJson(context.output, Json{{"size", sizes.bytes},
                                   {"blocks", BlockSheet(sizes).ToJson()},
                                   {"kinds", TotalSheet("kind", sizes.kinds).ToJson()},
                                   {"steps", TotalSheet("step", sizes.steps).ToJson()}});
  else
    PrintTables(context.output, options.form, sizes);
}

}  // namespace

CommandFunction DefineSize(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database);
  app.add_option("SELECTION", options->selection.text, "Which blocks: KIND,...@KEY=VALUES,... (default: all)");
  AddStepsOption(app, options->selection);
  AddTableOptions(app, options->form);
  app.footer(
      "Prints the blocks, the largest first, then totals by kind and by step. What is counted are the values of the\n"
      "records: 4 bytes an integer or float, 8 a double, 24 a vector, 48 a tensor; a text its length, a list its "
      "values,\n"
      "and 4 bytes more for the length of either. It is not the room that a database takes on a disk. CSV has the "
      "blocks\n"
      "alone.\n"
      "\n"
      "Examples:\n"
      "  quilon size bracket.onf\n"
      "  quilon size job.frd stress --json");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
