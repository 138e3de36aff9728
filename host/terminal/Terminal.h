#pragma once

/// @file
/// What stands at the other end of the standard streams.

namespace quilon {

/// The standard streams by their descriptor.
enum class StandardStream : int
{
  Output = 1,
  Error  = 2
};

/// From now on nobody looks at the streams of this process. A launcher that collects what its processes write may give
/// them a terminal whatever it does with the text.
void DisregardTerminals() noexcept;

/// @return whether people look at it
bool IsTerminal(StandardStream stream);

/// @return whether text on it may be coloured: a terminal that is not "dumb", and no NO_COLOR in the environment (an
///         empty one does not count; https://no-color.org)
bool MayColour(StandardStream stream);

/// @return how many columns the terminal behind standard output has; 80 where there is none or it does not tell
int GetTerminalWidth();

/// @return whether texts may have letters beyond ASCII: the environment names an encoding of Unicode (LC_ALL, LC_CTYPE,
///         LANG, the first that is set)
bool MayUseUnicode();

}  // namespace quilon
