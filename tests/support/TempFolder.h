#pragma once

/// @file
/// Files of a test.

#include <filesystem>

namespace quilon_test {

/// An empty folder of its own, deleted with all that is in it at the end.
class TempFolder
{
public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&)            = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& GetPath() const noexcept { return path_; }
  std::filesystem::path        operator/(const std::filesystem::path& name) const { return path_ / name; }

private:
  std::filesystem::path path_;
};

}  // namespace quilon_test
