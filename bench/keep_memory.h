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

}  // namespace quilon_bench
