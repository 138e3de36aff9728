#include "diff/RecordMatching.h"

#include <algorithm>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/OnfKinds.h>
#include "progress/Interrupt.h"

#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"

namespace quilon::diff {

namespace {

// No index is as large as either.
constexpr std::uint32_t kUnpaired = 0xffffffffu;
constexpr std::uint32_t kUnasked  = kUnpaired - 1;

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

const IdMap* MeshMatch::Find(int entity) const noexcept
{
  if (entity == OnfKind::NodeEntity) return &nodes;
  return entity == OnfKind::ElementEntity && hasElements ? &elements : nullptr;
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
  const int entity = OnfKind::EntityOf(first.GetDescriptor());
  KnownIds  none;
  // Looked up once a block, not once a record.
  const bool byIndex = mode_ == ByIndex || entity >= OnfKind::HistoryEntity;
  KnownIds&  known   = byIndex ? none : known_[entity];

  RecordPairs result;
  if (const std::optional<PairRun> all = FindOneRun(first, second, byIndex, entity, known)) {
    result.runs.push_back(*all);
    return result;
  }
  for (auto index = first.Begin(); index != first.End(); ++index) {
    ThrowIfInterrupted();
    const std::size_t other = byIndex ? *index : FindInSecond(entity, *index, known.inSecond);
    if (other != *index && (other != FED_IdMapsPool::npos || second.HasRecord(*index))) result.sameIndices = false;
    if (other == FED_IdMapsPool::npos || !second.HasRecord(other))
      result.firstOnly.push_back(*index);
    else
      result.Add(*index, other);
  }
  result.secondOnly = FindUnpaired(result, second);
  return result;
}

/// @return the run of all records where both blocks have one at the same indices without a gap, and these stand for the
///         same ids; nothing for others, whose records are looked at one by one
std::optional<PairRun> RecordMatcher::FindOneRun(const FED_DataBlock& first, const FED_DataBlock& second, bool byIndex,
                                                 int entity, KnownIds& known) const
{
  const auto* const firstColumns  = dynamic_cast<const FED_ColumnDataBlock*>(&first);
  const auto* const secondColumns = dynamic_cast<const FED_ColumnDataBlock*>(&second);
  if (firstColumns == nullptr || secondColumns == nullptr) return std::nullopt;
  const std::size_t count = firstColumns->GetRecordCount();
  const std::size_t end   = first.GetMaxIndex() + 1;
  if (count == 0 || secondColumns->GetRecordCount() != count || second.GetMaxIndex() + 1 != end) return std::nullopt;
  const std::size_t begin = end - count;
  if (*first.Begin() != begin || *second.Begin() != begin) return std::nullopt;
  const PairRun all = {begin, begin, count};
  if (byIndex) return all;
  if (known.sameBegin == known.sameEnd) known.sameBegin = known.sameEnd = begin;
  if (begin < known.sameBegin || begin > known.sameEnd) return std::nullopt;
  while (known.sameEnd < end && LookUp(entity, known.sameEnd) == known.sameEnd) ++known.sameEnd;
  return known.sameEnd >= end ? std::optional(all) : std::nullopt;
}

std::size_t RecordMatcher::FindInSecond(int entity, std::size_t index, std::vector<std::uint32_t>& known) const
{
  // Indices of ids are dense. One that is far behind all others would make the table up to it mostly holes.
  constexpr std::size_t kLargestGap = std::size_t{1} << 20;
  if (index >= 2 * known.size() + kLargestGap) return LookUp(entity, index);
  if (index >= known.size()) {
    // Exactly as much room: a vector would double what it is asked for.
    known.reserve(std::max(index + 1, known.size() + known.size() / 2));
    known.resize(known.capacity(), kUnasked);
  }
  if (known[index] == kUnasked) {
    const std::size_t found = LookUp(entity, index);
    known[index]            = found == FED_IdMapsPool::npos ? kUnpaired : static_cast<std::uint32_t>(found);
  }
  return known[index] == kUnpaired ? FED_IdMapsPool::npos : known[index];
}

std::size_t RecordMatcher::LookUp(int entity, std::size_t index) const
{
  int                id  = first_.GetId(entity, index);
  const IdMap* const map = mesh_ != nullptr ? mesh_->Find(entity) : nullptr;
  if (map != nullptr) {
    const auto found = map->find(id);
    if (found == map->end()) return FED_IdMapsPool::npos;
    id = found->second;
  }
  const std::size_t other = second_.FindIndex(entity, id);
  if (other != FED_IdMapsPool::npos || entity != OnfKind::UnknownEntity || id < 0) return other;
  // An index that no id maps to reads as itself; one that some id maps to stands for that id.
  const auto asIndex = static_cast<std::size_t>(id);
  return second_.GetId(entity, asIndex) == id ? asIndex : FED_IdMapsPool::npos;
}

}  // namespace quilon::diff
