#pragma once

/// @file
/// Numbers in the fixed columns of the solver's text files.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quilon {

/// Reads a floating-point number that ends with the column, as Fortran's E, D and F edits print it: leading blanks, a
/// sign, digits with at most one point, an exponent with or without its letter ("1.483834+108"), or INF, INFINITY, NAN.
/// The value is the one nearest to the text.
/// @param column at most 64 characters
/// @return false, value untouched, for any other text, for a blank column and for a number that no double holds
bool ReadDouble(std::string_view column, double& value) noexcept;

/// Reads a decimal integer that ends with the column, blanks and a sign before it.
/// @return false, value untouched, for any other text, for a blank column and for a number past 32 bits
bool ReadInteger(std::string_view column, int& value) noexcept;

/// As ReadDouble for a column of 7 + kDecimals characters, quick for the form "-d.dddddE+dd" that fills it.
/// @tparam kDecimals 5 in a .frd file, 6 in a .dat file
/// @param column not before its first and not behind its last character is read
template <int kDecimals>
bool ReadScientific(const char* column, double& value) noexcept;

/// A piece of a file for a message: at most 40 characters, anything that is not printable ASCII shown as '?'.
std::string Shown(std::string_view text);

/// @return the same between apostrophes
std::string Quoted(std::string_view text);

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

/// Eight bytes, the first one lowest.
inline std::uint64_t LoadBytes(const char* bytes) noexcept
{
  const auto byte = [bytes](int i) { return static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])); };
  return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24 | byte(4) << 32 | byte(5) << 40 | byte(6) << 48 |
         byte(7) << 56;
}

/// @return the value of a digit, 10 or more for any other character
inline unsigned DigitOf(char c) noexcept { return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0'; }

}  // namespace detail

template <int kDecimals>
bool ReadScientific(const char* column, double& value) noexcept
{
  static_assert(kDecimals == 5 || kDecimals == 6);
  constexpr std::size_t kWidth    = 7 + kDecimals;
  const char*           exponent  = column + 3 + kDecimals;
  const std::uint64_t   head      = detail::LoadBytes(column);
  const unsigned        last      = detail::DigitOf(column[8]);  // with six decimals
  const unsigned        tens      = detail::DigitOf(exponent[2]);
  const unsigned        ones      = detail::DigitOf(exponent[3]);
  const bool            isDivided = exponent[1] == '-';

  // The digits of "-d.ddddd", each in its byte; the sign's byte is dropped and the point's comes out as zero.
  const std::uint64_t digits  = (head ^ 0x30303030302e3000) & 0xffffffffffffff00;
  const bool          isPlain = (((digits + 0x0606060606000600) | digits) & 0xf0f0f0f0f0fff000) == 0 &&
                       (column[0] == ' ' || column[0] == '-') && (kDecimals == 5 || last < 10) && exponent[0] == 'E' &&
                       (isDivided || exponent[1] == '+') && tens < 10 && ones < 10;
  if (!isPlain) return ReadDouble({column, kWidth}, value);

  // Closes the gap of the point, then adds up neighbours: digits to pairs, pairs to fours, fours to the number.
  const std::uint64_t closed = (digits & 0xffffffffff000000) | (digits & 0xff00) << 8;
  const std::uint64_t pairs  = closed * 10 + (closed >> 8);
  const std::uint64_t whole =
      ((pairs & 0x000000ff000000ff) * 0x000f424000000064 + ((pairs >> 16) & 0x000000ff000000ff) * 0x0000271000000001) >>
      32;
  const auto   six      = static_cast<std::uint32_t>(whole);
  const auto   integer  = static_cast<double>(kDecimals == 5 ? six : six * 10 + last);
  const double mantissa = column[0] == '-' ? -integer : integer;
  const int    written  = static_cast<int>(tens * 10 + ones);
  const int    power    = (isDivided ? -written : written) - kDecimals;
  if (power >= 0 && power <= 22) {
    value = mantissa * detail::kPowersOfTen[static_cast<std::size_t>(power)];
  } else if (power < 0 && power >= -22) {
    value = mantissa / detail::kPowersOfTen[static_cast<std::size_t>(-power)];
  } else {
    return ReadDouble({column, kWidth}, value);
  }
  return true;
}

}  // namespace quilon
