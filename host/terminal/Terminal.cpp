#include "terminal/Terminal.h"

#include <cstdlib>
#include <string_view>

#include <unistd.h>

namespace quilon {

bool IsTerminal(StandardStream stream) { return isatty(static_cast<int>(stream)) == 1; }

bool MayColour(StandardStream stream)
{
  const char* const noColour = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  return IsTerminal(stream) && (noColour == nullptr || *noColour == '\0') &&
         (terminal == nullptr || std::string_view(terminal) != "dumb");
}

}  // namespace quilon
