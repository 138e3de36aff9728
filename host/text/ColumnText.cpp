#include "text/ColumnText.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <system_error>

#include "text/Case.h"

namespace quilon {
namespace {

constexpr std::size_t kMaxColumn = 64;

std::string_view WithoutLeadingBlanks(std::string_view text) noexcept
{
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

bool EqualsUpper(std::string_view text, std::string_view upper) noexcept
{
  return std::equal(text.begin(), text.end(), upper.begin(), upper.end(),
                    [](char a, char b) { return ToUpper(a) == b; });
}

std::size_t CountDigits(std::string_view text, std::size_t from) noexcept
{
  std::size_t end = from;
  while (end < text.size() && IsDigit(text[end])) ++end;
  return end - from;
}

// Copies a number without its sign into the form that std::from_chars reads: an 'e' before the exponent, no '+'.
// Gives its length, 0 when the text is no number.
std::size_t Normalise(std::string_view text, char* out) noexcept
{
  std::size_t length = 0;
  std::size_t at     = 0;
  const auto  copy   = [&](std::size_t count) {
    std::copy_n(text.data() + at, count, out + length);
    length += count;
    at += count;
  };
  const std::size_t whole = CountDigits(text, at);
  copy(whole);
  std::size_t fraction = 0;
  if (at < text.size() && text[at] == '.') {
    copy(1);
    fraction = CountDigits(text, at);
    copy(fraction);
  }
  if (whole + fraction == 0) return 0;
  if (at == text.size()) return length;

  const char letter    = text[at];
  const bool hasLetter = letter == 'E' || letter == 'e' || letter == 'D' || letter == 'd';
  if (hasLetter) ++at;
  // Three digits leave no room for the letter: the sign alone tells where the exponent starts.
  const bool hasSign = at < text.size() && (text[at] == '+' || text[at] == '-');
  if (!hasLetter && !hasSign) return 0;
  out[length++] = 'e';
  if (hasSign) {
    if (text[at] == '-') out[length++] = '-';
    ++at;
  }
  const std::size_t digits = CountDigits(text, at);
  if (digits == 0 || at + digits != text.size()) return 0;
  copy(digits);
  return length;
}

// Most numbers are as std::from_chars reads them. What it does not take to the end may still be one.
bool ReadUsual(std::string_view text, double& magnitude) noexcept
{
  if (text.empty() || !IsDigit(text.front())) return false;
  const char* const textEnd = text.data() + text.size();
  const auto [end, error]   = std::from_chars(text.data(), textEnd, magnitude);
  return error == std::errc() && end == textEnd;
}

}  // namespace

bool ReadDouble(std::string_view column, double& value) noexcept
{
  if (column.size() > kMaxColumn) return false;
  std::string_view text = WithoutLeadingBlanks(column);
  if (text.empty()) return false;
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);

  double magnitude = 0.0;
  if (ReadUsual(text, magnitude)) {
    value = negative ? -magnitude : magnitude;
    return true;
  }
  if (EqualsUpper(text, "INF") || EqualsUpper(text, "INFINITY")) {
    magnitude = std::numeric_limits<double>::infinity();
  } else if (EqualsUpper(text, "NAN")) {
    magnitude = std::numeric_limits<double>::quiet_NaN();
  } else {
    char              normal[kMaxColumn + 1];  // an 'e' is the only character that can be added
    const std::size_t length = Normalise(text, normal);
    if (length == 0) return false;
    const auto [end, error] = std::from_chars(normal, normal + length, magnitude);
    if (error != std::errc() || end != normal + length) return false;
  }
  value = negative ? -magnitude : magnitude;
  return true;
}

bool ReadInteger(std::string_view column, int& value) noexcept
{
  std::size_t at = 0;
  while (at < column.size() && column[at] == ' ') ++at;
  const bool negative = at < column.size() && column[at] == '-';
  if (at < column.size() && (negative || column[at] == '+')) ++at;
  if (at == column.size() || column.size() - at > 18) return false;  // 18 digits fit 64 bits
  std::int64_t read = 0;
  for (; at < column.size(); ++at) {
    if (!IsDigit(column[at])) return false;
    read = read * 10 + (column[at] - '0');
  }
  if (negative) read = -read;
  if (read < std::numeric_limits<int>::min() || read > std::numeric_limits<int>::max()) return false;
  value = static_cast<int>(read);
  return true;
}

std::string Quoted(std::string_view text) { return "'" + Shown(text) + "'"; }

std::string Shown(std::string_view text)
{
  constexpr std::size_t kMost = 40;
  std::string           shown(text.substr(0, kMost));
  for (char& c : shown)
    if (c < ' ' || c > '~') c = '?';
  if (text.size() > kMost) shown += "...";
  return shown;
}

std::string_view WithoutTrailingBlanks(std::string_view text) noexcept
{
  const std::size_t last = text.find_last_not_of(' ');
  return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

}  // namespace quilon
