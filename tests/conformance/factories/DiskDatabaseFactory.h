#pragma once

/// @file
/// Working databases in temporary folders.

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>

#include <bundled/FED_ResultDatabase.h>

#include "ConformanceFactory.h"
#include "log_catcher.h"

namespace conformance {

/// Each database lies in a folder of its own, removed with the factory. Their memory limit is small, so that rows leave
/// the memory wherever they can.
class DiskDatabaseFactory : public ConformanceFactory
{
public:
  DiskDatabaseFactory()
  {
    std::random_device random;  // a name only: it shows in no result
    root_ = std::filesystem::temp_directory_path() /
            ("quilon-fed-" + std::to_string(random()) + "-" + std::to_string(random()));
    std::filesystem::create_directories(root_);
    options_.memoryLimit = 1;
  }
  ~DiskDatabaseFactory() override
  {
    std::error_code ignored;  // a folder that stays behind fails no test
    std::filesystem::remove_all(root_, ignored);
  }

  std::unique_ptr<FED_Database> Create() override
  {
    return Open(root_ / (std::to_string(count_++) + ".fed"), FED_ResultDatabase::Create);
  }

  std::unique_ptr<FED_Database> Reopen(std::unique_ptr<FED_Database> database) override
  {
    auto&                       onDisk = dynamic_cast<FED_ResultDatabase&>(*database);
    const std::filesystem::path path   = paths_.at(&onDisk);
    onDisk.Commit();
    paths_.erase(&onDisk);
    database.reset();
    return Open(path, FED_ResultDatabase::ReadWrite);
  }

  bool CatchLog(const std::function<void()>& action, std::vector<std::string>& texts) override
  {
    CatchBundledLog(action, texts);
    return true;
  }

private:
  std::unique_ptr<FED_Database> Open(const std::filesystem::path& path, FED_ResultDatabase::Access access)
  {
    auto database          = std::make_unique<FED_ResultDatabase>(path, access, options_);
    paths_[database.get()] = path;
    return database;
  }

  std::filesystem::path                                      root_;
  std::size_t                                                count_ = 0;
  FED_ResultDatabaseOptions                                  options_;
  std::map<const FED_ResultDatabase*, std::filesystem::path> paths_;
};

}  // namespace conformance
