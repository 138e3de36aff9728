#include "QuilonUtilities/QuilonStringUtil.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <system_error>

#include "wide_text.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// The white space of the standard's own locale.
bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Loops of their own: a search for any of six characters calls memchr() for each character that it looks at, which took
// a third of the time of a conversion.

std::size_t CountLeadingSpace(std::string_view text)
{
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsSpace) - text.begin());
}

std::size_t CountTrailingSpace(std::string_view text)
{
  return static_cast<std::size_t>(std::find_if_not(text.rbegin(), text.rend(), IsSpace) - text.rbegin());
}

/// @return the text behind leading white space and one '+', which std::from_chars does not take; a sign behind the '+'
///         leaves no number
std::string_view NumberText(std::string_view text)
{
  text.remove_prefix(CountLeadingSpace(text));
  if (text.empty() || text.front() != '+') return text;
  text.remove_prefix(1);
  return !text.empty() && text.front() == '-' ? std::string_view() : text;
}

FedStatusCode StatusOfRest(std::string_view rest)
{
  return CountLeadingSpace(rest) == rest.size() ? FedStatusSuccess : FedStatusTrailingText;
}

/// @param number a decimal number other than zero: digits with or without a point, then perhaps an exponent
/// @return whether its magnitude is below 1
bool IsBelowOne(std::string_view number)
{
  const std::size_t      mark     = number.find_first_of("eE");
  const std::string_view mantissa = number.substr(0, mark);

  // The exponent saturates: beyond this limit only the length of a mantissa could outweigh it, and none is so long.
  constexpr std::ptrdiff_t kLimit   = std::ptrdiff_t{1} << 40;
  std::ptrdiff_t           exponent = 0;
  bool                     negative = false;
  if (mark != std::string_view::npos) {
    for (const char c : number.substr(mark + 1)) {
      if (c == '-') negative = true;
      if (IsDigit(c) && exponent < kLimit) exponent = 10 * exponent + (c - '0');
    }
  }

  // The power of ten that the first digit other than 0 stands for.
  const std::size_t    point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t    first = mantissa.find_first_of("123456789");
  const std::ptrdiff_t order =
      static_cast<std::ptrdiff_t>(point) - static_cast<std::ptrdiff_t>(first) - (first < point);
  return order + (negative ? -exponent : exponent) < 0;
}

}  // namespace

FedStatusCode QuilonStringUtil::ToInt(const std::string& text, int& out)
{
  const std::string_view number = NumberText(text);
  const char* const      end    = number.data() + number.size();
  int                    value  = 0;
  const auto [stop, error]      = std::from_chars(number.data(), end, value);
  if (error == std::errc::invalid_argument) return FedStatusNoNumber;
  if (error == std::errc::result_out_of_range) return FedStatusOutOfRange;
  out = value;
  return StatusOfRest(number.substr(static_cast<std::size_t>(stop - number.data())));
}

FedStatusCode QuilonStringUtil::ToDouble(const std::string& text, double& out)
{
  const std::string_view number = NumberText(text);
  const char* const      end    = number.data() + number.size();
  double                 value  = 0.0;
  const auto [stop, error]      = std::from_chars(number.data(), end, value);
  if (error == std::errc::invalid_argument) return FedStatusNoNumber;

  const std::size_t length = static_cast<std::size_t>(stop - number.data());
  if (error == std::errc::result_out_of_range) {
    // Too small is no failure: the nearest double is a zero of the number's sign.
    if (!IsBelowOne(number.substr(0, length))) return FedStatusOutOfRange;
    value = number.front() == '-' ? -0.0 : 0.0;
  }
  out = value;
  return StatusOfRest(number.substr(length));
}

std::vector<std::string>& QuilonStringUtil::Trim(std::vector<std::string>& texts)
{
  for (std::string& text : texts) {
    text.resize(text.size() - CountTrailingSpace(text));
    if (const std::size_t leading = CountLeadingSpace(text)) text.erase(0, leading);
  }
  return texts;
}

std::string QuilonStringUtil::wide_to_utf8(const wchar_t* text) { return WideToUtf8(std::wstring_view(text)); }
