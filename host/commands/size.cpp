#include <algorithm>
#include <cstddef>
#include <map>
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

/// Blocks that are counted together.
struct Total
{
  std::size_t blocks = 0;
  std::size_t bytes  = 0;
};
using Totals = std::map<std::string, Total>;

struct SizedBlock
{
  std::string block;
  std::string kind;
  std::string step;
  std::size_t bytes;
};

struct Sizes
{
  std::vector<SizedBlock> blocks;  // the largest first
  Totals                  kinds;
  Totals                  steps;
  Total                   all;
};

/// @return the block's keys without its kind: "it=0,lc=1"; "-" without any
std::string StepOf(const FED_DataDescriptor& descriptor)
{
  std::string step;
  for (const IndexKey& key : GetIndexKeys()) {
    const bool isQuantity = key.index == OnfIndex::Quantity && GetQuantity(descriptor) != 0;
    if (!descriptor.IsSet(key.index) || key.index == FED_DataDescriptor::Layer || isQuantity) continue;
    step += (step.empty() ? "" : ",") + std::string(key.key) + '=' + std::to_string(descriptor.GetInteger(key.index));
  }
  return step.empty() ? "-" : step;
}

void Add(std::size_t bytes, Total& total)
{
  ++total.blocks;
  total.bytes += bytes;
}

/// What QuilonDataBlockSize counts record by record, asked of the columns: a database on disk answers from its indices.
Sizes Measure(const FED_Database& database, const Selection& selection)
{
  const KindTable kinds(database);
  Sizes           sizes;
  for (const FED_DataDescriptor& descriptor : selection.Apply(database.GetDataDescriptors(FED_DataDescriptorPattern())))
  {
    ThrowIfInterrupted();
    const std::size_t bytes = Summarize(database.GetConstDataBlock(descriptor)).bytes;
    sizes.blocks.push_back({ToSelectionText(descriptor), kinds.GetName(descriptor), StepOf(descriptor), bytes});
    const SizedBlock& block = sizes.blocks.back();
    Add(bytes, sizes.kinds[block.kind]);
    Add(bytes, sizes.steps[block.step]);
    Add(bytes, sizes.all);
  }
  // Blocks of one size stay in the order of their descriptors.
  std::stable_sort(sizes.blocks.begin(), sizes.blocks.end(),
                   [](const SizedBlock& a, const SizedBlock& b) { return a.bytes > b.bytes; });
  return sizes;
}

/// The largest first.
std::vector<std::pair<std::string, Total>> Sorted(const Totals& totals)
{
  std::vector<std::pair<std::string, Total>> sorted(totals.begin(), totals.end());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return a.second.bytes > b.second.bytes; });
  return sorted;
}

Json TotalsJson(const Totals& totals, const char* name)
{
  Json list = Json::array();
  for (const auto& [key, total] : Sorted(totals))
    list.push_back(Json{{name, key}, {"blocks", total.blocks}, {"size", total.bytes}});
  return list;
}

void PrintJson(Output& output, const Sizes& sizes)
{
  Json json;
  json["size"]   = sizes.all.bytes;
  json["blocks"] = Json::array();
  for (const SizedBlock& block : sizes.blocks)
    json["blocks"].push_back(
        Json{{"block", block.block}, {"kind", block.kind}, {"step", block.step}, {"size", block.bytes}});
  json["kinds"] = TotalsJson(sizes.kinds, "kind");
  json["steps"] = TotalsJson(sizes.steps, "step");
  output.Write(JsonText(json, 2) + '\n');
}

std::string SizeCell(const TableForm& form, std::size_t bytes)
{
  return StyleOf(form) == TableStyle::Aligned ? FormatBytes(bytes) : std::to_string(bytes);
}

void PrintTotals(Output& output, const TableForm& form, const char* name, const Totals& totals)
{
  output.Write("\n");
  TableWriter table = MakeTable(output, form, {{name, true}, {"blocks", false}, {"size", false}});
  for (const auto& [key, total] : Sorted(totals))
    table.Row({key, std::to_string(total.blocks), SizeCell(form, total.bytes)});
  table.Finish();
}

void PrintTables(Output& output, const TableForm& form, const Sizes& sizes)
{
  TableWriter table = MakeTable(output, form, {{"kind", true}, {"block", true}, {"size", false}});
  for (const SizedBlock& block : sizes.blocks) table.Row({block.kind, block.block, SizeCell(form, block.bytes)});
  table.Finish();
  if (form.csv) return;
  PrintTotals(output, form, "kind", sizes.kinds);
  PrintTotals(output, form, "step", sizes.steps);
  output.Write("\n" + Counted(sizes.all.blocks, "block") + ", " + Counted(sizes.all.bytes, "byte") + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  OpenedDatabase database(options.database, context.console);
  const Sizes    sizes = Measure(database.Get(), options.selection.Parse(KindTable(database.Get())));
  if (sizes.blocks.empty()) context.console.Note(options.selection.DescribeNothing(options.database));
  if (options.form.json)
    PrintJson(context.output, sizes);
  else
    PrintTables(context.output, options.form, sizes);
}

}  // namespace

CommandFunction DefineSize(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed), ONF folder or solver result file (.frd, .dat)")
      ->required();
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
