#include "calculix/ElementExpansion.h"

#include <algorithm>
#include <climits>
#include <vector>

#include <gtest/gtest.h>

namespace quilon::calculix {
namespace {

/// @param nodes of the results, beside those of the element
Expansion ExpansionOf(int frdType, const std::vector<int>& element, const std::vector<int>& nodes = {})
{
  return FindExpansion(frdType, element, [&](int id) {
    return std::count(element.begin(), element.end(), id) > 0 || std::count(nodes.begin(), nodes.end(), id) > 0;
  });
}

// As the solver numbers an S4 and an S3, whose middles are no nodes.
TEST(ElementExpansion, OfALinearLayerIsTwoHigherAboveWithNothingBetween)
{
  const std::vector<int> brick{7, 10, 13, 16, 9, 12, 15, 18};
  EXPECT_EQ(ExpansionOf(1, brick), Expansion::Layer);
  EXPECT_EQ(ExpansionOf(1, brick, {14}), Expansion::None);
  EXPECT_EQ(ExpansionOf(2, {10, 19, 13, 12, 21, 15}), Expansion::Layer);
  EXPECT_EQ(ExpansionOf(1, {7, 10, 13, 16, 9, 12, 15, 19}), Expansion::None);
  EXPECT_EQ(ExpansionOf(1, {7, 10, 13, 16, 8, 11, 14, 17}), Expansion::None);
}

// As the solver numbers an S8R.
TEST(ElementExpansion, OfAQuadraticLayerHasMiddlesBetween)
{
  std::vector<int> brick{33, 57, 189, 165, 35, 59, 191, 167, 45, 129, 177, 117, 47, 131, 179, 119, 34, 58, 190, 166};
  EXPECT_EQ(ExpansionOf(4, brick), Expansion::Layer);
  for (const std::size_t at : {4u, 12u, 19u}) {
    std::vector<int> other = brick;
    other[at] += 1;
    EXPECT_EQ(ExpansionOf(4, other), Expansion::None) << at;
  }
  EXPECT_EQ(ExpansionOf(5, {1, 4, 7, 3, 6, 9, 10, 13, 16, 12, 15, 18, 2, 5, 8}), Expansion::Layer);
}

// As the solver numbers a B31 and a B32.
TEST(ElementExpansion, OfABeamRunsAroundItsSections)
{
  const std::vector<int> brick{12, 20, 21, 13, 15, 23, 22, 14};
  EXPECT_EQ(ExpansionOf(1, brick), Expansion::Beam);
  EXPECT_EQ(ExpansionOf(1, brick, {27}), Expansion::None);
  std::vector<int> quadratic{22, 38, 39, 23, 25, 41, 40, 24, 30, 42, 31, 26, 33, 44, 32, 28, 29, 45, 43, 27};
  EXPECT_EQ(ExpansionOf(4, quadratic), Expansion::Beam);
  for (const std::size_t at : {7u, 13u, 14u}) {
    std::vector<int> other = quadratic;
    other[at] += 1;
    EXPECT_EQ(ExpansionOf(4, other), Expansion::None) << at;
  }
}

TEST(ElementExpansion, IsNoneOfSolids)
{
  // A column of bricks that is numbered around its sections.
  EXPECT_EQ(ExpansionOf(1, {1, 5, 6, 2, 4, 8, 7, 3}), Expansion::None);
  // Odd ids alone.
  EXPECT_EQ(ExpansionOf(1, {11, 19, 23, 15, 13, 21, 25, 17}), Expansion::None);
  // A plate of one element, numbered through its thickness.
  EXPECT_EQ(ExpansionOf(1, {1, 3, 7, 5, 2, 4, 8, 6}), Expansion::None);
  EXPECT_EQ(ExpansionOf(3, {1, 2, 3, 4}), Expansion::None);
  EXPECT_EQ(ExpansionOf(1, {1, 2, 3}), Expansion::None);  // too few nodes for its type
  EXPECT_EQ(ExpansionOf(1, {INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MIN, INT_MIN, INT_MIN, INT_MIN}), Expansion::None);
}

}  // namespace
}  // namespace quilon::calculix
