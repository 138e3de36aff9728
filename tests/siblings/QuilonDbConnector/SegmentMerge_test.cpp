#include "SegmentMerge.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/StoreFile.h"
#include "Statistics.h"
#include "store_support.h"

namespace {

// What a policy costs: segments are sizes, a merge writes the sum of its window.
struct Simulation
{
  std::vector<SegmentSize> segments;
  std::uint64_t            written = 0;
  std::uint64_t            moved   = 0;
  std::size_t              most    = 0;
  std::uint64_t            worst   = 0;  // bytes of one merge

  void Commit(std::uint64_t bytes)
  {
    segments.push_back({bytes, 0});
    written += bytes;
    if (const auto window = ChooseMerge(segments)) {
      const auto          begin = segments.begin() + static_cast<std::ptrdiff_t>(window->first);
      const auto          end   = begin + static_cast<std::ptrdiff_t>(window->count);
      const std::uint64_t sum   = std::accumulate(
            begin, end, std::uint64_t{0}, [](std::uint64_t total, const auto& size) { return total + size.fileBytes; });
      moved += sum;
      worst            = std::max(worst, sum);
      begin->fileBytes = sum;
      segments.erase(begin + 1, end);
    }
    most = std::max(most, segments.size());
  }
};

// Extents of one chunk, by their rows alone.
class FakeExtents
{
public:
  void Add(std::uint32_t begin, std::uint32_t end)
  {
    SegmentIndex index;
    IndexExtent  extent;
    extent.firstRow = begin;
    extent.rowCount = end - begin;
    index.extents.push_back(extent);
    segments_.push_back(std::make_unique<Segment>(StoreFile(), SegmentEntry(), std::move(index)));
    list.push_back({segments_.back().get(), 0});
  }

  ExtentList list;

private:
  std::vector<std::unique_ptr<Segment>> segments_;
};

}  // namespace

TEST(ChooseMerge, FewSegmentsStayAsTheyAre)
{
  EXPECT_FALSE(ChooseMerge({}));
  EXPECT_FALSE(ChooseMerge({{1000, 0}}));
  EXPECT_FALSE(ChooseMerge(std::vector<SegmentSize>(7, {1000, 0})));
}

TEST(ChooseMerge, EightSmallNeighboursMerge)
{
  std::vector<SegmentSize> segments(8, {1000, 0});
  segments.insert(segments.begin(), {std::uint64_t{1} << 20, 0});
  const auto window = ChooseMerge(segments);
  ASSERT_TRUE(window);
  EXPECT_EQ(window->first, 1u);
  EXPECT_EQ(window->count, 8u);
}

TEST(ChooseMerge, LargeSegmentDoesNotMoveForAFewSmallOnes)
{
  std::vector<SegmentSize> segments(31, {std::uint64_t{1} << 26, 0});
  segments.insert(segments.begin(), {std::uint64_t{1} << 37, 0});
  EXPECT_FALSE(ChooseMerge(segments));
}

TEST(ChooseMerge, SegmentThatIsMostlyDeadIsWrittenAnewAlone)
{
  const auto window = ChooseMerge({{1000000, 0}, {1000000, 500001}, {1000000, 0}});
  ASSERT_TRUE(window);
  EXPECT_EQ(window->first, 1u);
  EXPECT_EQ(window->count, 1u);
  EXPECT_FALSE(ChooseMerge({{1000000, 500000}}));
  EXPECT_FALSE(ChooseMerge({{60000, 59000}}));  // too little to bother
}

// Beyond 192 segments: the most neighbours of 2 GiB together where these are eight, and half of all where they are
// fewer.
TEST(ChooseMerge, EightThatFitTogetherAreWorthMoreThanManyThatDoNot)
{
  constexpr std::uint64_t kEighth = std::uint64_t{1} << 28;
  const auto              eight   = ChooseMerge(std::vector<SegmentSize>(193, {kEighth, 0}));
  ASSERT_TRUE(eight);
  EXPECT_EQ(eight->first, 0u);
  EXPECT_EQ(eight->count, 8u);
  const auto half = ChooseMerge(std::vector<SegmentSize>(193, {kEighth + 1, 0}));
  ASSERT_TRUE(half);
  EXPECT_EQ(half->count, 96u);
  EXPECT_FALSE(ChooseMerge(std::vector<SegmentSize>(192, {kEighth, 0})));
}

// A hundred thousand commits of one record: 2.5 KiB a segment, of which most is not the record; so sums overstate.
TEST(ChooseMerge, HundredThousandSmallCommitsStayFewSegments)
{
  Simulation simulation;
  for (int i = 0; i < 100000; ++i) simulation.Commit(2500);
  EXPECT_LE(simulation.most, 40u);
  EXPECT_LE(simulation.moved, 9 * simulation.written);  // log8 of what is stored, and the sums below 64 KiB
}

TEST(ChooseMerge, BytesMoveSeldomWhateverTheSizes)
{
  for (unsigned seed = 1; seed <= 20; ++seed) {
    std::mt19937 random(seed);
    Simulation   simulation;
    for (int i = 0; i < 5000; ++i) simulation.Commit(std::uint64_t{1} << (10 + random() % (seed % 2 == 0 ? 20 : 10)));
    EXPECT_LE(simulation.most, 192u) << seed;
    EXPECT_LE(simulation.moved, 16 * simulation.written) << seed;
  }
}

TEST(ChooseMerge, NoOrderOfSizesKeepsMoreThan192Segments)
{
  // Mountains within mountains, which no level merges.
  Simulation simulation;
  for (std::uint64_t i = 1; i < 4000; ++i) simulation.Commit(std::uint64_t{1} << (12 + 2 * (i & -i) % 13));
  EXPECT_LE(simulation.most, 193u);
  for (std::uint64_t i = 1; i < 300; ++i) simulation.Commit(std::uint64_t{1} << 62 >> std::min<std::uint64_t>(i, 40));
  EXPECT_LE(simulation.most, 193u);
}

// So large databases can be compacted in pieces.
TEST(ChooseMerge, NoMergeMakesMoreThanTwoGigabytesAsLongAsThereAreSmallNeighbours)
{
  constexpr std::uint64_t kMost = std::uint64_t{1} << 31;
  Simulation              simulation;
  for (int i = 0; i < 5000; ++i) simulation.Commit(50'000'000);
  EXPECT_LE(simulation.worst, kMost);
  EXPECT_LE(simulation.most, 193u);
  EXPECT_LE(simulation.moved, 2 * simulation.written);
  // Steps of which 21 fill a merged segment.
  Simulation large;
  for (int i = 0; i < 2000; ++i) large.Commit(100'000'000);
  EXPECT_LE(large.worst, kMost);
  EXPECT_LE(large.most, 193u);
  EXPECT_LE(large.moved, 2 * large.written);
  // Beyond that 192 files cannot do.
  for (int i = 0; i < 4000; ++i) large.Commit(100'000'000);
  EXPECT_GT(large.worst, kMost);
  EXPECT_LE(large.most, 193u);
}

// The second method: a row at a time, the last extent that has it counts.
TEST(FindVisibleRows, TellsForEachRowTheLastExtentThatHasIt)
{
  std::mt19937 random(3);
  for (int round = 0; round < 2000; ++round) {
    FakeExtents      extents;
    std::vector<int> expected(40, -1);
    const int        count = static_cast<int>(random() % 8);
    for (int i = 0; i < count; ++i) {
      const auto begin = static_cast<std::uint32_t>(random() % 39);
      const auto end   = begin + 1 + static_cast<std::uint32_t>(random() % (40 - begin));
      extents.Add(begin, std::min<std::uint32_t>(end, 40));
      std::fill(expected.begin() + begin, expected.begin() + std::min<std::uint32_t>(end, 40), i);
    }
    std::vector<int> found(40, -1);
    std::uint32_t    before = 0;
    for (const VisibleRows& rows : FindVisibleRows(extents.list)) {
      EXPECT_GE(rows.begin, before);
      EXPECT_LT(rows.begin, rows.end);
      before = rows.end;
      std::fill(found.begin() + rows.begin, found.begin() + rows.end, static_cast<int>(rows.extent));
    }
    ASSERT_EQ(found, expected) << round;
  }
}

TEST(AddStatistics, CountsNumbersAndNansOfEachElement)
{
  ColumnStatistics statistics;
  const float      floats[] = {2.5f, std::nanf(""), -1.0f};
  AddStatistics(StoredColumn::Float32, floats, sizeof(floats), statistics);
  const int integers[] = {7, -3};
  AddStatistics(StoredColumn::Int32, integers, sizeof(integers), statistics);
  AddStatistics(StoredColumn::Char, "abcd", 4, statistics);
  AddStatistics(StoredColumn::UInt32, "abcd", 4, statistics);
  EXPECT_EQ(statistics.values, 4u);
  EXPECT_EQ(statistics.nans, 1u);
  EXPECT_EQ(statistics.least, -3.0);
  EXPECT_EQ(statistics.greatest, 7.0);
}
