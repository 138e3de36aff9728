#pragma once

/// @file
/// Local systems of a deck's orientations.

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace quilon::calculix {

struct DeckOrientation;

/// Unit vectors of a local system in global coordinates: axes[i] is its axis i.
using LocalAxes = std::array<std::array<double, 3>, 3>;

/// The axes as the solver takes them.
///
/// Rectangular: x' along a, z' normal to a and b, y' between them; then turned by the card's angle about the local axis
/// that it names, anticlockwise as seen from the axis's tip. Cylindrical: x' away from the axis through a and b, z'
/// along it, y' around it; the card has no angle.
/// @param point undeformed; a rectangular system is the same at all of them
/// @return nothing where the numbers give no system: a and b parallel or equal, a point on the axis
std::optional<LocalAxes> FindLocalAxes(const DeckOrientation& orientation, const std::array<double, 3>& point);

/// Turns a tensor xx, yy, zz, xy, yz, zx from local into global axes.
void TurnToGlobal(const LocalAxes& axes, std::span<double, 6> tensor);

/// Where the integration points of a solid lie.
/// @param frdType     type code of the .frd
/// @param coordinates shape [nodes, 3], nodes in the deck's order
/// @param points      receives shape [numPoints, 3]
/// @return false for an element whose points are not known
bool LocatePoints(int frdType, std::size_t numPoints, std::span<const double> coordinates, std::span<double> points);

}  // namespace quilon::calculix
