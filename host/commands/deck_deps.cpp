#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "calculix/deck/DeckFiles.h"
#include "commands/DeckArguments.h"
#include "commands/DeckCommands.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/JsonText.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

struct Options
{
  DeckArguments arguments;
  std::string   target;
  std::string   output;
  bool          json = false;
};

/// A path as make and ninja both read it in a list of dependencies: a blank, a '#' and a ':' behind a backslash, the
/// backslashes before them doubled, a '$' doubled.
/// @throws FED_Failure for a path with a line end in it, which such a list cannot hold
std::string Escaped(const std::string& path)
{
  std::string escaped;
  std::size_t backslashes = 0;
  for (const char c : path) {
    if (c == '\n' || c == '\r') Fail(path + ": expected a path without line ends");
    if (c == ' ' || c == '#' || c == ':') escaped.append(backslashes + 1, '\\');
    if (c == '$') escaped += '$';
    escaped += c;
    backslashes = c == '\\' ? backslashes + 1 : 0;
  }
  return escaped;
}

std::string RuleText(const std::string& target, const std::vector<std::string>& paths)
{
  std::string text = Escaped(target) + ":";
  for (const std::string& path : paths) text += " \\\n  " + Escaped(path);
  return text + '\n';
}

void Run(const Options& options, CommandContext& context)
{
  const bool isPrinted = options.output.empty() || options.output == kStandardOutput;
  if (!isPrinted) CheckOutputFile(options.output);
  std::vector<std::string> paths;
  std::set<std::string>    known;
  const auto files = calculix::ReadDeckFiles(options.arguments.deck, ToDeckOptions(options.arguments, context.console));
  for (const calculix::DeckFile& file : files)
    if (known.insert(file.path.string()).second) paths.push_back(file.path.string());

  const std::string target = options.target.empty()
                                 ? std::filesystem::path(options.arguments.deck).replace_extension(".frd").string()
                                 : options.target;
  const std::string text =
      options.json ? JsonText(Json{{"target", target}, {"files", paths}}, 2) + '\n' : RuleText(target, paths);
  if (isPrinted) return context.output.Write(text);
  CheckNoSource(options.output, files);
  WriteFile(options.output, text);
}

}  // namespace

CommandFunction DefineDeckDeps(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDeckArguments(app, options->arguments);
  app.add_option("--target", options->target, "What is made of the deck (default: DECK with the extension .frd)")
      ->type_name("PATH");
  app.add_option("-o,--output", options->output, "File to write (default: standard output)")->type_name("FILE");
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Writes a rule that make includes and ninja takes as a depfile: the target depends on the deck and on every\n"
      "file that it includes.\n"
      "\n"
      "Example:\n"
      "  quilon deck deps bracket.inp --target bracket.frd -o bracket.d");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
