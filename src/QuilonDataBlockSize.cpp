#include "QuilonDataBlockSize.h"

#include <algorithm>

#include "QuilonDbConnector/FED_Database.h"
#include "scratch_record.h"

namespace {

constexpr std::size_t kLengthSize = 4;  // strings and lists count their length beside their content

std::size_t FieldSizeOf(const FED_ConstDataRecord& record, std::size_t field)
{
  switch (record.GetFieldType(field)) {
    case 1:
    case 3:
    case 10:
      return 4;
    case 2:
    case 11:
      return 8;
    case 4:
      return record.GetString(field).size() + kLengthSize;
    case 5:
      return 24;
    case 6:
      return 48;
    case 7:
    case 8:
      return 4 * record.GetIntListLen(field) + kLengthSize;
    case 9:
      return 8 * record.GetDoubleListLen(field) + kLengthSize;
    default:
      return 0;
  }
}

}  // namespace

std::size_t QuilonDataBlockSize::DataRecordSizeOf(const FED_ConstDataRecord& record)
{
  const std::size_t fieldCount = record.GetFieldCount();
  std::size_t       size       = 0;
  for (std::size_t field = 1; field <= fieldCount; ++field) size += FieldSizeOf(record, field);
  return size;
}

std::size_t QuilonDataBlockSize::DataBlockSizeOf(const FED_DataBlock& block)
{
  const std::size_t   maxIndex = block.GetMaxIndex();
  const ScratchRecord scratch(block);
  std::size_t         size = 0;
  for (std::size_t index = 0; index <= maxIndex; ++index) {
    if (!block.HasRecord(index)) continue;
    block.GetRecord(index, *scratch);
    size += DataRecordSizeOf(*scratch);
  }
  return size;
}

std::size_t QuilonDataBlockSize::DataBaseSizeOf(const FED_Database& db)
{
  std::size_t size = 0;
  for (const FED_DataDescriptor& descriptor : db.GetDataDescriptors(FED_DataDescriptorPattern()))
    size += DataBlockSizeOf(db.GetConstDataBlock(descriptor));
  return size;
}

std::vector<std::pair<std::size_t, FED_DataDescriptor>> QuilonDataBlockSize::DataBlocksSortedSizeOf(
    const FED_Database& db)
{
  std::vector<std::pair<std::size_t, FED_DataDescriptor>> sizes;
  for (const FED_DataDescriptor& descriptor : db.GetDataDescriptors(FED_DataDescriptorPattern()))
    sizes.emplace_back(DataBlockSizeOf(db.GetConstDataBlock(descriptor)), descriptor);
  std::sort(sizes.begin(), sizes.end());
  return sizes;
}
