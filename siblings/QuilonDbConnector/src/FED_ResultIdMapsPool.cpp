#include "bundled/FED_ResultIdMapsPool.h"

#include <cstdint>
#include <string>
#include <vector>

#include "QuilonUtilities/FED_Failure.h"

#include "KeyTable.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_ResultIdMapsPool";

// The kind of ids that the catalogue does not know.
constexpr int kUnknownKind = 14;

}  // namespace

// Negative ids have a table of their own, keyed by their complement, so that both signs give small keys.
class FED_ResultIdMapsPool::IdMap
{
public:
  std::size_t Find(int id) const noexcept
  {
    const std::uint32_t row = TableOf(id).Find(KeyOf(id));
    return row == KeyTable::kNone ? npos : std::size_t{row} + 1;
  }

  std::size_t FindOrAdd(int id)
  {
    const std::size_t found = Find(id);
    if (found != npos) return found;
    KeyTable&  table = id < 0 ? negative_ : positive_;
    const auto row   = static_cast<std::uint32_t>(ids_.size());
    table.Prepare(KeyOf(id), row);
    ids_.push_back(id);
    table.Insert(KeyOf(id), row);
    return ids_.size();
  }

  const std::vector<int>& GetIds() const noexcept { return ids_; }

private:
  static std::uint32_t KeyOf(int id) noexcept { return static_cast<std::uint32_t>(id < 0 ? ~id : id); }
  const KeyTable&      TableOf(int id) const noexcept { return id < 0 ? negative_ : positive_; }

  KeyTable         positive_;
  KeyTable         negative_;
  std::vector<int> ids_;  // id of each row; its index is the row + 1
};

FED_ResultIdMapsPool::FED_ResultIdMapsPool()
{
  for (auto& map : maps_) map = std::make_unique<IdMap>();
}

FED_ResultIdMapsPool::FED_ResultIdMapsPool(FED_ResultIdMapsPool&& other) noexcept            = default;
FED_ResultIdMapsPool& FED_ResultIdMapsPool::operator=(FED_ResultIdMapsPool&& other) noexcept = default;
FED_ResultIdMapsPool::~FED_ResultIdMapsPool()                                                = default;

std::size_t FED_ResultIdMapsPool::FindIndex(int kind, int id) const { return GetMap(kind).Find(id); }

std::size_t FED_ResultIdMapsPool::FindOrAddIndex(int kind, int id) { return GetMap(kind).FindOrAdd(id); }

int FED_ResultIdMapsPool::GetId(int kind, std::size_t index) const
{
  const std::vector<int>& ids = GetMap(kind).GetIds();
  if (index >= 1 && index <= ids.size()) return ids[index - 1];
  if (kind == kUnknownKind && index <= KeyTable::kMaxKey) return static_cast<int>(index);
  const std::string present = ids.empty() ? "there are none" : "indices are 1 to " + std::to_string(ids.size());
  throw FED_Failure("id map of entity kind " + std::to_string(kind) + ": no id has the index " + std::to_string(index) +
                        ", " + present,
                    kTag);
}

std::size_t FED_ResultIdMapsPool::GetCount(int kind) const { return GetMap(kind).GetIds().size(); }

FED_ResultIdMapsPool::IdMap& FED_ResultIdMapsPool::GetMap(int kind) const
{
  if (kind >= 0 && kind < kNumKinds) return *maps_[static_cast<std::size_t>(kind)];
  throw FED_Failure("id map of entity kind " + std::to_string(kind) + ": only the kinds 0 to 14 have one", kTag);
}
