#include "database/Listing.h"

#include <algorithm>
#include <map>
#include <utility>

#include <bundled/OnfKinds.h>

#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"

namespace quilon {

namespace {

using Totals = std::map<std::string, BlockTotal>;

void Add(std::size_t bytes, BlockTotal& total)
{
  ++total.blocks;
  total.bytes += bytes;
}

template <typename Sized, typename BytesOf>
void SortLargestFirst(std::vector<Sized>& list, BytesOf bytesOf)
{
  std::stable_sort(list.begin(), list.end(), [&](const Sized& a, const Sized& b) { return bytesOf(a) > bytesOf(b); });
}

std::vector<BlockTotal> Sorted(const Totals& totals)
{
  std::vector<BlockTotal> sorted;
  for (const auto& [name, total] : totals) sorted.push_back({name, total.blocks, total.bytes});
  SortLargestFirst(sorted, [](const BlockTotal& total) { return total.bytes; });
  return sorted;
}

}  // namespace

std::vector<ListedBlock> ListBlocks(const FED_Database& database, const Selection& selection, const KindTable& kinds,
                                    const std::function<void(std::size_t done, std::size_t total)>& progress)
{
  const std::vector<FED_DataDescriptor> descriptors =
      selection.Apply(database.GetDataDescriptors(FED_DataDescriptorPattern()));
  std::vector<ListedBlock> blocks;
  for (const FED_DataDescriptor& descriptor : descriptors) {
    ThrowIfInterrupted();
    if (progress) progress(blocks.size(), descriptors.size());
    blocks.push_back({descriptor, kinds.GetName(descriptor), Summarize(database.GetConstDataBlock(descriptor))});
  }
  return blocks;
}

BlockSizes SumSizes(std::vector<ListedBlock> blocks)
{
  Totals     kinds;
  Totals     steps;
  BlockSizes sizes;
  for (const ListedBlock& block : blocks) {
    Add(block.summary.bytes, kinds[block.kind]);
    Add(block.summary.bytes, steps[StepText(block.descriptor)]);
    sizes.bytes += block.summary.bytes;
  }
  SortLargestFirst(blocks, [](const ListedBlock& block) { return block.summary.bytes; });
  sizes.blocks = std::move(blocks);
  sizes.kinds  = Sorted(kinds);
  sizes.steps  = Sorted(steps);
  return sizes;
}

std::string StepText(const FED_DataDescriptor& descriptor)
{
  std::string step;
  for (const IndexKey& key : GetIndexKeys()) {
    const bool isQuantity = key.index == OnfIndex::Quantity && GetQuantity(descriptor) != 0;
    if (!descriptor.IsSet(key.index) || key.index == FED_DataDescriptor::Layer || isQuantity) continue;
    step += (step.empty() ? "" : ",") + std::string(key.key) + '=' + std::to_string(descriptor.GetInteger(key.index));
  }
  return step.empty() ? "-" : step;
}

}  // namespace quilon
