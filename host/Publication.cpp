#include "Publication.h"

#include <string>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/NativePath.h>

#include "Failure.h"
#include "FreshDatabase.h"
#include "OpenedDatabase.h"
#include "QuilonDbConnector/QuilonDatabaseUtils.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "UserKinds.h"
#include "WatchedFiles.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kCacheSize = 1024;

const char* NameOf(bool isOnf) { return isOnf ? "an ONF folder" : "a working database"; }

}  // namespace

Publication::Publication(const fs::path& folder, Form form)
    : folder_(folder.has_filename() || !folder.has_relative_path() ? folder : folder.parent_path()),  // "new.onf/"
      isOnf_(!IsWorkingDatabaseName(folder_)),
      names_(std::make_unique<FED_ResultDatabase>())
{
  CheckFolder(form);
  const bool isThere = isOnf_ ? IsOnfFolder(folder_) : fs::exists(folder_) && !fs::is_empty(folder_);
  if (isOnf_) {
    database_ = std::make_unique<FED_ResultDatabase>();
    if (!isThere) return;
    CopyUserKindNames(*OpenOnf(folder_), *names_);
    CopyUserKindNames(*names_, *database_);
  } else {
    files_ = std::make_unique<WatchedFiles>();
    FED_ResultDatabaseOptions options;
    options.files = files_.get();
    database_     = std::make_unique<FED_ResultDatabase>(
        folder_, isThere ? FED_ResultDatabase::ReadWrite : FED_ResultDatabase::Create, options);
    CopyUserKindNames(*database_, *names_);
    fresh_ = std::make_unique<FreshDatabase>(*database_);
  }
}

Publication::~Publication() = default;

FED_Database& Publication::Target() noexcept
{
  if (fresh_) return *fresh_;
  return *database_;
}

std::size_t Publication::Publish()
{
  CheckUserKindNames(*database_);
  return isOnf_ ? PublishOnf(*database_, {}) : CommitTarget();
}

std::size_t Publication::Publish(const FED_Database& database, const std::vector<FED_DataDescriptor>& emptied)
{
  CheckUserKindNames(database);
  if (isOnf_) return PublishOnf(database, emptied);
  QuilonDatabaseUtils::copy_datablocks(database, *fresh_, FED_DataDescriptorPattern(),
                                       QuilonDatabaseUtils::SkipEmptyBlocks);
  for (const FED_DataDescriptor& descriptor : emptied)
    if (database_->HasDataBlock(descriptor)) database_->DeleteDataBlock(descriptor);
  return CommitTarget();
}

void Publication::CheckFolder(Form form) const
{
  const std::string name     = folder_.string();
  const std::string expected = std::string("expected ") + NameOf(isOnf_) + " or the name of a new one";
  if (name.empty()) Fail("the output folder has no name");
  if (form == OnfFolder && !isOnf_) Fail(name + ": a working database, expected the name of an ONF folder");
  if (!fs::exists(folder_)) {
    const fs::path parent = fs::absolute(folder_).lexically_normal().parent_path();
    if (!fs::is_directory(parent)) Fail(name + ": no folder " + parent.string() + " to make it in");
  } else if (!fs::is_directory(folder_)) {
    Fail(name + ": not a folder, " + expected);
  } else if (!fs::is_empty(folder_) && !(isOnf_ ? IsOnfFolder(folder_) : IsWorkingDatabase(folder_))) {
    Fail(name + ": a folder with other files, " + expected);
  }
}

void Publication::CheckUserKindNames(const FED_Database& database) const
{
  ForEachUserKind([&](FED_OnfId onf) {
    const std::string there = names_->GetUserKindName(onf);
    const std::string here  = database.GetUserKindName(onf);
    if (!there.empty() && !here.empty() && there != here)
      Fail(folder_.string() + ": kind " + std::to_string(onf) + " is '" + there + "' here and '" + here +
           "' in what is written, expected one name");
  });
}

std::size_t Publication::PublishOnf(const FED_Database& database, const std::vector<FED_DataDescriptor>& emptied) const
{
  QuilonOnfTxtDatabase target(WidePath(folder_));
  target.InitDb(FED_DatabaseDefs::WriteAccess, kCacheSize, std::wstring(), nullptr);
  const std::size_t copied = QuilonDatabaseUtils::copy_datablocks(database, target, FED_DataDescriptorPattern(),
                                                                  QuilonDatabaseUtils::SkipEmptyBlocks);
  for (const FED_DataDescriptor& descriptor : emptied) target.GetOrCreateDataBlock(descriptor, 0);
  target.ReleaseDb(false);
  return copied;
}

std::size_t Publication::CommitTarget()
{
  std::size_t count = 0;
  for (const FED_DataDescriptor& descriptor : fresh_->GetDataDescriptors(FED_DataDescriptorPattern())) {
    const FED_DataBlock& block = fresh_->GetConstDataBlock(descriptor);
    if (block.Begin() != block.End())
      ++count;
    else
      fresh_->DeleteDataBlock(descriptor);
  }
  database_->Commit();
  return count;
}

}  // namespace quilon
