#pragma once

/// @file
/// Two records side by side, value by value.

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include <bundled/FED_RecordFormat.h>

#include "diff/RecordMatching.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "ScratchRecord.h"

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
  /// Ids in integer lists of the first block and those that stand for them in the second; null keeps them.
  const IdMap* listIds = nullptr;
  /// Whether integer lists are compared as sets with repetitions.
  bool sortsLists = false;
};

/// What a walk over a pair of records tells. Fields count from 1, components from 0.
///
///     void Value(std::size_t field, std::size_t component, double a, double b, bool isSingle)
///     void Mismatch(std::size_t field, std::size_t component, const char* what, std::string a, std::string b)
///
/// A mismatch is a difference that no tolerance judges: integers, texts, lengths, structure.
template <typename Visitor>
class RecordWalk
{
public:
  /// @param isStrict whether fields have to have the same type codes and empty lists of doubles are unequal, as the
  ///                 library's comparison has it; else the codes of a pair, and floats and doubles, compare
  RecordWalk(const FED_DataBlock& first, const FED_DataBlock& second, const Transformation& transformation,
             bool isStrict)
      : first_(first),
        second_(second),
        transformation_(transformation),
        isStrict_(isStrict),
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
      return visitor.Mismatch(0, 0, "fields", std::to_string(fields), std::to_string(secondRecord_->GetFieldCount()));
    for (std::size_t field = 1; field <= fields; ++field) WalkField(field, visitor);
  }

  FED_ConstDataRecord& GetFirst() const noexcept { return *firstRecord_; }
  FED_ConstDataRecord& GetSecond() const noexcept { return *secondRecord_; }

private:
  using Class = FED_FieldType::Class;

  /// @return 1, 3 or 6 where all records of both blocks are that many doubles, 0 otherwise
  std::size_t CommonWidth() const
  {
    if (firstRecord_->GetFieldCount() != 1 || secondRecord_->GetFieldCount() != 1) return 0;
    const int first  = firstRecord_->GetFieldType(1);
    const int second = secondRecord_->GetFieldType(1);
    if (FED_FieldType::GetClass(first) != FED_FieldType::GetClass(second) || (isStrict_ && first != second)) return 0;
    return FED_FieldType::GetDoubleCount(FED_FieldType::GetClass(first));
  }

  void WalkDoubles(const RecordPair& pair, Visitor& visitor)
  {
    double a[6];
    double b[6];
    first_.GetValuesAt(pair.first, a);
    second_.GetValuesAt(pair.second, b);
    Transform(b, width_);
    for (std::size_t i = 0; i < width_; ++i) visitor.Value(1, i, a[i], b[i], false);
  }

  void WalkField(std::size_t field, Visitor& visitor)
  {
    const int   firstType   = firstRecord_->GetFieldType(field);
    const int   secondType  = secondRecord_->GetFieldType(field);
    const Class firstClass  = FED_FieldType::GetClass(firstType);
    const Class secondClass = FED_FieldType::GetClass(secondType);
    const auto  count       = [](Class c) { return c == Class::Float ? 1 : FED_FieldType::GetDoubleCount(c); };
    const bool  areReals    = count(firstClass) != 0 && count(firstClass) == count(secondClass);
    if ((isStrict_ && firstType != secondType) || (!areReals && firstClass != secondClass))
      return visitor.Mismatch(field, 0, "type", std::to_string(firstType), std::to_string(secondType));
    if (areReals) return WalkReals(field, firstClass, secondClass, visitor);
    switch (firstClass) {
      case Class::Integer:
        return WalkIntegers(field, {firstRecord_->GetInteger(field)}, {secondRecord_->GetInteger(field)}, visitor);
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
    const bool isSingle = firstClass == Class::Float && secondClass == Class::Float;
    for (std::size_t i = 0; i < count; ++i) visitor.Value(field, i, a[i], b[i], isSingle);
  }

  static std::size_t ReadReals(const FED_ConstDataRecord& record, std::size_t field, Class fieldClass, double* out)
  {
    if (fieldClass == Class::Vector) return record.GetVector(field, out), 3;
    if (fieldClass == Class::Tensor) return record.GetTensor(field, out), 6;
    *out = fieldClass == Class::Float ? static_cast<double>(record.GetFloat(field)) : record.GetDouble(field);
    return 1;
  }

  void WalkIntegers(std::size_t field, const std::vector<int>& a, const std::vector<int>& b, Visitor& visitor)
  {
    if (a.size() != b.size())
      return visitor.Mismatch(field, 0, "length", std::to_string(a.size()), std::to_string(b.size()));
    for (std::size_t i = 0; i < a.size(); ++i)
      if (a[i] != b[i]) visitor.Mismatch(field, i, "integer", std::to_string(a[i]), std::to_string(b[i]));
  }

  void WalkText(std::size_t field, Visitor& visitor)
  {
    std::string a = firstRecord_->GetString(field);
    std::string b = secondRecord_->GetString(field);
    if (a != b) visitor.Mismatch(field, 0, "text", '"' + a + '"', '"' + b + '"');
  }

  void WalkIntList(std::size_t field, Visitor& visitor)
  {
    std::vector<int> a = ReadList<FED_IntArray, int>(&FED_ConstDataRecord::GetIntList, *firstRecord_, field);
    std::vector<int> b = ReadList<FED_IntArray, int>(&FED_ConstDataRecord::GetIntList, *secondRecord_, field);
    if (transformation_.listIds != nullptr)
      for (int& id : a)
        if (const auto found = transformation_.listIds->find(id); found != transformation_.listIds->end())
          id = found->second;
    if (transformation_.sortsLists) {
      std::sort(a.begin(), a.end());
      std::sort(b.begin(), b.end());
    }
    WalkIntegers(field, a, b, visitor);
  }

  void WalkDoubleList(std::size_t field, Visitor& visitor)
  {
    std::vector<double> a =
        ReadList<FED_DoubleArray, double>(&FED_ConstDataRecord::GetDoubleList, *firstRecord_, field);
    std::vector<double> b =
        ReadList<FED_DoubleArray, double>(&FED_ConstDataRecord::GetDoubleList, *secondRecord_, field);
    if (a.size() != b.size())
      return visitor.Mismatch(field, 0, "length", std::to_string(a.size()), std::to_string(b.size()));
    if (isStrict_ && a.empty()) return visitor.Mismatch(field, 0, "empty lists", "0", "0");
    Transform(b.data(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) visitor.Value(field, i, a[i], b[i], false);
  }

  template <typename Array, typename T, typename Getter>
  static std::vector<T> ReadList(Getter getter, const FED_ConstDataRecord& record, std::size_t field)
  {
    Array list;
    (record.*getter)(field, list);
    return std::vector<T>(list.GetData(), list.GetData() + list.GetSize());
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
  bool                  isStrict_;
  ScratchRecord         firstRecord_;
  ScratchRecord         secondRecord_;
  std::size_t           width_;
};

}  // namespace quilon::diff
