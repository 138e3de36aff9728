#pragma once

/// @file
/// Options that take a number.

#include <string>

namespace CLI {
class App;
}

namespace quilon {

/// Adds an option that takes an integer. The target outlives the parsing.
void AddIntegerOption(CLI::App& app, const std::string& name, int& target, const std::string& description);

}  // namespace quilon
