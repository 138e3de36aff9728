#pragma once

/// @file
/// What the recording fakes share: the calls they saw, and the call that is to fail.

#include <cstddef>
#include <exception>
#include <string>
#include <vector>

namespace quilon_test {

/// Which calls are written down. All of them are counted and can fail, whatever is written.
enum class Detail
{
  Database,  ///< calls of the database
  Blocks,    ///< and of its blocks and id maps
  Records    ///< and of their scratch records
};

/// Keeps the calls of one database in order and fails one of them on demand.
class CallRecorder
{
public:
  explicit CallRecorder(Detail detail) noexcept : detail_(detail) {}

  /// Counts a call, writes it down before it is passed on, and throws if it is the one that is to fail; its line then
  /// ends in " fails".
  void Call(Detail level, std::string line);

  /// Writes down a call that frees something. It is not counted: freeing never fails.
  void Free(Detail level, std::string line);

  /// Lets the `call`-th counted call from the start (the first is 1; 0 lets none) throw instead of being passed on.
  void FailAt(std::size_t call, std::exception_ptr failure);

  void        SetDetail(Detail detail) noexcept { detail_ = detail; }
  std::size_t GetCallCount() const noexcept { return callCount_; }

  const std::vector<std::string>& GetLines() const noexcept { return lines_; }
  void                            ClearLines() noexcept { lines_.clear(); }

  /// Scratch records that were made and neither freed nor taken along by their block.
  std::size_t liveScratch = 0;
  /// Scratch records ever made.
  std::size_t madeScratch = 0;

private:
  Detail                   detail_;
  std::size_t              callCount_  = 0;
  std::size_t              failAtCall_ = 0;
  std::exception_ptr       failure_;
  std::vector<std::string> lines_;
};

}  // namespace quilon_test
