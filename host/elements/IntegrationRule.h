#pragma once

/// @file
/// From stresses at integration points to forces at an element's nodes.

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "elements/ElementShape.h"

namespace quilon {

/// The integration points of one element type, as the solver has them: their places, weights and order.
///
///     C3D4            1 point, the centre
///     C3D10           4 points, each near the corner of its number
///     C3D6            2 points, on the axis
///     C3D15           9 points: three near the corners of each of three triangles, lowest first
///     C3D8, C3D20R    2 x 2 x 2 Gauss points, x fastest, then y, then z
///     C3D20           3 x 3 x 3, in the same order
///     C3D8I           as C3D8. In geometrically nonlinear steps its points move with incompatible modes that no
///                     output tells of; there it has no rule (the forces of C3D8 are off by one part in a thousand)
///
/// A C3D8R is kept from its zero-energy modes by forces that no stress tells of: it has no rule.
struct IntegrationRule
{
  struct Point
  {
    std::array<double, 3> local;
    double                weight;
  };

  const char*        name;  ///< element type as decks name it
  int                frdType;
  ElementShape       shape;
  bool               holdsDeformed;  ///< whether it holds in geometrically nonlinear steps
  std::vector<Point> points;
  /// Of the shape functions, by local coordinates; shape [points.size(), NumNodes(shape), 3].
  std::vector<double> derivatives;
};

/// @return the rule of an element type of decks ("C3D20R"), null when there is none
const IntegrationRule* FindIntegrationRule(std::string_view name);

/// @return the rule of elements of this .frd type code with this many points, null when there is none; a C3D8I looks
///         like a C3D8
const IntegrationRule* FindIntegrationRule(int frdType, std::size_t numPoints);

/// Nodal forces of one element in equilibrium with its stresses: f = sum over points of w |J| B^T sigma.
/// With |J| times the inverse of J as J's cofactors the sum never divides, and a flat element has forces too.
/// @param coordinates shape [nodes, 3], of the undeformed element in linear steps, of the deformed one else
/// @param stress      shape [points, 6]: xx, yy, zz, xy, yz, zx in global axes
/// @param forces      receives shape [nodes, 3]
/// @return whether the volume is positive at every point: the nodes of other elements are out of order
bool CalculateNodalForces(const IntegrationRule& rule, std::span<const double> coordinates,
                          std::span<const double> stress, std::span<double> forces);

/// How far nodal forces may be off, to first order, when every coordinate may be off by its own amount.
/// @param tolerance shape [nodes, 3], of the coordinates, each 0 or more
/// @param bounds    receives shape [nodes, 3]
void BoundForceErrors(const IntegrationRule& rule, std::span<const double> coordinates, std::span<const double> stress,
                      std::span<const double> tolerance, std::span<double> bounds);

}  // namespace quilon
