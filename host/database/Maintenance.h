#pragma once

/// @file
/// Keeping databases in order: checking, saving what is left, taking blocks out, giving bytes back.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

#include <bundled/FED_DatabaseInspection.h>

#include "database/Listing.h"
#include "database/WatchedFiles.h"

class FED_Database;

namespace quilon {

class Crew;
class Listener;
class Selection;

/// Reads and checks every byte of a working database (`.fed`).
/// @param crew who does it, with the same report for any; borrowed, null: this thread alone
/// @throws FED_Failure when the folder cannot be listed, Interrupted
FED_DatabaseReport CheckWorkingDatabase(const std::filesystem::path& path, Listener& listener, Crew* crew = nullptr);

/// Reads all values of a database of any sort. What cannot be read is a finding.
FED_DatabaseReport CheckByReading(const FED_Database& database);

/// Copies every whole chunk of a damaged working database into a new one, all or nothing.
/// @param output a working database (`.fed`) or an ONF folder that does not exist
/// @throws FED_Failure when nothing whole is found; then nothing is written
FED_SalvageReport Salvage(const std::filesystem::path& path, const std::filesystem::path& output, Listener& listener);

struct CompactionReport
{
  std::uint64_t bytesBefore = 0;  ///< of the folder's files
  std::uint64_t bytesAfter  = 0;
  // Of a compaction in pieces.
  std::size_t   pieces       = 0;  ///< each of them a commit by itself
  std::size_t   keptSegments = 0;  ///< with bytes to give back that stay: linked, or larger than the room
  std::uint64_t keptBytes    = 0;  ///< to be given back in those
  std::uint64_t roomForAll   = 0;  ///< in which those that are not linked could be written anew; 0: there are none
};

/// Writes all that is alive in a working database into one segment. Readers are not disturbed; an interrupt leaves it
/// as it was.
CompactionReport Compact(const std::filesystem::path& path, Listener& listener, LockPatience patience = {});

/// Gives back the bytes of deleted and replaced records piece by piece, each of them a commit. Readers are not
/// disturbed; an interrupt leaves what was done by then, and the next call goes on.
/// @param room most bytes of a piece, which are on the disk beside those that it replaces
CompactionReport CompactInPieces(const std::filesystem::path& path, std::uint64_t room, Listener& listener,
                                 LockPatience patience = {});

struct PruneOptions
{
  /// Makes the selection for the kinds of the database.
  std::function<Selection(const class KindTable& kinds)> selection;
  bool                                                   dryRun   = false;  ///< only tell what would go
  LockPatience                                           patience = {};
};

/// Takes blocks out of a working database, all of them or none.
/// @return the blocks, in the order of their descriptors; empty, and nothing is done, where the selection meets none
/// @throws FED_Failure for what is no working database
std::vector<ListedBlock> Prune(const std::filesystem::path& path, const PruneOptions& options);

}  // namespace quilon
