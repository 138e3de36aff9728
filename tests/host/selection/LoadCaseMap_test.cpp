#include "selection/LoadCaseMap.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::ParseLoadCaseMap;

std::string MessageOf(const char* text)
{
  try {
    ParseLoadCaseMap(text);
  } catch (const FED_Failure& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(LoadCaseMap, ReadsPairs)
{
  EXPECT_EQ(ParseLoadCaseMap("4:2,5:3"), (std::map<int, int>{{4, 2}, {5, 3}}));
  EXPECT_EQ(ParseLoadCaseMap("-1:7"), (std::map<int, int>{{-1, 7}}));
  EXPECT_TRUE(ParseLoadCaseMap("").empty());
}

TEST(LoadCaseMap, RejectsWhatIsNoPair)
{
  for (const char* entry : {"4", "4:", ":2", "4:x", "4:2:3", "4 :2"})
    EXPECT_EQ(MessageOf(entry),
              std::string("the load case map has '") + entry + "', expected OLD:NEW with two integers");
  EXPECT_EQ(MessageOf("4:2,"), "the load case map has '', expected OLD:NEW with two integers");
}

TEST(LoadCaseMap, RejectsTwoTargetsOfOneLoadCase)
{
  EXPECT_EQ(MessageOf("4:2,4:3"), "the load case map sends load case 4 to two others, expected one");
}

}  // namespace
