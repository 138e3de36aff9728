#pragma once

/// @file
/// A scratch record that goes with its scope.

#include "QuilonDbConnector/FED_DataBlock.h"

namespace quilon {

/// A scratch record to read, freed by its block at the end. The block is borrowed.
class ScratchRecord
{
public:
  explicit ScratchRecord(const FED_DataBlock& block) : block_(block), record_(block.CreateConstDataRecord()) {}
  ScratchRecord(const ScratchRecord&)            = delete;
  ScratchRecord& operator=(const ScratchRecord&) = delete;
  ~ScratchRecord() { block_.DeleteDataRecord(record_); }

  FED_ConstDataRecord& operator*() const noexcept { return *record_; }
  FED_ConstDataRecord* operator->() const noexcept { return record_; }

private:
  const FED_DataBlock& block_;
  FED_ConstDataRecord* record_;
};

}  // namespace quilon
