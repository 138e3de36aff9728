#include "elements/BoxTree.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace quilon {
namespace {

using Positions = std::vector<std::size_t>;

TEST(BoxTree, HoldsNothingWithoutBoxes) { EXPECT_EQ(BoxTree({}).FindHolding({0, 0, 0}), Positions()); }

TEST(BoxTree, CountsTheBordersAndNoPointThatIsNone)
{
  const BoxTree tree({{{0, 0, 0}, {1, 1, 1}}, {{1, 0, 0}, {2, 1, 1}}});
  EXPECT_EQ(tree.FindHolding({1, 1, 0}), (Positions{0, 1}));
  EXPECT_EQ(tree.FindHolding({2, 1, 0}), Positions{1});
  EXPECT_EQ(tree.FindHolding({2.5, 1, 0}), Positions());
  EXPECT_EQ(tree.FindHolding({std::numeric_limits<double>::quiet_NaN(), 0, 0}), Positions());
}

// Boxes of all sizes, also equal ones, against a walk over all of them.
TEST(BoxTree, FindsWhatAWalkOverAllBoxesFinds)
{
  std::mt19937                           random(7);
  std::uniform_real_distribution<double> place(-1.0, 1.0);
  std::uniform_real_distribution<double> exponent(-6.0, 0.0);
  for (const std::size_t count : {1u, 8u, 9u, 16u, 17u, 1000u}) {
    std::vector<Box> boxes(count);
    for (Box& box : boxes) {
      for (std::size_t k = 0; k < 3; ++k) {
        box.least[k]    = place(random);
        box.greatest[k] = box.least[k] + std::pow(10.0, exponent(random));
      }
    }
    if (count > 20) std::fill(boxes.begin() + 3, boxes.begin() + 20, boxes[2]);
    const BoxTree tree(boxes);
    for (int i = 0; i < 300; ++i) {
      std::array<double, 3> point = {place(random), place(random), place(random)};
      if (i % 3 == 0) point = boxes[static_cast<std::size_t>(i) % count].least;
      Positions expected;
      for (std::size_t b = 0; b < count; ++b) {
        bool holds = true;
        for (std::size_t k = 0; k < 3; ++k)
          holds = holds && point[k] >= boxes[b].least[k] && point[k] <= boxes[b].greatest[k];
        if (holds) expected.push_back(b);
      }
      EXPECT_EQ(tree.FindHolding(point), expected) << count << " boxes, point " << i;
    }
  }
}

}  // namespace
}  // namespace quilon
