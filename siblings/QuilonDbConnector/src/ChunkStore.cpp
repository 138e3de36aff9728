#include "ChunkStore.h"

std::vector<StoredColumn> GetStoredColumns(const FED_RecordFormat& format)
{
  std::vector<StoredColumn> columns;
  std::uint32_t             field   = 0;
  const auto                addList = [&](StoredColumn::Element element) {
    columns.push_back({StoredColumn::UInt32, 1, field, false});
    columns.push_back({element, 1, field, true});
  };
  for (const int type : format.GetTypes()) {
    ++field;
    const FED_FieldType::Class fieldClass = FED_FieldType::GetClass(type);
    switch (fieldClass) {
      case FED_FieldType::Integer:
        columns.push_back({StoredColumn::Int32, 1, field, false});
        break;
      case FED_FieldType::Float:
        columns.push_back({StoredColumn::Float32, 1, field, false});
        break;
      case FED_FieldType::String:
        addList(StoredColumn::Char);
        break;
      case FED_FieldType::IntList:
        addList(StoredColumn::Int32);
        break;
      case FED_FieldType::DoubleList:
        addList(StoredColumn::Float64);
        break;
      default:
        columns.push_back({StoredColumn::Float64, static_cast<std::uint32_t>(FED_FieldType::GetDoubleCount(fieldClass)),
                           field, false});
        break;
    }
  }
  return columns;
}

std::size_t GetElementBytes(StoredColumn::Element element) noexcept
{
  switch (element) {
    case StoredColumn::Char:
      return 1;
    case StoredColumn::Float64:
      return 8;
    default:
      return 4;
  }
}
