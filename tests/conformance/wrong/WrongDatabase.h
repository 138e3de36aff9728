#pragma once

/// @file
/// A database that makes exactly one mistake.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>

#include "Mistake.h"

namespace conformance {

/// Wraps a working database and is wrong in the way of its mistake; with Mistake::None it is right in every way.
class WrongDatabase : public FED_Database
{
public:
  WrongDatabase(std::unique_ptr<FED_Database> inner, Mistake mistake);
  ~WrongDatabase() override;

  bool           IsInitialized() const override;
  FED_DataBlock* CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize, std::size_t secondSize,
                                 const std::string& recordFormat) override;
  FED_DataBlock& GetOrCreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t expectedRecords) override;
  bool           HasDataBlock(const FED_DataDescriptor& descriptor) const override;
  const FED_DataBlock&            GetConstDataBlock(const FED_DataDescriptor& descriptor) const override;
  FED_DataBlock&                  GetDataBlock(const FED_DataDescriptor& descriptor) override;
  std::vector<FED_DataBlock*>     GetDataBlocks(const FED_DataDescriptorPattern& pattern) override;
  void                            DeleteDataBlock(const FED_DataDescriptor& descriptor) override;
  std::vector<FED_DataDescriptor> GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const override;
  FED_IdMapsPool&                 GetIdMapsPool() override;
  const FED_IdMapsPool&           GetIdMapsPool() const override;
  std::string                     GetUserKindName(FED_OnfId onf) const override;
  void                            SetUserKindName(FED_OnfId onf, const std::string& name) override;

  /// Makes the mistakes of a database that was written and opened again.
  void Reopen();

private:
  class Block;
  class Pool;

  Block& Wrap(FED_DataBlock& inner) const;
  /// The inner block of a key; what is const here is so by the interface alone.
  FED_DataBlock& Inner(const FED_DataDescriptor& descriptor) const;
  bool           Matches(const FED_DataDescriptorPattern& pattern, const FED_DataDescriptor& descriptor) const;

  std::unique_ptr<FED_Database>               inner_;
  Mistake                                     mistake_;
  std::unique_ptr<Pool>                       pool_;
  std::unique_ptr<FED_Database>               other_;   // for what should be here and is not
  mutable std::vector<std::unique_ptr<Block>> blocks_;  // wrappers that were handed out; they stay to the end
  std::vector<std::unique_ptr<FED_Database>>  fresh_;   // a database for every block that should have been there
  std::vector<FED_DataDescriptor>             deleted_;
};

}  // namespace conformance
