#pragma once

/// @file
/// Scratch records: one record of a block, field by field.

#include "quilon_language.h"

#include <cstddef>
#include <string>

#include "quilon_contract_export.h"
#include "QuilonUtilities/FED_DoubleArray.h"
#include "QuilonUtilities/FED_IntArray.h"

/// A record to read. Fields are numbered from 1.
///
/// Field type codes: 1 and 10 integer, 3 float, 2 and 11 double, 4 string, 5 vector (three doubles), 6 tensor (six
/// doubles: xx, yy, zz, xy, yz, zx), 7 and 8 integer list, 9 double list. The codes of a pair are read alike; they tell
/// where a value comes from (1 a count or flag, 10 an entity id; 2 a plain double, 11 a quantity with a unit; 7 a plain
/// list, 8 a list of entity ids).
///
/// Every getter throws FED_Failure for a field number or a type that the record does not have.
class QUILON_DB_CONNECTOR_API FED_ConstDataRecord
{
public:
  virtual ~FED_ConstDataRecord();

  /// @return 0 for a scratch record of a block that has no format yet, until a field is set
  virtual std::size_t GetFieldCount() const                                        = 0;
  virtual int         GetFieldType(std::size_t field) const                        = 0;
  virtual int         GetInteger(std::size_t field) const                          = 0;
  virtual void        GetIntList(std::size_t field, FED_IntArray& out) const       = 0;
  virtual void        GetDoubleList(std::size_t field, FED_DoubleArray& out) const = 0;
  virtual std::size_t GetIntListLen(std::size_t field) const                       = 0;
  virtual std::size_t GetDoubleListLen(std::size_t field) const                    = 0;
  virtual std::string GetString(std::size_t field) const                           = 0;

  /// @return bytes of the field's value: 4 integer and float, 8 double, 24 vector, 48 tensor; a string its length + 4,
  ///         a list its elements + 4
  virtual std::size_t GetFieldSize(std::size_t field) const           = 0;
  virtual float       GetFloat(std::size_t field) const               = 0;
  virtual double      GetDouble(std::size_t field) const              = 0;
  virtual void        GetVector(std::size_t field, double* out) const = 0;  ///< writes three doubles
  virtual void        GetTensor(std::size_t field, double* out) const = 0;  ///< writes six doubles

protected:
  FED_ConstDataRecord()                                      = default;
  FED_ConstDataRecord(const FED_ConstDataRecord&)            = default;
  FED_ConstDataRecord& operator=(const FED_ConstDataRecord&) = default;
};

/// A record to write. In a block that has a format the fields are those of the format; in one without, the fields are
/// set in order from 1 and their types become the format with the first SetRecord().
///
/// Every setter throws FED_Failure for a field number or a type that the record cannot have, and is then without
/// effect.
class QUILON_DB_CONNECTOR_API FED_DataRecord : public FED_ConstDataRecord
{
public:
  ~FED_DataRecord() override;

  virtual void SetInteger(std::size_t field, int value)                        = 0;
  virtual void SetIntList(std::size_t field, const FED_IntArray& values)       = 0;
  virtual void SetDoubleList(std::size_t field, const FED_DoubleArray& values) = 0;

  virtual void SetString(std::size_t field, const std::string& value) = 0;
  virtual void SetFloat(std::size_t field, float value)               = 0;
  virtual void SetDouble(std::size_t field, double value)             = 0;
  virtual void SetVector(std::size_t field, const double* values)     = 0;  ///< reads three doubles
  virtual void SetTensor(std::size_t field, const double* values)     = 0;  ///< reads six doubles

protected:
  FED_DataRecord()                                 = default;
  FED_DataRecord(const FED_DataRecord&)            = default;
  FED_DataRecord& operator=(const FED_DataRecord&) = default;
};
