#pragma once

/// @file
/// A disk that fails on demand.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <system_error>
#include <vector>

#include "bundled/FED_FileLayer.h"
#include "TempFolder.h"

namespace quilon_test {

/// What happens to the call that fails.
enum class Fault
{
  InputOutputError,     ///< nothing of the call happens
  DiskFull,             ///< likewise, with another error
  Outage,               ///< as InputOutputError, and so do all calls behind it until LetPass()
  ShortWrite,           ///< half of a write happens, or all of another change, and then an error is told all the same
  Death,                ///< the process dies before the call
  DeathBehind,          ///< the process dies with half of a write done, or behind any other change
  PowerLoss,            ///< as DeathBehind, and what was not flushed is lost: bytes of files behind those that they had
                        ///< when they were last flushed, and entries of folders
  PowerLossButRenames,  ///< as PowerLoss, but names that were changed are changed: disks need not keep an order
  PowerLossButRemovals  ///< as PowerLoss, but what was removed is gone
};

/// Counts the calls that can fail, and lets one of them fail. After a death all calls are without effect: what the
/// process still does is not done. Nothing is really flushed; what was told to be is known.
class FaultyFiles : public FED_FileLayer
{
public:
  /// Lets a call from now on fail.
  /// @param position of the call, from 1; 0 lets none fail
  void Arm(Fault fault, std::size_t position);

  /// The fault is over: no call fails any more.
  void LetPass() noexcept { isOver_ = true; }

  /// @return calls since Arm()
  std::size_t GetCalls() const noexcept { return calls_; }
  bool        HasFailed() const noexcept { return position_ != 0 && calls_ >= position_; }
  bool        IsDead() const noexcept { return isDead_; }

  /// Leaves the files as they are after the death, or after a loss of power now. Call it when all objects of the
  /// process are gone.
  void Bury();

  std::error_code Open(const std::filesystem::path& path, Mode mode, Handle& handle) override;
  /// Only the closing of a file with bytes that were not flushed can fail.
  std::error_code Close(Handle handle) noexcept override;
  std::error_code GetSize(Handle handle, std::uint64_t& size) override;
  std::error_code ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                         std::size_t& done) override;
  std::error_code GetStatus(Handle handle, FED_FileStatus& status) override;
  std::error_code GetStatus(const std::filesystem::path& path, FED_FileStatus& status) override;
  std::error_code SetPermissions(Handle handle, std::filesystem::perms permissions) override;
  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count) override;
  std::error_code BeginFlush(Handle handle, std::uint64_t offset, std::uint64_t count) override;
  std::error_code Flush(Handle handle) override;
  std::error_code FlushAll(const std::filesystem::path& folder) override;
  std::error_code Rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  std::error_code Link(const std::filesystem::path& from, const std::filesystem::path& to) override;
  std::error_code Remove(const std::filesystem::path& path) override;
  std::error_code MakeFolder(const std::filesystem::path& folder, bool& made) override;
  std::error_code FlushFolder(const std::filesystem::path& folder) override;
  std::error_code List(const std::filesystem::path& folder, std::vector<std::string>& names) override;
  std::error_code Lock(const std::filesystem::path& path, Handle& handle) override;
  std::error_code LockFolder(const std::filesystem::path& folder, Handle& handle) override;

private:
  using Call = std::function<std::error_code()>;

  /// A change of a folder's entries that is not on the disk yet.
  struct EntryChange
  {
    std::filesystem::path path;
    std::filesystem::path former;  // a copy of the file that was there; empty when there was nothing
    enum Kind : int
    {
      Creation,
      Renaming,
      Removal
    } kind = Creation;
  };

  std::error_code Do(const Call& whole, const std::function<void()>& part);
  std::error_code Change(const Call& change);
  std::error_code Look(const Call& call);
  bool            LosesPower() const noexcept;
  bool            IsKept(const EntryChange& entry) const noexcept;
  void            NoteWrite(const std::filesystem::path& path);
  void            NoteEntry(const std::filesystem::path& path, EntryChange::Kind kind);

  Fault                                           fault_    = Fault::InputOutputError;
  std::size_t                                     position_ = 0;
  std::size_t                                     calls_    = 0;
  bool                                            isDead_   = false;
  bool                                            isOver_   = false;
  std::map<Handle, std::filesystem::path>         paths_;      // of open files
  std::map<std::filesystem::path, std::uintmax_t> unflushed_;  // files with bytes that are not on the disk, and how
                                                               // many bytes they had when they were last flushed
  std::vector<EntryChange> entries_;                           // in their order
  TempFolder               copies_;
  std::size_t              numCopies_ = 0;
};

}  // namespace quilon_test
