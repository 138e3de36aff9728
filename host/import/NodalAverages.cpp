#include "import/NodalAverages.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <string>
#include <string_view>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "elements/Extrapolation.h"
#include "import/Derivation.h"
#include "import/ElementGroups.h"
#include "import/ImportRecord.h"
#include "import/JobBlocks.h"
#include "import/ResultMesh.h"

namespace quilon {

namespace {

constexpr char kNoMesh[] = "points of elements that no mesh holds";

}  // namespace

NodalAverages::NodalAverages(JobBlocks& blocks, ResultMesh& mesh, const ElementGroups& groups, ImportRecord& record)
    : blocks_(blocks), mesh_(mesh), groups_(groups), record_(record)
{}

void NodalAverages::Add(Quantity quantity, int id, std::span<const double> values)
{
  const std::size_t    numPoints = values.size() / kNumComponents;
  ResultMesh::Element* element   = mesh_.FindElement(id);
  if (element == nullptr) return record_.Skip(kNoMesh, numPoints);
  const ExtrapolationRule* rule = FindExtrapolation(element->type, numPoints);
  if (rule == nullptr) {
    return record_.Skip("element type without extrapolation: " + DescribeElementType(element->type, numPoints),
                        numPoints);
  }
  // Sets may overlap, and a set may hold an element twice.
  std::size_t& averagedIn = element->averagedIn[quantity];
  if (averagedIn == resultNumber_) return;
  averagedIn = resultNumber_;

  nodal_.resize(rule->NumNodes() * kNumComponents);
  Extrapolate(*rule, values, nodal_);
  const std::span<const int> nodes = mesh_.NodesOf(*element);
  assert(nodes.size() == rule->NumNodes());
  AddTo(averages_[quantity][0], nodes);
  for (const int group : groups_.GroupsOf(id, *element)) AddTo(averages_[quantity][group], nodes);

  const std::string_view type = element->deckType != nullptr ? element->deckType : rule->name;
  for (const int nodeId : nodes) {
    ResultMesh::Node& node = *mesh_.FindNode(nodeId);
    if (node.type.empty()) node.type = type;
    node.isMixed = node.isMixed || node.type != type;
  }
}

/// Adds the nodal values of the element being added.
void NodalAverages::AddTo(Average& average, std::span<const int> nodes) const
{
  for (std::size_t n = 0; n < nodes.size(); ++n) {
    double value[kNumComponents];
    std::copy_n(&nodal_[n * kNumComponents], kNumComponents, value);
    average.AddValue(nodes[n], value);
  }
}

void NodalAverages::Save(const StepKey& key)
{
  for (const Quantity quantity : kQuantities) {
    if (averages_[quantity].empty()) continue;
    for (const auto& [group, average] : averages_[quantity]) SaveAverage(key, quantity, group, average);
    blocks_.MarkAveraged(key, quantity);
    // Not reset: a node that the next result does not reach would be saved as zero.
    averages_[quantity].clear();
  }
  ++resultNumber_;
}

void NodalAverages::SaveAverage(const StepKey& key, Quantity quantity, int group, const Average& average)
{
  const TensorKinds& kinds = kTensorKinds[quantity];
  average.SaveField(blocks_.GetDatabase(), blocks_.Descriptor(key, kinds.average, group),
                    FEM_AvgFieldDefs::NoLayerIndex, FEM_AvgFieldDefs::Average, true, nullptr);
  average.SaveField(blocks_.GetDatabase(), blocks_.Descriptor(key, kinds.variance, group),
                    FEM_AvgFieldDefs::NoLayerIndex, FEM_AvgFieldDefs::Variance, true, nullptr);
  SaveError(key, quantity, group, average);
  SaveCounts(key, quantity, group, average);
}

void NodalAverages::SaveCounts(const StepKey& key, Quantity quantity, int group, const Average& average)
{
  std::vector<int>                      ids;
  std::vector<FEM_AvgUtil::StatData<6>> data;
  average.DumpField(0, ids, data);

  FED_IdDataBlock view(blocks_.Block(key, kTensorKinds[quantity].count, ids.size(), group),
                       blocks_.GetDatabase().GetIdMapsPool(), true);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    view.SetScalar(ids[i], data[i].count);
    if (group == 0 && data[i].count < mesh_.FindNode(ids[i])->numElements) ++numPartial_;
  }
}

/// The measure of FEM_ResultUtil::CalculateNodalStressError(), with principal values that hold for tensors of any size.
void NodalAverages::SaveError(const StepKey& key, Quantity quantity, int group, const Average& average)
{
  std::vector<int>                      ids;
  std::vector<FEM_AvgUtil::StatData<6>> data;
  average.DumpField(0, ids, data);

  FED_IdDataBlock view(blocks_.Block(key, kTensorKinds[quantity].error, ids.size(), group),
                       blocks_.GetDatabase().GetIdMapsPool(), true);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const double count = data[i].count;
    double       error[kNumComponents];
    for (std::size_t k = 0; k < kNumComponents; ++k) error[k] = std::sqrt(std::abs(data[i].m2[k] / count / count));
    double principal[3];
    CalculateScaledPrincipals(error, principal);
    view.SetScalar(ids[i], principal[0]);
  }
}

}  // namespace quilon
