#pragma once

/// @file
/// Commands that several processes run together.

#include <array>

namespace quilon {

/// What quilon-mpi runs, in the order of the help.
inline constexpr std::array<const char*, 8> kSharedCommands = {"check",  "derive", "diff",   "envelope",
                                                               "export", "forces", "import", "max"};

}  // namespace quilon
