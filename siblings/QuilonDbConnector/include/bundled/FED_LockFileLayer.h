#pragma once

/// @file
/// Locks for file systems that have none.

#include "quilon_language.h"

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>

#include "bundled/FED_FileLayer.h"
#include "quilon_contract_export.h"

/// The operating system's files, whose locks are, where asked for, files as well: beside the file that is locked stands
/// `NAME.holder` for as long as the lock is held, in a folder that is locked `lock.holder`, and tells host, process and
/// since when. That keeps writers of several machines off each other on network file systems without working locks, as
/// long as all of them ask for it; the system's lock is taken too, where there is one. Who asks for the system's lock
/// alone respects such a file.
///
/// A file whose process is gone, on this machine, counts for nothing. Of another machine nobody can tell, and of this
/// one neither where the system does not say who runs: such a lock ends when its holder removes it, or is broken by
/// somebody who knows.
///
/// Threads: may be used by several.
class QUILON_DB_CONNECTOR_API FED_LockFileLayer : public FED_FileLayer
{
public:
  enum Sort : int
  {
    SystemLock,
    LockFile
  };

  /// @param sort   nothing: what the environment variable QUILON_LOCK says when a lock is taken
  /// @param breaks take the lock of another machine, too
  explicit FED_LockFileLayer(std::optional<Sort> sort = std::nullopt, bool breaks = false);
  ~FED_LockFileLayer() override;

  /// @return what QUILON_LOCK says: "file", or "system" or nothing
  /// @throws FED_Failure when it says something else
  static Sort GetSortOfEnvironment();

  /// @return the path of the file that stands for the lock of a file
  static std::filesystem::path GetHolderPath(const std::filesystem::path& path);
  /// @return that for the lock of a folder, in which it stands
  static std::filesystem::path GetFolderHolderPath(const std::filesystem::path& folder);
  /// @return whether it is the name of a file that stands for the lock of a folder, or of one beside it while locks are
  ///         taken: who asks what a folder holds passes over it
  static bool IsFolderHolderName(const std::string& name);

  /// @param path a file or folder that is locked
  /// @return whether the lock is that of another machine, or of nobody knows whom: only its end or a break frees it
  bool IsHeldElsewhere(const std::filesystem::path& path);

  std::error_code Close(Handle handle) noexcept override;
  /// @throws FED_Failure when QUILON_LOCK is asked and says nothing that is known
  std::error_code Lock(const std::filesystem::path& path, Handle& handle) override;
  /// As Lock().
  std::error_code LockFolder(const std::filesystem::path& folder, Handle& handle) override;
  std::string     FindLockHolder(const std::filesystem::path& path) override;

protected:
  /// The operating system's lock. @return as Lock()
  virtual std::error_code LockBySystem(const std::filesystem::path& path, Handle& handle);

private:
  struct Held
  {
    std::filesystem::path holder;
    std::string           text;
  };

  using LockSystem = std::function<std::error_code(Handle& handle)>;

  std::error_code TakeLock(const std::filesystem::path& holder, const LockSystem& lockSystem, Handle& handle);
  std::error_code MakeHolder(const std::filesystem::path& holder, Handle& handle);
  std::error_code FreeOfHolder(const std::filesystem::path& holder);
  std::error_code ReadHolder(const std::filesystem::path& holder, std::string& text);
  bool            ReadHolderOf(const std::filesystem::path& path, std::filesystem::path& holder, std::string& text);
  std::error_code WriteOwn(const std::filesystem::path& path, const std::string& text);
  std::error_code TryLink(const std::filesystem::path& from, const std::filesystem::path& to);
  std::error_code TakeHolder(const std::filesystem::path& holder, const std::filesystem::path& own);
  std::error_code RemoveGone(const std::filesystem::path& file, const std::filesystem::path& own,
                             const std::string& gone, int depth);
  void            RemoveLeft(const std::filesystem::path& holder);
  bool            CountsForNothing(const std::string& text) const;

  std::optional<Sort>    sort_;
  bool                   breaks_;
  std::mutex             mutex_;  // of what is held
  std::map<Handle, Held> held_;
};
