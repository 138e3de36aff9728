#pragma once

/// @file
/// How databases on disk reach their files.

#include "quilon_language.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "quilon_contract_export.h"

/// What stands at a path, or behind a handle.
struct FED_FileStatus
{
  enum Kind : int
  {
    Nothing,
    File,  ///< a plain file
    Folder,
    Other  ///< a pipe, a device, a socket
  };

  Kind                   kind        = Nothing;
  std::uint64_t          size        = 0;                             ///< bytes
  std::uint64_t          device      = 0;                             ///< with the number: which file it is
  std::uint64_t          number      = 0;                             ///< no two files of a device share it
  std::int64_t           changed     = 0;                             ///< when the bytes changed last, nanoseconds
  std::filesystem::perms permissions = std::filesystem::perms::none;  ///< reading, writing and executing alone
};

/// The operating system's files, one step a call. Every look at the disk that a database takes, and every byte, passes
/// through it; derive from it to watch or to break single steps.
///
/// Errors:  every operation answers an error code that is false on success. After an error any part of a write may have
///          reached the file. That something is not there is an error only where it says so.
/// Threads: this class has no state and may be used by several; what derives from it need not.
class QUILON_DB_CONNECTOR_API FED_FileLayer
{
public:
  using Handle = int;

  static constexpr Handle kNoHandle = -1;

  enum Mode : int
  {
    Read,           ///< a plain file that is there; anything else is NotAFile() or std::errc::is_a_directory
    Create,         ///< for reading and writing: a new file. What is there goes first, and no link is followed
    CreatePrivate,  ///< likewise, for nobody else to open before SetPermissions()
    Change          ///< for reading and writing: otherwise as Read
  };

  /// @return the error of opening what is there and is no plain file, such as a pipe: nobody waits for its other end
  static std::error_code NotAFile() noexcept;

  /// @return whether it is an error of locking by which a file system says that it has no locks
  static bool TellsOfNoLocks(const std::error_code& error) noexcept;

  FED_FileLayer()                                = default;
  FED_FileLayer(const FED_FileLayer&)            = delete;
  FED_FileLayer& operator=(const FED_FileLayer&) = delete;
  virtual ~FED_FileLayer();

  /// @param handle receives the open file, to be closed by the caller; kNoHandle after an error
  [[nodiscard]] virtual std::error_code Open(const std::filesystem::path& path, Mode mode, Handle& handle);
  /// The handle is gone whatever this answers.
  /// @return an error when bytes that were written may be lost: file systems over a network find that out only now
  virtual std::error_code               Close(Handle handle) noexcept;
  [[nodiscard]] virtual std::error_code GetSize(Handle handle, std::uint64_t& size);
  [[nodiscard]] virtual std::error_code GetStatus(Handle handle, FED_FileStatus& status);
  /// Follows links. That nothing is there is no error: the kind says it.
  [[nodiscard]] virtual std::error_code GetStatus(const std::filesystem::path& path, FED_FileStatus& status);
  [[nodiscard]] virtual std::error_code SetPermissions(Handle handle, std::filesystem::perms permissions);

  /// @param done receives the bytes read: less than count only where the file ends
  [[nodiscard]] virtual std::error_code ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                                               std::size_t& done);
  /// Writes all bytes; the file grows as needed.
  [[nodiscard]] virtual std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes,
                                                std::size_t count);
  /// Has bytes that were written begin their way to the disk, so that Flush() waits less. Only that promises anything.
  [[nodiscard]] virtual std::error_code BeginFlush(Handle handle, std::uint64_t offset, std::uint64_t count);
  /// Returns when the file's bytes are on the disk.
  [[nodiscard]] virtual std::error_code Flush(Handle handle);
  /// Returns when all files of the folder are on the disk, its entries too. It takes as long as one Flush() or two for
  /// any number of files, but waits for what others wrote to the same disk as well.
  /// @return std::errc::function_not_supported where there is no such call
  [[nodiscard]] virtual std::error_code FlushAll(const std::filesystem::path& folder);

  /// Replaces any file at the target, in one step.
  [[nodiscard]] virtual std::error_code Rename(const std::filesystem::path& from, const std::filesystem::path& to);
  /// Gives a file another name, in a folder of the same file system; nothing may have that name. Where there are no
  /// such names, or the file must not have one, that is an error as well.
  [[nodiscard]] virtual std::error_code Link(const std::filesystem::path& from, const std::filesystem::path& to);
  /// Removes a file or an empty folder; one that is not there is no error.
  [[nodiscard]] virtual std::error_code Remove(const std::filesystem::path& path);

  /// Makes a folder; one that is there is no error.
  /// @param made receives whether it was not there before
  [[nodiscard]] virtual std::error_code MakeFolder(const std::filesystem::path& folder, bool& made);
  /// Returns when the folder's entries are on the disk.
  [[nodiscard]] virtual std::error_code FlushFolder(const std::filesystem::path& folder);
  /// @param names receives the entries' names, in no order
  [[nodiscard]] virtual std::error_code List(const std::filesystem::path& folder, std::vector<std::string>& names);

  /// Makes the file if need be, without following a link, and locks it. The lock ends with Close() or with the process.
  /// @param handle receives the lock; kNoHandle after an error. When another holds the lock the error is
  ///               std::errc::resource_unavailable_try_again.
  [[nodiscard]] virtual std::error_code Lock(const std::filesystem::path& path, Handle& handle);
  /// Locks a folder that is there, likewise. Where the system has no locks for folders it keeps nobody off.
  [[nodiscard]] virtual std::error_code LockFolder(const std::filesystem::path& folder, Handle& handle);
  /// @return who holds the lock on a file or folder, as "process 812, quilon"; empty where the system does not tell
  virtual std::string FindLockHolder(const std::filesystem::path& path);

protected:
  /// Called when a signal has come while a file was being opened; the call is then made again. What this throws passes
  /// to the caller.
  virtual void OnSignal();

private:
  int OpenDescriptor(const std::filesystem::path& path, int flags, unsigned mode);
};
