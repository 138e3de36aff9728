#include "forces/ForceMesh.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>

#include "calculix/deck/DeckModel.h"
#include "database/Provenance.h"
#include "database/ScratchRecord.h"
#include "mesh/MeshBlocks.h"
#include "text/Failure.h"

namespace quilon {

namespace {

constexpr int kFrdDigits = 6;

const FED_DataBlock& RequireBlock(const FED_Database& database, int iteration, int onf, const std::string& name)
{
  const FED_DataDescriptor descriptor(iteration, static_cast<FED_OnfId>(onf));
  if (!database.HasDataBlock(descriptor)) {
    Fail(name + ": no " + (onf == OnfKind::Coordinates ? "coordinates" : "elements") + " (block " +
         std::to_string(onf) + "), expected the mesh of a .frd or --deck");
  }
  return database.GetConstDataBlock(descriptor);
}

/// @return whether the database keeps nodes that a deck ties
bool ReadTies(const FED_Database& database, int iteration, ForceMesh& mesh)
{
  const FED_DataDescriptor descriptor(iteration, OnfKind::TiedNodes);
  if (!database.HasDataBlock(descriptor)) return false;
  const FED_DataBlock& block = database.GetConstDataBlock(descriptor);
  const ScratchRecord  record(block);
  for (auto index = block.Begin(); index != block.End(); ++index) {
    block.GetRecord(*index, *record);
    FED_IntArray ids;
    record->GetIntList(2, ids);
    mesh.Tie(record->GetString(1), std::span(ids.GetData(), ids.GetSize()));
  }
  return true;
}

bool HasSixDigits(double coordinate)
{
  char text[32];
  std::snprintf(text, sizeof text, "%.*e", kFrdDigits - 1, coordinate);
  return std::strtod(text, nullptr) == coordinate;
}

}  // namespace

void ForceMesh::Tie(const std::string& how, std::span<const int> ids)
{
  const auto known = std::find(waysOfTies.begin(), waysOfTies.end(), how);
  const auto way   = static_cast<std::size_t>(known - waysOfTies.begin());
  if (known == waysOfTies.end()) waysOfTies.push_back(how);
  for (const int node : ids) {
    const std::size_t before = ties.Entries().size();
    const std::size_t place  = ties.FindOrInsert(node);
    if (ties.Entries().size() > before) ties.At(place) = way;
  }
}

const std::string* ForceMesh::HowTied(int node) const noexcept
{
  const std::size_t place = ties.Find(node);
  return place == IdRadixMap<std::size_t>::npos ? nullptr : &waysOfTies[ties.At(place)];
}

double RoundingOf(double coordinate) noexcept
{
  if (coordinate == 0.0 || !std::isfinite(coordinate)) return 0.0;
  return 0.5 * std::pow(10.0, std::floor(std::log10(std::abs(coordinate))) + 1 - kFrdDigits);
}

ForceMesh MakeForceMesh(const calculix::DeckModel& deck)
{
  ForceMesh mesh;
  mesh.elementNodes = deck.elementNodes;
  mesh.nodes.Reserve(deck.nodes.Entries().size());
  for (const auto& [id, node] : deck.nodes.Entries()) mesh.nodes.At(mesh.nodes.FindOrInsert(id)) = node.position;
  mesh.elements.Reserve(deck.elements.Entries().size());
  for (const auto& [id, element] : deck.elements.Entries()) {
    mesh.elements.At(mesh.elements.FindOrInsert(id)) = {element.type->name, element.type->frdType, element.first,
                                                        element.count};
  }
  for (const calculix::DeckTiedNodes& tied : deck.TiedNodes()) mesh.Tie(tied.how, tied.nodes);
  mesh.areTiesKnown = true;
  return mesh;
}

ForceMesh ReadForceMesh(const FED_Database& database, int iteration, const std::string& name)
{
  ForceMesh             mesh;
  const FED_IdMapsPool& pool        = database.GetIdMapsPool();
  const FED_DataBlock&  coordinates = RequireBlock(database, iteration, OnfKind::Coordinates, name);
  const FED_DataBlock&  lists       = RequireBlock(database, iteration, OnfKind::ElementNodes, name);
  const FED_DataBlock&  types       = RequireBlock(database, iteration, OnfKind::ElementType, name);

  mesh.nodes.Reserve(coordinates.GetSize());
  mesh.isRounded = true;
  ForEachNode(coordinates, pool, [&mesh](int id, const std::array<double, 3>& position) {
    mesh.nodes.At(mesh.nodes.FindOrInsert(id)) = position;
    mesh.isRounded = mesh.isRounded && std::all_of(position.begin(), position.end(), HasSixDigits);
  });
  mesh.elements.Reserve(lists.GetSize());
  ForEachElement(lists, types, pool, [&mesh](const ElementRow& element) {
    mesh.elements.At(mesh.elements.FindOrInsert(element.id)) = {nullptr, element.frdType, mesh.elementNodes.size(),
                                                                element.nodes.size()};
    mesh.elementNodes.insert(mesh.elementNodes.end(), element.nodes.begin(), element.nodes.end());
  });
  mesh.areTiesKnown = ReadTies(database, iteration, mesh) || WasImportedWithDeck(database, iteration);
  return mesh;
}

}  // namespace quilon
