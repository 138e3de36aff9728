#include "bundled/StoreFile.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Checksum.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|StoreFile";

}  // namespace

void ThrowFileFailure(const std::filesystem::path& path, const std::string& text)
{
  throw FED_Failure(path.string() + ": " + text, kTag);
}

void RequireSuccess(const std::error_code& error, const std::filesystem::path& path, const char* action)
{
  if (error) ThrowFileFailure(path, std::string("cannot ") + action + ": " + error.message());
}

void ThrowLocked(FED_FileLayer& files, const std::filesystem::path& path, const std::filesystem::path& folder,
                 const std::string& text)
{
  const std::string holder = files.FindLockHolder(path);
  ThrowFileFailure(folder, holder.empty() ? text : text + " (" + holder + ')');
}

void ReplaceFile(FED_FileLayer& files, const std::filesystem::path& from, const std::filesystem::path& to,
                 bool& isInDoubt)
{
  isInDoubt = false;
  FED_FileStatus finished;
  RequireSuccess(files.GetStatus(from, finished), from, "look at");
  isInDoubt                   = true;
  const std::error_code error = files.Rename(from, to);
  if (!error) return;
  FED_FileStatus now;
  if (!files.GetStatus(from, now) && now.kind == FED_FileStatus::File && now.number == finished.number)
    isInDoubt = false;
  ThrowFileFailure(to, "cannot replace: " + error.message() + (isInDoubt ? kWritingMayBeInForce : ""));
}

StoreFile::StoreFile(FED_FileLayer& files, std::filesystem::path path, FED_FileLayer::Mode mode)
    : files_(&files), path_(std::move(path))
{
  const bool isThere = mode == FED_FileLayer::Read || mode == FED_FileLayer::Change;
  RequireSuccess(files.Open(path_, mode, handle_), path_, isThere ? "open" : "create");
}

StoreFile::StoreFile(FED_FileLayer& files, std::filesystem::path path, const FED_FileStatus& replaced)
    : StoreFile(files, std::move(path),
                replaced.kind == FED_FileStatus::File ? FED_FileLayer::CreatePrivate : FED_FileLayer::Create)
{
  if (replaced.kind == FED_FileStatus::File)
    RequireSuccess(files.SetPermissions(handle_, replaced.permissions), path_, "set the permissions");
}

StoreFile::StoreFile(FED_FileLayer& files, std::filesystem::path path, FED_FileLayer::Handle handle) noexcept
    : files_(&files), path_(std::move(path)), handle_(handle)
{}

StoreFile::StoreFile(StoreFile&& other) noexcept
    : files_(other.files_),
      path_(std::move(other.path_)),
      handle_(std::exchange(other.handle_, FED_FileLayer::kNoHandle))
{}

StoreFile& StoreFile::operator=(StoreFile&& other) noexcept
{
  if (this == &other) return *this;
  static_cast<void>(Release());
  files_  = other.files_;
  path_   = std::move(other.path_);
  handle_ = std::exchange(other.handle_, FED_FileLayer::kNoHandle);
  return *this;
}

StoreFile::~StoreFile() { static_cast<void>(Release()); }

std::uint64_t StoreFile::GetSize() const
{
  std::uint64_t size = 0;
  RequireSuccess(files_->GetSize(handle_, size), path_, "tell the size");
  return size;
}

FED_FileStatus StoreFile::GetStatus() const
{
  FED_FileStatus status;
  RequireSuccess(files_->GetStatus(handle_, status), path_, "look at");
  return status;
}

void StoreFile::ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const
{
  std::size_t done = 0;
  RequireSuccess(files_->ReadAt(handle_, offset, bytes, count, done), path_, "read");
  if (done != count)
    ThrowFileFailure(path_, "the file ends at byte " + std::to_string(offset + done) + ", expected " +
                                std::to_string(count) + " bytes from " + std::to_string(offset));
}

void StoreFile::WriteAt(std::uint64_t offset, const void* bytes, std::size_t count)
{
  RequireSuccess(files_->WriteAt(handle_, offset, bytes, count), path_, "write");
}

void StoreFile::BeginFlush(std::uint64_t offset, std::uint64_t count)
{
  RequireSuccess(files_->BeginFlush(handle_, offset, count), path_, "flush");
}

void StoreFile::Flush() { RequireSuccess(files_->Flush(handle_), path_, "flush"); }

void StoreFile::Close() { RequireSuccess(Release(), path_, "close"); }

std::error_code StoreFile::Release() noexcept
{
  if (handle_ == FED_FileLayer::kNoHandle) return {};
  return files_->Close(std::exchange(handle_, FED_FileLayer::kNoHandle));
}

std::string FormatChecksumOf(const StoreFile& file, const std::function<void(std::uint64_t)>& onBytes)
{
  constexpr std::size_t kPiece = std::size_t{1} << 20;
  const std::uint64_t   size   = file.GetSize();
  std::vector<char>     piece(static_cast<std::size_t>(std::min<std::uint64_t>(kPiece, size)));
  RunningChecksum       checksum;
  for (std::uint64_t at = 0; at < size;) {
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(kPiece, size - at));
    file.ReadAt(at, piece.data(), count);
    checksum.Add(piece.data(), count);
    at += count;
    if (onBytes) onBytes(at);
  }
  return FormatChecksum(checksum.Get());
}
