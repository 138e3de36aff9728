#pragma once

/// @file
/// The options of every command that asks about a part of the model.

#include "answers/Region.h"

namespace CLI {
class App;
}

namespace quilon {

class Console;

/// Adds --ids, --set, --material, --box and --near. The options outlive the parsing.
void AddRegionOptions(CLI::App& app, RegionOptions& options);

/// Adds all of them but --ids and --set, for commands that have these already.
void AddPlaceOptions(CLI::App& app, RegionOptions& options);

/// Tells what is to be known of a region, on standard error.
void TellNotes(const Region& region, Console& console);

/// Reads finite numbers between commas, as many as there are in `numbers`.
/// @throws FED_Failure naming the option and what it expects: "three numbers X,Y,Z"
void ParseNumbers(const std::string& option, const std::string& text, std::span<double> numbers,
                  const std::string& expected);

}  // namespace quilon
