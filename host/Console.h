#pragma once

/// @file
/// Standard error: what people are told beside the output.

#include <cstdint>
#include <string>

#include "ProgressBar.h"

namespace quilon {

/// Writes errors, notes and progress to standard error, a line each. What cannot be written there is lost: there is
/// no place left to complain.
class Console
{
public:
  Console();
  Console(const Console&)            = delete;
  Console& operator=(const Console&) = delete;
  ~Console();

  /// Verbosity is the highest message type that is shown: 4 notes, 5 verbose progress, 6 detail. Errors always are.
  void SetVerbosity(int verbosity) noexcept { verbosity_ = verbosity; }

  void Error(const std::string& message);
  /// @param type message type, compared with the verbosity
  void Log(int type, const std::string& message);
  void Note(const std::string& message);

  /// Shows how far long work is, when standard error is a terminal and notes are shown.
  void Progress(const std::string& phase, std::uint64_t done, std::uint64_t total);

private:
  void Line(const std::string& text);
  void ClearProgress();

  int         verbosity_;
  bool        showsProgress_;
  bool        colours_;
  bool        progressShown_ = false;
  ProgressBar bar_;
};

}  // namespace quilon
