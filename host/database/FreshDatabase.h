#pragma once

/// @file
/// A database whose former blocks stand aside until they are replaced.

#include <set>
#include <string>
#include <vector>

#include "QuilonDbConnector/FED_Database.h"

namespace quilon {

/// Shows of a database only what is made through this view. A block that was there before is not seen, and goes when
/// one of its key is made: so a whole result replaces an older one block by block, and nothing is mixed into it or
/// taken for its own. Id maps and names of user kinds are the database's.
class FreshDatabase final : public FED_Database
{
public:
  /// @param database borrowed
  explicit FreshDatabase(FED_Database& database);
  ~FreshDatabase() override;

  /// @return blocks that were replaced
  std::size_t CountReplaced() const noexcept { return replaced_; }

  /// Takes a block that was made beside this view, in the place of what was there before.
  void Show(const FED_DataDescriptor& descriptor) { replaced_ += former_.erase(descriptor); }

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

private:
  void Uncover(const FED_DataDescriptor& descriptor);
  void RequireSeen(const FED_DataDescriptor& descriptor) const;

  FED_Database&                database_;
  std::set<FED_DataDescriptor> former_;  // blocks that are not seen
  std::size_t                  replaced_ = 0;
};

}  // namespace quilon
