#pragma once

/// @file
/// A small model for tests of forces: two cubes of edge 2 side by side along x.

#include <array>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "forces/ForceMesh.h"
#include "import/StepMatcher.h"

namespace quilon_test {

using quilon::ForceMesh;

inline FED_DataDescriptor ResultKey(int onf, int loadCase = 1)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  descriptor.SetInteger(FED_DataDescriptor::Substep, 1);
  descriptor.SetInteger(FED_DataDescriptor::Analysis, quilon::AnalysisTime);
  return descriptor;
}

inline void AddElement(ForceMesh& mesh, int id, const char* type, int frdType, const std::vector<int>& nodes)
{
  mesh.elements.At(mesh.elements.FindOrInsert(id)) = {type, frdType, mesh.elementNodes.size(), nodes.size()};
  mesh.elementNodes.insert(mesh.elementNodes.end(), nodes.begin(), nodes.end());
}

/// Nodes 1 to 12: four at x = 0, four at x = 2, four at x = 4, each group (y, z) = (0, 0), (2, 0), (2, 2), (0, 2).
/// Elements 10 and 20.
inline ForceMesh TwoCubes(const char* type = "C3D8")
{
  ForceMesh mesh;
  int       id = 0;
  for (const double x : {0.0, 2.0, 4.0}) {
    for (const std::array<double, 2>& yz : {std::array{0.0, 0.0}, {2.0, 0.0}, {2.0, 2.0}, {0.0, 2.0}})
      mesh.nodes.At(mesh.nodes.FindOrInsert(++id)) = {x, yz[0], yz[1]};
  }
  AddElement(mesh, 10, type, 1, {1, 5, 6, 2, 4, 8, 7, 3});
  AddElement(mesh, 20, type, 1, {5, 9, 10, 6, 8, 12, 11, 7});
  return mesh;
}

/// Writes the same stress at every point of an element.
inline void WriteStress(FED_ResultDatabase& database, int element, const std::array<double, 6>& stress,
                        std::size_t numPoints = 8, int loadCase = 1)
{
  FED_IdDataBlock     view(database.GetOrCreateDataBlock(ResultKey(582, loadCase), 0), database.GetIdMapsPool(), true);
  FED_IdDataRecord&   record = view.CreateIdDataRecord();
  std::vector<double> values;
  for (std::size_t p = 0; p < numPoints; ++p) values.insert(values.end(), stress.begin(), stress.end());
  record.SetInteger(1, static_cast<int>(numPoints));
  record.SetDoubleList(2, values);
  view.SetRecord(element, record);
}

/// Writes a vector of a node: a displacement (510) or what acts on it (511).
inline void WriteVector(FED_ResultDatabase& database, int onf, int node, const std::array<double, 3>& value,
                        int loadCase = 1)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(ResultKey(onf, loadCase), 0), database.GetIdMapsPool(), true);
  view.SetVector(node, value.data());
}

/// Writes coordinates, node lists and types as an import does.
inline void WriteMesh(FED_ResultDatabase& database, const ForceMesh& mesh)
{
  const auto viewOf = [&database](int onf) {
    const FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(onf));
    return FED_IdDataBlock(database.GetOrCreateDataBlock(descriptor, 0), database.GetIdMapsPool(), true);
  };
  FED_IdDataBlock coordinates = viewOf(516);
  for (const auto& [id, position] : mesh.nodes.Entries()) coordinates.SetVector(id, position.data());
  FED_IdDataBlock   lists = viewOf(595);
  FED_IdDataBlock   types = viewOf(596);
  FED_IdDataRecord& list  = lists.CreateIdDataRecord();
  FED_IdDataRecord& type  = types.CreateIdDataRecord();
  for (const auto& [id, element] : mesh.elements.Entries()) {
    const auto nodes = mesh.NodesOf(element);
    list.SetIntList(1, std::vector<int>(nodes.begin(), nodes.end()));
    lists.SetRecord(id, list);
    type.SetInteger(1, element.frdType);
    type.SetInteger(2, 1);
    types.SetRecord(id, type);
  }
}

}  // namespace quilon_test
