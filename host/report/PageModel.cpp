#include "report/PageModel.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <span>
#include <utility>

#include "export/GridSource.h"
#include "mesh/Surface.h"
#include "progress/Interrupt.h"

namespace quilon {

namespace {

constexpr std::size_t kMostParts = 40;

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

/// @return by position of the element its part; the parts' keys, ascending
std::pair<std::vector<std::size_t>, std::vector<PartKey>> FindParts(const Mesh& mesh, const std::vector<NamedSet>& sets)
{
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
  }
  std::vector<PartKey> keys;
  for (auto& [key, number] : parts) {
    number = keys.size();
    keys.push_back(key);
  }
  std::vector<std::size_t> partOf;
  partOf.reserve(mesh.NumElements());
  for (std::size_t i = 0; i < mesh.NumElements(); ++i)
    partOf.push_back(parts.at({mesh.Elements()[i].material, setsOf[i]}));
  return {std::move(partOf), std::move(keys)};
}

class Builder
{
public:
  Builder(const Mesh& mesh, GridSource& grid) : mesh_(mesh), grid_(grid)
  {
    nodeOfPoint_.reserve(grid.NumPoints());
    for (const int id : ReadPointIds(grid)) nodeOfPoint_.push_back(mesh.FindNode(id).value());
  }

  void Add(const PartKey& key, const Surface& surface)
  {
    PagePart& part = model_.parts.emplace_back();
    part.material  = key.first;
    part.sets      = key.second;
    part.triangles = {model_.triangleElements.size(), surface.triangles.size()};
    part.edges     = {model_.edges.size() / 2, surface.edges.size()};
    part.beams     = {model_.beamElements.size(), surface.beams.size()};
    for (const Surface::Triangle& triangle : surface.triangles) {
      for (const std::size_t node : triangle.nodes) model_.triangles.push_back(PointOf(triangle.element, node));
      model_.triangleElements.push_back(static_cast<std::uint32_t>(triangle.element));
    }
    for (const Surface::Line& edge : surface.edges)
      for (const std::size_t node : edge.nodes) model_.edges.push_back(PointOf(edge.element, node));
    for (const Surface::Line& beam : surface.beams) {
      for (const std::size_t node : beam.nodes) model_.beams.push_back(PointOf(beam.element, node));
      model_.beamElements.push_back(static_cast<std::uint32_t>(beam.element));
    }
  }

  PageModel Finish()
  {
    model_.points   = Number({&model_.triangles, &model_.edges, &model_.beams}, grid_.NumPoints());
    model_.elements = Number({&model_.triangleElements, &model_.beamElements}, mesh_.NumElements());
    return std::move(model_);
  }

private:
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

  /// Counts those that stand in the lists anew, ascending.
  /// @return what was counted
  static std::vector<std::uint32_t> Number(const std::vector<std::vector<std::uint32_t>*>& lists, std::size_t size)
  {
    constexpr std::uint32_t    kUnused = 0xFFFFFFFFU;
    std::vector<std::uint32_t> numbers(size, kUnused);
    for (const auto* list : lists)
      for (const std::uint32_t old : *list) numbers[old] = 0;
    std::vector<std::uint32_t> used;
    for (std::size_t old = 0; old < size; ++old) {
      if (numbers[old] == kUnused) continue;
      numbers[old] = static_cast<std::uint32_t>(used.size());
      used.push_back(static_cast<std::uint32_t>(old));
    }
    for (auto* list : lists)
      for (std::uint32_t& number : *list) number = numbers[number];
    return used;
  }

  const Mesh&              mesh_;
  GridSource&              grid_;
  std::vector<std::size_t> nodeOfPoint_;
  PageModel                model_;
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
  const auto [partOf, keys] = FindParts(mesh, sets);
  Builder           builder(mesh, grid);
  std::vector<bool> isIn(mesh.NumElements());
  for (std::size_t part = 0; part < keys.size(); ++part) {
    ThrowIfInterrupted();
    for (std::size_t i = 0; i < isIn.size(); ++i) isIn[i] = partOf[i] == part;
    builder.Add(keys[part], ExtractSurface(mesh, isIn));
  }
  return builder.Finish();
}

}  // namespace quilon
