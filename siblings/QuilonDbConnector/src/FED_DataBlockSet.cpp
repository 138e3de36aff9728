#include "QuilonDbConnector/FED_DataBlockSet.h"

#include "QuilonDbConnector/FED_Database.h"

FED_DataBlockSet::FED_DataBlockSet(FED_Database& database) noexcept : database_(&database) {}

FED_DataBlock* FED_DataBlockSet::GetDataBlockInstance(const FED_DataDescriptor& descriptor) const
{
  return database_->HasDataBlock(descriptor) ? &database_->GetDataBlock(descriptor) : nullptr;
}
