#pragma once

/// @file
/// Reads the text of one file token by token and names file and line in every failure.

#include <charconv>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

/// @return the path for messages, UTF-8 with '/' between folders
std::string DisplayPath(const std::filesystem::path& path);

/// @return text from a file in double quotes: whole characters of at most 40 bytes, control characters
/// as '?'
std::string QuoteForMessage(std::string_view text);

/// Tokens are separated by blanks (space, tab and carriage return, so that files that passed through an editor of the
/// other line convention still read); a line ends with a line feed.
///
/// Borrows the text. After a failure the position is unspecified.
class TextCursor
{
public:
  TextCursor(std::string fileName, std::string_view text);

  /// Throws FED_Failure "FILE:LINE: expected <expected>, found <what stands here>".
  [[noreturn]] void FailExpected(const std::string& expected);
  /// Throws FED_Failure "FILE:LINE: <message>".
  [[noreturn]] void Fail(const std::string& message) const;
  /// @return "FILE:LINE" of the current line
  std::string GetPlace() const;

  /// @return whether nothing at all follows, not even a blank
  bool AtEnd() const noexcept { return at_ == end_; }
  /// @return whether only blanks stand before the end of the line
  bool AtLineEnd();
  /// @return the bytes that follow
  std::size_t GetRemaining() const noexcept { return static_cast<std::size_t>(end_ - at_); }

  /// Moves behind the line feed.
  void ReadLineEnd();
  /// @return the bytes up to the next blank or line end; empty at the end of a line
  std::string_view ReadWord();
  /// @return the rest of the line without the blanks around it; stands before the line feed afterwards
  std::string_view ReadRestOfLine();
  /// Reads "key:" at the start of a line, which may hold blanks inside. Empty when the line has no colon; the position
  /// is then unchanged.
  std::string_view ReadKey();

  int         ReadInteger();
  std::size_t ReadCount(const char* what);
  /// "[n]" in front of a list. Each element takes two bytes at least, so a count that the file cannot hold fails here,
  /// before anything is allocated.
  std::size_t ReadListCount();
  std::string ReadString();

  /// A decimal or scientific number, "inf", "-inf", "nan" or "nan(0x<bits>)".
  template <typename Float>
  Float ReadFloat()
  {
    SkipBlanks();
    if (at_ != end_ && (IsDigit(*at_) || (*at_ == '-' && at_ + 1 != end_ && IsDigit(at_[1])))) {
      Float      value;
      const auto result = std::from_chars(at_, end_, value);
      if (result.ec == std::errc() && EndsToken(result.ptr)) {
        at_ = result.ptr;
        return value;
      }
    }
    return ReadRareFloat<Float>();
  }

private:
  static bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }
  static bool IsBlank(char c) noexcept { return c == ' ' || c == '\t' || c == '\r'; }
  bool        EndsToken(const char* p) const noexcept { return p == end_ || *p == '\n' || IsBlank(*p); }
  void        SkipBlanks() noexcept
  {
    while (at_ != end_ && IsBlank(*at_)) ++at_;
  }

  /// What is neither finite nor well formed.
  template <typename Float>
  Float ReadRareFloat();
  template <typename Integer>
  Integer ReadInteger(const char* what);
  char    ReadEscape();

  std::string fileName_;
  const char* at_;
  const char* end_;
  std::size_t line_ = 1;
};
