// Any bytes as a groups file: they are read to their end or refused with a FED_Failure.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "groups_text.h"
#include "QuilonUtilities/FED_Failure.h"
#include "text_cursor.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  TextCursor in("fuzz.groups", std::string_view(reinterpret_cast<const char*>(data), size));
  try {
    for (const OnfGroupsFile::Group& group : ReadGroups(in)) {
      if (group.name.empty()) std::abort();
      for (const OnfGroupsFile::Range& range : group.ranges) {
        if (range.first <= 0 || range.last < range.first || range.step <= 0) std::abort();
      }
    }
  } catch (const FED_Failure& failure) {
    if (failure.GetMessage().rfind("fuzz.groups:", 0) != 0) std::abort();
  }
  return 0;
}
