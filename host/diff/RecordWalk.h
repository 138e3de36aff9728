#pragma once

/// @file
/// Two records side by side, value by value.

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <variant>

#include <bundled/FED_RecordFormat.h>

#include "database/ScratchRecord.h"
#include "diff/RecordMatching.h"
#include "QuilonDbConnector/FED_DataBlock.h"

namespace quilon::diff {

/// How the values of the second block are changed before they are compared.
struct Transformation
{
  enum Sign
  {
    AsIs,
    Negated,
    NegatedPrincipal  ///< principal values of a negated tensor: negated and in reverse order
  };
  Sign sign = AsIs;
  /// Ids in integer lists of the first block and those that stand for them in the second; an id that has none differs
  /// from every id. Null keeps them.
  const IdMap* listIds = nullptr;
  /// Whether integer lists are compared as sets with repetitions.
  bool sortsLists = false;

  /// @return whether all stays as it is
  bool IsPlain() const noexcept { return sign == AsIs && listIds == nullptr && !sortsLists; }
};

/// A value of one side, as it is stored.
using Value = std::variant<std::monostate,  // there is none
                           int, float, double, std::string>;

/// Which fields of a pair of records count as of one type.
enum class FieldTypes
{
  AlikeCodes,   ///< the two codes of a pair (I and i, D and d), and floats and doubles
  SameCodes,    ///< equal codes
  LibrarysOwn,  ///< equal codes, and two empty lists of doubles are unequal, as the library's comparison has it
};

/// What the values of a field are.
struct ValueSort
{
  bool isSingle = false;  ///< of 32 bits in both records
  bool isList   = false;
};

/// What a walk over a pair of records tells. Fields count from 1, components from 0.
///
///     void Values(std::size_t field, const double* a, const double* b, std::size_t count, ValueSort sort)
///     void Mismatch(std::size_t field, std::size_t component, const char* what, Value a, Value b)
///
/// A mismatch is a difference that no tolerance judges: integers, texts, lengths, structure.
template <typename Visitor>
class RecordWalk
{
public:
  RecordWalk(const FED_DataBlock& first, const FED_DataBlock& second, const Transformation& transformation,
             FieldTypes types)
      : first_(first),
        second_(second),
        transformation_(transformation),
        types_(types),
        firstRecord_(first),
        secondRecord_(second),
        width_(CommonWidth())
  {}

  void Walk(const RecordPair& pair, Visitor& visitor)
  {
    if (width_ != 0) return WalkDoubles(pair, visitor);
    first_.GetRecord(pair.first, *firstRecord_);
    second_.GetRecord(pair.second, *secondRecord_);
    const std::size_t fields = firstRecord_->GetFieldCount();
    if (fields != secondRecord_->GetFieldCount())
      return visitor.Mismatch(0, 0, "fields", ToValue(fields), ToValue(secondRecord_->GetFieldCount()));
    for (std::size_t field = 1; field <= fields; ++field) WalkField(field, visitor);
  }

private:
  using Class = FED_FieldType::Class;

  bool HasToBeSame() const noexcept { return types_ != FieldTypes::AlikeCodes; }

  /// @return 1, 3 or 6 where all records of both blocks are that many doubles, 0 otherwise
  std::size_t CommonWidth() const
  {
    if (firstRecord_->GetFieldCount() != 1 || secondRecord_->GetFieldCount() != 1) return 0;
    const int first  = firstRecord_->GetFieldType(1);
    const int second = secondRecord_->GetFieldType(1);
    if (FED_FieldType::GetClass(first) != FED_FieldType::GetClass(second) || (HasToBeSame() && first != second))
      return 0;
    return FED_FieldType::GetDoubleCount(FED_FieldType::GetClass(first));
  }

  void WalkDoubles(const RecordPair& pair, Visitor& visitor)
  {
    double a[6];
    double b[6];
    first_.GetValuesAt(pair.first, a);
    second_.GetValuesAt(pair.second, b);
    Transform(b, width_);
    visitor.Values(1, a, b, width_, {});
  }

  void WalkField(std::size_t field, Visitor& visitor)
  {
    const int   firstType   = firstRecord_->GetFieldType(field);
    const int   secondType  = secondRecord_->GetFieldType(field);
    const Class firstClass  = FED_FieldType::GetClass(firstType);
    const Class secondClass = FED_FieldType::GetClass(secondType);
    const auto  count       = [](Class c) { return c == Class::Float ? 1 : FED_FieldType::GetDoubleCount(c); };
    const bool  areReals    = count(firstClass) != 0 && count(firstClass) == count(secondClass);
    if ((HasToBeSame() && firstType != secondType) || (!areReals && firstClass != secondClass))
      return visitor.Mismatch(field, 0, "type", firstType, secondType);
    if (areReals) return WalkReals(field, firstClass, secondClass, visitor);
    switch (firstClass) {
      case Class::Integer:
        return WalkInteger(field, 0, firstRecord_->GetInteger(field), secondRecord_->GetInteger(field), visitor);
      case Class::String:
        return WalkText(field, visitor);
      case Class::IntList:
        return WalkIntList(field, visitor);
      case Class::DoubleList:
        return WalkDoubleList(field, visitor);
      default:
        return;  // an unknown type counts as equal
    }
  }

  void WalkReals(std::size_t field, Class firstClass, Class secondClass, Visitor& visitor)
  {
    double            a[6];
    double            b[6];
    const std::size_t count = ReadReals(*firstRecord_, field, firstClass, a);
    ReadReals(*secondRecord_, field, secondClass, b);
    Transform(b, count);
    visitor.Values(field, a, b, count, {firstClass == Class::Float && secondClass == Class::Float, false});
  }

  /// Lengths and counts of fields are far below the limits of an int.
  static Value ToValue(std::size_t count) { return static_cast<int>(count); }

  static std::size_t ReadReals(const FED_ConstDataRecord& record, std::size_t field, Class fieldClass, double* out)
  {
    if (fieldClass == Class::Vector) return record.GetVector(field, out), 3;
    if (fieldClass == Class::Tensor) return record.GetTensor(field, out), 6;
    *out = fieldClass == Class::Float ? static_cast<double>(record.GetFloat(field)) : record.GetDouble(field);
    return 1;
  }

  void WalkInteger(std::size_t field, std::size_t component, int a, int b, Visitor& visitor)
  {
    if (a != b) visitor.Mismatch(field, component, "integer", a, b);
  }

  void WalkText(std::size_t field, Visitor& visitor)
  {
    std::string a = firstRecord_->GetString(field);
    std::string b = secondRecord_->GetString(field);
    if (a != b) visitor.Mismatch(field, 0, "text", std::move(a), std::move(b));
  }

  void WalkIntList(std::size_t field, Visitor& visitor)
  {
    firstRecord_->GetIntList(field, firstInts_);
    secondRecord_->GetIntList(field, secondInts_);
    const std::size_t count = firstInts_.GetSize();
    if (count != secondInts_.GetSize())
      return visitor.Mismatch(field, 0, "length", ToValue(count), ToValue(secondInts_.GetSize()));
    int* const a = firstInts_.GetData();
    int* const b = secondInts_.GetData();
    if (transformation_.listIds != nullptr) {
      for (std::size_t i = 0; i < count; ++i) {
        const auto found = transformation_.listIds->find(a[i]);
        if (found == transformation_.listIds->end())
          return visitor.Mismatch(field, i, "no counterpart in B", a[i], Value());
        a[i] = found->second;
      }
    }
    if (transformation_.sortsLists) {
      std::sort(a, a + count);
      std::sort(b, b + count);
    }
    for (std::size_t i = 0; i < count; ++i) WalkInteger(field, i, a[i], b[i], visitor);
  }

  void WalkDoubleList(std::size_t field, Visitor& visitor)
  {
    firstRecord_->GetDoubleList(field, firstDoubles_);
    secondRecord_->GetDoubleList(field, secondDoubles_);
    const std::size_t count = firstDoubles_.GetSize();
    if (count != secondDoubles_.GetSize())
      return visitor.Mismatch(field, 0, "length", ToValue(count), ToValue(secondDoubles_.GetSize()));
    if (types_ == FieldTypes::LibrarysOwn && count == 0) return visitor.Mismatch(field, 0, "empty lists", 0, 0);
    const double* const a = firstDoubles_.GetData();
    double* const       b = secondDoubles_.GetData();
    Transform(b, count);
    visitor.Values(field, a, b, count, {false, true});
  }

  void Transform(double* values, std::size_t count) const
  {
    if (transformation_.sign == Transformation::AsIs) return;
    for (std::size_t i = 0; i < count; ++i) values[i] = -values[i];
    if (transformation_.sign == Transformation::NegatedPrincipal) std::reverse(values, values + count);
  }

  const FED_DataBlock&  first_;
  const FED_DataBlock&  second_;
  const Transformation& transformation_;
  FieldTypes            types_;
  ScratchRecord         firstRecord_;
  ScratchRecord         secondRecord_;
  std::size_t           width_;
  // Lists, kept from record to record with the room that they have.
  FED_IntArray    firstInts_;
  FED_IntArray    secondInts_;
  FED_DoubleArray firstDoubles_;
  FED_DoubleArray secondDoubles_;
};

}  // namespace quilon::diff
