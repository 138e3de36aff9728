#pragma once

/// @file
/// Internal forces and moments of elements, gathered while results are read.

#include "quilon_language.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "FillLog.h"
#include "IdRadixMap.h"
#include "quilon_export.h"

class FED_Database;
class FED_DataDescriptor;
class FED_IntArray;

/// Gathers, per element and node of that element, a force and a moment vector. Fill it with the `Insert...` and
/// `Set...` operations while reading results, write it with Save(), then NullifyVecData() for the next result step of
/// the same elements or Clear() for other ones.
///
/// Values:   each component is a running sum with the number of contributions. `Insert...` and `Set...` both add;
///           they differ only in that `Set...` never creates an element or a node.
/// Units:    those of the values.
/// Ids:      elements and nodes, any int. Elements ascend as unsigned 32-bit, so negative ids come last. Nodes of an
///           element keep the order of their first contribution to it: their position, from 0.
/// Range:    a component is 0, 1 or 2 and a vector Force or Moment; neither is checked, and other values are undefined
///           behaviour. At most 2147483647 contributions to a component.
/// Memory:   32 bytes per component pair, room for four nodes per element from the start or for as many as the element
///           before had, an IdRadixMap over the elements, and from the second fill on 16 bytes per call.
/// Failures: a failed allocation passes through as std::bad_alloc; the object then holds exactly the contributions that
///           were complete. InsertVector() and InsertVectors() are complete or leave no trace.
/// Threads:  one thread fills an object. Several may save it once filling has ended: const members write nothing.
class QUILON_EXPORT FEM_IforceData
{
public:
  /// The vectors of a node.
  enum VecData : int
  {
    Force  = 0,
    Moment = 1
  };

  /// What is reported for a component. Any other value reports the sum.
  enum MultiValueOperation : int
  {
    Sum     = 0,
    Average = 1,  ///< sum / count, 0.0 without a contribution
    Zero    = 2   ///< 0.0, whatever was gathered
  };

  FEM_IforceData();
  /// Copies are deep.
  FEM_IforceData(const FEM_IforceData& other);
  /// Copies the elements, so the source keeps them and this may throw; takes the element-to-node sets and the
  /// missing ids over, which leaves the source without them.
  FEM_IforceData(FEM_IforceData&& other);
  /// When the copy throws, this object is unchanged.
  FEM_IforceData& operator=(const FEM_IforceData& other);
  /// As the move constructor. When the copy of the elements throws, both objects are unchanged; an object moved to
  /// itself keeps everything.
  FEM_IforceData& operator=(FEM_IforceData&& other);
  ~FEM_IforceData();

  /// Drops all elements, the missing ids and the flags. Keeps the element-to-node sets, and memory for the next
  /// elements.
  void Clear();

  /// Makes room for this many elements.
  /// @throws std::length_error for more than a vector can ever hold
  void ReserveStorage(std::size_t count);

  /// Adds a value to one component; a new element or node gets an entry.
  void InsertComponent(int element, int node, VecData vec, int component, double value);
  /// @param values shape [3]
  void InsertVector(int element, int node, VecData vec, const double* values);
  /// Adds a force and a moment. The element counts as one with moments from now on, even when they are all zero.
  /// @param forces, moments shape [3] each
  void InsertVectors(int element, int node, const double* forces, const double* moments);

  /// As InsertComponent(), for an element and a node that are there. Otherwise nothing is added and the element's id is
  /// remembered as missing, or as one with a missing node.
  void SetComponent(int element, int node, VecData vec, int component, double value);
  /// As InsertVector(), for an element and a node that are there.
  void SetVector(int element, int node, VecData vec, const double* values);
  /// As InsertVectors(), for an element and a node that are there.
  void SetVectors(int element, int node, const double* forces, const double* moments);

  /// Sets all sums, counts and flags of forces and moments to zero. Keeps elements, nodes and their positions, and the
  /// missing ids.
  void NullifyVecData();

  /// @return false, until a reader of connectivity sets it
  bool IsConnLoaded() const;

  /// Writes what was gathered, one record per element by ascending id, with a list in record field 1:
  ///     forces         3 doubles per node, in position order; of elements that ever received a force
  ///     moments        likewise; of elements that received a moment and report one that is not all zero. The block is
  ///                    opened only when some element does
  ///     element nodes  node ids in position order; only when the database has no such block yet. Its descriptor has
  ///                    the iteration of `forceDescriptor` and ONF id 595
  /// An object without elements does not touch the database. Zero means a bit pattern of all zeros: -0.0 is written.
  /// @param db borrowed for this call. Every block is asked for with the number of all elements. What it throws passes
  ///           through; records written before stay
  /// @param op what becomes of sums and counts
  void Save(FED_Database& db, const FED_DataDescriptor& forceDescriptor, const FED_DataDescriptor& momentDescriptor,
            MultiValueOperation op) const;

private:
  friend struct FEM_IforceDataTestAccess;

  /// A gathered component.
  struct ValueSum
  {
    double       sum   = 0.0;
    std::int32_t count = 0;
  };

  /// What an element holds. Both vectors have shape [number of positions, 3].
  struct NodesData
  {
    std::int64_t               reserved = -1;
    std::map<int, std::size_t> nodes;       ///< node id to position
    std::vector<ValueSum>      vecData[2];  ///< by VecData
    bool                       hasForces  = false;
    bool                       hasMoments = false;
  };

  /// The values of a node of an element.
  struct Target
  {
    NodesData*  data = nullptr;  ///< null for none
    std::size_t base = 0;        ///< 3 * position of the node
  };

  /// Where a call went. Elements and nodes keep their positions, so equal ids prove it.
  struct LoggedTarget
  {
    int           element;
    int           node;
    std::uint32_t position;  ///< of the element's entry
    std::uint32_t base;
  };

  /// FetchDataTarget() by way of the log.
  Target Fetch(int element, int node);
  /// LocateDataTarget() by way of the log; no data when the element or the node is missing.
  Target Locate(int element, int node);
  /// @return what the log knows of the next call, no data when it is wrong
  Target Guess(int element, int node);
  void   Record(int element, int node, std::size_t base);

  /// Add to the target, if it has data, and mark what was added.
  void AddComponent(const Target& target, VecData vec, int component, double value);
  void AddVector(const Target& target, VecData vec, const double* values);
  void AddVectors(const Target& target, const double* forces, const double* moments);

  /// @return the element's position, npos when there is none
  std::size_t FindElement(int element);

  /// Finds or creates the element and the node. If it throws, neither was created.
  /// @param base receives 3 * position of the node
  void FetchDataTarget(int element, int node, NodesData*& data, std::size_t& base);
  /// Finds the element and the node, or remembers the element's id in the set of what is missing.
  /// @return whether both are there; `data` is set when the element is
  bool LocateDataTarget(int element, int node, NodesData*& data, std::size_t& base);

  /// @param data may be null
  void MarkHasForces(NodesData* data, VecData vec);
  /// Marks this object, and the element's data if not null.
  void MarkHasMoments(NodesData* data, VecData vec);

  /// Replaces nodes and values: position i belongs to nodeIds[i]. An id that occurs twice has its last position; the
  /// entries of its first stay unused. Flags are left as they are.
  static void InitNodesData(const std::vector<int>& nodeIds, NodesData& data);
  /// Writes each id at its position.
  /// @param list at least as long as there are positions
  static void ExtractNodesList(const std::map<int, std::size_t>& nodes, FED_IntArray& list);
  /// Replaces `values`, shape [number of positions, 3], by what `op` reports.
  static void GetNodesValuesAsVector(const NodesData& data, int vec, std::vector<double>& values,
                                     MultiValueOperation op);
  /// @return whether any element reports a moment with a bit set, flags aside
  bool HasNonzeroMoments(MultiValueOperation op) const;

  IdRadixMap<NodesData>        elements_;
  std::map<int, std::set<int>> elementNodes_;  ///< element to its nodes; only carried along
  bool                         hasMoments = false;
  bool                         connLoaded = false;
  std::set<int>                missingElements;
  std::set<int>                missingNodes;      ///< ids of elements, not of nodes
  std::size_t                  lastElement_ = 0;  ///< position of the element of the last call: calls come by elements
  FillLog<LoggedTarget>        log_;
};
