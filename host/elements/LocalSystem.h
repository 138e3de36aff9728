#pragma once

/// @file
/// Local systems: axes in which tensors and vectors of elements are given.

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace quilon {

/// A local system as a model states it.
struct Orientation
{
  enum System : int
  {
    Rectangular = 0,  ///< x' along a; y' in the plane of a and b, on b's side
    Cylindrical = 1   ///< a and b are points of the axis; x' radial, y' tangential, z' along the axis from a to b
  };

  System                system        = Rectangular;
  std::array<double, 3> a             = {};
  std::array<double, 3> b             = {};
  int                   rotationAxis  = 0;    ///< 1 to 3; 0 none
  double                rotationAngle = 0.0;  ///< degrees
};

/// Unit vectors of a local system in global coordinates: axes[i] is its axis i.
using LocalAxes = std::array<std::array<double, 3>, 3>;

/// The axes as the solver takes them.
///
/// Rectangular: x' along a, z' normal to a and b, y' between them; then turned by the stated angle about the local axis
/// that it names, anticlockwise as seen from the axis's tip. Cylindrical: x' away from the axis through a and b, z'
/// along it, y' around it; it has no angle.
/// @param point undeformed; a rectangular system is the same at all of them
/// @return nothing where the numbers give no system: a and b parallel or equal, a point on the axis
std::optional<LocalAxes> FindLocalAxes(const Orientation& orientation, const std::array<double, 3>& point);

/// Turns a tensor xx, yy, zz, xy, yz, zx from local into global axes.
void TurnToGlobal(const LocalAxes& axes, std::span<double, 6> tensor);

/// Turns a tensor xx, yy, zz, xy, yz, zx from global into local axes.
void TurnToLocal(const LocalAxes& axes, std::span<double, 6> tensor);

/// Turns a vector from global into local axes.
void TurnToLocal(const LocalAxes& axes, std::span<double, 3> vector);

/// Where the integration points of a solid lie.
/// @param frdType     type code of the .frd
/// @param coordinates shape [nodes, 3], nodes in the deck's order
/// @param points      receives shape [numPoints, 3]
/// @return false for an element whose points are not known
bool LocatePoints(int frdType, std::size_t numPoints, std::span<const double> coordinates, std::span<double> points);

}  // namespace quilon
