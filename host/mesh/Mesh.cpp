#include "mesh/Mesh.h"

#include <algorithm>
#include <cassert>
#include <numeric>
#include <utility>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>

#include "database/ScratchRecord.h"
#include "mesh/MeshBlocks.h"
#include "text/Failure.h"

namespace quilon {

namespace {

/// @return the block of a kind that belongs to all steps; null when the database has none
const FED_DataBlock* FindBlock(const FED_Database& database, int iteration, FED_OnfId onf)
{
  const FED_DataDescriptor descriptor(iteration, onf);
  return database.HasDataBlock(descriptor) ? &database.GetConstDataBlock(descriptor) : nullptr;
}

/// @return positions in a list in the order in which its ids ascend
std::vector<std::size_t> OrderOf(const std::vector<int>& ids)
{
  std::vector<std::size_t> order(ids.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (!std::is_sorted(ids.begin(), ids.end()))
    std::sort(order.begin(), order.end(), [&ids](std::size_t a, std::size_t b) { return ids[a] < ids[b]; });
  return order;
}

void AddSets(const FED_Database& database, int iteration, FED_OnfId onf, std::vector<NamedSet>& sets)
{
  const FED_DataBlock* block = FindBlock(database, iteration, onf);
  if (block == nullptr) return;
  const ScratchRecord record(*block);
  FED_IntArray        ids;
  for (auto index = block->Begin(); index != block->End(); ++index) {
    block->GetRecord(*index, *record);
    record->GetIntList(2, ids);
    sets.push_back({record->GetString(1), onf == OnfKind::ElementSet, {ids.GetData(), ids.GetData() + ids.GetSize()}});
  }
}

}  // namespace

Mesh::Mesh(const std::vector<int>& nodeIds, const std::vector<Point>& points, std::vector<Element> elements,
           const std::vector<int>& elementNodes)
{
  assert(nodeIds.size() == points.size());
  std::vector<int> ids;
  ids.reserve(nodeIds.size());
  points_.reserve(nodeIds.size());
  for (const std::size_t position : OrderOf(nodeIds)) {
    ids.push_back(nodeIds[position]);
    points_.push_back(points[position]);
  }
  nodes_ = IdPositions(std::move(ids));

  std::sort(elements.begin(), elements.end(), [](const Element& a, const Element& b) { return a.id < b.id; });
  elements_ = std::move(elements);
  std::vector<int> elementIds;
  elementIds.reserve(elements_.size());
  elementNodes_.reserve(elementNodes.size());
  for (Element& element : elements_) {
    elementIds.push_back(element.id);
    const std::size_t first = elementNodes_.size();
    for (const int id : std::span(elementNodes).subspan(element.first, element.count))
      if (const auto position = nodes_.Find(id)) elementNodes_.push_back(*position);
    element.first                   = first;
    element.count                   = elementNodes_.size() - first;
    const ElementTopology* topology = FindTopology(element.frdType);
    if (topology == nullptr || topology->numNodes != element.count) element.frdType = 0;
  }
  elementIds_ = IdPositions(std::move(elementIds));
}

Mesh ReadMesh(const FED_Database& database, int iteration, const std::string& name)
{
  const FED_DataBlock* coordinates = FindBlock(database, iteration, OnfKind::Coordinates);
  if (coordinates == nullptr || coordinates->Begin() == coordinates->End())
    Fail(name + ": no coordinates (block 516), expected the mesh of a .frd or a deck, as quilon import reads it");

  std::vector<int>         nodeIds;
  std::vector<Mesh::Point> points;
  ForEachNode(*coordinates, database.GetIdMapsPool(), [&](int id, const Mesh::Point& position) {
    nodeIds.push_back(id);
    points.push_back(position);
  });

  std::vector<Mesh::Element> elements;
  std::vector<int>           elementNodes;
  const FED_DataBlock*       lists = FindBlock(database, iteration, OnfKind::ElementNodes);
  const FED_DataBlock*       types = FindBlock(database, iteration, OnfKind::ElementType);
  if (lists != nullptr && types != nullptr) {
    ForEachElement(*lists, *types, database.GetIdMapsPool(), [&](const ElementRow& row) {
      elements.push_back({row.id, row.frdType, row.material, elementNodes.size(), row.nodes.size()});
      elementNodes.insert(elementNodes.end(), row.nodes.begin(), row.nodes.end());
    });
  }
  return Mesh(nodeIds, points, std::move(elements), elementNodes);
}

std::vector<NamedSet> ReadSets(const FED_Database& database, int iteration)
{
  std::vector<NamedSet> sets;
  AddSets(database, iteration, OnfKind::NodeSet, sets);
  AddSets(database, iteration, OnfKind::ElementSet, sets);
  return sets;
}

}  // namespace quilon
