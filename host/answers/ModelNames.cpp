#include "answers/ModelNames.h"

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

}  // namespace

ModelNames::ModelNames(const FED_Database& database)
{
  // Of several iterations the first one names a number.
  for (NamedRecord& record : ReadNames(database, OnfKind::Material))
    materials_.try_emplace(record.number, std::move(record.name));
  for (NamedRecord& record : ReadNames(database, OnfKind::Orientation))
    orientations_.try_emplace(record.number, std::move(record.name));
}

std::string ModelNames::MaterialOf(int number) const { return NameOf(materials_, number); }

void ModelNames::Replace(const FED_DataDescriptor& block, std::vector<Cell>& row) const
{
  const auto replace = [&row](std::size_t place, const auto& nameOf) {
    if (place >= row.size()) return;
    if (const int* number = std::get_if<int>(&row[place])) row[place] = nameOf(*number);
  };
  switch (block.GetInteger(FED_DataDescriptor::OnfId)) {
    case OnfKind::ElementType:
      replace(1, TypeOf);
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

  for (const int onf : {int{OnfKind::Material}, int{OnfKind::ElementSet}}) {
    std::map<int, std::string> known;
    for (NamedRecord& record : ReadNames(database, onf)) known.try_emplace(record.number, std::move(record.name));
    std::map<int, std::string> names;
    for (const auto& [group, descriptor] : blocks) {
      const auto name = known.find(group);
      if (name == known.end()) break;
      const int        iteration = descriptor.GetInteger(FED_DataDescriptor::Iteration);
      std::vector<int> nodes;
      for (const RecordKey& key : GetRecordKeys(database.GetConstDataBlock(descriptor), database.GetIdMapsPool()))
        nodes.push_back(key.id);
      std::vector<int> elements;
      if (onf == OnfKind::Material) {
        for (const Mesh::Element& element : region.GetMesh(iteration).Elements())
          if (element.material == group) elements.push_back(element.id);
      } else {
        for (const NamedSet& set : region.GetSets(iteration))
          if (set.ofElements && set.name == name->second) elements = set.ids;
      }
      if (NodesOfElements(region.GetMesh(iteration), elements) != nodes) break;
      names.emplace(group, name->second);
    }
    if (names.size() == blocks.size()) return names;
  }
  return {};
}

}  // namespace quilon
