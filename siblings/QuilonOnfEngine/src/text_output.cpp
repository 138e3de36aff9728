#include "text_output.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 20;
/// Holds every number: 24 characters for a double, 23 for a NaN with its bits, 20 for an integer.
constexpr std::size_t kMaxNumberSize = 32;
constexpr char        kHexDigits[]   = "0123456789abcdef";

char* Put(char* at, std::string_view text)
{
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}

/// The NaN that arithmetic makes is "nan"; any other keeps its bits, so that sign and payload survive.
template <typename Float>
char* PutNotFinite(char* at, Float value)
{
  using Bits = std::conditional_t<sizeof(Float) == 8, std::uint64_t, std::uint32_t>;
  if (std::isinf(value)) return Put(at, value < 0 ? "-inf" : "inf");
  const Bits bits = std::bit_cast<Bits>(value);
  if (bits == std::bit_cast<Bits>(std::numeric_limits<Float>::quiet_NaN())) return Put(at, "nan");
  at = Put(at, "nan(0x");
  for (int shift = static_cast<int>(8 * sizeof(Float)) - 4; shift >= 0; shift -= 4)
    *at++ = kHexDigits[static_cast<unsigned>(bits >> shift) & 15u];
  *at++ = ')';
  return at;
}

template <typename Float>
char* PutFloat(char* at, Float value)
{
  if (!std::isfinite(value)) return PutNotFinite(at, value);
  return std::to_chars(at, at + kMaxNumberSize, value).ptr;
}

}  // namespace

TextOutput::TextOutput(Sink sink) : sink_(std::move(sink)), buffer_(kBufferSize) {}

void TextOutput::Flush()
{
  if (size_ != 0) sink_({buffer_.data(), size_});
  size_ = 0;
}

char* TextOutput::Reserve()
{
  if (buffer_.size() - size_ < kMaxNumberSize) Flush();
  return buffer_.data() + size_;
}

void TextOutput::Append(std::string_view text)
{
  while (!text.empty()) {
    if (size_ == buffer_.size()) Flush();
    const std::size_t part = std::min(text.size(), buffer_.size() - size_);
    std::memcpy(buffer_.data() + size_, text.data(), part);
    size_ += part;
    text.remove_prefix(part);
  }
}

void TextOutput::AppendChar(char c)
{
  *Reserve() = c;
  ++size_;
}

void TextOutput::AppendInteger(long long value)
{
  char* const at = Reserve();
  size_ += static_cast<std::size_t>(std::to_chars(at, at + kMaxNumberSize, value).ptr - at);
}

void TextOutput::AppendFloat(float value)
{
  char* const at = Reserve();
  size_ += static_cast<std::size_t>(PutFloat(at, value) - at);
}

void TextOutput::AppendDouble(double value)
{
  char* const at = Reserve();
  size_ += static_cast<std::size_t>(PutFloat(at, value) - at);
}

void TextOutput::AppendString(std::string_view text) { Append(QuoteString(text)); }

std::string QuoteString(std::string_view text)
{
  std::string quoted = "\"";
  for (const char c : text) {
    switch (c) {
      case '"':
        quoted += "\\\"";
        break;
      case '\\':
        quoted += "\\\\";
        break;
      case '\n':
        quoted += "\\n";
        break;
      case '\r':
        quoted += "\\r";
        break;
      case '\t':
        quoted += "\\t";
        break;
      default: {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7f) {
          quoted += c;
        } else {
          quoted += "\\x";
          quoted += kHexDigits[byte >> 4];
          quoted += kHexDigits[byte & 15];
        }
      }
    }
  }
  return quoted + '"';
}
