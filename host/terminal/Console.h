#pragma once

/// @file
/// Standard error: what people are told beside the output.

#include <cstdint>
#include <string>

#include "progress/Listener.h"
#include "terminal/ProgressBar.h"

namespace quilon {

/// Writes errors, notes and progress to standard error, a line each. What cannot be written there is lost: there is
/// no place left to complain.
class Console final : public Listener
{
public:
  Console();
  Console(const Console&)            = delete;
  Console& operator=(const Console&) = delete;
  ~Console() override;

  /// Verbosity is the highest message type that is shown; errors always are. 3, which it is at first, shows our own
  /// notes and progress bars, 4 to 6 the log of the library: notices, verbose progress, detail.
  void SetVerbosity(int verbosity) noexcept { verbosity_ = verbosity; }
  bool IsVerbose() const noexcept { return verbosity_ > kNotes; }

  void Error(const std::string& message);
  void Note(const std::string& message) override;
  /// A line of the library's log.
  /// @param type message type, compared with the verbosity
  void Log(int type, const std::string& message);

  /// Shows how far long work is, when standard error is a terminal and notes are shown.
  /// @param unit what `done` and `total` count; see ProgressBar::Update
  void Progress(const std::string& phase, std::uint64_t done, std::uint64_t total,
                const std::string& unit = "B") override;

  /// Takes the progress bar away, if one is shown, so that other lines may follow.
  void ClearProgress();

  void SetColours(bool colours) noexcept { colours_ = colours; }

  static constexpr int kNotes = 3;

private:
  void Line(const std::string& text);

  int         verbosity_ = kNotes;
  bool        showsProgress_;
  bool        colours_;
  bool        progressShown_ = false;
  ProgressBar bar_;
};

}  // namespace quilon
