#pragma once

/// @file
/// When two values of a result count as equal.

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "QuilonDataBlockDiff.h"

namespace quilon::diff {

/// What becomes of a value that is not a number.
enum class NanPolicy
{
  Passes,     ///< equal to anything, as the library's rule has it; every one is told
  Equal,      ///< equal to another NaN, different from any number
  Different,  ///< different from everything
  Forbidden   ///< different from everything, and looked for where there is nothing to compare with, too
};

/// The distance of values that no tolerance makes equal.
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// What the rule `default` allows, as a fraction of the peak. The solver's results have six digits: a unit of the last
/// is at most 1e-5 of the peak, and a rerun with another number of threads may turn it; ours derived from them may add
/// two. What was measured of reruns is told in docs/quilon.md.
inline constexpr double kDefaultPeak = 2e-5;

/// A rule as users write it: terms separated by blanks or commas.
///
///     abs=T     |a - b| <= T
///     rel=T     |a - b| <= T * max(|a|, |b|)
///     peak=T    |a - b| <= T * P, P the largest finite magnitude of the block, of the smaller one of the two blocks
///     ulps=N    at most N steps from a to b through the representable numbers, -0.0 and 0.0 being one
///     all, any  whether all of these have to hold (the default) or one suffices
///     exact     a == b
///     default   peak=2e-5, see kDefaultPeak
///     library   the library's rule: |a - b| <= 1e-6 and, where both are positive, |a - b| / min(a, b) <= 1e-6
///     ignore    nothing of the kind is compared
///     nan=equal, nan=different, nan=forbid
///     mode-sign mode vectors may have either sign
///
/// Values that are equal pass every rule, infinities too; an infinity and anything else pass none.
struct ComparisonRule
{
  enum Form
  {
    Default,
    Library,
    Exact,
    Tolerances,
    Ignore
  };

  Form                         form = Default;
  std::optional<double>        abs;
  std::optional<double>        rel;
  std::optional<double>        peak;
  std::optional<std::uint64_t> ulps;
  bool                         any = false;
  std::optional<NanPolicy>     nan;  ///< unset: Passes under the library's rule, Equal under any other
  bool                         modeSign = false;

  NanPolicy GetNanPolicy() const noexcept;

  /// @return whether values are judged by the block's peak, which has to be known before the first of them
  bool NeedsPeak() const noexcept { return form == Default || peak.has_value(); }

  /// @return the rule as it is written
  std::string ToString() const;
};

/// @return whether the first word of the text is a term of rules
bool BeginsRule(std::string_view text);

/// @param where in front of messages: "FILE:LINE: " or empty
/// @throws FED_Failure for anything that is no rule
ComparisonRule ParseRule(std::string_view text, const std::string& where);

/// @return steps from one to the other through the representable numbers of the type; neither is a NaN
std::uint64_t UlpDistance(double a, double b) noexcept;
std::uint64_t UlpDistance(float a, float b) noexcept;

/// What many values are held to at once: a difference within the limits is accepted for sure; of any other the judge
/// decides by itself. The two limits are joined as the rule joins its terms.
struct QuickLimits
{
  double constant = 0.0;  ///< of |a - b|
  double relative = 0.0;  ///< of |a - b| as a fraction of max(|a|, |b|)
  /// Which of the two are there. A rule that has neither, or ulps, is held to |a - b| <= 0.
  bool hasRelative = false;
  bool any         = false;
};

/// A rule at work on the values of one block. NaNs are not its business.
class ValueJudge
{
public:
  /// @param info tolerances of the library's rule, 0 or more
  /// @param peak what peak= is relative to
  ValueJudge(const ComparisonRule& rule, const QuilonDataBlockDiff::CompareInfo& info, double peak);

  /// @param isSingle whether both values come from fields of 32 bits, which is what ulps= counts in then
  bool Accepts(double a, double b, bool isSingle) const noexcept
  {
    // Every rule accepts equal values, and most are.
    return a == b || AcceptsUnequal(a, b, isSingle);
  }

  /// @return for two values that are not accepted how many times their difference is what is allowed, for `any` by the
  ///         term that comes nearest; infinite where nothing is allowed
  double GetExcess(double a, double b, bool isSingle) const noexcept;

  QuickLimits GetQuickLimits() const noexcept;

  /// @return which terms fail for two values that are not accepted, such as "abs 0.5 > 0.25"
  std::string Explain(double a, double b, bool isSingle) const;

private:
  bool AcceptsUnequal(double a, double b, bool isSingle) const noexcept;

  ComparisonRule                   rule_;  // the default one as the tolerances that it stands for
  QuilonDataBlockDiff::CompareInfo info_;
  double                           peak_;
};

}  // namespace quilon::diff
