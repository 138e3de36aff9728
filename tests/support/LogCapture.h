#pragma once

/// @file
/// Log lines in a test.

#include <string>
#include <vector>

#include <bundled/LogSink.h>

namespace quilon_test {

/// Takes all log lines from its construction to its end; the former sink is then back in place.
class LogCapture
{
public:
  LogCapture()                             = default;
  LogCapture(const LogCapture&)            = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  const std::vector<QuilonLog::Line>& GetLines() const noexcept { return lines_; }

  /// @return the texts alone, in order
  std::vector<std::string> GetTexts() const;

  /// @return each line in one: "4 src/fem_logger:95 |BrevanFem|fem_logger: text"; the program's name, with which the
  ///         facility replaces "%P", is left out
  std::vector<std::string> GetWhole() const;

  void Clear() noexcept { lines_.clear(); }

private:
  std::vector<QuilonLog::Line> lines_;
  QuilonLog::ScopedSink        sink_{[this](const QuilonLog::Line& line) { lines_.push_back(line); }};
};

}  // namespace quilon_test
