#include "Publication.h"

#include <memory>
#include <string>

#include <bundled/NativePath.h>

#include "Failure.h"
#include "OpenedDatabase.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/QuilonDatabaseUtils.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "UserKinds.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kCacheSize = 1024;

}  // namespace

Publication::Publication(const fs::path& folder)
    : folder_(folder.has_filename() || !folder.has_relative_path() ? folder : folder.parent_path())  // "new.onf/"
{
  const std::string name = folder.string();
  if (name.empty()) Fail("the output folder has no name");
  if (folder_.extension() == ".fed")
    Fail(name + ": working databases on disk cannot be written yet, expected the name of an ONF folder");
  if (!fs::exists(folder_)) {
    const fs::path parent = fs::absolute(folder_).lexically_normal().parent_path();
    if (!fs::is_directory(parent)) Fail(name + ": no folder " + parent.string() + " to make it in");
  } else if (!fs::is_directory(folder_)) {
    Fail(name + ": not a folder, expected an ONF folder or the name of a new one");
  } else if (!IsOnfFolder(folder_) && !fs::is_empty(folder_)) {
    Fail(name + ": a folder with other files, expected an ONF folder or the name of a new one");
  }
}

void Publication::TakeUserKindNames(FED_Database& database) const
{
  if (!IsOnfFolder(folder_)) return;
  CopyUserKindNames(*OpenOnf(folder_), database);
}

std::size_t Publication::Publish(const FED_Database& database, const std::vector<FED_DataDescriptor>& emptied) const
{
  CheckUserKindNames(database);
  QuilonOnfTxtDatabase target(WidePath(folder_));
  target.InitDb(FED_DatabaseDefs::WriteAccess, kCacheSize, std::wstring(), nullptr);
  const std::size_t copied = QuilonDatabaseUtils::copy_datablocks(database, target, FED_DataDescriptorPattern(),
                                                                  QuilonDatabaseUtils::SkipEmptyBlocks);
  for (const FED_DataDescriptor& descriptor : emptied) target.GetOrCreateDataBlock(descriptor, 0);
  target.ReleaseDb(false);
  return copied;
}

void Publication::CheckUserKindNames(const FED_Database& database) const
{
  if (!IsOnfFolder(folder_)) return;
  const std::unique_ptr<QuilonOnfTxtDatabase> former = OpenOnf(folder_);
  ForEachUserKind([&](FED_OnfId onf) {
    const std::string there = former->GetUserKindName(onf);
    const std::string here  = database.GetUserKindName(onf);
    if (!there.empty() && !here.empty() && there != here)
      Fail(folder_.string() + ": kind " + std::to_string(onf) + " is '" + there + "' here and '" + here +
           "' in what is written, expected one name");
  });
}

}  // namespace quilon
