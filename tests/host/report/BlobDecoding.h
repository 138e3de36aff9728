#pragma once

/// @file
/// Blobs of a page read back, by other code than a browser's.

#include <bit>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <zlib.h>

namespace quilon_test {

inline std::string Inflate(std::string_view bytes)
{
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) throw std::runtime_error("inflateInit");
  std::string  text(bytes);
  std::string  inflated;
  std::uint8_t chunk[4096];
  stream.next_in  = reinterpret_cast<Bytef*>(text.data());
  stream.avail_in = static_cast<uInt>(text.size());
  int result      = Z_OK;
  while (result == Z_OK) {
    stream.next_out  = chunk;
    stream.avail_out = sizeof chunk;
    result           = inflate(&stream, Z_NO_FLUSH);
    inflated.append(reinterpret_cast<char*>(chunk), sizeof chunk - stream.avail_out);
  }
  inflateEnd(&stream);
  if (result != Z_STREAM_END || stream.avail_in != 0) throw std::runtime_error("inflate");
  return inflated;
}

/// @param size bytes of a number: 2 or 4
inline std::vector<std::uint32_t> DecodeIntegers(std::string_view blob, std::size_t size = 4)
{
  const std::string          planes = Inflate(blob);
  const std::size_t          count  = planes.size() / size;
  std::vector<std::uint32_t> numbers;
  std::uint32_t              last = 0;
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t difference = 0;
    for (std::size_t plane = 0; plane < size; ++plane)
      difference |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(planes[plane * count + i])) << (8 * plane);
    last += difference;
    if (size == 2) last &= 0xFFFFU;
    numbers.push_back(last);
  }
  return numbers;
}

/// @return shape [components, records]
inline std::vector<float> DecodeFloats(std::string_view blob)
{
  std::vector<float> values;
  for (const std::uint32_t bits : DecodeIntegers(blob)) values.push_back(std::bit_cast<float>(bits));
  return values;
}

}  // namespace quilon_test
