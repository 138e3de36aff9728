#include "Snapshot.h"

#include <algorithm>
#include <string_view>

#include <QuilonDbConnector/FED_Database.h>

#include "RecordingDatabase.h"

namespace quilon_test {

std::map<std::string, std::string> Snapshot(const FED_Database& database)
{
  std::map<std::string, std::string> content;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern())) {
    const FED_DataBlock&       block  = database.GetConstDataBlock(descriptor);
    FED_ConstDataRecord* const record = block.CreateConstDataRecord();
    for (auto index = block.Begin(); index != block.End(); ++index) {
      block.GetRecord(*index, *record);
      content[Key(descriptor) + ' ' + std::to_string(*index)] = Content(*record);
    }
    block.DeleteDataRecord(record);
  }
  return content;
}

bool IsPartOf(const std::map<std::string, std::string>& part, const std::map<std::string, std::string>& whole)
{
  return std::includes(whole.begin(), whole.end(), part.begin(), part.end());
}

std::size_t CountWrites(const std::vector<std::string>& lines)
{
  return static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
    constexpr std::string_view kFails  = " fails";
    const bool                 isWrite = line.find(".SetRecord(") != std::string::npos ||
                         line.find(".SetScalarAt(") != std::string::npos ||
                         line.find(".SetValuesAt(") != std::string::npos;
    return isWrite && !std::string_view(line).ends_with(kFails);
  }));
}

}  // namespace quilon_test
