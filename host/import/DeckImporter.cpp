#include "import/DeckImporter.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonOnfEngine/OnfGroupsFile.h>

#include <bundled/OnfKinds.h>

#include "import/ModelBlocks.h"
#include "text/Failure.h"

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

/// Calls a function with every id of the range that the map has, in the range's order.
template <typename Value, typename Function>
void ForKnownIds(const OnfGroupsFile::Range& range, const IdRadixMap<Value>& known, const Function& function)
{
  // The shorter of the two is walked: a range costs nothing to write.
  const std::int64_t count = (std::int64_t{range.last} - range.first) / range.step + 1;
  if (count <= static_cast<std::int64_t>(known.Entries().size())) {
    for (std::int64_t id = range.first; id <= range.last; id += range.step) {
      if (known.Find(static_cast<int>(id)) != IdRadixMap<Value>::npos) function(static_cast<int>(id));
    }
    return;
  }
  for (auto it = known.begin(); it != known.end(); ++it) {
    const int id = (*it).first;
    if (id >= range.first && id <= range.last && (std::int64_t{id} - range.first) % range.step == 0) function(id);
  }
}

template <typename Value>
calculix::DeckSet MakeSet(const OnfGroupsFile::Group& group, const IdRadixMap<Value>& known, const char* entity)
{
  calculix::DeckSet set;
  set.name = group.name;
  for (const OnfGroupsFile::Range& range : group.ranges) {
    if (range.first == range.last && known.Find(range.first) == IdRadixMap<Value>::npos) {
      Fail(group.place + ": expected " + entity + "s of the deck in group \"" + group.name + "\", found " +
           std::to_string(range.first));
    }
    ForKnownIds(range, known, [&set](int id) { set.ids.push_back(id); });
  }
  return set;
}

void AddSet(std::vector<calculix::DeckSet>& sets, calculix::DeckSet set, const std::vector<calculix::DeckFile>& files,
            const OnfGroupsFile::Group& group)
{
  const auto known =
      std::find_if(sets.begin(), sets.end(), [&set](const calculix::DeckSet& one) { return one.name == set.name; });
  if (known != sets.end()) {
    Fail(group.place + ": expected a new name, the deck has a set \"" + set.name + "\" at " +
         DescribeDeckPlace(files, known->place));
  }
  sets.push_back(std::move(set));
}

}  // namespace

ElementSection ImportedDeck::SectionOf(int element) const noexcept
{
  const std::size_t position = sections.Find(element);
  return position == IdRadixMap<ElementSection>::npos ? ElementSection() : sections.At(position);
}

DeckImporter::DeckImporter(const std::filesystem::path& path, const calculix::DeckOptions& options, ImportedDeck& deck,
                           ModelBlocks& blocks, FED_Database& database, int iteration)
    : calculix::DeckModelReader(path, options, deck.model, nullptr),
      deck_(deck),
      blocks_(blocks),
      database_(database),
      iteration_(iteration)
{}

void DeckImporter::CreateFEMSets(const OnfGroupsFile& groups)
{
  for (const OnfGroupsFile::Group& group : groups.GetGroups()) {
    if (group.kind == OnfGroupsFile::Nodes) {
      AddSet(model_.nodeSets, MakeSet(group, model_.nodes, "node"), GetFiles(), group);
    } else {
      AddSet(model_.elementSets, MakeSet(group, model_.elements, "element"), GetFiles(), group);
    }
  }
}

void DeckImporter::ConvertModel()
{
  calculix::DeckModelReader::ConvertModel();
  FindSections();
  blocks_.AddNodeSets(calculix::DescribeSets(deck_.model.nodeSets));
  blocks_.AddElementSets(calculix::DescribeSets(deck_.model.elementSets));
  blocks_.AddMaterials(calculix::DescribeMaterials(deck_.model.materials));
  SaveSections();
  SaveOrientations();
  SaveTiedNodes();
}

void DeckImporter::FindSections()
{
  const calculix::DeckModel& model        = deck_.model;
  const auto                 sets         = NumbersOf(model.elementSets);
  const auto                 materials    = NumbersOf(model.materials);
  const auto                 orientations = NumbersOf(model.orientations);
  const auto                 numberIn     = [](const auto& numbers, const std::string& name) {
    const auto found = numbers.find(name);
    return found == numbers.end() ? 0 : found->second;
  };
  int number = 0;
  for (const calculix::DeckSection& section : model.sections) {
    ++number;
    const int set = numberIn(sets, section.elementSet);
    if (set == 0) continue;
    const ElementSection numbers = {number, numberIn(materials, section.material),
                                    numberIn(orientations, section.orientation)};
    for (const int id : model.elementSets[static_cast<std::size_t>(set) - 1].ids)
      deck_.sections.At(deck_.sections.FindOrInsert(id)) = numbers;
  }
}

void DeckImporter::SaveSections()
{
  if (deck_.sections.Entries().empty()) return;
  RecordWriter writer(database_, iteration_, OnfKind::ElementSection, deck_.sections.Entries().size());
  for (const auto& [id, section] : deck_.sections.Entries()) {
    writer.Fields().SetInteger(1, section.section);
    writer.Fields().SetInteger(2, section.material);
    writer.Fields().SetInteger(3, section.orientation);
    writer.Write(id);
  }
}

void DeckImporter::SaveTiedNodes()
{
  const std::vector<calculix::DeckTiedNodes> tied = deck_.model.TiedNodes();
  if (tied.empty()) return;
  RecordWriter writer(database_, iteration_, OnfKind::TiedNodes, tied.size());
  int          number = 0;
  for (const calculix::DeckTiedNodes& one : tied) {
    writer.Fields().SetString(1, one.how);
    writer.Fields().SetIntList(2, one.nodes);
    writer.Write(++number);
  }
}

void DeckImporter::SaveOrientations()
{
  const std::vector<calculix::DeckOrientation>& orientations = deck_.model.orientations;
  if (orientations.empty()) return;
  RecordWriter writer(database_, iteration_, OnfKind::Orientation, orientations.size());
  int          number = 0;
  for (const calculix::DeckOrientation& orientation : orientations) {
    std::vector<double> numbers(orientation.a.begin(), orientation.a.end());
    numbers.insert(numbers.end(), orientation.b.begin(), orientation.b.end());
    if (orientation.rotationAxis != 0) {
      numbers.push_back(orientation.rotationAxis);
      numbers.push_back(orientation.rotationAngle);
    }
    writer.Fields().SetString(1, orientation.name);
    writer.Fields().SetInteger(2, orientation.system);
    writer.Fields().SetDoubleList(3, numbers);
    writer.Write(++number);
  }
}

}  // namespace quilon
