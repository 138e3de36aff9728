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

/// Extremes so far that are known almost: each is within its error of the value. Borrowed. NaN stands for none.
struct EstimatedExtremes
{
  const double* least;
  const double* greatest;
  const double* leastErrors;
  const double* greatestErrors;
};

/// What an estimated value may be beside the extremes so far.
enum GoverningMark : std::uint8_t
{
  MayBeLeast    = 1,
  MayBeGreatest = 2
};

/// Finds which values are certainly no extremes.
/// @param errors of the estimates; infinite where they say nothing
/// @param marks  receives a sum of GoverningMark for each, 0 where it is certain; shape [estimates.size()]
void MarkExtremes(std::span<const double> estimates, std::span<const double> errors, const EstimatedExtremes& extremes,
                  std::span<std::uint8_t> marks);

}  // namespace quilon
