#include "diff/MeshMatching.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

#include <nanoflann.hpp>

#include <bundled/OnfKinds.h>

#include "database/ScratchRecord.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon::diff {

namespace {

constexpr int kVectorType = 5;

// Nodes within the tolerance of a node, on average. More would make no sense, and the pairs of all nodes with all fill
// any memory.
constexpr std::size_t kMostCandidates = 100;

struct Node
{
  int                   id;
  std::array<double, 3> place;
};

/// What the search asks for.
struct Cloud
{
  std::vector<Node> nodes;

  std::size_t kdtree_get_point_count() const { return nodes.size(); }
  double      kdtree_get_pt(std::size_t node, std::size_t axis) const { return nodes[node].place[axis]; }
  template <typename Box>
  bool kdtree_get_bbox(Box&) const
  {
    return false;
  }
};

using Tree = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, Cloud>, Cloud, 3, std::size_t>;

const FED_DataBlock* FindBlock(const FED_Database& database, int onf)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, onf);
  const std::vector<FED_DataDescriptor> found = database.GetDataDescriptors(pattern);
  if (found.empty()) return nullptr;
  return &database.GetConstDataBlock(*std::min_element(found.begin(), found.end()));
}

void RequireVectors(const FED_DataBlock& block, const std::string& name)
{
  const ScratchRecord scratch(block);
  const bool          isEmpty = scratch->GetFieldCount() == 0;
  if (isEmpty || (scratch->GetFieldCount() == 1 && scratch->GetFieldType(1) == kVectorType)) return;
  Fail(name + ": the coordinates (516) are no vectors, expected three doubles a node");
}

/// The nodes that are somewhere, by ascending id.
Cloud ReadNodes(const FED_Database& database, const std::string& name)
{
  const FED_DataBlock* const block = FindBlock(database, OnfKind::Coordinates);
  if (block == nullptr) Fail(name + ": holds no coordinates (516), expected them to match points");
  RequireVectors(*block, name);
  Cloud                      cloud;
  const FED_ConstIdDataBlock ids(*block, database.GetIdMapsPool());
  for (auto index = block->Begin(); index != block->End(); ++index) {
    ThrowIfInterrupted();
    Node node{ids.GetId(*index), {}};
    block->GetValuesAt(*index, node.place.data());
    // A node at no place has no neighbour, and the search is not made for it.
    if (std::all_of(node.place.begin(), node.place.end(), [](double x) { return std::isfinite(x); }))
      cloud.nodes.push_back(node);
  }
  std::sort(cloud.nodes.begin(), cloud.nodes.end(), [](const Node& a, const Node& b) { return a.id < b.id; });
  return cloud;
}

IdMap MatchNodes(const Cloud& first, const Cloud& second, double tolerance, const std::string& firstName,
                 std::size_t& ambiguous)
{
  IdMap map;
  if (first.nodes.empty() || second.nodes.empty()) return map;
  const Tree tree(3, second, nanoflann::KDTreeSingleIndexAdaptorParams(16));

  // The search leaves out what lies exactly at its radius; what it finds beyond the tolerance is sorted out again.
  const double limit  = tolerance * tolerance;
  const double radius = limit * (1.0 + 1e-12) + std::numeric_limits<double>::min();
  using Candidate     = std::tuple<double, int, int>;  // squared distance, first id, second id
  std::vector<Candidate>                      candidates;
  std::vector<std::pair<std::size_t, double>> found;
  for (const Node& node : first.nodes) {
    ThrowIfInterrupted();
    if (candidates.size() > kMostCandidates * first.nodes.size())
      Fail("nodes of " + firstName + " have more than " + std::to_string(kMostCandidates) + " nodes each within " +
           FormatNumber(tolerance) + ", expected a tolerance below the distances of nodes");
    found.clear();
    tree.radiusSearch(node.place.data(), radius, found, nanoflann::SearchParams(32, 0.0F, false));
    std::size_t within = 0;
    for (const auto& [other, squared] : found) {
      if (!(squared <= limit)) continue;
      candidates.emplace_back(squared, node.id, second.nodes[other].id);
      ++within;
    }
    if (within > 1) ++ambiguous;
  }
  std::sort(candidates.begin(), candidates.end());
  std::unordered_set<int> taken;
  for (const auto& [squared, id, other] : candidates) {
    if (map.contains(id) || taken.contains(other)) continue;
    map.emplace(id, other);
    taken.insert(other);
  }
  return map;
}

/// The ids of elements by their nodes, sorted; elements between the same nodes by ascending id.
using ElementsByNodes = std::map<std::vector<int>, std::vector<int>>;

/// @param translate node ids to write instead; an element with a node that it lacks is left out; null keeps the ids
ElementsByNodes ReadElements(const FED_Database& database, const FED_DataBlock& block, const IdMap* translate)
{
  ElementsByNodes            elements;
  const FED_ConstIdDataBlock ids(block, database.GetIdMapsPool());
  const ScratchRecord        scratch(block);
  FED_IntArray               list;
  for (auto index = block.Begin(); index != block.End(); ++index) {
    ThrowIfInterrupted();
    block.GetRecord(*index, *scratch);
    scratch->GetIntList(1, list);
    std::vector<int> nodes(list.GetData(), list.GetData() + list.GetSize());
    if (translate != nullptr) {
      const bool all = std::all_of(nodes.begin(), nodes.end(), [&](int id) { return translate->contains(id); });
      if (!all) continue;
      for (int& id : nodes) id = translate->at(id);
    }
    std::sort(nodes.begin(), nodes.end());
    elements[nodes].push_back(ids.GetId(*index));
  }
  for (auto& [nodes, same] : elements) std::sort(same.begin(), same.end());
  return elements;
}

IdMap MatchElements(const FED_Database& first, const FED_Database& second, const IdMap& nodes)
{
  const FED_DataBlock* const firstBlock  = FindBlock(first, FED_OnfId_ElementNodes);
  const FED_DataBlock* const secondBlock = FindBlock(second, FED_OnfId_ElementNodes);
  IdMap                      map;
  if (firstBlock == nullptr || secondBlock == nullptr) return map;
  const ElementsByNodes others = ReadElements(second, *secondBlock, nullptr);
  for (const auto& [key, ids] : ReadElements(first, *firstBlock, &nodes)) {
    const auto found = others.find(key);
    if (found == others.end()) continue;
    for (std::size_t i = 0; i < std::min(ids.size(), found->second.size()); ++i) map.emplace(ids[i], found->second[i]);
  }
  return map;
}

}  // namespace

MeshMatch MatchMeshes(const FED_Database& first, const FED_Database& second, double tolerance,
                      const std::string& firstName, const std::string& secondName, MeshMatchReport& report)
{
  const Cloud firstNodes  = ReadNodes(first, firstName);
  const Cloud secondNodes = ReadNodes(second, secondName);
  MeshMatch   match;
  match.nodes    = MatchNodes(firstNodes, secondNodes, tolerance, firstName, report.ambiguousNodes);
  match.elements = MatchElements(first, second, match.nodes);
  match.hasElements =
      FindBlock(first, FED_OnfId_ElementNodes) != nullptr && FindBlock(second, FED_OnfId_ElementNodes) != nullptr;
  report.nodes    = match.nodes.size();
  report.elements = match.elements.size();
  return match;
}

}  // namespace quilon::diff
