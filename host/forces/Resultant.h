#pragma once

/// @file
/// Sums of element nodal forces.

#include <cstddef>
#include <functional>

#include "elements/Vector.h"

class FED_Database;

namespace quilon {

struct ForceMesh;
struct ForceStep;

/// Force and moment at some nodes.
struct Resultant
{
  std::size_t numNodes = 0;
  Vector      force    = {};
  Vector      moment   = {};

  /// Adds a force and its moment. The number of nodes stays.
  /// @param arm   from the point that moments are taken about
  /// @param value shape [3]
  void Add(const Vector& arm, const double* value) noexcept;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, Resultant& resultant)
  {
    parcel(resultant.numNodes, resultant.force, resultant.moment);
  }
};

/// Adds a term of shape [3].
void AddTo(Vector& sum, const double* term) noexcept;

/// Visits the force of each node of each element that has forces, elements by ascending id.
/// @param step  its block of forces is read, and the node lists (595)
/// @param visit receives the element's position in the mesh, the node's position there, the force
void ForEachForce(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                  const std::function<void(std::size_t, std::size_t, const double*)>& visit);

}  // namespace quilon
