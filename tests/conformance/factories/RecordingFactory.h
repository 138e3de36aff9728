#pragma once

/// @file
/// Databases of another factory behind the recording wrapper.

#include <cstdlib>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "ConformanceFactory.h"
#include "RecordingDatabase.h"

namespace conformance {

/// Where the names of the virtual functions that ran are written, one a line such as "block.HasRecord"; nowhere when
/// the variable is not set. scripts/check_conformance_coverage.py reads them.
inline constexpr const char* kCallsVariable = "QUILON_CONFORMANCE_CALLS";

/// A recording wrapper that owns what it wraps.
class OwningRecordingDatabase : public quilon_test::RecordingDatabase
{
public:
  explicit OwningRecordingDatabase(std::unique_ptr<FED_Database> inner)
      : RecordingDatabase(*inner, quilon_test::Detail::Records), inner_(std::move(inner))
  {}
  ~OwningRecordingDatabase() override { WriteCalls(); }

  std::unique_ptr<FED_Database> TakeInner() { return std::move(inner_); }

private:
  /// "block<500 it=1>.SetScalarAt(1, 2)" is "block.SetScalarAt".
  static std::string NameOf(const std::string& line)
  {
    const std::size_t key   = line.find('<');
    const std::size_t paren = line.find('(');
    std::string       name  = line.substr(0, paren);
    if (key < paren) name = line.substr(0, key) + line.substr(line.find('>') + 1);
    return name.substr(0, name.find('('));
  }

  void WriteCalls() const
  {
    const char* const path = std::getenv(kCallsVariable);
    if (path == nullptr) return;
    std::set<std::string> names;
    for (const std::string& line : GetLines()) names.insert(NameOf(line));
    std::ofstream out(path, std::ios::app);
    for (const std::string& name : names) out << name << '\n';
  }

  std::unique_ptr<FED_Database> inner_;
};

class RecordingFactory : public ConformanceFactory
{
public:
  explicit RecordingFactory(std::unique_ptr<ConformanceFactory> inner) : inner_(std::move(inner)) {}

  std::unique_ptr<FED_Database> Create() override
  {
    return std::make_unique<OwningRecordingDatabase>(inner_->Create());
  }

  std::unique_ptr<FED_Database> Reopen(std::unique_ptr<FED_Database> database) override
  {
    auto inner = dynamic_cast<OwningRecordingDatabase&>(*database).TakeInner();
    database.reset();
    return std::make_unique<OwningRecordingDatabase>(inner_->Reopen(std::move(inner)));
  }

  bool KeepsUserKindNames() const override { return inner_->KeepsUserKindNames(); }

  bool CatchLog(const std::function<void()>& action, std::vector<std::string>& texts) override
  {
    return inner_->CatchLog(action, texts);
  }

private:
  std::unique_ptr<ConformanceFactory> inner_;
};

}  // namespace conformance
