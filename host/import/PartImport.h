#pragma once

/// @file
/// Results of one file, read and written by several.

#include <filesystem>
#include <vector>

#include "import/ResultFile.h"

namespace quilon {

struct ImportJob;
struct ImportOptions;

/// @return whether the results of a job may be read in parts: it has one large file whose fields can be read one by
/// one,
///         there is somebody to share the work with, and the database takes parts. Nothing of it depends on how many
///         share the work
bool MayBeDivided(const ImportJob& job);

/// Reads the fields of a job in parts of whole results, each of which is a segment of the database that its reader
/// writes, principal values and all, and takes the parts in order.
/// @param heads of all fields; mesh, kinds and scalars of the job are there
/// @return false, and nothing is done, where there are no two parts
/// @throws FED_Failure of the first part that cannot be read
bool ReadInParts(ImportJob& job, const std::vector<ResultFile::Head>& heads);

/// In a process that does not lead: reads parts for the one that does.
/// @param files   as ImportResults() takes them
/// @param options with the crew
void HelpToReadParts(const std::vector<std::filesystem::path>& files, const ImportOptions& options);

}  // namespace quilon
