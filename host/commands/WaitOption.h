#pragma once

/// @file
/// Other writers: how they are kept off, and waiting for them.

#include <string>

#include "database/WatchedFiles.h"

namespace CLI {
class App;
}

namespace quilon {

class Console;

/// What a command that writes does about others that write.
struct WaitOptions
{
  double      seconds = 0;
  std::string lock;  ///< empty: as the environment says
  bool        breaksLock = false;
};

/// Adds --wait SECONDS, --lock and --break-lock. The target outlives the parsing.
void AddWriterOptions(CLI::App& app, WaitOptions& options);

/// @param console told whom a command waits for; borrowed
LockPatience PatienceOf(const WaitOptions& options, Console& console);

}  // namespace quilon
