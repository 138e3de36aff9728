#include "kinds/RunningExtremes.h"

#include <algorithm>

#include "kinds/WideLoop.h"

namespace quilon {

std::size_t TakeAscending(std::span<const double> values, std::uint32_t step, const RunningExtremes& extremes)
{
  constexpr std::size_t kMany = 256;
  std::size_t           nans  = 0;
  for (std::size_t first = 0; first < values.size(); first += kMany) {
    const std::size_t    count        = std::min(kMany, values.size() - first);
    const double* const  value        = values.data() + first;
    double* const        least        = extremes.least + first;
    double* const        greatest     = extremes.greatest + first;
    std::uint32_t* const leastStep    = extremes.leastStep + first;
    std::uint32_t* const greatestStep = extremes.greatestStep + first;
    RunMany([&] {
      for (std::size_t i = 0; i < count; ++i) {
        const bool isNumber = value[i] == value[i];
        // The first number replaces the NaN that stands for none: no comparison with one holds.
        const bool isLess = isNumber & !(value[i] >= least[i]);
        const bool isMore = isNumber & !(value[i] <= greatest[i]);
        least[i]          = isLess ? value[i] : least[i];
        greatest[i]       = isMore ? value[i] : greatest[i];
        leastStep[i]      = isLess ? step : leastStep[i];
        greatestStep[i]   = isMore ? step : greatestStep[i];
        nans += isNumber ? 0 : 1;
      }
    });
  }
  return nans;
}

void MarkExtremes(std::span<const double> estimates, std::span<const double> errors, const EstimatedExtremes& extremes,
                  std::span<std::uint8_t> marks)
{
  const std::size_t   count          = marks.size();
  const double* const estimate       = estimates.data();
  const double* const error          = errors.data();
  const double* const least          = extremes.least;
  const double* const greatest       = extremes.greatest;
  const double* const leastErrors    = extremes.leastErrors;
  const double* const greatestErrors = extremes.greatestErrors;
  std::uint8_t* const mark           = marks.data();
  RunMany([=] {
    for (std::size_t i = 0; i < count; ++i) {
      // No comparison holds with what is unknown: neither with a NaN nor with an infinite error.
      const bool isMore = least[i] - estimate[i] < -(error[i] + leastErrors[i]);
      const bool isLess = estimate[i] - greatest[i] < -(error[i] + greatestErrors[i]);
      mark[i]           = static_cast<std::uint8_t>((isMore ? 0 : MayBeLeast) | (isLess ? 0 : MayBeGreatest));
    }
  });
}

}  // namespace quilon
