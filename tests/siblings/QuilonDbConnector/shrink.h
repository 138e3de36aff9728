#pragma once

/// @file
/// Small counter-examples.

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

/// Leaves operations out, many at once and then ever fewer, as long as the rest still fails.
/// @param fails takes a sequence; true for the one that is given
/// @return a failing sequence of which no single operation can be left out
template <typename Operation, typename Fails>
std::vector<Operation> Shrink(std::vector<Operation> operations, Fails fails)
{
  for (std::size_t step = std::max<std::size_t>(operations.size() / 2, 1);;) {
    bool hasShrunk = false;
    for (std::size_t first = 0; first < operations.size();) {
      std::vector<Operation> fewer(operations.begin(), operations.begin() + static_cast<std::ptrdiff_t>(first));
      const std::size_t      behind = std::min(first + step, operations.size());
      fewer.insert(fewer.end(), operations.begin() + static_cast<std::ptrdiff_t>(behind), operations.end());
      if (fails(fewer)) {
        operations = std::move(fewer);
        hasShrunk  = true;
      } else {
        first = behind;
      }
    }
    if (step == 1 && !hasShrunk) return operations;
    step = std::max<std::size_t>(step / 2, 1);
  }
}
