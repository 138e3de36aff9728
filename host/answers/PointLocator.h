#pragma once

/// @file
/// Which solid holds a point, and what its nodes weigh there.

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "elements/BoxTree.h"

namespace quilon {

class Mesh;

/// Finds points in the solids of a mesh, undeformed. Shells, beams and springs hold no points.
///
/// A point on a face, an edge or a node is in several elements: the one with the least id has it, whatever the order of
/// the mesh. A point within GetReach() of an element counts as on its border, because coordinates are rounded.
class PointLocator
{
public:
  static constexpr std::size_t kMostNodes = 20;

  struct Place
  {
    std::size_t                    element = 0;   ///< position in Mesh::Elements()
    std::array<double, kMostNodes> weights = {};  ///< values of the shape functions, as many as the element has nodes

    /// @param values shape [nodes of the element, numValues]
    /// @param result receives shape [numValues]
    void Interpolate(std::span<const double> values, std::span<double> result) const;
  };

  /// @param mesh     borrowed
  /// @param elements ids, ascending, of those that hold points; null: all
  explicit PointLocator(const Mesh& mesh, const std::vector<int>* elements = nullptr);

  /// @return nothing for a point outside of all solids
  std::optional<Place> Find(const std::array<double, 3>& point) const;

  /// A millionth of the diagonal of the box of all nodes.
  double GetReach() const noexcept { return reach_; }
  /// @return whether there is a solid
  bool HasSolids() const noexcept { return !solids_.empty(); }
  /// The solids that hold points: positions in Mesh::Elements(), ascending.
  const std::vector<std::size_t>& Solids() const noexcept { return solids_; }

private:
  const Mesh&              mesh_;
  double                   reach_ = 0.0;
  std::vector<std::size_t> solids_;  // positions in Mesh::Elements(), ascending
  BoxTree                  boxes_;   // of solids_
};

}  // namespace quilon
