#include "import/ResultMesh.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include <bundled/OnfKinds.h>

#include "FEM_ResultUtil.h"
#include "import/DeckImporter.h"
#include "import/ModelBlocks.h"
#include "mesh/ElementTopology.h"
#include "text/Failure.h"

namespace quilon {

namespace {

/// Whether a place is the exact one of a place with six digits.
bool IsPlaceOf(std::span<const double> place, std::span<const double> rounded)
{
  // Half a unit of the sixth digit is at most 5e-6 of a value, and what a rotation leaves of a zero is a fraction of
  // the node's other coordinates.
  constexpr double kLargestRounding = 6e-6;
  constexpr double kNoise           = 1e-12;
  double           largest          = 0.0;
  for (const double value : rounded) largest = std::max(largest, std::abs(value));
  for (std::size_t k = 0; k < rounded.size(); ++k) {
    if (!(std::abs(place[k] - rounded[k]) <= kLargestRounding * std::abs(rounded[k]) + kNoise * largest)) return false;
  }
  return true;
}

double Distance(std::span<const double> a, std::span<const double> b)
{
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

}  // namespace

ResultMesh::ResultMesh(std::filesystem::path path) : path_(std::move(path)) {}

void ResultMesh::AddNodes(std::span<const int> ids, std::span<const double> coordinates)
{
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const std::size_t position = nodes_.FindOrInsert(ids[i]);
    if (coordinates_.size() < 3 * (position + 1)) coordinates_.resize(3 * (position + 1));
    for (std::size_t k = 0; k < 3; ++k) coordinates_[3 * position + k] = coordinates[3 * i + k];
  }
}

void ResultMesh::AddElements(std::span<const MeshElement> elements)
{
  for (const MeshElement& element : elements) {
    if (elements_.Find(element.id) != IdRadixMap<Element>::npos) {
      Fail(path_.string() + ": expected every element once, found element " + std::to_string(element.id) + " again");
    }
    for (const int id : element.nodes) ++nodes_.At(nodes_.FindOrInsert(id)).numElements;
    elements_.At(elements_.FindOrInsert(element.id)) = {element.type,         element.material,     nullptr,
                                                        elementNodes_.size(), element.nodes.size(), {}};
    elementNodes_.insert(elementNodes_.end(), element.nodes.begin(), element.nodes.end());
  }
}

std::vector<ResultMesh::MovedNode> ResultMesh::AddDeck(const ImportedDeck& deck)
{
  std::vector<MovedNode> moved = AddDeckNodes(deck);
  // Beside results, what their mesh leaves out has no part in the solver's averages: springs, masses, networks.
  const bool             isAlone = elements_.Entries().empty();
  const std::vector<int> split   = deck->SplitNodes();
  const auto             isNode  = [&](int theirs, int ours) {
    return theirs == ours || (std::ranges::binary_search(split, ours) && deck->FindNode(theirs) == nullptr);
  };
  deck->ForEachElement([&](int id, const InputElement& element) {
    if (elements_.Find(id) == IdRadixMap<Element>::npos) {
      AddDeckElement(deck, id, element, isAlone && element.dimension == 3);
      return;
    }
    Element& known = elements_.At(elements_.Find(id));
    known.deckType = element.typeName;
    if (const int material = deck.SectionOf(id).material; material != 0) known.material = material;

    const bool isSame = known.type == element.type && std::ranges::equal(NodesOf(known), element.nodes, isNode);
    if (element.dimension == 3 && !isSame) {
      Fail(path_.string() + ": expected element " + std::to_string(id) +
           " with the type and the nodes that it has at " + deck->PlaceOfElement(id));
    }
  });
  return moved;
}

double ResultMesh::Size() const
{
  double size = 0.0;
  for (std::size_t k = 0; k < 3 && !coordinates_.empty(); ++k) {
    double least    = coordinates_[k];
    double greatest = least;
    for (std::size_t i = k; i < coordinates_.size(); i += 3) {
      least    = std::min(least, coordinates_[i]);
      greatest = std::max(greatest, coordinates_[i]);
    }
    size = std::max(size, greatest - least);
  }
  return size;
}

std::vector<ResultMesh::MovedNode> ResultMesh::AddDeckNodes(const ImportedDeck& deck)
{
  std::vector<MovedNode> moved;
  deck->ForEachNode([&](int id, const std::array<double, 3>& place) {
    const std::size_t position = nodes_.Find(id);
    if (position != IdRadixMap<Node>::npos) {
      const std::span<const double> theirs = std::span(coordinates_).subspan(3 * position, 3);
      if (!IsPlaceOf(place, theirs)) {
        moved.push_back({id, Distance(place, theirs)});
        return;
      }
    }
    AddNodes({&id, 1}, place);
  });
  return moved;
}

void ResultMesh::AddDeckElement(const ImportedDeck& deck, int id, const InputElement& element, bool isCounted)
{
  if (isCounted) {
    for (const int node : element.nodes) {
      Node* known = FindNode(node);
      // A deck that goes on from a restart file need not have its nodes.
      if (known == nullptr)
        Fail(deck->PlaceOfElement(id) + ": element " + std::to_string(id) + " has node " + std::to_string(node) +
             ", which is not in the deck; expected results with the mesh beside it");
      ++known->numElements;
    }
  }
  elements_.At(elements_.FindOrInsert(id)) = {element.type,         deck.SectionOf(id).material, element.typeName,
                                              elementNodes_.size(), element.nodes.size(),        {}};
  elementNodes_.insert(elementNodes_.end(), element.nodes.begin(), element.nodes.end());
}

void ResultMesh::Save(FED_Database& database, int iteration)
{
  if (!nodes_.Entries().empty()) SaveCoordinates(database, iteration);
  if (!elements_.Entries().empty()) SaveElements(database, iteration);
  coordinates_ = {};
}

void ResultMesh::SaveCoordinates(FED_Database& database, int iteration)
{
  const FED_DataDescriptor descriptor(iteration, OnfKind::Coordinates);
  FED_DataBlock&           block = database.GetOrCreateDataBlock(descriptor, nodes_.Entries().size());
  FED_IdDataBlock          view(block, database.GetIdMapsPool(), true);
  std::size_t              position = 0;
  for (const auto& [id, node] : nodes_.Entries()) view.SetVector(id, &coordinates_[3 * position++]);
}

void ResultMesh::SaveElements(FED_Database& database, int iteration)
{
  const FED_DataDescriptor nodesDescriptor(iteration, OnfKind::ElementNodes);
  const FED_DataDescriptor typeDescriptor(iteration, OnfKind::ElementType);
  const bool               known       = database.HasDataBlock(nodesDescriptor);
  const std::size_t        numElements = elements_.Entries().size();

  FED_IdDataBlock nodesView(database.GetOrCreateDataBlock(nodesDescriptor, numElements), database.GetIdMapsPool(),
                            true);
  FED_IdDataBlock typeView(database.GetOrCreateDataBlock(typeDescriptor, numElements), database.GetIdMapsPool(), true);
  FED_IdDataRecord& nodesRecord = nodesView.CreateIdDataRecord();
  FED_IdDataRecord& typeRecord  = typeView.CreateIdDataRecord();

  std::vector<int> list;
  for (const auto& [id, element] : elements_.Entries()) {
    const std::span<const int> nodes = NodesOf(element);
    list.assign(nodes.begin(), nodes.end());
    // Results of one iteration share their elements, so another file's list is the same or a mistake.
    if (!known || !FEM_ResultUtil::AreElementNodesDefined(database, nodesDescriptor, id, list)) {
      nodesRecord.SetIntList(1, list);
      nodesView.SetRecord(id, nodesRecord);
    }
    typeRecord.SetInteger(1, element.type);
    typeRecord.SetInteger(2, element.material);
    typeView.SetRecord(id, typeRecord);
  }
  nodesView.DeleteIdDataRecord(nodesRecord);
  typeView.DeleteIdDataRecord(typeRecord);
  SaveDeckTypes(database, iteration);
}

/// The code of a type tells its shape alone: "C3D8" of a C3D8R. Other names are kept.
void ResultMesh::SaveDeckTypes(FED_Database& database, int iteration)
{
  std::vector<std::pair<int, const char*>> names;
  for (const auto& [id, element] : elements_.Entries())
    if (element.deckType != nullptr && std::string_view(element.deckType) != TypeNameOf(element.type))
      names.emplace_back(id, element.deckType);
  if (names.empty()) return;
  RecordWriter writer(database, iteration, OnfKind::DeckType, names.size());
  for (const auto& [id, name] : names) {
    writer.Fields().SetString(1, name);
    writer.Write(id);
  }
}

ResultMesh::Node* ResultMesh::FindNode(int id) noexcept
{
  const std::size_t position = nodes_.Find(id);
  return position == IdRadixMap<Node>::npos ? nullptr : &nodes_.At(position);
}

std::vector<int> ResultMesh::ListNodes() const
{
  std::vector<int> ids;
  ids.reserve(nodes_.Entries().size());
  for (const auto& [id, node] : nodes_.Entries()) ids.push_back(id);
  return ids;
}

ResultMesh::Element* ResultMesh::FindElement(int id) noexcept
{
  const std::size_t position = elements_.Find(id);
  return position == IdRadixMap<Element>::npos ? nullptr : &elements_.At(position);
}

std::span<const int> ResultMesh::NodesOf(const Element& element) const noexcept
{
  return std::span(elementNodes_).subspan(element.first, element.count);
}

}  // namespace quilon
