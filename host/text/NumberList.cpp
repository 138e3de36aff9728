#include "text/NumberList.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

bool ParseNumbers(std::string_view text, std::span<double> numbers)
{
  const char* at  = text.data();
  const char* end = text.data() + text.size();
  for (double& number : numbers) {
    const auto taken  = std::from_chars(at, end, number);
    const bool isLast = &number == &numbers.back();
    if (taken.ec != std::errc() || !std::isfinite(number)) return false;
    if (isLast ? taken.ptr != end : taken.ptr == end || *taken.ptr != ',') return false;
    at = taken.ptr + 1;
  }
  return true;
}

void ParseNumbers(const std::string& option, const std::string& text, std::span<double> numbers,
                  const std::string& expected)
{
  if (!ParseNumbers(text, numbers)) Fail(option + " is '" + text + "', expected " + expected);
}

std::string FormatNumbers(std::span<const double> numbers)
{
  std::string text;
  for (const double number : numbers) text += (text.empty() ? "" : ",") + FormatRounded(number + 0.0);  // no "-0"
  return text;
}

}  // namespace quilon
