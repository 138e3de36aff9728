#pragma once

/// @file
/// Standard output, with its failures.

#include <cstddef>
#include <cstdio>
#include <exception>
#include <functional>
#include <ostream>
#include <streambuf>
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

/// What a user writes in place of a file: standard output.
inline constexpr char kStandardOutput[] = "-";

/// Standard output for what writes to streams. Its failures come through as Output::Write() throws them.
class OutputStream
{
public:
  /// @param output borrowed
  explicit OutputStream(Output& output) : buffer_(output), stream_(&buffer_) { stream_.exceptions(std::ios::badbit); }

  std::ostream& Get() noexcept { return stream_; }

private:
  class Buffer : public std::streambuf
  {
  public:
    explicit Buffer(Output& output) : output_(output) {}

  protected:
    int_type overflow(int_type c) override
    {
      const char text = traits_type::to_char_type(c);
      if (!traits_type::eq_int_type(c, traits_type::eof())) output_.Write({&text, 1});
      return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char* text, std::streamsize count) override
    {
      output_.Write({text, static_cast<std::size_t>(count)});
      return count;
    }

  private:
    Output& output_;
  };

  Buffer       buffer_;
  std::ostream stream_;
};

}  // namespace quilon
