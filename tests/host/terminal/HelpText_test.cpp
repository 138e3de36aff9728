#include "terminal/HelpText.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using quilon::FitHelp;

TEST(HelpText, LeavesWhatFits)
{
  const std::string text =
      "Does it\nUsage: it\n\nOptions:\n  -h,--help    Help\n               and more\n\nTwo\nlines.\n";
  EXPECT_EQ(FitHelp(text, 40), text);
}

TEST(HelpText, WrapsAParagraphWithALineThatIsTooLong)
{
  EXPECT_EQ(FitHelp("one two three\nfour\n\nfive\n", 9), "one two\nthree\nfour\n\nfive\n");
}

TEST(HelpText, WrapsTheMeaningOfAnEntryBelowItself)
{
  EXPECT_EQ(FitHelp("  --abs T    the largest\n             absolute one of all\n", 26),
            "  --abs T    the largest\n             absolute one\n             of all\n");
}

TEST(HelpText, LeavesALongNameOnItsLine)
{
  EXPECT_EQ(FitHelp("  --average-by material|section\n            one more average\n", 24),
            "  --average-by material|section\n            one more\n            average\n");
}

TEST(HelpText, GoesOnWithACommandLineBehindABackslash)
{
  EXPECT_EQ(FitHelp("  quilon ls bracket.fed --json\n", 24), "  quilon ls \\\n      bracket.fed --json\n");
}

TEST(HelpText, KeepsAnOptionAndItsValueTogether)
{
  EXPECT_EQ(FitHelp("  quilon export a.fed -o out.vtu\n", 26), "  quilon export a.fed \\\n      -o out.vtu\n");
  EXPECT_EQ(FitHelp("  quilon diff a.fed --all --json\n", 26), "  quilon diff a.fed \\\n      --all --json\n");
}

TEST(HelpText, FindsTheMeaningBehindAnOptionThatReachesUpToIt)
{
  EXPECT_EQ(FitHelp("  --match id|index:{id,index} By id or index\n", 38),
            "  --match id|index:{id,index} By id or\n                              index\n");
}

TEST(HelpText, BeginsAParagraphAtAnOptionAndAtTheUsage)
{
  EXPECT_EQ(FitHelp("Compare\nUsage: quilon diff this that\n--one is long\n--two\n", 12),
            "Compare\nUsage:\nquilon diff\nthis that\n--one is\nlong\n--two\n");
}

TEST(HelpText, LetsAWordThatIsTooLongStickOut) { EXPECT_EQ(FitHelp("a verylongword b\n", 6), "a\nverylongword\nb\n"); }

TEST(HelpText, OfNothingIsNothing) { EXPECT_EQ(FitHelp(""), ""); }

TEST(HelpText, TakesALastLineWithoutAnEnd) { EXPECT_EQ(FitHelp("one two", 4), "one\ntwo\n"); }

}  // namespace
