#include "export/VtkCells.h"

#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "mesh/ElementTopology.h"

namespace quilon {
namespace {

// Numbers and orders of VTK's published cell types.
TEST(VtkCells, KnowEveryShape)
{
  const struct
  {
    int                       frdType;
    int                       cell;
    std::vector<std::uint8_t> order;  // empty: as in decks
  } rows[] = {{1, 12, {}},
              {2, 13, {3, 4, 5, 0, 1, 2}},
              {3, 10, {}},
              {4, 25, {}},
              {5, 26, {3, 4, 5, 0, 1, 2, 9, 10, 11, 6, 7, 8, 12, 13, 14}},
              {6, 24, {}},
              {7, 5, {}},
              {8, 22, {}},
              {9, 9, {}},
              {10, 23, {}},
              {11, 3, {}},
              {12, 21, {0, 2, 1}}};
  for (const auto& row : rows) {
    EXPECT_EQ(VtkCellType(row.frdType, FindTopology(row.frdType)->numNodes), row.cell) << row.frdType;
    const auto order = VtkNodeOrder(row.frdType);
    EXPECT_EQ(std::vector<std::uint8_t>(order.begin(), order.end()), row.order) << row.frdType;
    if (!order.empty()) {
      EXPECT_EQ(order.size(), FindTopology(row.frdType)->numNodes) << row.frdType;
      EXPECT_EQ(std::set<std::uint8_t>(order.begin(), order.end()).size(), order.size()) << row.frdType;
    }
  }
}

TEST(VtkCells, WithoutAShapeGoByTheNumberOfNodes)
{
  EXPECT_EQ(VtkCellType(0, 0), 0);
  EXPECT_EQ(VtkCellType(0, 1), 1);
  EXPECT_EQ(VtkCellType(0, 2), 3);
  EXPECT_EQ(VtkCellType(0, 3), 2);
  EXPECT_EQ(VtkCellType(13, 5), 2);
  EXPECT_TRUE(VtkNodeOrder(0).empty());
}

}  // namespace
}  // namespace quilon
