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

TEST(ValueColumn, RowsAreKeptWhileChunksGrow)
{
  ValueColumn<double> column(3, 4);  // 16 rows a chunk
  for (std::size_t row = 0; row < 100; ++row) {
    column.EnsureRows(row + 1);
    for (std::size_t c = 0; c < 3; ++c) column.GetRow(row)[c] = static_cast<double>(3 * row + c);
  }
  for (std::size_t row = 0; row < 100; ++row)
    for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(column.GetRow(row)[c], static_cast<double>(3 * row + c));
}

TEST(ValueColumn, SmallColumnsStaySmallAndLargeOnesGrowByWholeChunks)
{
  ValueColumn<int> column(1, 10);
  EXPECT_EQ(column.GetCapacity(), 0u);
  column.EnsureRows(1);
  EXPECT_EQ(column.GetCapacity(), 4u);
  column.EnsureRows(5);
  EXPECT_EQ(column.GetCapacity(), 8u);
  column.EnsureRows(1023);
  EXPECT_EQ(column.GetCapacity(), 1023u);
  column.EnsureRows(1024);
  EXPECT_EQ(column.GetCapacity(), 1024u);
  column.EnsureRows(1025);
  EXPECT_EQ(column.GetCapacity(), 2048u);
  column.EnsureRows(10);
  EXPECT_EQ(column.GetCapacity(), 2048u);
}

TEST(ListPool, RoomThatWasPreparedInVainIsReplacedWhenItIsTooShort)
{
  ListPool<int>          pool;
  const std::vector<int> first = Counting(64, 0), second = Counting(5000, 100), third = Counting(100, 9000);
  pool.Prepare(first.size());
  const ListSlot firstSlot = pool.Append(first.data(), first.size());
  pool.Prepare(100);  // not followed by its list
  pool.Prepare(second.size());
  const ListSlot secondSlot = pool.Append(second.data(), second.size());
  pool.Prepare(third.size());
  const ListSlot thirdSlot = pool.Append(third.data(), third.size());
  EXPECT_TRUE(std::equal(first.begin(), first.end(), pool.GetElements(firstSlot)));
  EXPECT_TRUE(std::equal(second.begin(), second.end(), pool.GetElements(secondSlot)));
  EXPECT_TRUE(std::equal(third.begin(), third.end(), pool.GetElements(thirdSlot)));
}

TEST(ListPool, EmptyListsTakeNoRoom)
{
  ListPool<double> pool;
  pool.Prepare(0);
  const ListSlot slot = pool.Append(nullptr, 0);
  EXPECT_EQ(slot.length, 0u);
  EXPECT_EQ(pool.GetElements(slot), nullptr);
  EXPECT_EQ(pool.GetSize(), 0u);
}

TEST(ListColumn, LaterListsTakeThePlaceOfTheFormerWhereTheyFit)
{
  ListColumn<int> column(4);
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
