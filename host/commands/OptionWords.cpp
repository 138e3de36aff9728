#include "commands/OptionWords.h"

#include <algorithm>

#include <CLI/CLI.hpp>

namespace quilon {

std::vector<std::string> NamesOf(const CLI::Option& option)
{
  if (option.get_positional()) return {option.get_name(true)};
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back('-' + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

std::string ValueOf(const CLI::Option& option)
{
  if (option.get_positional()) return option.get_name(true);
  if (!TakesValue(option)) return "";
  const std::string type = option.get_type_name();
  return type.substr(0, std::min(type.find(":value in "), type.find(":{")));  // what a check adds
}

bool TakesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

std::vector<const CLI::Option*> PositionalsOf(const CLI::App& command)
{
  return command.get_options(
      [](const CLI::Option* option) { return option->get_positional() && !option->get_group().empty(); });
}

std::vector<const CLI::Option*> OptionsOf(const CLI::App& command)
{
  return command.get_options(
      [](const CLI::Option* option) { return option->nonpositional() && !option->get_group().empty(); });
}

std::vector<const CLI::App*> CommandsOf(const CLI::App& command)
{
  return command.get_subcommands([](const CLI::App* below) { return !below->get_group().empty(); });
}

std::string WordsOf(const CLI::App& command)
{
  const CLI::App* above = command.get_parent();
  return (above == nullptr ? "" : WordsOf(*above) + ' ') + command.get_name();
}

}  // namespace quilon
