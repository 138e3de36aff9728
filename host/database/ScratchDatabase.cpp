#include "database/ScratchDatabase.h"

#include <random>
#include <string>
#include <system_error>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/StoreFile.h>

namespace quilon {

namespace fs = std::filesystem;

ScratchDatabase::Folder::Folder()
{
  std::error_code error;
  const fs::path  parent = fs::temp_directory_path(error);
  if (error) ThrowFileFailure("the temporary folder", error.message());
  std::random_device random;
  do {
    path = parent / ("quilon-" + std::to_string(random()));
    // Made, not found: a folder that somebody else has put there is none of ours.
  } while (!fs::create_directory(path, error) && !error);
  if (!error) fs::permissions(path, fs::perms::owner_all, error);
  if (error) ThrowFileFailure(path, error.message());
}

ScratchDatabase::Folder::~Folder()
{
  std::error_code ignored;  // what stays is in nobody's way
  fs::remove_all(path, ignored);
}

ScratchDatabase::ScratchDatabase()
    : database_(std::make_unique<FED_ResultDatabase>(folder_.path / "rows.fed", FED_ResultDatabase::Create,
                                                     files_.GetOptions()))
{}

ScratchDatabase::~ScratchDatabase() = default;

}  // namespace quilon
