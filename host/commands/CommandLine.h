#pragma once

/// @file
/// The command line as a whole: for who parses it, and for who tells what there is.

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "commands/Command.h"

namespace quilon {

/// The options of the program and all its commands, with their help.
struct CommandLine
{
  CommandLine();
  CommandLine(const CommandLine&)            = delete;
  CommandLine& operator=(const CommandLine&) = delete;
  ~CommandLine();

  std::unique_ptr<CLI::App>                  app;    ///< never null
  std::map<const CLI::App*, CommandFunction> works;  ///< of each command directly below the program

  int                        louder     = 0;
  int                        quieter    = 0;
  bool                       colourless = false;
  std::optional<std::string> memory     = {};  ///< as it was given, see MemoryLimit::Parse()
};

}  // namespace quilon
