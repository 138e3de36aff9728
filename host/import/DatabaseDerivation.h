#pragma once

/// @file
/// Results derived from those that a database holds, beside them or in a copy.

#include <filesystem>
#include <string>
#include <vector>

#include "database/WatchedFiles.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

namespace quilon {

class Crew;
class Listener;

struct DerivationOptions
{
  std::filesystem::path database;          ///< whatever OpenedDatabase opens
  std::filesystem::path output;            ///< database for everything; empty: results are added to `database`
  std::string           requests = "all";  ///< as KindRequests reads it
  LockPatience          patience = {};
  Crew*                 crew     = nullptr;  ///< who does it, with the same result for any; borrowed, null: this thread
};

struct DerivedBlock
{
  FED_DataDescriptor descriptor;
  std::string        kind;  ///< its name
};

/// Derives what is requested of all iterations (DeriveResults()), all or nothing. Results that exist are kept, blocks
/// without records are not; energy contributions are added to the energies and go.
/// @return the blocks that are new or were added to
/// @throws FED_Failure where results cannot be added, and for a request that names no kind
std::vector<DerivedBlock> DeriveDatabase(const DerivationOptions& options, Listener& listener);

}  // namespace quilon
