#include "database/Provenance.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <map>

#include <bundled/OnfKinds.h>
#include <bundled/StoreFile.h>

#include "database/DatabaseFolder.h"
#include "database/ScratchRecord.h"
#include "database/WatchedFiles.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"

namespace quilon {

namespace {

FED_DataDescriptor FilesOf(int iteration) { return {iteration, OnfKind::ImportFile}; }
FED_DataDescriptor SettingsOf(int iteration) { return {iteration, OnfKind::ImportSetting}; }

/// Calls a function with each record of a block, when the database has it.
template <typename Function>
void ForEachRecord(const FED_Database& database, const FED_DataDescriptor& descriptor, const Function& function)
{
  if (!database.HasDataBlock(descriptor)) return;
  const FED_DataBlock& block = database.GetConstDataBlock(descriptor);
  const ScratchRecord  record(block);
  for (FED_DataBlock::IndexIterator at = block.Begin(), end = block.End(); at != end; ++at) {
    block.GetRecord(*at, *record);
    function(*record);
  }
}

/// A block anew, with records of positions from 1.
class RecordList
{
public:
  RecordList(FED_Database& database, const FED_DataDescriptor& descriptor)
      : view_(MakeEmpty(database, descriptor), database.GetIdMapsPool(), true), record_(view_.CreateIdDataRecord())
  {}

  FED_DataRecord& Fields() { return record_.GetDataRecord(); }
  void            Append() { view_.SetRecord(++position_, record_); }

private:
  static FED_DataBlock& MakeEmpty(FED_Database& database, const FED_DataDescriptor& descriptor)
  {
    if (database.HasDataBlock(descriptor)) database.DeleteDataBlock(descriptor);
    return database.GetOrCreateDataBlock(descriptor, 0);
  }

  FED_IdDataBlock   view_;
  FED_IdDataRecord& record_;
  int               position_ = 0;
};

/// @return "2026-03-01T17:04:59Z"
std::string FormatTime(std::int64_t nanoseconds)
{
  using namespace std::chrono;
  const sys_time<seconds> time{floor<seconds>(std::chrono::nanoseconds(nanoseconds))};
  const sys_days          day = floor<days>(time);
  const year_month_day    date(day);
  const hh_mm_ss<seconds> clock(time - day);
  char                    text[48];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text;
}

}  // namespace

bool ImportedFile::IsSameAs(const ImportedFile& other) const
{
  return role == other.role && name == other.name && size == other.size && checksum == other.checksum &&
         !checksum.empty();
}

const std::string* ImportProvenance::FindSetting(const std::string& name) const
{
  const auto found = std::find_if(settings.begin(), settings.end(),
                                  [&name](const ImportSetting& setting) { return setting.name == name; });
  return found == settings.end() ? nullptr : &found->value;
}

bool ImportProvenance::HasRole(const std::string& role) const
{
  return std::any_of(files.begin(), files.end(), [&role](const ImportedFile& file) { return file.role == role; });
}

std::vector<ImportedFile> ImportProvenance::MainFiles() const
{
  std::vector<ImportedFile> main = files;
  std::erase_if(main, [](const ImportedFile& file) { return file.role == ImportRole::Include; });
  return main;
}

std::string ImportProvenance::ListFiles() const
{
  std::string list;
  for (const ImportedFile& file : files) {
    if (file.role != ImportRole::Deck && file.role != ImportRole::Results && file.role != ImportRole::Prints) continue;
    list += (list.empty() ? "" : ", ") + file.name;
  }
  return list;
}

std::vector<IterationProvenance> ReadProvenance(const FED_Database& database)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, OnfKind::ImportSetting);
  std::vector<IterationProvenance> all;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(pattern)) {
    const int iteration = descriptor.GetInteger(FED_DataDescriptor::Iteration);
    all.push_back({iteration, ReadProvenance(database, iteration)});
  }
  std::sort(all.begin(), all.end(),
            [](const IterationProvenance& a, const IterationProvenance& b) { return a.iteration < b.iteration; });
  return all;
}

std::vector<ImportProvenance> ReadProvenance(const FED_Database& database, int iteration)
{
  std::map<int, ImportProvenance> byNumber;
  ForEachRecord(database, FilesOf(iteration), [&byNumber](const FED_ConstDataRecord& record) {
    ImportedFile file;
    file.role     = record.GetString(2);
    file.name     = record.GetString(3);
    file.size     = static_cast<std::uint64_t>(std::llround(record.GetDouble(4)));
    file.checksum = record.GetString(5);
    file.changed  = record.GetString(6);
    byNumber[record.GetInteger(1)].files.push_back(std::move(file));
  });
  ForEachRecord(database, SettingsOf(iteration), [&byNumber](const FED_ConstDataRecord& record) {
    byNumber[record.GetInteger(1)].settings.push_back({record.GetString(2), record.GetString(3)});
  });
  std::vector<ImportProvenance> imports;
  for (auto& [number, import] : byNumber) imports.push_back(std::move(import));
  return imports;
}

bool WasImportedWithDeck(const FED_Database& database, int iteration)
{
  const std::vector<ImportProvenance> imports = ReadProvenance(database, iteration);
  return !imports.empty() && std::all_of(imports.begin(), imports.end(), [](const ImportProvenance& import) {
    return import.HasRole(ImportRole::Deck);
  });
}

void WriteProvenance(FED_Database& database, const IterationProvenance& provenance)
{
  RecordList files(database, FilesOf(provenance.iteration));
  RecordList settings(database, SettingsOf(provenance.iteration));
  int        number = 0;
  for (const ImportProvenance& import : provenance.imports) {
    ++number;
    for (const ImportedFile& file : import.files) {
      files.Fields().SetInteger(1, number);
      files.Fields().SetString(2, file.role);
      files.Fields().SetString(3, file.name);
      files.Fields().SetDouble(4, static_cast<double>(file.size));
      files.Fields().SetString(5, file.checksum);
      files.Fields().SetString(6, file.changed);
      files.Append();
    }
    for (const ImportSetting& setting : import.settings) {
      settings.Fields().SetInteger(1, number);
      settings.Fields().SetString(2, setting.name);
      settings.Fields().SetString(3, setting.value);
      settings.Append();
    }
  }
}

ImportedFile DescribeFile(const std::filesystem::path& path, const std::string& role, const std::string& name,
                          const std::function<void(std::uint64_t bytes)>& onBytes)
{
  ImportedFile file;
  file.role = role;
  file.name = name;
  if (StatusOf(path).kind != FED_FileStatus::File) return file;
  WatchedFiles         files;
  const StoreFile      open(files, path, FED_FileLayer::Read);
  const FED_FileStatus status = open.GetStatus();
  file.size                   = status.size;
  file.checksum               = FormatChecksumOf(open, onBytes);
  file.changed                = FormatTime(status.changed);
  return file;
}

}  // namespace quilon
