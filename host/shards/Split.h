#pragma once

/// @file
/// A database in parts, each of them a database.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace quilon {

class Listener;

struct SplitOptions
{
  std::filesystem::path database;  ///< a working database
  /// "step": a shard for each result step. "set" or "set:NAME,NAME": one for each set of elements, and one for the
  /// rest. A number: so many parts of the model, by ascending ids.
  std::string           by;
  std::filesystem::path output;  ///< a new folder
};

/// A part of the database.
struct Shard
{
  std::filesystem::path path;
  std::string           holds;  ///< for people: a step, a set, "part 1 of 4"
  std::size_t           blocks = 0;
};

struct SplitReport
{
  std::vector<Shard> shards;
  std::uint64_t      linkedBytes = 0;  ///< of files, counted once for each shard
  std::uint64_t      copiedBytes = 0;
};

/// Makes a folder of shards, 0001.fed and so on, that JoinDatabases() makes one again. By steps no value is copied: a
/// shard has the blocks of its step and all of the model; what belongs to no step else is in the first. By sets and by
/// numbers records of nodes and elements are dealt out, each to one shard: elements to the first set that has them,
/// nodes to the first shard that has an element at them; all other blocks are in the first.
/// @throws FED_Failure, and nothing is written: for a path that is no working database, an output that is there, a way
///         of cutting that is none, or that the database has nothing for
SplitReport SplitDatabase(const SplitOptions& options, Listener& listener);

}  // namespace quilon
