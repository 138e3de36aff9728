#pragma once

/// @file
/// Which form the output of a table takes.

#include <vector>

#include "terminal/Table.h"

namespace quilon {

class Output;

/// Without a choice tables are aligned on a terminal and plain elsewhere.
struct TableForm
{
  bool json  = false;
  bool csv   = false;
  bool table = false;  ///< aligned wherever it goes
};

TableStyle StyleOf(const TableForm& form);

TableWriter MakeTable(Output& output, const TableForm& form, std::vector<TableColumn> columns);

}  // namespace quilon
