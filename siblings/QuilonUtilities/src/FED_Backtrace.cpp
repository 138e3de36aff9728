#include "QuilonUtilities/FED_Backtrace.h"

#if defined(__has_include)
#  if __has_include(<execinfo.h>)
#    define QUILON_HAS_EXECINFO 1
#  endif
#endif

#ifdef QUILON_HAS_EXECINFO
#  include <execinfo.h>

#  include <algorithm>
#  include <array>
#  include <cstddef>
#  include <cstdlib>
#  include <memory>

std::vector<std::string> FED_Backtrace::GetBacktrace()
{
  // Bounded, so that a failure deep in a recursion costs no more than any other.
  std::array<void*, 64> frames{};
  const int             found = ::backtrace(frames.data(), static_cast<int>(frames.size()));

  const std::unique_ptr<char*, decltype(&std::free)> symbols(::backtrace_symbols(frames.data(), found), &std::free);
  if (!symbols) return {};

  // The caller comes first. Above it stands this function, and a sanitizer's own frame where one watches.
  const auto end    = frames.begin() + found;
  const auto caller = std::find(frames.begin(), end, __builtin_return_address(0));
  const auto first  = caller != end ? caller - frames.begin() : 1;

  std::vector<std::string> lines;
  for (auto i = first; i < found; ++i) lines.emplace_back(symbols.get()[i]);
  return lines;
}
#else
std::vector<std::string> FED_Backtrace::GetBacktrace() { return {}; }
#endif
