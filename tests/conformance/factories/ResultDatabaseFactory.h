#pragma once

/// @file
/// Working databases in memory.

#include <memory>

#include <bundled/FED_ResultDatabase.h>

#include "ConformanceFactory.h"
#include "log_catcher.h"

namespace conformance {

class ResultDatabaseFactory : public ConformanceFactory
{
public:
  std::unique_ptr<FED_Database> Create() override { return std::make_unique<FED_ResultDatabase>(); }

  bool CatchLog(const std::function<void()>& action, std::vector<std::string>& texts) override
  {
    CatchBundledLog(action, texts);
    return true;
  }
};

}  // namespace conformance
