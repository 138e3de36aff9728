#include "ResultRecord.h"

#include <algorithm>
#include <utility>

#include "QuilonUtilities/FED_Failure.h"

#include "DbFailure.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|ResultRecord";

ResultRecord::Value MakeValue(int type)
{
  switch (FED_FieldType::GetClass(type)) {
    case FED_FieldType::Integer:
      return 0;
    case FED_FieldType::Float:
      return 0.0f;
    case FED_FieldType::String:
      return std::string();
    case FED_FieldType::IntList:
      return FED_IntArray();
    case FED_FieldType::DoubleList:
      return FED_DoubleArray();
    default:
      return ResultRecord::Doubles{};
  }
}

// A target without fields takes whatever is set.
void RequireSameFields(const FED_ConstDataRecord& source, const FED_DataRecord& target)
{
  const std::size_t count = target.GetFieldCount();
  if (count == 0) return;
  if (source.GetFieldCount() != count)
    throw FED_Failure("a record of " + std::to_string(source.GetFieldCount()) + " fields is copied into one of " +
                          std::to_string(count),
                      kTag);
  for (std::size_t field = 1; field <= count; ++field) {
    const FED_FieldType::Class given    = FED_FieldType::GetClass(source.GetFieldType(field));
    const FED_FieldType::Class expected = FED_FieldType::GetClass(target.GetFieldType(field));
    if (given != expected)
      throw FED_Failure("record field " + std::to_string(field) + " is of type " + FED_FieldType::GetName(given) +
                            " and is copied into one of type " + FED_FieldType::GetName(expected),
                        kTag);
  }
}

void CopyField(const FED_ConstDataRecord& source, FED_DataRecord& target, std::size_t field)
{
  FED_IntArray    integers;
  FED_DoubleArray doubles;
  double          values[6];
  const int       type = source.GetFieldType(field);
  switch (FED_FieldType::GetClass(type)) {
    case FED_FieldType::Integer:
      target.SetInteger(field, source.GetInteger(field));
      break;
    case FED_FieldType::Float:
      target.SetFloat(field, source.GetFloat(field));
      break;
    case FED_FieldType::Double:
      target.SetDouble(field, source.GetDouble(field));
      break;
    case FED_FieldType::String:
      target.SetString(field, source.GetString(field));
      break;
    case FED_FieldType::Vector:
      source.GetVector(field, values);
      target.SetVector(field, values);
      break;
    case FED_FieldType::Tensor:
      source.GetTensor(field, values);
      target.SetTensor(field, values);
      break;
    case FED_FieldType::IntList:
      source.GetIntList(field, integers);
      target.SetIntList(field, integers);
      break;
    case FED_FieldType::DoubleList:
      source.GetDoubleList(field, doubles);
      target.SetDoubleList(field, doubles);
      break;
    case FED_FieldType::None:
      throw FED_Failure(
          "record field " + std::to_string(field) + " has the type code " + std::to_string(type) + ", expected 1 to 11",
          kTag);
  }
}

}  // namespace

ResultRecord::ResultRecord(const FED_DataBlock& block, const FED_RecordFormat& format)
    : block_(&block), formatIsKnown_(!format.IsEmpty())
{
  SetTypes(format);
}

void ResultRecord::SetFormat(const FED_RecordFormat& format)
{
  SetTypes(format);
  formatIsKnown_ = true;
}

void ResultRecord::SetTypes(const FED_RecordFormat& format)
{
  if (HasFields(format)) return;
  std::vector<Field> fields;
  fields.reserve(format.GetTypes().size());
  for (const int type : format.GetTypes()) fields.push_back({type, MakeValue(type)});
  fields_ = std::move(fields);
}

bool ResultRecord::HasFields(const FED_RecordFormat& format) const noexcept
{
  const std::vector<int>& types = format.GetTypes();
  return std::equal(fields_.begin(), fields_.end(), types.begin(), types.end(),
                    [](const Field& field, int type) { return field.type == type; });
}

int ResultRecord::GetFieldType(std::size_t field) const { return GetField(field).type; }

int ResultRecord::GetInteger(std::size_t field) const { return std::get<int>(GetValue(field, FED_FieldType::Integer)); }

void ResultRecord::GetIntList(std::size_t field, FED_IntArray& out) const
{
  out = std::get<FED_IntArray>(GetValue(field, FED_FieldType::IntList));
}

void ResultRecord::GetDoubleList(std::size_t field, FED_DoubleArray& out) const
{
  out = std::get<FED_DoubleArray>(GetValue(field, FED_FieldType::DoubleList));
}

std::size_t ResultRecord::GetIntListLen(std::size_t field) const
{
  return std::get<FED_IntArray>(GetValue(field, FED_FieldType::IntList)).GetSize();
}

std::size_t ResultRecord::GetDoubleListLen(std::size_t field) const
{
  return std::get<FED_DoubleArray>(GetValue(field, FED_FieldType::DoubleList)).GetSize();
}

std::string ResultRecord::GetString(std::size_t field) const
{
  return std::get<std::string>(GetValue(field, FED_FieldType::String));
}

std::size_t ResultRecord::GetFieldSize(std::size_t field) const
{
  const Field& found = GetField(field);
  switch (FED_FieldType::GetClass(found.type)) {
    case FED_FieldType::Integer:
    case FED_FieldType::Float:
      return 4;
    case FED_FieldType::String:
      return std::get<std::string>(found.value).size() + 4;
    case FED_FieldType::IntList:
      return 4 * std::get<FED_IntArray>(found.value).GetSize() + 4;
    case FED_FieldType::DoubleList:
      return 8 * std::get<FED_DoubleArray>(found.value).GetSize() + 4;
    default:
      return 8 * FED_FieldType::GetDoubleCount(FED_FieldType::GetClass(found.type));
  }
}

float ResultRecord::GetFloat(std::size_t field) const { return std::get<float>(GetValue(field, FED_FieldType::Float)); }

double ResultRecord::GetDouble(std::size_t field) const
{
  return std::get<Doubles>(GetValue(field, FED_FieldType::Double))[0];
}

void ResultRecord::GetVector(std::size_t field, double* out) const
{
  std::copy_n(std::get<Doubles>(GetValue(field, FED_FieldType::Vector)).begin(), 3, out);
}

void ResultRecord::GetTensor(std::size_t field, double* out) const
{
  std::copy_n(std::get<Doubles>(GetValue(field, FED_FieldType::Tensor)).begin(), 6, out);
}

void ResultRecord::SetInteger(std::size_t field, int value) { SetValue(field, FED_FieldType::Integer, 1, value); }

void ResultRecord::SetIntList(std::size_t field, const FED_IntArray& values)
{
  SetValue(field, FED_FieldType::IntList, 7, values);
}

void ResultRecord::SetDoubleList(std::size_t field, const FED_DoubleArray& values)
{
  SetValue(field, FED_FieldType::DoubleList, 9, values);
}

void ResultRecord::SetString(std::size_t field, const std::string& value)
{
  SetValue(field, FED_FieldType::String, 4, value);
}

void ResultRecord::SetFloat(std::size_t field, float value) { SetValue(field, FED_FieldType::Float, 3, value); }

void ResultRecord::SetDouble(std::size_t field, double value) { SetDoubles(field, FED_FieldType::Double, 2, &value); }

void ResultRecord::SetVector(std::size_t field, const double* values)
{
  SetDoubles(field, FED_FieldType::Vector, 5, values);
}

void ResultRecord::SetTensor(std::size_t field, const double* values)
{
  SetDoubles(field, FED_FieldType::Tensor, 6, values);
}

const ResultRecord::Field& ResultRecord::GetField(std::size_t field) const
{
  if (field >= 1 && field <= fields_.size()) return fields_[field - 1];
  ThrowBlockFailure(block_->GetDescriptor(),
                    "record field is " + std::to_string(field) + ", expected 1 to " + std::to_string(fields_.size()),
                    kTag);
}

const ResultRecord::Value& ResultRecord::GetValue(std::size_t field, FED_FieldType::Class expected) const
{
  const Field&               found  = GetField(field);
  const FED_FieldType::Class actual = FED_FieldType::GetClass(found.type);
  if (actual == expected) return found.value;
  ThrowBlockFailure(block_->GetDescriptor(),
                    "record field " + std::to_string(field) + " is of type " + FED_FieldType::GetName(actual) +
                        ", expected " + FED_FieldType::GetName(expected),
                    kTag);
}

template <typename T>
void ResultRecord::SetValue(std::size_t field, FED_FieldType::Class fieldClass, int type, const T& value)
{
  if (!formatIsKnown_ && field == fields_.size() + 1) {
    fields_.emplace_back(type, std::in_place_type<T>, value);
    return;
  }
  GetValue(field, fieldClass);
  // Assigned in place: lists keep the room that they have.
  std::get<T>(fields_[field - 1].value) = value;
}

void ResultRecord::SetDoubles(std::size_t field, FED_FieldType::Class fieldClass, int type, const double* values)
{
  Doubles doubles{};
  std::copy_n(values, FED_FieldType::GetDoubleCount(fieldClass), doubles.begin());
  SetValue(field, fieldClass, type, doubles);
}

void CopyRecord(const FED_ConstDataRecord& source, FED_DataRecord& target)
{
  auto* own = dynamic_cast<ResultRecord*>(&target);
  if (own != nullptr && !own->HasFormat()) own->SetTypes(FED_RecordFormat::FromRecord(source));
  RequireSameFields(source, target);
  for (std::size_t field = 1; field <= source.GetFieldCount(); ++field) CopyField(source, target, field);
}
