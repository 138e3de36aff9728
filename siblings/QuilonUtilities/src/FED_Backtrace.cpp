#include "QuilonUtilities/FED_Backtrace.h"

#if defined(__has_include)
#  if __has_include(<execinfo.h>)
#    define QUILON_HAS_EXECINFO 1
#  endif
#endif

#ifdef QUILON_HAS_EXECINFO
#  include <execinfo.h>

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

  std::vector<std::string> lines;
  // Frame 0 is this function; its caller comes first.
  for (int i = 1; i < found; ++i) lines.emplace_back(symbols.get()[i]);
  return lines;
}
#else
std::vector<std::string> FED_Backtrace::GetBacktrace() { return {}; }
#endif
