#pragma once

/// @file
/// Memory that runs out on demand.

#include <cstddef>

namespace quilon_test {

/// Lets one allocation of this thread fail with std::bad_alloc, in the program that links `quilon_test_allocation` and
/// in every library that it loads. Allocations are counted per thread from the construction of the innermost object.
class AllocationFailure
{
public:
  /// @param allocation which one fails, the first is 1; 0 lets none fail and only counts
  explicit AllocationFailure(std::size_t allocation) noexcept;
  /// Allocations succeed again.
  ~AllocationFailure();
  AllocationFailure(const AllocationFailure&)            = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;

  /// @return allocations since the construction, the failed one included
  std::size_t GetCount() const noexcept;
  /// @return bytes asked for since the construction, those of the failed one included
  std::size_t GetBytes() const noexcept;
  /// @return whether the allocation has failed
  bool HasFailed() const noexcept;

private:
  std::size_t formerCount_;
  std::size_t formerBytes_;
  std::size_t formerFailAt_;
};

}  // namespace quilon_test
