#pragma once

/// @file
/// The option of every command that tells components in other axes.

#include <string>

namespace CLI {
class App;
}

namespace quilon {

/// Adds --axes, whose text ComponentAxes takes. The target outlives the parsing.
void AddAxesOption(CLI::App& app, std::string& axes);

}  // namespace quilon
