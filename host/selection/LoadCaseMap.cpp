#include "selection/LoadCaseMap.h"

#include <charconv>
#include <string>
#include <system_error>

#include "text/Failure.h"

namespace quilon {

namespace {

bool ReadWhole(std::string_view text, int& number)
{
  const auto taken = std::from_chars(text.data(), text.data() + text.size(), number);
  return taken.ec == std::errc() && taken.ptr == text.data() + text.size();
}

}  // namespace

std::map<int, int> ParseLoadCaseMap(std::string_view text)
{
  std::map<int, int> map;
  for (bool more = !text.empty(); more;) {
    const std::size_t      end   = text.find(',');
    const std::string_view entry = text.substr(0, end);
    const std::size_t      colon = entry.find(':');
    int                    from  = 0;
    int                    to    = 0;
    if (colon == std::string_view::npos || !ReadWhole(entry.substr(0, colon), from) ||
        !ReadWhole(entry.substr(colon + 1), to))
      Fail("the load case map has '" + std::string(entry) + "', expected OLD:NEW with two integers");
    if (!map.emplace(from, to).second)
      Fail("the load case map sends load case " + std::to_string(from) + " to two others, expected one");
    more = end != std::string_view::npos;
    if (more) text.remove_prefix(end + 1);
  }
  return map;
}

}  // namespace quilon
