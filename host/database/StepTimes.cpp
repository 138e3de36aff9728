#include "database/StepTimes.h"

#include <cmath>
#include <cstddef>
#include <set>

#include <bundled/OnfKinds.h>

#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"

namespace quilon {

namespace {

using Descriptor = FED_DataDescriptor;

/// What tells when a step is, first to last choice.
constexpr int kQuantities[] = {OnfKind::Time, OnfKind::Frequency, OnfKind::BucklingFactor};

/// @return what the result step of a block and its history have in common, with the substep
Descriptor KeyOf(const Descriptor& block, int substep)
{
  Descriptor key;
  for (const auto index : {Descriptor::Iteration, Descriptor::Analysis, Descriptor::LoadCase})
    if (block.IsSet(index)) key.SetInteger(index, block.GetInteger(index));
  key.SetInteger(Descriptor::Substep, substep);
  return key;
}

}  // namespace

StepTimes::StepTimes(const FED_Database& database)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(Descriptor::OnfId, FED_OnfId_ScalarHistory);
  const std::vector<Descriptor> histories = database.GetDataDescriptors(pattern);
  for (const int quantity : kQuantities) {
    for (const Descriptor& history : histories) {
      if (GetQuantity(history) != quantity) continue;
      const FED_DataBlock& block = database.GetConstDataBlock(history);
      for (FED_DataBlock::IndexIterator it = block.Begin(), end = block.End(); it != end; ++it) {
        const double value = block.GetScalarAt(*it);
        if (std::isfinite(value)) moments_.try_emplace(KeyOf(history, static_cast<int>(*it)), Moment{quantity, value});
      }
    }
  }
}

const StepTimes::Moment* StepTimes::Find(const FED_DataDescriptor& block) const
{
  if (!HasResultStep(block) || !block.IsSet(Descriptor::Substep)) return nullptr;
  const auto found = moments_.find(KeyOf(block, block.GetInteger(Descriptor::Substep)));
  return found == moments_.end() ? nullptr : &found->second;
}

std::optional<double> StepTimes::TimeOf(const FED_DataDescriptor& block) const
{
  const Moment* moment = Find(block);
  return moment ? std::optional<double>(moment->value) : std::nullopt;
}

std::optional<double> StepTimes::TimeAt(const FED_DataDescriptor& history, int position) const
{
  const auto found = moments_.find(KeyOf(history, position));
  return found == moments_.end() ? std::nullopt : std::optional<double>(found->second.value);
}

int StepTimes::QuantityOf(const FED_DataDescriptor& block) const
{
  const Moment* moment = Find(block);
  return moment ? moment->quantity : 0;
}

int StepTimes::QuantityAt(const FED_DataDescriptor& history, int position) const
{
  const auto found = moments_.find(KeyOf(history, position));
  return found == moments_.end() ? 0 : found->second.quantity;
}

std::optional<std::string> NameOfTimes(const StepTimes& times, const std::vector<FED_DataDescriptor>& blocks,
                                       const KindTable& kinds)
{
  std::set<int> quantities;
  for (const FED_DataDescriptor& block : blocks)
    if (const int quantity = times.QuantityOf(block); quantity != 0) quantities.insert(quantity);
  if (quantities.empty()) return std::nullopt;
  return kinds.GetName(quantities.size() == 1 ? *quantities.begin() : int{OnfKind::Time});
}

}  // namespace quilon
