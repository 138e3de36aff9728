#include "plot/ModelField.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <set>
#include <span>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>

#include "kinds/KindTable.h"
#include "mesh/Mesh.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"
#include "text/Failure.h"

namespace quilon {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

using OnfKind::OnfOf;

/// @return whether a record of the kind is one number, vector or tensor at a node or an element
bool IsDrawn(int onf)
{
  return OnfKind::IsOfMesh(onf) && !StoredComponentsOf(onf).empty() && OnfKind::ListPeriodOf(onf) == 1 &&
         onf != OnfKind::Coordinates && onf != OnfKind::ElementType;
}

/// Calls take(id, values) for each record of a block.
void ForEachValue(const FED_DataBlock& block, const FED_IdMapsPool& pool, std::size_t numValues,
                  const std::function<void(int id, std::span<const double> values)>& take)
{
  FED_ForEachSpan(block, pool, [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    const int* const ids  = span.GetIds().GetData();
    const auto       type = FED_FieldType::GetClass(span.GetFormat().GetTypes().front());
    if (type == FED_FieldType::Integer) {
      const int* const values = span.GetIntegers(1).GetData();
      for (std::size_t i = 0; i < span.GetCount(); ++i) {
        const double value = values[i];
        take(ids[i], {&value, 1});
      }
      return;
    }
    const double* const values = span.GetDoubles(1).GetData();
    for (std::size_t i = 0; i < span.GetCount(); ++i) take(ids[i], {values + i * numValues, numValues});
  });
}

std::string ListOf(const std::vector<FED_DataDescriptor>& blocks)
{
  constexpr std::size_t kMost = 6;
  std::string           text;
  for (std::size_t i = 0; i < blocks.size() && i < kMost; ++i)
    text += (i == 0 ? "" : ", ") + ToSelectionText(blocks[i]);
  return text + (blocks.size() > kMost ? ", ..." : "");
}

FED_DataDescriptor WithoutGroup(const FED_DataDescriptor& descriptor)
{
  FED_DataDescriptor without;
  for (const IndexKey& key : GetIndexKeys())
    if (key.index != OnfIndex::Group && descriptor.IsSet(key.index))
      without.SetInteger(key.index, descriptor.GetInteger(key.index));
  return without;
}

}  // namespace

FieldChoice ChooseField(const std::vector<FED_DataDescriptor>& selected, const KindTable& kinds,
                        const std::string& text, const std::string& name)
{
  std::vector<FED_DataDescriptor> drawn;
  std::set<int>                   onfs;
  for (const FED_DataDescriptor& descriptor : selected) {
    if (!IsDrawn(OnfOf(descriptor))) continue;
    drawn.push_back(descriptor);
    onfs.insert(OnfOf(descriptor));
  }
  if (drawn.empty())
    Fail(name + ": '" + text + "' selects no values at nodes or elements, found " + kinds.GetName(selected.front()) +
         ", expected a kind such as displacement, nodal-stress or element-energy");
  if (onfs.size() > 1) {
    std::string names;
    for (const int onf : onfs) names += (names.empty() ? "" : ", ") + kinds.GetName(onf);
    Fail(name + ": '" + text + "' selects several kinds, expected one of " + names);
  }

  FieldChoice                           choice;
  const std::vector<FED_DataDescriptor> steps = ListResultSteps(drawn);
  choice.numSteps                             = std::max(static_cast<int>(steps.size()), 1);
  if (!steps.empty())
    std::erase_if(drawn, [&](const FED_DataDescriptor& it) { return !(GetResultStep(it) == steps.back()); });
  const auto isOfAll = [](const FED_DataDescriptor& it) { return !it.IsSet(OnfIndex::Group); };
  if (std::any_of(drawn.begin(), drawn.end(), isOfAll)) std::erase_if(drawn, std::not_fn(isOfAll));
  for (const FED_DataDescriptor& descriptor : drawn)
    if (!(WithoutGroup(descriptor) == WithoutGroup(drawn.front())) || (drawn.size() > 1 && isOfAll(descriptor)))
      Fail(name + ": '" + text + "' selects several blocks of a step, expected one of " + ListOf(drawn));
  choice.blocks    = std::move(drawn);
  choice.isAtNodes = OnfKind::EntityOf(choice.GetOnf()) == OnfKind::NodeEntity;
  return choice;
}

std::string DefaultComponentOf(int onf)
{
  const std::vector<std::string> names = ComponentNamesOf(onf);
  for (const char* preferred : {"mises", "magnitude"})
    if (std::find(names.begin(), names.end(), preferred) != names.end()) return preferred;
  return names.front();
}

ModelField::ModelField(const FED_Database& database, const Mesh& mesh, const FieldChoice& choice,
                       const Component& component, const std::string& name)
    : isAtNodes_(choice.isAtNodes)
{
  const std::size_t size = isAtNodes_ ? mesh.NumNodes() : mesh.NumElements();
  for (const FED_DataDescriptor& descriptor : choice.blocks) {
    std::vector<double>& values = values_.emplace_back(size, kNone);
    ForEachValue(database.GetConstDataBlock(descriptor), database.GetIdMapsPool(), component.NumValues(),
                 [&](int id, std::span<const double> stored) {
                   const auto position = isAtNodes_ ? mesh.FindNode(id) : mesh.FindElement(id);
                   if (position) values[*position] = component.Evaluate(stored);
                 });
  }
  if (choice.blocks.size() == 1) return;

  values_.emplace_back(size, kNone);  // of elements of no group
  bool hasOne = false;
  groups_.reserve(mesh.NumElements());
  for (const Mesh::Element& element : mesh.Elements()) {
    std::uint32_t group = 0;
    while (group < choice.blocks.size() && choice.blocks[group].GetInteger(OnfIndex::Group) != element.material)
      ++group;
    hasOne = hasOne || group < choice.blocks.size();
    groups_.push_back(group);
  }
  if (!hasOne)
    Fail(name +
         ": no element is of a material with the number of a selected group, expected averages by material, or "
         "one of " +
         ListOf(choice.blocks));
}

std::vector<std::array<double, 3>> ReadDisplacements(const FED_Database& database, const Mesh& mesh,
                                                     const FED_DataDescriptor& step, const std::string& name)
{
  const FED_DataDescriptor asked = GetResultStep(step);
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern())) {
    if (OnfOf(descriptor) != OnfKind::Displacement || !(GetResultStep(descriptor) == asked)) continue;
    std::vector<std::array<double, 3>> displacements(mesh.NumNodes(), {0.0, 0.0, 0.0});
    ForEachValue(database.GetConstDataBlock(descriptor), database.GetIdMapsPool(), 3,
                 [&](int id, std::span<const double> values) {
                   if (const auto position = mesh.FindNode(id))
                     std::copy(values.begin(), values.end(), displacements[*position].begin());
                 });
    return displacements;
  }
  Fail(name + ": the step of " + ToSelectionText(step) +
       " has no displacements (510), expected a picture without --deform or another step");
}

}  // namespace quilon
