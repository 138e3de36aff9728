#include "KeyTable.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Keys = std::vector<std::uint32_t>;

// Row of a key: its place in the order of arrival.
void Add(KeyTable& table, const Keys& keys)
{
  for (const std::uint32_t key : keys) {
    const auto row = static_cast<std::uint32_t>(table.GetCount());
    table.Prepare(key, row);
    table.Insert(key, row);
  }
}

// Compares with a map, and asks for the neighbours of every key.
void ExpectHolds(const KeyTable& table, const Keys& keys)
{
  std::map<std::uint32_t, std::uint32_t> model;
  for (const std::uint32_t key : keys) model.emplace(key, static_cast<std::uint32_t>(model.size()));
  ASSERT_EQ(table.GetCount(), model.size());
  std::size_t wrong = 0;
  for (const std::uint32_t key : keys)
    for (const std::uint32_t asked : {key - 1, key, key + 1}) {
      if (asked > KeyTable::kMaxKey) continue;
      const auto          found    = model.find(asked);
      const std::uint32_t expected = found == model.end() ? KeyTable::kNone : found->second;
      if (table.Find(asked) != expected) ++wrong;
    }
  EXPECT_EQ(wrong, 0u);
  Keys ascending;
  for (const auto& [key, row] : model) ascending.push_back(key);
  EXPECT_EQ(table.GetKeys(), ascending);
  EXPECT_EQ(table.GetMaxKey(), model.empty() ? 0u : model.rbegin()->first);

  // Walks go on, start anywhere and end anywhere.
  Keys walked;
  for (std::uint32_t key = 0; (key = table.FindNext(key, KeyTable::kMaxKey)) != KeyTable::kNone; ++key)
    walked.push_back(key);
  EXPECT_EQ(walked, ascending);
  for (const std::uint32_t key : keys)
    for (const std::uint32_t first : {key - 1, key, key + 1}) {
      if (first > KeyTable::kMaxKey) continue;
      const auto          found = model.lower_bound(first);
      const std::uint32_t next  = found == model.end() ? KeyTable::kNone : found->first;
      if (table.FindNext(first, KeyTable::kMaxKey) != next) ++wrong;
      if (next != KeyTable::kNone && table.FindNext(first, next) != next) ++wrong;
      if (next != KeyTable::kNone && next > first && table.FindNext(first, next - 1) != KeyTable::kNone) ++wrong;
    }
  EXPECT_EQ(wrong, 0u);
}

}  // namespace

TEST(KeyTable, EmptyTableFindsNothing)
{
  const KeyTable table;
  EXPECT_EQ(table.Find(0), KeyTable::kNone);
  EXPECT_EQ(table.Find(KeyTable::kMaxKey), KeyTable::kNone);
  EXPECT_TRUE(table.GetKeys().empty());
  EXPECT_EQ(table.GetMaxKey(), 0u);
}

// Each pattern ends in one of the four forms, or passes from one into another.
TEST(KeyTable, HoldsKeysOfEveryPattern)
{
  struct Row
  {
    const char* name;
    Keys        keys;
  };
  Keys run, backwards, steps, powers, far, gaps, late, groups;
  for (std::uint32_t i = 0; i < 3000; ++i) {
    run.push_back(i + 17);
    backwards.push_back(5000 - i);
    steps.push_back(i * 65536);
  }
  for (unsigned bit = 0; bit < 31; ++bit) {
    const std::uint32_t power = 1u << bit;
    powers.push_back(power);
    if (bit > 1) powers.push_back(power - 1);
    if (bit > 1) powers.push_back(power + 1);
  }
  far = run;
  far.push_back(KeyTable::kMaxKey);
  for (std::uint32_t i = 0; i < 20000; ++i) far.push_back(4000 + i);  // hashed, and dense again
  for (std::uint32_t i = 0; i < 3000; ++i) gaps.push_back(1000000001 + 7 * i + i % 5);
  late = gaps;
  late.push_back(gaps[1000] + 1);  // not behind all others
  late.push_back(gaps.back() + 9);
  for (std::uint32_t i = 0; i < 6000; ++i) groups.push_back(i + i / 100 * 64);  // whole marks, and none between
  const Row rows[] = {
      {"nothing", {}},
      {"ascending, with gaps", gaps},
      {"ascending, but for one", late},
      {"ascending in groups", groups},
      {"zero", {0}},
      {"greatest", {KeyTable::kMaxKey}},
      {"two at the ends", {KeyTable::kMaxKey, 0}},
      {"run", run},
      {"run from zero, then a gap", {0, 1, 2, 9}},
      {"backwards", backwards},
      {"steps of 65536", steps},
      {"powers of two and their neighbours", powers},
      {"run, one far key, run", far},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KeyTable table;
    Add(table, row.keys);
    ExpectHolds(table, row.keys);
  }
}

// As ids of nodes are, of which a mesh leaves some out.
TEST(KeyTable, AscendingKeysTakeLittleMemoryWhateverTheFirst)
{
  for (const std::uint32_t first : {1u, 1000000000u}) {
    for (const std::uint32_t step : {2u, 16u}) {
      KeyTable                table;
      constexpr std::uint32_t kCount = 100000;
      for (std::uint32_t i = 0; i < kCount; ++i) {
        table.Prepare(first + i * step, i);
        table.Insert(first + i * step, i);
      }
      EXPECT_EQ(table.Find(first + 777 * step), 777u);
      // 8 bytes for 32 numbers, half as much again as is used.
      EXPECT_LE(table.CountBytes(), 1.6 * kCount * step / 4) << first << ", " << step;
    }
  }
}

TEST(KeyTable, HoldsRandomKeysOfAnySpread)
{
  for (const std::uint32_t spread : {100u, 3000u, 100000u, KeyTable::kMaxKey}) {
    SCOPED_TRACE(spread);
    std::mt19937                                 random(spread);
    std::uniform_int_distribution<std::uint32_t> pick(0, spread);
    KeyTable                                     table;
    Keys                                         keys;
    for (int i = 0; i < 5000; ++i) {
      const std::uint32_t key = pick(random);
      if (table.Find(key) != KeyTable::kNone) continue;
      Add(table, {key});
      keys.push_back(key);
    }
    ExpectHolds(table, keys);
  }
}

TEST(KeyTable, WalkSeesKeysThatCameSinceItBegan)
{
  std::mt19937            random(3);
  std::set<std::uint32_t> model;
  KeyTable                table;
  std::uint32_t           at = 0;
  for (int step = 0; step < 3000; ++step) {
    const std::uint32_t key = random() & KeyTable::kMaxKey;
    if (random() % 3 == 0 && model.insert(key).second) Add(table, {key});
    const auto found = model.lower_bound(at);
    ASSERT_EQ(table.FindNext(at, KeyTable::kMaxKey), found == model.end() ? KeyTable::kNone : *found) << step;
    at = found == model.end() ? 0 : *found + 1;
  }
}

TEST(KeyTable, RunWhoseRowsAreNotConsecutiveIsNoRun)
{
  KeyTable table;
  table.Prepare(5, 0);
  table.Insert(5, 0);
  table.Prepare(6, 3);
  table.Insert(6, 3);
  EXPECT_EQ(table.Find(5), 0u);
  EXPECT_EQ(table.Find(6), 3u);
}

TEST(KeyTable, PreparingWithoutInsertingChangesNoAnswer)
{
  KeyTable   table;
  const Keys keys = {1, 2, 3};
  Add(table, keys);
  for (const std::uint32_t key : {4u, 40u, KeyTable::kMaxKey, 0u}) {
    table.Prepare(key, 3);
    EXPECT_EQ(table.Find(key), KeyTable::kNone);
    ExpectHolds(table, keys);
  }
  Add(table, {KeyTable::kMaxKey, 4});
  ExpectHolds(table, {1, 2, 3, KeyTable::kMaxKey, 4});
}

TEST(KeyTable, HintChangesNoAnswer)
{
  for (const std::size_t hint : {std::size_t{1}, std::size_t{5000}, static_cast<std::size_t>(-1)}) {
    KeyTable table;
    table.Expect(hint);
    const Keys keys = {9, 3, 100, 4};
    Add(table, keys);
    ExpectHolds(table, keys);
  }
}

TEST(KeyTable, RunIsFoundAndGoesOn)
{
  KeyTable table;
  table.InsertRun(7, 5);
  EXPECT_EQ(table.GetCount(), 5u);
  EXPECT_EQ(table.GetMaxKey(), 11u);
  for (std::uint32_t key = 7; key < 12; ++key) EXPECT_EQ(table.Find(key), key - 7);
  EXPECT_EQ(table.Find(6), KeyTable::kNone);
  table.Prepare(12, 5);
  table.Insert(12, 5);
  table.Prepare(3, 6);
  table.Insert(3, 6);
  EXPECT_EQ(table.GetKeys(), (std::vector<std::uint32_t>{3, 7, 8, 9, 10, 11, 12}));
  EXPECT_EQ(table.Find(12), 5u);
  EXPECT_EQ(table.Find(3), 6u);
}

TEST(RowKeys, KeysStandInTheOrderOfRowsWhetherTheyAreARunOrNot)
{
  RowKeys keys;
  EXPECT_TRUE(keys.IsRun());
  const auto push = [&keys](std::uint32_t key) {
    keys.Prepare(key);
    keys.Push(key);
  };
  for (std::uint32_t key = 4; key < 10; ++key) push(key);
  keys.PushRun(10, 3);
  EXPECT_TRUE(keys.IsRun());
  EXPECT_EQ(keys.GetCount(), 9u);
  keys.Prepare(900);  // in vain
  push(13);
  EXPECT_TRUE(keys.IsRun());
  push(2);
  EXPECT_FALSE(keys.IsRun());
  keys.PushRun(30, 2);
  ASSERT_EQ(keys.GetCount(), 13u);
  for (std::size_t row = 0; row < 10; ++row) EXPECT_EQ(keys.Get(row), 4 + row);
  EXPECT_EQ(keys.Get(10), 2u);
  EXPECT_EQ(keys.Get(11), 30u);
  EXPECT_EQ(keys.Get(12), 31u);
}

// Keys whose places were all one as long as everybody could know how places are chosen.
TEST(KeyTable, KeysThatWereMadeToCollideSpreadLikeOthers)
{
  // The inverse of a well-known mixing of 32 bits.
  const auto unmix = [](std::uint32_t key) {
    key ^= key >> 16;
    key *= 0x43021123u;
    key ^= key >> 15 ^ key >> 30;
    key *= 0x1d69e2a5u;
    key ^= key >> 16;
    return key;
  };
  Keys keys;
  for (std::uint32_t i = 1; keys.size() < 16000; ++i) {
    const std::uint32_t key = unmix(i << 15);
    if (key <= KeyTable::kMaxKey) keys.push_back(key);
  }
  KeyTable table;
  Add(table, keys);
  ExpectHolds(table, keys);
  EXPECT_LT(table.GetLongestProbe(), 200u);  // about 20 are usual; all 16,000 in one place would be 15,999
  for (const std::uint32_t step : {64u, 4096u, 65536u, 99991u}) {
    KeyTable steps;
    Keys     inSteps;
    for (std::uint32_t i = 0; i < 16000; ++i) inSteps.push_back(i * step);
    Add(steps, inSteps);
    EXPECT_LT(steps.GetLongestProbe(), 200u) << step;
  }
}
