#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include <bundled/OnfKinds.h>

#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/BlockSummary.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  TableForm        form;
};

struct ListedBlock
{
  FED_DataDescriptor descriptor;
  std::string        kind;
  BlockSummary       summary;
};

/// The keys that tell the blocks apart: those that at least one of them has set. The quantity of a history is told by
/// its kind.
std::vector<IndexKey> UsedKeys(const std::vector<FED_DataDescriptor>& descriptors)
{
  std::vector<IndexKey> keys;
  for (const IndexKey& key : GetIndexKeys())
    for (const FED_DataDescriptor& descriptor : descriptors) {
      const bool isQuantity = key.index == OnfIndex::Quantity &&
                              descriptor.GetInteger(FED_DataDescriptor::OnfId) == FED_OnfId_ScalarHistory;
      if (!descriptor.IsSet(key.index) || isQuantity) continue;
      keys.push_back(key);
      break;
    }
  return keys;
}

void PrintJson(Output& output, const std::vector<ListedBlock>& blocks)
{
  Json list = Json::array();
  for (const ListedBlock& block : blocks) {
    Json row;
    row["block"] = ToSelectionText(block.descriptor);
    row["onf"]   = block.descriptor.GetInteger(FED_DataDescriptor::OnfId);
    row["kind"]  = block.kind;
    for (const IndexKey& key : GetIndexKeys())
      if (block.descriptor.IsSet(key.index)) row[key.key] = block.descriptor.GetInteger(key.index);
    row["records"]  = block.summary.records;
    row["size"]     = block.summary.bytes;
    row["least"]    = block.summary.hasValues ? JsonNumber(block.summary.least) : Json();
    row["greatest"] = block.summary.hasValues ? JsonNumber(block.summary.greatest) : Json();
    row["nan"]      = block.summary.nans;
    list.push_back(std::move(row));
  }
  output.Write(JsonText(list, 2) + '\n');
}

void PrintTable(Output& output, const TableForm& form, const std::vector<ListedBlock>& blocks)
{
  const bool                      forPeople = StyleOf(form) == TableStyle::Aligned;
  std::vector<FED_DataDescriptor> descriptors;
  for (const ListedBlock& block : blocks) descriptors.push_back(block.descriptor);
  const std::vector<IndexKey> keys    = UsedKeys(descriptors);
  std::vector<TableColumn>    columns = {{"onf", false}, {"kind", true}};
  for (const IndexKey& key : keys) columns.push_back({key.key, false});
  for (const char* name : {"records", "size", "least", "greatest", "nan"}) columns.push_back({name, false});

  TableWriter       table = MakeTable(output, form, std::move(columns));
  const std::string none  = form.csv ? "" : "-";
  std::size_t       bytes = 0;
  for (const ListedBlock& block : blocks) {
    const BlockSummary&      summary = block.summary;
    std::vector<std::string> cells   = {std::to_string(block.descriptor.GetInteger(FED_DataDescriptor::OnfId)),
                                        block.kind};
    for (const IndexKey& key : keys)
      cells.push_back(block.descriptor.IsSet(key.index) ? std::to_string(block.descriptor.GetInteger(key.index))
                                                        : none);
    cells.push_back(std::to_string(summary.records));
    cells.push_back(forPeople ? FormatBytes(summary.bytes) : std::to_string(summary.bytes));
    for (const double value : {summary.least, summary.greatest})
      cells.push_back(!summary.hasValues ? none : forPeople ? FormatRounded(value) : FormatNumber(value));
    cells.push_back(std::to_string(summary.nans));
    table.Row(std::move(cells));
    bytes += summary.bytes;
  }
  table.Finish();
  if (forPeople) output.Write(Counted(blocks.size(), "block") + ", " + FormatBytes(bytes) + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  OpenedDatabase  database(options.database, context.console);
  const KindTable kinds(database.Get());
  const Selection selection = options.selection.Parse(kinds);

  const std::vector<FED_DataDescriptor> descriptors =
      selection.Apply(database.Get().GetDataDescriptors(FED_DataDescriptorPattern()));
  if (descriptors.empty()) context.console.Note(options.selection.DescribeNothing(options.database));
  std::vector<ListedBlock> blocks;
  for (const FED_DataDescriptor& descriptor : descriptors) {
    ThrowIfInterrupted();
    context.console.Progress("reading", blocks.size(), descriptors.size(), "blocks");
    const FED_DataBlock& block = database.Get().GetConstDataBlock(descriptor);
    blocks.push_back({descriptor, kinds.GetName(descriptor), Summarize(block)});
  }
  if (options.form.json)
    PrintJson(context.output, blocks);
  else
    PrintTable(context.output, options.form, blocks);
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
      "and the greatest value and how many values are NaN.\n"
      "\n"
      "Examples:\n"
      "  quilon ls bracket.onf\n"
      "  quilon ls bracket.onf stress,strain@lc=2,sub=last\n"
      "  quilon ls job.frd --csv");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
