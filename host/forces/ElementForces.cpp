#include "forces/ElementForces.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonUtilities/FED_Failure.h>

#include "calculix/ElementExpansion.h"
#include "elements/Extrapolation.h"
#include "elements/IntegrationRule.h"
#include "FEM_ResultUtil.h"
#include "kinds/UserKinds.h"
#include "progress/Interrupt.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

constexpr std::size_t kNumComponents = 6;

/// The block of the result's stresses in local systems, as the import keeps them.
std::optional<FED_DataDescriptor> FindLocalStresses(const FED_Database& database, const FED_DataDescriptor& points)
{
  std::optional<FED_DataDescriptor> found;
  ForEachUserKind([&](FED_OnfId onf) {
    if (database.GetUserKindName(onf) != kLocalStresses) return;
    const FED_DataDescriptor local = WithKind(points, onf);
    if (database.HasDataBlock(local)) found = local;
  });
  return found;
}

bool HasRepeated(std::span<const int> ids)
{
  for (std::size_t i = 1; i < ids.size(); ++i) {
    if (std::find(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(i), ids[i]) !=
        ids.begin() + static_cast<std::ptrdiff_t>(i))
      return true;
  }
  return false;
}

}  // namespace

FED_DataDescriptor WithKind(FED_DataDescriptor descriptor, int onf)
{
  descriptor.SetInteger(FED_DataDescriptor::OnfId, onf);
  return descriptor;
}

ElementForces::ElementForces(FED_Database& database, const ForceMesh& mesh, int iteration, std::string name)
    : database_(database), mesh_(mesh), name_(std::move(name)), lists_(iteration, OnfKind::ElementNodes)
{
  LayOut();
  if (database_.HasDataBlock(lists_)) CheckNodeLists();
}

ElementForces::Nature ElementForces::FindNature(const ForceMesh::Element& element) const
{
  const std::span<const int> nodes = mesh_.NodesOf(element);
  if (element.deckType != nullptr) {
    if (FindIntegrationRule(element.deckType) == nullptr) return Nature::OfNoRule;
  } else {
    const auto isNode = [this](int id) { return mesh_.nodes.Find(id) != IdRadixMap<std::array<double, 3>>::npos; };
    const calculix::Expansion expansion = calculix::FindExpansion(element.frdType, nodes, isNode);
    if (expansion == calculix::Expansion::Layer) return Nature::ExpandedLayer;
    if (expansion == calculix::Expansion::Beam) return Nature::ExpandedBeam;
  }
  return HasRepeated(nodes) ? Nature::Collapsed : Nature::Plain;
}

/// Gives every element its nodes in the mesh's order. One that names a node twice would get fewer positions than its
/// node list has entries, and the two would not go together.
void ElementForces::LayOut()
{
  const double nothing[3] = {};
  gathered_.ReserveStorage(mesh_.elements.Entries().size());
  natures_.reserve(mesh_.elements.Entries().size());
  for (const auto& [id, element] : mesh_.elements.Entries()) {
    ThrowIfInterrupted();
    natures_.push_back(FindNature(element));
    if (natures_.back() != Nature::Plain) continue;
    for (const int node : mesh_.NodesOf(element)) gathered_.InsertVector(id, node, FEM_IforceData::Force, nothing);
  }
}

void ElementForces::CheckNodeLists()
{
  addsNodeLists_ = false;
  FED_IdDataBlock   view(database_.GetDataBlock(lists_), database_.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  std::vector<int>  nodes;
  FED_IntArray      stored;
  std::size_t       at = 0;
  for (const auto& [id, element] : mesh_.elements.Entries()) {
    ThrowIfInterrupted();
    const Nature nature = natures_[at++];
    // Where it has no rule the nodes of the solid that it was expanded to stay.
    if (nature != Nature::Plain && nature != Nature::Collapsed && view.HasRecord(id)) continue;
    const std::span<const int> list = mesh_.NodesOf(element);
    nodes.assign(list.begin(), list.end());
    bool isDefined = false;
    try {
      isDefined = FEM_ResultUtil::AreElementNodesDefined(database_, lists_, id, nodes);
    } catch (const FED_Failure& failure) {  // it does not say which element
      Fail(name_ + ": element " + std::to_string(id) + ": " + failure.GetMessage());
    }
    if (isDefined) {
      // A longer list agrees there when its first entries do; forces go with a list of the same length only.
      view.GetRecord(id, record);
      record.GetIntList(1, stored);
      if (stored.GetSize() != nodes.size()) {
        Fail(name_ + ": element " + std::to_string(id) + " has " + Counted(nodes.size(), "node") + ", expected " +
             std::to_string(stored.GetSize()) + " as in the database");
      }
      continue;
    }
    record.SetIntList(1, nodes);
    view.SetRecord(id, record);
    addsNodeLists_ = true;
  }
}

ForceStep ElementForces::Calculate(const FED_DataDescriptor& points, bool deformed)
{
  ForceStep step;
  step.forces   = WithKind(points, OnfKind::ElementForces);
  step.deformed = deformed;
  step.hasForces.assign(mesh_.elements.Entries().size(), false);
  PlaceNodes(points, step);
  sums_.assign(step.positions.size(), {});
  bounds_.assign(step.positions.size(), {});
  gathered_.NullifyVecData();
  collapsed_.clear();
  skipped_.clear();

  const FED_DataBlock&       block = database_.GetConstDataBlock(points);
  const FED_ConstIdDataBlock view(block, database_.GetIdMapsPool());
  FED_ConstIdDataRecord&     record = view.CreateConstIdDataRecord();
  FED_DoubleArray            stress;
  std::vector<bool>          hasStress(step.hasForces.size(), false);
  std::size_t                next = 0;
  for (const auto& [id, element] : mesh_.elements.Entries()) {
    ThrowIfInterrupted();
    const std::size_t at = next++;
    if (!view.HasRecord(id)) continue;
    hasStress[at] = true;
    if (SkipWithoutRule(id, element, natures_[at])) continue;
    view.GetRecord(id, record);
    record.GetDataRecord().GetDoubleList(2, stress);
    buffers_.stress.assign(stress.GetData(), stress.GetData() + stress.GetSize());
    const IntegrationRule* rule = FindRule(id, element, step);
    if (rule == nullptr || !TakeCoordinates(id, element, step)) continue;
    buffers_.forces.resize(buffers_.coordinates.size());
    if (!CalculateNodalForces(*rule, buffers_.coordinates, buffers_.stress, buffers_.forces)) {
      Skip("turned inside out or flat", id);
      continue;
    }
    const bool isCollapsed = natures_[at] == Nature::Collapsed;
    AddForces(id, element, *rule, isCollapsed);
    if (isCollapsed) collapsed_.emplace(id, buffers_.forces);
    step.hasForces[at] = true;
    ++step.numElements;
  }
  SkipWithoutStress(points, hasStress);
  SkipForeign(block);
  SumUp(step);

  if (database_.HasDataBlock(step.forces)) database_.DeleteDataBlock(step.forces);
  gathered_.Save(database_, step.forces, WithKind(points, OnfKind::ElementMoments), FEM_IforceData::Sum);
  SaveApart(step);
  step.skipped = std::move(skipped_);
  return step;
}

void ElementForces::PlaceNodes(const FED_DataDescriptor& points, ForceStep& step)
{
  step.positions.reserve(mesh_.nodes.Entries().size());
  for (const auto& [id, position] : mesh_.nodes.Entries()) step.positions.push_back(position);
  isPlaced_.assign(step.positions.size(), true);
  if (!step.deformed) return;

  const FED_DataDescriptor descriptor = WithKind(points, OnfKind::Displacement);
  if (!database_.HasDataBlock(descriptor)) {
    Fail(name_ + ": no displacements " + ToSelectionText(descriptor) +
         " for the deformed geometry of a nonlinear step, expected U of all nodes");
  }
  const FED_ConstIdDataBlock view(database_.GetConstDataBlock(descriptor), database_.GetIdMapsPool());
  std::size_t                at = 0;
  for (const auto& [id, position] : mesh_.nodes.Entries()) {
    isPlaced_[at] = view.HasRecord(id);
    if (isPlaced_[at]) {
      double displacement[3];
      view.GetVector(id, displacement);
      for (std::size_t k = 0; k < 3; ++k) step.positions[at][k] += displacement[k];
    }
    ++at;
  }
}

const IntegrationRule* ElementForces::FindRule(int id, const ForceMesh::Element& element, const ForceStep& step)
{
  const std::size_t      numPoints = buffers_.stress.size() / kNumComponents;
  const bool             isOfDeck  = element.deckType != nullptr;
  const IntegrationRule* rule =
      isOfDeck ? FindIntegrationRule(element.deckType) : FindIntegrationRule(element.frdType, numPoints);
  if (rule == nullptr) {
    Skip("no rule for " + (isOfDeck ? element.deckType : DescribeElementType(element.frdType, numPoints)), id);
  } else if (step.deformed && !rule->holdsDeformed) {
    Skip(std::string("no rule for ") + rule->name + " in geometrically nonlinear steps", id);
    rule = nullptr;
  } else if (buffers_.stress.size() != kNumComponents * rule->points.size()) {
    Skip(Counted(numPoints, "integration point") + ", expected " + std::to_string(rule->points.size()) + " of a " +
             rule->name,
         id);
    rule = nullptr;
  } else if (element.count != NumNodes(rule->shape)) {
    Skip(Counted(element.count, "node") + ", expected " + std::to_string(NumNodes(rule->shape)) + " of a " + rule->name,
         id);
    rule = nullptr;
  }
  return rule;
}

bool ElementForces::TakeCoordinates(int id, const ForceMesh::Element& element, const ForceStep& step)
{
  buffers_.coordinates.clear();
  buffers_.tolerance.clear();
  for (const int node : mesh_.NodesOf(element)) {
    const std::size_t at = mesh_.nodes.Find(node);
    if (at == IdRadixMap<std::array<double, 3>>::npos) {
      Skip("a node has no coordinates", id);
      return false;
    }
    if (!isPlaced_[at]) {
      Skip("a node has no displacement", id);
      return false;
    }
    for (std::size_t k = 0; k < 3; ++k) {
      const double coordinate = mesh_.nodes.At(at)[k];
      const double position   = step.positions[at][k];
      buffers_.coordinates.push_back(position);
      // What rounded coordinates comes with displacements that are rounded likewise.
      buffers_.tolerance.push_back(mesh_.isRounded ? RoundingOf(coordinate) + RoundingOf(position - coordinate) : 0.0);
    }
  }
  return true;
}

void ElementForces::AddForces(int id, const ForceMesh::Element& element, const IntegrationRule& rule, bool isCollapsed)
{
  buffers_.bounds.assign(buffers_.forces.size(), 0.0);
  if (mesh_.isRounded)
    BoundForceErrors(rule, buffers_.coordinates, buffers_.stress, buffers_.tolerance, buffers_.bounds);

  std::size_t first = 0;
  for (const int node : mesh_.NodesOf(element)) {
    if (!isCollapsed) gathered_.SetVector(id, node, FEM_IforceData::Force, &buffers_.forces[first]);
    const std::size_t at = mesh_.nodes.Find(node);
    for (std::size_t k = 0; k < 3; ++k) {
      sums_[at][k] += buffers_.forces[first + k];
      bounds_[at][k] += buffers_.bounds[first + k];
    }
    first += 3;
  }
}

/// @return whether it has none whatever its stresses are
bool ElementForces::SkipWithoutRule(int id, const ForceMesh::Element& element, Nature nature)
{
  if (nature == Nature::OfNoRule) {
    Skip(std::string("no rule for ") + element.deckType, id);
  } else if (nature == Nature::ExpandedLayer) {
    Skip("no rule for shells and plane elements, which node numbers tell it was", id);
  } else if (nature == Nature::ExpandedBeam) {
    Skip("no rule for beams, which node numbers tell it was", id);
  } else {
    return false;
  }
  return true;
}

void ElementForces::SkipWithoutStress(const FED_DataDescriptor& points, const std::vector<bool>& hasStress)
{
  const std::optional<FED_DataDescriptor> local = FindLocalStresses(database_, points);
  std::optional<FED_ConstIdDataBlock>     localView;
  if (local) localView.emplace(database_.GetConstDataBlock(*local), database_.GetIdMapsPool());

  std::size_t at = 0;
  for (const auto& [id, element] : mesh_.elements.Entries()) {
    const Nature nature = natures_[at];
    if (hasStress[at++] || SkipWithoutRule(id, element, nature)) continue;
    if (localView && localView->HasRecord(id)) {
      Skip("stresses in a local system", id);
    } else {
      Skip("no stresses", id);
    }
  }
}

void ElementForces::SkipForeign(const FED_DataBlock& block)
{
  const FED_ConstIdDataBlock view(block, database_.GetIdMapsPool());
  for (auto index = block.Begin(); index != block.End(); ++index) {
    const int id = view.GetId(*index);
    if (mesh_.elements.Find(id) == IdRadixMap<ForceMesh::Element>::npos) Skip("not in the mesh", id);
  }
}

void ElementForces::SumUp(ForceStep& step)
{
  for (std::size_t at = 0; at < sums_.size(); ++at) {
    for (std::size_t k = 0; k < 3; ++k) {
      step.largestSum = std::max(step.largestSum, std::abs(sums_[at][k]));
      step.errorBound = std::max(step.errorBound, bounds_[at][k]);
    }
  }
}

/// Writes forces of the elements that the accumulator does not hold, and the node lists of all of them that have none.
void ElementForces::SaveApart(const ForceStep& step)
{
  const auto isPlain = [](Nature nature) { return nature == Nature::Plain; };
  if (std::all_of(natures_.begin(), natures_.end(), isPlain)) return;
  if (!collapsed_.empty()) {
    FED_IdDataBlock   forces(database_.GetOrCreateDataBlock(step.forces, collapsed_.size()), database_.GetIdMapsPool(),
                             true);
    FED_IdDataRecord& forceRecord = forces.CreateIdDataRecord();
    for (const auto& [id, values] : collapsed_) {
      forceRecord.SetDoubleList(1, values);
      forces.SetRecord(id, forceRecord);
    }
  }

  FED_IdDataBlock   lists(database_.GetOrCreateDataBlock(lists_, natures_.size()), database_.GetIdMapsPool(), true);
  FED_IdDataRecord& listRecord = lists.CreateIdDataRecord();
  std::size_t       at         = 0;
  for (const auto& [id, element] : mesh_.elements.Entries()) {
    if (isPlain(natures_[at++]) || lists.HasRecord(id)) continue;
    const std::span<const int> nodes = mesh_.NodesOf(element);
    listRecord.SetIntList(1, std::vector<int>(nodes.begin(), nodes.end()));
    lists.SetRecord(id, listRecord);
  }
}

}  // namespace quilon
