#pragma once

/// @file
/// Parts of a model: which records of a block a question is about.

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "mesh/Mesh.h"
#include "selection/Selection.h"

class FED_DataBlock;
class FED_Database;

namespace quilon {

struct NamedRecord;

/// A region as users describe it. What is in it is in all that is given here.
struct RegionOptions
{
  /// Records by their id, or by their index where a block has no ids: "1,5-9", "first", "last" of the block.
  std::string ids = {};
  /// Sets by name; in one of several. Kinds at nodes have the nodes of a node set and those of the elements of an
  /// element set, kinds at elements the elements of an element set. A name of both is the one or the other.
  std::vector<std::string> sets = {};
  /// Materials by name or number; of one of several. Elements of the material, and their nodes.
  std::vector<std::string> materials = {};
  /// x0, y0, z0, x1, y1, z1: nodes in it, its sides included, and elements whose centre, the mean of their nodes, is.
  std::optional<std::array<double, 6>> box = {};
  /// The nearest node of those that the rest leaves, of equally near ones the one of least id, and the elements that
  /// have it.
  std::optional<std::array<double, 3>> near = {};

  bool IsEverything() const noexcept { return ids.empty() && !HasPlace(); }
  /// Whether the mesh, sets or materials say what is in it.
  bool HasPlace() const noexcept { return !sets.empty() || !materials.empty() || box || near; }
  /// @return the options as they are written, for messages: "--set FIX --box 0,0,0,1,1,1"
  std::string ToString() const;
};

/// The records of one block that are in a region. Valid as long as the region.
class RegionFilter
{
public:
  bool Holds(int id) const noexcept;

private:
  friend class Region;
  const IdPositions*       ids_ = nullptr;  // null: any
  std::vector<NumberRange> ranges_;         // of numbers alone; empty: any
};

/// A region of a database. Coordinates are undeformed; each iteration has a mesh and sets of its own.
class Region
{
public:
  /// @param database borrowed
  /// @param name     of the database, for messages
  /// @throws FED_Failure for ids that are no number ranges and a box whose first corner is not the lesser one
  Region(const FED_Database& database, RegionOptions options, std::string name);
  Region(const Region&)            = delete;
  Region& operator=(const Region&) = delete;
  ~Region();

  const RegionOptions& GetOptions() const noexcept { return options_; }
  bool                 IsEverything() const noexcept { return options_.IsEverything(); }

  /// @return whether the block can be asked: of nodes or elements where the mesh, sets or materials say what is in it
  bool AppliesTo(const FED_DataDescriptor& block) const;

  /// @return whether the region is of nodes alone: none of its sets is of elements
  bool IsOfNodesAlone(int iteration);

  /// @throws FED_Failure for a block that cannot be asked, a set or material that is not there, and where no node or
  ///         element is in the region
  RegionFilter FilterOf(const FED_DataBlock& block);

  /// @return ids, or indices where there are no ids, of the block's records in the region, ascending
  std::vector<int> IdsOf(const FED_DataBlock& block);

  /// @return ids of all nodes or elements of the iteration in the region, ascending; --ids are theirs
  /// @throws FED_Failure as FilterOf()
  std::vector<int> NodesOf(int iteration);
  std::vector<int> ElementsOf(int iteration);

  /// @throws FED_Failure for an id that was asked for by its number alone and that none of the blocks has
  /// @param selection its text, for the message
  void RequireIds(const std::vector<FED_DataDescriptor>& blocks, const std::string& selection) const;

  /// Says that no record is in the region. @throws FED_Failure always
  [[noreturn]] void FailEmpty(const std::string& selection) const;

  /// What the user is to know of the filters that were made: which node is the nearest, and how near.
  const std::vector<std::string>& GetNotes() const noexcept { return notes_; }
  /// Where others made filters of the same region, too: what is to be known of all.
  void SetNotes(std::vector<std::string> notes) { notes_ = std::move(notes); }

  /// @return the mesh of an iteration, read once
  const Mesh& GetMesh(int iteration);
  /// @return the sets of an iteration, read once
  const std::vector<NamedSet>& GetSets(int iteration);

private:
  enum Entity : bool
  {
    Nodes,
    Elements
  };
  struct Iteration;
  struct SetsOfName
  {
    const NamedSet* ofNodes    = nullptr;
    const NamedSet* ofElements = nullptr;
  };

  Iteration&         At(int iteration);
  const IdPositions& Members(int iteration, Entity entity);
  SetsOfName         FindSets(int iteration, const std::string& name);
  std::set<int>      FindMaterials(const std::string& name, const std::vector<NamedRecord>& names,
                                   const std::set<int>& there) const;
  std::vector<int>   InSets(int iteration, Entity entity);
  std::vector<int>   InMaterials(int iteration, Entity entity);
  std::vector<int>   InBox(int iteration, Entity entity);
  std::vector<int>   NearPoint(int iteration, Entity entity, const std::optional<std::vector<int>>& nodes,
                               const std::optional<std::vector<int>>& elements);
  /// What sets, materials and the box leave; nothing: everything.
  std::optional<std::vector<int>> BeforeNear(int iteration, Entity entity);
  std::string                     DescribeIds(const std::vector<FED_DataDescriptor>& blocks) const;
  std::vector<int>                KeepAsked(std::vector<int> ids) const;
  std::string                     DescribeExtent(int iteration);

  const FED_Database&                       database_;
  RegionOptions                             options_;
  std::string                               name_;
  std::vector<NumberRange>                  ranges_;  // of ids
  std::map<int, std::unique_ptr<Iteration>> iterations_;
  std::vector<std::string>                  notes_;
};

/// @return whether one of the blocks has a record in the region
bool HoldsRecords(Region& region, const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks);

/// Adds the notes of `more` that are not among `notes` yet, in their order.
void AddNotes(std::vector<std::string>& notes, const std::vector<std::string>& more);

/// The least box, its sides along the axes, that holds all nodes.
struct MeshBox
{
  Mesh::Point least;
  Mesh::Point greatest;
};

/// @return nothing for a mesh without nodes
std::optional<MeshBox> BoxOf(const Mesh& mesh);

/// @return the ids of the nodes of these elements, ascending, each once
std::vector<int> NodesOfElements(const Mesh& mesh, const std::vector<int>& elements);

/// @return the centre of an element, the mean of its nodes; nothing for one without any
std::optional<Mesh::Point> CentreOf(const Mesh& mesh, const Mesh::Element& element);

}  // namespace quilon
