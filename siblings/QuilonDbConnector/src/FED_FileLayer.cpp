#include "bundled/FED_FileLayer.h"

#include <algorithm>
#include <utility>

#if defined(_WIN32)
#  error "the file layer has no branch for this system yet: derive one from FED_FileLayer's contract here"
#endif

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#if defined(__linux__)
#  include <sys/sysmacros.h>
#endif
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string_view>

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

class FileErrors : public std::error_category
{
public:
  const char* name() const noexcept override { return "file"; }
  std::string message(int) const override { return "not a plain file"; }
};

constexpr unsigned kPermissions        = 0777;
constexpr unsigned kFilePermissions    = 0666;  // less what the user's mask takes away
constexpr unsigned kPrivatePermissions = 0600;

FED_FileStatus ToStatus(const struct stat& found) noexcept
{
  FED_FileStatus status;
  status.kind        = S_ISREG(found.st_mode)   ? FED_FileStatus::File
                       : S_ISDIR(found.st_mode) ? FED_FileStatus::Folder
                                                : FED_FileStatus::Other;
  status.size        = static_cast<std::uint64_t>(found.st_size);
  status.device      = static_cast<std::uint64_t>(found.st_dev);
  status.number      = static_cast<std::uint64_t>(found.st_ino);
  status.changed     = std::int64_t{found.st_mtim.tv_sec} * 1'000'000'000 + found.st_mtim.tv_nsec;
  status.permissions = static_cast<std::filesystem::perms>(found.st_mode & kPermissions);
  return status;
}

// A handle that is closed unless it is handed on.
class OpenHandle
{
public:
  explicit OpenHandle(int handle) noexcept : handle_(handle) {}
  OpenHandle(const OpenHandle&)            = delete;
  OpenHandle& operator=(const OpenHandle&) = delete;
  ~OpenHandle()
  {
    if (handle_ >= 0) ::close(handle_);
  }

  int Get() const noexcept { return handle_; }
  int Release() noexcept { return std::exchange(handle_, -1); }

private:
  int handle_;
};

// Whether the path still names the open file. Whoever locks a file that was removed meanwhile locks nothing.
std::error_code FindWhetherStillThere(int handle, const char* path, bool& isThere) noexcept
{
  struct stat open
  {};
  struct stat named
  {};
  if (::fstat(handle, &open) != 0) return LastError();
  const bool isNamed = ::stat(path, &named) == 0;
  if (!isNamed && errno != ENOENT && errno != ENOTDIR) return LastError();
  isThere = isNamed && open.st_dev == named.st_dev && open.st_ino == named.st_ino;
  return {};
}

std::error_code LockHandle(int handle) noexcept
{
  if (Retry([&] { return ::flock(handle, LOCK_EX | LOCK_NB); }) == 0) return {};
  return errno == EWOULDBLOCK ? std::make_error_code(std::errc::resource_unavailable_try_again) : LastError();
}

}  // namespace

FED_FileLayer::~FED_FileLayer() = default;

std::error_code FED_FileLayer::NotAFile() noexcept
{
  static const FileErrors errors;
  return {1, errors};
}

bool FED_FileLayer::TellsOfNoLocks(const std::error_code& error) noexcept
{
  constexpr std::array kErrors = {EBADF, EINVAL, ENOLCK, ENOSYS, EOPNOTSUPP};
  return error.category() == std::generic_category() &&
         std::find(kErrors.begin(), kErrors.end(), error.value()) != kErrors.end();
}

void FED_FileLayer::OnSignal() {}

int FED_FileLayer::OpenDescriptor(const std::filesystem::path& path, int flags, unsigned mode)
{
  for (;;) {
    const int handle = ::open(path.c_str(), flags | O_CLOEXEC, mode);
    if (handle >= 0 || errno != EINTR) return handle;
    OnSignal();
  }
}

std::error_code FED_FileLayer::Open(const std::filesystem::path& path, Mode mode, Handle& handle)
{
  handle = kNoHandle;
  if (mode == Create || mode == CreatePrivate) {
    const unsigned permissions = mode == Create ? kFilePermissions : kPrivatePermissions;
    const auto     create      = [&] { return OpenDescriptor(path, O_RDWR | O_CREAT | O_EXCL, permissions); };
    handle                     = create();
    if (handle >= 0) return {};
    if (errno != EEXIST) return LastError();
    if (const std::error_code error = FED_FileLayer::Remove(path)) return error;
    handle = create();
    return handle < 0 ? LastError() : std::error_code();
  }
  // A pipe that nobody writes to would keep us waiting.
  const int  access     = mode == Change ? O_RDWR : O_RDONLY;
  const int  noWait     = OpenDescriptor(path, access | O_NONBLOCK | O_NOCTTY, 0);
  const bool isLeased   = noWait < 0 && errno == EWOULDBLOCK;  // to a program that serves files, until it gives it back
  const int  descriptor = isLeased ? OpenDescriptor(path, access | O_NOCTTY, 0) : noWait;
  OpenHandle opened(descriptor);
  if (opened.Get() < 0) return errno == ENXIO ? NotAFile() : LastError();
  struct stat found
  {};
  if (::fstat(opened.Get(), &found) != 0) return LastError();
  if (S_ISDIR(found.st_mode)) return std::make_error_code(std::errc::is_a_directory);
  if (!S_ISREG(found.st_mode)) return NotAFile();
  handle = opened.Release();
  return {};
}

std::error_code FED_FileLayer::Close(Handle handle) noexcept
{
  return handle != kNoHandle && ::close(handle) != 0 ? LastError() : std::error_code();
}

std::error_code FED_FileLayer::GetSize(Handle handle, std::uint64_t& size)
{
  struct stat status
  {};
  if (::fstat(handle, &status) != 0) return LastError();
  size = static_cast<std::uint64_t>(status.st_size);
  return {};
}

std::error_code FED_FileLayer::GetStatus(Handle handle, FED_FileStatus& status)
{
  struct stat found
  {};
  if (::fstat(handle, &found) != 0) return LastError();
  status = ToStatus(found);
  return {};
}

std::error_code FED_FileLayer::GetStatus(const std::filesystem::path& path, FED_FileStatus& status)
{
  status = {};
  struct stat found
  {};
  if (::stat(path.c_str(), &found) != 0) return errno == ENOENT || errno == ENOTDIR ? std::error_code() : LastError();
  status = ToStatus(found);
  return {};
}

std::error_code FED_FileLayer::SetPermissions(Handle handle, std::filesystem::perms permissions)
{
  return ::fchmod(handle, static_cast<mode_t>(permissions) & kPermissions) != 0 ? LastError() : std::error_code();
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

std::error_code FED_FileLayer::BeginFlush([[maybe_unused]] Handle handle, [[maybe_unused]] std::uint64_t offset,
                                          [[maybe_unused]] std::uint64_t count)
{
#if defined(__linux__)
  const auto begin = static_cast<off64_t>(offset);
  const int  begun =
      Retry([&] { return ::sync_file_range(handle, begin, static_cast<off64_t>(count), SYNC_FILE_RANGE_WRITE); });
  // Where there is no such call, Flush() does all of it.
  if (begun < 0 && errno != ENOSYS && errno != EINVAL && errno != EOPNOTSUPP) return LastError();
#endif
  return {};
}

std::error_code FED_FileLayer::Flush(Handle handle)
{
  return Retry([&] { return ::fsync(handle); }) < 0 ? LastError() : std::error_code();
}

std::error_code FED_FileLayer::FlushAll([[maybe_unused]] const std::filesystem::path& folder)
{
#if defined(__linux__)
  const OpenHandle opened(OpenDescriptor(folder, O_RDONLY | O_DIRECTORY, 0));
  if (opened.Get() < 0) return LastError();
  return Retry([&] { return ::syncfs(opened.Get()); }) < 0 ? LastError() : std::error_code();
#else
  return std::make_error_code(std::errc::function_not_supported);
#endif
}

std::error_code FED_FileLayer::Rename(const std::filesystem::path& from, const std::filesystem::path& to)
{
  return std::rename(from.c_str(), to.c_str()) != 0 ? LastError() : std::error_code();
}

std::error_code FED_FileLayer::Link(const std::filesystem::path& from, const std::filesystem::path& to)
{
  return ::link(from.c_str(), to.c_str()) != 0 ? LastError() : std::error_code();
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

// By the system's calls: the standard library's walk ends the process when memory runs out between two entries.
std::error_code FED_FileLayer::List(const std::filesystem::path& folder, std::vector<std::string>& names)
{
  names.clear();
  const auto                                  close = [](DIR* open) { ::closedir(open); };
  const std::unique_ptr<DIR, decltype(close)> open(::opendir(folder.c_str()), close);
  if (open == nullptr) return LastError();
  for (;;) {
    errno                      = 0;
    const struct dirent* found = ::readdir(open.get());
    if (found == nullptr) return errno != 0 ? LastError() : std::error_code();
    const std::string_view name = found->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
}

std::error_code FED_FileLayer::Lock(const std::filesystem::path& path, Handle& handle)
{
  handle = kNoHandle;
  for (;;) {
    OpenHandle opened(OpenDescriptor(path, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, kFilePermissions));
    if (opened.Get() < 0) return LastError();
    FED_FileStatus status;
    if (const std::error_code error = FED_FileLayer::GetStatus(opened.Get(), status)) return error;
    if (status.kind != FED_FileStatus::File) return NotAFile();
    if (const std::error_code error = LockHandle(opened.Get())) return error;
    bool isThere = false;
    if (const std::error_code error = FindWhetherStillThere(opened.Get(), path.c_str(), isThere)) return error;
    if (!isThere) continue;
    handle = opened.Release();
    return {};
  }
}

std::error_code FED_FileLayer::LockFolder(const std::filesystem::path& folder, Handle& handle)
{
  handle = kNoHandle;
  OpenHandle opened(OpenDescriptor(folder, O_RDONLY | O_DIRECTORY, 0));
  if (opened.Get() < 0) return LastError();
  const std::error_code error = LockHandle(opened.Get());
  if (error && !TellsOfNoLocks(error)) return error;
  bool isThere = false;
  if (const std::error_code failure = FindWhetherStillThere(opened.Get(), folder.c_str(), isThere)) return failure;
  if (!isThere) return std::make_error_code(std::errc::no_such_file_or_directory);
  handle = opened.Release();
  return {};
}

std::string FED_FileLayer::FindLockHolder([[maybe_unused]] const std::filesystem::path& path)
{
#if defined(__linux__)
  struct stat found
  {};
  if (::stat(path.c_str(), &found) != 0) return {};
  // A line: "7: FLOCK  ADVISORY  WRITE 812 fd:01:131073 0 EOF", the device in hexadecimal digits.
  std::array<char, 64> place{};
  std::snprintf(place.data(), place.size(), "%02x:%02x:%llu", major(found.st_dev), minor(found.st_dev),
                static_cast<unsigned long long>(found.st_ino));
  std::ifstream locks("/proc/locks");
  for (std::string line; std::getline(locks, line);) {
    std::istringstream words(line);
    std::string        number;
    std::string        sort;
    std::string        strictness;
    std::string        access;
    long               process = 0;
    std::string        where;
    // What waits for a lock has an arrow in front of its sort.
    if (!(words >> number >> sort >> strictness >> access >> process >> where)) continue;
    if (sort != "FLOCK" || process <= 0 || where != place.data()) continue;
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(process) + "/comm") >> std::ws, name);
    return "process " + std::to_string(process) + (name.empty() ? "" : ", " + name);
  }
#endif
  return {};
}
