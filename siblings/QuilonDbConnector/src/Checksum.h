#pragma once

/// @file
/// Checksums of stored bytes: XXH3 with 64 bits.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/// @return the checksum of all bytes
std::uint64_t GetChecksum(const void* bytes, std::size_t count) noexcept;

/// @return 16 hexadecimal digits
std::string FormatChecksum(std::uint64_t checksum);

/// The checksum of bytes that come in parts.
class RunningChecksum
{
public:
  RunningChecksum();
  RunningChecksum(const RunningChecksum&)            = delete;
  RunningChecksum& operator=(const RunningChecksum&) = delete;
  ~RunningChecksum();

  /// Starts again.
  void          Reset() noexcept;
  void          Add(const void* bytes, std::size_t count) noexcept;
  std::uint64_t Get() const noexcept;

private:
  struct State;

  std::unique_ptr<State> state_;
};
