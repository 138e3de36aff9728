#pragma once

/// @file
/// Scratch records of result blocks.

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "bundled/FED_RecordFormat.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_DataRecord.h"

/// A record by value. One class serves reading and writing.
///
/// With a format its fields are those of the format, zero or empty until set. Without one, fields are set in order
/// from 1 and take the first code of a pair.
class ResultRecord final : public FED_DataRecord
{
public:
  using Doubles = std::array<double, 6>;  ///< the first 1, 3 or 6 count
  using Value   = std::variant<int, float, Doubles, std::string, FED_IntArray, FED_DoubleArray>;

  struct Field
  {
    Field(int type_, Value value_) : type(type_), value(std::move(value_)) {}
    /// Makes the value in its place.
    template <typename T>
    Field(int type_, std::in_place_type_t<T> held, const T& value_) : type(type_), value(held, value_)
    {}

    int   type;
    Value value;
  };

  /// @param block named in messages; outlives the record
  ResultRecord(const FED_DataBlock& block, const FED_RecordFormat& format);

  /// Gives the record the fields of the format, zero or empty; one that has them already keeps its values.
  void SetTypes(const FED_RecordFormat& format);
  /// The same, and from now on the fields are these.
  void SetFormat(const FED_RecordFormat& format);

  std::vector<Field>&       GetFields() noexcept { return fields_; }
  const std::vector<Field>& GetFields() const noexcept { return fields_; }
  bool                      HasFormat() const noexcept { return formatIsKnown_; }
  bool                      HasFields(const FED_RecordFormat& format) const noexcept;

  std::size_t GetFieldCount() const override { return fields_.size(); }
  int         GetFieldType(std::size_t field) const override;
  int         GetInteger(std::size_t field) const override;
  void        GetIntList(std::size_t field, FED_IntArray& out) const override;
  void        GetDoubleList(std::size_t field, FED_DoubleArray& out) const override;
  std::size_t GetIntListLen(std::size_t field) const override;
  std::size_t GetDoubleListLen(std::size_t field) const override;
  std::string GetString(std::size_t field) const override;
  std::size_t GetFieldSize(std::size_t field) const override;
  float       GetFloat(std::size_t field) const override;
  double      GetDouble(std::size_t field) const override;
  void        GetVector(std::size_t field, double* out) const override;
  void        GetTensor(std::size_t field, double* out) const override;

  void SetInteger(std::size_t field, int value) override;
  void SetIntList(std::size_t field, const FED_IntArray& values) override;
  void SetDoubleList(std::size_t field, const FED_DoubleArray& values) override;
  void SetString(std::size_t field, const std::string& value) override;
  void SetFloat(std::size_t field, float value) override;
  void SetDouble(std::size_t field, double value) override;
  void SetVector(std::size_t field, const double* values) override;
  void SetTensor(std::size_t field, const double* values) override;

private:
  const Field& GetField(std::size_t field) const;
  const Value& GetValue(std::size_t field, FED_FieldType::Class expected) const;
  template <typename T>
  void SetValue(std::size_t field, FED_FieldType::Class fieldClass, int type, const T& value);
  void SetDoubles(std::size_t field, FED_FieldType::Class fieldClass, int type, const double* values);

  const FED_DataBlock* block_;
  bool                 formatIsKnown_;
  std::vector<Field>   fields_;
};

/// Copies all fields between records of any databases through their interfaces alone. A target of ours that has no
/// format yet takes the source's field types, pair codes included.
/// @throws FED_Failure when the fields do not fit the target; its fields are then as before
void CopyRecord(const FED_ConstDataRecord& source, FED_DataRecord& target);
