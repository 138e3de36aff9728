#include "import/MeshComparison.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "database/ScratchRecord.h"

namespace quilon {

namespace {

/// An id and a fingerprint of what stands under it.
using Entry   = std::pair<int, std::uint64_t>;
using Entries = std::vector<Entry>;

/// @return a fingerprint of the ids in their order (FNV-1a)
std::uint64_t PrintOf(const FED_IntArray& ids)
{
  std::uint64_t print = 14695981039346656037U;
  for (std::size_t i = 0; i < ids.GetSize(); ++i)
    print = (print ^ static_cast<std::uint32_t>(ids.GetData()[i])) * 1099511628211U;
  return print;
}

/// @return ids, ascending, each with the fingerprint of its list where the block holds lists
Entries ReadEntries(const FED_Database& database, int iteration, FED_OnfId onf)
{
  Entries                  entries;
  const FED_DataDescriptor descriptor(iteration, onf);
  if (!database.HasDataBlock(descriptor)) return entries;
  const bool                 hasLists = onf == OnfKind::ElementNodes;
  const FED_DataBlock&       block    = database.GetConstDataBlock(descriptor);
  const FED_ConstIdDataBlock view(block, database.GetIdMapsPool());
  const ScratchRecord        record(block);
  FED_IntArray               list;
  for (FED_DataBlock::IndexIterator at = block.Begin(), end = block.End(); at != end; ++at) {
    if (hasLists) {
      block.GetRecord(*at, *record);
      record->GetIntList(1, list);
    }
    entries.emplace_back(view.GetId(*at), hasLists ? PrintOf(list) : 0);
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

void Compare(const Entries& first, const Entries& second, std::set<int>& ofFirst, std::set<int>& ofSecond,
             std::set<int>& different)
{
  auto a = first.begin();
  auto b = second.begin();
  while (a != first.end() || b != second.end()) {
    if (b == second.end() || (a != first.end() && a->first < b->first)) {
      ofFirst.insert(a++->first);
    } else if (a == first.end() || b->first < a->first) {
      ofSecond.insert(b++->first);
    } else {
      if (a->second != b->second) different.insert(a->first);
      ++a;
      ++b;
    }
  }
}

}  // namespace

MeshComparison CompareMeshes(const FED_Database& first, const FED_Database& second, int iteration)
{
  MeshComparison comparison;
  {
    const Entries nodesOfFirst  = ReadEntries(first, iteration, OnfKind::Coordinates);
    const Entries nodesOfSecond = ReadEntries(second, iteration, OnfKind::Coordinates);
    comparison.hasFirst         = !nodesOfFirst.empty();
    comparison.hasSecond        = !nodesOfSecond.empty();
    std::set<int> none;
    Compare(nodesOfFirst, nodesOfSecond, comparison.nodesOfFirst, comparison.nodesOfSecond, none);
  }
  Compare(ReadEntries(first, iteration, OnfKind::ElementNodes), ReadEntries(second, iteration, OnfKind::ElementNodes),
          comparison.elementsOfFirst, comparison.elementsOfSecond, comparison.elementsOfOtherNodes);
  return comparison;
}

}  // namespace quilon
