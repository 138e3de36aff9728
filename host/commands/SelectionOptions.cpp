#include "commands/SelectionOptions.h"

#include <CLI/CLI.hpp>

#include "kinds/KindTable.h"

namespace quilon {

Selection SelectionOptions::Parse(const KindTable& kinds) const
{
  Selection selection = text.empty() ? Selection() : Selection(text, kinds);
  if (!steps.empty()) selection.SetSteps(steps);
  return selection;
}

std::string SelectionOptions::ToString() const
{
  if (steps.empty()) return text;
  return text + (text.empty() ? "--steps " : " --steps ") + steps;
}

std::string SelectionOptions::DescribeNothing(const std::string& database) const
{
  const std::string selected = ToString();
  return database + (selected.empty() ? ": holds no blocks" : ": no block matches '" + selected + "'");
}

void AddStepsOption(CLI::App& app, SelectionOptions& options)
{
  app.add_option("--steps", options.steps, "Result steps by position: 1,4, 1:9:2 or last")->type_name("STEPS");
}

}  // namespace quilon
