#include "database/StoredDatabase.h"

#include <utility>

#include <bundled/FED_ResultDatabase.h>

#include "database/DatabaseFolder.h"
#include "database/WatchedFiles.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "QuilonUtilities/FED_Failure.h"

namespace quilon {

std::unique_ptr<StoredDatabase> StoredDatabase::OpenIfThere(const std::filesystem::path& path, std::size_t share)
{
  std::unique_ptr<StoredDatabase> stored(new StoredDatabase());
  if (IsWorkingDatabaseFolder(path)) {
    stored->files_ = std::make_unique<WatchedFiles>();
    stored->database_ =
        std::make_unique<FED_ResultDatabase>(path, FED_ResultDatabase::ReadOnly, stored->files_->GetOptions(share));
  } else if (IsOnfFolder(path)) {
    stored->database_ = OpenOnf(path);
  } else {
    stored.reset();
  }
  return stored;
}

std::string StoredDatabase::GetState() const
{
  const auto* const own = dynamic_cast<const FED_ResultDatabase*>(database_.get());
  return own == nullptr ? std::string() : std::to_string(own->GetGeneration());
}

std::unique_ptr<StoredDatabase> StoredDatabase::OpenAgain(const std::filesystem::path& path, std::size_t share) const
{
  const std::string state = GetState();
  if (state.empty()) return nullptr;
  std::unique_ptr<StoredDatabase> other;
  try {
    other = OpenIfThere(path, share);
  } catch (const FED_Failure&) {
    // Removed or replaced since. This one has what it needs open, and does without others.
  }
  return other && other->GetState() == state ? std::move(other) : nullptr;
}

StoredDatabase::~StoredDatabase() = default;

}  // namespace quilon
