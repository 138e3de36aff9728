#pragma once

/// @file
/// A solver file as lines and bytes, read through one buffer.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "progress/ReadProgress.h"

namespace quilon {

/// @throws FED_Failure "PATH: ..." when the file cannot be opened
std::ifstream OpenLineFile(const std::filesystem::path& path);

/// Hands out a file line by line, or byte by byte where it is binary, and words what is wrong with it.
/// Memory: one buffer of 1 MiB, whatever the file's size.
class LineFile
{
public:
  /// @param in       borrowed, at its start; has to be seekable, so that counts can be checked against what is left
  /// @param name     stands in messages
  /// @param progress borrowed; called whenever the buffer is filled
  /// @throws FED_Failure "NAME: ..." when the stream cannot be read
  LineFile(std::istream& in, std::string name, const ReadProgress& progress);

  /// Goes to the next line.
  /// @return false at the end of the file
  /// @throws FED_Failure for a line longer than the buffer
  bool NextLine();

  /// @return the current line without its end ("\n" or "\r\n"); valid until the next call that reads
  std::string_view Text() const noexcept { return text_; }

  /// @return number of the current line, from 1; binary parts count for nothing
  std::int64_t Line() const noexcept { return line_; }

  /// @return whether the current line ends with a line end: the last one of a file that was cut does not
  bool IsWholeLine() const noexcept { return isWhole_; }

  /// @return the next count bytes without taking them, null when fewer are left; count is at most 1 MiB
  const char* Peek(std::size_t count);

  /// Takes count bytes that Peek() gave.
  void Take(std::size_t count) noexcept { at_ += count; }

  /// @return bytes behind the current line and the bytes taken
  std::uint64_t Remaining() const noexcept { return unread_ + (end_ - at_); }

  /// @return bytes in front of those
  std::uint64_t Position() const noexcept { return total_ - Remaining(); }

  /// Goes on at a byte that begins a line.
  /// @param position at most that of the file's end
  /// @param line     number of the line before it; no line is current until NextLine()
  void GoTo(std::uint64_t position, std::int64_t line);

  /// Throws FED_Failure "NAME:LINE: message" for the current line.
  [[noreturn]] void Fail(const std::string& message) const;
  /// Throws FED_Failure "NAME:LINE: message".
  [[noreturn]] void FailAt(std::int64_t line, const std::string& message) const;
  /// Throws FED_Failure for the current line: something was expected and its text stands there instead.
  [[noreturn]] void FailExpected(const std::string& expected) const;
  /// Throws FED_Failure for the line behind the last one: something was expected and the file ends.
  [[noreturn]] void FailAtEnd(const std::string& expected) const;
  /// Throws FED_Failure for a column of the current line that holds no number.
  /// @param first column from 1
  [[noreturn]] void FailColumn(const char* what, std::size_t first, std::size_t width) const;

  /// Takes the next lines, which are these but for blanks behind them.
  /// @throws FED_Failure naming the first that is another
  void ExpectTitles(std::initializer_list<std::string_view> titles);
  /// Throws FED_Failure unless the current line has so many columns, blanks behind them not counted.
  void ExpectWidth(std::size_t width) const;

  /// Reads a number from columns of the current line.
  double GetDouble(std::size_t first, std::size_t width) const;
  int    GetInteger(std::size_t first, std::size_t width) const;

private:
  void Fill();  // moves what is left to the front and reads on

  std::istream&       in_;
  std::string         name_;
  const ReadProgress& progress_;
  std::vector<char>   buffer_;
  std::size_t         at_      = 0;  // next byte in buffer_
  std::size_t         end_     = 0;  // behind the last byte in buffer_
  std::uint64_t       total_   = 0;
  std::uint64_t       unread_  = 0;  // bytes of the stream that are not in the buffer yet
  std::int64_t        line_    = 0;
  bool                isWhole_ = true;
  std::string_view    text_;
};

}  // namespace quilon
