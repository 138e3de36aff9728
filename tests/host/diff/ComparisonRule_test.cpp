#include "diff/ComparisonRule.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using namespace quilon::diff;

constexpr double kInf      = std::numeric_limits<double>::infinity();
constexpr double kDenormal = std::numeric_limits<double>::denorm_min();
constexpr double kMost     = std::numeric_limits<double>::max();

bool Accepts(const std::string& rule, double a, double b, double peak = 0.0, bool isSingle = false)
{
  const ComparisonRule                   parsed = ParseRule(rule, "");
  const QuilonDataBlockDiff::CompareInfo info;
  const ValueJudge                       judge(parsed, info, peak);
  EXPECT_EQ(judge.Accepts(a, b, isSingle), judge.Accepts(b, a, isSingle)) << rule << ' ' << a << ' ' << b;
  return judge.Accepts(a, b, isSingle);
}

std::string MessageOf(const std::string& rule)
{
  try {
    ParseRule(rule, "rules:7: ");
  } catch (const FED_Failure& failure) {
    return failure.GetMessage();
  }
  return "";
}

}  // namespace

// Powers of two: every difference and product is exact, so that each edge is met to the bit.
TEST(ValueJudge, BothSidesOfEveryTolerance)
{
  struct Row
  {
    const char* rule;
    double      a;
    double      b;
    double      peak;
    bool        expected;
  };
  const Row rows[] = {
      {"abs=0.25", 1.0, 1.25, 0, true},
      {"abs=0.25", 1.0, 1.25 + 0x1p-52, 0, false},
      {"abs=0.25", -1.0, -1.25, 0, true},
      {"abs=0.25", -0.125, 0.125, 0, true},
      {"abs=0", 1.0, 1.0, 0, true},
      {"abs=0", 0.0, -0.0, 0, true},
      {"abs=0", 1.0, 1.0 + 0x1p-52, 0, false},
      {"rel=0.25", 1.0, 0.75, 0, true},
      {"rel=0.25", 1.0, 0.75 - 0x1p-53, 0, false},
      {"rel=0.25", -1.0, -0.75, 0, true},
      {"rel=0.25", 0.0, kDenormal, 0, false},
      {"rel=1", 0.0, 5.0, 0, true},
      {"rel=1", -1.0, 1.0, 0, false},
      {"rel=2", -1.0, 1.0, 0, true},
      {"peak=0.25", 0.0, 2.0, 8.0, true},
      {"peak=0.25", 0.0, 2.0 + 0x1p-51, 8.0, false},
      {"peak=0.25", 0.0, kDenormal, 0.0, false},
      {"peak=0.25", 0.0, 0.0, 0.0, true},
      {"ulps=1", 1.0, 1.0 + 0x1p-52, 0, true},
      {"ulps=1", 1.0, 1.0 + 0x1p-51, 0, false},
      {"ulps=2", -kDenormal, kDenormal, 0, true},
      {"ulps=1", -kDenormal, kDenormal, 0, false},
      {"ulps=0", 0.0, -0.0, 0, true},
      // Infinities are equal to themselves alone, however wide the tolerance.
      {"abs=1e300", kInf, kInf, 0, true},
      {"abs=1e300", -kInf, kInf, 0, false},
      {"ulps=18446744073709551615", kInf, kMost, 0, false},
      {"rel=1e300", kInf, 1.0, 0, false},
      {"peak=1e300", kInf, 1.0, 1.0, false},
      // The difference of the largest numbers of both signs is twice as large, and no number.
      {"abs=1.7976931348623157e308", kMost, -kMost, 0, false},
      {"rel=2", kMost, -kMost, 0, true},
      {"rel=1.5", kMost, -kMost, 0, false},
      {"peak=2", kMost, -kMost, kMost, true},
      {"peak=1.5", kMost, -kMost, kMost, false},
      {"abs=0 rel=2 any", kMost, -kMost, 0, true},
      // Several terms.
      {"abs=0.25 rel=0.25", 1.0, 1.25, 0, true},
      {"abs=0.25 rel=0.125", 1.0, 1.25, 0, false},
      {"abs=0.25 rel=0.125 all", 1.0, 1.25, 0, false},
      {"abs=0.25 rel=0.125 any", 1.0, 1.25, 0, true},
      {"abs=0.125 rel=0.25 any", 1.0, 1.25, 0, true},
      {"abs=0.125 rel=0.125 any", 1.0, 1.25, 0, false},
      {"peak=0.5 ulps=0 any", 1.0, 1.25, 1.0, true},
      {"peak=0.5 ulps=0", 1.0, 1.25, 1.0, false},
      // The others.
      {"exact", 1.0, 1.0, 0, true},
      {"exact", 1.0, 1.0 + 0x1p-52, 0, false},
      {"exact", 0.0, -0.0, 0, true},
      // Two units of the sixth digit of the peak.
      {"default", 0.0, 2e-5, 1.0, true},
      {"default", -1e-5, 1.1e-5, 1.0, false},
      {"default", 4.0, 4.0 + 0x1p-40, 0, false},
      {"library", 1.0, 1.0000005, 0, true},
      {"library", 1.0, 1.000002, 0, false},
      {"library", -1e-8, -1e-7, 0, true},
      {"library", 1e-8, 1e-7, 0, false},
      {"ignore", 1.0, 2.0, 0, true},
  };
  for (const Row& row : rows)
    EXPECT_EQ(Accepts(row.rule, row.a, row.b, row.peak), row.expected) << row.rule << ": " << row.a << ' ' << row.b;
}

TEST(ValueJudge, FieldsOfFloatsCountTheirOwnUlps)
{
  const auto next = static_cast<double>(std::nextafter(1.0f, 2.0f));
  EXPECT_TRUE(Accepts("ulps=1", 1.0, next, 0, true));
  EXPECT_FALSE(Accepts("ulps=1", 1.0, next, 0, false));
}

TEST(UlpDistance, CountsThroughZeroAndOverTheWholeRange)
{
  EXPECT_EQ(UlpDistance(0.0, -0.0), 0u);
  EXPECT_EQ(UlpDistance(0.0, kDenormal), 1u);
  EXPECT_EQ(UlpDistance(-kDenormal, kDenormal), 2u);
  EXPECT_EQ(UlpDistance(1.0, 2.0), std::uint64_t{1} << 52);
  EXPECT_EQ(UlpDistance(2.0, 1.0), std::uint64_t{1} << 52);
  // Each infinity has the bit pattern 0x7ff0000000000000 = 2047 * 2^52 in its half: more than 63 bits together.
  EXPECT_EQ(UlpDistance(-kInf, kInf), std::uint64_t{2047} << 53);
  EXPECT_EQ(UlpDistance(kMost, kInf), 1u);
  EXPECT_EQ(UlpDistance(1.0f, 2.0f), std::uint64_t{1} << 23);
  EXPECT_EQ(UlpDistance(-0.0f, 0.0f), 0u);
  EXPECT_EQ(UlpDistance(-std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity()),
            std::uint64_t{255} << 24);
}

TEST(ValueJudge, TellsHowManyTimesWhatIsAllowed)
{
  const QuilonDataBlockDiff::CompareInfo info;
  const auto                             excess = [&](const std::string& text, double a, double b, double peak) {
    const ComparisonRule rule = ParseRule(text, "");
    return ValueJudge(rule, info, peak).GetExcess(a, b, false);
  };
  EXPECT_EQ(excess("abs=0.25", 1.0, 2.0, 0), 4.0);
  EXPECT_EQ(excess("abs=0", 1.0, 2.0, 0), kInf);
  EXPECT_EQ(excess("rel=0.25", 1.0, 2.0, 0), 2.0);
  EXPECT_EQ(excess("peak=0.25", 1.0, 2.0, 8.0), 0.5);
  EXPECT_EQ(excess("ulps=2", 1.0, 1.0 + 0x1p-50, 0), 2.0);
  EXPECT_EQ(excess("abs=0.25 rel=0.25", 1.0, 2.0, 0), 4.0);
  EXPECT_EQ(excess("abs=0.25 rel=0.25 any", 1.0, 2.0, 0), 2.0);
  EXPECT_EQ(excess("rel=1 peak=1", kMost, -kMost, kMost), 2.0);
  EXPECT_EQ(excess("abs=0.25", 1.0, kInf, 0), kInf);
  EXPECT_EQ(excess("rel=0.25", 1.0, kInf, 0), kInf);
  EXPECT_EQ(excess("rel=0.25", kInf, 1.0, 0), kInf);
  EXPECT_EQ(excess("exact", 1.0, 2.0, 0), kInf);
  EXPECT_DOUBLE_EQ(excess("default", 1.0, 3.0, 4.0), 2.5e4);
  EXPECT_DOUBLE_EQ(excess("library", 1.0, 3.0, 0), 2e6);
  EXPECT_DOUBLE_EQ(excess("library", 0.5, 1.0, 0), 1e6);
  EXPECT_DOUBLE_EQ(excess("library", -0.5, -1.0, 0), 5e5);
}

TEST(ValueJudge, NamesTheTermsThatFail)
{
  const QuilonDataBlockDiff::CompareInfo info;
  const auto                             explain = [&](const std::string& text, double a, double b, double peak) {
    const ComparisonRule rule = ParseRule(text, "");
    return ValueJudge(rule, info, peak).Explain(a, b, false);
  };
  EXPECT_EQ(explain("abs=0.25", 1.0, 2.0, 0), "abs 1 > 0.25");
  EXPECT_EQ(explain("rel=0.25", 1.0, 2.0, 0), "rel 0.5 > 0.25");
  EXPECT_EQ(explain("peak=0.25", 1.0, 3.0, 4.0), "peak 0.5 > 0.25");
  EXPECT_EQ(explain("ulps=2", 1.0, 1.0 + 0x1p-50, 0), "ulps 4 > 2");
  EXPECT_EQ(explain("abs=0.25 rel=0.75", 1.0, 2.0, 0), "abs 1 > 0.25");
  EXPECT_EQ(explain("abs=0.25 rel=0.25 any", 1.0, 2.0, 0), "abs 1 > 0.25, rel 0.5 > 0.25");
  EXPECT_EQ(explain("default", 1.0, 3.0, 4.0), "peak 0.5 > 2e-05");
  EXPECT_EQ(explain("library", 1.0, 3.0, 0), "library abs 2 > 1e-06");
  EXPECT_EQ(explain("library", 1e-8, 2e-8, 0), "library rel 1 > 1e-06");
  EXPECT_EQ(explain("rel=1.5", kMost, -kMost, 0), "rel 2 > 1.5");
  EXPECT_EQ(explain("exact", 1.0, 3.0, 0), "exact");
  EXPECT_EQ(explain("abs=1", 1.0, kInf, 0), "infinite");
}

TEST(ParseRule, WritesBackWhatItReads)
{
  for (const char* text :
       {"default", "library", "exact", "ignore", "abs=1e-06", "rel=0.5 any", "abs=1 rel=2 peak=3 ulps=4",
        "default nan=equal", "exact nan=different", "abs=0 nan=forbid mode-sign", "ulps=18446744073709551615"})
    EXPECT_EQ(ParseRule(text, "").ToString(), text);
}

TEST(ParseRule, TakesCommasAndBlanksBetweenTerms)
{
  EXPECT_EQ(ParseRule(" ,abs=1,, rel=2\tany ", "").ToString(), "abs=1 rel=2 any");
  EXPECT_EQ(ParseRule("all abs=1", "").ToString(), "abs=1");
}

TEST(ParseRule, WithoutAFormTheDefaultStands)
{
  EXPECT_EQ(ParseRule("nan=equal", "").ToString(), "default nan=equal");
  EXPECT_EQ(ParseRule("mode-sign", "").ToString(), "default mode-sign");
}

TEST(ParseRule, NaNsGoByTheFormWhereNothingIsSaid)
{
  EXPECT_EQ(ParseRule("default", "").GetNanPolicy(), NanPolicy::Equal);
  EXPECT_EQ(ParseRule("library", "").GetNanPolicy(), NanPolicy::Passes);
  EXPECT_EQ(ParseRule("exact", "").GetNanPolicy(), NanPolicy::Equal);
  EXPECT_EQ(ParseRule("abs=1", "").GetNanPolicy(), NanPolicy::Equal);
  EXPECT_EQ(ParseRule("abs=1 nan=different", "").GetNanPolicy(), NanPolicy::Different);
}

TEST(ParseRule, RefusesWhatIsNoRule)
{
  const std::string exclude =
      "has terms that exclude each other, expected tolerances or one of exact, default, library and ignore";
  struct Row
  {
    const char* text;
    std::string message;
  };
  const Row rows[] = {
      {"", "is empty, expected terms such as abs=1e-6"},
      {" , ", "is empty, expected terms such as abs=1e-6"},
      {"abs", "has 'abs', expected a finite number, 0 or more"},
      {"abs=", "has 'abs=', expected a finite number, 0 or more"},
      {"abs=-1", "has 'abs=-1', expected a finite number, 0 or more"},
      {"abs=-0", "has 'abs=-0', expected a finite number, 0 or more"},
      {"rel=nan", "has 'rel=nan', expected a finite number, 0 or more"},
      {"peak=inf", "has 'peak=inf', expected a finite number, 0 or more"},
      {"abs=1e999", "has 'abs=1e999', expected a finite number, 0 or more"},
      {"abs=1x", "has 'abs=1x', expected a finite number, 0 or more"},
      {"abs=1 abs=2", "has 'abs' twice"},
      {"ulps=1.5", "has 'ulps=1.5', expected a count of 64 bits"},
      {"ulps=-1", "has 'ulps=-1', expected a count of 64 bits"},
      {"ulps=18446744073709551616", "has 'ulps=18446744073709551616', expected a count of 64 bits"},
      {"ulps=1 ulps=1", "has 'ulps' twice"},
      {"nan=maybe", "has 'nan=maybe', expected nan=equal, nan=different or nan=forbid"},
      {"nan=equal nan=equal", "has 'nan' twice"},
      {"any", "has 'any' or 'all' without tolerances"},
      {"exact all", "has 'any' or 'all' without tolerances"},
      {"abs=1 any all", "has 'any' or 'all' twice"},
      {"exact abs=1", exclude},
      {"abs=1 default", exclude},
      {"exact exact", exclude},
      {"ignore default", exclude},
      {"near=1",
       "has 'near=1', expected abs=, rel=, peak=, ulps=, any, all, exact, default, library, ignore, nan= or mode-sign"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(MessageOf(row.text), "rules:7: the rule '" + std::string(row.text) + "' " + row.message);
}
