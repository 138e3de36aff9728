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

}  // namespace quilon
