#include "TwoBricks.h"

#include <cstddef>
#include <tuple>
#include <vector>

#include <bundled/OnfKinds.h>

#include "QuilonDbConnector/FED_IdDataBlock.h"

namespace quilon_test {

namespace {

FED_IdDataBlock View(FED_Database& database, const FED_DataDescriptor& descriptor)
{
  return {database.GetOrCreateDataBlock(descriptor, 0), database.GetIdMapsPool(), true};
}

void SetNamed(FED_Database& database, FED_OnfId onf, int number, const char* name, const std::vector<int>& ids)
{
  FED_IdDataBlock   view   = View(database, FED_DataDescriptor(0, onf));
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.GetDataRecord().SetString(1, name);
  if (onf == OnfKind::Material)
    for (const std::size_t field : {2u, 3u, 4u}) record.GetDataRecord().SetDouble(field, 1.0);
  else
    record.SetIntList(2, ids);
  view.SetRecord(number, record);
  view.DeleteIdDataRecord(record);
}

void SetElement(FED_Database& database, int id, int material, const std::vector<int>& nodes)
{
  FED_IdDataBlock   lists = View(database, FED_DataDescriptor(0, OnfKind::ElementNodes));
  FED_IdDataRecord& list  = lists.CreateIdDataRecord();
  list.SetIntList(1, nodes);
  lists.SetRecord(id, list);
  lists.DeleteIdDataRecord(list);

  FED_IdDataBlock   types = View(database, FED_DataDescriptor(0, OnfKind::ElementType));
  FED_IdDataRecord& type  = types.CreateIdDataRecord();
  type.SetInteger(1, 1);
  type.SetInteger(2, material);
  types.SetRecord(id, type);
  types.DeleteIdDataRecord(type);
}

}  // namespace

FED_DataDescriptor StepBlock(int onf, int loadCase, int substep)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::Analysis, 1);
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  descriptor.SetInteger(FED_DataDescriptor::Substep, substep);
  return descriptor;
}

void SetFrequency(FED_Database& database, int loadCase, int mode, double frequency)
{
  FED_DataDescriptor history(0, FED_OnfId_ScalarHistory);
  history.SetInteger(FED_DataDescriptor::Analysis, 2);
  history.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  history.SetInteger(OnfIndex::Quantity, OnfKind::Frequency);
  database.GetOrCreateDataBlock(history, 1).SetScalarAt(static_cast<std::size_t>(mode), frequency);
}

void FillTwoBricks(FED_Database& database)
{
  FED_IdDataBlock coordinates = View(database, FED_DataDescriptor(0, OnfKind::Coordinates));
  for (int node = 1; node <= 12; ++node) {
    const int    corner   = (node - 1) % 4;
    const double point[3] = {static_cast<double>((node - 1) / 4), corner == 1 || corner == 2 ? 1.0 : 0.0,
                             corner >= 2 ? 1.0 : 0.0};
    coordinates.SetVector(node, point);
  }
  SetElement(database, 101, 1, {1, 2, 3, 4, 5, 6, 7, 8});
  SetElement(database, 102, 2, {5, 6, 7, 8, 9, 10, 11, 12});
  SetNamed(database, OnfKind::Material, 1, "STEEL", {});
  SetNamed(database, OnfKind::Material, 2, "ALU", {});
  SetNamed(database, OnfKind::NodeSet, 1, "FIX", {1, 2, 3, 4});
  SetNamed(database, OnfKind::NodeSet, 2, "MIX", {9});
  SetNamed(database, OnfKind::ElementSet, 1, "LEFT", {101});
  SetNamed(database, OnfKind::ElementSet, 2, "RIGHT", {102});
  SetNamed(database, OnfKind::ElementSet, 3, "MIX", {101});

  for (const auto& [loadCase, substep, time] : {std::tuple(1, 1, 0.5), std::tuple(1, 2, 1.0), std::tuple(2, 1, 2.0)}) {
    FED_DataDescriptor history(0, FED_OnfId_ScalarHistory);
    history.SetInteger(FED_DataDescriptor::Analysis, 1);
    history.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
    history.SetInteger(OnfIndex::Quantity, OnfKind::Time);
    database.GetOrCreateDataBlock(history, 4).SetScalarAt(static_cast<std::size_t>(substep), time);

    FED_IdDataBlock displacements = View(database, StepBlock(OnfKind::Displacement, loadCase, substep));
    FED_IdDataBlock stresses      = View(database, StepBlock(OnfKind::NodalStress, loadCase, substep));
    for (int node = 1; node <= 12; ++node) {
      const double vector[3] = {node * time, -node * time, 0};
      const double tensor[6] = {node * time, 0, 0, 0, 0, 0};
      displacements.SetVector(node, vector);
      stresses.SetTensor(node, tensor);
    }
    FED_IdDataBlock means = View(database, StepBlock(OnfKind::ElementStress, loadCase, substep));
    for (const int element : {101, 102}) {
      const double tensor[6] = {0, 0, 0, (element - 100) * time, 0, 0};
      means.SetTensor(element, tensor);
    }
  }
}

}  // namespace quilon_test
