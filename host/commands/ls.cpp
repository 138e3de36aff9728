#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include <bundled/OnfKinds.h>

#include "answers/Overview.h"
#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/Listing.h"
#include "database/Provenance.h"
#include "database/StepTimes.h"
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
  bool             summary = false;
  TableForm        form;
};

SheetValue ValueOrNothing(const std::optional<double>& value) { return value ? SheetValue(*value) : SheetValue(); }

/// A line for each kind.
Sheet MakeSummary(const std::vector<ListedBlock>& blocks, const StepTimes& times)
{
  Sheet sheet({{"onf"},
               {"kind"},
               {"blocks"},
               {"steps"},
               {"from-time"},
               {"to-time"},
               {"records"},
               {"size"},
               {"least"},
               {"greatest"},
               {"nan"}});
  for (const KindSummary& kind : SummarizeKinds(blocks, times))
    sheet.Row({kind.onf, kind.kind, kind.blocks, kind.steps, ValueOrNothing(kind.firstTime),
               ValueOrNothing(kind.lastTime), kind.records, ByteCount{kind.bytes},
               kind.hasValues ? SheetValue(kind.least) : SheetValue(),
               kind.hasValues ? SheetValue(kind.greatest) : SheetValue(), kind.nans});
  return sheet;
}

Sheet MakeSheet(const std::vector<ListedBlock>& blocks, const StepTimes& times, const std::string& timeName)
{
  std::vector<SheetColumn> columns = {{"block", SheetColumn::Json}, {"onf"}, {"kind"}};
  for (const IndexKey& key : GetIndexKeys())
    // The quantity of a history is told by its kind.
    columns.push_back({key.key, key.index == OnfIndex::Quantity ? SheetColumn::Json : SheetColumn::Everywhere, true});
  columns.push_back({timeName, SheetColumn::Tables, true});
  columns.push_back({"time", SheetColumn::Json, true});
  for (const char* name : {"records", "size", "least", "greatest", "nan"}) columns.push_back({name});

  Sheet sheet(std::move(columns));
  for (const ListedBlock& block : blocks) {
    const BlockSummary&     summary = block.summary;
    std::vector<SheetValue> row     = {ToSelectionText(block.descriptor),
                                       block.descriptor.GetInteger(FED_DataDescriptor::OnfId), block.kind};
    for (const IndexKey& key : GetIndexKeys())
      row.push_back(block.descriptor.IsSet(key.index) ? SheetValue(block.descriptor.GetInteger(key.index))
                                                      : SheetValue());
    for (int i = 0; i < 2; ++i) row.push_back(ValueOrNothing(times.TimeOf(block.descriptor)));
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
  const StepTimes times(database.Get());
  if (!options.selection.time.empty() && !blocks.empty()) {
    const auto kept = options.selection.Choose(database.Get(), selection, times, options.database);
    std::erase_if(blocks, [&](const ListedBlock& block) {
      return std::find(kept.begin(), kept.end(), block.descriptor) == kept.end();
    });
  }
  std::vector<FED_DataDescriptor> descriptors;
  for (const ListedBlock& block : blocks) descriptors.push_back(block.descriptor);
  const Sheet sheet = options.summary
                          ? MakeSummary(blocks, times)
                          : MakeSheet(blocks, times, NameOfTimes(times, descriptors, kinds).value_or("time"));
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
  AddDatabaseArgument(app, options->database);
  app.add_option("SELECTION", options->selection.text, "Which blocks: KIND,...@KEY=VALUES,... (default: all)");
  AddStepsOption(app, options->selection);
  AddTimeOption(app, options->selection);
  app.add_flag("--summary", options->summary, "A line for each kind");
  AddTableOptions(app, options->form);
  app.footer(
      "Prints a line per block: ONF id and kind, the keys that are set, the time or frequency of its step, the number\n"
      "of records, their size, the least and the greatest value and how many values are NaN. With --verbose also what\n"
      "made the results: files, options and program of every import.\n"
      "\n"
      "Examples:\n"
      "  quilon ls bracket.onf\n"
      "  quilon ls bracket.onf stress,strain@lc=2,sub=last\n"
      "  quilon ls bracket.onf --summary\n"
      "  quilon ls job.frd --csv");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
