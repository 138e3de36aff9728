#pragma once

/// @file
/// Shards to join, and what is in databases whatever the order of their ids.

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>

#include <bundled/FED_BlockCopy.h>
#include <bundled/FED_ResultDatabase.h>

#include "progress/Listener.h"
#include "Snapshot.h"

namespace quilon_test {

class SilentListener final : public quilon::Listener
{
public:
  void Note(const std::string&) override {}
  void Progress(const std::string&, std::uint64_t, std::uint64_t, const std::string&) override {}
};

/// @return all records under indices that count the ids of each kind, ascending, and all names of user kinds
inline std::map<std::string, std::string> ContentOf(const std::filesystem::path& folder)
{
  const FED_ResultDatabase database(folder, FED_ResultDatabase::ReadOnly);
  FED_ResultDatabase       sorted;
  for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind) {
    std::set<int> ids;
    for (std::size_t index = 1; index <= database.GetIdMapsPool().GetCount(kind); ++index)
      ids.insert(database.GetIdMapsPool().GetId(kind, index));
    for (const int id : ids) sorted.GetIdMapsPool().FindOrAddIndex(kind, id);
  }
  for (const FED_DataDescriptor& block : database.GetDataDescriptors(FED_DataDescriptorPattern()))
    FED_CopyBlock(database, sorted, block);
  auto content = Snapshot(sorted);
  for (int kind = 1000; kind <= 1999; ++kind) {
    const std::string name = database.GetUserKindName(static_cast<FED_OnfId>(kind));
    if (!name.empty()) content["name " + std::to_string(kind)] = name;
  }
  return content;
}

}  // namespace quilon_test
