#pragma once

/// @file
/// The commands below `quilon matrix`.

#include "commands/Command.h"

namespace quilon {

// One file each.
CommandFunction DefineMatrixImport(CLI::App& app);
CommandFunction DefineMatrixExport(CLI::App& app);
CommandFunction DefineMatrixShow(CLI::App& app);

}  // namespace quilon
