#include "Statistics.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace {

// Least and greatest in four lanes, whose comparisons do not wait for each other. A NaN wins no comparison.
template <typename T>
void AddNumbers(const void* bytes, std::size_t byteCount, ColumnStatistics& statistics)
{
  constexpr std::size_t kLanes = 4;
  constexpr bool        isReal = std::is_floating_point_v<T>;
  constexpr T           kHigh  = isReal ? std::numeric_limits<T>::infinity() : std::numeric_limits<T>::max();
  constexpr T           kLow   = isReal ? -std::numeric_limits<T>::infinity() : std::numeric_limits<T>::lowest();
  std::array<T, kLanes> least, greatest;
  std::array<std::size_t, kLanes> nans{};
  least.fill(kHigh);
  greatest.fill(kLow);
  const auto add = [&](std::size_t lane, T value) {
    least[lane]    = value < least[lane] ? value : least[lane];
    greatest[lane] = value > greatest[lane] ? value : greatest[lane];
    if constexpr (isReal) nans[lane] += value != value ? 1u : 0u;
  };
  const auto* const from  = static_cast<const unsigned char*>(bytes);
  const std::size_t count = byteCount / sizeof(T);
  std::size_t       i     = 0;
  for (; i + kLanes <= count; i += kLanes) {
    T values[kLanes];
    std::memcpy(values, from + i * sizeof(T), sizeof(values));
    for (std::size_t lane = 0; lane < kLanes; ++lane) add(lane, values[lane]);
  }
  for (; i < count; ++i) {
    T value;
    std::memcpy(&value, from + i * sizeof(T), sizeof(T));
    add(0, value);
  }
  const std::size_t notNumbers = nans[0] + nans[1] + nans[2] + nans[3];
  statistics.nans += notNumbers;
  statistics.values += count - notNumbers;
  if (count == notNumbers) return;
  // A zero of either sign counts as the positive one, so that the order of rows shows nowhere.
  const auto lowest   = static_cast<double>(*std::min_element(least.begin(), least.end()));
  const auto highest  = static_cast<double>(*std::max_element(greatest.begin(), greatest.end()));
  statistics.least    = std::min(statistics.least, lowest) + 0.0;
  statistics.greatest = std::max(statistics.greatest, highest) + 0.0;
}

}  // namespace

void AddStatistics(StoredColumn::Element element, const void* bytes, std::size_t count, ColumnStatistics& statistics)
{
  switch (element) {
    case StoredColumn::Int32:
      AddNumbers<std::int32_t>(bytes, count, statistics);
      break;
    case StoredColumn::Float32:
      AddNumbers<float>(bytes, count, statistics);
      break;
    case StoredColumn::Float64:
      AddNumbers<double>(bytes, count, statistics);
      break;
    default:
      break;
  }
}
