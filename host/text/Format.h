#pragma once

/// @file
/// Values as text.

#include <cstddef>
#include <limits>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace quilon {

/// @return the shortest decimal form that reads back to the same bits; "nan", "inf", "-inf"
std::string FormatNumber(double value);
std::string FormatNumber(float value);

/// @return six digits, for people
std::string FormatRounded(double value);

/// Writes what FormatNumber() and FormatRounded() return behind a text.
void AppendNumber(std::string& text, double value);
void AppendNumber(std::string& text, float value);
void AppendRounded(std::string& text, double value);

/// @return bytes for people: "512 B", "1.8 KiB", "20 MiB"
std::string FormatBytes(std::size_t bytes);

/// @return "1 block", "2 blocks"
std::string Counted(std::size_t count, std::string_view noun);

/// @return "1-4, 9"; behind a dozen ranges dots stand for the rest
std::string FormatIds(const std::set<int>& ids);

/// @return the text with what drives a terminal or turns its writing round as "\n", "\x1b" or "\u202e"; see Format.cpp
std::string Printable(std::string_view text);

/// Writes it behind another text.
void AppendPrintable(std::string& printable, std::string_view text);

/// @return whether all bytes are characters of ASCII that print
bool IsPlain(std::string_view text) noexcept;

/// @return the texts, printable, with commas between them; behind the first `most` of more ", ..."
std::string Enumerated(std::span<const std::string> texts, std::size_t most = std::numeric_limits<std::size_t>::max());

/// @return the text without the blanks around it
std::string_view Trimmed(std::string_view text);

}  // namespace quilon
