#include "calculix/deck/DeckModel.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <unordered_set>

#include "elements/ElementShape.h"
#include "results/ResultReader.h"

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

void SortUnique(std::vector<int>& ids)
{
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
}

/// @return the shape of a solid, for its faces; nothing for other elements
std::optional<ElementShape> ShapeOf(const DeckElementType& type) noexcept
{
  if (type.dimension != 3) return std::nullopt;
  switch (type.numNodes) {
    case 4:
      return ElementShape::Tet4;
    case 6:
      return ElementShape::Wedge6;
    case 8:
      return ElementShape::Brick8;
    case 10:
      return ElementShape::Tet10;
    case 15:
      return ElementShape::Wedge15;
    case 20:
      return ElementShape::Brick20;
    default:
      return std::nullopt;
  }
}

/// @return whether a node of an element is on the face: of solids their own, of plane elements an edge, of shells the
///         whole or an edge; of others each node is
bool IsOnFace(const DeckElementType& type, std::size_t node, int face) noexcept
{
  if (face == 0) return true;
  if (const auto shape = ShapeOf(type)) return IsOnFace(*shape, node, face);
  if (type.dimension != 2) return true;
  const std::string_view name    = type.name;
  const bool             isShell = name.starts_with('S') || name.starts_with('M');
  const int              edge    = isShell ? face - 2 : face;  // faces 1 and 2 of a shell are below and above
  if (edge < 1) return true;
  const auto corners = static_cast<std::size_t>(type.numNodes % 3 == 0 ? 3 : 4);
  const auto first   = static_cast<std::size_t>(edge) - 1;
  return node == first || node == (first + 1) % corners || node == corners + first;
}

/// @return the value at a place of a card's numbers, NaN when the material has no such card
double ValueOf(const DeckMaterial& material, std::string_view keyword, std::size_t place)
{
  const DeckProperty* property = material.Find(keyword);
  return property == nullptr || property->values.size() <= place ? std::numeric_limits<double>::quiet_NaN()
                                                                 : property->values[place];
}

const char* NameOf(DeckConstraint::Kind kind)
{
  switch (kind) {
    case DeckConstraint::Contact:
      return "contact";
    case DeckConstraint::Tie:
      return "ties";
    case DeckConstraint::Equation:
      return "equations";
    case DeckConstraint::Coupling:
      return "couplings";
    case DeckConstraint::RigidBody:
      return "rigid bodies";
    case DeckConstraint::PreTension:
      return "pre-tension sections";
  }
  return "constraints";
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

const DeckSurface* DeckModel::FindSurface(std::string_view name) const noexcept { return FindNamed(surfaces, name); }

const DeckSet* DeckModel::FindNodeSet(std::string_view name) const noexcept { return FindNamed(nodeSets, name); }

const DeckSet* DeckModel::FindElementSet(std::string_view name) const noexcept { return FindNamed(elementSets, name); }

const DeckMaterial* DeckModel::FindMaterial(std::string_view name) const noexcept { return FindNamed(materials, name); }

const DeckOrientation* DeckModel::FindOrientation(std::string_view name) const noexcept
{
  return FindNamed(orientations, name);
}

std::vector<int> DeckModel::NodesOf(const DeckSurface& surface) const
{
  std::vector<int> found;
  const auto       addFace = [&](int id, int face) {
    const DeckElement* element = FindElement(id);
    if (element == nullptr) return;
    const std::span<const int> connected = NodesOf(*element);
    for (std::size_t i = 0; i < connected.size(); ++i)
      if (connected[i] != 0 && IsOnFace(*element->type, i, face)) found.push_back(connected[i]);
  };
  for (const DeckSurface::Part& part : surface.parts) {
    if (!part.isSet) {
      if (!surface.isOfNodes) {
        addFace(part.id, part.face);
      } else if (FindNode(part.id) != nullptr) {
        found.push_back(part.id);
      }
      continue;
    }
    const std::string& name = surface.sets[static_cast<std::size_t>(part.id)];
    const DeckSet*     set  = surface.isOfNodes ? FindNodeSet(name) : FindElementSet(name);
    if (set == nullptr) continue;
    for (const int id : set->ids) {
      if (!surface.isOfNodes) {
        addFace(id, part.face);
      } else if (FindNode(id) != nullptr) {
        found.push_back(id);
      }
    }
  }
  SortUnique(found);
  return found;
}

std::vector<DeckTiedNodes> DeckModel::TiedNodes() const
{
  std::vector<DeckTiedNodes> tied;
  std::unordered_set<int>    taken;
  for (const DeckConstraint& constraint : constraints) {
    const char* const how  = NameOf(constraint.kind);
    auto              ways = std::find_if(tied.begin(), tied.end(), [how](const auto& one) { return one.how == how; });
    if (ways == tied.end()) ways = tied.insert(tied.end(), DeckTiedNodes{how, {}});
    for (const int node : NodesOf(constraint))
      if (taken.insert(node).second) ways->nodes.push_back(node);
  }
  std::erase_if(tied, [](const DeckTiedNodes& one) { return one.nodes.empty(); });
  for (DeckTiedNodes& one : tied) std::sort(one.nodes.begin(), one.nodes.end());
  return tied;
}

std::vector<int> DeckModel::NodesOf(const DeckConstraint& constraint) const
{
  std::vector<int> found;
  const auto       addNode = [&](int id) {
    if (FindNode(id) != nullptr) found.push_back(id);
  };
  const auto addElement = [&](int id) {
    const DeckElement* element = FindElement(id);
    if (element == nullptr) return;
    const std::span<const int> connected = NodesOf(*element);
    std::for_each(connected.begin(), connected.end(), addNode);
  };
  std::for_each(constraint.nodes.begin(), constraint.nodes.end(), addNode);
  std::for_each(constraint.elements.begin(), constraint.elements.end(), addElement);
  for (const std::string& name : constraint.nodeSets)
    if (const DeckSet* set = FindNodeSet(name)) std::for_each(set->ids.begin(), set->ids.end(), addNode);
  for (const std::string& name : constraint.elementSets)
    if (const DeckSet* set = FindElementSet(name)) std::for_each(set->ids.begin(), set->ids.end(), addElement);
  for (const std::string& name : constraint.surfaces) {
    const DeckSurface* surface = FindSurface(name);
    if (surface == nullptr) continue;
    const std::vector<int> ofSurface = NodesOf(*surface);
    found.insert(found.end(), ofSurface.begin(), ofSurface.end());
  }
  SortUnique(found);
  return found;
}

std::vector<int> DeckModel::ElementsOf(const DeckModelChange& change) const
{
  std::vector<int> found;
  const auto       add = [&](int id) {
    if (FindElement(id) != nullptr) found.push_back(id);
  };
  std::for_each(change.elements.begin(), change.elements.end(), add);
  for (const std::string& name : change.elementSets)
    if (const DeckSet* set = FindElementSet(name)) std::for_each(set->ids.begin(), set->ids.end(), add);
  SortUnique(found);
  return found;
}

std::string DescribeDeckPlace(const std::vector<DeckFile>& files, const DeckPlace& place)
{
  return files[place.file].path.string() + ":" + std::to_string(place.line);
}

std::string DeckModel::Describe(const DeckPlace& place) const { return DescribeDeckPlace(files, place); }

std::vector<ModelSet> DescribeSets(const std::vector<DeckSet>& sets)
{
  std::vector<ModelSet> described;
  described.reserve(sets.size());
  for (const DeckSet& set : sets) described.push_back({set.name, set.ids});
  return described;
}

std::vector<ModelMaterial> DescribeMaterials(const std::vector<DeckMaterial>& materials)
{
  std::vector<ModelMaterial> described;
  described.reserve(materials.size());
  for (const DeckMaterial& material : materials) {
    ModelMaterial& one      = described.emplace_back();
    one.name                = material.name;
    one.density             = ValueOf(material, "DENSITY", 0);
    const auto* elastic     = material.Find("ELASTIC");
    const bool  isIsotropic = elastic != nullptr && (elastic->type.empty() || elastic->type.starts_with("ISO"));
    if (!isIsotropic) continue;
    one.youngsModulus = ValueOf(material, "ELASTIC", 0);
    one.poissonRatio  = ValueOf(material, "ELASTIC", 1);
  }
  return described;
}

}  // namespace quilon::calculix
