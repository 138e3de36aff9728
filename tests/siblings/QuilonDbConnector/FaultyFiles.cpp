#include "FaultyFiles.h"

#include <algorithm>
#include <fstream>

#include "QuilonUtilities/FED_Failure.h"

namespace quilon_test {

namespace fs = std::filesystem;

void FaultyFiles::Arm(Fault fault, std::size_t position)
{
  fault_    = fault;
  position_ = position;
  calls_    = 0;
}

void FaultyFiles::Bury()
{
  if (!LosesPower()) return;
  for (const fs::path& path : unflushed_)
    if (fs::exists(path)) std::ofstream(path, std::ios::binary) << std::string(fs::file_size(path) / 2, '\xa5');
  for (; !entries_.empty(); entries_.pop_back()) {
    const auto& [path, former, isRename] = entries_.back();
    if (isRename && fault_ == Fault::PowerLossInDisorder) continue;
    fs::remove(path);
    if (!former.empty()) fs::copy_file(former, path);
  }
}

std::error_code FaultyFiles::Open(const fs::path& path, Mode mode, Handle& handle)
{
  handle            = kNoHandle;
  const auto really = [&] {
    if (mode == Create) NoteEntry(path);
    const std::error_code error = FED_FileLayer::Open(path, mode, handle);
    if (!error) paths_[handle] = path;
    if (!error && mode == Create) unflushed_.insert(path);
    return error;
  };
  if (mode != Create) return Look(really);
  return Do(really, [&] {
    static_cast<void>(really());
    Close(handle);
    handle = kNoHandle;
  });
}

void FaultyFiles::Close(Handle handle) noexcept
{
  paths_.erase(handle);
  FED_FileLayer::Close(handle);
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
    unflushed_.insert(paths_.at(handle));
    return FED_FileLayer::WriteAt(handle, offset, bytes, size);
  };
  return Do([&] { return write(count); }, [&] { static_cast<void>(write(count / 2)); });
}

std::error_code FaultyFiles::Flush(Handle handle)
{
  return Change([&] {
    unflushed_.erase(paths_.at(handle));
    return std::error_code();
  });
}

std::error_code FaultyFiles::Rename(const fs::path& from, const fs::path& to)
{
  return Change([&] {
    NoteEntry(to, true);
    NoteEntry(from, true);
    if (unflushed_.erase(from) != 0) unflushed_.insert(to);
    return FED_FileLayer::Rename(from, to);
  });
}

std::error_code FaultyFiles::Remove(const fs::path& path)
{
  return Change([&] {
    NoteEntry(path);
    return FED_FileLayer::Remove(path);
  });
}

std::error_code FaultyFiles::MakeFolder(const fs::path& folder, bool& made)
{
  return Change([&] { return FED_FileLayer::MakeFolder(folder, made); });
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

// HDF5 may fail before it has made a file, with half of one made, or may seem to when all is done.
void FaultyFiles::MakeSkeleton(const fs::path& path, const std::function<void()>& make)
{
  const auto really = [&] {
    NoteEntry(path);
    make();
    unflushed_.insert(path);
    return std::error_code();
  };
  const auto half = [&] {
    really();
    fs::resize_file(path, fs::file_size(path) / 2);
  };
  if (Do(really, half)) throw FED_Failure(path.string() + ": HDF5 fails", "|%P|tests|FaultyFiles");
}

/// @param part what of the call happens when it fails behind its beginning
std::error_code FaultyFiles::Do(const Call& whole, const std::function<void()>& part)
{
  if (isDead_) return std::make_error_code(std::errc::io_error);
  ++calls_;
  if (calls_ != position_) return whole();
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

void FaultyFiles::NoteEntry(const fs::path& path, bool isRename)
{
  fs::path former;
  if (fs::is_regular_file(path)) {
    former = copies_ / std::to_string(++numCopies_);
    fs::copy_file(path, former);
  }
  entries_.push_back({path, former, isRename});
}

}  // namespace quilon_test
