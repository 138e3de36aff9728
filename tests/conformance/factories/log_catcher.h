#pragma once

/// @file
/// Log lines of the bundled utilities, caught.

#include <functional>
#include <string>
#include <vector>

#include <bundled/LogSink.h>

namespace conformance {

/// Runs `action` and adds the text of every line that it logs to `texts`.
inline void CatchBundledLog(const std::function<void()>& action, std::vector<std::string>& texts)
{
  const QuilonLog::ScopedSink sink([&texts](const QuilonLog::Line& line) { texts.push_back(line.text); });
  action();
}

}  // namespace conformance
