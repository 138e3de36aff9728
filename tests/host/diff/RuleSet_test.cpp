#include "diff/RuleSet.h"

#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "kinds/KindTable.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace {

using namespace quilon::diff;

RuleSet Read(const std::string& text)
{
  const quilon::KindTable kinds;
  RuleSet                 rules;
  rules.AddText(
      text, [&](std::string_view kind) { return kinds.Resolve(kind); }, "my.rules");
  return rules;
}

std::string RuleOf(const std::string& text, int kind) { return Read(text).Find(kind).ToString(); }

std::string MessageOf(const std::string& text)
{
  try {
    Read(text);
  } catch (const FED_Failure& failure) {
    return failure.GetMessage();
  }
  return "";
}

TEST(RuleSet, KindsWithoutARuleGoByTheFallback)
{
  EXPECT_EQ(RuleOf("", 521), "default");
  EXPECT_EQ(RuleOf("*: abs=1", 521), "abs=1");
  EXPECT_EQ(RuleOf("*: abs=1\nstress: rel=2", 510), "abs=1");
}

TEST(RuleSet, ARuleStandsForEachOfItsKinds)
{
  const std::string text = "stress, 531 ,disp: peak=0.5 any";
  for (const int kind : {521, 531, 510}) EXPECT_EQ(RuleOf(text, kind), "peak=0.5 any");
  EXPECT_EQ(RuleOf(text, 511), "default");
}

TEST(RuleSet, QuantitiesHaveRulesOfTheirOwn)
{
  EXPECT_EQ(RuleOf("eigenvalue: rel=1", 502), "rel=1");
  EXPECT_EQ(RuleOf("eigenvalue: rel=1", 501), "default");
}

TEST(RuleSet, TheLastRuleOfAKindStands)
{
  EXPECT_EQ(RuleOf("stress: abs=1\nstress: rel=2", 521), "rel=2");
  EXPECT_EQ(RuleOf("*: abs=1\n*: rel=2", 521), "rel=2");
}

TEST(RuleSet, NaNsAndSignsComeFromTheFallbackWhereARuleSaysNothing)
{
  EXPECT_EQ(RuleOf("*: abs=1 nan=forbid mode-sign\nstress: rel=2", 521), "rel=2 nan=forbid mode-sign");
  EXPECT_EQ(RuleOf("*: abs=1 nan=forbid\nstress: rel=2 nan=equal", 521), "rel=2 nan=equal");
}

TEST(RuleSet, TermsWithoutAKindAreForAllKinds)
{
  EXPECT_EQ(RuleOf("library", 521), "library");
  EXPECT_EQ(RuleOf("peak=1 any\nstress: exact", 510), "peak=1 any");
  EXPECT_EQ(MessageOf("peak=x"), "my.rules:1: the rule 'peak=x' has 'peak=x', expected a finite number, 0 or more");
}

TEST(RuleSet, EmptyLinesAndCommentsSayNothing)
{
  EXPECT_EQ(RuleOf("# rules\n\n  \t\r\nstress: abs=1 # of the mesh\r\n#stress: abs=2", 521), "abs=1");
}

TEST(RuleSet, FailuresNameFileAndLine)
{
  EXPECT_EQ(MessageOf("\nstress abs=1"),
            "my.rules:2: 'stress abs=1' is no rule, expected KIND: TERMS such as 'stress: peak=1e-6'");
  EXPECT_EQ(MessageOf("strss: abs=1"), "my.rules:1: unknown kind 'strss', did you mean 'stress'?");
  EXPECT_EQ(MessageOf("stress,: abs=1"), "my.rules:1: a kind is empty, expected an ONF id or the name of a kind");
  EXPECT_EQ(MessageOf(": abs=1"), "my.rules:1: a kind is empty, expected an ONF id or the name of a kind");
  EXPECT_EQ(MessageOf("#\n#\nstress: abs=x"),
            "my.rules:3: the rule 'abs=x' has 'abs=x', expected a finite number, 0 or more");
  EXPECT_EQ(MessageOf("stress:"), "my.rules:1: the rule '' is empty, expected terms such as abs=1e-6");
}

TEST(RuleSet, AFileThatIsNotThereIsAFailure)
{
  RuleSet rules;
  try {
    ReadRuleFile(
        "/quilon-nowhere/rules", [](std::string_view) { return 0; }, rules);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.GetMessage(),
              "/quilon-nowhere/rules: cannot be read, expected a file of rules: No such file or directory");
  }
}

TEST(RuleSet, AFolderIsNoFileOfRules)
{
  const quilon_test::TempFolder folder;
  RuleSet                       rules;
  try {
    ReadRuleFile(
        folder / "", [](std::string_view) { return 0; }, rules);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.GetMessage(),
              (folder / "").string() + ": cannot be read, expected a file of rules: Is a directory");
  }
}

TEST(RuleSet, AByteOrderMarkSaysNothing)
{
  EXPECT_EQ(RuleOf("\xef\xbb\xbf"
                   "stress: abs=1\r\n",
                   521),
            "abs=1");
}

TEST(RuleSet, AFileIsReadWhole)
{
  const quilon_test::TempFolder folder;
  std::ofstream(folder / "rules") << "stress: abs=1\nstrain: rel=2";
  const quilon::KindTable kinds;
  RuleSet                 rules;
  ReadRuleFile(
      folder / "rules", [&](std::string_view kind) { return kinds.Resolve(kind); }, rules);
  EXPECT_EQ(rules.Find(521).ToString(), "abs=1");
  EXPECT_EQ(rules.Find(531).ToString(), "rel=2");
}

}  // namespace
