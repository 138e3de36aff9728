#pragma once

/// @file
/// Which reader reads what.

#include <filesystem>
#include <vector>

#include "results/InputDeck.h"

namespace quilon {

/// Finds a reader for each file of an import: one deck, and result files, those of one stem as one job, in the order in
/// which their stems come. A stem stands for the files that have it; what else a stem has is passed over.
/// @throws FED_Failure for two decks, and for a file that no reader takes and that belongs to no job
JobFiles FindReaders(const std::vector<std::filesystem::path>& files);

}  // namespace quilon
