#include "answers/TimeChoice.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "database/StepTimes.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

using Descriptor  = FED_DataDescriptor;
using Descriptors = std::vector<FED_DataDescriptor>;

/// Rounding of an end of a range, as a part of it.
constexpr double kRounding = 1e-9;

std::optional<double> ReadTime(std::string_view text)
{
  double     time  = 0.0;
  const auto taken = std::from_chars(text.data(), text.data() + text.size(), time);
  if (taken.ec != std::errc() || taken.ptr != text.data() + text.size() || !std::isfinite(time)) return std::nullopt;
  return time;
}

/// A block's key cut to some of its indices.
Descriptor CutTo(const Descriptor& block, std::initializer_list<Descriptor::ResultIndex> indices)
{
  Descriptor cut;
  for (const Descriptor::ResultIndex index : indices)
    if (block.IsSet(index)) cut.SetInteger(index, block.GetInteger(index));
  return cut;
}

Descriptor ScaleOf(const Descriptor& step) { return CutTo(step, {Descriptor::Iteration, Descriptor::Analysis}); }

Descriptor LoadCaseOf(const Descriptor& step)
{
  return CutTo(step, {Descriptor::Iteration, Descriptor::Analysis, Descriptor::LoadCase});
}

bool IsNear(double time, double asked, double tolerance)
{
  return std::fabs(time - asked) <= tolerance * std::fabs(asked);
}

struct TimedStep
{
  double     time;
  Descriptor step;
};

/// @param steps at least one
double TimeNearest(const std::vector<TimedStep>& steps, double asked)
{
  return std::min_element(steps.begin(), steps.end(),
                          [asked](const TimedStep& a, const TimedStep& b) {
                            return std::fabs(a.time - asked) < std::fabs(b.time - asked);
                          })
      ->time;
}

/// @param steps at least one
double LatestTime(const std::vector<TimedStep>& steps)
{
  return std::max_element(steps.begin(), steps.end(),
                          [](const TimedStep& a, const TimedStep& b) { return a.time < b.time; })
      ->time;
}

std::string SpanOf(const std::vector<TimedStep>& steps)
{
  const auto [least, greatest] = std::minmax_element(
      steps.begin(), steps.end(), [](const TimedStep& a, const TimedStep& b) { return a.time < b.time; });
  return least->time == greatest->time ? FormatNumber(least->time)
                                       : FormatNumber(least->time) + " to " + FormatNumber(greatest->time);
}

/// The times on both sides of one that was asked for.
std::string NeighboursOf(const std::vector<TimedStep>& steps, double asked)
{
  std::optional<double> below, above;
  for (const TimedStep& one : steps) {
    if (one.time <= asked)
      below = below ? std::max(*below, one.time) : one.time;
    else
      above = above ? std::min(*above, one.time) : one.time;
  }
  if (below && above) return "the nearest are " + FormatNumber(*below) + " and " + FormatNumber(*above);
  return "the nearest is " + FormatNumber(below ? *below : *above);
}

}  // namespace

TimeChoice::TimeChoice(std::string_view text) : text_(text)
{
  const auto fail = [&] {
    Fail("--time is '" + text_ + "', expected a time such as 0.8, a range such as 0.2:0.8, or last");
  };
  if (text == "last") {
    form_ = Last;
    return;
  }
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    form_ = Nearest;
    from_ = ReadTime(text);
    if (!from_) fail();
    return;
  }
  form_                        = Range;
  const std::string_view first = text.substr(0, colon);
  const std::string_view last  = text.substr(colon + 1);
  from_                        = ReadTime(first);
  to_                          = ReadTime(last);
  if ((!from_ && !first.empty()) || (!to_ && !last.empty()) || (!from_ && !to_)) fail();
  if (from_ && to_ && *to_ < *from_)
    Fail("--time is '" + text_ + "', a range that runs backwards, expected the earlier time first");
}

bool TimeChoice::Holds(double time, double target) const
{
  if (form_ == Range)
    return (!from_ || time >= *from_ - kRounding * std::fabs(*from_)) &&
           (!to_ || time <= *to_ + kRounding * std::fabs(*to_));
  return time == target && (form_ == Last || IsNear(target, *from_, kTolerance));
}

Descriptors TimeChoice::KeptSteps(const Descriptors& blocks, const StepTimes& times, const std::string& database) const
{
  std::map<Descriptor, std::vector<TimedStep>> scales;
  std::vector<TimedStep>                       all;
  for (const Descriptor& step : ListResultSteps(blocks)) {
    const std::optional<double> time = times.TimeOf(step);
    if (!time) continue;
    scales[ScaleOf(step)].push_back({*time, step});
    all.push_back({*time, step});
  }
  if (all.empty()) Fail(database + ": holds no times of these results, expected them for --time");

  Descriptors kept;
  for (const auto& [scale, steps] : scales) {
    const double target = form_ == Nearest ? TimeNearest(steps, *from_) : LatestTime(steps);
    for (const TimedStep& one : steps)
      if (Holds(one.time, target)) kept.push_back(one.step);
  }
  if (kept.empty() && form_ == Nearest)
    Fail(database + ": no step at time " + text_ + " within a thousandth of it, " + NeighboursOf(all, *from_));
  if (kept.empty()) Fail(database + ": no step at times " + text_ + ", there are times of " + SpanOf(all));
  return kept;
}

Descriptors TimeChoice::Keep(const Descriptors& blocks, const Descriptors& all, const StepTimes& times,
                             const std::string& database) const
{
  if (IsEverything()) return blocks;
  const bool                 haveSteps = std::any_of(blocks.begin(), blocks.end(), HasResultStep);
  const Descriptors          steps     = KeptSteps(haveSteps ? blocks : all, times, database);
  const std::set<Descriptor> kept(steps.begin(), steps.end());
  std::set<Descriptor>       loadCases;
  for (const Descriptor& step : steps) loadCases.insert(LoadCaseOf(step));

  Descriptors result;
  for (const Descriptor& block : blocks) {
    const bool isKept = HasResultStep(block)       ? kept.contains(GetResultStep(block))
                        : BelongsToAllSteps(block) ? true
                                                   : loadCases.contains(LoadCaseOf(block));
    if (isKept) result.push_back(block);
  }
  return result;
}

}  // namespace quilon
