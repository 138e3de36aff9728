#pragma once

/// @file
/// All that a database holds, as text.

#include <cstddef>
#include <map>
#include <string>

#include "bundled/FED_ResultDatabase.h"

#include "Snapshot.h"

namespace quilon_test {

using State = std::map<std::string, std::string>;

/// Records, ids, blocks, those without records too, and names of user kinds.
inline State StateOf(const FED_ResultDatabase& database)
{
  State state = Snapshot(database);
  for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind)
    for (std::size_t index = 1; index <= database.GetIdMapsPool().GetCount(kind); ++index)
      state["id " + std::to_string(kind) + ' ' + std::to_string(index)] =
          std::to_string(database.GetIdMapsPool().GetId(kind, index));
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern()))
    state["block " + descriptor.ToString()];
  for (int kind = 1000; kind <= 1999; ++kind) {
    const std::string name = database.GetUserKindName(static_cast<FED_OnfId>(kind));
    if (!name.empty()) state["name " + std::to_string(kind)] = name;
  }
  return state;
}

}  // namespace quilon_test
