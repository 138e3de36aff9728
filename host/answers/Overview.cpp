#include "answers/Overview.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>

#include "answers/ModelNames.h"
#include "database/StepTimes.h"
#include "kinds/GroupNames.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"

namespace quilon {

namespace {

using Descriptor  = FED_DataDescriptor;
using Descriptors = std::vector<FED_DataDescriptor>;

std::set<int> IterationsOf(const Descriptors& blocks)
{
  std::set<int> iterations;
  for (const Descriptor& block : blocks)
    if (block.IsSet(Descriptor::Iteration)) iterations.insert(block.GetInteger(Descriptor::Iteration));
  return iterations;
}

bool HasMesh(const FED_Database& database, int iteration)
{
  const Descriptor coordinates(iteration, OnfKind::Coordinates);
  return database.HasDataBlock(coordinates) && HasRecords(database.GetConstDataBlock(coordinates));
}

std::size_t CountOnce(std::vector<int> ids)
{
  std::sort(ids.begin(), ids.end());
  return static_cast<std::size_t>(std::unique(ids.begin(), ids.end()) - ids.begin());
}

std::map<std::string, std::size_t> CountTypes(const Mesh& mesh, const DeckTypes& types)
{
  std::map<std::string, std::size_t> counts;
  for (const Mesh::Element& element : mesh.Elements()) ++counts[types.NameOf(element.id, element.frdType)];
  return counts;
}

std::map<int, std::string> GroupLabels(const FED_Database& database, Region& region)
{
  std::map<int, std::string> names;
  const std::vector<int>     groups = ReadGroups(database);
  if (!groups.empty()) names = NameGroups(database, region);
  std::map<int, std::string> labels;
  for (const int group : groups) labels[group] = names.contains(group) ? names.at(group) : std::to_string(group);
  return labels;
}

/// Compares tensors of two blocks by index: blocks of one entity kind share their indices.
SolverDeviation Compare(const FED_DataBlock& ours, const FED_DataBlock& solvers)
{
  constexpr std::size_t kNumComponents = 6;
  std::vector<double>   theirs;  // shape [index, 6], nan where there is none
  double                largest = 0.0;
  FED_ForEachSpan(solvers, [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    const double* values = span.GetDoubles(1).GetData();
    for (std::size_t i = 0; i < span.GetCount(); ++i) {
      const std::size_t first = span.GetIndices().GetData()[i] * kNumComponents;
      if (theirs.size() < first + kNumComponents) theirs.resize(first + kNumComponents, std::nan(""));
      std::copy_n(values + i * kNumComponents, kNumComponents, theirs.begin() + static_cast<std::ptrdiff_t>(first));
    }
  });
  SolverDeviation result;
  FED_ForEachSpan(ours, [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    const double* values = span.GetDoubles(1).GetData();
    for (std::size_t i = 0; i < span.GetCount(); ++i) {
      const std::size_t first = span.GetIndices().GetData()[i] * kNumComponents;
      if (first >= theirs.size()) continue;
      for (std::size_t k = 0; k < kNumComponents; ++k) {
        const double difference = std::fabs(values[i * kNumComponents + k] - theirs[first + k]);
        if (!std::isfinite(difference)) continue;
        largest          = std::max(largest, std::fabs(theirs[first + k]));
        result.deviation = std::max(result.deviation, difference);
      }
    }
  });
  if (largest > 0.0) result.deviation /= largest;
  return result;
}

/// The last step that has both averages over all elements.
std::vector<SolverDeviation> CompareAverages(const FED_Database& database, const Descriptors& blocks)
{
  const KindTable              kinds;
  std::vector<SolverDeviation> deviations;
  for (const auto& [average, solver] : {std::pair(OnfKind::NodalStress, OnfKind::NodalStressSolver),
                                        std::pair(OnfKind::NodalStrain, OnfKind::NodalStrainSolver)})
  {
    std::optional<Descriptor> last;
    for (const Descriptor& step : ListResultSteps(blocks)) {
      Descriptor ours = step;
      ours.SetInteger(Descriptor::OnfId, average);
      Descriptor theirs = step;
      theirs.SetInteger(Descriptor::OnfId, solver);
      if (database.HasDataBlock(ours) && database.HasDataBlock(theirs)) last = step;
    }
    if (!last) continue;
    Descriptor ours = *last;
    ours.SetInteger(Descriptor::OnfId, average);
    Descriptor theirs = *last;
    theirs.SetInteger(Descriptor::OnfId, solver);
    SolverDeviation deviation = Compare(database.GetConstDataBlock(ours), database.GetConstDataBlock(theirs));
    deviation.kind            = kinds.GetName(average);
    deviation.step            = *last;
    deviations.push_back(std::move(deviation));
  }
  return deviations;
}

}  // namespace

std::vector<KindSummary> SummarizeKinds(const std::vector<ListedBlock>& blocks, const StepTimes& times)
{
  std::vector<KindSummary>           summaries;
  std::vector<std::set<Descriptor>>  steps;
  std::map<std::string, std::size_t> places;
  for (const ListedBlock& block : blocks) {
    const int onf             = block.descriptor.GetInteger(Descriptor::OnfId);
    const auto [found, isNew] = places.try_emplace(std::to_string(onf) + ' ' + block.kind, summaries.size());
    if (isNew) {
      summaries.emplace_back();
      summaries.back().onf  = onf;
      summaries.back().kind = block.kind;
      steps.emplace_back();
    }
    KindSummary&        kind    = summaries[found->second];
    const BlockSummary& summary = block.summary;
    ++kind.blocks;
    kind.records += summary.records;
    kind.bytes += summary.bytes;
    kind.nans += summary.nans;
    if (summary.hasValues) {
      kind.least     = kind.hasValues ? std::min(kind.least, summary.least) : summary.least;
      kind.greatest  = kind.hasValues ? std::max(kind.greatest, summary.greatest) : summary.greatest;
      kind.hasValues = true;
    }
    if (HasResultStep(block.descriptor)) steps[found->second].insert(GetResultStep(block.descriptor));
    if (const std::optional<double> time = times.TimeOf(block.descriptor)) {
      kind.firstTime = kind.firstTime ? std::min(*kind.firstTime, *time) : *time;
      kind.lastTime  = kind.lastTime ? std::max(*kind.lastTime, *time) : *time;
    }
  }
  for (std::size_t i = 0; i < summaries.size(); ++i) summaries[i].steps = steps[i].size();
  return summaries;
}

namespace {

/// Adds materials and types of elements.
void AddElements(const ModelNames& names, int iteration, const Mesh& mesh, std::vector<ModelName>& list)
{
  std::map<int, std::size_t> materials;
  for (const Mesh::Element& element : mesh.Elements())
    if (element.material != 0) ++materials[element.material];
  for (const auto& [number, count] : materials)
    list.push_back({"material", iteration, number, names.MaterialOf(number), count});
  for (const auto& [type, count] : CountTypes(mesh, names.TypesOf(iteration)))
    list.push_back({"element-type", iteration, 0, type, count});
}

/// Adds the orientations of an iteration with the number of elements whose section has them.
void AddOrientations(const FED_Database& database, int iteration, std::vector<ModelName>& list)
{
  std::map<int, std::size_t> counts;
  const Descriptor           sections(iteration, OnfKind::ElementSection);
  if (database.HasDataBlock(sections))
    FED_ForEachSpan(database.GetConstDataBlock(sections), [&](const FED_BlockSpan& span) {
      ThrowIfInterrupted();
      for (std::size_t i = 0; i < span.GetCount(); ++i) ++counts[span.GetIntegers(3).GetData()[i]];
    });
  for (const NamedRecord& orientation : ReadNames(database, OnfKind::Orientation, iteration))
    list.push_back({"orientation", iteration, orientation.number, orientation.name, counts[orientation.number]});
}

}  // namespace

std::vector<ModelName> ListModelNames(const FED_Database& database, Region& region)
{
  const Descriptors      blocks = database.GetDataDescriptors(FED_DataDescriptorPattern());
  const ModelNames       names(database);
  std::vector<ModelName> list;
  for (const int iteration : IterationsOf(blocks)) {
    int numbers[2] = {0, 0};
    for (const NamedSet& set : region.GetSets(iteration))
      list.push_back({set.ofElements ? "element-set" : "node-set", iteration, ++numbers[set.ofElements ? 1 : 0],
                      set.name, CountOnce(set.ids)});
    if (HasMesh(database, iteration)) AddElements(names, iteration, region.GetMesh(iteration), list);
    AddOrientations(database, iteration, list);
  }
  std::map<std::pair<int, int>, std::size_t> groups;  // by iteration and number
  for (const Descriptor& block : blocks)
    if (block.IsSet(OnfIndex::Group))
      ++groups[{block.GetInteger(Descriptor::Iteration), block.GetInteger(OnfIndex::Group)}];
  const std::map<int, std::string> labels = GroupLabels(database, region);
  for (const auto& [key, count] : groups)
    list.push_back({"group", key.first, key.second, labels.at(key.second), count});
  return list;
}

Overview MakeOverview(const FED_Database& database, const std::string& name, const StepTimes& times)
{
  const Descriptors   blocks     = database.GetDataDescriptors(FED_DataDescriptorPattern());
  const std::set<int> iterations = IterationsOf(blocks);
  Region              region(database, {}, name);
  Overview            overview;
  overview.iterations = iterations.size();
  const auto meshed =
      std::find_if(iterations.begin(), iterations.end(), [&](int iteration) { return HasMesh(database, iteration); });
  if (meshed != iterations.end()) {
    overview.iteration = *meshed;
    const Mesh& mesh   = region.GetMesh(*meshed);
    overview.nodes     = mesh.NumNodes();
    overview.elements  = CountTypes(mesh, DeckTypes(database, *meshed));
    overview.box       = BoxOf(mesh);
  } else if (!iterations.empty()) {
    overview.iteration = *iterations.begin();
  }
  for (const NamedRecord& material : ReadNames(database, OnfKind::Material))
    overview.materials.push_back(material.name);
  for (const NamedSet& set : region.GetSets(overview.iteration))
    if (std::find(overview.sets.begin(), overview.sets.end(), set.name) == overview.sets.end())
      overview.sets.push_back(set.name);
  for (const Descriptor& step : ListResultSteps(blocks))
    overview.steps.push_back({step, times.TimeOf(step), times.QuantityOf(step)});
  std::vector<ListedBlock> listed = ListBlocks(database, Selection(), KindTable(database));
  std::erase_if(listed, [](const ListedBlock& block) {
    return OnfKind::IsProvenance(block.descriptor.GetInteger(Descriptor::OnfId));
  });
  overview.kinds = SummarizeKinds(listed, times);
  for (const auto& [number, label] : GroupLabels(database, region)) overview.groups.push_back(label);
  overview.deviations = CompareAverages(database, blocks);
  return overview;
}

}  // namespace quilon
