#pragma once

/// @file
/// Opening a pipe without being caught in it.

#include <filesystem>

namespace quilon::calculix {

/// Waits until somebody has begun to write to a pipe, and sees to it that the pipe opens at once from then to its end.
/// To open a pipe that nobody writes to is to wait where no interrupt is heard that has come a moment before. What is
/// no pipe is left alone.
class PipeOpening
{
public:
  /// @throws Interrupted
  explicit PipeOpening(const std::filesystem::path& path);
  PipeOpening(const PipeOpening&)            = delete;
  PipeOpening& operator=(const PipeOpening&) = delete;
  ~PipeOpening();

private:
  int reading_ = -1;
  int writing_ = -1;  ///< who opens the pipe need not wait for a writer that has gone meanwhile
};

}  // namespace quilon::calculix
