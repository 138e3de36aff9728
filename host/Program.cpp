#include "Program.h"

#include <algorithm>
#include <exception>
#include <map>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <bundled/LogSink.h>
#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "Console.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Output.h"
#include "quilon_version.h"
#include "Suggestion.h"

namespace quilon {

namespace {

/// The log of the library goes to the console for as long as this object lives.
class LogToConsole
{
public:
  explicit LogToConsole(Console& console)
      : former_(QuilonLog::SetSink([&console](const QuilonLog::Line& line) { console.Log(line.type, line.text); }))
  {
    QuilonLog::SetProgramName("quilon");
  }
  LogToConsole(const LogToConsole&)            = delete;
  LogToConsole& operator=(const LogToConsole&) = delete;
  ~LogToConsole() { QuilonLog::SetSink(std::move(former_)); }

private:
  QuilonLog::Sink former_;
};

/// Names the command or the option that nothing knows, with a suggestion.
/// @throws FED_Failure
void RejectUnknownCommand(int argc, const char* const* argv)
{
  if (argc < 2 || argv[1][0] == '-') return;
  const std::string        word = argv[1];
  std::vector<std::string> names;
  for (const Command& command : GetCommands()) names.emplace_back(command.name);
  if (std::find(names.begin(), names.end(), word) != names.end()) return;
  const std::string suggestion = DidYouMean(word, names);
  Fail("unknown command '" + word + "'" +
       (suggestion.empty() ? ", expected one of the commands that 'quilon --help' lists" : suggestion));
}

/// @return the parser's message, with a suggestion for an option that nothing knows
std::string Explain(const CLI::ParseError& error, const CLI::App& app)
{
  if (dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr) return error.what();
  const auto                     commands = app.get_subcommands();
  const CLI::App&                command  = commands.empty() ? app : *commands.front();
  std::vector<std::string>       names;
  const std::vector<std::string> extras = app.remaining(true);
  for (const CLI::App* known : {&command, &app})
    for (const CLI::Option* option : known->get_options())
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  const std::string& extra = extras.front();
  if (extra.empty() || extra.front() != '-')
    return "unexpected argument '" + extra + "', see 'quilon " + command.get_name() + " --help'";
  const std::string suggestion = DidYouMean(extra.substr(0, extra.find('=')), names);
  return "unknown option '" + extra + "'" +
         (suggestion.empty() ? ", see 'quilon " + command.get_name() + " --help'" : suggestion);
}

void Run(int argc, const char* const* argv, Output& output, Console& console)
{
  CLI::App app("Results of finite-element calculations: import, list, show, derive, move.", "quilon");
  app.set_version_flag("--version", std::string("quilon ") + kQuilonVersion);
  app.require_subcommand(1);
  app.footer(
      "Every command explains itself: quilon ls --help\n"
      "-v and -q go with every command. Exit codes: 0 success, 2 trouble, 130 interrupted.");
  int louder  = 0;
  int quieter = 0;
  app.add_flag("-v,--verbose", louder, "Show the log of the library; twice or three times for more of it");
  app.add_flag("-q,--quiet", quieter, "Show no notes and no progress");

  std::map<const CLI::App*, CommandFunction> works;
  for (const Command& command : GetCommands()) {
    CLI::App& subcommand = *app.add_subcommand(command.name, command.summary);
    subcommand.fallthrough();
    works[&subcommand] = command.define(subcommand);
  }

  RejectUnknownCommand(argc, argv);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    output.Write(app.help());
    return output.Flush();
  } catch (const CLI::CallForVersion& version) {
    output.Write(std::string(version.what()) + '\n');
    return output.Flush();
  } catch (const CLI::ParseError& error) {
    Fail(Explain(error, app));
  }
  console.SetVerbosity(Console::kNotes + louder - quieter);
  CommandContext context{output, console};
  works.at(app.get_subcommands().front())(context);
  output.Flush();
}

}  // namespace

int RunProgram(int argc, const char* const* argv)
{
  WatchSignals();
  Console            console;
  Output             output;
  const LogToConsole log(console);
  try {
    Run(argc, argv, output, console);
    return ExitSuccess;
  } catch (const BrokenPipe&) {
    return ExitBrokenPipe;
  } catch (const Interrupted&) {
    console.Error("interrupted");
    return ExitInterrupted;
  } catch (const std::bad_alloc&) {
    console.Error("out of memory");
  } catch (const std::exception& error) {
    console.Error(error.what());
  }
  return ExitTrouble;
}

}  // namespace quilon
