#include "calculix/deck/DeckModel.h"

#include <algorithm>

#include "calculix/deck/DeckModelReader.h"
#include "calculix/deck/DeckReader.h"

namespace quilon::calculix {
namespace {

template <typename T>
const T* FindNamed(const std::vector<T>& items, std::string_view name) noexcept
{
  const auto found = std::find_if(items.begin(), items.end(), [name](const T& item) { return item.name == name; });
  return found == items.end() ? nullptr : &*found;
}

template <typename T>
const T* FindById(const IdRadixMap<T>& items, int id) noexcept
{
  const std::size_t position = items.Find(id);
  return position == IdRadixMap<T>::npos ? nullptr : &items.At(position);
}

DeckModel Read(const std::filesystem::path& deck, const DeckOptions& options, std::vector<DeckMessage>* messages)
{
  DeckModel       model;
  DeckModelReader reader(deck, options, model, messages);
  reader.ReadModel();
  reader.CheckModel();
  reader.ConvertModel();
  return model;
}

}  // namespace

const DeckProperty* DeckMaterial::Find(std::string_view keyword) const noexcept
{
  const auto found = std::find_if(properties.begin(), properties.end(),
                                  [keyword](const DeckProperty& property) { return property.keyword == keyword; });
  return found == properties.end() ? nullptr : &*found;
}

const DeckNode* DeckModel::FindNode(int id) const noexcept { return FindById(nodes, id); }

const DeckElement* DeckModel::FindElement(int id) const noexcept { return FindById(elements, id); }

std::span<const int> DeckModel::NodesOf(const DeckElement& element) const noexcept
{
  return std::span<const int>(elementNodes).subspan(element.first, element.count);
}

const DeckSet* DeckModel::FindNodeSet(std::string_view name) const noexcept { return FindNamed(nodeSets, name); }

const DeckSet* DeckModel::FindElementSet(std::string_view name) const noexcept { return FindNamed(elementSets, name); }

const DeckMaterial* DeckModel::FindMaterial(std::string_view name) const noexcept { return FindNamed(materials, name); }

const DeckOrientation* DeckModel::FindOrientation(std::string_view name) const noexcept
{
  return FindNamed(orientations, name);
}

std::string DeckModel::Describe(const DeckPlace& place) const { return DescribeDeckPlace(files, place); }

DeckModel ReadDeckModel(const std::filesystem::path& deck, const DeckOptions& options)
{
  return Read(deck, options, nullptr);
}

DeckModel ReadDeckModel(const std::filesystem::path& deck, const DeckOptions& options,
                        std::vector<DeckMessage>& messages)
{
  return Read(deck, options, &messages);
}

}  // namespace quilon::calculix
