#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "answers/Overview.h"
#include "answers/Region.h"
#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "import/OpenedDatabase.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Sheet.h"

namespace quilon {

namespace {

struct Options
{
  std::string database;
  TableForm   form;
};

void Run(const Options& options, CommandContext& context)
{
  OpenedDatabase               database(options.database, context.console);
  Region                       region(database.Get(), {}, options.database);
  const std::vector<ModelName> names  = ListModelNames(database.Get(), region);
  const bool                   isMany = std::any_of(names.begin(), names.end(),
                                                    [&](const ModelName& name) { return name.iteration != names.front().iteration; });
  Sheet                        sheet({{"what"},
                                      {"it", SheetColumn::Everywhere, true},
                                      {"number", SheetColumn::Everywhere, true},
                                      {"name"},
                                      {"count"}});
  for (const ModelName& name : names)
    sheet.Row({name.what, isMany ? SheetValue(name.iteration) : SheetValue(),
               name.number == 0 ? SheetValue() : SheetValue(name.number), name.name, name.count});
  context.console.ClearProgress();
  if (names.empty()) context.console.Note(options.database + ": has no sets, materials or elements");
  if (options.form.json) return PrintJson(context.output, sheet.ToJson());
  sheet.PrintTable(context.output, options.form);
}

}  // namespace

CommandFunction DefineSets(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database);
  AddTableOptions(app, options->form);
  app.footer(
      "Lists what --set, --material, --axes and group=NAME understand: sets of nodes and elements, materials, element\n"
      "types, orientations and the groups of averages, each with the number of its nodes or elements, of a group with\n"
      "that of its blocks.\n"
      "\n"
      "Examples:\n"
      "  quilon sets bracket.onf\n"
      "  quilon sets bracket.onf --json");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
