#pragma once

/// @file
/// What publishing does to the disk, one step a call.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

/// A file being written.
class OutputFile
{
public:
  virtual ~OutputFile();

  /// @throws FED_Failure that names the file when the bytes cannot be written
  virtual void Write(const char* data, std::size_t size) = 0;
  /// Nothing may be written afterwards.
  virtual void Close() = 0;

protected:
  OutputFile()                             = default;
  OutputFile(const OutputFile&)            = default;
  OutputFile& operator=(const OutputFile&) = default;
};

/// Keeps other publications off a folder, in this process and in others, until it goes. The system frees it when the
/// process ends, however that happens. Where the system cannot lock a folder (Windows, some network file systems) it
/// keeps nobody off.
class FolderLock
{
public:
  /// Waits while another publication is at work.
  /// @throws FED_Failure that names the folder when it cannot be opened
  explicit FolderLock(const std::filesystem::path& folder);
  FolderLock(const FolderLock&)            = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  ~FolderLock();

private:
  int descriptor_ = -1;
};

/// The steps of a publication. A test derives from it and stops at any of them.
class Disk
{
public:
  Disk()                       = default;
  Disk(const Disk&)            = delete;
  Disk& operator=(const Disk&) = delete;
  virtual ~Disk();

  /// Makes the folder and those above it.
  /// @return whether it was not there before
  virtual bool CreateFolder(const std::filesystem::path& folder);
  /// Makes an empty file, in place of any that was there.
  virtual std::unique_ptr<OutputFile> CreateFile(const std::filesystem::path& path);
  /// Replaces any file at the target.
  virtual void Rename(const std::filesystem::path& from, const std::filesystem::path& to);
  /// Returns when the bytes of a closed file are on the disk. Many files are flushed much faster one after the other
  /// than each behind its last byte.
  virtual void SyncFile(const std::filesystem::path& path);
  /// Returns when the names in the folder are on the disk.
  virtual void SyncFolder(const std::filesystem::path& folder);
  /// Removes a file or an empty folder if it can: what stays is overwritten or removed by the next writer.
  virtual void Remove(const std::filesystem::path& path) noexcept;
};

/// Tells one state of a file from another: a file that was replaced or edited has another stamp.
struct FileStamp
{
  std::uintmax_t size   = 0;
  std::uintmax_t number = 0;  ///< which file of the disk; 0 where the system does not tell
  std::intmax_t  time   = 0;  ///< of the last change

  bool operator==(const FileStamp&) const = default;
};

/// @return nothing when the path names no plain file
std::optional<FileStamp> FindFileStamp(const std::filesystem::path& path);
