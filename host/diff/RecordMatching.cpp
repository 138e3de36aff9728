#include "diff/RecordMatching.h"

#include <algorithm>

#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"

namespace quilon::diff {

namespace {

constexpr int kNodeKind           = 0;
constexpr int kElementKind        = 1;
constexpr int kUnknownKind        = 14;  // an index that no id maps to reads as itself
constexpr int kFirstKindWithoutId = 15;

constexpr std::size_t kUnasked = FED_IdMapsPool::npos - 1;

int GetEntityKind(const FED_DataBlock& block)
{
  const auto onf = static_cast<FED_OnfId>(block.GetDescriptor().GetInteger(FED_DataDescriptor::OnfId));
  return FED_OnfInfoPool::GetOnfInfo(onf).GetEntityKind();
}

/// @return the indices of the second block that no pair has, ascending
std::vector<std::size_t> FindUnpaired(const RecordPairs& pairs, const FED_DataBlock& second)
{
  std::vector<PairRun> runs = pairs.runs;
  if (!pairs.sameIndices)
    std::sort(runs.begin(), runs.end(), [](const PairRun& a, const PairRun& b) { return a.second < b.second; });
  std::vector<std::size_t> unpaired;
  std::size_t              next    = 0;
  const auto               collect = [&](std::size_t end) {
    for (; next < end; ++next) {
      next = second.FindNextIndex(next, end - 1);
      if (next == FED_DataBlock::npos) return;
      unpaired.push_back(next);
    }
  };
  for (const PairRun& run : runs) {
    collect(run.second);
    next = run.second + run.count;
  }
  collect(second.GetMaxIndex() + 1);
  return unpaired;
}

}  // namespace

const IdMap* MeshMatch::Find(int entityKind) const noexcept
{
  if (entityKind == kNodeKind) return &nodes;
  return entityKind == kElementKind && hasElements ? &elements : nullptr;
}

void RecordPairs::Add(std::size_t first, std::size_t second)
{
  if (!runs.empty() && first == runs.back().first + runs.back().count &&
      second == runs.back().second + runs.back().count)
    ++runs.back().count;
  else
    runs.push_back({first, second, 1});
}

RecordMatcher::RecordMatcher(Mode mode, const FED_IdMapsPool& first, const FED_IdMapsPool& second,
                             const MeshMatch* mesh)
    : mode_(mode), first_(first), second_(second), mesh_(mesh)
{}

RecordPairs RecordMatcher::Pair(const FED_DataBlock& first, const FED_DataBlock& second)
{
  const int                entityKind = GetEntityKind(first);
  std::vector<std::size_t> none;
  // Looked up once a block, not once a record.
  const bool                byIndex = mode_ == ByIndex || entityKind >= kFirstKindWithoutId;
  std::vector<std::size_t>& known   = byIndex ? none : known_[entityKind];

  RecordPairs result;
  for (auto index = first.Begin(); index != first.End(); ++index) {
    ThrowIfInterrupted();
    const std::size_t other = byIndex ? *index : FindInSecond(entityKind, *index, known);
    if (other != *index && (other != FED_IdMapsPool::npos || second.HasRecord(*index))) result.sameIndices = false;
    if (other == FED_IdMapsPool::npos || !second.HasRecord(other))
      result.firstOnly.push_back(*index);
    else
      result.Add(*index, other);
  }
  result.secondOnly = FindUnpaired(result, second);
  return result;
}

std::size_t RecordMatcher::FindInSecond(int entityKind, std::size_t index, std::vector<std::size_t>& known) const
{
  // Indices of ids are dense. One that is far behind all others would make the table up to it mostly holes.
  constexpr std::size_t kLargestGap = std::size_t{1} << 20;
  if (index >= 2 * known.size() + kLargestGap) return LookUp(entityKind, index);
  if (index >= known.size()) known.resize(std::max(index + 1, 2 * known.size()), kUnasked);
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
  // An index that no id maps to reads as itself; one that some id maps to stands for that id.
  const auto asIndex = static_cast<std::size_t>(id);
  return second_.GetId(entityKind, asIndex) == id ? asIndex : FED_IdMapsPool::npos;
}

}  // namespace quilon::diff
