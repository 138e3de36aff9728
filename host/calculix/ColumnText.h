#pragma once

/// @file
/// Numbers in the fixed columns of the solver's text files.

#include <array>
#include <string>
#include <string_view>

namespace quilon::calculix {

/// Reads a floating-point number that ends with the column, as Fortran's E, D and F edits print it: leading blanks, a
/// sign, digits with at most one point, an exponent with or without its letter ("1.483834+108"), or INF, INFINITY, NAN.
/// The value is the one nearest to the text.
/// @param column at most 64 characters
/// @return false, value untouched, for any other text, for a blank column and for a number that no double holds
bool ReadDouble(std::string_view column, double& value) noexcept;

/// Reads a decimal integer that ends with the column, blanks and a sign before it.
/// @return false, value untouched, for any other text, for a blank column and for a number past 32 bits
bool ReadInteger(std::string_view column, int& value) noexcept;

/// As ReadDouble for exactly 12 characters, quick for the form "-d.dddddE+dd" of a .frd file.
inline bool ReadDouble12(const char* column, double& value) noexcept;

/// A piece of a file for a message: at most 40 characters, anything that is not printable ASCII shown as '?'.
std::string Shown(std::string_view text);

/// @return text without blanks at its end
std::string_view WithoutTrailingBlanks(std::string_view text) noexcept;

/// @return columns first to first + width - 1 of a line (from 1), fewer where the line is shorter
inline std::string_view Columns(std::string_view line, std::size_t first, std::size_t width) noexcept
{
  return first > line.size() ? std::string_view() : line.substr(first - 1, width);
}

namespace detail {

/// Powers of ten that a double holds exactly. A product or quotient of one of them and an integer below 2^53 is rounded
/// once, so it is the nearest double (W. D. Clinger, How to Read Floating Point Numbers Accurately, PLDI 1990).
inline constexpr std::array<double, 23> kPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

}  // namespace detail

inline bool ReadDouble12(const char* column, double& value) noexcept
{
  const auto     digit = [column](int i) { return static_cast<unsigned>(static_cast<unsigned char>(column[i])) - '0'; };
  const unsigned d0 = digit(1), d1 = digit(3), d2 = digit(4), d3 = digit(5), d4 = digit(6), d5 = digit(7);
  const unsigned e0 = digit(10), e1 = digit(11);
  const bool plain = (column[0] == ' ' || column[0] == '-') & (d0 < 10) & (column[2] == '.') & (d1 < 10) & (d2 < 10) &
                     (d3 < 10) & (d4 < 10) & (d5 < 10) & (column[8] == 'E') & (column[9] == '+' || column[9] == '-') &
                     (e0 < 10) & (e1 < 10);
  if (!plain) return ReadDouble({column, 12}, value);

  const int    digits   = static_cast<int>(((((d0 * 10 + d1) * 10 + d2) * 10 + d3) * 10 + d4) * 10 + d5);
  const double mantissa = column[0] == '-' ? -static_cast<double>(digits) : static_cast<double>(digits);
  const int    written  = static_cast<int>(e0 * 10 + e1);
  const int    power    = (column[9] == '-' ? -written : written) - 5;
  if (power >= 0 && power <= 22) {
    value = mantissa * detail::kPowersOfTen[static_cast<std::size_t>(power)];
  } else if (power < 0 && power >= -22) {
    value = mantissa / detail::kPowersOfTen[static_cast<std::size_t>(-power)];
  } else {
    return ReadDouble({column, 12}, value);
  }
  return true;
}

}  // namespace quilon::calculix
