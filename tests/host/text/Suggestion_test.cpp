#include "text/Suggestion.h"

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::DidYouMean;
using quilon::EditDistance;
using quilon::FindName;

TEST(Suggestion, DistanceCountsEdits)
{
  struct Row
  {
    const char* a;
    const char* b;
    std::size_t expected;
  };
  const Row rows[] = {
      {"", "", 0},
      {"", "abc", 3},
      {"abc", "", 3},
      {"abc", "abc", 0},
      {"abc", "abd", 1},
      {"abc", "acb", 1},
      {"abc", "abcd", 1},
      {"abcd", "bcd", 1},
      {"kitten", "sitting", 3},
      {"ca", "abc", 3},
      {"strss", "stress", 1},
      {"sl", "ls", 1},
      {"saturday", "sunday", 3},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(EditDistance(row.a, row.b), row.expected) << row.a << " / " << row.b;
    EXPECT_EQ(EditDistance(row.b, row.a), row.expected) << row.b << " / " << row.a;
  }
}

TEST(Suggestion, NamesTheNearestCandidate)
{
  EXPECT_EQ(DidYouMean("strss", {"strain", "stress"}), ", did you mean 'stress'?");
}

TEST(Suggestion, NamesTheFirstOfEquallyNearCandidates)
{
  EXPECT_EQ(DidYouMean("xab", {"aab", "bab"}), ", did you mean 'aab'?");
}

TEST(Suggestion, IsSilentWhenNothingIsNear)
{
  EXPECT_EQ(DidYouMean("banana", {"stress", "strain"}), "");
  EXPECT_EQ(DidYouMean("stress", {}), "");
}

TEST(Suggestion, AllowsOneWrongLetterInAShortWord)
{
  EXPECT_EQ(DidYouMean("sl", {"ls"}), ", did you mean 'ls'?");
  EXPECT_EQ(DidYouMean("x", {"an"}), "");
}

TEST(Suggestion, FindsANameInAnyCase)
{
  const std::vector<std::string> known = {"red", "yellow"};
  EXPECT_EQ(FindName("red", known, "is no colour", "red or yellow"), 0u);
  EXPECT_EQ(FindName("YelloW", known, "is no colour", "red or yellow"), 1u);
  const auto failureOf = [&](const std::string& name) {
    try {
      FindName(name, known, "is no colour", "red or yellow");
    } catch (const FED_Failure& failure) {
      return std::string(failure.what());
    }
    return std::string("none");
  };
  EXPECT_EQ(failureOf("Yelow"), "'Yelow' is no colour, did you mean 'yellow'?");
  EXPECT_EQ(failureOf("blue"), "'blue' is no colour, expected red or yellow");
  EXPECT_EQ(failureOf(""), "'' is no colour, expected red or yellow");
}

TEST(Suggestion, NeverReplacesAllLettersOfACandidate) { EXPECT_EQ(DidYouMean("x", {"y"}), ""); }

}  // namespace
