#include "QuilonOnfSpecification/FED_OnfInfoPool.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "bundled/OnfCatalogue.h"

namespace {

constexpr int kUnknownKind = 14;

FED_OnfMetaData MakeMetaData(int id)
{
  for (const OnfCatalogue::UserRange& range : OnfCatalogue::UserRanges()) {
    if (id >= range.first && id <= range.last) {
      return {range.entityKind, range.stem + "-" + std::to_string(id), range.recordFormat, range.description};
    }
  }
  return {kUnknownKind, "onf-" + std::to_string(id), "", "not in the catalogue"};
}

/// Metadata of ids beyond the fixed ones, made when first asked for. References into a std::map stay valid.
struct MadeMetaData
{
  std::mutex                     mutex;
  std::map<int, FED_OnfMetaData> byId;
};

}  // namespace

const FED_OnfMetaData& FED_OnfInfoPool::GetOnfInfo(FED_OnfId onf)
{
  const int id = static_cast<int>(onf);

  // Never destroyed: objects that end with the program may still ask.
  static const std::map<int, const FED_OnfMetaData*>& fixed = *[] {
    auto made = std::make_unique<std::map<int, const FED_OnfMetaData*>>();
    for (const OnfCatalogue::Entry& entry : OnfCatalogue::Entries())
      made->emplace(static_cast<int>(entry.onf), &entry.metaData);
    return made.release();
  }();
  static MadeMetaData& made = *new MadeMetaData;

  if (const auto it = fixed.find(id); it != fixed.end()) return *it->second;

  const std::lock_guard<std::mutex> lock(made.mutex);
  if (const auto it = made.byId.find(id); it != made.byId.end()) return it->second;
  return made.byId.emplace(id, MakeMetaData(id)).first->second;
}
