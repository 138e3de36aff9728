#pragma once

/// @file
/// Columns of numbers as a page carries them: small, and quickly read by a browser.
///
/// Numbers follow each other component by component. Each becomes its difference to the one before it, modulo 2^32 (or
/// 2^16), of the integers or of the bits of the floats: neighbours are alike. The bytes then stand plane by plane,
/// least significant ones first, and are deflated (RFC 1950).

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quilon {

/// How many bits of a value a page keeps.
enum class BlobBits
{
  Full,  ///< IEEE floats of 32 bits: 7 digits
  Half   ///< 16 bits, off by at most a 131068th of the range that the values of a component have in a step
};

/// @param values shape [records, components], components one after the other in each record
/// @return of Full the bits of the floats; of Half, before the deflated bytes, least and greatest value of each
/// component
///         as doubles, least significant byte first: 65535 is no number, q else least + q (greatest - least) / 65534
std::string EncodeValues(std::span<const double> values, std::size_t numComponents, BlobBits bits);

std::string EncodeIntegers(std::span<const std::uint32_t> integers);

/// RFC 4648, with its padding.
std::string ToBase64(std::string_view bytes);

}  // namespace quilon
