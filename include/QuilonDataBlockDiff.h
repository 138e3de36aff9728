#pragma once

/// @file
/// Comparison of two blocks.

#include "quilon_language.h"

#include <cstddef>
#include <vector>

#include "quilon_export.h"
#include "QuilonDataDiffDefs.h"

class FED_DataBlock;

namespace QuilonDataBlockDiff {

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
