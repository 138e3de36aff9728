#pragma once

/// @file
/// Results as a table (.csv).

#include <iosfwd>

class FED_Database;

namespace quilon {

struct ExportPlan;
class Listener;

/// Writes a row for each node or element that has a value, by ascending id, with the columns `id` and KIND-COMPONENT;
/// where there are several steps, step by step with `step` (its position, from 1) and `time` before the id. A cell
/// without a value is empty. Numbers have the shortest form that reads back to the same bits.
///
/// Memory: the values of one step.
/// @throws FED_Failure for a plan with arrays of nodes and of elements
void WriteCsv(const FED_Database& database, const ExportPlan& plan, std::ostream& out, Listener& listener);

}  // namespace quilon
