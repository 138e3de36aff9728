#pragma once

/// @file
/// Where an id stands in a sorted list.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quilon {

/// Positions of ids that ascend, for many questions.
///
/// Memory: 4 bytes an id of the range from the least to the greatest where at least a quarter of it is in use;
///         nothing beyond the list where ids are sparser, which costs a question a search.
class IdPositions
{
public:
  /// @param ids ascending, each once
  /// @throws FED_Failure when there are 2^32 - 1 of them or more
  explicit IdPositions(std::vector<int> ids = {});

  const std::vector<int>& GetIds() const noexcept { return ids_; }

  std::optional<std::size_t> Find(int id) const noexcept;

private:
  static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

  std::vector<int>           ids_;
  std::vector<std::uint32_t> table_;  // from the least id on; empty: search
};

}  // namespace quilon
