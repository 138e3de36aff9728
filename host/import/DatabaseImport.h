#pragma once

/// @file
/// What `quilon import` does, for programs: solver results into a database on disk or an ONF folder.

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <QuilonDbConnector/FED_DataDescriptor.h>

#include "database/WatchedFiles.h"
#include "import/ResultImport.h"

namespace quilon {

class Listener;

/// What becomes of results that the database has of the iteration already.
enum class FormerResults
{
  OfSameMesh,  ///< they are replaced as a whole when they are of the same nodes and elements; others are a failure
  Replaced,    ///< everything under the iteration is replaced, whatever it is
  Kept         ///< blocks of equal keys are replaced, others stay
};

struct DatabaseImportOptions
{
  ImportOptions              import;   ///< its requests and parts are not used
  std::string                program;  ///< who imports, for the record: "quilon 1.2.0"
  std::optional<std::string> request;  ///< what to derive, see KindRequests; nothing: all that can be
  FormerResults              former = FormerResults::OfSameMesh;
};

struct DatabaseImportReport
{
  ImportReport results;
  std::size_t  blocks      = 0;      ///< written
  bool         isUnchanged = false;  ///< the iteration is of these files already: nothing was read or written
  std::string  formerFiles;          ///< of the results that were there, "job.frd, job.dat"; empty where nobody knows
  std::size_t  numReplaced = 0;      ///< blocks that were there and have new values
  std::vector<FED_DataDescriptor>    gone;        ///< blocks that were there and that these files do not bring
  std::map<std::string, std::size_t> goneByKind;  ///< how many of these, by the name of the kind
};

/// Reads the files as ImportResults() does and publishes them in one step, with what made them (Provenance.h). Stored
/// matrices of the iteration stay where the mesh does: no import of results writes them.
/// @param output   a working database (`NAME.fed`) or an ONF folder, there or not
/// @param listener told of what was kept of bad input
/// @throws FED_Failure for bad input and for results of another mesh; nothing is written then, but the steps that were
///         whole where that is asked for
DatabaseImportReport ImportIntoDatabase(const std::vector<std::filesystem::path>& files,
                                        const std::filesystem::path& output, const DatabaseImportOptions& options,
                                        LockPatience patience, Listener& listener);

}  // namespace quilon
