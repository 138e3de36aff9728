#include "database/StoredDatabase.h"

#include <bundled/FED_ResultDatabase.h>

#include "database/DatabaseFolder.h"
#include "database/WatchedFiles.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"

namespace quilon {

std::unique_ptr<StoredDatabase> StoredDatabase::OpenIfThere(const std::filesystem::path& path)
{
  std::unique_ptr<StoredDatabase> stored(new StoredDatabase());
  if (IsWorkingDatabaseFolder(path)) {
    stored->files_ = std::make_unique<WatchedFiles>();
    stored->database_ =
        std::make_unique<FED_ResultDatabase>(path, FED_ResultDatabase::ReadOnly, stored->files_->GetOptions());
  } else if (IsOnfFolder(path)) {
    stored->database_ = OpenOnf(path);
  } else {
    stored.reset();
  }
  return stored;
}

StoredDatabase::~StoredDatabase() = default;

}  // namespace quilon
