#pragma once

/// @file
/// Characters of ASCII, whatever the locale: digits, upper and lower case of letters; other characters stay.

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>

namespace quilon {

constexpr bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

constexpr char ToLower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr char ToUpper(char c) noexcept { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

inline std::string LowerCase(std::string_view text)
{
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), ToLower);
  return lower;
}

inline std::string UpperCase(std::string_view text)
{
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), ToUpper);
  return upper;
}

/// @return the extension with its dot: ".frd" of "JOB.FRD"
inline std::string LowerExtension(const std::filesystem::path& path) { return LowerCase(path.extension().string()); }

}  // namespace quilon
