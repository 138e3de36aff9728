#pragma once

/// @file
/// Elements of results that the solver has made of others.

#include <functional>
#include <span>

namespace quilon::calculix {

/// What the solver has expanded to a solid.
enum class Expansion
{
  None,
  Layer,  ///< shells, membranes, plane and axisymmetric elements
  Beam    ///< beams and trusses
};

/// The solver numbers the nodes that it makes of one node one behind the other: lower, middle and upper one of a layer,
/// four corners and four middles around the section of a beam. A quadratic element shows all of them, a linear one
/// leaves middles out, which are then no nodes of the results at all.
/// @param frdType type code of the .frd
/// @param nodes   in the deck's order
/// @param isNode  whether the results have a node of this id
/// @return what the element's node numbers tell
Expansion FindExpansion(int frdType, std::span<const int> nodes, const std::function<bool(int)>& isNode);

}  // namespace quilon::calculix
