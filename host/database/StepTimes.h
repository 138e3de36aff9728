#pragma once

/// @file
/// When the result steps of a database are.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

class KindTable;

/// The times of result steps, and the frequencies or buckling factors of those that have these instead. They stand in
/// the histories of their iteration, analysis and load case, at the position of their substep.
class StepTimes
{
public:
  /// Reads all histories of times, frequencies and buckling factors; the database is not needed afterwards.
  explicit StepTimes(const FED_Database& database);

  /// @return the time of a block's result step, else its frequency, else its buckling factor; nothing where none of
  ///         them is known or is no finite number, and for blocks that belong to all steps
  std::optional<double> TimeOf(const FED_DataDescriptor& block) const;

  /// @return the same for a position of a history
  std::optional<double> TimeAt(const FED_DataDescriptor& history, int position) const;

  /// @return what TimeOf() tells: Time, Frequency or BucklingFactor (OnfKind), 0 when it tells nothing
  int QuantityOf(const FED_DataDescriptor& block) const;

  /// @return the same of TimeAt()
  int QuantityAt(const FED_DataDescriptor& history, int position) const;

private:
  struct Moment
  {
    int    quantity = 0;
    double value    = 0.0;
  };
  const Moment* Find(const FED_DataDescriptor& block) const;

  std::map<FED_DataDescriptor, Moment> moments_;  // by iteration, analysis, load case and substep
};

/// @return the name of what the blocks have: that of their quantity ("frequency") where it is one, else "time"; nothing
///         where none of them has any
std::optional<std::string> NameOfTimes(const StepTimes& times, const std::vector<FED_DataDescriptor>& blocks,
                                       const KindTable& kinds);

}  // namespace quilon
