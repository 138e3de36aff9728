#pragma once

/// @file
/// Meshes for tests.

#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "mesh/Mesh.h"

namespace quilon_test {

struct NodeRow
{
  int                 id;
  quilon::Mesh::Point point;
};

struct ElementLine
{
  int              id;
  int              frdType;
  int              material;
  std::vector<int> nodes;
};

inline FED_IdDataBlock MeshView(FED_ResultDatabase& database, FED_OnfId onf, int iteration = 0)
{
  return FED_IdDataBlock(database.GetOrCreateDataBlock(FED_DataDescriptor(iteration, onf), 0), database.GetIdMapsPool(),
                         true);
}

/// Writes coordinates, node lists and types as an import does.
inline void WriteMesh(FED_ResultDatabase& database, const std::vector<NodeRow>& nodes,
                      const std::vector<ElementLine>& elements, int iteration = 0)
{
  FED_IdDataBlock coordinates = MeshView(database, OnfKind::Coordinates, iteration);
  for (const NodeRow& node : nodes) coordinates.SetVector(node.id, node.point.data());
  if (elements.empty()) return;
  FED_IdDataBlock   lists = MeshView(database, OnfKind::ElementNodes, iteration);
  FED_IdDataBlock   types = MeshView(database, OnfKind::ElementType, iteration);
  FED_IdDataRecord& list  = lists.CreateIdDataRecord();
  FED_IdDataRecord& type  = types.CreateIdDataRecord();
  for (const ElementLine& element : elements) {
    list.SetIntList(1, element.nodes);
    lists.SetRecord(element.id, list);
    type.SetInteger(1, element.frdType);
    type.SetInteger(2, element.material);
    types.SetRecord(element.id, type);
  }
}

/// Writes the next set of a kind.
inline void WriteSet(FED_ResultDatabase& database, FED_OnfId onf, int number, const std::string& name,
                     const std::vector<int>& ids)
{
  FED_IdDataBlock   view   = MeshView(database, onf);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.GetDataRecord().SetString(1, name);
  record.SetIntList(2, ids);
  view.SetRecord(number, record);
}

/// Two cubes of edge 2 side by side along x. Nodes 1 to 12: four at x = 0, four at x = 2, four at x = 4, each group
/// (y, z) = (0, 0), (2, 0), (2, 2), (0, 2).
inline std::vector<NodeRow> TwoCubeNodes()
{
  std::vector<NodeRow> nodes;
  for (const double x : {0.0, 2.0, 4.0})
    for (const quilon::Mesh::Point& yz : {quilon::Mesh::Point{x, 0, 0}, {x, 2, 0}, {x, 2, 2}, {x, 0, 2}})
      nodes.push_back({static_cast<int>(nodes.size()) + 1, yz});
  return nodes;
}

inline std::vector<ElementLine> TwoCubeElements()
{
  return {{10, 1, 1, {1, 5, 6, 2, 4, 8, 7, 3}}, {20, 1, 2, {5, 9, 10, 6, 8, 12, 11, 7}}};
}

inline quilon::Mesh MakeMesh(const std::vector<NodeRow>& nodes, const std::vector<ElementLine>& elements)
{
  FED_ResultDatabase database;
  WriteMesh(database, nodes, elements);
  return quilon::ReadMesh(database, 0, "test");
}

}  // namespace quilon_test
