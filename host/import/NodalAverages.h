#pragma once

/// @file
/// Averages at nodes of what the elements around them have.

#include <cstddef>
#include <map>
#include <span>
#include <vector>

#include "FEM_AvgField.h"
#include "FEM_AvgUtil.h"
#include "import/StepMatcher.h"
#include "import/TensorKinds.h"

namespace quilon {

class ElementGroups;
class ImportRecord;
class JobBlocks;
class ResultMesh;

/// Averages tensors at the nodes of one result, over all elements and once more for every group of elements. Values of
/// integration points are extrapolated to the element's nodes as ExtrapolationRule says. An element that comes several
/// times in a result counts once.
class NodalAverages
{
public:
  /// @param blocks, mesh, groups, record borrowed; the mesh keeps which elements and nodes were averaged
  NodalAverages(JobBlocks& blocks, ResultMesh& mesh, const ElementGroups& groups, ImportRecord& record);

  /// Adds an element of the current result. One that no mesh holds, or of a type without a rule, is noted as skipped.
  /// @param values of its points, shape [numPoints, 6]
  void Add(Quantity quantity, int id, std::span<const double> values);

  /// Writes mean, variance, error and count of the result and forgets them.
  void Save(const StepKey& key);

  /// @return averages over some of a node's elements
  std::size_t NumPartial() const noexcept { return numPartial_; }

private:
  /// Running mean, variance and count of one tensor.
  using Average = FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6>;

  /// By group of elements; 0 for all.
  using Averages = std::map<int, Average>;

  void AddTo(Average& average, std::span<const int> nodes) const;
  void SaveAverage(const StepKey& key, Quantity quantity, int group, const Average& average);
  void SaveError(const StepKey& key, Quantity quantity, int group, const Average& average);
  void SaveCounts(const StepKey& key, Quantity quantity, int group, const Average& average);

  JobBlocks&           blocks_;
  ResultMesh&          mesh_;
  const ElementGroups& groups_;
  ImportRecord&        record_;
  Averages             averages_[2];       // by Quantity
  std::size_t          resultNumber_ = 1;  // of the current result
  std::size_t          numPartial_   = 0;
  std::vector<double>  nodal_;  // of the element being added, shape [nodes, 6]
};

}  // namespace quilon
