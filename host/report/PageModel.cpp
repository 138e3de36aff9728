#include "report/PageModel.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <span>
#include <utility>

#include "elements/ElementShape.h"
#include "export/GridSource.h"
#include "mesh/Surface.h"
#include "progress/Interrupt.h"

namespace quilon {

namespace {

// Each part is drawn by a call of its own, and its borders to others are in the page.
constexpr std::size_t kMostParts = 1000;

using PartKey = std::pair<int, std::vector<std::uint32_t>>;  // material, sets

/// @return by position of the element the sets that it is in, ascending
std::vector<std::vector<std::uint32_t>> SetsOfElements(const Mesh& mesh, const std::vector<NamedSet>& sets)
{
  std::vector<std::vector<std::uint32_t>> setsOf(mesh.NumElements());
  for (std::size_t number = 0; number < sets.size(); ++number) {
    if (!sets[number].ofElements) continue;
    std::vector<std::size_t> members;
    for (const int id : sets[number].ids)
      if (const auto position = mesh.FindElement(id)) members.push_back(*position);
    std::sort(members.begin(), members.end());
    members.erase(std::unique(members.begin(), members.end()), members.end());
    if (members.size() == mesh.NumElements()) continue;
    for (const std::size_t element : members) setsOf[element].push_back(static_cast<std::uint32_t>(number));
  }
  return setsOf;
}

struct Partition
{
  std::vector<std::size_t> partOf;  // by position of the element
  std::vector<PartKey>     keys;    // of the parts, ascending
  bool                     leavesOutSets = false;
};

Partition FindParts(const Mesh& mesh, const std::vector<NamedSet>& sets)
{
  Partition                               partition;
  std::vector<std::vector<std::uint32_t>> setsOf = SetsOfElements(mesh, sets);
  std::map<PartKey, std::size_t>          parts;
  const auto                              list = [&] {
    for (std::size_t i = 0; i < mesh.NumElements(); ++i) parts.try_emplace({mesh.Elements()[i].material, setsOf[i]}, 0);
  };
  list();
  if (parts.size() > kMostParts) {
    std::fill(setsOf.begin(), setsOf.end(), std::vector<std::uint32_t>());
    parts.clear();
    list();
    partition.leavesOutSets = true;
  }
  for (auto& [key, number] : parts) {
    number = partition.keys.size();
    partition.keys.push_back(key);
  }
  partition.partOf.reserve(mesh.NumElements());
  for (std::size_t i = 0; i < mesh.NumElements(); ++i)
    partition.partOf.push_back(parts.at({mesh.Elements()[i].material, setsOf[i]}));
  return partition;
}

constexpr std::uint32_t kNone = 0xFFFFFFFFU;

/// @return by position in the whole its position in one list, or in the next behind it; kNone in neither
std::vector<std::uint32_t> Positions(const std::vector<std::uint32_t>& first, const std::vector<std::uint32_t>& next,
                                     std::size_t size)
{
  std::vector<std::uint32_t> positions(size, kNone);
  std::uint32_t              count = 0;
  for (const auto* list : {&first, &next})
    for (const std::uint32_t one : *list) positions[one] = count++;
  return positions;
}

/// Which point of a grid a node of an element is: where averages differ, a node has several.
class GridPoints
{
public:
  GridPoints(const Mesh& mesh, GridSource& grid) : grid_(grid)
  {
    nodeOfPoint_.reserve(grid.NumPoints());
    for (const int id : ReadPointIds(grid)) nodeOfPoint_.push_back(mesh.FindNode(id).value());
  }

  std::uint32_t PointOf(std::size_t element, std::size_t node) const
  {
    const auto begin = static_cast<std::size_t>(grid_.Offsets()[element]);
    const auto end   = static_cast<std::size_t>(grid_.Offsets()[element + 1]);
    for (std::size_t i = begin; i < end; ++i) {
      const auto point = static_cast<std::size_t>(grid_.Connectivity()[i]);
      if (nodeOfPoint_[point] == node) return static_cast<std::uint32_t>(point);
    }
    return static_cast<std::uint32_t>(node);  // not reached: a face has nodes of its element
  }

private:
  const GridSource&        grid_;
  std::vector<std::size_t> nodeOfPoint_;
};

class Builder
{
public:
  Builder(const Mesh& mesh, GridSource& grid) : mesh_(mesh), grid_(grid), points_(mesh, grid) {}

  /// @param isIn the elements of the part
  void Add(const PartKey& key, const Surface& surface, const std::vector<bool>& isIn)
  {
    PagePart& part = model_.parts.emplace_back();
    part.material  = key.first;
    part.sets      = key.second;
    part.triangles = {model_.triangleElements.size(), surface.triangles.size()};
    part.edges     = {model_.edges.size() / 2, surface.edges.size()};
    part.beams     = {model_.beamElements.size(), surface.beams.size()};
    for (const Surface::Triangle& triangle : surface.triangles) {
      for (const std::size_t node : triangle.nodes) model_.triangles.push_back(points_.PointOf(triangle.element, node));
      model_.triangleElements.push_back(static_cast<std::uint32_t>(triangle.element));
    }
    for (const Surface::Line& edge : surface.edges)
      for (const std::size_t node : edge.nodes) model_.edges.push_back(points_.PointOf(edge.element, node));
    for (const Surface::Line& beam : surface.beams) {
      for (const std::size_t node : beam.nodes) model_.beams.push_back(points_.PointOf(beam.element, node));
      model_.beamElements.push_back(static_cast<std::uint32_t>(beam.element));
    }
    part.solids.first = model_.solids.size();
    for (std::size_t i = 0; i < isIn.size(); ++i)
      if (isIn[i] && FindShape(mesh_.Elements()[i].frdType)) model_.solids.push_back(static_cast<std::uint32_t>(i));
    part.solids.count = model_.solids.size() - part.solids.first;
  }

  PageModel Finish(bool leavesOutSets)
  {
    model_.leavesOutSets = leavesOutSets;
    model_.points        = Number({&model_.triangles, &model_.edges, &model_.beams}, grid_.NumPoints());
    model_.elements      = Number({&model_.triangleElements, &model_.beamElements}, mesh_.NumElements());
    FindInside();
    return std::move(model_);
  }

private:
  void FindInside()
  {
    std::vector<bool> isPoint(grid_.NumPoints());
    std::vector<bool> isElement(mesh_.NumElements());
    for (const std::uint32_t solid : model_.solids) {
      isElement[solid] = true;
      for (auto i = static_cast<std::size_t>(grid_.Offsets()[solid]);
           i < static_cast<std::size_t>(grid_.Offsets()[solid + 1]); ++i)
        isPoint[static_cast<std::size_t>(grid_.Connectivity()[i])] = true;
    }
    model_.insidePoints   = Without(std::move(isPoint), model_.points);
    model_.insideElements = Without(std::move(isElement), model_.elements);
  }

  /// @return positions that are marked and not drawn, ascending
  static std::vector<std::uint32_t> Without(std::vector<bool> isMarked, const std::vector<std::uint32_t>& drawn)
  {
    for (const std::uint32_t position : drawn) isMarked[position] = false;
    std::vector<std::uint32_t> rest;
    for (std::size_t position = 0; position < isMarked.size(); ++position)
      if (isMarked[position]) rest.push_back(static_cast<std::uint32_t>(position));
    return rest;
  }

  /// Counts those that stand in the lists anew, ascending.
  /// @return what was counted
  static std::vector<std::uint32_t> Number(const std::vector<std::vector<std::uint32_t>*>& lists, std::size_t size)
  {
    std::vector<std::uint32_t> numbers(size, kNone);
    for (const auto* list : lists)
      for (const std::uint32_t old : *list) numbers[old] = 0;
    std::vector<std::uint32_t> used;
    for (std::size_t old = 0; old < size; ++old) {
      if (numbers[old] == kNone) continue;
      numbers[old] = static_cast<std::uint32_t>(used.size());
      used.push_back(static_cast<std::uint32_t>(old));
    }
    for (auto* list : lists)
      for (std::uint32_t& number : *list) number = numbers[number];
    return used;
  }

  const Mesh&       mesh_;
  const GridSource& grid_;
  GridPoints        points_;
  PageModel         model_;
};

}  // namespace

std::vector<int> ReadPointIds(GridSource& grid)
{
  const std::span<const std::byte> bytes = grid.Read(0, 0);  // the first array of a grid has them
  std::vector<int>                 ids(grid.NumPoints());
  std::memcpy(ids.data(), bytes.data(), ids.size() * sizeof(int));
  return ids;
}

PageModel MakePageModel(const Mesh& mesh, const std::vector<NamedSet>& sets, GridSource& grid)
{
  const Partition   partition = FindParts(mesh, sets);
  Builder           builder(mesh, grid);
  std::vector<bool> isIn(mesh.NumElements());
  for (std::size_t part = 0; part < partition.keys.size(); ++part) {
    ThrowIfInterrupted();
    for (std::size_t i = 0; i < isIn.size(); ++i) isIn[i] = partition.partOf[i] == part;
    builder.Add(partition.keys[part], ExtractSurface(mesh, isIn), isIn);
  }
  return builder.Finish(partition.leavesOutSets);
}

PageSolids ListPageSolids(const Mesh& mesh, GridSource& grid, const PageModel& model)
{
  const GridPoints gridPoints(mesh, grid);
  const auto       points   = Positions(model.points, model.insidePoints, grid.NumPoints());
  const auto       elements = Positions(model.elements, model.insideElements, mesh.NumElements());
  PageSolids       solids;
  for (const std::uint32_t solid : model.solids) {
    const Mesh::Element& element = mesh.Elements()[solid];
    solids.types.push_back(static_cast<std::uint32_t>(element.frdType));
    solids.elements.push_back(elements[solid]);
    for (const std::size_t node : mesh.NodesOf(element))
      solids.points.push_back(points[gridPoints.PointOf(solid, node)]);
  }
  return solids;
}

PageNodeSets ListPageNodeSets(const Mesh& mesh, const std::vector<NamedSet>& sets, GridSource& grid,
                              const PageModel& model)
{
  const std::vector<int>                     ids = ReadPointIds(grid);
  std::vector<std::pair<int, std::uint32_t>> drawn;  // node's id, position in the model's points
  for (std::size_t i = 0; i < model.points.size(); ++i)
    drawn.emplace_back(ids[model.points[i]], static_cast<std::uint32_t>(i));
  std::sort(drawn.begin(), drawn.end());
  PageNodeSets listed;
  for (std::size_t number = 0; number < sets.size(); ++number) {
    ThrowIfInterrupted();
    if (sets[number].ofElements) continue;
    std::set<int> nodes(sets[number].ids.begin(), sets[number].ids.end());
    std::erase_if(nodes, [&mesh](int id) { return !mesh.FindNode(id); });
    if (nodes.empty()) continue;
    const std::size_t first = listed.points.size();
    for (const int id : nodes)
      for (auto at = std::lower_bound(drawn.begin(), drawn.end(), std::pair(id, std::uint32_t{0}));
           at != drawn.end() && at->first == id; ++at)
        listed.points.push_back(at->second);
    std::sort(listed.points.begin() + static_cast<std::ptrdiff_t>(first), listed.points.end());
    listed.sets.push_back({static_cast<std::uint32_t>(number), nodes.size(), {first, listed.points.size() - first}});
  }
  return listed;
}

}  // namespace quilon
