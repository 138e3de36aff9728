#include "diff/RuleSet.h"

#include <cerrno>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <vector>

#include "QuilonUtilities/FED_Failure.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon::diff {

namespace {

std::string_view WithoutBlanks(std::string_view text)
{
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t          first   = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

/// @return the ONF id, the failure told with the place of the line
int ResolveAt(std::string_view kind, const KindResolver& resolve, const std::string& where)
{
  try {
    return resolve(kind);
  } catch (const FED_Failure& failure) {
    Fail(where + Printable(failure.GetMessage()));
  }
}

}  // namespace

void RuleSet::Add(std::string_view line, const KindResolver& resolve, const std::string& where)
{
  // The last colon: names of user kinds may have one, terms have none.
  const std::size_t colon = line.rfind(':');
  if (colon == std::string_view::npos && BeginsRule(WithoutBlanks(line))) {
    fallback = ParseRule(WithoutBlanks(line), where);
    return;
  }
  if (colon == std::string_view::npos)
    Fail(where + "'" + Printable(line) + "' is no rule, expected KIND: TERMS such as 'stress: peak=1e-6'");
  const ComparisonRule rule  = ParseRule(WithoutBlanks(line.substr(colon + 1)), where);
  std::string_view     kinds = line.substr(0, colon);
  std::vector<int>     resolved;
  if (WithoutBlanks(kinds) == "*") {
    fallback = rule;
    return;
  }
  while (true) {
    const std::size_t comma = kinds.find(',');
    resolved.push_back(ResolveAt(WithoutBlanks(kinds.substr(0, comma)), resolve, where));
    if (comma == std::string_view::npos) break;
    kinds.remove_prefix(comma + 1);
  }
  for (const int kind : resolved) byKind_[kind] = rule;
}

void RuleSet::AddText(std::string_view text, const KindResolver& resolve, const std::string& name)
{
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";  // some editors write one
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end  = text.find('\n');
    std::string_view  line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    line = WithoutBlanks(line.substr(0, line.find('#')));
    if (!line.empty()) Add(line, resolve, name + ':' + std::to_string(number) + ": ");
  }
}

ComparisonRule RuleSet::Find(int kind) const
{
  const auto found = byKind_.find(kind);
  if (found == byKind_.end()) return fallback;
  ComparisonRule rule = found->second;
  if (!rule.nan) rule.nan = fallback.nan;
  rule.modeSign = rule.modeSign || fallback.modeSign;
  return rule;
}

void ReadRuleFile(const std::filesystem::path& file, const KindResolver& resolve, RuleSet& rules)
{
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  if (!in || std::filesystem::is_directory(file))
    Fail(file.string() + ": cannot be read, expected a file of rules" + SystemReason(in ? EISDIR : errno));
  const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) Fail(file.string() + ": cannot be read to its end" + SystemReason(errno));
  rules.AddText(text, resolve, file.string());
}

}  // namespace quilon::diff
