#include "diff/FieldComparison.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "QuilonDataRecordDiff.h"
#include "terminal/Format.h"
#include "terminal/Interrupt.h"

namespace quilon::diff {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

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

  void Values(std::size_t, const double* a, const double* b, std::size_t count, bool)
  {
    for (std::size_t i = 0; i < count; ++i) {
      if (std::isfinite(a[i])) first = std::max(first, std::fabs(a[i]));
      if (std::isfinite(b[i])) second = std::max(second, std::fabs(b[i]));
    }
  }
  void Mismatch(std::size_t, std::size_t, const char*, const std::string&, const std::string&) {}
};

/// Judges the values of the records that a walk brings.
class Tally
{
public:
  Tally(const ComparisonRule& rule, const QuilonDataBlockDiff::CompareInfo& info, double peak, FieldOutcome& outcome)
      : nanPolicy_(rule.GetNanPolicy()), judge_(rule, info, peak), outcome_(outcome), worst_(info.maxDiffsPerBlock)
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
    if (!hasWorst_) AddWorst(0, 0, kInfinity, kInfinity, "", "", "records differ");
    ++outcome_.differingRecords;
    worst_.Add(std::move(recordWorst_));
  }

  void Values(std::size_t field, const double* a, const double* b, std::size_t count, bool isSingle)
  {
    // Summed in copies, which stay in registers.
    FieldNorms norms = outcome_.norms;
    PeakFinder peaks = peaks_;
    for (std::size_t i = 0; i < count; ++i) {
      const double distance = std::fabs(a[i] - b[i]);
      // Where it is finite, so are both values.
      if (std::isfinite(distance)) {
        norms.largest = std::max(norms.largest, distance);
        norms.sumSquares += distance * distance;
        norms.reference += a[i] * a[i];
        peaks.first  = std::max(peaks.first, std::fabs(a[i]));
        peaks.second = std::max(peaks.second, std::fabs(b[i]));
      } else {
        ++norms.unmeasured;
        peaks.Values(field, a + i, b + i, 1, isSingle);
        if (std::isnan(a[i]) || std::isnan(b[i])) {
          Nan(field, i, a[i], b[i]);
          continue;
        }
      }
      if (!judge_.Accepts(a[i], b[i], isSingle)) Differ(field, i, a[i], b[i], isSingle);
    }
    norms.values += count;
    outcome_.norms = norms;
    peaks_         = peaks;
  }

  void Mismatch(std::size_t field, std::size_t component, const char* what, std::string a, std::string b)
  {
    ++outcome_.differingValues;
    if (hasWorst_ && !IsWorse(kInfinity, kInfinity)) return;
    AddWorst(field, component, kInfinity, kInfinity, std::move(a), std::move(b), what);
  }

  void Missing(std::size_t index, bool isSecond)
  {
    ++(isSecond ? outcome_.additionalRecords : outcome_.missingRecords);
    if (!worst_.Takes(kInfinity, kInfinity)) return;
    index_ = index;
    AddWorst(0, 0, kInfinity, kInfinity, isSecond ? "" : "record", isSecond ? "record" : "",
             isSecond ? "record only in B" : "record missing in B");
    recordWorst_.second = isSecond;
    worst_.Add(std::move(recordWorst_));
  }

  double                       GetPeak() const noexcept { return peaks_.GetSmaller(); }
  std::vector<ValueDifference> TakeWorst() { return worst_.Take(); }

private:
  void Differ(std::size_t field, std::size_t component, double a, double b, bool isSingle)
  {
    ++outcome_.differingValues;
    const double excess   = judge_.GetExcess(a, b, isSingle);
    const double distance = std::fabs(a - b);
    if (hasWorst_ && !IsWorse(excess, distance)) return;
    AddWorst(field, component, excess, distance, Text(a, isSingle), Text(b, isSingle), "");
    recordWorst_.rule = judge_.Explain(a, b, isSingle);
  }

  void Nan(std::size_t field, std::size_t component, double a, double b)
  {
    const NanSide side = std::isnan(a) && std::isnan(b) ? NanSide::Both
                         : std::isnan(a)                ? NanSide::First
                                                        : NanSide::Second;
    if (nanPolicy_ == NanPolicy::Passes) return outcome_.passedNans.push_back({index_, field, component, side});
    if (nanPolicy_ == NanPolicy::Equal && side == NanSide::Both) return;
    ++outcome_.differingValues;
    if (hasWorst_ && !IsWorse(kInfinity, kInfinity)) return;
    AddWorst(field, component, kInfinity, kInfinity, FormatNumber(a), FormatNumber(b),
             nanPolicy_ == NanPolicy::Forbidden ? "nan forbidden" : "nan");
  }

  bool IsWorse(double excess, double distance) const noexcept
  {
    return excess > recordWorst_.excess || (excess == recordWorst_.excess && distance > recordWorst_.distance);
  }

  void AddWorst(std::size_t field, std::size_t component, double excess, double distance, std::string a, std::string b,
                const char* rule)
  {
    hasWorst_    = true;
    recordWorst_ = {index_, false, field, component, excess, distance, std::move(a), std::move(b), rule};
  }

  static std::string Text(double value, bool isSingle)
  {
    return isSingle ? FormatNumber(static_cast<float>(value)) : FormatNumber(value);
  }

  NanPolicy       nanPolicy_;
  ValueJudge      judge_;
  FieldOutcome&   outcome_;
  WorstList       worst_;
  PeakFinder      peaks_;
  std::size_t     index_    = 0;
  bool            hasWorst_ = false;
  ValueDifference recordWorst_;
};

struct DotFinder
{
  double sum = 0.0;

  void Values(std::size_t, const double* a, const double* b, std::size_t count, bool)
  {
    for (std::size_t i = 0; i < count; ++i) {
      const double product = a[i] * b[i];
      if (std::isfinite(product)) sum += product;
    }
  }
  void Mismatch(std::size_t, std::size_t, const char*, const std::string&, const std::string&) {}
};

template <typename Visitor>
void WalkAll(const FED_DataBlock& first, const FED_DataBlock& second, const RecordPairs& pairs,
             const Transformation& transformation, Visitor& visitor)
{
  RecordWalk<Visitor> walk(first, second, transformation, false);
  pairs.ForEach([&](const RecordPair& pair) { walk.Walk(pair, visitor); });
}

bool IsLibraryForm(const ComparisonRule& rule)
{
  return rule.form == ComparisonRule::Default || rule.form == ComparisonRule::Exact;
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

/// Records that only the second block holds: where records stand for each other by their index, the library finds them
/// with the blocks swapped.
std::vector<std::size_t> FindSecondOnly(const FED_DataBlock& first, const FED_DataBlock& second,
                                        const RecordPairs& pairs, const QuilonDataBlockDiff::CompareInfo& info)
{
  if (!pairs.sameIndices || pairs.secondOnly.empty()) return pairs.secondOnly;
  std::vector<std::size_t> found = QuilonDataBlockDiff::DataBlockDiff(info, second, first).CompareBlocks();
  std::erase_if(found, [&](std::size_t index) { return first.HasRecord(index); });
  return found;
}

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
  PeakFinder   peaks;
  // The one rule that has to know all values before it judges the first.
  if (terms.rule.peak) WalkAll(first, second, pairs, terms.transformation, peaks);

  const ComparisonRule&            rule = terms.rule;
  QuilonDataBlockDiff::CompareInfo info = terms.info;
  info.useExactCompare                  = rule.form == ComparisonRule::Exact;
  const bool asked = IsLibraryForm(rule) && !rule.nan && terms.transformation.sign == Transformation::AsIs &&
                     terms.transformation.listIds == nullptr && !terms.transformation.sortsLists;
  std::optional<LibraryVerdict> library;
  if (asked) library.emplace(first, second, pairs, info);

  Tally             tally(rule, info, peaks.GetSmaller(), outcome);
  RecordWalk<Tally> walk(first, second, terms.transformation, IsLibraryForm(rule));
  pairs.ForEach([&](const RecordPair& pair) {
    ThrowIfInterrupted();
    tally.BeginRecord(pair.first);
    walk.Walk(pair, tally);
    tally.EndRecord(library && library->IsDifferent(pair));
  });
  for (const std::size_t index : pairs.firstOnly) tally.Missing(index, false);
  for (const std::size_t index : library ? FindSecondOnly(first, second, pairs, info) : pairs.secondOnly)
    tally.Missing(index, true);
  outcome.norms.peak = tally.GetPeak();
  outcome.worst      = tally.TakeWorst();
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
  Tally                tally(rule, info, 0.0, outcome);
  RecordWalk<Tally>    walk(block, block, asIs, false);
  for (auto index = block.Begin(); index != block.End(); ++index) {
    ThrowIfInterrupted();
    tally.BeginRecord(*index);
    walk.Walk({*index, *index}, tally);
    tally.EndRecord(false);
  }
  outcome.worst = tally.TakeWorst();
  for (ValueDifference& difference : outcome.worst) {
    difference.second = isSecond;
    (isSecond ? difference.a : difference.b).clear();
  }
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
