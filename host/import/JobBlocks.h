#pragma once

/// @file
/// The blocks that one job writes.

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include <QuilonDbConnector/FED_DataDescriptor.h>

#include "import/StepMatcher.h"
#include "import/TensorKinds.h"

class FED_DataBlock;
class FED_Database;

namespace quilon {

/// What goes where in the database.
///
/// Blocks are noted by result, so that those of a result that turns out broken can be dropped again. Scalars wait until
/// the job is read, because the results of a step share one history.
class JobBlocks
{
public:
  /// @param database borrowed
  JobBlocks(FED_Database& database, int iteration) : database_(database), iteration_(iteration) {}

  FED_Database& GetDatabase() noexcept { return database_; }

  /// @param group of elements that a nodal average is over; 0 for all
  /// @return the key of the result's block, noted as written
  FED_DataDescriptor Descriptor(const StepKey& key, int onf, int group = 0);
  /// @return the result's block, noted as written
  FED_DataBlock& Block(const StepKey& key, int onf, std::size_t expectedRecords, int group = 0);

  /// @return whether the result's block was noted as written
  bool HasWritten(const StepKey& key, int onf) const;

  /// @param quantity the kind of the scalar or a user history
  void SetScalar(const StepKey& key, int quantity, double value);
  /// Writes the scalars of all results before the limit.
  void WriteScalars();

  /// @return blocks that the database had before this job wrote to them
  std::size_t NumOverwritten() const noexcept { return numOverwritten_; }

  /// Remembers that the result has an average of ours.
  void MarkAveraged(const StepKey& key, Quantity quantity);
  bool IsAveraged(const StepKey& key, Quantity quantity) const;

  /// Results from this one on are broken.
  void LimitTo(const StepKey& key);
  bool HasLimit() const noexcept { return limit_.has_value(); }
  bool IsWithin(const StepKey& key) const { return !limit_ || key < *limit_; }
  /// Deletes what was written of results that are broken.
  /// @return the number of results that are whole
  std::size_t DropBroken();

private:
  /// What tells blocks of one result apart: ONF id and group.
  using BlockName = std::pair<int, int>;

  FED_DataDescriptor MakeDescriptor(const StepKey& key, int onf, int group = 0) const;
  void               DropDerived(const StepKey& key, int onf, int group);

  FED_Database&                            database_;
  int                                      iteration_;
  std::map<StepKey, std::set<BlockName>>   written_;
  std::map<StepKey, std::map<int, double>> scalars_;  // by quantity
  std::set<std::pair<StepKey, Quantity>>   averaged_;
  std::size_t                              numOverwritten_ = 0;
  std::optional<StepKey>                   limit_;
};

}  // namespace quilon
