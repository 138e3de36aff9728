#include "Checksum.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

struct RunningChecksum::State
{
  XXH3_state_t state;
};

std::uint64_t GetChecksum(const void* bytes, std::size_t count) noexcept { return XXH3_64bits(bytes, count); }

std::string FormatChecksum(std::uint64_t checksum)
{
  std::string digits(16, '0');
  for (std::size_t i = digits.size(); i-- > 0; checksum >>= 4) digits[i] = "0123456789abcdef"[checksum & 0xf];
  return digits;
}

RunningChecksum::RunningChecksum() : state_(std::make_unique<State>()) { Reset(); }

RunningChecksum::~RunningChecksum() = default;

void RunningChecksum::Reset() noexcept { XXH3_64bits_reset(&state_->state); }

void RunningChecksum::Add(const void* bytes, std::size_t count) noexcept
{
  XXH3_64bits_update(&state_->state, bytes, count);
}

std::uint64_t RunningChecksum::Get() const noexcept { return XXH3_64bits_digest(&state_->state); }
