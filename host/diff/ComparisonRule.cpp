#include "diff/ComparisonRule.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>
#include <vector>

#include "QuilonDataRecordDiff.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon::diff {

namespace {

constexpr std::string_view kSeparators = " \t,";

std::vector<std::string_view> SplitTerms(std::string_view text)
{
  std::vector<std::string_view> terms;
  while (true) {
    const std::size_t first = text.find_first_not_of(kSeparators);
    if (first == std::string_view::npos) return terms;
    text.remove_prefix(first);
    const std::size_t length = std::min(text.find_first_of(kSeparators), text.size());
    terms.push_back(text.substr(0, length));
    text.remove_prefix(length);
  }
}

template <typename Number>
std::optional<Number> ToNumber(std::string_view text)
{
  Number     number = 0;
  const auto taken  = std::from_chars(text.data(), text.data() + text.size(), number);
  if (taken.ec != std::errc() || taken.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

/// Reads the terms of one rule.
class RuleParser
{
public:
  RuleParser(std::string_view text, const std::string& where) : text_(text), where_(where) {}

  ComparisonRule Parse()
  {
    const std::vector<std::string_view> terms = SplitTerms(text_);
    if (terms.empty()) Refuse("is empty, expected terms such as abs=1e-6");
    for (const std::string_view term : terms) Take(term);
    if (combination_ && rule_.form != ComparisonRule::Tolerances) Refuse("has 'any' or 'all' without tolerances");
    return rule_;
  }

private:
  void Take(std::string_view term)
  {
    const std::size_t      equals = term.find('=');
    const std::string_view name   = term.substr(0, equals);
    const std::string_view value  = equals == std::string_view::npos ? std::string_view() : term.substr(equals + 1);
    if (name == "abs" || name == "rel" || name == "peak") return TakeTolerance(term, name, value);
    if (name == "ulps") return TakeUlps(term, value);
    if (name == "nan" && equals != std::string_view::npos) return TakeNan(term, value);
    if (term == "any" || term == "all") {
      if (combination_) Refuse("has 'any' or 'all' twice");
      combination_ = true;
      rule_.any    = term == "any";
    } else if (term == "mode-sign") {
      rule_.modeSign = true;
    } else if (term == "exact") {
      SetForm(ComparisonRule::Exact);
    } else if (term == "default") {
      SetForm(ComparisonRule::Default);
    } else if (term == "library") {
      SetForm(ComparisonRule::Library);
    } else if (term == "ignore") {
      SetForm(ComparisonRule::Ignore);
    } else {
      Refuse("has '" + std::string(term) +
             "', expected abs=, rel=, peak=, ulps=, any, all, exact, default, library, ignore, nan= or mode-sign");
    }
  }

  void TakeTolerance(std::string_view term, std::string_view name, std::string_view value)
  {
    const std::optional<double> number = ToNumber<double>(value);
    if (!number || !std::isfinite(*number) || std::signbit(*number))
      Refuse("has '" + std::string(term) + "', expected a finite number, 0 or more");
    std::optional<double>& target = name == "abs" ? rule_.abs : name == "rel" ? rule_.rel : rule_.peak;
    if (target) Refuse("has '" + std::string(name) + "' twice");
    SetForm(ComparisonRule::Tolerances);
    target = number;
  }

  void TakeUlps(std::string_view term, std::string_view value)
  {
    const std::optional<std::uint64_t> number = ToNumber<std::uint64_t>(value);
    if (!number) Refuse("has '" + std::string(term) + "', expected a count of 64 bits");
    if (rule_.ulps) Refuse("has 'ulps' twice");
    SetForm(ComparisonRule::Tolerances);
    rule_.ulps = number;
  }

  void TakeNan(std::string_view term, std::string_view value)
  {
    if (rule_.nan) Refuse("has 'nan' twice");
    if (value == "equal")
      rule_.nan = NanPolicy::Equal;
    else if (value == "different")
      rule_.nan = NanPolicy::Different;
    else if (value == "forbid")
      rule_.nan = NanPolicy::Forbidden;
    else
      Refuse("has '" + std::string(term) + "', expected nan=equal, nan=different or nan=forbid");
  }

  void SetForm(ComparisonRule::Form form)
  {
    if (hasForm_ && (form != rule_.form || form != ComparisonRule::Tolerances))
      Refuse("has terms that exclude each other, expected tolerances or one of exact, default, library and ignore");
    hasForm_   = true;
    rule_.form = form;
  }

  [[noreturn]] void Refuse(const std::string& what) const
  {
    Fail(where_ + "the rule '" + Printable(text_) + "' " + Printable(what));
  }

  std::string_view   text_;
  const std::string& where_;
  ComparisonRule     rule_;
  bool               hasForm_     = false;
  bool               combination_ = false;
};

/// The numbers of a type in ascending order, counted so that -0.0 and 0.0 are one.
template <typename Signed, typename Real>
std::int64_t PositionOf(Real value) noexcept
{
  const auto bits = std::bit_cast<Signed>(value);
  return bits >= 0 ? std::int64_t{bits} : std::int64_t{std::numeric_limits<Signed>::min()} - std::int64_t{bits};
}

template <typename Signed, typename Real>
std::uint64_t Distance(Real a, Real b) noexcept
{
  // Unsigned: the distance of the two infinities does not fit the signed type.
  const auto first  = static_cast<std::uint64_t>(PositionOf<Signed>(a));
  const auto second = static_cast<std::uint64_t>(PositionOf<Signed>(b));
  return PositionOf<Signed>(a) < PositionOf<Signed>(b) ? second - first : first - second;
}

std::uint64_t UlpsBetween(double a, double b, bool isSingle) noexcept
{
  return isSingle ? UlpDistance(static_cast<float>(a), static_cast<float>(b)) : UlpDistance(a, b);
}

double Ratio(double amount, double allowed) noexcept { return amount <= 0.0 ? 0.0 : amount / allowed; }

/// What tolerances are measured by. Of two large values of unlike signs all is halved, so that their difference stays a
/// number.
struct Measure
{
  Measure(double a, double b) noexcept
      : scale(std::isfinite(a - b) ? 1.0 : 0.5),
        difference(std::fabs(scale * a - scale * b)),
        larger(scale * std::max(std::fabs(a), std::fabs(b)))
  {}

  double scale;
  double difference;
  double larger;  ///< of the two magnitudes
};

std::string Exceeds(const char* term, double amount, double allowed)
{
  return std::string(term) + ' ' + FormatRounded(amount) + " > " + FormatNumber(allowed);
}

}  // namespace

NanPolicy ComparisonRule::GetNanPolicy() const noexcept
{
  if (nan) return *nan;
  return form == Library ? NanPolicy::Passes : NanPolicy::Equal;
}

std::string ComparisonRule::ToString() const
{
  std::string text;
  const auto  add = [&text](const std::string& term) { text += (text.empty() ? "" : " ") + term; };
  if (form == Default) add("default");
  if (form == Library) add("library");
  if (form == Exact) add("exact");
  if (form == Ignore) add("ignore");
  if (abs) add("abs=" + FormatNumber(*abs));
  if (rel) add("rel=" + FormatNumber(*rel));
  if (peak) add("peak=" + FormatNumber(*peak));
  if (ulps) add("ulps=" + std::to_string(*ulps));
  if (any) add("any");
  if (nan == NanPolicy::Equal) add("nan=equal");
  if (nan == NanPolicy::Different) add("nan=different");
  if (nan == NanPolicy::Forbidden) add("nan=forbid");
  if (modeSign) add("mode-sign");
  return text;
}

bool BeginsRule(std::string_view text)
{
  const std::string_view term = text.substr(0, text.find_first_of(kSeparators));
  const std::string_view name = term.substr(0, term.find('='));
  for (const char* const known :
       {"abs", "rel", "peak", "ulps", "any", "all", "exact", "default", "library", "ignore", "nan", "mode-sign"})
    if (name == known) return true;
  return false;
}

ComparisonRule ParseRule(std::string_view text, const std::string& where) { return RuleParser(text, where).Parse(); }

std::uint64_t UlpDistance(double a, double b) noexcept { return Distance<std::int64_t>(a, b); }

std::uint64_t UlpDistance(float a, float b) noexcept { return Distance<std::int32_t>(a, b); }

ValueJudge::ValueJudge(const ComparisonRule& rule, const QuilonDataBlockDiff::CompareInfo& info, double peak)
    : rule_(rule), info_(info), peak_(peak)
{
  if (rule_.form != ComparisonRule::Default) return;
  rule_.form = ComparisonRule::Tolerances;
  rule_.peak = kDefaultPeak;
}

bool ValueJudge::AcceptsUnequal(double a, double b, bool isSingle) const noexcept
{
  if (rule_.form == ComparisonRule::Ignore) return true;
  if (rule_.form == ComparisonRule::Exact) return false;
  if (rule_.form == ComparisonRule::Library) return QuilonDataRecordDiff::EqualOrNearValue(a, b, info_);
  if (!std::isfinite(a) || !std::isfinite(b)) return false;
  const Measure measure(a, b);
  bool          holds   = !rule_.any;
  const auto    combine = [&](bool term) { holds = rule_.any ? holds || term : holds && term; };
  if (rule_.abs) combine(measure.difference <= *rule_.abs * measure.scale);
  if (rule_.rel) combine(measure.difference <= *rule_.rel * measure.larger);
  if (rule_.peak) combine(measure.difference <= *rule_.peak * (peak_ * measure.scale));
  if (rule_.ulps) combine(UlpsBetween(a, b, isSingle) <= *rule_.ulps);
  return holds;
}

double ValueJudge::GetExcess(double a, double b, bool isSingle) const noexcept
{
  if (!std::isfinite(a) || !std::isfinite(b)) return kInfinity;
  if (rule_.form == ComparisonRule::Exact) return kInfinity;
  if (rule_.form == ComparisonRule::Library) {
    const double difference = std::fabs(a - b);
    const double smaller    = std::min(a, b);
    const double byAbs      = Ratio(difference, info_.absTol);
    return smaller > 0.0 ? std::max(byAbs, Ratio(difference / smaller, info_.relTol)) : byAbs;
  }
  const Measure measure(a, b);
  double        excess  = rule_.any ? kInfinity : 0.0;
  const auto    combine = [&](double ratio) { excess = rule_.any ? std::min(excess, ratio) : std::max(excess, ratio); };
  if (rule_.abs) combine(Ratio(measure.difference, *rule_.abs * measure.scale));
  if (rule_.rel) combine(Ratio(measure.difference, *rule_.rel * measure.larger));
  if (rule_.peak) combine(Ratio(measure.difference, *rule_.peak * (peak_ * measure.scale)));
  if (rule_.ulps) combine(Ratio(static_cast<double>(UlpsBetween(a, b, isSingle)), static_cast<double>(*rule_.ulps)));
  return excess;
}

QuickLimits ValueJudge::GetQuickLimits() const noexcept
{
  QuickLimits limits;
  if (rule_.form != ComparisonRule::Tolerances || (rule_.ulps && !rule_.any)) return limits;
  limits.any = rule_.any;
  // As they are judged one by one, to the bit: differences beyond all numbers are left to that.
  const std::optional<double> peak        = rule_.peak ? std::optional(*rule_.peak * peak_) : std::nullopt;
  const bool                  hasConstant = rule_.abs || peak;
  if (rule_.abs && peak)
    limits.constant = rule_.any ? std::max(*rule_.abs, *peak) : std::min(*rule_.abs, *peak);
  else if (hasConstant)
    limits.constant = rule_.abs ? *rule_.abs : *peak;
  limits.hasRelative = rule_.rel.has_value();
  if (limits.hasRelative) limits.relative = *rule_.rel;
  // Without a constant limit the relative one stands alone: |a - b| <= 0 adds nothing to it.
  if (limits.hasRelative && !hasConstant) limits.any = true;
  return limits;
}

std::string ValueJudge::Explain(double a, double b, bool isSingle) const
{
  if (rule_.form == ComparisonRule::Exact) return "exact";
  if (!std::isfinite(a) || !std::isfinite(b)) return "infinite";
  const double difference = std::fabs(a - b);
  if (rule_.form == ComparisonRule::Library) {
    if (difference > info_.absTol) return Exceeds("library abs", difference, info_.absTol);
    return Exceeds("library rel", difference / std::min(a, b), info_.relTol);
  }
  std::string   text;
  const auto    add = [&text](const std::string& term) { text += (text.empty() ? "" : ", ") + term; };
  const Measure measure(a, b);
  const double  peak = peak_ * measure.scale;
  if (rule_.abs && measure.difference > *rule_.abs * measure.scale) add(Exceeds("abs", difference, *rule_.abs));
  if (rule_.rel && measure.difference > *rule_.rel * measure.larger)
    add(Exceeds("rel", measure.difference / measure.larger, *rule_.rel));
  if (rule_.peak && measure.difference > *rule_.peak * peak)
    add(Exceeds("peak", measure.difference / peak, *rule_.peak));
  const std::uint64_t ulps = rule_.ulps ? UlpsBetween(a, b, isSingle) : 0;
  if (rule_.ulps && ulps > *rule_.ulps) add("ulps " + std::to_string(ulps) + " > " + std::to_string(*rule_.ulps));
  return text;
}

}  // namespace quilon::diff
