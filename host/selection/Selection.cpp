#include "selection/Selection.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include <bundled/OnfKinds.h>

#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

using Descriptor  = FED_DataDescriptor;
using Descriptors = std::vector<FED_DataDescriptor>;

/// @return the parts without the blanks around them
std::vector<std::string_view> Split(std::string_view text, char separator)
{
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(Trimmed(text.substr(0, end)));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

/// Takes an integer off the front of the text.
bool TakeInteger(std::string_view& text, int& number)
{
  const auto taken = std::from_chars(text.data(), text.data() + text.size(), number);
  if (taken.ec != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(taken.ptr - text.data()));
  return true;
}

bool TakeCharacter(std::string_view& text, char c)
{
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

bool ReadNumbers(std::string_view text, NumberRange& range)
{
  if (!TakeInteger(text, range.first)) return false;
  range.last = range.first;
  if (TakeCharacter(text, '-')) return TakeInteger(text, range.last) && text.empty();
  if (TakeCharacter(text, ':')) {
    if (!TakeInteger(text, range.last)) return false;
    if (TakeCharacter(text, ':') && !TakeInteger(text, range.stride)) return false;
  }
  return text.empty();
}

NumberRange ParseNumberRange(std::string_view text, const std::string& what)
{
  NumberRange range;
  if (text == "first") {
    range.form = NumberRange::First;
  } else if (text == "last") {
    range.form = NumberRange::Last;
  } else if (text == "none") {
    range.form = NumberRange::None;
  } else if (text == "all" || text == "*") {
    range.form = NumberRange::All;
  } else if (!ReadNumbers(text, range)) {
    const std::string suggestion = DidYouMean(text, {"first", "last", "none", "all"});
    Fail(what + " is '" + std::string(text) + "'" +
         (suggestion.empty() ? ", expected a number, a range such as 1-9 or 1:9:2, first, last, none or all"
                             : suggestion));
  } else if (range.stride < 1) {
    Fail(what + " is '" + std::string(text) + "': the stride is " + std::to_string(range.stride) +
         ", expected 1 or more");
  } else if (range.last < range.first) {
    Fail(what + " is '" + std::string(text) + "', a range that runs backwards, expected the least number first");
  }
  return range;
}

bool AsksForAnEnd(const std::vector<NumberRange>& ranges)
{
  return std::any_of(ranges.begin(), ranges.end(), [](const NumberRange& range) {
    return range.form == NumberRange::First || range.form == NumberRange::Last;
  });
}

/// Whether the ranges hold the number. @param isSet, number the index; @param least, greatest the ends
bool Hold(const std::vector<NumberRange>& ranges, bool isSet, int number, int least, int greatest)
{
  return std::any_of(ranges.begin(), ranges.end(), [&](const NumberRange& range) {
    switch (range.form) {
      case NumberRange::None:
        return !isSet;
      case NumberRange::First:
        return isSet && number == least;
      case NumberRange::Last:
        return isSet && number == greatest;
      case NumberRange::All:
        return true;
      case NumberRange::Numbers:
        break;
    }
    return isSet && range.Holds(number);
  });
}

void Keep(Descriptors& descriptors, Descriptor::ResultIndex index, const std::vector<NumberRange>& values)
{
  int  least    = 0;
  int  greatest = 0;
  bool any      = false;
  for (const Descriptor& descriptor : descriptors) {
    if (!descriptor.IsSet(index)) continue;
    const int number = descriptor.GetInteger(index);
    least            = any ? std::min(least, number) : number;
    greatest         = any ? std::max(greatest, number) : number;
    any              = true;
  }
  std::erase_if(descriptors, [&](const Descriptor& descriptor) {
    return !Hold(values, descriptor.IsSet(index), descriptor.GetInteger(index), least, greatest);
  });
}

/// Whether the value of a key is a name: nothing that a range of numbers or one of its words begins with.
bool IsName(std::string_view value)
{
  static constexpr std::string_view kWords[] = {"first", "last", "none", "all", "*"};
  if (value.empty() || std::find(std::begin(kWords), std::end(kWords), value) != std::end(kWords)) return false;
  NumberRange range;
  return !ReadNumbers(value, range);
}

const IndexKey& ResolveKey(std::string_view text)
{
  std::vector<std::string> candidates;
  for (const IndexKey& key : GetIndexKeys()) {
    if (text == key.key || text == key.name) return key;
    candidates.emplace_back(key.key);
    candidates.emplace_back(key.name);
  }
  const std::string suggestion = DidYouMean(text, candidates);
  Fail("unknown key '" + std::string(text) + "'" +
       (suggestion.empty() ? ", expected it, an, lc, sub, inc, layer, quantity, group or i2, i7, i8, i12, i13"
                           : suggestion));
}

/// What two blocks of one kind, for "first" and "last", have in common.
std::pair<int, int> KindOf(const Descriptor& descriptor)
{
  return {descriptor.GetInteger(Descriptor::OnfId), GetQuantity(descriptor)};
}

bool IsHistory(const Descriptor& descriptor) { return OnfKind::EntityOf(descriptor) == OnfKind::HistoryEntity; }

/// A step's values: per index whether it is set, and to what.
using Step = std::vector<std::pair<bool, int>>;

constexpr std::array<Descriptor::ResultIndex, 5> kOrder = {
    Descriptor::Iteration, Descriptor::Analysis, Descriptor::LoadCase, Descriptor::Substep, Descriptor::Increment};

Step StepOf(const Descriptor& descriptor, std::size_t numIndices)
{
  Step step;
  for (std::size_t i = 0; i < numIndices; ++i) {
    const bool isSet = descriptor.IsSet(kOrder[i]);
    step.emplace_back(isSet, isSet ? descriptor.GetInteger(kOrder[i]) : 0);
  }
  return step;
}

constexpr std::size_t kAllOfStep = 5;
constexpr std::size_t kLoadCaseOfStep =
    3;  // iteration, analysis and load case: what histories have in common with steps

/// The steps of the database that the ranges hold, whole and cut to what histories share with them.
std::set<Step> ChosenSteps(const Descriptors& descriptors, const std::vector<NumberRange>& ranges)
{
  std::set<Step> steps;
  for (const Descriptor& descriptor : descriptors)
    if (HasResultStep(descriptor)) steps.insert(StepOf(descriptor, kAllOfStep));
  // A position that no step has is a mistake; a range may end behind the last one.
  for (const NumberRange& range : ranges)
    if (range.form == NumberRange::Numbers && (range.first < 1 || range.first > static_cast<int>(steps.size())))
      Fail("step " + std::to_string(range.first) + " is not there, expected positions from 1 to " +
           std::to_string(steps.size()));
  std::set<Step> chosen;
  int            position = 0;
  for (const Step& step : steps) {
    if (!Hold(ranges, true, ++position, 1, static_cast<int>(steps.size()))) continue;
    chosen.insert(step);
    chosen.insert(Step(step.begin(), step.begin() + kLoadCaseOfStep));
  }
  return chosen;
}

}  // namespace

bool NumberRange::Holds(int number) const noexcept
{
  return number >= first && number <= last && (std::int64_t{number} - first) % stride == 0;
}

std::vector<NumberRange> ParseNumberRanges(std::string_view text, const std::string& what)
{
  std::vector<NumberRange> ranges;
  for (const std::string_view entry : Split(text, ',')) ranges.push_back(ParseNumberRange(entry, what));
  return ranges;
}

const std::vector<IndexKey>& GetIndexKeys()
{
  static const std::vector<IndexKey> kKeys = {
      {Descriptor::Iteration, "it", "iteration"},
      {Descriptor::Analysis, "an", "analysis"},
      {Descriptor::LoadCase, "lc", "load-case"},
      {Descriptor::Substep, "sub", "substep"},
      {Descriptor::Increment, "inc", "increment"},
      {Descriptor::Layer, "layer", "layer"},
      {static_cast<Descriptor::ResultIndex>(2), "i2", "index-2"},
      {static_cast<Descriptor::ResultIndex>(7), "i7", "index-7"},
      {static_cast<Descriptor::ResultIndex>(8), "i8", "index-8"},
      {OnfIndex::Quantity, "quantity", "i10"},
      {OnfIndex::Group, "group", "i11"},
      {static_cast<Descriptor::ResultIndex>(12), "i12", "index-12"},
      {static_cast<Descriptor::ResultIndex>(13), "i13", "index-13"},
  };
  return kKeys;
}

std::string ToSelectionText(const FED_DataDescriptor& descriptor)
{
  std::string text      = std::to_string(descriptor.GetInteger(Descriptor::OnfId));
  char        separator = '@';
  for (const IndexKey& key : GetIndexKeys()) {
    if (!descriptor.IsSet(key.index)) continue;
    text += separator;
    text += key.key;
    text += '=' + std::to_string(descriptor.GetInteger(key.index));
    separator = ',';
  }
  return text;
}

bool BelongsToAllSteps(const FED_DataDescriptor& descriptor)
{
  return !descriptor.IsSet(Descriptor::LoadCase) && !descriptor.IsSet(Descriptor::Substep) &&
         !descriptor.IsSet(Descriptor::Increment);
}

bool HasResultStep(const FED_DataDescriptor& descriptor)
{
  return !IsHistory(descriptor) && !BelongsToAllSteps(descriptor);
}

FED_DataDescriptor GetResultStep(const FED_DataDescriptor& descriptor)
{
  FED_DataDescriptor step;
  for (const Descriptor::ResultIndex index : kOrder)
    if (descriptor.IsSet(index)) step.SetInteger(index, descriptor.GetInteger(index));
  return step;
}

std::vector<FED_DataDescriptor> ListResultSteps(const std::vector<FED_DataDescriptor>& descriptors)
{
  std::map<Step, Descriptor> steps;
  for (const Descriptor& descriptor : descriptors)
    if (HasResultStep(descriptor)) steps.emplace(StepOf(descriptor, kAllOfStep), GetResultStep(descriptor));
  Descriptors list;
  for (const auto& [values, step] : steps) list.push_back(step);
  return list;
}

Selection::Selection(std::string_view text, const KindTable& kinds)
{
  const std::size_t      at        = text.find('@');
  const std::string_view kindNames = Trimmed(text.substr(0, at));
  if (at == std::string_view::npos && text.find('=') != std::string_view::npos)
    Fail("selection '" + std::string(text) + "' has no '@' before its keys, expected KIND@KEY=VALUE or @KEY=VALUE");
  if (text.empty()) Fail("the selection is empty, expected KIND, KIND@KEY=VALUE or @KEY=VALUE");
  if (!kindNames.empty() && kindNames != "all" && kindNames != "*")
    for (const std::string_view kind : Split(kindNames, ',')) kinds_.push_back(ReadKind(kind, kinds));
  if (at == std::string_view::npos) return;

  for (const std::string_view entry : Split(text.substr(at + 1), ',')) ReadCriterion(entry, text, kinds);
}

Selection::KindChoice Selection::ReadKind(std::string_view text, const KindTable& kinds)
{
  const std::size_t dot = text.rfind('.');
  if (dot == std::string_view::npos || kinds.FindByName(std::string(text))) return {kinds.Resolve(text), {}};
  const int onf = kinds.Resolve(Trimmed(text.substr(0, dot)));
  // A kind that only another database names is none of this one.
  return {onf, Component(Trimmed(text.substr(dot + 1)), std::abs(onf)).GetName()};
}

/// @param text the whole selection, for messages
void Selection::ReadCriterion(std::string_view entry, std::string_view text, const KindTable& kinds)
{
  const std::size_t equals = entry.find('=');
  if (equals != std::string_view::npos) {
    criteria_.push_back({ResolveKey(Trimmed(entry.substr(0, equals))).index, {}});
  } else if (criteria_.empty()) {
    Fail("selection '" + std::string(text) + "' has '" + std::string(entry) + "' behind its '@', expected KEY=VALUE");
  }
  const std::string_view value = equals == std::string_view::npos ? entry : Trimmed(entry.substr(equals + 1));
  Criterion&             last  = criteria_.back();
  if (last.index == OnfIndex::Group && IsName(value)) {
    const int group = kinds.ResolveGroup(value);
    last.values.push_back({NumberRange::Numbers, group, group, 1});
    return;
  }
  const auto key = std::find_if(GetIndexKeys().begin(), GetIndexKeys().end(),
                                [&](const IndexKey& candidate) { return candidate.index == last.index; });
  last.values.push_back(ParseNumberRange(value, "a value of '" + std::string(key->key) + "'"));
}

void Selection::SetSteps(std::string_view text) { steps_ = ParseNumberRanges(text, "a step"); }

bool Selection::MatchesKind(const FED_DataDescriptor& descriptor) const
{
  const auto [onf, quantity] = KindOf(descriptor);
  return kinds_.empty() ||
         std::any_of(kinds_.begin(), kinds_.end(), [onf = onf, quantity = quantity](const KindChoice& kind) {
           return kind.onf == onf || (quantity != 0 && kind.onf == quantity);
         });
}

std::vector<std::string> Selection::ComponentsOf(int onf) const
{
  std::vector<std::string> names;
  bool                     isAsked = false;
  const auto               add     = [&names](const std::string& name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  };
  for (const KindChoice& kind : kinds_) {
    if (kind.onf != onf) continue;
    isAsked = isAsked || !kind.component.empty();
    if (!kind.component.empty())
      add(kind.component);
    else
      for (const std::string& stored : ValueComponentsOf(onf)) add(stored);
  }
  return isAsked ? names : std::vector<std::string>();
}

bool Selection::HasComponents() const noexcept
{
  return std::any_of(kinds_.begin(), kinds_.end(), [](const KindChoice& kind) { return !kind.component.empty(); });
}

std::vector<FED_DataDescriptor> Selection::Apply(const std::vector<FED_DataDescriptor>& descriptors) const
{
  std::vector<std::pair<int, int>> kinds;  // in the order of first use
  std::vector<Descriptors>         blocksOfKind;
  for (const Descriptor& descriptor : descriptors) {
    if (!MatchesKind(descriptor)) continue;
    const auto kind  = KindOf(descriptor);
    const auto found = std::find(kinds.begin(), kinds.end(), kind);
    const auto place = static_cast<std::size_t>(found - kinds.begin());
    if (found == kinds.end()) {
      kinds.push_back(kind);
      blocksOfKind.emplace_back();
    }
    blocksOfKind[place].push_back(descriptor);
  }

  std::set<Descriptor> selected;
  for (Descriptors& blocks : blocksOfKind) {
    for (const bool ends : {false, true})
      for (const Criterion& criterion : criteria_)
        if (AsksForAnEnd(criterion.values) == ends) Keep(blocks, criterion.index, criterion.values);
    selected.insert(blocks.begin(), blocks.end());
  }

  if (!steps_.empty()) {
    const std::set<Step> steps = ChosenSteps(descriptors, steps_);
    std::erase_if(selected, [&](const Descriptor& descriptor) {
      if (IsHistory(descriptor)) return !steps.contains(StepOf(descriptor, kLoadCaseOfStep));
      return !BelongsToAllSteps(descriptor) && !steps.contains(StepOf(descriptor, kAllOfStep));
    });
  }
  Descriptors result;
  std::copy_if(descriptors.begin(), descriptors.end(), std::back_inserter(result),
               [&](const Descriptor& descriptor) { return selected.contains(descriptor); });
  return result;
}

}  // namespace quilon
