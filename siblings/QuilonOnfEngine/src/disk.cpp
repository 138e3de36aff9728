#include "disk.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

#include <fcntl.h>
#if defined(_WIN32)
#  include <io.h>
#else
#  include <sys/file.h>
#  include <sys/stat.h>
#  include <unistd.h>
#endif

#include "QuilonUtilities/FED_Failure.h"
#include "text_cursor.h"

namespace {

[[noreturn]] void Fail(const std::filesystem::path& path, const char* what, const std::error_code& error)
{
  throw FED_Failure(DisplayPath(path) + ": " + what + ": " + error.message(), "|%P|QuilonOnfEngine|disk");
}

[[noreturn]] void FailErrno(const std::filesystem::path& path, const char* what)
{
  Fail(path, what, std::error_code(errno, std::generic_category()));
}

/// @param harmless an error that is none; 0 when there is no such error
void Sync(const std::filesystem::path& path, int harmless)
{
#if defined(_WIN32)
  const int descriptor = _wopen(path.c_str(), _O_RDWR | _O_BINARY);
  if (descriptor < 0) FailErrno(path, "cannot be opened");
  const int result = _commit(descriptor);
  const int reason = errno;
  _close(descriptor);
#else
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) FailErrno(path, "cannot be opened");
  const int result = fsync(descriptor);
  const int reason = errno;
  close(descriptor);
#endif
  if (result != 0 && reason != harmless)
    Fail(path, "cannot be brought to the disk", std::error_code(reason, std::generic_category()));
}

class PlainFile : public OutputFile
{
public:
  explicit PlainFile(const std::filesystem::path& path) : path_(path)
  {
#if defined(_WIN32)
    file_ = _wfopen(path.c_str(), L"wb");
#else
    file_ = std::fopen(path.c_str(), "wb");
#endif
    if (file_ == nullptr) FailErrno(path_, "cannot be created");
    // The writers hand over large pieces; a second buffer would only copy them once more.
    std::setvbuf(file_, nullptr, _IONBF, 0);
  }
  PlainFile(const PlainFile&)            = delete;
  PlainFile& operator=(const PlainFile&) = delete;
  ~PlainFile() override
  {
    if (file_ != nullptr) std::fclose(file_);
  }

  void Write(const char* data, std::size_t size) override
  {
    if (std::fwrite(data, 1, size, file_) != size) FailErrno(path_, "cannot be written");
  }

  void Close() override
  {
    std::FILE* const file = file_;
    file_                 = nullptr;
    if (std::fclose(file) != 0) FailErrno(path_, "cannot be closed");
  }

private:
  std::filesystem::path path_;
  std::FILE*            file_ = nullptr;
};

}  // namespace

OutputFile::~OutputFile() = default;

#if defined(_WIN32)
FolderLock::FolderLock(const std::filesystem::path& /*folder*/) {}

FolderLock::~FolderLock() = default;
#else
FolderLock::FolderLock(const std::filesystem::path& folder)
    : descriptor_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
  if (descriptor_ < 0) FailErrno(folder, "cannot be opened");
  // Any other error tells of a file system without locks.
  while (flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) continue;
}

FolderLock::~FolderLock() { close(descriptor_); }
#endif

Disk::~Disk() = default;

bool Disk::CreateFolder(const std::filesystem::path& folder)
{
  std::error_code error;
  const bool      made = std::filesystem::create_directories(folder, error);
  if (error) Fail(folder, "cannot be created", error);
  return made;
}

std::unique_ptr<OutputFile> Disk::CreateFile(const std::filesystem::path& path)
{
  return std::make_unique<PlainFile>(path);
}

void Disk::Rename(const std::filesystem::path& from, const std::filesystem::path& to)
{
  std::error_code error;
  std::filesystem::rename(from, to, error);
  if (error) Fail(from, "cannot be renamed", error);
}

void Disk::SyncFile(const std::filesystem::path& path) { Sync(path, 0); }

void Disk::SyncFolder([[maybe_unused]] const std::filesystem::path& folder)
{
#if !defined(_WIN32)
  // Some file systems cannot flush a folder and say EINVAL; there the rename itself is all there is.
  Sync(folder, EINVAL);
#endif
}

void Disk::Remove(const std::filesystem::path& path) noexcept
{
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
}

std::optional<FileStamp> FindFileStamp(const std::filesystem::path& path)
{
#if !defined(_WIN32)
  struct stat status;
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileStamp{static_cast<std::uintmax_t>(status.st_size), static_cast<std::uintmax_t>(status.st_ino),
                   std::intmax_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec};
#else
  std::error_code error;
  const auto time = std::filesystem::last_write_time(path, error);
  const auto size = error ? 0 : std::filesystem::file_size(path, error);
  if (error) return std::nullopt;
  return FileStamp{size, 0, static_cast<std::intmax_t>(time.time_since_epoch().count())};
#endif
}
