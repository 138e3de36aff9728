#pragma once

/// @file
/// Who reads a database, where several share the work.

#include <functional>
#include <memory>
#include <string>

namespace quilon {

class Crew;
class StoredDatabase;

/// A crew, and a database for each of its threads: a database is used by one thread at a time.
struct Readers
{
  Crew* crew = nullptr;  ///< borrowed; null: this thread alone

  /// Opens the state of the database that is read once more; null where that cannot be, then others take no part.
  /// Called by several threads.
  std::function<std::unique_ptr<StoredDatabase>()> open = {};

  std::string state = {};  ///< of the database, see Plan::state
};

}  // namespace quilon
