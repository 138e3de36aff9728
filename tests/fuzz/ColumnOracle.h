#pragma once

/// @file
/// Lines, columns and numbers of the solver's logs, read another way than the readers do: by the C library.

#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace quilon_fuzz {

inline void Require(bool holds)
{
  if (!holds) std::abort();
}

/// Lines without their ends; a carriage return before a line feed belongs to the end.
inline std::vector<std::string> LinesOf(const std::string& text)
{
  std::vector<std::string> lines;
  std::istringstream       in(text);
  for (std::string line; std::getline(in, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

/// @return how many lines hold more than blanks
inline std::size_t CountFilled(const std::vector<std::string>& lines)
{
  std::size_t count = 0;
  for (const std::string& line : lines) count += line.find_first_not_of(' ') != std::string::npos ? 1 : 0;
  return count;
}

/// @param first from 1
inline std::string Column(const std::string& line, std::size_t first, std::size_t width)
{
  Require(line.size() + 1 >= first + width);
  return line.substr(first - 1, width);
}

/// @return whether a column says this integer
inline bool Says(const std::string& column, int value) { return std::atoi(column.c_str()) == value; }

/// @return whether a column says this number; the C library knows neither an exponent behind a 'D' nor one without a
/// letter
inline bool Says(std::string column, double value)
{
  bool hasLetter = false;
  for (char& character : column) {
    if (character == 'D' || character == 'd') character = 'e';
    hasLetter = hasLetter || std::isalpha(static_cast<unsigned char>(character)) != 0;
  }
  const std::size_t sign = column.find_last_of("+-");
  if (!hasLetter && sign != std::string::npos && sign > 0 && column[sign - 1] != ' ') column.insert(sign, "e");
  char*        end  = nullptr;
  const double read = std::strtod(column.c_str(), &end);
  if (end != column.c_str() + column.size()) return false;
  return (std::isnan(read) && std::isnan(value)) || std::memcmp(&read, &value, sizeof read) == 0;
}

}  // namespace quilon_fuzz
