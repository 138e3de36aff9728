#include "answers/ModelNames.h"

#include <algorithm>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>

#include "answers/Region.h"
#include "kinds/GroupNames.h"
#include "mesh/ElementTopology.h"
#include "QuilonDbConnector/FED_Database.h"

namespace quilon {

namespace {

std::string NameOf(const std::map<int, std::string>& names, int number)
{
  if (number == 0) return "none";
  const auto found = names.find(number);
  return found == names.end() ? std::to_string(number) : found->second;
}

/// A code without a shape stays a number: it tells more than "none".
std::string TypeOf(int code)
{
  const ElementTopology* topology = FindTopology(code);
  return topology == nullptr ? std::to_string(code) : topology->name;
}

std::vector<int> ElementsOfMaterial(const Mesh& mesh, int material)
{
  std::vector<int> elements;
  for (const Mesh::Element& element : mesh.Elements())
    if (element.material == material) elements.push_back(element.id);
  return elements;
}

/// Of several sets of one name the last one.
std::vector<int> ElementsOfSet(const std::vector<NamedSet>& sets, const std::string& name)
{
  const auto set =
      std::find_if(sets.rbegin(), sets.rend(), [&](const NamedSet& s) { return s.ofElements && s.name == name; });
  return set == sets.rend() ? std::vector<int>{} : set->ids;
}

std::vector<int> ElementsOfSection(const FED_Database& database, int iteration, int section)
{
  std::vector<int>         elements;
  const FED_DataDescriptor descriptor(iteration, OnfKind::ElementSection);
  if (!database.HasDataBlock(descriptor)) return elements;
  FED_ForEachSpan(database.GetConstDataBlock(descriptor), database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
    for (std::size_t i = 0; i < span.GetCount(); ++i)
      if (span.GetIntegers(1).GetData()[i] == section) elements.push_back(span.GetIds().GetData()[i]);
  });
  return elements;
}

std::vector<int> NodesOf(const FED_Database& database, const FED_DataDescriptor& descriptor)
{
  std::vector<int> nodes;
  for (const RecordKey& key : GetRecordKeys(database.GetConstDataBlock(descriptor), database.GetIdMapsPool()))
    nodes.push_back(key.id);
  return nodes;
}

}  // namespace

ModelNames::ModelNames(const FED_Database& database) : database_(database)
{
  // Of several iterations the first one names a number.
  for (NamedRecord& record : ReadNames(database, OnfKind::Material))
    materials_.try_emplace(record.number, std::move(record.name));
  for (NamedRecord& record : ReadNames(database, OnfKind::Orientation))
    orientations_.try_emplace(record.number, std::move(record.name));
}

std::string ModelNames::MaterialOf(int number) const { return NameOf(materials_, number); }

const DeckTypes& ModelNames::TypesOf(int iteration) const
{
  auto found = types_.find(iteration);
  if (found == types_.end()) found = types_.emplace(iteration, DeckTypes(database_, iteration)).first;
  return found->second;
}

void ModelNames::Replace(const FED_DataDescriptor& block, std::vector<Cell>& row) const
{
  const auto replace = [&row](std::size_t place, const auto& nameOf) {
    if (place >= row.size()) return;
    if (const int* number = std::get_if<int>(&row[place])) row[place] = nameOf(*number);
  };
  switch (block.GetInteger(FED_DataDescriptor::OnfId)) {
    case OnfKind::ElementType:
      replace(1, [&](int code) {
        const int* const         element = std::get_if<int>(&row.front());
        const std::string* const name =
            element == nullptr ? nullptr : TypesOf(block.GetInteger(FED_DataDescriptor::Iteration)).Find(*element);
        return name != nullptr ? *name : TypeOf(code);
      });
      replace(2, [this](int number) { return NameOf(materials_, number); });
      break;
    case OnfKind::ElementSection:
      replace(2, [this](int number) { return NameOf(materials_, number); });
      replace(3, [this](int number) { return NameOf(orientations_, number); });
      break;
    default:
      break;
  }
}

std::map<int, std::string> NameGroups(const FED_Database& database, Region& region)
{
  // One block of each group tells its nodes.
  std::map<int, FED_DataDescriptor> blocks;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern()))
    if (descriptor.IsSet(OnfIndex::Group)) blocks.try_emplace(descriptor.GetInteger(OnfIndex::Group), descriptor);

  for (const int onf : ReadKindsOfGroups(database)) {
    std::map<int, std::string> known;
    for (NamedRecord& record : onf == OnfKind::ElementSection ? ReadSectionNames(database) : ReadNames(database, onf))
      known.try_emplace(record.number, std::move(record.name));
    const bool areThese = std::all_of(blocks.begin(), blocks.end(), [&](const auto& block) {
      const auto& [group, descriptor] = block;
      const auto name                 = known.find(group);
      if (name == known.end()) return false;
      const int              iteration = descriptor.GetInteger(FED_DataDescriptor::Iteration);
      const std::vector<int> elements  = onf == OnfKind::Material ? ElementsOfMaterial(region.GetMesh(iteration), group)
                                         : onf == OnfKind::ElementSet
                                             ? ElementsOfSet(region.GetSets(iteration), name->second)
                                             : ElementsOfSection(database, iteration, group);
      return NodesOfElements(region.GetMesh(iteration), elements) == NodesOf(database, descriptor);
    });
    if (!areThese) continue;
    std::map<int, std::string> names;
    for (const auto& block : blocks) names.emplace(block.first, known[block.first]);
    return names;
  }
  return {};
}

}  // namespace quilon
