#pragma once

/// @file
/// Stresses through a wall as membrane, bending and peak.

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace quilon {

/// What a stress along a straight line through a wall is made of. Each is a tensor: xx, yy, zz, xy, yz, zx.
///
/// With t the length of the line, x along it from 0 to t, and every component by itself,
///
///     membrane          m = 1/t   integral of s(x) dx
///     bending           b = 6/t^2 integral of s(x) (t/2 - x) dx at the start, -b at the end, linear in between
///     membrane-bending  m + b at the start, m - b at the end
///     peak              s(0) - m - b at the start, s(t) - m + b at the end
///
/// The straight line m + b (1 - 2 x / t) has the resultant force and moment of s, and the peak has neither. Source:
/// ASME Boiler and Pressure Vessel Code, Section VIII, Division 2, Annex 5-A, method by stress integration; W. C.
/// Kroenke, Classification of finite element stresses according to ASME Section III stress categories, Pressure Vessels
/// and Piping, ASME, 1974. All six components are linearized; codes leave the bending of some of them (through the
/// wall) out.
struct LinearizedStress
{
  using Tensor = std::array<double, 6>;

  Tensor membrane             = {};
  Tensor bendingStart         = {};
  Tensor bendingEnd           = {};
  Tensor membraneBendingStart = {};
  Tensor membraneBendingEnd   = {};
  Tensor peakStart            = {};
  Tensor peakEnd              = {};
};

/// Fewest points of a line that is linearized.
inline constexpr std::size_t kFewestLinearized = 3;

/// Weights of an integral over [0, 1] from values at points of equal distance: Simpson's rule where the number of
/// intervals is even; where it is odd, the last three are integrated by the three-eighths rule. Both are exact for
/// cubics, and the integrals above for stresses that are parabolas.
/// @param numPoints at least kFewestLinearized
std::vector<double> QuadratureWeights(std::size_t numPoints);

/// @param tensors shape [points, 6], at points of equal distance from the start of the line to its end, at least
///                kFewestLinearized
LinearizedStress Linearize(std::span<const double> tensors);

}  // namespace quilon
