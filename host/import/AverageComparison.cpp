#include "import/AverageComparison.h"

#include <algorithm>
#include <cmath>

#include "import/ImportRecord.h"
#include "import/ResultMesh.h"

namespace quilon {

AverageComparison::AverageComparison(Quantity quantity, const FED_DataBlock& average, const FED_DataBlock& count,
                                     const FED_IdMapsPool& pool, ResultMesh& mesh)
    : quantity_(quantity), averages_(average, pool), counts_(count, pool), mesh_(mesh)
{}

void AverageComparison::Compare(int id, const double* theirs)
{
  for (int k = 0; k < 6; ++k) {
    if (std::isfinite(theirs[k])) {
      largestMagnitude_ = std::max(largestMagnitude_, std::abs(theirs[k]));
    }
  }

  const ResultMesh::Node* node = mesh_.FindNode(id);
  if (node == nullptr || node->type.empty() || !counts_.HasRecord(id)) return;
  double count = 0.0;
  counts_.GetScalar(id, count);
  if (count != node->numElements) return;  // the solver's mean has elements that ours has not

  double ours[6];
  averages_.GetTensor(id, ours);
  Deviation& deviation = byElementType_[node->isMixed ? "mixed" : std::string(node->type)];
  ++deviation.nodes;
  for (int k = 0; k < 6; ++k) {
    const double difference = std::abs(ours[k] - theirs[k]);
    if (std::isfinite(difference)) deviation.largest = std::max(deviation.largest, difference);
  }
}

void AverageComparison::Report(ImportRecord& record) const
{
  for (const auto& [type, deviation] : byElementType_) {
    record.AddDeviation(type, kTensorKinds[quantity_].name, deviation.nodes,
                        largestMagnitude_ > 0.0 ? deviation.largest / largestMagnitude_ : deviation.largest);
  }
}

}  // namespace quilon
