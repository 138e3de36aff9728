#pragma once

/// @file
/// Scratch records that free themselves.

#include "QuilonDbConnector/FED_DataBlock.h"

/// A scratch record that goes back to its block however the scope is left.
template <typename Record>
class ScratchGuard
{
public:
  ScratchGuard(const FED_DataBlock& block, Record* record) noexcept : block_(block), record_(record) {}
  ScratchGuard(const ScratchGuard&)            = delete;
  ScratchGuard& operator=(const ScratchGuard&) = delete;
  ~ScratchGuard() { block_.DeleteDataRecord(record_); }

  Record* operator->() const noexcept { return record_; }
  Record& operator*() const noexcept { return *record_; }

private:
  const FED_DataBlock& block_;
  Record*              record_;
};
