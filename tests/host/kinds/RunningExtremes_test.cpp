#include "kinds/RunningExtremes.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace {

using quilon::RunningExtremes;
using quilon::TakeAscending;

constexpr double        kNaN    = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint32_t kNoStep = static_cast<std::uint32_t>(-1);

/// Extremes of many values, none to begin with.
struct Held
{
  explicit Held(std::size_t size)
      : least(size, kNaN), greatest(size, kNaN), leastStep(size, kNoStep), greatestStep(size, kNoStep)
  {}

  RunningExtremes Get() { return {least.data(), greatest.data(), leastStep.data(), greatestStep.data()}; }

  std::vector<double>        least, greatest;
  std::vector<std::uint32_t> leastStep, greatestStep;
};

bool IsSame(double a, double b)
{
  return (a == b && std::signbit(a) == std::signbit(b)) || (std::isnan(a) && std::isnan(b));
}

TEST(RunningExtremes, AreThoseOfAPlainSearchForAnyNumberOfValues)
{
  const double candidates[] = {-2.0,
                               -0.0,
                               0.0,
                               1.0,
                               1.5,
                               kNaN,
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity()};
  std::mt19937 random(3);
  for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 5U, 255U, 256U, 257U, 1000U}) {
    Held        held(size);
    Held        plain(size);
    std::size_t nans = 0;
    std::size_t told = 0;
    for (const std::uint32_t step : {0U, 1U, 1U, 4U, 7U}) {
      std::vector<double> values(size);
      for (double& value : values) value = candidates[random() % std::size(candidates)];
      told += TakeAscending(values, step, held.Get());
      for (std::size_t i = 0; i < size; ++i) {
        if (std::isnan(values[i])) {
          ++nans;
          continue;
        }
        if (plain.leastStep[i] == kNoStep || values[i] < plain.least[i]) {
          plain.least[i]     = values[i];
          plain.leastStep[i] = step;
        }
        if (plain.greatestStep[i] == kNoStep || values[i] > plain.greatest[i]) {
          plain.greatest[i]     = values[i];
          plain.greatestStep[i] = step;
        }
      }
    }
    EXPECT_EQ(told, nans);
    EXPECT_EQ(held.leastStep, plain.leastStep) << size;
    EXPECT_EQ(held.greatestStep, plain.greatestStep) << size;
    for (std::size_t i = 0; i < size; ++i) {
      EXPECT_TRUE(IsSame(held.least[i], plain.least[i])) << size << ' ' << i;
      EXPECT_TRUE(IsSame(held.greatest[i], plain.greatest[i])) << size << ' ' << i;
    }
  }
}

}  // namespace
