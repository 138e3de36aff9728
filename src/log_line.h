#pragma once

/// @file
/// Log lines of one source file.

#include "QuilonUtilities/FED_LogMacros.h"

/// Who logs: the source file as readers of the log know it, and its channel tag. People filter logs by both and by the
/// lines, so all three are literals that stay when code moves.
struct LogSource
{
  const char* file;
  const char* tag;
};

/// Writes one log line.
/// @param format printf-style, with "%Iu" for a size_t
template <typename... Arguments>
void Log(const LogSource& source, FED_LogMacros::LogMsgType type, int line, const char* format, Arguments... arguments)
{
  FED_LogMacros::log_msg(type, source.file, line, source.tag, format, arguments...);
}
