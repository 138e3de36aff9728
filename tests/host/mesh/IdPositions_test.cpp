#include "mesh/IdPositions.h"

#include <limits>

#include <gtest/gtest.h>

namespace quilon {
namespace {

void ExpectAllFound(const std::vector<int>& ids)
{
  const IdPositions positions(ids);
  for (std::size_t i = 0; i < ids.size(); ++i) EXPECT_EQ(positions.Find(ids[i]), i) << ids[i];
}

TEST(IdPositions, FindsDenseAndSparseIds)
{
  constexpr int kLeast    = std::numeric_limits<int>::min();
  constexpr int kGreatest = std::numeric_limits<int>::max();
  ExpectAllFound({1, 2, 3, 5});
  ExpectAllFound({7});
  ExpectAllFound({-3, 0, 4});
  ExpectAllFound({1, 1000, 1000000});
  ExpectAllFound({kLeast, 0, kGreatest});
}

TEST(IdPositions, FindsNothingElse)
{
  const IdPositions dense({2, 3, 5});
  for (const int id : {-1, 1, 4, 6}) EXPECT_EQ(dense.Find(id), std::nullopt) << id;
  const IdPositions sparse({2, 3000, 500000});
  for (const int id : {-1, 1, 2999, 3001, 500001}) EXPECT_EQ(sparse.Find(id), std::nullopt) << id;
  EXPECT_EQ(IdPositions().Find(0), std::nullopt);
}

}  // namespace
}  // namespace quilon
