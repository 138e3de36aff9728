#pragma once

/// @file
/// Loops over many numbers at once.

namespace quilon {

/// Runs what takes many numbers at once, on processors that have them with registers for four numbers instead of two.
/// The operations are the same, and so are the results. For sources compiled as those of CMakeLists.txt say: there no
/// operation stands in the way of taking several.
/// @param work calls functions alone that can be compiled in place
#if defined(__x86_64__) && defined(__GNUC__)
template <typename Work>
[[gnu::target("avx2"), gnu::flatten]] void RunWide(const Work& work)
{
  work();
}

template <typename Work>
void RunMany(const Work& work)
{
  static const bool isWide = __builtin_cpu_supports("avx2") != 0;
  if (isWide)
    RunWide(work);
  else
    work();
}
#else
template <typename Work>
void RunMany(const Work& work)
{
  work();
}
#endif

}  // namespace quilon
