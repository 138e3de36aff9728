#include "diff/RuleLearning.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "QuilonUtilities/FED_Failure.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon::diff {

namespace {

constexpr double kLargestNoise = 0.01;  // of a block's peak

/// @return the number with three digits, rounded up; finite, as a tolerance has to be
double RoundUp(double value)
{
  if (value == 0.0) return 0.0;
  value = std::min(value, std::numeric_limits<double>::max());
  char text[32];
  std::snprintf(text, sizeof text, "%.2e", value);
  double rounded = std::strtod(text, nullptr);
  if (rounded < value) {
    // One unit of the third digit more.
    std::snprintf(text, sizeof text, "%.2e", value * 1.005);
    rounded = std::strtod(text, nullptr);
  }
  return std::isfinite(rounded) ? std::max(rounded, value) : value;
}

/// @return how much of the peak the difference is, rounded so that the fraction of the peak is no less than it
double GetFraction(double difference, double peak)
{
  const double fraction = difference / peak;
  return fraction * peak < difference ? std::nextafter(fraction, std::numeric_limits<double>::infinity()) : fraction;
}

/// @return what a kind of one run is in another: user kinds go by their names
int Translate(int kind, const KindTable& from, const KindTable& to)
{
  const std::string name = from.GetName(kind);
  return to.GetName(kind) == name ? kind : to.FindByName(name).value_or(kind);
}

/// @return the name of the kind, its ONF id where the name in a line of rules would mean something else
std::string WriteKind(int kind, const KindTable& kinds)
{
  const std::string name = kinds.GetName(kind);
  if (name.find_first_of(",#\r\n") != std::string::npos || name != Trimmed(name) || name == "*")
    return std::to_string(kind);
  try {
    if (kinds.Resolve(name) == kind) return name;
  } catch (const FED_Failure&) {
    // Kinds that no catalogue knows are found by their ONF id alone.
  }
  return std::to_string(kind);
}

}  // namespace

RuleSet RuleLearner::GetRules() const
{
  RuleSet rules;
  rules.fallback.form     = ComparisonRule::Tolerances;
  rules.fallback.abs      = std::numeric_limits<double>::max();
  rules.fallback.modeSign = modeSign_;
  return rules;
}

void RuleLearner::Add(const DatabaseOutcome& outcome, const KindTable& kinds, const std::string& description)
{
  for (const BlockOutcome& block : outcome.blocks) {
    if (block.status != BlockOutcome::Same)
      Fail(description + ": " + ToSelectionText(block.descriptor) +
           " differs in more than numbers, expected runs that are accepted as equal");
    const FieldNorms& norms = block.fields.norms;
    Noise&            noise = noise_[Translate(block.kind, kinds, kinds_)];
    if (norms.largest == 0.0) continue;
    const double fraction = GetFraction(norms.largest, norms.peak);
    if (fraction <= kLargestNoise)
      noise.peak = std::max(noise.peak, fraction);
    else
      noise.abs = std::max(noise.abs, norms.largest);
  }
}

std::string RuleLearner::WriteRules(const std::string& head) const
{
  std::string text = head;
  for (const auto& [kind, noise] : noise_) {
    ComparisonRule rule;
    rule.form = ComparisonRule::Tolerances;
    if (noise.peak > 0.0) rule.peak = RoundUp(noise.peak * factor_);
    if (noise.abs > 0.0 || noise.peak == 0.0) rule.abs = RoundUp(noise.abs * factor_);
    rule.any      = rule.peak && rule.abs;
    rule.modeSign = modeSign_;
    text += WriteKind(kind, kinds_) + ": " + rule.ToString() + '\n';
  }
  return text;
}

}  // namespace quilon::diff
