#pragma once

/// @file
/// A block of records.

#include "quilon_language.h"

#include <cstddef>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "QuilonDbConnector/FED_DataRecord.h"

/// Records of one format at non-negative indices, which need not be dense. Owned by its database.
///
/// Scratch records belong to the block that made them: DeleteDataRecord() frees one, and what was not freed because an
/// exception passed by goes with the block.
class QUILON_DB_CONNECTOR_API FED_DataBlock
{
public:
  /// Walks the indices that hold a record, ascending, by FindNextIndex(). The block's last index is read once, when the
  /// iterator is made.
  class QUILON_DB_CONNECTOR_API IndexIterator
  {
  public:
    IndexIterator(const FED_DataBlock& block, std::size_t index, std::size_t maxIndex);

    std::size_t    operator*() const noexcept { return index_; }
    IndexIterator& operator++();
    bool           operator==(const IndexIterator& other) const noexcept { return index_ == other.index_; }
    bool           operator!=(const IndexIterator& other) const noexcept { return index_ != other.index_; }

  private:
    std::size_t          index_;
    std::size_t          maxIndex_;
    const FED_DataBlock* block_;
  };

  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

  FED_DataBlock(const FED_DataBlock&)            = delete;
  FED_DataBlock& operator=(const FED_DataBlock&) = delete;
  virtual ~FED_DataBlock();

  const FED_DataDescriptor& GetDescriptor() const noexcept;

  /// @return stands on the lowest index that holds a record, or equals End()
  IndexIterator Begin() const;
  IndexIterator End() const;

  virtual bool HasRecord(std::size_t index) const = 0;
  /// Stores a copy of the scratch record, replacing any record there.
  /// @throws FED_Failure for an absurd index and for fields that do not fit the block's format
  virtual void SetRecord(std::size_t index, const FED_DataRecord& record) = 0;
  /// @throws FED_Failure when no record is there
  virtual void GetRecord(std::size_t index, FED_ConstDataRecord& record) const = 0;
  /// @return the highest index of a block whose indices count from 1; 0 when it is empty
  virtual std::size_t GetSize() const = 0;
  /// @return the highest index in use; 0 when the block is empty
  virtual std::size_t GetMaxIndex() const = 0;
  /// Stores a one-value record. A block without a format takes the format "D".
  virtual void SetScalarAt(std::size_t index, double value) = 0;
  /// @throws FED_Failure when no record is there or the format holds other than one double
  virtual double GetScalarAt(std::size_t index) const = 0;
  /// Stores a record of as many doubles as the block's format holds.
  /// @throws FED_Failure when the block has no format yet or one that is not made of doubles
  virtual void SetValuesAt(std::size_t index, const double* values) = 0;
  /// Copies the record's doubles.
  /// @throws FED_Failure when no record is there or the format is not made of doubles
  virtual void GetValuesAt(std::size_t index, double* out) const = 0;
  /// @return a scratch record in the block's format
  virtual FED_DataRecord*      CreateDataRecord()            = 0;
  virtual FED_ConstDataRecord* CreateConstDataRecord() const = 0;
  /// Frees a scratch record that this block made; null does nothing.
  virtual void DeleteDataRecord(FED_ConstDataRecord* record) const = 0;
  /// The next record of a walk. The default asks HasRecord() for each index in turn: a block that knows its indices
  /// answers at once, so that records far apart cost a walk nothing.
  /// @param first, last both count
  /// @return the lowest index from first to last that holds a record, npos when there is none
  virtual std::size_t FindNextIndex(std::size_t first, std::size_t last) const;

protected:
  explicit FED_DataBlock(const FED_DataDescriptor& descriptor);

private:
  FED_DataDescriptor descriptor_;
};
