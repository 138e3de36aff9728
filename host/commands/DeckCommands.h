#pragma once

/// @file
/// The commands below `quilon deck`, one file each.

#include "commands/Command.h"

namespace quilon {

CommandFunction DefineDeckCheck(CLI::App& app);
CommandFunction DefineDeckConvert(CLI::App& app);
CommandFunction DefineDeckDeps(CLI::App& app);
CommandFunction DefineDeckExpand(CLI::App& app);
CommandFunction DefineDeckTree(CLI::App& app);

}  // namespace quilon
