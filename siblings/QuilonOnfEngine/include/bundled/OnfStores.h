#pragma once

/// @file
/// Where the records stay that are read from ONF text.

#include "quilon_language.h"

#include <cstdint>
#include <memory>

#include "quilon_contract_export.h"

class FED_ResultDatabase;

/// An empty database for the records of one text database, which owns it.
class QUILON_ONF_ENGINE_API OnfStore
{
public:
  OnfStore(const OnfStore&)            = delete;
  OnfStore& operator=(const OnfStore&) = delete;
  virtual ~OnfStore();

  virtual FED_ResultDatabase& Get() noexcept = 0;

protected:
  OnfStore() = default;
};

/// Chooses for each text database that is opened to read: the records of a large one may be more than the memory.
class QUILON_ONF_ENGINE_API OnfStores
{
public:
  OnfStores(const OnfStores&)            = delete;
  OnfStores& operator=(const OnfStores&) = delete;
  virtual ~OnfStores();

  /// @param bytes of text that all blocks have together
  /// @return null for a database in memory
  virtual std::unique_ptr<OnfStore> MakeStore(std::uint64_t bytes) = 0;

  /// Text databases are made by code that knows nothing of stores, so the choice is the thread's.
  /// @param stores asked from now on, borrowed; null: all records stay in memory
  /// @return the former ones
  static OnfStores* Set(OnfStores* stores) noexcept;

  /// @return those in force; null where nobody has set any
  static OnfStores* Get() noexcept;

protected:
  OnfStores() = default;
};
