#pragma once

/// @file
/// What a page tells beside the model: what the database holds, how exact it is, and where it comes from.

#include <string>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "text/JsonText.h"

class FED_Database;

namespace quilon {

class Listener;

/// @return overview, blocks, deviations of averages from the solver's own, and imports
/// @param name of the database, for messages
Json DescribeDatabase(const FED_Database& database, const std::string& name, Listener& listener);

/// @return the files that each iteration was imported from, and by which settings
Json DescribeImports(const FED_Database& database);

/// Judges the balance of the nodal forces of each result that has what it takes, one result after the other.
/// @return verdict, and for each result what was judged; the reason where nothing was
Json JudgeBalance(const FED_Database& database, int iteration, const std::string& name, Listener& listener);

}  // namespace quilon
