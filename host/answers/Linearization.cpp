#include "answers/Linearization.h"

#include <cassert>

namespace quilon {

std::vector<double> QuadratureWeights(std::size_t numPoints)
{
  assert(numPoints >= kFewestLinearized);
  const std::size_t   intervals = numPoints - 1;
  const double        step      = 1.0 / static_cast<double>(intervals);
  const std::size_t   simpson   = intervals % 2 == 0 ? intervals : intervals - 3;
  std::vector<double> weights(numPoints, 0.0);
  for (std::size_t i = 0; i < simpson; i += 2) {
    weights[i] += step / 3.0;
    weights[i + 1] += 4.0 * step / 3.0;
    weights[i + 2] += step / 3.0;
  }
  if (simpson < intervals) {
    const double eighths[] = {3.0, 9.0, 9.0, 3.0};
    for (std::size_t k = 0; k < 4; ++k) weights[simpson + k] += eighths[k] * step / 8.0;
  }
  return weights;
}

LinearizedStress Linearize(std::span<const double> tensors)
{
  constexpr std::size_t     kNumComponents = 6;
  const std::size_t         numPoints      = tensors.size() / kNumComponents;
  const std::vector<double> weights        = QuadratureWeights(numPoints);
  const std::size_t         last           = kNumComponents * (numPoints - 1);
  LinearizedStress          result;
  for (std::size_t k = 0; k < kNumComponents; ++k) {
    double membrane = 0.0;
    double bending  = 0.0;  // at the start
    for (std::size_t i = 0; i < numPoints; ++i) {
      const double value = weights[i] * tensors[kNumComponents * i + k];
      const double place = static_cast<double>(i) / static_cast<double>(numPoints - 1);
      membrane += value;
      bending += 6.0 * value * (0.5 - place);
    }
    result.membrane[k]             = membrane;
    result.bendingStart[k]         = bending;
    result.bendingEnd[k]           = 0.0 - bending;  // no "-0"
    result.membraneBendingStart[k] = membrane + bending;
    result.membraneBendingEnd[k]   = membrane - bending;
    result.peakStart[k]            = tensors[k] - result.membraneBendingStart[k];
    result.peakEnd[k]              = tensors[last + k] - result.membraneBendingEnd[k];
  }
  return result;
}

}  // namespace quilon
