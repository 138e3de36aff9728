#include "database/DatabaseFolder.h"

#include <cstddef>
#include <string>

#include <bundled/NativePath.h>

#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "text/Case.h"

namespace quilon {

namespace fs = std::filesystem;

bool IsWorkingDatabase(const fs::path& path) { return fs::is_directory(path) && fs::exists(path / "manifest"); }

bool IsWorkingDatabaseName(const fs::path& path)
{
  return LowerExtension(path.has_filename() ? path : path.parent_path()) == ".fed";  // "NAME.fed/" too
}

bool IsWorkingDatabaseFolder(const fs::path& path)
{
  return IsWorkingDatabase(path) || (IsWorkingDatabaseName(path) && fs::is_directory(path));
}

bool IsOnfFolder(const fs::path& path) { return fs::is_directory(path) && fs::exists(path / "index"); }

std::unique_ptr<QuilonOnfTxtDatabase> OpenOnf(const fs::path& path)
{
  constexpr std::size_t kCacheSize = 1024;
  auto                  database   = std::make_unique<QuilonOnfTxtDatabase>(WidePath(path));
  database->InitDb(FED_DatabaseDefs::ReadAccess, kCacheSize, std::wstring(), nullptr);
  return database;
}

}  // namespace quilon
