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
  const FED_RecordFormat  format  = FED_RecordFormat::Parse(recordFormat);
  ResultDataBlock&        block   = FindOrMakeBlock(descriptor, format);
  const FED_RecordFormat& present = block.GetRecordFormat();
  if (!format.IsEmpty() && present.IsEmpty())
    block.SetRecordFormat(format);
  else if (!format.IsEmpty() && !(present == format))
    ThrowBlockFailure(
        descriptor, "the record format is \"" + present.ToString() + "\", \"" + format.ToString() + "\" was asked for",
        kTag);
  block.Expect(firstSize);
  return &block;
}

FED_DataBlock& FED_ResultDatabase::GetOrCreateDataBlock(const FED_DataDescriptor& descriptor,
                                                        std::size_t               expectedRecords)
{
  const auto       found = blocks_.find(descriptor);
  const auto       onf   = static_cast<FED_OnfId>(descriptor.values[FED_DataDescriptor::OnfId]);
  ResultDataBlock& block =
      found != blocks_.end()
          ? *found->second
          : FindOrMakeBlock(descriptor, FED_RecordFormat::Parse(FED_OnfInfoPool::GetOnfInfo(onf).GetRecordFormat()));
  block.Expect(expectedRecords);
  return block;
}

bool FED_ResultDatabase::HasDataBlock(const FED_DataDescriptor& descriptor) const
{
  return blocks_.find(descriptor) != blocks_.end();
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

// The format is that of a block that has to be made.
ResultDataBlock& FED_ResultDatabase::FindOrMakeBlock(const FED_DataDescriptor& descriptor,
                                                     const FED_RecordFormat&   format)
{
  const auto found = blocks_.find(descriptor);
  if (found != blocks_.end()) return *found->second;
  FED_DataDescriptor key = descriptor;
  key.cached[0]          = -1;
  key.cached[1]          = -1;
  return *blocks_.emplace(key, std::make_unique<ResultDataBlock>(key, format)).first->second;
}

ResultDataBlock& FED_ResultDatabase::RequireBlock(const FED_DataDescriptor& descriptor) const
{
  const auto found = blocks_.find(descriptor);
  if (found == blocks_.end()) ThrowBlockFailure(descriptor, "the database has no such block", kTag);
  return *found->second;
}
