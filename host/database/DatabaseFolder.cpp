#include "database/DatabaseFolder.h"

#include <cstddef>
#include <string>

#include <bundled/NativePath.h>
#include <bundled/StoreFile.h>

#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "text/Case.h"

namespace quilon {

namespace fs = std::filesystem;

namespace {

bool IsFolder(const fs::path& path) { return StatusOf(path).kind == FED_FileStatus::Folder; }

bool IsFolderWith(const fs::path& path, const char* file)
{
  return IsFolder(path) && StatusOf(path / file).kind != FED_FileStatus::Nothing;
}

}  // namespace

FED_FileStatus StatusOf(const fs::path& path)
{
  FED_FileLayer  files;
  FED_FileStatus status;
  if (const std::error_code error = files.GetStatus(path, status)) ThrowFileFailure(path, error.message());
  return status;
}

bool IsWorkingDatabase(const fs::path& path) { return IsFolderWith(path, "manifest"); }

bool IsWorkingDatabaseName(const fs::path& path)
{
  return LowerExtension(path.has_filename() ? path : path.parent_path()) == ".fed";  // "NAME.fed/" too
}

bool IsWorkingDatabaseFolder(const fs::path& path)
{
  return IsWorkingDatabase(path) || (IsWorkingDatabaseName(path) && IsFolder(path));
}

bool IsOnfFolder(const fs::path& path) { return IsFolderWith(path, "index"); }

std::unique_ptr<QuilonOnfTxtDatabase> OpenOnf(const fs::path& path)
{
  constexpr std::size_t kCacheSize = 1024;
  auto                  database   = std::make_unique<QuilonOnfTxtDatabase>(WidePath(path));
  database->InitDb(FED_DatabaseDefs::ReadAccess, kCacheSize, std::wstring(), nullptr);
  return database;
}

}  // namespace quilon
