#include "wide_text.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";  // U+FFFD

TEST(WideText, EncodesTheFirstAndLastCodePointOfEveryLength)
{
  struct Row
  {
    char32_t    code;
    const char* utf8;
  };
  // The boundaries of the encoding's four lengths, in bytes counted by hand.
  const Row rows[] = {{0x01, "\x01"},
                      {0x7F, "\x7F"},
                      {0x80, "\xC2\x80"},
                      {0x7FF, "\xDF\xBF"},
                      {0x800, "\xE0\xA0\x80"},
                      {0xD7FF, "\xED\x9F\xBF"},
                      {0xE000, "\xEE\x80\x80"},
                      {0xFFFF, "\xEF\xBF\xBF"},
                      {0x10000, "\xF0\x90\x80\x80"},
                      {0x10FFFF, "\xF4\x8F\xBF\xBF"}};
  for (const Row& row : rows)
    EXPECT_EQ(WideToUtf8(std::u32string_view(&row.code, 1)), row.utf8) << static_cast<unsigned>(row.code);
}

TEST(WideText, ReplacesWhatIsNoCharacterInUtf32)
{
  for (const char32_t code : {char32_t{0xD800}, char32_t{0xDBFF}, char32_t{0xDC00}, char32_t{0xDFFF},
                              char32_t{0x110000}, char32_t{0xFFFFFFFF}})
    EXPECT_EQ(WideToUtf8(std::u32string_view(&code, 1)), kReplacement) << static_cast<unsigned>(code);
  // In UTF-32 a pair of surrogates is two mistakes, not one character.
  const char32_t pair[] = {0xD83D, 0xDE00};
  EXPECT_EQ(WideToUtf8(std::u32string_view(pair, 2)), std::string(kReplacement) + kReplacement);
}

TEST(WideText, JoinsTheSurrogatePairsOfUtf16)
{
  EXPECT_EQ(WideToUtf8(std::u16string_view(u"a\U0001F600b")),
            "a\xF0\x9F\x98\x80"
            "b");
  const char16_t first[] = {0xD800, 0xDC00};
  EXPECT_EQ(WideToUtf8(std::u16string_view(first, 2)), "\xF0\x90\x80\x80");
  const char16_t last[] = {0xDBFF, 0xDFFF};
  EXPECT_EQ(WideToUtf8(std::u16string_view(last, 2)), "\xF4\x8F\xBF\xBF");
}

TEST(WideText, ReplacesLoneSurrogatesInUtf16)
{
  const std::string r(kReplacement);
  const char16_t    atEnd[] = {u'a', 0xD83D};
  EXPECT_EQ(WideToUtf8(std::u16string_view(atEnd, 2)), "a" + r);
  const char16_t lowFirst[] = {0xDE00, 0xD83D, u'a'};
  EXPECT_EQ(WideToUtf8(std::u16string_view(lowFirst, 3)), r + r + "a");
  const char16_t twoHighs[] = {0xD83D, 0xD83D, 0xDE00};
  EXPECT_EQ(WideToUtf8(std::u16string_view(twoHighs, 3)), r + "\xF0\x9F\x98\x80");
}

}  // namespace
