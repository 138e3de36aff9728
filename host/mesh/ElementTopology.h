#pragma once

/// @file
/// How the elements of a mesh are made of nodes: corners, middles and faces, by the type code of the .frd.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quilon {

/// A side of an element. Nodes are positions in the element's own list, from 0, in the order of decks.
struct ElementFace
{
  std::size_t                 numCorners = 0;   ///< 3 or 4
  std::array<std::uint8_t, 4> corners    = {};  ///< counter-clockwise, looked at from outside
  bool                        isCurved   = false;
  std::array<std::uint8_t, 4> middles    = {};  ///< of a curved face: between a corner and the next one
};

/// What a type code of the .frd stands for.
struct ElementTopology
{
  const char* name      = "";  ///< of the plainest type of a deck: "C3D20", "S8", "B32"
  std::size_t numNodes  = 0;
  int         dimension = 0;  ///< 3 solids, 2 shells and all that is plane, 1 beams and trusses

  /// Of a solid its sides, numbered as in decks less one. Of a shell the one face, with the nodes as they come. Of a
  /// beam none: its nodes follow one another along it.
  std::span<const ElementFace> faces = {};
};

/// @return null for a code that stands for no shape: 0 of springs, masses and the like, and codes that are not known
const ElementTopology* FindTopology(int frdType) noexcept;

/// @return the name of the plainest type of a deck with this shape, "C3D8"; "none" where there is no shape. A C3D20R
///         is a C3D20 here, and a CPS4 an S4: DeckTypes has their names.
const char* TypeNameOf(int frdType) noexcept;

}  // namespace quilon
