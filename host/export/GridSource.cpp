#include "export/GridSource.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

#include "export/ArrayNames.h"
#include "export/BlockValues.h"
#include "export/VtkCells.h"
#include "progress/Interrupt.h"
#include "text/Failure.h"

namespace quilon {

namespace {

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

}  // namespace

GridSource::GridSource(const FED_Database& database, const Mesh& mesh, const std::vector<NamedSet>& sets,
                       const ExportPlan& plan, const ExportGroups& groups)
    : database_(database), mesh_(mesh), sets_(sets), plan_(plan)
{
  isSplit_ = std::any_of(plan.arrays.begin(), plan.arrays.end(), [](const ExportArray& a) { return a.isJoined; });
  if (isSplit_ && !groups.AreKnown())
    Fail("averages of groups: no materials, sections or sets have their elements, expected --groups arrays");
  MakePoints(groups);
  MakeCells(groups);
  ListArrays();
}

void GridSource::MakePoints(const ExportGroups& groups)
{
  if (!isSplit_) {
    pointNodes_.resize(mesh_.NumNodes());
    for (std::size_t node = 0; node < pointNodes_.size(); ++node) pointNodes_[node] = node;
    return;
  }
  std::map<int, std::vector<bool>> isInGroup;
  std::vector<bool>                isInAny(mesh_.NumNodes(), false);
  for (std::size_t position = 0; position < mesh_.NumElements(); ++position) {
    const auto group = isInGroup.try_emplace(groups.ElementGroups()[position], mesh_.NumNodes(), false).first;
    for (const std::size_t node : mesh_.NodesOf(mesh_.Elements()[position])) {
      group->second[node] = true;
      isInAny[node]       = true;
    }
  }
  // Nodes of no element are in no group.
  const auto none = isInGroup.try_emplace(0, mesh_.NumNodes(), false).first;
  for (std::size_t node = 0; node < mesh_.NumNodes(); ++node)
    if (!isInAny[node]) none->second[node] = true;
  for (const auto& [group, isIn] : isInGroup) {
    for (std::size_t node = 0; node < mesh_.NumNodes(); ++node) {
      if (!isIn[node]) continue;
      pointNodes_.push_back(node);
      pointGroups_.push_back(group);
    }
  }
}

void GridSource::MakeCells(const ExportGroups& groups)
{
  // Points of a group stand one behind the other, by node.
  std::map<int, std::pair<std::size_t, std::size_t>> pointsOf;
  for (std::size_t point = 0; point < pointGroups_.size(); ++point)
    pointsOf.try_emplace(pointGroups_[point], point, point).first->second.second = point + 1;
  const auto pointOf = [&](std::size_t element, std::size_t node) {
    if (!isSplit_) return static_cast<std::int64_t>(node);
    const auto [first, last] = pointsOf.at(groups.ElementGroups()[element]);
    const auto begin         = pointNodes_.begin();
    const auto found =
        std::lower_bound(begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(last), node);
    return static_cast<std::int64_t>(found - begin);
  };

  cellTypes_.reserve(mesh_.NumElements());
  offsets_.reserve(mesh_.NumElements() + 1);
  offsets_.push_back(0);
  for (std::size_t position = 0; position < mesh_.NumElements(); ++position) {
    const Mesh::Element& element = mesh_.Elements()[position];
    const auto           nodes   = mesh_.NodesOf(element);
    const auto           order   = VtkNodeOrder(element.frdType);
    for (std::size_t i = 0; i < nodes.size(); ++i)
      connectivity_.push_back(pointOf(position, nodes[order.empty() ? i : order[i]]));
    offsets_.push_back(static_cast<std::int64_t>(connectivity_.size()));
    cellTypes_.push_back(VtkCellType(element.frdType, nodes.size()));
  }
}

void GridSource::ListArrays()
{
  arrays_.push_back({"id", false, Type::Int32, {"value"}});
  arrays_.push_back({"id", true, Type::Int32, {"value"}});
  arrays_.push_back({"material", true, Type::Int32, {"value"}});
  if (isSplit_) arrays_.push_back({"group", false, Type::Int32, {"value"}});
  numOwn_ = arrays_.size();
  for (const NamedSet& set : sets_)
    arrays_.push_back({ToArrayName("set-" + set.name), set.ofElements, Type::UInt8, {"value"}});
  for (const ExportArray& array : plan_.arrays)
    arrays_.push_back({array.name, array.ofElements, Type::Float64, array.components, array.isStatic});
  UniqueNames names;
  for (Array& array : arrays_) array.name = names.Take(array.ofCells, array.name);
}

std::vector<double> GridSource::Points() const
{
  std::vector<double> points;
  points.reserve(3 * pointNodes_.size());
  for (const std::size_t node : pointNodes_)
    points.insert(points.end(), mesh_.Points()[node].begin(), mesh_.Points()[node].end());
  return points;
}

bool GridSource::HasValues(std::size_t array, std::size_t step) const
{
  if (array < numOwn_ + sets_.size()) return true;
  const ExportArray& field = plan_.arrays[array - numOwn_ - sets_.size()];
  return !field.sources[field.isStatic ? 0 : step].empty();
}

std::span<const std::byte> GridSource::Read(std::size_t array, std::size_t step)
{
  ThrowIfInterrupted();
  if (array < numOwn_) {
    ReadOwn(array);
    return Bytes(integers_);
  }
  if (array < numOwn_ + sets_.size()) {
    ReadSet(sets_[array - numOwn_]);
    return Bytes(flags_);
  }
  const ExportArray& field = *FieldOf(array);
  ReadField(field, field.isStatic ? 0 : step);
  return Bytes(values_);
}

void GridSource::ReadOwn(std::size_t array)
{
  integers_.clear();
  switch (array) {
    case 0:
      for (const std::size_t node : pointNodes_) integers_.push_back(mesh_.NodeIds()[node]);
      break;
    case 1:
      for (const Mesh::Element& element : mesh_.Elements()) integers_.push_back(element.id);
      break;
    case 2:
      for (const Mesh::Element& element : mesh_.Elements()) integers_.push_back(element.material);
      break;
    default:
      integers_ = pointGroups_;
  }
}

void GridSource::ReadSet(const NamedSet& set)
{
  flags_.assign(set.ofElements ? mesh_.NumElements() : mesh_.NumNodes(), 0);
  for (const int id : set.ids)
    if (const auto position = set.ofElements ? mesh_.FindElement(id) : mesh_.FindNode(id)) flags_[*position] = 1;
  if (set.ofElements || !isSplit_) return;
  const std::vector<std::uint8_t> ofNodes = std::exchange(flags_, {});
  for (const std::size_t node : pointNodes_) flags_.push_back(ofNodes[node]);
}

void GridSource::ReadField(const ExportArray& array, std::size_t step)
{
  const std::size_t numValues = array.NumValues();
  if (array.ofElements || !isSplit_) {
    values_.assign(numValues * (array.ofElements ? mesh_.NumElements() : mesh_.NumNodes()), kNoValue);
    for (const ExportArray::Source& source : array.sources[step]) ReadSource(array, source, values_);
    return;
  }
  values_.assign(numValues * pointNodes_.size(), kNoValue);
  for (const ExportArray::Source& source : array.sources[step]) {
    nodeValues_.assign(numValues * mesh_.NumNodes(), kNoValue);
    ReadSource(array, source, nodeValues_);
    for (std::size_t point = 0; point < pointNodes_.size(); ++point) {
      if (array.isJoined && pointGroups_[point] != source.group) continue;
      std::copy_n(&nodeValues_[numValues * pointNodes_[point]], numValues, &values_[numValues * point]);
    }
  }
}

void GridSource::ReadSource(const ExportArray& array, const ExportArray::Source& source, std::vector<double>& values)
{
  const std::size_t numValues = array.NumValues();
  ForEachValue(database_, array, source, [&](int id, const double* from) {
    if (const auto position = array.ofElements ? mesh_.FindElement(id) : mesh_.FindNode(id))
      std::copy_n(from, numValues, &values[numValues * *position]);
    else
      (array.ofElements ? elementsWithout_ : nodesWithout_).insert(id);
  });
}

}  // namespace quilon
