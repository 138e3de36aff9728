#include "bundled/FED_ResultIdMapsPool.h"

#include <vector>

#include <gtest/gtest.h>

#include "failure_message.h"
#include "FakeChunkStore.h"

namespace {

std::vector<int> GrowthOf(const FED_ResultIdMapsPool& pool, int kind)
{
  const FED_ResultIdMapsPool::Growth growth = pool.GetGrowth(kind);
  return std::vector<int>(growth.ids.GetData(), growth.ids.GetData() + growth.ids.GetSize());
}

}  // namespace

TEST(ResultIdMapsPool, GrowthIsWhatWasAddedSinceItWasMarkedStored)
{
  FED_ResultIdMapsPool pool;
  EXPECT_EQ(pool.GetGrowth(0).firstIndex, 1u);
  EXPECT_EQ(GrowthOf(pool, 0), std::vector<int>{});
  for (const int id : {5, -3, 9}) pool.FindOrAddIndex(0, id);
  pool.FindOrAddIndex(1, 77);
  EXPECT_EQ(GrowthOf(pool, 0), (std::vector<int>{5, -3, 9}));
  EXPECT_EQ(GrowthOf(pool, 1), std::vector<int>{77});
  EXPECT_EQ(GrowthOf(pool, 2), std::vector<int>{});
  pool.MarkStored();
  EXPECT_EQ(GrowthOf(pool, 0), std::vector<int>{});
  pool.FindOrAddIndex(0, -3);
  pool.FindOrAddIndex(0, 4);
  EXPECT_EQ(pool.GetGrowth(0).firstIndex, 4u);
  EXPECT_EQ(GrowthOf(pool, 0), std::vector<int>{4});
}

TEST(ResultIdMapsPool, MapIsReadOnceWhenItIsFirstAskedForMoreThanItsCount)
{
  FakeChunkStore store;
  store.ids[0] = {5, -3, 9};
  store.ids[3] = {1, 2, 3, 4};
  FED_ResultIdMapsPool pool;
  pool.Attach(store);
  EXPECT_EQ(pool.GetCount(0), 3u);
  EXPECT_EQ(pool.GetCount(1), 0u);
  EXPECT_EQ(pool.GetCount(3), 4u);
  EXPECT_EQ(pool.GetGrowth(3).firstIndex, 5u);
  EXPECT_EQ(GrowthOf(pool, 3), std::vector<int>{});
  EXPECT_EQ(pool.FindIndex(1, 5), FED_IdMapsPool::npos);
  EXPECT_EQ(store.idReads, 0u);
  EXPECT_EQ(pool.FindIndex(0, -3), 2u);
  EXPECT_EQ(pool.FindIndex(0, 6), FED_IdMapsPool::npos);
  EXPECT_EQ(pool.GetId(0, 3), 9);
  EXPECT_EQ(store.idReads, 1u);
  EXPECT_EQ(pool.GetId(3, 4), 4);
  EXPECT_EQ(pool.FindOrAddIndex(3, 10), 5u);
  EXPECT_EQ(store.idReads, 2u);
  EXPECT_EQ(pool.GetGrowth(3).firstIndex, 5u);
  EXPECT_EQ(GrowthOf(pool, 3), std::vector<int>{10});
  pool.MarkStored();
  EXPECT_EQ(pool.GetGrowth(0).firstIndex, 4u);
  EXPECT_EQ(pool.GetGrowth(3).firstIndex, 6u);
}

TEST(ResultIdMapsPool, IndexPastTheStoredIdsIsAFailureWithoutARead)
{
  FakeChunkStore store;
  store.ids[0] = {5, -3, 9};
  FED_ResultIdMapsPool pool;
  pool.Attach(store);
  EXPECT_EQ(MessageOf([&] { pool.GetId(0, 4); }), "id map of entity kind 0: no id has the index 4, indices are 1 to 3");
  EXPECT_EQ(store.idReads, 0u);
}

TEST(ResultIdMapsPool, FailingReadIsTriedAgain)
{
  FakeChunkStore store;
  store.ids[0] = {5, -3, 9};
  FED_ResultIdMapsPool pool;
  pool.Attach(store);
  store.failingRead = 1;
  EXPECT_EQ(MessageOf([&] { pool.FindOrAddIndex(0, 5); }), "the disk is gone");
  EXPECT_EQ(pool.GetCount(0), 3u);
  EXPECT_EQ(pool.FindOrAddIndex(0, 5), 1u);
  EXPECT_EQ(pool.FindOrAddIndex(0, 6), 4u);
}

TEST(ResultIdMapsPool, StoredIdThatStandsTwiceIsAFailure)
{
  FakeChunkStore store;
  store.ids[2] = {5, -3, 9, -3};
  FED_ResultIdMapsPool pool;
  pool.Attach(store);
  EXPECT_EQ(MessageOf([&] { pool.FindIndex(2, 5); }), "id map of entity kind 2: the store has id -3 twice");
}
