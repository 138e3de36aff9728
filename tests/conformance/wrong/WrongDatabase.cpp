#include "WrongDatabase.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonUtilities/FED_Failure.h>

namespace conformance {

namespace {

/// A key with nothing left under its clear bits.
FED_DataDescriptor Masked(const FED_DataDescriptor& descriptor)
{
  FED_DataDescriptor key = descriptor;
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index)
    if ((key.mask >> index & 1U) == 0) key.values[index] = 0;
  return key;
}

bool SameValues(const FED_DataDescriptor& a, const FED_DataDescriptor& b)
{
  return std::equal(std::begin(a.values), std::end(a.values), std::begin(b.values));
}

/// The doubles of one record of the block; 0 when its format is not made of doubles.
std::size_t CountDoubles(const FED_DataBlock& block)
{
  FED_ConstDataRecord* const record = block.CreateConstDataRecord();
  std::size_t                count  = 0;
  for (std::size_t field = 1; field <= record->GetFieldCount(); ++field) {
    const int type = record->GetFieldType(field);
    count += type == 2 || type == 11 ? 1U : type == 5 ? 3U : type == 6 ? 6U : 0U;
  }
  block.DeleteDataRecord(record);
  return count;
}

}  // namespace

/// Hands the inner block's scratch records out as they are.
class WrongDatabase::Block : public FED_DataBlock
{
public:
  Block(FED_DataBlock& inner, Mistake mistake) : FED_DataBlock(inner.GetDescriptor()), inner_(&inner), mistake_(mistake)
  {}

  const FED_DataBlock* GetInner() const { return inner_; }
  void                 Forget() { inner_ = nullptr; }

  bool HasRecord(std::size_t index) const override
  {
    if (mistake_ == Mistake::HasEveryRecord) return true;
    if (mistake_ == Mistake::VisitsEmptyIndices && inner_->Begin() != inner_->End())
      return index <= inner_->GetMaxIndex();
    return inner_->HasRecord(index);
  }

  void SetRecord(std::size_t index, const FED_DataRecord& record) override
  {
    if (mistake_ == Mistake::AppendsARecordInsteadOfReplacing && inner_->HasRecord(index))
      index = inner_->GetMaxIndex() + 1;
    if (mistake_ == Mistake::TakesAnAbsurdIndex) index &= 0xFFFFFF;
    inner_->SetRecord(index, record);
    if (mistake_ == Mistake::KeepsTheScratchRecordItself) kept_.emplace_back(index, &record);
  }

  void GetRecord(std::size_t index, FED_ConstDataRecord& record) const override
  {
    // What was kept shows what the scratch record holds by now.
    for (const auto& [keptIndex, kept] : kept_)
      if (keptIndex == index && kept != &record) inner_->SetRecord(keptIndex, *kept);
    if (mistake_ == Mistake::ReadsMissingRecordsAsTheyWere && !inner_->HasRecord(index)) return;
    inner_->GetRecord(index, record);
    if (mistake_ == Mistake::DropsTheLastListElement) ShortenLists(dynamic_cast<FED_DataRecord&>(record));
  }

  std::size_t GetSize() const override { return inner_->GetSize() + (mistake_ == Mistake::CountsOneTooMany ? 1 : 0); }

  std::size_t GetMaxIndex() const override
  {
    if (mistake_ != Mistake::TakesTheNumberOfRecordsForTheHighestIndex) return inner_->GetMaxIndex();
    std::size_t count = 0;
    for (auto it = inner_->Begin(); it != inner_->End(); ++it) ++count;
    return count;
  }

  void SetScalarAt(std::size_t index, double value) override
  {
    if (mistake_ == Mistake::RejectsIndexZero && index == 0)
      throw FED_Failure("index is 0, expected 1 or more", "|%P|Conformance|WrongDatabase");
    if (mistake_ == Mistake::KeepsTheFirstScalar && inner_->HasRecord(index)) return;
    if (mistake_ == Mistake::RoundsScalarsToFloat && std::abs(value) < 1e30) value = static_cast<float>(value);
    if (mistake_ == Mistake::TakesAnAbsurdIndex) index &= 0xFFFFFF;
    inner_->SetScalarAt(index, value);
  }

  double GetScalarAt(std::size_t index) const override
  {
    if (mistake_ == Mistake::ReadsMissingScalarsAsZero && !inner_->HasRecord(index)) return 0.0;
    return inner_->GetScalarAt(index);
  }

  void SetValuesAt(std::size_t index, const double* values) override { inner_->SetValuesAt(index, values); }

  void GetValuesAt(std::size_t index, double* out) const override
  {
    inner_->GetValuesAt(index, out);
    if (mistake_ == Mistake::DropsTheLastValue) out[CountDoubles(*inner_) - 1] = 0.0;
  }

  std::size_t FindNextIndex(std::size_t first, std::size_t last) const override
  {
    return FED_DataBlock::FindNextIndex(
        mistake_ == Mistake::PassesOverTheIndexAskedFor && first > 0 ? first + 1 : first, last);
  }

  FED_DataRecord* CreateDataRecord() override { return inner_->CreateDataRecord(); }

  // A writable record, so that a mistake of GetRecord() can write to it.
  FED_ConstDataRecord* CreateConstDataRecord() const override { return inner_->CreateDataRecord(); }

  void DeleteDataRecord(FED_ConstDataRecord* record) const override
  {
    kept_.erase(std::remove_if(kept_.begin(), kept_.end(), [&](const auto& kept) { return kept.second == record; }),
                kept_.end());
    inner_->DeleteDataRecord(record);
  }

private:
  static void ShortenLists(FED_DataRecord& record)
  {
    for (std::size_t field = 1; field <= record.GetFieldCount(); ++field) {
      if (record.GetFieldType(field) != 7) continue;
      FED_IntArray list;
      record.GetIntList(field, list);
      if (list.GetSize() != 0) list.Resize(list.GetSize() - 1);
      record.SetIntList(field, list);
    }
  }

  FED_DataBlock* inner_;
  Mistake        mistake_;
  // Records that were stored and not freed yet, with their indices.
  mutable std::vector<std::pair<std::size_t, const FED_DataRecord*>> kept_;
};

class WrongDatabase::Pool : public FED_IdMapsPool
{
public:
  Pool(FED_IdMapsPool& inner, Mistake mistake) : inner_(inner), mistake_(mistake) {}

  void ForgetIds() { forgotten_ = true; }

  std::size_t FindIndex(int kind, int id) const override
  {
    if (forgotten_) return npos;
    if (mistake_ == Mistake::AddsIdsThatAreLookedFor) return inner_.FindOrAddIndex(Kind(kind), id);
    const std::size_t index = inner_.FindIndex(Kind(kind), id);
    return index == npos ? npos : index - Base();
  }

  std::size_t FindOrAddIndex(int kind, int id) override
  {
    if (mistake_ == Mistake::RejectsNegativeIds && id < 0)
      throw FED_Failure("id is negative, expected 0 or more", "|%P|Conformance|WrongDatabase");
    return inner_.FindOrAddIndex(Kind(kind), id) - Base();
  }

  int GetId(int kind, std::size_t index) const override
  {
    if (mistake_ == Mistake::InventsIds) {
      try {
        return inner_.GetId(kind, index);
      } catch (const FED_Failure&) {
        return static_cast<int>(index);
      }
    }
    if (mistake_ == Mistake::KnowsNoIdsOfUnknownKinds && kind == 14)
      throw FED_Failure("no id has the index", "|%P|Conformance|WrongDatabase");
    return inner_.GetId(Kind(kind), index + Base());
  }

private:
  int         Kind(int kind) const { return mistake_ == Mistake::SharesIdsBetweenKinds ? 0 : kind; }
  std::size_t Base() const { return mistake_ == Mistake::CountsIndicesFromZero ? 1 : 0; }

  FED_IdMapsPool& inner_;
  Mistake         mistake_;
  bool            forgotten_ = false;
};

WrongDatabase::WrongDatabase(std::unique_ptr<FED_Database> inner, Mistake mistake)
    : inner_(std::move(inner)),
      mistake_(mistake),
      pool_(std::make_unique<Pool>(inner_->GetIdMapsPool(), mistake)),
      other_(std::make_unique<FED_ResultDatabase>())
{}

WrongDatabase::~WrongDatabase() = default;

bool WrongDatabase::IsInitialized() const { return mistake_ != Mistake::IsNeverInitialized && inner_->IsInitialized(); }

FED_DataBlock* WrongDatabase::CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize,
                                              std::size_t secondSize, const std::string& recordFormat)
{
  std::string format = recordFormat;
  if (mistake_ == Mistake::EmptiesABlockThatIsMadeAgain && inner_->HasDataBlock(descriptor))
    DeleteDataBlock(descriptor);
  if (mistake_ == Mistake::TakesAnyFormatForAnExistingBlock && inner_->HasDataBlock(descriptor))
    return &Wrap(inner_->GetDataBlock(descriptor));
  if (mistake_ == Mistake::ForgetsTheLettersOfPairs) {
    std::replace(format.begin(), format.end(), 'i', 'I');
    std::replace(format.begin(), format.end(), 'd', 'D');
    std::replace(format.begin(), format.end(), 'l', 'L');
  }
  if (mistake_ == Mistake::TakesAFormatThatDoesNotParse) {
    try {
      return &Wrap(*inner_->CreateDataBlock(descriptor, firstSize, secondSize, format));
    } catch (const FED_Failure&) {
      return &Wrap(inner_->GetOrCreateDataBlock(descriptor, 0));
    }
  }
  return &Wrap(*inner_->CreateDataBlock(descriptor, firstSize, secondSize, format));
}

FED_DataBlock& WrongDatabase::GetOrCreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t expectedRecords)
{
  if (mistake_ == Mistake::MakesAFreshBlockEachTime && inner_->HasDataBlock(descriptor)) {
    fresh_.push_back(std::make_unique<FED_ResultDatabase>());
    return Wrap(fresh_.back()->GetOrCreateDataBlock(descriptor, expectedRecords));
  }
  if (mistake_ == Mistake::ForgetsTheCatalogue && !inner_->HasDataBlock(descriptor))
    return Wrap(*inner_->CreateDataBlock(descriptor, 0, 0, ""));
  return Wrap(inner_->GetOrCreateDataBlock(descriptor, expectedRecords));
}

bool WrongDatabase::HasDataBlock(const FED_DataDescriptor& descriptor) const
{
  if (mistake_ != Mistake::HasBlocksByMaskedValues) return inner_->HasDataBlock(descriptor);
  const std::vector<FED_DataDescriptor> all = inner_->GetDataDescriptors({});
  return std::any_of(all.begin(), all.end(),
                     [&](const FED_DataDescriptor& key) { return Masked(key) == Masked(descriptor); });
}

const FED_DataBlock& WrongDatabase::GetConstDataBlock(const FED_DataDescriptor& descriptor) const
{
  return Wrap(Inner(descriptor));
}

FED_DataBlock& WrongDatabase::GetDataBlock(const FED_DataDescriptor& descriptor) { return Wrap(Inner(descriptor)); }

std::vector<FED_DataBlock*> WrongDatabase::GetDataBlocks(const FED_DataDescriptorPattern& pattern)
{
  std::vector<FED_DataBlock*> blocks;
  for (FED_DataBlock* block : inner_->GetDataBlocks({}))
    if (Matches(pattern, block->GetDescriptor())) blocks.push_back(&Wrap(*block));
  if (mistake_ == Mistake::MissesABlock && blocks.size() > 1) blocks.pop_back();
  return blocks;
}

void WrongDatabase::DeleteDataBlock(const FED_DataDescriptor& descriptor)
{
  if (mistake_ == Mistake::DeletesNothing && inner_->HasDataBlock(descriptor)) return;
  if (mistake_ == Mistake::DeletesWhatIsNotThere && !inner_->HasDataBlock(descriptor)) return;
  std::vector<FED_DataDescriptor> keys = {descriptor};
  if (mistake_ == Mistake::DeletesTheKeyWithAnotherMaskToo) {
    for (const FED_DataDescriptor& key : inner_->GetDataDescriptors({}))
      if (SameValues(key, descriptor) && key.mask != descriptor.mask) keys.push_back(key);
  }
  for (const FED_DataDescriptor& key : keys) {
    for (const auto& block : blocks_)
      if (inner_->HasDataBlock(key) && block->GetInner() == &inner_->GetDataBlock(key)) block->Forget();
    inner_->DeleteDataBlock(key);
    deleted_.push_back(key);
  }
}

std::vector<FED_DataDescriptor> WrongDatabase::GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const
{
  std::vector<FED_DataDescriptor> keys;
  for (const FED_DataDescriptor& key : inner_->GetDataDescriptors({}))
    if (Matches(pattern, key)) keys.push_back(key);
  if (mistake_ == Mistake::MissesADescriptor && keys.size() > 1) keys.pop_back();
  return keys;
}

FED_IdMapsPool& WrongDatabase::GetIdMapsPool() { return *pool_; }

const FED_IdMapsPool& WrongDatabase::GetIdMapsPool() const
{
  if (mistake_ == Mistake::ShowsOtherMapsWhenConst) return std::as_const(*other_).GetIdMapsPool();
  return *pool_;
}

std::string WrongDatabase::GetUserKindName(FED_OnfId onf) const { return inner_->GetUserKindName(onf); }

void WrongDatabase::SetUserKindName(FED_OnfId onf, const std::string& name)
{
  if (mistake_ != Mistake::ForgetsNames) inner_->SetUserKindName(onf, name);
}

void WrongDatabase::Reopen()
{
  if (mistake_ == Mistake::LosesIdsOnDisk) pool_->ForgetIds();
  for (const FED_DataDescriptor& key : inner_->GetDataDescriptors({})) {
    FED_DataBlock& block = inner_->GetDataBlock(key);
    const bool     empty = block.Begin() == block.End();
    const int      onf   = key.values[FED_DataDescriptor::OnfId];
    if (mistake_ == Mistake::LosesNamesOnDisk && onf >= 1000 && onf <= 1999)
      inner_->SetUserKindName(static_cast<FED_OnfId>(onf), "");
    if (mistake_ == Mistake::LosesEmptyBlocksOnDisk && empty) DeleteDataBlock(key);
    if (mistake_ == Mistake::LosesTheSignOfZeroOnDisk && !empty && CountDoubles(block) == 1) {
      for (auto it = block.Begin(); it != block.End(); ++it) block.SetScalarAt(*it, block.GetScalarAt(*it) + 0.0);
    }
    if (mistake_ == Mistake::LosesValuesUnderClearBitsOnDisk && !(Masked(key) == key)) {
      DeleteDataBlock(key);
      inner_->GetOrCreateDataBlock(Masked(key), 0);
    }
  }
  if (mistake_ == Mistake::KeepsDeletedBlocksOnDisk) {
    for (const FED_DataDescriptor& key : deleted_) inner_->GetOrCreateDataBlock(key, 0);
  }
}

WrongDatabase::Block& WrongDatabase::Wrap(FED_DataBlock& inner) const
{
  for (const auto& block : blocks_)
    if (block->GetInner() == &inner) return *block;
  blocks_.push_back(std::make_unique<Block>(inner, mistake_));
  return *blocks_.back();
}

FED_DataBlock& WrongDatabase::Inner(const FED_DataDescriptor& descriptor) const
{
  if (mistake_ == Mistake::MakesTheBlockThatIsAskedFor) return inner_->GetOrCreateDataBlock(descriptor, 0);
  return inner_->GetDataBlock(descriptor);
}

bool WrongDatabase::Matches(const FED_DataDescriptorPattern& pattern, const FED_DataDescriptor& descriptor) const
{
  return pattern.Matches(mistake_ == Mistake::MatchesByMaskedValues ? Masked(descriptor) : descriptor);
}

}  // namespace conformance
