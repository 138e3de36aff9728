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

TEST(RunningExtremes, MarksWhatMayGovernWithinTheErrorsAndWhatIsUnknown)
{
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  struct Row
  {
    double   value, error, least, leastError, greatest, greatestError;
    unsigned marks;
  };
  const Row rows[] = {{1, 0.25, 0, 0, 2, 0, 0},
                      {1, 0.25, 0.75, 0, 2, 0, quilon::MayBeLeast},
                      {1, 0.25, 0.5, 0.25, 2, 0, quilon::MayBeLeast},
                      {1, 0.25, 0.5, 0.125, 2, 0, 0},
                      {1, 0.25, 0, 0, 1.25, 0, quilon::MayBeGreatest},
                      {1, 0.25, 0, 0, 1.5, 0.25, quilon::MayBeGreatest},
                      {1, 0.25, 0, 0, 1.5, 0.125, 0},
                      {3, 0, 0, 0, 2, 0, quilon::MayBeGreatest},
                      {-1, 0, 0, 0, 2, 0, quilon::MayBeLeast},
                      {1, 0, 1, 0, 1, 0, quilon::MayBeLeast | quilon::MayBeGreatest},
                      {1, 0, kNaN, 0, kNaN, 0, quilon::MayBeLeast | quilon::MayBeGreatest},
                      {1, kInfinite, 0, 0, 2, 0, quilon::MayBeLeast | quilon::MayBeGreatest},
                      {kNaN, kInfinite, 0, 0, 2, 0, quilon::MayBeLeast | quilon::MayBeGreatest}};
  // Whatever stands beside it: several are taken at once.
  for (const std::size_t shift : {0U, 1U, 2U, 3U, 40U}) {
    std::vector<double>   values, errors, least, leastErrors, greatest, greatestErrors;
    std::vector<unsigned> expected;
    for (std::size_t i = 0; i < shift + std::size(rows); ++i) {
      const Row& row = i < shift ? rows[0] : rows[i - shift];
      values.push_back(row.value);
      errors.push_back(row.error);
      least.push_back(row.least);
      leastErrors.push_back(row.leastError);
      greatest.push_back(row.greatest);
      greatestErrors.push_back(row.greatestError);
      expected.push_back(row.marks);
    }
    std::vector<std::uint8_t> marks(values.size(), 0xff);
    quilon::MarkExtremes(values, errors, {least.data(), greatest.data(), leastErrors.data(), greatestErrors.data()},
                         marks);
    EXPECT_EQ(std::vector<unsigned>(marks.begin(), marks.end()), expected) << shift;
  }
}

}  // namespace
