#pragma once

/// @file
/// Two databases, compared block by block.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "database/Readers.h"
#include "diff/FieldComparison.h"
#include "diff/RecordMatching.h"
#include "diff/RuleSet.h"
#include "diff/StepMatching.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {
class DatabaseParts;
}

namespace quilon::diff {

class DifferenceWriter;

/// One of the two databases. Borrowed.
struct ComparedDatabase
{
  const FED_Database&             database;
  std::vector<FED_DataDescriptor> blocks;  ///< those that take part
  /// Share the blocks, where both databases have some; the crew is that of the first. The outcome is the same for any.
  Readers readers = {};
};

struct ComparisonTerms
{
  RuleSet             rules;
  RecordMatcher::Mode matching = RecordMatcher::ById;
  const MeshMatch*    mesh     = nullptr;  ///< ids of the second database for those of the first; null: they are equal
  /// The library's rule, and how much is kept: the worst maxDiffsPerBlock differences of each block.
  QuilonDataBlockDiff::CompareInfo info;
  /// Whether blocks that only the second database has are passed over.
  bool allowsMore = false;
  /// Whether blocks and records that one of the two lacks are no difference. They are told all the same.
  bool ignoresMissingInFirst  = false;
  bool ignoresMissingInSecond = false;
  /// The key under which a block of the first database is looked for in the second; empty: its own.
  std::function<FED_DataDescriptor(const FED_DataDescriptor&)> keyInSecond;
  /// What stands for the result steps of the first database; borrowed; null: each for itself. Where steps stand for
  /// values between two, steps of the second database that nothing asks for are passed over.
  const StepMatch* steps = nullptr;
  /// Gets B - A of all compared blocks; borrowed; null: none.
  DifferenceWriter* difference = nullptr;
  /// Of the database that gets it: where there is much, readers write it. Borrowed; null: this thread writes all.
  DatabaseParts* parts = nullptr;
  /// Whether norms of blocks without a difference are wanted.
  bool allNorms = true;
  /// Told how many blocks, or parts of the difference, of how many are done.
  std::function<void(std::size_t done, std::size_t total)> progress;
};

struct BlockOutcome
{
  enum Status
  {
    Same,
    Different,
    MissingInSecond,
    OnlyInSecond,
    Ignored
  };

  FED_DataDescriptor   descriptor;          ///< in the first database, in the second for a block that only it has
  FED_DataDescriptor   descriptorInSecond;  ///< of a compared block
  const FED_DataBlock* block            = nullptr;  ///< of the first database where it has one
  const FED_DataBlock* secondBlock      = nullptr;
  int                  kind             = 0;  ///< ONF id of the quantity for scalar histories
  Status               status           = Same;
  bool                 isNegated        = false;    ///< the mode of the second database has the other sign
  const FED_DataBlock* nextBlock        = nullptr;  ///< of the second database, for values between two steps
  double               nextWeight       = 0.0;      ///< share of `nextBlock`
  bool                 isMissingIgnored = false;    ///< what one database alone has is no difference
  FieldOutcome         fields;

  /// @return whether the worst of this block is worse than that of the other
  bool IsWorseThan(const BlockOutcome& other) const noexcept;
};

struct DatabaseOutcome
{
  std::vector<BlockOutcome> blocks;  ///< those of the first database in its order, then those that only the second has
  bool                      ignoresMissing    = false;  ///< what the first database alone has is no difference
  bool                      ignoresAdditional = false;  ///< what the second database alone has is no difference

  bool IsSame() const noexcept;
};

/// Compares all blocks. A block without records counts as one that is not there. User kinds are known by their names,
/// whatever ONF ids they have.
DatabaseOutcome CompareDatabases(const ComparedDatabase& first, const ComparedDatabase& second,
                                 const ComparisonTerms& terms);

/// @return all blocks of the database
/// @return all blocks of a database but those that tell what made it
ComparedDatabase WholeDatabase(const FED_Database& database);

}  // namespace quilon::diff
