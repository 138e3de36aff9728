#include "terminal/Terminal.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

#include "text/Case.h"

namespace quilon {

namespace {

// Of the program, as its streams are.
bool areDisregarded = false;

}  // namespace

void DisregardTerminals() noexcept { areDisregarded = true; }

bool IsTerminal(StandardStream stream) { return !areDisregarded && isatty(static_cast<int>(stream)) == 1; }

bool MayColour(StandardStream stream)
{
  const char* const noColour = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  return IsTerminal(stream) && (noColour == nullptr || *noColour == '\0') &&
         (terminal == nullptr || std::string_view(terminal) != "dumb");
}

int GetTerminalWidth()
{
  constexpr int kUsual = 80;
  winsize       size{};
  if (ioctl(static_cast<int>(StandardStream::Output), TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsual;
  return size.ws_col;
}

bool MayUseUnicode()
{
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value == nullptr || *value == '\0') continue;
    const std::string locale = LowerCase(value);
    return locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
  }
  return false;
}

}  // namespace quilon
