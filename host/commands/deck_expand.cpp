#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

#include "calculix/deck/DeckFiles.h"
#include "commands/DeckArguments.h"
#include "commands/DeckCommands.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

struct Options
{
  DeckArguments arguments;
  std::string   output;
  std::string   map;
};

std::string MapText(const calculix::DeckExpansion& expansion)
{
  std::string text = "first\tlast\tline\tfile\n";
  for (const calculix::DeckLineRun& run : expansion.runs)
    text += std::to_string(run.first) + '\t' + std::to_string(run.last) + '\t' + std::to_string(run.line) + '\t' +
            expansion.files[run.file].path.string() + '\n';
  return text;
}

bool IsOneFile(const std::filesystem::path& a, const std::filesystem::path& b)
{
  return std::filesystem::absolute(a).lexically_normal() == std::filesystem::absolute(b).lexically_normal();
}

void Run(const Options& options, CommandContext& context)
{
  const auto isPrinted = [](const std::string& file) { return file.empty() || file == kStandardOutput; };
  if (isPrinted(options.output) ? options.map == kStandardOutput
                                : !options.map.empty() && IsOneFile(options.output, options.map))
    Fail(options.map + ": expected another file for the map than for the deck");
  std::optional<OutputFile> out;
  std::optional<OutputFile> map;
  if (!isPrinted(options.output)) out.emplace(options.output);
  if (!isPrinted(options.map)) map.emplace(options.map);
  const calculix::DeckExpansion expansion =
      calculix::ExpandDeck(options.arguments.deck, ToDeckOptions(options.arguments, context.console),
                           [&](std::string_view line) { out ? out->Write(line) : context.output.Write(line); });
  if (map) {
    CheckNoSource(options.map, expansion.files);
    map->Write(MapText(expansion));
  }
  if (out) {
    CheckNoSource(options.output, expansion.files);
    out->Publish();
  }
  if (map) map->Publish();
  if (options.map == kStandardOutput) context.output.Write(MapText(expansion));
}

}  // namespace

CommandFunction DefineDeckExpand(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDeckArguments(app, options->arguments);
  app.add_option("-o,--output", options->output, "File to write (default: standard output)")->type_name("FILE");
  app.add_option("--map", options->map, "File that says which line came from which file and line")->type_name("FILE");
  app.footer(
      "Puts the lines of each included file in place of its include statement; all lines end with a line feed. The\n"
      "map has a row for lines that follow each other in one file: first and last line of the expanded deck, line and\n"
      "name of the file.\n"
      "\n"
      "Example:\n"
      "  quilon deck expand bracket.inp -o whole.inp --map whole.map");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
