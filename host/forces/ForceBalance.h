#pragma once

/// @file
/// What element nodal forces tell of a model: balance at nodes, free bodies.

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "forces/ElementForces.h"
#include "forces/Resultant.h"

class FED_Database;

namespace quilon {

/// The balance of one node.
struct NodeBalance
{
  int    node     = 0;
  Vector elements = {};   ///< sum of the forces of its elements
  Vector external = {};   ///< what acts on it: load, reaction, or both (511)
  Vector residual = {};   ///< elements less external
  double largest  = 0.0;  ///< magnitude of the residual's largest component; infinite where a NaN stands

  template <typename Parcel>
  friend void Travel(Parcel& parcel, NodeBalance& balance)
  {
    parcel(balance.node, balance.elements, balance.external, balance.residual, balance.largest);
  }
};

/// Nodes that a deck ties to others in one way.
struct TiedNodes
{
  std::string how;  ///< "contact", "ties", "equations", ...
  std::size_t numNodes        = 0;
  int         worstNode       = 0;
  double      largestResidual = 0.0;  ///< what the ties exert, if the forces of elements are right

  template <typename Parcel>
  friend void Travel(Parcel& parcel, TiedNodes& tied)
  {
    parcel(tied.how, tied.numNodes, tied.worstNode, tied.largestResidual);
  }
};

/// The balance of a result.
struct ForceBalance
{
  std::vector<NodeBalance> nodes;                  ///< judged ones, worst first, equal ones by ascending id
  std::size_t              numJudged       = 0;    ///< all that were judged, however many stand in nodes
  Vector                   total           = {};   ///< of all element forces: zero but for rounding
  double                   largestForce    = 0.0;  ///< largest component that acts on a node or stands in a sum
  double                   largestResidual = 0.0;
  double                   limit           = 0.0;  ///< largest residual that is accepted
  std::size_t              numAbove        = 0;    ///< nodes with a larger one
  /// Nodes that cannot be judged: an element of theirs has no forces; nothing is known of what acts on them.
  std::size_t numIncomplete = 0;
  std::size_t numUnknown    = 0;
  /// Nodes that are judged apart, by how they are tied: what the solver prints as acting on them lacks, or holds,
  /// forces of contact and constraints.
  std::vector<TiedNodes> tied;

  bool IsJudged() const noexcept { return numJudged > 0; }
  bool Holds() const noexcept { return largestResidual <= limit; }

  /// @return the largest residual as a fraction of the largest force, or itself where there is no force
  double RelativeResidual() const noexcept
  {
    return largestForce > 0.0 ? largestResidual / largestForce : largestResidual;
  }

  template <typename Parcel>
  friend void Travel(Parcel& parcel, ForceBalance& balance)
  {
    parcel(balance.nodes, balance.numJudged, balance.total, balance.largestForce, balance.largestResidual,
           balance.limit, balance.numAbove, balance.numIncomplete, balance.numUnknown, balance.tied);
  }
};

/// The solver's RF at a node is what acts on it: the reaction of a support less the loads on it, a load where there is
/// no support. In dynamics it is without inertia.
/// @param step      its block of forces is read, with the node lists (595) and the reactions (511) of the same result
/// @param tolerance largest residual that is accepted, as a fraction of the largest force; how far forces may be off by
///                  rounded coordinates is accepted beyond it
/// @return the balance; no node is judged where no element has forces or no node RF
/// @throws FED_Failure when there are no reactions
ForceBalance CalculateBalance(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                              double tolerance, const std::string& name);

/// A part of the model, cut out.
struct FreeBody
{
  Resultant cut;    ///< at the nodes that it shares with the rest: what the rest exerts on it, and loads at these nodes
  Resultant other;  ///< at its other nodes: loads and reactions
  Resultant sum;    ///< of both: zero but for rounding

  template <typename Parcel>
  friend void Travel(Parcel& parcel, FreeBody& body)
  {
    parcel(body.cut, body.other, body.sum);
  }
};

/// @param part  element ids
/// @param about the point that moments are taken about
/// @throws FED_Failure when an element of the part is not in the mesh or has no forces
FreeBody CalculateFreeBody(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                           const std::set<int>& part, const Vector& about, const std::string& name);

}  // namespace quilon
