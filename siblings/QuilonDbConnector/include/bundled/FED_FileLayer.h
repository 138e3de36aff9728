#pragma once

/// @file
/// How a database on disk reaches its files.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "quilon_contract_export.h"

/// The operating system's files, one step a call. Every byte of a database on disk passes through it; derive from it to
/// watch or to break single steps.
///
/// Errors:  every operation answers an error code that is false on success. After an error any part of a write may have
///          reached the file.
/// Threads: one at a time.
class QUILON_DB_CONNECTOR_API FED_FileLayer
{
public:
  using Handle = int;

  static constexpr Handle kNoHandle = -1;

  enum Mode : int
  {
    Read,   ///< a file that is there
    Create  ///< for reading and writing; empty, whether it was there or not
  };

  FED_FileLayer()                                = default;
  FED_FileLayer(const FED_FileLayer&)            = delete;
  FED_FileLayer& operator=(const FED_FileLayer&) = delete;
  virtual ~FED_FileLayer();

  /// @param handle receives the open file, to be closed by the caller; kNoHandle after an error
  [[nodiscard]] virtual std::error_code Open(const std::filesystem::path& path, Mode mode, Handle& handle);
  virtual void                          Close(Handle handle) noexcept;
  [[nodiscard]] virtual std::error_code GetSize(Handle handle, std::uint64_t& size);

  /// @param done receives the bytes read: less than count only where the file ends
  [[nodiscard]] virtual std::error_code ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                                               std::size_t& done);
  /// Writes all bytes; the file grows as needed.
  [[nodiscard]] virtual std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes,
                                                std::size_t count);
  /// Returns when the file's bytes are on the disk.
  [[nodiscard]] virtual std::error_code Flush(Handle handle);

  /// Replaces any file at the target, in one step.
  [[nodiscard]] virtual std::error_code Rename(const std::filesystem::path& from, const std::filesystem::path& to);
  /// Removes a file or an empty folder; one that is not there is no error.
  [[nodiscard]] virtual std::error_code Remove(const std::filesystem::path& path);

  /// Makes a folder; one that is there is no error.
  /// @param made receives whether it was not there before
  [[nodiscard]] virtual std::error_code MakeFolder(const std::filesystem::path& folder, bool& made);
  /// Returns when the folder's entries are on the disk.
  [[nodiscard]] virtual std::error_code FlushFolder(const std::filesystem::path& folder);
  /// @param names receives the entries' names, in no order
  [[nodiscard]] virtual std::error_code List(const std::filesystem::path& folder, std::vector<std::string>& names);

  /// Makes the file if need be and locks it. The lock ends with Close() or with the process.
  /// @param handle receives the lock; kNoHandle after an error. When another holds the lock the error is
  ///               std::errc::resource_unavailable_try_again.
  [[nodiscard]] virtual std::error_code Lock(const std::filesystem::path& path, Handle& handle);
};
