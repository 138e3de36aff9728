#include "export/ExportGroups.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "database/ScratchRecord.h"

namespace quilon {

namespace {

/// What groups may be: which elements each has, and its name.
struct Candidate
{
  std::map<int, std::vector<std::size_t>> elements;  ///< positions in the mesh, ascending, by group
  std::map<int, std::string>              names;
};

const FED_DataBlock* FindBlock(const FED_Database& database, int iteration, FED_OnfId onf)
{
  const FED_DataDescriptor descriptor(iteration, onf);
  return database.HasDataBlock(descriptor) ? &database.GetConstDataBlock(descriptor) : nullptr;
}

Candidate Materials(const FED_Database& database, int iteration, const Mesh& mesh)
{
  Candidate candidate;
  for (std::size_t position = 0; position < mesh.NumElements(); ++position)
    candidate.elements[mesh.Elements()[position].material].push_back(position);
  if (const FED_DataBlock* block = FindBlock(database, iteration, OnfKind::Material)) {
    const FED_ConstIdDataBlock view(*block, database.GetIdMapsPool());
    const ScratchRecord        record(*block);
    for (auto index = block->Begin(); index != block->End(); ++index) {
      block->GetRecord(*index, *record);
      candidate.names[view.GetId(*index)] = record->GetString(1);
    }
  }
  return candidate;
}

Candidate Sections(const FED_Database& database, int iteration, const Mesh& mesh)
{
  Candidate candidate;
  if (const FED_DataBlock* block = FindBlock(database, iteration, OnfKind::ElementSection)) {
    const FED_ConstIdDataBlock view(*block, database.GetIdMapsPool());
    const ScratchRecord        record(*block);
    for (auto index = block->Begin(); index != block->End(); ++index) {
      const auto position = mesh.FindElement(view.GetId(*index));
      if (!position) continue;
      block->GetRecord(*index, *record);
      const int section = record->GetInteger(1);
      candidate.elements[section].push_back(*position);
      candidate.names[section] = "section-" + std::to_string(section);
    }
  }
  for (auto& [section, elements] : candidate.elements) std::sort(elements.begin(), elements.end());
  return candidate;
}

Candidate Sets(const FED_Database& database, int iteration, const Mesh& mesh)
{
  Candidate candidate;
  int       number = 0;
  for (const NamedSet& set : ReadSets(database, iteration)) {
    if (!set.ofElements) continue;
    ++number;
    candidate.names[number]            = set.name;
    std::vector<std::size_t>& elements = candidate.elements[number];
    for (const int id : set.ids)
      if (const auto position = mesh.FindElement(id)) elements.push_back(*position);
    std::sort(elements.begin(), elements.end());
  }
  return candidate;
}

/// Which nodes have an average over a group.
using NodesOfGroup = std::map<int, std::vector<bool>>;

NodesOfGroup FindAveragedNodes(const FED_Database& database, const Mesh& mesh,
                               const std::vector<FED_DataDescriptor>& blocks)
{
  NodesOfGroup found;
  for (const FED_DataDescriptor& descriptor : blocks) {
    if (!descriptor.IsSet(OnfIndex::Group)) continue;
    // One block a group tells: all steps have an average over the same elements.
    const auto [group, isNew] = found.try_emplace(descriptor.GetInteger(OnfIndex::Group), mesh.NumNodes(), false);
    if (!isNew) continue;
    std::vector<bool>& isAveraged = group->second;
    FED_ForEachSpan(database.GetConstDataBlock(descriptor), database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
      const auto ids = span.GetIds();
      for (std::size_t i = 0; i < ids.GetSize(); ++i)
        if (const auto node = mesh.FindNode(ids.GetData()[i])) isAveraged[*node] = true;
    });
  }
  return found;
}

/// @return how many nodes the groups have without an average; nothing where a node has one and is in no element
std::optional<std::size_t> CountNodesWithout(const Candidate& candidate, const Mesh& mesh, const NodesOfGroup& averaged)
{
  std::size_t count = 0;
  for (const auto& [group, nodes] : averaged) {
    const auto elements = candidate.elements.find(group);
    if (elements == candidate.elements.end()) return std::nullopt;
    std::vector<bool> isNode(mesh.NumNodes(), false);
    for (const std::size_t element : elements->second)
      for (const std::size_t node : mesh.NodesOf(mesh.Elements()[element])) isNode[node] = true;
    for (std::size_t node = 0; node < nodes.size(); ++node) {
      if (nodes[node] && !isNode[node]) return std::nullopt;
      if (isNode[node] && !nodes[node]) ++count;
    }
  }
  return count;
}

}  // namespace

ExportGroups::ExportGroups(const FED_Database& database, int iteration, const Mesh& mesh,
                           const std::vector<FED_DataDescriptor>& blocks)
{
  const NodesOfGroup averaged = FindAveragedNodes(database, mesh, blocks);
  if (averaged.empty()) return;
  std::size_t least = std::numeric_limits<std::size_t>::max();
  Candidate   best;
  for (const auto list : {Materials, Sections, Sets}) {
    Candidate candidate = list(database, iteration, mesh);
    if (const auto count = CountNodesWithout(candidate, mesh, averaged); count && *count < least) {
      least = *count;
      best  = std::move(candidate);
    }
  }
  areKnown_ = least != std::numeric_limits<std::size_t>::max();
  elementGroups_.assign(mesh.NumElements(), 0);
  for (const auto& [group, nodes] : averaged) {
    if (const auto name = best.names.find(group); name != best.names.end()) names_[group] = name->second;
    for (const std::size_t element : best.elements[group])
      if (elementGroups_[element] == 0) elementGroups_[element] = group;
  }
}

std::string ExportGroups::NameOf(int group) const
{
  const auto name = names_.find(group);
  return name == names_.end() || name->second.empty() ? std::to_string(group) : name->second;
}

}  // namespace quilon
