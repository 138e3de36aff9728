#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include <bundled/OnfKinds.h>

#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/Listing.h"
#include "database/Provenance.h"
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

Sheet MakeSheet(const std::vector<ListedBlock>& blocks)
{
  std::vector<SheetColumn> columns = {{"block", SheetColumn::Json}, {"onf"}, {"kind"}};
  for (const IndexKey& key : GetIndexKeys())
    // The quantity of a history is told by its kind.
    columns.push_back({key.key, key.index == OnfIndex::Quantity ? SheetColumn::Json : SheetColumn::Everywhere, true});
  for (const char* name : {"records", "size", "least", "greatest", "nan"}) columns.push_back({name});

  Sheet sheet(std::move(columns));
  for (const ListedBlock& block : blocks) {
    const BlockSummary&     summary = block.summary;
    std::vector<SheetValue> row     = {ToSelectionText(block.descriptor),
                                       block.descriptor.GetInteger(FED_DataDescriptor::OnfId), block.kind};
    for (const IndexKey& key : GetIndexKeys())
      row.push_back(block.descriptor.IsSet(key.index) ? SheetValue(block.descriptor.GetInteger(key.index))
                                                      : SheetValue());
    row.push_back(summary.records);
    row.push_back(ByteCount{summary.bytes});
    for (const double value : {summary.least, summary.greatest})
      row.push_back(summary.hasValues ? SheetValue(value) : SheetValue());
    row.push_back(summary.nans);
    sheet.Row(std::move(row));
  }
  return sheet;
}

/// What made the results, for people: who reads it by program asks for the records (quilon show DB import-file).
void PrintProvenance(Output& output, const FED_Database& database)
{
  for (const IterationProvenance& iteration : ReadProvenance(database)) {
    std::size_t number = 0;
    for (const ImportProvenance& import : iteration.imports) {
      output.Write("\niteration " + std::to_string(iteration.iteration) + ", import " + std::to_string(++number) + ":");
      for (const ImportSetting& setting : import.settings)
        output.Write(' ' + Printable(setting.name) + '=' + Printable(setting.value));
      output.Write("\n");
      for (const ImportedFile& file : import.files)
        output.Write("  " + Printable(file.role) + ' ' + Printable(file.name) + ", " +
                     Counted(static_cast<std::size_t>(file.size), "byte") + ", checksum " + Printable(file.checksum) +
                     ", changed " + Printable(file.changed) + '\n');
    }
  }
}

void Run(const Options& options, CommandContext& context)
{
  OpenedDatabase  database(options.database, context.console);
  const KindTable kinds(database.Get());
  const Selection selection = options.selection.ParseBlocks(kinds);

  std::vector<ListedBlock> blocks = ListBlocks(
      database.Get(), selection, kinds,
      [&](std::size_t done, std::size_t total) { context.console.Progress("reading", done, total, "blocks"); });
  const bool isVerbose = context.console.IsVerbose();
  if (!selection.NamesKinds() && !isVerbose)
    std::erase_if(blocks, [](const ListedBlock& block) {
      return OnfKind::IsProvenance(block.descriptor.GetInteger(FED_DataDescriptor::OnfId));
    });
  if (blocks.empty()) context.console.Note(options.selection.DescribeNothing(options.database));
  const Sheet sheet = MakeSheet(blocks);
  if (options.form.json) return PrintJson(context.output, sheet.ToJson());
  sheet.PrintTable(context.output, options.form);
  if (StyleOf(options.form) == TableStyle::Aligned) {
    std::size_t bytes = 0;
    for (const ListedBlock& block : blocks) bytes += block.summary.bytes;
    context.output.Write(Counted(blocks.size(), "block") + ", " + FormatBytes(bytes) + '\n');
  }
  if (isVerbose && !options.form.csv) PrintProvenance(context.output, database.Get());
}

}  // namespace

CommandFunction DefineLs(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed), ONF folder or solver result file (.frd, .dat)")
      ->required();
  app.add_option("SELECTION", options->selection.text, "Which blocks: KIND,...@KEY=VALUES,... (default: all)");
  AddStepsOption(app, options->selection);
  AddTableOptions(app, options->form);
  app.footer(
      "Prints a line per block: ONF id and kind, the keys that are set, the number of records, their size, the least\n"
      "and the greatest value and how many values are NaN. With --verbose also what made the results: files, options "
      "and\n"
      "program of every import.\n"
      "\n"
      "Examples:\n"
      "  quilon ls bracket.onf\n"
      "  quilon ls bracket.onf stress,strain@lc=2,sub=last\n"
      "  quilon ls job.frd --csv");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
