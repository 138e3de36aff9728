#pragma once

/// @file
/// A comparison on standard output.

#include "commands/TableOptions.h"

namespace quilon {
class Output;
}

namespace quilon::diff {

struct Report;

/// Prints the worst differences, the norms, the NaNs that were let pass, and a line of summary at the end. CSV has the
/// differences alone.
/// @param allNorms whether norms of equal blocks are printed, too
void PrintReport(Output& output, const TableOptions& form, const Report& report, bool allNorms);

void PrintReportAsJson(Output& output, const Report& report);

}  // namespace quilon::diff
