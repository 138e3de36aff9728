#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "calculix/deck/ReadDeckModel.h"
#include "commands/DeckArguments.h"
#include "commands/DeckCommands.h"
#include "commands/ExitCode.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

using calculix::DeckMessage;
using calculix::DeckModel;

struct Options
{
  DeckArguments arguments;
  bool          json   = false;
  bool          werror = false;
};

const char* SeverityName(const DeckMessage& message)
{
  return message.severity == DeckMessage::Error ? "error" : "warning";
}

std::size_t LinesOf(const DeckModel& model)
{
  std::size_t lines = 0;
  for (const calculix::DeckFile& file : model.files) lines += static_cast<std::size_t>(file.lines);
  return lines;
}

void PrintJson(Output& output, const DeckModel& model, const std::vector<DeckMessage>& messages, std::size_t errors)
{
  Json json{{"files", model.files.size()},
            {"lines", LinesOf(model)},
            {"nodes", model.nodes.Entries().size()},
            {"elements", model.elements.Entries().size()},
            {"node-sets", model.nodeSets.size()},
            {"element-sets", model.elementSets.size()},
            {"materials", model.materials.size()},
            {"steps", model.steps.size()},
            {"errors", errors},
            {"warnings", messages.size() - errors}};
  json["messages"] = Json::array();
  for (const DeckMessage& message : messages)
    json["messages"].push_back({{"severity", SeverityName(message)},
                                {"file", model.files[message.place.file].path.string()},
                                {"line", message.place.line},
                                {"message", message.text},
                                {"text", message.line}});
  PrintJson(output, json);
}

void PrintText(Output& output, const DeckModel& model, const std::vector<DeckMessage>& messages, std::size_t errors)
{
  for (const DeckMessage& message : messages)
    output.Write(Printable(model.Describe(message.place)) + ": " + SeverityName(message) + ": " +
                 Printable(message.text) + "\n  " + Printable(message.line) + '\n');
  output.Write(Counted(errors, "error") + ", " + Counted(messages.size() - errors, "warning") + " in " +
               Counted(LinesOf(model), "line") + " of " + Counted(model.files.size(), "file") + ": " +
               Counted(model.nodes.Entries().size(), "node") + ", " +
               Counted(model.elements.Entries().size(), "element") + ", " +
               Counted(model.nodeSets.size() + model.elementSets.size(), "set") + ", " +
               Counted(model.materials.size(), "material") + ", " + Counted(model.steps.size(), "step") + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  std::vector<DeckMessage> messages;
  const DeckModel          model =
      calculix::ReadDeckModel(options.arguments.deck, ToDeckOptions(options.arguments, context.console), messages);
  const auto errors =
      static_cast<std::size_t>(std::count_if(messages.begin(), messages.end(), [](const DeckMessage& message) {
        return message.severity == DeckMessage::Error;
      }));
  if (options.json) {
    PrintJson(context.output, model, messages, errors);
  } else {
    PrintText(context.output, model, messages, errors);
  }
  if (errors > 0 || (options.werror && !messages.empty())) context.exitCode = ExitDifferent;
}

}  // namespace

CommandFunction DefineDeckCheck(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDeckArguments(app, options->arguments);
  app.add_flag("--json", options->json, "Print JSON");
  app.add_flag("--werror", options->werror, "Warnings too give exit code 1");
  app.footer(
      "Prints FILE:LINE: error: MESSAGE or FILE:LINE: warning: MESSAGE, and the line. An error stops the solver or\n"
      "changes what it computes unseen; a warning may be meant. Exit code 1 when there are errors (with --werror,\n"
      "warnings too), 2 when the deck cannot be read.\n"
      "\n"
      "Example:\n"
      "  quilon deck check bracket.inp");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
