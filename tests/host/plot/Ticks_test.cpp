#include "plot/Ticks.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using quilon::MakeLogarithmicTicks;
using quilon::MakeTicks;
using quilon::PrintedNumber;
using quilon::Ticks;

std::string Labels(const Ticks& ticks)
{
  std::string text;
  for (const quilon::Tick& tick : ticks.ticks) text += (text.empty() ? "" : " ") + tick.label;
  return text + (ticks.exponent == 0 ? "" : " e" + std::to_string(ticks.exponent));
}

TEST(Ticks, AreRoundAndAtMostAsManyAsAskedFor)
{
  struct Row
  {
    double      least, greatest;
    int         count;
    const char* labels;
  };
  const Row rows[] = {
      {0, 10, 6, "0 2 4 6 8 10"},
      {0, 10, 5, "0.0 2.5 5.0 7.5 10.0"},
      {0, 10, 3, "0 5 10"},
      {0.3, 9.7, 6, "2 4 6 8"},
      {-1, 1, 5, "\u22121.0 \u22120.5 0.0 0.5 1.0"},
      {0, 0.012, 7, "0.000 0.002 0.004 0.006 0.008 0.010 0.012"},
      {0, 0.0085, 4, "0.0 2.5 5.0 7.5 e-3"},
      {-4.4577, 7.749, 7, "\u22124 \u22122 0 2 4 6"},
      {0, 210000, 5, "0 50 100 150 200 e3"},
      {1e9, 3e9, 5, "1.0 1.5 2.0 2.5 3.0 e9"},
      {0, 1e-310, 3, "0 50 100 e-312"},
      {1000, 1001, 3, "1000.0 1000.5 1001.0"},
      {0, 50000, 6, "0 10000 20000 30000 40000 50000"},
  };
  for (const Row& row : rows) {
    const Ticks ticks = MakeTicks(row.least, row.greatest, row.count);
    EXPECT_EQ(Labels(ticks), row.labels) << row.least << ' ' << row.greatest << ' ' << row.count;
    EXPECT_LE(ticks.ticks.size(), static_cast<std::size_t>(row.count));
  }
}

TEST(Ticks, OneValueHasOneTick)
{
  EXPECT_EQ(Labels(MakeTicks(0, 0, 5)), "0");
  EXPECT_EQ(Labels(MakeTicks(-3.5, -3.5, 5)), "\u22123.5");
  EXPECT_EQ(Labels(MakeTicks(2.5e-7, 2.5e-7, 5)), "250 e-9");
}

TEST(Ticks, TheFactorIsAPowerOfAThousand)
{
  EXPECT_EQ(MakeTicks(0, 0.0085, 5).GetFactor(), "\u00D7\u200910\u207B\u00B3");
  EXPECT_EQ(MakeTicks(0, 4e12, 5).GetFactor(), "\u00D7\u200910\u00B9\u00B2");
  EXPECT_EQ(MakeTicks(0, 10, 5).GetFactor(), "");
}

TEST(Ticks, LogarithmicOnesAreDecades)
{
  EXPECT_EQ(Labels(MakeLogarithmicTicks(0.5, 2000, 6)), "10\u2070 10\u00B9 10\u00B2 10\u00B3");
  EXPECT_EQ(Labels(MakeLogarithmicTicks(1e-8, 1, 5)),
            "10\u207B\u2078 10\u207B\u2076 10\u207B\u2074 10\u207B\u00B2 10\u2070");
  EXPECT_EQ(Labels(MakeLogarithmicTicks(2, 5, 4)), "2") << "no decade within";
}

TEST(Ticks, NumbersForPeople)
{
  EXPECT_EQ(PrintedNumber(-4.45771), "\u22124.458");
  EXPECT_EQ(PrintedNumber(0.0), "0");
  EXPECT_EQ(PrintedNumber(1.234e-7), "1.234\u2009\u00D7\u200910\u207B\u2077");
  EXPECT_EQ(PrintedNumber(123456, 3), "1.23\u2009\u00D7\u200910\u2075");
}

}  // namespace
