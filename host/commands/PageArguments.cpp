#include "commands/PageArguments.h"

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "database/StepTimes.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "report/Report.h"
#include "terminal/Console.h"

namespace quilon {

void AddPageArguments(CLI::App& app, PageArguments& arguments)
{
  AddDatabaseArgument(app, arguments.database);
  app.add_option("SELECTION", arguments.selection.text,
                 "What the page shows: KIND,...@KEY=VALUES,... (default: all that has values of nodes or elements)");
  AddStepsOption(app, arguments.selection);
  AddTimeOption(app, arguments.selection);
}

PageRequest MakePageRequest(const PageArguments& arguments, const FED_Database& database)
{
  const SelectionOptions& selection = arguments.selection;
  const KindTable         kinds(database);
  PageRequest             request;
  request.database = &database;
  request.name     = arguments.database;
  request.blocks   = ChoosePageBlocks(
        selection.Choose(database, selection.ParseBlocks(kinds), StepTimes(database), arguments.database),
        !selection.text.empty());
  return request;
}

void NoteInside(const ReportResult& result, const std::string& page, Console& console)
{
  if (result.lacksRoom)
    console.Note(page +
                 ": the inside of solids has no room in it, so that cuts show no section; fewer steps or kinds, " +
                 "values of 16 bits or 'quilon serve' show it");
}

}  // namespace quilon
