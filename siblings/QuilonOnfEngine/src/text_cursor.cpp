#include "text_cursor.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "QuilonUtilities/FED_Failure.h"

namespace {

constexpr const char* kTag = "|%P|QuilonOnfEngine|text_cursor";

int HexDigitValue(char c) noexcept
{
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

template <typename Float>
using BitsOf = std::conditional_t<sizeof(Float) == 8, std::uint64_t, std::uint32_t>;

}  // namespace

std::string QuoteForMessage(std::string_view text)
{
  constexpr std::size_t kMaxShown = 40;
  std::size_t           end       = std::min(text.size(), kMaxShown);
  // A UTF-8 character stays whole: its later bytes are 10xxxxxx.
  while (end > 0 && end < text.size() && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80) --end;
  std::string shown(text.substr(0, end));
  for (char& c : shown)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
  return "\"" + shown + (text.size() > end ? "...\"" : "\"");
}

std::string DisplayPath(const std::filesystem::path& path)
{
  const std::u8string utf8 = path.generic_u8string();
  return {utf8.begin(), utf8.end()};
}

TextCursor::TextCursor(std::string fileName, std::string_view text)
    : fileName_(std::move(fileName)), at_(text.data()), end_(text.data() + text.size())
{}

void TextCursor::Fail(const std::string& message) const { throw FED_Failure(GetPlace() + ": " + message, kTag); }

std::string TextCursor::GetPlace() const { return fileName_ + ":" + std::to_string(line_); }

void TextCursor::FailExpected(const std::string& expected)
{
  SkipBlanks();
  std::string found;
  if (at_ == end_)
    found = "the end of the file";
  else if (*at_ == '\n')
    found = "the end of the line";
  else
    found = QuoteForMessage(ReadWord());
  Fail("expected " + expected + ", found " + found);
}

bool TextCursor::AtLineEnd()
{
  SkipBlanks();
  return at_ == end_ || *at_ == '\n';
}

void TextCursor::ReadLineEnd()
{
  SkipBlanks();
  if (at_ == end_ || *at_ != '\n') FailExpected("the end of the line");
  ++at_;
  ++line_;
}

std::string_view TextCursor::ReadWord()
{
  SkipBlanks();
  const char* const begin = at_;
  while (!EndsToken(at_)) ++at_;
  return {begin, static_cast<std::size_t>(at_ - begin)};
}

std::string_view TextCursor::ReadRestOfLine()
{
  SkipBlanks();
  const char* const begin = at_;
  while (at_ != end_ && *at_ != '\n') ++at_;
  const char* last = at_;
  while (last != begin && IsBlank(last[-1])) --last;
  return {begin, static_cast<std::size_t>(last - begin)};
}

std::string_view TextCursor::ReadKey()
{
  SkipBlanks();
  const char* colon = at_;
  while (colon != end_ && *colon != ':' && *colon != '\n') ++colon;
  if (colon == end_ || *colon != ':') return {};
  const std::string_view key(at_, static_cast<std::size_t>(colon - at_));
  at_ = colon + 1;
  return key;
}

template <typename Integer>
Integer TextCursor::ReadInteger(const char* what)
{
  SkipBlanks();
  Integer    value{};
  const auto result = std::from_chars(at_, end_, value);
  if (result.ec != std::errc() || !EndsToken(result.ptr)) FailExpected(what);
  at_ = result.ptr;
  return value;
}

int TextCursor::ReadInteger() { return ReadInteger<int>("a 32-bit integer"); }

std::size_t TextCursor::ReadCount(const char* what) { return ReadInteger<std::size_t>(what); }

std::size_t TextCursor::ReadListCount()
{
  SkipBlanks();
  const char* const begin  = at_;
  const char*       p      = at_;
  std::size_t       count  = 0;
  bool              isList = p != end_ && *p == '[';
  if (isList) {
    const auto result = std::from_chars(p + 1, end_, count);
    p                 = result.ptr;
    isList            = result.ec == std::errc() && p != end_ && *p == ']' && EndsToken(p + 1);
  }
  if (!isList) FailExpected("the length of a list, such as [3]");
  at_ = p + 1;
  if (count > GetRemaining() / 2) {
    at_ = begin;
    Fail("a list of " + std::to_string(count) + " elements cannot stand in the " + std::to_string(GetRemaining()) +
         " bytes that follow");
  }
  return count;
}

char TextCursor::ReadEscape()
{
  const char kind = at_ == end_ ? '\n' : *at_++;
  switch (kind) {
    case '"':
    case '\\':
      return kind;
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    case 'x':
      if (end_ - at_ >= 2) {
        const int high = HexDigitValue(at_[0]);
        const int low  = HexDigitValue(at_[1]);
        if (high >= 0 && low >= 0) {
          at_ += 2;
          return static_cast<char>(16 * high + low);
        }
      }
      break;
    default:
      break;
  }
  Fail("expected \\\", \\\\, \\n, \\r, \\t or \\x and two hexadecimal digits behind a backslash");
}

std::string TextCursor::ReadString()
{
  SkipBlanks();
  if (at_ == end_ || *at_ != '"') FailExpected("a string in double quotes");
  ++at_;
  std::string value;
  for (;;) {
    if (at_ == end_ || *at_ == '\n') FailExpected("a double quote that closes the string");
    const char c = *at_++;
    if (c == '"') break;
    value += c == '\\' ? ReadEscape() : c;
  }
  if (!EndsToken(at_)) FailExpected("a blank behind the string");
  return value;
}

template <typename Float>
Float TextCursor::ReadRareFloat()
{
  using Bits                   = BitsOf<Float>;
  constexpr bool   isDouble    = sizeof(Float) == 8;
  const char*      begin       = at_;
  std::string_view word        = ReadWord();
  constexpr auto   kNanOpening = std::string_view("nan(0x");

  if (word == "inf") return std::numeric_limits<Float>::infinity();
  if (word == "-inf") return -std::numeric_limits<Float>::infinity();
  if (word == "nan") return std::numeric_limits<Float>::quiet_NaN();
  if (word.size() == kNanOpening.size() + 2 * sizeof(Float) + 1 && word.substr(0, kNanOpening.size()) == kNanOpening &&
      word.back() == ')')
  {
    Bits              bits   = 0;
    const char* const last   = word.data() + word.size() - 1;
    const auto        result = std::from_chars(word.data() + kNanOpening.size(), last, bits, 16);
    const Float       value  = std::bit_cast<Float>(bits);
    if (result.ec == std::errc() && result.ptr == last && std::isnan(value)) return value;
  }
  at_ = begin;
  FailExpected(isDouble ? "a number that a double can hold" : "a number that a 32-bit float can hold");
}

template float  TextCursor::ReadRareFloat<float>();
template double TextCursor::ReadRareFloat<double>();
