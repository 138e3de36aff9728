#pragma once

/// @file
/// Small databases for tests of answers.

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

namespace quilon_test {

using Tensor = std::array<double, 6>;
using Vector = std::array<double, 3>;

inline FED_DataDescriptor ResultKey(int onf, int loadCase = 1, int substep = 1, int analysis = 1)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  descriptor.SetInteger(FED_DataDescriptor::Substep, substep);
  descriptor.SetInteger(FED_DataDescriptor::Analysis, analysis);
  return descriptor;
}

inline FED_IdDataBlock ViewOf(FED_Database& database, const FED_DataDescriptor& descriptor)
{
  return FED_IdDataBlock(database.GetOrCreateDataBlock(descriptor, 0), database.GetIdMapsPool(), true);
}

inline void WriteTensor(FED_Database& database, const FED_DataDescriptor& descriptor, int id, const Tensor& value)
{
  ViewOf(database, descriptor).SetTensor(id, value.data());
}

inline void WriteVector(FED_Database& database, const FED_DataDescriptor& descriptor, int id, const Vector& value)
{
  ViewOf(database, descriptor).SetVector(id, value.data());
}

inline void WriteScalar(FED_Database& database, const FED_DataDescriptor& descriptor, int id, double value)
{
  ViewOf(database, descriptor).SetScalar(id, value);
}

inline void WriteNode(FED_Database& database, int id, const Vector& position)
{
  WriteVector(database, FED_DataDescriptor(0, OnfKind::Coordinates), id, position);
}

inline void WriteElement(FED_Database& database, int id, int frdType, const std::vector<int>& nodes, int material = 1)
{
  FED_IdDataBlock   lists = ViewOf(database, FED_DataDescriptor(0, OnfKind::ElementNodes));
  FED_IdDataBlock   types = ViewOf(database, FED_DataDescriptor(0, OnfKind::ElementType));
  FED_IdDataRecord& list  = lists.CreateIdDataRecord();
  FED_IdDataRecord& type  = types.CreateIdDataRecord();
  list.SetIntList(1, nodes);
  lists.SetRecord(id, list);
  type.SetInteger(1, frdType);
  type.SetInteger(2, material);
  types.SetRecord(id, type);
}

/// Nodes 1 to 12: four at x = 0, four at x = 2, four at x = 4, each group (y, z) = (0, 0), (2, 0), (2, 2), (0, 2).
/// Bricks 10 and 20.
inline void WriteTwoCubes(FED_Database& database)
{
  int id = 0;
  for (const double x : {0.0, 2.0, 4.0})
    for (const std::array<double, 2>& yz : {std::array{0.0, 0.0}, {2.0, 0.0}, {2.0, 2.0}, {0.0, 2.0}})
      WriteNode(database, ++id, {x, yz[0], yz[1]});
  WriteElement(database, 10, 1, {1, 5, 6, 2, 4, 8, 7, 3});
  WriteElement(database, 20, 1, {5, 9, 10, 6, 8, 12, 11, 7});
}

/// The message of the failure that a call throws.
template <typename Call>
std::string FailureOf(const Call& call)
{
  try {
    call();
  } catch (const FED_Failure& failure) {
    return failure.GetMessage();
  }
  return "no failure";
}

}  // namespace quilon_test
