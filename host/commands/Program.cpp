#include "commands/Program.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <bundled/LogSink.h>
#include <bundled/OnfFileLayer.h>
#include <CLI/CLI.hpp>

#include "commands/CommandLine.h"
#include "commands/Completion.h"
#include "commands/ExitCode.h"
#include "commands/ManPage.h"
#include "commands/OptionWords.h"
#include "database/MemoryLimit.h"
#include "database/WatchedFiles.h"
#include "progress/Crew.h"
#include "progress/Interrupt.h"
#include "QuilonUtilities/FED_Failure.h"
#include "terminal/Console.h"
#include "terminal/HelpText.h"
#include "terminal/Output.h"
#include "terminal/Terminal.h"
#include "text/Failure.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

/// ONF text is read and written through files that stop for an interrupt, for as long as this object lives.
class InterruptibleOnfText
{
public:
  InterruptibleOnfText() : former_(OnfFileLayer::Set(&files_)) {}
  InterruptibleOnfText(const InterruptibleOnfText&)            = delete;
  InterruptibleOnfText& operator=(const InterruptibleOnfText&) = delete;
  ~InterruptibleOnfText() { OnfFileLayer::Set(former_); }

private:
  WatchedFiles   files_;
  FED_FileLayer* former_;
};

/// @return whether this process is the one that writes and reports
bool Speaks(const Processes* processes) { return processes == nullptr || processes->crew.Leads(); }

/// @return the arguments; "help deck check" asks for the help of a command as "deck check --help" does
std::vector<const char*> Unfold(int argc, const char* const* argv)
{
  std::vector<const char*> arguments(argv, argv + argc);
  if (argc < 2 || std::string_view(argv[1]) != "help") return arguments;
  arguments.erase(arguments.begin() + 1);
  arguments.push_back("--help");
  return arguments;
}

/// Names the command that nothing knows, with a suggestion.
/// @throws FED_Failure
void RejectUnknownCommand(int argc, const char* const* argv, const CLI::App& app)
{
  const CLI::App* level = &app;
  for (int i = 1; i < argc && argv[i][0] != '-'; ++i) {
    const auto known = level->get_subcommands([](const CLI::App*) { return true; });
    if (known.empty()) return;
    const std::string word  = argv[i];
    const auto        found = std::find_if(known.begin(), known.end(),
                                           [&word](const CLI::App* command) { return command->get_name() == word; });
    if (found == known.end()) {
      std::vector<std::string> names;
      for (const CLI::App* command : known) names.push_back(command->get_name());
      const std::string suggestion = DidYouMean(word, names);
      Fail("unknown command '" + word + "'" +
           (suggestion.empty() ? ", expected one of the commands that '" + WordsOf(*level) + " --help' lists"
                               : suggestion));
    }
    level = *found;
  }
}

/// @return what the parser says of something missing or given twice, in our words; of anything else as it says it
std::string Reworded(const CLI::ParseError& error)
{
  constexpr std::string_view kRequired = " is required";
  const std::string          text      = error.what();
  if (text == "A subcommand is required") return "the command is missing";
  if (error.get_name() == "RequiredError" && text.ends_with(kRequired))
    return text.substr(0, text.size() - kRequired.size()) + " is missing";
  if (error.get_name() == "ArgumentMismatch" && text.ends_with(" missing"))
    return text.substr(0, text.find(':')) + " has no value";
  if (error.get_name() == "ArgumentMismatch" && text.find("At Most 1 ") != std::string::npos)
    return text.substr(0, text.find(':')) + " is given more than once";
  return text;
}

/// @return the parser's message with a suggestion for an option that nothing knows
std::string Explain(const CLI::ParseError& error, const CLI::App& app)
{
  std::vector<const CLI::App*> levels = {&app};
  for (auto below = app.get_subcommands(); !below.empty(); below = below.front()->get_subcommands())
    levels.push_back(below.front());
  const std::string see = ", see '" + WordsOf(*levels.back()) + " --help'";

  // A misspelt option comes first: what else is missing often follows from it.
  const std::vector<std::string> extras = app.remaining(true);
  if (extras.empty()) return Reworded(error) + see;
  std::vector<std::string> names;
  for (const CLI::App* known : levels)
    for (const CLI::Option* option : known->get_options())
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  const std::string& extra = extras.front();
  if (extra.empty() || extra.front() != '-') return "unexpected argument '" + extra + "'" + see;
  const std::string suggestion = DidYouMean(extra.substr(0, extra.find('=')), names);
  return "unknown option '" + extra + "'" + (suggestion.empty() ? see : suggestion);
}

/// Answers other programs: shells, which complete what is being written, and the build, which wants man pages.
///   __complete WORD...   the words behind the program's name, the last one being written
///   __man FOLDER         where the pages go
/// @return whether the arguments are such a question
bool AnswerOthers(const CLI::App& app, const std::vector<std::string>& arguments, Output& output)
{
  if (arguments.front() == "__complete") {
    try {
      output.Write(ToText(Complete(app, {arguments.begin() + 1, arguments.end()})));
      output.Flush();
    } catch (const FED_Failure&) {
      // A database that cannot be read: there is nothing to offer, and the line being written is no place for errors.
    }
    return true;
  }
  if (arguments.front() != "__man" || arguments.size() != 2) return false;
  WriteManPages(app, arguments[1]);
  return true;
}

/// @return the command's verdict
int Run(int argc, const char* const* argv, Output& output, Console& console, const Processes* processes)
{
  CommandLine line;
  CLI::App&   app = *line.app;
  if (argc > 1 && AnswerOthers(app, {argv + 1, argv + argc}, output)) return ExitSuccess;
  RejectUnknownCommand(argc, argv, app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    output.Write(FitHelp(app.help()));
    output.Flush();
    return ExitSuccess;
  } catch (const CLI::CallForVersion& version) {
    output.Write(std::string(version.what()) + '\n');
    output.Flush();
    return ExitSuccess;
  } catch (const CLI::ParseError& error) {
    Fail(Explain(error, app));
  }
  console.SetVerbosity(Console::kNotes + line.louder - line.quieter);
  output.SetColours(MayColour(StandardStream::Output) && !line.colourless);
  if (line.colourless) console.SetColours(false);
  if (!Speaks(processes)) console.SetVerbosity(0);
  std::optional<MemoryLimit> limit;
  if (line.memory) limit.emplace(MemoryLimit::Parse(*line.memory));
  CommandContext context{output, console, processes == nullptr ? nullptr : &processes->crew, ExitSuccess};
  line.works.at(app.get_subcommands().front())(context);
  output.Flush();
  return context.exitCode;
}

/// Where processes that do not lead write to.
class Nowhere
{
public:
  Nowhere() : file_(std::fopen("/dev/null", "w"))
  {
    if (file_ == nullptr) Fail("/dev/null: cannot open");
  }
  Nowhere(const Nowhere&)            = delete;
  Nowhere& operator=(const Nowhere&) = delete;
  ~Nowhere() { static_cast<void>(std::fclose(file_)); }

  std::FILE* Get() noexcept { return file_; }

private:
  std::FILE* file_;
};

/// Runs the command line and reports what goes wrong, once there is something to report with.
int RunReporting(int argc, const char* const* argv, const Processes* processes)
{
  Console                console;
  std::optional<Nowhere> nowhere;
  Output                 output(Speaks(processes) ? stdout : nowhere.emplace().Get());
  const auto             report = [&](const std::string& message) {
    if (Speaks(processes))
      console.Error(message);
    else
      processes->onFailure(message);
  };
  const QuilonLog::ScopedSink log([&console](const QuilonLog::Line& line) { console.Log(line.type, line.text); });
  const InterruptibleOnfText  onfText;
  output.BeforeText([&console] { console.ClearProgress(); });
  try {
    const std::vector<const char*> arguments = Unfold(argc, argv);
    return Run(static_cast<int>(arguments.size()), arguments.data(), output, console, processes);
  } catch (const BrokenPipe&) {
    return ExitBrokenPipe;
  } catch (const Interrupted&) {
    report("interrupted");
    return ExitInterrupted;
  } catch (const std::exception& exception) {
    // A call that the signal broke off, such as the opening of a pipe that nobody writes to, fails in other words.
    report(IsInterrupted() ? "interrupted" : MessageOf(exception));
    if (IsInterrupted()) return ExitInterrupted;
  }
  return ExitTrouble;
}

}  // namespace

int RunProgram(int argc, const char* const* argv, const Processes* processes)
{
  WatchSignals();
  try {
    return RunReporting(argc, argv, processes);
  } catch (const std::bad_alloc&) {
    // Before there is a console, or while it reports.
    std::fputs("quilon: error: out of memory\n", stderr);
  }
  return ExitTrouble;
}

}  // namespace quilon
