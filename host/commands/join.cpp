#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "kinds/KindTable.h"
#include "shards/Join.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::vector<std::string> shards;
  std::string              output;
  std::vector<std::string> rules;
  bool                     json = false;
};

void Run(const Options& options, CommandContext& context)
{
  const auto rules = [&options](const KindTable& kinds) {
    BorderRules made;
    for (const std::string& rule : options.rules)
      made.Add(rule, [&kinds](std::string_view kind) { return kinds.Resolve(kind); });
    return made;
  };
  const JoinReport report =
      JoinDatabases({{options.shards.begin(), options.shards.end()}, options.output, rules}, context.console);
  if (options.json)
    return PrintJson(context.output, Json{{"output", options.output},
                                          {"shards", options.shards.size()},
                                          {"linked-blocks", report.linkedBlocks},
                                          {"merged-blocks", report.mergedBlocks},
                                          {"merged-records", report.mergedRecords},
                                          {"shared-records", report.sharedRecords},
                                          {"linked-bytes", report.linkedBytes},
                                          {"copied-bytes", report.copiedBytes}});
  context.output.Write(options.output + ": " + Counted(report.linkedBlocks + report.mergedBlocks, "block") + " of " +
                       Counted(options.shards.size(), "shard") + '\n');
  context.output.Write("  linked: " + Counted(report.linkedBlocks, "block") + " in " +
                       Counted(report.segments, "file") + ", " + FormatBytes(report.linkedBytes) +
                       (report.copies > 0 ? ", " + FormatBytes(report.copiedBytes) + " copied" : "") + '\n');
  if (report.mergedBlocks > 0)
    context.output.Write("  put together: " + Counted(report.mergedBlocks, "block") + " of " +
                         Counted(report.mergedRecords, "record") + ", " + std::to_string(report.sharedRecords) +
                         " at borders\n");
}

}  // namespace

CommandFunction DefineJoin(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("SHARD", options->shards, "Working databases (.fed), in the order in which records go together")
      ->required();
  app.add_option("-o,--output", options->output, "Working database (.fed) to make")->required()->type_name("OUT");
  app.add_option("--rule", options->rules, "Records that several shards have: 'KIND,...: RULE'; repeat for more")
      ->type_name("RULE")
      ->expected(1)
      ->take_all();
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Makes one database of those that several processes wrote. What one shard alone\n"
      "has is linked: its files get a second name here, and no value is copied. Of the\n"
      "other blocks records are put together, those that several shards have by a rule:\n"
      "  first           the record of the first shard\n"
      "  average         of all values, by means, variances and counts (stress, strain)\n"
      "  sum             added up in the order of the shards\n"
      "  union           lists of ids together\n"
      "  must-agree TOL  the first, if the others are within TOL of it\n"
      "Coordinates and all else of the model have to agree and sets are united unless\n"
      "told otherwise; results need a rule where records meet. '*' stands for the rest.\n"
      "\n"
      "Examples:\n"
      "  quilon join job.fed/00*.fed -o whole.fed --rule 'stress,strain: average'\n"
      "  quilon join a.fed b.fed -o ab.fed --rule '580: sum' --rule '*: first'");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
