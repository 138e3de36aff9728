#include "commands/SelectionOptions.h"

#include <utility>

#include <CLI/CLI.hpp>

#include "answers/TimeChoice.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "text/Failure.h"

namespace quilon {

Selection SelectionOptions::Parse(const KindTable& kinds) const
{
  Selection selection = text.empty() ? Selection() : Selection(text, kinds);
  if (!steps.empty()) selection.SetSteps(steps);
  return selection;
}

Selection SelectionOptions::ParseBlocks(const KindTable& kinds) const
{
  Selection selection = Parse(kinds);
  if (selection.HasComponents())
    Fail("selection '" + text + "' names a component, expected whole kinds: this command works on blocks");
  return selection;
}

std::vector<FED_DataDescriptor> SelectionOptions::Choose(const FED_Database& database, const Selection& selection,
                                                         const StepTimes& times, const std::string& name) const
{
  const TimeChoice                      choice   = time.empty() ? TimeChoice() : TimeChoice(time);
  const std::vector<FED_DataDescriptor> all      = database.GetDataDescriptors(FED_DataDescriptorPattern());
  const std::vector<FED_DataDescriptor> selected = selection.Apply(all);
  if (selected.empty()) Fail(DescribeNothing(name));
  return choice.Keep(selected, all, times, name);
}

std::string SelectionOptions::ToString() const
{
  std::string all = text;
  for (const auto& [option, value] : {std::pair("--steps ", &steps), std::pair("--time ", &time)})
    if (!value->empty()) all += (all.empty() ? "" : " ") + (option + *value);
  return all;
}

std::string SelectionOptions::DescribeNothing(const std::string& database) const
{
  const std::string selected = ToString();
  return database + (selected.empty() ? ": holds no blocks" : ": no block matches '" + selected + "'");
}

CLI::Option* AddDatabaseArgument(CLI::App& app, std::string& database)
{
  return app.add_option("DB", database, "Working database (.fed), ONF folder or solver result file (.frd, .dat)")
      ->required();
}

void AddSelectionArguments(CLI::App& app, std::string& database, SelectionOptions& options)
{
  AddDatabaseArgument(app, database);
  app.add_option("SELECTION", options.text, "Which blocks: KIND.COMPONENT,...@KEY=VALUES,...")->required();
  AddStepsOption(app, options);
  AddTimeOption(app, options);
}

void AddStepsOption(CLI::App& app, SelectionOptions& options)
{
  app.add_option("--steps", options.steps, "Result steps by position: 1,4, 1:9:2 or last")->type_name("STEPS");
}

void AddTimeOption(CLI::App& app, SelectionOptions& options)
{
  app.add_option("--time", options.time, "Result steps by time: 0.8 (within a thousandth of it), 0.2:0.8 or last")
      ->type_name("TIME");
}

}  // namespace quilon
