#pragma once

/// @file
/// Failures with a printf-style message.

#include <cstdarg>
#include <cstdio>

#include "QuilonUtilities/FED_Failure.h"

/// Bytes of the buffer that a failure's message is formatted into, the terminator included.
inline constexpr int kFailureBufferSize = 1024;

/// Throws a FED_Failure. A message longer than 1023 characters is cut there.
/// @param tag    channel tag of the throwing source, "|%P|<module>|<source file without extension>"
/// @param format printf-style
[[noreturn, gnu::format(printf, 2, 3)]] inline void ThrowFailure(const char* tag, const char* format, ...)
{
  char message[kFailureBufferSize] = "";

  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);

  throw FED_Failure(message, tag);
}
