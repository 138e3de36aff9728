#pragma once

/// @file
/// Numbers as bytes, the least byte first, whatever the machine.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

/// Appends numbers and texts to bytes.
class ByteWriter
{
public:
  void Put(const void* bytes, std::size_t count)
  {
    const auto* from = static_cast<const std::uint8_t*>(bytes);
    bytes_.insert(bytes_.end(), from, from + count);
  }
  template <typename T>
  void Put(T number)
  {
    static_assert(std::is_unsigned_v<T>);
    std::uint8_t bytes[sizeof(T)];
    for (std::size_t i = 0; i < sizeof(T); ++i) bytes[i] = static_cast<std::uint8_t>(number >> (8 * i));
    Put(bytes, sizeof(T));
  }
  void Put(int number) { Put(static_cast<std::uint32_t>(number)); }
  void Put(double number) { Put(std::bit_cast<std::uint64_t>(number)); }
  /// Its length, then its characters.
  void Put(const std::string& text)
  {
    Put(static_cast<std::uint32_t>(text.size()));
    Put(text.data(), text.size());
  }
  void PutCount(std::size_t count) { Put(static_cast<std::uint64_t>(count)); }
  void PutZeros(std::size_t count) { bytes_.resize(bytes_.size() + count); }
  void Reserve(std::size_t count) { bytes_.reserve(count); }

  std::size_t                GetSize() const noexcept { return bytes_.size(); }
  std::vector<std::uint8_t>& GetBytes() noexcept { return bytes_; }

private:
  std::vector<std::uint8_t> bytes_;
};
