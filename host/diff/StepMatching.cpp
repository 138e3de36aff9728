#include "diff/StepMatching.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <set>
#include <tuple>
#include <utility>

#include <bundled/OnfKinds.h>

#include "database/StepTimes.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon::diff {

namespace {

using Descriptor = FED_DataDescriptor;

constexpr Descriptor::ResultIndex kStepIndices[] = {Descriptor::Iteration, Descriptor::Analysis, Descriptor::LoadCase,
                                                    Descriptor::Substep, Descriptor::Increment};

void CopyIndex(const Descriptor& from, Descriptor& to, Descriptor::ResultIndex index)
{
  const unsigned bit = 1u << index;
  to.SetInteger(index, from.values[index]);
  to.mask = (to.mask & ~bit) | (from.mask & bit);
}

/// @return what the steps of one time scale have in common: iteration and analysis
Descriptor ScaleOf(const Descriptor& step)
{
  Descriptor scale;
  CopyIndex(step, scale, Descriptor::Iteration);
  CopyIndex(step, scale, Descriptor::Analysis);
  return scale;
}

struct TimedStep
{
  double     time;
  Descriptor step;
};

/// By time scale, ascending in time; equal times in the order of the steps.
using TimedSteps = std::map<Descriptor, std::vector<TimedStep>>;

/// @param timeless gets the steps that have no time; a frequency or a buckling factor is none
TimedSteps FindTimes(const FED_Database& database, const std::vector<Descriptor>& steps,
                     std::vector<Descriptor>& timeless)
{
  TimedSteps      timed;
  const StepTimes times(database);
  for (const Descriptor& step : steps) {
    if (times.QuantityOf(step) == OnfKind::Time)
      timed[ScaleOf(step)].push_back({*times.TimeOf(step), step});
    else
      timeless.push_back(step);
  }
  for (auto& [scale, all] : timed)
    std::stable_sort(all.begin(), all.end(), [](const TimedStep& a, const TimedStep& b) { return a.time < b.time; });
  return timed;
}

/// Pairs the steps of one time scale.
class ScaleMatching
{
public:
  ScaleMatching(const std::vector<TimedStep>& first, const std::vector<TimedStep>& second)
      : first_(first), second_(second)
  {}

  void PairNear(double tolerance, StepMatch& match) const
  {
    // Distance, whether the keys are others, positions.
    std::vector<std::tuple<double, bool, std::size_t, std::size_t>> candidates;
    for (std::size_t i = 0; i < first_.size(); ++i) {
      for (std::size_t j = LowerBound(first_[i].time - tolerance); j < second_.size(); ++j) {
        const double distance = std::fabs(second_[j].time - first_[i].time);
        if (distance > tolerance && second_[j].time > first_[i].time) break;
        if (distance <= tolerance) candidates.emplace_back(distance, !(first_[i].step == second_[j].step), i, j);
      }
    }
    std::sort(candidates.begin(), candidates.end());
    std::set<std::size_t> taken;
    for (const auto& [distance, isOther, i, j] : candidates)
      if (!match.contains(first_[i].step) && taken.insert(j).second) match[first_[i].step] = {second_[j].step, {}, 0.0};
  }

  /// For the steps that have no counterpart yet.
  void PutBetween(StepMatch& match) const
  {
    for (const TimedStep& one : first_) {
      const std::size_t after = LowerBound(one.time);
      if (match.contains(one.step) || after == 0 || after == second_.size()) continue;
      const TimedStep& before = second_[after - 1];
      const TimedStep& next   = second_[after];
      match[one.step]         = {before.step, next.step, (one.time - before.time) / (next.time - before.time)};
    }
  }

private:
  /// @return the position of the first step of the second that is no earlier
  std::size_t LowerBound(double time) const
  {
    const auto found = std::lower_bound(second_.begin(), second_.end(), time,
                                        [](const TimedStep& step, double value) { return step.time < value; });
    return static_cast<std::size_t>(found - second_.begin());
  }

  const std::vector<TimedStep>& first_;
  const std::vector<TimedStep>& second_;
};

}  // namespace

FED_DataDescriptor WithResultStep(FED_DataDescriptor descriptor, const FED_DataDescriptor& step)
{
  for (const Descriptor::ResultIndex index : kStepIndices) CopyIndex(step, descriptor, index);
  return descriptor;
}

StepMatch MatchStepsByPosition(const std::vector<FED_DataDescriptor>& first,
                               const std::vector<FED_DataDescriptor>& second, const std::string& firstName,
                               const std::string& secondName)
{
  if (first.size() != second.size())
    Fail("steps are matched by their position, and there are " + Counted(first.size(), "step") + " of " + firstName +
         " and " + Counted(second.size(), "step") + " of " + secondName + ", expected as many");
  StepMatch match;
  for (std::size_t i = 0; i < first.size(); ++i) match[first[i]] = {second[i], {}, 0.0};
  return match;
}

StepMatch MatchStepsByTime(const FED_Database& first, const FED_Database& second,
                           const std::vector<FED_DataDescriptor>& firstSteps,
                           const std::vector<FED_DataDescriptor>& secondSteps, double tolerance, bool interpolates,
                           const std::string& firstName, const std::string& secondName)
{
  std::vector<Descriptor> firstTimeless;
  std::vector<Descriptor> secondTimeless;
  const TimedSteps        firstTimes  = FindTimes(first, firstSteps, firstTimeless);
  const TimedSteps        secondTimes = FindTimes(second, secondSteps, secondTimeless);
  if (firstTimes.empty()) Fail(firstName + ": holds no times (501) of its steps, expected them to match steps by time");
  if (secondTimes.empty())
    Fail(secondName + ": holds no times (501) of its steps, expected them to match steps by time");

  StepMatch match;
  for (const auto& [scale, steps] : firstTimes) {
    const auto others = secondTimes.find(scale);
    if (others == secondTimes.end()) continue;
    const ScaleMatching matching(steps, others->second);
    matching.PairNear(tolerance, match);
    if (interpolates) matching.PutBetween(match);
  }
  const std::set<Descriptor> timeless(secondTimeless.begin(), secondTimeless.end());
  for (const Descriptor& step : firstTimeless)
    if (timeless.contains(step)) match[step] = {step, {}, 0.0};
  return match;
}

}  // namespace quilon::diff
