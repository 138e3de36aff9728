#pragma once

/// @file
/// Comparison of two records and of two values.

#include "quilon_language.h"

#include <cmath>

#include "quilon_export.h"
#include "QuilonDataDiffDefs.h"

class FED_ConstDataRecord;

namespace QuilonDataRecordDiff {

/// Whether two values are equal, exactly or within the tolerances.
///
/// Within tolerances both have to hold: |a - b| <= absTol, and, where both values are positive,
/// |a - b| / min(a, b) <= relTol. Negative values and zeros are judged by the absolute difference alone.
///
/// A NaN is equal to anything within tolerances and to nothing exactly; 0.0 and -0.0 are equal either way, and so are
/// infinities of one sign.
inline bool EqualOrNearValue(double a, double b, const QuilonDataBlockDiff::CompareInfo& info) noexcept
{
  if (info.useExactCompare) return a == b;
  // Both tests ask for a difference that is too large, not for one that is small enough: a NaN makes neither true and
  // passes. Test: ANaNIsEqualToAnythingWithinTolerances.
  const double difference = std::fabs(a - b);
  if (difference > info.absTol) return false;
  // Only two positive values are judged relative to their size. A relative test of negative ones would call pairs
  // different that stored comparisons call equal. Test: ValuesThatAreNotBothPositiveAreJudgedByTheAbsoluteTestAlone.
  const double smaller = b < a ? b : a;
  // Both sides are worked out whatever the sign: a quotient costs less than a branch on signs that come as they like.
  return !(static_cast<int>(smaller > 0.0) & static_cast<int>(difference / smaller > info.relTol));
}

/// Whether two records are equal: as many fields, each of the same type code and size in both, and every field equal.
/// Doubles, floats (as doubles), vectors, tensors and double lists compare by EqualOrNearValue(), integers, strings and
/// integer lists exactly. Fields of an unknown type code count as equal. Records without fields are equal.
///
/// Two empty double lists are unequal.
/// @return false at the first difference; fields behind it are not read
/// @throws what the records throw
QUILON_EXPORT bool EqualOrNearDataRecord(const FED_ConstDataRecord& first, const FED_ConstDataRecord& second,
                                         const QuilonDataBlockDiff::CompareInfo& info);

}  // namespace QuilonDataRecordDiff
