#pragma once

/// @file
/// Elements as the cells of VTK.

#include <cstddef>
#include <cstdint>
#include <span>

namespace quilon {

/// @param frdType type code of an element, see Mesh::Element
/// @return the number by which VTK knows a cell of this shape. Without a shape: a point, a line or points, by the
///         number of nodes; an empty cell without nodes
std::uint8_t VtkCellType(int frdType, std::size_t numNodes) noexcept;

/// VTK counts the nodes of wedges from the other end, or they were inside out, and the middle of a beam last.
/// @return the order of nodes in VTK as positions in that of decks; empty where both are the same
std::span<const std::uint8_t> VtkNodeOrder(int frdType) noexcept;

}  // namespace quilon
