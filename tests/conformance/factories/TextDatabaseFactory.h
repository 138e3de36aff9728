#pragma once

/// @file
/// Text databases in temporary folders.

#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <QuilonOnfEngine/QuilonOnfTxtDatabase.h>

#include "ConformanceFactory.h"
#include "log_catcher.h"

namespace conformance {

/// Each database lies in a folder of its own, removed with the factory.
class TextDatabaseFactory : public ConformanceFactory
{
public:
  TextDatabaseFactory()
  {
    std::random_device random;  // a name only: it shows in no result
    root_ = std::filesystem::temp_directory_path() /
            ("quilon-text-" + std::to_string(random()) + "-" + std::to_string(random()));
    std::filesystem::create_directories(root_);
  }
  ~TextDatabaseFactory() override
  {
    std::error_code ignored;  // a folder that stays behind fails no test
    std::filesystem::remove_all(root_, ignored);
  }

  std::unique_ptr<FED_Database> Create() override
  {
    const std::wstring path = (root_ / std::to_string(databases_.size())).wstring();
    return Open(path, FED_DatabaseDefs::WriteAccess);
  }

  std::unique_ptr<FED_Database> Reopen(std::unique_ptr<FED_Database> database) override
  {
    auto&              text = dynamic_cast<QuilonOnfTxtDatabase&>(*database);
    const std::wstring path = PathOf(text);
    text.ReleaseDb(true);
    database.reset();
    return Open(path, FED_DatabaseDefs::ReadAccess);
  }

  bool CatchLog(const std::function<void()>& action, std::vector<std::string>& texts) override
  {
    CatchBundledLog(action, texts);
    return true;
  }

private:
  std::unique_ptr<FED_Database> Open(const std::wstring& path, FED_DatabaseDefs::AccessMode mode)
  {
    auto database = std::make_unique<QuilonOnfTxtDatabase>(path);
    database->InitDb(mode, 1024, L"", nullptr);
    databases_.emplace_back(database.get(), path);
    return database;
  }

  // The latest first: an address may be used again.
  std::wstring PathOf(const QuilonOnfTxtDatabase& database) const
  {
    for (auto it = databases_.rbegin(); it != databases_.rend(); ++it)
      if (it->first == &database) return it->second;
    return {};
  }

  std::filesystem::path                                             root_;
  std::vector<std::pair<const QuilonOnfTxtDatabase*, std::wstring>> databases_;
};

}  // namespace conformance
