#include "QuilonDbConnector/FED_IdDataBlock.h"

#include <string>
#include <utility>

#include <bundled/OnfKinds.h>

#include "bundled/FED_RecordFormat.h"
#include "DbFailure.h"
#include "ScratchGuard.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_IdDataBlock";

constexpr std::size_t kMaxId = 0x7fffffff;

// The doubles of a record of the block; `unknown` while it has no format.
std::size_t CountDoubles(const FED_DataBlock& block, std::size_t unknown)
{
  const ScratchGuard<FED_ConstDataRecord> record(block, block.CreateConstDataRecord());
  return record->GetFieldCount() == 0 ? unknown : FED_RecordFormat::FromRecord(*record).GetDoubleCount();
}

[[noreturn]] void ThrowWrongCount(const FED_DataBlock& block, std::size_t actual, std::size_t expected)
{
  ThrowBlockFailure(block.GetDescriptor(),
                    "doubles in a record: " + std::to_string(actual) + ", expected " + std::to_string(expected) +
                        (actual == 0 ? " (the record format is not made of doubles)" : ""),
                    kTag);
}

}  // namespace

FED_ConstIdDataBlock::FED_ConstIdDataBlock(const FED_DataBlock& block, const FED_IdMapsPool& pool)
    : block_(block), pool_(pool), entityKind_(OnfKind::EntityOf(block.GetDescriptor()))
{}

FED_ConstIdDataBlock::FED_ConstIdDataBlock(const FED_DataBlock& block, const FED_IdMapsPool& pool, bool)
    : FED_ConstIdDataBlock(block, pool)
{}

FED_ConstIdDataBlock::~FED_ConstIdDataBlock()
{
  for (const auto& record : scratch_) block_.DeleteDataRecord(record->record_);
}

bool FED_ConstIdDataBlock::HasRecord(int id) const
{
  const std::size_t index = FindIndex(id);
  return index != FED_IdMapsPool::npos && block_.HasRecord(index);
}

void FED_ConstIdDataBlock::GetRecord(int id, FED_ConstIdDataRecord& record) const
{
  block_.GetRecord(RequireIndex(id), *record.record_);
}

void FED_ConstIdDataBlock::GetScalar(int id, double& out) const { out = block_.GetScalarAt(RequireIndex(id)); }

void FED_ConstIdDataBlock::GetVector(int id, double* out) const
{
  const std::size_t index = RequireIndex(id);
  RequireDoubles(3);
  block_.GetValuesAt(index, out);
}

void FED_ConstIdDataBlock::GetTensor(int id, double* out) const
{
  const std::size_t index = RequireIndex(id);
  RequireDoubles(6);
  block_.GetValuesAt(index, out);
}

int FED_ConstIdDataBlock::GetId(std::size_t index) const
{
  if (entityKind_ < OnfKind::HistoryEntity) return pool_.GetId(entityKind_, index);
  if (index > kMaxId)
    ThrowBlockFailure(GetDescriptor(), "index is " + std::to_string(index) + ", expected 0 to 2147483647", kTag);
  return static_cast<int>(index);
}

const FED_DataDescriptor& FED_ConstIdDataBlock::GetDescriptor() const noexcept { return block_.GetDescriptor(); }

FED_ConstIdDataRecord& FED_ConstIdDataBlock::CreateConstIdDataRecord() const
{
  return Keep(std::unique_ptr<FED_ConstIdDataRecord>(new FED_ConstIdDataRecord(*block_.CreateConstDataRecord())));
}

void FED_ConstIdDataBlock::DeleteIdDataRecord(FED_ConstIdDataRecord& record) const
{
  // The latest record is the likeliest.
  for (std::size_t i = scratch_.size(); i-- > 0;) {
    if (scratch_[i].get() != &record) continue;
    block_.DeleteDataRecord(record.record_);
    scratch_.erase(scratch_.begin() + static_cast<std::ptrdiff_t>(i));
    return;
  }
  ThrowBlockFailure(GetDescriptor(), "the scratch record to free was not made by this id view", kTag);
}

std::size_t FED_ConstIdDataBlock::FindIndex(int id) const
{
  if (entityKind_ >= OnfKind::HistoryEntity) return id < 0 ? FED_IdMapsPool::npos : static_cast<std::size_t>(id);
  const std::size_t index = pool_.FindIndex(entityKind_, id);
  if (index != FED_IdMapsPool::npos || entityKind_ != OnfKind::UnknownEntity || id < 0) return index;
  // An index that no id maps to reads as itself, so that what GetId() says of a record finds it again.
  const auto itself = static_cast<std::size_t>(id);
  return pool_.GetId(entityKind_, itself) == id ? itself : FED_IdMapsPool::npos;
}

std::size_t FED_ConstIdDataBlock::RequireIndex(int id) const
{
  const std::size_t index = FindIndex(id);
  if (index == FED_IdMapsPool::npos || !block_.HasRecord(index))
    ThrowBlockFailure(GetDescriptor(), "no record for id " + std::to_string(id), kTag);
  return index;
}

void FED_ConstIdDataBlock::RequireDoubles(std::size_t count) const
{
  if (doubleCount_ == count) return;
  // A block without a format may get one later and is asked again.
  if (doubleCount_ == kUnknownCount) doubleCount_ = CountDoubles(block_, kUnknownCount);
  if (doubleCount_ != count && doubleCount_ != kUnknownCount) ThrowWrongCount(block_, doubleCount_, count);
}

FED_ConstIdDataRecord& FED_ConstIdDataBlock::Keep(std::unique_ptr<FED_ConstIdDataRecord> record) const
{
  scratch_.push_back(std::move(record));
  return *scratch_.back();
}

FED_IdDataBlock::FED_IdDataBlock(FED_DataBlock& block, FED_IdMapsPool& pool, bool flag)
    : FED_ConstIdDataBlock(block, pool, flag), writableBlock_(block), writablePool_(pool)
{}

FED_IdDataBlock::~FED_IdDataBlock() = default;

FED_IdDataRecord& FED_IdDataBlock::CreateIdDataRecord()
{
  return static_cast<FED_IdDataRecord&>(
      Keep(std::unique_ptr<FED_ConstIdDataRecord>(new FED_IdDataRecord(*writableBlock_.CreateDataRecord()))));
}

void FED_IdDataBlock::SetRecord(int id, const FED_IdDataRecord& record)
{
  writableBlock_.SetRecord(FindOrAddIndex(id), static_cast<const FED_DataRecord&>(record.GetDataRecord()));
}

void FED_IdDataBlock::SetScalar(int id, const double& value) { writableBlock_.SetScalarAt(FindOrAddIndex(id), value); }

void FED_IdDataBlock::SetVector(int id, const double* values)
{
  RequireDoubles(3);
  const std::size_t index = FindOrAddIndex(id);
  if (doubleCount_ != kUnknownCount) {
    writableBlock_.SetValuesAt(index, values);
    return;
  }
  // The first record of a block without a format: its one field says what the format is.
  const ScratchGuard<FED_DataRecord> record(writableBlock_, writableBlock_.CreateDataRecord());
  record->SetVector(1, values);
  writableBlock_.SetRecord(index, *record);
}

void FED_IdDataBlock::SetTensor(int id, const double* values)
{
  RequireDoubles(6);
  const std::size_t index = FindOrAddIndex(id);
  if (doubleCount_ != kUnknownCount) {
    writableBlock_.SetValuesAt(index, values);
    return;
  }
  const ScratchGuard<FED_DataRecord> record(writableBlock_, writableBlock_.CreateDataRecord());
  record->SetTensor(1, values);
  writableBlock_.SetRecord(index, *record);
}

std::size_t FED_IdDataBlock::FindOrAddIndex(int id)
{
  if (entityKind_ < OnfKind::HistoryEntity) return writablePool_.FindOrAddIndex(entityKind_, id);
  if (id < 0) ThrowBlockFailure(GetDescriptor(), "index is " + std::to_string(id) + ", expected 0 to 2147483647", kTag);
  return static_cast<std::size_t>(id);
}
