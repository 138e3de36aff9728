#pragma once

/// @file
/// Where log lines go.

#include "quilon_language.h"

#include <functional>
#include <memory>
#include <string>

#include "quilon_contract_export.h"
#include "QuilonUtilities/FED_LogMacros.h"

namespace QuilonLog {

/// One finished log line.
struct Line
{
  FED_LogMacros::LogMsgType type;
  std::string               file;  ///< source file as the caller names it
  int                       line;  ///< source line as the caller names it
  std::string               tag;   ///< channel tag, "%P" replaced by the program's name
  std::string               text;  ///< message, formatted, of any length, without a line feed of our own
};

using Sink = std::function<void(const Line&)>;

/// Sends all further log lines to `sink`; an empty one restores the default, which writes errors (types below
/// FED_LogMacros::LogNotice) to standard error and drops everything else.
///
/// Lines reach the sink one at a time, whatever thread they come from; when SetSink() returns, no other thread is in
/// the former sink. A sink may log and set sinks itself. What it throws passes to the caller of log_msg().
/// @return the former sink, empty when it was the default
/// @throws std::bad_alloc, what the copy of a sink throws; the former sink is then still in force
QUILON_UTILITIES_API Sink SetSink(Sink sink);

/// Log lines go to a sink for as long as this object lives, then to the former one again. The end needs no memory.
class QUILON_UTILITIES_API ScopedSink
{
public:
  explicit ScopedSink(Sink sink);
  ScopedSink(const ScopedSink&)            = delete;
  ScopedSink& operator=(const ScopedSink&) = delete;
  ~ScopedSink();

private:
  std::shared_ptr<const Sink> former_;
};

/// Sets what "%P" in channel tags stands for; "quilon" until then.
QUILON_UTILITIES_API void SetProgramName(const std::string& name);

}  // namespace QuilonLog
