#pragma once

/// @file
/// From integration points to element nodes, as the solver does it.

#include <cstddef>
#include <span>
#include <string>

#include "elements/ElementEdges.h"

namespace quilon {

/// How one element type carries values of its integration points to its nodes: a node is a weighted sum of the points,
/// or the mean of two nodes that are.
///
/// The weights were found by fitting nodal values that the solver printed to its point values. They have five figures
/// because the solver's have: exact ones differ by up to 4e-5 of a field. Points run x fastest, then y, then z.
///     C3D4, C3D8R          1 point: the same at every node
///     C3D8, C3D8I, C3D20R  2 x 2 x 2 Gauss points: trilinear, at the corners 2.549 (the node's own point), -0.683
///                          (along an edge), 0.183 (across a face) and -0.04904 (across the body)
///     C3D10                4 points in the order of the corners: linear, 1.92705 and -0.30902
///     C3D6                 2 points, one above the other: linear as if they lay at +-sqrt(3/5), 1.1455 and -0.1455.
///                          Nodes 1, 3 and 5 are taken for the bottom and the others for the top, which they are not;
///                          the solver's own nodal values are so, and ours are read beside them
///     C3D15                3 layers of 3 points in the order of the corners: linear within a layer (5/3, -1/3), a
///                          straight line of least squares through the layers (1/3 +- sqrt(5/12), 1/3)
///     C3D20                3 x 3 x 3 Gauss points: the shape functions of the element itself, fitted to the points
///                          by least squares; mid-side nodes have weights of their own
/// Mid-side nodes of the others are means of their two corners. Beams that the solver prints with the points of a C3D20
/// go by its rule.
struct ExtrapolationRule
{
  const char*                  name;         ///< element type as decks name it
  int                          frdType;      ///< type code of the .frd
  std::size_t                  numPoints;    ///< integration points that a .dat prints
  std::size_t                  numWeighted;  ///< nodes with weights: the corners, in a C3D20 all
  std::span<const double>      weights;      ///< shape [numWeighted, numPoints]
  std::span<const ElementEdge> edges;        ///< corners of the other nodes, in the deck's node order

  std::size_t NumNodes() const noexcept { return numWeighted + edges.size(); }
};

/// @return the rule of elements of this type code with this many points, null when there is none
const ExtrapolationRule* FindExtrapolation(int frdType, std::size_t numPoints);

/// @param points shape [rule.numPoints, 6], in the solver's point order
/// @param nodes  receives shape [rule.NumNodes(), 6], nodes in the deck's order
void Extrapolate(const ExtrapolationRule& rule, std::span<const double> points, std::span<double> nodes);

/// @return a name for people: the rule's where there is one ("C3D20"), else a description such as
///         "20-node brick with 50 points"
std::string DescribeElementType(int frdType, std::size_t numPoints);

}  // namespace quilon
