#include "database/FreshDatabase.h"

#include <algorithm>

#include "text/Failure.h"

namespace quilon {

FreshDatabase::FreshDatabase(FED_Database& database) : database_(database)
{
  const auto descriptors = database.GetDataDescriptors(FED_DataDescriptorPattern());
  former_.insert(descriptors.begin(), descriptors.end());
}

FreshDatabase::~FreshDatabase() = default;

bool FreshDatabase::IsInitialized() const { return database_.IsInitialized(); }

FED_DataBlock* FreshDatabase::CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize,
                                              std::size_t secondSize, const std::string& recordFormat)
{
  Uncover(descriptor);
  return database_.CreateDataBlock(descriptor, firstSize, secondSize, recordFormat);
}

FED_DataBlock& FreshDatabase::GetOrCreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t expectedRecords)
{
  Uncover(descriptor);
  return database_.GetOrCreateDataBlock(descriptor, expectedRecords);
}

bool FreshDatabase::HasDataBlock(const FED_DataDescriptor& descriptor) const
{
  return !former_.contains(descriptor) && database_.HasDataBlock(descriptor);
}

const FED_DataBlock& FreshDatabase::GetConstDataBlock(const FED_DataDescriptor& descriptor) const
{
  RequireSeen(descriptor);
  return database_.GetConstDataBlock(descriptor);
}

FED_DataBlock& FreshDatabase::GetDataBlock(const FED_DataDescriptor& descriptor)
{
  RequireSeen(descriptor);
  return database_.GetDataBlock(descriptor);
}

std::vector<FED_DataBlock*> FreshDatabase::GetDataBlocks(const FED_DataDescriptorPattern& pattern)
{
  std::vector<FED_DataBlock*> blocks;
  for (const FED_DataDescriptor& descriptor : GetDataDescriptors(pattern))
    blocks.push_back(&database_.GetDataBlock(descriptor));
  return blocks;
}

void FreshDatabase::DeleteDataBlock(const FED_DataDescriptor& descriptor)
{
  RequireSeen(descriptor);
  database_.DeleteDataBlock(descriptor);
}

std::vector<FED_DataDescriptor> FreshDatabase::GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const
{
  std::vector<FED_DataDescriptor> descriptors = database_.GetDataDescriptors(pattern);
  std::erase_if(descriptors, [this](const FED_DataDescriptor& descriptor) { return former_.contains(descriptor); });
  return descriptors;
}

FED_IdMapsPool& FreshDatabase::GetIdMapsPool() { return database_.GetIdMapsPool(); }

const FED_IdMapsPool& FreshDatabase::GetIdMapsPool() const
{
  return static_cast<const FED_Database&>(database_).GetIdMapsPool();
}

std::string FreshDatabase::GetUserKindName(FED_OnfId onf) const { return database_.GetUserKindName(onf); }

void FreshDatabase::SetUserKindName(FED_OnfId onf, const std::string& name) { database_.SetUserKindName(onf, name); }

void FreshDatabase::Uncover(const FED_DataDescriptor& descriptor)
{
  if (!former_.contains(descriptor)) return;
  database_.DeleteDataBlock(descriptor);
  former_.erase(descriptor);
  ++replaced_;
}

void FreshDatabase::RequireSeen(const FED_DataDescriptor& descriptor) const
{
  if (former_.contains(descriptor)) Fail("a block was asked for before it was written");
}

}  // namespace quilon
