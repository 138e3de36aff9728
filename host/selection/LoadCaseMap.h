#pragma once

/// @file
/// Load cases that become others.

#include <map>
#include <string_view>

namespace quilon {

/// Reads "4:2,5:3": load case 4 becomes 2, and 5 becomes 3. An empty text is an empty map.
/// @throws FED_Failure for anything else and for a load case that becomes two
std::map<int, int> ParseLoadCaseMap(std::string_view text);

}  // namespace quilon
