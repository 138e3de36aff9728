#pragma once

/// @file
/// A comparison on standard output.

#include "terminal/TableForm.h"

namespace quilon {
class Output;
}

namespace quilon::diff {

struct Report;

/// Prints the worst differences, the worst of each component, the norms, the NaNs that were let pass, a line on what
/// one side alone has, and a line of summary at the end. CSV has the differences alone, blocks that one side alone has
/// first.
/// @param allNorms whether norms of equal blocks are printed, too
void PrintReport(Output& output, const TableForm& form, const Report& report, bool allNorms);

/// Prints the report as docs/quilon-diff.schema.json describes it.
/// @param isBrief whether the verdict and its counts are all
void PrintReportAsJson(Output& output, const Report& report, bool isBrief);

}  // namespace quilon::diff
