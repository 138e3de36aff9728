#pragma once

/// @file
/// Waiting for another writer.

#include "database/WatchedFiles.h"

namespace CLI {
class App;
}

namespace quilon {

class Console;

/// Adds --wait SECONDS. The target outlives the parsing.
void AddWaitOption(CLI::App& app, double& seconds);

/// @param console told whom a command waits for; borrowed
LockPatience PatienceOf(double seconds, Console& console);

}  // namespace quilon
