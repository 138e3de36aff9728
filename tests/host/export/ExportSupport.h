#pragma once

/// @file
/// Results to export.

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QuilonUtilities/FED_Failure.h>

#include "../mesh/MeshSupport.h"
#include "export/Export.h"
#include "progress/Listener.h"

namespace quilon_test {

/// A key of a result in time.
inline FED_DataDescriptor StepKey(int onf, int substep, int group = 0)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::Analysis, 1);
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, 1);
  descriptor.SetInteger(FED_DataDescriptor::Substep, substep);
  if (group != 0) descriptor.SetInteger(OnfIndex::Group, group);
  return descriptor;
}

/// Sets the values of one record: 1, 3 or 6.
inline void SetValues(FED_ResultDatabase& database, const FED_DataDescriptor& key, int id,
                      const std::vector<double>& values)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(key, 0), database.GetIdMapsPool(), true);
  if (values.size() == 1)
    view.SetScalar(id, values.front());
  else if (values.size() == 3)
    view.SetVector(id, values.data());
  else
    view.SetTensor(id, values.data());
}

inline void SetTime(FED_ResultDatabase& database, int substep, double time)
{
  FED_DataDescriptor key(0, OnfKind::ScalarHistory);
  key.SetInteger(FED_DataDescriptor::Analysis, 1);
  key.SetInteger(FED_DataDescriptor::LoadCase, 1);
  key.SetInteger(OnfIndex::Quantity, OnfKind::Time);
  database.GetOrCreateDataBlock(key, 0).SetScalarAt(static_cast<std::size_t>(substep), time);
}

/// @return the blocks of these kinds; all without any
inline std::vector<FED_DataDescriptor> BlocksOf(const FED_Database& database, const std::vector<int>& kinds = {})
{
  std::vector<FED_DataDescriptor> blocks = database.GetDataDescriptors(FED_DataDescriptorPattern());
  if (kinds.empty()) return blocks;
  std::erase_if(blocks, [&](const FED_DataDescriptor& block) {
    const int onf = block.GetInteger(FED_DataDescriptor::OnfId);
    return std::find(kinds.begin(), kinds.end(), onf) == kinds.end();
  });
  return blocks;
}

/// @return the message of the failure, empty without one
template <typename Function>
std::string FailureOf(const Function& function)
{
  try {
    function();
  } catch (const FED_Failure& failure) {
    return failure.what();
  }
  return "";
}

struct RecordingListener : quilon::Listener
{
  std::vector<std::string> notes;
  void                     Note(const std::string& message) override { notes.push_back(message); }
  void                     Progress(const std::string&, std::uint64_t, std::uint64_t, const std::string&) override {}
};

}  // namespace quilon_test
