#include "QuilonDbConnector/FED_IdDataRecord.h"

#include "QuilonUtilities/FED_DoubleArray.h"

#include "ResultRecord.h"

FED_ConstIdDataRecord::FED_ConstIdDataRecord(FED_ConstDataRecord& record) noexcept : record_(&record) {}

FED_ConstIdDataRecord::~FED_ConstIdDataRecord() = default;

void FED_ConstIdDataRecord::GetIntList(std::size_t field, FED_IntArray& out) const { record_->GetIntList(field, out); }

const FED_ConstDataRecord& FED_ConstIdDataRecord::GetDataRecord() const noexcept { return *record_; }

FED_IdDataRecord::FED_IdDataRecord(FED_DataRecord& record) noexcept : FED_ConstIdDataRecord(record) {}

FED_IdDataRecord::~FED_IdDataRecord() = default;

FED_IdDataRecord& FED_IdDataRecord::operator=(const FED_ConstIdDataRecord& other)
{
  if (&other != this) CopyRecord(other.GetDataRecord(), GetDataRecord());
  return *this;
}

FED_IdDataRecord& FED_IdDataRecord::operator=(const FED_IdDataRecord& other)
{
  return *this = static_cast<const FED_ConstIdDataRecord&>(other);
}

void FED_IdDataRecord::SetInteger(std::size_t field, int value) { GetDataRecord().SetInteger(field, value); }

void FED_IdDataRecord::SetIntList(std::size_t field, const FED_IntArray& values)
{
  GetDataRecord().SetIntList(field, values);
}

void FED_IdDataRecord::SetIntList(std::size_t field, const std::vector<int>& values)
{
  GetDataRecord().SetIntList(field, FED_IntArray(values));
}

void FED_IdDataRecord::SetDoubleList(std::size_t field, const std::vector<double>& values)
{
  GetDataRecord().SetDoubleList(field, FED_DoubleArray(values));
}

// The constructor took a writable record.
FED_DataRecord& FED_IdDataRecord::GetDataRecord() noexcept { return static_cast<FED_DataRecord&>(*record_); }
