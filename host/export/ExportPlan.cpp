#include "export/ExportPlan.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <utility>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>

#include "database/StepTimes.h"
#include "export/ArrayNames.h"
#include "export/ExportGroups.h"
#include "kinds/KindTable.h"
#include "selection/Selection.h"
#include "text/Case.h"
#include "text/Failure.h"

namespace quilon {

namespace {

using Descriptor = FED_DataDescriptor;

using OnfKind::OnfOf;

void Clear(Descriptor& key, Descriptor::ResultIndex index)
{
  key.SetInteger(index, 0);
  key.mask &= ~(1U << static_cast<unsigned>(index));
}

/// @return the key without what tells its step: blocks of one array share it
Descriptor WithoutStep(Descriptor key)
{
  for (const auto index :
       {Descriptor::Iteration, Descriptor::Analysis, Descriptor::LoadCase, Descriptor::Substep, Descriptor::Increment})
    Clear(key, index);
  return key;
}

/// @return whether the name, or the beginning of it alone, is that of a component of the kind
bool HasComponent(const std::string& name, int onf)
{
  const std::string              folded = LowerCase(name);
  const std::vector<std::string> names  = ComponentNamesOf(onf);
  return std::find(names.begin(), names.end(), folded) != names.end() ||
         std::count_if(names.begin(), names.end(), [&](const std::string& has) { return has.starts_with(folded); }) ==
             1;
}

std::vector<Component> ComponentsOf(const ExportComponents& components, int onf)
{
  std::vector<Component> chosen;
  const auto             add = [&](const std::string& name) {
    Component  component(name, onf);
    const auto isSame = [&](const Component& other) { return other.GetName() == component.GetName(); };
    if (std::none_of(chosen.begin(), chosen.end(), isSame)) chosen.push_back(std::move(component));
  };
  if (const auto names = components.ofKind.find(onf); names != components.ofKind.end())
    std::for_each(names->second.begin(), names->second.end(), add);
  for (const std::string& name : components.forAll)
    if (HasComponent(name, onf)) add(name);
  return chosen;
}

/// @throws FED_Failure for a component that none of the kinds has
void CheckComponents(const ExportComponents& components, const std::set<int>& kinds)
{
  for (const std::string& name : components.forAll) {
    if (kinds.empty()) Fail("component '" + name + "': expected a kind that has it");
    if (std::none_of(kinds.begin(), kinds.end(), [&](int onf) { return HasComponent(name, onf); }))
      static_cast<void>(Component(name, *kinds.begin()));  // says what the first of them has
  }
}

/// @param key of WithoutStep()
std::string NameOf(const Descriptor& key, const KindTable& kinds, const ExportGroups& groups, bool isJoined)
{
  std::string name = kinds.GetName(OnfOf(key));
  for (const IndexKey& index : GetIndexKeys()) {
    if (!key.IsSet(index.index)) continue;
    const int value = key.GetInteger(index.index);
    if (index.index == OnfIndex::Group)
      name += "-group-" + groups.NameOf(value);
    else
      name += '-' + std::string(index.key) + '-' + std::to_string(value);
  }
  return ToArrayName(name + (isJoined ? "-group" : ""));
}

/// The blocks of one array.
struct ArrayKey
{
  Descriptor key;  ///< of WithoutStep(), without the group where they are joined
  bool       isStatic;
  bool       isJoined;

  bool operator<(const ArrayKey& other) const
  {
    if (!(key == other.key)) return key < other.key;
    return std::pair(isStatic, isJoined) < std::pair(other.isStatic, other.isJoined);
  }
};

/// Adds an array as it is stored, or one for each of its chosen components.
void AddArrays(ExportArray array, int onf, const ExportComponents& components, std::vector<ExportArray>& arrays)
{
  array.components                    = StoredComponentsOf(onf);
  array.numStored                     = array.components.size();
  const std::vector<Component> chosen = ComponentsOf(components, onf);
  if (chosen.empty()) {
    arrays.push_back(std::move(array));
    return;
  }
  const std::string name = array.name;
  for (const Component& component : chosen) {
    array.name       = name + '-' + component.GetName();
    array.component  = component;
    array.components = {component.GetName()};
    arrays.push_back(array);
  }
}

}  // namespace

bool IsExported(int onf) { return OnfKind::IsOfMesh(onf) && !StoredComponentsOf(onf).empty(); }

int IterationOf(const std::vector<FED_DataDescriptor>& blocks, const std::string& name)
{
  std::set<int> iterations;
  for (const Descriptor& block : blocks)
    if (IsExported(OnfOf(block))) iterations.insert(block.GetInteger(Descriptor::Iteration));
  if (iterations.empty())
    Fail(name +
         ": the selection has no values of nodes or elements, expected kinds such as displacement, nodal-stress "
         "or element-energy");
  if (iterations.size() > 1)
    Fail(name + ": expected blocks of one iteration, found " + std::to_string(*iterations.begin()) + " and " +
         std::to_string(*iterations.rbegin()) + "; @it=" + std::to_string(*iterations.rbegin()) + " selects one");
  return *iterations.begin();
}

ExportPlan MakeExportPlan(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                          const ExportComponents& components, const ExportGroups& groups, ExportGroupForm form)
{
  std::vector<Descriptor> exported;
  std::set<int>           kinds;
  std::set<int>           leftOut;
  for (const Descriptor& block : blocks) {
    const int onf = OnfOf(block);
    if (!IsExported(onf)) {
      leftOut.insert(onf);
      continue;
    }
    kinds.insert(onf);
    exported.push_back(block);
  }
  CheckComponents(components, kinds);

  ExportPlan plan;
  plan.leftOut.assign(leftOut.begin(), leftOut.end());
  plan.steps = ListResultSteps(exported);

  std::map<Descriptor, std::size_t> stepOf;
  for (std::size_t step = 0; step < plan.steps.size(); ++step) stepOf[plan.steps[step]] = step;
  const StepTimes                    times(database);
  std::vector<std::optional<double>> known(plan.steps.size());

  std::map<ArrayKey, std::vector<std::vector<ExportArray::Source>>> sources;
  for (const Descriptor& block : exported) {
    ArrayKey key{WithoutStep(block), !HasResultStep(block), false};
    int      group = 0;
    if (block.IsSet(OnfIndex::Group)) {
      group        = block.GetInteger(OnfIndex::Group);
      key.isJoined = form == ExportGroupForm::Points;
      if (key.isJoined) Clear(key.key, OnfIndex::Group);
    }
    auto& ofArray = sources[key];
    ofArray.resize(key.isStatic ? 1 : plan.steps.size());
    const std::size_t step = key.isStatic ? 0 : stepOf.at(GetResultStep(block));
    ofArray[step].push_back({block, group});
    if (!key.isStatic && !known[step]) known[step] = times.TimeOf(block);
  }

  plan.areTimesKnown = std::all_of(known.begin(), known.end(), [](const auto& time) { return time.has_value(); });
  for (std::size_t step = 0; step < known.size(); ++step)
    plan.times.push_back(plan.areTimesKnown ? *known[step] : static_cast<double>(step + 1));

  const KindTable kindTable(database);
  for (const auto& [key, ofArray] : sources) {
    ExportArray array;
    array.name       = NameOf(key.key, kindTable, groups, key.isJoined);
    array.ofElements = OnfKind::EntityOf(key.key) == OnfKind::ElementEntity;
    array.isStatic   = key.isStatic;
    array.isJoined   = key.isJoined;
    array.sources    = ofArray;
    AddArrays(std::move(array), OnfOf(key.key), components, plan.arrays);
  }
  UniqueNames names;
  for (ExportArray& array : plan.arrays) array.name = names.Take(array.ofElements, array.name);
  return plan;
}

}  // namespace quilon
