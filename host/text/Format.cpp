#include "text/Format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>

namespace quilon {

namespace {

/// @param how what std::to_chars() takes behind the value
template <typename Real, typename... How>
void AppendDigits(std::string& text, Real value, How... how)
{
  // Without the sign that some NaNs carry.
  if (std::isnan(value)) {
    text += "nan";
    return;
  }
  char       digits[32];
  const auto written = std::to_chars(std::begin(digits), std::end(digits), value, how...);
  text.append(digits, static_cast<std::size_t>(written.ptr - digits));
}

/// A character of a UTF-8 text, or a byte that belongs to none.
struct Character
{
  std::uint32_t code  = 0;
  std::size_t   size  = 1;
  bool          isRaw = true;  // one byte
};

/// @param text not empty
Character FirstCharacter(std::string_view text) noexcept
{
  const auto byteAt = [text](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(text[i])); };
  const std::uint32_t lead = byteAt(0);
  const std::size_t size = (lead & 0xE0U) == 0xC0U ? 2 : (lead & 0xF0U) == 0xE0U ? 3 : (lead & 0xF8U) == 0xF0U ? 4 : 1;
  if (size == 1 || text.size() < size) return {lead, 1, true};
  std::uint32_t code = lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    if ((byteAt(i) & 0xC0U) != 0x80U) return {lead, 1, true};
    code = code << 6 | (byteAt(i) & 0x3FU);
  }
  return {code, size, false};
}

/// Control characters (C0, delete, C1 as characters of Unicode), marks that turn the direction of writing, and ends of
/// lines and paragraphs.
bool DrivesTerminal(std::uint32_t code) noexcept
{
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x61C || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

std::string EscapeOf(const Character& character)
{
  if (character.code == '\n') return "\\n";
  if (character.code == '\r') return "\\r";
  if (character.code == '\t') return "\\t";
  char text[16];
  std::snprintf(text, sizeof text, character.isRaw ? "\\x%02x" : "\\u%04x", static_cast<unsigned>(character.code));
  return text;
}

}  // namespace

void AppendNumber(std::string& text, double value) { AppendDigits(text, value); }

void AppendNumber(std::string& text, float value) { AppendDigits(text, value); }

void AppendRounded(std::string& text, double value) { AppendDigits(text, value, std::chars_format::general, 6); }

std::string FormatNumber(double value)
{
  std::string text;
  AppendNumber(text, value);
  return text;
}

std::string FormatNumber(float value)
{
  std::string text;
  AppendNumber(text, value);
  return text;
}

std::string FormatRounded(double value)
{
  std::string text;
  AppendRounded(text, value);
  return text;
}

std::string FormatBytes(std::size_t bytes)
{
  static constexpr const char* kUnits[] = {"B", "KiB", "MiB", "GiB", "TiB"};
  auto                         amount   = static_cast<double>(bytes);
  std::size_t                  unit     = 0;
  while (amount >= 1023.5 && unit + 1 < std::size(kUnits)) {
    amount /= 1024.0;
    ++unit;
  }
  char text[48];
  std::snprintf(text, sizeof text, unit > 0 && amount < 9.95 ? "%.1f %s" : "%.0f %s", amount, kUnits[unit]);
  return text;
}

std::string Counted(std::size_t count, std::string_view noun)
{
  return std::to_string(count) + ' ' + std::string(noun) + (count == 1 ? "" : "s");
}

std::string FormatIds(const std::set<int>& ids)
{
  constexpr int kMaxRanges = 12;
  std::string   text;
  int           numRanges = 0;
  for (auto id = ids.begin(); id != ids.end();) {
    if (numRanges > 0) text += ", ";
    if (++numRanges > kMaxRanges) return text + "...";
    const int first = *id;
    int       last  = first;
    for (++id; id != ids.end() && *id - 1 == last; ++id) last = *id;
    text += std::to_string(first);
    if (last != first) text += '-' + std::to_string(last);
  }
  return text;
}

bool IsPlain(std::string_view text) noexcept
{
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
}

void AppendPrintable(std::string& printable, std::string_view text)
{
  if (IsPlain(text)) {
    printable += text;
    return;
  }
  while (!text.empty()) {
    const Character character = FirstCharacter(text);
    if (DrivesTerminal(character.code)) {
      printable += EscapeOf(character);
    } else {
      printable += text.substr(0, character.size);
    }
    text.remove_prefix(character.size);
  }
}

std::string Printable(std::string_view text)
{
  std::string printable;
  AppendPrintable(printable, text);
  return printable;
}

std::string Enumerated(std::span<const std::string> texts, std::size_t most)
{
  std::string enumerated;
  for (const std::string& text : texts.first(std::min(most, texts.size())))
    enumerated += (enumerated.empty() ? "" : ", ") + Printable(text);
  return texts.size() > most ? enumerated + ", ..." : enumerated;
}

std::string_view Trimmed(std::string_view text)
{
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

}  // namespace quilon
