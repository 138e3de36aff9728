#pragma once

/// @file
/// What two files of a job say of the same values.

#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "import/StepMatcher.h"

namespace quilon {

class ImportRecord;

/// @return whether a value of seven digits or more is the exact one of a value with six
bool RoundsTo(double value, double rounded);

/// Compares one field of one result at the nodes where two files have it: a file of more digits that was read before,
/// and one of six.
class ValueComparison
{
public:
  /// @param quantity name of the field's kind, for people
  /// @param kept     name of the file of six digits, whose values are kept
  ValueComparison(std::string quantity, const StepKey& key, std::string kept)
      : quantity_(std::move(quantity)), key_(key), kept_(std::move(kept))
  {}

  /// A value of the file of six digits, whether the other has one or not: the largest of them is what differences are
  /// measured by.
  void AddMagnitude(std::span<const double> rounded);

  /// @return whether the two are the same within the digits
  bool Compare(int id, std::span<const double> exact, std::span<const double> rounded);

  /// Reports the nodes at which the two differ, if any.
  void Report(ImportRecord& record) const;

private:
  std::string      quantity_;
  StepKey          key_;
  std::string      kept_;
  double           largestMagnitude_  = 0.0;
  double           largestDifference_ = 0.0;
  std::vector<int> nodes_;  // at which the two differ, in the order of the file
};

}  // namespace quilon
