#include "text/Format.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace quilon {

namespace {

template <typename Real>
std::string Shortest(Real value)
{
  if (std::isnan(value)) return "nan";  // without the sign that some NaNs carry
  char       text[32];
  const auto written = std::to_chars(std::begin(text), std::end(text), value);
  return std::string(text, written.ptr);
}

}  // namespace

std::string FormatNumber(double value) { return Shortest(value); }

std::string FormatNumber(float value) { return Shortest(value); }

std::string FormatRounded(double value)
{
  if (!std::isfinite(value)) return FormatNumber(value);
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
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

std::string Printable(std::string_view text)
{
  std::string printable(text);
  for (char& c : printable)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
  return printable;
}

std::string_view Trimmed(std::string_view text)
{
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

}  // namespace quilon
