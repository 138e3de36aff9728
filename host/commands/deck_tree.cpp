#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "calculix/deck/DeckFiles.h"
#include "commands/DeckArguments.h"
#include "commands/DeckCommands.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  DeckArguments arguments;
  bool          json = false;
};

using Files = std::vector<calculix::DeckFile>;

/// The files that a file includes itself, in the order of its lines.
std::vector<std::vector<std::size_t>> ChildrenOf(const Files& files)
{
  std::vector<std::vector<std::size_t>> children(files.size());
  for (std::size_t i = 1; i < files.size(); ++i) children[files[i].includedAt.file].push_back(i);
  return children;
}

Json ToJson(const Files& files, const std::vector<std::vector<std::size_t>>& children, std::size_t file)
{
  Json node{{"path", files[file].path.string()}, {"lines", files[file].lines}, {"bytes", files[file].bytes}};
  if (file != 0) {
    node["statement"] = files[file].statement;
    node["line"]      = files[file].includedAt.line;
  }
  node["includes"] = Json::array();
  for (const std::size_t child : children[file]) node["includes"].push_back(ToJson(files, children, child));
  return node;
}

void PrintText(Output& output, const Files& files, const std::vector<std::vector<std::size_t>>& children,
               std::size_t file, const std::string& indent)
{
  for (std::size_t i = 0; i < children[file].size(); ++i) {
    const std::size_t         child  = children[file][i];
    const calculix::DeckFile& entry  = files[child];
    const bool                isLast = i + 1 == children[file].size();
    output.Write(indent + (isLast ? "`-- " : "|-- ") + Printable(entry.path.string()) + "  (line " +
                 std::to_string(entry.includedAt.line) + ", " + Counted(static_cast<std::size_t>(entry.lines), "line") +
                 ", " + FormatBytes(entry.bytes) + ")\n");
    PrintText(output, files, children, child, indent + (isLast ? "    " : "|   "));
  }
}

void Run(const Options& options, CommandContext& context)
{
  const Files files =
      calculix::ReadDeckFiles(options.arguments.deck, ToDeckOptions(options.arguments, context.console));
  const auto children = ChildrenOf(files);
  if (options.json) return PrintJson(context.output, ToJson(files, children, 0));

  std::size_t lines = 0;
  std::size_t bytes = 0;
  for (const calculix::DeckFile& file : files) {
    lines += static_cast<std::size_t>(file.lines);
    bytes += file.bytes;
  }
  context.output.Write(Printable(files[0].path.string()) + "  (" +
                       Counted(static_cast<std::size_t>(files[0].lines), "line") + ", " + FormatBytes(files[0].bytes) +
                       ")\n");
  PrintText(context.output, files, children, 0, "");
  context.output.Write(Counted(files.size(), "file") + ", " + Counted(lines, "line") + ", " + FormatBytes(bytes) +
                       '\n');
}

}  // namespace

CommandFunction DefineDeckTree(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDeckArguments(app, options->arguments);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Prints each file below the one that includes it: the line of the statement, its own lines and bytes.\n"
      "\n"
      "Example:\n"
      "  quilon deck tree bracket.inp");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
