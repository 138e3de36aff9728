#pragma once

/// @file
/// Files of databases on disk, with failures that name them.

#include "quilon_language.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

#include "bundled/FED_FileLayer.h"
#include "quilon_contract_export.h"

/// @throws FED_Failure "<path>: <text>"
[[noreturn]] QUILON_DB_CONNECTOR_API void ThrowFileFailure(const std::filesystem::path& path, const std::string& text);

/// @param action "open" and the like
/// @throws FED_Failure "<path>: cannot <action>: <error>" when there is an error
QUILON_DB_CONNECTOR_API void RequireSuccess(const std::error_code& error, const std::filesystem::path& path,
                                            const char* action);

/// @param path   what could not be locked because another holds the lock
/// @param folder named in the failure
/// @param text   "another writer has the database open" and the like
/// @throws FED_Failure "<folder>: <text> (<who, where the system tells>)"
[[noreturn]] QUILON_DB_CONNECTOR_API void ThrowLocked(FED_FileLayer& files, const std::filesystem::path& path,
                                                      const std::filesystem::path& folder, const std::string& text);

/// Puts a finished file in the place of another, in one step.
/// @param isInDoubt receives whether it may have happened; after an error the disk is asked
/// @throws FED_Failure that names the place, and says "may be in force" where that is in doubt
QUILON_DB_CONNECTOR_API void ReplaceFile(FED_FileLayer& files, const std::filesystem::path& from,
                                         const std::filesystem::path& to, bool& isInDoubt);

/// What the message of a failure says behind which something that was written may be in force.
inline constexpr const char* kWritingMayBeInForce = "; what was written may be in force all the same";

/// An open file; closed in the end. Operations throw FED_Failure that names the file.
class QUILON_DB_CONNECTOR_API StoreFile
{
public:
  /// No file.
  StoreFile() = default;
  StoreFile(FED_FileLayer& files, std::filesystem::path path, FED_FileLayer::Mode mode);
  /// A new file that is to take the place of another and has the permissions of that; those of any new file where there
  /// is none.
  StoreFile(FED_FileLayer& files, std::filesystem::path path, const FED_FileStatus& replaced);
  /// Takes an open file over.
  StoreFile(FED_FileLayer& files, std::filesystem::path path, FED_FileLayer::Handle handle) noexcept;
  StoreFile(StoreFile&& other) noexcept;
  StoreFile& operator=(StoreFile&& other) noexcept;
  ~StoreFile();

  const std::filesystem::path& GetPath() const noexcept { return path_; }

  std::uint64_t  GetSize() const;
  FED_FileStatus GetStatus() const;
  /// @throws FED_Failure when the file ends before, too
  void ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const;
  void WriteAt(std::uint64_t offset, const void* bytes, std::size_t count);
  void BeginFlush(std::uint64_t offset, std::uint64_t count);
  void Flush();
  /// The file is closed whatever happens. What was flushed, or only read, may be left to the destructor.
  /// @throws FED_Failure when bytes that were written may be lost
  void Close();

private:
  std::error_code Release() noexcept;

  FED_FileLayer*        files_ = nullptr;
  std::filesystem::path path_;
  FED_FileLayer::Handle handle_ = FED_FileLayer::kNoHandle;
};

/// @param onBytes called now and then with the bytes read so far; may be empty, and may throw to stop
/// @return the checksum of all bytes (XXH3 with 64 bits) as 16 hexadecimal digits
QUILON_DB_CONNECTOR_API std::string FormatChecksumOf(const StoreFile&                                file,
                                                     const std::function<void(std::uint64_t bytes)>& onBytes = {});
