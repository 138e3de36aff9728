#pragma once

/// @file
/// Scratch records of id views.

#include "quilon_language.h"

#include <cstddef>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataRecord.h"
#include "QuilonUtilities/FED_IntArray.h"

/// A record to read through an id view. Wraps a scratch record of the viewed block, which the view owns.
class QUILON_DB_CONNECTOR_API FED_ConstIdDataRecord
{
public:
  FED_ConstIdDataRecord(const FED_ConstIdDataRecord&)            = delete;
  FED_ConstIdDataRecord& operator=(const FED_ConstIdDataRecord&) = delete;
  virtual ~FED_ConstIdDataRecord();

  void GetIntList(std::size_t field, FED_IntArray& out) const;

  /// @return the block's own scratch record, with a getter for every type
  const FED_ConstDataRecord& GetDataRecord() const noexcept;

protected:
  friend class FED_ConstIdDataBlock;
  explicit FED_ConstIdDataRecord(FED_ConstDataRecord& record) noexcept;

  FED_ConstDataRecord* record_;
};

/// A record to write through an id view.
class QUILON_DB_CONNECTOR_API FED_IdDataRecord : public FED_ConstIdDataRecord
{
public:
  ~FED_IdDataRecord() override;

  /// Copies all fields. The codes of a type pair are copied into each other.
  /// @throws FED_Failure when the fields do not fit this record's format
  FED_IdDataRecord& operator=(const FED_ConstIdDataRecord& other);
  FED_IdDataRecord& operator=(const FED_IdDataRecord& other);

  void SetInteger(std::size_t field, int value);
  void SetIntList(std::size_t field, const FED_IntArray& values);
  void SetIntList(std::size_t field, const std::vector<int>& values);
  void SetDoubleList(std::size_t field, const std::vector<double>& values);

  using FED_ConstIdDataRecord::GetDataRecord;
  /// @return the block's own scratch record, with a setter for every type
  FED_DataRecord& GetDataRecord() noexcept;

private:
  friend class FED_IdDataBlock;
  explicit FED_IdDataRecord(FED_DataRecord& record) noexcept;
};
