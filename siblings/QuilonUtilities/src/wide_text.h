#pragma once

/// @file
/// Wide text to UTF-8, for either width of a wide character.

#include <string>
#include <string_view>

/// Appends one code point. What is no character (a surrogate, or past U+10FFFF) becomes U+FFFD.
inline void AppendUtf8(std::string& out, char32_t code)
{
  if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = 0xFFFD;
  const auto lead = [&out](char32_t mark, char32_t bits) { out += static_cast<char>(mark | bits); };
  const auto tail = [&out](char32_t bits) { out += static_cast<char>(0x80 | (bits & 0x3F)); };
  if (code < 0x80) {
    lead(0, code);
  } else if (code < 0x800) {
    lead(0xC0, code >> 6);
    tail(code);
  } else if (code < 0x10000) {
    lead(0xE0, code >> 12);
    tail(code >> 6);
    tail(code);
  } else {
    lead(0xF0, code >> 18);
    tail(code >> 12);
    tail(code >> 6);
    tail(code);
  }
}

/// @tparam Char a type of two bytes holds UTF-16, one of four bytes UTF-32
template <typename Char>
std::string WideToUtf8(std::basic_string_view<Char> text)
{
  static_assert(sizeof(Char) == 2 || sizeof(Char) == 4, "wide text is UTF-16 or UTF-32");
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = static_cast<char32_t>(text[i]);
    if constexpr (sizeof(Char) == 2) {
      const bool     high = code >= 0xD800 && code <= 0xDBFF;
      const char32_t next = high && i + 1 < text.size() ? static_cast<char32_t>(text[i + 1]) : 0;
      if (next >= 0xDC00 && next <= 0xDFFF) {
        code = 0x10000 + ((code - 0xD800) << 10) + (next - 0xDC00);
        ++i;
      }
    }
    AppendUtf8(out, code);
  }
  return out;
}
