#include <cstddef>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "commands/WaitOption.h"
#include "database/IdIndex.h"
#include "kinds/KindTable.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  std::string      by = "id";
  SelectionOptions selection;
  bool             drop = false;
  WaitOptions      wait;
  TableForm        form;
};

void Report(const Options& options, const IdIndexReport& report, Output& output)
{
  Sheet sheet({{"kind"}, {"blocks"}, {"records"}, {"size"}, {"file"}});
  for (const WrittenOrder& order : report.orders)
    sheet.Row({order.kind, order.blocks, order.rows, ByteCount{order.bytes}, order.file});
  if (options.form.json)
    return PrintJson(output, Json{{"database", options.database},
                                  {"orders", sheet.ToJson()},
                                  {"removed", report.removed},
                                  {"present-blocks", report.present},
                                  {"other-blocks", report.others},
                                  {"most-in-addition", report.mostInAddition}});
  if (!report.orders.empty()) sheet.PrintTable(output, options.form);
  if (options.form.csv) return;
  output.Write((report.orders.empty() ? "" : "\n") + options.database + ": " + Counted(report.orders.size(), "order") +
               " by id written" +
               (report.removed.empty() ? "" : ", " + std::to_string(report.removed.size()) + " removed") + '\n');
  if (report.present > 0) output.Write("  " + Counted(report.present, "block") + " had one\n");
  if (report.others > 0)
    output.Write("  " + Counted(report.others, "block") + " left out: of lists or texts, without ids, or alone\n");
}

void Run(const Options& options, CommandContext& context)
{
  const auto          parse = [&options](const KindTable& kinds) { return options.selection.ParseBlocks(kinds); };
  const IdIndexReport report =
      IndexById(options.database, {parse, options.drop, PatienceOf(options.wait, context.console)}, context.console);
  context.console.ClearProgress();
  const bool isNothing = report.orders.empty() && report.removed.empty() && report.present + report.others == 0;
  if (isNothing && !options.drop) Fail(options.database + ": no block matches '" + options.selection.ToString() + "'");
  Report(options, report, context.output);
}

}  // namespace

CommandFunction DefineIndex(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed)")->required();
  app.add_option("SELECTION", options->selection.text, "Which blocks: KIND,...@KEY=VALUES,... (default: all)");
  AddStepsOption(app, options->selection);
  app.add_option("--by", options->by, "What stands side by side: id (default)")
      ->type_name("ORDER")
      ->check(CLI::IsMember({"id"}));
  app.add_flag("--drop", options->drop, "Take all orders out instead");
  AddWriterOptions(app, options->wait);
  AddTableOptions(app, options->form);
  app.footer(
      "Writes scalars, vectors and tensors of nodes and elements once more, those of one id at all steps side by "
      "side:\n"
      "'quilon history' of some ids reads a page each there instead of a chunk of every step, and prints the same. It\n"
      "takes as much room as the selected blocks. Blocks that change later are read as without it; the next call "
      "orders\n"
      "those that are new or changed.\n"
      "\n"
      "Examples:\n"
      "  quilon index large.fed --by id displacement,stress\n"
      "  quilon index large.fed --drop");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
