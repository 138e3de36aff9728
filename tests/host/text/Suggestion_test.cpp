#include "text/Suggestion.h"

#include <gtest/gtest.h>

namespace {

using quilon::DidYouMean;
using quilon::EditDistance;

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

TEST(Suggestion, NeverReplacesAllLettersOfACandidate) { EXPECT_EQ(DidYouMean("x", {"y"}), ""); }

}  // namespace
