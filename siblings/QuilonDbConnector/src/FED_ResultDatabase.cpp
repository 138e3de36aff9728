#include "bundled/FED_ResultDatabase.h"

#include <utility>

#include "QuilonOnfSpecification/FED_OnfInfoPool.h"
#include "QuilonUtilities/FED_Failure.h"

#include "bundled/FED_RecordFormat.h"
#include "DbFailure.h"
#include "ResultDataBlock.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_ResultDatabase";

constexpr int kFirstUserKind = 1000;
constexpr int kLastUserKind  = 1999;

}  // namespace

FED_ResultDatabase::FED_ResultDatabase()  = default;
FED_ResultDatabase::~FED_ResultDatabase() = default;

bool FED_ResultDatabase::IsInitialized() const { return true; }

FED_DataBlock* FED_ResultDatabase::CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize,
                                                   std::size_t, const std::string&                   recordFormat)
{
  const FED_RecordFormat format = FED_RecordFormat::Parse(recordFormat);
  ResultDataBlock*       block  = FindBlock(descriptor);
  if (block == nullptr) return &MakeBlock(descriptor, format, firstSize);
  const FED_RecordFormat& present = block->GetRecordFormat();
  if (!format.IsEmpty() && !present.IsEmpty() && !(present == format))
    ThrowBlockFailure(
        descriptor, "the record format is \"" + present.ToString() + "\", \"" + format.ToString() + "\" was asked for",
        kTag);
  block->Expect(firstSize);
  if (present.IsEmpty()) block->SetRecordFormat(format);
  return block;
}

FED_DataBlock& FED_ResultDatabase::GetOrCreateDataBlock(const FED_DataDescriptor& descriptor,
                                                        std::size_t               expectedRecords)
{
  if (ResultDataBlock* block = FindBlock(descriptor)) {
    block->Expect(expectedRecords);
    return *block;
  }
  const auto onf = static_cast<FED_OnfId>(descriptor.values[FED_DataDescriptor::OnfId]);
  return MakeBlock(descriptor, FED_RecordFormat::Parse(FED_OnfInfoPool::GetOnfInfo(onf).GetRecordFormat()),
                   expectedRecords);
}

bool FED_ResultDatabase::HasDataBlock(const FED_DataDescriptor& descriptor) const
{
  return FindBlock(descriptor) != nullptr;
}

const FED_DataBlock& FED_ResultDatabase::GetConstDataBlock(const FED_DataDescriptor& descriptor) const
{
  return RequireBlock(descriptor);
}

FED_DataBlock& FED_ResultDatabase::GetDataBlock(const FED_DataDescriptor& descriptor)
{
  return RequireBlock(descriptor);
}

std::vector<FED_DataBlock*> FED_ResultDatabase::GetDataBlocks(const FED_DataDescriptorPattern& pattern)
{
  std::vector<FED_DataBlock*> blocks;
  for (const auto& [descriptor, block] : blocks_)
    if (pattern.Matches(descriptor)) blocks.push_back(block.get());
  return blocks;
}

void FED_ResultDatabase::DeleteDataBlock(const FED_DataDescriptor& descriptor)
{
  RequireBlock(descriptor);
  blocks_.erase(descriptor);
}

std::vector<FED_DataDescriptor> FED_ResultDatabase::GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const
{
  std::vector<FED_DataDescriptor> descriptors;
  for (const auto& [descriptor, block] : blocks_)
    if (pattern.Matches(descriptor)) descriptors.push_back(descriptor);
  return descriptors;
}

FED_ResultIdMapsPool& FED_ResultDatabase::GetIdMapsPool() { return idMaps_; }

const FED_ResultIdMapsPool& FED_ResultDatabase::GetIdMapsPool() const { return idMaps_; }

std::string FED_ResultDatabase::GetUserKindName(FED_OnfId onf) const
{
  const auto found = userKindNames_.find(onf);
  return found == userKindNames_.end() ? std::string() : found->second;
}

void FED_ResultDatabase::SetUserKindName(FED_OnfId onf, const std::string& name)
{
  if (onf < kFirstUserKind || onf > kLastUserKind)
    throw FED_Failure("FED_ResultDatabase: ONF id " + std::to_string(static_cast<int>(onf)) +
                          " takes no name, expected a user kind, 1000 to 1999",
                      kTag);
  if (name.empty())
    userKindNames_.erase(onf);
  else
    userKindNames_[onf] = name;
}

ResultDataBlock* FED_ResultDatabase::FindBlock(const FED_DataDescriptor& descriptor) const
{
  const auto found = blocks_.find(descriptor);
  return found == blocks_.end() ? nullptr : found->second.get();
}

ResultDataBlock& FED_ResultDatabase::RequireBlock(const FED_DataDescriptor& descriptor) const
{
  ResultDataBlock* block = FindBlock(descriptor);
  if (block == nullptr) ThrowBlockFailure(descriptor, "the database has no such block", kTag);
  return *block;
}

ResultDataBlock& FED_ResultDatabase::MakeBlock(const FED_DataDescriptor& descriptor, const FED_RecordFormat& format,
                                               std::size_t expectedRecords)
{
  FED_DataDescriptor key = descriptor;
  key.cached[0]          = -1;
  key.cached[1]          = -1;
  auto block             = std::make_unique<ResultDataBlock>(key, format);
  block->Expect(expectedRecords);
  return *blocks_.emplace(key, std::move(block)).first->second;
}
