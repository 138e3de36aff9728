#include "QuilonDataRecordDiff.h"

#include <cstddef>

#include "QuilonDbConnector/FED_DataRecord.h"

namespace {

using QuilonDataBlockDiff::CompareInfo;

bool AreNear(const double* first, const double* second, std::size_t count, const CompareInfo& info)
{
  for (std::size_t i = 0; i < count; ++i)
    if (!QuilonDataRecordDiff::EqualOrNearValue(first[i], second[i], info)) return false;
  return true;
}

bool HaveEqualIntLists(const FED_ConstDataRecord& first, const FED_ConstDataRecord& second, std::size_t field)
{
  if (first.GetIntListLen(field) != second.GetIntListLen(field)) return false;
  FED_IntArray a;
  FED_IntArray b;
  first.GetIntList(field, a);
  second.GetIntList(field, b);
  return a == b;
}

bool HaveNearDoubleLists(const FED_ConstDataRecord& first, const FED_ConstDataRecord& second, std::size_t field,
                         const CompareInfo& info)
{
  const std::size_t length = first.GetDoubleListLen(field);
  if (length != second.GetDoubleListLen(field)) return false;
  // Empty lists are no evidence of equal values: a record that lost its values in both runs is reported.
  // Test: TwoEmptyDoubleListsAreUnequal.
  if (length == 0) return false;
  FED_DoubleArray a;
  FED_DoubleArray b;
  first.GetDoubleList(field, a);
  second.GetDoubleList(field, b);
  return AreNear(a.GetData(), b.GetData(), length, info);
}

/// Both records have a field of this type code.
bool HaveNearField(const FED_ConstDataRecord& first, const FED_ConstDataRecord& second, std::size_t field, int type,
                   const CompareInfo& info)
{
  double a[6];
  double b[6];
  switch (type) {
    case 1:
    case 10:
      return first.GetInteger(field) == second.GetInteger(field);
    case 2:
    case 11:
      return QuilonDataRecordDiff::EqualOrNearValue(first.GetDouble(field), second.GetDouble(field), info);
    case 3:
      return QuilonDataRecordDiff::EqualOrNearValue(static_cast<double>(first.GetFloat(field)),
                                                    static_cast<double>(second.GetFloat(field)), info);
    case 4:
      return first.GetString(field) == second.GetString(field);
    case 5:
      first.GetVector(field, a);
      second.GetVector(field, b);
      return AreNear(a, b, 3, info);
    case 6:
      first.GetTensor(field, a);
      second.GetTensor(field, b);
      return AreNear(a, b, 6, info);
    case 7:
    case 8:
      return HaveEqualIntLists(first, second, field);
    case 9:
      return HaveNearDoubleLists(first, second, field, info);
    default:
      return true;
  }
}

}  // namespace

bool QuilonDataRecordDiff::EqualOrNearDataRecord(const FED_ConstDataRecord& first, const FED_ConstDataRecord& second,
                                                 const QuilonDataBlockDiff::CompareInfo& info)
{
  const std::size_t fieldCount = first.GetFieldCount();
  if (fieldCount != second.GetFieldCount()) return false;
  for (std::size_t field = 1; field <= fieldCount; ++field) {
    if (first.GetFieldType(field) != second.GetFieldType(field)) return false;
    if (first.GetFieldSize(field) != second.GetFieldSize(field)) return false;
  }
  for (std::size_t field = 1; field <= fieldCount; ++field)
    if (!HaveNearField(first, second, field, first.GetFieldType(field), info)) return false;
  return true;
}
