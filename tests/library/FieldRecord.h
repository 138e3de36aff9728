#pragma once

/// @file
/// A record to read that holds whatever a test puts into it, also type codes and sizes that no database has.

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <QuilonDbConnector/FED_DataRecord.h>

namespace quilon_test {

/// Fields are added with their type code; each keeps its value in the member that its getter reads. GetFieldSize()
/// tells the size given, and every getter writes the number of its field to GetReadFields().
class FieldRecord : public FED_ConstDataRecord
{
public:
  struct Field
  {
    int                 type    = 0;
    std::size_t         size    = 0;
    int                 integer = 0;
    float               single  = 0.0f;
    std::string         text;
    std::vector<int>    integers;
    std::vector<double> doubles;  // of a double, vector, tensor or double list
  };

  FieldRecord() = default;
  explicit FieldRecord(std::vector<Field> fields) : fields_(std::move(fields)) {}

  /// Fields whose values were read, in order; a length counts as a read.
  const std::vector<std::size_t>& GetReadFields() const noexcept { return read_; }

  std::size_t GetFieldCount() const override { return fields_.size(); }
  int         GetFieldType(std::size_t field) const override { return fields_.at(field - 1).type; }
  std::size_t GetFieldSize(std::size_t field) const override { return fields_.at(field - 1).size; }
  int         GetInteger(std::size_t field) const override { return Read(field).integer; }
  void GetIntList(std::size_t field, FED_IntArray& out) const override { out = FED_IntArray(Read(field).integers); }
  void GetDoubleList(std::size_t field, FED_DoubleArray& out) const override
  {
    out = FED_DoubleArray(Read(field).doubles);
  }
  std::size_t GetIntListLen(std::size_t field) const override { return Read(field).integers.size(); }
  std::size_t GetDoubleListLen(std::size_t field) const override { return Read(field).doubles.size(); }
  std::string GetString(std::size_t field) const override { return Read(field).text; }
  float       GetFloat(std::size_t field) const override { return Read(field).single; }
  double      GetDouble(std::size_t field) const override { return Read(field).doubles.at(0); }
  void        GetVector(std::size_t field, double* out) const override { CopyDoubles(field, 3, out); }
  void        GetTensor(std::size_t field, double* out) const override { CopyDoubles(field, 6, out); }

private:
  const Field& Read(std::size_t field) const
  {
    read_.push_back(field);
    return fields_.at(field - 1);
  }
  void CopyDoubles(std::size_t field, std::size_t count, double* out) const
  {
    const std::vector<double>& values = Read(field).doubles;
    for (std::size_t i = 0; i < count; ++i) out[i] = values.at(i);
  }

  std::vector<Field>               fields_;
  mutable std::vector<std::size_t> read_;
};

inline FieldRecord::Field Integer(int type, int value)
{
  FieldRecord::Field field{type, 4, value, 0.0f, {}, {}, {}};
  return field;
}
inline FieldRecord::Field Float(float value) { return {3, 4, 0, value, {}, {}, {}}; }
inline FieldRecord::Field Double(int type, double value) { return {type, 8, 0, 0.0f, {}, {}, {value}}; }
inline FieldRecord::Field String(const std::string& value) { return {4, value.size() + 4, 0, 0.0f, value, {}, {}}; }
inline FieldRecord::Field IntList(int type, const std::vector<int>& values)
{
  return {type, 4 * values.size() + 4, 0, 0.0f, {}, values, {}};
}
/// Doubles of a vector (5), a tensor (6) or a double list (9).
inline FieldRecord::Field Doubles(int type, const std::vector<double>& values)
{
  return {type, 8 * values.size() + (type == 9 ? 4u : 0u), 0, 0.0f, {}, {}, values};
}
/// A field of a type code that nothing knows; `integer` tells two of them apart.
inline FieldRecord::Field Unknown(int type, int integer) { return {type, 16, integer, 0.0f, {}, {}, {}}; }

}  // namespace quilon_test
