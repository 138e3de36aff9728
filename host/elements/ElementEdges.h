#pragma once

/// @file
/// Corners and edges of the solid elements, in the deck's order of nodes.

#include <array>
#include <cstddef>
#include <utility>

namespace quilon {

/// The two corners, counted from 0, that a mid-side node lies between; edges stand in the order of these nodes.
using ElementEdge = std::pair<std::size_t, std::size_t>;

/// Corners of the brick [-1, 1]^3.
inline constexpr std::array<std::array<double, 3>, 8> kBrickCorners = {
    {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1}, {-1, -1, 1}, {1, -1, 1}, {1, 1, 1}, {-1, 1, 1}}};

inline constexpr std::array<ElementEdge, 12> kBrickEdges = {
    {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}}};
inline constexpr std::array<ElementEdge, 9> kWedgeEdges = {
    {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}}};
inline constexpr std::array<ElementEdge, 6> kTetEdges = {{{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}}};

}  // namespace quilon
