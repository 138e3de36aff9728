#pragma once

/// @file
/// Options that take a number.

#include <cstddef>
#include <optional>
#include <string>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace quilon {

/// Adds an option that takes an integer. The target outlives the parsing.
/// @return the option, of the app
CLI::Option* AddIntegerOption(CLI::App& app, const std::string& name, int& target, const std::string& description);
CLI::Option* AddIntegerOption(CLI::App& app, const std::string& name, std::optional<int>& target,
                              const std::string& description);

/// Adds an option that takes a count. The target outlives the parsing.
CLI::Option* AddCountOption(CLI::App& app, const std::string& name, std::size_t& target,
                            const std::string& description);

/// Adds an option that takes a number, 0 or more. The target outlives the parsing.
CLI::Option* AddMagnitudeOption(CLI::App& app, const std::string& name, double& target, const std::string& description);

}  // namespace quilon
