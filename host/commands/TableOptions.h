#pragma once

/// @file
/// The options of every command that prints a table.

#include "terminal/TableForm.h"

namespace CLI {
class App;
}

namespace quilon {

/// Adds --json, --csv and --table, of which one at most may be given. The form outlives the parsing.
void AddTableOptions(CLI::App& app, TableForm& form);

}  // namespace quilon
