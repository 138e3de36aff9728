#pragma once

/// @file
/// Two blocks of one kind, compared.

#include <cstddef>
#include <string>
#include <vector>

#include "diff/ComparisonRule.h"
#include "diff/RecordMatching.h"
#include "diff/RecordWalk.h"

namespace quilon::diff {

/// Distances of two fields over all values that are finite in both.
struct FieldNorms
{
  std::size_t values     = 0;    ///< pairs of numbers that were compared, NaNs and infinities included
  std::size_t unmeasured = 0;    ///< of these, pairs without a finite distance
  double      peak       = 0.0;  ///< largest finite magnitude, of the smaller one of the two fields
  double      largest    = 0.0;  ///< of |a - b|
  double      sumSquares = 0.0;  ///< of a - b
  double      reference  = 0.0;  ///< sum of squares of a

  double GetRms() const noexcept;
  /// @return the Euclidean norm of a - b as a fraction of that of a; 0 when both are 0
  double GetRelative() const noexcept;
};

template <typename Parcel>
void Travel(Parcel& parcel, FieldNorms& norms)
{
  parcel(norms.values, norms.unmeasured, norms.peak, norms.largest, norms.sumSquares, norms.reference);
}

/// Which side holds a NaN.
enum class NanSide
{
  First,
  Second,
  Both
};

/// The place of a NaN that was let pass.
struct PassedNan
{
  std::size_t index;  ///< of the record in the first block
  std::size_t field;
  std::size_t component;
  NanSide     side;
};

template <typename Parcel>
void Travel(Parcel& parcel, PassedNan& nan)
{
  parcel(nan.index, nan.field, nan.component, nan.side);
}

/// The worst difference of one record.
struct ValueDifference
{
  std::size_t index     = 0;  ///< of the record: in the first block, in the second for one that only the second has
  bool        second    = false;
  std::size_t field     = 0;  ///< counts from 1; 0 for the record as a whole
  std::size_t component = 0;
  double      excess    = 0.0;  ///< how many times what is allowed; infinite where nothing is
  double      distance  = 0.0;  ///< |a - b|, infinite where it has no meaning
  Value       a;
  Value       b;
  std::string rule;  ///< what failed

  /// @return whether this difference is worse than the other
  bool IsWorseThan(const ValueDifference& other) const noexcept;
};

template <typename Parcel>
void Travel(Parcel& parcel, ValueDifference& difference)
{
  parcel(difference.index, difference.second, difference.field, difference.component, difference.excess,
         difference.distance, difference.a, difference.b, difference.rule);
}

/// What differs in one component of all records.
struct ComponentOutcome
{
  std::size_t     differingValues = 0;
  ValueDifference worst;  ///< its field and component name the component
};

template <typename Parcel>
void Travel(Parcel& parcel, ComponentOutcome& outcome)
{
  parcel(outcome.differingValues, outcome.worst);
}

/// The outcome for one pair of blocks.
struct FieldOutcome
{
  std::size_t records           = 0;  ///< compared
  std::size_t differingRecords  = 0;  ///< of these
  std::size_t missingRecords    = 0;  ///< in the first block only
  std::size_t additionalRecords = 0;  ///< in the second block only
  std::size_t differingValues   = 0;  ///< of the records compared
  FieldNorms  norms;
  /// Whether records that one block alone has are no difference.
  bool ignoresMissing    = false;
  bool ignoresAdditional = false;

  std::vector<ValueDifference>  worst;       ///< at most so many as asked for, the worst first
  std::vector<ComponentOutcome> components;  ///< those that differ, by field and component
  std::vector<PassedNan>        passedNans;

  bool IsSame() const noexcept
  {
    return differingRecords == 0 && (missingRecords == 0 || ignoresMissing) &&
           (additionalRecords == 0 || ignoresAdditional);
  }
};

template <typename Parcel>
void Travel(Parcel& parcel, FieldOutcome& outcome)
{
  parcel(outcome.records, outcome.differingRecords, outcome.missingRecords, outcome.additionalRecords,
         outcome.differingValues, outcome.norms, outcome.ignoresMissing, outcome.ignoresAdditional, outcome.worst,
         outcome.components, outcome.passedNans);
}

/// What one comparison of blocks goes by.
struct FieldTerms
{
  const ComparisonRule& rule;
  const QuilonDataBlockDiff::CompareInfo&
                        info;  ///< tolerances of the library's rule, and how many differences are kept
  const Transformation& transformation;
  double                leastPeak  = 0.0;  ///< what values are relative to where the blocks' own peak is smaller
  std::size_t           listPeriod = 1;    ///< components that take turns in a list of doubles
  /// Whether the norms of blocks without a difference are wanted, too; without, theirs are 0 but for the count of
  /// values where blocks are compared many values at once.
  bool allNorms = true;
  /// Whether records that one block alone has are no difference; they are counted all the same.
  bool ignoresMissing    = false;
  bool ignoresAdditional = false;
};

/// Compares the paired records; records without a counterpart are differences.
///
/// Under the library's rule its own comparison decides for each record; where NaNs are treated in another way than its
/// own, or values are changed first, its value rule decides for each value.
FieldOutcome CompareFields(const FED_DataBlock& first, const FED_DataBlock& second, const RecordPairs& pairs,
                           const FieldTerms& terms);

/// Looks for NaNs in a block that has nothing to be compared with.
/// @param isSecond which side the block is on
/// @param most     of the differences to keep
FieldOutcome FindNans(const FED_DataBlock& block, bool isSecond, std::size_t most);

/// @param sign how the values of the second block are changed first
/// @return the sum of products over all values that are finite in both
double DotProduct(const FED_DataBlock& first, const FED_DataBlock& second, const RecordPairs& pairs,
                  Transformation::Sign sign);

}  // namespace quilon::diff
