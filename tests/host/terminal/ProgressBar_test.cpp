#include "terminal/ProgressBar.h"

#include <gtest/gtest.h>

namespace {

using quilon::ProgressBar;

/// A bar over a clock that the test sets.
struct Bench
{
  double      now = 100.0;
  ProgressBar bar{[this] { return now; }};
};

TEST(ProgressBar, ShowsNothingInTheFirstSecond)
{
  Bench bench;
  EXPECT_EQ(bench.bar.Update("reading", 0, 100), "");
  bench.now += 0.9;
  EXPECT_EQ(bench.bar.Update("reading", 90, 100), "");
}

TEST(ProgressBar, ShowsPartRateAndRemainingTime)
{
  Bench bench;
  bench.bar.Update("reading job.dat", 0, 10000000);
  bench.now += 2.0;
  // 4 million bytes in 2 seconds; 6 million are left.
  EXPECT_EQ(bench.bar.Update("reading job.dat", 4000000, 10000000),
            "reading job.dat [########            ]  40 % 2 MB/s 0:03 left");
}

TEST(ProgressBar, DrawsAtMostTenTimesASecond)
{
  Bench bench;
  bench.bar.Update("reading", 0, 100);
  bench.now += 2.0;
  EXPECT_NE(bench.bar.Update("reading", 10, 100), "");
  bench.now += 0.05;
  EXPECT_EQ(bench.bar.Update("reading", 11, 100), "");
  bench.now += 0.06;
  EXPECT_NE(bench.bar.Update("reading", 12, 100), "");
}

TEST(ProgressBar, NewPhaseHasItsOwnRate)
{
  Bench bench;
  bench.bar.Update("reading", 0, 100);
  bench.now += 10.0;
  bench.bar.Update("reading", 100, 100);
  bench.bar.Update("saving", 0, 100);
  bench.now += 1.0;
  EXPECT_EQ(bench.bar.Update("saving", 50, 100), "saving [##########          ]  50 % 50 B/s 0:01 left");
}

TEST(ProgressBar, UnknownTotalShowsTheRateAlone)
{
  Bench bench;
  bench.bar.Update("deriving", 0, 0);
  bench.now += 2.0;
  EXPECT_EQ(bench.bar.Update("deriving", 3000, 0), "deriving 1.5 kB/s");
}

TEST(ProgressBar, RateOfOtherThingsThanBytesNamesThem)
{
  Bench bench;
  bench.bar.Update("comparing", 0, 8, "blocks");
  bench.now += 2.0;
  EXPECT_EQ(bench.bar.Update("comparing", 3, 8, "blocks"),
            "comparing [#######             ]  37 % 1.5 blocks/s 0:03 left");
  bench.now += 2.0;
  EXPECT_EQ(bench.bar.Update("comparing", 48000, 0, "blocks"), "comparing 12000 blocks/s");
}

TEST(ProgressBar, LongRemainingTimeHasHours)
{
  Bench bench;
  bench.bar.Update("reading", 0, 3724);
  bench.now += 1.0;
  EXPECT_EQ(bench.bar.Update("reading", 1, 3724), "reading [                    ]   0 % 1 B/s 1:02:03 left");
}

TEST(ProgressBar, NothingDoneYetHasNoRate)
{
  Bench bench;
  bench.bar.Update("reading", 0, 10);
  bench.now += 5.0;
  EXPECT_EQ(bench.bar.Update("reading", 0, 10), "reading [                    ]   0 %");
}

TEST(ProgressBar, MoreDoneThanThereIsStaysFull)
{
  Bench bench;
  bench.bar.Update("reading", 0, 10);
  bench.now += 2.0;
  EXPECT_EQ(bench.bar.Update("reading", 20, 10), "reading [####################] 100 % 10 B/s");
}

}  // namespace
