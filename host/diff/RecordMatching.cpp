#include "diff/RecordMatching.h"

#include <algorithm>

#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"
#include "terminal/Interrupt.h"

namespace quilon::diff {

namespace {

constexpr int kNodeKind           = 0;
constexpr int kElementKind        = 1;
constexpr int kUnknownKind        = 14;  // an index that no id maps to reads as itself
constexpr int kFirstKindWithoutId = 15;

constexpr std::size_t kUnasked = FED_IdMapsPool::npos - 1;

}  // namespace

const IdMap* MeshMatch::Find(int entityKind) const noexcept
{
  if (entityKind == kNodeKind) return &nodes;
  return entityKind == kElementKind && hasElements ? &elements : nullptr;
}

int GetEntityKind(const FED_DataBlock& block)
{
  const auto onf = static_cast<FED_OnfId>(block.GetDescriptor().GetInteger(FED_DataDescriptor::OnfId));
  return FED_OnfInfoPool::GetOnfInfo(onf).GetEntityKind();
}

int GetRecordId(const FED_DataBlock& block, const FED_IdMapsPool& pool, std::size_t index)
{
  return FED_ConstIdDataBlock(block, pool).GetId(index);
}

RecordMatcher::RecordMatcher(Mode mode, const FED_IdMapsPool& first, const FED_IdMapsPool& second,
                             const MeshMatch* mesh)
    : mode_(mode), first_(first), second_(second), mesh_(mesh)
{}

RecordPairs RecordMatcher::Pair(const FED_DataBlock& first, const FED_DataBlock& second)
{
  const int                entityKind = GetEntityKind(first);
  RecordPairs              result;
  std::vector<std::size_t> taken;  // of the second block
  for (auto index = first.Begin(); index != first.End(); ++index) {
    ThrowIfInterrupted();
    const std::size_t other = FindInSecond(entityKind, *index);
    if (other != *index && (other != FED_IdMapsPool::npos || second.HasRecord(*index))) result.sameIndices = false;
    if (other == FED_IdMapsPool::npos || !second.HasRecord(other)) {
      result.firstOnly.push_back(*index);
    } else {
      result.pairs.push_back({*index, other});
      taken.push_back(other);
    }
  }
  if (!result.sameIndices) std::sort(taken.begin(), taken.end());
  auto next = taken.begin();
  for (auto index = second.Begin(); index != second.End(); ++index) {
    next = std::find_if(next, taken.end(), [&](std::size_t other) { return other >= *index; });
    if (next == taken.end() || *next != *index) result.secondOnly.push_back(*index);
  }
  return result;
}

std::size_t RecordMatcher::FindInSecond(int entityKind, std::size_t index)
{
  if (mode_ == ByIndex || entityKind >= kFirstKindWithoutId) return index;
  // Beyond this an index is so far out that a table up to it would be mostly holes.
  constexpr std::size_t kMostKept = std::size_t{1} << 26;
  if (index >= kMostKept) return LookUp(entityKind, index);
  std::vector<std::size_t>& known = known_[entityKind];
  if (index >= known.size()) known.resize(std::max(index + 1, std::min(2 * known.size(), kMostKept)), kUnasked);
  if (known[index] == kUnasked) known[index] = LookUp(entityKind, index);
  return known[index];
}

std::size_t RecordMatcher::LookUp(int entityKind, std::size_t index) const
{
  int                id  = first_.GetId(entityKind, index);
  const IdMap* const map = mesh_ != nullptr ? mesh_->Find(entityKind) : nullptr;
  if (map != nullptr) {
    const auto found = map->find(id);
    if (found == map->end()) return FED_IdMapsPool::npos;
    id = found->second;
  }
  const std::size_t other = second_.FindIndex(entityKind, id);
  if (other != FED_IdMapsPool::npos || entityKind != kUnknownKind || id < 0) return other;
  return static_cast<std::size_t>(id);
}

}  // namespace quilon::diff
