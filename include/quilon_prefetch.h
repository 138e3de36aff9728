#pragma once

/// @file
/// Memory asked for ahead of its use.

#include "quilon_language.h"

#include <cstddef>

namespace quilon {

/// Asks for `size` bytes at `address`, so that a later use of them need not wait for memory. Only a hint: nothing is
/// read, any address may be given, and where the compiler knows no such hint nothing happens.
///
/// Functions that do nothing else are inlined always, as this one is: to GCC they have no effect, and it drops the
/// calls that it does not inline at once.
[[gnu::always_inline]] inline void Prefetch([[maybe_unused]] const void* address,
                                            [[maybe_unused]] std::size_t size) noexcept
{
#if defined(__GNUC__)
  constexpr std::size_t kCacheLine = 64;
  const char* const     bytes      = static_cast<const char*>(address);
  for (std::size_t at = 0; at < size; at += kCacheLine) __builtin_prefetch(bytes + at);
  __builtin_prefetch(bytes + size - 1);
#endif
}

}  // namespace quilon
