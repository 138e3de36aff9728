#include "diff/FieldComparison.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <tuple>
#include <utility>

#include "diff/AlignedColumns.h"
#include "progress/Interrupt.h"
#include "QuilonDataRecordDiff.h"
#include "text/Format.h"

namespace quilon::diff {

namespace {

/// The worst differences of a block: the worst of each record, and of these the worst so many.
class WorstList
{
public:
  explicit WorstList(std::size_t most) : most_(most) {}

  bool Takes(double excess, double distance) const noexcept
  {
    if (most_ == 0) return false;
    return kept_.size() < most_ || excess > kept_.front().excess ||
           (excess == kept_.front().excess && distance > kept_.front().distance);
  }

  void Add(ValueDifference difference)
  {
    if (!Takes(difference.excess, difference.distance)) return;
    // A heap whose front is the mildest.
    const auto isWorse = [](const ValueDifference& a, const ValueDifference& b) { return a.IsWorseThan(b); };
    if (kept_.size() == most_) {
      std::pop_heap(kept_.begin(), kept_.end(), isWorse);
      kept_.pop_back();
    }
    kept_.push_back(std::move(difference));
    std::push_heap(kept_.begin(), kept_.end(), isWorse);
  }

  std::vector<ValueDifference> Take()
  {
    std::sort(kept_.begin(), kept_.end(),
              [](const ValueDifference& a, const ValueDifference& b) { return a.IsWorseThan(b); });
    return std::move(kept_);
  }

private:
  std::size_t                  most_;
  std::vector<ValueDifference> kept_;
};

/// The largest finite magnitudes of both fields.
struct PeakFinder
{
  double first  = 0.0;
  double second = 0.0;

  double GetSmaller() const noexcept { return std::min(first, second); }

  void Values(std::size_t, const double* a, const double* b, std::size_t count, ValueSort)
  {
    for (std::size_t i = 0; i < count; ++i) {
      if (std::isfinite(a[i])) first = std::max(first, std::fabs(a[i]));
      if (std::isfinite(b[i])) second = std::max(second, std::fabs(b[i]));
    }
  }
  void Mismatch(std::size_t, std::size_t, const char*, const Value&, const Value&) {}
};

/// Adds the distances of values, in their order.
void AddNorms(const double* a, const double* b, std::size_t count, FieldNorms& norms, PeakFinder& peaks)
{
  // Summed in copies, which stay in registers.
  FieldNorms sums = norms;
  PeakFinder most = peaks;
  for (std::size_t i = 0; i < count; ++i) {
    const double distance = std::fabs(a[i] - b[i]);
    // Where it is finite, so are both values.
    if (std::isfinite(distance)) {
      sums.largest = std::max(sums.largest, distance);
      sums.sumSquares += distance * distance;
      sums.reference += a[i] * a[i];
      most.first  = std::max(most.first, std::fabs(a[i]));
      most.second = std::max(most.second, std::fabs(b[i]));
    } else {
      ++sums.unmeasured;
      most.Values(1, a + i, b + i, 1, {});
    }
  }
  sums.values += count;
  norms = sums;
  peaks = most;
}

/// Judges the values of the records that a walk brings.
class Tally
{
public:
  Tally(const FieldTerms& terms, double peak, FieldOutcome& outcome)
      : nanPolicy_(terms.rule.GetNanPolicy()),
        judge_(terms.rule, terms.info, std::max(peak, terms.leastPeak)),
        leastPeak_(terms.leastPeak),
        listPeriod_(terms.listPeriod),
        outcome_(outcome),
        worst_(terms.info.maxDiffsPerBlock)
  {}

  void BeginRecord(std::size_t index)
  {
    index_    = index;
    hasWorst_ = false;
    ++outcome_.records;
  }

  /// @param isDifferent whether the record differs whatever its values say
  void EndRecord(bool isDifferent)
  {
    if (!hasWorst_ && !isDifferent) return;
    if (!hasWorst_) AddWorst(0, 0, kInfinity, kInfinity, {}, {}, "records differ");
    ++outcome_.differingRecords;
    worst_.Add(std::move(recordWorst_));
  }

  void Values(std::size_t field, const double* a, const double* b, std::size_t count, ValueSort sort)
  {
    AddNorms(a, b, count, outcome_.norms, peaks_);
    Judge(field, a, b, count, sort);
  }

  void Judge(std::size_t field, const double* a, const double* b, std::size_t count, ValueSort sort)
  {
    for (std::size_t i = 0; i < count; ++i) {
      if (std::isnan(a[i]) || std::isnan(b[i]))
        Nan({field, i, sort}, a[i], b[i]);
      else if (!judge_.Accepts(a[i], b[i], sort.isSingle))
        Differ({field, i, sort}, a[i], b[i]);
    }
  }

  QuickLimits GetQuickLimits() const noexcept { return judge_.GetQuickLimits(); }

  bool AcceptsEqualNans() const noexcept { return nanPolicy_ == NanPolicy::Equal; }

  /// Counts records whose values are accepted.
  void Accept(std::size_t records) noexcept { outcome_.records += records; }

  void Mismatch(std::size_t field, std::size_t component, const char* what, Value a, Value b)
  {
    ++outcome_.differingValues;
    if (hasWorst_ && !IsWorse(kInfinity, kInfinity)) return;
    AddWorst(field, component, kInfinity, kInfinity, std::move(a), std::move(b), what);
  }

  void Missing(std::size_t index, bool isSecond)
  {
    ++(isSecond ? outcome_.additionalRecords : outcome_.missingRecords);
    if (isSecond ? outcome_.ignoresAdditional : outcome_.ignoresMissing) return;
    if (!worst_.Takes(kInfinity, kInfinity)) return;
    index_ = index;
    AddWorst(0, 0, kInfinity, kInfinity, {}, {}, isSecond ? "record only in B" : "record missing in B");
    recordWorst_.second = isSecond;
    worst_.Add(std::move(recordWorst_));
  }

  /// Completes the outcome.
  void Finish()
  {
    outcome_.norms.peak = std::max({outcome_.norms.peak, peaks_.GetSmaller(), leastPeak_});
    outcome_.worst      = worst_.Take();
    for (ValueDifference& difference : outcome_.worst) Explain(difference);
    for (ComponentOutcome& component : outcome_.components) Explain(component.worst);
    std::sort(outcome_.components.begin(), outcome_.components.end(),
              [](const ComponentOutcome& a, const ComponentOutcome& b) {
                return std::tie(a.worst.field, a.worst.component) < std::tie(b.worst.field, b.worst.component);
              });
  }

private:
  /// Of many differences few are kept: these alone are told in words.
  static constexpr const char* kToBeExplained = "";

  void Explain(ValueDifference& difference) const
  {
    if (difference.rule != kToBeExplained) return;
    const bool isSingle = std::holds_alternative<float>(difference.a);
    const auto number   = [isSingle](const Value& value) {
      return isSingle ? static_cast<double>(std::get<float>(value)) : std::get<double>(value);
    };
    difference.rule = judge_.Explain(number(difference.a), number(difference.b), isSingle);
  }

  struct Place
  {
    std::size_t field;
    std::size_t component;
    ValueSort   sort;
  };

  void Differ(const Place& place, double a, double b)
  {
    Differ(place, a, b, judge_.GetExcess(a, b, place.sort.isSingle), std::fabs(a - b), kToBeExplained);
  }

  void Nan(const Place& place, double a, double b)
  {
    const NanSide side = std::isnan(a) && std::isnan(b) ? NanSide::Both
                         : std::isnan(a)                ? NanSide::First
                                                        : NanSide::Second;
    if (nanPolicy_ == NanPolicy::Passes)
      return outcome_.passedNans.push_back({index_, place.field, place.component, side});
    if (nanPolicy_ == NanPolicy::Equal && side == NanSide::Both) return;
    Differ(place, a, b, kInfinity, kInfinity, nanPolicy_ == NanPolicy::Forbidden ? "nan forbidden" : "nan");
  }

  void Differ(const Place& place, double a, double b, double excess, double distance, const char* rule)
  {
    ++outcome_.differingValues;
    ComponentOutcome& component = FindComponent(place);
    ++component.differingValues;
    const bool isWorstOfComponent = component.differingValues == 1 || excess > component.worst.excess ||
                                    (excess == component.worst.excess && distance > component.worst.distance);
    const bool isWorstOfRecord = !hasWorst_ || IsWorse(excess, distance);
    if (!isWorstOfComponent && !isWorstOfRecord) return;
    const auto      value = [&](double x) { return place.sort.isSingle ? Value(static_cast<float>(x)) : Value(x); };
    ValueDifference difference = {index_,   false,    place.field, place.component, excess, distance,
                                  value(a), value(b), rule};
    if (isWorstOfComponent) component.worst = difference;
    if (!isWorstOfRecord) return;
    hasWorst_    = true;
    recordWorst_ = std::move(difference);
  }

  /// Components that differ are few, and take turns in the order of the walk.
  ComponentOutcome& FindComponent(const Place& place)
  {
    const std::size_t number = place.sort.isList ? place.component % listPeriod_ : place.component;
    const auto isSame       = [&](const ComponentKey& key) { return key.field == place.field && key.number == number; };
    const std::size_t count = keys_.size();
    for (std::size_t i = 0; i < count; ++i) {
      lastKey_ = lastKey_ + 1 < count ? lastKey_ + 1 : 0;
      if (isSame(keys_[lastKey_])) return outcome_.components[lastKey_];
    }
    lastKey_ = count;
    keys_.push_back({place.field, number});
    return outcome_.components.emplace_back();
  }

  bool IsWorse(double excess, double distance) const noexcept
  {
    return excess > recordWorst_.excess || (excess == recordWorst_.excess && distance > recordWorst_.distance);
  }

  void AddWorst(std::size_t field, std::size_t component, double excess, double distance, Value a, Value b,
                const char* rule)
  {
    hasWorst_    = true;
    recordWorst_ = {index_, false, field, component, excess, distance, std::move(a), std::move(b), rule};
  }

  struct ComponentKey
  {
    std::size_t field;
    std::size_t number;
  };

  NanPolicy       nanPolicy_;
  ValueJudge      judge_;
  double          leastPeak_;
  std::size_t     listPeriod_;
  FieldOutcome&   outcome_;
  WorstList       worst_;
  PeakFinder      peaks_;
  std::size_t     index_    = 0;
  bool            hasWorst_ = false;
  ValueDifference recordWorst_;
  // The components that differ, in the order of outcome_.components, and the one that was met last.
  std::vector<ComponentKey> keys_;
  std::size_t               lastKey_ = 0;
};

struct DotFinder
{
  double sum = 0.0;

  void Values(std::size_t, const double* a, const double* b, std::size_t count, ValueSort)
  {
    for (std::size_t i = 0; i < count; ++i) {
      const double product = a[i] * b[i];
      if (std::isfinite(product)) sum += product;
    }
  }
  void Mismatch(std::size_t, std::size_t, const char*, const Value&, const Value&) {}
};

template <typename Visitor>
void WalkAll(const FED_DataBlock& first, const FED_DataBlock& second, const RecordPairs& pairs,
             const Transformation& transformation, Visitor& visitor)
{
  RecordWalk<Visitor> walk(first, second, transformation, FieldTypes::AlikeCodes);
  pairs.ForEach([&](const RecordPair& pair) { walk.Walk(pair, visitor); });
}

/// @return whether all differences are within the limits; a NaN is not
template <bool HasRelative>
bool AreWithin(const double* a, const double* b, std::size_t count, const QuickLimits& limits) noexcept
{
  // Without a branch: the compiler takes several values at once.
  bool isBeyond = false;
  for (std::size_t i = 0; i < count; ++i) {
    const double distance = std::fabs(a[i] - b[i]);
    bool         isWithin = distance <= limits.constant;
    if (HasRelative) {
      const bool isNear = distance <= limits.relative * std::max(std::fabs(a[i]), std::fabs(b[i]));
      isWithin          = limits.any ? isWithin | isNear : isWithin & isNear;
    }
    // An infinite limit holds for sure of no number.
    isBeyond |= !isWithin | !(distance < kInfinity);
  }
  return !isBeyond;
}

/// The indices of paired records by their position.
class IndexCursor
{
public:
  explicit IndexCursor(const std::vector<PairRun>& runs) : run_(runs.begin()) {}

  /// @param position no less than the last one
  std::size_t GetFirst(std::size_t position)
  {
    while (position >= before_ + run_->count) before_ += run_++->count;
    return run_->first + (position - before_);
  }

private:
  std::vector<PairRun>::const_iterator run_;
  std::size_t                          before_ = 0;  // records of the runs before
};

/// Compares many values at once: bytes first, then a few records together by the rule; what remains goes one by one.
void CompareAligned(const AlignedColumns& columns, const RecordPairs& pairs, bool allNorms, Tally& tally,
                    FieldOutcome& outcome)
{
  constexpr std::size_t kRecordsAtOnce = 8;

  const std::size_t width  = columns.GetWidth();
  const QuickLimits limits = tally.GetQuickLimits();
  IndexCursor       indices(pairs.runs);
  const bool        trustsBits = tally.AcceptsEqualNans();
  columns.ForEachChunk([&](std::size_t position, const double* a, const double* b, std::size_t records) {
    ThrowIfInterrupted();
    // Equal bits are equal under every rule, unless a NaN is to differ from itself.
    if (trustsBits && std::memcmp(a, b, records * width * sizeof(double)) == 0) return tally.Accept(records);
    for (std::size_t done = 0; done < records;) {
      const std::size_t some       = std::min(records - done, kRecordsAtOnce);
      const double*     first      = a + done * width;
      const double*     second     = b + done * width;
      const bool        isAccepted = limits.hasRelative ? AreWithin<true>(first, second, some * width, limits)
                                                        : AreWithin<false>(first, second, some * width, limits);
      if (isAccepted) {
        tally.Accept(some);
      } else {
        for (std::size_t i = 0; i < some; ++i) {
          tally.BeginRecord(indices.GetFirst(position + done + i));
          tally.Judge(1, first + i * width, second + i * width, width, {});
          tally.EndRecord(false);
        }
      }
      done += some;
    }
  });
  if (!allNorms && outcome.differingRecords == 0) {
    outcome.norms.values = columns.GetRecordCount() * width;
    return;
  }
  PeakFinder peaks;
  columns.ForEachChunk([&](std::size_t, const double* a, const double* b, std::size_t records) {
    ThrowIfInterrupted();
    AddNorms(a, b, records * width, outcome.norms, peaks);
  });
  outcome.norms.peak = peaks.GetSmaller();
}

FieldTypes TypesFor(const ComparisonRule& rule)
{
  if (rule.form == ComparisonRule::Library) return FieldTypes::LibrarysOwn;
  return rule.form == ComparisonRule::Exact ? FieldTypes::SameCodes : FieldTypes::AlikeCodes;
}

/// Which of the paired records the library finds unequal.
class LibraryVerdict
{
public:
  LibraryVerdict(const FED_DataBlock& first, const FED_DataBlock& second, const RecordPairs& pairs,
                 const QuilonDataBlockDiff::CompareInfo& info)
      : info_(info), firstRecord_(first), secondRecord_(second), first_(first), second_(second)
  {
    byIndex_ = pairs.sameIndices;
    if (byIndex_) differing_ = QuilonDataBlockDiff::DataBlockDiff(info, first, second).CompareBlocks();
    next_ = differing_.cbegin();
  }

  /// @param pair in the order of the pairs
  bool IsDifferent(const RecordPair& pair)
  {
    if (byIndex_) {
      next_ = std::find_if(next_, differing_.cend(), [&](std::size_t index) { return index >= pair.first; });
      return next_ != differing_.cend() && *next_ == pair.first;
    }
    first_.GetRecord(pair.first, *firstRecord_);
    second_.GetRecord(pair.second, *secondRecord_);
    return !QuilonDataRecordDiff::EqualOrNearDataRecord(*firstRecord_, *secondRecord_, info_);
  }

private:
  const QuilonDataBlockDiff::CompareInfo&  info_;
  ScratchRecord                            firstRecord_;
  ScratchRecord                            secondRecord_;
  const FED_DataBlock&                     first_;
  const FED_DataBlock&                     second_;
  bool                                     byIndex_ = false;
  std::vector<std::size_t>                 differing_;
  std::vector<std::size_t>::const_iterator next_;
};

}  // namespace

double FieldNorms::GetRms() const noexcept
{
  return values == unmeasured ? 0.0 : std::sqrt(sumSquares / static_cast<double>(values - unmeasured));
}

double FieldNorms::GetRelative() const noexcept
{
  return sumSquares == 0.0 ? 0.0 : std::sqrt(sumSquares) / std::sqrt(reference);
}

bool ValueDifference::IsWorseThan(const ValueDifference& other) const noexcept
{
  if (excess != other.excess) return excess > other.excess;
  if (distance != other.distance) return distance > other.distance;
  if (second != other.second) return !second;
  return index < other.index;
}

FieldOutcome CompareFields(const FED_DataBlock& first, const FED_DataBlock& second, const RecordPairs& pairs,
                           const FieldTerms& terms)
{
  FieldOutcome outcome;
  outcome.ignoresMissing                      = terms.ignoresMissing;
  outcome.ignoresAdditional                   = terms.ignoresAdditional;
  const ComparisonRule&               rule    = terms.rule;
  const bool                          isPlain = terms.transformation.IsPlain();
  const bool                          isAsked = rule.form == ComparisonRule::Library && !rule.nan && isPlain;
  const std::optional<AlignedColumns> aligned =
      isPlain && rule.form != ComparisonRule::Library
          ? AlignedColumns::Find(first, second, pairs, TypesFor(rule) != FieldTypes::AlikeCodes)
          : std::nullopt;
  // The one rule that has to know all values before it judges the first.
  PeakFinder peaks;
  if (rule.NeedsPeak() && aligned)
    peaks = {aligned->FindFirstPeak(), aligned->FindSecondPeak()};
  else if (rule.NeedsPeak())
    WalkAll(first, second, pairs, terms.transformation, peaks);
  std::optional<LibraryVerdict> library;
  if (isAsked) library.emplace(first, second, pairs, terms.info);

  Tally tally(terms, peaks.GetSmaller(), outcome);
  if (aligned) {
    CompareAligned(*aligned, pairs, terms.allNorms, tally, outcome);
  } else {
    RecordWalk<Tally> walk(first, second, terms.transformation, TypesFor(rule));
    pairs.ForEach([&](const RecordPair& pair) {
      ThrowIfInterrupted();
      tally.BeginRecord(pair.first);
      walk.Walk(pair, tally);
      tally.EndRecord(library && library->IsDifferent(pair));
    });
  }
  for (const std::size_t index : pairs.firstOnly) tally.Missing(index, false);
  for (const std::size_t index : pairs.secondOnly) tally.Missing(index, true);
  tally.Finish();
  return outcome;
}

FieldOutcome FindNans(const FED_DataBlock& block, bool isSecond, std::size_t most)
{
  ComparisonRule rule;
  rule.form = ComparisonRule::Ignore;
  rule.nan  = NanPolicy::Forbidden;
  QuilonDataBlockDiff::CompareInfo info;
  info.maxDiffsPerBlock = most;

  FieldOutcome         outcome;
  const Transformation asIs;
  Tally                tally({rule, info, asIs}, 0.0, outcome);
  RecordWalk<Tally>    walk(block, block, asIs, FieldTypes::AlikeCodes);
  for (auto index = block.Begin(); index != block.End(); ++index) {
    ThrowIfInterrupted();
    tally.BeginRecord(*index);
    walk.Walk({*index, *index}, tally);
    tally.EndRecord(false);
  }
  tally.Finish();
  const auto keepOneSide = [isSecond](ValueDifference& difference) {
    difference.second                        = isSecond;
    (isSecond ? difference.a : difference.b) = {};
  };
  for (ValueDifference& difference : outcome.worst) keepOneSide(difference);
  for (ComponentOutcome& component : outcome.components) keepOneSide(component.worst);
  return outcome;
}

double DotProduct(const FED_DataBlock& first, const FED_DataBlock& second, const RecordPairs& pairs,
                  Transformation::Sign sign)
{
  DotFinder      dot;
  Transformation transformation;
  transformation.sign = sign;
  WalkAll(first, second, pairs, transformation, dot);
  return dot.sum;
}

}  // namespace quilon::diff
