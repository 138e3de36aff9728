#include "calculix/ElementExpansion.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace quilon::calculix {

namespace {

// Type codes of the .frd.
constexpr int kBrick8  = 1;
constexpr int kWedge6  = 2;
constexpr int kBrick20 = 4;
constexpr int kWedge15 = 5;

constexpr int kNodesOfLayer   = 3;  // that the solver makes of one node of a shell
constexpr int kNodesOfSection = 8;  // that the solver makes of one node of a beam, four corners first

/// Nodes of a brick around its section at one end of the beam, corners first, then the middles between them.
constexpr std::array<std::array<std::size_t, 8>, 2> kSections{
    {{0, 3, 7, 4, 11, 19, 15, 16}, {1, 2, 6, 5, 9, 18, 13, 17}}};
/// Those in the middle between both.
constexpr std::array<std::size_t, 4> kMiddle{8, 10, 14, 12};

/// @param numCorners of a triangle or quadrangle
bool IsLayer(std::span<const int> nodes, std::size_t numCorners, bool isQuadratic,
             const std::function<bool(int)>& isNode)
{
  for (std::size_t i = 0; i < numCorners; ++i) {
    const std::int64_t lower = nodes[i];
    if (nodes[numCorners + i] != lower + 2) return false;
    if (isQuadratic) {
      const bool isMiddle  = nodes[4 * numCorners + i] == lower + 1;
      const bool isAtSides = nodes[3 * numCorners + i] == std::int64_t{nodes[2 * numCorners + i]} + 2;
      if (!isMiddle || !isAtSides) return false;
    } else if ((lower - nodes[0]) % kNodesOfLayer != 0 || isNode(static_cast<int>(lower + 1))) {
      // Three to each node: with odd ids alone, two apart and nothing between, a solid is one all the same.
      return false;
    }
  }
  return true;
}

bool IsRun(std::span<const int> nodes, std::span<const std::size_t> places)
{
  for (std::size_t i = 1; i < places.size(); ++i)
    if (nodes[places[i]] != nodes[places[0]] + static_cast<std::int64_t>(i)) return false;
  return true;
}

bool IsBeam(std::span<const int> nodes, bool isQuadratic, const std::function<bool(int)>& isNode)
{
  if (std::abs(std::int64_t{nodes[kSections[0][0]]} - nodes[kSections[1][0]]) < kNodesOfSection) return false;
  for (const auto& section : kSections) {
    if (!IsRun(nodes, std::span(section).first(isQuadratic ? 8 : 4))) return false;
    // A column of bricks may be numbered around its sections too, but then nothing is left out.
    for (int middle = 4; !isQuadratic && middle < kNodesOfSection; ++middle)
      if (isNode(static_cast<int>(std::int64_t{nodes[section[0]]} + middle))) return false;
  }
  return !isQuadratic || IsRun(nodes, kMiddle);
}

}  // namespace

Expansion FindExpansion(int frdType, std::span<const int> nodes, const std::function<bool(int)>& isNode)
{
  const bool        isQuadratic = frdType == kBrick20 || frdType == kWedge15;
  const bool        isBrick     = frdType == kBrick8 || frdType == kBrick20;
  const bool        isWedge     = frdType == kWedge6 || frdType == kWedge15;
  const std::size_t numCorners  = isBrick ? 4 : 3;
  if ((!isBrick && !isWedge) || nodes.size() != (isQuadratic ? 5 : 2) * numCorners) return Expansion::None;
  if (IsLayer(nodes, numCorners, isQuadratic, isNode)) return Expansion::Layer;
  return isBrick && IsBeam(nodes, isQuadratic, isNode) ? Expansion::Beam : Expansion::None;
}

}  // namespace quilon::calculix
