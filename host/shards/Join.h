#pragma once

/// @file
/// One database out of those that several processes wrote.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

#include "database/WatchedFiles.h"
#include "shards/BorderRule.h"

namespace quilon {

class KindTable;
class Listener;

struct JoinOptions
{
  /// Working databases. Records that several have go together in this order.
  std::vector<std::filesystem::path> shards;
  std::filesystem::path              output;  ///< a new working database
  /// Makes the rules, once the names of kinds are known; may be empty.
  std::function<BorderRules(const KindTable&)> rules = {};
};

struct JoinReport
{
  std::size_t   linkedBlocks  = 0;  ///< whose values stayed where they are
  std::size_t   mergedBlocks  = 0;  ///< that several shards had records of
  std::size_t   mergedRecords = 0;  ///< that were read of these
  std::size_t   sharedRecords = 0;  ///< of them those that a shard before had as well
  std::size_t   segments      = 0;  ///< files that are linked
  std::size_t   copies        = 0;  ///< of them those that were copied: the file system gave no second name
  std::uint64_t linkedBytes   = 0;
  std::uint64_t copiedBytes   = 0;
};

/// Makes one database of shards. Blocks that one shard alone has are linked (FED_ResultDatabase::LinkBlocks()), as are
/// those of the model that all have alike; records of other blocks are put together, those of one id by its rule. The
/// shards stay as they are, and may go.
/// @throws FED_Failure, and nothing is written: for a path that is no working database, an output that is there, a user
///         kind of two names, a block of two formats, a step that one of several shards of a kind has not, a record
///         that several have without a rule, and one that its rule does not hold for
JoinReport JoinDatabases(const JoinOptions& options, Listener& listener);

}  // namespace quilon
