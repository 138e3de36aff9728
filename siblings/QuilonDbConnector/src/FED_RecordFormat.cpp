#include "bundled/FED_RecordFormat.h"

#include <cstring>
#include <utility>

#include "QuilonDbConnector/FED_DataRecord.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_RecordFormat";

struct Token
{
  const char*          text;
  int                  type;
  FED_FieldType::Class fieldClass;
};

// "Db" stands before "D": a string is cut into the longest tokens.
constexpr Token kTokens[] = {
    {"I", 1, FED_FieldType::Integer},  {"i", 10, FED_FieldType::Integer}, {"F", 3, FED_FieldType::Float},
    {"Lb", 7, FED_FieldType::IntList}, {"lb", 8, FED_FieldType::IntList}, {"Db", 9, FED_FieldType::DoubleList},
    {"D", 2, FED_FieldType::Double},   {"d", 11, FED_FieldType::Double},  {"S", 4, FED_FieldType::String},
    {"V", 5, FED_FieldType::Vector},   {"T", 6, FED_FieldType::Tensor},
};

const Token* FindToken(const std::string& text, std::size_t position)
{
  for (const Token& token : kTokens)
    if (text.compare(position, std::strlen(token.text), token.text) == 0) return &token;
  return nullptr;
}

const Token* FindToken(int type) noexcept
{
  for (const Token& token : kTokens)
    if (token.type == type) return &token;
  return nullptr;
}

}  // namespace

FED_RecordFormat::FED_RecordFormat(std::vector<int> types) : types_(std::move(types))
{
  for (std::size_t i = 0; i < types_.size(); ++i)
    if (FindToken(types_[i]) == nullptr)
      throw FED_Failure("record format: type code of field " + std::to_string(i + 1) + " is " +
                            std::to_string(types_[i]) + ", expected 1 to 11",
                        kTag);
}

FED_RecordFormat FED_RecordFormat::Parse(const std::string& text)
{
  FED_RecordFormat format;
  for (std::size_t position = 0; position < text.size();) {
    if (const Token* token = FindToken(text, position)) {
      format.types_.push_back(token->type);
      position += std::strlen(token->text);
    } else if (text[position] == 'b') {
      ++position;
    } else if (text[position] == 'L' || text[position] == 'l') {
      throw FED_Failure("record format \"" + text + "\": '" + text[position] + "' at position " +
                            std::to_string(position + 1) + " has no 'b' behind it",
                        kTag);
    } else {
      throw FED_Failure("record format \"" + text + "\": unexpected '" + text[position] + "' at position " +
                            std::to_string(position + 1) + ", expected one of I i F D d S V T Lb lb Db b",
                        kTag);
    }
  }
  return format;
}

FED_RecordFormat FED_RecordFormat::FromRecord(const FED_ConstDataRecord& record)
{
  std::vector<int> types(record.GetFieldCount());
  for (std::size_t i = 0; i < types.size(); ++i) types[i] = record.GetFieldType(i + 1);
  return FED_RecordFormat(std::move(types));
}

std::size_t FED_RecordFormat::GetDoubleCount() const noexcept
{
  std::size_t count = 0;
  for (const int type : types_) {
    const std::size_t ofField = FED_FieldType::GetDoubleCount(FED_FieldType::GetClass(type));
    if (ofField == 0) return 0;
    count += ofField;
  }
  return count;
}

std::string FED_RecordFormat::ToString() const
{
  std::string text;
  for (const int type : types_) text += FindToken(type)->text;
  return text;
}

FED_FieldType::Class FED_FieldType::GetClass(int type) noexcept
{
  const Token* token = FindToken(type);
  return token == nullptr ? None : token->fieldClass;
}

const char* FED_FieldType::GetName(Class fieldClass) noexcept
{
  switch (fieldClass) {
    case Integer:
      return "integer";
    case Float:
      return "float";
    case Double:
      return "double";
    case String:
      return "string";
    case Vector:
      return "vector";
    case Tensor:
      return "tensor";
    case IntList:
      return "integer list";
    case DoubleList:
      return "double list";
    default:
      return "no field type";
  }
}

std::size_t FED_FieldType::GetDoubleCount(Class fieldClass) noexcept
{
  switch (fieldClass) {
    case Double:
      return 1;
    case Vector:
      return 3;
    case Tensor:
      return 6;
    default:
      return 0;
  }
}
