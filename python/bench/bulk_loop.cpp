// The loops that bulk_bench.py measures the package beside: seconds of the best of some runs.
//
//   average        FEM_AvgField::AddValue() of 6 components over shuffled ids, each 8 times
//   statistics     the same with running statistics
//   mises          Component::Evaluate() over as many tensors
//
// usage: bulk_loop NUM_VALUES RUNS

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <span>
#include <vector>

#include "FEM_AvgField.h"
#include "kinds/Component.h"

namespace {

using Tensor = double[6];

template <typename Function>
void Measure(const char* name, int runs, const Function& function)
{
  double best = std::numeric_limits<double>::infinity();
  for (int run = 0; run < runs; ++run) {
    const auto start = std::chrono::steady_clock::now();
    function();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  std::printf("%s %.6f\n", name, best);
}

}  // namespace

int main(int argc, char** argv)
{
  const auto       count = static_cast<std::size_t>(argc > 1 ? std::atoll(argv[1]) : 1'000'000);
  const int        runs  = argc > 2 ? std::atoi(argv[2]) : 5;
  std::vector<int> ids(count);
  for (std::size_t i = 0; i < count; ++i) ids[i] = static_cast<int>(i / 8) + 1;
  std::shuffle(ids.begin(), ids.end(), std::mt19937(1));
  std::vector<std::array<double, 6>> values(count);
  std::mt19937                       random(2);
  for (auto& value : values)
    for (double& component : value) component = static_cast<double>(random()) * 1e-6;

  Measure("average", runs, [&] {
    FEM_AvgField<int, FEM_AvgUtil::AvgData<6>, 6> field;
    for (std::size_t i = 0; i < count; ++i) field.AddValue(ids[i], 0, reinterpret_cast<const Tensor&>(values[i]));
  });
  Measure("statistics", runs, [&] {
    FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6> field;
    for (std::size_t i = 0; i < count; ++i) field.AddValue(ids[i], 0, reinterpret_cast<const Tensor&>(values[i]));
  });
  Measure("mises", runs, [&] {
    const quilon::Component mises("mises", 521);
    std::vector<double>     result(count);
    for (std::size_t i = 0; i < count; ++i) result[i] = mises.Evaluate(values[i]);
  });
}
