#pragma once

/// @file
/// Logging.

#include "quilon_language.h"

#include "quilon_contract_export.h"

namespace FED_LogMacros {

/// Message types; verbosity rises with the number. Any other number may be cast to the type and passes through.
enum LogMsgType : int
{
  LogNotice  = 4,  ///< progress and notices
  LogVerbose = 5,  ///< verbose progress
  LogDetail  = 6   ///< per-block detail
};

/// Writes one log line.
/// @param type   message type
/// @param file   source file as readers of the log know it
/// @param line   source line
/// @param tag    "|%P|<module>|<source>"; "%P" is replaced by the program's name
/// @param format printf-style; beyond the standard's conversions "%Iu" takes a size_t, which is why no compiler
///               attribute checks the arguments
QUILON_UTILITIES_API void log_msg(LogMsgType type, const char* file, int line, const char* tag, const char* format,
                                  ...);

}  // namespace FED_LogMacros
