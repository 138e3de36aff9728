#include "import/StepMatcher.h"

#include <algorithm>
#include <cmath>

#include "calculix/DatReader.h"
#include "calculix/FrdReader.h"
#include "calculix/StaReader.h"

namespace quilon::calculix {

namespace {

// Half a unit of the last printed digit, as a fraction of the value, and a little more.
double DatTolerance(double time)
{
  return 6e-7 * std::abs(time);  // 0.ddddddd
}

double FrdTolerance(double value)
{
  return (std::abs(value) < 1.0 ? 6e-6 : 1e-9) * std::abs(value);  // d.ddddd below 1, ten digits from there
}

double StatusTolerance(double time)
{
  return 6e-6 * std::abs(time);  // 0.dddddd
}

}  // namespace

StepKey StepMatcher::AddDataset(const FrdDataset& dataset)
{
  const StepKey key = DatasetKey(dataset);
  fromFiles_        = true;
  modesKnown_       = modesKnown_ || key.analysis == AnalysisModes;
  Insert(key, dataset.value, FrdTolerance(dataset.value), true);
  return key;
}

StepKey StepMatcher::DatasetKey(const FrdDataset& dataset)
{
  constexpr int kTime     = 0;
  constexpr int kDynamic  = 1;
  constexpr int kModes    = 2;
  constexpr int kBuckling = 4;

  const bool isTransient = dataset.kind == kTime || (dataset.kind == kDynamic && dataset.increment > 0);
  const bool isPreload   = dataset.kind == kBuckling && dataset.value == 0.0;
  if (isTransient || isPreload) return {dataset.step, AnalysisTime, dataset.increment};

  const int analysis = dataset.kind == kModes || dataset.kind == kBuckling ? AnalysisModes : AnalysisOther;
  if (analysis == AnalysisModes && dataset.mode > 0) return {dataset.step, analysis, dataset.mode};

  const auto [it, isNew] = numberedDatasets_.try_emplace({dataset.step, analysis, dataset.outputNumber});
  if (isNew) {
    const auto first = numberedDatasets_.lower_bound({dataset.step, analysis, 0});
    it->second       = {dataset.step, analysis, static_cast<int>(std::distance(first, it)) + 1};
  }
  return it->second;
}

void StepMatcher::AddStatusFile(const std::filesystem::path& path)
{
  for (const StaRow& row : ReadSta(path)) {
    if (!row.converged) continue;
    fromFiles_ = true;
    Insert({row.step, AnalysisTime, row.increment}, row.totalTime, StatusTolerance(row.totalTime), false);
  }
}

/// A result that is known keeps its value: that of a .frd has more digits than that of a .sta.
std::size_t StepMatcher::Insert(const StepKey& key, double value, double tolerance, bool isInFrd)
{
  const auto place = std::lower_bound(entries_.begin(), entries_.end(), key,
                                      [](const Entry& entry, const StepKey& sought) { return entry.key < sought; });
  const auto index = static_cast<std::size_t>(place - entries_.begin());
  if (place != entries_.end() && place->key == key) return index;

  entries_.insert(place, {key, value, tolerance, isInFrd});
  if (cursor_ != kNone && index <= cursor_) ++cursor_;
  return index;
}

std::optional<StepMatcher::Match> StepMatcher::MatchBlock(const DatBlock& block)
{
  const std::string what     = block.title + '\n' + block.set;
  const bool        repeated = cursor_ != kNone && seen_.contains(what);
  const std::size_t place    = Place(block, repeated);
  if (place == kNone) return std::nullopt;

  if (place != cursor_) seen_.clear();
  cursor_     = place;
  cursorTime_ = block.time;
  return Match{entries_[place].key, entries_[place].value, !seen_.insert(what).second};
}

std::size_t StepMatcher::Place(const DatBlock& block, bool repeated)
{
  if (block.mode != staleMode_) staleMode_ = 0;
  if (block.mode == 0) return PlaceTime(block, repeated);
  if (staleMode_ == 0) return PlaceMode(block, repeated);

  const std::size_t place = PlaceTime(block, repeated);
  return place != kNone ? place : FindMode(block.mode, cursor_ + 1);
}

/// A banner is printed once per mode, and nothing marks the end of its step: the blocks of the next step stand under
/// the last banner too. They are told by their time, or, where that is the same, by coming a second time.
std::size_t StepMatcher::PlaceMode(const DatBlock& block, bool repeated)
{
  const bool under = cursor_ != kNone && entries_[cursor_].key.analysis == AnalysisModes &&
                     entries_[cursor_].key.substep == block.mode;
  if (!under) {
    const std::size_t place = FindMode(block.mode, cursor_ == kNone ? 0 : cursor_);
    return place != kNone || modesKnown_ ? place : AddMode(block.mode);
  }

  const bool sameTime = block.time == cursorTime_;
  if (sameTime && !(repeated && IsLastMode(cursor_))) return cursor_;

  if (!fromFiles_ && sameTime) return cursor_;

  const std::size_t next = fromFiles_ ? FindTime(block.time, cursor_ + 1) : AddNumbered(block.time);
  if (next == kNone && sameTime) return cursor_;
  if (next != kNone) {
    staleMode_ = block.mode;
    return next;
  }
  return FindMode(block.mode, cursor_ + 1);
}

std::size_t StepMatcher::PlaceTime(const DatBlock& block, bool repeated)
{
  if (cursor_ != kNone && block.time == cursorTime_ && entries_[cursor_].key.analysis != AnalysisModes) {
    // Two cards may ask for the same; but where a later result ends at the same time, a second block is that one's.
    const std::size_t next = repeated ? FindTime(block.time, cursor_ + 1) : kNone;
    return next == kNone ? cursor_ : next;
  }
  return fromFiles_ ? FindTime(block.time, cursor_ == kNone ? 0 : cursor_) : AddNumbered(block.time);
}

/// The nearest result at the time, of equally near ones the first.
std::size_t StepMatcher::FindTime(double time, std::size_t from) const
{
  std::size_t found   = kNone;
  double      nearest = 0.0;
  for (std::size_t i = from; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    if (entry.key.analysis == AnalysisModes) continue;
    const double distance = std::abs(entry.value - time);
    if (distance <= entry.tolerance + DatTolerance(time)) {
      if (found == kNone || distance < nearest) {
        found   = i;
        nearest = distance;
      }
    } else if (found != kNone) {
      break;  // times ascend, so nothing nearer follows
    }
  }
  return found;
}

std::size_t StepMatcher::FindMode(int mode, std::size_t from) const
{
  for (std::size_t i = from; i < entries_.size(); ++i) {
    if (entries_[i].key.analysis == AnalysisModes && entries_[i].key.substep == mode) return i;
  }
  return kNone;
}

bool StepMatcher::IsLastMode(std::size_t entry) const
{
  const std::size_t next = entry + 1;
  return next == entries_.size() || entries_[next].key.analysis != AnalysisModes ||
         entries_[next].key.loadCase != entries_[entry].key.loadCase;
}

int StepMatcher::MatchModeTable()
{
  for (std::size_t i = cursor_ == kNone ? 0 : cursor_; i < entries_.size(); ++i) {
    const StepKey& key = entries_[i].key;
    if (key.analysis == AnalysisModes && key.loadCase > tableStep_) return tableStep_ = key.loadCase;
  }
  return tableStep_ = FreeLoadCase();
}

std::size_t StepMatcher::AddMode(int mode)
{
  const bool onward =
      cursor_ != kNone && entries_[cursor_].key.analysis == AnalysisModes && mode > entries_[cursor_].key.substep;
  const bool tableAhead = tableStep_ > 0 && (cursor_ == kNone || tableStep_ > entries_[cursor_].key.loadCase);
  const int  loadCase   = onward ? entries_[cursor_].key.loadCase : tableAhead ? tableStep_ : FreeLoadCase();
  return Insert({loadCase, AnalysisModes, mode}, 0.0, 0.0, false);
}

std::size_t StepMatcher::AddNumbered(double time)
{
  numbered_ = true;
  StepKey key{1, AnalysisTime, 1};
  if (cursor_ != kNone) {
    const StepKey& last = entries_[cursor_].key;
    key                 = last.analysis == AnalysisTime ? StepKey{last.loadCase, AnalysisTime, last.substep + 1}
                                                        : StepKey{last.loadCase + 1, AnalysisTime, 1};
  }
  return Insert(key, time, 0.0, false);
}

std::optional<StepKey> StepMatcher::LastBehind(const StepKey& key) const
{
  std::optional<StepKey> last;
  for (const Entry& entry : entries_) {
    const bool sameStep = entry.key.loadCase == key.loadCase && entry.key.analysis == key.analysis;
    if (entry.isInFrd && sameStep && entry.key > key) last = entry.key;
  }
  return last;
}

int StepMatcher::FreeLoadCase() const
{
  int loadCase = std::max(tableStep_, cursor_ == kNone ? 0 : entries_[cursor_].key.loadCase) + 1;
  for (const Entry& entry : entries_) {
    if (entry.key.loadCase == loadCase) ++loadCase;  // keys ascend
  }
  return loadCase;
}

}  // namespace quilon::calculix
