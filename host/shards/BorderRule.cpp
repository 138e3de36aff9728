#include "shards/BorderRule.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <vector>

#include <bundled/OnfKinds.h>

#include "text/Failure.h"
#include "text/Format.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

const std::map<std::string, BorderRule::Form, std::less<>> kForms = {{"first", BorderRule::First},
                                                                     {"average", BorderRule::Average},
                                                                     {"sum", BorderRule::Sum},
                                                                     {"union", BorderRule::Union},
                                                                     {"must-agree", BorderRule::MustAgree}};

double ParseTolerance(std::string_view text)
{
  double            tolerance = 0.0;
  const char* const end       = text.data() + text.size();
  const auto        result    = std::from_chars(text.data(), end, tolerance);
  if (result.ec != std::errc() || result.ptr != end || !(tolerance >= 0.0) || std::isinf(tolerance))
    Fail("the tolerance of must-agree is '" + Printable(text) + "', expected a number of 0 or more");
  return tolerance;
}

bool BeginsRule(std::string_view text) { return kForms.contains(text.substr(0, text.find(' '))); }

}  // namespace

BorderRule ParseBorderRule(std::string_view text)
{
  const std::string_view trimmed = Trimmed(text);
  const std::size_t      blank   = trimmed.find(' ');
  const std::string_view word    = trimmed.substr(0, blank);
  const std::string_view rest    = blank == std::string_view::npos ? "" : Trimmed(trimmed.substr(blank));
  const auto             form    = kForms.find(word);
  if (form == kForms.end()) {
    std::vector<std::string> words;
    for (const auto& known : kForms) words.push_back(known.first);
    Fail("'" + Printable(trimmed) + "' is no rule, expected first, average, sum, union or must-agree TOL" +
         DidYouMean(word, words));
  }
  BorderRule rule;
  rule.form = form->second;
  if (rest.empty()) return rule;
  if (rule.form != BorderRule::MustAgree)
    Fail("'" + Printable(trimmed) + "' is no rule: '" + std::string(word) + "' stands alone");
  rule.tolerance = ParseTolerance(rest);
  return rule;
}

void BorderRules::Add(std::string_view line, const KindResolver& resolve)
{
  // The last colon: names of user kinds may have one, rules have none.
  const std::size_t colon = line.rfind(':');
  if (colon == std::string_view::npos) {
    if (!BeginsRule(Trimmed(line)))
      Fail("'" + Printable(line) + "' is no rule, expected KIND: RULE such as 'nodal-stress: average'");
    fallback_ = ParseBorderRule(line);
    return;
  }
  const BorderRule rule  = ParseBorderRule(line.substr(colon + 1));
  std::string_view kinds = line.substr(0, colon);
  if (Trimmed(kinds) == "*") {
    fallback_ = rule;
    return;
  }
  std::vector<int> resolved;
  for (std::size_t comma = 0; comma != std::string_view::npos;) {
    comma = kinds.find(',');
    resolved.push_back(resolve(Trimmed(kinds.substr(0, comma))));
    if (comma != std::string_view::npos) kinds.remove_prefix(comma + 1);
  }
  for (const int kind : resolved) byKind_[kind] = rule;
}

std::optional<BorderRule> BorderRules::Find(int kind) const
{
  if (const auto found = byKind_.find(kind); found != byKind_.end()) return found->second;
  if (const auto rule = FindModelRule(kind)) return rule;
  return fallback_;
}

std::optional<BorderRule> FindModelRule(int kind)
{
  switch (kind) {
    case OnfKind::NodeSet:
    case OnfKind::ElementSet:
    case OnfKind::TiedNodes:
      return BorderRule{BorderRule::Union, 0.0};
    case OnfKind::ImportFile:
    case OnfKind::ImportSetting:
      return BorderRule{BorderRule::First, 0.0};
    case OnfKind::Time:
    case OnfKind::Eigenvalue:
    case OnfKind::Frequency:
    case OnfKind::BucklingFactor:
    case OnfKind::Coordinates:
    case OnfKind::ElementNodes:
    case OnfKind::ElementType:
    case OnfKind::Material:
    case OnfKind::ElementSection:
    case OnfKind::Orientation:
    case OnfKind::LargeDisplacements:
    case OnfKind::DeckType:
      return BorderRule{BorderRule::MustAgree, 0.0};
    default:
      return std::nullopt;
  }
}

}  // namespace quilon
