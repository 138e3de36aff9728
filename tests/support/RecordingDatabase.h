#pragma once

/// @file
/// A database that writes down what is asked of it and fails on demand.

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>

#include "CallRecorder.h"

namespace quilon_test {

/// A descriptor in one word: "<595 it=1 lc=2 sub=3>". The ONF id comes first, then the set indices in index order;
/// a value other than 0 under a clear bit follows as "~lc=2".
std::string Key(const FED_DataDescriptor& descriptor);

/// A pattern in one word: "{onf=521 it=1}" with its criteria in index order, "{*}" when it admits everything.
std::string Key(const FED_DataDescriptorPattern& pattern);

/// The content of a record: "[I 3; Db 1 2]", the fields with the letters of format strings and their values.
std::string Content(const FED_ConstDataRecord& record);

/// Wraps any database, its blocks, their scratch records and its id maps, passes every call and result through and
/// keeps a line of text for each call, such as
///     db.GetOrCreateDataBlock(<595 it=1>, 3)
///     pool.FindOrAddIndex(1, 30)
///     block<595 it=1>.SetRecord(7, [I 3; Db 1 2])
///     record<595 it=1>.SetInteger(1, 3)
/// A line is written before the call is passed on. The line of a call that fails on demand ends in " fails".
///
/// The wrapped database is borrowed. Blocks are handed out as wrappers, one for each block of the database, owned
/// here: id views and walks over them reach the database through the wrappers alone, as with any foreign block. While
/// it is wrapped, blocks of the database are deleted through the wrapper only.
class RecordingDatabase : public FED_Database
{
public:
  explicit RecordingDatabase(FED_Database& inner, Detail detail = Detail::Blocks);
  ~RecordingDatabase() override;
  RecordingDatabase(const RecordingDatabase&)            = delete;
  RecordingDatabase& operator=(const RecordingDatabase&) = delete;

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

  /// Lets the `call`-th call from now (the first is 1; 0 lets none) throw `failure` instead of being passed on.
  void FailAt(std::size_t call, std::exception_ptr failure);
  /// The same with a FED_Failure "injected failure".
  void FailAt(std::size_t call);

  /// The calls so far, freeing not counted.
  std::size_t GetCallCount() const noexcept;

  const std::vector<std::string>& GetLines() const noexcept;
  void                            ClearLines() noexcept;
  void                            SetDetail(Detail detail) noexcept;

  /// @return scratch records that were made and not freed yet; a block that goes takes its records along
  std::size_t GetLiveScratchRecords() const noexcept;
  /// @return scratch records ever made
  std::size_t GetMadeScratchRecords() const noexcept;

private:
  class Block;
  class Pool;

  Block& Wrap(const FED_DataBlock& block) const;
  Block& WrapWritable(FED_DataBlock& block);

  FED_Database* inner_;
  // The calls are told from const members too, and wrappers appear when a block is first met.
  mutable CallRecorder                        recorder_;
  mutable std::vector<std::unique_ptr<Block>> blocks_;
  std::unique_ptr<Pool>                       pool_;
};

}  // namespace quilon_test
