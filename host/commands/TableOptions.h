#pragma once

/// @file
/// The options of every command that prints a table.

#include <array>

#include "terminal/TableForm.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace quilon {

/// Adds --json, --csv and --table, of which one at most may be given. The form outlives the parsing.
/// @return the three, for others to exclude: finding options by their names ends the process where memory runs out
std::array<CLI::Option*, 3> AddTableOptions(CLI::App& app, TableForm& form);

}  // namespace quilon
