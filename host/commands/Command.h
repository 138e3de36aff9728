#pragma once

/// @file
/// What a subcommand is.

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quilon {

class Console;
class Crew;
class Output;

/// What a running command may use.
struct CommandContext
{
  Output&  output;
  Console& console;
  Crew*    processes = nullptr;  ///< who shares the work, where processes do; borrowed, null: threads of this one
  /// The verdict of a command that compares or checks: ExitSuccess or ExitDifferent.
  int exitCode = 0;
};

/// Does the work. Failures are thrown.
using CommandFunction = std::function<void(CommandContext&)>;

/// A row of the table of subcommands.
struct Command
{
  const char* name;
  const char* summary;
  /// Declares arguments and help.
  /// @return the work, to be called when the arguments have been read
  CommandFunction (*define)(CLI::App& app);
};

/// Every subcommand, in the order of the help.
const std::vector<Command>& GetCommands();

// One file each.
CommandFunction DefineCheck(CLI::App& app);
CommandFunction DefineCombine(CLI::App& app);
CommandFunction DefineCompact(CLI::App& app);
CommandFunction DefineDeck(CLI::App& app);
CommandFunction DefineDerive(CLI::App& app);
CommandFunction DefineEnvelope(CLI::App& app);
CommandFunction DefineExport(CLI::App& app);
CommandFunction DefineForces(CLI::App& app);
CommandFunction DefineDiff(CLI::App& app);
CommandFunction DefineFromOnf(CLI::App& app);
CommandFunction DefineHistory(CLI::App& app);
CommandFunction DefineImport(CLI::App& app);
CommandFunction DefineIndex(CLI::App& app);
CommandFunction DefineInfo(CLI::App& app);
CommandFunction DefineJoin(CLI::App& app);
CommandFunction DefineLs(CLI::App& app);
CommandFunction DefineMatrix(CLI::App& app);
CommandFunction DefineMax(CLI::App& app);
CommandFunction DefinePath(CLI::App& app);
CommandFunction DefinePlot(CLI::App& app);
CommandFunction DefinePrune(CLI::App& app);
CommandFunction DefineReport(CLI::App& app);
CommandFunction DefineSalvage(CLI::App& app);
CommandFunction DefineServe(CLI::App& app);
CommandFunction DefineSets(CLI::App& app);
CommandFunction DefineShow(CLI::App& app);
CommandFunction DefineSize(CLI::App& app);
CommandFunction DefineSplit(CLI::App& app);
CommandFunction DefineToOnf(CLI::App& app);

}  // namespace quilon
