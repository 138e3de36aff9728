#pragma once

/// @file
/// Element nodal forces from stresses of integration points.

#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <QuilonDbConnector/FED_DataDescriptor.h>

#include "FEM_IforceData.h"
#include "forces/ForceMesh.h"

class FED_Database;
class FED_DataBlock;

namespace quilon {

/// @return the descriptor of another kind at the same step
FED_DataDescriptor WithKind(FED_DataDescriptor descriptor, int onf);

struct IntegrationRule;

/// Name of the user kind that keeps stresses in local systems.
inline constexpr const char* kLocalStresses = "S in local systems";

/// Elements that have no forces, by reason.
using SkippedElements = std::map<std::string, std::set<int>>;

/// The forces of one result.
struct ForceStep
{
  FED_DataDescriptor forces;               ///< of the block written (580)
  bool               deformed    = false;  ///< whether they are of the deformed geometry
  std::size_t        numElements = 0;      ///< with forces
  std::vector<bool>  hasForces;            ///< by position in the mesh's elements
  /// Where the nodes are in equilibrium, by position in the mesh's nodes: displaced in deformed geometry.
  std::vector<std::array<double, 3>> positions;
  /// Largest component of a node's sum, and how far a component may be off at most by the rounding of coordinates and,
  /// in deformed geometry, of displacements.
  double largestSum = 0.0;
  double errorBound = 0.0;

  SkippedElements skipped;  ///< elements that have no forces in this result

  /// What a result tells; the geometry stays behind.
  template <typename Parcel>
  friend void Travel(Parcel& parcel, ForceStep& step)
  {
    parcel(step.forces, step.deformed, step.numElements, step.largestSum, step.errorBound, step.skipped);
  }
};

/// Integrates nodal forces result by result and saves them as element forces (580). Value 3 k + c of an element belongs
/// to the node at position k of its node list (595), which is written where the database has none.
///
/// One FEM_IforceData serves all results: it holds the layout of every element of the mesh from the start, so that the
/// node lists that the first result writes are complete, whatever elements that result has. It knows a node of an
/// element once; an element that names a node twice, as a brick that is collapsed to a wedge, is saved beside it, with
/// a force for each of its places.
///
/// Elements that have no rule whatever their stresses are (shells, beams, springs) take no part. The database may have
/// them with other nodes than the deck: those of the solid that the solver has expanded them to. Without a deck it is
/// the numbers of their nodes that tell such elements.
class ElementForces
{
public:
  /// @param database borrowed
  /// @param mesh     borrowed
  /// @param name     where the mesh comes from, for messages
  /// @throws FED_Failure when an element has other nodes, or more, in the database's node lists than in the mesh
  ElementForces(FED_Database& database, const ForceMesh& mesh, int iteration, std::string name);

  /// Forces of all elements that have stresses and a rule. A block of forces that was there before is replaced.
  /// @param points   of the block of stresses (582)
  /// @param deformed whether the result is of a geometrically nonlinear step: then the displacements (510) of the same
  ///                 result move the nodes
  /// @throws FED_Failure when displacements are needed and there are none
  ForceStep Calculate(const FED_DataDescriptor& points, bool deformed);

  /// @return whether the database gets node lists that it did not have
  bool AddsNodeLists() const noexcept { return addsNodeLists_; }

private:
  /// What is known of an element before its stresses are.
  enum class Nature : unsigned char
  {
    Plain,
    Collapsed,      ///< names a node twice
    OfNoRule,       ///< its type in the deck has no rule
    ExpandedLayer,  ///< solid that was a shell or plane element
    ExpandedBeam    ///< solid that was a beam
  };

  /// Scratch memory of one element.
  struct Buffers
  {
    std::vector<double> coordinates, stress, forces, tolerance, bounds;
  };

  Nature                 FindNature(const ForceMesh::Element& element) const;
  void                   LayOut();
  void                   CheckNodeLists();
  void                   PlaceNodes(const FED_DataDescriptor& points, ForceStep& step);
  const IntegrationRule* FindRule(int id, const ForceMesh::Element& element, const ForceStep& step);
  bool                   TakeCoordinates(int id, const ForceMesh::Element& element, const ForceStep& step);
  void AddForces(int id, const ForceMesh::Element& element, const IntegrationRule& rule, bool isCollapsed);
  void Skip(const std::string& reason, int id) { skipped_[reason].insert(id); }
  bool SkipWithoutRule(int id, const ForceMesh::Element& element, Nature nature);
  void SkipWithoutStress(const FED_DataDescriptor& points, const std::vector<bool>& hasStress);
  void SkipForeign(const FED_DataBlock& block);
  void SumUp(ForceStep& step);
  void SaveApart(const ForceStep& step);

  FED_Database&                      database_;
  const ForceMesh&                   mesh_;
  std::string                        name_;
  FED_DataDescriptor                 lists_;  // of the node lists
  FEM_IforceData                     gathered_;
  SkippedElements                    skipped_;  // in the result that is being calculated
  Buffers                            buffers_;
  std::vector<std::array<double, 3>> sums_;       // of forces, by position in the mesh's nodes
  std::vector<std::array<double, 3>> bounds_;     // of errors, likewise
  std::vector<bool>                  isPlaced_;   // by position in the mesh's nodes
  std::vector<Nature>                natures_;    // by position in the mesh's elements
  std::map<int, std::vector<double>> collapsed_;  // forces of collapsed elements, by element
  bool                               addsNodeLists_ = true;
};

}  // namespace quilon
