#pragma once

/// @file
/// Flags packed into an integer.

#include "quilon_language.h"

#include <vector>

#include "quilon_contract_export.h"

namespace FED_IntegerCodedBoolVector {

/// Packs flag i into bit i (bit 0 is the least significant).
/// @param flags at most 32 flags; none gives 0
/// @param out   the packed flags
/// @throws FED_Failure for more than 32 flags; `out` is then untouched
QUILON_UTILITIES_API void BoolVecToInt(const std::vector<bool>& flags, unsigned int& out);

}  // namespace FED_IntegerCodedBoolVector
