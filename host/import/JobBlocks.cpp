#include "import/JobBlocks.h"

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>

#include "FEM_ResultUtil.h"

namespace quilon {

FED_DataDescriptor JobBlocks::MakeDescriptor(const StepKey& key, int onf, int group) const
{
  FED_DataDescriptor descriptor(iteration_, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, key.loadCase);
  descriptor.SetInteger(FED_DataDescriptor::Substep, key.substep);
  descriptor.SetInteger(FED_DataDescriptor::Analysis, key.analysis);
  if (group != 0) descriptor.SetInteger(OnfIndex::Group, group);
  return descriptor;
}

FED_DataDescriptor JobBlocks::Descriptor(const StepKey& key, int onf, int group)
{
  const FED_DataDescriptor descriptor = MakeDescriptor(key, onf, group);
  if (written_[key].insert({onf, group}).second && database_.HasDataBlock(descriptor)) {
    ++numOverwritten_;
    DropDerived(key, onf, group);
  }
  return descriptor;
}

/// The derivation keeps blocks that exist, so those of tensors that change have to go.
void JobBlocks::DropDerived(const StepKey& key, int onf, int group)
{
  const int principal = OnfKind::PrincipalOf(onf);
  if (principal == 0) return;
  const FED_DataDescriptor descriptor = MakeDescriptor(key, principal, group);
  if (database_.HasDataBlock(descriptor)) database_.DeleteDataBlock(descriptor);
}

FED_DataBlock& JobBlocks::Block(const StepKey& key, int onf, std::size_t expectedRecords, int group)
{
  return database_.GetOrCreateDataBlock(Descriptor(key, onf, group), expectedRecords);
}

bool JobBlocks::HasWritten(const StepKey& key, int onf) const
{
  const auto names = written_.find(key);
  return names != written_.end() && names->second.contains({onf, 0});
}

void JobBlocks::SetScalar(const StepKey& key, int quantity, double value) { scalars_[key][quantity] = value; }

void JobBlocks::WriteScalars()
{
  for (const auto& [key, values] : scalars_) {
    if (!IsWithin(key)) continue;
    for (const auto& [quantity, value] : values) {
      FED_DataDescriptor descriptor = MakeDescriptor(key, FED_OnfId_ScalarHistory);
      descriptor.SetInteger(OnfIndex::Quantity, quantity);
      FEM_ResultUtil::SetResultScalar(database_, descriptor, value);
    }
  }
}

void JobBlocks::MarkAveraged(const StepKey& key, Quantity quantity) { averaged_.emplace(key, quantity); }

bool JobBlocks::IsAveraged(const StepKey& key, Quantity quantity) const { return averaged_.contains({key, quantity}); }

void JobBlocks::LimitTo(const StepKey& key)
{
  if (IsWithin(key)) limit_ = key;
}

std::size_t JobBlocks::DropBroken()
{
  std::size_t numWhole = 0;
  for (const auto& [key, names] : written_) {
    if (IsWithin(key)) {
      ++numWhole;
      continue;
    }
    for (const auto& [onf, group] : names) {
      const FED_DataDescriptor descriptor = MakeDescriptor(key, onf, group);
      if (database_.HasDataBlock(descriptor)) database_.DeleteDataBlock(descriptor);
    }
  }
  return numWhole;
}

}  // namespace quilon
