#include "ColumnStore.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::vector<int> Counting(std::size_t length, int first)
{
  std::vector<int> list(length);
  std::iota(list.begin(), list.end(), first);
  return list;
}

std::vector<int> Read(const ListColumn<int>& column, std::size_t row)
{
  const int* elements = column.GetRow(row);
  return std::vector<int>(elements, elements + column.GetLength(row));
}

}  // namespace

TEST(ValueColumn, RowsAreKeptWhileTheColumnGrows)
{
  ValueColumn<double> column(3);
  EXPECT_EQ(column.GetCapacity(), 0u);
  EXPECT_EQ(column.GetBytes(), 0u);
  for (std::size_t row = 0; row < 100; ++row) {
    column.EnsureRows(row + 1);
    for (std::size_t c = 0; c < 3; ++c) column.GetRow(row)[c] = static_cast<double>(3 * row + c);
  }
  column.EnsureRows(10);
  EXPECT_EQ(column.GetCapacity(), 100u);
  EXPECT_EQ(column.GetBytes(), 2400u);
  for (std::size_t row = 0; row < 100; ++row)
    for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(column.GetRow(row)[c], static_cast<double>(3 * row + c));
}

TEST(ListPool, RoomThatWasPreparedInVainIsReplacedWhenItIsTooShort)
{
  ListPool<int>          pool;
  const std::vector<int> first = Counting(64, 0), second = Counting(5000, 100), third = Counting(100, 9000);
  const auto             append = [&pool](const std::vector<int>& list) {
    const std::size_t growth = pool.GetGrowth(list.size());
    const std::size_t before = pool.GetBytes();
    pool.Prepare(list.size());
    EXPECT_EQ(growth == 0, pool.GetBytes() == before);
    EXPECT_EQ(pool.GetGrowth(list.size()), 0u);
    const ListSlot<int> slot = pool.Append(list.size());
    std::copy(list.begin(), list.end(), slot.elements);
    return slot;
  };
  const ListSlot<int> firstSlot = append(first);
  EXPECT_EQ(pool.GetBytes(), 64 * sizeof(int));
  pool.Prepare(100);  // not followed by its list
  const ListSlot<int> secondSlot = append(second);
  EXPECT_EQ(pool.GetBytes(), (64 + 5000) * sizeof(int));
  const ListSlot<int> thirdSlot = append(third);
  EXPECT_TRUE(std::equal(first.begin(), first.end(), firstSlot.elements));
  EXPECT_TRUE(std::equal(second.begin(), second.end(), secondSlot.elements));
  EXPECT_TRUE(std::equal(third.begin(), third.end(), thirdSlot.elements));
}

TEST(ListPool, EmptyListsTakeNoRoom)
{
  ListPool<double> pool;
  pool.Prepare(0);
  const ListSlot<double> slot = pool.Append(0);
  EXPECT_EQ(slot.length, 0u);
  EXPECT_EQ(slot.elements, nullptr);
  EXPECT_EQ(pool.GetSize(), 0u);
  EXPECT_EQ(pool.GetBytes(), 0u);
  EXPECT_EQ(pool.AppendPiece(0), nullptr);
}

TEST(ListColumn, LaterListsTakeThePlaceOfTheFormerWhereTheyFit)
{
  ListColumn<int> column;
  std::size_t     rowCount = 0;
  const auto      set      = [&](std::size_t row, const std::vector<int>& list) {
    column.EnsureRows(row + 1);
    column.Prepare(row, rowCount, list.size());
    column.SetRow(row, rowCount, list.data(), list.size());
    if (row == rowCount) ++rowCount;
  };
  set(0, {1, 2, 3});
  set(1, {4});
  const int* place = column.GetRow(0);
  set(0, {5});
  set(0, {6, 7, 8});
  EXPECT_EQ(column.GetRow(0), place);
  EXPECT_EQ(Read(column, 0), (std::vector<int>{6, 7, 8}));
  set(0, {1, 2, 3, 4});
  EXPECT_NE(column.GetRow(0), place);
  EXPECT_EQ(Read(column, 0), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(Read(column, 1), std::vector<int>{4});
}

TEST(ListColumn, LoadedListsLieInOnePieceAndReplaceEarlierOnes)
{
  ListColumn<int> column;
  column.MakeEmptyRows(4);
  const std::vector<int> first = Counting(6, 1), second = Counting(3, 70);
  std::copy(first.begin(), first.end(), column.Load(0, {1, 2, 0, 3}, 6));
  std::copy(second.begin(), second.end(), column.Load(1, {3, 0}, 3));
  EXPECT_EQ(Read(column, 0), (std::vector<int>{1}));
  EXPECT_EQ(Read(column, 1), (std::vector<int>{70, 71, 72}));
  EXPECT_EQ(Read(column, 2), (std::vector<int>{}));
  EXPECT_EQ(Read(column, 3), (std::vector<int>{4, 5, 6}));
  EXPECT_EQ(column.GetLength(0, 4), 7u);
  EXPECT_EQ(column.GetLength(1, 2), 3u);
}

TEST(ListColumn, ElementsOfNeighboursAreVisitedAtOnceAndInTheOrderOfRows)
{
  ListColumn<int> column;
  column.MakeEmptyRows(5);
  const std::vector<int> all = Counting(6, 1);
  std::copy(all.begin(), all.end(), column.Load(0, {2, 0, 1, 2, 1}, 6));
  std::vector<std::vector<int>> parts;
  const auto                    take = [&parts](const int* elements, std::size_t count) {
    parts.emplace_back(elements, elements + count);
  };
  column.VisitElements(0, 5, take);
  EXPECT_EQ(parts, (std::vector<std::vector<int>>{{1, 2, 3, 4, 5, 6}}));
  const std::vector<int> longer = Counting(4, 90);
  column.Prepare(2, 5, longer.size());
  column.SetRow(2, 5, longer.data(), longer.size());
  parts.clear();
  column.VisitElements(0, 5, take);
  EXPECT_EQ(parts, (std::vector<std::vector<int>>{{1, 2}, {90, 91, 92, 93}, {4, 5, 6}}));
  parts.clear();
  column.VisitElements(1, 1, take);
  EXPECT_TRUE(parts.empty());
}
