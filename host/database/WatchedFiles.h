#pragma once

/// @file
/// Ctrl-C, progress and patience while databases are read or written.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>

#include <bundled/FED_LockFileLayer.h>
#include <bundled/FED_ResultDatabase.h>

namespace quilon {

/// How long a writer waits for another one, and what keeps writers off each other.
struct LockPatience
{
  double                                         seconds = 0;      ///< 0: not at all
  std::function<void(const std::string& holder)> onWait  = {};     ///< called once, before it waits; may be empty
  std::optional<FED_LockFileLayer::Sort>         lock    = {};     ///< nothing: as the environment says
  bool                                           breaks  = false;  ///< takes the lock file of another machine
};

/// The operating system's files. Looks, reads and writes stop for an interrupt: a commit that it meets does not happen.
/// An ONF folder whose new state it meets in the tidying up behind the commit keeps that state.
class WatchedFiles final : public FED_LockFileLayer
{
public:
  using Progress = std::function<void(std::uint64_t bytes)>;

  /// @param progress called with the bytes read so far; may be empty
  explicit WatchedFiles(Progress progress = {}, LockPatience patience = {});
  ~WatchedFiles() override;

  /// @param share what part of the allowed memory the database gets: 1 of so many
  /// @return options of a database whose files these are; they outlive it
  FED_ResultDatabaseOptions GetOptions(std::size_t share = 1) noexcept;

  /// @throws Interrupted
  std::error_code Open(const std::filesystem::path& path, Mode mode, Handle& handle) override;
  using FED_FileLayer::GetStatus;
  /// @throws Interrupted
  std::error_code GetStatus(const std::filesystem::path& path, FED_FileStatus& status) override;
  /// @throws Interrupted
  std::error_code FlushAll(const std::filesystem::path& folder) override;
  /// Wait as long as the patience lasts. @throws Interrupted
  std::error_code Lock(const std::filesystem::path& path, Handle& handle) override;
  std::error_code LockFolder(const std::filesystem::path& folder, Handle& handle) override;
  /// Says how to get rid of one that nobody can tell of.
  std::string FindLockHolder(const std::filesystem::path& path) override;
  /// @throws Interrupted
  std::error_code ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                         std::size_t& done) override;
  /// @throws Interrupted
  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count) override;

protected:
  /// @throws Interrupted
  void OnSignal() override;

private:
  template <typename Call>
  std::error_code TryLock(const std::filesystem::path& path, const Call& call);

  Progress      progress_;
  LockPatience  patience_;
  std::uint64_t read_ = 0;
};

}  // namespace quilon
