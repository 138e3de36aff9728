#pragma once

/// @file
/// What the conformance kit asks of whoever tests a database with it.
///
/// Write a source file that defines MakeConformanceFactory() and link it with the kit; see README.md.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>

/// Makes databases of the kind under test.
class ConformanceFactory
{
public:
  virtual ~ConformanceFactory() = default;

  /// @return a fresh, empty, initialised database that takes blocks; its storage goes with it or with the factory
  virtual std::unique_ptr<FED_Database> Create() = 0;

  /// Makes everything that was written durable, closes the database and opens the same storage again, at least for
  /// reading. A database that lives in memory alone hands itself back.
  virtual std::unique_ptr<FED_Database> Reopen(std::unique_ptr<FED_Database> database) { return database; }

  /// @return whether the database keeps the names of user kinds
  virtual bool KeepsUserKindNames() const { return true; }

  /// Runs `action` and adds the text of every line that it logs to `texts`.
  /// @return false when log lines cannot be caught; the action has run all the same
  virtual bool CatchLog(const std::function<void()>& action, std::vector<std::string>&)
  {
    action();
    return false;
  }
};

/// Defined by whoever tests a database. Called once for every test.
std::unique_ptr<ConformanceFactory> MakeConformanceFactory();
