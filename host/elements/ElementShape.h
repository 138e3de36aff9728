#pragma once

/// @file
/// Shape functions of solid elements.

#include <array>
#include <cstddef>
#include <optional>
#include <span>

#include "elements/ElementEdges.h"

namespace quilon {

/// Isoparametric solids, nodes in the order of the solver's decks.
///
/// Bricks live in [-1, 1]^3. Tetrahedra have their corners at the origin and at one along each axis. Wedges have the
/// triangle (0, 0), (1, 0), (0, 1) times [-1, 1]. Quadratic bricks and wedges are of the serendipity family.
/// Formulas: O. C. Zienkiewicz, R. L. Taylor, The Finite Element Method, vol. 1, 5th ed., 2000, ch. 8.
enum class ElementShape
{
  Tet4,
  Tet10,
  Wedge6,
  Wedge15,
  Brick8,
  Brick20
};

std::size_t NumNodes(ElementShape shape) noexcept;

/// @param frdType type code of the .frd, 1 to 6 of solids
/// @return nothing for the type of another element
std::optional<ElementShape> FindShape(int frdType) noexcept;

/// @return the two corners of each edge; in a quadratic shape its middle is node 8 and on of bricks, 6 and on of
///         wedges, 4 and on of tetrahedra, in the same order
std::span<const ElementEdge> EdgesOf(ElementShape shape) noexcept;

/// @param local       coordinates in the element's own system
/// @param values      receives shape [NumNodes()]
/// @param derivatives receives shape [NumNodes(), 3], by the local coordinates
void EvaluateShape(ElementShape shape, const std::array<double, 3>& local, std::span<double> values,
                   std::span<double> derivatives);

/// @return where a node lies in the element's own system
/// @param node 0 <= node < NumNodes()
std::array<double, 3> LocalPosition(ElementShape shape, std::size_t node) noexcept;

/// @param face from 1, as decks number faces: 6 of bricks, 5 of wedges, 4 of tetrahedra; others have no node
bool IsOnFace(ElementShape shape, std::size_t node, int face) noexcept;

}  // namespace quilon
