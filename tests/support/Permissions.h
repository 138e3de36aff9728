#pragma once

/// @file
/// Files that may not be read or written, whoever runs the tests.

#include <cstdint>

namespace quilon_test {

/// Until its end, permissions hold for the calling thread as for any user: root is refused nothing otherwise.
class HoldPermissions
{
public:
  HoldPermissions();
  ~HoldPermissions();
  HoldPermissions(const HoldPermissions&)            = delete;
  HoldPermissions& operator=(const HoldPermissions&) = delete;

private:
  std::uint32_t effective_ = 0;  ///< what the thread may do, as the system has it
};

/// The same for the rest of a process and for the program that it becomes; for a child.
/// @return false where the system does not do so
bool HoldPermissionsForGood() noexcept;

}  // namespace quilon_test
