#include "report/BlobCode.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

#include <zlib.h>

#include "text/Failure.h"

namespace quilon {

namespace {

/// @return the bytes, deflated
std::string Deflate(std::string_view bytes)
{
  // The middle of zlib's levels: the next ones take twice the time for one part in a hundred.
  constexpr int kLevel = 6;
  uLongf        size   = compressBound(static_cast<uLong>(bytes.size()));
  std::string   deflated(size, '\0');
  const int     result = compress2(reinterpret_cast<Bytef*>(deflated.data()), &size,
                                   reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size()), kLevel);
  if (result != Z_OK)
    Fail("deflating " + std::to_string(bytes.size()) + " bytes: zlib error " + std::to_string(result));
  deflated.resize(size);
  return deflated;
}

/// @return the differences, plane by plane
template <typename T>
std::string ToPlanes(std::span<const T> numbers)
{
  std::string planes(numbers.size() * sizeof(T), '\0');
  T           last = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const T difference = static_cast<T>(numbers[i] - last);
    last               = numbers[i];
    for (std::size_t plane = 0; plane < sizeof(T); ++plane)
      planes[plane * numbers.size() + i] = static_cast<char>(difference >> (8 * plane) & 0xFFU);
  }
  return planes;
}

void AppendDouble(std::string& bytes, double value)
{
  const auto bits = std::bit_cast<std::uint64_t>(value);
  for (unsigned shift = 0; shift < 64; shift += 8) bytes += static_cast<char>(bits >> shift & 0xFFU);
}

std::string EncodeFull(std::span<const double> values, std::size_t numComponents)
{
  std::vector<std::uint32_t> bits;
  bits.reserve(values.size());
  for (std::size_t component = 0; component < numComponents; ++component)
    for (std::size_t i = component; i < values.size(); i += numComponents)
      bits.push_back(std::bit_cast<std::uint32_t>(static_cast<float>(values[i])));
  return Deflate(ToPlanes<std::uint32_t>(bits));
}

std::string EncodeHalf(std::span<const double> values, std::size_t numComponents)
{
  constexpr std::uint16_t    kNoNumber = 65535;
  std::string                ranges;
  std::vector<std::uint16_t> steps;
  steps.reserve(values.size());
  for (std::size_t component = 0; component < numComponents; ++component) {
    double least    = std::numeric_limits<double>::infinity();
    double greatest = -least;
    for (std::size_t i = component; i < values.size(); i += numComponents) {
      if (!std::isfinite(values[i])) continue;
      least    = std::min(least, values[i]);
      greatest = std::max(greatest, values[i]);
    }
    if (least > greatest) least = greatest = 0.0;
    AppendDouble(ranges, least);
    AppendDouble(ranges, greatest);
    // Halves: the range of the largest doubles has no number.
    const double length = greatest / 2.0 - least / 2.0;
    for (std::size_t i = component; i < values.size(); i += numComponents) {
      if (!std::isfinite(values[i]))
        steps.push_back(kNoNumber);
      else
        steps.push_back(length > 0.0 ? static_cast<std::uint16_t>(
                                           std::lround((values[i] / 2.0 - least / 2.0) / length * (kNoNumber - 1.0)))
                                     : std::uint16_t{0});
    }
  }
  return ranges + Deflate(ToPlanes<std::uint16_t>(steps));
}

}  // namespace

std::string EncodeValues(std::span<const double> values, std::size_t numComponents, BlobBits bits)
{
  return bits == BlobBits::Full ? EncodeFull(values, numComponents) : EncodeHalf(values, numComponents);
}

std::string EncodeIntegers(std::span<const std::uint32_t> integers) { return Deflate(ToPlanes(integers)); }

std::string ToBase64(std::string_view bytes)
{
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string                text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count  = std::min<std::size_t>(bytes.size() - i, 3);
    std::uint32_t     triple = 0;
    for (std::size_t k = 0; k < 3; ++k)
      triple = triple << 8U | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    for (std::size_t k = 0; k < 4; ++k) text += k <= count ? kDigits[triple >> (18 - 6 * k) & 63U] : '=';
  }
  return text;
}

}  // namespace quilon
