#pragma once

/// @file
/// Work on several cores.

#include <cstddef>

namespace CLI {
class App;
}

namespace quilon {

/// Adds --jobs N. The target outlives the parsing and holds the default: the cores.
void AddJobsOption(CLI::App& app, std::size_t& jobs);

}  // namespace quilon
