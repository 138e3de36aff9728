#include "answers/ModelNames.h"

#include <bundled/OnfKinds.h>

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

}  // namespace quilon
