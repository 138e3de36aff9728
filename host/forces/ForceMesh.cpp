#include "forces/ForceMesh.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "calculix/deck/DeckModel.h"
#include "database/ScratchRecord.h"
#include "progress/Interrupt.h"
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

bool HasSixDigits(double coordinate)
{
  char text[32];
  std::snprintf(text, sizeof text, "%.*e", kFrdDigits - 1, coordinate);
  return std::strtod(text, nullptr) == coordinate;
}

}  // namespace

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
  return mesh;
}

ForceMesh ReadForceMesh(const FED_Database& database, int iteration, const std::string& name)
{
  ForceMesh             mesh;
  const FED_IdMapsPool& pool        = database.GetIdMapsPool();
  const FED_DataBlock&  coordinates = RequireBlock(database, iteration, OnfKind::Coordinates, name);
  const FED_DataBlock&  lists       = RequireBlock(database, iteration, OnfKind::ElementNodes, name);
  const FED_DataBlock&  types       = RequireBlock(database, iteration, OnfKind::ElementType, name);

  const FED_ConstIdDataBlock nodeView(coordinates, pool);
  mesh.nodes.Reserve(coordinates.GetSize());
  mesh.isRounded = true;
  for (auto index = coordinates.Begin(); index != coordinates.End(); ++index) {
    ThrowIfInterrupted();
    std::array<double, 3>& position = mesh.nodes.At(mesh.nodes.FindOrInsert(nodeView.GetId(*index)));
    coordinates.GetValuesAt(*index, position.data());
    mesh.isRounded = mesh.isRounded && std::all_of(position.begin(), position.end(), HasSixDigits);
  }

  const FED_ConstIdDataBlock elementView(lists, pool);
  const ScratchRecord        nodesRecord(lists);
  const ScratchRecord        typeRecord(types);
  FED_IntArray               nodes;
  mesh.elements.Reserve(lists.GetSize());
  for (auto index = lists.Begin(); index != lists.End(); ++index) {
    ThrowIfInterrupted();
    const int id = elementView.GetId(*index);
    // Both blocks are of elements, so an element has one index in both.
    if (!types.HasRecord(*index)) continue;
    types.GetRecord(*index, *typeRecord);
    lists.GetRecord(*index, *nodesRecord);
    nodesRecord->GetIntList(1, nodes);
    mesh.elements.At(mesh.elements.FindOrInsert(id)) = {nullptr, typeRecord->GetInteger(1), mesh.elementNodes.size(),
                                                        nodes.GetSize()};
    mesh.elementNodes.insert(mesh.elementNodes.end(), nodes.GetData(), nodes.GetData() + nodes.GetSize());
  }
  return mesh;
}

}  // namespace quilon
