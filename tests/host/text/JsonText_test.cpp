#include "text/JsonText.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using quilon::Json;
using quilon::JsonNumber;
using quilon::JsonText;

TEST(JsonText, ValuesAreWrittenAsJsonHasThem)
{
  EXPECT_EQ(JsonText(Json()), "null");
  EXPECT_EQ(JsonText(Json(true)), "true");
  EXPECT_EQ(JsonText(Json(-7)), "-7");
  EXPECT_EQ(JsonText(Json(std::numeric_limits<std::uint64_t>::max())), "18446744073709551615");
  EXPECT_EQ(JsonText(Json(std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
  EXPECT_EQ(JsonText(Json(0.1)), "0.1");
  EXPECT_EQ(JsonText(Json("a\"b\n")), "\"a\\\"b\\n\"");
  EXPECT_EQ(JsonText(Json(std::vector<int>{1, 2})), "[1,2]");
}

TEST(JsonText, AFloatHasItsOwnDigits) { EXPECT_EQ(JsonText(Json(0.1F)), "0.1"); }

TEST(JsonText, WhatIsNoNumberIsAText)
{
  EXPECT_EQ(JsonText(JsonNumber(std::nan(""))), "\"nan\"");
  EXPECT_EQ(JsonText(JsonNumber(-std::numeric_limits<double>::infinity())), "\"-inf\"");
  EXPECT_EQ(JsonText(JsonNumber(std::numeric_limits<float>::infinity())), "\"inf\"");
}

TEST(JsonText, PairsThatBeginWithATextMakeAnObjectOtherListsAnArray)
{
  EXPECT_EQ(JsonText(Json{{"z", 1}, {"a", {{"b", 2}}}}), R"({"z":1,"a":{"b":2}})");
  EXPECT_EQ(JsonText(Json{1, "two", 3.5}), R"([1,"two",3.5])");
}

TEST(JsonText, KeysKeepTheirOrderAndANullGrows)
{
  Json json;
  json["z"] = 1;
  json["a"].push_back(2);
  json["z"] = 3;
  EXPECT_EQ(JsonText(json), R"({"z":3,"a":[2]})");
  EXPECT_EQ(JsonText(json, 2), "{\n  \"z\": 3,\n  \"a\": [\n    2\n  ]\n}");
  EXPECT_EQ(JsonText(Json::array()), "[]");
  EXPECT_EQ(JsonText(Json::object()), "{}");
}

TEST(JsonText, BytesThatAreNoUtf8BecomeAReplacement) { EXPECT_EQ(JsonText(Json("a\xff")), "\"a\xef\xbf\xbd\""); }

}  // namespace
