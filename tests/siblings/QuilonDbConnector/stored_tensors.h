#pragma once

/// @file
/// Blocks that tests of databases on disk are about.

#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"

inline FED_DataDescriptor Key(FED_OnfId onf, int substep)
{
  FED_DataDescriptor descriptor(0, onf);
  descriptor.SetInteger(FED_DataDescriptor::Substep, substep);
  return descriptor;
}

constexpr auto kTensor = static_cast<FED_OnfId>(521);

/// Sets the tensors of ids first to last, each of them another one.
inline void SetTensors(FED_ResultDatabase& database, int substep, int first, int last, double value)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(Key(kTensor, substep), 0), database.GetIdMapsPool(), true);
  for (int id = first; id <= last; ++id) {
    const double tensor[6] = {value, 1.0 * id, 0, 0, 0, -value};
    view.SetTensor(id, tensor);
  }
}
