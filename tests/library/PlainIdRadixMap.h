#pragma once

/// @file
/// The id radix map written plainly: the reference that the tuned one is compared with, in results and in speed.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace quilon_test {

/// Depth by a table over the bit length, descent level by level from the root, no memory of the call before.
template <typename V>
class PlainIdRadixMap
{
public:
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

  std::size_t FindOrInsert(int id)
  {
    const auto bits  = static_cast<std::uint32_t>(id);
    const int  depth = Depth(bits);
    if (roots_[static_cast<std::size_t>(depth)] == -1) roots_[static_cast<std::size_t>(depth)] = AppendNode();
    std::int64_t node = roots_[static_cast<std::size_t>(depth)];
    for (int level = depth; level > 0; --level) {
      const std::size_t slot = Slot(node, bits, level);
      if (pool_[slot] == -1) {
        const std::int64_t child = AppendNode();
        pool_[slot]              = child;
      }
      node = pool_[slot];
    }
    const std::size_t slot = Slot(node, bits, 0);
    if (pool_[slot] == -1) {
      entries_.emplace_back(id, V());
      pool_[slot] = static_cast<std::int64_t>(entries_.size()) - 1;
    }
    return static_cast<std::size_t>(pool_[slot]);
  }

  std::size_t Find(int id) const
  {
    const auto   bits  = static_cast<std::uint32_t>(id);
    const int    depth = Depth(bits);
    std::int64_t word  = roots_[static_cast<std::size_t>(depth)];
    for (int level = depth; level >= 0; --level) {
      if (word == -1) return npos;
      word = pool_[Slot(word, bits, level)];
    }
    return word == -1 ? npos : static_cast<std::size_t>(word);
  }

  V&                                    At(std::size_t position) { return entries_[position].second; }
  const std::vector<std::pair<int, V>>& Entries() const { return entries_; }

  /// Positions by ascending unsigned id.
  std::vector<std::size_t> Traverse() const
  {
    std::vector<std::size_t> positions;
    for (int depth = 0; depth < 4; ++depth) TraverseNode(roots_[static_cast<std::size_t>(depth)], depth, positions);
    return positions;
  }

private:
  static int Depth(std::uint32_t bits)
  {
    static constexpr std::array<signed char, 33> kDepthOfBitLength = {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1,
                                                                      2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3};
    return kDepthOfBitLength[static_cast<std::size_t>(std::bit_width(bits))];
  }

  static std::size_t Slot(std::int64_t node, std::uint32_t bits, int level)
  {
    return static_cast<std::size_t>(node) + (bits >> (8 * level) & 0xFFu);
  }

  std::int64_t AppendNode()
  {
    pool_.resize(pool_.size() + 256, -1);
    return static_cast<std::int64_t>(pool_.size()) - 256;
  }

  void TraverseNode(std::int64_t node, int level, std::vector<std::size_t>& positions) const
  {
    if (node == -1) return;
    for (std::size_t i = 0; i < 256; ++i) {
      const std::int64_t word = pool_[static_cast<std::size_t>(node) + i];
      if (word == -1) continue;
      if (level > 0) {
        TraverseNode(word, level - 1, positions);
      } else {
        positions.push_back(static_cast<std::size_t>(word));
      }
    }
  }

  std::vector<std::pair<int, V>> entries_;
  std::vector<std::int64_t>      pool_;
  std::array<std::int64_t, 4>    roots_ = {-1, -1, -1, -1};
};

}  // namespace quilon_test
