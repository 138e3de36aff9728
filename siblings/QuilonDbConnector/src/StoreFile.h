#pragma once

/// @file
/// Files of a database on disk, with failures that name them.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

#include "bundled/FED_FileLayer.h"

/// @throws FED_Failure "<path>: <text>"
[[noreturn]] void ThrowFileFailure(const std::filesystem::path& path, const std::string& text);

/// @param action "open" and the like
/// @throws FED_Failure "<path>: cannot <action>: <error>" when there is an error
void RequireSuccess(const std::error_code& error, const std::filesystem::path& path, const char* action);

/// An open file; closed in the end. Operations throw FED_Failure that names the file.
class StoreFile
{
public:
  /// No file.
  StoreFile() = default;
  StoreFile(FED_FileLayer& files, std::filesystem::path path, FED_FileLayer::Mode mode);
  /// Takes an open file over.
  StoreFile(FED_FileLayer& files, std::filesystem::path path, FED_FileLayer::Handle handle) noexcept;
  StoreFile(StoreFile&& other) noexcept;
  StoreFile& operator=(StoreFile&& other) noexcept;
  ~StoreFile();

  const std::filesystem::path& GetPath() const noexcept { return path_; }

  std::uint64_t GetSize() const;
  /// @throws FED_Failure when the file ends before, too
  void ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const;
  void WriteAt(std::uint64_t offset, const void* bytes, std::size_t count);
  void Flush();
  void Close() noexcept;

private:
  FED_FileLayer*        files_ = nullptr;
  std::filesystem::path path_;
  FED_FileLayer::Handle handle_ = FED_FileLayer::kNoHandle;
};
