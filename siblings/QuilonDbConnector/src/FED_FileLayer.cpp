#include "bundled/FED_FileLayer.h"

#include <algorithm>

#if defined(_WIN32)
#  error "the file layer has no branch for this system yet: derive one from FED_FileLayer's contract here"
#endif

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

std::error_code LastError() noexcept { return {errno, std::generic_category()}; }

// A call that a signal interrupts is made again.
template <typename Call>
auto Retry(const Call& call) noexcept
{
  decltype(call()) result;
  do result = call();
  while (result < 0 && errno == EINTR);
  return result;
}

// Some systems refuse transfers of 2 GiB and more.
constexpr std::size_t kMaxTransfer = std::size_t{1} << 30;

// Whether the path still names the open file. Whoever locks a file that was removed meanwhile locks nothing.
bool IsStillThere(int handle, const char* path) noexcept
{
  struct stat open
  {};
  struct stat named
  {};
  return ::fstat(handle, &open) == 0 && ::stat(path, &named) == 0 && open.st_dev == named.st_dev &&
         open.st_ino == named.st_ino;
}

}  // namespace

FED_FileLayer::~FED_FileLayer() = default;

std::error_code FED_FileLayer::Open(const std::filesystem::path& path, Mode mode, Handle& handle)
{
  const int flags = mode == Read ? O_RDONLY : O_RDWR | O_CREAT | O_TRUNC;
  handle          = Retry([&] { return ::open(path.c_str(), flags | O_CLOEXEC, 0666); });
  return handle < 0 ? LastError() : std::error_code();
}

void FED_FileLayer::Close(Handle handle) noexcept
{
  if (handle != kNoHandle) ::close(handle);
}

std::error_code FED_FileLayer::GetSize(Handle handle, std::uint64_t& size)
{
  struct stat status
  {};
  if (::fstat(handle, &status) != 0) return LastError();
  size = static_cast<std::uint64_t>(status.st_size);
  return {};
}

std::error_code FED_FileLayer::ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                                      std::size_t& done)
{
  done = 0;
  while (done < count) {
    char* const       to   = static_cast<char*>(bytes) + done;
    const std::size_t step = std::min(count - done, kMaxTransfer);
    const ssize_t     got  = Retry([&] { return ::pread(handle, to, step, static_cast<off_t>(offset + done)); });
    if (got < 0) return LastError();
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return {};
}

std::error_code FED_FileLayer::WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count)
{
  for (std::size_t done = 0; done < count;) {
    const char* const from = static_cast<const char*>(bytes) + done;
    const std::size_t step = std::min(count - done, kMaxTransfer);
    const ssize_t     put  = Retry([&] { return ::pwrite(handle, from, step, static_cast<off_t>(offset + done)); });
    if (put < 0) return LastError();
    done += static_cast<std::size_t>(put);
  }
  return {};
}

std::error_code FED_FileLayer::Flush(Handle handle)
{
  return Retry([&] { return ::fsync(handle); }) < 0 ? LastError() : std::error_code();
}

std::error_code FED_FileLayer::Rename(const std::filesystem::path& from, const std::filesystem::path& to)
{
  return std::rename(from.c_str(), to.c_str()) != 0 ? LastError() : std::error_code();
}

std::error_code FED_FileLayer::Remove(const std::filesystem::path& path)
{
  return std::remove(path.c_str()) != 0 && errno != ENOENT ? LastError() : std::error_code();
}

std::error_code FED_FileLayer::MakeFolder(const std::filesystem::path& folder, bool& made)
{
  std::error_code error;
  made = std::filesystem::create_directory(folder, error);
  return error;
}

std::error_code FED_FileLayer::FlushFolder(const std::filesystem::path& folder)
{
  const int handle = Retry([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (handle < 0) return LastError();
  std::error_code error;
  // Some file systems flush folders by themselves and know no call for it.
  if (Retry([&] { return ::fsync(handle); }) < 0 && errno != EINVAL) error = LastError();
  ::close(handle);
  return error;
}

std::error_code FED_FileLayer::List(const std::filesystem::path& folder, std::vector<std::string>& names)
{
  names.clear();
  std::error_code                     error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
    names.push_back(entry->path().filename().string());
  return error;
}

std::error_code FED_FileLayer::Lock(const std::filesystem::path& path, Handle& handle)
{
  for (;;) {
    handle = Retry([&] { return ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666); });
    if (handle < 0) return LastError();
    std::error_code error;
    if (Retry([&] { return ::flock(handle, LOCK_EX | LOCK_NB); }) < 0)
      error = errno == EWOULDBLOCK ? std::make_error_code(std::errc::resource_unavailable_try_again) : LastError();
    else if (IsStillThere(handle, path.c_str()))
      return {};
    ::close(handle);
    handle = kNoHandle;
    if (error) return error;
  }
}
