#pragma once

/// @file
/// Memory for benchmarks that build containers again and again.

#if defined(__GLIBC__) || __has_include(<malloc.h>)
#  include <malloc.h>
#endif

namespace quilon_bench {

/// Lets the allocator keep what is freed. Otherwise every repetition measures how the system hands out fresh pages, by
/// rules that turn with the sizes allocated before.
inline void KeepMemory()
{
#if defined(__GLIBC__)
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 2000000000);
#endif
}

/// @return the bytes that the program has allocated, 0 where the allocator does not tell
inline double BytesInUse()
{
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 33)
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
#else
  return 0.0;
#endif
}

}  // namespace quilon_bench
