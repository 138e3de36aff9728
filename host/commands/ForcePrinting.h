#pragma once

/// @file
/// What nodal forces tell, on standard output.

#include "terminal/TableForm.h"

namespace quilon {

class Output;
struct ForceReport;
struct ForceRequest;

/// Prints a table of balances, free bodies or cuts for each result with the verdict of balances below, or one table in
/// all for programs, or JSON.
void PrintForces(Output& output, const TableForm& form, const ForceRequest& request, const ForceReport& report);

}  // namespace quilon
