#pragma once

/// @file
/// What one side of a plane exerts on the other.

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "forces/ElementForces.h"
#include "forces/Resultant.h"

class FED_Database;

namespace quilon {

/// A plane through the model, where the nodes are in equilibrium: displaced in deformed geometry.
struct CutPlane
{
  Vector point  = {};  ///< that moments are taken about, too
  Vector normal = {};  ///< of any length but 0; points to the side that acts on the other
};

/// What the side that the normal points to exerts on the other.
struct PlaneCut
{
  Resultant        resultant;  ///< numNodes: nodes of the elements on the side that the normal points to
  std::vector<int> elements;   ///< that the plane passes, ascending

  template <typename Parcel>
  friend void Travel(Parcel& parcel, PlaneCut& cut)
  {
    parcel(cut.resultant, cut.elements);
  }
};

/// An element is passed by the plane when it has nodes on both sides. Its forces at the nodes on the normal's side are
/// what that side exerts on it, and through it on the rest. So the resultant is that of everything that acts on the
/// nodes of the normal's side, exactly: a load at such a node of a passed element counts for that side.
///
/// A node on the plane belongs to the normal's side: a plane between two elements passes the one behind it. Nodes are
/// on the plane within a millionth of the model's size and within the rounding of their coordinates.
///
/// @param part element ids that the cut is limited to; all without it
/// @throws FED_Failure when the plane passes no element, or one without forces, and for a part that is not in the mesh
PlaneCut CalculatePlaneCut(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                           const CutPlane& plane, const std::optional<std::set<int>>& part, const std::string& name);

}  // namespace quilon
