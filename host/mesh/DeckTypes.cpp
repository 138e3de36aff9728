#include "mesh/DeckTypes.h"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>

#include "mesh/ElementTopology.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"

namespace quilon {

DeckTypes::DeckTypes(const FED_Database& database, int iteration)
{
  const FED_DataDescriptor descriptor(iteration, OnfKind::DeckType);
  if (!database.HasDataBlock(descriptor)) return;
  std::map<std::string, std::uint32_t, std::less<>> numbers;
  std::vector<std::pair<int, std::uint32_t>>        entries;
  FED_ForEachSpan(database.GetConstDataBlock(descriptor), database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    for (std::size_t i = 0; i < span.GetCount(); ++i) {
      const std::string_view name  = span.GetText(1, i);
      auto                   found = numbers.find(name);
      if (found == numbers.end()) {
        found = numbers.emplace(name, static_cast<std::uint32_t>(names_.size())).first;
        names_.emplace_back(name);
      }
      entries.emplace_back(span.GetIds().GetData()[i], found->second);
    }
  });
  std::sort(entries.begin(), entries.end());
  std::vector<int> ids;
  ids.reserve(entries.size());
  numbers_.reserve(entries.size());
  for (const auto& [id, number] : entries) {
    ids.push_back(id);
    numbers_.push_back(number);
  }
  elements_ = IdPositions(std::move(ids));
}

const std::string* DeckTypes::Find(int element) const noexcept
{
  const std::optional<std::size_t> position = elements_.Find(element);
  return position ? &names_[numbers_[*position]] : nullptr;
}

std::string DeckTypes::NameOf(int element, int frdType) const
{
  const std::string* const name = Find(element);
  return name != nullptr ? *name : TypeNameOf(frdType);
}

}  // namespace quilon
