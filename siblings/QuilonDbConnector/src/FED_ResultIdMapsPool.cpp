#include "bundled/FED_ResultIdMapsPool.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <bundled/OnfKinds.h>

#include "QuilonUtilities/FED_Failure.h"

#include "ChunkStore.h"
#include "KeyTable.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_ResultIdMapsPool";

}  // namespace

// Negative ids have a table of their own, keyed by their complement, so that both signs give small keys.
class FED_ResultIdMapsPool::IdMap
{
public:
  IdMap() = default;
  IdMap(const ChunkStore& store, int kind)
      : store_(&store), kind_(kind), storedCount_(store.GetIdCount(kind)), isLoaded_(storedCount_ == 0)
  {}

  std::size_t Find(int id) const
  {
    const std::uint32_t row = TableOf(id).Find(KeyOf(id));
    if (row != KeyTable::kNone) return std::size_t{row} + 1;
    return isLoaded_ ? npos : FindStored(id);
  }

  std::size_t FindOrAdd(int id)
  {
    KeyTable&           table = id < 0 ? negative_ : positive_;
    const std::uint32_t found = table.Find(KeyOf(id));
    if (found != KeyTable::kNone) return std::size_t{found} + 1;
    if (!isLoaded_) {
      Load();
      return FindOrAdd(id);
    }
    if (store_ != nullptr && !store_->IsWritable())
      throw FED_Failure("id map of entity kind " + std::to_string(kind_) + ": id " + std::to_string(id) +
                            " is not there, and the database is open for reading only",
                        kTag);
    const auto row = static_cast<std::uint32_t>(ids_.size());
    table.Prepare(KeyOf(id), row);
    ids_.push_back(id);
    table.Insert(KeyOf(id), row);
    return ids_.size();
  }

  std::size_t GetCount() const noexcept { return isLoaded_ ? ids_.size() : storedCount_; }

  /// @param index 1 <= index <= GetCount()
  int GetId(std::size_t index) const
  {
    if (!isLoaded_) Load();
    return ids_[index - 1];
  }

  Growth GetGrowth() const noexcept
  {
    if (!isLoaded_) return {storedCount_ + 1, {nullptr, 0}};
    return {storedCount_ + 1, {ids_.data() + storedCount_, ids_.size() - storedCount_}};
  }

  void MarkStored() noexcept { storedCount_ = GetCount(); }

private:
  static std::uint32_t KeyOf(int id) noexcept { return static_cast<std::uint32_t>(id < 0 ? ~id : id); }
  const KeyTable&      TableOf(int id) const noexcept { return id < 0 ? negative_ : positive_; }

  std::size_t FindStored(int id) const;
  void        Load() const;

  const ChunkStore* store_       = nullptr;
  int               kind_        = 0;
  std::size_t       storedCount_ = 0;
  // What is in the store comes here when it is first asked for, also by a const call.
  mutable bool             isLoaded_ = true;
  mutable KeyTable         positive_;
  mutable KeyTable         negative_;
  mutable std::vector<int> ids_;  // id of each row; its index is the row + 1
};

std::size_t FED_ResultIdMapsPool::IdMap::FindStored(int id) const
{
  Load();
  return Find(id);
}

void FED_ResultIdMapsPool::IdMap::Load() const
{
  std::vector<int> ids(storedCount_);
  KeyTable         positive, negative;
  store_->ReadIds(kind_, ids.data());
  for (std::size_t row = 0; row < ids.size(); ++row) {
    KeyTable&           table = ids[row] < 0 ? negative : positive;
    const std::uint32_t key   = KeyOf(ids[row]);
    if (table.Find(key) != KeyTable::kNone)
      throw FED_Failure("id map of entity kind " + std::to_string(kind_) + ": the store has id " +
                            std::to_string(ids[row]) + " twice",
                        kTag);
    table.Prepare(key, static_cast<std::uint32_t>(row));
    table.Insert(key, static_cast<std::uint32_t>(row));
  }
  positive_ = std::move(positive);
  negative_ = std::move(negative);
  ids_      = std::move(ids);
  isLoaded_ = true;
}

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
  const IdMap&      map   = GetMap(kind);
  const std::size_t count = map.GetCount();
  if (index >= 1 && index <= count) return map.GetId(index);
  if (kind == OnfKind::UnknownEntity && index <= KeyTable::kMaxKey) return static_cast<int>(index);
  const std::string present = count == 0 ? "there are none" : "indices are 1 to " + std::to_string(count);
  throw FED_Failure("id map of entity kind " + std::to_string(kind) + ": no id has the index " + std::to_string(index) +
                        ", " + present,
                    kTag);
}

std::size_t FED_ResultIdMapsPool::GetCount(int kind) const { return GetMap(kind).GetCount(); }

void FED_ResultIdMapsPool::Attach(const ChunkStore& store)
{
  std::array<std::unique_ptr<IdMap>, kNumKinds> maps;
  for (std::size_t kind = 0; kind < maps.size(); ++kind)
    maps[kind] = std::make_unique<IdMap>(store, static_cast<int>(kind));
  maps_ = std::move(maps);
}

FED_ResultIdMapsPool::Growth FED_ResultIdMapsPool::GetGrowth(int kind) const { return GetMap(kind).GetGrowth(); }

void FED_ResultIdMapsPool::MarkStored() noexcept
{
  for (const auto& map : maps_) map->MarkStored();
}

FED_ResultIdMapsPool::IdMap& FED_ResultIdMapsPool::GetMap(int kind) const
{
  if (kind >= 0 && kind < kNumKinds) return *maps_[static_cast<std::size_t>(kind)];
  throw FED_Failure("id map of entity kind " + std::to_string(kind) + ": only the kinds 0 to 14 have one", kTag);
}
