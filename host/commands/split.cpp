#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/TableOptions.h"
#include "shards/Split.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::string database;
  std::string by;
  std::string output;
  TableForm   form;
};

void Run(const Options& options, CommandContext& context)
{
  const SplitReport report = SplitDatabase({options.database, options.by, options.output}, context.console);
  Sheet             sheet({{"shard"}, {"holds"}, {"blocks"}});
  for (const Shard& shard : report.shards) sheet.Row({shard.path.string(), shard.holds, shard.blocks});
  if (options.form.json)
    return PrintJson(context.output, Json{{"database", options.database},
                                          {"shards", sheet.ToJson()},
                                          {"linked-bytes", report.linkedBytes},
                                          {"copied-bytes", report.copiedBytes}});
  sheet.PrintTable(context.output, options.form);
  if (!options.form.csv)
    context.output.Write("\n" + options.output + ": " + Counted(report.shards.size(), "shard") + '\n');
}

}  // namespace

CommandFunction DefineSplit(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed)")->required();
  app.add_option("--by", options->by, "step, set, set:NAME,... (sets of elements) or a number of parts")
      ->required()
      ->type_name("WAY");
  app.add_option("-o,--output", options->output, "Folder to make")->required()->type_name("FOLDER");
  AddTableOptions(app, options->form);
  app.footer(
      "Writes a database as several, FOLDER/0001.fed and so on, that 'quilon join' makes\n"
      "one again. By steps no value is copied: each shard has its step and the model. By\n"
      "sets and numbers nodes and elements are dealt out, and all else is in the first.\n"
      "\n"
      "Examples:\n"
      "  quilon split bracket.fed --by step -o steps\n"
      "  quilon split bracket.fed --by set:WEB,FLANGE -o parts\n"
      "  quilon split bracket.fed --by 8 -o eighths");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
