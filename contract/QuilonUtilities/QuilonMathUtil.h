#pragma once

/// @file
/// Mathematical functions.

#include "quilon_language.h"

#include "quilon_contract_export.h"

namespace QuilonMathUtil {

/// Inverse hyperbolic cosine, the non-negative branch. NaN below 1.
QUILON_UTILITIES_API double acosh(double x);

}  // namespace QuilonMathUtil
