#include "import/DeckImporter.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>

#include <bundled/OnfKinds.h>

#include "import/ModelBlocks.h"

namespace quilon {

namespace {

/// @return the places of items from 1 by their names; of items of one name that of the first
template <typename Item>
std::unordered_map<std::string_view, int> NumbersOf(const std::vector<Item>& items)
{
  std::unordered_map<std::string_view, int> numbers;
  int                                       number = 0;
  for (const Item& item : items) numbers.try_emplace(item.name, ++number);
  return numbers;
}

void SaveSections(const ImportedDeck& deck, FED_Database& database, int iteration)
{
  const auto& sections = deck.Sections().Entries();
  if (sections.empty()) return;
  RecordWriter writer(database, iteration, OnfKind::ElementSection, sections.size());
  for (const auto& [id, section] : sections) {
    writer.Fields().SetInteger(1, section.section);
    writer.Fields().SetInteger(2, section.material);
    writer.Fields().SetInteger(3, section.orientation);
    writer.Write(id);
  }
}

void SaveTiedNodes(const ImportedDeck& deck, FED_Database& database, int iteration)
{
  const std::vector<InputTiedNodes> tied = deck->TiedNodes();
  if (tied.empty()) return;
  RecordWriter writer(database, iteration, OnfKind::TiedNodes, tied.size());
  int          number = 0;
  for (const InputTiedNodes& one : tied) {
    writer.Fields().SetString(1, one.how);
    writer.Fields().SetIntList(2, one.nodes);
    writer.Write(++number);
  }
}

void SaveOrientations(const ImportedDeck& deck, FED_Database& database, int iteration)
{
  if (deck.Orientations().empty()) return;
  RecordWriter writer(database, iteration, OnfKind::Orientation, deck.Orientations().size());
  int          number = 0;
  for (const auto& [name, system] : deck.Orientations()) {
    std::vector<double> numbers(system.a.begin(), system.a.end());
    numbers.insert(numbers.end(), system.b.begin(), system.b.end());
    if (system.rotationAxis != 0) {
      numbers.push_back(system.rotationAxis);
      numbers.push_back(system.rotationAngle);
    }
    writer.Fields().SetString(1, std::string(name));
    writer.Fields().SetInteger(2, system.system);
    writer.Fields().SetDoubleList(3, numbers);
    writer.Write(++number);
  }
}

}  // namespace

ImportedDeck::ImportedDeck(std::unique_ptr<const InputDeck> deck)
    : deck_(std::move(deck)), orientations_(deck_->Orientations())
{
  const std::vector<ModelSet>      sets            = deck_->ElementSets();
  const std::vector<ModelMaterial> materials       = deck_->Materials();
  const auto                       setNumbers      = NumbersOf(sets);
  const auto                       materialNumbers = NumbersOf(materials);
  const auto                       orientations    = NumbersOf(orientations_);
  const auto                       numberIn        = [](const auto& numbers, std::string_view name) {
    const auto found = numbers.find(name);
    return found == numbers.end() ? 0 : found->second;
  };
  int number = 0;
  for (const InputSection& section : deck_->Sections()) {
    ++number;
    const int set = numberIn(setNumbers, section.elementSet);
    if (set == 0) continue;
    const ElementSection numbers = {number, numberIn(materialNumbers, section.material),
                                    numberIn(orientations, section.orientation)};
    for (const int id : sets[static_cast<std::size_t>(set) - 1].ids) sections_.At(sections_.FindOrInsert(id)) = numbers;
  }
}

ElementSection ImportedDeck::SectionOf(int element) const noexcept
{
  const std::size_t position = sections_.Find(element);
  return position == IdRadixMap<ElementSection>::npos ? ElementSection() : sections_.At(position);
}

void SaveModel(const ImportedDeck& deck, ModelBlocks& blocks, FED_Database& database, int iteration)
{
  blocks.AddNodeSets(deck->NodeSets());
  blocks.AddElementSets(deck->ElementSets());
  blocks.AddMaterials(deck->Materials());
  SaveSections(deck, database, iteration);
  SaveOrientations(deck, database, iteration);
  SaveTiedNodes(deck, database, iteration);
}

}  // namespace quilon
