#pragma once

/// @file
/// The model of a database into another one.

#include <cstddef>
#include <vector>

class FED_Database;

namespace quilon {

/// Copies what an iteration has for all steps: coordinates, elements, sets, materials, sections, orientations, ties.
/// @param iterations each once
/// @return the number of blocks
std::size_t CopyModel(const FED_Database& database, const std::vector<int>& iterations, FED_Database& target);

}  // namespace quilon
