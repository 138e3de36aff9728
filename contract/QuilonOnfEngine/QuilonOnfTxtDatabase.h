#pragma once

/// @file
/// A database over a folder of ONF text files.

#include "quilon_language.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_DatabaseDefs.h"
#include "QuilonDbConnector/FED_DataBlockSet.h"

/// ONF text results as a database. Construct with the folder, InitDb(), use, ReleaseDb(), destroy.
///
/// Opened for writing it collects blocks in memory and ReleaseDb() publishes them; destroyed without ReleaseDb() it
/// leaves the folder as it was. Opened for reading it takes nothing new, and reads a block's records when the block is
/// first asked for: a malformed block fails there. Blocks belong to the database and live until ReleaseDb(true), the
/// next InitDb() or its end.
class QUILON_ONF_ENGINE_API QuilonOnfTxtDatabase : public FED_Database
{
public:
  /// Opens nothing.
  explicit QuilonOnfTxtDatabase(const std::wstring& path);
  QuilonOnfTxtDatabase(const QuilonOnfTxtDatabase&)            = delete;
  QuilonOnfTxtDatabase& operator=(const QuilonOnfTxtDatabase&) = delete;
  ~QuilonOnfTxtDatabase() override;

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

  /// Opens the folder.
  /// @param mode      0 reads an existing folder, 1 writes (the folder is made on release when there is none)
  /// @param cacheSize a hint
  /// @param name      free text; may be empty
  /// @param idMaps    ids in the order of another database's first use, or null for maps of its own; read here only
  /// @throws FED_Failure that names file, line and what was expected when the folder is no text database
  void InitDb(FED_DatabaseDefs::AccessMode mode, std::size_t cacheSize, const std::wstring& name,
              const FED_IdMapsPool* idMaps);

  /// In write mode publishes what was collected: equal keys are replaced, other blocks of the folder stay. The
  /// database is no longer initialised afterwards.
  /// @param dropCachedBlocks whether the blocks in memory are freed now or with the object
  void ReleaseDb(bool dropCachedBlocks);

  /// @return the database's blocks as a set; valid as long as the database
  const FED_DataBlockSet& GetDataBlockSet() const;

private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};
