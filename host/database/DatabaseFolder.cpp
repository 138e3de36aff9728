#include "database/DatabaseFolder.h"

#include <cstddef>
#include <string>

#include <bundled/NativePath.h>
#include <bundled/StoreFile.h>

#include "database/ScratchDatabase.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "text/Case.h"
#include "text/Failure.h"

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

void RequireDatabaseName(const fs::path& path)
{
  const fs::path        name      = path.lexically_normal();
  const std::string     last      = (name.has_filename() ? name : name.parent_path()).filename().string();
  const std::string     extension = LowerExtension(name);
  constexpr const char* kExpected = "expected the name of a working database (.fed) or of an ONF folder (.onf)";
  if (last == "." || last == ".." || path == "-") Fail(path.string() + ": " + kExpected);
  const bool isOurs = extension.empty() || extension == ".fed" || extension == ".onf";
  if (!isOurs && name.has_filename() && StatusOf(name).kind == FED_FileStatus::Nothing)
    Fail(path.string() + ": " + kExpected + ", found the extension " + extension);
}

std::unique_ptr<QuilonOnfTxtDatabase> OpenOnf(const fs::path& path)
{
  constexpr std::size_t kCacheSize = 1024;
  const LargeOnfOnDisk  large;
  auto                  database = std::make_unique<QuilonOnfTxtDatabase>(WidePath(path));
  database->InitDb(FED_DatabaseDefs::ReadAccess, kCacheSize, std::wstring(), nullptr);
  return database;
}

}  // namespace quilon
