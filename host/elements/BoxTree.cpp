#include "elements/BoxTree.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace quilon {

namespace {

constexpr std::size_t kLeafSize = 8;

bool Holds(const Box& box, const std::array<double, 3>& point)
{
  for (std::size_t k = 0; k < 3; ++k)
    if (!(point[k] >= box.least[k] && point[k] <= box.greatest[k])) return false;  // a NaN is in no box
  return true;
}

/// Twice the middle.
double MiddleOf(const Box& box, std::size_t axis) { return box.least[axis] + box.greatest[axis]; }

}  // namespace

BoxTree::BoxTree(std::vector<Box> boxes) : boxes_(std::move(boxes)), order_(boxes_.size())
{
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  if (!boxes_.empty()) Build(0, boxes_.size());
}

std::size_t BoxTree::Build(std::size_t first, std::size_t last)
{
  const std::size_t position = branches_.size();
  Branch            branch{boxes_[order_[first]], first, last, 0};
  Box               middles = branch.box;
  for (std::size_t k = 0; k < 3; ++k) middles.least[k] = middles.greatest[k] = MiddleOf(branch.box, k);
  for (std::size_t i = first + 1; i < last; ++i) {
    const Box& box = boxes_[order_[i]];
    for (std::size_t k = 0; k < 3; ++k) {
      branch.box.least[k]    = std::min(branch.box.least[k], box.least[k]);
      branch.box.greatest[k] = std::max(branch.box.greatest[k], box.greatest[k]);
      middles.least[k]       = std::min(middles.least[k], MiddleOf(box, k));
      middles.greatest[k]    = std::max(middles.greatest[k], MiddleOf(box, k));
    }
  }
  branches_.push_back(branch);
  if (last - first <= kLeafSize) return position;

  std::size_t axis = 0;
  for (std::size_t k = 1; k < 3; ++k)
    if (middles.greatest[k] - middles.least[k] > middles.greatest[axis] - middles.least[axis]) axis = k;
  const std::size_t half = first + (last - first) / 2;
  const auto        at   = [this](std::size_t i) { return order_.begin() + static_cast<std::ptrdiff_t>(i); };
  std::nth_element(at(first), at(half), at(last), [this, axis](std::size_t a, std::size_t b) {
    return std::pair(MiddleOf(boxes_[a], axis), a) < std::pair(MiddleOf(boxes_[b], axis), b);
  });
  Build(first, half);
  const std::size_t second   = Build(half, last);
  branches_[position].second = second;
  return position;
}

std::vector<std::size_t> BoxTree::FindHolding(const std::array<double, 3>& point) const
{
  std::vector<std::size_t> found;
  std::vector<std::size_t> open;
  if (!branches_.empty()) open.push_back(0);
  while (!open.empty()) {
    const std::size_t position = open.back();
    const Branch&     branch   = branches_[position];
    open.pop_back();
    if (!Holds(branch.box, point)) continue;
    if (branch.second != 0) {
      open.push_back(position + 1);
      open.push_back(branch.second);
      continue;
    }
    for (std::size_t i = branch.first; i < branch.last; ++i)
      if (Holds(boxes_[order_[i]], point)) found.push_back(order_[i]);
  }
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace quilon
