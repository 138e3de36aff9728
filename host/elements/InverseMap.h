#pragma once

/// @file
/// From places in space to places in elements.

#include <array>
#include <cstddef>
#include <optional>
#include <span>

#include "elements/ElementShape.h"

namespace quilon {

/// A box with sides along the axes.
struct Box
{
  std::array<double, 3> least    = {};
  std::array<double, 3> greatest = {};
};

/// A box that holds the whole element, however its edges are bent: shape functions of quadratic elements are negative
/// in places, so that the box of the nodes need not hold it. Straight elements have the box of their nodes.
/// @param coordinates shape [NumNodes(shape), 3]
Box BoundElement(ElementShape shape, std::span<const double> coordinates);

/// Finds the place in the element's own system that the isoparametric map takes to a point, by Newton's method from
/// several starts.
///
/// A point that is outside by no more than the reach has the place on the element's border that is next to it: decks
/// and result files round coordinates, so that a point of the surface lies a little to either side of it. Collapsed
/// elements and those that are turned inside out are mapped like any other.
/// @param coordinates shape [NumNodes(shape), 3]
/// @param reach       a length, 0 or more
/// @return a place within the element, nothing for a point that lies further out, and for one that is not finite
std::optional<std::array<double, 3>> FindLocalPlace(ElementShape shape, std::span<const double> coordinates,
                                                    const std::array<double, 3>& point, double reach);

}  // namespace quilon
