#include "mesh/IdPositions.h"

#include <algorithm>
#include <string>
#include <utility>

#include "text/Failure.h"

namespace quilon {

IdPositions::IdPositions(std::vector<int> ids) : ids_(std::move(ids))
{
  if (ids_.empty()) return;
  if (ids_.size() >= kNone) Fail(std::to_string(ids_.size()) + " ids, expected less than " + std::to_string(kNone));
  const auto range = static_cast<std::size_t>(std::int64_t{ids_.back()} - ids_.front()) + 1;
  if (range / 4 > ids_.size()) return;
  table_.assign(range, kNone);
  for (std::size_t position = 0; position < ids_.size(); ++position) {
    table_[static_cast<std::size_t>(std::int64_t{ids_[position]} - ids_.front())] =
        static_cast<std::uint32_t>(position);
  }
}

std::optional<std::size_t> IdPositions::Find(int id) const noexcept
{
  if (ids_.empty() || id < ids_.front() || id > ids_.back()) return std::nullopt;
  if (!table_.empty()) {
    const std::uint32_t position = table_[static_cast<std::size_t>(std::int64_t{id} - ids_.front())];
    if (position == kNone) return std::nullopt;
    return position;
  }
  const auto found = std::lower_bound(ids_.begin(), ids_.end(), id);
  if (*found != id) return std::nullopt;
  return static_cast<std::size_t>(found - ids_.begin());
}

}  // namespace quilon
