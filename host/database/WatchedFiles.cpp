#include "database/WatchedFiles.h"

#include <utility>

#include "progress/Interrupt.h"

namespace quilon {

WatchedFiles::WatchedFiles(Progress progress) : progress_(std::move(progress)) {}

WatchedFiles::~WatchedFiles() = default;

FED_ResultDatabaseOptions WatchedFiles::GetOptions() noexcept
{
  FED_ResultDatabaseOptions options;
  options.files = this;
  return options;
}

std::error_code WatchedFiles::ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                                     std::size_t& done)
{
  ThrowIfInterrupted();
  const std::error_code error = FED_FileLayer::ReadAt(handle, offset, bytes, count, done);
  read_ += done;
  if (progress_) progress_(read_);
  return error;
}

std::error_code WatchedFiles::WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count)
{
  ThrowIfInterrupted();
  return FED_FileLayer::WriteAt(handle, offset, bytes, count);
}

}  // namespace quilon
