#pragma once

/// @file
/// The options of every command that prints a table.

#include <string>
#include <vector>

#include "terminal/Table.h"

namespace CLI {
class App;
}

namespace quilon {

class Output;

/// Which form the output takes. Without an option tables are aligned on a terminal and plain elsewhere.
struct TableOptions
{
  bool json  = false;
  bool csv   = false;
  bool table = false;  ///< aligned wherever it goes
};

/// Adds --json, --csv and --table, of which one at most may be given. The options outlive the parsing.
void AddTableOptions(CLI::App& app, TableOptions& options);

TableStyle StyleOf(const TableOptions& options);

TableWriter MakeTable(Output& output, const TableOptions& options, std::vector<TableColumn> columns);

}  // namespace quilon
