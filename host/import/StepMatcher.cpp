#include "import/StepMatcher.h"

#include <algorithm>
#include <cmath>

namespace quilon {

StepKey StepMatcher::AddListed(const ResultStep& step, bool hasFields)
{
  const StepKey key = KeyOf(step);
  fromFiles_        = true;
  modesKnown_       = modesKnown_ || key.analysis == AnalysisModes;
  Insert(key, step.value, step.tolerance, hasFields);
  return key;
}

StepKey StepMatcher::KeyOf(const ResultStep& step)
{
  if (step.analysis == AnalysisTime || step.substep > 0) return {step.step, step.analysis, step.substep};

  const auto [it, isNew] = numberedSteps_.try_emplace({step.step, step.analysis, step.number});
  if (isNew) {
    const auto first = numberedSteps_.lower_bound({step.step, step.analysis, 0});
    it->second       = {step.step, step.analysis, static_cast<int>(std::distance(first, it)) + 1};
  }
  return it->second;
}

/// A result that is known keeps its value: the files that have the fields come first and have more digits.
std::size_t StepMatcher::Insert(const StepKey& key, double value, double tolerance, bool hasFields)
{
  const auto place = std::lower_bound(entries_.begin(), entries_.end(), key,
                                      [](const Entry& entry, const StepKey& sought) { return entry.key < sought; });
  const auto index = static_cast<std::size_t>(place - entries_.begin());
  if (place != entries_.end() && place->key == key) return index;

  entries_.insert(place, {key, value, tolerance, hasFields});
  if (cursor_ != kNone && index <= cursor_) ++cursor_;
  return index;
}

std::optional<StepMatcher::Match> StepMatcher::MatchPrinted(const ResultStep& step, const std::string& identity)
{
  const bool        repeated = cursor_ != kNone && seen_.contains(identity);
  const std::size_t place    = Place(step, repeated);
  if (place == kNone) return std::nullopt;

  return MoveTo(place, step, identity);
}

StepMatcher::Match StepMatcher::MoveTo(std::size_t place, const ResultStep& step, const std::string& identity)
{
  if (place != cursor_) seen_.clear();
  cursor_     = place;
  cursorTime_ = step.value;
  return Match{entries_[place].key, entries_[place].value, !seen_.insert(identity).second};
}

std::optional<StepMatcher::Match> StepMatcher::MatchRepeated(const ResultStep& step, const std::string& identity)
{
  if (fromFiles_ || step.analysis != AnalysisTime) return std::nullopt;
  return MoveTo(AddNumbered(step), step, identity);
}

std::size_t StepMatcher::Place(const ResultStep& step, bool repeated)
{
  const int mode = step.analysis == AnalysisModes ? step.substep : 0;
  if (mode != staleMode_) staleMode_ = 0;
  if (mode == 0) return PlaceTime(step, repeated);
  if (staleMode_ == 0) return PlaceMode(step, repeated);

  const std::size_t place = PlaceTime(step, repeated);
  return place != kNone ? place : FindMode(mode, cursor_ + 1);
}

/// A banner is printed once per mode, and nothing marks the end of its step: the blocks of the next step stand under
/// the last banner too. They are told by their time, or, where that is the same, by coming a second time.
std::size_t StepMatcher::PlaceMode(const ResultStep& step, bool repeated)
{
  const bool under = cursor_ != kNone && entries_[cursor_].key.analysis == AnalysisModes &&
                     entries_[cursor_].key.substep == step.substep;
  if (!under) {
    const std::size_t place = FindMode(step.substep, cursor_ == kNone ? 0 : cursor_);
    return place != kNone || modesKnown_ ? place : AddMode(step.substep);
  }

  const bool sameTime = step.value == cursorTime_;
  if (sameTime && !(repeated && IsLastMode(cursor_))) return cursor_;

  if (!fromFiles_ && sameTime) return cursor_;

  const std::size_t next = fromFiles_ ? FindTime(step, cursor_ + 1) : AddNumbered(step);
  if (next == kNone && sameTime) return cursor_;
  if (next != kNone) {
    staleMode_ = step.substep;
    return next;
  }
  return FindMode(step.substep, cursor_ + 1);
}

std::size_t StepMatcher::PlaceTime(const ResultStep& step, bool repeated)
{
  if (cursor_ != kNone && step.value == cursorTime_ && entries_[cursor_].key.analysis != AnalysisModes) {
    // Two cards may ask for the same; but where a later result ends at the same time, a second block is that one's.
    const std::size_t next = repeated ? FindTime(step, cursor_ + 1) : kNone;
    return next == kNone ? cursor_ : next;
  }
  return fromFiles_ ? FindTime(step, cursor_ == kNone ? 0 : cursor_) : AddNumbered(step);
}

/// The nearest result at the time, of equally near ones the first.
std::size_t StepMatcher::FindTime(const ResultStep& step, std::size_t from) const
{
  std::size_t found   = kNone;
  double      nearest = 0.0;
  for (std::size_t i = from; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    if (entry.key.analysis == AnalysisModes) continue;
    if (step.analysis == AnalysisOther && entry.key.analysis != AnalysisOther) continue;
    const double distance = std::abs(entry.value - step.value);
    if (distance <= entry.tolerance + step.tolerance) {
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

std::size_t StepMatcher::AddNumbered(const ResultStep& step)
{
  numbered_ = true;
  if (step.analysis == AnalysisOther) {
    // Frequencies ascend within a step.
    const bool onward = cursor_ != kNone && entries_[cursor_].key.analysis == AnalysisOther && step.value > cursorTime_;
    const StepKey last = cursor_ == kNone ? StepKey() : entries_[cursor_].key;
    return Insert({onward ? last.loadCase : FreeLoadCase(), AnalysisOther, onward ? last.substep + 1 : 1}, step.value,
                  0.0, false);
  }
  StepKey key{1, AnalysisTime, 1};
  if (cursor_ != kNone) {
    const StepKey& last = entries_[cursor_].key;
    key                 = last.analysis == AnalysisTime ? StepKey{last.loadCase, AnalysisTime, last.substep + 1}
                                                        : StepKey{last.loadCase + 1, AnalysisTime, 1};
  }
  return Insert(key, step.value, 0.0, false);
}

bool StepMatcher::IsBehind(const Entry& entry, const StepKey& key)
{
  const bool sameStep = entry.key.loadCase == key.loadCase && entry.key.analysis == key.analysis;
  return entry.hasFields && sameStep && entry.key > key;
}

std::optional<StepKey> StepMatcher::LastBehind(const StepKey& key) const
{
  std::optional<StepKey> last;
  for (const Entry& entry : entries_)
    if (IsBehind(entry, key)) last = entry.key;
  return last;
}

std::optional<StepKey> StepMatcher::FirstBehind(const StepKey& key) const
{
  for (const Entry& entry : entries_)
    if (IsBehind(entry, key)) return entry.key;
  return std::nullopt;
}

int StepMatcher::FreeLoadCase() const
{
  int loadCase = std::max(tableStep_, cursor_ == kNone ? 0 : entries_[cursor_].key.loadCase) + 1;
  for (const Entry& entry : entries_) {
    if (entry.key.loadCase == loadCase) ++loadCase;  // keys ascend
  }
  return loadCase;
}

}  // namespace quilon
