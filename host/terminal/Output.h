#pragma once

/// @file
/// Standard output, with its failures.

#include <cstdio>
#include <exception>
#include <functional>
#include <string_view>
#include <utility>

namespace quilon {

/// The reader of our output has gone: nothing is wrong, and there is nothing left to do.
class BrokenPipe : public std::exception
{
public:
  const char* what() const noexcept override { return "broken pipe"; }
};

/// Standard output. What cannot be written is a failure and never lost in silence.
class Output
{
public:
  /// @param file standard output; tests hand another
  explicit Output(std::FILE* file = stdout) noexcept : file_(file) {}

  /// Calls this before each text: a progress bar on the same terminal has to go first. May be empty.
  void BeforeText(std::function<void()> prepare) { prepare_ = std::move(prepare); }

  /// Whether texts may have colours and bold letters: on a terminal that has them, unless the user wants none.
  bool HasColours() const noexcept { return colours_; }
  void SetColours(bool colours) noexcept { colours_ = colours; }

  /// @throws FED_Failure when the system refuses the text, BrokenPipe when its reader has gone
  void Write(std::string_view text);

  /// Hands everything written so far to the system. A program that ends without it may lose its last lines.
  /// @throws as Write()
  void Flush();

private:
  std::FILE*            file_;
  bool                  colours_ = false;
  std::function<void()> prepare_;
};

}  // namespace quilon
