#pragma once

/// @file
/// A deck as the input of a job.

#include <filesystem>
#include <memory>

#include "results/InputDeck.h"

namespace quilon::calculix {

std::unique_ptr<InputDeckReader> MakeDeckReader(std::filesystem::path path);

}  // namespace quilon::calculix
