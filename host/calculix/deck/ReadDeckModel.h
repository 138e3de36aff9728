#pragma once

/// @file
/// From a deck to its model.

#include <filesystem>
#include <vector>

#include "calculix/deck/DeckModel.h"

namespace quilon::calculix {

/// Reads a deck and all it includes.
/// @throws FED_Failure "PATH:LINE: what is wrong" at the first error
DeckModel ReadDeckModel(const std::filesystem::path& deck, const DeckOptions& options = {});

/// Reads on after errors where that is possible.
/// @param messages receives errors and warnings in the order of their places
/// @throws FED_Failure when the deck itself cannot be read
DeckModel ReadDeckModel(const std::filesystem::path& deck, const DeckOptions& options,
                        std::vector<DeckMessage>& messages);

}  // namespace quilon::calculix
