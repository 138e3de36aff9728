#pragma once

/// @file
/// Ctrl-C and progress while a working database is read or written.

#include <cstddef>
#include <cstdint>
#include <functional>

#include <bundled/FED_FileLayer.h>
#include <bundled/FED_ResultDatabase.h>

namespace quilon {

/// The operating system's files. Reads and writes stop for an interrupt: a commit that it meets does not happen.
class WatchedFiles final : public FED_FileLayer
{
public:
  using Progress = std::function<void(std::uint64_t bytes)>;

  /// @param progress called with the bytes read so far; may be empty
  explicit WatchedFiles(Progress progress = {});
  ~WatchedFiles() override;

  /// @return options of a database whose files these are; they outlive it
  FED_ResultDatabaseOptions GetOptions() noexcept;

  /// @throws Interrupted
  std::error_code ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                         std::size_t& done) override;
  /// @throws Interrupted
  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count) override;

private:
  Progress      progress_;
  std::uint64_t read_ = 0;
};

}  // namespace quilon
