#pragma once

/// @file
/// How much of the databases of a command stays in memory.

#include <cstddef>
#include <string_view>

namespace quilon {

/// What a user allows, for as long as the object lives. Rows of a working database stay in memory up to the limit, for
/// each of the databases that a command opens, and those of a result file beyond it go to the temporary folder. One for
/// the program, as its signals are.
class MemoryLimit
{
public:
  /// @param bytes of rows of each database
  explicit MemoryLimit(std::size_t bytes) noexcept;
  MemoryLimit(const MemoryLimit&)            = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;
  ~MemoryLimit();

  /// @return the bytes, FED_ResultDatabaseOptions::kUsualLimit while nobody has set any
  static std::size_t Get() noexcept;

  /// @return the bytes, those given here while nobody has set any
  static std::size_t GetOr(std::size_t usual) noexcept;

  /// Reads "64M": bytes, or those of K, M or G, which count by 1024 and may end in "iB" or "B".
  /// @throws FED_Failure that names the text, for anything else
  static std::size_t Parse(std::string_view text);

private:
  std::size_t former_;
};

}  // namespace quilon
