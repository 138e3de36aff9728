#include <map>
#include <memory>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/DeckCommands.h"

namespace quilon {

CommandFunction DefineDeck(CLI::App& app)
{
  static const std::vector<Command> kCommands = {
      {"check", "Say what is wrong with a deck", DefineDeckCheck},
      {"tree", "Show the files of a deck", DefineDeckTree},
      {"deps", "List the files of a deck for make and ninja", DefineDeckDeps},
      {"expand", "Write a deck and all it includes as one file", DefineDeckExpand},
      {"convert", "Write a copy of a deck and of all its files", DefineDeckConvert},
  };
  const auto works = std::make_shared<std::map<const CLI::App*, CommandFunction>>();
  for (const Command& command : kCommands) {
    CLI::App& subcommand = *app.add_subcommand(command.name, command.summary);
    subcommand.fallthrough();
    (*works)[&subcommand] = command.define(subcommand);
  }
  app.require_subcommand(1);
  app.footer("Every command explains itself: quilon deck check --help");
  return [&app, works](CommandContext& context) { works->at(app.get_subcommands().front())(context); };
}

}  // namespace quilon
