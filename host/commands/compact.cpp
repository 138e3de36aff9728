#include <cstdint>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/WaitOption.h"
#include "database/Maintenance.h"
#include "database/MemoryLimit.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::string database;
  bool        incremental = false;
  std::string room        = "2G";
  WaitOptions wait;
  bool        json = false;
};

/// What of a compaction in pieces was left.
void TellRest(const Options& options, const CompactionReport& report, Output& output)
{
  if (report.keptSegments == 0) return;
  const std::string bytes = "  " + FormatBytes(report.keptBytes) + " stay in " + Counted(report.keptSegments, "file");
  if (report.roomForAll > 0)
    output.Write(bytes + ", --room " + options.room + " is less than the " + FormatBytes(report.roomForAll) +
                 " that they need\n");
  else
    output.Write(bytes + " that may be another database's as well; 'quilon compact' without --incremental copies\n");
}

void Report(const Options& options, const CompactionReport& report, Output& output)
{
  if (options.json) {
    Json json{{"database", options.database}, {"bytes-before", report.bytesBefore}, {"bytes-after", report.bytesAfter}};
    if (options.incremental) {
      json["pieces"]       = report.pieces;
      json["kept-files"]   = report.keptSegments;
      json["kept-bytes"]   = report.keptBytes;
      json["room-for-all"] = report.roomForAll;
    }
    return PrintJson(output, json);
  }
  output.Write(options.database + ": " + FormatBytes(report.bytesBefore) + " before, " +
               FormatBytes(report.bytesAfter) + " after" +
               (options.incremental ? ", " + Counted(report.pieces, "piece") : "") + '\n');
  TellRest(options, report, output);
}

void Run(const Options& options, CommandContext& context)
{
  const LockPatience patience = PatienceOf(options.wait, context.console);
  if (!options.incremental)
    return Report(options, Compact(options.database, context.console, patience), context.output);
  const std::uint64_t room = MemoryLimit::Parse(options.room);
  Report(options, CompactInPieces(options.database, room, context.console, patience), context.output);
}

}  // namespace

CommandFunction DefineCompact(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed)")->required();
  auto* const incremental = app.add_flag("--incremental", options->incremental, "Piece by piece, in little room");
  app.add_option("--room", options->room, "Most bytes of a piece (default: 2G)")->type_name("SIZE")->needs(incremental);
  AddWriterOptions(app, options->wait);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Writes all that is alive into one segment: bytes of deleted and replaced records are given back. Whoever reads\n"
      "the database meanwhile is not disturbed, and an interrupt leaves it as it was.\n"
      "\n"
      "With --incremental only files that have such bytes are written anew, in pieces that need so much room beside "
      "what\n"
      "is there. Each is a commit by itself: an interrupt leaves what was done, and the next call goes on.\n"
      "\n"
      "Examples:\n"
      "  quilon compact bracket.fed\n"
      "  quilon compact large.fed --incremental --room 500M");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
