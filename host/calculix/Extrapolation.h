#pragma once

/// @file
/// From integration points to element nodes, as the solver does it.

#include <cstddef>
#include <span>
#include <string>
#include <utility>

namespace quilon::calculix {

/// How one element type carries values of its integration points to its nodes: corner nodes are weighted sums of the
/// points, a mid-side node is the mean of its two corners.
///
/// The weights are those of the shape functions of the points' own cell, taken at the corners:
///     C3D4, C3D8R        one point, the same at every node
///     C3D8, C3D20R       2 x 2 x 2 Gauss points (x fastest, then y, then z), trilinear; the solver rounds the weights
///                        to 2.549 (the node's own point), -0.683 (along an edge), 0.183 (across a face) and -0.04904
///                        (across the body), and so do we: the exact ones differ by up to 4e-5 of a field
///     C3D10              4 points in the order of the corners, linear: 1.92705 and -0.30902
/// A C3D8I cannot be told from a C3D8 by its results and goes by the same rule.
struct ExtrapolationRule
{
  const char*                          name;       ///< element type as decks name it
  int                                  frdType;    ///< type code of the .frd
  std::size_t                          numPoints;  ///< integration points that a .dat prints
  std::size_t                          numCorners;
  std::span<const double>              weights;  ///< shape [numCorners, numPoints]
  std::span<const std::pair<int, int>> edges;    ///< corners of mid-side nodes, in the deck's node order

  std::size_t NumNodes() const noexcept { return numCorners + edges.size(); }
};

/// @return the rule of elements of this type code with this many points, null when there is none
const ExtrapolationRule* FindExtrapolation(int frdType, std::size_t numPoints);

/// @param points shape [rule.numPoints, 6], in the solver's point order
/// @param nodes  receives shape [rule.NumNodes(), 6], nodes in the deck's order
void Extrapolate(const ExtrapolationRule& rule, std::span<const double> points, std::span<double> nodes);

/// @return a name for people: the deck's where type code and number of points tell it ("C3D20"), else a description
///         ("20-node brick with 50 points")
std::string DescribeElementType(int frdType, std::size_t numPoints);

}  // namespace quilon::calculix
