#include "calculix/deck/DeckInput.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <bundled/NativePath.h>
#include <QuilonOnfEngine/OnfGroupsFile.h>

#include "calculix/deck/DeckModelReader.h"
#include "calculix/deck/DeckText.h"
#include "text/Failure.h"

namespace quilon::calculix {

namespace {

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
DeckSet MakeSet(const OnfGroupsFile::Group& group, const IdRadixMap<Value>& known, const char* entity)
{
  DeckSet set;
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

void AddSet(std::vector<DeckSet>& sets, DeckSet set, const std::vector<DeckFile>& files,
            const OnfGroupsFile::Group& group)
{
  const auto known =
      std::find_if(sets.begin(), sets.end(), [&set](const DeckSet& one) { return one.name == set.name; });
  if (known != sets.end()) {
    Fail(group.place + ": expected a new name, the deck has a set \"" + set.name + "\" at " +
         DescribeDeckPlace(files, known->place));
  }
  sets.push_back(std::move(set));
}

/// Makes sets of groups.
class GroupedDeckReader : public DeckModelReader
{
public:
  using DeckModelReader::DeckModelReader;

  /// To be called between CheckModel() and ConvertModel().
  void CreateFEMSets(const OnfGroupsFile& groups) override
  {
    for (const OnfGroupsFile::Group& group : groups.GetGroups()) {
      if (group.kind == OnfGroupsFile::Nodes) {
        AddSet(model_.nodeSets, MakeSet(group, model_.nodes, "node"), GetFiles(), group);
      } else {
        AddSet(model_.elementSets, MakeSet(group, model_.elements, "element"), GetFiles(), group);
      }
    }
  }
};

class DeckInput : public InputDeck
{
public:
  explicit DeckInput(DeckModel model) : model_(std::move(model)) {}

  std::vector<std::filesystem::path> Includes() const override
  {
    std::vector<std::filesystem::path> includes;
    for (const DeckFile& file : model_.files)
      if (!file.statement.empty()) includes.push_back(file.path);
    return includes;
  }

  void ForEachNode(const std::function<void(int id, const std::array<double, 3>& position)>& take) const override
  {
    for (const auto& [id, node] : model_.nodes.Entries()) take(id, node.position);
  }

  void ForEachElement(const std::function<void(int id, const InputElement& element)>& take) const override
  {
    for (const auto& [id, element] : model_.elements.Entries()) take(id, Describe(element));
  }

  const std::array<double, 3>* FindNode(int id) const noexcept override
  {
    const DeckNode* const node = model_.FindNode(id);
    return node == nullptr ? nullptr : &node->position;
  }

  std::optional<InputElement> FindElement(int id) const noexcept override
  {
    const DeckElement* const element = model_.FindElement(id);
    return element == nullptr ? std::nullopt : std::optional(Describe(*element));
  }

  std::string PlaceOfElement(int id) const override { return model_.Describe(model_.FindElement(id)->place); }

  std::vector<ModelSet>      NodeSets() const override { return DescribeSets(model_.nodeSets); }
  std::vector<ModelSet>      ElementSets() const override { return DescribeSets(model_.elementSets); }
  std::vector<ModelMaterial> Materials() const override { return DescribeMaterials(model_.materials); }

  std::vector<InputSection> Sections() const override
  {
    std::vector<InputSection> sections;
    for (const DeckSection& section : model_.sections)
      sections.push_back({section.elementSet, section.material, section.orientation});
    return sections;
  }

  std::vector<InputOrientation> Orientations() const override
  {
    std::vector<InputOrientation> orientations;
    for (const DeckOrientation& one : model_.orientations) orientations.push_back({one.name, one});
    return orientations;
  }

  /// Names of a deck's sets are compact, however they are written.
  std::optional<std::size_t> FindElementSet(const std::string& name) const override
  {
    const DeckSet* set = model_.FindElementSet(name);
    if (set == nullptr) set = model_.FindElementSet(Compact(name));
    if (set == nullptr) return std::nullopt;
    return static_cast<std::size_t>(set - model_.elementSets.data());
  }

  std::vector<InputTiedNodes> TiedNodes() const override
  {
    std::vector<InputTiedNodes> tied;
    for (DeckTiedNodes& one : model_.TiedNodes()) tied.push_back({std::move(one.how), std::move(one.nodes)});
    return tied;
  }

  std::vector<int> SplitNodes() const override
  {
    std::set<int> split;
    for (const DeckConstraint& constraint : model_.constraints) {
      if (constraint.kind != DeckConstraint::PreTension) continue;
      const std::vector<int> nodes = model_.NodesOf(constraint);
      split.insert(nodes.begin(), nodes.end());
    }
    return {split.begin(), split.end()};
  }

  std::optional<bool> HasLargeDisplacements(int step) const noexcept override
  {
    if (step < 1 || static_cast<std::size_t>(step) > model_.steps.size()) return std::nullopt;
    const DeckStep& found = model_.steps[static_cast<std::size_t>(step) - 1];
    return found.nlgeom && !found.perturbation;
  }

private:
  InputElement Describe(const DeckElement& element) const noexcept
  {
    return {element.type->frdType, element.type->dimension, element.type->name, model_.NodesOf(element)};
  }

  DeckModel model_;
};

class Reader : public InputDeckReader
{
public:
  explicit Reader(std::filesystem::path path) : path_(std::move(path)) {}

  const std::filesystem::path& Path() const noexcept override { return path_; }

  std::unique_ptr<InputDeck> Read(const DeckOptions& options, const std::filesystem::path& groups) const override
  {
    DeckModel         model;
    GroupedDeckReader reader(path_, options, model, nullptr);
    reader.ReadModel();
    reader.CheckModel();
    if (!groups.empty()) reader.CreateFEMSets(OnfGroupsFile(WidePath(groups)));
    reader.ConvertModel();
    return std::make_unique<DeckInput>(std::move(model));
  }

private:
  std::filesystem::path path_;
};

}  // namespace

std::unique_ptr<InputDeckReader> MakeDeckReader(std::filesystem::path path)
{
  return std::make_unique<Reader>(std::move(path));
}

}  // namespace quilon::calculix
