#pragma once

/// @file
/// Files that go when they are not finished.

#include <filesystem>

#include "bundled/FED_FileLayer.h"

/// Removes the file unless it was kept.
class UnfinishedFile
{
public:
  /// @param files, path borrowed
  UnfinishedFile(FED_FileLayer& files, const std::filesystem::path& path) : files_(files), path_(path) {}
  UnfinishedFile(const UnfinishedFile&)            = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;
  ~UnfinishedFile()
  {
    if (isKept_) return;
    // What cannot be removed now goes when the next writer opens the database.
    static_cast<void>(files_.Remove(path_));
  }

  void Keep() noexcept { isKept_ = true; }

private:
  FED_FileLayer&               files_;
  const std::filesystem::path& path_;
  bool                         isKept_ = false;
};
