#pragma once

/// @file
/// Which of many boxes hold a point.

#include <array>
#include <cstddef>
#include <vector>

#include "elements/InverseMap.h"

namespace quilon {

/// Boxes in a binary tree. Sizes may differ by any factor: a grid would hold a box of a graded mesh in thousands of
/// cells, or thousands of boxes in a cell.
///
/// Memory: 56 bytes a box beside the boxes themselves.
class BoxTree
{
public:
  explicit BoxTree(std::vector<Box> boxes);

  /// @return the positions of the boxes that hold the point, borders included, ascending
  std::vector<std::size_t> FindHolding(const std::array<double, 3>& point) const;

private:
  /// A node of the tree holds boxes order_[first, last). Its children split them in the middle; leaves have none.
  struct Branch
  {
    Box         box;
    std::size_t first  = 0;
    std::size_t last   = 0;
    std::size_t second = 0;  // position of the second child; the first stands behind its parent; 0 none
  };

  std::size_t Build(std::size_t first, std::size_t last);

  std::vector<Box>         boxes_;
  std::vector<std::size_t> order_;
  std::vector<Branch>      branches_;
};

}  // namespace quilon
