#pragma once

/// @file
/// The least and the greatest of many values over steps.

#include <cstddef>
#include <cstdint>
#include <span>

namespace quilon {

/// Extremes so far, and the steps that they are of, of as many values as are taken. Borrowed. NaN stands for none.
struct RunningExtremes
{
  double*        least;
  double*        greatest;
  std::uint32_t* leastStep;
  std::uint32_t* greatestStep;
};

/// Takes values of a step no earlier than those that were taken. Of equal values the one before governs, a NaN never.
/// @return how many values are NaNs
std::size_t TakeAscending(std::span<const double> values, std::uint32_t step, const RunningExtremes& extremes);

}  // namespace quilon
