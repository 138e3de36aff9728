#include "database/WatchedFiles.h"

#include <chrono>
#include <thread>
#include <utility>

#include "database/MemoryLimit.h"
#include "progress/Interrupt.h"

namespace quilon {

WatchedFiles::WatchedFiles(Progress progress, LockPatience patience)
    : FED_LockFileLayer(patience.lock, patience.breaks), progress_(std::move(progress)), patience_(std::move(patience))
{}

WatchedFiles::~WatchedFiles() = default;

FED_ResultDatabaseOptions WatchedFiles::GetOptions(std::size_t share) noexcept
{
  FED_ResultDatabaseOptions options;
  const std::size_t         limit = MemoryLimit::Get();
  options.memoryLimit             = limit == FED_ResultDatabaseOptions::kUsualLimit ? limit : limit / share;
  options.shares                  = share;
  options.files                   = this;
  return options;
}

void WatchedFiles::OnSignal() { ThrowIfInterrupted(); }

std::error_code WatchedFiles::Open(const std::filesystem::path& path, Mode mode, Handle& handle)
{
  ThrowIfInterrupted();
  return FED_FileLayer::Open(path, mode, handle);
}

std::error_code WatchedFiles::GetStatus(const std::filesystem::path& path, FED_FileStatus& status)
{
  ThrowIfInterrupted();
  return FED_FileLayer::GetStatus(path, status);
}

std::error_code WatchedFiles::FlushAll(const std::filesystem::path& folder)
{
  ThrowIfInterrupted();
  return FED_FileLayer::FlushAll(folder);
}

template <typename Call>
std::error_code WatchedFiles::TryLock(const std::filesystem::path& path, const Call& call)
{
  using Clock = std::chrono::steady_clock;
  // Short beside the time in which people notice that Ctrl-C does nothing.
  constexpr std::chrono::milliseconds kPause(50);
  const Clock::time_point             start = Clock::now();
  for (bool waits = false;; waits = true) {
    ThrowIfInterrupted();
    const std::error_code error = call();
    if (error != std::errc::resource_unavailable_try_again) return error;
    if (std::chrono::duration<double>(Clock::now() - start).count() >= patience_.seconds) return error;
    if (!waits && patience_.onWait) patience_.onWait(FindLockHolder(path));
    std::this_thread::sleep_for(kPause);
  }
}

std::error_code WatchedFiles::Lock(const std::filesystem::path& path, Handle& handle)
{
  return TryLock(path, [&] { return FED_LockFileLayer::Lock(path, handle); });
}

std::error_code WatchedFiles::LockFolder(const std::filesystem::path& folder, Handle& handle)
{
  return TryLock(folder, [&] { return FED_LockFileLayer::LockFolder(folder, handle); });
}

std::string WatchedFiles::FindLockHolder(const std::filesystem::path& path)
{
  const std::string holder = FED_LockFileLayer::FindLockHolder(path);
  if (!IsHeldElsewhere(path)) return holder;
  return (holder.empty() ? GetFolderHolderPath({}).filename().string() : holder) + "; --break-lock if that is gone";
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
