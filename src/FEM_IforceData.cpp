#include "FEM_IforceData.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <type_traits>
#include <utility>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_DataDescriptor.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonDbConnector/FED_IdDataRecord.h>
#include <QuilonUtilities/FED_IntArray.h>

namespace {

constexpr std::size_t kNumComponents = 3;
constexpr std::size_t kUsualNodes    = 4;   // per element: least room made at once
constexpr std::size_t kManyNodes     = 32;  // most room made at once

template <typename Value>
void Add(Value& target, double value)
{
  target.sum += value;
  target.count += 1;
}

template <typename Value>
void AddThree(Value* target, const double* values)
{
  for (std::size_t component = 0; component < kNumComponents; ++component) Add(target[component], values[component]);
}

// By bytes, which are those of a fresh value: written member by member it took half the time of a refill.
template <typename Value>
void SetToZero(std::vector<Value>& values)
{
  static_assert(std::is_trivially_copyable_v<Value>);
  if (!values.empty()) std::memset(static_cast<void*>(values.data()), 0, values.size() * sizeof(Value));
}

// Room for one more node; grows by doubling, as appending would.
template <typename Value>
void ReserveNode(std::vector<Value>& values)
{
  const std::size_t needed = values.size() + kNumComponents;
  if (needed > values.capacity()) values.reserve(std::max(needed, 2 * values.capacity()));
}

// Calls between the one at work and the one whose values are asked for: a third of the time of a refill.
constexpr std::size_t kAhead = 16;

// By bit pattern: -0.0 is not zero here, since an average that underflows still tells of a moment.
// Test: AMomentOfMinusZeroIsWritten.
bool HasAnyBit(const std::vector<double>& values)
{
  return std::any_of(values.begin(), values.end(),
                     [](double value) { return std::bit_cast<std::uint64_t>(value) != 0; });
}

/// A block that is being written, with its scratch record.
struct OutputBlock
{
  OutputBlock(FED_Database& db, const FED_DataDescriptor& descriptor, std::size_t numRecords)
      : OutputBlock(db.GetOrCreateDataBlock(descriptor, numRecords), db)
  {}
  OutputBlock(FED_DataBlock& block, FED_Database& db) : view(block, db.GetIdMapsPool(), true) {}

  FED_IdDataBlock   view;
  FED_IdDataRecord* record = nullptr;
};

}  // namespace

FEM_IforceData::FEM_IforceData() = default;

FEM_IforceData::FEM_IforceData(const FEM_IforceData& other) = default;

// The elements are copied: callers go on filling the object that they have moved from.
// Test: TheSourceOfAMoveKeepsItsElements.
// NOLINTNEXTLINE(performance-noexcept-move-constructor): a copy needs memory
FEM_IforceData::FEM_IforceData(FEM_IforceData&& other)
    // NOLINTNEXTLINE(performance-move-constructor-init): see above
    : elements_(std::as_const(other.elements_)),
      elementNodes_(std::exchange(other.elementNodes_, {})),
      hasMoments(other.hasMoments),
      connLoaded(other.connLoaded),
      missingElements(std::exchange(other.missingElements, {})),
      missingNodes(std::exchange(other.missingNodes, {})),
      lastElement_(other.lastElement_),
      log_(other.log_)
{}

FEM_IforceData& FEM_IforceData::operator=(const FEM_IforceData& other)
{
  // All copies first: if one throws, nothing has changed.
  FEM_IforceData copy(other);
  std::swap(elements_, copy.elements_);
  elementNodes_.swap(copy.elementNodes_);
  hasMoments = copy.hasMoments;
  connLoaded = copy.connLoaded;
  missingElements.swap(copy.missingElements);
  missingNodes.swap(copy.missingNodes);
  lastElement_ = copy.lastElement_;
  std::swap(log_, copy.log_);
  return *this;
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): likewise
FEM_IforceData& FEM_IforceData::operator=(FEM_IforceData&& other)
{
  if (this == &other) return *this;
  FillLog<LoggedTarget> log = other.log_;
  elements_                 = std::as_const(other.elements_);
  log_                      = std::move(log);
  lastElement_              = other.lastElement_;
  elementNodes_             = std::exchange(other.elementNodes_, {});
  hasMoments                = other.hasMoments;
  connLoaded                = other.connLoaded;
  missingElements           = std::exchange(other.missingElements, {});
  missingNodes              = std::exchange(other.missingNodes, {});
  return *this;
}

FEM_IforceData::~FEM_IforceData() = default;

void FEM_IforceData::Clear()
{
  elements_.Clear();
  hasMoments = false;
  connLoaded = false;
  missingElements.clear();
  missingNodes.clear();
  log_ = {};
}

void FEM_IforceData::ReserveStorage(std::size_t count) { elements_.Reserve(count); }

void FEM_IforceData::InsertComponent(int element, int node, VecData vec, int component, double value)
{
  AddComponent(Fetch(element, node), vec, component, value);
}

void FEM_IforceData::InsertVector(int element, int node, VecData vec, const double* values)
{
  AddVector(Fetch(element, node), vec, values);
}

void FEM_IforceData::InsertVectors(int element, int node, const double* forces, const double* moments)
{
  AddVectors(Fetch(element, node), forces, moments);
}

// The three below add where their names promise to overwrite: readers meet a node of an element once per part of it and
// rely on the parts being summed. Test: SettingAddsLikeInserting.

void FEM_IforceData::SetComponent(int element, int node, VecData vec, int component, double value)
{
  AddComponent(Locate(element, node), vec, component, value);
}

void FEM_IforceData::SetVector(int element, int node, VecData vec, const double* values)
{
  AddVector(Locate(element, node), vec, values);
}

void FEM_IforceData::SetVectors(int element, int node, const double* forces, const double* moments)
{
  AddVectors(Locate(element, node), forces, moments);
}

void FEM_IforceData::NullifyVecData()
{
  // What was not added to is zero: most elements have no moments, and this is half of a refill.
  for (auto& [element, data] : elements_.Entries()) {
    if (data.hasForces) SetToZero(data.vecData[Force]);
    if (data.hasMoments) SetToZero(data.vecData[Moment]);
    data.hasForces  = false;
    data.hasMoments = false;
  }
  hasMoments = false;
  log_.Restart();
}

bool FEM_IforceData::IsConnLoaded() const { return connLoaded; }

void FEM_IforceData::Save(FED_Database& db, const FED_DataDescriptor& forceDescriptor,
                          const FED_DataDescriptor& momentDescriptor, MultiValueOperation op) const
{
  const std::size_t numElements = elements_.Entries().size();
  if (numElements == 0) return;

  const FED_DataDescriptor nodesDescriptor(forceDescriptor.GetInteger(FED_DataDescriptor::Iteration),
                                           FED_OnfId_ElementNodes);

  OutputBlock                forces(db, forceDescriptor, numElements);
  std::optional<OutputBlock> elementNodes;
  std::optional<OutputBlock> moments;
  if (hasMoments && HasNonzeroMoments(op)) moments.emplace(db, momentDescriptor, numElements);
  if (!db.HasDataBlock(nodesDescriptor)) elementNodes.emplace(db, nodesDescriptor, numElements);

  forces.record = &forces.view.CreateIdDataRecord();
  if (moments) moments->record = &moments->view.CreateIdDataRecord();
  if (elementNodes) elementNodes->record = &elementNodes->view.CreateIdDataRecord();

  FED_IntArray        nodeList;
  std::vector<double> values;
  for (const auto& [element, data] : elements_) {
    if (data.hasForces) {
      GetNodesValuesAsVector(data, Force, values, op);
      forces.record->SetDoubleList(1, values);
      forces.view.SetRecord(element, *forces.record);
    }
    if (data.hasMoments && moments) {
      GetNodesValuesAsVector(data, Moment, values, op);
      if (HasAnyBit(values)) {
        moments->record->SetDoubleList(1, values);
        moments->view.SetRecord(element, *moments->record);
      }
    }
    if (elementNodes && !elementNodes->view.HasRecord(element)) {
      nodeList.Resize(data.vecData[Force].size() / kNumComponents);
      ExtractNodesList(data.nodes, nodeList);
      elementNodes->record->SetIntList(1, nodeList);
      elementNodes->view.SetRecord(element, *elementNodes->record);
    }
  }

  forces.view.DeleteIdDataRecord(*forces.record);
  if (moments) moments->view.DeleteIdDataRecord(*moments->record);
  if (elementNodes) elementNodes->view.DeleteIdDataRecord(*elementNodes->record);
}

FEM_IforceData::Target FEM_IforceData::Fetch(int element, int node)
{
  Target target = Guess(element, node);
  if (target.data != nullptr) return target;
  if (log_.IsKept()) log_.MakeRoom();  // before anything is created
  FetchDataTarget(element, node, target.data, target.base);
  if (log_.IsKept()) Record(element, node, target.base);
  return target;
}

FEM_IforceData::Target FEM_IforceData::Locate(int element, int node)
{
  Target target = Guess(element, node);
  if (target.data != nullptr) return target;
  if (log_.IsKept()) log_.MakeRoom();
  if (!LocateDataTarget(element, node, target.data, target.base)) return {};
  if (log_.IsKept()) Record(element, node, target.base);
  return target;
}

FEM_IforceData::Target FEM_IforceData::Guess(int element, int node)
{
  const LoggedTarget* const guess = log_.Guess();
  if (guess == nullptr || guess->element != element || guess->node != node) return {};
  if (const LoggedTarget* const ahead = log_.Ahead(kAhead)) {
    const NodesData& data = elements_.At(ahead->position);
    quilon::Prefetch(data.vecData[Force].data() + ahead->base, kNumComponents * sizeof(ValueSum));
    if (hasMoments) quilon::Prefetch(data.vecData[Moment].data() + ahead->base, kNumComponents * sizeof(ValueSum));
  }
  log_.Accept();
  return {&elements_.At(guess->position), guess->base};
}

void FEM_IforceData::Record(int element, int node, std::size_t base)
{
  log_.Record({element, node, static_cast<std::uint32_t>(lastElement_), static_cast<std::uint32_t>(base)});
}

void FEM_IforceData::AddComponent(const Target& target, VecData vec, int component, double value)
{
  if (target.data == nullptr) return;
  Add(target.data->vecData[vec][target.base + static_cast<std::size_t>(component)], value);
  MarkHasForces(target.data, vec);
  MarkHasMoments(target.data, vec);
}

void FEM_IforceData::AddVector(const Target& target, VecData vec, const double* values)
{
  if (target.data == nullptr) return;
  AddThree(&target.data->vecData[vec][target.base], values);
  MarkHasForces(target.data, vec);
  MarkHasMoments(target.data, vec);
}

void FEM_IforceData::AddVectors(const Target& target, const double* forces, const double* moments)
{
  AddVector(target, Force, forces);
  AddVector(target, Moment, moments);
}

std::size_t FEM_IforceData::FindElement(int element)
{
  const auto entries = elements_.Entries();
  if (lastElement_ < entries.size() && entries[lastElement_].first == element) return lastElement_;
  const std::size_t position = elements_.Find(element);
  if (position != IdRadixMap<NodesData>::npos) lastElement_ = position;
  return position;
}

void FEM_IforceData::FetchDataTarget(int element, int node, NodesData*& data, std::size_t& base)
{
  const std::size_t position = FindElement(element);
  if (position == IdRadixMap<NodesData>::npos) {
    // All is made first and handed over: if anything here throws, no element is left without its node.
    // Elements of one type come one behind the other: this one will have as many nodes as the one before.
    NodesData         fresh;
    const auto        entries = elements_.Entries();
    const std::size_t before  = lastElement_ < entries.size() ? entries[lastElement_].second.vecData[Force].size() : 0;
    fresh.nodes.emplace(node, 0);
    for (std::vector<ValueSum>& values : fresh.vecData) {
      values.reserve(std::clamp(before, kNumComponents * kUsualNodes, kNumComponents * kManyNodes));
      values.resize(kNumComponents);
    }
    lastElement_ = elements_.FindOrInsert(element);
    data         = &elements_.At(lastElement_);
    *data        = std::move(fresh);
    base         = 0;
    return;
  }

  data             = &elements_.At(position);
  const auto known = data->nodes.lower_bound(node);
  if (known != data->nodes.end() && known->first == node) {
    base = kNumComponents * known->second;
    return;
  }
  // Room first: if this or the node's entry throws, no node points at values that are not there.
  for (std::vector<ValueSum>& values : data->vecData) ReserveNode(values);
  base = data->vecData[Force].size();
  data->nodes.emplace_hint(known, node, base / kNumComponents);
  for (std::vector<ValueSum>& values : data->vecData) values.resize(base + kNumComponents);
}

bool FEM_IforceData::LocateDataTarget(int element, int node, NodesData*& data, std::size_t& base)
{
  const std::size_t position = FindElement(element);
  if (position == IdRadixMap<NodesData>::npos) {
    missingElements.insert(element);
    return false;
  }
  data             = &elements_.At(position);
  const auto known = data->nodes.find(node);
  if (known == data->nodes.end()) {
    // The element's id, not the node's: who asks for the set wants to know which elements are incomplete.
    // Test: AMissingNodeIsRememberedByItsElement.
    missingNodes.insert(element);
    return false;
  }
  base = kNumComponents * known->second;
  return true;
}

void FEM_IforceData::MarkHasForces(NodesData* data, VecData vec)
{
  if (data != nullptr && vec == Force) data->hasForces = true;
}

void FEM_IforceData::MarkHasMoments(NodesData* data, VecData vec)
{
  if (vec == Force) return;
  hasMoments = true;
  if (data != nullptr) data->hasMoments = true;
}

void FEM_IforceData::InitNodesData(const std::vector<int>& nodeIds, NodesData& data)
{
  data.nodes.clear();
  for (std::size_t position = 0; position < nodeIds.size(); ++position) data.nodes[nodeIds[position]] = position;
  for (std::vector<ValueSum>& values : data.vecData) values.assign(kNumComponents * nodeIds.size(), ValueSum());
}

void FEM_IforceData::ExtractNodesList(const std::map<int, std::size_t>& nodes, FED_IntArray& list)
{
  for (const auto& [node, position] : nodes) list.GetData()[position] = node;
}

void FEM_IforceData::GetNodesValuesAsVector(const NodesData& data, int vec, std::vector<double>& values,
                                            MultiValueOperation op)
{
  const std::vector<ValueSum>& gathered = data.vecData[static_cast<std::size_t>(vec)];
  values.resize(gathered.size());
  for (std::size_t i = 0; i < gathered.size(); ++i) {
    const auto& [sum, count] = gathered[i];
    switch (op) {
      case Average:
        values[i] = count >= 1 ? sum / count : 0.0;
        break;
      case Zero:
        values[i] = 0.0;
        break;
      case Sum:
      default:
        values[i] = sum;
        break;  // an operation that is not listed reports the sum
    }
  }
}

bool FEM_IforceData::HasNonzeroMoments(MultiValueOperation op) const
{
  std::vector<double> values;
  for (const auto& [element, data] : elements_) {
    GetNodesValuesAsVector(data, Moment, values, op);
    if (HasAnyBit(values)) return true;
  }
  return false;
}
