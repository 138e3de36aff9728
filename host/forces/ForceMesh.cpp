#include "forces/ForceMesh.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>

#include "calculix/deck/DeckModel.h"
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

bool HasSixDigits(double coordinate)
{
  char text[32];
  std::snprintf(text, sizeof text, "%.*e", kFrdDigits - 1, coordinate);
  return std::strtod(text, nullptr) == coordinate;
}

const char* NameOf(calculix::DeckConstraint::Kind kind)
{
  using calculix::DeckConstraint;
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
  for (const calculix::DeckConstraint& constraint : deck.constraints) {
    for (const int node : deck.NodesOf(constraint)) {
      const char*& name = mesh.ties.At(mesh.ties.FindOrInsert(node));
      if (name == nullptr) name = NameOf(constraint.kind);
    }
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
  return mesh;
}

}  // namespace quilon
