#pragma once

/// @file
/// A mesh and its results as points, cells and arrays, for writers of any format.

#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "export/ExportGroups.h"
#include "export/ExportPlan.h"
#include "mesh/Mesh.h"

namespace quilon {

/// Points are nodes by ascending id; where averages of groups are points, those of each group one behind the other,
/// elements of no group first, so that a node is a point for every group that it is in. Cells are elements by ascending
/// id.
///
/// Memory: the mesh and one array, whatever the number of steps.
class GridSource
{
public:
  enum class Type
  {
    UInt8,
    Int32,
    Float64
  };

  /// An array as writers see it.
  struct Array
  {
    std::string              name;
    bool                     ofCells = false;
    Type                     type    = Type::Float64;
    std::vector<std::string> components;       ///< one of a scalar
    bool                     isStatic = true;  ///< one and the same in all steps
  };

  /// @param database borrowed, as is the rest; the mesh is of the plan's blocks
  /// @throws FED_Failure where averages of groups are to be points and nobody knows the groups' elements
  GridSource(const FED_Database& database, const Mesh& mesh, const std::vector<NamedSet>& sets, const ExportPlan& plan,
             const ExportGroups& groups);

  std::size_t NumPoints() const noexcept { return pointNodes_.size(); }
  std::size_t NumCells() const noexcept { return mesh_.NumElements(); }
  std::size_t NumConnectivity() const noexcept { return connectivity_.size(); }
  /// At least 1: a mesh without results is one step.
  std::size_t       NumSteps() const noexcept { return plan_.steps.empty() ? 1 : plan_.steps.size(); }
  const ExportPlan& Plan() const noexcept { return plan_; }

  /// Shape [points, 3].
  std::vector<double> Points() const;
  /// Shape [cells].
  const std::vector<std::uint8_t>& CellTypes() const noexcept { return cellTypes_; }
  /// Points of the cells in the order of VTK, one cell behind the other.
  const std::vector<std::int64_t>& Connectivity() const noexcept { return connectivity_; }
  /// Shape [cells + 1]: where the points of a cell begin and end.
  const std::vector<std::int64_t>& Offsets() const noexcept { return offsets_; }

  /// Ids, materials and sets first.
  const std::vector<Array>& Arrays() const noexcept { return arrays_; }
  /// @return the plan's array; null for ids, materials and sets
  const ExportArray* FieldOf(std::size_t array) const noexcept
  {
    return array < numOwn_ + sets_.size() ? nullptr : &plan_.arrays[array - numOwn_ - sets_.size()];
  }
  /// @return whether a step has any values for the array
  bool HasValues(std::size_t array, std::size_t step) const;
  /// @return values of the array's type, shape [points or cells, components], valid until the next call; nan where
  ///         there are none
  std::span<const std::byte> Read(std::size_t array, std::size_t step);

  /// Nodes and elements that have values and are not in the mesh, of what has been read.
  const std::set<int>& NodesWithout() const noexcept { return nodesWithout_; }
  const std::set<int>& ElementsWithout() const noexcept { return elementsWithout_; }

private:
  void MakePoints(const ExportGroups& groups);
  void MakeCells(const ExportGroups& groups);
  void ListArrays();
  void ReadOwn(std::size_t array);
  void ReadSet(const NamedSet& set);
  void ReadField(const ExportArray& array, std::size_t step);
  void ReadSource(const ExportArray& array, const ExportArray::Source& source, std::vector<double>& values);

  template <typename T>
  std::span<const std::byte> Bytes(const std::vector<T>& values) const
  {
    return std::as_bytes(std::span(values));
  }

  const FED_Database&          database_;
  const Mesh&                  mesh_;
  const std::vector<NamedSet>& sets_;
  const ExportPlan&            plan_;
  bool                         isSplit_ = false;  // a point for each group of a node
  std::vector<std::size_t>     pointNodes_;       // position of the node of a point
  std::vector<int>             pointGroups_;      // where points are split
  std::vector<std::uint8_t>    cellTypes_;
  std::vector<std::int64_t>    connectivity_;
  std::vector<std::int64_t>    offsets_;
  std::vector<Array>           arrays_;
  std::size_t                  numOwn_ = 0;  // arrays before the sets
  std::vector<int>             integers_;
  std::vector<std::uint8_t>    flags_;
  std::vector<double>          values_;
  std::vector<double>          nodeValues_;
  std::set<int>                nodesWithout_;
  std::set<int>                elementsWithout_;
};

}  // namespace quilon
