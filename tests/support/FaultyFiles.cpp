#include "FaultyFiles.h"

#include <algorithm>
#include <fstream>
#include <utility>

namespace quilon_test {

namespace fs = std::filesystem;

void FaultyFiles::Arm(Fault fault, std::size_t position)
{
  fault_    = fault;
  position_ = position;
  calls_    = 0;
  isOver_   = false;
}

void FaultyFiles::Bury()
{
  if (!LosesPower()) return;
  for (const auto& [path, flushed] : unflushed_) {
    if (!fs::exists(path)) continue;
    // What was appended since is garbage to its half, and missing behind.
    const auto lost = static_cast<std::size_t>(fs::file_size(path) - flushed);
    fs::resize_file(path, flushed);
    std::ofstream(path, std::ios::binary | std::ios::app) << std::string(lost / 2, '\xa5');
  }
  for (; !entries_.empty(); entries_.pop_back()) {
    const EntryChange& entry = entries_.back();
    if (IsKept(entry)) continue;
    fs::remove_all(entry.path);
    if (!entry.former.empty()) fs::copy_file(entry.former, entry.path);
  }
}

std::error_code FaultyFiles::Open(const fs::path& path, Mode mode, Handle& handle)
{
  handle            = kNoHandle;
  const bool isNew  = mode == Create || mode == CreatePrivate;
  const auto really = [&] {
    if (isNew) NoteEntry(path, EntryChange::Creation);
    const std::error_code error = FED_FileLayer::Open(path, mode, handle);
    if (!error) paths_[handle] = path;
    if (!error && isNew) unflushed_[path] = 0;
    return error;
  };
  if (!isNew) return Look(really);
  return Do(really, [&] {
    static_cast<void>(really());
    paths_.erase(handle);
    static_cast<void>(FED_FileLayer::Close(handle));
    handle = kNoHandle;
  });
}

std::error_code FaultyFiles::Close(Handle handle) noexcept
{
  const auto path         = paths_.extract(handle);
  const bool hasUnflushed = !path.empty() && unflushed_.count(path.mapped()) != 0;
  const auto error        = FED_FileLayer::Close(handle);
  if (!hasUnflushed) return error;
  return Look([&] { return error; });
}

std::error_code FaultyFiles::GetSize(Handle handle, std::uint64_t& size)
{
  return Look([&] { return FED_FileLayer::GetSize(handle, size); });
}

std::error_code FaultyFiles::ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                                    std::size_t& done)
{
  done = 0;
  return Look([&] { return FED_FileLayer::ReadAt(handle, offset, bytes, count, done); });
}

std::error_code FaultyFiles::WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count)
{
  const auto write = [&](std::size_t size) {
    NoteWrite(paths_.at(handle));
    return FED_FileLayer::WriteAt(handle, offset, bytes, size);
  };
  return Do([&] { return write(count); }, [&] { static_cast<void>(write(count / 2)); });
}

std::error_code FaultyFiles::BeginFlush(Handle, std::uint64_t, std::uint64_t)
{
  return Look([] { return std::error_code(); });
}

std::error_code FaultyFiles::Flush(Handle handle)
{
  return Change([&] {
    unflushed_.erase(paths_.at(handle));
    return std::error_code();
  });
}

// The entries of all folders as well.
std::error_code FaultyFiles::FlushAll(const fs::path&)
{
  return Change([&] {
    unflushed_.clear();
    entries_.clear();
    return std::error_code();
  });
}

std::error_code FaultyFiles::GetStatus(Handle handle, FED_FileStatus& status)
{
  return Look([&] { return FED_FileLayer::GetStatus(handle, status); });
}

std::error_code FaultyFiles::GetStatus(const fs::path& path, FED_FileStatus& status)
{
  return Look([&] { return FED_FileLayer::GetStatus(path, status); });
}

std::error_code FaultyFiles::SetPermissions(Handle handle, fs::perms permissions)
{
  return Change([&] { return FED_FileLayer::SetPermissions(handle, permissions); });
}

std::error_code FaultyFiles::Rename(const fs::path& from, const fs::path& to)
{
  return Change([&] {
    NoteEntry(to, EntryChange::Renaming);
    NoteEntry(from, EntryChange::Renaming);
    unflushed_.erase(to);
    if (auto bytes = unflushed_.extract(from)) {
      bytes.key() = to;
      unflushed_.insert(std::move(bytes));
    }
    return FED_FileLayer::Rename(from, to);
  });
}

std::error_code FaultyFiles::Link(const fs::path& from, const fs::path& to)
{
  return Change([&] {
    NoteEntry(to, EntryChange::Creation);
    return FED_FileLayer::Link(from, to);
  });
}

std::error_code FaultyFiles::Remove(const fs::path& path)
{
  return Change([&] {
    NoteEntry(path, EntryChange::Removal);
    return FED_FileLayer::Remove(path);
  });
}

std::error_code FaultyFiles::MakeFolder(const fs::path& folder, bool& made)
{
  return Change([&] {
    const std::error_code error = FED_FileLayer::MakeFolder(folder, made);
    if (!error && made) entries_.push_back({folder, {}, EntryChange::Creation});
    return error;
  });
}

std::error_code FaultyFiles::FlushFolder(const fs::path& folder)
{
  return Change([&] {
    std::erase_if(entries_, [&](const EntryChange& entry) { return entry.path.parent_path() == folder; });
    return std::error_code();
  });
}

std::error_code FaultyFiles::List(const fs::path& folder, std::vector<std::string>& names)
{
  return Look([&] { return FED_FileLayer::List(folder, names); });
}

std::error_code FaultyFiles::Lock(const fs::path& path, Handle& handle)
{
  handle = kNoHandle;
  return Look([&] { return FED_FileLayer::Lock(path, handle); });
}

std::error_code FaultyFiles::LockFolder(const fs::path& folder, Handle& handle)
{
  handle = kNoHandle;
  return Look([&] { return FED_FileLayer::LockFolder(folder, handle); });
}

/// @param part what of the call happens when it fails behind its beginning
std::error_code FaultyFiles::Do(const Call& whole, const std::function<void()>& part)
{
  if (isDead_) return std::make_error_code(std::errc::io_error);
  ++calls_;
  const bool isInOutage = fault_ == Fault::Outage && HasFailed();
  if (isOver_ || (calls_ != position_ && !isInOutage)) return whole();
  isDead_ = fault_ == Fault::Death || fault_ == Fault::DeathBehind || LosesPower();
  if (fault_ == Fault::ShortWrite || fault_ == Fault::DeathBehind || LosesPower()) part();
  const bool isFull = fault_ == Fault::DiskFull || fault_ == Fault::ShortWrite;
  return std::make_error_code(isFull ? std::errc::no_space_on_device : std::errc::io_error);
}

std::error_code FaultyFiles::Change(const Call& change)
{
  return Do(change, [&] { static_cast<void>(change()); });
}

std::error_code FaultyFiles::Look(const Call& call)
{
  return Do(call, [] {});
}

bool FaultyFiles::LosesPower() const noexcept
{
  return fault_ == Fault::PowerLoss || fault_ == Fault::PowerLossButRenames || fault_ == Fault::PowerLossButRemovals;
}

bool FaultyFiles::IsKept(const EntryChange& entry) const noexcept
{
  return (entry.kind == EntryChange::Renaming && fault_ == Fault::PowerLossButRenames) ||
         (entry.kind == EntryChange::Removal && fault_ == Fault::PowerLossButRemovals);
}

void FaultyFiles::NoteWrite(const fs::path& path) { unflushed_.emplace(path, fs::file_size(path)); }

void FaultyFiles::NoteEntry(const fs::path& path, EntryChange::Kind kind)
{
  fs::path former;
  if (fs::is_regular_file(path)) {
    former = copies_ / std::to_string(++numCopies_);
    fs::copy_file(path, former);
  }
  entries_.push_back({path, former, kind});
}

}  // namespace quilon_test
