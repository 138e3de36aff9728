#pragma once

/// @file
/// What comparisons of blocks and of their records go by.

#include "quilon_language.h"

#include <cstddef>
#include <string>

#include "quilon_export.h"

namespace QuilonDataBlockDiff {

/// When two values count as equal, and how much of a difference a caller reports.
struct QUILON_EXPORT CompareInfo
{
  CompareInfo();

  /// Tolerances print with six decimals.
  /// @return the five settings in one line
  std::string ToString() const;

  double      absTol           = 1e-6;   ///< largest accepted absolute difference, in the unit of the values
  double      relTol           = 1e-6;   ///< largest accepted relative difference; for two positive values only
  bool        useExactCompare  = false;  ///< values must be equal, the tolerances play no part
  std::size_t maxDiffsPerBlock = 10;     ///< for the caller's report: differing records of one block
  std::size_t maxBlockDiffs    = 10;     ///< for the caller's report: differing blocks
};

}  // namespace QuilonDataBlockDiff
