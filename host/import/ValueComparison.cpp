#include "import/ValueComparison.h"

#include <algorithm>
#include <cmath>

#include "import/ImportRecord.h"

namespace quilon {

bool RoundsTo(double value, double rounded)
{
  // Half a unit of the sixth digit is at most 5e-6 of a value; that it went through single precision, and the last of
  // the seven digits of the other, fit into the rest. The smallest numbers of single precision have fewer digits.
  constexpr double kLargestRounding = 6e-6;
  constexpr double kSmallest        = 1e-37;
  return std::abs(value - rounded) <= kLargestRounding * std::abs(rounded) + kSmallest;
}

void ValueComparison::AddMagnitude(std::span<const double> rounded)
{
  for (const double value : rounded)
    if (std::isfinite(value)) largestMagnitude_ = std::max(largestMagnitude_, std::abs(value));
}

bool ValueComparison::Compare(int id, std::span<const double> exact, std::span<const double> rounded)
{
  if (std::equal(exact.begin(), exact.end(), rounded.begin(), rounded.end(), RoundsTo)) return true;
  nodes_.push_back(id);
  for (std::size_t k = 0; k < exact.size(); ++k) {
    const double difference = std::abs(exact[k] - rounded[k]);
    if (std::isfinite(difference)) largestDifference_ = std::max(largestDifference_, difference);
  }
  return false;
}

void ValueComparison::Report(ImportRecord& record) const
{
  if (nodes_.empty()) return;
  const double deviation = largestMagnitude_ > 0.0 ? largestDifference_ / largestMagnitude_ : largestDifference_;
  record.AddDisagreement(quantity_, key_, nodes_, deviation, kept_);
}

}  // namespace quilon
