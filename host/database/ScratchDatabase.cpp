#include "database/ScratchDatabase.h"

#include <cstddef>
#include <random>
#include <string>
#include <system_error>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/StoreFile.h>

#include "database/MemoryLimit.h"

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

bool ScratchDatabase::IsNeededFor(std::uint64_t bytes) noexcept
{
  constexpr std::size_t kUsual = std::size_t{64} << 20;
  return bytes > MemoryLimit::GetOr(kUsual);
}

ScratchDatabase::ScratchDatabase()
    : database_(std::make_unique<FED_ResultDatabase>(folder_.path / "rows.fed", FED_ResultDatabase::Create,
                                                     files_.GetOptions(kShare)))
{}

ScratchDatabase::~ScratchDatabase() = default;

LargeOnfOnDisk::LargeOnfOnDisk() noexcept : former_(Set(this)) {}

LargeOnfOnDisk::~LargeOnfOnDisk() { Set(former_); }

std::unique_ptr<OnfStore> LargeOnfOnDisk::MakeStore(std::uint64_t bytes)
{
  return ScratchDatabase::IsNeededFor(bytes) ? std::make_unique<ScratchDatabase>() : nullptr;
}

}  // namespace quilon
