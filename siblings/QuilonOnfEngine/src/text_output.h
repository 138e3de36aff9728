#pragma once

/// @file
/// Writes numbers, strings and lines into a buffer in front of a file.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Collects text and hands it on in pieces of a megabyte. Numbers are written in the shortest form that reads back to
/// the same bits.
class TextOutput
{
public:
  /// Takes the next bytes of the text.
  using Sink = std::function<void(std::string_view)>;

  explicit TextOutput(Sink sink);

  void Append(std::string_view text);
  void AppendInteger(long long value);
  void AppendFloat(float value);
  void AppendDouble(double value);
  /// In double quotes, with escapes.
  void AppendString(std::string_view text);
  void AppendChar(char c);
  /// Hands everything on.
  void Flush();
  /// Forgets what was not handed on.
  void Clear() noexcept { size_ = 0; }

private:
  /// Makes room for a number and @return where it goes.
  char* Reserve();

  Sink              sink_;
  std::vector<char> buffer_;
  std::size_t       size_ = 0;
};

/// The text of a string in double quotes.
std::string QuoteString(std::string_view text);
