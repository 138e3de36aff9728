#include "IdRadixMap.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AllocationFailure.h"
#include "PlainIdRadixMap.h"

namespace {

using quilon_test::AllocationFailure;
using quilon_test::PlainIdRadixMap;
using testing::ElementsAre;
using testing::ElementsAreArray;

using Map = IdRadixMap<double>;

static_assert(std::forward_iterator<Map::iterator>);
static_assert(std::forward_iterator<Map::const_iterator>);
static_assert(std::is_nothrow_move_constructible_v<Map> && std::is_nothrow_move_assignable_v<Map>);
static_assert(std::is_same_v<decltype(std::declval<Map&>().Entries()), std::span<std::pair<const int, double>>>);
static_assert(
    std::is_same_v<decltype(std::declval<const Map&>().Entries()), std::span<const std::pair<const int, double>>>);

template <typename V>
std::vector<int> TraversedIds(const IdRadixMap<V>& map)
{
  std::vector<int> ids;
  for (const auto& entry : map) ids.push_back(entry.first);
  return ids;
}

template <typename V>
std::vector<int> InsertedIds(const IdRadixMap<V>& map)
{
  std::vector<int> ids;
  for (const auto& entry : map.Entries()) ids.push_back(entry.first);
  return ids;
}

Map MapOf(const std::vector<int>& ids)
{
  Map map;
  for (const int id : ids) map.At(map.FindOrInsert(id)) = id + 0.5;
  return map;
}

/// Every value is the one that MapOf() gave it, and is found where it should be.
void ExpectHolds(const Map& map, const std::vector<int>& ids)
{
  EXPECT_THAT(InsertedIds(map), ElementsAreArray(ids));
  for (std::size_t i = 0; i < ids.size(); ++i) {
    ASSERT_EQ(map.Find(ids[i]), i) << ids[i];
    EXPECT_EQ(map.At(i), ids[i] + 0.5);
  }
  std::map<std::uint32_t, int> sorted;
  for (const int id : ids) sorted.emplace(static_cast<std::uint32_t>(id), id);
  std::vector<int> ascending;
  for (const auto& [bits, id] : sorted) ascending.push_back(id);
  EXPECT_THAT(TraversedIds(map), ElementsAreArray(ascending));
}

/// Ids on both sides of every change of depth, and the ends of int.
const std::vector<int> kEdgeIds = {0,       1,           254,      255,      256,      257,      65534,       65535,
                                   65536,   65537,       16777214, 16777215, 16777216, 16777217, INT_MAX - 1, INT_MAX,
                                   INT_MIN, INT_MIN + 1, -257,     -256,     -2,       -1};

TEST(IdRadixMap, IdsAreTraversedAscendingAndKeptInInsertionOrder)
{
  const Map map = MapOf({300, 7, 70000, -1, 255});
  EXPECT_THAT(TraversedIds(map), ElementsAre(7, 255, 300, 70000, -1));
  EXPECT_THAT(InsertedIds(map), ElementsAre(300, 7, 70000, -1, 255));
}

TEST(IdRadixMap, NegativeIdsFollowAllOthersInAscendingOrder)
{
  const Map map = MapOf({-1, INT_MAX, INT_MIN, -2, 0});
  EXPECT_THAT(TraversedIds(map), ElementsAre(0, INT_MAX, INT_MIN, -2, -1));
}

TEST(IdRadixMap, AnIdInsertedTwiceKeepsItsPositionAndAppendsNothing)
{
  Map map = MapOf({40, 4000000, -40});
  for (const int id : {40, 4000000, -40}) {
    const std::size_t position = map.Find(id);
    EXPECT_EQ(map.FindOrInsert(id), position);
  }
  ExpectHolds(map, {40, 4000000, -40});
}

TEST(IdRadixMap, PositionsCountFromZeroInInsertionOrder)
{
  Map map;
  EXPECT_EQ(map.FindOrInsert(9), 0u);
  EXPECT_EQ(map.FindOrInsert(3), 1u);
  EXPECT_EQ(map.FindOrInsert(1000), 2u);
  EXPECT_EQ(map.FindOrInsert(9), 0u);
}

TEST(IdRadixMap, ANewValueIsAllZero)
{
  struct Plain
  {
    double numbers[3];
    int    count;
  };
  IdRadixMap<Plain> map;
  for (int id = 0; id < 600; ++id) {
    const Plain& fresh = map.At(map.FindOrInsert(id));
    EXPECT_EQ(fresh.numbers[0], 0.0);
    EXPECT_EQ(fresh.numbers[2], 0.0);
    EXPECT_EQ(fresh.count, 0);
    map.At(map.Find(id)) = {{1, 2, 3}, 4};
  }
}

TEST(IdRadixMap, EveryIdAtAChangeOfDepthIsHeldAndItsNeighboursAreNot)
{
  ExpectHolds(MapOf(kEdgeIds), kEdgeIds);
  for (const int id : kEdgeIds) {
    const Map map = MapOf({id});
    for (const int other : kEdgeIds) EXPECT_EQ(map.Find(other), other == id ? 0u : Map::npos) << id << " " << other;
    EXPECT_THAT(TraversedIds(map), ElementsAre(id));
  }
}

TEST(IdRadixMap, IdsZeroTo255ShareOneNodeAnd256StartsAnother)
{
  Map map = MapOf({0, 1, 2});  // three entries leave room for a fourth
  {
    AllocationFailure counter(0);
    map.FindOrInsert(255);
    EXPECT_EQ(counter.GetCount(), 0u);
  }
  {
    AllocationFailure counter(0);
    map.FindOrInsert(256);
    EXPECT_GT(counter.GetCount(), 1u);  // more than the one of the entries
  }
}

TEST(IdRadixMap, ALookupOfAnUnknownIdCreatesNothing)
{
  const Map empty;
  const Map map = MapOf({300, 7, 70000, -1, 255});

  AllocationFailure counter(0);
  for (const int id : kEdgeIds) EXPECT_EQ(empty.Find(id), Map::npos);
  for (const int id : {0, 256, 301, 65536, 70001, 16777216, INT_MAX, INT_MIN, -2}) {
    EXPECT_EQ(map.Find(id), Map::npos) << id;
  }
  EXPECT_EQ(counter.GetCount(), 0u);
  EXPECT_EQ(map.Entries().size(), 5u);
}

TEST(IdRadixMap, AnEmptyMapHasNothingToTraverse)
{
  Map map;
  EXPECT_TRUE(map.begin() == map.end());
  EXPECT_FALSE(map.begin() != map.end());
  EXPECT_TRUE(std::as_const(map).begin() == std::as_const(map).end());
  EXPECT_TRUE(map.Entries().empty());
}

TEST(IdRadixMap, ACursorTellsThePositionAndReachesTheValue)
{
  Map  map    = MapOf({300, 7});
  auto cursor = map.begin();
  EXPECT_EQ(cursor->first, 7);
  EXPECT_EQ(cursor.Position(), 1u);
  (cursor++)->second = 70.0;
  EXPECT_EQ(cursor->first, 300);
  EXPECT_EQ(cursor.Position(), 0u);
  EXPECT_TRUE(++cursor == map.end());
  EXPECT_EQ(map.At(1), 70.0);
}

TEST(IdRadixMap, ATraversalSkipsDepthsWithoutIds)
{
  EXPECT_THAT(TraversedIds(MapOf({20000000, 5})), ElementsAre(5, 20000000));
  EXPECT_THAT(TraversedIds(MapOf({70000, 300})), ElementsAre(300, 70000));
}

TEST(IdRadixMap, ValuesOfTheEntriesCanBeChanged)
{
  Map map = MapOf({5, 6});
  for (auto& entry : map.Entries()) entry.second = 0.0;
  EXPECT_EQ(map.At(map.Find(5)), 0.0);
  EXPECT_EQ(map.At(map.Find(6)), 0.0);
}

// Second methods: the plain map for positions, std::map for order.
TEST(IdRadixMap, AgreesWithThePlainMapOnEveryPatternOfIds)
{
  std::mt19937_64 random(20250101);
  const auto      draw = [&random](std::uint32_t range) {
    return static_cast<int>(std::uniform_int_distribution<std::uint32_t>(0, range)(random));
  };
  const auto reversed = [](int i) {
    const auto bits = static_cast<std::uint32_t>(i);
    return static_cast<int>(bits << 24 | (bits & 0xFF00u) << 8 | (bits >> 8 & 0xFF00u) | bits >> 24);
  };
  struct Pattern
  {
    const char*      name;
    std::vector<int> ids;
  };
  std::vector<Pattern> patterns = {{"dense", {}},  {"descending", {}},
                                   {"random", {}}, {"byte-reversed", {}},
                                   {"gaps", {}},   {"repeated", {}},
                                   {"mixed", {}},  {"back and forth", {}},
                                   {"far", {}},    {"near the end of the leaf table", {}}};
  for (int i = 0; i < 3000; ++i) {
    patterns[0].ids.push_back(i);
    patterns[1].ids.push_back(70000 - i);
    patterns[2].ids.push_back(draw(0xFFFFFFFFu));
    patterns[3].ids.push_back(reversed(i));
    patterns[4].ids.push_back(1 + 37 * i);
    patterns[5].ids.push_back(draw(999));
    patterns[6].ids.push_back(draw((1u << draw(31)) - 1));
    patterns[7].ids.push_back(i % 2 == 0 ? i : 100000 + i);
    patterns[8].ids.push_back(2000000 + 100 * i);  // the leaf table comes to cover them on the way
    patterns[9].ids.push_back(i < 1500 ? 11200 * i : 0x1000000 + 5 * (i - 2250));
  }
  for (const Pattern& pattern : patterns) {
    SCOPED_TRACE(pattern.name);
    Map                          map;
    PlainIdRadixMap<double>      plain;
    std::map<std::uint32_t, int> sorted;
    for (const int id : pattern.ids) {
      ASSERT_EQ(map.Find(id), plain.Find(id)) << id;
      ASSERT_EQ(map.FindOrInsert(id), plain.FindOrInsert(id)) << id;
      ASSERT_EQ(map.Find(id), plain.Find(id)) << id;
      map.At(map.Find(id)) += id;
      plain.At(plain.Find(id)) += id;
      sorted.emplace(static_cast<std::uint32_t>(id), id);
    }
    std::vector<int> ascending;
    for (const auto& [bits, id] : sorted) ascending.push_back(id);
    EXPECT_EQ(TraversedIds(map), ascending);
    std::vector<std::size_t> positions;
    for (auto cursor = map.begin(); cursor != map.end(); ++cursor) positions.push_back(cursor.Position());
    EXPECT_EQ(positions, plain.Traverse());
    ASSERT_EQ(map.Entries().size(), plain.Entries().size());
    for (std::size_t i = 0; i < plain.Entries().size(); ++i) {
      ASSERT_EQ(map.Entries()[i].first, plain.Entries()[i].first);
      ASSERT_EQ(map.Entries()[i].second, plain.Entries()[i].second);
    }
  }
}

TEST(IdRadixMap, ACopyIsDeep)
{
  Map original = MapOf({1, 500, -3});
  Map copy(original);
  copy.At(copy.FindOrInsert(1)) = 99.0;
  copy.FindOrInsert(2);
  copy.FindOrInsert(90000);
  ExpectHolds(original, {1, 500, -3});
  EXPECT_THAT(InsertedIds(copy), ElementsAre(1, 500, -3, 2, 90000));
  EXPECT_EQ(copy.At(0), 99.0);

  original.FindOrInsert(501);
  EXPECT_EQ(copy.Find(501), Map::npos);
}

// Ids that the table of leaves covers from the first on, from the 800th on, and never.
TEST(IdRadixMap, ACopyAndAClearedMapDoNotShareTheTableOfLeaves)
{
  std::vector<int> ids;
  for (int i = 0; i < 1500; ++i) {
    for (const int id : {i, 2000000 + 100 * i, 0x1000000 + 1000 * i}) ids.push_back(id);
  }
  Map original = MapOf(ids);
  Map copy(original);
  ExpectHolds(copy, ids);
  copy.FindOrInsert(3000000);
  copy.FindOrInsert(-1);
  EXPECT_EQ(original.Find(3000000), Map::npos);
  ExpectHolds(original, ids);

  copy.Clear();
  for (const int id : ids) ASSERT_EQ(copy.Find(id), Map::npos);
  EXPECT_EQ(copy.FindOrInsert(2000000), 0u);
  EXPECT_EQ(copy.Find(0), Map::npos);
  ExpectHolds(original, ids);
  const Map taken(std::move(original));
  ExpectHolds(taken, ids);
  EXPECT_EQ(original.Find(0), Map::npos);
}

TEST(IdRadixMap, AssignmentReplacesAllEntries)
{
  Map map = MapOf({8, 9, 10, 1000000});
  map     = MapOf({9, 300});
  ExpectHolds(map, {9, 300});
  const Map other = MapOf({-5, 4});
  map             = other;
  ExpectHolds(map, {-5, 4});
  ExpectHolds(other, {-5, 4});
}

TEST(IdRadixMap, AssignmentToItselfChangesNothing)
{
  Map  map   = MapOf({8, 300, -1});
  Map& alias = map;
  map        = alias;
  ExpectHolds(map, {8, 300, -1});
  map = std::move(alias);
  ExpectHolds(map, {8, 300, -1});
}

TEST(IdRadixMap, AMovedFromMapIsEmptyAndUsable)
{
  Map       source = MapOf({8, 300, -1});
  const Map taken(std::move(source));
  ExpectHolds(taken, {8, 300, -1});
  ExpectHolds(source, {});
  EXPECT_EQ(source.FindOrInsert(-1), 0u);  // -1 is of the leaf that was written to last
  EXPECT_THAT(TraversedIds(source), ElementsAre(-1));

  Map target = MapOf({1, 2});
  target     = std::move(source);
  EXPECT_THAT(InsertedIds(target), ElementsAre(-1));
  ExpectHolds(source, {});
  source.FindOrInsert(-1);
  EXPECT_THAT(TraversedIds(source), ElementsAre(-1));
}

TEST(IdRadixMap, AClearedMapIsEmptyAndUsable)
{
  Map map = MapOf({8, 300, -1});
  map.Clear();
  ExpectHolds(map, {});
  for (const int id : {8, 300, -1}) EXPECT_EQ(map.Find(id), Map::npos);
  EXPECT_EQ(map.FindOrInsert(-1), 0u);
  EXPECT_EQ(map.FindOrInsert(8), 1u);
  EXPECT_THAT(TraversedIds(map), ElementsAre(8, -1));
}

TEST(IdRadixMap, AClearedMapKeepsItsMemory)
{
  Map map;
  for (int id = 0; id < 1000; ++id) map.FindOrInsert(id);
  map.Clear();
  AllocationFailure counter(0);
  for (int id = 0; id < 1000; ++id) map.FindOrInsert(id);
  EXPECT_EQ(counter.GetCount(), 0u);
}

// Any work in any order, copies and moves too; QUILON_MODEL_STEPS says how much of it.
TEST(IdRadixMap, RandomWorkAgreesWithPlainContainers)
{
  const char* const   given = std::getenv("QUILON_MODEL_STEPS");
  const std::size_t   steps = given == nullptr ? 20000 : std::strtoul(given, nullptr, 10);
  std::mt19937        random(20261123);
  Map                 map;
  std::map<int, int>  positions;  // of ids
  std::vector<int>    ids;        // by position
  std::vector<double> values;
  const auto          check = [&](int id) {
    const auto known = positions.find(id);
    ASSERT_EQ(map.Find(id), known == positions.end() ? Map::npos : static_cast<std::size_t>(known->second)) << id;
    if (known != positions.end()) {
      ASSERT_EQ(map.At(map.Find(id)), values[map.Find(id)]);
    }
  };
  for (std::size_t step = 0; step < steps; ++step) {
    SCOPED_TRACE(step);
    // Near each other, far from each other, negative.
    const auto range = (1u << random() % 32) - 1u;
    const int  id    = static_cast<int>((random() & range) - (random() % 4 == 0 ? 50u : 0u));
    const auto what  = random() % 1000;
    if (what < 600) {
      const std::size_t position = map.FindOrInsert(id);
      if (positions.emplace(id, static_cast<int>(ids.size())).second) {
        ids.push_back(id);
        values.push_back(0.0);
      }
      ASSERT_EQ(position, static_cast<std::size_t>(positions.at(id)));
      values[position] += 0.5;
      map.At(position) += 0.5;
    } else if (what < 990) {
      check(id);
    } else if (what < 993) {
      map.Reserve(random() % 2000);
    } else if (what < 996) {
      const Map copy(map);
      map = random() % 2 == 0 ? copy : Map(copy);
    } else if (what < 998) {
      Map taken(std::move(map));
      map = std::move(taken);
    } else if (what == 998) {
      ASSERT_EQ(map.Entries().size(), ids.size());
      std::vector<std::pair<std::uint32_t, int>> ordered;
      for (const auto& [known, position] : positions) ordered.emplace_back(static_cast<std::uint32_t>(known), known);
      std::sort(ordered.begin(), ordered.end());
      auto expected = ordered.begin();
      for (const auto& entry : map) {
        ASSERT_TRUE(expected != ordered.end() && entry.first == expected->second);
        ++expected;
      }
      ASSERT_TRUE(expected == ordered.end());
      for (std::size_t i = 0; i < ids.size(); ++i) ASSERT_EQ(map.Entries()[i].first, ids[i]);
    } else if (ids.size() > 3000 || random() % 8 == 0) {
      map.Clear();
      positions.clear();
      ids.clear();
      values.clear();
    }
  }
}

TEST(IdRadixMap, ReservedRoomTakesThatManyConsecutiveIdsWithoutAllocation)
{
  for (const int count : {0, 1, 255, 256, 257, 65536, 70000}) {
    Map map;
    map.Reserve(static_cast<std::size_t>(count));
    AllocationFailure counter(0);
    for (int id = 1; id <= count; ++id) map.FindOrInsert(id);
    EXPECT_EQ(counter.GetCount(), 0u) << count;
  }
}

TEST(IdRadixMap, ReserveKeepsTheEntries)
{
  Map map = MapOf({8, 300, -1});
  map.Reserve(10000);
  ExpectHolds(map, {8, 300, -1});
  map.Reserve(0);
  ExpectHolds(map, {8, 300, -1});
}

TEST(IdRadixMap, HoldsValuesThatCanOnlyBeMoved)
{
  IdRadixMap<std::unique_ptr<int>> map;
  for (int id = 0; id < 300; ++id) map.At(map.FindOrInsert(id)) = std::make_unique<int>(id);
  IdRadixMap<std::unique_ptr<int>> taken = std::move(map);
  for (int id = 0; id < 300; ++id) EXPECT_EQ(*taken.At(taken.Find(id)), id);
}

// Ids that need new nodes at every depth and make the entries grow between them.
const std::vector<int> kGrowingIds = {3,        300,      301, 70000, 70001,  131072, 20000000,
                                      20000001, 20100000, -1,  4,     -70000, 512};

/// Inserts the ids one by one until an allocation fails.
/// @return how many insertions were completed
std::size_t InsertUntilFailure(Map& map, const std::vector<int>& ids, std::size_t failing)
{
  AllocationFailure failure(failing);
  std::size_t       completed = 0;
  try {
    for (const int id : ids) {
      map.At(map.FindOrInsert(id)) = id + 0.5;
      ++completed;
    }
  } catch (const std::bad_alloc&) {
  }
  return completed;
}

TEST(IdRadixMap, AnAllocationThatFailsAnywhereLeavesTheCompletedInsertions)
{
  std::size_t failing = 0;
  std::size_t completed;
  do {
    ++failing;
    SCOPED_TRACE(failing);
    Map map;
    completed = InsertUntilFailure(map, kGrowingIds, failing);
    const std::vector<int> inserted(kGrowingIds.begin(), kGrowingIds.begin() + static_cast<std::ptrdiff_t>(completed));
    ExpectHolds(map, inserted);
    for (std::size_t i = completed; i < kGrowingIds.size(); ++i) EXPECT_EQ(map.Find(kGrowingIds[i]), Map::npos);

    // And the map is as usable as ever.
    for (const int id : kGrowingIds) map.At(map.FindOrInsert(id)) = id + 0.5;
    ExpectHolds(map, kGrowingIds);
  } while (completed < kGrowingIds.size());
  EXPECT_GT(failing, 10u);
}

TEST(IdRadixMap, ACopyThatFailsLeavesTheTarget)
{
  const Map source = MapOf(kGrowingIds);
  for (std::size_t failing = 1; failing <= 2; ++failing) {
    Map target = MapOf({1, 2});
    {
      AllocationFailure failure(failing);
      EXPECT_THROW(target = source, std::bad_alloc);
    }
    ExpectHolds(target, {1, 2});
  }
}

/// Fails in the construction that is `countdown` away.
struct Fragile
{
  static inline int countdown = 0;

  Fragile()
  {
    if (--countdown == 0) throw std::runtime_error("fragile");
  }
};

TEST(IdRadixMap, AValueThatFailsToConstructLeavesTheCompletedInsertions)
{
  IdRadixMap<Fragile> map;
  Fragile::countdown = 4;
  for (const int id : {5, 600, 7}) map.FindOrInsert(id);
  EXPECT_THROW(map.FindOrInsert(80000), std::runtime_error);
  EXPECT_THAT(InsertedIds(map), ElementsAre(5, 600, 7));
  EXPECT_THAT(TraversedIds(map), ElementsAre(5, 7, 600));
  EXPECT_EQ(map.Find(80000), IdRadixMap<Fragile>::npos);
  EXPECT_EQ(map.FindOrInsert(80000), 3u);
  EXPECT_THAT(TraversedIds(map), ElementsAre(5, 7, 600, 80000));
}

}  // namespace
