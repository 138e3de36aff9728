#include "commands/CommandLine.h"

#include <string>

#include <CLI/CLI.hpp>

#include "quilon_version.h"

namespace quilon {

CommandLine::CommandLine()
    : app(std::make_unique<CLI::App>("Results of finite-element calculations: import, list, show, derive, move.",
                                     "quilon"))
{
  app->set_version_flag("--version", std::string("quilon ") + kQuilonVersion);
  app->require_subcommand(1);
  app->footer(
      "Every command explains itself: quilon help ls, or quilon ls --help\n"
      "-v, -q, --no-color and --memory go with every command.\n"
      "Exit codes: 0 success, 1 different, 2 trouble, 130 interrupted.");
  app->add_flag("-v,--verbose", louder, "Show the log of the library; twice or three times for more of it");
  app->add_flag("-q,--quiet", quieter, "Show no notes and no progress");
  app->add_flag("--no-color", colourless, "Print no colours and no bold letters");
  app->add_option("--memory", memory, "Most memory for the rows of each database, such as 64M")->type_name("SIZE");
  for (const Command& command : GetCommands()) {
    CLI::App& subcommand = *app->add_subcommand(command.name, command.summary);
    subcommand.fallthrough();
    works[&subcommand] = command.define(subcommand);
  }
}

CommandLine::~CommandLine() = default;

}  // namespace quilon
