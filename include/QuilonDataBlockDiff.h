#pragma once

/// @file
/// Comparison of two blocks.

#include "quilon_language.h"

#include <cstddef>
#include <string>
#include <vector>

#include "quilon_export.h"

class FED_DataBlock;

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

/// Finds the records of one block that another block lacks or holds with other values.
///
/// Borrows its three arguments: they outlive it.
class QUILON_EXPORT DataBlockDiff
{
public:
  DataBlockDiff(const CompareInfo& info, const FED_DataBlock& first, const FED_DataBlock& second);
  ~DataBlockDiff();

  /// Compares the record at each index of the first block with the record at the same index of the second, by
  /// QuilonDataRecordDiff::EqualOrNearDataRecord().
  ///
  /// One-sided: records that only the second block holds are not looked at. Who wants both directions runs it a second
  /// time with the blocks swapped.
  /// @return indices of the first block, ascending; all of them, whatever limits the settings carry
  /// @throws what the blocks throw
  std::vector<std::size_t> CompareBlocks();

private:
  const CompareInfo&   info_;
  const FED_DataBlock& first_;
  const FED_DataBlock& second_;
};

}  // namespace QuilonDataBlockDiff
