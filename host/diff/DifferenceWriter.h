#pragma once

/// @file
/// The difference of two databases as a database.

#include <cstddef>
#include <set>

#include "diff/RecordMatching.h"
#include "diff/RecordWalk.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_DataBlock;
class FED_Database;

namespace quilon::diff {

/// Writes B - A block by block, under the keys and ids of A.
///
/// What stands still, such as coordinates, elements and sets, is copied from A, whether it is compared or not: the
/// difference is shown and drawn on its mesh. Of all other blocks with floating-point values each pair of records that
/// differs in nothing but these gives a record: B - A for them, A's own for what else there is.
class DifferenceWriter
{
public:
  /// @param first, target borrowed; the target gets the names of the first one's user kinds
  DifferenceWriter(const FED_Database& first, FED_Database& target);

  /// @param transformation of the second block's values
  void Write(const FED_DataBlock& first, const FED_DataBlock& second, const RecordPairs& pairs,
             const Transformation& transformation);

  /// Makes ids of the first database known to the target, all of them, as parts of the target need.
  /// @return false where the first one does not tell them
  bool AddAllIds();

  /// @return of blocks that were written
  const std::set<int>& GetIterations() const noexcept { return iterations_; }

  /// Takes those of blocks that were written into parts of the target.
  void AddIterations(const std::set<int>& iterations) { iterations_.insert(iterations.begin(), iterations.end()); }

  /// To be called behind all blocks: copies the model of what was written, where it was not compared.
  void Finish();

private:
  std::size_t FindOrAddIndex(const FED_DataDescriptor& descriptor, std::size_t index);

  const FED_Database& first_;
  FED_Database&       target_;
  std::set<int>       iterations_;  // of blocks that were written
};

}  // namespace quilon::diff
