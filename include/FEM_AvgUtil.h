#pragma once

/// @file
/// What an averaging field keeps per id and layer.

#include "quilon_language.h"

#include <cstdint>

#include "quilon_export.h"

namespace FEM_AvgUtil {

/// Sum and count of the values added. A new one is all zero.
/// @tparam N components of a value: 1, 3 or 6
template <int N>
struct QUILON_EXPORT AvgData
{
  double       sum[N] = {};
  std::int32_t count  = 0;
};

/// Running statistics of the values added, component by component. A new one is all zero.
///
/// Variances follow as m2 / count (population) and m2 / (count - 1) (sample).
///
/// Formula: with n the count after adding value x,
///     delta = x - mean,  mean' = mean + delta / n,  m2' = m2 + (x - mean') delta;
/// B. P. Welford, Note on a method for calculating corrected sums of squares and products, Technometrics 4 (1962)
/// 419-420. Unlike a sum of squares it does not cancel when the mean is large beside the deviations.
/// @tparam N components of a value: 1, 3 or 6
template <int N>
struct QUILON_EXPORT StatData
{
  double       mean[N] = {};
  double       m2[N]   = {};  ///< sum of squared deviations from the mean
  std::int32_t count   = 0;
};

}  // namespace FEM_AvgUtil
