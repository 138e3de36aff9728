#pragma once

/// @file
/// Result kinds that are derived from other blocks of the same iteration.

class FED_Database;

namespace quilon_results {

/// Writes the principal values of every tensor block of `sourceOnf` into the block of `targetOnf` beside it.
/// @param skipExisting leaves a target block that exists as it is, without a log line
void DerivePrincipalValues(FED_Database& db, int iteration, int sourceOnf, int targetOnf, bool skipExisting);

/// Adds to every scalar block of `targetOnf` the block of `sourceOnf` beside it, where there is one.
/// @param deleteSource deletes the block that was added
void AddScalarFields(FED_Database& db, int iteration, int targetOnf, int sourceOnf, bool deleteSource);

}  // namespace quilon_results
