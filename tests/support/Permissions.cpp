#include "Permissions.h"

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <stdexcept>

namespace quilon_test {

namespace {

/// What a thread may do; the first 32 rights, all that matter here, come first.
struct Rights
{
  __user_cap_header_struct header                         = {_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct   data[_LINUX_CAPABILITY_U32S_3] = {};

  bool Get() noexcept { return syscall(SYS_capget, &header, data) == 0; }
  bool Set() noexcept { return syscall(SYS_capset, &header, data) == 0; }
};

// Reading and writing whatever permissions say, and reading and listing.
constexpr std::uint32_t kOverride = (1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH);

}  // namespace

HoldPermissions::HoldPermissions()
{
  Rights rights;
  if (!rights.Get()) throw std::runtime_error("capget");
  effective_ = rights.data[0].effective;
  rights.data[0].effective &= ~kOverride;
  if (!rights.Set()) throw std::runtime_error("capset");
}

HoldPermissions::~HoldPermissions()
{
  Rights rights;
  if (!rights.Get()) return;
  rights.data[0].effective = effective_;
  rights.Set();
}

bool HoldPermissionsForGood() noexcept
{
  Rights rights;
  if (!rights.Get()) return false;
  rights.data[0].effective &= ~kOverride;
  rights.data[0].permitted &= ~kOverride;
  rights.data[0].inheritable &= ~kOverride;
  // A program that root starts has all rights again, but for those that its caller has not where it gains none.
  return rights.Set() && prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
}

}  // namespace quilon_test
